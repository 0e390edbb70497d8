// PLANE: the sweep of earth-pressure planes through the wall foot, each solved at the given
// safety factor, the list, the critical plane and the continue question; checked against the
// soil wedge worked by hand (Coulomb's wedge: for a smooth wall retaining level dry sand the
// critical planes and forces of Rankine's active and passive pressure).

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "solver/solver_world.h"
#include "surfaces/plane_list.h"

using namespace kalmo_test;

namespace {

constexpr double kWallHeight = 6.0;
constexpr double kSandWeight = 18.0;
constexpr double kWallX = 0.0;

const std::string kAsk = "\n GIVE EP-PLANE ANGLES (DEGRS)\n FIRST LAST STEP\n  ";
const std::string kHeader = "\n" + kPlaneHeading + "\n";
const std::string kCritical = kCriticalLine + "\n";
const std::string kContinue = " SHALL AUTOMATIC SEARCH BE CONTINUED (Y/N) ..... ";

// Level dry sand (no cohesion) behind a wall at x = 0 whose foot lies 6 m deep; the ground runs
// on beyond the wall, so that every plane also meets it on the far side. No interslice and no
// wall roughness, no crack at the upper end, 20 slices, the 1988-2002 method as in the wall
// example.
class PlaneTest : public ::testing::Test, public SolverWorld {
protected:
    PlaneTest() {
        setGround({-100.0, 100.0}, {0.0, 0.0});
        SOLPRP.MAT(GAMTOT, 1) = kSandWeight;
        SOLPRP.MAT(COHESN, 1) = 0.0;
        SOLPRP.STRDAT(1) = 0.0;
        MASTER.IDTYP = 2;
        MASTER.NTYP = 4;
        MASTER.METHOD = 0;
        MASTER.NSLREQ = 20;
        MASTER.R1 = 0.0;
        MASTER.R2 = 0.0;
        MASTER.R3 = 0.0;
        GEOMSH.XWALL = kWallX;
        GEOMSH.DWALL = kWallHeight;
        GEOMSH.ZWALL = kWallHeight;
        GEOMSH.RWALL = 0.0;
        friction(30.0);
    }

    static void friction(double degrees) { SOLPRP.MAT(PHIANG, 1) = std::tan(radians(degrees)); }

    // The safety factor of the search, as the central decision point sets it: a passive search
    // looks for the smallest force.
    static void givenFactor(double SF) {
        MASTER.SF = SF;
        MASTER.BESTE2 = SF < 0.0 ? 1000000.0 : -1000000.0;
    }

    void sweep(const std::string& answer) {
        answers(answer);
        before_ = console().size();
        PLANE();
    }
    std::string sweepText() const { return console().substr(before_); }

    // The listed planes of the last sweep, and its critical plane.
    std::vector<Listed> listed() const {
        std::vector<Listed> planes;
        std::istringstream in(sweepText());
        bool inList = false;
        for (std::string line; std::getline(in, line);) {
            if (line == kCriticalLine) break;
            if (inList && line.size() == 70) planes.push_back(parseListed(line));
            if (line == kPlaneHeading) inList = true;
        }
        return planes;
    }
    Listed critical() const {
        const std::string text = sweepText();
        const size_t at = text.find(kCritical);
        if (at == std::string::npos) return Listed{};
        const size_t from = at + kCritical.size();
        return parseListed(text.substr(from, text.find('\n', from) - from));
    }

