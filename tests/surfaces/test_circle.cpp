// CIRCLE: single circles, the step search and the full search of circle centres, their
// dialogue, lists and summary, checked against the same polylines as general surfaces, against
// the moment ratio of undrained circles integrated over the true arc and sliding mass, and
// against the moment balance of the slice forces about the centre.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "solver/solver_world.h"
#include "surfaces/circle_checks.h"

using namespace kalmo_test;

namespace {

const std::string kCodePrompt = " GIVE CIRCLE SEARCH CODE :  1-SINGLE  2-STEP  3-FULL ..... ";
const std::string kSinglePrompt = " X-CNTR  Z-CNTR  RADIUS  X-FIX  Z-FIX , PLEASE SPECIFY\n ";
const std::string kSingleAgain = " SHALL NEW SINGLE CIRCLE BE TRIED (Y/N)..... ";
const std::string kSearchAgain = " SHALL NEW CIRCLE SEARCH BE TRIED (Y/N)..... ";
const std::string kGoOn = " SHALL AUTOMATIC SEARCH BE CONTINUED (Y/N) ..... ";
const std::string kListHeading =
    "  NR  X-CENTER  Z-CENTER  RADIUS SAFETY-FAC SCORE   RFAC    STAB-MOM    DRIV-MOM  AREA  AREA-UNDRAINED";
const std::string kStepInput =
    "\n GIVE : XFIX,ZFIX = FIXED POINT THAT ALL CIRCLES SHALL PASS\n"
    "        ZLVFIX    = Z-LEVEL THAT ALL CIRCLES SHALL TOUCH\n"
    "        XC,ZC     = CIRCLE CENTER LOCATION GUESS\n"
    "        DXZ       = STEP VALUE FOR CIRCLE CENTER SHIFT\n"
    "  XFIX   ZFIX   ZLVFIX    XC    ZC    DXZ\n ";
const std::string kFullInput =
    "\n GIVE: XFIX,ZFIX   = FIX POINT COORDINATES, ALL CIRCLES PASS THROUGH\n"
    "       ZLVFIX      = FIXED Z-LEVEL, ALL CIRCLES TOUCH\n"
    "       XCMIN,XCMAX = CIRCLE CENTER X-BOUNDARIES\n"
    "       ZCMIN,ZCMAX = CIRCLE CENTER Z-BOUNDARIES\n"
    "       NX,NZ       = NUMBER OF DIVISIONS IN X- AND Z-DIRECTIONS\n"
    "  XFIX  ZFIX  ZLVFIX  XCMIN  XCMAX  ZCMIN  ZCMAX  NX  NZ\n ";
const std::string kRule = " " + std::string(78, '+');

// The toe of the slope of SolverWorld, through which the toe circles pass.
constexpr double kToeX = 20.0, kToeZ = 10.0;

struct Listed {
    int surface;
    double xc, zc, radius, SF;
};

// The lines of the trial list in a dialogue text: I4, F9.2, F10.2, F9.3, F10.3, 2F7.3, 2E12.3,
// 2F7.1, 94 columns in all.
std::vector<Listed> listedCircles(const std::string& text) {
    std::vector<Listed> found;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line.size() != 94 || line.find('E') == std::string::npos) continue;
        Listed c{};
        try {
            c.surface = std::stoi(line.substr(0, 4));
            c.xc = std::stod(line.substr(4, 9));
            c.zc = std::stod(line.substr(13, 10));
            c.radius = std::stod(line.substr(23, 9));
            c.SF = std::stod(line.substr(32, 10));
        } catch (...) {
            continue;
        }
        found.push_back(c);
    }
    return found;
}

// The values of the summary line: xc F9.3, zc F10.3, R F8.3, SF F8.3, ...
std::vector<double> summaryValues(const std::string& text) {
    const std::string heading =
        " X-CENTER  Z-CENTER  RADIUS  SAFETY  SCORE  R-FACTOR  STAB-MOMENT  DRIV-MOMENT  AREA  AREA-UNDRAINED\n";
    const size_t at = text.rfind(heading);
    if (at == std::string::npos) return {};
    const std::string line = text.substr(at + heading.size(), text.find('\n', at + heading.size()) - at - heading.size());
    return {std::stod(line.substr(0, 9)), std::stod(line.substr(9, 10)), std::stod(line.substr(19, 8)),
            std::stod(line.substr(27, 8))};
}

