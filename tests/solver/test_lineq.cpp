// LINEQ: Gaussian elimination of a small dense system, with its checks.

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "solver/solver.h"

namespace {

// A random system whose matrix is dominated by its diagonal (well conditioned), stored
// column by column.
void randomSystem(std::mt19937& generator, int n, std::vector<double>& a, std::vector<double>& b) {
    std::uniform_real_distribution<double> value(-1.0, 1.0);
    a.assign(static_cast<size_t>(n * n), 0.0);
    b.assign(static_cast<size_t>(n), 0.0);
    for (int j = 0; j < n; ++j)
        for (int i = 0; i < n; ++i) a[static_cast<size_t>(i + j * n)] = value(generator) * 10.0;
    for (int i = 0; i < n; ++i) {
        a[static_cast<size_t>(i + i * n)] += (value(generator) < 0.0 ? -1.0 : 1.0) * 10.0 * n;
        b[static_cast<size_t>(i)] = value(generator) * 100.0;
    }
}

}  // namespace

TEST(Lineq, RandomWellConditionedSystemsAreSolved) {
    std::mt19937 generator(20170112u);
    for (int n : {1, 2, 3, 4, 6, 9, 12}) {
        for (int trial = 0; trial < 5; ++trial) {
            std::vector<double> a, b;
            randomSystem(generator, n, a, b);
            std::vector<double> x(static_cast<size_t>(n), 0.0), work(static_cast<size_t>(n * (n + 1)), 0.0);
            int ierr = -7;
            LINEQ(b.data(), a.data(), x.data(), work.data(), n, n + 1, ierr);
            ASSERT_EQ(ierr, 0) << "n=" << n;
            for (int i = 0; i < n; ++i) {
                double product = 0.0;
                for (int j = 0; j < n; ++j) product += a[static_cast<size_t>(i + j * n)] * x[static_cast<size_t>(j)];
                EXPECT_NEAR(product, b[static_cast<size_t>(i)], 1.0E-9 * 100.0) << "n=" << n << " row " << i;
            }
        }
    }
}

TEST(Lineq, AZeroPivotIsExchangedWithTheNextRowBelow) {
    // x2 = 3, x1 + x2 = 5: the first pivot is zero.
    const double a[4] = {0.0, 1.0, 1.0, 1.0};
    const double b[2] = {3.0, 5.0};
    double x[2] = {0.0, 0.0}, work[6];
    int ierr = -7;
    LINEQ(b, a, x, work, 2, 3, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_NEAR(x[0], 2.0, 1.0E-14);
    EXPECT_NEAR(x[1], 3.0, 1.0E-14);
}

TEST(Lineq, RowsOfVeryDifferentSizeAreScaledAlike) {
    // 1e-20 x1 + 2e-20 x2 = 5e-20 and 3 x1 + 1 x2 = 5: the first row is tiny but regular.
    const double a[4] = {1.0E-20, 3.0, 2.0E-20, 1.0};
    const double b[2] = {5.0E-20, 5.0};
    double x[2], work[6];
    int ierr = -7;
    LINEQ(b, a, x, work, 2, 3, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_NEAR(x[0], 1.0, 1.0E-12);
    EXPECT_NEAR(x[1], 2.0, 1.0E-12);
}

TEST(Lineq, ASingularSystemHasNoPivotError1) {
    // The second row is twice the first.
    const double a[4] = {1.0, 2.0, 2.0, 4.0};
    const double b[2] = {1.0, 2.0};
    double x[2], work[6];
    int ierr = 0;
    LINEQ(b, a, x, work, 2, 3, ierr);
    EXPECT_EQ(ierr, 1);
}

TEST(Lineq, AWorkArrayWithoutRoomForTheRightHandSideIsError2) {
    const double a[4] = {1.0, 0.0, 0.0, 1.0};
    const double b[2] = {1.0, 2.0};
    double x[2], work[6];
    int ierr = 0;
    LINEQ(b, a, x, work, 2, 2, ierr);
    EXPECT_EQ(ierr, 2);
    ierr = 0;
    LINEQ(b, a, x, work, 0, 1, ierr);
    EXPECT_EQ(ierr, 2);
}

TEST(Lineq, ASolutionThatDoesNotReproduceTheRightHandSideIsError3) {
    // A pivot of 1e-20 is above the exchange threshold, so elimination goes through it and
    // loses the first unknown: the exact solution is close to (1, 1), the computed one (0, 1)
    // leaves the second equation unbalanced by half of its right-hand side.
    const double a[4] = {1.0E-20, 1.0, 1.0, 1.0};
    const double b[2] = {1.0, 2.0};
    double x[2], work[6];
    int ierr = 0;
    LINEQ(b, a, x, work, 2, 3, ierr);
    EXPECT_EQ(ierr, 3);
}

TEST(Lineq, ARowWithoutCoefficientsIsError4) {
    const double a[9] = {1.0, 0.0, 2.0, 2.0, 0.0, 1.0, 3.0, 1.0E-25, 1.0};
    const double b[3] = {1.0, 0.0, 2.0};
    double x[3], work[12];
    int ierr = 0;
    LINEQ(b, a, x, work, 3, 4, ierr);
    EXPECT_EQ(ierr, 4);
}

TEST(Lineq, AWiderWorkArrayIsAccepted) {
    const double a[4] = {2.0, 0.0, 0.0, 4.0};
    const double b[2] = {2.0, 8.0};
    double x[2], work[10];
    int ierr = -7;
    LINEQ(b, a, x, work, 2, 5, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x[0], 1.0);
    EXPECT_DOUBLE_EQ(x[1], 2.0);
}
