// SOLXYZ: the three global equilibrium equations solved by a scan over Z (= C).

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "io/channels.h"
#include "records.h"
#include "solver/equation_systems.h"
#include "solver/solver.h"
#include "support/tempdir.h"

using namespace kalmo_test;

namespace {

class Solxyz : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        io::resetAll();
        MASTER.NF18 = 18;
        io::openNew(18, dir.path("KALMO.LOG"));
    }
    void TearDown() override { io::resetAll(); }

    int solve(const EquationCoefficients& CC, double zmin, double zmax, int trace = 0) {
        X = Y = Z = -99.0;
        int ierr = -7;
        SOLXYZ(trace, CC, zmin, zmax, X, Y, Z, ierr);
        return ierr;
    }

    double sumOfResiduals(const EquationCoefficients& CC) const {
        double sum = 0.0;
        for (int e = 1; e <= 3; ++e) sum += std::fabs(equationResidual(CC, e, X, Y, Z));
        return sum;
    }

    std::string log() const { return io::contents(18); }

    TempDir dir;
    double X = 0.0, Y = 0.0, Z = 0.0;
};

// Z X + ... : rows 1 and 2 fix X and Y for each Z, and the residual of the moment row has a
// least value of about 0.83 near Z = 0.414 and no zero: r1 = Z X - 1, r2 = Y + 5,
// r3 = X + Z (added to both when solving).
EquationCoefficients equationsWithoutSolution() {
    EquationCoefficients CC;
    CC.fill(0.0);
    CC(1, 4) = 1.0;
    CC(1, 6) = -1.0;
    CC(2, 2) = 1.0;
    CC(2, 6) = 5.0;
    CC(3, 1) = 1.0;
    CC(3, 3) = 1.0;
    return CC;
}

}  // namespace

TEST_F(Solxyz, WithoutFrictionTheEquationsAreSolvedLinearly) {
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    EXPECT_EQ(solve(CC, 0.4, 1.0, 18), 0);
    EXPECT_NEAR(X, kSolutionA, 1.0E-12);
    EXPECT_NEAR(Y, kSolutionB, 1.0E-12);
    EXPECT_NEAR(Z, kSolutionC, 1.0E-12);
    EXPECT_NE(log().find(" SR/SOLXYZ trace print for zero shear surface friction angle"), std::string::npos);
    EXPECT_NE(log().find("    X        Y        Z        FoS"), std::string::npos);
    EXPECT_EQ(log().find("  ITER    Z.ASM"), std::string::npos);  // no scan
}

TEST_F(Solxyz, ALinearSolutionOutsideTheRangeIsReturnedWithError10Or11) {
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    EXPECT_EQ(solve(CC, 0.7, 1.4), 10);
    EXPECT_NEAR(Z, kSolutionC, 1.0E-12);
    EXPECT_EQ(solve(CC, 0.3, 0.6), 11);
    EXPECT_NEAR(Z, kSolutionC, 1.0E-12);
    EXPECT_NE(log().find(" **** SR/SOLXYZ : Non-accepted linear solution  IERR="), std::string::npos);
}

TEST_F(Solxyz, ASingularLinearSystemIsErrorMinus1) {
    EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    for (int e = 1; e <= 3; ++e) CC(e, 2) = 2.0 * CC(e, 1);  // B's column a multiple of A's
    EXPECT_EQ(solve(CC, 0.4, 1.0), -1);
    EXPECT_NE(log().find(" **** SR/SOLXYZ : Error from SR/LINEQ  IERR="), std::string::npos);
}

TEST_F(Solxyz, WithFrictionTheScanFindsTheSolution) {
    const EquationCoefficients CC = systemWithSolution(kFrictionColumns, kSolutionA, kSolutionB, kSolutionC);
    for (auto [zmin, zmax] : {std::pair{0.4, 1.0}, std::pair{0.5, 0.9}, std::pair{0.6, 0.7}}) {
        EXPECT_EQ(solve(CC, zmin, zmax), 0) << zmin;
        EXPECT_LE(sumOfResiduals(CC), 0.05f) << zmin;
        EXPECT_NEAR(Z, kSolutionC, 1.0E-5) << zmin;
        EXPECT_NEAR(X, kSolutionA, 1.0E-4) << zmin;
        EXPECT_NEAR(Y, kSolutionB, 1.0E-4) << zmin;
    }
}

TEST_F(Solxyz, TheTraceListsTheCoefficientsTheRangeAndEveryPoint) {
    const EquationCoefficients CC = systemWithSolution(kFrictionColumns, kSolutionA, kSolutionB, kSolutionC);
    EXPECT_EQ(solve(CC, 0.4, 1.0, 18), 0);
    const std::string text = log();
    EXPECT_NE(text.find(" SR/SOLXYZ trace print\n C-Coefficients\n"), std::string::npos);
    EXPECT_NE(text.find(" Allowed range : ZMIN ="), std::string::npos);
    EXPECT_NE(text.find("  ZMAX ="), std::string::npos);
    EXPECT_NE(text.find("  ITER    Z.ASM    X.CMP    Y.CMP     SUMERR    Z.BEST     ERRBEST"), std::string::npos);
    EXPECT_NE(text.find("\n     1  0.40000"), std::string::npos);
    EXPECT_NE(text.find("\n    10  1.00000"), std::string::npos);
}

