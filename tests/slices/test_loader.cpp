// LOADER: centre loads of a slice, checked against weights, load resultants and moments
// worked out by hand or from the geometry (polygon areas and centroids, pressure integrals).

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "input/input.h"
#include "records.h"
#include "slices/slices.h"
#include "slice_world.h"

using kalmo_test::occurrences;
using kalmo_test::Polygon;
using kalmo_test::setBaseTerms;
using kalmo_test::setSlice;
using kalmo_test::simpson;
using kalmo_test::slicePolygon;
using kalmo_test::SliceWorld;

namespace {

class Loader : public ::testing::Test {
protected:
    void place(int I, double x1, double x2, double zTop1, double zTop2, double zBase3, double zBase4) {
        setSlice(I, x1, x2, zTop1, zTop2, zBase3, zBase4);
        setBaseTerms(I);
    }
    // Moment about the load point of slice I of a force (fx, fz) acting at (x, z).
    static double momentAboutLoadPoint(int I, double x, double z, double fx, double fz) {
        return (SURF.XX(5, I) - x) * fz + (z - SURF.ZZ(5, I)) * fx;
    }
    SliceWorld world;
};

}  // namespace

TEST_F(Loader, SingleMaterialSliceWeighsItsAreaTimesTheUnitWeightTimesTheLoadFactors) {
    LOAD.LDAT(2) = 1.2;
    LOAD.LDAT(3) = 0.1;
    place(2, 0.0, 4.0, 0.0, 1.0, 9.0, 6.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    double area = 0.5 * (6.0 + 8.0) * 4.0;
    EXPECT_NEAR(SURF.WZ(2), 20.0 * area * 1.2, 1e-9);
    EXPECT_NEAR(SURF.WX(2), 20.0 * area * 0.1, 1e-9);
    EXPECT_NEAR(SURF.WM(2), 0.0, 1e-9);  // the weight acts at the load point
    EXPECT_EQ(SURF.WZEXT(2), 0.0);
    EXPECT_EQ(SURF.AREAU(2), 0.0);
}

TEST_F(Loader, TwoLayerSectionGivesTheWeightOfEachLayerAndActsAtTheSliceCentroid) {
    ISOLPR.NMAT = 2;
    IGEOMS.NLAYER = 2;
    GEOMSH.ZLAYER(1) = 3.0;
    GEOMSH.ZLAYER(2) = 40.0;
    IGEOMS.LAYMAT(1) = 1;
    IGEOMS.LAYMAT(2) = 2;
    SOLPRP.MAT(GAMTOT, 1) = 18.0;
    SOLPRP.MAT(GAMTOT, 2) = 21.0;
    place(2, 2.0, 6.0, 0.5, 2.0, 9.0, 5.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    Polygon slice = slicePolygon(2.0, 6.0, 0.5, 2.0, 9.0, 5.0);
    double upper = slice.between(-1.0e9, 3.0).area();
    double lower = slice.between(3.0, 1.0e9).area();
    EXPECT_NEAR(upper + lower, slice.area(), 1e-12);
    EXPECT_NEAR(SURF.WZ(2), 18.0 * upper + 21.0 * lower, 1e-9);
    // Loaded by its weight only, the base force starts under the centroid of the slice.
    double cx = 0.0, cz = 0.0;
    slice.centroid(cx, cz);
    EXPECT_NEAR(SURF.WM(2), 0.0, 1e-9);
    EXPECT_NEAR(SURF.H30(2), (6.0 - cx) / SURF.COSB(2), 1e-9);
}

namespace {

// Layers at z = 5 (material 1 above) with material 2 below; a material triangle far away
// makes the load builder integrate on its grid of cells.
void layersWithATriangle() {
    ISOLPR.NMAT = 3;
    IGEOMS.NLAYER = 2;
    GEOMSH.ZLAYER(1) = 5.0;
    GEOMSH.ZLAYER(2) = 45.0;
    IGEOMS.LAYMAT(1) = 1;
    IGEOMS.LAYMAT(2) = 2;
    IGEOMS.NTRI = 1;
    IGEOMS.ITRMAT(1) = 3;
    GEOMSH.XTRI(1, 1) = 90.0; GEOMSH.ZTRI(1, 1) = 1.0;
    GEOMSH.XTRI(2, 1) = 95.0; GEOMSH.ZTRI(2, 1) = 3.0;
    GEOMSH.XTRI(3, 1) = 99.0; GEOMSH.ZTRI(3, 1) = 1.0;
    SOLPRP.MAT(GAMTOT, 1) = 18.0;
    SOLPRP.MAT(MAT18, 1) = 19.0;
    SOLPRP.MAT(GAMTOT, 2) = 20.0;
    SOLPRP.MAT(MAT18, 2) = 21.0;
    SOLPRP.MAT(COHESN, 2) = 0.0;  // undrained clay
    SOLPRP.MAT(PHIANG, 2) = 0.0;
    SOLPRP.MAT(MAT14, 1) = 150.0;
    SOLPRP.MAT(MAT14, 2) = 40.0;
    // Water table at z = 8 from the pore-pressure x-lines.
    IWATER.NUMXPW = 2;
    WATER1.XPW(1) = -100.0;
    WATER1.XPW(2) = 100.0;
    WATER1.ZFREE(1) = 8.0;
    WATER1.ZFREE(2) = 8.0;
}

}  // namespace

TEST_F(Loader, GridIntegrationWeighsDryAndSubmergedCellsAndMeasuresTheUndrainedArea) {
    layersWithATriangle();
    // A flat slice 0..3 wide, 15 deep: with 15 rows the layer boundary at 5 and the water
    // table at 8 fall on cell boundaries.
    place(2, 0.0, 3.0, 0.0, 0.0, 15.0, 15.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    double width = 3.0;
    double expected = width * (18.0 * 5.0 + 20.0 * 3.0 + 21.0 * 7.0);
    EXPECT_NEAR(SURF.WZ(2), expected, 1e-9);
    EXPECT_NEAR(SURF.AREAU(2), width * 10.0, 1e-9);
}

TEST_F(Loader, CombinedAnalysisCountsMaterialsWithAnUndrainedStrengthBelowOneHundredAsUndrained) {
    layersWithATriangle();
    SOLPRP.MAT(MAT14, 1) = 60.0;
    MASTER.IDEFTO = 3;
    place(2, 0.0, 3.0, 0.0, 0.0, 15.0, 15.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.AREAU(2), 45.0, 1e-9);
}

TEST_F(Loader, IntegratedAreaDifferentFromTheSliceAreaIsAnError) {
    ISOLPR.NMAT = 2;
    IGEOMS.NLAYER = 1;
    GEOMSH.ZLAYER(1) = 10.0;
    IGEOMS.LAYMAT(1) = 1;
    place(3, 0.0, 2.0, 0.0, 0.0, 4.0, 4.0);
    SURF.AREA(3) = 8.01;
    LOADER(3);
    EXPECT_EQ(MASTER.IERR, 203);
    EXPECT_NE(world.console().find(" ***** SR/LOADER PROBLEM : SLICE AREA"), std::string::npos);
    EXPECT_NE(io::contents(9).find(" ***** SR/LOADER PROBLEM : SLICE AREA"), std::string::npos);
}

TEST_F(Loader, UniformSurfaceLoadActsOnTheOverlapOfItsRangeWithTheSlice) {
    LOAD.LDAT(1) = 50.0;
    LOAD.QRANGE(1) = 1.0;
    LOAD.QRANGE(2) = 3.0;
    place(2, 0.0, 4.0, 0.0, 0.0, 6.0, 4.0);
    LOADER(2);
    double area = 0.5 * (4.0 + 6.0) * 4.0;
    EXPECT_NEAR(SURF.WZ(2), 20.0 * area + 100.0, 1e-9);
    EXPECT_NEAR(SURF.WM(2), 100.0 * (SURF.XX(5, 2) - 2.0), 1e-9);
    EXPECT_EQ(SURF.WZEXT(2), 0.0);  // the uniform load is not an external point or strip load
}

TEST_F(Loader, StraightPartOfTheGroundGetsNoOverburdenCorrection) {
    // A ground break outside the slice only.
    world.setGround({-100.0, 20.0, 100.0}, {0.0, 0.0, -5.0});
    place(2, 0.0, 10.0, 0.0, 0.0, 8.0, 4.0);
    LOADER(2);
    EXPECT_EQ(SURF.WZ(2), 20.0 * SURF.AREA(2));
    EXPECT_EQ(SURF.WM(2), 0.0);
}

TEST_F(Loader, GroundRisingAboveTheSliceTopAddsTheSoilAboveIt) {
    // A ridge of height 2 at x = 5 over a slice whose top chord runs flat from x = 0 to 10:
    // a triangle of soil of area 10 with its centroid at x = 5.
    world.setGround({-100.0, 0.0, 5.0, 10.0, 100.0}, {0.0, 0.0, -2.0, 0.0, 0.0});
    place(2, 0.0, 10.0, 0.0, 0.0, 8.0, 4.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + 20.0 * 10.0, 1e-9);
    EXPECT_NEAR(SURF.WM(2), 200.0 * (SURF.XX(5, 2) - 5.0), 1e-9);
}

TEST_F(Loader, PointsOfAStraightSlopingGroundAddNoSoil) {
    // Mesh x-lines put ground points at x = 2, 5 and 8 on one straight slope, 1 in 4: the slice
    // top chord is that ground, and nothing lies between them.
    world.setGround({-100.0, 2.0, 5.0, 8.0, 100.0}, {25.5, 0.0, -0.75, -1.5, -24.5});
    place(2, 0.0, 10.0, 0.5, -2.0, 8.0, 4.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2), 1e-9);
    EXPECT_NEAR(SURF.WM(2), 0.0, 1e-9);
}

TEST_F(Loader, ASlightBreakOfTheGroundIsStillWeighed) {
    // Level ground up to x = 5, then rising 1 in 100: the chord from (0, 0) to (10, -0.05)
    // passes 0.025 above the ground at the break, so the triangle (0,0), (5,0), (10,-0.05) of
    // area 0.125 is missing under the chord (the ten columns meet the break at a column border,
    // so their midpoints weigh it exactly).
    world.setGround({-100.0, 5.0, 100.0}, {0.0, 0.0, -0.95});
    place(2, 0.0, 10.0, 0.0, -0.05, 8.0, 4.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) - 20.0 * 0.125, 1e-9);
    // The missing triangle's centroid lies at x = 5.
    EXPECT_NEAR(SURF.WM(2), -20.0 * 0.125 * (SURF.XX(5, 2) - 5.0), 1e-9);
}

TEST_F(Loader, AGroundChangedBetweenTwoSlicesIsTheOneWeighed) {
    // The same slice under level ground, then under the ridge of height 2 at x = 5 (the ground
    // points stay where they were, only the level of the middle one changes), then level again.
    world.setGround({-100.0, 0.0, 5.0, 10.0, 100.0}, {0.0, 0.0, 0.0, 0.0, 0.0});
    place(2, 0.0, 10.0, 0.0, 0.0, 8.0, 4.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2), 1e-9);
    GEOMSH.ZSURF(3) = -2.0;
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + 20.0 * 10.0, 1e-9);
    GEOMSH.ZSURF(3) = 0.0;
    LOADER(2);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2), 1e-9);
}

