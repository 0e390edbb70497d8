// Cutting a shear surface into slices: intersections, borders, layers, areas, centroids and
// every failure code that a surface can provoke.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "slices/slices.h"
#include "support/tempdir.h"

namespace {

using Points = std::vector<std::pair<double, double>>;

constexpr double kNear = 1.0e-9;
constexpr double kShift = 0.001f;    // end borders move inward by this part of a slice width
constexpr double kEndFace = 0.001f;  // end faces of a general surface
constexpr double kTol = 1.0e-6f;

// Linear interpolation in a broken line, end values held outside (the test's own).
double levelAt(const Points& line, double x) {
    if (x <= line.front().first) return line.front().second;
    if (x >= line.back().first) return line.back().second;
    for (size_t k = 1; k < line.size(); ++k) {
        if (x <= line[k].first) {
            const auto [xa, za] = line[k - 1];
            const auto [xb, zb] = line[k];
            return za + (zb - za) * (x - xa) / (xb - xa);
        }
    }
    return line.back().second;
}

// Shoelace area and centroid of a simple polygon.
struct Shape {
    double area;
    double x;
    double z;
};

Shape shoelace(const Points& polygon) {
    double twiceArea = 0.0;
    double sumX = 0.0;
    double sumZ = 0.0;
    for (size_t k = 0; k < polygon.size(); ++k) {
        const auto [xa, za] = polygon[k];
        const auto [xb, zb] = polygon[(k + 1) % polygon.size()];
        const double cross = xa * zb - xb * za;
        twiceArea += cross;
        sumX += (xa + xb) * cross;
        sumZ += (za + zb) * cross;
    }
    return {std::fabs(twiceArea) / 2.0, sumX / (3.0 * twiceArea), sumZ / (3.0 * twiceArea)};
}

Shape sliceShape(int i) {
    return shoelace({{SURF.XX(1, i), SURF.ZZ(1, i)},
                     {SURF.XX(2, i), SURF.ZZ(2, i)},
                     {SURF.XX(3, i), SURF.ZZ(3, i)},
                     {SURF.XX(4, i), SURF.ZZ(4, i)}});
}

class Geomet : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();
        POSTGRAF.NFCOPY = 9;
        ASSERT_EQ(io::openNew(12, dir_.path("CONSOLE.TXT")), 0);
        ASSERT_EQ(io::openNew(9, dir_.path("COPY.TXT")), 0);
        ASSERT_EQ(io::openNew(18, dir_.path("KALMO.LOG")), 0);
        MASTER.IDTYP = 1;
        MASTER.NTYP = 2;
    }
    void TearDown() override {
        io::setStdoutStream(nullptr);
        io::resetAll();
    }

    // The soil surface with the rock far below it.
    void soil(const Points& points, double rockDepth = 100.0) {
        soil_ = points;
        IGEOMS.NX = static_cast<int>(points.size()) - 1;
        for (size_t k = 0; k < points.size(); ++k) {
            GEOMSH.XSURF(static_cast<int>(k) + 1) = points[k].first;
            GEOMSH.ZSURF(static_cast<int>(k) + 1) = points[k].second;
            GEOMSH.ZROCK(static_cast<int>(k) + 1) = rockDepth;
        }
    }

    void shear(const Points& points) {
        shear_ = points;
        npt_ = static_cast<int>(points.size());
        for (size_t k = 0; k < points.size(); ++k) {
            SURF.XS(static_cast<int>(k) + 1) = points[k].first;
            SURF.ZS(static_cast<int>(k) + 1) = points[k].second;
        }
    }

    void batchMode() {
        POSTGRAF.NFCOPY = 6;
        io::bindStdout(6);
        io::setStdoutStream(&stdout_);
    }

    void answers(const std::string& lines) {
        dir_.write("ANSWERS.TXT", lines);
        ASSERT_EQ(io::openOld(8, dir_.path("ANSWERS.TXT")), 0);
    }

    // As the solver calls it.
    void run(int slices) {
        MASTER.NSLREQ = slices;
        MASTER.NUMSLC = slices;
        GEOMET(IGEOMS.NX + 1, npt_, MASTER.NUMSLC, MASTER.NSLREQ, MASTER.IDTYP, GEOMSH.XSURF, GEOMSH.ZSURF,
               GEOMSH.ZROCK, SURF.XS, SURF.ZS, SOLPRP.STRDAT(1), GEOMSH.XWALL, GEOMSH.ZWALL, SURF.XX, SURF.ZZ,
               SURF.AREA, MASTER.NTYP, IGEOMS.NLAYER, GEOMSH.ZLAYER, MASTER.IERR, MASTER.ICSRCH);
    }

    std::string console() const { return io::contents(12); }
    std::string copy() const { return io::contents(9); }
    std::string log() const { return io::contents(18); }
    static bool has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }
    static int count(const std::string& text, const std::string& part) {
        int n = 0;
        for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
        return n;
    }

    // Every slice: vertical sides, shared borders with its neighbours.
    void expectConnectedSlices() const {
        for (int i = 1; i <= MASTER.NUMSLC; ++i) {
            EXPECT_EQ(SURF.XX(1, i), SURF.XX(4, i)) << i;
            EXPECT_EQ(SURF.XX(2, i), SURF.XX(3, i)) << i;
            if (i == 1) continue;
            EXPECT_EQ(SURF.XX(1, i), SURF.XX(2, i - 1)) << i;
            EXPECT_EQ(SURF.ZZ(1, i), SURF.ZZ(2, i - 1)) << i;
            EXPECT_EQ(SURF.ZZ(4, i), SURF.ZZ(3, i - 1)) << i;
        }
    }

    // Slice borders as x values: the left side of slice 1, then the right side of each slice.
    std::vector<double> borders() const {
        std::vector<double> x{SURF.XX(1, 1)};
        for (int i = 1; i <= MASTER.NUMSLC; ++i) x.push_back(SURF.XX(2, i));
        return x;
    }

    kalmo_test::TempDir dir_;
    std::ostringstream stdout_;
    Points soil_;
    Points shear_;
    int npt_ = 0;
};

