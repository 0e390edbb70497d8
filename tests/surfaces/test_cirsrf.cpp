// CIRSRF: the polyline of a circle, its lower half between two long 45-degree rays.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "records.h"
#include "surfaces/surfaces.h"

namespace {

const double kPi = 3.14159265358979323846;

struct Polyline {
    std::vector<double> x = std::vector<double>(MAXPTS, -7.0), z = std::vector<double>(MAXPTS, -7.0);
    double spar[3] = {0.0, 0.0, 0.0};
};

class CirsrfTest : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        MASTER.PI = 4.0 * std::atan(1.0);
    }
};

}  // namespace

TEST_F(CirsrfTest, SixtyOnePointsLieOnTheLowerHalfAtEqualAngles) {
    // 20 slices make 2 * 30 + 1 points in the circle search; m = 30, angle step 3 degrees.
    Polyline p;
    int points = 61;
    const double xc = 12.5, zc = -4.0, R = 17.0;
    CIRSRF(points, xc, zc, R, p.x.data(), p.z.data(), p.spar);
    EXPECT_EQ(points, 61);
    for (int k = 2; k <= 60; ++k) {
        const double dx = p.x[k - 1] - xc, dz = p.z[k - 1] - zc;
        EXPECT_NEAR(std::hypot(dx, dz), R, 1e-12) << k;
        EXPECT_GT(dz, 0.0) << k;  // below the centre
        // Point k sits (k - 1) * 3 degrees below the centre level on the left half, the right
        // half mirrored.
        const double angle = std::asin(dz / R);
        const int steps = k <= 31 ? k - 1 : 61 - k;
        EXPECT_NEAR(angle, steps * kPi / 60.0, 1e-12) << k;
        if (k < 31) {
            EXPECT_LT(dx, 0.0) << k;
        }
        if (k > 31) {
            EXPECT_GT(dx, 0.0) << k;
        }
        EXPECT_GT(p.x[k - 1], p.x[k - 2]) << k;  // left to right
    }
    EXPECT_EQ(p.x[30], xc);  // point m + 1 is the lowest
    EXPECT_EQ(p.z[30], zc + R);
    // The rays: 100 R out and 100 R up from the second and the last-but-one point.
    EXPECT_DOUBLE_EQ(p.x[0], p.x[1] - 100.0 * R);
    EXPECT_DOUBLE_EQ(p.z[0], p.z[1] - 100.0 * R);
    EXPECT_DOUBLE_EQ(p.x[60], p.x[59] + 100.0 * R);
    EXPECT_DOUBLE_EQ(p.z[60], p.z[59] - 100.0 * R);
    EXPECT_EQ(p.x[61], -7.0);  // nothing beyond the last point
    EXPECT_EQ(p.spar[0], xc);
    EXPECT_EQ(p.spar[1], zc);
    EXPECT_EQ(p.spar[2], R);
}

TEST_F(CirsrfTest, FewerThanFivePointsAreRaisedToFive) {
    Polyline p;
    int points = 1;
    CIRSRF(points, 0.0, 0.0, 2.0, p.x.data(), p.z.data(), p.spar);
    EXPECT_EQ(points, 5);
    // m = 2, step 45 degrees: one point on each side at 45 degrees, the lowest in the middle.
    const double side = 2.0 * std::sqrt(0.5);
    EXPECT_NEAR(p.x[1], -side, 1e-12);
    EXPECT_NEAR(p.z[1], side, 1e-12);
    EXPECT_EQ(p.x[2], 0.0);
    EXPECT_EQ(p.z[2], 2.0);
    EXPECT_NEAR(p.x[3], side, 1e-12);
    EXPECT_NEAR(p.z[3], side, 1e-12);
    EXPECT_EQ(p.x[5], -7.0);
}

TEST_F(CirsrfTest, MoreThanThePolylineHoldsIsHeldToItsLength) {
    Polyline p;
    int points = 1000;
    CIRSRF(points, 0.0, 0.0, 2.0, p.x.data(), p.z.data(), p.spar);
    EXPECT_EQ(points, MAXPTS);
    EXPECT_DOUBLE_EQ(p.z[MAXPTS - 1], p.z[MAXPTS - 2] - 200.0);
}

TEST_F(CirsrfTest, CirclesOfDifferentPointCountsOneAfterAnotherEachLieAtTheirOwnAngles) {
    // A search that changes its slice count divides its circles anew: 61 points (3-degree
    // steps), then 151 (1.2 degrees), then 61 again, each checked against its own angles.
    for (int points : {61, 151, 61}) {
        Polyline p;
        int n = points;
        const double xc = 3.0, zc = 2.0, R = 9.0;
        CIRSRF(n, xc, zc, R, p.x.data(), p.z.data(), p.spar);
        ASSERT_EQ(n, points);
        const int m = points / 2;
        for (int k = 2; k <= m + 1; ++k) {
            const double expectedDz = R * std::sin((k - 1) * (kPi / 2.0 / m));
            EXPECT_NEAR(p.z[k - 1] - zc, expectedDz, 1e-12) << points << " points, point " << k;
            EXPECT_NEAR(p.z[points - k] - zc, expectedDz, 1e-12) << points << " points, point " << points + 1 - k;
        }
    }
}
