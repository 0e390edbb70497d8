// NAILS: the forces of the soil nails on the slices.
//
// Four slices of width 5 between x = 0 and 20 under level ground (z = 0), their bases on the
// plane z = 1 + x/4 (going deeper to the right, so the soil above slides to the right and down);
// the shear-surface polyline is that plane from x = -10 to 30. The nails are placed by hand and
// every expected value is worked out here from the nail's geometry: where it crosses the plane,
// its bonded lengths on both sides, the pull-out capacities (length x pi x diameter x bond
// stress), and the force it puts on the sliding body. Two facts of statics carry the load
// checks: the axial loads all lie on the nail's line, so together they are the axial force
// along the nail, and their moment about any point is that of the axial force acting at the
// crossing; the lateral force acts at the crossing, normal to the nail.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "io/channels.h"
#include "records.h"
#include "slices/slice_world.h"
#include "slices/slices.h"

namespace {

using kalmo_test::occurrences;
using kalmo_test::setBaseTerms;
using kalmo_test::setSlice;
using kalmo_test::SliceWorld;

constexpr double kPi = 3.14159265358979323846;

double baseDepth(double x) { return 1.0 + 0.25 * x; }

struct NailData {
    double headX, headZ, tipX, tipZ;
    double spacing = 1.0, diameter = 0.1, bondTension = 100.0, bondCompression = 100.0;
    double freeLength = 0.0, yieldForce = 1000.0, lateralForce = 0.0, headCapacity = 0.0;
    double further1 = 0.0;
};

void putNail(int i, const NailData& n) {
    const double values[] = {n.headX,        n.headZ,           n.tipX,       n.tipZ,      n.spacing,
                             n.diameter,     n.bondTension,     n.bondCompression, n.freeLength, n.yieldForce,
                             n.lateralForce, n.headCapacity,    n.further1};
    for (int k = 1; k <= 13; ++k) SNAILS.SN(i, k) = values[k - 1];
    if (ISNAIL.NNAILS < i) ISNAIL.NNAILS = i;
}

// Where a straight nail crosses the base plane z = 1 + x/4.
void crossing(const NailData& n, double& x, double& z) {
    // Points of the nail: head + t (tip - head); solve headZ + t dz = 1 + (headX + t dx)/4.
    const double dx = n.tipX - n.headX, dz = n.tipZ - n.headZ;
    const double t = (baseDepth(n.headX) - n.headZ) / (dz - 0.25 * dx);
    x = n.headX + t * dx;
    z = n.headZ + t * dz;
}

class Nails : public ::testing::Test, public SliceWorld {
protected:
    Nails() {
        MASTER.NUMSLC = 4;
        for (int I = 1; I <= 4; ++I) {
            const double left = 5.0 * (I - 1), right = 5.0 * I;
            setSlice(I, left, right, 0.0, 0.0, baseDepth(right), baseDepth(left));
            setBaseTerms(I);
            SURF.BETA(I) = std::asin(SURF.SINB(I));
        }
        SURF.XS(1) = -10.0;
        SURF.ZS(1) = baseDepth(-10.0);
        SURF.XS(2) = 30.0;
        SURF.ZS(2) = baseDepth(30.0);
    }

    static void run() { NAILS(2); }

