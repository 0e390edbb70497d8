// CHKEQL: equilibrium check of every slice of the final solution.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "solver/infinite_slope.h"
#include "solver/slice_system.h"
#include "solver/solver.h"

using namespace kalmo_test;

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;
constexpr int kSlices = 10;

InfiniteSlope slope(double sideForce) {
    InfiniteSlope s;
    s.beta = 30.0 * kDegree;
    s.depth = 3.0;
    s.width = 1.5;
    s.unitWeight = 20.0;
    s.cohesion = 6.0;
    s.tanPhi = std::tan(32.0 * kDegree);
    s.sideForce = sideForce;
    s.sideHeight = 0.35;
    return s;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

class ChkeqlTest : public ::testing::Test {
protected:
    void SetUp() override {
        freshRun(dir);
        MASTER.METHOD = 0;
    }
    TempDir dir;
};

}  // namespace

TEST_F(ChkeqlTest, BalancedSlicesPassEveryCheck) {
    // Interslice forces parallel to the slope, all of them in balance; the end force is part
    // of the infinite slope and is reported as a warning only.
    setInfiniteSlope(kSlices, slope(30.0));
    MASTER.IERR = 7;
    for (int method : {-1, 0, 1, 2, 3}) {
        MASTER.METHOD = method;
        CHKEQL();
        EXPECT_EQ(MASTER.IERR, 0) << "method " << method;
    }
    EXPECT_EQ(countOf(logText(), "ERROR"), 0);
    EXPECT_EQ(MASTER.SF, infiniteSlopeFactor(slope(30.0)));
}

TEST_F(ChkeqlTest, NoWarningWithoutEndForces) {
    setInfiniteSlope(kSlices, slope(0.0));
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(logText(), "");
    EXPECT_EQ(copyText(), "");
    EXPECT_EQ(consoleText(), "");
}

TEST_F(ChkeqlTest, FactorBelowTheZeroRoughnessFactorIsRejectedWithoutChecks) {
    // SF lies exactly 0.001 (the single-precision value) below SFTZ: 1 + 0.001f is exact.
    setInfiniteSlope(kSlices, slope(0.0));
    MASTER.SFTZ = 1.0 + static_cast<double>(0.001f);
    MASTER.SF = 1.0;
    SURF.P(3) = -5.0;  // would be reported if the checks ran
    MASTER.IERR = 7;
    CHKEQL();
    EXPECT_EQ(MASTER.SF, static_cast<double>(533.333f));
    EXPECT_EQ(MASTER.SF, 533.3330078125);
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(5.333f));
    EXPECT_EQ(MASTER.IERR, 7);  // left as it was
    EXPECT_EQ(logText(), "");
    EXPECT_EQ(consoleText(), "");
}

TEST_F(ChkeqlTest, FactorJustAboveTheRejectionLimitGoesThroughTheChecks) {
    // 0.0009 below SFTZ, and the decimal 0.001 below (which is less than the single-precision
    // 0.001): both are checked, and the equilibrium at F holds whatever SFTZ is.
    for (double below : {0.0009, 0.001}) {
        freshRun(dir);
        MASTER.METHOD = 0;
        setInfiniteSlope(kSlices, slope(0.0));
        const double F = MASTER.SF;
        MASTER.SFTZ = F + below;
        MASTER.IERR = 7;
        CHKEQL();
        EXPECT_EQ(MASTER.IERR, 0) << below;
        EXPECT_EQ(MASTER.SF, F) << below;

        // Now the checks report: the shear of slice 4 does not follow the strength law.
        SURF.S(4) *= 1.1;
        CHKEQL();
        EXPECT_GT(MASTER.IERR, 0) << below;
        EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : S-FORCE ERROR"), 1) << below;
    }
}

TEST_F(ChkeqlTest, NegativeBaseForcesAreAWarningOnly) {
    setInfiniteSlope(kSlices, slope(0.0));
    SURF.P(2) = -SURF.P(2);
    SURF.P(5) = -1.0;
    MASTER.E2TOL = 1.0E12;  // only the warning is of interest here
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
    const std::string expected = " **** WARNING : NEGATIVE P-FORCES FOR           2 SLICES";
    EXPECT_EQ(countOf(consoleText(), expected), 1);
    EXPECT_EQ(countOf(copyText(), expected), 1);
    EXPECT_EQ(logText(), "");

    freshRun(dir);
    MASTER.METHOD = 0;
    setInfiniteSlope(kSlices, slope(0.0));
    SURF.P(2) = -1.0;
    MASTER.E2TOL = 1.0E12;
    MASTER.NEGPOK = 1;
    CHKEQL();
    EXPECT_EQ(countOf(consoleText(), "NEGATIVE P-FORCES"), 0);
}

