// SCORER: the mean count of doubtful features of a solution.

#include <gtest/gtest.h>

#include <cmath>

#include "solver/infinite_slope.h"
#include "solver/slice_system.h"
#include "solver/solver.h"

using namespace kalmo_test;

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;
constexpr int kSlices = 8;

// Compression everywhere, interslice forces at 0.4 of the face height, the base force in the
// middle of the base, roughness 0.6 of the available face shear.
InfiniteSlope goodSlope() {
    InfiniteSlope s;
    s.beta = 25.0 * kDegree;
    s.depth = 4.0;
    s.width = 2.0;
    s.unitWeight = 19.0;
    s.cohesion = 5.0;
    s.tanPhi = std::tan(30.0 * kDegree);
    s.sideForce = 40.0;
    s.sideHeight = 0.4;
    return s;
}

class ScorerTest : public ::testing::Test {
protected:
    void SetUp() override {
        freshRun(dir);
        setInfiniteSlope(kSlices, goodSlope());
        MASTER.SCORE = 99.0;
    }
    TempDir dir;
};

}  // namespace

TEST_F(ScorerTest, PlausibleSolutionScoresExactlyZero) {
    for (int i = 1; i <= kSlices; ++i) {
        ASSERT_LE(std::abs(SURF.R(i)), 1.0);
        ASSERT_GT(SURF.P(i), 0.0);
    }
    SCORER();
    EXPECT_EQ(MASTER.SCORE, 0.0);
}

TEST_F(ScorerTest, ForcesAtTheEdgesOfTheMiddleThirdAreNotPenalised) {
    // q = 0.33 and q = 0.67 give the penalties (0.33 - 0.33)/0.33 and (0.67 - 0.67)/0.33.
    const double low = 0.33f, high = 0.67f;
    SURF.H3(1) = low * SURF.L34(1);
    SURF.H3(2) = high * SURF.L34(2);
    SURF.H2(3) = low * (SURF.ZZ(3, 3) - SURF.ZZ(2, 3));
    SURF.H2(4) = high * (SURF.ZZ(3, 4) - SURF.ZZ(2, 4));
    SCORER();
    EXPECT_EQ(MASTER.SCORE, 0.0);
}

TEST_F(ScorerTest, TensionCountsOneUnlessAccepted) {
    SURF.P(2) = -1.0;
    SURF.E2(3) = -1.0;
    SCORER();
    EXPECT_DOUBLE_EQ(MASTER.SCORE, 2.0 / kSlices);

    MASTER.NEGPOK = 1;
    SCORER();
    EXPECT_DOUBLE_EQ(MASTER.SCORE, 1.0 / kSlices);

    MASTER.NEGPOK = 0;
    MASTER.NEGEOK = 1;
    SCORER();
    EXPECT_DOUBLE_EQ(MASTER.SCORE, 1.0 / kSlices);
}

TEST_F(ScorerTest, ExitFaceIsNotJudged) {
    // The right face of the last slice is the end of the body: its force, its height and its
    // roughness do not count; its base force does.
    SURF.E2(kSlices) = -50.0;
    SURF.H2(kSlices) = 0.0;
    SURF.R(kSlices) = 3.0;
    SCORER();
    EXPECT_EQ(MASTER.SCORE, 0.0);

    SURF.P(kSlices) = -1.0;
    SCORER();
    EXPECT_DOUBLE_EQ(MASTER.SCORE, 1.0 / kSlices);
}

TEST_F(ScorerTest, LineOfThrustOutsideTheMiddleThirdIsPenalisedInProportion) {
    const double third = 0.33f, twoThirds = 0.67f;
    // Base force at 0.2 of the base: (0.33 - 0.2)/0.33. Face force at 0.8 of the face:
    // (0.8 - 0.67)/0.33. Face force on the far side of the base, below the face: cut to 1.
    SURF.H3(1) = 0.2 * SURF.L34(1);
    const double faceHeight = SURF.ZZ(3, 2) - SURF.ZZ(2, 2);
    SURF.H2(2) = 0.8 * faceHeight;
    SURF.H2(3) = -0.5 * faceHeight;
    SCORER();
    const double expected = ((third - 0.2) / third + (0.8 - twoThirds) / third + 1.0) / kSlices;
    EXPECT_NEAR(MASTER.SCORE, expected, 1e-14);
}

TEST_F(ScorerTest, RoughnessAboveOneCountsOne) {
    SURF.R(2) = 1.0;
    SURF.R(3) = -1.0;
    SCORER();
    EXPECT_EQ(MASTER.SCORE, 0.0);
    SURF.R(2) = 1.01;
    SURF.R(3) = -1.2;
    SCORER();
    EXPECT_DOUBLE_EQ(MASTER.SCORE, 2.0 / kSlices);
}

TEST_F(ScorerTest, ScoreBelowFiveTenThousandthsIsZero) {
    // One slice with a penalty of 0.0039 and one of 0.0041 among eight: means 0.0004875 and
    // 0.0005125.
    const double third = 0.33f;
    SURF.H3(1) = (third - 0.0039 * third) * SURF.L34(1);
    SCORER();
    EXPECT_EQ(MASTER.SCORE, 0.0);

    SURF.H3(1) = (third - 0.0041 * third) * SURF.L34(1);
    SCORER();
    EXPECT_NEAR(MASTER.SCORE, 0.0041 / kSlices, 1e-12);
}
