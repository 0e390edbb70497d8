// TRIANG: absolute area of a triangle.

#include <gtest/gtest.h>

#include "slices/slices.h"

TEST(Triang, RightTriangleHasHalfTheProductOfItsLegs) {
    double x[3] = {0.0, 4.0, 0.0};
    double z[3] = {0.0, 0.0, 3.0};
    double area = -1.0;
    TRIANG(x, z, area);
    EXPECT_DOUBLE_EQ(area, 6.0);
}

TEST(Triang, AreaIsPositiveWhicheverWayTheVerticesTurn) {
    double x[3] = {1.0, 1.0, 7.0};
    double z[3] = {2.0, -3.0, 2.0};
    double clockwise = 0.0;
    TRIANG(x, z, clockwise);
    double xr[3] = {7.0, 1.0, 1.0};
    double zr[3] = {2.0, -3.0, 2.0};
    double counter = 0.0;
    TRIANG(xr, zr, counter);
    EXPECT_DOUBLE_EQ(clockwise, 15.0);  // base 6, height 5
    EXPECT_DOUBLE_EQ(counter, 15.0);
}

TEST(Triang, ThreePointsOnALineHaveNoArea) {
    double x[3] = {0.0, 1.0, 3.0};
    double z[3] = {0.0, 2.0, 6.0};
    double area = 1.0;
    TRIANG(x, z, area);
    EXPECT_DOUBLE_EQ(area, 0.0);
}