// ---------------------------------------------------------------------------------------------
// Equal widths, areas, centroids
// ---------------------------------------------------------------------------------------------

TEST_F(Geomet, EqualWidthsHandComputedTrapezoids) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    run(2);

    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 2);
    expectConnectedSlices();
    const double shift = 5.0 * kShift;  // width 5, ends moved inward by 0.001 of it
    EXPECT_NEAR(SURF.XX(1, 1), shift, kNear);
    EXPECT_NEAR(SURF.XX(2, 1), 5.0, kNear);
    EXPECT_NEAR(SURF.XX(2, 2), 10.0 - shift, kNear);
    for (int i = 1; i <= 2; ++i) {
        EXPECT_EQ(SURF.ZZ(1, i), 0.0);
        EXPECT_EQ(SURF.ZZ(2, i), 0.0);
    }
    EXPECT_NEAR(SURF.ZZ(4, 1), shift, kNear);
    EXPECT_NEAR(SURF.ZZ(3, 1), 5.0, kNear);
    EXPECT_NEAR(SURF.ZZ(3, 2), shift, kNear);

    // Slice 1: faces shift and 5 over a width 5 - shift; slice 2 is its mirror image.
    const double area = (shift + 5.0) / 2.0 * (5.0 - shift);
    EXPECT_NEAR(SURF.AREA(1), area, kNear);
    EXPECT_NEAR(SURF.AREA(2), area, kNear);

    // Centroid of the trapezoid (shift,0) (5,0) (5,5) (shift,shift): with the parallel sides
    // a = shift and b = 5 the centroid lies (a + 2b)/(3(a + b)) of the width from side a.
    const double fromLeft = (shift + 2.0 * 5.0) / (3.0 * (shift + 5.0)) * (5.0 - shift);
    EXPECT_NEAR(SURF.XX(5, 1), shift + fromLeft, kNear);
    EXPECT_NEAR(SURF.XX(5, 2), 10.0 - shift - fromLeft, kNear);
    const Shape first = sliceShape(1);
    EXPECT_NEAR(SURF.ZZ(5, 1), first.z, kNear);
    EXPECT_NEAR(SURF.ZZ(5, 2), first.z, kNear);
}

TEST_F(Geomet, EndBordersMoveByTheSinglePrecisionThousandth) {
    // Entry at 0 and exit at 1000 exactly; four slices 250 wide.
    soil({{-10.0, 0.0}, {2000.0, 0.0}}, 1000.0);
    shear({{-1.0, -1.0}, {500.0, 500.0}, {1001.0, -1.0}});
    run(4);

    ASSERT_EQ(MASTER.IERR, 0);
    const double shift = 250.0 * 0.0010000000474974513;
    EXPECT_EQ(kShift, 0.0010000000474974513);
    EXPECT_DOUBLE_EQ(SURF.XX(1, 1), shift);
    EXPECT_DOUBLE_EQ(SURF.XX(2, 4), 1000.0 - shift);
    EXPECT_NE(SURF.XX(1, 1), 250.0 * 0.001);
    EXPECT_EQ(SURF.XX(2, 1), 250.0);
    EXPECT_EQ(SURF.XX(2, 3), 750.0);
}

TEST_F(Geomet, GeneralSurfaceHandComputedSlices) {
    MASTER.NTYP = 1;
    SOLPRP.STRDAT(1) = 2.0;  // the surface starts 2 below the ground
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-2.0, -2.0}, {4.0, 4.0}, {8.0, 4.0}, {12.0, -4.0}});
    run(0);

    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 3);
    expectConnectedSlices();
    // Enters where the surface is 2 deep (x = 2), leaves where it reaches the ground (x = 10).
    EXPECT_NEAR(SURF.XX(1, 1), 2.0, kNear);
    EXPECT_EQ(SURF.XX(2, 1), 4.0);
    EXPECT_EQ(SURF.XX(2, 2), 8.0);
    EXPECT_NEAR(SURF.XX(2, 3), 10.0, kNear);
    EXPECT_EQ(SURF.ZZ(4, 1), 0.0 + kEndFace + 2.0);
    EXPECT_EQ(SURF.ZZ(3, 1), 4.0);
    EXPECT_EQ(SURF.ZZ(3, 2), 4.0);
    EXPECT_EQ(SURF.ZZ(3, 3), 0.0 + kEndFace);

    EXPECT_NEAR(SURF.AREA(1), (2.0 + kEndFace + 4.0) / 2.0 * 2.0, kNear);
    EXPECT_EQ(SURF.AREA(2), 16.0);
    EXPECT_NEAR(SURF.AREA(3), (4.0 + kEndFace) / 2.0 * 2.0, kNear);
    EXPECT_NEAR(SURF.XX(5, 2), 6.0, kNear);
    EXPECT_NEAR(SURF.ZZ(5, 2), 2.0, kNear);
    for (int i : {1, 3}) {
        const Shape shape = sliceShape(i);
        EXPECT_NEAR(SURF.XX(5, i), shape.x, kNear) << i;
        EXPECT_NEAR(SURF.ZZ(5, i), shape.z, kNear) << i;
    }
    EXPECT_EQ(SOLPRP.STRDAT(1), 2.0);  // a start depth that was given stays
    EXPECT_EQ(MASTER.NTYP, 1);
}