    // Sums over the slices: the nail load and its moment about the origin.
    static double sumX() {
        double sum = 0.0;
        for (int I = 1; I <= MASTER.NUMSLC; ++I) sum += SURF.SNX(I);
        return sum;
    }
    static double sumZ() {
        double sum = 0.0;
        for (int I = 1; I <= MASTER.NUMSLC; ++I) sum += SURF.SNZ(I);
        return sum;
    }
    static double momentAboutOrigin() {
        double sum = 0.0;
        for (int I = 1; I <= MASTER.NUMSLC; ++I)
            sum += SURF.SNM(I) + SURF.ZZ(5, I) * SURF.SNX(I) - SURF.XX(5, I) * SURF.SNZ(I);
        return sum;
    }
    static void expectNoLoads() {
        for (int I = 1; I <= MAXSLC; ++I) {
            EXPECT_EQ(SURF.SNX(I), 0.0) << I;
            EXPECT_EQ(SURF.SNZ(I), 0.0) << I;
            EXPECT_EQ(SURF.SNM(I), 0.0) << I;
        }
    }
    static void fillLoadsWithJunk() {
        for (int I = 1; I <= MAXSLC; ++I) {
            SURF.SNX(I) = 7.0;
            SURF.SNZ(I) = -7.0;
            SURF.SNM(I) = 70.0;
        }
    }
};

// ------------------------------------------------------------------------------------------
// How the nail fails
// ------------------------------------------------------------------------------------------

TEST_F(Nails, ACrossingWithinTheFreeLengthPutsAllTensionOnTheHead) {
    // Horizontal nail at z = 3 from the head at x = 20 to the tip at x = -4: it crosses the
    // plane at x = 8, 12 from the head, inside its free length of 13. No bond inside (Qi = 0);
    // the stable side holds 12 + 12 - 13 = 11 m of bond: Qe = 11 pi 0.1 100 = 345.6, more than
    // the head plate's 100, so the nail is pulled out through the sliding soil at its head
    // capacity, and all 100 act at the head.
    NailData n{20.0, 3.0, -4.0, 3.0};
    n.spacing = 2.0;
    n.freeLength = 13.0;
    n.headCapacity = 100.0;
    n.lateralForce = 6.0;
    putNail(1, n);
    run();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(ISNAIL.INAIL(1, SNMODE), 3);  // Internal/Tension
    EXPECT_EQ(ISNAIL.INAIL(1, SNDIR), -1);
    EXPECT_EQ(ISNAIL.INAIL(1, SNSLC), 2);   // x = 8 lies in slice 2 (5..10)
    EXPECT_DOUBLE_EQ(SNAILS.SN(1, SNLTOT), 24.0);
    EXPECT_DOUBLE_EQ(SNAILS.SN(1, SNLACT), 0.0);
    EXPECT_DOUBLE_EQ(SNAILS.SN(1, SNFAX), -100.0);
    EXPECT_DOUBLE_EQ(SNAILS.SN(1, SNFLAT), 6.0);

    // Head load at (20, 3), towards the tip, per metre of section: -100/2 in x, only on slice 4.
    EXPECT_DOUBLE_EQ(SURF.SNX(4), -50.0);
    EXPECT_DOUBLE_EQ(SURF.SNZ(4), 0.0);
    EXPECT_DOUBLE_EQ(SURF.SNM(4), (3.0 - SURF.ZZ(5, 4)) * -50.0);
    // Lateral load at the crossing (8, 3), normal to the horizontal nail: 6/2 upward.
    EXPECT_DOUBLE_EQ(SURF.SNX(2), 0.0);
    EXPECT_DOUBLE_EQ(SURF.SNZ(2), -3.0);
    EXPECT_DOUBLE_EQ(SURF.SNM(2), -(8.0 - SURF.XX(5, 2)) * -3.0);
    // No bond loads anywhere else.
    for (int I : {1, 3}) {
        EXPECT_EQ(SURF.SNX(I), 0.0) << I;
        EXPECT_EQ(SURF.SNZ(I), 0.0) << I;
        EXPECT_EQ(SURF.SNM(I), 0.0) << I;
    }
}

struct ModeCase {
    const char* name;
    NailData nail;
    int mode;
    int direction;
};

class NailModes : public Nails, public ::testing::WithParamInterface<ModeCase> {};

// The failure mode follows from the capacities worked out here, and the axial force is the
// smallest capacity, negative in tension.
TEST_P(NailModes, FollowFromTheSmallestCapacity) {
    const ModeCase c = GetParam();
    putNail(1, c.nail);
    run();
    ASSERT_EQ(MASTER.IERR, 0);

    double xc = 0.0, zc = 0.0;
    crossing(c.nail, xc, zc);
    const NailData& n = c.nail;
    const double Lh = std::hypot(n.headX - xc, n.headZ - zc);
    const double Lt = std::hypot(n.tipX - xc, n.tipZ - zc);
    const bool tension = c.direction < 0;
    const double perMetre = kPi * n.diameter * (tension ? n.bondTension : n.bondCompression);
    const double external = Lt * perMetre;  // all cases have Lh > Lf
    const double internal = (Lh - n.freeLength) * perMetre;
    const double second = tension ? n.headCapacity + internal : internal;
    const double force = std::fmin(std::fmin(external, second), n.yieldForce);

    EXPECT_EQ(ISNAIL.INAIL(1, SNMODE), c.mode);
    EXPECT_EQ(ISNAIL.INAIL(1, SNDIR), c.direction);
    EXPECT_NEAR(SNAILS.SN(1, SNFAX), tension ? -force : force, 1e-9 * force);
    const int mode = c.mode;
    if (mode == 1 || mode == 2) {
        EXPECT_NEAR(SNAILS.SN(1, SNLACT), Lt, 1e-12);
    }
    if (mode == 3 || mode == 4) {
        EXPECT_NEAR(SNAILS.SN(1, SNLACT), Lh - n.freeLength, 1e-12);
    }

    // The axial load on the sliding body: the force along the nail, towards the tip in tension
    // and away from it in compression, per metre of section.
    const double length = std::hypot(n.tipX - n.headX, n.tipZ - n.headZ);
    const double ux = (n.tipX - n.headX) / length, uz = (n.tipZ - n.headZ) / length;
    const double axial = (tension ? force : -force) / n.spacing;
    EXPECT_NEAR(sumX(), axial * ux, 1e-9 * force);
    EXPECT_NEAR(sumZ(), axial * uz, 1e-9 * force);
    EXPECT_NEAR(momentAboutOrigin(), zc * axial * ux - xc * axial * uz, 1e-8 * force);
}

// pi x 0.1 x 100 = 31.42 per metre of bond in every case.
INSTANTIATE_TEST_SUITE_P(
    Nails, NailModes,
    ::testing::Values(
        // Horizontal nail, head x = 19.5, tip x = 6, crossing x = 8: 2 m beyond the surface
        // (Qe = 62.8) against 11.5 m inside (361): pulled out of the stable soil. (The heads
        // and the nine bond loads of these nails keep off the slice borders, where a load
        // would count on both slices.)
        ModeCase{"ShortBondOnTheStableSideIsPulledOut", {19.5, 3.0, 6.0, 3.0}, 1, -1},
        // The same nail with a bar that yields at 20.
        ModeCase{"AWeakBarYields", [] { NailData n{19.5, 3.0, 6.0, 3.0}; n.yieldForce = 20.0; return n; }(), 5, -1},
        // Head x = 10.5, tip x = -10: 2.5 m inside (78.5, no head plate) against 18 m beyond
        // (565).
        ModeCase{"ShortBondInTheSlidingSoilIsPulledOut", {10.5, 3.0, -10.0, 3.0}, 3, -1},
        // A head plate of 600 makes the sliding side the stronger one (679).
        ModeCase{"AHeadPlateHoldsTheSlidingSide",
                 [] { NailData n{10.5, 3.0, -10.0, 3.0}; n.headCapacity = 600.0; return n; }(), 1, -1},
        // Inclined 45 degrees down to the right, along the sliding: compression. From (1, 0)
        // to (3.5, 2.5): crossing at x = 8/3, 2.36 m inside, 1.18 m beyond.
        ModeCase{"CompressionWithShortBondBeyond", {1.0, 0.0, 3.5, 2.5}, 2, 1},
        // From (6, 1) to (12, 7): crossing at x = 8, 2.83 m inside, 5.66 m beyond.
        ModeCase{"CompressionWithShortBondInside", {6.0, 1.0, 12.0, 7.0}, 4, 1},
        ModeCase{"CompressionYields", [] { NailData n{6.0, 1.0, 12.0, 7.0}; n.yieldForce = 30.0; return n; }(), 5,
                 1}),
    [](const ::testing::TestParamInfo<ModeCase>& info) { return std::string(info.param.name); });

// ------------------------------------------------------------------------------------------
// Where the loads go
// ------------------------------------------------------------------------------------------

TEST_F(Nails, TheLoadsAreTheNailForcesPerMetreOfSection) {
    // Inclined nail from (19, 2) to (-1, 5), free length 1, head plate 50, bar 300, lateral 10,
    // spacing 1.5. It crosses the plane at x = 9.625 (2 + 0.15 (19 - x) = 1 + x/4). Inside:
    // Qi = (9.48 - 1) 31.42 = 266; with the plate 316; beyond: Qe = 10.74 x 31.42 = 338: the
    // bar yields at 300. The bond inside carries 266, the head plate the other 34.
    NailData n{19.0, 2.0, -1.0, 5.0};
    n.spacing = 1.5;
    n.freeLength = 1.0;
    n.headCapacity = 50.0;
    n.yieldForce = 300.0;
    n.lateralForce = 10.0;
    putNail(1, n);
    run();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(ISNAIL.INAIL(1, SNMODE), 5);
    EXPECT_DOUBLE_EQ(SNAILS.SN(1, SNFAX), -300.0);

    const double length = std::hypot(20.0, 3.0);
    const double ux = -20.0 / length, uz = 3.0 / length;
    const double nx = -uz, nz = ux;  // the lateral direction: the nail's direction turned
    const double axial = 300.0 / 1.5, lateral = 10.0 / 1.5;
    const double xc = 9.625, zc = baseDepth(9.625);
    EXPECT_NEAR(sumX(), axial * ux + lateral * nx, 1e-9);
    EXPECT_NEAR(sumZ(), axial * uz + lateral * nz, 1e-9);
    EXPECT_NEAR(momentAboutOrigin(), zc * (axial * ux + lateral * nx) - xc * (axial * uz + lateral * nz), 1e-8);
    // The bonded part runs from 1 m below the head (x = 18.01) to the crossing, so slice 1
    // carries nothing and slice 2 only the lateral force.
    EXPECT_EQ(SURF.SNX(1), 0.0);
    EXPECT_NEAR(SURF.SNX(2), lateral * nx, 1e-12);
    EXPECT_NEAR(SURF.SNZ(2), lateral * nz, 1e-12);
    // Slice 4 holds the head: its share of the head-plate force alone is (300 - Qi)/1.5.
    const double Lh = std::hypot(19.0 - xc, 2.0 - zc);
    const double headPlate = (300.0 - (Lh - 1.0) * kPi * 0.1 * 100.0) / 1.5;
    EXPECT_LT(SURF.SNX(4), headPlate * ux);
}

TEST_F(Nails, ALoadOnASliceBorderGoesToBothSlices) {
    // Horizontal nail at z = 3.5 crosses the plane at x = 10, the border of slices 2 and 3. No
    // bond strength and no head plate: only the lateral force of 4 acts, upward, on both.
    NailData n{20.0, 3.5, 0.0, 3.5};
    n.bondTension = 0.0;
    n.bondCompression = 0.0;
    n.lateralForce = 4.0;
    putNail(1, n);
    run();
    EXPECT_EQ(ISNAIL.INAIL(1, SNSLC), 2);  // the first slice whose right side is at x = 10
    EXPECT_DOUBLE_EQ(SURF.SNZ(2), -4.0);
    EXPECT_DOUBLE_EQ(SURF.SNZ(3), -4.0);
    EXPECT_EQ(SURF.SNZ(1), 0.0);
    EXPECT_EQ(SURF.SNZ(4), 0.0);
}

// ------------------------------------------------------------------------------------------
// Nails that give no load
// ------------------------------------------------------------------------------------------

TEST_F(Nails, WithAllNailsMissingTheSurfaceNoSliceIsLoaded) {
    putNail(1, {18.0, 2.0, 12.0, 2.5});  // entirely inside the sliding body
    putNail(2, {18.0, -3.0, 2.0, -3.0});  // in the air above the ground
    putNail(3, {-2.0, 5.0, -8.0, 6.0});   // entirely in the stable soil
    fillLoadsWithJunk();
    for (int i = 1; i <= 3; ++i) {
        ISNAIL.INAIL(i, SNMODE) = 4;
        ISNAIL.INAIL(i, SNSLC) = 9;
        SNAILS.SN(i, SNFAX) = 1.0;
    }
    run();
    ASSERT_EQ(MASTER.IERR, 0);
    for (int I = 1; I <= 4; ++I) {
        EXPECT_EQ(SURF.SNX(I), 0.0) << I;
        EXPECT_EQ(SURF.SNZ(I), 0.0) << I;
        EXPECT_EQ(SURF.SNM(I), 0.0) << I;
    }
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(ISNAIL.INAIL(i, SNMODE), 0) << i;  // No intersection
        EXPECT_EQ(ISNAIL.INAIL(i, SNSLC), 0) << i;
        EXPECT_EQ(ISNAIL.INAIL(i, SNDIR), 0) << i;
        EXPECT_EQ(SNAILS.SN(i, SNFAX), 0.0) << i;
        EXPECT_EQ(SNAILS.SN(i, SNLACT), 0.0) << i;
    }
    EXPECT_DOUBLE_EQ(SNAILS.SN(1, SNLTOT), std::hypot(6.0, 0.5));
}