TEST_F(Loader, AGroundChangedBetweenTwoSurfacesIsTheOneWeighed) {
    // Slices 1 and 2 of a surface under level ground; the ridge of height 2 raised at x = 15
    // before the next surface, whose slices 1 and 2 lie under it: the ridge is weighed.
    world.setGround({-100.0, 0.0, 15.0, 30.0, 100.0}, {0.0, 0.0, 0.0, 0.0, 0.0});
    place(1, 0.0, 10.0, 0.0, 0.0, 8.0, 4.0);
    place(2, 10.0, 20.0, 0.0, 0.0, 8.0, 8.0);
    LOADER(1);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2), 1e-9);
    GEOMSH.ZSURF(3) = -2.0;
    LOADER(1);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    // The ridge rises from 0 at x = 0 to 2 at x = 15 and falls back to 0 at x = 30; over slice
    // 2 (x = 10..20) two trapezia of width 5 between the heights 4/3 and 2 lie above its top.
    const double area = 0.5 * (2.0 * 10.0 / 15.0 + 2.0) * 5.0 + 0.5 * (2.0 + 2.0 * 10.0 / 15.0) * 5.0;
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + 20.0 * area, 1e-9);
}

namespace {

// The soil between the straight top of slice I and the ground where a ground point lies over
// the slice, ten columns summed onto the loads in the order of operations they have always
// had, the ground read with INTPOL.
void historicalSoilAboveTop(int I, double gamma, double& WZ, double& WX, double& WM) {
    const double x1 = SURF.XX(1, I), x2 = SURF.XX(2, I);
    bool groundPoint = false;
    for (int k = 1; k <= IGEOMS.NX + 1; ++k) groundPoint = groundPoint || (GEOMSH.XSURF(k) >= x1 && GEOMSH.XSURF(k) <= x2);
    if (!groundPoint) return;
    const double width = x2 - x1;
    const double columnWidth = width / 10.0;
    const int n = IGEOMS.NX + 1;
    for (int j = 1; j <= 10; ++j) {
        const double x = x1 + (j - 0.5) * columnWidth;
        const double zChord = SURF.ZZ(1, I) + (SURF.ZZ(2, I) - SURF.ZZ(1, I)) * (x - x1) / width;
        double zGround = 0.0;
        int ierr = 0;
        INTPOL(n, 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), x, zGround, ierr);
        const double weight = (zChord - zGround) * columnWidth * gamma;  // dry: the water lies deep
        const double midDepth = (zChord + zGround) / 2.0;
        const double weightZ = weight * LOAD.LDAT(2);
        const double weightX = weight * LOAD.LDAT(3);
        WZ += weightZ;
        WX += weightX;
        WM += (SURF.XX(5, I) - x) * weightZ - (SURF.ZZ(5, I) - midDepth) * weightX;
    }
}

}  // namespace

