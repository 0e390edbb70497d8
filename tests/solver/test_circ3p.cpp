// CIRC3P: the circle through three points, and each way it can fail.

#include <gtest/gtest.h>

#include <cmath>

#include "solver/solver.h"

namespace {

void pointOn(double xc, double zc, double radius, double angle, double& x, double& z) {
    x = xc + radius * std::cos(angle);
    z = zc + radius * std::sin(angle);
}

}  // namespace

TEST(Circ3p, FindsTheCircleThroughThreePointsOfAKnownCircle) {
    const double xc = 12.5, zc = -7.25, radius = 18.0;
    const double angles[][3] = {{0.3, 1.2, 2.6}, {2.9, 0.1, 1.7}, {-0.4, 0.5, 1.4}, {4.0, 5.0, 6.0}};
    for (const auto& set : angles) {
        double x[3], z[3];
        for (int k = 0; k < 3; ++k) pointOn(xc, zc, radius, set[k], x[k], z[k]);
        double XC = 0.0, ZC = 0.0, RAD = 0.0;
        int ierr = -7;
        CIRC3P(x, z, XC, ZC, RAD, ierr);
        EXPECT_EQ(ierr, 0);
        EXPECT_NEAR(XC, xc, 1.0E-10);
        EXPECT_NEAR(ZC, zc, 1.0E-10);
        EXPECT_NEAR(RAD, radius, 1.0E-10);
    }
}

TEST(Circ3p, ThreeBasePointsOfASlipCircleGiveItsCentre) {
    // Base corners of a slip surface (z downward) on the circle about (20, -5) of radius 25.
    const double xc = 20.0, zc = -5.0, radius = 25.0;
    double x[3] = {2.0, 20.0, 38.0}, z[3];
    for (int k = 0; k < 3; ++k) z[k] = zc + std::sqrt(radius * radius - (x[k] - xc) * (x[k] - xc));
    double XC = 0.0, ZC = 0.0, RAD = 0.0;
    int ierr = -7;
    CIRC3P(x, z, XC, ZC, RAD, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_NEAR(XC, xc, 1.0E-10);
    EXPECT_NEAR(ZC, zc, 1.0E-10);
    EXPECT_NEAR(RAD, radius, 1.0E-10);
}

TEST(Circ3p, CoincidingPointsAreErrors1To3) {
    double XC, ZC, RAD;
    int ierr = 0;
    {
        const double x[3] = {1.0, 1.0 + 5.0E-7, 4.0}, z[3] = {2.0, 2.0, 0.0};
        CIRC3P(x, z, XC, ZC, RAD, ierr);
        EXPECT_EQ(ierr, 1);
    }
    {
        const double x[3] = {1.0, 3.0, 1.0}, z[3] = {2.0, 0.0, 2.0 + 5.0E-7};
        CIRC3P(x, z, XC, ZC, RAD, ierr);
        EXPECT_EQ(ierr, 2);
    }
    {
        const double x[3] = {1.0, 3.0, 3.0}, z[3] = {2.0, 0.0, 0.0};
        CIRC3P(x, z, XC, ZC, RAD, ierr);
        EXPECT_EQ(ierr, 3);
    }
    {
        // Points 1e-5 apart are distinct (squared distance 1e-10).
        const double x[3] = {0.0, 1.0E-5, 0.0}, z[3] = {0.0, 0.0, 1.0E-5};
        CIRC3P(x, z, XC, ZC, RAD, ierr);
        EXPECT_EQ(ierr, 0);
        EXPECT_NEAR(XC, 0.5E-5, 1.0E-15);
        EXPECT_NEAR(ZC, 0.5E-5, 1.0E-15);
    }
}

TEST(Circ3p, ThreeBasePointsOnAStraightLineAreError4) {
    // A planar slip surface: corner 4 of slice 1, of the middle slice and corner 3 of the last.
    const double x[3] = {0.0, 10.0, 30.0}, z[3] = {0.0, 5.0, 15.0};
    double XC = 0.0, ZC = 0.0, RAD = 0.0;
    int ierr = 0;
    CIRC3P(x, z, XC, ZC, RAD, ierr);
    EXPECT_EQ(ierr, 4);
}

TEST(Circ3p, DistancesThatDisagreeAreError5) {
    // Coordinates near the overflow limit: the centre cannot be represented, and its
    // distances to the points are no longer equal.
    const double big = 1.0E200;
    const double x[3] = {0.0, big, 2.0 * big}, z[3] = {0.0, big, 0.0};
    double XC = 0.0, ZC = 0.0, RAD = 0.0;
    int ierr = 0;
    CIRC3P(x, z, XC, ZC, RAD, ierr);
    EXPECT_EQ(ierr, 5);
}
