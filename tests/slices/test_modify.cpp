// MODIFY: a steep exit end rebuilt along the passive plane at 45 - phi_m/2, with
// tan phi_m = tan phi / F, on a level ground at z = 0 of one material (tan phi = 0.5).

#include <gtest/gtest.h>

#include <cmath>

#include "slices/slice_world.h"
#include "solver/solver_world.h"

using namespace kalmo_test;

namespace {

const double kPi = 3.14159265358979323846;
const double kDegree = kPi / 180.0;

// The passive angle of tan phi = 0.5 mobilised with F, in degrees.
double passiveAngle(double F) { return 45.0 - 0.5 * std::atan(0.5 / F) / kDegree; }

class Modify : public ::testing::Test, public SliceWorld {
protected:
    Modify() { BEST.SF = 98.0; }
    // Four slices: down from (0, 0.5) to (4, 4), level to (8, 4), then up at `exitRise`
    // degrees to x = 10 and on to the ground.
    static void slices(double exitRise) {
        MASTER.NUMSLC = 4;
        const double zRise = 4.0 - 2.0 * std::tan(exitRise * kDegree);
        setSlice(1, 0.0, 4.0, 0.0, 0.0, 4.0, 0.5);
        setSlice(2, 4.0, 8.0, 0.0, 0.0, 4.0, 4.0);
        setSlice(3, 8.0, 10.0, 0.0, 0.0, zRise, 4.0);
        setSlice(4, 10.0, 10.0 + zRise / std::tan(exitRise * kDegree), 0.0, 0.0, 0.001, zRise);
    }
    // Slices 3 and 4 lie on the plane from (8, 4) rising at `angle` degrees to the ground,
    // ending 0.002 below it, at equal widths; each slice's area and load point are its own.
    static void expectRebuilt(double angle) {
        const double xe = 8.0 + 4.0 / std::tan(angle * kDegree);
        const double ze = static_cast<double>(0.002f);
        const double xMid = 0.5 * (8.0 + xe), zMid = 0.5 * (4.0 + ze);
        EXPECT_NEAR(SURF.XX(2, 3), xMid, 1e-12);
        EXPECT_NEAR(SURF.ZZ(3, 3), zMid, 1e-12);
        EXPECT_NEAR(SURF.XX(1, 4), xMid, 1e-12);
        EXPECT_NEAR(SURF.ZZ(4, 4), zMid, 1e-12);
        // The last slice closes on the ground, its right face 0.002 high.
        EXPECT_NEAR(SURF.XX(2, 4), xe, 1e-12);
        EXPECT_NEAR(SURF.XX(3, 4), xe, 1e-12);
        EXPECT_EQ(SURF.ZZ(2, 4), 0.0);
        EXPECT_NEAR(SURF.ZZ(3, 4), ze, 1e-15);
        for (int i = 3; i <= 4; ++i) {
            Polygon shape = slicePolygon(SURF.XX(1, i), SURF.XX(2, i), SURF.ZZ(1, i), SURF.ZZ(2, i), SURF.ZZ(3, i),
                                         SURF.ZZ(4, i));
            double cx = 0.0, cz = 0.0;
            shape.centroid(cx, cz);
            EXPECT_NEAR(SURF.AREA(i), shape.area(), 1e-12) << i;
            EXPECT_NEAR(SURF.XX(5, i), cx, 1e-12) << i;
            EXPECT_NEAR(SURF.ZZ(5, i), cz, 1e-12) << i;
        }
    }
};

}  // namespace

TEST_F(Modify, AnExitSteeperThanThePassivePlaneIsRebuiltAlongIt) {
    slices(60.0);
    MODIFY();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.IMODIF, 1);
    // No best surface yet (98.0): F = 98, so the plane rises at nearly 45 degrees.
    expectRebuilt(passiveAngle(98.0));
    // Slices before the exit are untouched, and the base friction is the material's.
    EXPECT_EQ(SURF.XX(2, 2), 8.0);
    EXPECT_EQ(SURF.ZZ(3, 2), 4.0);
    for (int i = 1; i <= 4; ++i) EXPECT_DOUBLE_EQ(SURF.TAN3(i), 0.5) << i;
}

