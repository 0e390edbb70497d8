// Soil nails in the analysis of a surface: the solver driver adds the nail forces to the slices
// of every surface, and the safety factor answers to them as the mechanics says it must.
//
// The section is the dry 1:2 slope of SolverWorld (ground z = 0 left of x = 0, falling to
// z = 10 at x = 20, one material of 20 kN/m3), force equilibrium with no interslice shear.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "records.h"
#include "slices/slices.h"
#include "solver/solver_world.h"

using namespace kalmo_test;

namespace {

class NailedSlope : public ::testing::Test, public SolverWorld {
protected:
    // A horizontal nail with its head on the slope face at depth z, 12 m long into the slope;
    // bond 100 kPa on a 0.1 m grout body, no free length, no head plate, spacing 1.
    static void horizontalNail(int i, double z, double yieldForce) {
        const double headX = 2.0 * z;  // the face is z = x/2
        const double values[] = {headX, z, headX - 12.0, z, 1.0, 0.1, 100.0, 100.0, 0.0, yieldForce, 0.0, 0.0, 0.0};
        for (int k = 1; k <= 13; ++k) SNAILS.SN(i, k) = values[k - 1];
        if (ISNAIL.NNAILS < i) ISNAIL.NNAILS = i;
    }
    // A run without nails: the slices never carry a nail load.
    static void noNails() {
        ISNAIL.NNAILS = 0;
        SURF.SNX.fill(0.0);
        SURF.SNZ.fill(0.0);
        SURF.SNM.fill(0.0);
    }
    // The 1988-2002 method searches a factor on the roughness, which must not be zero.
    static void useMethod(int method) {
        MASTER.METHOD = method;
        MASTER.R1 = method == 0 ? 0.5 : 0.0;
        MASTER.R2 = MASTER.R1;
    }
    static void scaleCapacities(double factor) {
        for (int i = 1; i <= ISNAIL.NNAILS; ++i)
            for (int k : {SNTAUT, SNTAUC, SNFY, SNFH}) SNAILS.SN(i, k) *= factor;
    }
};

// The plane z = 2.5 + x/4: it enters 0.5 m (the crack depth) below the crest at x = -8 and
// leaves through the slope face at x = 10, then runs up into the air.
const std::vector<Point> kPlane = {{-12.0, -0.5}, {0.0, 2.5}, {12.0, 5.5}, {16.0, 3.0}};

// A curved surface leaving the face at x = 14.5.
const std::vector<Point> kCurved = {{-10.0, -1.0}, {0.0, 3.0}, {10.0, 6.5}, {16.0, 7.5}};

// The factor of safety of a rigid wedge on a plane by force equilibrium: weight W, base length
// L and inclination beta (deeper to the right, the way the wedge slides), cohesion c and
// friction tanPhi, and a nail force (nailX, nailZ) per metre that, like the base shear, is
// mobilised by dividing it by F. Vertical: W + nailZ/F = N cos b + S sin b; horizontal:
// nailX/F + N sin b - S cos b = 0; S = (c L + N tanPhi)/F. Bisection on F.
double wedgeFactor(double W, double L, double beta, double c, double tanPhi, double nailX, double nailZ) {
    const double sinB = std::sin(beta), cosB = std::cos(beta);
    auto outOfBalance = [&](double F) {
        const double N = (W + nailZ / F - c * L * sinB / F) / (cosB + tanPhi * sinB / F);
        const double S = (c * L + N * tanPhi) / F;
        return nailX / F + N * sinB - S * cosB;  // the horizontal push the base does not take
    };
    double low = 0.1, high = 50.0;
    EXPECT_LT(outOfBalance(low), 0.0);
    EXPECT_GT(outOfBalance(high), 0.0);
    for (int k = 0; k < 200; ++k) {
        const double mid = 0.5 * (low + high);
        if (outOfBalance(mid) < 0.0) low = mid;
        else high = mid;
    }
    return 0.5 * (low + high);
}

}  // namespace

