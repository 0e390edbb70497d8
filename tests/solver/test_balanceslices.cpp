// balanceSlices: the forces of a row of slices at a trial safety factor, slice by slice.
// Every slice's forces are checked against its own three equations (horizontal and vertical
// balance, and the interslice shear on its right face) written out here term by term, with the
// forces its left neighbour hands over; and the divisor rules of the two callers are told
// apart at a divisor of exactly EPS.
//
// The sweep must give the numbers of the order of operations the force-equilibrium sweep and
// the 2003 method have always had, to the last bit: that order is written out here once more
// (historicalSweep), and the sweep's faster path without interslice shear is compared with it
// on rows that take that path and on rows that must leave it (a vertical load of exactly zero,
// a term that is no number, a negative factor, horizontal loads and nails, an undrained base).

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>

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

namespace {

// The force-equilibrium sweep in the order of operations it has always had, slice after
// slice, reading and writing the records as balanceSlices does.
int historicalSweep(double F, const double* roughnessFrom, double roughnessFactor, DivisorRule rule, double& divisor) {
    const double t = 1.0 / F;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        SURF.R(i) = roughnessFrom[i - 1] * roughnessFactor;
        const double R = SURF.R(i);
        const bool undrained = MASTER.IDEFTO == 3 && ISUR.MODE(i) == 2;
        const double baseResistance = SURF.L34(i) * (undrained ? SURF.SU3(i) : SURF.C3(i)) + SURF.SS(i);
        const double baseTan = undrained ? 0.0 : SURF.TAN3(i);
        const double faceHeight = SURF.ZZ(3, i) - SURF.ZZ(2, i);
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        const double horizontalPerP = sinb - cosb * baseTan * t;
        const double horizontalFixed = baseResistance * cosb * t - SURF.E1(i) - SURF.WX(i) - SURF.SNX(i) * t;
        const double faceCohesion = SURF.C2(i) * faceHeight * t;
        const double verticalFixed = SURF.WZ(i) + SURF.T1(i) + SURF.SNZ(i) * t - baseResistance * sinb * t;
        const double D = SURF.TAN2(i) * R * t * horizontalPerP + sinb * baseTan * t + cosb;
        if (rule == DivisorRule::BelowEps ? D < MASTER.EPS : D <= MASTER.EPS) {
            divisor = D;
            return i;
        }
        const double P = (R * (SURF.TAN2(i) * horizontalFixed / F - faceCohesion) + verticalFixed) / D;
        const double E2 = P * horizontalPerP - horizontalFixed;
        const double T2 = (SURF.TAN2(i) * E2 + SURF.C2(i) * faceHeight) * R / F;
        SURF.P(i) = P;
        SURF.E2(i) = E2;
        SURF.T2(i) = T2;
        SURF.S1(i) = (SURF.TAN3(i) * P + SURF.L34(i) * SURF.C3(i)) / F;
        SURF.S2(i) = SURF.L34(i) * SURF.SU3(i) / F;
        SURF.S(i) = undrained ? SURF.S2(i) : SURF.S1(i);
        if (i < MASTER.NUMSLC) {
            SURF.E1(i + 1) = SURF.E2(i);
            SURF.T1(i + 1) = SURF.T2(i);
        }
    }
    return 0;
}

// The same number to the last bit, the sign of a zero included. Any no-number is the same as
// any other: it is printed as "NaN" whatever its sign and payload, and which of two no-number
// operands an addition or a product passes on is the compiler's choice of operand order.
bool sameBits(double a, double b) {
    if (std::isnan(a) || std::isnan(b)) return std::isnan(a) && std::isnan(b);
    return std::memcmp(&a, &b, sizeof a) == 0;
}

class SliceBySliceBitsTest : public ::testing::Test {
protected:
    static constexpr int kSlices = 7;

    void SetUp() override {
        clearRecords();
        MASTER.EPS = 1.0e-6;
        MASTER.IDEFTO = 1;
        MASTER.NUMSLC = kSlices;
        // A row from a rising entry to a steep exit, strengths and loads varying.
        for (int i = 1; i <= kSlices; ++i) {
            const double beta = -0.4 + 0.2 * i;
            SURF.SINB(i) = std::sin(beta);
            SURF.COSB(i) = std::cos(beta);
            SURF.L34(i) = 1.5 / std::cos(beta);
            SURF.C3(i) = 3.0 + 0.7 * i;
            SURF.TAN3(i) = 0.45 + 0.03 * i;
            SURF.C2(i) = 2.0 + 0.5 * i;
            SURF.TAN2(i) = 0.5 - 0.02 * i;
            SURF.SS(i) = 0.3 * i;
            SURF.ZZ(2, i) = 0.0;
            SURF.ZZ(3, i) = 4.0 - 0.5 * i;
            SURF.WX(i) = 0.0;
            SURF.WZ(i) = 30.0 + 11.0 * i - i * i;
            ISUR.MODE(i) = 1;
        }
        SURF.E1(1) = 2.5;
        SURF.T1(1) = 0.75;
    }

