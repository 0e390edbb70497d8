// COMLOW: the combined surfaces under a foundation base, checked against the geometry the
// surface is built from: a continuous line of the stated point count that starts with the
// entry plane rising at 45 + phi/2, ends with the exit plane rising at 45 - phi/2, follows
// the fans about the corners and the arc about the centre, and touches the base level under
// the centre.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "records.h"
#include "surfaces/surfaces.h"

namespace {

const double kPi = 3.14159265358979323846;
const double kDegree = kPi / 180.0;

class Comlow : public ::testing::Test {
protected:
    Comlow() {
        clearRecords();
        MASTER.PI = 4.0 * std::atan(1.0);
    }
    // Base from x = 0 to 4 at z = 1.
    int make(double xc, double zc, double phi, int beam = 1) {
        npts = -7;
        COMLOW(0.0, 4.0, 1.0, xc, zc, phi, beam, npts, SURF.XS, SURF.ZS, SURF.SPAR, ierr);
        return ierr;
    }
    static double rise(int k) {  // rise angle of the segment from point k to k + 1, degrees
        return std::atan2(SURF.ZS(k) - SURF.ZS(k + 1), std::fabs(SURF.XS(k + 1) - SURF.XS(k))) / kDegree;
    }
    static double longestInnerStep() {
        double longest = 0.0;
        for (int k = 3; k < 125; ++k)
            longest = std::max(longest, std::hypot(SURF.XS(k + 1) - SURF.XS(k), SURF.ZS(k + 1) - SURF.ZS(k)));
        return longest;
    }
    int npts = 0, ierr = -1;
};

}  // namespace

TEST_F(Comlow, ACentreRightOfTheLeftCornerGivesTwoFansAndTheArc) {
    ASSERT_EQ(make(1.5, 4.0, 30.0), 0);
    ASSERT_EQ(npts, 127);
    const double R0 = 3.0, aL = std::atan(1.5 / R0), aR = std::atan(2.5 / R0);
    const double rL = R0 / std::cos(aL) - R0, rR = R0 / std::cos(aR) - R0;
    // Entry plane rises to the left at 45 + 15 = 60 degrees, exit plane to the right at 30.
    EXPECT_NEAR(rise(1), -60.0, 1e-9);  // from point 1 down to 2: it falls at 60 to the right
    EXPECT_NEAR(rise(2), -60.0, 1e-9);
    EXPECT_NEAR(rise(125), 30.0, 1e-9);
    EXPECT_NEAR(rise(126), 30.0, 1e-9);
    // Left fan: points 3..27 at radius rL about the left corner; the last points at the centre.
    for (int k = 3; k <= 27; ++k) EXPECT_NEAR(std::hypot(SURF.XS(k), SURF.ZS(k) - 1.0), rL, 1e-12) << k;
    EXPECT_NEAR(SURF.XS(27), rL * std::sin(aL), 1e-12);
    // Arc: points 27..76 at radius R0 about the centre, touching the base level under it.
    for (int k = 27; k <= 76; ++k) EXPECT_NEAR(std::hypot(SURF.XS(k) - 1.5, SURF.ZS(k) - 4.0), R0, 1e-12) << k;
    double highest = 1e9;
    for (int k = 27; k <= 76; ++k) highest = std::min(highest, SURF.ZS(k));
    EXPECT_GE(highest, 1.0 - 1e-12);
    EXPECT_LT(highest, 1.0 + 0.01);
    // Right fan: points 76..125 at radius rR about the right corner.
    for (int k = 76; k <= 125; ++k) EXPECT_NEAR(std::hypot(SURF.XS(k) - 4.0, SURF.ZS(k) - 1.0), rR, 1e-12) << k;
    // The entry plane touches the left fan (radius at right angles to it), the exit plane the right.
    EXPECT_NEAR((SURF.XS(3) - 0.0) * (SURF.XS(2) - SURF.XS(3)) + (SURF.ZS(3) - 1.0) * (SURF.ZS(2) - SURF.ZS(3)), 0.0,
                1e-12);
    EXPECT_NEAR((SURF.XS(125) - 4.0) * (SURF.XS(126) - SURF.XS(125)) +
                    (SURF.ZS(125) - 1.0) * (SURF.ZS(126) - SURF.ZS(125)),
                0.0, 1e-12);
    // Continuous, left to right: no step longer than a fan's or the arc's point spacing.
    EXPECT_LT(longestInnerStep(), 0.1);
    for (int k = 1; k < 127; ++k) EXPECT_LT(SURF.XS(k), SURF.XS(k + 1)) << k;
}

