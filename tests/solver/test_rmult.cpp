// RMULT: search for the interslice roughness factor of the most plausible solution.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "solver/circular_slope.h"
#include "solver/slice_system.h"
#include "solver/solver.h"

using namespace kalmo_test;

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

// Broken line through the points (kSlopeX[k], values[k]).
double brokenLine(const double* values, double x) {
    for (int k = 1; k <= kSlopeSlices; ++k) {
        if (x <= kSlopeX[k]) {
            const double share = (x - kSlopeX[k - 1]) / (kSlopeX[k] - kSlopeX[k - 1]);
            return values[k - 1] + (values[k] - values[k - 1]) * share;
        }
    }
    return values[kSlopeSlices];
}

// The non-circular surface through the slope of the force-equilibrium tests, in its ten
// slices, with an initial roughness r0 on every face.
void setSlopeSurface(double cohesion, double tanPhi, double r0) {
    setSurfaceSlices(
        kSlopeSlices, kSlopeX[0], kSlopeX[kSlopeSlices], [](double x) { return brokenLine(kSlopeTop, x); },
        [](double x) { return brokenLine(kSlopeBase, x); }, 19.0, cohesion, tanPhi);
    MASTER.NTYP = 1;
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.R0(i) = r0;
}

struct SearchRow {
    double factor, SF, score, bestFactor, bestScore;
};

// The rows "RFACTOR SF-COMP SCORE RFACT.BEST SCORE.BEST" of the trace.
std::vector<SearchRow> searchRows(const std::string& log) {
    std::vector<SearchRow> rows;
    std::istringstream lines(log);
    std::string line;
    bool inTable = false;
    while (std::getline(lines, line)) {
        if (line.rfind("RFACTOR   SF-COMP", 0) == 0) {
            inTable = true;
            continue;
        }
        if (!inTable) continue;
        std::istringstream fields(line);
        SearchRow row{};
        if (fields >> row.factor >> row.SF >> row.score >> row.bestFactor >> row.bestScore) rows.push_back(row);
    }
    return rows;
}

class RmultTest : public ::testing::Test {
protected:
    void SetUp() override {
        freshRun(dir);
        MASTER.R1 = 0.5;  // interslice roughness given: no question from the moment solution
        MASTER.METHOD = 0;
    }
    // The start routine as the driver calls it before the search.
    void prepare() {
        SETSF0();
        ASSERT_EQ(MASTER.IERR, 0);
    }
    TempDir dir;
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// One solution only
// ---------------------------------------------------------------------------------------------

TEST_F(RmultTest, SearchSwitchedOffSolvesOnceWithTheInitialRoughness) {
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.3);
    prepare();
    MASTER.CRTSCR = 1.0;
    MASTER.JPRINT = 3;
    RMULT();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.RFACTOR, 1.0);
    const std::string log = logText();
    EXPECT_EQ(countOf(log, "SR/FRCEQR TRACE PRINT"), 1);  // one force solution
    EXPECT_EQ(countOf(log, "TOO HIGH R"), 0);
    EXPECT_LT(MASTER.SCORE, 1.0);
    EXPECT_GT(MASTER.SF, MASTER.SFTZ);
}

TEST_F(RmultTest, FailedForceSolutionEndsTheSearch) {
    // A strongly negative roughness (interslice shear acting the wrong way) leaves the force
    // iteration without convergence: the error of the force solution is the result.
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), -5.0);
    prepare();
    MASTER.CRTSCR = 1.0;
    MASTER.JPRINT = 1;
    RMULT();
    EXPECT_EQ(MASTER.IERR, 3);
    EXPECT_EQ(MASTER.RFACTOR, 1.0);
    const std::string expected = " **** SR/RMULT : SR/FRCEQR ERROR   IERR=           3";
    EXPECT_EQ(countOf(consoleText(), expected), 1);
    EXPECT_EQ(countOf(copyText(), expected), 1);
    EXPECT_EQ(countOf(logText(), "TOO HIGH R"), 0);
    EXPECT_EQ(countOf(logText(), "  SR/RMULT  :  SF,SCORE,RFACTOR ="), 1);
}