TEST_F(Loader, TheSoilAboveTheTopIsSummedColumnByColumnAsItAlwaysWas) {
    // Total stress (no pore water forces), dry, one material of 20: the loads are the weight
    // and the columns, added to it bit for bit as before. Mesh points on one straight slope
    // (where ground and chord mostly meet to the last digit, and a column adds a zero), a slight
    // break, a sharp one; a vertical load factor of negative zero makes a sum a negative zero,
    // to which a zero column does add.
    MASTER.IDEFTO = 2;
    LOAD.LDAT(3) = 0.15;
    const std::vector<std::vector<double>> grounds[] = {
        {{-100.0, 2.0, 5.0, 8.0, 100.0}, {25.5, 0.0, -0.75, -1.5, -24.5}},
        {{-100.0, 5.0, 100.0}, {0.0, 0.0, -0.95}},
        {{-100.0, 4.0, 6.5, 100.0}, {0.0, 0.0, -2.0, -2.0}},
    };
    const double slices[][2] = {{0.0, 10.0}, {1.3, 4.7}, {4.9, 5.1}, {2.0, 8.0}};
    for (double verticalFactor : {1.0, -0.0}) {
        LOAD.LDAT(2) = verticalFactor;
        for (const auto& ground : grounds) {
            world.setGround(ground[0], ground[1]);
            for (const auto& slice : slices) {
                double top[2];
                for (int e = 0; e < 2; ++e) {
                    int ierr = 0;
                    INTPOL(static_cast<int>(ground[0].size()), 1, ground[0].data(), ground[1].data(), slice[e], top[e], ierr);
                }
                place(2, slice[0], slice[1], top[0], top[1], 8.0, 6.0);
                LOADER(2);
                ASSERT_EQ(MASTER.IERR, 0);
                double WZ = 20.0 * SURF.AREA(2) * LOAD.LDAT(2);
                double WX = 20.0 * SURF.AREA(2) * LOAD.LDAT(3);
                double WM = 0.0;
                historicalSoilAboveTop(2, 20.0, WZ, WX, WM);
                // Then the external vertical loads and the free water of this dry world: zeros,
                // which make a negative zero positive.
                WZ += 0.0;
                WX += 0.0;
                WZ += 0.0;
                WM += 0.0;
                const auto sameBits = [](double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; };
                EXPECT_TRUE(sameBits(SURF.WZ(2), WZ)) << slice[0] << ".." << slice[1] << ": " << SURF.WZ(2) << " " << WZ;
                EXPECT_TRUE(sameBits(SURF.WX(2), WX)) << slice[0] << ".." << slice[1] << ": " << SURF.WX(2) << " " << WX;
                EXPECT_TRUE(sameBits(SURF.WM(2), WM)) << slice[0] << ".." << slice[1] << ": " << SURF.WM(2) << " " << WM;
            }
        }
    }
}