int summarySurface(const std::string& text) {
    const std::string tag = " CRITICAL CIRCLE SUMMARY :   SURFACE = ";
    const size_t at = text.rfind(tag);
    return at == std::string::npos ? -1 : std::stoi(text.substr(at + tag.size(), 5));
}

class CircleTest : public ::testing::Test, public SolverWorld {
protected:
    CircleTest() {
        resetCircleRunState();
        MASTER.NTYP = 2;
        MASTER.NSLREQ = 20;
        MASTER.NUMSLC = 20;
        MASTER.METHOD = 1;  // Bishop simplified
    }
    std::string copyText() const { return io::contents(POSTGRAF.NFCOPY); }

    // The factor of a circle and of its polyline given as a general surface (the same 61 points, cut
    // into the same 20 slices).
    void circleAndItsPolyline(double& circleSF, double& generalSF) {
        answers("1\n10 -5 0 20 10\nN\n");
        CIRCLE();
        ASSERT_EQ(MASTER.IERR, 0);
        circleSF = MASTER.SF;
        EXPECT_EQ(SURF.SPAR(3), std::sqrt(325.0));  // the distance to the fixed point
        std::vector<double> x(MAXPTS), z(MAXPTS);
        double spar[3];
        int points = 61;
        CIRSRF(points, 10.0, -5.0, std::sqrt(325.0), x.data(), z.data(), spar);
        for (int k = 1; k <= points; ++k) {
            SURF.XS(k) = x[static_cast<size_t>(k - 1)];
            SURF.ZS(k) = z[static_cast<size_t>(k - 1)];
        }
        MASTER.NTYP = 1;
        SOLVER(points);
        ASSERT_EQ(MASTER.IERR, 0);
        generalSF = MASTER.SF;
    }
};

// A homogeneous undrained slope (phi = 0) in the section of SolverWorld.
constexpr double kUndrained = 30.0;

void undrainedSlope() {
    MASTER.IDEFTO = 2;
    MASTER.METHOD = 0;
    SOLPRP.MAT(MAT14, 1) = kUndrained;
}