namespace {

// The slope with a horizontal load on every slice that nothing balances, and the base forces
// moved off the line of the weight: neither the horizontal nor the moment balance holds.
void spoilHorizontalAndMoment() {
    setInfiniteSlope(kSlices, slope(40.0));
    for (int i = 1; i <= kSlices; ++i) {
        SURF.WX(i) = 3.0;
        SURF.H3(i) = 0.1 * SURF.L34(i);
    }
}

}  // namespace

TEST_F(ChkeqlTest, SimplifiedMethodHasNoHorizontalOrMomentCheck) {
    spoilHorizontalAndMoment();
    MASTER.METHOD = 1;
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(countOf(logText(), "ERROR"), 0);

    // The vertical balance and the base shear are checked: a slice with too much shear
    // violates both.
    SURF.S(6) += 10.0;
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 2);
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : SUM FRC-Z ERROR"), 1);
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : S-FORCE ERROR"), 1);
    EXPECT_EQ(countOf(logText(), "SUM FRC-X"), 0);
    EXPECT_EQ(countOf(logText(), "SUM MOMENTS"), 0);

    // The same solution under the other moment methods fails its horizontal and moment
    // balance on every slice.
    for (int method : {0, 2, 3}) {
        freshRun(dir);
        spoilHorizontalAndMoment();
        MASTER.METHOD = method;
        CHKEQL();
        EXPECT_EQ(MASTER.IERR, 2 * kSlices) << method;
        EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : SUM FRC-X ERROR"), kSlices) << method;
        EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : SUM MOMENTS ERROR"), kSlices) << method;
    }
}

TEST_F(ChkeqlTest, PureForceEquilibriumHasNoMomentCheck) {
    setInfiniteSlope(kSlices, slope(40.0));
    for (int i = 1; i <= kSlices; ++i) SURF.H3(i) = 0.0;
    MASTER.METHOD = -1;
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
    MASTER.METHOD = 0;
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, kSlices);
}

TEST_F(ChkeqlTest, FailedCheckLineNamesSliceValueAndTolerance) {
    setInfiniteSlope(kSlices, slope(0.0));
    SURF.WX(3) = 2.5;  // an unbalanced horizontal load on slice 3, and its moment
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 2);
    const std::vector<std::string> log = linesOf(logText());
    ASSERT_EQ(log.size(), 2u);
    std::istringstream xLine(log[0].substr(std::string(" **** SR/CHKEQL : SUM FRC-X ERROR").size()));
    ASSERT_EQ(log[0].rfind(" **** SR/CHKEQL : SUM FRC-X ERROR", 0), 0u);
    int slice = 0;
    double value = 0.0, tolerance = 0.0;
    xLine >> slice >> value >> tolerance;
    EXPECT_EQ(slice, 3);
    EXPECT_NEAR(value, 2.5, 1e-5);
    EXPECT_NEAR(tolerance, MASTER.E2TOL, 1e-6 * MASTER.E2TOL);

    // The moment of WX about corner 3 is -(z3 - z5) WX; the tolerance is E2TOL times the width
    // of the first slice.
    ASSERT_EQ(log[1].rfind(" **** SR/CHKEQL : SUM MOMENTS ERROR", 0), 0u);
    std::istringstream mLine(log[1].substr(std::string(" **** SR/CHKEQL : SUM MOMENTS ERROR").size()));
    mLine >> slice >> value >> tolerance;
    EXPECT_EQ(slice, 3);
    EXPECT_NEAR(value, -(SURF.ZZ(3, 3) - SURF.ZZ(5, 3)) * 2.5, 1e-5);
    EXPECT_NEAR(tolerance, MASTER.E2TOL * 1.5, 1e-6 * MASTER.E2TOL);
    EXPECT_EQ(copyText(), logText());
    EXPECT_EQ(consoleText(), "");
}

TEST_F(ChkeqlTest, UndrainedBaseOfTheCombinedAnalysisIsCheckedAgainstItsUndrainedStrength) {
    setInfiniteSlope(kSlices, slope(0.0));
    MASTER.IDEFTO = 3;
    // Slice 4 fails undrained: its shear is L su / F, whatever P.
    const double su = 21.0;
    SURF.SU3(4) = su;
    ISUR.MODE(4) = 2;
    MASTER.E2TOL = 1.0E-6;  // tight: the drained slices agree to rounding
    CHKEQL();
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : S-FORCE ERROR"), 1);
    SURF.S(4) = SURF.L34(4) * su / MASTER.SF;
    CHKEQL();
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : S-FORCE ERROR"), 1);  // no new one
    // In an effective stress analysis the mode is not looked at.
    MASTER.IDEFTO = 1;
    SURF.S(4) = SURF.S(5);
    CHKEQL();
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : S-FORCE ERROR"), 1);
}