TEST_F(Comlow, ACentreAtOrLeftOfTheLeftCornerHasNoLeftFan) {
    ASSERT_EQ(make(-1.0, 3.0, 0.0), 0);
    ASSERT_EQ(npts, 127);
    EXPECT_EQ(SURF.XS(3), 0.0);  // the entry plane starts at the left corner
    EXPECT_EQ(SURF.ZS(3), 1.0);
    EXPECT_NEAR(rise(2), -45.0, 1e-9);
    EXPECT_NEAR(rise(125), 45.0, 1e-9);
    const double R = std::hypot(1.0, 2.0);
    for (int k = 3; k <= 76; ++k) EXPECT_NEAR(std::hypot(SURF.XS(k) + 1.0, SURF.ZS(k) - 3.0), R, 1e-12) << k;
    const double rR = std::hypot(5.0, 2.0) - R;
    for (int k = 76; k <= 125; ++k) EXPECT_NEAR(std::hypot(SURF.XS(k) - 4.0, SURF.ZS(k) - 1.0), rR, 1e-12) << k;
    // The longest step is one of the right fan: rR times its turn (45 + 68.2 degrees) / 49.
    EXPECT_LT(longestInnerStep(), rR * (kPi / 4.0 + std::atan(2.5)) / 49.0 + 1e-9);
}

TEST_F(Comlow, TheBeamShapeStartsUnderTheCentreAndNeverRisesAboveTheBase) {
    ASSERT_EQ(make(1.5, 4.0, 30.0, 2), 0);
    ASSERT_EQ(npts, 127);
    EXPECT_EQ(SURF.XS(3), 1.5);
    EXPECT_EQ(SURF.ZS(3), 1.0);
    EXPECT_NEAR(rise(2), -60.0, 1e-9);
    EXPECT_NEAR(rise(125), 30.0, 1e-9);
    for (int k = 3; k <= 125; ++k) EXPECT_GE(SURF.ZS(k), 1.0) << k;
    // 122 equal x-steps to where the exit plane of type 2 starts.
    const double step = SURF.XS(4) - SURF.XS(3);
    for (int k = 4; k <= 125; ++k) EXPECT_NEAR(SURF.XS(k) - SURF.XS(k - 1), step, 1e-12) << k;
    const double R0 = 3.0, aR = std::atan(2.5 / R0), rR = R0 / std::cos(aR) - R0, gamma = 60.0 * kDegree;
    EXPECT_NEAR(SURF.XS(125), 4.0 + rR * std::cos(gamma), 1e-12);
    EXPECT_NEAR(SURF.ZS(125), 1.0 + rR * std::sin(gamma), 1e-12);
    EXPECT_EQ(SURF.SPAR(7), 2.5);
}

TEST_F(Comlow, TypeThreeWithTheCentreLeftOfTheCornerIsTheTypeTwoSurface) {
    ASSERT_EQ(make(-1.0, 3.0, 0.0, 2), 0);
    double x[127], z[127];
    for (int k = 1; k <= 127; ++k) {
        x[k - 1] = SURF.XS(k);
        z[k - 1] = SURF.ZS(k);
    }
    ASSERT_EQ(make(-1.0, 3.0, 0.0, 1), 0);
    for (int k = 1; k <= 127; ++k) {
        EXPECT_EQ(x[k - 1], SURF.XS(k)) << k;
        EXPECT_EQ(z[k - 1], SURF.ZS(k)) << k;
    }
}

TEST_F(Comlow, TheSurfaceParametersNameTheBaseTheCentreAndTheExitAngle) {
    ASSERT_EQ(make(1.5, 4.0, 30.0), 0);
    const double expected[7] = {0.0, 4.0, 1.0, 1.5, 4.0, 30.0, 1.5};
    for (int k = 1; k <= 7; ++k) EXPECT_EQ(SURF.SPAR(k), expected[k - 1]) << k;
}

TEST_F(Comlow, BadCentresAndBeamCodesMakeNoPolyline) {
    EXPECT_EQ(make(1.5, 1.0, 30.0), 1);  // centre on the base level
    EXPECT_EQ(npts, -7);
    EXPECT_EQ(make(4.0, 4.0, 30.0), 2);  // centre under the right corner
    EXPECT_EQ(make(1.5, 4.0, 30.0, 3), 3);
    EXPECT_EQ(make(1.5, 4.0, 30.0, 0), 3);
    EXPECT_EQ(npts, -7);
}
