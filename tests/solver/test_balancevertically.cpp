// balanceVertically: the base forces of Bishop's methods from the vertical balance of each
// slice. The order of operations the methods have always had is written out here once more
// (historicalVertical), and the routine, which takes the slices two at a time, must give its
// numbers bit for bit: on odd and even rows, with bases failing undrained, with and without
// undrained cohesion, with a divisor failing at any slice, and at factors whose reciprocal is
// not finite. The vertical balance itself is checked term by term on one row.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "records.h"
#include "solver/slicebalance.h"

namespace {

int historicalVertical(double F, double& divisor) {
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const bool undrained = MASTER.IDEFTO == 3 && ISUR.MODE(i) == 2;
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        const double K = SURF.L34(i) * (undrained ? SURF.SU3(i) : SURF.C3(i));
        const double D = undrained ? cosb : sinb * SURF.TAN3(i) / F + cosb;
        if (D <= MASTER.EPS) {
            divisor = D;
            return i;
        }
        SURF.P(i) = ((SURF.SNZ(i) - (K + SURF.SS(i)) * sinb) / F + SURF.WZ(i)) / D;
        SURF.S1(i) = (SURF.TAN3(i) * SURF.P(i) + SURF.L34(i) * SURF.C3(i)) / F;
        SURF.S2(i) = SURF.L34(i) * SURF.SU3(i) / F;
        SURF.S(i) = undrained ? SURF.S2(i) : SURF.S1(i);
    }
    return 0;
}

bool sameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

class BalanceVerticallyTest : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        MASTER.EPS = 1.0e-6;
        MASTER.IDEFTO = 1;
    }

    static void row(int n) {
        MASTER.NUMSLC = n;
        for (int i = 1; i <= n; ++i) {
            const double beta = -0.5 + 1.3 * i / n;
            SURF.SINB(i) = std::sin(beta);
            SURF.COSB(i) = std::cos(beta);
            SURF.L34(i) = 0.8 / std::cos(beta);
            SURF.C3(i) = 4.0 + 0.3 * i;
            SURF.TAN3(i) = 0.4 + 0.01 * i;
            SURF.SS(i) = 0.2 * i;
            SURF.WZ(i) = 20.0 + 7.0 * i;
            SURF.SNZ(i) = i % 3 == 0 ? 1.5 : 0.0;
            ISUR.MODE(i) = 1;
        }
    }

    static void expectSameBits(double F, const char* what) {
        const SurfRecord start = SURF;
        double expectedDivisor = -1.0;
        const int expected = historicalVertical(F, expectedDivisor);
        const SurfRecord reference = SURF;
        SURF = start;
        SliceCoefficients c;
        c.take(MASTER.NUMSLC);
        double divisor = -1.0;
        EXPECT_EQ(balanceVertically(c, F, divisor), expected) << what << " F " << F;
        EXPECT_TRUE(sameBits(divisor, expectedDivisor)) << what << " F " << F;
        for (int i = 1; i <= MASTER.NUMSLC; ++i) {
            EXPECT_TRUE(sameBits(SURF.P(i), reference.P(i))) << what << " F " << F << " P of slice " << i;
            EXPECT_TRUE(sameBits(SURF.S1(i), reference.S1(i))) << what << " F " << F << " S1 of slice " << i;
            EXPECT_TRUE(sameBits(SURF.S2(i), reference.S2(i))) << what << " F " << F << " S2 of slice " << i;
            EXPECT_TRUE(sameBits(SURF.S(i), reference.S(i))) << what << " F " << F << " S of slice " << i;
        }
    }

    static void expectSameBitsEverywhere(const char* what) {
        for (double F : {1.43, 0.37, 3.0, -1.6, 1.0e-320}) expectSameBits(F, what);
    }
};

}  // namespace

TEST_F(BalanceVerticallyTest, EverySliceSatisfiesItsVerticalBalance) {
    row(5);
    SliceCoefficients c;
    c.take(5);
    const double F = 1.25;
    double divisor = 0.0;
    ASSERT_EQ(balanceVertically(c, F, divisor), 0);
    for (int i = 1; i <= 5; ++i) {
        // P cos(beta) + S sin(beta) = WZ + SNZ / F, the base shear S = (c3 L34 + SS + P tan3) / F.
        const double baseShear = (SURF.C3(i) * SURF.L34(i) + SURF.SS(i) + SURF.P(i) * SURF.TAN3(i)) / F;
        EXPECT_NEAR(SURF.P(i) * SURF.COSB(i) + baseShear * SURF.SINB(i), SURF.WZ(i) + SURF.SNZ(i) / F, 1e-12 * SURF.WZ(i))
            << i;
        EXPECT_NEAR(SURF.S(i), (SURF.C3(i) * SURF.L34(i) + SURF.P(i) * SURF.TAN3(i)) / F, 1e-12 * SURF.WZ(i)) << i;
    }
}

TEST_F(BalanceVerticallyTest, OddAndEvenRowsGiveTheHistoricalNumbers) {
    for (int n : {1, 2, 3, 8, 49, 50, 99}) {
        row(n);
        expectSameBitsEverywhere("plain row");
    }
}

TEST_F(BalanceVerticallyTest, BasesFailingUndrainedAndUndrainedCohesionGiveTheHistoricalNumbers) {
    row(9);
    MASTER.IDEFTO = 3;
    ISUR.MODE(2) = 2;
    ISUR.MODE(7) = 2;
    expectSameBitsEverywhere("undrained bases, no undrained cohesion");
    for (int i = 1; i <= 9; ++i) SURF.SU3(i) = 15.0 + i;
    expectSameBitsEverywhere("undrained bases with undrained cohesion");
    SURF.SU3(4) = -0.0;
    expectSameBitsEverywhere("a negative zero undrained cohesion");
}

TEST_F(BalanceVerticallyTest, ADivisorFailingAtAnySliceStopsTheRowThereAsBefore) {
    for (int failing = 1; failing <= 7; ++failing) {
        row(7);
        SURF.SINB(failing) = -1.0;  // a base falling vertically towards the exit
        SURF.COSB(failing) = 0.0;
        SURF.P(failing) = -7.0;  // the slices from there on keep what they had
        expectSameBitsEverywhere("failing divisor");
    }
    row(6);
    SURF.TAN3(3) = std::nan("");  // a divisor that is no number passes the test, as it always did
    expectSameBitsEverywhere("divisor no number");
}