    size_t before_ = 0;
};

// The wedge between the level ground and a plane rising at `degrees` from the foot of a smooth
// wall of height H: its weight W = gamma H^2 / (2 tan a) (plus q H / tan a from a surcharge q)
// rests on the plane with the normal force N and the shear N tan(phi)/F; the wall holds it
// horizontally with E = W tan(a - phi_m), tan(phi_m) = tan(phi)/F. A negative F pushes the
// wedge up the plane (passive pressure): phi_m is then negative.
double wedgeForce(double degrees, double phiDegrees, double F, double q = 0.0) {
    const double a = radians(degrees);
    const double weight = (0.5 * kSandWeight * kWallHeight * kWallHeight + q * kWallHeight) / std::tan(a);
    const double mobilised = std::atan(std::tan(radians(phiDegrees)) / F);
    return weight * std::tan(a - mobilised);
}

double activeCoefficient(double phiDegrees) { return std::pow(std::tan(radians(45.0 - phiDegrees / 2.0)), 2); }
double passiveCoefficient(double phiDegrees) { return std::pow(std::tan(radians(45.0 + phiDegrees / 2.0)), 2); }

// The listed forces carry four digits: within 0.1 % of the wedge, or 0.01 kN about zero.
void expectWedgeForces(const std::vector<Listed>& planes, double phi, double F, double q = 0.0) {
    for (const Listed& p : planes) {
        const double byHand = wedgeForce(p.angle, phi, F, q);
        EXPECT_NEAR(p.wallForce, byHand, 0.001 * std::fabs(byHand) + 0.01) << p.text;
        // A smooth wall: no friction but the rounding of the slice balances.
        EXPECT_NEAR(p.friction, 0.0, 1e-9 * (std::fabs(byHand) + 1.0)) << p.text;
    }
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Rankine's pressures on a smooth wall, by a one-degree sweep
// ---------------------------------------------------------------------------------------------

class PlaneRankineTest : public PlaneTest, public ::testing::WithParamInterface<double> {};

TEST_P(PlaneRankineTest, TheActivePlaneRisesAtFortyFivePlusHalfPhiAndCarriesKa) {
    const double phi = GetParam();
    friction(phi);
    givenFactor(1.0);
    sweep("20 80 1\n");
    const std::vector<Listed> planes = listed();
    ASSERT_EQ(planes.size(), 61u) << sweepText();
    expectWedgeForces(planes, phi, 1.0);

    const Listed found = critical();
    EXPECT_NEAR(found.angle, 45.0 + phi / 2.0, 0.5 + 1e-9) << found.text;
    const double rankine = 0.5 * kSandWeight * kWallHeight * kWallHeight * activeCoefficient(phi);
    EXPECT_NEAR(found.wallForce, rankine, 0.005 * rankine) << found.text;
    // The largest force of the list; the solver kept the same plane as the best surface.
    double largest = -1.0E30;
    for (const Listed& p : planes) largest = std::max(largest, p.wallForce);
    EXPECT_EQ(found.wallForce, largest);
    EXPECT_EQ(io::fmtES(MASTER.BESTE2, 14, 3), found.text.substr(20, 14));
    EXPECT_EQ(IBES.NUMSRF, static_cast<int>(found.angle) - 19);  // 20 degrees was surface 1
}

TEST_P(PlaneRankineTest, ThePassivePlaneRisesAtFortyFiveMinusHalfPhiAndCarriesKp) {
    const double phi = GetParam();
    friction(phi);
    givenFactor(-1.0);
    // Planes steeper than 90 - phi degrees cannot be pushed up: the sweep stays below.
    sweep("5 50 1\n");
    const std::vector<Listed> planes = listed();
    ASSERT_EQ(planes.size(), 46u) << sweepText();
    expectWedgeForces(planes, phi, -1.0);

    const Listed found = critical();
    EXPECT_NEAR(found.angle, 45.0 - phi / 2.0, 0.5 + 1e-9) << found.text;
    const double rankine = 0.5 * kSandWeight * kWallHeight * kWallHeight * passiveCoefficient(phi);
    EXPECT_NEAR(found.wallForce, rankine, 0.005 * rankine) << found.text;
    double smallest = 1.0E30;
    for (const Listed& p : planes) smallest = std::min(smallest, p.wallForce);
    EXPECT_EQ(found.wallForce, smallest);
    EXPECT_EQ(io::fmtES(MASTER.BESTE2, 14, 3), found.text.substr(20, 14));
}

INSTANTIATE_TEST_SUITE_P(FrictionAngles, PlaneRankineTest, ::testing::Values(25.0, 30.0, 36.0),
                         [](const ::testing::TestParamInfo<double>& info) {
                             return "Phi" + std::to_string(static_cast<int>(info.param));
                         });

TEST_F(PlaneTest, AUniformSurchargeAddsQHKaToTheActiveForce) {
    LOAD.LDAT(1) = 10.0;
    LOAD.QRANGE(1) = -100.0;
    LOAD.QRANGE(2) = kWallX;
    givenFactor(1.0);
    sweep("40 80 1\n");
    expectWedgeForces(listed(), 30.0, 1.0, 10.0);
    const Listed found = critical();
    EXPECT_NEAR(found.angle, 60.0, 0.5 + 1e-9);
    const double Ka = activeCoefficient(30.0);
    const double byHand = 0.5 * kSandWeight * kWallHeight * kWallHeight * Ka + 10.0 * kWallHeight * Ka;
    EXPECT_NEAR(found.wallForce, byHand, 0.005 * byHand) << found.text;
}

TEST_F(PlaneTest, ARoughWallCarriesItsShareOfTheWedgeAtTheGivenFactor) {
    // Whatever the interslice roughness, the whole wedge balances its weight with the base
    // forces N, N tan(phi)/F and the wall forces E and T = R_wall tan(phi) E / F (all bases
    // parallel, no cohesion): E = W tan(a - phi_m) / (1 + r tan(a - phi_m)), r = R_wall tan(phi)/F.
    GEOMSH.RWALL = 0.5;
    MASTER.R1 = 0.3;
    givenFactor(1.25);
    sweep("58 58 1\n");
    const std::vector<Listed> planes = listed();
    ASSERT_EQ(planes.size(), 1u) << sweepText();
    const double r = 0.5 * std::tan(radians(30.0)) / 1.25;
    const double smooth = wedgeForce(58.0, 30.0, 1.25);
    const double mobilisedTan = smooth / (0.5 * kSandWeight * kWallHeight * kWallHeight / std::tan(radians(58.0)));
    const double E = smooth / (1.0 + r * mobilisedTan);
    EXPECT_NEAR(SURF.E2(MASTER.NUMSLC), E, 1e-3 * E);
    EXPECT_NEAR(SURF.T2(MASTER.NUMSLC), r * SURF.E2(MASTER.NUMSLC), 1e-9 * E);
    EXPECT_NEAR(planes[0].wallForce, E, 1e-3 * E);
    EXPECT_NEAR(planes[0].friction, r * E, 1e-3 * E);
    // The equilibrium check passed every slice, moments included (the 1988-2002 method).
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(console().find("SR/CHKEQL"), std::string::npos) << console();
}

TEST_F(PlaneTest, EveryMethodOfTheControlDataGivesTheSameCheckedWallForce) {
    // The wall force comes from the force balance at the given factor whatever the method; the
    // equilibrium check then holds each slice to the checks of the method (moments for 0, 2, 3).
    GEOMSH.RWALL = 0.5;
    MASTER.R1 = 0.3;
    givenFactor(1.25);
    std::vector<std::string> lines;
    for (int method = -1; method <= 3; ++method) {
        MASTER.METHOD = method;
        sweep("58 58 1\n");
        const std::vector<Listed> planes = listed();
        ASSERT_EQ(planes.size(), 1u) << method << sweepText();
        lines.push_back(planes[0].text.substr(0, 50));
    }
    for (const std::string& line : lines) EXPECT_EQ(line, lines[0]);
    EXPECT_EQ(console().find("SR/CHKEQL"), std::string::npos) << console();
}

// ---------------------------------------------------------------------------------------------
// The sweep
// ---------------------------------------------------------------------------------------------

TEST_F(PlaneTest, AsksForTheAnglesAndListsUnderItsHeading) {
    givenFactor(1.0);
    sweep("50 52 1\n");
    const std::string text = sweepText();
    // The answer ends the prompt line; an empty line, then the heading.
    ASSERT_EQ(text.substr(0, kAsk.size() + 1 + kHeader.size()), kAsk + "\n" + kHeader) << text;
    const std::vector<Listed> planes = listed();
    ASSERT_EQ(planes.size(), 3u);
    // Each line in its fields: the angle, where the plane meets the ground, E2, T2, H2, score.
    const int last = MASTER.NUMSLC;
    const std::string line = io::Line()
                                 .F(52.0, 9, 1)
                                 .F(SURF.XX(1, 1), 11, 3)
                                 .ES(SURF.E2(last), 14, 3)
                                 .ES(SURF.T2(last), 16, 3)
                                 .F(SURF.H2(last), 11, 3)
                                 .F(MASTER.SCORE, 9, 3)
                                 .str();
    EXPECT_EQ(planes[2].text, line);
    // The plane meets the ground H / tan(a) in front of the wall (the first slice starts a
    // thousandth of its width inside).
    EXPECT_NEAR(planes[2].xGround, kWallX - kWallHeight / std::tan(radians(52.0)), 0.001);
    // The moment solution puts H2 of the wall face at its mid-height.
    EXPECT_EQ(planes[2].height, 3.0);
    EXPECT_EQ(text.substr(text.size() - kCritical.size() - line.size() - 1), kCritical + line + "\n");
    // Nothing of the sweep reaches the log copy.
    EXPECT_EQ(io::contents(POSTGRAF.NFCOPY), "");
}

TEST_F(PlaneTest, FirstAboveLastSweepsFromTheSmallerAngle) {
    givenFactor(1.0);
    sweep("60 40 5\n");
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{40.0, 45.0, 50.0, 55.0, 60.0}));
    EXPECT_EQ(MASTER.NUMSRF, 5);
}

