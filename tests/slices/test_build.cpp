// BUILD: slice strengths, water forces, loads, end shear, initial values and the checks of
// a whole slice set, with values worked out by hand from the materials and the geometry.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "io/channels.h"
#include "records.h"
#include "slices/slices.h"
#include "slice_world.h"

using kalmo_test::occurrences;
using kalmo_test::Polygon;
using kalmo_test::setSlice;
using kalmo_test::SliceWorld;

namespace {

constexpr double kFifth = 0.2f;  // the five-point base mean is a sum times this factor

class Build : public ::testing::Test {
protected:
    void SetUp() override {
        SOLPRP.MAT(MAT14, 1) = 40.0;  // undrained strength of material 1
    }

    // Slices under the ground z = 0 (or the given top depths) with borders xb and base
    // depths zb at the borders.
    static void surface(const std::vector<double>& xb, const std::vector<double>& zb,
                        std::vector<double> zt = {}) {
        if (zt.empty()) zt.assign(xb.size(), 0.0);
        int n = static_cast<int>(xb.size()) - 1;
        MASTER.NUMSLC = n;
        for (int I = 1; I <= n; ++I) {
            setSlice(I, xb[I - 1], xb[I], zt[I - 1], zt[I], zb[I], zb[I - 1]);
        }
    }

    int build() {
        int IREJ = -1;
        BUILD(IREJ);
        return IREJ;
    }

    SliceWorld world;
};

}  // namespace

