// GENRALZI and MOVEC2G: the general surface autosearch in the homogeneous c-phi slope of
// SolverWorld (crest at depth 0 left of x = 0, a 1:2 face down to the toe at depth 10 at
// x = 20, c = 10, tan phi = 0.5, 20 kN/m3, force equilibrium).
//
// The search starts from the last analysed surface. Circles are analysed by another surface
// type; here the start is a circular arc given as a general surface (a polyline of points on
// the circle with centre (10, -15) through the toe), which the solver cuts into 12 slices as it
// would cut a circle.

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "output/readplt.h"
#include "solver/solver_world.h"

using namespace kalmo_test;

namespace {

constexpr double kCentreX = 10.0;
constexpr double kCentreZ = -15.0;
const double kRadius = std::sqrt(10.0 * 10.0 + 25.0 * 25.0);  // through the toe (20, 10)

// 18 points on the arc from x = -13 (above the crest) to x = 21 (above the level ground
// beyond the toe).
std::vector<Point> arc() {
    std::vector<Point> points;
    for (int k = 0; k <= 17; ++k) {
        const double x = -13.0 + 2.0 * k;
        points.push_back({x, kCentreZ + std::sqrt(kRadius * kRadius - (x - kCentreX) * (x - kCentreX))});
    }
    return points;
}

int countOf(const std::string& text, const std::string& part) {
    int n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

// The listed trial lines, in order.
std::vector<std::string> listedTrials(const std::string& console) {
    std::vector<std::string> trials;
    std::istringstream lines(console);
    for (std::string line; std::getline(lines, line);)
        if (line.rfind(" ++++ SAFETY FACTOR =", 0) == 0) trials.push_back(line);
    return trials;
}

// Their safety factors (F8.3 after the label).
std::vector<double> listedFactors(const std::string& console) {
    std::vector<double> factors;
    for (const std::string& line : listedTrials(console)) factors.push_back(std::stod(line.substr(21, 8)));
    return factors;
}

// Their offsets d (the next-to-last field, F7.3).
std::vector<double> listedOffsets(const std::string& console) {
    std::vector<double> offsets;
    for (const std::string& line : listedTrials(console)) offsets.push_back(std::stod(line.substr(line.size() - 14, 7)));
    return offsets;
}

class GenralziTest : public ::testing::Test, public SolverWorld {
protected:
    GenralziTest() {
        MASTER.NSLREQ = 12;
        MASTER.JSTRES = 1;
        MASTER.NF14 = 14;
        MASTER.NF16 = 16;
        MASTER.NF17 = 17;
        dir.write("KALMO.INP", "THE SLOPE OF THE AUTOSEARCH TESTS\nSECOND TITLE LINE\n");
        io::openOld(14, dir.path("KALMO.INP"));
        io::openNew(16, dir.path("KALMO.RES"));
        io::openNew(17, dir.path("KALMO.PLT"));
    }

    // The arc analysed as the last surface, then the state the central decision point leaves
    // when surface type 5 is chosen.
    double analyseStart() {
        solve(arc());
        EXPECT_EQ(MASTER.IERR, 0) << console();
        const double startSF = MASTER.SF;
        MASTER.NUMSLC = MASTER.NSLREQ;
        MASTER.NTYP = 5;
        MASTER.KLAST = 0;
        MASTER.KLSAVE = 0;
        return startSF;
    }
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// MOVEC2G
// ---------------------------------------------------------------------------------------------

TEST_F(GenralziTest, TheBaseLineRunsFromTheEntryOverTheSliceBasesToTheExit) {
    solve(arc());
    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 12);
    MOVEC2G();
    ASSERT_EQ(IGENER.NPGEN(2), 13);
    EXPECT_EQ(IGENER.NPGEN(3), 13);
    // The entry on the ground (top left of slice 1), the left base ends of slices 2..12, the
    // exit on the ground (top right of slice 12).
    EXPECT_EQ(GENERL.XGEN(1, 2), SURF.XX(1, 1));
    EXPECT_EQ(GENERL.ZGEN(1, 2), SURF.ZZ(1, 1));
    EXPECT_NEAR(GENERL.ZGEN(1, 2), worldGround(GENERL.XGEN(1, 2)), 1e-9);
    for (int i = 2; i <= 12; ++i) {
        EXPECT_EQ(GENERL.XGEN(i, 2), SURF.XX(4, i)) << i;
        EXPECT_EQ(GENERL.ZGEN(i, 2), SURF.ZZ(4, i)) << i;
        // A base left end lies on the arc (the slice borders cut the polyline of arc points).
        const double onArc = kCentreZ + std::sqrt(kRadius * kRadius - std::pow(GENERL.XGEN(i, 2) - kCentreX, 2));
        EXPECT_NEAR(GENERL.ZGEN(i, 2), onArc, 0.05) << i;
    }
    EXPECT_EQ(GENERL.XGEN(13, 2), SURF.XX(2, 12));
    EXPECT_NEAR(GENERL.ZGEN(13, 2), worldGround(GENERL.XGEN(13, 2)), 1e-9);
}

TEST_F(GenralziTest, ABaseCornerSidewaysOfItsTopIsAVertexToo) {
    MASTER.NUMSLC = 3;
    const double x[3][4] = {{0, 4, 4, 0.5}, {4, 8, 8, 4}, {8, 12, 11.5, 8}};
    const double z[3][4] = {{0, 2, 5, 1}, {2, 4, 6, 5}, {4, 6, 5.5, 6}};
    for (int i = 1; i <= 3; ++i) {
        for (int k = 1; k <= 4; ++k) {
            SURF.XX(k, i) = x[i - 1][k - 1];
            SURF.ZZ(k, i) = z[i - 1][k - 1];
        }
    }
    MOVEC2G();
    const double vx[] = {0, 0.5, 4, 8, 11.5, 12};
    const double vz[] = {0, 1, 5, 6, 5.5, 6};
    ASSERT_EQ(IGENER.NPGEN(2), 6);
    for (int j = 1; j <= 6; ++j) {
        EXPECT_EQ(GENERL.XGEN(j, 2), vx[j - 1]) << j;
        EXPECT_EQ(GENERL.ZGEN(j, 2), vz[j - 1]) << j;
    }
}

TEST_F(GenralziTest, OneSliceGivesItsEntryOnly) {
    MASTER.NUMSLC = 1;
    SURF.XX(1, 1) = 2.0;
    SURF.ZZ(1, 1) = 1.0;
    SURF.XX(4, 1) = 2.0;
    MOVEC2G();
    EXPECT_EQ(IGENER.NPGEN(2), 1);
    EXPECT_EQ(GENERL.XGEN(1, 2), 2.0);
}

TEST_F(GenralziTest, NinetyNineSlicesFitTheVertexLimit) {
    // 99 slices with sideways base corners at both ends would make 102 vertices; the entry,
    // the 98 base left ends and the exit (100) always fit, the extra corners do not.
    MASTER.NUMSLC = MAXSLC;
    for (int i = 1; i <= MAXSLC; ++i) {
        SURF.XX(1, i) = i;
        SURF.XX(2, i) = i + 1;
        SURF.XX(3, i) = i + 1;
        SURF.XX(4, i) = i;
    }
    SURF.XX(4, 1) = 1.5;
    SURF.XX(3, MAXSLC) = MAXSLC + 0.5;
    MOVEC2G();
    ASSERT_EQ(IGENER.NPGEN(2), MAXGPT);
    EXPECT_EQ(GENERL.XGEN(1, 2), 1.0);
    EXPECT_EQ(GENERL.XGEN(2, 2), 2.0);
    EXPECT_EQ(GENERL.XGEN(MAXGPT, 2), MAXSLC + 1.0);
}

// ---------------------------------------------------------------------------------------------
// Bad input
// ---------------------------------------------------------------------------------------------

TEST_F(GenralziTest, AnUnreadableWidthReturnsAtOnce) {
    analyseStart();
    const int surfaces = MASTER.NUMSRF;
    answers("wide\n");
    GENRALZI();
    EXPECT_EQ(console(), "\n GIVE SEARCH WIDTH: \n");
    EXPECT_EQ(MASTER.NUMSRF, surfaces);
}

TEST_F(GenralziTest, AZeroOrNegativeWidthIsRefused) {
    analyseStart();
    const int surfaces = MASTER.NUMSRF;
    for (const char* width : {"0\n", "-1.5\n"}) {
        answers(width);
        GENRALZI();
    }
    EXPECT_EQ(console(),
              "\n GIVE SEARCH WIDTH: \n   0.000\n\n **** SR/GENRALZI : SEARCH WIDTH MUST BE GREATER THAN ZERO , NO SEARCH\n"
              "\n GIVE SEARCH WIDTH: \n  -1.500\n\n **** SR/GENRALZI : SEARCH WIDTH MUST BE GREATER THAN ZERO , NO SEARCH\n");
    EXPECT_EQ(MASTER.NUMSRF, surfaces);  // nothing analysed
    EXPECT_EQ(copy(), console());
}

TEST_F(GenralziTest, AnAutosearchBeforeAnySurfaceIsRefused) {
    MASTER.NUMSLC = MASTER.NSLREQ;
    answers("0.5\n");
    GENRALZI();
    EXPECT_NE(console().find(" **** SR/GENRALZI : NO SURFACE HAS BEEN ANALYSED YET , NOTHING TO START FROM\n"),
              std::string::npos);
    EXPECT_EQ(MASTER.NUMSRF, 0);
    EXPECT_EQ(io::contents(16), "");
}

TEST_F(GenralziTest, ASurfaceOfTooFewSlicesIsRefused) {
    MASTER.NSLREQ = 3;
    analyseStart();
    const int surfaces = MASTER.NUMSRF;
    answers("0.5\n");
    GENRALZI();
    EXPECT_NE(console().find(" **** SR/GENRALZI : LAST SURFACE NEEDS AT LEAST 4 SLICES , NO SEARCH\n"),
              std::string::npos) << console();
    EXPECT_EQ(MASTER.NUMSRF, surfaces);
}

TEST_F(GenralziTest, WithoutASliceCountTheSearchIsRefused) {
    analyseStart();
    MASTER.NSLREQ = 0;
    answers("0.5\n");
    GENRALZI();
    EXPECT_NE(console().find(" **** SR/GENRALZI : GIVE A NUMBER OF SLICES (CONTROL DATA NUMSLC) FOR THE AUTOSEARCH\n"),
              std::string::npos);
}

// ---------------------------------------------------------------------------------------------
// The search
// ---------------------------------------------------------------------------------------------

TEST_F(GenralziTest, FromAToeArcItFindsANonCircularSurfaceOfLowerFactor) {
    const double startSF = analyseStart();
    const int start = MASTER.NUMSRF;
    answers("0.5\nN\n");
    GENRALZI();
    const std::string out = console();
    const std::vector<double> factors = listedFactors(out);
    ASSERT_GT(factors.size(), 12u) << out;
    // Trial 1 is the base line of the start slices, cut again into 12 slices: its entry vertex
    // lies on the ground where the arc's first slice started the crack depth lower, so its
    // factor is near the start factor, not equal to it.
    EXPECT_NEAR(factors.front(), startSF, 0.01);
    double lowest = 1e9;
    for (double f : factors) lowest = std::min(lowest, f);
    EXPECT_LE(lowest, startSF + 1e-9);
    // The result file holds the lowest surface only: its header factor is the lowest listed.
    const std::string res = io::contents(16);
    EXPECT_EQ(countOf(res, " SURFACE NO :"), 1);
    EXPECT_NE(res.find(io::Line("  SAFETY FACTOR =").F(lowest, 9, 3).str()), std::string::npos);
    EXPECT_EQ(countOf(res, "ECHO PRINT OF DATA ON FORTRAN UNIT NUMBER"), 1);
    // The critical surface is no longer the arc: some vertex lies off the circle by more than
    // the chord sag of the arc's polyline.
    double offCircle = 0.0;
    for (int j = 2; j < IGENER.NPGEN(2); ++j) {
        const double x = GENERL.XGEN(j, 2);
        const double onArc = kCentreZ + std::sqrt(kRadius * kRadius - (x - kCentreX) * (x - kCentreX));
        offCircle = std::max(offCircle, std::fabs(GENERL.ZGEN(j, 2) - onArc));
    }
    EXPECT_GT(offCircle, 0.1);
    // The improvement the search made on the arc.
    std::cout << "[ INFO     ] autosearch from the arc: SF " << io::fmtF(startSF, 8, 3) << " -> "
              << io::fmtF(lowest, 8, 3) << " after " << MASTER.NUMSRF - start << " trials\n";
    EXPECT_LT(lowest, startSF - 0.005);
    EXPECT_NE(out.find(" ITERATION COMPETED, NUMBER OF ITERATIONS :"), std::string::npos);
    const std::string question = " SHALL NEW GENERAL SURFACE BE TRIED (Y/N)..... ";
    EXPECT_EQ(out.substr(out.size() - question.size()), question);
}

TEST_F(GenralziTest, EveryImprovementIsSavedAndTheSearchNeverEndsAboveItsStart) {
    const double startSF = analyseStart();
    answers("0.5\nN\n");
    GENRALZI();
    const std::vector<double> factors = listedFactors(console());
    double lowest = 99.9;
    for (double f : factors) lowest = std::min(lowest, f);
    std::vector<plt::Block> blocks;
    std::string error;
    ASSERT_EQ(plt::readPltText(io::contents(17), blocks, error), 0) << error;
    // One block per improvement: the first trial (the start surface re-cut), then ever lower
    // factors, the last one the lowest listed. (The list shows three decimals, the blocks four,
    // so improvements in the fourth decimal are saved without showing in the list.)
    ASSERT_GT(blocks.size(), 1u);
    EXPECT_NEAR(blocks.front().SF, factors.front(), 0.0006);
    for (size_t k = 0; k < blocks.size(); ++k) {
        if (k > 0) {
            EXPECT_LE(blocks[k].SF, blocks[k - 1].SF) << k;
        }
        EXPECT_EQ(blocks[k].NTYP, 1) << k;  // an improvement is saved as a general surface
    }
    EXPECT_NEAR(blocks.back().SF, lowest, 0.0006);
    EXPECT_LE(blocks.back().SF, startSF);
    // The print and save states are back as the menu left them: the last surface (the last
    // trial) is neither printed nor saved.
    EXPECT_EQ(MASTER.KLAST, 0);
    EXPECT_EQ(MASTER.KLSAVE, 0);
    EXPECT_EQ(MASTER.NTYP, 1);
}

TEST_F(GenralziTest, AWidthBeyondTheSpacingOfVerticesFourAndFiveIsReducedToItLessATenth) {
    analyseStart();
    answers("10\nN\n");
    GENRALZI();
    const std::vector<double> offsets = listedOffsets(console());
    ASSERT_GE(offsets.size(), 24u);
    // The slices of the arc are 12 equal widths between entry and exit; vertices 4 and 5 are
    // the left ends of slices 4 and 5, one slice width apart.
    const double entry = SURF.SPAR(1);
    (void)entry;
    const std::string out = console();
    const size_t first = out.find(" ++++ SAFETY FACTOR =");
    ASSERT_NE(first, std::string::npos);
    // The start surface's slice width, from the geometry of the first listed trial's slices is
    // not at hand any more; it is the spacing MOVEC2G gave vertices 4 and 5 at the start,
    // recomputed here from the arc analysed again.
    const double listedH = -offsets[1];
    solve(arc());
    MASTER.NUMSLC = 12;
    MOVEC2G();
    const double spacing = GENERL.XGEN(5, 2) - GENERL.XGEN(4, 2);
    ASSERT_LT(spacing, 10.0);
    EXPECT_NEAR(listedH, spacing - static_cast<double>(0.1f), 0.0005);
    // Offsets of a sweep: 0, then -h to +h in steps of 0.2 h.
    EXPECT_EQ(offsets[0], 0.0);
    for (int k = 2; k <= 12; ++k) EXPECT_NEAR(offsets[k - 1], -listedH + (k - 2) * 0.2 * listedH, 0.0011) << k;
}

TEST_F(GenralziTest, AnInnerSweepMovesItsVertexAtMostTheDeepestDepth) {
    analyseStart();
    answers("50\nN\n");
    GENRALZI();
    const std::string out = console();
    // Trial 25 is the first of the first inner sweep: its offset -h is minus the largest vertex
    // depth printed at the end of the line, the width 50 being larger.
    std::istringstream lines(out);
    int trial = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(" ++++ SAFETY FACTOR =", 0) != 0) continue;
        if (++trial != 26) continue;
        EXPECT_NE(line.find("   SURFACE ="), std::string::npos) << line;
        const double d = std::stod(line.substr(line.size() - 14, 7));
        const double deepest = std::stod(line.substr(line.size() - 7, 7));
        EXPECT_GT(deepest, 5.0);
        EXPECT_NEAR(d, -deepest, 0.0011);
    }
    EXPECT_GE(trial, 26);
}

