// SLV123: safety factor from the moment equilibrium about a centre of rotation (Bishop
// simplified, Bishop modified, the 2003 method).

#include <gtest/gtest.h>

#include <algorithm>
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
constexpr int kSlices = 40;

// Bishop's simplified method as the textbook has it, over the slices in the surface record:
// F = sum[(c b + W tan phi) / m] / sum W sin a, m = cos a + sin a tan phi / F, with a the
// inclination of the base, positive where it goes deeper in the direction of sliding.
double textbookBishop(double cohesion, double tanPhi) {
    double F = 1.0;
    for (int iteration = 0; iteration < 1000; ++iteration) {
        double resisting = 0.0, driving = 0.0;
        for (int i = 1; i <= MASTER.NUMSLC; ++i) {
            const double b = SURF.XX(2, i) - SURF.XX(1, i);
            const double W = SURF.WZ(i);
            const double sinA = SURF.SINB(i), cosA = SURF.COSB(i);
            const double m = cosA + sinA * tanPhi / F;
            resisting += (cohesion * b + W * tanPhi) / m;
            driving += W * sinA;
        }
        const double next = resisting / driving;
        if (std::abs(next - F) < 1e-13 * next) return next;
        F = next;
    }
    ADD_FAILURE() << "textbook iteration did not settle";
    return F;
}

// The moment about the centre (XC, ZC) of the undrained strength along every base (acting
// along the chord, at its distance from the centre) over the moment of the weights.
double undrainedMomentRatio(double XC, double ZC, double su) {
    double resisting = 0.0, driving = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        // Distance from the centre to the line of the base.
        const double x4 = SURF.XX(4, i), z4 = SURF.ZZ(4, i);
        const double distance = std::abs((x4 - XC) * SURF.SINB(i) - (z4 - ZC) * SURF.COSB(i));
        resisting += su * SURF.L34(i) * distance;
        driving += SURF.WZ(i) * (XC - SURF.XX(5, i));
    }
    return resisting / driving;
}

class Slv123Test : public ::testing::Test {
protected:
    void SetUp() override {
        freshRun(dir);
        MASTER.R1 = 0.5;  // interslice roughness given: no question from the moment solution
    }
    TempDir dir;
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// The physics
// ---------------------------------------------------------------------------------------------

TEST_F(Slv123Test, SimplifiedMethodOnACircleIsBishopsFactor) {
    const double cohesion = 10.0, tanPhi = std::tan(25.0 * kDegree);
    setToeCircle(kSlices, 19.0, cohesion, tanPhi);
    const double expected = textbookBishop(cohesion, tanPhi);

    MASTER.METHOD = 1;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    const double SFTZ = MASTER.SFTZ;
    SLV123();

    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected, 1e-3 * expected);
    EXPECT_EQ(MASTER.SCORE, 8.887999534606934);
    EXPECT_EQ(MASTER.RFACTOR, 0.0);
    EXPECT_GT(MASTER.SF, SFTZ);  // the simplified method lies above the force solution here

