// balanceSlices: the forces of a row of slices at a trial safety factor. Every slice's
// forces are checked against its own three equations (horizontal and vertical balance, and the
// interslice shear on its right face) written out here term by term, with the forces its left
// neighbour hands over; and the divisor rules of the two callers are told apart at a divisor
// of exactly EPS.

#include <gtest/gtest.h>

#include <cmath>

#include "records.h"
#include "solver/slicebalance.h"

namespace {

constexpr double kEps = 1.0e-6;

class BalanceSlicesTest : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        MASTER.EPS = kEps;
        MASTER.IDEFTO = 1;
    }

    // Slice i with base inclination beta (radians), base length 2 / cos(beta) over a width of 2,
    // and face 2 of height h.
    static void slice(int i, double beta, double h, double c3, double tan3, double c2, double tan2, double wx, double wz) {
        SURF.SINB(i) = std::sin(beta);
        SURF.COSB(i) = std::cos(beta);
        SURF.L34(i) = 2.0 / std::cos(beta);
        SURF.C3(i) = c3;
        SURF.TAN3(i) = tan3;
        SURF.C2(i) = c2;
        SURF.TAN2(i) = tan2;
        SURF.ZZ(2, i) = 0.0;
        SURF.ZZ(3, i) = h;
        SURF.WX(i) = wx;
        SURF.WZ(i) = wz;
        ISUR.MODE(i) = 1;
    }

    // The three equations of slice i at F with its roughness R: horizontal and vertical
    // balance of all its forces, and the interslice shear on face 2.
    static void expectBalanced(int i, double F) {
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        const double P = SURF.P(i), E1 = SURF.E1(i), T1 = SURF.T1(i), E2 = SURF.E2(i), T2 = SURF.T2(i);
        const double baseShear = (SURF.C3(i) * SURF.L34(i) + SURF.SS(i) + P * SURF.TAN3(i)) / F;
        const double scale = std::fabs(SURF.WZ(i)) + std::fabs(E1) + std::fabs(E2) + std::fabs(P);
        // Positive x towards the exit, z downwards: P acts on the base along its normal (sinb,
        // -cosb), the base shear against sliding along (-cosb, -sinb).
        EXPECT_NEAR(SURF.WX(i) + E1 - E2 + P * sinb - baseShear * cosb, 0.0, 1e-12 * scale) << "horizontal, slice " << i;
        EXPECT_NEAR(SURF.WZ(i) + T1 - T2 - P * cosb - baseShear * sinb, 0.0, 1e-12 * scale) << "vertical, slice " << i;
        const double h = SURF.ZZ(3, i) - SURF.ZZ(2, i);
        EXPECT_NEAR(T2, SURF.R(i) * (SURF.TAN2(i) * E2 + SURF.C2(i) * h) / F, 1e-12 * scale) << "face 2, slice " << i;
        EXPECT_NEAR(SURF.S(i), baseShear, 1e-12 * scale) << "base shear, slice " << i;
    }
};

}  // namespace

TEST_F(BalanceSlicesTest, EverySliceOfARowSatisfiesItsOwnThreeEquations) {
    MASTER.NUMSLC = 4;
    slice(1, -0.3, 2.0, 5.0, 0.5, 5.0, 0.5, 0.0, 60.0);
    slice(2, 0.1, 3.5, 5.0, 0.5, 5.0, 0.5, 0.0, 140.0);
    slice(3, 0.5, 2.5, 8.0, 0.4, 8.0, 0.4, 3.0, 120.0);
    slice(4, 0.9, 0.001, 8.0, 0.4, 8.0, 0.4, 0.0, 30.0);
    SURF.E1(1) = 4.0;  // a thrust on the entry face, handed in from outside
    SURF.T1(1) = 1.0;
    const double R0[4] = {0.5, 0.4, 0.3, 0.0};
    SliceCoefficients c;
    c.take(4);
    const double F = 1.3;
    double divisor = 0.0;
    ASSERT_EQ(balanceSlices(c, F, R0, 0.8, DivisorRule::AtMostEps, divisor), 0);
    for (int i = 1; i <= 4; ++i) {
        EXPECT_DOUBLE_EQ(SURF.R(i), R0[i - 1] * 0.8) << i;
        expectBalanced(i, F);
        if (i < 4) {
            EXPECT_EQ(SURF.E1(i + 1), SURF.E2(i)) << i;
            EXPECT_EQ(SURF.T1(i + 1), SURF.T2(i)) << i;
        }
    }
}