TEST_F(GenralziTest, ASearchWhoseFirstIterationGainsNothingEndsAfterItWithTheCountZero) {
    // Moves of a thousandth of a metre cannot lower the factor by more than 0.005 in one
    // iteration.
    analyseStart();
    answers("0.001\nN\n");
    GENRALZI();
    const std::string out = console();
    // One iteration: the two end sweeps and the sweeps of vertices 2..13, twelve trials each.
    EXPECT_EQ(listedFactors(out).size(), 14u * 12u);
    EXPECT_NE(out.find("\n ITERATION COMPETED, NUMBER OF ITERATIONS :   0\n\n CRITICAL SURFACE, NO OF VERTEX :  13\n"),
              std::string::npos);
    // The vertices of the critical surface follow, two F12.3 each.
    EXPECT_NE(out.find(io::Line().F(GENERL.XGEN(1, 2), 12, 3).F(GENERL.ZGEN(1, 2), 12, 3).str() + "\n"),
              std::string::npos);
}

TEST_F(GenralziTest, ASolverFailureEndsTheSearchAtItsQuestion) {
    analyseStart();
    // A width of 30 moves the exit vertex sideways by up to the slice spacing less 0.1, but the
    // inner vertices up by the whole deepest depth: the deepest vertex then lies on the ground
    // and its neighbours follow; the search goes on until some trial has no slices left to cut
    // or ends normally. Either way it ends at the question.
    answers("30\nN\n");
    GENRALZI();
    const std::string out = console();
    const std::string question = " SHALL NEW GENERAL SURFACE BE TRIED (Y/N)..... ";
    EXPECT_EQ(out.substr(out.size() - question.size()), question);
    if (MASTER.IERR != 0) {
        EXPECT_EQ(out.find("ITERATION COMPETED"), std::string::npos);
    }
}