TEST_F(ChkeqlTest, CheckStopsAtTheTwentySixthFailure) {
    // Every slice carries an unbalanced horizontal load and an unbalanced vertical one: three
    // failed checks per slice (horizontal, vertical, moment), thirty in all.
    setInfiniteSlope(kSlices, slope(0.0));
    for (int i = 1; i <= kSlices; ++i) {
        SURF.WX(i) = 5.0;
        SURF.WZ(i) += 5.0;
    }
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 26);
    const std::vector<std::string> log = linesOf(logText());
    ASSERT_EQ(log.size(), 26u);
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : SUM FRC-X ERROR"), 9);
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : SUM FRC-Z ERROR"), 9);
    EXPECT_EQ(countOf(logText(), " **** SR/CHKEQL : SUM MOMENTS ERROR"), 8);
    EXPECT_EQ(log.back().rfind(" **** SR/CHKEQL : SUM FRC-Z ERROR", 0), 0u);
    std::istringstream last(log.back().substr(std::string(" **** SR/CHKEQL : SUM FRC-Z ERROR").size()));
    int slice = 0;
    last >> slice;
    EXPECT_EQ(slice, 9);
    EXPECT_EQ(countOf(logText(), "LAST SLICE"), 0);  // returned before the end-force check
}

TEST_F(ChkeqlTest, EndForcesAreWarningsWrittenToTheLogFirst) {
    // Side forces 10 x E2TOL and above are reported at the exit; slightly below they are not.
    setInfiniteSlope(kSlices, slope(0.0));
    const double tol = MASTER.E2TOL;
    SURF.E2(kSlices) = 10.0 * tol * 1.01;
    SURF.T2(kSlices) = -10.0 * tol * 1.02;
    // Keep the last slice in balance: the loads take the end forces.
    SURF.WX(kSlices) = SURF.E2(kSlices);
    SURF.WZ(kSlices) += SURF.T2(kSlices);
    SURF.WM(kSlices) = (SURF.ZZ(3, kSlices) - SURF.ZZ(5, kSlices)) * SURF.WX(kSlices) -
                       SURF.H2(kSlices) * SURF.E2(kSlices) - (SURF.XX(3, kSlices) - SURF.XX(5, kSlices)) * SURF.T2(kSlices);
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
    const std::vector<std::string> log = linesOf(logText());
    ASSERT_EQ(log.size(), 2u);
    EXPECT_EQ(log[0].rfind(" **** SR/CHKEQL : E2-FORCE LAST SLICE=", 0), 0u);
    EXPECT_EQ(log[1].rfind(" **** SR/CHKEQL : T2-FORCE LAST SLICE=", 0), 0u);
    std::istringstream e2Line(log[0].substr(std::string(" **** SR/CHKEQL : E2-FORCE LAST SLICE=").size()));
    double value = 0.0, printedTol = 0.0;
    e2Line >> value >> printedTol;
    EXPECT_NEAR(value, SURF.E2(kSlices), 1e-6 * std::abs(value));
    EXPECT_NEAR(printedTol, tol, 1e-6 * tol);
    EXPECT_EQ(copyText(), logText());

    // Earth pressure: the end force is the result, not a residual.
    freshRun(dir);
    MASTER.METHOD = 0;
    setInfiniteSlope(kSlices, slope(0.0));
    MASTER.IDTYP = 2;
    SURF.E2(kSlices) = 100.0 * MASTER.E2TOL;
    SURF.WX(kSlices) = SURF.E2(kSlices);
    SURF.WM(kSlices) = (SURF.ZZ(3, kSlices) - SURF.ZZ(5, kSlices)) * SURF.WX(kSlices) - SURF.H2(kSlices) * SURF.E2(kSlices);
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(logText(), "");

    // Just below ten times the tolerance: nothing.
    freshRun(dir);
    MASTER.METHOD = 0;
    setInfiniteSlope(kSlices, slope(0.0));
    SURF.E2(kSlices) = 10.0 * MASTER.E2TOL * 0.99;
    SURF.WX(kSlices) = SURF.E2(kSlices);
    SURF.WM(kSlices) = (SURF.ZZ(3, kSlices) - SURF.ZZ(5, kSlices)) * SURF.WX(kSlices) - SURF.H2(kSlices) * SURF.E2(kSlices);
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(logText(), "");
}