    // Runs the historical sweep and balanceSlices from the same records and compares every
    // number either leaves, bit for bit.
    void expectSameBits(double F, double roughnessFactor, DivisorRule rule, const char* what) {
        const double roughness[kSlices] = {0.7, 0.6, 0.5, 0.5, 0.4, 0.3, 0.2};
        const SurfRecord start = SURF;
        double expectedDivisor = -1.0;
        const int expected = historicalSweep(F, roughness, roughnessFactor, rule, expectedDivisor);
        const SurfRecord reference = SURF;
        SURF = start;
        SliceCoefficients c;
        c.take(kSlices);
        double divisor = -1.0;
        const int actual = balanceSlices(c, F, roughness, roughnessFactor, rule, divisor);
        EXPECT_EQ(actual, expected) << what;
        EXPECT_TRUE(sameBits(divisor, expectedDivisor)) << what << ": divisor " << divisor << " " << expectedDivisor;
        for (int i = 1; i <= kSlices; ++i) {
            const double got[] = {SURF.P(i), SURF.S1(i), SURF.S2(i), SURF.S(i), SURF.E2(i),
                                  SURF.T2(i), SURF.E1(i), SURF.T1(i), SURF.R(i)};
            const double want[] = {reference.P(i), reference.S1(i), reference.S2(i), reference.S(i), reference.E2(i),
                                   reference.T2(i), reference.E1(i), reference.T1(i), reference.R(i)};
            for (int v = 0; v < 9; ++v)
                EXPECT_TRUE(sameBits(got[v], want[v]))
                    << what << ": slice " << i << " column " << v << " got " << got[v] << " expected " << want[v];
        }
    }

    // Both factors of roughness (none: the faster path; some: slice by slice), both divisor
    // rules, and a few safety factors, among them a zero one (whose reciprocal is infinite, so
    // that a horizontal load of zero times it is no number) and an infinite one.
    void expectSameBitsEverywhere(const char* what) {
        for (double F : {1.37, 0.61, 2.0, 1.0e-160, 0.0, -0.0, HUGE_VAL})
            for (double factor : {0.0, 0.8})
                for (DivisorRule rule : {DivisorRule::BelowEps, DivisorRule::AtMostEps})
                    expectSameBits(F, factor, rule, what);
    }
};

}  // namespace

TEST_F(SliceBySliceBitsTest, ADryRowGivesTheHistoricalNumbers) { expectSameBitsEverywhere("dry row"); }

TEST_F(SliceBySliceBitsTest, HorizontalLoadsAndNailsGiveTheHistoricalNumbers) {
    SURF.WX(2) = 4.5;
    SURF.WX(3) = -0.0;  // a negative zero is no positive one: subtracting it may change a zero
    SURF.SNX(5) = -6.0;
    SURF.SNZ(5) = 2.0;
    expectSameBitsEverywhere("loads and nails");
}

TEST_F(SliceBySliceBitsTest, AnUndrainedBaseOfACombinedAnalysisGivesTheHistoricalNumbers) {
    MASTER.IDEFTO = 3;
    ISUR.MODE(4) = 2;
    for (int i = 1; i <= kSlices; ++i) SURF.SU3(i) = 12.0 + i;
    expectSameBitsEverywhere("undrained base");
}

TEST_F(SliceBySliceBitsTest, AVerticalLoadOfExactlyZeroKeepsTheSignOfItsZero) {
    // Slice 3 carries nothing: no weight, no cohesion, no friction, no nail.
    SURF.WZ(3) = 0.0;
    SURF.C3(3) = 0.0;
    SURF.SS(3) = 0.0;
    SURF.TAN3(3) = 0.0;
    expectSameBitsEverywhere("weightless slice");
    SURF.WZ(3) = -0.0;
    expectSameBitsEverywhere("weightless slice, negative zero");
}

TEST_F(SliceBySliceBitsTest, TermsThatAreNoNumberOrOverflowGiveWhatTheHistoricalOrderGives) {
    SURF.TAN2(2) = std::nan("");
    expectSameBitsEverywhere("face friction no number");
    SURF.TAN2(2) = 0.4;
    SURF.WX(4) = 1.0e308;  // the face friction of H overflows where it is multiplied by R = 0
    SURF.TAN2(4) = 10.0;
    expectSameBitsEverywhere("overflowing face term");
}

TEST_F(SliceBySliceBitsTest, ANegativeFactorAndAFailingDivisorGiveTheHistoricalNumbers) {
    expectSameBits(-2.0, 0.0, DivisorRule::BelowEps, "negative factor");
    SURF.SINB(5) = -1.0;  // its divisor negative: the sweep stops there
    SURF.COSB(5) = 0.0;
    expectSameBitsEverywhere("failing divisor");
    SURF.SINB(1) = -1.0;  // and at the first slice
    SURF.COSB(1) = 0.0;
    expectSameBitsEverywhere("failing first divisor");
}

TEST_F(SliceBySliceBitsTest, AVerticalLoadOfZeroTakesItsSignFromTheShearHandedOver) {
    // Slice 4 carries a negative zero and no strength; the shear handed over by slice 3 is a
    // zero whose sign follows tan2 E2 (slice 3 has no face cohesion): the sum of the vertical
    // loads of slice 4 is then a negative or a positive zero, and so is the zero that R = 0
    // times its face term adds to it (its sign follows tan2 H, slice 4 having no face cohesion
    // either).
    SURF.WZ(4) = -0.0;
    SURF.SNZ(4) = -0.0;
    SURF.C3(4) = 0.0;
    SURF.SS(4) = 0.0;
    SURF.C2(3) = 0.0;
    SURF.C2(4) = 0.0;
    for (double tan2Before : {0.3, -0.3}) {
        for (double tan2 : {0.3, -0.3}) {
            SURF.TAN2(3) = tan2Before;
            SURF.TAN2(4) = tan2;
            expectSameBitsEverywhere("zero load after a signed zero shear");
        }
    }
}