TEST_F(Loader, AGroundWhoseAbscissasDoNotIncreaseIsReportedOverAnySlice) {
    // Two ground points at x = 5 on a level ground: the soil surface table is refused.
    world.setGround({-100.0, 5.0, 5.0, 100.0}, {0.0, 0.0, 0.0, 0.0});
    place(2, 0.0, 10.0, 0.0, 0.0, 8.0, 4.0);
    LOADER(2);
    EXPECT_EQ(MASTER.IERR, 102);
}

TEST_F(Loader, SoilAboveTheTopTakesTheHorizontalLoadFactor) {
    world.setGround({-100.0, 0.0, 5.0, 10.0, 100.0}, {0.0, 0.0, -2.0, 0.0, 0.0});
    LOAD.LDAT(3) = 0.2;
    place(2, 0.0, 10.0, 0.0, 0.0, 8.0, 4.0);
    LOADER(2);
    EXPECT_NEAR(SURF.WX(2), 0.2 * (20.0 * SURF.AREA(2) + 200.0), 1e-9);
}

TEST_F(Loader, SubmergedSoilAboveTheTopWeighsItsBuoyantUnitWeight) {
    world.setGround({-100.0, 0.0, 5.0, 10.0, 100.0}, {0.0, 0.0, -2.0, 0.0, 0.0});
    WATER1.ZWATER = -5.0;  // free water 5 above the slice top, 3 above the ridge
    place(2, 0.0, 10.0, 0.0, 0.0, 8.0, 4.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    double ridge = (20.0 - 10.0) * 10.0;
    double water = 10.0 * 5.0 * 10.0;  // free water over the flat top chord
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + ridge + water, 1e-9);
}

