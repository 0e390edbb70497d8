// PWP: pore water forces on the base and the right face of a slice, and where they act.
// Hydrostatic cases are checked against the closed forms of their pressure triangles and
// trapezoids; the general model against pressures that vary linearly with depth.

#include <gtest/gtest.h>

#include <cmath>

#include "records.h"
#include "slices/slices.h"
#include "slice_world.h"

using kalmo_test::setBaseTerms;
using kalmo_test::setSlice;
using kalmo_test::simpson;
using kalmo_test::SliceWorld;

namespace {

class Pwp : public ::testing::Test {
protected:
    void SetUp() override {
        WATER1.ZWATER = 3.0;
        WATER1.GAMWAT = 10.0;
        WATER1.PWPMIN = 0.0;
    }
    void place(int I, double x1, double x2, double zTop1, double zTop2, double zBase3, double zBase4) {
        setSlice(I, x1, x2, zTop1, zTop2, zBase3, zBase4);
        setBaseTerms(I);
    }
    SliceWorld world;
};

}  // namespace

TEST_F(Pwp, SliceCrossingTheWaterLevelCarriesTrapezoidAndTriangleOfPressure) {
    // Base from corner 4 (0, 4) down to corner 3 (2, 6), wholly below the level z = 3:
    // pressures 10 and 30 at its ends. Face 2 from z = 0 to 6, wet from z = 3 down.
    place(1, 0.0, 2.0, 0.0, 0.0, 6.0, 4.0);
    PWP(1);
    ASSERT_EQ(MASTER.IERR, 0);
    double length = std::sqrt(8.0);
    EXPECT_NEAR(SURF.U3(1), (10.0 + 30.0) / 2.0 * length, 1e-12);
    // Trapezoid centroid from the corner-3 end: L (u3 + 2 u4) / (3 (u3 + u4)).
    EXPECT_NEAR(SURF.P(1), length * (30.0 + 2.0 * 10.0) / (3.0 * 40.0), 1e-12);
    // Face 2: triangle of height 3 with 30 at its foot; resultant at a third of its height.
    EXPECT_NEAR(SURF.U2(1), 0.5 * 30.0 * 3.0, 1e-12);
    EXPECT_NEAR(SURF.E2(1), 1.0, 1e-12);
}

TEST_F(Pwp, FaceWhollyBelowTheWaterCarriesATrapezoidOfPressure) {
    // Face 2 from z = 4 (10) to z = 7 (40); flat base at z = 7.
    place(1, 0.0, 2.0, 4.0, 4.0, 7.0, 7.0);
    PWP(1);
    EXPECT_NEAR(SURF.U2(1), (10.0 + 40.0) / 2.0 * 3.0, 1e-12);
    EXPECT_NEAR(SURF.E2(1), 3.0 * (40.0 + 2.0 * 10.0) / (3.0 * 50.0), 1e-12);
    EXPECT_NEAR(SURF.U3(1), 40.0 * 2.0, 1e-12);
    EXPECT_NEAR(SURF.P(1), 1.0, 1e-12);
}

TEST_F(Pwp, BaseWhollyAboveTheWaterGetsNoWaterForces) {
    SURF.U2(1) = SURF.U3(1) = SURF.P(1) = SURF.E2(1) = 7.0;  // left from an earlier surface
    place(1, 0.0, 2.0, 0.0, 0.0, 2.9, 2.5);
    PWP(1);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(SURF.U3(1), 0.0);
    EXPECT_EQ(SURF.P(1), 0.0);
    EXPECT_EQ(SURF.U2(1), 0.0);
    EXPECT_EQ(SURF.E2(1), 0.0);
}

TEST_F(Pwp, BaseCrossingTheLevelIsWettedBelowTheCrossingOnly) {
    // Base from (0, 2) to (2, 6) crosses z = 3 at a quarter of its length from corner 4.
    place(1, 0.0, 2.0, 0.0, 0.0, 6.0, 2.0);
    PWP(1);
    double length = std::sqrt(4.0 + 16.0);
    double wetted = 0.75 * length;
    EXPECT_NEAR(SURF.U3(1), 0.5 * 30.0 * wetted, 1e-12);
    EXPECT_NEAR(SURF.P(1), wetted / 3.0, 1e-12);
}

