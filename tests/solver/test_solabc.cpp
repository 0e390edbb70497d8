// SOLABC: the three global equilibrium equations solved by iteration on C.

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

class Solabc : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        io::resetAll();
        MASTER.NF18 = 18;
        POSTGRAF.NFCOPY = 9;
        io::openNew(18, dir.path("KALMO.LOG"));
        io::openNew(9, dir.path("copy"));
    }
    void TearDown() override { io::resetAll(); }

    // Runs SOLABC with C bounded to [cmin, cmax] from the start value; returns IERR.
    int solve(const EquationCoefficients& CC, double cmin, double cmax, double start, double& A, double& B, double& C,
              int trace = 0) {
        A = cmin;
        B = cmax;
        C = start;
        int ierr = -7;
        SOLABC(trace, ierr, CC, A, B, C);
        return ierr;
    }

    TempDir dir;
};

EquationCoefficients onlyColumns(std::initializer_list<std::tuple<int, int, double>> entries) {
    EquationCoefficients CC;
    CC.fill(0.0);
    for (const auto& [e, j, value] : entries) CC(e, j) = value;
    return CC;
}

}  // namespace

TEST_F(Solabc, RecoversTheSolutionOfEquationsWithoutFriction) {
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    for (double start : {0.5, 0.95, 0.41}) {
        double A, B, C;
        EXPECT_EQ(solve(CC, 0.4, 1.0, start, A, B, C), 0) << start;
        EXPECT_NEAR(C, kSolutionC, 1.0E-9) << start;
        EXPECT_NEAR(A, kSolutionA, 1.0E-9) << start;
        EXPECT_NEAR(B, kSolutionB, 1.0E-9) << start;
    }
}

TEST_F(Solabc, RecoversTheSolutionOfEquationsWithFriction) {
    const EquationCoefficients CC = systemWithSolution(kFrictionColumns, kSolutionA, kSolutionB, kSolutionC);
    for (double start : {0.45, 0.55, 0.65}) {
        double A, B, C;
        EXPECT_EQ(solve(CC, 0.4, 1.0, start, A, B, C), 0) << start;
        // Agreement of assumed and computed C to 1e-5 of C.
        EXPECT_NEAR(C, kSolutionC, 1.0E-5 * kSolutionC) << start;
        EXPECT_NEAR(A, kSolutionA, 1.0E-4) << start;
        EXPECT_NEAR(B, kSolutionB, 1.0E-4) << start;
        for (int e = 1; e <= 3; ++e) EXPECT_LT(std::fabs(equationResidual(CC, e, A, B, C)), 0.5) << start;
    }
}

TEST_F(Solabc, ASolutionBelowCminIsFoundAndFlaggedError101) {
    // The secant is held above CMIN until the scan finds the solution below it.
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    double A, B, C;
    EXPECT_EQ(solve(CC, 0.8, 2.0, 1.0, A, B, C), 101);
    EXPECT_NEAR(C, kSolutionC, 1.0E-4);
    EXPECT_NEAR(A, kSolutionA, 1.0E-3);
    EXPECT_NEAR(B, kSolutionB, 1.0E-3);
}

TEST_F(Solabc, ASolutionAboveCmaxIsFlaggedError102) {
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    double A, B, C;
    EXPECT_EQ(solve(CC, 0.1, 0.5, 0.4, A, B, C), 102);
    EXPECT_NEAR(C, kSolutionC, 1.0E-4);
}

TEST_F(Solabc, CmaxIsNeverAboveTenThousand) {
    // The solution C = 20000 is met at once by the start value, inside the bounds given but
    // above the largest C the routine admits.
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, 20000.0);
    double A, B, C;
    EXPECT_EQ(solve(CC, 0.1, 1.0E6, 20000.0, A, B, C), 102);
    EXPECT_DOUBLE_EQ(C, 20000.0);
    EXPECT_NEAR(A, kSolutionA, 1.0E-9);
}

