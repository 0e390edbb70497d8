// WATER: free water standing on a slice top, checked against the hydrostatic pressure
// integrated along the top (Simpson's rule on the wetted part, exact for these polynomials).

#include <gtest/gtest.h>

#include <algorithm>

#include "slices/slices.h"
#include "slice_world.h"

using kalmo_test::simpson;

namespace {

constexpr double kGamma = 9.81;

struct Slice {
    double x[5];
    double z[5];
};

Slice slice(double x1, double x2, double z1, double z2, double x5, double z5) {
    return Slice{{x1, x2, x2, x1, x5}, {z1, z2, z2 + 10.0, z1 + 10.0, z5}};
}

struct Result {
    double FX, FZ, M;
};

Result water(const Slice& s, double level) {
    Result r{-1.0, -1.0, -1.0};
    WATER(s.x, s.z, level, kGamma, r.FX, r.FZ, r.M);
    return r;
}

// Pressure gamma * (z - level) on the top where it lies under water. Per unit x the water
// pushes along the inward normal of the top: (-dz/dx, 1) times the pressure.
Result integrated(const Slice& s, double level) {
    double x1 = s.x[0], x2 = s.x[1], z1 = s.z[0], z2 = s.z[1];
    double slope = (z2 - z1) / (x2 - x1);
    auto zTop = [&](double x) { return z1 + slope * (x - x1); };
    double a = x1, b = x2;
    if (z1 <= level && z2 > level) a = x1 + (level - z1) / slope;
    if (z2 <= level && z1 > level) b = x1 + (level - z1) / slope;
    Result r{0.0, 0.0, 0.0};
    if (z1 <= level && z2 <= level) return r;
    auto p = [&](double x) { return kGamma * (zTop(x) - level); };
    r.FX = simpson([&](double x) { return -p(x) * slope; }, a, b);
    r.FZ = simpson(p, a, b);
    r.M = simpson([&](double x) { return p(x) * (s.x[4] - x) + (-p(x) * slope) * (zTop(x) - s.z[4]); }, a, b);
    return r;
}

void expectSame(const Result& got, const Result& want) {
    EXPECT_NEAR(got.FX, want.FX, 1e-9);
    EXPECT_NEAR(got.FZ, want.FZ, 1e-9);
    EXPECT_NEAR(got.M, want.M, 1e-9);
}

}  // namespace

TEST(Water, TopAboveTheWaterCarriesNothing) {
    Slice s = slice(0.0, 4.0, 1.0, 3.0, 2.0, 6.0);
    Result r = water(s, 3.5);
    EXPECT_EQ(r.FX, 0.0);
    EXPECT_EQ(r.FZ, 0.0);
    EXPECT_EQ(r.M, 0.0);
}

TEST(Water, WholeSlopingTopUnderWaterCarriesTheWaterColumnAndItsThrust) {
    // Top from (0, 2) to (4, 5), water level at z = 1: the column over the top weighs
    // gamma * (1 * 4 + 3 * 4 / 2) and pushes in -x with gamma * (1 * 3 + 3 * 3 / 2).
    Slice s = slice(0.0, 4.0, 2.0, 5.0, 2.1, 9.0);
    Result r = water(s, 1.0);
    EXPECT_NEAR(r.FZ, kGamma * 10.0, 1e-12);
    EXPECT_NEAR(r.FX, -kGamma * 7.5, 1e-12);
    expectSame(r, integrated(s, 1.0));
}

TEST(Water, OnlyTheLowerRightCornerUnderWater) {
    Slice s = slice(0.0, 4.0, 1.0, 5.0, 1.9, 8.0);
    Result r = water(s, 3.0);
    // Wetted from x = 2 to 4, depth up to 2: a triangle of water of weight gamma * 2 * 2 / 2.
    EXPECT_NEAR(r.FZ, kGamma * 2.0, 1e-12);
    EXPECT_NEAR(r.FX, -0.5 * kGamma * 4.0, 1e-12);
    expectSame(r, integrated(s, 3.0));
}

TEST(Water, OnlyTheLowerLeftCornerUnderWaterPushesTheSliceForward) {
    Slice s = slice(10.0, 16.0, 6.0, 0.0, 13.5, 9.0);
    Result r = water(s, 2.0);
    EXPECT_GT(r.FX, 0.0);
    EXPECT_NEAR(r.FX, 0.5 * kGamma * 16.0, 1e-12);
    expectSame(r, integrated(s, 2.0));
}

TEST(Water, FlatTopUnderWaterCarriesOnlyTheWeightOfTheWater) {
    Slice s = slice(0.0, 3.0, 4.0, 4.0, 1.2, 8.0);
    Result r = water(s, 1.5);
    EXPECT_NEAR(r.FZ, kGamma * 2.5 * 3.0, 1e-12);
    EXPECT_NEAR(r.FX, 0.0, 1e-12);
    // The column's weight acts at x = 1.5, 0.3 right of the load point.
    EXPECT_NEAR(r.M, kGamma * 2.5 * 3.0 * (1.2 - 1.5), 1e-12);
    expectSame(r, integrated(s, 1.5));
}

TEST(Water, TopRisingToTheRightUnderWater) {
    Slice s = slice(0.0, 5.0, 7.0, 3.0, 2.8, 11.0);
    expectSame(water(s, 1.0), integrated(s, 1.0));
}