TEST_F(Nails, ADeactivatedNailNeverGivesALoad) {
    NailData n{20.0, 3.0, -4.0, 3.0};
    n.headCapacity = 100.0;
    n.lateralForce = 5.0;
    n.further1 = -1.0;
    putNail(1, n);
    run();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(ISNAIL.INAIL(1, SNMODE), -1);
    EXPECT_EQ(ISNAIL.INAIL(1, SNSLC), 0);
    EXPECT_EQ(SNAILS.SN(1, SNFAX), 0.0);
    EXPECT_EQ(SNAILS.SN(1, SNFLAT), 0.0);
    EXPECT_DOUBLE_EQ(SNAILS.SN(1, SNLTOT), 24.0);
    expectNoLoads();
}

TEST_F(Nails, ANailCrossingTwiceIsReportedAtMost24TimesAndIgnored) {
    // A V-shaped surface, down from (-10, -1.5) to (10, 3.5) and up to (30, -1.5); the nail at
    // z = 0 crosses it at x = -4 and x = 24.
    SURF.XS(1) = -10.0;
    SURF.ZS(1) = -1.5;
    SURF.XS(2) = 10.0;
    SURF.ZS(2) = 3.5;
    SURF.XS(3) = 30.0;
    SURF.ZS(3) = -1.5;
    NailData n{28.0, 0.0, -8.0, 0.0};
    n.headCapacity = 100.0;
    n.lateralForce = 5.0;
    putNail(1, n);
    const std::string warning = " **** Warning : Nail            1 has            2 shear surface intersections - not included";
    for (int surface = 1; surface <= 30; ++surface) {
        NAILS(3);
        ASSERT_EQ(MASTER.IERR, 0);
        EXPECT_EQ(ISNAIL.INAIL(1, SNDIR), 2);
        EXPECT_EQ(ISNAIL.INAIL(1, SNMODE), 0);
        expectNoLoads();
    }
    EXPECT_EQ(occurrences(log(), warning), 24);
    EXPECT_EQ(occurrences(io::contents(9), warning), 24);  // the log-copy channel
    EXPECT_EQ(occurrences(console(), warning), 0);

    resetNailCrossingWarnings();  // a new run reports again
    NAILS(3);
    EXPECT_EQ(occurrences(log(), warning), 25);
}