namespace {

// A circle as a general surface: 30 points on its lower arc between the two points where it
// passes 1 m above the crest level (so that both ends lie above the ground of the section).
std::vector<Point> circleArc(double xc, double zc, double radius) {
    const double halfChord = std::sqrt(radius * radius - (zc + 1.0) * (zc + 1.0));
    std::vector<Point> points;
    for (int k = 0; k < 30; ++k) {
        const double x = xc - halfChord + 2.0 * halfChord * k / 29.0;
        const double dx = std::min(radius, std::fabs(x - xc));
        points.push_back({x, zc + std::sqrt(radius * radius - dx * dx)});
    }
    return points;
}

struct CircleTry {
    double xc = 0.0, zc = 0.0, radius = 0.0, SF = 1e9;
};

// The circle of the lowest safety factor over a grid of centres and depths of the lowest point
// (centre above z = -1, lowest point in the soil above rock), refined once around the best.
CircleTry criticalCircle() {
    CircleTry best;
    auto tryCircle = [&](double xc, double zc, double bottom) {
        const double radius = bottom - zc;
        if (zc > -1.5 || radius <= -1.0 - zc + 0.5) return;
        SolverWorld::solve(circleArc(xc, zc, radius));
        if (MASTER.IERR != 0 || MASTER.SF > 50.0) return;
        if (MASTER.SF < best.SF) best = {xc, zc, radius, MASTER.SF};
    };
    for (double xc = 0.0; xc <= 24.0; xc += 2.0)
        for (double zc = -24.0; zc <= -4.0; zc += 2.0)
            for (double bottom = 8.0; bottom <= 16.0; bottom += 1.0) tryCircle(xc, zc, bottom);
    const CircleTry coarse = best;
    for (double xc = coarse.xc - 1.5; xc <= coarse.xc + 1.51; xc += 0.5)
        for (double zc = coarse.zc - 1.5; zc <= coarse.zc + 1.51; zc += 0.5)
            for (double bottom = coarse.zc + coarse.radius - 0.75; bottom <= coarse.zc + coarse.radius + 0.76;
                 bottom += 0.25)
                tryCircle(xc, zc, bottom);
    return best;
}

// The shear-surface polylines the slice geometry received, from its control print on the log
// file (trace level 3): point number, x, z, rock z per line.
std::vector<std::vector<Point>> tracedPolylines(const std::string& log) {
    std::vector<std::vector<Point>> polylines;
    std::istringstream lines(log);
    bool inBlock = false;
    for (std::string line; std::getline(lines, line);) {
        if (line == "  N    X-SHRSRF     Z-SHRSRF     Z-ROCK") {
            polylines.emplace_back();
            inBlock = true;
            continue;
        }
        if (!inBlock) continue;
        std::istringstream fields(line);
        int n = 0;
        double x = 0.0, z = 0.0, rock = 0.0;
        if (line.size() != 42 || !(fields >> n >> x >> z >> rock)) {
            inBlock = false;
            continue;
        }
        polylines.back().push_back({x, z});
    }
    return polylines;
}

}  // namespace