TEST_F(Geomet, SliceAreasAddUpToTheAreaBetweenSoilAndShearSurface) {
    // Soil and shear vertices lie on the slice borders 5, 10 and 15, so the slices cover the
    // region between the two surfaces exactly from the first border to the last.
    soil({{-20.0, 0.0}, {0.0, 0.0}, {5.0, -1.0}, {10.0, -1.5}, {15.0, -1.0}, {20.0, 0.0}, {40.0, 0.0}});
    shear({{-2.0, -2.0}, {5.0, 5.0}, {10.0, 6.0}, {15.0, 4.0}, {22.0, -1.6}});
    run(4);

    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 4);
    expectConnectedSlices();
    const double left = 5.0 * kShift;
    const double right = 20.0 - 5.0 * kShift;
    EXPECT_NEAR(SURF.XX(1, 1), left, kNear);
    EXPECT_NEAR(SURF.XX(2, 4), right, kNear);

    Points region{{left, levelAt(soil_, left)}};
    for (double x : {5.0, 10.0, 15.0}) region.push_back({x, levelAt(soil_, x)});
    region.push_back({right, levelAt(soil_, right)});
    region.push_back({right, levelAt(shear_, right)});
    for (double x : {15.0, 10.0, 5.0}) region.push_back({x, levelAt(shear_, x)});
    region.push_back({left, levelAt(shear_, left)});
    const Shape whole = shoelace(region);

    double sumArea = 0.0;
    double sumMomentX = 0.0;
    double sumMomentZ = 0.0;
    for (int i = 1; i <= 4; ++i) {
        sumArea += SURF.AREA(i);
        sumMomentX += SURF.AREA(i) * SURF.XX(5, i);
        sumMomentZ += SURF.AREA(i) * SURF.ZZ(5, i);
        const Shape shape = sliceShape(i);
        EXPECT_NEAR(SURF.AREA(i), shape.area, kNear) << i;
        EXPECT_NEAR(SURF.XX(5, i), shape.x, kNear) << i;
        EXPECT_NEAR(SURF.ZZ(5, i), shape.z, kNear) << i;
    }
    EXPECT_NEAR(sumArea, whole.area, 1.0e-9);
    EXPECT_NEAR(sumMomentX / sumArea, whole.x, 1.0e-9);
    EXPECT_NEAR(sumMomentZ / sumArea, whole.z, 1.0e-9);
}

TEST_F(Geomet, ZeroStartDepthIsSetToTheFirstFaceAndStoredBack) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    SOLPRP.STRDAT(1) = 0.0;
    run(2);

    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(SOLPRP.STRDAT(1), SURF.ZZ(4, 1) - SURF.ZZ(1, 1));
    EXPECT_NEAR(SOLPRP.STRDAT(1), 5.0 * kShift, kNear);
}

TEST_F(Geomet, StartDepthLowersTheGroundForTheEntryOnly) {
    // Flat ground, dc = 1: the entry is where the V is 1 deep (x = 1), the exit where it
    // reaches the ground itself (x = 10).
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    SOLPRP.STRDAT(1) = 1.0;
    run(3);

    ASSERT_EQ(MASTER.IERR, 0);
    const double width = 9.0 / 3.0;
    EXPECT_NEAR(SURF.XX(1, 1), 1.0 + kShift * width, kNear);
    EXPECT_NEAR(SURF.XX(2, 3), 10.0 - kShift * width, kNear);
    EXPECT_NEAR(SURF.XX(2, 1), 4.0, kNear);
    EXPECT_EQ(SOLPRP.STRDAT(1), 1.0);
}

// ---------------------------------------------------------------------------------------------
// Intersections
// ---------------------------------------------------------------------------------------------

TEST_F(Geomet, NoIntersectionIsCodeOneAndAsksForTheProfile) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{0.0, -2.0}, {5.0, -1.0}, {10.0, -2.0}});  // wholly above the ground
    answers("N\n");
    run(5);

    EXPECT_EQ(MASTER.IERR, 1);
    const std::string message = " **** SR/GEOMET : NO INTERSECTION BETWEEN SOIL AND  SHEAR SURFACE";
    EXPECT_TRUE(has(console(), message + "\n"));
    EXPECT_TRUE(has(copy(), message + "\n"));
    EXPECT_TRUE(has(console(), "SHALL GEOMETRY PROFILE BE PRINTED ON FILE NF18  (Y/N) ..... "));
    EXPECT_TRUE(has(copy(), "SHALL GEOMETRY PROFILE BE PRINTED ON FILE NF18  (Y/N) ..... "));
    EXPECT_EQ(log(), "");
}

