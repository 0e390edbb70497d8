// MOMEQL: moment equilibrium added to a force-equilibrium solution of the slice system.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "io/channels.h"
#include "records.h"
#include "solver/moment_fixture.h"
#include "solver/solver.h"
#include "support/tempdir.h"

using namespace kalmo_test;
using namespace kalmo_test::moments;

namespace {

constexpr double kUnitWeight = 18.0;
constexpr double kUndrainedStrength = 40.0;
const std::string kQuestion = " SHALL ALL FORCE EQUILIBRIUM SOLUTIONS BE KEPT UNCHANGED ? (Y/N)...... ";

// Resisting over driving moment about the circle centre for the undrained slope in the
// record: every base shear c*l acts along its chord at the distance of the chord from the
// centre (the normal forces at the chord middles point through the centre and have no
// moment); the weights act at the slice centroids. With the radius in place of the chord
// distance this is the textbook ratio sum(c l R) / sum(W (xc - xw)).
struct MomentRatio {
    double chord;  // exact for the chords
    double arc;    // with the radius as lever arm
};

MomentRatio circleMomentRatio() {
    double resistingChord = 0.0, resistingArc = 0.0, driving = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double length = SURF.L34(i);
        const double distance = std::sqrt(kCircleRadius * kCircleRadius - 0.25 * length * length);
        resistingChord += SURF.C3(i) * length * distance;
        resistingArc += SURF.C3(i) * length * kCircleRadius;
        driving += SURF.WZ(i) * (kCircleX - SURF.XX(5, i));
    }
    return {resistingChord / driving, resistingArc / driving};
}

double sumOfWeights() {
    double sum = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) sum += SURF.WZ(i);
    return sum;
}

// Bounds of a safety-factor analysis as the start routine leaves them, well clear of F.
void setBounds(double sfmin, double sfmax, double sftz) {
    MASTER.SFMIN = sfmin;
    MASTER.SFMAX = sfmax;
    MASTER.SFTZ = sftz;
}

std::vector<double> column(const Arr1<double, MAXSLC>& values) {
    std::vector<double> copy;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) copy.push_back(values(i));
    return copy;
}

// Every slice must be in horizontal, vertical and moment balance under the forces MOMEQL
// left (z downward; E1 pushes +x at H1 above corner 4, E2 pushes -x at H2 above corner 3,
// T1 acts downward on face 1 and T2 upward on face 2, P and the base shear act at H3 from
// corner 3 along the base).
void expectEverySliceInBalance(double tolerance) {
    const double q = 1.0 / MASTER.SF;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        const double shear = SURF.S(i) + q * SURF.SS(i);
        const double fx = SURF.E1(i) - SURF.E2(i) + SURF.WX(i) + q * SURF.SNX(i) + SURF.P(i) * sinb - shear * cosb;
        const double fz = SURF.T1(i) - SURF.T2(i) + SURF.WZ(i) + q * SURF.SNZ(i) - SURF.P(i) * cosb - shear * sinb;
        EXPECT_NEAR(fx, 0.0, tolerance) << "slice " << i;
        EXPECT_NEAR(fz, 0.0, tolerance) << "slice " << i;

        const double xBase = SURF.XX(3, i) - cosb * SURF.H3(i), zBase = SURF.ZZ(3, i) - sinb * SURF.H3(i);
        double moment = 0.0;
        moment += momentAboutCorner3(i, SURF.XX(1, i), SURF.ZZ(4, i) - SURF.H1(i), SURF.E1(i), 0.0);
        moment += momentAboutCorner3(i, SURF.XX(1, i), SURF.ZZ(4, i), 0.0, SURF.T1(i));
        moment += momentAboutCorner3(i, SURF.XX(2, i), SURF.ZZ(3, i) - SURF.H2(i), -SURF.E2(i), 0.0);
        moment += momentAboutCorner3(i, SURF.XX(2, i), SURF.ZZ(3, i), 0.0, -SURF.T2(i));
        moment += momentAboutCorner3(i, SURF.XX(5, i), SURF.ZZ(5, i), SURF.WX(i), SURF.WZ(i)) + SURF.WM(i);
        moment += momentAboutCorner3(i, xBase, zBase, SURF.P(i) * sinb, -SURF.P(i) * cosb);
        moment += momentAboutCorner3(i, xBase, zBase, -shear * cosb, -shear * sinb);
        EXPECT_NEAR(moment, 0.0, tolerance * 10.0) << "slice " << i;
    }
}

