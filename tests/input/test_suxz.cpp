// SUXZ: undrained shear strength at a point and for an inclined plane.

#include <gtest/gtest.h>

#include <cmath>

#include "control/control.h"
#include "input/input.h"
#include "input/mesh_fixture.h"
#include "io/channels.h"
#include "records.h"

namespace {

const double kPi = 4.0 * std::atan(1.0);

// The mesh of the pore-pressure tests: four columns 10 wide, two elements each, flat ground at
// z = 0, rock at z = 10; element 1 has the corners 2 (0, 5), 5 (10, 5), 4 (10, 10), 1 (0, 10).
// Material 1 is anisotropic: su0 20, SUA/SU0 1.5, SUD/SU0 0.8, SUP/SU0 0.5.
class Suxz : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();
        kalmo_test::fillMesh(0.0, 40.0, 4, 2, 0.0, 0.0, 10.0);
        ISOLPR.NMAT = 1;
        SOLPRP.MAT(MAT14, 1) = 20.0;
        SOLPRP.MAT(SUASU0, 1) = 1.5;
        SOLPRP.MAT(SUDSU0, 1) = 0.8;
        SOLPRP.MAT(SUPSU0, 1) = 0.5;
    }
    void TearDown() override { io::resetAll(); }

    double su0 = -777.0;
    double su = -777.0;
    void at(double x, double z, double beta) { SUXZ(x, z, beta, su0, su); }

    // Undrained-strength x-lines at x = 0 (levels 0, 10: 10, 30) and x = 40 (0, 10: 10, 50).
    static void twoStrengthLines() {
        ISOLPR.NSUX = 2;
        SOLPRP.XSU(1) = 0.0;
        SOLPRP.XSU(2) = 40.0;
        ISOLPR.NSUPT(1) = 2;
        ISOLPR.NSUPT(2) = 2;
        SOLPRP.ZSU(1, 1) = 0.0;
        SOLPRP.ZSU(2, 1) = 10.0;
        SOLPRP.SUPRF(1, 1) = 10.0;
        SOLPRP.SUPRF(2, 1) = 30.0;
        SOLPRP.ZSU(1, 2) = 0.0;
        SOLPRP.ZSU(2, 2) = 10.0;
        SOLPRP.SUPRF(1, 2) = 10.0;
        SOLPRP.SUPRF(2, 2) = 50.0;
    }
};

}  // namespace

TEST_F(Suxz, ActivePlaneAtFortyFiveDegreesHasTheActiveStrength) {
    at(5.0, 5.0, kPi * 0.25);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    EXPECT_DOUBLE_EQ(su, 30.0);  // 16 + sin(90) * (30 - 16)
}

