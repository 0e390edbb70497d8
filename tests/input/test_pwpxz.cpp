// PWPXZ: pore pressure at a point, hydrostatic and general models.

#include <gtest/gtest.h>

#include "control/control.h"
#include "input/input.h"
#include "input/mesh_fixture.h"
#include "io/channels.h"
#include "records.h"

namespace {

// Four element columns 10 wide from x = 0 to 40, two elements per column, flat ground at z = 0,
// rock at z = 10. Column 1 holds nodes 1 (0, 10), 2 (0, 5), 3 (0, 0); column 2 nodes 4 (10, 10),
// 5 (10, 5), 6 (10, 0). Element 1 has the corners 2, 5, 4, 1. One material, weightless water,
// so that each test switches on the parts it looks at.
class Pwpxz : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();
        kalmo_test::fillMesh(0.0, 40.0, 4, 2, 0.0, 0.0, 10.0);
        ISOLPR.NMAT = 1;
        IWATER.IDPWP = 2;
    }
    void TearDown() override { io::resetAll(); }

    static double at(double x, double z) {
        double u = -777.0;
        PWPXZ(x, z, u);
        return u;
    }

    // Two layers: material 1 down to z = 3, material 2 below.
    static void twoLayers() {
        ISOLPR.NMAT = 2;
        IGEOMS.NLAYER = 2;
        GEOMSH.ZLAYER(1) = 3.0;
        GEOMSH.ZLAYER(2) = 100.0;
        IGEOMS.LAYMAT(1) = 1;
        IGEOMS.LAYMAT(2) = 2;
    }
};

}  // namespace