class Momeql : public ::testing::Test {
protected:
    void SetUp() override { freshMomentRun(dir); }
    void TearDown() override {
        io::setStdoutStream(nullptr);
        io::resetAll();
    }

    // The undrained circle of n slices with a start at F0 and bounds that leave the moment
    // solution free.
    void undrainedCircle(int n, double F0) {
        setCircleSlope(n, kUnitWeight, kUndrainedStrength);
        setVerticalBalanceStart(F0);
        setBounds(0.2, 1.0E6, 0.2);
    }

    void answer(const std::string& answers) {
        dir.write("answers", answers);
        io::openOld(kMomentAnswers, dir.path("answers"));
    }

    TempDir dir;
    double A = -9.0, B = -9.0, C = -9.0;
};

}  // namespace

TEST_F(Momeql, UndrainedCircleGivesTheRatioOfResistingToDrivingMomentAboutTheCentre) {
    undrainedCircle(30, 1.0);
    const MomentRatio expected = circleMomentRatio();
    ASSERT_GT(expected.chord, 1.2);
    ASSERT_LT(expected.chord, 2.5);
    const std::vector<double> startP = column(SURF.P);

    MOMEQL(A, B, C);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected.arc, 0.005 * expected.arc);
    EXPECT_NEAR(MASTER.SF, expected.chord, 1.0E-4 * expected.chord);
    EXPECT_DOUBLE_EQ(MASTER.SF, 1.0 / C);
    EXPECT_EQ(occurrences(momentConsole(), kQuestion), 0);

    // The normal forces were scaled by A + B w, w running from 0 at the entry to 1 at the exit.
    const double entry = SURF.XX(1, 1), span = SURF.XX(2, MASTER.NUMSLC) - entry;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double w = (SURF.XX(3, i) - SURF.COSB(i) * SURF.H30(i) - entry) / span;
        EXPECT_NEAR(SURF.P(i), (A + B * w) * startP[static_cast<size_t>(i - 1)], 1.0E-9 * std::fabs(SURF.P(i)) + 1.0E-9)
            << i;
    }

    // The whole body is in equilibrium: nothing is left at the exit face.
    const double weight = sumOfWeights();
    EXPECT_NEAR(SURF.E2(MASTER.NUMSLC), 0.0, 1.0E-6 * weight);
    EXPECT_NEAR(SURF.T2(MASTER.NUMSLC), 0.0, 1.0E-6 * weight);
    expectEverySliceInBalance(1.0E-6 * weight);

    // Base shear and roughness follow from the new factor.
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        EXPECT_NEAR(SURF.S(i), kUndrainedStrength * SURF.L34(i) / MASTER.SF, 1.0E-9) << i;
        EXPECT_DOUBLE_EQ(SURF.S1(i), SURF.S(i));
        const double capacity = kUndrainedStrength * (SURF.ZZ(3, i) - SURF.ZZ(2, i)) / MASTER.SF;
        if (std::fabs(SURF.T2(i)) >= MASTER.E2TOL && std::fabs(capacity) > 1.0E-20) {
            EXPECT_NEAR(SURF.R(i), SURF.T2(i) / capacity, 1.0E-9 * std::fabs(SURF.R(i))) << i;
        }
        if (i < MASTER.NUMSLC) {
            EXPECT_DOUBLE_EQ(SURF.E1(i + 1), SURF.E2(i));
            EXPECT_DOUBLE_EQ(SURF.T1(i + 1), SURF.T2(i));
            EXPECT_DOUBLE_EQ(SURF.H1(i + 1), SURF.H2(i));
            EXPECT_DOUBLE_EQ(SURF.H3(i), SURF.H30(i));
        }
    }
    EXPECT_DOUBLE_EQ(SURF.H2(MASTER.NUMSLC), 0.0);  // the exit face has no height
}

TEST_F(Momeql, TheFactorDoesNotDependOnTheStartOfTheNormalForces) {
    for (double F0 : {0.8, 1.6, 3.0}) {
        freshMomentRun(dir);
        undrainedCircle(30, F0);
        const double expected = circleMomentRatio().chord;
        MOMEQL(A, B, C);
        EXPECT_EQ(MASTER.IERR, 0) << F0;
        EXPECT_NEAR(MASTER.SF, expected, 1.0E-4 * expected) << F0;
    }
}