TEST_F(BalanceSlicesTest, WithoutRoughnessTheInterslicesCarryNoShear) {
    MASTER.NUMSLC = 3;
    slice(1, -0.2, 2.0, 10.0, 0.3, 10.0, 0.3, 0.0, 50.0);
    slice(2, 0.2, 3.0, 10.0, 0.3, 10.0, 0.3, 0.0, 90.0);
    slice(3, 0.6, 0.001, 10.0, 0.3, 10.0, 0.3, 0.0, 20.0);
    SliceCoefficients c;
    c.take(3);
    double divisor = 0.0;
    const double start[3] = {0.7, 0.7, 0.7};
    ASSERT_EQ(balanceSlices(c, 1.1, start, 0.0, DivisorRule::BelowEps, divisor), 0);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(SURF.T2(i), 0.0) << i;
        expectBalanced(i, 1.1);
        // Vertical balance alone then gives P: WZ - P cos - (c L + P tan) sin / F = 0.
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        const double P = (SURF.WZ(i) - 10.0 * SURF.L34(i) * sinb / 1.1) / (cosb + 0.3 * sinb / 1.1);
        EXPECT_NEAR(SURF.P(i), P, 1e-12 * P) << i;
    }
}

TEST_F(BalanceSlicesTest, ADivisorOfExactlyEpsPassesTheForceSweepButNotTheMomentMethod) {
    // Without roughness and with sin(beta) = 0 the divisor of slice 2 is cos(beta) alone, here
    // made exactly EPS.
    MASTER.NUMSLC = 2;
    slice(1, 0.0, 2.0, 5.0, 0.5, 5.0, 0.5, 0.0, 40.0);
    slice(2, 0.0, 1.0, 5.0, 0.5, 5.0, 0.5, 0.0, 40.0);
    SURF.SINB(2) = 0.0;
    SURF.COSB(2) = kEps;
    SliceCoefficients c;
    c.take(2);
    const double none[2] = {0.0, 0.0};
    double divisor = 0.0;
    EXPECT_EQ(balanceSlices(c, 1.5, none, 1.0, DivisorRule::BelowEps, divisor), 0);
    EXPECT_EQ(balanceSlices(c, 1.5, none, 1.0, DivisorRule::AtMostEps, divisor), 2);
    EXPECT_EQ(divisor, kEps);
}

TEST_F(BalanceSlicesTest, ASliceThatCannotCarryItsLoadStopsTheSweepAfterTheSlicesBeforeIt) {
    MASTER.NUMSLC = 3;
    slice(1, 0.0, 2.0, 5.0, 0.5, 5.0, 0.5, 0.0, 40.0);
    slice(2, 0.0, 2.0, 5.0, 0.5, 5.0, 0.5, 0.0, 40.0);
    slice(3, 0.0, 1.0, 5.0, 0.5, 5.0, 0.5, 0.0, 40.0);
    SURF.SINB(2) = -1.0;  // a base falling steeply towards the exit: its divisor is negative
    SURF.COSB(2) = 0.0;
    SURF.P(3) = -7.0;  // untouched when the sweep stops at slice 2
    SURF.R(3) = -7.0;
    SliceCoefficients c;
    c.take(3);
    const double start[3] = {0.5, 0.5, 0.5};
    double divisor = 0.0;
    EXPECT_EQ(balanceSlices(c, 1.2, start, 1.0, DivisorRule::BelowEps, divisor), 2);
    EXPECT_LT(divisor, 0.0);
    expectBalanced(1, 1.2);
    EXPECT_EQ(SURF.E1(2), SURF.E2(1));
    EXPECT_EQ(SURF.R(2), 0.5);  // reached
    EXPECT_EQ(SURF.P(3), -7.0);
    EXPECT_EQ(SURF.R(3), -7.0);
}