TEST_F(GenralziTest, FromTheCriticalCircleItFindsANonCircularSurfaceAtLeastAsCritical) {
    batchMode();  // circles that miss the section are passed over without a question
    const CircleTry circle = criticalCircle();
    ASSERT_LT(circle.SF, 50.0);
    solve(circleArc(circle.xc, circle.zc, circle.radius));
    ASSERT_EQ(MASTER.IERR, 0);
    const double circleSF = MASTER.SF;
    MASTER.NUMSLC = MASTER.NSLREQ;
    MASTER.NTYP = 5;
    MASTER.KLAST = 0;
    MASTER.KLSAVE = 0;
    answers("0.5\nN\n");
    GENRALZI();
    const std::vector<double> factors = listedFactors(console());
    ASSERT_FALSE(factors.empty());
    double lowest = 1e9;
    for (double f : factors) lowest = std::min(lowest, f);
    EXPECT_LE(lowest, circleSF + 0.0005);
    double offCircle = 0.0;
    for (int j = 2; j < IGENER.NPGEN(2); ++j) {
        const double dx = GENERL.XGEN(j, 2) - circle.xc;
        offCircle = std::max(offCircle, std::fabs(GENERL.ZGEN(j, 2) - (circle.zc + std::sqrt(circle.radius * circle.radius - dx * dx))));
    }
    EXPECT_GT(offCircle, 0.05);
    std::cout << "[ INFO     ] critical circle centre (" << circle.xc << ", " << circle.zc << ") radius "
              << circle.radius << ": SF " << io::fmtF(circleSF, 8, 3) << " -> autosearch " << io::fmtF(lowest, 8, 3)
              << ", " << io::fmtF(100.0 * (circleSF - lowest) / circleSF, 5, 1) << " % lower\n";
}