TEST_F(NailedSlope, AYieldingNailAcrossAPlaneGivesTheWedgeFactor) {
    SOLPRP.MAT(COHESN, 1) = 2.0;
    // At z = 3 the nail runs from the face at x = 6 to x = -6 and crosses the plane at x = 2:
    // 4 m inside (Qi = 4 pi 0.1 100 = 126) and 8 m beyond (251): the bar yields at 80 and pulls
    // the wedge back with 80 kN per metre, horizontally.
    horizontalNail(1, 3.0, 80.0);
    solve(kPlane);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    ASSERT_EQ(ISNAIL.INAIL(1, SNMODE), 5);
    const double withNail = MASTER.SF;

    // The wedge between the ground and the plane from x = -8 to the exit at x = 10:
    // corners (-8, 0), (0, 0), (10, 5), (-8, 0.5); area by the shoelace formula 49/2.
    const double W = 20.0 * 24.5;
    const double L = std::hypot(18.0, 4.5);
    const double beta = std::atan(0.25);
    const double expected = wedgeFactor(W, L, beta, 2.0, kTanPhi, -80.0, 0.0);
    EXPECT_NEAR(withNail, expected, 0.001 * expected);

    // Without the nail the same wedge, the same way.
    noNails();
    solve(kPlane);
    const double bare = wedgeFactor(W, L, beta, 2.0, kTanPhi, 0.0, 0.0);
    EXPECT_NEAR(MASTER.SF, bare, 0.001 * bare);
    EXPECT_GT(withNail, MASTER.SF);
}

TEST_F(NailedSlope, DeactivatedNailsGiveTheFactorWithoutNails) {
    for (int method : {-1, 0, 1, 2, 3}) {
        useMethod(method);
        noNails();
        solve(kCurved);
        ASSERT_EQ(MASTER.IERR, 0) << console();
        const double bare = MASTER.SF;

        horizontalNail(1, 2.0, 200.0);
        horizontalNail(2, 4.0, 200.0);
        horizontalNail(3, 6.0, 200.0);
        for (int i = 1; i <= 3; ++i) SNAILS.SN(i, SNV1) = -1.0;
        solve(kCurved);
        ASSERT_EQ(MASTER.IERR, 0) << console();
        EXPECT_EQ(MASTER.SF, bare) << method;

        for (int i = 1; i <= 3; ++i) SNAILS.SN(i, SNV1) = 0.0;
        solve(kCurved);
        EXPECT_GT(MASTER.SF, bare) << method;
    }
}

TEST_F(NailedSlope, StrongerNailsNeverLowerTheFactor) {
    for (int method : {-1, 0, 1, 2, 3}) {
        useMethod(method);
        horizontalNail(1, 2.0, 40.0);
        horizontalNail(2, 4.0, 40.0);
        horizontalNail(3, 6.0, 40.0);
        scaleCapacities(0.25);
        double previous = 0.0;
        for (double factor : {1.0, 2.0, 2.0, 2.0, 10.0}) {
            scaleCapacities(factor);
            solve(kCurved);
            ASSERT_EQ(MASTER.IERR, 0) << console();
            EXPECT_GE(MASTER.SF, previous - 1e-9) << method << " x" << factor;
            previous = MASTER.SF;
        }
    }
}

TEST_F(NailedSlope, TheBestSurfaceKeepsItsNailResults) {
    horizontalNail(1, 3.0, 80.0);
    solve(kPlane);
    ASSERT_EQ(MASTER.KBEST, 1);
    EXPECT_EQ(IBES.INAIL(1, SNMODE), 5);
    EXPECT_EQ(BEST.SN(1, SNFAX), -80.0);
}

TEST_F(NailedSlope, ANailErrorEndsTheSurfaceWithoutAWordFromTheDriver) {
    horizontalNail(1, 3.0, 80.0);
    SNAILS.SN(1, SNXT) = SNAILS.SN(1, SNXH);  // a nail of no length
    solve(kPlane);
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NE(console().find(" **** SR/NAILS : Error return from SR/INTBL1"), std::string::npos);
    EXPECT_EQ(console().find("SR/SOLVER"), std::string::npos);
    EXPECT_EQ(MASTER.KBEST, 0);
}

TEST_F(NailedSlope, ARestoredBestSurfaceCarriesTheNailMomentsOfTheSurfaceAnalysedLast) {
    horizontalNail(1, 3.0, 80.0);
    horizontalNail(2, 5.0, 80.0);
    solve(kPlane);
    ASSERT_EQ(MASTER.KBEST, 1);
    const SurfRecord plane = SURF;
    MASTER.BESTSF = 0.0;  // nothing beats the plane from now on
    solve(kCurved);
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const SurfRecord curved = SURF;
    bool differ = false;
    for (int I = 1; I <= MAXSLC; ++I) differ = differ || curved.SNM(I) != plane.SNM(I);
    ASSERT_TRUE(differ);

    RSTBST();
    for (int I = 1; I <= MASTER.NUMSLC; ++I) {
        EXPECT_EQ(SURF.SNX(I), plane.SNX(I)) << I;  // the plane's loads come back
        EXPECT_EQ(SURF.SNZ(I), plane.SNZ(I)) << I;
        EXPECT_EQ(SURF.SNM(I), curved.SNM(I)) << I;  // the moments stay those of the curve
    }
}