TEST_F(Loader, PoreWaterForcesJoinTheCentreLoadsInAnEffectiveStressAnalysis) {
    place(2, 0.0, 4.0, 0.0, 0.0, 7.0, 4.0);
    SURF.U1(2) = 30.0;
    SURF.E1(2) = 1.2;  // height of U1 above corner 4
    SURF.U2(2) = 55.0;
    SURF.E2(2) = 1.5;  // height of U2 above corner 3
    SURF.U3(2) = 200.0;
    SURF.P(2) = 2.0;   // distance of U3 from corner 3 along the base
    LOADER(2);
    double sinb = 3.0 / 5.0, cosb = 4.0 / 5.0;
    double weight = 20.0 * SURF.AREA(2);
    EXPECT_NEAR(SURF.WX(2), 30.0 - 55.0 + sinb * 200.0, 1e-9);
    EXPECT_NEAR(SURF.WZ(2), weight - cosb * 200.0, 1e-9);
    // U3 pushes up at right angles to the base, 2 from corner 3 along it.
    double x3 = 4.0 - 2.0 * cosb, z3 = 7.0 - 2.0 * sinb;
    double moment = momentAboutLoadPoint(2, 0.0, 4.0 - 1.2, 30.0, 0.0) + momentAboutLoadPoint(2, 4.0, 7.0 - 1.5, -55.0, 0.0) +
                    momentAboutLoadPoint(2, x3, z3, sinb * 200.0, -cosb * 200.0);
    EXPECT_NEAR(SURF.WM(2), moment, 1e-9);
}