TEST_F(Geomet, ProfileIsPrintedOnTheLogFileWhenTheUserAsks) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{0.0, -2.0}, {5.0, -1.0}, {10.0, -2.0}});
    answers("y\n");
    run(5);

    EXPECT_EQ(MASTER.IERR, 1);
    const std::string text = log();
    EXPECT_TRUE(has(text, " **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR="));
    EXPECT_TRUE(has(text, " POINT     SOIL SURFACE COORD      SHEAR SURFACE  COORD\n"));
    // One line per point up to the larger count: 3 shear points, 2 soil points.
    EXPECT_TRUE(has(text, "     1    -10.0000      0.0000      0.0000     -2.0000\n"));
    EXPECT_TRUE(has(text, "     2     30.0000      0.0000      5.0000     -1.0000\n"));
    EXPECT_TRUE(has(text, "     3      0.0000      0.0000     10.0000     -2.0000\n"));
    EXPECT_FALSE(has(text, "\n     4 "));
    EXPECT_FALSE(has(console(), " **** SR/GEOMET PROBLEM  N1,N2"));
}

TEST_F(Geomet, BatchModeNeitherAsksNorPrintsTheProfileForNoIntersection) {
    batchMode();
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{0.0, -2.0}, {5.0, -1.0}, {10.0, -2.0}});
    run(5);

    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_TRUE(has(stdout_.str(), " **** SR/GEOMET : NO INTERSECTION BETWEEN SOIL AND  SHEAR SURFACE\n"));
    EXPECT_FALSE(has(console(), "SHALL GEOMETRY"));
    EXPECT_FALSE(has(console(), "IERR="));
    EXPECT_EQ(log(), "");
}

TEST_F(Geomet, OneIntersectionIsCodeTwoInAStabilityProblem) {
    batchMode();
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{0.0, -1.0}, {5.0, 4.0}, {20.0, 10.0}});
    run(5);

    EXPECT_EQ(MASTER.IERR, 2);
    EXPECT_TRUE(has(console(), " **** SR/GEOMET : ONE INTERSECTION ONLY BETWEEN SOIL  AND SHEAR SURFACE\n"));
    EXPECT_FALSE(has(console(), "IERR="));
}

TEST_F(Geomet, SurfaceLyingOnTheGroundGivesOneIntersectionAtTheSegmentStart) {
    soil({{0.0, 0.0}, {10.0, 0.0}});
    shear({{2.0, 0.0}, {6.0, 0.0}});
    answers("N\n");
    run(5);
    EXPECT_EQ(MASTER.IERR, 2);

    // With dc = 1 the surface lies on the lowered ground from x = 2 to 6 and then dives; as
    // an earth-pressure plane it needs only that one intersection.
    MASTER.IDTYP = 2;
    SOLPRP.STRDAT(1) = 1.0;
    GEOMSH.XWALL = 8.0;
    GEOMSH.ZWALL = 3.0;  // the depth of the surface at the wall: no shift
    shear({{2.0, 1.0}, {6.0, 1.0}, {9.0, 4.0}});
    run(3);

    ASSERT_EQ(MASTER.IERR, 0);
    const double width = (8.0 - 2.0) / 3.0;
    EXPECT_NEAR(SURF.XX(1, 1), 2.0 + kShift * width, kNear);
    EXPECT_NEAR(SURF.XX(2, 3), 8.0 - kShift * width, kNear);
    EXPECT_NEAR(SURF.ZZ(4, 1), 1.0, kNear);
}

TEST_F(Geomet, CircleSearchFlagDropsTheCrossingOnTheFirstSegment) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{0.0, -1.0}, {2.0, 3.0}, {8.0, 3.0}, {10.0, -1.0}});
    run(4);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(SURF.XX(1, 1), 0.5 + kShift * 9.0 / 4.0, kNear);
    EXPECT_FALSE(has(console(), "Center below"));

    MASTER.ICSRCH = 1;
    answers("N\n");
    run(4);
    EXPECT_EQ(MASTER.IERR, 2);
    const std::string message = " Center below soil surface,  no circular shear surface found! \n";
    EXPECT_TRUE(has(console(), message));
    EXPECT_TRUE(has(copy(), message));
    EXPECT_EQ(count(console(), message), 1);
    EXPECT_TRUE(has(console(), " **** SR/GEOMET : ONE INTERSECTION ONLY"));
}

TEST_F(Geomet, MoreThanTwoIntersectionsWarnOnceAndUseTheFirstTwo) {
    // A W under flat ground: in at 1, out at 4, in at 6, out at 9.
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{0.0, -1.0}, {2.5, 1.5}, {5.0, -1.0}, {7.5, 1.5}, {10.0, -1.0}});
    run(3);

    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_TRUE(has(console(), " **** SR/GEOMET WARNING :           4 INTERSECTIONS  BETWEEN SOIL AND SHEAR SURFACE\n"));
    EXPECT_TRUE(has(copy(), " INTERSECTIONS  BETWEEN SOIL AND SHEAR SURFACE"));
    EXPECT_TRUE(has(console(), " X-VALUES :"));
    const double width = (4.0 - 1.0) / 3.0;
    EXPECT_NEAR(SURF.XX(1, 1), 1.0 + kShift * width, kNear);
    EXPECT_NEAR(SURF.XX(2, 3), 4.0 - kShift * width, kNear);

    run(3);  // the next surface of the run is not warned about again
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(count(console(), "INTERSECTIONS"), 1);
}