    // No interslice forces at all, and every slice is in vertical balance.
    for (int i = 1; i <= kSlices; ++i) {
        EXPECT_EQ(SURF.E1(i), 0.0);
        EXPECT_EQ(SURF.E2(i), 0.0);
        EXPECT_EQ(SURF.T1(i), 0.0);
        EXPECT_EQ(SURF.T2(i), 0.0);
        EXPECT_EQ(SURF.R(i), 0.0);
        EXPECT_EQ(SURF.H3(i), 0.0);
    }
    CHKEQL();
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Slv123Test, UndrainedCircleGivesTheMomentRatioForEveryMomentMethod) {
    // With phi = 0 the shear along the circle does not depend on the normal forces: every
    // method that balances moments about the centre gives resisting over driving moment.
    // (Pure force equilibrium, METHOD -1, balances no moments and is not compared.)
    const double su = 40.0;
    for (int method : {0, 1, 2, 3}) {
        freshRun(dir);
        MASTER.R1 = 0.5;
        setToeCircle(kSlices, 19.0, su, 0.0);
        for (int i = 1; i <= kSlices; ++i) SURF.R0(i) = 0.4;
        MASTER.IDEFTO = 2;
        MASTER.METHOD = method;
        MASTER.CRTSCR = 0.2;
        // The thin slices at the crest hang on the strength of their bases: their normal forces
        // are tensile, which is accepted here (the rejection is tested on its own below).
        MASTER.NEGPOK = 1;
        const double expected = undrainedMomentRatio(toeCircle().XC, toeCircle().ZC, su);

        SETSF0();
        ASSERT_EQ(MASTER.IERR, 0) << "method " << method;
        if (method == 0) RMULT();
        else SLV123();
        ASSERT_EQ(MASTER.IERR, 0) << "method " << method;
        EXPECT_NEAR(MASTER.SF, expected, 5e-3 * expected) << "method " << method;
    }
}




TEST_F(Slv123Test, SimplifiedMethodStartsFromTheSimplifiedResultForEveryStart) {
    // A second, lower start value finds the same root: the two results are averaged and the
    // factor does not depend on where the iteration started (SFTZ only sets the starts).
    const double cohesion = 10.0, tanPhi = std::tan(25.0 * kDegree);
    setToeCircle(kSlices, 19.0, cohesion, tanPhi);
    const double expected = textbookBishop(cohesion, tanPhi);
    MASTER.METHOD = 1;
    for (double SFTZ : {0.5, 1.0, 1.6, 3.0}) {
        MASTER.SFTZ = SFTZ;
        SLV123();
        ASSERT_EQ(MASTER.IERR, 0) << SFTZ;
        EXPECT_NEAR(MASTER.SF, expected, 1e-3 * expected) << SFTZ;
    }
}

// ---------------------------------------------------------------------------------------------
// Rejected solutions of the corrected methods
// ---------------------------------------------------------------------------------------------

TEST_F(Slv123Test, TensileBaseForceRejectsTheCorrectedSolution) {
    // The thin slices at the crest of an undrained circle hang on their bases.
    setToeCircle(kSlices, 19.0, 40.0, 0.0);
    MASTER.IDEFTO = 2;
    MASTER.METHOD = 2;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, 522.2219848632812);
    EXPECT_EQ(MASTER.SCORE, 5.2220001220703125);
    bool tension = false;
    for (int i = 1; i <= kSlices; ++i) tension = tension || SURF.P(i) < 0.0;
    EXPECT_TRUE(tension);
}

TEST_F(Slv123Test, FactorBelowTheZeroRoughnessFactorRejectsTheCorrectedSolution) {
    setToeCircle(kSlices, 19.0, 40.0, 0.0);
    MASTER.IDEFTO = 2;
    MASTER.METHOD = 2;
    MASTER.NEGPOK = 1;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    const double ratio = undrainedMomentRatio(toeCircle().XC, toeCircle().ZC, 40.0);
    MASTER.SFTZ = ratio * 1.1;  // as if the force solution had given more
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, 511.1109924316406);
    EXPECT_EQ(MASTER.SCORE, 5.111000061035156);
}

// ---------------------------------------------------------------------------------------------
// Centre of rotation of a surface that is not a circle
// ---------------------------------------------------------------------------------------------