TEST_F(Pwp, BaseRisingToTheRightIsMeasuredFromCornerThree) {
    // Corner 4 at (0, 8) is the deeper end, corner 3 at (3, 2) lies above the level z = 3.
    place(1, 0.0, 3.0, 0.0, 0.0, 2.0, 8.0);
    PWP(1);
    double length = std::sqrt(9.0 + 36.0);
    double wetted = (8.0 - 3.0) / 6.0 * length;
    EXPECT_NEAR(SURF.U3(1), 0.5 * 50.0 * wetted, 1e-12);
    // The triangle's resultant lies a third of the wetted length from corner 4.
    EXPECT_NEAR(SURF.P(1), length - wetted / 3.0, 1e-12);
    // Corner 3 is above the water: the face formula runs with a negative wetted height and a
    // zero pressure at both ends, which leaves the smallest resultant.
    EXPECT_NEAR(SURF.U2(1), 1.0E-6f, 1e-18);
}

TEST_F(Pwp, NegativePorePressureZoneReachesAboveTheWaterLevel) {
    // p0 = -20 with gamma 10 counts from z = 1, two above the level z = 3.
    WATER1.PWPMIN = -20.0;
    place(1, 0.0, 2.0, 0.0, 0.0, 6.0, 4.0);
    PWP(1);
    double length = std::sqrt(8.0);
    double suctionFree = (10.0 + 30.0) / 2.0 * length;
    EXPECT_NEAR(SURF.U3(1), suctionFree, 1e-12);  // the base lies wholly below the level
    // Face 2 is counted from z = 1, where the pressure is -20, down to 30 at z = 6.
    auto u = [](double z) { return (z - 3.0) * 10.0; };
    double expected = simpson(u, 1.0, 6.0);
    EXPECT_NEAR(SURF.U2(1), expected, 1e-12);
    EXPECT_LT(SURF.U2(1), 0.5 * 30.0 * 3.0);
    double moment = simpson([&](double z) { return u(z) * (6.0 - z); }, 1.0, 6.0);
    EXPECT_NEAR(SURF.E2(1), moment / expected, 1e-12);
}

TEST_F(Pwp, NegativePorePressureOnABaseCrossingTheCountedZone) {
    WATER1.PWPMIN = -10.0;  // counted from z = 2
    place(1, 0.0, 4.0, 0.0, 0.0, 6.0, 0.0);
    PWP(1);
    double length = std::sqrt(16.0 + 36.0);
    double wetted = (6.0 - 2.0) / 6.0 * length;
    // Pressure -10 at the top of the counted part, 30 at corner 3: less than hydrostatic.
    EXPECT_NEAR(SURF.U3(1), (30.0 - 10.0) / 2.0 * wetted, 1e-12);
    EXPECT_LT(SURF.U3(1), 0.5 * 30.0 * (6.0 - 3.0) / 6.0 * length);
}

namespace {

// The general model steps along base and face in single-precision fifths and tenths, so its
// sums agree with the exact integrals to about 1e-8 relative.
constexpr double kStepTolerance = 1e-5;

// The general model with a pore pressure of 10 z below the ground surface z = 0.
void linearPressureField() {
    IWATER.IDPWP = 2;
    WATER1.ZWATER = 0.0;
    WATER1.GAMWAT = 10.0;
    WATER1.GAMPWP = 10.0;
    WATER1.PWPMIN = 0.0;
}

}  // namespace

TEST_F(Pwp, GeneralModelSumsPressuresAlongBaseAndFace) {
    linearPressureField();
    place(1, 0.0, 3.0, 1.0, 2.0, 8.0, 5.0);
    PWP(1);
    ASSERT_EQ(MASTER.IERR, 0);
    double length = std::sqrt(9.0 + 9.0);
    // Base: 50 at corner 4, 80 at corner 3.
    EXPECT_NEAR(SURF.U3(1), (50.0 + 80.0) / 2.0 * length, kStepTolerance);
    EXPECT_NEAR(SURF.P(1), length * (80.0 + 2.0 * 50.0) / (3.0 * 130.0), kStepTolerance);
    // Face 2 from z = 2 (20) to 8 (80).
    EXPECT_NEAR(SURF.U2(1), (20.0 + 80.0) / 2.0 * 6.0, kStepTolerance);
    EXPECT_NEAR(SURF.E2(1), 6.0 * (80.0 + 2.0 * 20.0) / (3.0 * 100.0), kStepTolerance);
}

TEST_F(Pwp, GeneralModelFailureAtAPointIsReportedPlusOneHundred) {
    linearPressureField();
    place(1, 99.0, 101.0, 1.0, 2.0, 8.0, 5.0);  // corner 3 lies outside the mesh
    PWP(1);
    EXPECT_EQ(MASTER.IERR, 101);
}

TEST_F(Pwp, GeneralModelWithADilatantMaterialLeavesThePressuresToTheUpdate) {
    linearPressureField();
    MASTER.IUPDAT = 1;
    SURF.U2(1) = SURF.U3(1) = SURF.P(1) = SURF.E2(1) = 7.0;
    place(1, 0.0, 3.0, 1.0, 2.0, 8.0, 5.0);
    PWP(1);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(SURF.U3(1), 0.0);
    EXPECT_EQ(SURF.P(1), 0.0);
    EXPECT_EQ(SURF.U2(1), 0.0);
    EXPECT_EQ(SURF.E2(1), 0.0);
}