TEST_F(Geomet, CrossingAtASharedVertexCountsOnce) {
    // The surface enters exactly at a soil vertex and at its own vertex.
    soil({{-10.0, 0.0}, {0.0, 0.0}, {30.0, 0.0}});
    shear({{-2.0, -2.0}, {0.0, 0.0}, {5.0, 5.0}, {10.0, 0.0}, {12.0, -2.0}});
    run(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_FALSE(has(console(), "WARNING"));
    EXPECT_NEAR(SURF.XX(1, 1), 5.0 * kShift, kNear);
    EXPECT_NEAR(SURF.XX(2, 2), 10.0 - 5.0 * kShift, kNear);
}

// ---------------------------------------------------------------------------------------------
// General surfaces: own borders and the slice limit
// ---------------------------------------------------------------------------------------------

// Flat ground at 0; the surface goes in at x = 0.5 and runs 1 deep with a point at every
// whole x from 1 to lastDeep, then comes up to (lastDeep + 1, -1), out at lastDeep + 0.5.
class GeometGeneral : public Geomet {
protected:
    void makeSurface(int lastDeep) {
        soil({{-10.0, 0.0}, {200.0, 0.0}});
        Points points{{0.0, -1.0}};
        for (int x = 1; x <= lastDeep; ++x) points.push_back({static_cast<double>(x), 1.0});
        points.push_back({lastDeep + 1.0, -1.0});
        shear(points);
        MASTER.NTYP = 1;
    }
};

TEST_F(GeometGeneral, NinetyNineClosingPointsMakeNinetyNineSlices) {
    makeSurface(98);  // 100 points: 99 of them right of the entry
    ASSERT_EQ(npt_, 100);
    run(0);

    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, MAXSLC);
    expectConnectedSlices();
    EXPECT_NEAR(SURF.XX(1, 1), 0.5, kNear);
    EXPECT_EQ(SURF.XX(2, 1), 1.0);
    EXPECT_EQ(SURF.XX(2, 98), 98.0);
    EXPECT_NEAR(SURF.XX(2, 99), 98.5, kNear);
    EXPECT_EQ(SURF.ZZ(3, 99), kEndFace);
    EXPECT_NEAR(SURF.AREA(99), (1.0 + kEndFace) / 2.0 * 0.5, kNear);
    EXPECT_EQ(SURF.AREA(50), 1.0);
    EXPECT_NEAR(SURF.XX(5, 50), 49.5, kNear);
    EXPECT_NEAR(SURF.ZZ(5, 50), 0.5, kNear);
    EXPECT_GT(SURF.ZZ(5, 99), 0.0);
}

TEST_F(GeometGeneral, OneMorePointIsCodeNinetyNine) {
    makeSurface(99);
    run(0);

    EXPECT_EQ(MASTER.IERR, 99);
    const std::string message = " **** SR/GEOMET : MORE THAN 99 SLICES ON GENERAL  SURFACE\n";
    EXPECT_TRUE(has(console(), message));
    EXPECT_TRUE(has(copy(), message));
}

TEST_F(GeometGeneral, RequestedSliceCountOverridesThePoints) {
    makeSurface(6);
    run(4);
    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 4);
    const double width = (6.5 - 0.5) / 4.0;
    EXPECT_NEAR(SURF.XX(1, 1), 0.5 + kShift * width, kNear);
    EXPECT_NEAR(SURF.XX(2, 2), 0.5 + 2.0 * width, kNear);
}

TEST_F(GeometGeneral, PointsAtTheEntryDoNotCloseASlice) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    MASTER.NTYP = 1;
    // The second point lies on the ground, closer than 1.0E-6 to the entry.
    shear({{-2.0, -2.0}, {0.0, 0.0}, {2.0, 2.0}, {4.0, 0.0}, {5.0, -1.0}});
    run(0);
    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 2);
    EXPECT_EQ(SURF.XX(2, 1), 2.0);
    EXPECT_EQ(SURF.ZZ(4, 1), kEndFace);
}

TEST_F(GeometGeneral, SurfaceEndingWhereItEntersLeavesASliceOfNoWidth) {
    // An earth-pressure problem needs only the entry; no point lies right of it.
    MASTER.IDTYP = 2;
    GEOMSH.XWALL = 8.0;
    GEOMSH.ZWALL = 0.0;
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-2.0, -2.0}, {0.0, 0.0}});
    MASTER.NTYP = 1;
    run(0);
    EXPECT_EQ(MASTER.IERR, -1);
    EXPECT_EQ(MASTER.NUMSLC, 1);
    EXPECT_TRUE(has(console(), " **** SR/GEOMET : PROBLEM WITH SLICE =            1\n"));
}

// ---------------------------------------------------------------------------------------------
// Rock
// ---------------------------------------------------------------------------------------------

TEST_F(Geomet, PointsInRockAreLiftedAndStayLifted) {
    soil({{-10.0, 0.0}, {30.0, 0.0}}, 3.0);
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    const int type = MASTER.NTYP;
    run(2);

    ASSERT_EQ(MASTER.IERR, 0);
    const double rockLevel = 3.0 + kTol;
    const double lifted = rockLevel - 0.002f;
    EXPECT_EQ(SURF.ZS(2), lifted);
    EXPECT_EQ(SURF.ZS(1), -1.0);
    EXPECT_NEAR(SURF.ZZ(3, 1), lifted, kNear);  // the slices are cut from the lifted surface
    EXPECT_EQ(MASTER.NTYP, -type);
    const std::string warning = " **** SR/GEOMET WARNING : SHEAR-SURFACE INTERSECTS ROCK  SURFACE AT X,Z =";
    EXPECT_TRUE(has(console(), warning));
    EXPECT_TRUE(has(copy(), warning));
    EXPECT_TRUE(has(console(), " ROCK "));
}