namespace {

// Factor of safety from the moment balance of the whole body about the point (XC, ZC), with
// every base normal force from the vertical balance of its slice (no interslice forces) and
// acting on the base below the slice's centre of gravity; the mobilised shear (c l + N tan
// phi)/F acts along the base against the sliding. Moments are taken as (x - XC) Fz -
// (z - ZC) Fx. Solved for F by bisection.
double bishopAboutPoint(double XC, double ZC, double cohesion, double tanPhi) {
    auto unbalance = [&](double F) {
        double moment = 0.0;
        for (int i = 1; i <= MASTER.NUMSLC; ++i) {
            const double W = SURF.WZ(i), L = SURF.L34(i);
            const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
            const double N = (W - cohesion * L * sinb / F) / (cosb + sinb * tanPhi / F);
            const double S = (cohesion * L + N * tanPhi) / F;
            const double xb = SURF.XX(5, i);
            const double zb = SURF.ZZ(4, i) + (SURF.ZZ(3, i) - SURF.ZZ(4, i)) * (xb - SURF.XX(4, i)) /
                                                  (SURF.XX(3, i) - SURF.XX(4, i));
            // Weight straight down; the normal force into the body, (sin b, -cos b); the shear
            // up the base, (-cos b, -sin b).
            moment += (SURF.XX(5, i) - XC) * W;
            moment += (xb - XC) * (-N * cosb) - (zb - ZC) * (N * sinb);
            moment += (xb - XC) * (-S * sinb) - (zb - ZC) * (-S * cosb);
        }
        return moment;
    };
    double low = 0.2, high = 20.0;
    const double atLow = unbalance(low);
    EXPECT_LT(atLow * unbalance(high), 0.0) << "no root bracketed";
    for (int k = 0; k < 200; ++k) {
        const double mid = 0.5 * (low + high);
        if ((unbalance(mid) < 0.0) == (atLow < 0.0)) low = mid;
        else high = mid;
    }
    return 0.5 * (low + high);
}

// A plane from the crest (4, 0) to the toe (30, 10).
void setPlane(int n, double cohesion, double tanPhi) {
    setSurfaceSlices(n, 4.0, 30.0, slopeGround, [](double x) { return (x - 4.0) * 10.0 / 26.0; }, 19.0, cohesion,
                     tanPhi);
    MASTER.NTYP = 1;
}

}  // namespace

TEST_F(Slv123Test, StraightSurfaceTurnsAboutTheFallbackCentre) {
    // The start, the middle (corner 4 of slice 10 of 20) and the end of a plane lie on a line:
    // no circle passes through them. The body turns instead about the point above the middle
    // of the surface, as high above it as the surface is long.
    const int n = 20;
    const double cohesion = 12.0, tanPhi = std::tan(20.0 * kDegree);
    setPlane(n, cohesion, tanPhi);
    const double XC = SURF.XX(4, 10);
    const double ZC = SURF.ZZ(4, 10) - (SURF.XX(3, n) - SURF.XX(4, 1));
    const double expected = bishopAboutPoint(XC, ZC, cohesion, tanPhi);

    MASTER.METHOD = 1;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected, 1e-4 * expected);
    const std::string warning = " **** Warning from SR/SLV123 : SR/CIRC3P error  IERR=           4";
    EXPECT_EQ(countOf(logText(), warning), 1);

    // The next surface of the run: the same fallback, no second warning.
    setPlane(n, cohesion * 2.0, tanPhi);
    SETSF0();
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, bishopAboutPoint(XC, ZC, cohesion * 2.0, tanPhi), 1e-4 * MASTER.SF);
    EXPECT_EQ(countOf(logText(), "SR/CIRC3P error"), 1);
}

TEST_F(Slv123Test, NonCircularSurfaceTurnsAboutTheCircleThroughItsStartMiddleAndEnd) {
    // The toe circle given as a general surface: the circle through three of its points is the
    // circle itself, and the factor is that of the circle.
    const double cohesion = 10.0, tanPhi = std::tan(25.0 * kDegree);
    setToeCircle(kSlices, 19.0, cohesion, tanPhi);
    MASTER.NTYP = 1;
    SURF.SPAR(1) = 0.0;
    SURF.SPAR(2) = 0.0;
    MASTER.METHOD = 1;
    SETSF0();
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, textbookBishop(cohesion, tanPhi), 1e-3 * MASTER.SF);
    EXPECT_NEAR(MASTER.SF, bishopAboutPoint(toeCircle().XC, toeCircle().ZC, cohesion, tanPhi), 1e-6 * MASTER.SF);
    EXPECT_EQ(countOf(logText(), "CIRC3P"), 0);
}

