// SOLVER: one trial surface from its polyline to its safety factor, the markers of rejected
// and dropped surfaces, and the best-surface rule.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

#include "io/fmt.h"
#include "solver/solver_world.h"

using namespace kalmo_test;

namespace {

// From the crest (entering at x = -10.333) down under the toe to the level ground (x = 26).
const std::vector<Point> kDeep = {{-12, -2}, {-8, 4}, {0, 9}, {10, 13}, {20, 13}, {30, 8}};
// A shallower one, entering at x = -3.5 and leaving at x = 24.
const std::vector<Point> kShallow = {{-4, -0.5}, {0, 5.5}, {10, 9}, {20, 11}, {28, 7}};

class SolverTest : public ::testing::Test, public SolverWorld {};

}  // namespace

TEST_F(SolverTest, TheForceSolutionMatchesTheSimplifiedMethodByHand) {
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const std::vector<HandSlice> slices = handSlices(kDeep);
    ASSERT_EQ(MASTER.NUMSLC, static_cast<int>(slices.size()));
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const HandSlice& s = slices[static_cast<size_t>(i - 1)];
        EXPECT_NEAR(SURF.XX(1, i), s.xLeft, 1e-9) << i;
        EXPECT_NEAR(SURF.XX(2, i), s.xRight, 1e-9) << i;
        EXPECT_NEAR(SURF.WZ(i), s.weight(), 1e-6 * s.weight()) << i;
    }
    const double expected = simplifiedFactor(slices, kCohesion, kTanPhi);
    EXPECT_NEAR(MASTER.SF, expected, 0.001 * expected);
    EXPECT_GT(MASTER.SF, 1.0);
    EXPECT_EQ(MASTER.NUMSRF, 1);
}

TEST_F(SolverTest, ATotalStressSolutionUsesTheUndrainedStrengthOnly) {
    MASTER.IDEFTO = 2;
    SOLPRP.MAT(MAT14, 1) = 30.0;  // su = 30 everywhere
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const double expected = simplifiedFactor(handSlices(kDeep), 30.0, 0.0);
    EXPECT_NEAR(MASTER.SF, expected, 0.001 * expected);
}

TEST_F(SolverTest, TheFirstSurfaceIsKeptAsTheBest) {
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.BESTSF, MASTER.SF);
    EXPECT_EQ(MASTER.KBEST, 1);
    EXPECT_EQ(MASTER.KBSAVE, 1);
    EXPECT_EQ(IBES.NUMSRF, 1);
    EXPECT_EQ(IBES.NTYP, 1);
    EXPECT_EQ(IBES.NUMSLC, MASTER.NUMSLC);
    EXPECT_EQ(BEST.SF, MASTER.SF);
    EXPECT_EQ(BEST.SCORE, MASTER.SCORE);
    EXPECT_EQ(BEST.RFACTOR, MASTER.RFACTOR);
    EXPECT_EQ(std::memcmp(BEST.SURF, &SURF, sizeof BEST.SURF), 0);
}

TEST_F(SolverTest, ALowerSafetyFactorReplacesTheBestAndAHigherOneDoesNot) {
    solve(kShallow);
    const double shallowSF = MASTER.SF;
    solve(kDeep);
    const double deepSF = MASTER.SF;
    ASSERT_NE(shallowSF, deepSF);
    const int lower = shallowSF < deepSF ? 1 : 2;
    EXPECT_EQ(IBES.NUMSRF, lower);
    EXPECT_EQ(MASTER.BESTSF, std::min(shallowSF, deepSF));
    // Once more the higher one: the best stays.
    solve(shallowSF < deepSF ? kDeep : kShallow);
    EXPECT_EQ(IBES.NUMSRF, lower);
    EXPECT_EQ(BEST.SF, std::min(shallowSF, deepSF));
    EXPECT_EQ(MASTER.NUMSRF, 3);
}

TEST_F(SolverTest, OfTwoSurfacesWithEqualSafetyFactorsTheLaterBecomesTheBest) {
    solve(kDeep);
    const double first = MASTER.SF;
    MASTER.KBEST = 2;  // printed meanwhile
    MASTER.KBSAVE = 2;
    solve(kDeep);
    ASSERT_EQ(MASTER.SF, first);
    EXPECT_EQ(IBES.NUMSRF, 2);
    EXPECT_EQ(MASTER.KBEST, 1);
    EXPECT_EQ(MASTER.KBSAVE, 1);
}