TEST_F(Momeql, WithoutBaseFrictionTheLinearSolutionOfSolxyzGivesTheSameFactor) {
    // SFTZ just above the moment solution rejects SOLABC's factor; SOLXYZ solves the
    // frictionless equations directly through LINEQ.
    undrainedCircle(30, 1.0);
    const double expected = circleMomentRatio().chord;
    setBounds(0.2, 1.0E6, 1.1 * expected);
    MASTER.JPRINT = 3;
    MOMEQL(A, B, C);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected, 1.0E-9 * expected);
    const std::string log = momentLog();
    EXPECT_NE(log.find(" SR/SOLXYZ trace print for zero shear surface friction angle"), std::string::npos);
    EXPECT_NE(log.find(" SR/MOMEQL trace print\n Routine   A       B       C       FoS    IERR\n SOLABC "),
              std::string::npos);
    EXPECT_NE(log.find("\n SOLXYZ "), std::string::npos);
    EXPECT_EQ(log.find(" **** SR/MOMEQL : Error codes"), std::string::npos);
}

TEST_F(Momeql, SolabcBelowOneOverSfmaxIsError101ThenSolxyzIsTried) {
    undrainedCircle(30, 1.0);
    const double expected = circleMomentRatio().chord;
    // C of the solution is below 1/SFMAX; SOLXYZ's range 1.25/max(SFMIN, SFTZ) admits it.
    setBounds(0.2, 0.8 * expected, 0.9 * expected);
    MASTER.JPRINT = 3;
    MOMEQL(A, B, C);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected, 1.0E-9 * expected);
    const std::string log = momentLog();
    EXPECT_NE(log.find(" **** WARNING FROM SR/MOMEQL : SR/SOLABC PROBLEM         101"), std::string::npos);
    // SOLABC's out-of-bounds solution was kept, not reset to the force-equilibrium factor:
    // its row shows the moment factor and the code 101.
    const size_t row = log.find("\n SOLABC ");
    ASSERT_NE(row, std::string::npos);
    std::istringstream fields(log.substr(row + 9, log.find('\n', row + 1) - row - 9));
    double rowA, rowB, rowC, rowFoS;
    int rowCode;
    fields >> rowA >> rowB >> rowC >> rowFoS >> rowCode;
    EXPECT_NEAR(rowFoS, expected, 1.0E-3);
    EXPECT_EQ(rowCode, 101);
    EXPECT_NE(log.find(" SR/SOLXYZ trace print for zero shear surface friction angle"), std::string::npos);
}

TEST_F(Momeql, WhenBothSolversFailTheForceEquilibriumSolutionIsKept) {
    undrainedCircle(30, 1.0);
    const double expected = circleMomentRatio().chord;
    // SFTZ far above the moment solution: SOLABC's factor is too low, and SOLXYZ's range
    // ends below its C.
    setBounds(0.2, 1.0E6, 2.0 * expected);
    const std::vector<double> P = column(SURF.P), E2 = column(SURF.E2), T2 = column(SURF.T2), H2 = column(SURF.H2);
    MOMEQL(A, B, C);
    EXPECT_EQ(MASTER.IERR, -1);
    EXPECT_EQ(MASTER.SF, 1.0);
    EXPECT_EQ(A, 1.0);
    EXPECT_EQ(B, 0.0);
    EXPECT_EQ(C, 1.0);
    EXPECT_EQ(column(SURF.P), P);
    EXPECT_EQ(column(SURF.E2), E2);
    EXPECT_EQ(column(SURF.T2), T2);
    EXPECT_EQ(column(SURF.H2), H2);
    const std::string message = " **** SR/MOMEQL : Error codes from SOLABC, SOLXYZ and IERR ==";
    EXPECT_NE(momentLog().find(message), std::string::npos);
    EXPECT_NE(momentConsole().find(message), std::string::npos);
}