// The exact ratio of resisting to driving moment about the centre of an undrained circle through
// the slope of SolverWorld (crack depth 0.5 m at its upper end).
double exactUndrainedRatio(double xc, double zc, double R) {
    return undrainedMomentRatio({xc, zc, R}, worldGround, kCrackDepth, kUndrained, kUnitWeight);
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// Number of slices, search code, points
// ---------------------------------------------------------------------------------------------

TEST_F(CircleTest, WithoutASliceCountTheCountIsAskedUntilItIsOneToNinetyNine) {
    MASTER.NSLREQ = 0;
    answers("0\nabc\n100\n20\n1\n10 -5 0 20 10\nN\n");
    CIRCLE();
    EXPECT_EQ(MASTER.NSLREQ, 20);
    const std::string ask = " GIVE NUMBER OF SLICES..... ";
    EXPECT_EQ(occurrences(console(), ask), 4);
    EXPECT_EQ(console().find(ask + "\n" + kCodePrompt), 3 * (ask.size() + 1));
    EXPECT_EQ(MASTER.NUMSRF, 1);
    EXPECT_EQ(io::contents(9).find(ask), std::string::npos);  // not copied at the console
}

TEST_F(CircleTest, InAnswerFileModeTheSliceCountIsAskedOnTheCopyChannelAndCannotBeAnswered) {
    // The count is to be read from the log-copy channel, which gives no answers: the routine
    // returns to the menu instead of asking for ever.
    batchMode();
    MASTER.NSLREQ = 0;
    answers("1\n");
    CIRCLE();
    EXPECT_EQ(console(), " GIVE NUMBER OF SLICES..... ");
    EXPECT_EQ(copy(), " GIVE NUMBER OF SLICES..... ");
    EXPECT_EQ(MASTER.NSLREQ, 0);
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(CircleTest, TwentySlicesMakeSixtyOnePointsAndNinetyNineTwoHundredNinetyFive) {
    answers("1\n10 -5 0 20 10\nN\n");
    CIRCLE();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    // 61 points: point 31 is the lowest, point 61 the end of the right ray.
    EXPECT_DOUBLE_EQ(SURF.XS(31), 10.0);
    EXPECT_NEAR(SURF.XS(61) - SURF.XS(60), 100.0 * std::sqrt(325.0), 1e-9);

    MASTER.NSLREQ = 99;
    MASTER.NUMSLC = 99;
    answers("1\n10 -5 0 20 10\nN\n");
    CIRCLE();
    // 2 * 148 + 1 = 297 is held to 295: m = 147, the lowest point is point 148.
    EXPECT_DOUBLE_EQ(SURF.XS(148), 10.0);
    EXPECT_NEAR(SURF.XS(295) - SURF.XS(294), 100.0 * std::sqrt(325.0), 1e-9);
}

TEST_F(CircleTest, AnUnknownSearchCodeIsAskedAgainAndTextReturns) {
    answers("4\n0\nx\n");
    CIRCLE();
    EXPECT_EQ(console(), kCodePrompt + "\n" + kCodePrompt + "\n" + kCodePrompt);
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(CircleTest, TextAtAnyInputReturnsWithoutACircle) {
    for (const char* answer : {"1\n10 -5 x 20 10\n", "2\n20 10 0 x -5 1\n", "3\n20 10 0 0 10 -10 -5 2 x\n", "2\n",
                               "3\n", ""}) {
        answers(answer);
        CIRCLE();
        EXPECT_EQ(MASTER.NUMSRF, 0) << answer;
    }
}

// ---------------------------------------------------------------------------------------------
// Single circles
// ---------------------------------------------------------------------------------------------

TEST_F(CircleTest, ACircleHasTheSafetyFactorOfItsPolylineAsAGeneralSurface) {
    // Force equilibrium takes no centre of rotation: the same slices give the same factor.
    MASTER.METHOD = -1;
    double circleSF = 0.0, generalSF = 0.0;
    circleAndItsPolyline(circleSF, generalSF);
    EXPECT_NEAR(generalSF, circleSF, 1e-9);
    EXPECT_GT(circleSF, 1.0);
}

TEST_F(CircleTest, ABishopCircleAndItsPolylineDifferOnlyByTheirCentresOfRotation) {
    // Bishop's simplified method takes moments about the circle's centre for a circle, but about
    // the circle through three base corners for a general surface; those corners lie on chords
    // of the polyline, up to a chord's sagitta R (1 - cos 1.5 degrees) = 6 mm inside the circle,
    // which moves the centre by millimetres and the factor by far less than its printed digits.
    double circleSF = 0.0, generalSF = 0.0;
    circleAndItsPolyline(circleSF, generalSF);
    EXPECT_NEAR(generalSF, circleSF, 1e-4 * circleSF);
    EXPECT_GT(circleSF, 1.0);
}

TEST_F(CircleTest, ASingleCircleShowsItsFactorAndMomentsOnBothChannels) {
    answers("1\n10 -5 0 20 10\nN\n");
    CIRCLE();
    ASSERT_EQ(MASTER.IERR, 0);
    const std::string shown = "\n" +
                              io::Line()
                                  .A(" ++++ SAFETY FACTOR =")
                                  .F(MASTER.SF, 8, 3)
                                  .A("   SCORE =")
                                  .F(MASTER.SCORE, 7, 3)
                                  .A("   R-FACTOR =")
                                  .F(MASTER.RFACTOR, 7, 3)
                                  .A("   SURFACE =")
                                  .I(1, 4)
                                  .str() +
                              "\n" +
                              io::Line(" STABILIZING AND DRIVING MOMENT =")
                                  .ES(SURF.SPAR(4), 12, 3)
                                  .ES(SURF.SPAR(5), 12, 3)
                                  .str() +
                              "\n";
    EXPECT_EQ(console(), kCodePrompt + "\n" + kSinglePrompt + "\n" + shown + kSingleAgain);
    EXPECT_EQ(io::contents(9), shown);
    // Bishop's simplified method: the driving moment balances the mobilised resistance.
    EXPECT_NEAR(SURF.SPAR(5), -SURF.SPAR(4) / MASTER.SF, 1e-9 * std::fabs(SURF.SPAR(4)));
    EXPECT_LT(SURF.SPAR(5), 0.0);
}

TEST_F(CircleTest, TheMomentsOfAFullEquilibriumSolutionBalanceAboutTheCentre) {
    // Bishop's modified method satisfies the moment equilibrium of the whole body about the
    // centre: the stabilising moment over SF and the driving moment cancel.
    MASTER.METHOD = 2;
    answers("1\n10 -5 0 20 10\nN\n");
    CIRCLE();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const double stabilizing = SURF.SPAR(4), driving = SURF.SPAR(5);
    EXPECT_NEAR(stabilizing / MASTER.SF + driving, 0.0, 1e-4 * std::fabs(driving));
    EXPECT_LT(driving, 0.0);
}

TEST_F(CircleTest, AGivenRadiusWinsOverTheFixedPoint) {
    answers("1\n10 -5 17 20 10\nN\n");
    CIRCLE();
    EXPECT_EQ(SURF.SPAR(3), 17.0);
    EXPECT_EQ(SURF.SPAR(1), 10.0);
    EXPECT_EQ(SURF.SPAR(2), -5.0);
}

TEST_F(CircleTest, ASingleCentreBelowTheFixedPointIsRefusedAndAskedAgain) {
    answers("1\n10 15 0 20 10\n10 -5 0 20 10\nN\n");
    CIRCLE();
    const std::string message = " CIRCLE CENTER IS BELOW THE FIXED POINT\n";
    EXPECT_EQ(console().find(kCodePrompt + "\n" + kSinglePrompt + "\n" + message + kSinglePrompt), 0u) << console();
    EXPECT_EQ(MASTER.NUMSRF, 1);
    EXPECT_EQ(io::contents(9).find(message), std::string::npos);
}

TEST_F(CircleTest, InAnswerFileModeARefusedSingleCentreIsFollowedByTheRepeatQuestion) {
    batchMode();
    answers("1\n10 15 0 20 10\nN\n10 -5 0 20 10\n");
    CIRCLE();
    const std::string message = " CIRCLE CENTER IS BELOW THE FIXED POINT\n";
    EXPECT_TRUE(console().ends_with(message + kSingleAgain)) << console();
    EXPECT_EQ(copy(), message);
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(CircleTest, YesTriesAnotherSingleCircle) {
    answers("1\n10 -5 0 20 10\nY\n8 -6 0 20 10\nn\n");
    CIRCLE();
    EXPECT_EQ(MASTER.NUMSRF, 2);
    EXPECT_EQ(SURF.SPAR(1), 8.0);
    EXPECT_EQ(occurrences(console(), kSingleAgain), 2);
}

// ---------------------------------------------------------------------------------------------
// Undrained circles, solved by the moments about their centre
// ---------------------------------------------------------------------------------------------

TEST_F(CircleTest, AnUndrainedCircleHasTheExactMomentRatioOfItsArcAndMass) {
    undrainedSlope();
    MASTER.NSLREQ = 30;
    MASTER.NUMSLC = 30;
    answers("1\n10 -5 0 20 10\nN\n");
    CIRCLE();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(9.999f));
    EXPECT_EQ(MASTER.ICIRCM, 1);
    const double exact = exactUndrainedRatio(10.0, -5.0, std::sqrt(325.0));
    EXPECT_NEAR(MASTER.SF, exact, 0.002 * exact);
    // The moments shown are those of the direct solution.
    EXPECT_NEAR(SURF.SPAR(4) / -SURF.SPAR(5), MASTER.SF, 1e-12);
}

TEST_F(CircleTest, AGridOfUndrainedToeCirclesFindsTheLowestExactRatio) {
    undrainedSlope();
    MASTER.NSLREQ = 30;
    MASTER.NUMSLC = 30;
    answers("3\n20 10 0 4 16 -14 -2 4 4\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_EQ(listed.size(), 25u) << console();
    double lowest = 1e9;
    for (int i = 0; i <= 4; ++i) {
        for (int j = 0; j <= 4; ++j) {
            const double xc = 4.0 + 3.0 * i, zc = -14.0 + 3.0 * j;
            lowest = std::min(lowest, exactUndrainedRatio(xc, zc, std::hypot(xc - kToeX, zc - kToeZ)));
        }
    }
    const std::vector<double> summary = summaryValues(console());
    ASSERT_EQ(summary.size(), 4u);
    EXPECT_NEAR(summary[3], lowest, 0.005 * lowest);
}

// ---------------------------------------------------------------------------------------------
// Full search
// ---------------------------------------------------------------------------------------------

TEST_F(CircleTest, AFullSearchOfTwoByThreeDivisionsAnalysesTwelveCentresXOuterZInner) {
    answers("3\n20 10 0 6 12 -12 -6 2 3\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_EQ(listed.size(), 12u) << console();
    for (size_t k = 0; k < listed.size(); ++k) {
        EXPECT_EQ(listed[k].surface, static_cast<int>(k) + 1);
        EXPECT_EQ(listed[k].xc, 6.0 + 3.0 * static_cast<double>(k / 4));
        EXPECT_EQ(listed[k].zc, -12.0 + 2.0 * static_cast<double>(k % 4));
        EXPECT_NEAR(listed[k].radius, std::hypot(listed[k].xc - kToeX, listed[k].zc - kToeZ), 0.0005);
    }
    // The heading on the console only; the lines on both channels.
    EXPECT_NE(console().find(kFullInput + "\n\n" + kListHeading + "\n"), std::string::npos) << console();
    EXPECT_EQ(io::contents(9).find(kListHeading), std::string::npos);
    EXPECT_EQ(listedCircles(io::contents(9)).size(), 12u);
    EXPECT_TRUE(console().ends_with(kRule + "\n\n" + kSearchAgain));
}

TEST_F(CircleTest, TheGridMinimumIsNoHigherThanAnyOfItsCirclesAloneAndIsTheOneSummarised) {
    answers("3\n20 10 0 4 12 -12 -4 2 2\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_EQ(listed.size(), 9u);
    const std::vector<double> summary = summaryValues(console());
    ASSERT_EQ(summary.size(), 4u);
    const int critical = summarySurface(console());
    // Each centre once more on its own, as a single circle.
    for (const Listed& c : listed) {
        answers("1\n" + io::freeRecord(c.xc, c.zc, 0.0, kToeX, kToeZ) + "\nN\n");
        CIRCLE();
        ASSERT_EQ(MASTER.IERR, 0);
        EXPECT_LE(summary[3], MASTER.SF + 0.0005) << c.xc << " " << c.zc;
        if (c.surface == critical) {
            EXPECT_NEAR(summary[3], MASTER.SF, 0.0005);
            EXPECT_EQ(summary[0], c.xc);
            EXPECT_EQ(summary[1], c.zc);
        }
    }
}

TEST_F(CircleTest, AFixedLevelGivesCirclesThatTouchIt) {
    answers("3\n0 0 25 8 8 -10 -10 1 1\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_EQ(listed.size(), 4u);
    for (const Listed& c : listed) EXPECT_EQ(c.radius, 35.0);
    EXPECT_EQ(SURF.ZS(31), 25.0);  // the lowest point of the last circle is on the level
}

TEST_F(CircleTest, ABadGridIsAskedAgainWithoutAMessage) {
    answers("3\n20 10 0 12 6 -12 -6 2 3\n20 10 0 6 12 -6 -12 2 3\n20 10 0 6 12 -12 -6 0 3\n"
            "20 10 0 6 12 -12 -6 2 0\n20 10 0 6 6 -8 -8 1 1\nN\n");
    CIRCLE();
    EXPECT_EQ(occurrences(console(), kFullInput), 5);
    EXPECT_EQ(console().find(" ****"), std::string::npos);
    EXPECT_EQ(listedCircles(console()).size(), 4u);  // a zero-width range: its two ends
}

TEST_F(CircleTest, FixedPointAndLevelTogetherOrNeitherAreRefused) {
    answers("3\n20 10 30 6 12 -12 -6 2 3\n0 0 0 6 12 -12 -6 2 3\nx\n");
    CIRCLE();
    const std::string both = "\n EITHER (XFIX,ZFIX) OR (ZLVFIX) TO BE GIVEN , NOT BOTH\n";
    const std::string neither = "\n BOTH (XFIX,ZFIX) AND (ZLVFIX) CAN NOT BE ZERO\n";
    EXPECT_NE(console().find(kFullInput + "\n" + both + kFullInput + "\n" + neither + kFullInput), std::string::npos)
        << console();
    EXPECT_EQ(io::contents(9), both + neither);
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(CircleTest, GridCentresBelowTheFixedPointOrLevelAreRefused) {
    answers("3\n20 10 0 6 12 -12 10 2 3\n0 0 -5 6 12 -12 -5 2 3\nx\n");
    CIRCLE();
    EXPECT_NE(console().find("\n CIRCLE CENTER IS BELOW THE FIXED POINT\n" + kFullInput), std::string::npos);
    EXPECT_NE(console().find("\n CIRCLE CENTER IS BELOW THE FIXED Z-LEVEL\n" + kFullInput), std::string::npos);
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(CircleTest, YesSearchesAgainFromTheSearchInput) {
    answers("3\n20 10 0 6 6 -8 -8 1 1\nY\n20 10 0 8 8 -8 -8 1 1\nN\n");
    CIRCLE();
    EXPECT_EQ(occurrences(console(), kFullInput), 2);
    EXPECT_EQ(occurrences(console(), kCodePrompt), 1);
    EXPECT_EQ(MASTER.NUMSRF, 8);
    EXPECT_EQ(summaryValues(console())[0], 8.0);  // the second search has its own critical circle
}

TEST_F(CircleTest, OfEqualFactorsTheLaterCircleIsCritical) {
    // A zero-width grid analyses the same centre twice: equal factors.
    answers("3\n20 10 0 8 8 -8 -8 1 1\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_EQ(listed.size(), 4u);
    EXPECT_EQ(listed[0].SF, listed[3].SF);
    EXPECT_EQ(summarySurface(console()), 4);
}

// ---------------------------------------------------------------------------------------------
// Solver failures inside a search
// ---------------------------------------------------------------------------------------------

TEST_F(CircleTest, InAnswerFileModeAnAnalysisErrorContinuesTheSearchWithTheMarker) {
    batchMode();
    // Circles of radius 10 touching the level z = 8: centred at x = 8 they cut the slope, at
    // x = 60 they stay above the level ground at z = 10 and miss the soil.
    answers("3\n0 0 8 8 60 -2 -2 1 1\nN\n");
    CIRCLE();
    const std::string error = "\n **** SR/CIRCLE : ERROR FROM SR/SOLVER  IERR=    1\n" + kGoOn + "\n YES\n";
    EXPECT_EQ(occurrences(console(), error), 2) << console();
    EXPECT_EQ(occurrences(copy(), " **** SR/CIRCLE : ERROR FROM SR/SOLVER  IERR=    1\n"), 2);
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_EQ(listed.size(), 4u) << console();
    EXPECT_LT(listed[1].SF, 999.0);
    EXPECT_EQ(listed[2].SF, 999.99);
    EXPECT_EQ(listed[3].SF, 999.99);
    EXPECT_EQ(summarySurface(console()), 2);  // of two equal factors the later one
}

TEST_F(CircleTest, AtTheConsoleAnAnalysisErrorAsksWhetherToContinue) {
    // The slice geometry offers its profile print first (N), then the question (N).
    answers("3\n0 0 8 8 60 -2 -2 1 1\nN\nN\n");
    CIRCLE();
    EXPECT_TRUE(console().ends_with(" **** SR/CIRCLE : ERROR FROM SR/SOLVER  IERR=    1\n" + kGoOn)) << console();
    EXPECT_EQ(MASTER.NUMSRF, 3);
    EXPECT_EQ(console().find(kRule), std::string::npos);
}

// ---------------------------------------------------------------------------------------------
// Step search
// ---------------------------------------------------------------------------------------------

TEST_F(CircleTest, TheStepSearchStartsAtTheLowerLeftNeighbourAndHasTheStartCentreFifth) {
    answers("2\n20 10 0 10 -5 1\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_GE(listed.size(), 9u) << console();
    EXPECT_EQ(listed[0].xc, 9.0);
    EXPECT_EQ(listed[0].zc, -6.0);
    EXPECT_EQ(listed[4].xc, 10.0);
    EXPECT_EQ(listed[4].zc, -5.0);
    EXPECT_EQ(listed[2].xc, 11.0);  // x inner, z outer
    EXPECT_EQ(listed[2].zc, -6.0);
    // The heading goes to both channels.
    EXPECT_NE(console().find(kStepInput + "\n\n" + kListHeading + "\n"), std::string::npos);
    EXPECT_NE(io::contents(9).find("\n" + kListHeading + "\n"), std::string::npos);
}

TEST_F(CircleTest, TheStepSearchEndsWithItsLowestCentreInTheMiddle) {
    answers("2\n20 10 0 10 -5 1\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_FALSE(listed.empty());
    // Every centre once, on the fixed field around the start centre.
    const Listed* lowest = &listed[0];
    for (size_t a = 0; a < listed.size(); ++a) {
        for (size_t b = a + 1; b < listed.size(); ++b)
            EXPECT_FALSE(listed[a].xc == listed[b].xc && listed[a].zc == listed[b].zc);
        EXPECT_LE(std::fabs(listed[a].xc - 10.0), 4.0);
        EXPECT_LE(std::fabs(listed[a].zc + 5.0), 4.0);
        if (listed[a].SF <= lowest->SF) lowest = &listed[a];
    }
    const std::vector<double> summary = summaryValues(console());
    ASSERT_EQ(summary.size(), 4u);
    EXPECT_EQ(summary[0], lowest->xc);
    EXPECT_EQ(summary[1], lowest->zc);
    // All eight neighbours of the critical centre inside the field were analysed, none lower.
    for (int dx = -1; dx <= 1; ++dx) {
        for (int dz = -1; dz <= 1; ++dz) {
            const double x = lowest->xc + dx, z = lowest->zc + dz;
            if (std::fabs(x - 10.0) > 4.0 || std::fabs(z + 5.0) > 4.0) continue;
            bool seen = false;
            for (const Listed& c : listed) {
                if (c.xc != x || c.zc != z) continue;
                seen = true;
                EXPECT_GE(c.SF, lowest->SF);
            }
            EXPECT_TRUE(seen) << x << " " << z;
        }
    }
    EXPECT_TRUE(console().ends_with(kRule + "\n\n" + kSearchAgain));
}

TEST_F(CircleTest, AStepSearchWithAZeroStepAnalysesTheStartCentreOnly) {
    answers("2\n20 10 0 10 -5 0\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_EQ(listed.size(), 1u);
    EXPECT_EQ(listed[0].xc, 10.0);
    EXPECT_EQ(listed[0].zc, -5.0);
    EXPECT_EQ(summarySurface(console()), 1);
}

TEST_F(CircleTest, AStepSearchCannotLeaveItsField) {
    // Ever further left and lower is better here (the slope is steepest for large circles);
    // the search stops at the field's corner.
    answers("2\n20 10 0 12 -2 0.5\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_FALSE(listed.empty());
    for (const Listed& c : listed) {
        EXPECT_GE(c.xc, 10.0);
        EXPECT_LE(c.xc, 14.0);
        EXPECT_GE(c.zc, -4.0);
        EXPECT_LE(c.zc, 0.0);
    }
    EXPECT_LE(listed.size(), 81u);
    // The critical centre lies on the edge of the field, where it stopped.
    const std::vector<double> summary = summaryValues(console());
    ASSERT_EQ(summary.size(), 4u);
    const bool onEdge = summary[0] == 10.0 || summary[0] == 14.0 || summary[1] == -4.0 || summary[1] == 0.0;
    EXPECT_TRUE(onEdge) << summary[0] << " " << summary[1];
}

TEST_F(CircleTest, AStepSearchKeepsAFailedCircleAtTheMarkerAndMovesPastIt) {
    // Circles touching the level z = 8: those centred far enough right stay above the level
    // ground at z = 10 and miss the soil; they carry 999.99 and are never the lowest.
    batchMode();
    answers("2\n0 0 8 20 -8 2\nN\n");
    CIRCLE();
    const std::vector<Listed> listed = listedCircles(console());
    ASSERT_FALSE(listed.empty()) << console();
    int failed = 0;
    for (const Listed& c : listed) failed += c.SF == 999.99;
    EXPECT_GT(failed, 0) << console();
    const std::vector<double> summary = summaryValues(console());
    ASSERT_EQ(summary.size(), 4u);
    EXPECT_LT(summary[3], 999.0);
}

TEST_F(CircleTest, AStepSearchKeepsTheLowestValueOfItsFieldAsTheBestFactor) {
    MASTER.BESTSF = 0.5;  // a better surface of an earlier search
    answers("2\n20 10 0 10 -5 1\nN\n");
    CIRCLE();
    const std::vector<double> summary = summaryValues(console());
    ASSERT_EQ(summary.size(), 4u);
    EXPECT_NEAR(MASTER.BESTSF, summary[3], 0.0005);
}

TEST_F(CircleTest, AStepSearchRefusesAStartCentreBelowTheFixedPointOrALevelAboveTheField) {
    answers("2\n20 10 0 10 12 1\n0 0 -2 10 -5 1\nx\n");
    CIRCLE();
    EXPECT_NE(console().find("\n CIRCLE CENTER IS BELOW THE FIXED POINT\n" + kStepInput), std::string::npos);
    // The deepest centre of the field, -5 + 4, lies below the level -2.
    EXPECT_NE(console().find("\n CIRCLE CENTER IS BELOW THE FIXED Z-LEVEL\n" + kStepInput), std::string::npos);
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(CircleTest, InAnswerFileModeAStepSearchInputProblemOffersSingleCircles) {
    batchMode();
    answers("2\n0 0 0 10 -5 1\nY\n10 -5 0 20 10\nN\n");
    CIRCLE();
    const std::string message = "\n BOTH (XFIX,ZFIX) AND (ZLVFIX) CAN NOT BE ZERO\n";
    EXPECT_NE(console().find(message + kSingleAgain + "\n" + kSinglePrompt), std::string::npos) << console();
    EXPECT_EQ(MASTER.NUMSRF, 1);
    EXPECT_EQ(SURF.SPAR(1), 10.0);
    EXPECT_EQ(occurrences(console(), kStepInput), 1);
}

// ---------------------------------------------------------------------------------------------
// Earth pressure
// ---------------------------------------------------------------------------------------------

TEST_F(CircleTest, AnEarthPressureCircleGoesThroughTheWallFootWithoutASearchCode) {
    setGround({-100.0, 100.0}, {0.0, 0.0});
    SOLPRP.MAT(COHESN, 1) = 0.0;
    MASTER.IDTYP = 2;
    MASTER.METHOD = 0;
    MASTER.SF = 1.0;
    MASTER.BESTE2 = -1.0E6;
    GEOMSH.XWALL = 0.0;
    GEOMSH.DWALL = 6.0;
    GEOMSH.ZWALL = 6.0;
    answers("-10 -8 5 0 0\nN\n");
    CIRCLE();
    EXPECT_EQ(console().find(kCodePrompt), std::string::npos);
    EXPECT_EQ(SURF.SPAR(3), std::hypot(10.0, 14.0));  // the given radius does not count
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const int last = MASTER.NUMSLC;
    EXPECT_NE(console().find(io::Line()
                                 .A(" +++++ E2-FRC,T2-FRC,H2,SCORE=")
                                 .ES(SURF.E2(last), 12, 3)
                                 .ES(SURF.T2(last), 12, 3)
                                 .ES(SURF.H2(last), 12, 3)
                                 .F(MASTER.SCORE, 7, 3)
                                 .str()),
              std::string::npos);
    EXPECT_NE(SURF.E2(last), 0.0);
}

TEST_F(CircleTest, AnEarthPressureCircleCentredBelowTheWallFootIsTurnedOver) {
    setGround({-100.0, 100.0}, {0.0, 0.0});
    MASTER.IDTYP = 2;
    MASTER.SF = 1.0;
    GEOMSH.XWALL = 0.0;
    GEOMSH.DWALL = 6.0;
    GEOMSH.ZWALL = 6.0;
    answers("-12 8 0 0 0\nN\n");
    CIRCLE();
    // 20 slices: 61 points, m = 30; the 31 points from the lowest to the right end, mirrored
    // about the centre level: the top of the circle first, then its upper right quarter. (The
    // slice geometry then moves the polyline a little up or down so that it meets the wall foot
    // exactly, by less than a chord's sagitta.)
    const double R = std::hypot(12.0, 2.0);
    const double shift = 0.05;
    EXPECT_EQ(SURF.XS(1), -12.0);
    EXPECT_NEAR(SURF.ZS(1), 8.0 - R, shift);
    for (int k = 2; k <= 30; ++k) {
        EXPECT_NEAR(std::hypot(SURF.XS(k) + 12.0, SURF.ZS(k) - 8.0), R, shift) << k;
        EXPECT_LT(SURF.ZS(k), 8.0) << k;
        EXPECT_GT(SURF.XS(k), SURF.XS(k - 1)) << k;
    }
    // The last point keeps its x far out and is lifted 100 wall heights above the foot.
    EXPECT_NEAR(SURF.XS(31), -12.0 + R * std::cos(MASTER.PI / 60.0) + 100.0 * R, 1e-9);
    EXPECT_NEAR(SURF.ZS(31), 6.0 - 600.0, shift);
}
