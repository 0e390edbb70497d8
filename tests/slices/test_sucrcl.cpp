// SUCRCL: an undrained circle solved by the moments about its centre, one slice worked by hand,
// and the markers of circles with no or a reversed driving moment.

#include <gtest/gtest.h>

#include <cmath>

#include "slices/slice_world.h"

using namespace kalmo_test;

namespace {

const double kPi = 3.14159265358979323846;

class SucrclTest : public ::testing::Test, public SliceWorld {
protected:
    SucrclTest() {
        // Two layers: material 1 (15 kN/m3) down to z = 6.8, material 2 (20 kN/m3) below.
        ISOLPR.NMAT = 2;
        IGEOMS.NLAYER = 2;
        GEOMSH.ZLAYER(1) = 6.8;
        GEOMSH.ZLAYER(2) = 50.0;
        IGEOMS.LAYMAT(1) = 1;
        IGEOMS.LAYMAT(2) = 2;
        SOLPRP.MAT(GAMTOT, 1) = 15.0;
        SOLPRP.MAT(GAMTOT, 2) = 20.0;
        LOAD.LDAT(2) = 1.0;
        LOAD.LDAT(3) = 0.1;
        // One slice under a circle of radius 10 about the origin, its base the chord from
        // (-8, 6) to (6, 8), a quarter of the circle.
        MASTER.NUMSLC = 1;
        SURF.SPAR(1) = 0.0;
        SURF.SPAR(2) = 0.0;
        setSlice(1, -8.0, 6.0, 0.0, 0.0, 8.0, 6.0);
        SURF.XX(5, 1) = -3.0;
        SURF.ZZ(5, 1) = 3.0;
        SURF.L34(1) = std::sqrt(200.0);
        SURF.C3(1) = 30.0;
        SURF.SS(1) = 5.0;
        SURF.HS(1) = 2.0;
        SURF.WZ(1) = 1000.0;
        SURF.WX(1) = 50.0;
        SURF.WM(1) = 100.0;
        SURF.P(1) = 7.0;
        SURF.E2(1) = 8.0;
        SURF.R(1) = 0.4;
    }
};

}  // namespace

TEST_F(SucrclTest, OneSliceByHandWithItsSegmentNailsAndEndFaceShear) {
    SURF.SNX(1) = 4.0;
    SURF.SNZ(1) = -2.0;
    SURF.SNM(1) = 3.0;
    SUCRCL();
    ASSERT_EQ(MASTER.IERR, 0);
    // The chord subtends 90 degrees: arc 10 pi/2; segment 100/2 (pi/2 - 1). The middle of the
    // base, (-1, 7), lies in material 2 although the segment reaches up into material 1.
    const double arc = 10.0 * kPi / 2.0;
    const double segment = 50.0 * (kPi / 2.0 - 1.0) * 20.0;
    const double shear = 30.0 * arc;
    // Nails at the load point (-3, 3): -(0 + 3)(-2) - (3 - 0) 4 - 3.
    const double resisting = 10.0 * shear + (10.0 - 2.0) * 5.0 + (6.0 - 12.0 - 3.0);
    // Loads at (-3, 3): -(3)(1000) - (3)(50) - 100; the segment at (-1, 7): -(1)(segment)
    // - (7)(0.1 segment).
    const double driving = -3000.0 - 150.0 - 100.0 - segment - 7.0 * 0.1 * segment;
    const double SF = resisting / -driving;
    EXPECT_NEAR(MASTER.SF, SF, 1e-12 * SF);
    EXPECT_NEAR(SURF.SPAR(4), resisting, 1e-9);
    EXPECT_NEAR(SURF.SPAR(5), driving, 1e-9);
    EXPECT_NEAR(SURF.S(1), shear / SF, 1e-9);
    EXPECT_EQ(SURF.P(1), 0.0);
    EXPECT_EQ(SURF.E2(1), 0.0);
    EXPECT_EQ(SURF.R(1), 0.0);
    EXPECT_EQ(MASTER.ICIRCM, 1);
}

TEST_F(SucrclTest, NoDrivingMomentGivesTheMarker) {
    SURF.WZ(1) = 0.0;
    SURF.WX(1) = 0.0;
    SURF.WM(1) = 0.0;
    SOLPRP.MAT(GAMTOT, 2) = 0.0;
    SUCRCL();
    EXPECT_EQ(SURF.SPAR(5), 0.0);
    EXPECT_EQ(MASTER.SF, 999.9990234375);
}

TEST_F(SucrclTest, AReversedDrivingMomentGivesTheMarkerNotANegativeFactor) {
    // The weight right of the centre turns the body the other way.
    SURF.XX(5, 1) = 30.0;
    SUCRCL();
    EXPECT_GT(SURF.SPAR(5), 0.0);
    EXPECT_EQ(MASTER.SF, 999.9990234375);
    EXPECT_NEAR(SURF.S(1), 30.0 * 10.0 * kPi / 2.0 / 999.9990234375, 1e-9);
}

TEST_F(SucrclTest, AFactorAboveOneThousandGivesTheMarker) {
    SURF.C3(1) = 1.0E6;
    SUCRCL();
    EXPECT_EQ(MASTER.SF, 999.9990234375);
}

TEST_F(SucrclTest, AMaterialThatCannotBeFoundIsReported) {
    // No layers and a base middle outside the mesh of x -100..100.
    IGEOMS.NLAYER = 0;
    SURF.SPAR(1) = 500.0;
    setSlice(1, 492.0, 506.0, 0.0, 0.0, 8.0, 6.0);
    SUCRCL();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(console().find(" **** SR/SUCRCL : ERROR IN SR/LOCATE  XX,ZZ,IERR="), std::string::npos) << console();
    EXPECT_EQ(MASTER.ICIRCM, 0);
}