// ---------------------------------------------------------------------------------------------
// Bases that cannot carry their load
// ---------------------------------------------------------------------------------------------

TEST_F(Slv123Test, VanishingDivisorPushesTheFactorUpAtMostTwentyFiveTimes) {
    // A vertical face at the entry (a slice of no width whose base is vertical) without
    // friction: its normal force has the divisor cos b = 0 at every factor. Each attempt moves
    // the assumed factor up by 1/max(ITER - 1, 1) = 1 (first iteration) and repeats; the 26th
    // attempt ends the solution.
    const int n = 10;
    setSurfaceSlices(n, 4.0, 30.0, slopeGround, [](double x) { return 2.0 + (x - 4.0) * 8.0 / 26.0; }, 19.0, 8.0,
                     0.5);
    // Slice 1 becomes the vertical face from the ground at x = 4 down to depth 2.
    SURF.XX(2, 1) = SURF.XX(1, 1);
    SURF.XX(3, 1) = SURF.XX(1, 1);
    SURF.XX(5, 1) = SURF.XX(1, 1);
    SURF.ZZ(2, 1) = 0.0;
    SURF.ZZ(3, 1) = 2.0;
    SURF.ZZ(4, 1) = 0.0;
    SURF.ZZ(5, 1) = 1.0;
    SURF.SINB(1) = 1.0;
    SURF.COSB(1) = 0.0;
    SURF.L34(1) = 2.0;
    SURF.WZ(1) = 0.0;
    SURF.TAN3(1) = 0.0;
    SURF.XX(1, 2) = SURF.XX(1, 1);
    SURF.XX(4, 2) = SURF.XX(1, 1);
    MASTER.NTYP = 1;
    MASTER.METHOD = 1;
    MASTER.SFTZ = 2.0;  // the first assumed factor is 1.5 SFTZ = 3
    MASTER.JPRINT = 1;
    SLV123();

    EXPECT_EQ(MASTER.IERR, 1);
    const std::string log = logText();
    EXPECT_EQ(countOf(log, " SR/SLV123-91 : LOOP1,ITRCMB,LOOP2,ITER,LOOP3,NS,SFASM,SFDIVZ"), 25);
    EXPECT_EQ(countOf(log, " **** SR/SLV123 : P-force zero division attempted"), 1);
    ASSERT_EQ(countOf(log, "LOOP1,ITRCMB,LOOP2,ITER,LOOP3,NS,SFASM,DIV ="), 1);
    // The values of the final line: LOOP1 1, ITRCMB 1, LOOP2 1, ITER 1, slice 1 of 10, SFASM
    // 3 + 25, DIV 0.
    std::istringstream values(log.substr(log.find("SFASM,DIV =") + std::string("SFASM,DIV =").size()));
    int loop1 = 0, itrcmb = 0, loop2 = 0, iter = 0, slice = 0, slices = 0;
    double SFASM = 0.0, DIV = -1.0;
    values >> loop1 >> itrcmb >> loop2 >> iter >> slice >> slices >> SFASM >> DIV;
    EXPECT_EQ(loop1, 1);
    EXPECT_EQ(itrcmb, 1);
    EXPECT_EQ(loop2, 1);
    EXPECT_EQ(iter, 1);
    EXPECT_EQ(slice, 1);
    EXPECT_EQ(slices, n);
    EXPECT_NEAR(SFASM, 28.0, 1e-5);
    EXPECT_EQ(DIV, 0.0);
    EXPECT_EQ(countOf(consoleText(), "SR/SLV123"), 0);  // the log only
}