TEST_F(PlaneTest, AStepOfZeroOrBelowOneDegreeIsOneDegree) {
    givenFactor(1.0);
    sweep("40 43 0\n");
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{40.0, 41.0, 42.0, 43.0}));
    sweep("40 43 0.5\n");
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{40.0, 41.0, 42.0, 43.0}));
    sweep("43 40 -2\n");
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{40.0, 41.0, 42.0, 43.0}));
}

TEST_F(PlaneTest, TheSweepEndsOnLastWhenItsStepsLandThere) {
    // Summed up step by step in radians, 30, 31, ... would stop at 59.
    givenFactor(1.0);
    sweep("30 60 1\n");
    const std::vector<Listed> planes = listed();
    ASSERT_EQ(planes.size(), 31u);
    EXPECT_EQ(planes.back().angle, 60.0);
    sweep("40 49 2\n");
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{40.0, 42.0, 44.0, 46.0, 48.0}));
}

TEST_F(PlaneTest, EveryPlaneIsTheLastSurfaceInItsTurn) {
    givenFactor(1.0);
    sweep("44 46 2\n");
    EXPECT_EQ(MASTER.NUMSRF, 2);
    EXPECT_EQ(MASTER.NTYP, 4);
    // The last plane: through the foot, 20 wall heights out to both sides.
    const double reach = 20.0 * kWallHeight;
    const double rise = reach * std::tan(radians(46.0));
    EXPECT_DOUBLE_EQ(SURF.XS(1), kWallX - reach);
    EXPECT_DOUBLE_EQ(SURF.ZS(1), kWallHeight - rise);
    EXPECT_DOUBLE_EQ(SURF.XS(2), kWallX);
    EXPECT_DOUBLE_EQ(SURF.ZS(2), kWallHeight);
    EXPECT_DOUBLE_EQ(SURF.XS(3), kWallX + reach);
    EXPECT_DOUBLE_EQ(SURF.ZS(3), kWallHeight - rise);
    EXPECT_DOUBLE_EQ(SURF.SPAR(1), 46.0);
    EXPECT_EQ(SURF.SPAR(2), SURF.XX(1, 1));
    EXPECT_EQ(SURF.SPAR(3), kWallX);
    EXPECT_EQ(SURF.SPAR(4), kWallHeight);
}

