// LKORS: the crossing of two straight segments, and the parallel tolerance that line control
// passes to it.

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>

#include "records.h"
#include "slices/slices.h"

namespace {

// The tolerance of line control: 0.001 in single precision, its four bytes in the low half of
// a double. Worked out here from the bit pattern 0x3A83126F of 0.001f: 981668463 times the
// smallest denormal 2^-1074.
const double kLineControlTolerance = 981668463.0 * 4.9406564584124654e-324;

struct Crossing {
    double x = -1.0, z = -1.0, t = -1.0;
    int result = -1;
};

Crossing cross(double xa, double za, double xb, double zb, double xc, double zc, double xd, double zd,
               double tol = kLineControlTolerance) {
    Crossing c;
    LKORS(xa, za, xb, zb, xc, zc, xd, zd, tol, c.x, c.z, c.t, c.result);
    return c;
}

}  // namespace

TEST(Lkors, TheToleranceIsTheDenormalOfTheSinglePrecisionThousandth) {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(kLineControlTolerance), 0x3A83126FULL);
    EXPECT_NEAR(kLineControlTolerance, 4.85008663E-315, 1E-323);
}

TEST(Lkors, CrossingSegmentsGiveThePointAndItsFractionAlongTheBase) {
    // A vertical control segment x = 2, z 0..10 against a base from (0, 4) to (4, 6): the
    // lines meet at (2, 5), half way along the base.
    Crossing c = cross(2.0, 0.0, 2.0, 10.0, 0.0, 4.0, 4.0, 6.0);
    EXPECT_EQ(c.result, 2);
    EXPECT_DOUBLE_EQ(c.x, 2.0);
    EXPECT_DOUBLE_EQ(c.z, 5.0);
    EXPECT_DOUBLE_EQ(c.t, 0.5);
}

TEST(Lkors, LinesCrossingBeyondASegmentDoNotCount) {
    // The control segment ends at z = 3, above the base.
    Crossing c = cross(2.0, 0.0, 2.0, 3.0, 0.0, 4.0, 4.0, 6.0);
    EXPECT_EQ(c.result, 1);
    EXPECT_DOUBLE_EQ(c.z, 5.0);
    // The base ends at x = 1.5, short of the control segment: t = 1.25.
    c = cross(2.0, 0.0, 2.0, 10.0, 0.0, 4.0, 1.5, 4.75);
    EXPECT_EQ(c.result, 1);
    EXPECT_DOUBLE_EQ(c.t, 4.0 / 3.0);
}

TEST(Lkors, TouchingAtAnEndPointCounts) {
    // The base ends exactly on the control segment (t = 1), and starts on it (t = 0).
    EXPECT_EQ(cross(2.0, 0.0, 2.0, 10.0, 0.0, 4.0, 2.0, 5.0).result, 2);
    EXPECT_EQ(cross(2.0, 0.0, 2.0, 10.0, 2.0, 5.0, 4.0, 6.0).result, 2);
    // The control segment ends exactly on the base (s = 1 and s = 0).
    Crossing c = cross(2.0, 0.0, 2.0, 5.0, 0.0, 4.0, 4.0, 6.0);
    EXPECT_EQ(c.result, 2);
    EXPECT_EQ(cross(2.0, 5.0, 2.0, 9.0, 0.0, 4.0, 4.0, 6.0).result, 2);
}

TEST(Lkors, ParallelAndCollinearSegmentsAreParallel) {
    Crossing c = cross(0.0, 0.0, 4.0, 2.0, 0.0, 1.0, 4.0, 3.0);
    EXPECT_EQ(c.result, 0);
    EXPECT_EQ(c.x, -1.0);  // nothing written
    // A base lying along the control segment overlaps it but is parallel.
    EXPECT_EQ(cross(0.0, 0.0, 4.0, 2.0, 1.0, 0.5, 3.0, 1.5).result, 0);
}

TEST(Lkors, NearlyParallelSegmentsStillCross) {
    // The cross product is 4 * 1E-4 = 4E-4, below 0.001 but far above the tolerance of line
    // control: a base this close to the control line's direction still crosses it.
    Crossing c = cross(0.0, 0.0, 4.0, 0.0, 0.0, -0.00005, 4.0, 0.00005);
    EXPECT_EQ(c.result, 2);
    EXPECT_NEAR(c.x, 2.0, 1e-9);
    EXPECT_NEAR(c.t, 0.5, 1e-9);
    // The same pair with a tolerance of 0.001 would count as parallel.
    EXPECT_EQ(cross(0.0, 0.0, 4.0, 0.0, 0.0, -0.00005, 4.0, 0.00005, 0.001).result, 0);
}