TEST_F(Solabc, ASecantStepBelowOneTenThousandthSwitchesToTheScan) {
    // Safety factor 20000: the secant lands below C = 0.0001 and the scan takes over.
    const double target = 5.0E-5;
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, target);
    double A, B, C;
    EXPECT_EQ(solve(CC, 1.0E-6, 10.0, 1.2E-4, A, B, C, 1), 0);
    EXPECT_NEAR(C, target, 0.005 * target);
    EXPECT_NEAR(A, kSolutionA, 1.0E-4);
    const std::string log = io::contents(18);
    EXPECT_NE(log.find(" SR/SOLABC TRACE PRINT   CC.ASM MIN & MAX =="), std::string::npos);
    EXPECT_NE(log.find(" ITER JUMP LOOP ISTART   CC-ASM     A-CAL     B-CAL    CC-CAL   CC-BEST  DEL.BEST"),
              std::string::npos);
    // The scan shows in the jump and restart columns: iteration 3 is the first scan point.
    EXPECT_NE(log.find("\n    3    0    0      1"), std::string::npos);
    EXPECT_NE(log.find("\n    4    1    0      0"), std::string::npos);
    EXPECT_EQ(io::contents(9), log);
}

TEST_F(Solabc, NoTraceWithoutTheTraceFlag) {
    const EquationCoefficients CC = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    double A, B, C;
    solve(CC, 0.4, 1.0, 0.5, A, B, C, 0);
    EXPECT_EQ(io::contents(18), "");
}

TEST_F(Solabc, EquationsWithoutSolutionEndAfter500IterationsWithError500) {
    // Row 1 gives A = C, row 2 B = 1, and the moment row then C + 1 for every assumed C.
    const EquationCoefficients CC =
        onlyColumns({{1, 1, 1.0}, {1, 3, -1.0}, {2, 2, 1.0}, {2, 6, -1.0}, {3, 1, -1.0}, {3, 3, 1.0}, {3, 6, -1.0}});
    double A, B, C;
    EXPECT_EQ(solve(CC, 0.01, 100.0, 0.5, A, B, C), 500);
}

TEST_F(Solabc, DegenerateForceEquationsAreErrors2To6) {
    double A, B, C;
    // Row 1 holds neither A nor B.
    EXPECT_EQ(solve(onlyColumns({{1, 3, -1.0}, {1, 6, 0.5}, {2, 1, 1.0}, {2, 2, 1.0}, {3, 3, 1.0}}), 0.1, 2.0, 0.5,
                    A, B, C),
              2);
    // Neither row holds A.
    EXPECT_EQ(solve(onlyColumns({{1, 2, 1.0}, {1, 6, 0.5}, {2, 2, 1.0}, {2, 6, 1.0}, {3, 3, 1.0}}), 0.1, 2.0, 0.5,
                    A, B, C),
              3);
    // Row 2 holds neither A nor B.
    EXPECT_EQ(solve(onlyColumns({{1, 1, 1.0}, {1, 2, 1.0}, {2, 3, 1.0}, {2, 6, 1.0}, {3, 3, 1.0}}), 0.1, 2.0, 0.5,
                    A, B, C),
              4);
    // Neither row holds B.
    EXPECT_EQ(solve(onlyColumns({{1, 1, 1.0}, {1, 6, 1.0}, {2, 1, 1.0}, {2, 6, 2.0}, {3, 3, 1.0}}), 0.1, 2.0, 0.5,
                    A, B, C),
              5);
    // Row 2 is twice row 1 in A and B.
    EXPECT_EQ(solve(onlyColumns({{1, 1, 1.0}, {1, 2, 2.0}, {1, 6, 1.0}, {2, 1, 2.0}, {2, 2, 4.0}, {2, 6, 1.0},
                                 {3, 3, 1.0}}),
                    0.1, 2.0, 0.5, A, B, C),
              6);
}

TEST_F(Solabc, AMomentEquationFreeOfCIsError7) {
    const EquationCoefficients regular = systemWithSolution(kFrictionlessColumns, kSolutionA, kSolutionB, kSolutionC);
    EquationCoefficients CC = regular;
    CC(3, 3) = 0.0;
    double A, B, C;
    EXPECT_EQ(solve(CC, 0.1, 2.0, 0.5, A, B, C), 7);
    // On every return a C out of bounds overrides the code.
    EXPECT_EQ(solve(CC, 0.1, 2.0, 0.05, A, B, C), 101);
}