TEST_F(Loader, TotalStressAnalysisIgnoresWaterForces) {
    MASTER.IDEFTO = 2;
    place(2, 0.0, 4.0, 0.0, 0.0, 7.0, 4.0);
    SURF.U1(2) = 30.0;
    SURF.U2(2) = 55.0;
    SURF.U3(2) = 200.0;
    LOADER(2);
    EXPECT_NEAR(SURF.WX(2), 0.0, 1e-12);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2), 1e-9);
}

TEST_F(Loader, PointLoadOnASliceBorderActsOnBothSlices) {
    ILOA.NPF = 2;
    LOAD.LDAT(4) = 2.0;  // common magnitude
    LOAD.XZPF(1, 1) = 4.0;  // on the border of slices 1 and 2, at the ground
    LOAD.XZPF(2, 1) = 0.0;
    LOAD.FPF(1, 1) = 3.0;
    LOAD.FPF(2, 1) = 10.0;
    LOAD.XZPF(1, 2) = 6.0;  // below the base of slice 2
    LOAD.XZPF(2, 2) = 9.0;
    LOAD.FPF(1, 2) = 1.0;
    LOAD.FPF(2, 2) = 1.0;
    place(1, 0.0, 4.0, 0.0, 0.0, 6.0, 5.0);
    place(2, 4.0, 8.0, 0.0, 0.0, 7.0, 6.0);
    for (int I = 1; I <= 2; ++I) {
        LOADER(I);
        ASSERT_EQ(MASTER.IERR, 0);
        EXPECT_NEAR(SURF.WZEXT(I), 20.0, 1e-12) << I;
        EXPECT_NEAR(SURF.WX(I), 6.0, 1e-12) << I;
        EXPECT_NEAR(SURF.WZ(I), 20.0 * SURF.AREA(I) + 20.0, 1e-9) << I;
        EXPECT_NEAR(SURF.WM(I), momentAboutLoadPoint(I, 4.0, 0.0, 6.0, 20.0), 1e-9) << I;
    }
}

TEST_F(Loader, StripLoadsTakeTheirCommonMagnitude) {
    ILOA.NSTRIP = 1;
    LOAD.LDAT(5) = 2.0;
    LOAD.XSTRIP(1, 1) = 1.0;
    LOAD.XSTRIP(2, 1) = 3.0;
    LOAD.QSTRV(1, 1) = 10.0;
    LOAD.QSTRV(2, 1) = 10.0;
    LOAD.QSTRH(1, 1) = 1.0;
    LOAD.QSTRH(2, 1) = 1.0;
    place(2, 0.0, 4.0, 0.0, 0.0, 6.0, 4.0);
    LOADER(2);
    EXPECT_NEAR(SURF.WZEXT(2), 2.0 * 20.0, 1e-12);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + 40.0, 1e-9);
    EXPECT_NEAR(SURF.WX(2), 2.0 * 2.0, 1e-12);
    EXPECT_NEAR(SURF.WM(2), momentAboutLoadPoint(2, 2.0, 0.0, 4.0, 40.0), 1e-9);
}