TEST_F(Momeql, FewerThanFiveSlicesAskOnceAndYesKeepsForceEquilibriumForTheRun) {
    answer("Y\n");
    undrainedCircle(4, 1.3);
    const std::vector<double> P = column(SURF.P);
    MOMEQL(A, B, C);
    const std::string console = momentConsole();
    EXPECT_NE(console.find("\n THE SHEAR SURFACE HAS           4 SLICES ONLY\n" + kQuestion), std::string::npos);
    EXPECT_EQ(momentCopy(), console);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_DOUBLE_EQ(MASTER.SF, 1.3);
    EXPECT_EQ(column(SURF.P), P);
    EXPECT_EQ(A, 1.0);
    EXPECT_EQ(B, 0.0);
    // The slices are balanced again at the kept factor.
    expectEverySliceInBalance(1.0E-9 * sumOfWeights());

    // A later surface of the run, even one that would be solved, keeps its force equilibrium.
    undrainedCircle(30, 1.0);
    const std::vector<double> laterP = column(SURF.P);
    MOMEQL(A, B, C);
    EXPECT_EQ(occurrences(momentConsole(), kQuestion), 1);
    EXPECT_DOUBLE_EQ(MASTER.SF, 1.0);
    EXPECT_EQ(column(SURF.P), laterP);
}

TEST_F(Momeql, FewerThanFiveSlicesAnsweredNoAreSolvedAndNotAskedAgain) {
    answer("n\n");
    undrainedCircle(4, 1.3);
    const double expected = circleMomentRatio().chord;
    MOMEQL(A, B, C);
    EXPECT_EQ(occurrences(momentConsole(), kQuestion), 1);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected, 1.0E-4 * expected);
    undrainedCircle(3, 1.3);
    MOMEQL(A, B, C);
    EXPECT_EQ(occurrences(momentConsole(), kQuestion), 1);
    EXPECT_NEAR(MASTER.SF, circleMomentRatio().chord, 1.0E-4 * MASTER.SF);
}

TEST_F(Momeql, NoValidAnswerCountsAsNo) {
    answer("x\n?\n \n");
    undrainedCircle(4, 1.3);
    MOMEQL(A, B, C);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, circleMomentRatio().chord, 1.0E-4 * MASTER.SF);
    EXPECT_EQ(occurrences(momentLog(), " Y/N REQUIRED , PLEASE TRY AGAIN..... "), 3);
}

TEST_F(Momeql, ZeroIntersliceRoughnessAsksWithItsOwnLineAndTakesPrecedence) {
    answer("N\n");
    MASTER.R1 = MASTER.R2 = MASTER.R3 = 0.0;
    undrainedCircle(30, 1.0);
    MOMEQL(A, B, C);
    EXPECT_NE(momentConsole().find("\n ZERO INTERSLICE ROUGHNESS WAS SPECIFIED\n" + kQuestion), std::string::npos);

    freshMomentRun(dir, "N\n");
    MASTER.R1 = MASTER.R2 = MASTER.R3 = 0.0;
    undrainedCircle(4, 1.0);
    MOMEQL(A, B, C);
    EXPECT_NE(momentConsole().find(" ZERO INTERSLICE ROUGHNESS WAS SPECIFIED"), std::string::npos);
    EXPECT_EQ(momentConsole().find("SLICES ONLY"), std::string::npos);
}

TEST_F(Momeql, OnlyTheMethodOfTheFirstSurfacesAsks) {
    answer("Y\n");
    MASTER.METHOD = 2;
    undrainedCircle(4, 1.3);
    MOMEQL(A, B, C);
    EXPECT_EQ(occurrences(momentConsole(), kQuestion), 0);
    EXPECT_NEAR(MASTER.SF, circleMomentRatio().chord, 1.0E-4 * MASTER.SF);
    // The decision is still open for a later surface of the first method.
    MASTER.METHOD = 0;
    undrainedCircle(4, 1.3);
    MOMEQL(A, B, C);
    EXPECT_EQ(occurrences(momentConsole(), kQuestion), 1);
    EXPECT_DOUBLE_EQ(MASTER.SF, 1.3);
}