TEST_F(Modify, TheMobilisingFactorIsTheBestOneOfTheRun) {
    // A 35 degree exit is flatter than the passive plane of F = 98 (44.85 degrees) but steeper
    // than that of F = 1 (31.72 degrees) and of F = 1.25 (34.4 degrees).
    slices(35.0);
    MODIFY();
    EXPECT_EQ(MASTER.IMODIF, 0);
    BEST.SF = 1500.0;  // above 990: F = 1
    slices(35.0);
    MODIFY();
    EXPECT_EQ(MASTER.IMODIF, 1);
    expectRebuilt(passiveAngle(1.0));
    BEST.SF = 0.05;  // below 0.1: F = 1
    slices(35.0);
    MODIFY();
    expectRebuilt(passiveAngle(1.0));
    BEST.SF = 1.25;
    slices(35.0);
    MODIFY();
    expectRebuilt(passiveAngle(1.25));
}

TEST_F(Modify, ASurfaceWhoseBaseNeverRisesIsLeftAlone) {
    MASTER.NUMSLC = 2;
    setSlice(1, 0.0, 4.0, 0.0, 0.0, 4.0, 0.5);
    setSlice(2, 4.0, 8.0, 0.0, 0.0, 5.0, 4.0);
    MODIFY();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.IMODIF, 0);
    EXPECT_EQ(SURF.XX(2, 2), 8.0);
    EXPECT_EQ(SURF.ZZ(3, 2), 5.0);
}

TEST_F(Modify, APlaneMeetingTheGroundMoreThanTenTimesIsRefused) {
    // Six narrow ridges beyond x = 20 rise far above the plane: twelve crossings more.
    setGround({-100.0, 20.0, 20.5, 21.0, 21.5, 22.0, 22.5, 23.0, 23.5, 24.0, 24.5, 25.0, 25.5, 26.0, 100.0},
              {0.0, 0.0, -100.0, 0.0, -100.0, 0.0, -100.0, 0.0, -100.0, 0.0, -100.0, 0.0, -100.0, 0.0, 0.0});
    slices(60.0);
    MODIFY();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(console().find(" **** SR/MODIFY : NUMINT ERROR : NS,NUMINT=           3          13\n"),
              std::string::npos)
        << console();
}

TEST_F(Modify, WithALayerBoundaryOnTheWayTheBordersKeepTheirDepths) {
    // A layer boundary at z = 2 crosses the exit; the border on it stays on it.
    IGEOMS.NLAYER = 2;
    GEOMSH.ZLAYER(1) = 2.0;
    GEOMSH.ZLAYER(2) = 50.0;
    IGEOMS.LAYMAT(1) = 1;
    IGEOMS.LAYMAT(2) = 1;
    BEST.SF = 1.0;
    MASTER.NUMSLC = 3;
    setSlice(1, 0.0, 8.0, 0.0, 0.0, 4.0, 0.5);
    setSlice(2, 8.0, 9.0, 0.0, 0.0, 2.0, 4.0);   // rises at 63 degrees to the boundary
    setSlice(3, 9.0, 9.5, 0.0, 0.0, 0.001, 2.0);
    MODIFY();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const double tanBeta = std::tan(passiveAngle(1.0) * kDegree);
    EXPECT_NEAR(SURF.XX(2, 2), 8.0 + 2.0 / tanBeta, 1e-12);
    EXPECT_EQ(SURF.ZZ(3, 2), 2.0);
    EXPECT_NEAR(SURF.XX(2, 3), 8.0 + 4.0 / tanBeta, 1e-12);
    EXPECT_NEAR(SURF.ZZ(3, 3), static_cast<double>(0.002f), 1e-15);
}

TEST_F(Modify, ABaseInNoMaterialOfTheMeshIsALocateError) {
    slices(60.0);
    SURF.XX(4, 1) = -500.0;  // outside the mesh
    SURF.XX(1, 1) = -500.0;
    MODIFY();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(console().find(" **** SR/MODIFY : ERROR FROM SR/LOCATE  XX,ZZ="), std::string::npos) << console();
}

namespace {
class ModifyInSolver : public ::testing::Test, public SolverWorld {};
}  // namespace

TEST_F(ModifyInSolver, TheSolverRebuildsTheExitWhenTheSwitchIsOn) {
    // A general surface through the slope that leaves the level toe ground (z = 10) steeply.
    const std::vector<Point> surface = {{-5, -1}, {0, 4}, {10, 11}, {20, 13}, {24, 12}, {25, 5}};
    MASTER.IDMOD = 0;
    solve(surface);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.IMODIF, 0);
    const double unmodified = MASTER.SF;

    MASTER.IDMOD = 1;
    solve(surface);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.IMODIF, 1);
    const int last = MASTER.NUMSLC;
    EXPECT_NEAR(SURF.ZZ(3, last), 10.0 + static_cast<double>(0.002f), 1e-9);
    // A flatter exit through the passive zone gives the toe more resistance.
    EXPECT_NE(MASTER.SF, unmodified);
}