TEST_F(SolverTest, ASurfaceNotBetterLeavesTheBestStatesAlone) {
    solve(kDeep);
    MASTER.KBEST = 2;
    MASTER.KBSAVE = 2;
    MASTER.BESTSF = MASTER.SF - 0.01;
    solve(kDeep);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.KBEST, 2);
    EXPECT_EQ(MASTER.KBSAVE, 2);
    EXPECT_EQ(IBES.NUMSRF, 1);
}

TEST_F(SolverTest, ANegativeStrengthRejectsTheSurfaceWithTheLoadBuilderMarkers) {
    SOLPRP.MAT(PHIANG, 1) = -0.2;
    solve(kDeep);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, 99.9990005493164);
    EXPECT_EQ(MASTER.SCORE, 7.7769999504089355);
    EXPECT_EQ(MASTER.RFACTOR, 0.0);
    EXPECT_EQ(MASTER.KBEST, 0);
    EXPECT_EQ(IBES.NUMSRF, 0);
    EXPECT_EQ(MASTER.BESTSF, 1000000.0);
    EXPECT_EQ(console(), "");
}

TEST_F(SolverTest, ALoadBuilderErrorIsReportedAndNothingIsKept) {
    MASTER.IDEFTO = 2;  // total stress with no undrained strength anywhere
    solve(kDeep);
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(console().find(" **** SR/SOLVER : ERROR FROM SR/BUILD           1\n"), std::string::npos) << console();
    EXPECT_EQ(MASTER.KBEST, 0);
}

TEST_F(SolverTest, ASurfaceThatMissesTheSoilIsAGeometryError) {
    batchMode();
    solve({{-20, -9}, {0, -8}, {30, -6}});
    EXPECT_EQ(MASTER.IERR, 1);
    const std::string message = " **** SR/SOLVER : ERROR FROM SR/GEOMET           1\n";
    EXPECT_NE(console().find(message), std::string::npos) << console();
    EXPECT_NE(copy().find(message), std::string::npos);
    EXPECT_EQ(MASTER.NUMSRF, 1);
    EXPECT_EQ(MASTER.SF, 999.989990234375);
    EXPECT_EQ(MASTER.KBEST, 0);
}

TEST_F(SolverTest, ZeroSlicesAreForGeneralSurfacesOnly) {
    MASTER.NTYP = 2;
    MASTER.NSLREQ = 0;
    MASTER.SF = 1.3;
    solve(kDeep);
    EXPECT_EQ(console(), " ZERO SLICES ALLOWED FOR GENERAL SURFACES ONLY\n");
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, 999.989990234375);
    EXPECT_EQ(MASTER.NUMSRF, 1);
    EXPECT_EQ(MASTER.NUMSLC, 0);
    EXPECT_EQ(MASTER.KBEST, 0);
}

TEST_F(SolverTest, ARequestedNumberOfSlicesCutsAGeneralSurfaceEvenly) {
    MASTER.NSLREQ = 12;
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.NUMSLC, 12);
    EXPECT_EQ(MASTER.NSLREQ, 12);
}

TEST_F(SolverTest, ABodyThatStandsWithoutStrengthIsDroppedSilently) {
    // Under level ground the weights push as much back as forward, and the deeper entry face
    // tips the balance: no strength is needed.
    solve({{-90, -5}, {-80, 5}, {-60, 6}, {-40, 5}, {-30, -5}});
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, 999.9990234375);
    EXPECT_EQ(MASTER.SCORE, 5.5549998283386230);
    EXPECT_EQ(MASTER.KBEST, 0);
    EXPECT_EQ(IBES.NUMSRF, 0);
    EXPECT_EQ(console(), "");
}

TEST_F(SolverTest, AVeryHighSafetyFactorIsDroppedSilently) {
    SOLPRP.MAT(COHESN, 1) = 2000.0;
    solve(kDeep);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, 888.88800048828125);
    EXPECT_EQ(MASTER.KBEST, 0);
}

TEST_F(SolverTest, ASurfaceLiftedOutOfRockBlocksTheUndrainedCircleRoute) {
    batchMode();
    // Its lowest point lies 2 m in the rock at z = 50.
    solve({{-60, -40}, {-40, 10}, {10, 52}, {40, 30}, {60, 0}});
    EXPECT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.NTYP, 1);
    EXPECT_EQ(MASTER.ITSBLK, 1);
    EXPECT_NE(console().find(" **** SR/GEOMET WARNING : SHEAR-SURFACE INTERSECTS ROCK"), std::string::npos);
    // The latch stays for the rest of the run.
    solve(kDeep);
    EXPECT_EQ(MASTER.ITSBLK, 1);
}