TEST_F(Geomet, RockWarningOncePerPass) {
    soil({{-10.0, 0.0}, {30.0, 0.0}}, 3.0);
    shear({{-1.0, -1.0}, {4.0, 4.0}, {6.0, 4.0}, {11.0, -1.0}});
    run(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(count(console(), "INTERSECTS ROCK"), 1);
    EXPECT_EQ(SURF.ZS(2), SURF.ZS(3));
}

TEST_F(Geomet, PointJustAboveRockIsNotLifted) {
    soil({{-10.0, 0.0}, {30.0, 0.0}}, 5.0);
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});  // touches the rock level
    run(2);
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(SURF.ZS(2), 5.0);
    EXPECT_EQ(MASTER.NTYP, 2);
    EXPECT_FALSE(has(console(), "ROCK"));
}

// ---------------------------------------------------------------------------------------------
// Earth pressure
// ---------------------------------------------------------------------------------------------

TEST_F(Geomet, EarthPressurePlaneIsShiftedThroughTheWallFoot) {
    MASTER.IDTYP = 2;
    MASTER.NTYP = 4;
    GEOMSH.XWALL = 10.0;
    GEOMSH.ZWALL = 6.0;
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-5.0, -5.0}, {15.0, 15.0}});  // 10 deep at the wall: 4 too deep
    run(3);

    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(SURF.ZS(1), -9.0);
    EXPECT_EQ(SURF.ZS(2), 11.0);
    EXPECT_DOUBLE_EQ(levelAt({{SURF.XS(1), SURF.ZS(1)}, {SURF.XS(2), SURF.ZS(2)}}, GEOMSH.XWALL), GEOMSH.ZWALL);
    // One intersection (at x = 4) is enough; the slices run to the wall.
    const double width = (10.0 - 4.0) / 3.0;
    EXPECT_NEAR(SURF.XX(1, 1), 4.0 + kShift * width, kNear);
    EXPECT_NEAR(SURF.XX(2, 3), 10.0 - kShift * width, kNear);
    EXPECT_NEAR(SURF.ZZ(3, 3), 6.0 - kShift * width, kNear);
    EXPECT_NEAR(SURF.AREA(2), width * (width + 2.0 * width) / 2.0, kNear);
}

TEST_F(Geomet, EarthPressureGeneralSurfaceKeepsItsDepthAtTheWall) {
    MASTER.IDTYP = 2;
    MASTER.NTYP = 1;
    GEOMSH.XWALL = 8.0;
    GEOMSH.ZWALL = 2.0;
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {8.0, 2.0}, {15.0, -5.0}});
    run(0);

    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 2);
    EXPECT_EQ(SURF.XX(2, 2), 8.0);
    EXPECT_EQ(SURF.ZZ(3, 2), 2.0);  // no end face of 0.001 at the wall
}

TEST_F(Geomet, WallLeftOfTheOnlyIntersectionIsCodeThree) {
    batchMode();
    MASTER.IDTYP = 2;
    GEOMSH.XWALL = 3.0;
    GEOMSH.ZWALL = -1.0;
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-5.0, -5.0}, {15.0, 15.0}});  // shifted to z = x - 4: enters at 4
    run(3);

    EXPECT_EQ(MASTER.IERR, 3);
    EXPECT_TRUE(has(console(), " **** SR/GEOMET PROBLEM  XWALL,XX(1)="));
    EXPECT_TRUE(has(console(), " **** SR/GEOMET PROBLEM  IERR=           3\n"));
    EXPECT_TRUE(has(stdout_.str(), " **** SR/GEOMET PROBLEM  IERR=           3\n"));
    EXPECT_EQ(log(), "");
}

TEST_F(Geomet, WallBeyondTheExitIsCodeThree) {
    MASTER.IDTYP = 2;
    GEOMSH.XWALL = 12.0;
    GEOMSH.ZWALL = -2.0;  // the V's depth at x = 12: no shift
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {13.0, -3.0}});
    answers("Y\n");
    run(3);

    EXPECT_EQ(MASTER.IERR, 3);
    EXPECT_TRUE(has(console(), " **** SR/GEOMET PROBLEM  XWALL,XX(1),XX(2)="));
    EXPECT_TRUE(has(console(), "SHALL GEOMETRY PROFILE"));
    EXPECT_TRUE(has(log(), " **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR="));
}

TEST_F(Geomet, WallLeftOfTheEntryGivesASliceOfNegativeWidth) {
    MASTER.IDTYP = 2;
    GEOMSH.XWALL = -2.0;
    GEOMSH.ZWALL = -2.0;
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-2.0, -2.0}, {5.0, 5.0}, {11.0, -1.0}});
    run(3);

    EXPECT_EQ(MASTER.IERR, -1);
    const std::string text = console();
    EXPECT_TRUE(has(text, " **** SR/GEOMET : PROBLEM WITH SLICE =            1\n"));
    EXPECT_TRUE(has(text, "   N     X-SLICE       Z-SLICE\n"));
    EXPECT_TRUE(has(copy(), "   N     X-SLICE       Z-SLICE\n"));
    EXPECT_EQ(count(text, "\n   4 "), 1);
}

// ---------------------------------------------------------------------------------------------
// Horizontal layers
// ---------------------------------------------------------------------------------------------