TEST_F(Build, BaseTermsFollowTheBaseFromCornerFourToCornerThree) {
    surface({0.0, 4.0, 7.0}, {2.0, 5.0, 1.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.SINB(1), 0.6, 1e-15);
    EXPECT_NEAR(SURF.COSB(1), 0.8, 1e-15);
    EXPECT_NEAR(SURF.TANB(1), 0.75, 1e-15);
    EXPECT_NEAR(SURF.L34(1), 5.0, 1e-14);
    EXPECT_NEAR(SURF.BETA(1), std::asin(0.6), 1e-15);
    EXPECT_NEAR(SURF.SINB(2), -0.8, 1e-15);
    EXPECT_NEAR(SURF.COSB(2), 0.6, 1e-15);
    EXPECT_NEAR(SURF.L34(2), 5.0, 1e-14);
    EXPECT_NEAR(SURF.BETA(2), -std::asin(0.8), 1e-15);
}

TEST_F(Build, EffectiveStressStrengthsCarryTheStrengthFactors) {
    MASTER.FCTSUC = 0.8;
    MASTER.FCTTAN = 0.9;
    SURF.C1(1) = SURF.TAN1(1) = SURF.H1(1) = SURF.U1(1) = 3.0;  // left from an earlier surface
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    for (int I = 1; I <= 2; ++I) {
        EXPECT_NEAR(SURF.C3(I), 5.0 * (10.0 * 0.8) * kFifth, 1e-12);
        EXPECT_NEAR(SURF.TAN3(I), 5.0 * (0.5 * 0.9) * kFifth, 1e-12);
        EXPECT_NEAR(SURF.C2(I), 8.0, 1e-12);
        EXPECT_NEAR(SURF.TAN2(I), 0.45, 1e-12);
        EXPECT_EQ(SURF.DPAR(I), 0.0);
        EXPECT_EQ(SURF.SU2(I), 0.0);
        EXPECT_EQ(SURF.SU3(I), 0.0);
    }
    EXPECT_EQ(SURF.C1(1), 0.0);
    EXPECT_EQ(SURF.TAN1(1), 0.0);
    EXPECT_EQ(SURF.H1(1), 0.0);
    EXPECT_EQ(SURF.U1(1), 0.0);
    EXPECT_EQ(SURF.C1(2), SURF.C2(1));
    EXPECT_EQ(SURF.TAN1(2), SURF.TAN2(1));
    EXPECT_NEAR(SURF.H1(2), 3.0 / 2.0, 1e-15);  // half the height of the face they share
}

TEST_F(Build, NegativeCohesionRefersToTheStrengthProfileInPercent) {
    // One profile with 10 per unit depth; a cohesion of -50 means 50 % of it.
    SOLPRP.MAT(COHESN, 1) = -50.0;
    ISOLPR.NSUX = 1;
    SOLPRP.XSU(1) = 0.0;
    ISOLPR.NSUPT(1) = 2;
    SOLPRP.ZSU(1, 1) = 0.0;
    SOLPRP.ZSU(2, 1) = 20.0;
    SOLPRP.SUPRF(1, 1) = 0.0;
    SOLPRP.SUPRF(2, 1) = 200.0;
    SOLPRP.MAT(MAT14, 1) = 40.0;
    surface({0.0, 2.0}, {2.0, 6.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    // Five points along a straight base average to its mid depth 4: 5 z = 20.
    EXPECT_NEAR(SURF.C3(1), 20.0, 1e-6);
    // Face 2 from 0 to 6: (0 + 2 * 15 + 30) / 4.
    EXPECT_NEAR(SURF.C2(1), 15.0, 1e-6);
}

TEST_F(Build, MaterialWithoutCohesionAndFrictionIsUndrainedInAnEffectiveStressAnalysis) {
    SOLPRP.MAT(COHESN, 1) = 0.0;
    SOLPRP.MAT(PHIANG, 1) = 0.0;
    MASTER.FCTSUC = 0.5;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.C3(1), 5.0 * 40.0 * 0.5 * kFifth, 1e-12);
    EXPECT_EQ(SURF.TAN3(1), 0.0);
    EXPECT_NEAR(SURF.C2(1), 40.0 * 0.5, 1e-12);
    EXPECT_EQ(SURF.TAN2(1), 0.0);
}

TEST_F(Build, MaterialWithoutCohesionAndFrictionStopsACombinedAnalysis) {
    SOLPRP.MAT(COHESN, 1) = 0.0;
    SOLPRP.MAT(PHIANG, 1) = 0.0;
    MASTER.IDEFTO = 3;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    EXPECT_EQ(build(), 0);
    EXPECT_EQ(MASTER.IERR, 1);
    std::string text = world.console();
    EXPECT_NE(text.find(" **** SR/BUILD : BOTH C AND PHI ARE ZERO, MATERIAL ="), std::string::npos);
    EXPECT_NE(text.find("           1, THIS IS NOT ALLOWED FOR A COMBINED ANALYSIS"), std::string::npos);
    EXPECT_EQ(io::contents(9), text);  // every message also on the log-copy channel
}

TEST_F(Build, NegativeStrengthRejectsTheSurfaceSilently) {
    SOLPRP.MAT(PHIANG, 1) = -0.1;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    EXPECT_EQ(build(), 1);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(world.console(), "");
}

TEST_F(Build, NegativeUndrainedStrengthRejectsTheSurfaceSilently) {
    SOLPRP.MAT(COHESN, 1) = 0.0;
    SOLPRP.MAT(PHIANG, 1) = 0.0;
    SOLPRP.MAT(MAT14, 1) = -40.0;  // the sign flag of the undrained strength
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    EXPECT_EQ(build(), 1);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(world.console(), "");
}

TEST_F(Build, TotalStressUsesTheUndrainedStrengthAndNoPorePressure) {
    MASTER.IDEFTO = 2;
    MASTER.FCTSUC = 0.5;
    WATER1.ZWATER = 0.5;  // water would wet every base in an effective stress analysis
    SURF.DPAR(1) = 9.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    for (int I = 1; I <= 2; ++I) {
        EXPECT_NEAR(SURF.SU3(I), kFifth * 5.0 * 40.0 * 0.5, 1e-12);
        EXPECT_NEAR(SURF.SU2(I), 20.0, 1e-12);
        EXPECT_EQ(SURF.C3(I), SURF.SU3(I));
        EXPECT_EQ(SURF.C2(I), SURF.SU2(I));
        EXPECT_EQ(SURF.TAN3(I), 0.0);
        EXPECT_EQ(SURF.TAN2(I), 0.0);
        EXPECT_EQ(SURF.U2(I), 0.0);
        EXPECT_EQ(SURF.U3(I), 0.0);
        EXPECT_EQ(SURF.P(I), 0.0);
        EXPECT_EQ(SURF.E2(I), 0.0);
        EXPECT_EQ(SURF.DPAR(I), 0.0);
        EXPECT_NEAR(SURF.WZ(I), 20.0 * SURF.AREA(I), 1e-9);
    }
}

TEST_F(Build, TotalStressAcceptsSlicesWithoutWeightWithoutAWarning) {
    MASTER.IDEFTO = 2;
    LOAD.LDAT(2) = 0.0;  // no vertical load factor: every slice weighs nothing
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(SURF.WZ(1), 0.0);
    EXPECT_EQ(world.console(), "");
}

TEST_F(Build, ZeroUndrainedStrengthStopsATotalStressAnalysis) {
    MASTER.IDEFTO = 2;
    SOLPRP.MAT(MAT14, 1) = 0.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(world.console().find(" **** SR/BUILD : ZERO SU FOR FACE 2 OR 3, SLICE =           1 THIS IS NOT ALLOWED "
                                   "FOR A TOTAL STRESS ANALYSIS"),
              std::string::npos);
}

TEST_F(Build, ZeroUndrainedStrengthStopsACombinedAnalysis) {
    MASTER.IDEFTO = 3;
    SOLPRP.MAT(MAT14, 1) = 0.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(world.console().find(" **** SR/BUILD : ZERO SU FOR FACE 2 OR 3, SLICE =           1, THIS IS NOT "
                                   "ALLOWED FOR A COMBINED ANALYSIS"),
              std::string::npos);
}

TEST_F(Build, CombinedAnalysisKeepsBothStrengthsAndLimitsTheEndShearByTheUndrainedOne) {
    MASTER.IDEFTO = 3;
    MASTER.FCTSS = 1.0;
    SOLPRP.MAT(MAT14, 1) = 2.0;
    surface({0.0, 2.0}, {4.0, 4.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.C3(1), 10.0, 1e-6);
    EXPECT_NEAR(SURF.TAN3(1), 0.5, 1e-7);
    EXPECT_NEAR(SURF.SU3(1), 2.0, 1e-7);
    EXPECT_NEAR(SURF.SU2(1), 2.0, 1e-12);
    EXPECT_NEAR(SURF.SS(1), 2.0 * 8.0, 1e-12);  // |SU2| times the slice area
}

TEST_F(Build, EndFaceShearIsCohesionPlusFrictionUnderTheMeanLateralStress) {
    MASTER.FCTSS = 1.0;
    surface({0.0, 2.0}, {4.0, 4.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    // Slice 2 wide and 4 high, weight 160: the vertical stress grows to 80 at the base, its
    // mean over the height is 40 and the lateral stress 0.67 of that, on an area of 8 with
    // tan phi 0.5; the cohesion 10 acts on the same area.
    double lateral = 0.67f * 40.0;
    EXPECT_NEAR(SURF.SS(1), 10.0 * 8.0 + 0.5 * lateral * 8.0, 1e-9);
    EXPECT_NEAR(SURF.HS(1), 4.0 / 3.0, 1e-15);
}

TEST_F(Build, NoEndFaceShearWithoutItsFactor) {
    SURF.SS(1) = SURF.HS(1) = 5.0;
    MASTER.FCTSS = 0.9e-6;
    surface({0.0, 2.0}, {4.0, 4.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(SURF.SS(1), 0.0);
    EXPECT_EQ(SURF.HS(1), 0.0);
}

TEST_F(Build, ZeroBaseForcePositionsComeFromTheLoadCentroid) {
    surface({0.0, 2.0, 4.0, 6.0}, {1.0, 3.0, 3.5, 2.0});
    ASSERT_EQ(build(), 0);
    for (int I = 1; I <= 3; ++I) {
        double ratio = (SURF.XX(3, I) - SURF.XX(5, I)) / 2.0;
        EXPECT_NEAR(SURF.H30(I), ratio * SURF.L34(I), 1e-12) << I;
    }
}

TEST_F(Build, GivenBaseForcePositionsAreInterpolatedAcrossTheSurface) {
    MASTER.H3(1) = 0.3;
    MASTER.H3(2) = 0.6;
    surface({0.0, 2.0, 4.0, 6.0}, {1.0, 3.0, 3.5, 2.0});
    ASSERT_EQ(build(), 0);
    for (int I = 1; I <= 3; ++I) {
        double xi = (2.0 * I) / 6.0;  // relative x of the right side
        EXPECT_NEAR(SURF.H30(I), SURF.L34(I) * (0.3 + 0.3 * xi), 1e-12) << I;
    }
}

TEST_F(Build, InitialRoughnessRunsFromR1ToR2AndTheExitFaceHasNone) {
    MASTER.R1 = 0.2;
    MASTER.R2 = 0.6;
    surface({0.0, 2.0, 4.0, 6.0}, {1.0, 3.0, 3.5, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_NEAR(SURF.R0(1), 0.2 + 0.4 / 3.0, 1e-15);
    EXPECT_NEAR(SURF.R0(2), 0.2 + 0.8 / 3.0, 1e-15);
    EXPECT_EQ(SURF.R0(3), 0.0);
}

TEST_F(Build, RoughnessGrowsWithTheFaceHeight) {
    MASTER.R1 = 0.2;
    MASTER.R2 = 0.2;
    MASTER.R3 = 0.5;
    surface({0.0, 2.0, 4.0, 6.0}, {1.0, 3.0, 6.0, 2.0});
    ASSERT_EQ(build(), 0);
    // Face heights 3 and 6 of slices 1 and 2; the highest of them is 6.
    EXPECT_NEAR(SURF.R0(1), 0.2 + 3.0 / 6.0 * 0.5, 1e-15);
    EXPECT_NEAR(SURF.R0(2), 0.2 + 0.5, 1e-15);
    EXPECT_EQ(SURF.R0(3), 0.0);
}

TEST_F(Build, RoughnessByFaceHeightWithASingleSliceLeavesItsExitFaceSmooth) {
    MASTER.R1 = 0.3;
    MASTER.R2 = 0.7;
    MASTER.R3 = 0.5;
    surface({0.0, 2.0}, {1.0, 3.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(SURF.R0(1), 0.0);
}

TEST_F(Build, EarthPressureRoughnessEndsAtTheWallRoughness) {
    MASTER.IDTYP = 2;
    MASTER.R1 = 0.2;
    MASTER.R2 = 0.6;
    MASTER.R3 = 0.5;
    GEOMSH.RWALL = 0.8;
    surface({0.0, 2.0, 4.0, 6.0}, {1.0, 3.0, 3.5, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_NEAR(SURF.R0(1), 0.2 + 0.6 / 3.0, 1e-15);
    EXPECT_NEAR(SURF.R0(3), 0.8, 1e-15);
}

TEST_F(Build, ForceToleranceDefaultsToATenThousandthOfTheTotalLoad) {
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    double total = 20.0 * (SURF.AREA(1) + SURF.AREA(2));
    EXPECT_NEAR(MASTER.E2TOL, total * 1.0E-4f, 1e-12);
    MASTER.E2TOL = 5.0;
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(MASTER.E2TOL, 5.0);
}

TEST_F(Build, WaterForcesPassFromFaceTwoToTheNextSlice) {
    WATER1.ZWATER = 1.0;
    surface({0.0, 2.0, 4.0}, {2.0, 4.0, 3.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    // Face 2 of slice 1 from z = 0 to 4, wet below z = 1: 0.5 * 30 * 3 at a third of 3.
    EXPECT_NEAR(SURF.U2(1), 45.0, 1e-12);
    EXPECT_EQ(SURF.U1(2), SURF.U2(1));
    EXPECT_NEAR(SURF.E1(2), 1.0, 1e-12);
    // Slice 2 takes U1 in +x and gives U2 in -x.
    double sinb = SURF.SINB(2);
    EXPECT_NEAR(SURF.WX(2), SURF.U1(2) - SURF.U2(2) + sinb * SURF.U3(2), 1e-9);
}

TEST_F(Build, MaterialWithABFactorMarksADilatantBase) {
    SOLPRP.MAT(BFCT, 1) = 0.5;
    SOLPRP.MAT(DSUB, 1) = 0.2;
    surface({0.0, 2.0}, {1.0, 3.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.IUPDAT, 1);
    EXPECT_NEAR(SURF.DPAR(1), 40.0 * 0.2, 1e-12);
}

TEST_F(Build, DilatantBaseWithoutFrictionIsAnError) {
    SOLPRP.MAT(BFCT, 1) = 0.5;
    SOLPRP.MAT(PHIANG, 1) = 0.0;
    surface({0.0, 2.0}, {1.0, 3.0});
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(world.console().find(" **** SR/BUILD : NS,MAT,PWPB,TANPHI="), std::string::npos);
}

TEST_F(Build, LoaderFailureEndsTheBuild) {
    ISOLPR.NMAT = 2;
    IGEOMS.NLAYER = 1;
    GEOMSH.ZLAYER(1) = 10.0;
    IGEOMS.LAYMAT(1) = 1;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    SURF.AREA(2) += 0.5;
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    std::string text = world.console();
    EXPECT_NE(text.find(" ***** SR/LOADER PROBLEM : SLICE AREA"), std::string::npos);
    EXPECT_NE(text.find(" **** SR/BUILD : ERROR FROM SR/LOADER  NS,IERR=           2         202"), std::string::npos);
}

TEST_F(Build, PorePressureFailureEndsTheBuild) {
    IWATER.IDPWP = 2;
    WATER1.ZWATER = 0.0;
    MASTER.NTYP = 1;
    MASTER.NSLREQ = 2;
    IGENER.IGEN = 1;
    IGENER.NPGEN(1) = 3;
    GENERL.XGEN(1, 1) = -1.0;
    GENERL.XGEN(2, 1) = -1.0;
    GENERL.XGEN(3, 1) = 9.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(world.console().find(" **** SR/BUILD : ERROR FROM SR/PWP  NS,IERR=           1         102"),
              std::string::npos);
}

TEST_F(Build, PointOutsideTheMeshEndsTheBuildWithTheLocateMessage) {
    surface({95.0, 99.0, 104.0}, {1.0, 3.0, 2.0});
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(world.console().find(" **** SR/BUILD : ERROR FROM SR/LOCATE  NS,XX,ZZ,IERR="), std::string::npos);
}

TEST_F(Build, NegativeWeightIsAcceptedWithoutAskingInBatchMode) {
    io::openNew(6, world.dir.path("STDOUT.TXT"));
    POSTGRAF.NFCOPY = 6;
    LOAD.LDAT(2) = 0.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(MASTER.IERR, 0);
    std::string text = world.console();
    EXPECT_EQ(occurrences(text, " **** SR/BUILD : NEGATIVE WEIGHT  N,WZ,U3="), 2);
    EXPECT_EQ(occurrences(text, "SHALL ABOVE WARNING(S) BE NEGLECTED"), 0);
}

TEST_F(Build, NegativeWeightQuestionIsAskedOnceWhenAnsweredYes) {
    world.dir.write("SVAR.TMP", "Y\n");
    io::openOld(8, world.dir.path("SVAR.TMP"));
    LOAD.LDAT(2) = 0.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(occurrences(world.console(), "SHALL ABOVE WARNING(S) BE NEGLECTED (Y/N) ......"), 1);
    EXPECT_EQ(occurrences(io::contents(9), "SHALL ABOVE WARNING(S) BE NEGLECTED (Y/N) ......"), 1);
    // Later surfaces: the warnings are written, the question is not asked again.
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(occurrences(world.console(), " **** SR/BUILD : NEGATIVE WEIGHT  N,WZ,U3="), 4);
    EXPECT_EQ(occurrences(world.console(), "SHALL ABOVE WARNING(S) BE NEGLECTED"), 1);
}

// The answer is remembered for one run only: a new run in the same process (startRun, as the
// program, the fuzzing target and the fixtures begin one) asks again.
TEST_F(Build, ANewRunAsksTheNegativeWeightQuestionAgain) {
    world.dir.write("SVAR.TMP", "Y\n");
    io::openOld(8, world.dir.path("SVAR.TMP"));
    LOAD.LDAT(2) = 0.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(occurrences(world.console(), "SHALL ABOVE WARNING(S) BE NEGLECTED"), 1);

    kalmo_test::SliceWorld nextRun;
    SOLPRP.MAT(MAT14, 1) = 40.0;
    nextRun.dir.write("SVAR.TMP", "Y\n");
    io::openOld(8, nextRun.dir.path("SVAR.TMP"));
    LOAD.LDAT(2) = 0.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(occurrences(nextRun.console(), "SHALL ABOVE WARNING(S) BE NEGLECTED"), 1);
}

TEST_F(Build, NegativeWeightAnsweredNoStopsTheSurfaceAndIsAskedAgain) {
    world.dir.write("SVAR.TMP", "N\nN\n");
    io::openOld(8, world.dir.path("SVAR.TMP"));
    LOAD.LDAT(2) = 0.0;
    surface({0.0, 2.0}, {1.0, 3.0});
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    build();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(occurrences(world.console(), "SHALL ABOVE WARNING(S) BE NEGLECTED"), 2);
}

TEST_F(Build, TracePrintListsTwoLinesPerSliceOnTheLog) {
    MASTER.JPRINT = 3;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    std::string text = world.log();
    EXPECT_NE(text.find(" SR/BUILD : SLICE DATA PRINT\n"), std::string::npos);
    EXPECT_NE(text.find(" SLC  X(1)    X(2)     SINB    U1        U2        U3        TAN1   TAN2   TAN3     R0    DPAR\n"),
              std::string::npos);
    EXPECT_NE(text.find(" SLC  Z(2)    Z(3)    COSB    WX        WZ        WM          C1     C2     C3     H30\n"),
              std::string::npos);
    EXPECT_NE(text.find("\n   1    0.00    2.00  0.7071"), std::string::npos);
    EXPECT_NE(text.find("\n   2    2.00    4.00 -0.4472"), std::string::npos);
    EXPECT_NE(text.find("\n   2    0.00    2.00  0.8944"), std::string::npos);
    EXPECT_EQ(io::contents(9), text);
    EXPECT_EQ(world.console(), "");
}

TEST_F(Build, NoTracePrintBelowLevelThree) {
    MASTER.JPRINT = 2;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    EXPECT_EQ(world.log(), "");
}

TEST_F(Build, AllSlicesTogetherWeighTheAreaTheSurfaceCutsTimesTheUnitWeight) {
    std::vector<double> xb = {0.0, 1.5, 3.0, 4.0, 6.0, 7.5, 9.0, 10.0};
    std::vector<double> zb = {0.3, 2.0, 3.1, 3.6, 3.4, 2.2, 1.0, 0.1};
    surface(xb, zb);
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    Polygon cut;
    for (size_t k = 0; k < xb.size(); ++k) {
        cut.x.push_back(xb[k]);
        cut.z.push_back(0.0);
    }
    for (size_t k = xb.size(); k-- > 0;) {
        cut.x.push_back(xb[k]);
        cut.z.push_back(zb[k]);
    }
    double total = 0.0;
    for (int I = 1; I <= MASTER.NUMSLC; ++I) total += SURF.WZ(I);
    EXPECT_NEAR(total, 20.0 * cut.area(), 1e-9);
}

namespace {

// Every slice field the load build owns, for slices 1..n.
std::vector<double> ownedFields(int n) {
    std::vector<double> values;
    for (int I = 1; I <= n; ++I) {
        for (double v : {SURF.SINB(I), SURF.COSB(I), SURF.TANB(I), SURF.L34(I), SURF.BETA(I), SURF.C3(I), SURF.TAN3(I),
                         SURF.DPAR(I), SURF.C2(I), SURF.TAN2(I), SURF.SU3(I), SURF.SU2(I), SURF.SS(I), SURF.HS(I),
                         SURF.H20(I), SURF.H30(I), SURF.R0(I), SURF.H1(I), SURF.E1(I), SURF.C1(I), SURF.TAN1(I),
                         SURF.U1(I), SURF.U2(I), SURF.U3(I), SURF.P(I), SURF.E2(I), SURF.WX(I), SURF.WZ(I), SURF.WM(I),
                         SURF.AREAU(I), SURF.WZEXT(I)}) {
            values.push_back(v);
        }
    }
    return values;
}

void problem(int idefto) {
    MASTER.IDEFTO = idefto;
    MASTER.FCTSS = 0.5;
    MASTER.R1 = 0.1;
    MASTER.R2 = 0.4;
    MASTER.R3 = 0.2;
    MASTER.E2TOL = 1.0;
    SOLPRP.MAT(MAT14, 1) = 150.0;
    // Below z = 4 an undrained clay (in the combined analysis a soil whose undrained strength
    // below 100 marks it undrained); a material triangle far away makes the weights come from
    // the grid of cells, which measures the undrained area too.
    ISOLPR.NMAT = 3;
    IGEOMS.NLAYER = 2;
    GEOMSH.ZLAYER(1) = 4.0;
    GEOMSH.ZLAYER(2) = 45.0;
    IGEOMS.LAYMAT(1) = 1;
    IGEOMS.LAYMAT(2) = 2;
    IGEOMS.NTRI = 1;
    IGEOMS.ITRMAT(1) = 3;
    GEOMSH.XTRI(1, 1) = 90.0; GEOMSH.ZTRI(1, 1) = 1.0;
    GEOMSH.XTRI(2, 1) = 95.0; GEOMSH.ZTRI(2, 1) = 3.0;
    GEOMSH.XTRI(3, 1) = 99.0; GEOMSH.ZTRI(3, 1) = 1.0;
    for (int m = 2; m <= 3; ++m) {
        SliceWorld::isotropic(m);
        SOLPRP.MAT(GAMTOT, m) = 19.0;
        SOLPRP.MAT(MAT14, m) = 50.0;
        SOLPRP.MAT(COHESN, m) = idefto == 3 ? 5.0 : 0.0;
        SOLPRP.MAT(PHIANG, m) = idefto == 3 ? 0.3 : 0.0;
    }
    WATER1.ZWATER = 2.0;
    ILOA.NPF = 1;
    LOAD.LDAT(4) = 1.0;
    LOAD.XZPF(1, 1) = 3.0;
    LOAD.XZPF(2, 1) = 0.0;
    LOAD.FPF(2, 1) = 50.0;
}

void firstSlices() {
    std::vector<double> xb = {0.0, 1.0, 2.5, 4.0, 5.0, 6.5, 8.0};
    std::vector<double> zb = {0.5, 3.0, 5.0, 6.0, 5.5, 3.0, 0.2};
    MASTER.NUMSLC = 6;
    for (int I = 1; I <= 6; ++I) setSlice(I, xb[I - 1], xb[I], 0.0, 0.0, zb[I], zb[I - 1]);
}

void secondSlices() {
    std::vector<double> xb = {10.0, 11.0, 12.0, 13.5};
    std::vector<double> zb = {0.1, 1.8, 1.5, 0.1};
    MASTER.NUMSLC = 3;
    for (int I = 1; I <= 3; ++I) setSlice(I, xb[I - 1], xb[I], 0.0, 0.0, zb[I], zb[I - 1]);
}

}  // namespace

TEST(BuildTwice, SecondSliceSetAfterAFirstEqualsAFreshBuildOfItAlone) {
    for (int idefto = 1; idefto <= 3; ++idefto) {
        std::vector<double> afterFirst;
        {
            SliceWorld world;
            problem(idefto);
            firstSlices();
            int IREJ = 0;
            BUILD(IREJ);
            ASSERT_EQ(MASTER.IERR, 0) << idefto;
            if (idefto != 2) {
                ASSERT_GT(SURF.U3(3), 0.0);  // the first set was wet
            }
            ASSERT_GT(SURF.AREAU(3), 0.0);  // and reached the clay
            secondSlices();
            BUILD(IREJ);
            ASSERT_EQ(MASTER.IERR, 0) << idefto;
            afterFirst = ownedFields(3);
        }
        std::vector<double> alone;
        {
            SliceWorld world;
            problem(idefto);
            secondSlices();
            int IREJ = 0;
            BUILD(IREJ);
            ASSERT_EQ(MASTER.IERR, 0) << idefto;
            alone = ownedFields(3);
        }
        ASSERT_EQ(afterFirst.size(), alone.size());
        for (size_t k = 0; k < alone.size(); ++k) EXPECT_EQ(afterFirst[k], alone[k]) << idefto << " field " << k;
    }
}

// A slice of one plain material takes its strengths without looking at its eight points one by
// one; the sums must be those of the points all the same, to the last digit. The same section
// is built once with its slices cut by a layer boundary between two layers of that material
// (every point looked up by itself) and once with a single layer.
TEST_F(Build, AOneMaterialSliceHasTheStrengthsOfItsPointsLookedUpOneByOne) {
    MASTER.FCTSUC = 0.83;
    MASTER.FCTTAN = 0.91;
    SOLPRP.MAT(COHESN, 1) = 10.3;
    SOLPRP.MAT(PHIANG, 1) = 0.437;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    IGEOMS.NLAYER = 2;
    GEOMSH.ZLAYER(1) = 1.5;  // through both slices
    GEOMSH.ZLAYER(2) = 100.0;
    IGEOMS.LAYMAT(1) = 1;
    IGEOMS.LAYMAT(2) = 1;
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    double byPoints[2][4];
    for (int I = 1; I <= 2; ++I) {
        byPoints[I - 1][0] = SURF.C3(I);
        byPoints[I - 1][1] = SURF.TAN3(I);
        byPoints[I - 1][2] = SURF.C2(I);
        byPoints[I - 1][3] = SURF.TAN2(I);
    }
    IGEOMS.NLAYER = 1;
    GEOMSH.ZLAYER(1) = 100.0;
    surface({0.0, 2.0, 4.0}, {1.0, 3.0, 2.0});
    ASSERT_EQ(build(), 0);
    ASSERT_EQ(MASTER.IERR, 0);
    for (int I = 1; I <= 2; ++I) {
        EXPECT_EQ(SURF.C3(I), byPoints[I - 1][0]) << I;
        EXPECT_EQ(SURF.TAN3(I), byPoints[I - 1][1]) << I;
        EXPECT_EQ(SURF.C2(I), byPoints[I - 1][2]) << I;
        EXPECT_EQ(SURF.TAN2(I), byPoints[I - 1][3]) << I;
        // And the values themselves: the factored cohesion and friction of the material.
        EXPECT_NEAR(SURF.C3(I), 5.0 * (10.3 * 0.83) * kFifth, 1e-12);
        EXPECT_NEAR(SURF.TAN2(I), 0.437 * 0.91, 1e-12);
    }
}