TEST_F(SolverTest, TheForceMethodTakesTheInitialRoughness) {
    MASTER.R1 = 0.3;
    MASTER.R2 = 0.3;
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.RFACTOR, 1.0);
    for (int i = 1; i < MASTER.NUMSLC; ++i) EXPECT_EQ(SURF.R(i), SURF.R0(i)) << i;
    // Interslice shear along the surface makes it stronger than the simplified method.
    EXPECT_GT(MASTER.SF, simplifiedFactor(handSlices(kDeep), kCohesion, kTanPhi));
}

// ---------------------------------------------------------------------------------------------
// The other methods
// ---------------------------------------------------------------------------------------------

namespace {
// Enters the slope steeply through the crest: in clay the first slice hangs on its base.
const std::vector<Point> kSteepEntry = {{-6, -12}, {-4, 6}, {0, 9}, {10, 13}, {20, 13}, {30, 8}};
}  // namespace

TEST_F(SolverTest, EveryMethodGivesASolutionThatIsKept) {
    MASTER.R1 = 0.3;
    MASTER.R2 = 0.3;
    MASTER.CRTSCR = 0.1;
    for (int method = 0; method <= 3; ++method) {
        MASTER.METHOD = method;
        MASTER.BESTSF = 1000000.0;
        solve(kDeep);
        EXPECT_EQ(MASTER.IERR, 0) << method;
        EXPECT_GT(MASTER.SF, 1.5) << method;
        EXPECT_LT(MASTER.SF, 3.5) << method;
        EXPECT_EQ(IBES.NUMSRF, MASTER.NUMSRF) << method;
        EXPECT_EQ(BEST.SF, MASTER.SF) << method;
    }
}

TEST_F(SolverTest, BishopSimplifiedCarriesItsScore) {
    MASTER.METHOD = 1;
    solve(kDeep);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SCORE, 8.887999534606934);
    EXPECT_EQ(MASTER.RFACTOR, 0.0);
    EXPECT_EQ(MASTER.KBEST, 1);
}

TEST_F(SolverTest, ASliceForceSolutionAboveFiveHundredIsDiscarded) {
    // Bishop modified rejects the solution for its negative base force (SF 522.222).
    MASTER.METHOD = 2;
    MASTER.IDEFTO = 2;
    SOLPRP.MAT(MAT14, 1) = 30.0;
    MASTER.R1 = 0.3;
    MASTER.R2 = 0.3;
    solve(kSteepEntry);
    EXPECT_EQ(MASTER.IERR, 0);
    ASSERT_GT(MASTER.SF, 500.0);
    EXPECT_EQ(MASTER.KBEST, 0);
    EXPECT_EQ(IBES.NUMSRF, 0);
    EXPECT_EQ(MASTER.BESTSF, 1000000.0);
}

TEST_F(SolverTest, ASolutionRejectedByTheEquilibriumCheckStillCompetes) {
    // The roughness search ends below the zero-roughness factor: the check marks it 533.333,
    // and as the only surface so far it is kept.
    MASTER.METHOD = 0;
    MASTER.IDEFTO = 2;
    SOLPRP.MAT(MAT14, 1) = 30.0;
    MASTER.R1 = 0.3;
    MASTER.R2 = 0.3;
    MASTER.CRTSCR = 0.1;
    solve(kSteepEntry);
    EXPECT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.SF, 533.3330078125);
    EXPECT_EQ(MASTER.SCORE, 5.3330001831054688);
    EXPECT_EQ(IBES.NUMSRF, 1);
    EXPECT_EQ(BEST.SF, 533.3330078125);
    // Any real solution beats it.
    solve(kDeep);
    EXPECT_EQ(IBES.NUMSRF, 2);
}

// ---------------------------------------------------------------------------------------------
// Earth pressure: the given safety factor, the force on the wall
// ---------------------------------------------------------------------------------------------