// A V through flat ground at 0 and 20 with its point at (10, 10); four slices of width 5.
class GeometLayers : public Geomet {
protected:
    void SetUp() override {
        Geomet::SetUp();
        soil({{-10.0, 0.0}, {30.0, 0.0}});
        shear({{-2.0, -2.0}, {10.0, 10.0}, {22.0, -2.0}});
    }
    void layer(std::initializer_list<double> levels) {
        IGEOMS.NLAYER = 0;
        for (double level : levels) GEOMSH.ZLAYER(++IGEOMS.NLAYER) = level;
    }
    void expectBorders(const std::vector<double>& expected) {
        const std::vector<double> actual = borders();
        ASSERT_EQ(actual.size(), expected.size());
        for (size_t k = 0; k < expected.size(); ++k) EXPECT_NEAR(actual[k], expected[k], kNear) << k;
    }
};

TEST_F(GeometLayers, WithoutLayersTheBordersAreEven) {
    run(4);
    ASSERT_EQ(MASTER.IERR, 0);
    expectBorders({5.0 * kShift, 5.0, 10.0, 15.0, 20.0 - 5.0 * kShift});
}

TEST_F(GeometLayers, CrossingEquidistantFromTwoBordersMovesTheLeftOne) {
    // The layer at 7.5 is crossed at x = 7.5 (middle of slice 2) and 12.5 (middle of slice 3).
    layer({7.5});
    run(4);

    ASSERT_EQ(MASTER.IERR, 0);
    // 5 moves to 7.5 and 10 to 12.5; slice 1 is then too wide and is halved.
    const double left = 5.0 * kShift;
    expectBorders({left, (left + 7.5) / 2.0, 7.5, 12.5, 15.0, 20.0 - left});
    EXPECT_EQ(SURF.ZZ(3, 2), 7.5);
    EXPECT_EQ(SURF.ZZ(4, 3), 7.5);
    EXPECT_EQ(SURF.ZZ(3, 3), 7.5);
    EXPECT_NEAR(SURF.ZZ(3, 1), (left + 7.5) / 2.0, kNear);  // the halving border lies on the surface
    expectConnectedSlices();
}

TEST_F(GeometLayers, CrossingInTheLastSliceNearItsEndSplitsIt) {
    // Crossed at 2 and at 18. In slice 1 the left end border is nearer but never moves, so
    // the border at 5 moves to 2; 18 lies in the last slice, nearer its end: that slice splits.
    layer({2.0});
    run(4);

    ASSERT_EQ(MASTER.IERR, 0);
    const double left = 5.0 * kShift;
    // Slice 2 (2..10) is then too wide and is halved at 6.
    expectBorders({left, 2.0, 6.0, 10.0, 15.0, 18.0, 20.0 - left});
    EXPECT_EQ(MASTER.NUMSLC, 6);
    EXPECT_EQ(SURF.ZZ(3, 1), 2.0);
    EXPECT_EQ(SURF.ZZ(3, 5), 2.0);
    EXPECT_NEAR(SURF.ZZ(3, 6), left, kNear);
    expectConnectedSlices();
}

TEST_F(GeometLayers, SliceAreasStillAddUpAfterRefinement) {
    // A straight earth-pressure plane z = x - 4 after the shift, cut into three slices from
    // 4 to the wall at 10; the layers cross it at 5.5 and 8.2.
    MASTER.IDTYP = 2;
    MASTER.NTYP = 4;
    GEOMSH.XWALL = 10.0;
    GEOMSH.ZWALL = 6.0;
    shear({{-5.0, -5.0}, {15.0, 15.0}});
    layer({1.5, 4.2});
    run(3);

    ASSERT_EQ(MASTER.IERR, 0);
    const double left = 4.0 + 2.0 * kShift;
    const double right = 10.0 - 2.0 * kShift;
    // 6 moves to 5.5 and 8 to 8.2; the middle slice (2.7 wide) is then halved.
    expectBorders({left, 5.5, 6.85, 8.2, right});
    EXPECT_NEAR(SURF.ZZ(3, 1), 1.5, kNear);
    EXPECT_NEAR(SURF.ZZ(3, 3), 4.2, kNear);
    const Shape whole = shoelace({{left, 0.0}, {right, 0.0}, {right, right - 4.0}, {left, left - 4.0}});
    double sumArea = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) sumArea += SURF.AREA(i);
    EXPECT_NEAR(sumArea, whole.area, 1.0e-9);
}

TEST_F(GeometLayers, LayersDoNotRefineAGeneralSurfaceWithItsOwnPoints) {
    layer({7.5});
    MASTER.NTYP = 1;
    run(0);
    ASSERT_EQ(MASTER.IERR, 0);
    ASSERT_EQ(MASTER.NUMSLC, 2);
    EXPECT_EQ(SURF.XX(2, 1), 10.0);
}

TEST_F(GeometLayers, MoreThanFiftyLayerCrossingsIsCode200) {
    // A saw tooth between 1 and 3 deep crosses both layers on each of its 59 teeth.
    soil({{-10.0, 0.0}, {100.0, 0.0}});
    Points teeth{{-1.0, -1.0}};
    for (int k = 0; k <= 59; ++k) teeth.push_back({static_cast<double>(k), k % 2 == 0 ? 1.0 : 3.0});
    teeth.push_back({61.0, -1.0});
    shear(teeth);
    layer({1.5, 2.5});
    run(10);

    EXPECT_EQ(MASTER.IERR, 200);
    EXPECT_TRUE(has(console(), " **** SR/GEOMET : SLICE MODIFICATION PROBLEM\n"));
    EXPECT_TRUE(has(copy(), " **** SR/GEOMET : SLICE MODIFICATION PROBLEM\n"));
}