TEST_F(GenralziTest, EveryTrialKeepsItsVerticesInIncreasingXAndLeavesTheGroundAtBothEnds) {
    analyseStart();
    MASTER.JPRINT = 3;
    io::rewind(18);
    answers("1.0\nN\n");
    GENRALZI();
    const std::vector<std::vector<Point>> polylines = tracedPolylines(io::contents(18));
    const size_t trials = listedFactors(console()).size();
    ASSERT_GT(trials, 24u);
    ASSERT_EQ(polylines.size(), trials);
    int endsBelowGround = 0;
    for (size_t t = 0; t < polylines.size(); ++t) {
        const std::vector<Point>& p = polylines[t];
        ASSERT_EQ(p.size(), 15u) << t;  // 13 vertices and the far point at each end
        for (size_t k = 1; k < p.size(); ++k) EXPECT_GT(p[k].x, p[k - 1].x) << "trial " << t << " point " << k;
        // The first and last vertex lie at or above the ground; an end vertex moved sideways in
        // under the slope face lies below it, and then the far point beyond it lies above the
        // ground, so the surface leaves the ground between the two.
        const Point ends[2][2] = {{p[1], p[0]}, {p[13], p[14]}};
        for (const auto& end : ends) {
            const Point& vertex = end[0];
            const Point& far = end[1];
            if (vertex.z <= worldGround(vertex.x) + 0.0001) continue;
            ++endsBelowGround;
            EXPECT_LT(far.z, worldGround(far.x)) << "trial " << t;
        }
    }
    std::cout << "[ INFO     ] " << trials << " trials, " << endsBelowGround << " end vertices under the ground\n";
}