TEST_F(Pwpxz, HydrostaticBelowTheWaterTable) {
    IWATER.IDPWP = 1;
    WATER1.ZWATER = 2.0;
    WATER1.GAMWAT = 10.0;
    WATER1.GAMPWP = 9.0;  // not the weight of the hydrostatic model
    EXPECT_DOUBLE_EQ(at(5.0, 5.0), 30.0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_DOUBLE_EQ(at(-500.0, 2.0), 0.0);  // no mesh needed
}

TEST_F(Pwpxz, HydrostaticAboveTheWaterTableIsLimitedByTheLowestAllowedPressure) {
    IWATER.IDPWP = 1;
    WATER1.ZWATER = 2.0;
    WATER1.GAMWAT = 10.0;
    EXPECT_EQ(at(5.0, 1.0), 0.0);  // datum 4 is 0
    WATER1.PWPMIN = -5.0;
    EXPECT_DOUBLE_EQ(at(5.0, 1.8), -2.0);
    EXPECT_EQ(at(5.0, 1.0), -5.0);
    EXPECT_EQ(at(5.0, -20.0), -5.0);
}

TEST_F(Pwpxz, RatioTimesTheWeightOfTheSoilAtMidDepth) {
    twoLayers();
    SOLPRP.MAT(RUFCT, 1) = 0.5;
    SOLPRP.MAT(GAMTOT, 1) = 20.0;
    SOLPRP.MAT(RUFCT, 2) = 0.4;
    SOLPRP.MAT(GAMTOT, 2) = 18.0;
    // At z = 4 the material is 2 (ratio 0.4); at mid-depth z = 2 it is 1 (weight 20): 4 * 0.4 * 20.
    EXPECT_DOUBLE_EQ(at(5.0, 4.0), 32.0);
    EXPECT_EQ(MASTER.IERR, 0);
    // At z = 8 the mid-depth 4 lies in material 2: 8 * 0.4 * 18.
    EXPECT_DOUBLE_EQ(at(5.0, 8.0), 57.6);
}

TEST_F(Pwpxz, RatioAboveTheGroundIsTheNegatedProductAndNothingElse) {
    twoLayers();
    SOLPRP.MAT(RUFCT, 1) = 0.5;
    SOLPRP.MAT(GAMTOT, 1) = 20.0;
    SOLPRP.MAT(PWPMAT, 1) = 7.0;
    WATER1.GAMPWP = 10.0;
    WATER1.ZWATER = -5.0;
    // One above the ground: the product -1 * 0.5 * 20 negated.
    EXPECT_DOUBLE_EQ(at(5.0, -1.0), 10.0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(at(5.0, 0.0), 0.0);  // on the ground
}

TEST_F(Pwpxz, RatioFollowsTheGroundSurface) {
    kalmo_test::fillMesh(0.0, 40.0, 4, 2, 0.0, -4.0, 10.0);  // ground at -2 at x = 20
    SOLPRP.MAT(RUFCT, 1) = 0.5;
    SOLPRP.MAT(GAMTOT, 1) = 20.0;
    EXPECT_DOUBLE_EQ(at(20.0, 4.0), 60.0);
}

TEST_F(Pwpxz, MaterialWaterLevelReplacesTheRatioPart) {
    SOLPRP.MAT(RUFCT, 1) = 0.5;
    SOLPRP.MAT(GAMTOT, 1) = 20.0;
    SOLPRP.MAT(MAT17, 1) = 2.0;
    SOLPRP.MAT(PWPMAT, 1) = 7.0;  // not added under a material water level
    WATER1.GAMWAT = 10.0;
    EXPECT_DOUBLE_EQ(at(5.0, 5.0), 30.0);
    EXPECT_EQ(at(5.0, 1.0), 0.0);  // above the material water level: never negative
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Pwpxz, AMaterialWaterLevelOfAlmostZeroCountsAsNone) {
    SOLPRP.MAT(MAT17, 1) = 0.0005;
    SOLPRP.MAT(PWPMAT, 1) = 7.0;
    WATER1.GAMWAT = 10.0;
    EXPECT_DOUBLE_EQ(at(5.0, 5.0), 7.0);
}

TEST_F(Pwpxz, MaterialPressureIsAdded) {
    SOLPRP.MAT(PWPMAT, 1) = 7.0;
    EXPECT_DOUBLE_EQ(at(5.0, 5.0), 7.0);
    SOLPRP.MAT(RUFCT, 1) = 0.5;
    SOLPRP.MAT(GAMTOT, 1) = 20.0;
    EXPECT_DOUBLE_EQ(at(5.0, 5.0), 57.0);
}

TEST_F(Pwpxz, HydrostaticPartBelowTheWaterTableWithoutXLines) {
    WATER1.ZWATER = 2.0;
    WATER1.GAMPWP = 9.0;
    WATER1.GAMWAT = 10.0;
    EXPECT_DOUBLE_EQ(at(5.0, 5.0), 27.0);
}

TEST_F(Pwpxz, HydrostaticPartUnderFreeWaterStandingOnTheGround) {
    WATER1.ZWATER = -3.0;  // three above the ground
    WATER1.GAMPWP = 9.0;
    WATER1.GAMWAT = 10.0;
    // 5 * 9 in the soil and 3 * 10 of free water above it.
    EXPECT_DOUBLE_EQ(at(5.0, 5.0), 75.0);
}

namespace {
// Pore-pressure x-lines at x = 0 (levels 0, 10, pressures 0, 100) and x = 40 (0, 60).
void twoPressureLines() {
    IWATER.NUMXPW = 2;
    WATER1.XPW(1) = 0.0;
    WATER1.XPW(2) = 40.0;
    IWATER.NPWPT(1) = 2;
    IWATER.NPWPT(2) = 2;
    WATER1.ZPW(1, 1) = 0.0;
    WATER1.ZPW(2, 1) = 10.0;
    WATER1.PWPRF(1, 1) = 0.0;
    WATER1.PWPRF(2, 1) = 100.0;
    WATER1.ZPW(1, 2) = 0.0;
    WATER1.ZPW(2, 2) = 10.0;
    WATER1.PWPRF(1, 2) = 0.0;
    WATER1.PWPRF(2, 2) = 60.0;
}
}  // namespace

TEST_F(Pwpxz, XLinesTakeThePlaceOfTheHydrostaticPart) {
    twoPressureLines();
    WATER1.ZWATER = 0.0;
    WATER1.GAMPWP = 10.0;  // would add 50 without x-lines
    WATER1.GAMWAT = 10.0;
    // x = 10, z = 5: 50 on the left line, 30 on the right, a quarter of the way: 45.
    EXPECT_DOUBLE_EQ(at(10.0, 5.0), 45.0);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Pwpxz, XLinesAreAddedToASmallMaterialPressureOnly) {
    twoPressureLines();
    SOLPRP.MAT(PWPMAT, 1) = 0.005;
    EXPECT_DOUBLE_EQ(at(10.0, 5.0), 45.005);
    SOLPRP.MAT(PWPMAT, 1) = 7.0;
    EXPECT_DOUBLE_EQ(at(10.0, 5.0), 7.0);
}

TEST_F(Pwpxz, XLineFailureIsReturnedPlusThreeHundred) {
    twoPressureLines();
    IWATER.NPWPT(2) = 0;
    EXPECT_EQ(at(10.0, 5.0), 0.0);
    EXPECT_EQ(MASTER.IERR, 302);
}

TEST_F(Pwpxz, NodePressuresAtTheCentreOfAnElementAreTheMeanOfItsCorners) {
    IWATER.NODPWP = IGEOMS.NNODE;
    WATER1.PWNOD(1) = 10.0;
    WATER1.PWNOD(2) = 20.0;
    WATER1.PWNOD(4) = 30.0;
    WATER1.PWNOD(5) = 60.0;
    WATER1.PWNOD(3) = 1000.0;  // corner of element 2 only
    EXPECT_DOUBLE_EQ(at(5.0, 7.5), 30.0);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Pwpxz, NodePressuresAreWeightedByTheInverseSquareOfTheDistance) {
    IWATER.NODPWP = IGEOMS.NNODE;
    WATER1.PWNOD(1) = 10.0;
    WATER1.PWNOD(2) = 20.0;
    WATER1.PWNOD(4) = 30.0;
    WATER1.PWNOD(5) = 60.0;
    // Point (2, 9): squared distances 5 to node 1 (0, 10), 20 to node 2 (0, 5), 65 to node 4
    // (10, 10), 80 to node 5 (10, 5).
    const double weighted = 10.0 / 5.0 + 20.0 / 20.0 + 30.0 / 65.0 + 60.0 / 80.0;
    const double weights = 1.0 / 5.0 + 1.0 / 20.0 + 1.0 / 65.0 + 1.0 / 80.0;
    EXPECT_DOUBLE_EQ(at(2.0, 9.0), weighted / weights);
}

TEST_F(Pwpxz, ANodePressureOnANodeIsNearlyThatNodesValue) {
    IWATER.NODPWP = IGEOMS.NNODE;
    WATER1.PWNOD(1) = 10.0;
    WATER1.PWNOD(2) = 20.0;
    WATER1.PWNOD(4) = 30.0;
    WATER1.PWNOD(5) = 60.0;
    // On node 1 its squared distance is held at 1.0E-6 (single precision); the others are 25,
    // 100 and 125 away.
    const double held = static_cast<double>(1.0e-6f);
    const double weighted = 10.0 / held + 20.0 / 25.0 + 30.0 / 100.0 + 60.0 / 125.0;
    const double weights = 1.0 / held + 1.0 / 25.0 + 1.0 / 100.0 + 1.0 / 125.0;
    EXPECT_DOUBLE_EQ(at(0.0, 10.0), weighted / weights);
}

TEST_F(Pwpxz, LowerLimitIsTheLowestAllowedPressure) {
    WATER1.ZWATER = 5.0;
    WATER1.GAMPWP = 10.0;
    WATER1.PWPMIN = -10.0;
    EXPECT_DOUBLE_EQ(at(5.0, 3.0), -10.0);  // -20 raised to -10
    EXPECT_DOUBLE_EQ(at(5.0, 4.5), -5.0);
}

TEST_F(Pwpxz, LowerLimitIsScaledByDsubOfAMaterialWithoutBFactor) {
    WATER1.ZWATER = 5.0;
    WATER1.GAMPWP = 10.0;
    WATER1.PWPMIN = -10.0;
    SOLPRP.MAT(DSUB, 1) = 0.5;
    EXPECT_DOUBLE_EQ(at(5.0, 1.0), -5.0);
    SOLPRP.MAT(BFCT, 1) = 0.3;  // a B-factor: the limit is not scaled
    EXPECT_DOUBLE_EQ(at(5.0, 1.0), -10.0);
}

TEST_F(Pwpxz, APointOutsideTheMeshIsTheLocateError) {
    SOLPRP.MAT(PWPMAT, 1) = 7.0;
    EXPECT_EQ(at(-1.0, 5.0), 0.0);
    EXPECT_EQ(MASTER.IERR, 1);
}

TEST_F(Pwpxz, AGroundSurfaceThatCannotBeInterpolatedIsReturnedPlusOneHundred) {
    GEOMSH.XSURF(3) = GEOMSH.XSURF(2);
    EXPECT_EQ(at(5.0, 5.0), 0.0);
    EXPECT_EQ(MASTER.IERR, 102);
    MASTER.IERR = 0;
    SOLPRP.MAT(RUFCT, 1) = 0.5;
    twoPressureLines();
    EXPECT_EQ(at(5.0, 5.0), 0.0);
    EXPECT_EQ(MASTER.IERR, 102);
}
