// TRILIN: area of a slice between two horizontal lines, checked against a polygon clipped
// by the same lines.

#include <gtest/gtest.h>

#include "slices/slices.h"
#include "slice_world.h"

using kalmo_test::Polygon;
using kalmo_test::slicePolygon;

namespace {
double trilin(const Polygon& p, double zUpper, double zLower) {
    double x[4] = {p.x[0], p.x[1], p.x[2], p.x[3]};
    double z[4] = {p.z[0], p.z[1], p.z[2], p.z[3]};
    double area = -1.0;
    TRILIN(x, z, zUpper, zLower, area);
    return area;
}
}  // namespace

TEST(Trilin, RectangularSliceBetweenTwoLinesIsWidthTimesTheirDistance) {
    Polygon slice = slicePolygon(2.0, 5.0, 1.0, 1.0, 9.0, 9.0);
    EXPECT_NEAR(trilin(slice, 3.0, 4.5), 3.0 * 1.5, 1e-12);
}

TEST(Trilin, LinesOutsideTheSliceLeaveItsWholeAreaOrNothing) {
    Polygon slice = slicePolygon(0.0, 4.0, 0.0, 2.0, 8.0, 5.0);
    EXPECT_NEAR(trilin(slice, -1.0E6, 1.0E6), slice.area(), 1e-9);
    EXPECT_NEAR(trilin(slice, -50.0, -1.0), 0.0, 1e-12);
    EXPECT_NEAR(trilin(slice, 8.5, 100.0), 0.0, 1e-12);
}

TEST(Trilin, LinesCrossingBothSlopingChordsCutTheClippedPolygon) {
    // Top from (0, 0) to (4, 2), base from (0, 5) to (4, 8).
    Polygon slice = slicePolygon(0.0, 4.0, 0.0, 2.0, 8.0, 5.0);
    const double levels[][2] = {{1.0, 6.0}, {-3.0, 1.0}, {1.5, 7.0}, {6.0, 7.5}, {0.5, 1.5}, {2.0, 5.0}};
    for (const auto& pair : levels) {
        double expected = slice.between(pair[0], pair[1]).area();
        EXPECT_NEAR(trilin(slice, pair[0], pair[1]), expected, 1e-12) << pair[0] << " " << pair[1];
    }
}

TEST(Trilin, ChordsRisingToTheRightAreHandledAlike) {
    Polygon slice = slicePolygon(10.0, 13.0, 4.0, 1.0, 6.0, 9.0);
    const double levels[][2] = {{2.0, 7.0}, {0.0, 3.0}, {5.0, 8.0}, {3.0, 3.5}};
    for (const auto& pair : levels) {
        double expected = slice.between(pair[0], pair[1]).area();
        EXPECT_NEAR(trilin(slice, pair[0], pair[1]), expected, 1e-12) << pair[0] << " " << pair[1];
    }
}

TEST(Trilin, LayersStackUpToTheWholeSlice) {
    Polygon slice = slicePolygon(0.0, 4.0, 0.0, 2.0, 8.0, 5.0);
    double total = trilin(slice, -1.0E6, 1.5) + trilin(slice, 1.5, 3.0) + trilin(slice, 3.0, 6.5) +
                   trilin(slice, 6.5, 1.0E6);
    EXPECT_NEAR(total, slice.area(), 1e-9);
}