namespace {

// Level dry backfill left of a wall at x = 0 whose foot lies 6 m deep; cohesionless.
class EarthPressureTest : public ::testing::Test, public SolverWorld {
protected:
    EarthPressureTest() {
        setGround({-100.0, 100.0}, {0.0, 0.0});
        SOLPRP.MAT(COHESN, 1) = 0.0;
        MASTER.IDTYP = 2;
        MASTER.NTYP = 4;
        MASTER.NSLREQ = 10;
        GEOMSH.XWALL = 0.0;
        GEOMSH.ZWALL = 6.0;
    }
    // A plane through the wall foot rising to the left at the given slope (dz/dx).
    static void plane(double slope) { solve({{-40.0, 6.0 - 40.0 * slope}, {10.0, 6.0 + 10.0 * slope}}); }

    // The wall force of the wedge at the safety factor F: the plane slices carry the weight of
    // the wedge over the plane; with no interslice shear each adds W (sin - cos t)/(cos + sin t),
    // t = tan phi / F, to the horizontal force. The slices stop 0.001 of a width short of the
    // entry and of the wall.
    static double wedgeForce(double slope, double F) {
        const double entry = -(6.0 - kCrackDepth) / slope;
        const double width = (0.0 - entry) / 10.0;
        const double left = entry + 0.001f * width;
        const double right = 0.0 - 0.001f * width;
        auto depth = [&](double x) { return 6.0 + slope * x; };
        const double weight = kUnitWeight * 0.5 * (depth(left) + depth(right)) * (right - left);
        const double sinA = slope / std::sqrt(1.0 + slope * slope), cosA = 1.0 / std::sqrt(1.0 + slope * slope);
        const double t = kTanPhi / F;
        return weight * (sinA - cosA * t) / (cosA + sinA * t);
    }
};

}  // namespace

TEST_F(EarthPressureTest, TheWallForceIsTheWedgeForceByHand) {
    MASTER.SF = 1.0;
    plane(1.0);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const double expected = wedgeForce(1.0, 1.0);
    EXPECT_NEAR(SURF.E2(MASTER.NUMSLC), expected, 1e-6 * std::fabs(expected));
    EXPECT_EQ(MASTER.SF, 1.0);  // given, not solved
}

TEST_F(EarthPressureTest, ActivePressureKeepsTheLargestForce) {
    MASTER.SF = 1.0;
    plane(1.0);
    const double steep = SURF.E2(MASTER.NUMSLC);
    plane(0.5);
    const double flat = SURF.E2(MASTER.NUMSLC);
    plane(2.0);
    const double steeper = SURF.E2(MASTER.NUMSLC);
    const double largest = std::max({steep, flat, steeper});
    EXPECT_EQ(MASTER.BESTE2, largest);
    EXPECT_EQ(IBES.NUMSRF, largest == steep ? 1 : largest == flat ? 2 : 3);
    EXPECT_EQ(MASTER.KBEST, 1);
}

TEST_F(EarthPressureTest, PassivePressureKeepsTheSmallestForce) {
    MASTER.SF = -1.0;
    MASTER.BESTE2 = 1000000.0;  // as the central loop makes it for a negative safety factor
    plane(0.5);
    const double first = SURF.E2(MASTER.NUMSLC);
    EXPECT_NEAR(first, wedgeForce(0.5, -1.0), 1e-6 * std::fabs(first));
    plane(0.3);
    const double second = SURF.E2(MASTER.NUMSLC);
    plane(1.0);
    const double third = SURF.E2(MASTER.NUMSLC);
    const double smallest = std::min({first, second, third});
    EXPECT_EQ(MASTER.BESTE2, smallest);
    EXPECT_EQ(IBES.NUMSRF, smallest == first ? 1 : smallest == second ? 2 : 3);
    EXPECT_EQ(BEST.SF, -1.0);
}

TEST_F(EarthPressureTest, AnEarthPressurePlaneRecordsWhereItMeetsTheGround) {
    MASTER.SF = 1.0;
    SURF.SPAR(2) = -123.0;
    plane(1.0);
    EXPECT_EQ(SURF.SPAR(2), SURF.XX(1, 1));
    EXPECT_NEAR(SURF.SPAR(2), -5.5 + 0.001f * 0.55, 1e-9);
}

TEST_F(EarthPressureTest, OtherSurfaceTypesKeepTheirParameters) {
    MASTER.SF = 1.0;
    MASTER.NTYP = 1;
    solve({{-40.0, -34.0}, {10.0, 16.0}});
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(SURF.SPAR(2), -34.0);  // the start z that the polyline routine stored
}

TEST_F(EarthPressureTest, ASkippedSurfaceKeepsTheGivenSafetyFactor) {
    MASTER.SF = -1.5;
    SOLPRP.MAT(PHIANG, 1) = -0.2;
    plane(1.0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, -1.5);
    EXPECT_EQ(MASTER.SCORE, 7.7769999504089355);
    EXPECT_EQ(MASTER.RFACTOR, 0.0);
    EXPECT_EQ(MASTER.KBEST, 0);
}