// ---------------------------------------------------------------------------------------------
// The 2003 method: eleven roughness factors and the choice among them
// ---------------------------------------------------------------------------------------------

namespace {

struct PassRow {
    int loop;
    double factor, SF, score;
};

// The rows "LOOP1 R.FACTOR SF.MOM A B SF.ALL SCORE" of the trace.
std::vector<PassRow> passRows(const std::string& log) {
    std::vector<PassRow> rows;
    std::istringstream lines(log);
    std::string line;
    bool inTable = false;
    while (std::getline(lines, line)) {
        if (line.find("LOOP1   R.FACTOR") != std::string::npos) {
            inTable = true;
            continue;
        }
        if (!inTable) continue;
        std::istringstream fields(line);
        PassRow row{};
        double sfMom = 0.0, A = 0.0, B = 0.0;
        if (fields >> row.loop >> row.factor >> sfMom >> A >> B >> row.SF >> row.score) rows.push_back(row);
    }
    return rows;
}

// A circle through the slope with its centre at (XC, ZC) and the toe, in n slices.
void setCircle(int n, double XC, double ZC, double cohesion, double tanPhi) {
    const Circle circle{XC, ZC, std::hypot(30.0 - XC, 10.0 - ZC)};
    const double entry = XC - std::sqrt(circle.radius * circle.radius - ZC * ZC);
    setSurfaceSlices(n, entry, 30.0, slopeGround, [circle](double x) { return circle.depth(x); }, 19.0, cohesion,
                     tanPhi);
    MASTER.NTYP = 2;
    SURF.SPAR(1) = XC;
    SURF.SPAR(2) = ZC;
    SURF.SPAR(3) = circle.radius;
    for (int i = 1; i <= n; ++i) SURF.R0(i) = 0.5;
}

}  // namespace

TEST_F(Slv123Test, RoughMethodWithoutPerfectPassRecomputesTheLowestScore) {
    setCircle(20, 25.0, -10.0, 0.0, std::tan(30.0 * kDegree));
    MASTER.METHOD = 3;
    MASTER.NEGPOK = 1;
    MASTER.NEGEOK = 1;
    MASTER.JPRINT = 2;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);

    const std::vector<PassRow> rows = passRows(logText());
    ASSERT_EQ(rows.size(), 12u);
    int chosen = 0;
    for (int k = 0; k < 11; ++k) {
        EXPECT_EQ(rows[k].loop, k + 1);
        EXPECT_NEAR(rows[k].factor, 0.1 * k, 1e-6);
        EXPECT_GT(rows[k].score, 0.0);
        if (rows[k].score <= rows[chosen].score) chosen = k;
    }
    ASSERT_NE(chosen, 10);  // the case is chosen so that the lowest score is not the last
    EXPECT_EQ(rows[11].loop, 12);
    EXPECT_NEAR(rows[11].factor, rows[chosen].factor, 1e-6);
    EXPECT_NEAR(MASTER.RFACTOR, rows[chosen].factor, 1e-6);
    EXPECT_NEAR(MASTER.SF, rows[chosen].SF, 1e-6);
    EXPECT_NEAR(MASTER.SCORE, rows[chosen].score, 1e-6);
}

TEST_F(Slv123Test, RoughMethodWithPerfectPassesTakesTheHighestFactorAmongThem) {
    setCircle(6, 22.0, -10.0, 10.0, std::tan(30.0 * kDegree));
    MASTER.METHOD = 3;
    MASTER.NEGPOK = 1;
    MASTER.NEGEOK = 1;
    MASTER.JPRINT = 2;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);

    const std::vector<PassRow> rows = passRows(logText());
    ASSERT_EQ(rows.size(), 12u);
    int chosen = -1, perfect = 0;
    for (int k = 0; k < 11; ++k) {
        if (rows[k].score != 0.0) continue;
        ++perfect;
        if (chosen < 0 || rows[k].SF >= rows[chosen].SF) chosen = k;
    }
    ASSERT_GE(perfect, 2);
    ASSERT_GE(chosen, 0);
    EXPECT_NEAR(MASTER.RFACTOR, rows[chosen].factor, 1e-6);
    EXPECT_NEAR(MASTER.SF, rows[chosen].SF, 1e-6);
    EXPECT_EQ(MASTER.SCORE, 0.0);
}

