// COMSRF: the combined surface of a slope, checked against its geometry: the entry plane is
// the tangent from the entry point to the circle, the arc lies on the circle, and the exit
// plane leaves the arc as its tangent at the exit angle.

#include <gtest/gtest.h>

#include <cmath>

#include "io/channels.h"
#include "records.h"
#include "support/tempdir.h"
#include "surfaces/surfaces.h"

namespace {

const double kPi = 3.14159265358979323846;

class Comsrf : public ::testing::Test {
protected:
    Comsrf() {
        clearRecords();
        io::resetAll();
        MASTER.PI = 4.0 * std::atan(1.0);
        io::openNew(12, dir.path("SVAR.EKO"));
    }
    ~Comsrf() override { io::resetAll(); }

    // Entry (0, 0), centre (10, -2), radius 8, exit plane at 30 degrees, 21 arc points.
    int make(double R = 8.0, double beta = 30.0 * kPi / 180.0, int n = 21, double xc = 10.0, double zc = -2.0) {
        radius = R;
        angle = beta;
        npts = n;
        COMSRF(0.0, 0.0, xc, zc, radius, angle, SURF.XS, SURF.ZS, SURF.SPAR, npts, 12, ierr);
        return ierr;
    }
    std::string console() const { return io::contents(12); }

    kalmo_test::TempDir dir;
    double radius = 0.0, angle = 0.0;
    int npts = 0, ierr = -99;
};

}  // namespace

TEST_F(Comsrf, TheArcLiesOnTheCircleBetweenTheTwoTangentPoints) {
    ASSERT_EQ(make(), 0);
    EXPECT_EQ(npts, 25);  // 21 arc points, the entry point and a far one, two on the exit plane
    for (int k = 3; k <= 23; ++k) EXPECT_NEAR(std::hypot(SURF.XS(k) - 10.0, SURF.ZS(k) + 2.0), 8.0, 1e-12) << k;
    // Entry plane: point 2 is the entry point, point 3 the tangent point; the radius there is
    // at right angles to the plane.
    EXPECT_EQ(SURF.XS(2), 0.0);
    EXPECT_EQ(SURF.ZS(2), 0.0);
    const double px = SURF.XS(3), pz = SURF.ZS(3);
    EXPECT_NEAR((px - 0.0) * (px - 10.0) + (pz - 0.0) * (pz + 2.0), 0.0, 1e-9);
    // The returned angle is the entry plane's inclination below the level.
    EXPECT_NEAR(angle, std::atan2(pz, px), 1e-12);
    // By hand: d = sqrt(104), the tangent length sqrt(d^2 - R^2) = sqrt(40).
    EXPECT_NEAR(std::hypot(px, pz), std::sqrt(40.0), 1e-9);
    // Point 1 prolongs the plane upward 1000 times its length.
    EXPECT_NEAR(SURF.XS(1), -1000.0 * px, 1e-6);
    EXPECT_NEAR(SURF.ZS(1), -1000.0 * pz, 1e-6);
}

TEST_F(Comsrf, TheExitPlaneRisesAtTheExitAngleAsTheArcsTangent) {
    ASSERT_EQ(make(), 0);
    const double beta = 30.0 * kPi / 180.0;
    // The last arc point has its radius at beta from the vertical, so the tangent rises at beta.
    EXPECT_NEAR(SURF.XS(23), 10.0 + 8.0 * std::sin(beta), 1e-12);
    EXPECT_NEAR(SURF.ZS(23), -2.0 + 8.0 * std::cos(beta), 1e-12);
    EXPECT_NEAR(SURF.ZS(24), SURF.ZS(23) - 10.0, 1e-12);
    EXPECT_NEAR((SURF.ZS(23) - SURF.ZS(24)) / (SURF.XS(24) - SURF.XS(23)), std::tan(beta), 1e-12);
    EXPECT_NEAR((SURF.ZS(24) - SURF.ZS(25)) / (SURF.XS(25) - SURF.XS(24)), std::tan(beta), 1e-9);
    EXPECT_NEAR(SURF.ZS(25), SURF.ZS(24) - 10000.0, 1e-9);
    // The arc points are equally spaced.
    const double chord = std::hypot(SURF.XS(4) - SURF.XS(3), SURF.ZS(4) - SURF.ZS(3));
    for (int k = 4; k <= 23; ++k)
        EXPECT_NEAR(std::hypot(SURF.XS(k) - SURF.XS(k - 1), SURF.ZS(k) - SURF.ZS(k - 1)), chord, 1e-9) << k;
}

TEST_F(Comsrf, TheSurfaceParametersAreTheEntryTheCircleAndTheNegatedExitAngle) {
    ASSERT_EQ(make(), 0);
    EXPECT_EQ(SURF.SPAR(1), 0.0);
    EXPECT_EQ(SURF.SPAR(2), 10.0);
    EXPECT_EQ(SURF.SPAR(3), -2.0);
    EXPECT_EQ(SURF.SPAR(4), 8.0);
    EXPECT_NEAR(SURF.SPAR(5), -30.0, 1e-12);
    EXPECT_EQ(SURF.SPAR(7), 0.0);  // the result print's COMBINED-1
}

TEST_F(Comsrf, ARadiusReachingTheEntryPointIsMadeJustShorter) {
    ASSERT_EQ(make(20.0), 0);
    EXPECT_EQ(radius, static_cast<double>(0.99999f) * std::sqrt(104.0));
}

TEST_F(Comsrf, ACentreNotRightOfTheEntryPointIsError101) {
    EXPECT_EQ(make(8.0, 0.5, 21, 0.0, 5.0), 101);
    EXPECT_EQ(console(),
              " **** SR/COMSRF PROBLEM   XS,ZS,XC,ZC,R,BETA,IERR,ID=\n"
              " 0.0000E+00 0.0000E+00 0.0000E+00 0.5000E+01 0.8000E+01 0.5000E+00  101 1001\n");
    EXPECT_EQ(npts, 21);
}

TEST_F(Comsrf, AnExitPlaneFlatterThanTwoPercentIsError3) {
    // PHIDGR = 88 gives an exit angle of 1 degree: tan 1 = 0.01746 <= 0.02.
    EXPECT_EQ(make(8.0, (45.0 - 88.0 / 2.0) * kPi / 180.0), 3);
    EXPECT_NE(console().find(" 500\n"), std::string::npos) << console();
    EXPECT_EQ(npts, 21);
    // 1.2 degrees (tan 0.02095) is still accepted.
    EXPECT_EQ(make(8.0, 1.2 * kPi / 180.0), 0);
}

TEST_F(Comsrf, TooFewOrTooManyArcPointsAreKeptWithinThePolyline) {
    ASSERT_EQ(make(8.0, 0.5, 1), 0);
    EXPECT_EQ(npts, 6);
    ASSERT_EQ(make(8.0, 0.5, 1000), 0);
    EXPECT_EQ(npts, MAXPTS);
}
