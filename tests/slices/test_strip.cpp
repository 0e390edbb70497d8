// STRIP: resultant of a strip load on a slice top, checked against integrals of the load
// intensity over the loaded part of the top (Simpson's rule, exact for these polynomials).

#include <gtest/gtest.h>

#include <algorithm>

#include "slices/slices.h"
#include "slice_world.h"

using kalmo_test::simpson;

namespace {

struct Slice {
    double x[5];
    double z[5];
};

// Slice with top from (x1, z1) to (x2, z2) and load point (x5, z5).
Slice slice(double x1, double x2, double z1, double z2, double x5, double z5) {
    return Slice{{x1, x2, x2, x1, x5}, {z1, z2, z2 + 10.0, z1 + 10.0, z5}};
}

struct Result {
    double FX, FZ, M, M3;
};

Result strip(const Slice& s, double XA, double XB, double QA, double QB, double DA, double DB) {
    Result r{-1.0, -1.0, -1.0, -1.0};
    STRIP(s.x, s.z, XA, XB, QA, QB, DA, DB, r.FX, r.FZ, r.M, r.M3);
    return r;
}

// The same resultant by integration over the overlap of strip and slice top.
Result integrated(const Slice& s, double XA, double XB, double QA, double QB, double DA, double DB) {
    double a = std::max(XA, s.x[0]);
    double b = std::min(XB, s.x[1]);
    auto q = [&](double x) { return QA + (QB - QA) * (x - XA) / (XB - XA); };
    auto d = [&](double x) { return DA + (DB - DA) * (x - XA) / (XB - XA); };
    auto zTop = [&](double x) { return s.z[0] + (s.z[1] - s.z[0]) * (x - s.x[0]) / (s.x[1] - s.x[0]); };
    Result r{};
    r.FX = simpson(d, a, b);
    r.FZ = simpson(q, a, b);
    // About the load point: a vertical load at x turns by (x5 - x), a horizontal one by (z - z5).
    r.M = simpson([&](double x) { return q(x) * (s.x[4] - x) + d(x) * (zTop(x) - s.z[4]); }, a, b);
    r.M3 = simpson([&](double x) { return q(x) * (s.x[1] - x); }, a, b);
    return r;
}

void expectSame(const Result& got, const Result& want) {
    EXPECT_NEAR(got.FX, want.FX, 1e-9);
    EXPECT_NEAR(got.FZ, want.FZ, 1e-9);
    EXPECT_NEAR(got.M, want.M, 1e-9);
    EXPECT_NEAR(got.M3, want.M3, 1e-9);
}

}  // namespace

TEST(Strip, TrapezoidalLoadOverPartOfASlopingTopGivesItsResultantAndMoments) {
    // Slice top from (0, 0) to (4, 2); the strip starts inside the slice at x = 2 and runs on
    // to x = 6, vertical intensity 10 -> 30, horizontal 4 -> -2.
    Slice s = slice(0.0, 4.0, 0.0, 2.0, 1.8, 5.5);
    Result got = strip(s, 2.0, 6.0, 10.0, 30.0, 4.0, -2.0);
    // By hand: over [2, 4] the vertical intensity goes 10 -> 20, resultant 30 at
    // x = 2 + 2 (10 + 2 * 20) / (3 * 30) = 2 + 10/9 from the left, so 40/9 .. about x1.
    EXPECT_NEAR(got.FZ, 30.0, 1e-12);
    EXPECT_NEAR(got.FX, 0.5 * (4.0 + 1.0) * 2.0, 1e-12);
    EXPECT_NEAR(got.M3, 30.0 * (4.0 - (2.0 + 10.0 / 9.0)), 1e-12);
    expectSame(got, integrated(s, 2.0, 6.0, 10.0, 30.0, 4.0, -2.0));
}

TEST(Strip, StripCoveringTheSliceIsCutAtBothSides) {
    Slice s = slice(3.0, 5.0, 1.0, 0.5, 4.1, 4.0);
    expectSame(strip(s, 0.0, 10.0, 5.0, 25.0, 1.0, 3.0), integrated(s, 0.0, 10.0, 5.0, 25.0, 1.0, 3.0));
}

TEST(Strip, StripInsideTheSliceActsWhole) {
    Slice s = slice(0.0, 10.0, 0.0, 3.0, 5.2, 6.0);
    Result got = strip(s, 2.0, 7.0, 8.0, 2.0, -1.0, 1.0);
    EXPECT_NEAR(got.FZ, 25.0, 1e-12);
    expectSame(got, integrated(s, 2.0, 7.0, 8.0, 2.0, -1.0, 1.0));
}

TEST(Strip, StripFromTheLeftEndingInsideTheSlice) {
    Slice s = slice(2.0, 6.0, 2.0, 0.0, 4.3, 7.0);
    expectSame(strip(s, -1.0, 3.5, 12.0, 6.0, 0.0, 2.0), integrated(s, -1.0, 3.5, 12.0, 6.0, 0.0, 2.0));
}

TEST(Strip, StripMissingTheSliceGivesNothing) {
    Slice s = slice(2.0, 6.0, 2.0, 0.0, 4.3, 7.0);
    Result left = strip(s, -5.0, 1.9, 10.0, 10.0, 1.0, 1.0);
    Result right = strip(s, 6.1, 9.0, 10.0, 10.0, 1.0, 1.0);
    for (const Result& r : {left, right}) {
        EXPECT_EQ(r.FX, 0.0);
        EXPECT_EQ(r.FZ, 0.0);
        EXPECT_EQ(r.M, 0.0);
        EXPECT_EQ(r.M3, 0.0);
    }
}

TEST(Strip, ZeroLengthStripOrZeroWidthSliceGivesNothing) {
    Slice s = slice(2.0, 6.0, 2.0, 0.0, 4.3, 7.0);
    Result point = strip(s, 3.0, 3.0 + 5.0e-7, 10.0, 10.0, 1.0, 1.0);
    EXPECT_EQ(point.FZ, 0.0);
    EXPECT_EQ(point.M, 0.0);
    Slice thin = slice(2.0, 2.0 + 5.0e-7, 2.0, 2.0, 2.0, 7.0);
    Result none = strip(thin, 0.0, 5.0, 10.0, 10.0, 1.0, 1.0);
    EXPECT_EQ(none.FZ, 0.0);
    EXPECT_EQ(none.FX, 0.0);
    EXPECT_EQ(none.M3, 0.0);
}