// ------------------------------------------------------------------------------------------
// Bad input
// ------------------------------------------------------------------------------------------

TEST_F(Nails, ANailOfNoLengthIsAnErrorOfTheIntersection) {
    // The reader refuses such a nail; placed in the records all the same, it cannot be
    // intersected with the surface.
    putNail(1, {8.0, 3.0, 8.0, 3.0});
    run();
    EXPECT_EQ(MASTER.IERR, 1);
    const std::string message = " **** SR/NAILS : Error return from SR/INTBL1  IERR =           1";
    EXPECT_EQ(occurrences(console(), message), 1) << console();
    EXPECT_EQ(occurrences(io::contents(9), message), 1);
}

TEST_F(Nails, CountsBeyondTheTablesDoNotReachOutsideThem) {
    for (int i = 1; i <= MAXNAI; ++i) putNail(i, {20.0, 3.0, -4.0, 3.0});
    ISNAIL.NNAILS = 500;
    MASTER.NUMSLC = 400;
    NAILS(1000);
    EXPECT_EQ(MASTER.IERR, 0);
    ISNAIL.NNAILS = -3;
    MASTER.NUMSLC = -1;
    NAILS(-5);
    EXPECT_EQ(MASTER.IERR, 0);
}

// ------------------------------------------------------------------------------------------
// Trace
// ------------------------------------------------------------------------------------------

TEST_F(Nails, TraceLevelThreePrintsTheNailAndTheSliceTable) {
    putNail(1, {20.0, 3.0, 6.0, 3.0});
    MASTER.JPRINT = 3;
    run();
    for (const std::string& text : {std::string(" N,XINT,ZINT,FLAG,SLICE="), std::string(" Q1-2-3-TNS-CMP="),
                                     std::string(" Slice  X-centre  Z-centre  Nails-X.frc  Nails-Z.frc   Nails-YY.mom  Slice.WZ")}) {
        EXPECT_EQ(occurrences(log(), text), 1) << text;
        EXPECT_EQ(occurrences(io::contents(9), text), 1) << text;
    }
    MASTER.JPRINT = 2;
    run();
    EXPECT_EQ(occurrences(log(), " Q1-2-3-TNS-CMP="), 1);
}

}  // namespace