TEST_F(Slv123Test, RoughMethodWithoutRoughnessIsTheSimplifiedMethod) {
    // Roughness factor 0: no interslice shear, so the full slice balance gives the normal
    // forces of the simplified method and the first pass finds Bishop's factor.
    const double cohesion = 10.0, tanPhi = std::tan(25.0 * kDegree);
    setToeCircle(kSlices, 19.0, cohesion, tanPhi);
    for (int i = 1; i <= kSlices; ++i) SURF.R0(i) = 0.4;
    MASTER.METHOD = 3;
    MASTER.JPRINT = 2;
    SETSF0();
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    const std::string log = logText();
    std::istringstream first(log.substr(log.find("    SCORE\n") + 10));
    int loop = 0;
    double factor = -1.0, momentSF = 0.0;
    first >> loop >> factor >> momentSF;
    EXPECT_EQ(loop, 1);
    EXPECT_EQ(factor, 0.0);
    const double expected = textbookBishop(cohesion, tanPhi);
    EXPECT_NEAR(momentSF, expected, 1e-3 * expected);
}

// ---------------------------------------------------------------------------------------------
// Combined drained/undrained analysis
// ---------------------------------------------------------------------------------------------

TEST_F(Slv123Test, CombinedAnalysisWithWeakUndrainedBasesIsTheUndrainedCircle) {
    // Every base is weaker undrained than drained, even where its normal force is tensile
    // (su = 10 against c = 20 with little friction): every base fails undrained, and the
    // factor is the moment ratio of the undrained strength.
    const double su = 10.0;
    setToeCircle(kSlices, 19.0, 20.0, 0.1);
    for (int i = 1; i <= kSlices; ++i) SURF.SU3(i) = su;
    MASTER.IDEFTO = 3;
    MASTER.METHOD = 1;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    // Start from drained bases everywhere: the modes change after the first pass.
    for (int i = 1; i <= kSlices; ++i) ISUR.MODE(i) = 1;
    MASTER.JPRINT = 3;
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    for (int i = 1; i <= kSlices; ++i) {
        EXPECT_EQ(ISUR.MODE(i), 2) << i;
        EXPECT_NEAR(SURF.S(i), su * SURF.L34(i) / MASTER.SF, 1e-4 * SURF.S(i)) << i;
    }
    const double expected = undrainedMomentRatio(toeCircle().XC, toeCircle().ZC, su);
    EXPECT_NEAR(MASTER.SF, expected, 5e-3 * expected);
    // Two passes: drained, then undrained.
    EXPECT_GT(countOf(logText(), "     1      2     1   1"), 0);
    EXPECT_EQ(countOf(logText(), "     1      3     1   1"), 0);
}

TEST_F(Slv123Test, CombinedAnalysisWithStrongUndrainedBasesStaysDrained) {
    const double cohesion = 10.0, tanPhi = std::tan(25.0 * kDegree);
    setToeCircle(kSlices, 19.0, cohesion, tanPhi);
    for (int i = 1; i <= kSlices; ++i) SURF.SU3(i) = 500.0;
    MASTER.IDEFTO = 3;
    MASTER.METHOD = 1;
    SETSF0();
    SLV123();
    ASSERT_EQ(MASTER.IERR, 0);
    for (int i = 1; i <= kSlices; ++i) EXPECT_EQ(ISUR.MODE(i), 1) << i;
    EXPECT_NEAR(MASTER.SF, textbookBishop(cohesion, tanPhi), 1e-3 * MASTER.SF);
}