namespace {

// General surface 2 in use, points at x = 0, 2, 4, 6 with pore pressures 10, 20, 30, 40.
void generalSurface() {
    MASTER.NTYP = 1;
    IGENER.IGEN = 2;
    IGENER.NPGEN(2) = 4;
    for (int k = 1; k <= 4; ++k) {
        GENERL.XGEN(k, 2) = 2.0 * (k - 1);
        GENERL.PGEN(k, 2) = 10.0 * k;
    }
}

}  // namespace

TEST_F(Pwp, GeneralSurfacePressuresAreAddedOnItsOwnSegments) {
    linearPressureField();
    generalSurface();
    MASTER.NSLREQ = 0;
    MASTER.NUMSLC = 3;
    place(2, 2.0, 4.0, 0.0, 0.0, 6.0, 6.0);
    PWP(2);
    ASSERT_EQ(MASTER.IERR, 0);
    // Model part: 60 along the flat base of length 2, and 10 z on the face from 0 to 6.
    double base = 60.0 * 2.0;
    double face = 0.5 * 60.0 * 6.0;
    // Segment 2 carries the value of point 2 (20) along its base, and a triangle on face 2
    // up to the mean of points 2 and 3 (25).
    double baseAdded = 20.0 * 2.0;
    EXPECT_NEAR(SURF.U3(2), base + baseAdded, kStepTolerance);
    EXPECT_NEAR(SURF.P(2), (20.0 * 4.0 / 2.0 + 1.0 * base) / (base + baseAdded), kStepTolerance);
    double faceAdded = 25.0 * 6.0 / 2.0;
    EXPECT_NEAR(SURF.U2(2), face + faceAdded, kStepTolerance);
    EXPECT_NEAR(SURF.E2(2), (faceAdded * 2.0 + 2.0 * face) / (face + faceAdded), kStepTolerance);
}

TEST_F(Pwp, GeneralSurfacePressuresAreInterpolatedAtTheSliceSides) {
    linearPressureField();
    generalSurface();
    MASTER.NSLREQ = 5;
    MASTER.NUMSLC = 5;
    place(1, 1.0, 4.0, 0.0, 0.0, 3.0, 3.0);
    PWP(1);
    ASSERT_EQ(MASTER.IERR, 0);
    double base = 30.0 * 3.0;      // model: 30 along the flat base at z = 3
    double face = 0.5 * 30.0 * 3.0;
    double left = 15.0, right = 30.0;
    double length = 3.0;
    double u3 = base + (left + right) / 2.0 * length;
    EXPECT_NEAR(SURF.U3(1), u3, kStepTolerance);
    // The triangular part of the added pressure enters this sum at 0.6667 of the base length.
    double p = ((right - left) / 2.0 * length * length * 0.6667f + left * length * length / 2.0 + 1.5 * base) / u3;
    EXPECT_NEAR(SURF.P(1), p, kStepTolerance);
    double faceAdded = right * 3.0 / 2.0;
    EXPECT_NEAR(SURF.U2(1), face + faceAdded, kStepTolerance);
    EXPECT_NEAR(SURF.E2(1), (faceAdded * 1.0 + 1.0 * face) / (face + faceAdded), kStepTolerance);
}

TEST_F(Pwp, GeneralSurfaceInterpolationFailureIsReportedPlusOneHundred) {
    linearPressureField();
    generalSurface();
    GENERL.XGEN(3, 2) = GENERL.XGEN(2, 2);  // two equal abscissas
    MASTER.NSLREQ = 5;
    MASTER.NUMSLC = 5;
    place(1, 1.0, 4.0, 0.0, 0.0, 3.0, 3.0);
    PWP(1);
    EXPECT_EQ(MASTER.IERR, 102);
    EXPECT_NE(world.console().find(" ***** SR/PWP PROBLEM WHEN COMPUTING GEN SURF PWP IERR,SLICE,XVALUE ="),
              std::string::npos);
}

TEST_F(Pwp, ChangingToAnotherSurfaceLeavesNothingBehind) {
    place(1, 0.0, 2.0, 0.0, 0.0, 6.0, 4.0);
    PWP(1);
    place(1, 0.0, 2.0, 0.0, 0.0, 2.5, 2.0);
    PWP(1);
    EXPECT_EQ(SURF.U3(1), 0.0);
    EXPECT_EQ(SURF.U2(1), 0.0);
    EXPECT_EQ(SURF.P(1), 0.0);
    EXPECT_EQ(SURF.E2(1), 0.0);
}