TEST_F(Momeql, InBatchModeNothingIsReadAndThePresentErrorCodeAnswers) {
    std::ostringstream screen;
    io::setStdoutStream(&screen);
    io::bindStdout(6);
    POSTGRAF.NFCOPY = 6;
    answer("Y\n");
    undrainedCircle(4, 1.3);
    MASTER.IERR = 0;  // no error: the answer is No, the moment solution is made
    MOMEQL(A, B, C);
    EXPECT_NE(screen.str().find(kQuestion + "\n **** WARNING FROM SR/MOMEQL : SR/SOLABC PROBLEM           0"),
              std::string::npos);
    EXPECT_NEAR(MASTER.SF, circleMomentRatio().chord, 1.0E-4 * MASTER.SF);
    std::string unread;
    EXPECT_EQ(io::readLine(kMomentAnswers, unread), io::kReadOk);
    EXPECT_EQ(unread, "Y");

    resetMomeqlDecision();  // a new run: the question is due again
    undrainedCircle(4, 1.3);
    MASTER.IERR = 1;  // an error pending: the answer is Yes
    MOMEQL(A, B, C);
    EXPECT_NE(screen.str().find(" **** WARNING FROM SR/MOMEQL : SR/SOLABC PROBLEM           1"), std::string::npos);
    EXPECT_DOUBLE_EQ(MASTER.SF, 1.3);
    EXPECT_EQ(MASTER.IERR, 0);
    io::setStdoutStream(nullptr);
}

TEST_F(Momeql, EarthPressureOnlyBalancesTheSlicesAtTheGivenFactor) {
    answer("Y\n");
    MASTER.IDTYP = 2;
    undrainedCircle(4, 1.3);
    const std::vector<double> P = column(SURF.P);
    MOMEQL(A, B, C);
    EXPECT_EQ(occurrences(momentConsole(), kQuestion), 0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_DOUBLE_EQ(MASTER.SF, 1.3);
    EXPECT_EQ(column(SURF.P), P);
    // Slice 1 by hand: E2 = sinb P + WX + E1 - (SS/F + S) cosb with S = c l / F, handed on
    // to slice 2 as it is.
    const double S1 = kUndrainedStrength * SURF.L34(1) / 1.3;
    const double E2 = SURF.SINB(1) * P[0] - S1 * SURF.COSB(1);
    EXPECT_NEAR(SURF.E1(2), E2, 1.0E-9 * std::fabs(E2));
    EXPECT_NEAR(SURF.T2(1), SURF.WZ(1) - P[0] * SURF.COSB(1) - S1 * SURF.SINB(1), 1.0E-9 * std::fabs(SURF.T2(1)));
    expectEverySliceInBalance(1.0E-9 * sumOfWeights());
}

TEST_F(Momeql, AVanishingInterfaceForceIsStoredAsPminAfterItHasBeenHandedOn) {
    // Slice 1 has a level base without strength and no horizontal load: it hands on E2 = 0,
    // which is kept as Pmin = 0.0005 E2TOL so that the arm of E2 stays finite.
    MASTER.IDTYP = 2;
    const double x[3] = {0.0, 2.0, 4.0}, top[3] = {0.0, 0.0, 0.0}, base[3] = {3.0, 3.0, 4.0};
    setMomentSlices(2, x, top, base, kUnitWeight, 0.0, 0.0);
    MASTER.SF = 1.5;
    SURF.P(1) = SURF.WZ(1);
    SURF.P(2) = SURF.WZ(2) / SURF.COSB(2);
    MOMEQL(A, B, C);
    const double Pmin = static_cast<double>(0.0005f) * MASTER.E2TOL;
    EXPECT_EQ(SURF.E2(1), Pmin);
    EXPECT_EQ(SURF.E1(2), 0.0);
    // The arm of the stored force: P at the middle of the base balances the weight at the
    // centroid, so the moment left for E2 is zero and its arm follows as (P H30 - M) / Pmin.
    const double M = (SURF.XX(3, 1) - SURF.XX(5, 1)) * SURF.WZ(1);
    EXPECT_NEAR(SURF.H2(1), (SURF.P(1) * SURF.H30(1) - M) / Pmin, 1.0E-6);
    EXPECT_EQ(SURF.H1(2), SURF.H2(1));
}

TEST_F(Momeql, AtTheExitTheEndForceActsAtMidHeightAndTheMomentPlacesP) {
    MASTER.IDTYP = 2;
    const double x[3] = {0.0, 2.0, 4.0}, top[3] = {0.0, 0.0, 0.0}, base[3] = {3.0, 4.0, 4.5};
    setMomentSlices(2, x, top, base, kUnitWeight, 10.0, 0.3);
    MASTER.SF = 1.2;
    SURF.P(1) = SURF.WZ(1);
    SURF.P(2) = SURF.WZ(2);
    MOMEQL(A, B, C);
    EXPECT_DOUBLE_EQ(SURF.H2(2), 0.5 * 4.5);
    expectEverySliceInBalance(1.0E-9 * sumOfWeights());
}

namespace {

// Moment about the origin of every external force on the sliding body: weights at the
// centroids, and normal and mobilised shear forces at their points on the base.
double momentOfExternalForces() {
    const double q = 1.0 / MASTER.SF;
    double moment = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        const double x = SURF.XX(3, i) - cosb * SURF.H30(i), z = SURF.ZZ(3, i) - sinb * SURF.H30(i);
        const double shear = SURF.S(i) + q * SURF.SS(i);
        moment += SURF.ZZ(5, i) * SURF.WX(i) - SURF.XX(5, i) * SURF.WZ(i) + SURF.WM(i);
        moment += z * SURF.P(i) * sinb - x * (-SURF.P(i) * cosb);
        moment += z * (-shear * cosb) - x * (-shear * sinb);
    }
    return moment;
}

}  // namespace