TEST_F(Loader, FreeWaterOnASlopingSliceTopIsTheWeightAndThrustOfTheWater) {
    WATER1.ZWATER = 1.0;
    place(2, 0.0, 4.0, 2.0, 5.0, 12.0, 9.0);
    LOADER(2);
    ASSERT_EQ(MASTER.IERR, 0);
    // Pressure 10 (z - 1) on the top z = 2 + 0.75 x, pushing along its inward normal.
    double slope = 0.75;
    auto p = [&](double x) { return 10.0 * (2.0 + slope * x - 1.0); };
    double fz = simpson(p, 0.0, 4.0);
    double fx = simpson([&](double x) { return -p(x) * slope; }, 0.0, 4.0);
    double m = simpson([&](double x) { return momentAboutLoadPoint(2, x, 2.0 + slope * x, -p(x) * slope, p(x)); }, 0.0, 4.0);
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + fz, 1e-9);
    EXPECT_NEAR(SURF.WX(2), fx, 1e-9);
    EXPECT_NEAR(SURF.WM(2), m, 1e-9);
}

TEST_F(Loader, GentlySlopingWaterTableStandsOnTheTopAtItsMeanLevel) {
    IWATER.NUMXPW = 2;
    WATER1.XPW(1) = 0.0;
    WATER1.XPW(2) = 10.0;
    WATER1.ZFREE(1) = -1.0;
    WATER1.ZFREE(2) = -1.1;  // 0.04 over the slice, below the tolerance of 0.05 * 8
    place(2, 0.0, 4.0, 0.0, 0.0, 16.0, 16.0);
    LOADER(2);
    double level = (-1.0 - 1.04) / 2.0;
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + 10.0 * (0.0 - level) * 4.0, 1e-9);
}

TEST_F(Loader, OnlyTheFirstTenNonHorizontalWaterTablesAboveASliceAreReported) {
    IWATER.NUMXPW = 2;
    WATER1.XPW(1) = 0.0;
    WATER1.XPW(2) = 4.0;
    WATER1.ZFREE(1) = 0.0;
    WATER1.ZFREE(2) = 1.0;  // steep, and far above the slice top at z = 5
    place(2, 0.0, 4.0, 5.0, 5.0, 10.0, 10.0);
    const std::string warning = " ***** WARNING FROM SR/LOADER : NON-HORIZONTAL  WATER TABLE ABOVE SLICE";
    for (int call = 1; call <= 12; ++call) {
        LOADER(2);
        ASSERT_EQ(MASTER.IERR, 0);
        int expected = call <= 10 ? call : 10;
        EXPECT_EQ(occurrences(world.log(), warning), expected) << call;
        EXPECT_EQ(occurrences(io::contents(9), warning), expected) << call;
    }
    EXPECT_EQ(occurrences(world.console(), warning), 0);
    // The water stands at its mean level 0.5 over the flat top.
    EXPECT_NEAR(SURF.WZ(2), 20.0 * SURF.AREA(2) + 10.0 * 4.5 * 4.0, 1e-9);
}

TEST_F(Loader, WaterTableInterpolationFailureIsReportedPlusOneHundred) {
    IWATER.NUMXPW = 3;
    WATER1.XPW(1) = 0.0;
    WATER1.XPW(2) = 0.0;  // two equal abscissas
    WATER1.XPW(3) = 8.0;
    place(2, 1.0, 5.0, 0.0, 0.0, 10.0, 10.0);
    LOADER(2);
    EXPECT_EQ(MASTER.IERR, 102);
    EXPECT_NE(world.console().find(" ***** SR/LOADER PROBLEM :  WATER PRESSURE ON SLICE "), std::string::npos);
    EXPECT_NE(world.console().find(" TOP"), std::string::npos);
}

TEST_F(Loader, WaterInTheCrackBehindTheFirstSliceWhenTheGroundIsDry) {
    SOLPRP.STRDAT(1) = 2.0;  // crack depth
    SOLPRP.STRDAT(2) = 1.5;  // water height in it
    place(1, 0.0, 4.0, 0.0, 0.0, 6.0, 2.0);
    LOADER(1);
    double thrust = 0.5 * 10.0 * 1.5 * 1.5;
    EXPECT_NEAR(SURF.WX(1), thrust, 1e-12);
    EXPECT_NEAR(SURF.WM(1), momentAboutLoadPoint(1, 0.0, 2.0 - 0.5, thrust, 0.0), 1e-9);
}

