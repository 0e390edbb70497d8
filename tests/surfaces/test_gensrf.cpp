// GENSRF: the polyline of a stored general surface, shifted and stretched, with a far-away
// point at each end.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "surfaces/surfaces.h"

namespace {

struct Polyline {
    std::vector<double> x, z;
    double ends[4] = {0, 0, 0, 0};
};

Polyline transform(const std::vector<double>& xg, const std::vector<double>& zg, double xShift, double zShift,
                   double xMult, double zMult) {
    Polyline out;
    const int n = static_cast<int>(xg.size());
    out.x.assign(n + 2, -7.0);
    out.z.assign(n + 2, -7.0);
    GENSRF(n, xg.data(), zg.data(), xShift, zShift, xMult, zMult, out.x.data(), out.z.data(), out.ends);
    return out;
}

// Stored points with awkward binary values, so that a round trip through differences shows.
const std::vector<double> kX = {0.1, 3.3, 7.7, 12.9, 19.3};
const std::vector<double> kZ = {0.3, 4.1, 6.7, 5.9, 2.2};

}  // namespace

TEST(Gensrf, AsStoredTheInnerPointsAreTheStoredPointsExactly) {
    Polyline p = transform(kX, kZ, 0.0, 0.0, 1.0, 1.0);
    for (size_t i = 0; i < kX.size(); ++i) {
        EXPECT_EQ(p.x[i + 1], kX[i]) << i;
        EXPECT_EQ(p.z[i + 1], kZ[i]) << i;
    }
}

TEST(Gensrf, EndPointsLieAThousandEndSegmentsOutAndUp) {
    Polyline p = transform(kX, kZ, 0.0, 0.0, 1.0, 1.0);
    // First segment (0.1, 0.3) -> (3.3, 4.1): 3.2 right, 3.8 down.
    EXPECT_NEAR(p.x[0], 0.1 - 1000.0 * 3.2, 1e-9);
    EXPECT_NEAR(p.z[0], 0.3 - 1000.0 * 3.8, 1e-9);
    // Last segment (12.9, 5.9) -> (19.3, 2.2): 6.4 right, 3.7 up; the end point still goes up.
    EXPECT_NEAR(p.x[6], 19.3 + 1000.0 * 6.4, 1e-9);
    EXPECT_NEAR(p.z[6], 2.2 - 1000.0 * 3.7, 1e-9);
}

TEST(Gensrf, AnEndSegmentRisingTowardsTheStartStillMovesTheEndPointUp) {
    // The first segment goes up to the right, the last one down: both far points lie above.
    Polyline p = transform({0.0, 2.0, 4.0}, {5.0, 4.0, 6.0}, 0.0, 0.0, 1.0, 1.0);
    EXPECT_DOUBLE_EQ(p.z[0], 5.0 - 1000.0 * 1.0);
    EXPECT_DOUBLE_EQ(p.z[4], 6.0 - 1000.0 * 2.0);
    EXPECT_DOUBLE_EQ(p.x[0], 0.0 - 1000.0 * 2.0);
    EXPECT_DOUBLE_EQ(p.x[4], 4.0 + 1000.0 * 2.0);
}

TEST(Gensrf, ShiftsMoveEveryPoint) {
    Polyline p = transform({0.0, 10.0, 20.0}, {0.0, 4.0, 2.0}, 1.5, -0.5, 1.0, 1.0);
    EXPECT_DOUBLE_EQ(p.x[1], 1.5);
    EXPECT_DOUBLE_EQ(p.x[2], 11.5);
    EXPECT_DOUBLE_EQ(p.x[3], 21.5);
    EXPECT_DOUBLE_EQ(p.z[1], -0.5);
    EXPECT_DOUBLE_EQ(p.z[2], 3.5);
    EXPECT_DOUBLE_EQ(p.z[3], 1.5);
}

TEST(Gensrf, TheXStretchIsAboutTheFirstPoint) {
    Polyline p = transform({4.0, 10.0, 20.0}, {0.0, 4.0, 2.0}, 0.0, 0.0, 2.0, 1.0);
    EXPECT_DOUBLE_EQ(p.x[1], 4.0);
    EXPECT_DOUBLE_EQ(p.x[2], 16.0);
    EXPECT_DOUBLE_EQ(p.x[3], 36.0);
    EXPECT_DOUBLE_EQ(p.z[2], 4.0);
}