TEST_F(Momeql, ADrainedCircleEndsInForceAndMomentEquilibriumOfTheWholeBody) {
    setCircleSlope(30, kUnitWeight, 5.0);
    for (int i = 1; i <= MASTER.NUMSLC; ++i) SURF.TAN3(i) = SURF.TAN2(i) = 0.5;
    MASTER.IDEFTO = 1;
    setVerticalBalanceStart(1.5);
    setBounds(0.2, 1.0E6, 0.2);
    MOMEQL(A, B, C);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_GT(MASTER.SF, 1.0);
    const double weight = sumOfWeights();
    EXPECT_NEAR(SURF.E2(MASTER.NUMSLC), 0.0, 1.0E-6 * weight);
    EXPECT_NEAR(SURF.T2(MASTER.NUMSLC), 0.0, 1.0E-6 * weight);
    // Moment equilibrium holds to the agreement of assumed and computed C (1e-5).
    EXPECT_NEAR(momentOfExternalForces(), 0.0, 1.0E-4 * weight * kCircleRadius);
    expectEverySliceInBalance(1.0E-6 * weight);
    for (int i = 1; i <= MASTER.NUMSLC; ++i)
        EXPECT_NEAR(SURF.S(i), (SURF.P(i) * 0.5 + 5.0 * SURF.L34(i)) / MASTER.SF, 1.0E-9 * weight) << i;
}

TEST_F(Momeql, UndrainedSlicesOfACombinedAnalysisUseTheUndrainedStrengthWithoutFriction) {
    setCircleSlope(30, kUnitWeight, 5.0);
    MASTER.IDEFTO = 3;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        SURF.TAN3(i) = SURF.TAN2(i) = 0.5;
        SURF.SU3(i) = 35.0;
        ISUR.MODE(i) = i > 10 && i <= 20 ? 2 : 1;
    }
    setVerticalBalanceStart(1.5);
    setBounds(0.2, 1.0E6, 0.2);
    MOMEQL(A, B, C);
    EXPECT_EQ(MASTER.IERR, 0);
    const double weight = sumOfWeights();
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double drained = (SURF.P(i) * 0.5 + 5.0 * SURF.L34(i)) / MASTER.SF;
        const double undrained = 35.0 * SURF.L34(i) / MASTER.SF;
        EXPECT_NEAR(SURF.S1(i), drained, 1.0E-9 * weight) << i;
        EXPECT_NEAR(SURF.S2(i), undrained, 1.0E-9 * weight) << i;
        EXPECT_EQ(SURF.S(i), ISUR.MODE(i) == 2 ? SURF.S2(i) : SURF.S1(i)) << i;
    }
    EXPECT_NEAR(SURF.E2(MASTER.NUMSLC), 0.0, 1.0E-6 * weight);
    EXPECT_NEAR(SURF.T2(MASTER.NUMSLC), 0.0, 1.0E-6 * weight);
    EXPECT_NEAR(momentOfExternalForces(), 0.0, 1.0E-4 * weight * kCircleRadius);
}