TEST_F(Loader, WaterInTheCrackBehindTheFirstSliceUnderFreeWater) {
    SOLPRP.STRDAT(1) = 2.0;
    SOLPRP.STRDAT(2) = 1.5;
    WATER1.ZWATER = -1.0;  // one above the ground: the whole crack is full, 10 -> 30
    place(1, 0.0, 4.0, 0.0, 0.0, 6.0, 2.0);
    LOADER(1);
    double thrust = (10.0 + 30.0) / 2.0 * 2.0;
    double depth = 2.0 * (10.0 + 2.0 * 30.0) / (3.0 * 40.0);  // centroid of the trapezoid
    EXPECT_NEAR(SURF.WX(1), thrust, 1e-12);
    double water = 10.0 * 1.0 * 4.0;  // free water on the flat top
    EXPECT_NEAR(SURF.WZ(1), 20.0 * SURF.AREA(1) + water, 1e-9);
    double moment = momentAboutLoadPoint(1, 0.0, depth, thrust, 0.0) + momentAboutLoadPoint(1, 2.0, 0.0, 0.0, water);
    EXPECT_NEAR(SURF.WM(1), moment, 1e-9);
}

TEST_F(Loader, OwnWeightOnlyPlacesTheBaseForceAtTheCentroidWithinTheMiddleThird) {
    const double shapes[][4] = {{0.0, 0.0, 6.0, 4.0}, {0.0, 3.0, 3.001, 0.2}, {2.0, 0.0, 0.5, 9.0}};
    for (const auto& s : shapes) {
        place(2, 0.0, 4.0, s[0], s[1], s[2], s[3]);
        LOADER(2);
        Polygon slice = slicePolygon(0.0, 4.0, s[0], s[1], s[2], s[3]);
        double cx = 0.0, cz = 0.0;
        slice.centroid(cx, cz);
        double ratio = std::fmin(std::fmax((4.0 - cx) / 4.0, 0.333f), 0.667f);
        EXPECT_NEAR(SURF.H30(2), ratio * 4.0 / SURF.COSB(2), 1e-9);
        EXPECT_GE(SURF.H30(2), 0.333f * SURF.L34(2) - 1e-12);
        EXPECT_LE(SURF.H30(2), 0.667f * SURF.L34(2) + 1e-12);
    }
}

TEST_F(Loader, HeavyLoadNearCornerThreeIsHeldAtAThirdOfTheBase) {
    ILOA.NPF = 1;
    LOAD.LDAT(4) = 1.0;
    LOAD.XZPF(1, 1) = 3.99;
    LOAD.XZPF(2, 1) = 0.0;
    LOAD.FPF(2, 1) = 1.0e6;
    place(2, 0.0, 4.0, 0.0, 0.0, 7.0, 4.0);
    LOADER(2);
    EXPECT_NEAR(SURF.H30(2), static_cast<double>(0.333f) * 4.0 / 0.8, 1e-12);
}

TEST_F(Loader, GivenBaseForcePositionsLeaveH30Alone) {
    MASTER.H3(1) = 0.4;
    MASTER.H3(2) = 0.4;
    SURF.H30(2) = -7.0;
    place(2, 0.0, 4.0, 0.0, 0.0, 7.0, 4.0);
    LOADER(2);
    EXPECT_EQ(SURF.H30(2), -7.0);
}

TEST_F(Loader, EveryOwnedFieldIsWrittenAfresh) {
    place(2, 0.0, 4.0, 0.0, 0.0, 6.0, 4.0);
    SURF.AREAU(2) = 5.0;
    SURF.WZEXT(2) = 5.0;
    SURF.WX(2) = 5.0;
    SURF.WM(2) = 5.0;
    LOADER(2);
    EXPECT_EQ(SURF.AREAU(2), 0.0);
    EXPECT_EQ(SURF.WZEXT(2), 0.0);
    EXPECT_NEAR(SURF.WX(2), 0.0, 1e-12);
    EXPECT_NEAR(SURF.WM(2), 0.0, 1e-9);
}