TEST(Gensrf, TheZStretchScalesTheDeviationFromTheChord) {
    // Chord from (0, 0) to (20, 4): at x = 10 it lies at z = 2, the point 6 below it.
    Polyline p = transform({0.0, 10.0, 20.0}, {0.0, 8.0, 4.0}, 0.0, 0.0, 1.0, 0.5);
    EXPECT_DOUBLE_EQ(p.z[1], 0.0);
    EXPECT_DOUBLE_EQ(p.z[2], 2.0 + 3.0);
    EXPECT_DOUBLE_EQ(p.z[3], 4.0);
    p = transform({0.0, 10.0, 20.0}, {0.0, 8.0, 4.0}, 0.0, 0.0, 1.0, 2.0);
    EXPECT_DOUBLE_EQ(p.z[2], 2.0 + 12.0);
}

TEST(Gensrf, TheChordHeightIsTakenAtTheUnstretchedX) {
    // Stretched to x = 20 the point keeps the chord height of x = 10 (2, not 4): z = 2 + 6.
    Polyline p = transform({0.0, 10.0, 20.0}, {0.0, 8.0, 4.0}, 0.0, 0.0, 2.0, 1.0);
    EXPECT_DOUBLE_EQ(p.x[2], 20.0);
    EXPECT_DOUBLE_EQ(p.z[2], 8.0);
    p = transform({0.0, 10.0, 20.0}, {0.0, 8.0, 4.0}, 0.0, 0.0, 2.0, 0.5);
    EXPECT_DOUBLE_EQ(p.z[2], 5.0);
}

TEST(Gensrf, AllModificationsTogether) {
    // x = 2 + 1 + 1.5 (x0 - 2); z = zc - 1 + 3 (z0 - zc), chord from (2, 1) to (8, 4).
    const std::vector<double> xg = {2.0, 4.0, 8.0};
    const std::vector<double> zg = {1.0, 5.0, 4.0};
    Polyline p = transform(xg, zg, 1.0, -1.0, 1.5, 3.0);
    const double chordAt4 = 1.0 + 0.5 * 2.0;
    EXPECT_DOUBLE_EQ(p.x[2], 2.0 + 1.0 + 1.5 * 2.0);
    EXPECT_DOUBLE_EQ(p.z[2], chordAt4 - 1.0 + 3.0 * (5.0 - chordAt4));
    EXPECT_DOUBLE_EQ(p.x[3], 2.0 + 1.0 + 1.5 * 6.0);
    EXPECT_DOUBLE_EQ(p.z[3], 4.0 - 1.0);
    // The far points continue the transformed end segments.
    EXPECT_DOUBLE_EQ(p.x[0], p.x[1] - 1000.0 * (p.x[2] - p.x[1]));
    EXPECT_DOUBLE_EQ(p.z[0], p.z[1] - 1000.0 * std::fabs(p.z[2] - p.z[1]));
    EXPECT_DOUBLE_EQ(p.x[4], p.x[3] + 1000.0 * (p.x[3] - p.x[2]));
    EXPECT_DOUBLE_EQ(p.z[4], p.z[3] - 1000.0 * std::fabs(p.z[2] - p.z[3]));
}

TEST(Gensrf, TheEndValuesAreTheFirstAndLastTransformedStoredPoints) {
    Polyline p = transform(kX, kZ, 2.0, 1.0, 1.2, 0.8);
    EXPECT_EQ(p.ends[0], p.x[1]);
    EXPECT_EQ(p.ends[1], p.z[1]);
    EXPECT_EQ(p.ends[2], p.x[5]);
    EXPECT_EQ(p.ends[3], p.z[5]);
    EXPECT_DOUBLE_EQ(p.ends[0], 2.1);
    EXPECT_DOUBLE_EQ(p.ends[1], 1.3);
}

TEST(Gensrf, TwoPointsMakeAStraightLineProlongedBothWays) {
    Polyline p = transform({1.0, 3.0}, {2.0, 3.0}, 0.0, 0.0, 1.0, 1.0);
    ASSERT_EQ(p.x.size(), 4u);
    EXPECT_DOUBLE_EQ(p.x[0], 1.0 - 2000.0);
    EXPECT_DOUBLE_EQ(p.z[0], 2.0 - 1000.0);
    EXPECT_DOUBLE_EQ(p.x[3], 3.0 + 2000.0);
    EXPECT_DOUBLE_EQ(p.z[3], 3.0 - 1000.0);
}

TEST(Gensrf, FewerThanTwoPointsWriteNothing) {
    Polyline p = transform({5.0}, {1.0}, 0.0, 0.0, 1.0, 1.0);
    for (double v : p.x) EXPECT_EQ(v, -7.0);
    for (double v : p.z) EXPECT_EQ(v, -7.0);
    EXPECT_EQ(p.ends[0], 0.0);
}