TEST_F(RmultTest, ForceEquilibriumMethodTakesTheForceSolutionWithTheInitialRoughness) {
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.3);
    prepare();
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.R(i) = SURF.R0(i);
    MASTER.METHOD = -1;
    MASTER.RFACTOR = 1.0;
    MASTER.JPRINT = 3;
    RMULT();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SCORE, 6.6659998893737793);
    EXPECT_EQ(MASTER.RFACTOR, 1.0);
    const std::string log = logText();
    EXPECT_EQ(countOf(log, "SR/FRCEQR TRACE PRINT"), 1);
    EXPECT_EQ(countOf(log, "SR/MOMEQL"), 0);  // no moment correction
    EXPECT_EQ(countOf(log, "SR/RMULT  :"), 0);  // returns with the force solution at once
    EXPECT_LT(std::abs(SURF.E2(kSlopeSlices)), MASTER.E2TOL);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        EXPECT_EQ(SURF.R(i), 0.3);
        EXPECT_EQ(SURF.H3(i), 0.0);
    }
}

TEST_F(RmultTest, ForceEquilibriumMethodReportsAFailedForceSolution) {
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), -5.0);
    prepare();
    MASTER.METHOD = -1;
    RMULT();
    EXPECT_EQ(MASTER.IERR, 3);
    EXPECT_EQ(countOf(consoleText(), " **** SR/RMULT : SR/FRCEQR ERROR   IERR=           3"), 1);
    EXPECT_EQ(countOf(copyText(), " **** SR/RMULT : SR/FRCEQR ERROR   IERR=           3"), 1);
}

TEST_F(RmultTest, ZeroInitialRoughnessIsRefused) {
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.0);
    SURF.R0(3) = 0.00009;
    prepare();
    const double SF = MASTER.SF;
    MASTER.CRTSCR = 0.3;
    MASTER.JPRINT = 3;
    RMULT();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(MASTER.SF, SF);  // no solution was attempted
    EXPECT_EQ(MASTER.RFACTOR, 0.0);
    const std::string expected = " **** SR/RMULT : ZERO R0-VALUES  R0-MAX,CRTSCR=";
    EXPECT_EQ(countOf(consoleText(), expected), 1);
    EXPECT_EQ(countOf(copyText(), expected), 1);
    EXPECT_EQ(countOf(logText(), "SR/FRCEQR TRACE PRINT"), 0);
    std::istringstream values(consoleText().substr(consoleText().find(expected) + expected.size()));
    double largest = 0.0, critical = 0.0;
    values >> largest >> critical;
    EXPECT_NEAR(largest, 0.00009, 1e-11);
    EXPECT_NEAR(critical, 0.3, 1e-7);
}

// ---------------------------------------------------------------------------------------------
// The search
// ---------------------------------------------------------------------------------------------

TEST_F(RmultTest, SearchRunsTwoPassesAndKeepsTheBestFactor) {
    // Largest R0 = 0.4: the first pass runs the factor from 0 to 2.5 in steps of 0.25, the
    // second around the best factor in steps of 0.025.
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.4);
    SURF.R0(2) = 0.2;
    prepare();
    MASTER.CRTSCR = 0.0;
    MASTER.JPRINT = 2;
    RMULT();
    ASSERT_EQ(MASTER.IERR, 0);
    const std::vector<SearchRow> rows = searchRows(logText());
    ASSERT_GT(rows.size(), 11u);
    const double step = 0.25;
    for (int k = 0; k < 11; ++k) EXPECT_NEAR(rows[k].factor, k * step, 1e-5) << k;
    // The best of the first pass: a later factor wins when its score is at most 0.001 above.
    double bestFactor = 0.0, bestScore = 1.0E6;
    for (int k = 0; k < 11; ++k) {
        if (rows[k].score - bestScore <= 0.001) {
            bestFactor = rows[k].factor;
            bestScore = rows[k].score;
        }
        EXPECT_NEAR(rows[k].bestFactor, bestFactor, 1e-5) << k;
    }
    ASSERT_GT(bestScore, 0.0);
    const double fine = step / 10.0;
    const double secondStart = std::max(0.0, bestFactor - 9.0 * fine);
    const size_t secondRows = rows.size() - 11;
    EXPECT_LE(secondRows, 19u);
    for (size_t k = 0; k < secondRows; ++k) EXPECT_NEAR(rows[11 + k].factor, secondStart + k * fine, 1e-5) << k;
    // The final solution is computed at the best factor.
    EXPECT_NEAR(MASTER.RFACTOR, rows.back().bestFactor, 1e-5);
    EXPECT_NEAR(MASTER.SCORE, rows.back().bestScore, 1e-6);
}