TEST_F(PlaneTest, WithNoSignEveryPlaneSolvedBecomesCritical) {
    // The last plane, rising at 100 degrees, falls away from the foot on both sides and misses
    // the ground: the one before it, though not the largest nor the smallest, is critical.
    batchMode();
    givenFactor(0.0);
    sweep("30 100 35\nY\n");
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{30.0, 65.0}));
    EXPECT_NE(sweepText().find("\n **** SR/PLANE :  ERROR FROM SR/SOLVER     1\n" + kContinue), std::string::npos)
        << sweepText();
    EXPECT_EQ(critical().angle, 65.0);
}

TEST_F(PlaneTest, APlaneThatMissesTheGroundAsksWhetherToGoOn) {
    batchMode();
    givenFactor(1.0);
    sweep("-10 50 30\nY\n");
    // -10 degrees: no ground; 20 and 50 are listed.
    const std::string error = "\n **** SR/PLANE :  ERROR FROM SR/SOLVER     1\n";
    const size_t asked = sweepText().find(error + kContinue);
    EXPECT_NE(asked, std::string::npos) << sweepText();
    EXPECT_LT(sweepText().find(kHeader), asked);
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{20.0, 50.0}));
    EXPECT_EQ(critical().angle, 50.0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.NUMSRF, 3);
    // The error and the question are also on the screen of a batch run.
    EXPECT_NE(copy().find(error + kContinue), std::string::npos) << copy();
}

TEST_F(PlaneTest, NoToTheQuestionEndsTheSweepWithoutASummary) {
    batchMode();
    givenFactor(1.0);
    sweep("50 110 30\nN\n");
    EXPECT_EQ(anglesOf(listed()), (std::vector<double>{50.0, 80.0}));
    EXPECT_EQ(sweepText().find(kCritical), std::string::npos);
    EXPECT_NE(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.NUMSRF, 3);  // 110 was tried; nothing after it
}

TEST_F(PlaneTest, WithoutASolvedPlaneTheSummaryShowsTheStartForce) {
    batchMode();
    givenFactor(1.0);
    sweep("100 101 1\nY\nY\n");
    EXPECT_TRUE(listed().empty());
    EXPECT_EQ(critical().text, "      0.0      0.000    -1.000E+12       0.000E+00      0.000    0.000");
    // A passive sweep starts from the other end; the critical plane of the earlier sweep that
    // solved one stays for the other columns.
    givenFactor(-1.0);
    sweep("30 30 1\n");
    const Listed solved = critical();
    ASSERT_EQ(solved.angle, 30.0);
    sweep("100 100 1\nY\n");
    EXPECT_EQ(critical().text, solved.text.substr(0, 20) + "     1.000E+12" + solved.text.substr(34));
}