TEST_F(GenralziTest, AfterFiftyImprovingIterationsTheSearchStopsThoughItStillImproves) {
    // Without friction the factor of the slope keeps falling as the surface goes deeper, towards
    // the rock 40 m below the toe; a strong clay (c = 400) gives large factors, so that moves of
    // 0.15 m, which deepen the surface only a little each iteration, still gain more than 0.005
    // in every one of them.
    SOLPRP.MAT(PHIANG, 1) = 0.0;
    SOLPRP.MAT(COHESN, 1) = 400.0;
    analyseStart();
    answers("0.15\nN\n");
    GENRALZI();
    const std::string out = console();
    const std::vector<double> factors = listedFactors(out);
    EXPECT_NE(out.find(" ITERATION COMPETED, NUMBER OF ITERATIONS :  50\n"), std::string::npos);
    // Fifty iterations of 14 sweeps (the two ends, vertices 2..13) of 12 trials.
    const size_t perIteration = 14u * 12u;
    ASSERT_EQ(factors.size(), 50u * perIteration);
    // The last iteration still lowered the factor by more than 0.005.
    double beforeLast = 1e9, inLast = 1e9;
    for (size_t k = 0; k < factors.size(); ++k) {
        if (k < 49 * perIteration) {
            beforeLast = std::min(beforeLast, factors[k]);
        } else {
            inLast = std::min(inLast, factors[k]);
        }
    }
    EXPECT_LT(inLast, beforeLast - 0.005);
}
