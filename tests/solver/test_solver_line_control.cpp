// SOLVER with a control line: a surface that does not cut it is skipped with its markers, one
// that cuts it is analysed exactly as without the line, and a line of one point is no line.

#include <gtest/gtest.h>

#include <vector>

#include "solver/solver_world.h"

using namespace kalmo_test;

namespace {

// From the crest (entering at x = -10.333) down under the toe to the level ground (x = 26);
// at x = 10 the base lies at z = 13, at x = 15 at z = 13.
const std::vector<Point> kDeep = {{-12, -2}, {-8, 4}, {0, 9}, {10, 13}, {20, 13}, {30, 8}};

class SolverLineControlTest : public ::testing::Test, public SolverWorld {
protected:
    static void controlLine(const std::vector<double>& x, const std::vector<double>& z) {
        LINECONTROL.NLCP = static_cast<int>(x.size());
        for (int k = 1; k <= LINECONTROL.NLCP; ++k) {
            LINECONTROL.XLC(k) = x[static_cast<size_t>(k - 1)];
            LINECONTROL.ZLC(k) = z[static_cast<size_t>(k - 1)];
        }
    }
};

// The markers of a surface skipped by line control, in single precision widened.
const double kSkippedSF = static_cast<double>(99.999f);
const double kSkippedScore = static_cast<double>(8.888f);

}  // namespace

TEST_F(SolverLineControlTest, ASurfaceThatMissesTheLineIsSkippedWithItsMarkers) {
    // A vertical line below the toe that ends at z = 5, above the base (z = 13 there).
    controlLine({15, 15}, {0, 5});
    solve(kDeep);
    EXPECT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.SF, kSkippedSF);
    EXPECT_EQ(MASTER.SF, 99.9990005493164);
    EXPECT_EQ(MASTER.SCORE, kSkippedScore);
    EXPECT_EQ(MASTER.SCORE, 8.887999534606934);
    EXPECT_EQ(MASTER.RFACTOR, 0.0);
    EXPECT_EQ(MASTER.NUMSRF, 1);
    // Not a candidate for the best surface, and nothing written.
    EXPECT_EQ(MASTER.KBEST, 0);
    EXPECT_EQ(MASTER.BESTSF, 1000000.0);
    EXPECT_EQ(IBES.NUMSRF, 0);
    EXPECT_EQ(console(), "");
}

TEST_F(SolverLineControlTest, ASurfaceThatCutsTheLineIsAnalysedAsWithoutIt) {
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const double withoutLine = MASTER.SF;
    const double score = MASTER.SCORE;
    // The same line reaching down to z = 20 crosses the base at x = 15.
    controlLine({15, 15}, {0, 20});
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.SF, withoutLine);
    EXPECT_EQ(MASTER.SCORE, score);
    EXPECT_EQ(IBES.NUMSRF, 2);  // kept as the best (a tie goes to the later surface)
    // And it agrees with the simplified method worked by hand.
    const double expected = simplifiedFactor(handSlices(kDeep), kCohesion, kTanPhi);
    EXPECT_NEAR(MASTER.SF, expected, 0.001 * expected);
}

TEST_F(SolverLineControlTest, ALineEndingOnTheSurfaceCountsAsCut) {
    // The line ends exactly on the border point (10, 13) of two slice bases.
    controlLine({10, 10}, {0, 13});
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_LT(MASTER.SF, 10.0);
    EXPECT_EQ(MASTER.KBEST, 1);
    // Ending a little above it, the line is missed.
    controlLine({10, 10}, {0, 12.99});
    solve(kDeep);
    EXPECT_EQ(MASTER.SF, kSkippedSF);
}

TEST_F(SolverLineControlTest, OneControlPointIsNoLineControl) {
    // A single point far from the surface: the surface is analysed all the same.
    controlLine({50}, {0});
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_LT(MASTER.SF, 10.0);
    EXPECT_EQ(MASTER.KBEST, 1);
}

TEST_F(SolverLineControlTest, TwoCoincidentControlPointsSkipEverySurface) {
    // A line of no length is parallel to every base: no surface cuts it, even through it.
    controlLine({10, 10}, {13, 13});
    solve(kDeep);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, kSkippedSF);
    EXPECT_EQ(MASTER.SCORE, kSkippedScore);
    EXPECT_EQ(MASTER.KBEST, 0);
}

TEST_F(SolverLineControlTest, InAnEarthPressureProblemTheGivenSafetyFactorStays) {
    setGround({-100.0, 100.0}, {0.0, 0.0});
    SOLPRP.MAT(COHESN, 1) = 0.0;
    MASTER.IDTYP = 2;
    MASTER.NTYP = 4;
    MASTER.NSLREQ = 10;
    GEOMSH.XWALL = 0.0;
    GEOMSH.ZWALL = 6.0;
    MASTER.SF = 1.0;
    controlLine({-50, -50}, {0, 20});  // far left of the wedge
    solve({{-40.0, -34.0}, {10.0, 16.0}});
    EXPECT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.SF, 1.0);
    EXPECT_EQ(MASTER.SCORE, kSkippedScore);
    EXPECT_EQ(MASTER.RFACTOR, 0.0);
    EXPECT_EQ(MASTER.KBEST, 0);
}