TEST_F(PlaneTest, PlanesWithoutSlicesAreNotListed) {
    // Only a general surface may go without a number of slices: the solver says so for every
    // plane, and none has a force to list.
    MASTER.NSLREQ = 0;
    givenFactor(1.0);
    sweep("50 51 1\n");
    EXPECT_TRUE(listed().empty());
    const std::string refused = " ZERO SLICES ALLOWED FOR GENERAL SURFACES ONLY\n";
    EXPECT_EQ(sweepText(), kAsk + "\n" + kHeader + refused + refused + kCritical +
                               "      0.0      0.000    -1.000E+12       0.000E+00      0.000    0.000\n");
}

TEST_F(PlaneTest, AnUnreadableAnswerAnalysesNothing) {
    givenFactor(1.0);
    sweep("forty 60 1\n");
    EXPECT_EQ(sweepText(), kAsk);
    EXPECT_EQ(MASTER.NUMSRF, 0);
    sweep("");  // no answer left
    EXPECT_EQ(sweepText(), "\n" + kAsk);  // the line of the first prompt ends first
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(PlaneTest, ASweepOfMoreThanOneTurnIsRefused) {
    givenFactor(1.0);
    sweep("0 1.0E9 1\n");
    EXPECT_EQ(sweepText(), kAsk + "\n **** SR/PLANE : ANGLE RANGE ABOVE  360. DEGREES\n");
    EXPECT_EQ(MASTER.NUMSRF, 0);
    // One full turn is still a sweep; its planes repeat every half turn (the x where they meet
    // the ground moves by the start depth the first plane leaves to the later ones).
    sweep("10 370 180\n");
    const std::vector<Listed> planes = listed();
    ASSERT_EQ(anglesOf(planes), (std::vector<double>{10.0, 190.0, 370.0}));
    for (const Listed& p : planes) {
        EXPECT_NEAR(p.xGround, planes[0].xGround, 0.01) << p.text;
        EXPECT_EQ(p.text.substr(20, 14), planes[0].text.substr(20, 14)) << p.text;
    }
}

// ---------------------------------------------------------------------------------------------
// The given safety factor through a passive sweep
// ---------------------------------------------------------------------------------------------

TEST_F(PlaneTest, APassiveSweepSolvesEveryPlaneAtTheGivenFactor) {
    // A solver that started each surface from its usual 999.99 would solve the planes as active
    // pressure on soil of next to no strength (E = W tan a, all positive and growing as the
    // planes flatten); one that checked the passive factor against the factor without
    // interslice shear would mark the first plane 533.333 (score 5.333) and solve the others at
    // that factor. Each listed force is the passive wedge at F = -1.5, and the factor survives.
    givenFactor(-1.5);
    sweep("20 40 5\n");
    const std::vector<Listed> planes = listed();
    ASSERT_EQ(planes.size(), 5u) << sweepText();
    expectWedgeForces(planes, 30.0, -1.5);
    for (const Listed& p : planes) EXPECT_NE(p.score, 5.333) << p.text;
    EXPECT_EQ(MASTER.SF, -1.5);
    EXPECT_EQ(MASTER.SFTZ, -1.5);
    EXPECT_EQ(BEST.SF, -1.5);
}

TEST_F(PlaneTest, TheCheckWouldRejectAPassivePlaneMeasuredAgainstAnyOtherFactor) {
    givenFactor(-1.5);
    sweep("30 30 1\n");
    ASSERT_EQ(listed().size(), 1u);
    ASSERT_EQ(MASTER.IERR, 0);
    // The same solution, checked against the zero left by the start of the run.
    MASTER.SFTZ = 0.0;
    CHKEQL();
    EXPECT_EQ(MASTER.SF, 533.3330078125);
    EXPECT_EQ(MASTER.SCORE, 5.3330001831054688);
}

TEST_F(PlaneTest, AFactorWhoseReciprocalRoundsStaysAsTyped) {
    // 1 / (1 / 0.9) is 0.8999999999999999 in binary; the sweep keeps 0.9 itself.
    ASSERT_NE(1.0 / (1.0 / 0.9), 0.9);
    givenFactor(0.9);
    sweep("50 60 5\n");
    EXPECT_EQ(listed().size(), 3u);
    EXPECT_EQ(MASTER.SF, 0.9);
}