TEST_F(EarthPressureTest, AFailedEquilibriumCheckIsReportedAndNothingIsKept) {
    // A force tolerance far below the rounding of the slice forces fails the check.
    MASTER.E2TOL = 1.0E-19;
    MASTER.SF = 1.0;
    plane(1.0);
    EXPECT_GT(MASTER.IERR, 0);
    EXPECT_NE(console().find(" **** SR/SOLVER : ERROR FROM SR/CHKEQL" + io::fmtI(MASTER.IERR, 12) + "\n"),
              std::string::npos)
        << console();
    EXPECT_EQ(MASTER.KBEST, 0);
    EXPECT_EQ(MASTER.BESTE2, -1000000.0);
}

TEST_F(EarthPressureTest, AFailedSurfaceKeepsTheGivenSafetyFactor) {
    batchMode();
    MASTER.SF = 0.8;
    GEOMSH.XWALL = -200.0;  // the wall lies left of the soil
    plane(1.0);
    EXPECT_NE(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, 0.8);
}

// ---------------------------------------------------------------------------------------------
// The total-stress-circle route
// ---------------------------------------------------------------------------------------------

namespace {

// A toe circle of the slope of SolverWorld, centre (10, -5), through (20, 10), 20 slices.
void solveToeCircle() {
    MASTER.NTYP = 2;
    MASTER.NSLREQ = 20;
    int points = 61;
    CIRSRF(points, 10.0, -5.0, std::sqrt(325.0), SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
    SOLVER(points);
}

}  // namespace

TEST_F(SolverTest, ATotalStressCircleUnderTheNineteenEightyEightMethodIsSolvedByItsMoments) {
    MASTER.IDEFTO = 2;
    MASTER.METHOD = 0;
    SOLPRP.MAT(MAT14, 1) = 30.0;
    solveToeCircle();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(9.999f));
    EXPECT_EQ(MASTER.RFACTOR, 1.0);
    EXPECT_EQ(MASTER.ICIRCM, 1);
    EXPECT_NEAR(MASTER.SF, SURF.SPAR(4) / -SURF.SPAR(5), 1e-12);
    EXPECT_EQ(IBES.NUMSRF, 1);  // a candidate for the best surface like any other
    EXPECT_EQ(console(), "");   // the note is for effective stress analyses only
}

TEST_F(SolverTest, ATotalStressCircleUnderAnotherMethodGoesThroughTheSolution) {
    MASTER.IDEFTO = 2;
    MASTER.METHOD = 1;
    SOLPRP.MAT(MAT14, 1) = 30.0;
    solveToeCircle();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NE(MASTER.SCORE, static_cast<double>(9.999f));
    EXPECT_EQ(MASTER.ICIRCM, 0);
}

TEST_F(SolverTest, AfterASurfaceLiftedOutOfRockTotalStressCirclesAreSolvedTheOrdinaryWay) {
    MASTER.IDEFTO = 2;
    MASTER.METHOD = 0;
    MASTER.R1 = MASTER.R2 = MASTER.R3 = 0.3;
    SOLPRP.MAT(MAT14, 1) = 30.0;
    MASTER.ITSBLK = 1;
    solveToeCircle();
    EXPECT_NE(MASTER.SCORE, static_cast<double>(9.999f));
    EXPECT_EQ(MASTER.ICIRCM, 0);
}

TEST_F(SolverTest, AnEffectiveStressCircleThroughClayOnlyIsSolvedByItsMomentsWithANoteOnce) {
    batchMode();
    MASTER.METHOD = 0;
    SOLPRP.MAT(PHIANG, 1) = 0.0;
    solveToeCircle();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(9.999f));
    const std::string note = " Total stress analysis used for circles that cut through clay only\n";
    EXPECT_EQ(console(), note);
    EXPECT_EQ(copy(), note);
    solveToeCircle();
    EXPECT_EQ(occurrences(console(), note), 1);
    // With friction on the bases the circle is solved the ordinary way.
    SOLPRP.MAT(PHIANG, 1) = 0.5;
    MASTER.R1 = MASTER.R2 = MASTER.R3 = 0.3;
    solveToeCircle();
    EXPECT_NE(MASTER.SCORE, static_cast<double>(9.999f));
}