TEST_F(Suxz, HorizontalPlaneHasTheDirectStrength) {
    at(5.0, 5.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    EXPECT_DOUBLE_EQ(su, 16.0);
}

TEST_F(Suxz, PassivePlaneAtMinusFortyFiveDegreesHasThePassiveStrength) {
    at(5.0, 5.0, -kPi * 0.25);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    EXPECT_DOUBLE_EQ(su, 10.0);  // 16 - (16 - 10)
}

TEST_F(Suxz, InBetweenTheStrengthVariesWithSineOfTwiceTheAngle) {
    at(5.0, 5.0, kPi / 6.0);
    EXPECT_DOUBLE_EQ(su, 16.0 + std::sin(kPi / 3.0) * 14.0);
    at(5.0, 5.0, -kPi / 12.0);
    EXPECT_DOUBLE_EQ(su, 16.0 + std::sin(-kPi / 6.0) * 6.0);
}

TEST_F(Suxz, AnIsotropicMaterialHasOneStrength) {
    SOLPRP.MAT(ISOTRP, 1) = 1.0;
    at(5.0, 5.0, kPi * 0.25);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    EXPECT_DOUBLE_EQ(su, 20.0);
    at(5.0, 5.0, 1.55);
    EXPECT_DOUBLE_EQ(su, 20.0);
}

TEST_F(Suxz, ANegativeBaseValueGivesNegativeStrengths) {
    SOLPRP.MAT(MAT14, 1) = -20.0;
    at(5.0, 5.0, kPi * 0.25);
    EXPECT_DOUBLE_EQ(su0, -20.0);
    EXPECT_DOUBLE_EQ(su, -30.0);
    at(5.0, 5.0, -kPi * 0.25);
    EXPECT_DOUBLE_EQ(su0, -20.0);
    EXPECT_DOUBLE_EQ(su, -10.0);
    SOLPRP.MAT(ISOTRP, 1) = 1.0;
    at(5.0, 5.0, 1.55);
    EXPECT_DOUBLE_EQ(su0, -20.0);
    EXPECT_DOUBLE_EQ(su, -20.0);
}

TEST_F(Suxz, APlaneSteeperThanEightyEightPointTwoDegreesKeepsTheSignAndTheDirectStrength) {
    SOLPRP.MAT(MAT14, 1) = -20.0;
    at(5.0, 5.0, std::nextafter(1.5393799543380737, 2.0));
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    EXPECT_DOUBLE_EQ(su, 16.0);
    at(5.0, 5.0, 1.5393799543380737);  // not steeper: the rule holds
    EXPECT_DOUBLE_EQ(su0, -20.0);
    EXPECT_DOUBLE_EQ(su, -(16.0 + std::sin(2.0 * 1.5393799543380737) * 14.0));
}

TEST_F(Suxz, APlaneSteeperThanEightyEightPointTwoDegreesOfAPositiveMaterial) {
    at(5.0, 5.0, 1.56);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    EXPECT_DOUBLE_EQ(su, 16.0);
}

TEST_F(Suxz, StrengthLinesAreUsedForASmallBaseValue) {
    twoStrengthLines();
    SOLPRP.MAT(MAT14, 1) = 0.1;
    // x = 20, z = 5: 20 on the left line, 30 on the right, halfway: 25.
    at(20.0, 5.0, 0.0);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_DOUBLE_EQ(su0, 25.1);
    SOLPRP.MAT(MAT14, 1) = 0.2;
    at(20.0, 5.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, 0.2);
}

TEST_F(Suxz, StrengthLinesAreUsedWhenTheMaterialAsksForThem) {
    twoStrengthLines();
    at(20.0, 5.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    SOLPRP.MAT(MAT16, 1) = 1.0;
    at(20.0, 5.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, 45.0);
    EXPECT_DOUBLE_EQ(su, 36.0);
    SOLPRP.MAT(MAT16, 1) = 0.4;
    at(20.0, 5.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, 20.0);
}

TEST_F(Suxz, StrengthLinesTakeTheSignOfTheMaterial) {
    twoStrengthLines();
    SOLPRP.MAT(MAT14, 1) = -0.05;
    SOLPRP.MAT(ISOTRP, 1) = 1.0;
    at(20.0, 5.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, -25.05);
    EXPECT_DOUBLE_EQ(su, -25.05);
}

TEST_F(Suxz, StrengthLineFailureIsReturnedPlusOneHundred) {
    twoStrengthLines();
    ISOLPR.NSUPT(1) = 0;
    SOLPRP.MAT(MAT14, 1) = 0.0;
    at(20.0, 5.0, 0.0);
    EXPECT_EQ(MASTER.IERR, 102);
    EXPECT_EQ(su0, 0.0);
    EXPECT_EQ(su, 0.0);
}

TEST_F(Suxz, NodeStrengthsAtTheCentreOfAnElementAddTheMeanOfItsCorners) {
    ISOLPR.NSUNOD = IGEOMS.NNODE;
    SOLPRP.SUNOD(1) = 10.0;
    SOLPRP.SUNOD(2) = 20.0;
    SOLPRP.SUNOD(4) = 30.0;
    SOLPRP.SUNOD(5) = 60.0;
    at(5.0, 7.5, kPi * 0.25);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_DOUBLE_EQ(su0, 50.0);
    EXPECT_DOUBLE_EQ(su, 75.0);
}

TEST_F(Suxz, NodeStrengthsAreWeightedByTheInverseSquareOfTheDistance) {
    ISOLPR.NSUNOD = IGEOMS.NNODE;
    SOLPRP.SUNOD(1) = 10.0;
    SOLPRP.SUNOD(2) = 20.0;
    SOLPRP.SUNOD(4) = 30.0;
    SOLPRP.SUNOD(5) = 60.0;
    SOLPRP.MAT(MAT14, 1) = 0.0;
    SOLPRP.MAT(ISOTRP, 1) = 1.0;
    const double weighted = 10.0 / 5.0 + 20.0 / 20.0 + 30.0 / 65.0 + 60.0 / 80.0;
    const double weights = 1.0 / 5.0 + 1.0 / 20.0 + 1.0 / 65.0 + 1.0 / 80.0;
    at(2.0, 9.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, weighted / weights);
}

TEST_F(Suxz, BaseValueStrengthLinesAndNodeStrengthsAddUp) {
    twoStrengthLines();
    SOLPRP.MAT(MAT16, 1) = 1.0;
    ISOLPR.NSUNOD = IGEOMS.NNODE;
    for (int node = 1; node <= IGEOMS.NNODE; ++node) SOLPRP.SUNOD(node) = 4.0;
    at(20.0, 5.0, 0.0);
    EXPECT_DOUBLE_EQ(su0, 49.0);
}

TEST_F(Suxz, TheMaterialAtThePointDecides) {
    ISOLPR.NMAT = 2;
    IGEOMS.NLAYER = 2;
    GEOMSH.ZLAYER(1) = 3.0;
    GEOMSH.ZLAYER(2) = 100.0;
    IGEOMS.LAYMAT(1) = 1;
    IGEOMS.LAYMAT(2) = 2;
    SOLPRP.MAT(MAT14, 2) = 40.0;
    SOLPRP.MAT(ISOTRP, 2) = 1.0;
    at(5.0, 5.0, kPi * 0.25);
    EXPECT_DOUBLE_EQ(su0, 40.0);
    EXPECT_DOUBLE_EQ(su, 40.0);
    at(5.0, 2.0, kPi * 0.25);
    EXPECT_DOUBLE_EQ(su0, 20.0);
    EXPECT_DOUBLE_EQ(su, 30.0);
}

TEST_F(Suxz, APointOutsideTheMeshIsTheLocateError) {
    at(50.0, 5.0, 0.0);
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(su0, 0.0);
    EXPECT_EQ(su, 0.0);
}
