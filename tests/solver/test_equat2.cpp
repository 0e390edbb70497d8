// EQUAT2: real roots of a quadratic, with its linear and degenerate branches.

#include <gtest/gtest.h>

#include <cmath>

#include "solver/solver.h"

TEST(Equat2, TwoDistinctRootsComeLargerFirstForPositiveA) {
    // 2 (x - 3)(x + 0.5) = 2x^2 - 5x - 3
    double x1 = 0.0, x2 = 0.0;
    int ierr = -7;
    EQUAT2(2.0, -5.0, -3.0, x1, x2, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x1, 3.0);
    EXPECT_DOUBLE_EQ(x2, -0.5);
}

TEST(Equat2, NegativeAGivesTheSmallerRootFirst) {
    // -(x - 1)(x - 4) = -x^2 + 5x - 4: X1 = (sqrt(D) - B)/(2A) = (3 - 5)/(-2) = 1.
    double x1 = 0.0, x2 = 0.0;
    int ierr = -7;
    EQUAT2(-1.0, 5.0, -4.0, x1, x2, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x1, 1.0);
    EXPECT_DOUBLE_EQ(x2, 4.0);
}

TEST(Equat2, ADoubleRootIsReturnedTwice) {
    double x1 = 0.0, x2 = 0.0;
    int ierr = -7;
    EQUAT2(1.0, -4.0, 4.0, x1, x2, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x1, 2.0);
    EXPECT_DOUBLE_EQ(x2, 2.0);
}

TEST(Equat2, AVanishingAGivesTheLinearRootTwice) {
    double x1 = 0.0, x2 = 0.0;
    int ierr = -7;
    EQUAT2(1.0E-11, 4.0, -2.0, x1, x2, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x1, 0.5);
    EXPECT_DOUBLE_EQ(x2, 0.5);
    EQUAT2(0.0, -2.0, 3.0, x1, x2, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x1, 1.5);
    EXPECT_DOUBLE_EQ(x2, 1.5);
}

TEST(Equat2, NoEquationLeftIsError2) {
    double x1 = 0.0, x2 = 0.0;
    int ierr = 0;
    EQUAT2(1.0E-11, -1.0E-11, 5.0, x1, x2, ierr);
    EXPECT_EQ(ierr, 2);
    ierr = 0;
    EQUAT2(0.0, 0.0, 0.0, x1, x2, ierr);
    EXPECT_EQ(ierr, 2);
}

TEST(Equat2, AClearlyNegativeDiscriminantIsError1) {
    double x1 = 0.0, x2 = 0.0;
    int ierr = 0;
    EQUAT2(1.0, 0.0, 1.0, x1, x2, ierr);  // x^2 + 1
    EXPECT_EQ(ierr, 1);
    ierr = 0;
    EQUAT2(1.0, 2.0, 1.01, x1, x2, ierr);  // D = -0.04, 1 % of B^2
    EXPECT_EQ(ierr, 1);
}

TEST(Equat2, ADiscriminantNegativeByRoundingIsTakenAsZero) {
    // B^2 = 1e6, D = 1e6 - 4 * 1 * 250000.01 = -0.04: negative by 4e-8 of B^2.
    double x1 = 0.0, x2 = 0.0;
    int ierr = -7;
    EQUAT2(1.0E-6, 1.0, 250000.01, x1, x2, ierr);
    // With A = 1e-6 the double root -B/(2A) = -500000 leaves a residual of 0.01, far above
    // 1e-10: the discriminant was accepted as zero, and the root check then refuses it.
    EXPECT_EQ(ierr, 3);
    EXPECT_DOUBLE_EQ(x1, -500000.0);
    EXPECT_DOUBLE_EQ(x2, -500000.0);

    // Scaled so that the double root does satisfy the equation to 1e-10:
    // x^2 - 2x + (1 + 1e-12): D = -4e-12, B^2 = 4, tiny against B^2 and above -1e-10.
    EQUAT2(1.0, -2.0, 1.0 + 1.0E-12, x1, x2, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x1, 1.0);
    EXPECT_DOUBLE_EQ(x2, 1.0);

    // D between -1e-10 and 0 with B = 0: no root of a negative number, a double root at 0.
    EQUAT2(1.0, 0.0, 1.0E-11, x1, x2, ierr);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(x1, 0.0);
    EXPECT_DOUBLE_EQ(x2, 0.0);
}

TEST(Equat2, ANegativeDiscriminantWithoutBIsNotARoundingEffect) {
    // D = -4e-6 is below -1e-10, and B^2 = 0 leaves no scale to call it rounding.
    double x1 = 0.0, x2 = 0.0;
    int ierr = 0;
    EQUAT2(1.0, 0.0, 1.0E-6, x1, x2, ierr);
    EXPECT_EQ(ierr, 1);
}

TEST(Equat2, RootsThatDoNotSatisfyTheEquationAreError3) {
    // 1e12 (x - 0.1)(x - 0.7): the roots are found to rounding, but with terms of 1e12 the
    // residual they leave is far above the absolute limit of 1e-10.
    const double scale = 1.0E12;
    const double r1 = 0.1, r2 = 0.7;
    double x1 = 0.0, x2 = 0.0;
    int ierr = 0;
    EQUAT2(scale, -scale * (r1 + r2), scale * r1 * r2, x1, x2, ierr);
    EXPECT_EQ(ierr, 3);
    EXPECT_NEAR(x1, r2, 1.0E-9);
    EXPECT_NEAR(x2, r1, 1.0E-9);
}