TEST_F(GeometLayers, SplittingBeyondNinetyNineSlicesIsCode299) {
    // An uneven V, out at 15: with 99 slices of width 15/99 the layer is crossed in slice 1
    // (its border 1 moves a little left, no slice becomes too wide) and in the last slice,
    // nearer its end, which would have to split.
    shear({{-2.0, -2.0}, {10.0, 10.0}, {16.0, -2.0}});
    layer({0.95 * 15.0 / MAXSLC});
    run(MAXSLC);
    EXPECT_EQ(MASTER.IERR, 299);
    // The code alone does not tell the user that the slice count asked for is the cause.
    const std::string line = " **** SR/GEOMET : MORE THAN 99 SLICES AFTER SPLITTING AT LAYER BOUNDARIES , GIVE FEWER SLICES\n";
    EXPECT_TRUE(has(console(), line)) << console();
    EXPECT_TRUE(has(copy(), line));
}

TEST_F(GeometLayers, TracePrintsGoToTheLogFile) {
    layer({7.5});
    MASTER.JPRINT = 3;
    run(4);
    ASSERT_EQ(MASTER.IERR, 0);
    const std::string text = log();
    EXPECT_TRUE(has(text, "HORIZONTAL LAYERS INTERSECTION POINTS\n"));
    EXPECT_TRUE(has(text, " SR/GEOMET TRACE PRINT * * * UNSHIFTED SLICE GEOMETRY\n"));
    EXPECT_TRUE(has(text, " SHIFTED SLICE GEOMETRY\n"));
    EXPECT_TRUE(has(text, " SLICE   X1/X4     X2/X3     Z1/Z4     Z2/Z3\n"));
    EXPECT_TRUE(has(text, " SR/GEOMET GEOMETRY CONTROL PRINT\n"));
    EXPECT_TRUE(has(text, "  N    X-SHRSRF     Z-SHRSRF     Z-ROCK\n"));
    EXPECT_EQ(console(), "");
}

// ---------------------------------------------------------------------------------------------
// Other failure codes
// ---------------------------------------------------------------------------------------------

TEST_F(Geomet, SoilSegmentOfZeroLengthIsCodeFourWithTheProfile) {
    batchMode();
    // Steps above 1.0E-10 are fine for interpolation but too short for a ground segment.
    soil({{-10.0, 0.0}, {5.0, 0.0}, {5.0 + 1.0e-7, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    run(2);
    EXPECT_EQ(MASTER.IERR, 4);
    EXPECT_TRUE(has(log(), " **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR="));
    EXPECT_FALSE(has(console(), "SHALL GEOMETRY"));
}

TEST_F(Geomet, ShearSegmentOfZeroLengthIsCodeFiveWithoutAsking) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {5.0 + 1.0e-7, 6.0}, {11.0, -1.0}});
    run(2);
    EXPECT_EQ(MASTER.IERR, 5);
    EXPECT_TRUE(has(log(), " **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR="));
    EXPECT_FALSE(has(console(), "SHALL GEOMETRY"));
}

TEST_F(Geomet, ShearSurfaceNotIncreasingOutsideTheSoilIsAnInterpolationError) {
    // The repeated point lies left of the soil, where no intersection is looked for; the
    // interpolation on the shear surface walks through it.
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-20.0, -5.0}, {-20.0, -5.0}, {-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    run(2);
    EXPECT_EQ(MASTER.IERR, 22);
    EXPECT_TRUE(has(log(), " **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR="));
}

TEST_F(Geomet, TooManySoilPointsIsAnInterpolationErrorOnTheRock) {
    std::vector<std::pair<double, double>> ground;
    for (int k = 0; k <= 1000; ++k) ground.push_back({k - 10.0, 0.0});
    soil(ground);
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    run(2);
    EXPECT_EQ(MASTER.IERR, 34);
    EXPECT_TRUE(has(log(), " **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR="));
}

TEST_F(Geomet, ZeroAreaSlicesAreCountedAndTheProfileIsPrinted) {
    batchMode();
    // An earth-pressure surface lying on the ground: one intersection, slices of no height.
    MASTER.IDTYP = 2;
    GEOMSH.XWALL = 8.0;
    GEOMSH.ZWALL = 0.0;
    soil({{0.0, 0.0}, {10.0, 0.0}});
    shear({{2.0, 0.0}, {9.0, 0.0}});
    run(3);

    EXPECT_EQ(MASTER.IERR, 103);  // the last slice with no area
    EXPECT_EQ(count(console(), " **** SR/GEOMET :  ZERO OR NEGATIVE SLICE AREA "), 3);
    EXPECT_TRUE(has(log(), " **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR="));
}

TEST_F(Geomet, RequestedSliceCountOutsideTheLimitsIsRefused) {
    soil({{-10.0, 0.0}, {30.0, 0.0}});
    shear({{-1.0, -1.0}, {5.0, 5.0}, {11.0, -1.0}});
    run(MAXSLC + 1);
    EXPECT_EQ(MASTER.IERR, 99);
    run(-3);
    EXPECT_EQ(MASTER.IERR, 99);
}

}  // namespace
