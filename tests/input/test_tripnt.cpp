// TRIPNT: point in a material triangle, edges and vertices counted inside within 1.0E-6.

#include <gtest/gtest.h>

#include "input/input.h"

namespace {

int inTriangle(const double (&xv)[3], const double (&zv)[3], double x, double z) {
    int inside = -1;
    TRIPNT(xv, zv, x, z, inside);
    return inside;
}

// Vertices (0, 0), (4, -4), (8, 0): the second vertex lies above the long edge.
constexpr double kX[3] = {0.0, 4.0, 8.0};
constexpr double kZ[3] = {0.0, -4.0, 0.0};

}  // namespace

TEST(Tripnt, APointWithinTheTriangleIsInside) {
    EXPECT_EQ(inTriangle(kX, kZ, 4.0, -1.0), 1);
    EXPECT_EQ(inTriangle(kX, kZ, 2.0, -1.0), 1);
    EXPECT_EQ(inTriangle(kX, kZ, 7.0, -0.5), 1);
}

TEST(Tripnt, APointOnAnEdgeIsInside) {
    EXPECT_EQ(inTriangle(kX, kZ, 2.0, 0.0), 1);   // long edge 1-3
    EXPECT_EQ(inTriangle(kX, kZ, 2.0, -2.0), 1);  // edge 1-2
    EXPECT_EQ(inTriangle(kX, kZ, 6.0, -2.0), 1);  // edge 2-3
    EXPECT_EQ(inTriangle(kX, kZ, 2.0, 0.9e-6), 1);
    EXPECT_EQ(inTriangle(kX, kZ, 2.0, -2.0 - 0.9e-6), 1);
}

TEST(Tripnt, AVertexIsInside) {
    EXPECT_EQ(inTriangle(kX, kZ, 0.0, 0.0), 1);
    EXPECT_EQ(inTriangle(kX, kZ, 4.0, -4.0), 1);
    EXPECT_EQ(inTriangle(kX, kZ, 8.0, 0.0), 1);
}

TEST(Tripnt, APointBeyondTheToleranceIsOutside) {
    EXPECT_EQ(inTriangle(kX, kZ, 2.0, 1.0e-5), 0);
    EXPECT_EQ(inTriangle(kX, kZ, 2.0, -2.0 - 1.0e-5), 0);
    EXPECT_EQ(inTriangle(kX, kZ, 4.0, -4.0 - 1.0e-5), 0);
    EXPECT_EQ(inTriangle(kX, kZ, -1.0e-5, 0.0), 0);
    EXPECT_EQ(inTriangle(kX, kZ, 8.0 + 1.0e-5, 0.0), 0);
    EXPECT_EQ(inTriangle(kX, kZ, 4.0, 3.0), 0);
    EXPECT_EQ(inTriangle(kX, kZ, 20.0, -1.0), 0);
}

TEST(Tripnt, ATriangleWithoutWidthHoldsNothing) {
    const double xv[3] = {1.0, 1.0, 1.0};
    const double zv[3] = {0.0, 1.0, 2.0};
    EXPECT_EQ(inTriangle(xv, zv, 1.0, 1.0), 0);
}

TEST(Tripnt, AVerticalEdgeOnTheLeftBoundsTheTriangle) {
    // Vertices (0, -4), (0, 0), (4, 0): edge 1-2 is vertical.
    const double xv[3] = {0.0, 0.0, 4.0};
    const double zv[3] = {-4.0, 0.0, 0.0};
    EXPECT_EQ(inTriangle(xv, zv, 0.0, -2.0), 1);
    EXPECT_EQ(inTriangle(xv, zv, 1.0, -1.0), 1);
    EXPECT_EQ(inTriangle(xv, zv, 1.0, -3.0), 1);
    EXPECT_EQ(inTriangle(xv, zv, 1.0, -3.5), 0);
    EXPECT_EQ(inTriangle(xv, zv, 1.0, 0.5), 0);
}

TEST(Tripnt, AVerticalEdgeOnTheRightBoundsTheTriangle) {
    // Vertices (0, 0), (4, -4), (4, 0): edge 2-3 is vertical.
    const double xv[3] = {0.0, 4.0, 4.0};
    const double zv[3] = {0.0, -4.0, 0.0};
    EXPECT_EQ(inTriangle(xv, zv, 3.0, -2.0), 1);
    EXPECT_EQ(inTriangle(xv, zv, 3.0, -3.5), 0);
    EXPECT_EQ(inTriangle(xv, zv, 4.0, 0.0), 1);
}