TEST_F(Solxyz, ASolutionBelowZminIsFoundAndAcceptedByTheRestart) {
    // Growing residuals from ZMIN = 0.8: the scan starts again from half of ZMIN, 0.4, and
    // the solution 0.6837 lies within the range the restart searched, so it is the answer.
    const EquationCoefficients CC = systemWithSolution(kFrictionColumns, kSolutionA, kSolutionB, kSolutionC);
    EXPECT_EQ(solve(CC, 0.8, 1.6), 0);
    EXPECT_LE(sumOfResiduals(CC), 0.05f);
    EXPECT_NEAR(Z, kSolutionC, 1.0E-5);
    EXPECT_NEAR(X, kSolutionA, 1.0E-4);
    EXPECT_NEAR(Y, kSolutionB, 1.0E-4);
    EXPECT_EQ(log().find(" **** SR/SOLXYZ : Non-accepted solution X,Y,Z=="), std::string::npos);
}

TEST_F(Solxyz, ASolutionBelowTheLinearRangeIsStillError10) {
    // Without friction there is no scan and no restart: ZMIN is the bound.
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    EXPECT_EQ(solve(CC, 0.8, 1.6), 10);
}

TEST_F(Solxyz, TheLeastResidualAtAnEndOfTheTableIsError13Or14) {
    const EquationCoefficients CC = systemWithSolution(kFrictionColumns, kSolutionA, kSolutionB, kSolutionC);
    EXPECT_EQ(solve(CC, 0.2, 0.6), 14);  // the solution lies beyond ZMAX
    EXPECT_EQ(solve(CC, 1.6, 3.0), 13);  // and far below ZMIN, out of reach of the restart
    EXPECT_NE(log().find(" **** SR/SOLXYZ : Iterative solution problem  IERR="), std::string::npos);
}

TEST_F(Solxyz, AResidualThatNeverVanishesEndsAfter100PointsWithError12) {
    EXPECT_EQ(solve(equationsWithoutSolution(), 0.1, 1.0), 12);
    EXPECT_NE(log().find(" **** SR/SOLXYZ : Max iterations reached"), std::string::npos);
}

TEST_F(Solxyz, DegenerateForceEquationsAreErrors1To5) {
    const EquationCoefficients base = systemWithSolution(kFrictionColumns, kSolutionA, kSolutionB, kSolutionC);
    // Each case cancels coefficients of the sums row 1 + row 3 and row 2 + row 3.
    auto cancel = [&](EquationCoefficients& CC, int row, int column) { CC(row, column) = -CC(3, column); };
    {
        EquationCoefficients CC = base;  // first sum free of X and of Y
        for (int j : {1, 2, 4, 5}) cancel(CC, 1, j);
        EXPECT_EQ(solve(CC, 0.4, 1.0), 1);
    }
    {
        EquationCoefficients CC = base;  // both sums free of X
        for (int j : {1, 4}) cancel(CC, 1, j), cancel(CC, 2, j);
        EXPECT_EQ(solve(CC, 0.4, 1.0), 2);
    }
    {
        EquationCoefficients CC = base;  // second sum free of Y and of X
        for (int j : {1, 2, 4, 5}) cancel(CC, 2, j);
        EXPECT_EQ(solve(CC, 0.4, 1.0), 3);
    }
    {
        EquationCoefficients CC = base;  // both sums free of Y
        for (int j : {2, 5}) cancel(CC, 1, j), cancel(CC, 2, j);
        EXPECT_EQ(solve(CC, 0.4, 1.0), 4);
    }
    {
        EquationCoefficients CC = base;  // the second sum twice the first in X and Y
        for (int j : {1, 2, 4, 5}) CC(2, j) = 2.0 * (CC(1, j) + CC(3, j)) - CC(3, j);
        EXPECT_EQ(solve(CC, 0.4, 1.0), 5);
    }
    EXPECT_NE(log().find(" **** SR/SOLXYZ : Equation solving problem IERR="), std::string::npos);
}

TEST_F(Solxyz, AVanishingYIsError6) {
    // The solution at the first point of the scan has B = 0 exactly.
    const EquationCoefficients CC = systemWithSolution(kFrictionColumns, 1.0, 0.0, 0.4);
    EXPECT_EQ(solve(CC, 0.4, 1.0), 6);
}

TEST_F(Solxyz, TwoDisagreeingValuesOfYAreError7) {
    // At the first point of the scan the solution has B = 1e-11: each force sum gives it as
    // the small difference of terms near 1000, and rounding leaves the two values apart by
    // far more than one part in a million.
    const EquationCoefficients CC = systemWithSolution(kFrictionColumns, 1.0, 1.0E-11, 0.4);
    EXPECT_EQ(solve(CC, 0.4, 1.0), 7);
}