TEST_F(RmultTest, ScoreBelowTheCriticalScoreEndsTheSearchAtOnce) {
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.4);
    SURF.R0(2) = 0.2;
    prepare();
    MASTER.CRTSCR = 0.0;
    MASTER.JPRINT = 2;
    RMULT();
    const std::vector<SearchRow> all = searchRows(logText());
    ASSERT_GE(all.size(), 4u);
    // A critical score between the scores of the third and the fourth factor... chosen from
    // the rows that precede the first one below it.
    size_t first = 1;
    while (first < all.size() && !(all[first].score < all[0].score - 1e-4)) ++first;
    ASSERT_LT(first, all.size());
    const double critical = 0.5 * (all[first].score + all[0].score);
    size_t accepted = 0;
    while (!(all[accepted].score < critical)) ++accepted;

    freshRun(dir);
    MASTER.R1 = 0.5;
    MASTER.METHOD = 0;
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.4);
    SURF.R0(2) = 0.2;
    prepare();
    MASTER.CRTSCR = critical;
    MASTER.JPRINT = 2;
    RMULT();
    ASSERT_EQ(MASTER.IERR, 0);
    const std::vector<SearchRow> rows = searchRows(logText());
    EXPECT_EQ(rows.size(), accepted);  // the accepted solution is not listed
    EXPECT_NEAR(MASTER.RFACTOR, all[accepted].factor, 1e-5);
    EXPECT_NEAR(MASTER.SF, all[accepted].SF, 1e-6);
    EXPECT_LT(MASTER.SCORE, critical);
}

TEST_F(RmultTest, RoughnessWithoutEffectStopsTheSearchAfterTenPoints) {
    // Faces without friction and cohesion carry no interslice shear whatever their roughness:
    // every factor gives the same solution.
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.5);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        SURF.TAN2(i) = 0.0;
        SURF.C2(i) = 0.0;
    }
    prepare();
    MASTER.CRTSCR = 0.0;
    MASTER.JPRINT = 2;
    RMULT();
    ASSERT_EQ(MASTER.IERR, 0);
    const std::vector<SearchRow> rows = searchRows(logText());
    ASSERT_EQ(rows.size(), 10u);  // the eleventh factor of the first pass is not tried
    for (int k = 0; k < 10; ++k) EXPECT_NEAR(rows[k].factor, 0.2 * k, 1e-5);
    EXPECT_LE(std::abs(rows[9].SF - rows[0].SF), 0.001);
    // The final solution is computed at the best factor of the ten.
    EXPECT_NEAR(MASTER.RFACTOR, rows[9].bestFactor, 1e-5);
    EXPECT_NEAR(MASTER.SF, rows[9].SF, 1e-3);
}

// ---------------------------------------------------------------------------------------------
// A moment solution that fails
// ---------------------------------------------------------------------------------------------

// With SFTZ put at twice the safety factor, both moment solvers look for C = 1/SF where it is
// not (SOLABC finds a factor below SFTZ, SOLXYZ's range ends below C) and MOMEQL gives -1 at
// every evaluation. The slice table then holds a force solution whose moment arms belong to
// no solution: the search returns the -1 (the driver reports it) instead of a solution that
// the equilibrium check would find out of moment balance on every slice.
TEST_F(RmultTest, AMomentFailureAtTheReturnedEvaluationIsHandedOn) {
    setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.3);
    prepare();
    MASTER.CRTSCR = 1.0;
    RMULT();
    ASSERT_EQ(MASTER.IERR, 0);
    const double solvedSF = MASTER.SF;

    for (double critical : {1.0, 0.0}) {  // one evaluation, then the whole search
        freshRun(dir);
        MASTER.R1 = 0.5;
        MASTER.METHOD = 0;
        setSlopeSurface(8.0, std::tan(28.0 * kDegree), 0.3);
        prepare();
        MASTER.SFTZ = 2.0 * solvedSF;
        MASTER.CRTSCR = critical;
        RMULT();
        EXPECT_EQ(MASTER.IERR, -1) << critical;
        EXPECT_NE(logText().find(" **** SR/MOMEQL : Error codes from SOLABC, SOLXYZ and"), std::string::npos)
            << critical;
    }
}
