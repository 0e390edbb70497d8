// LOCATE: material from layers, triangles and mesh elements; element search; points outside.

#include <gtest/gtest.h>

#include <sstream>

#include "input/input.h"
#include "input/mesh_fixture.h"
#include "io/channels.h"
#include "records.h"

namespace {

// Four element columns 10 wide from x = 0 to 40, two elements per column; the ground rises from
// z = 0 at x = 0 to z = -4 at x = 40, the rock lies at z = 10. Nodes of column c at x = 10(c - 1):
// rock 10, middle (10 + ground) / 2, ground. The upper edge of element 1 runs from (0, 5) to
// (10, 4.5), that of element 2 (the top of column 1) from (0, 0) to (10, -1).
class Locate : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        io::resetAll();
        kalmo_test::fillMesh(0.0, 40.0, 4, 2, 0.0, -4.0, 10.0);
        ISOLPR.NMAT = 1;
    }
    void TearDown() override { io::resetAll(); }

    static int at(double x, double z, int code) {
        int result = code;
        LOCATE(x, z, result);
        return result;
    }
};

}  // namespace

TEST_F(Locate, ElementModeWalksTheColumnFromTheRockUp) {
    EXPECT_EQ(at(5.0, 7.0, -1), 1);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(at(5.0, 3.0, -1), 2);
    EXPECT_EQ(at(15.0, 3.0, -1), 4);  // column 2: edges 4.25 and -1.5 at x = 15
    EXPECT_EQ(at(15.0, 4.3, -1), 3);
    EXPECT_EQ(at(35.0, 0.0, -1), 8);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Locate, APointOnAnUpperEdgeBelongsToTheElementBelowIt) {
    EXPECT_EQ(at(5.0, 4.75, -1), 1);
    EXPECT_EQ(at(5.0, 4.7499, -1), 2);
}

TEST_F(Locate, ANodeColumnBelongsToTheColumnOnItsLeft) {
    EXPECT_EQ(at(10.0, 4.6, -1), 1);
    EXPECT_EQ(at(10.0, 4.4, -1), 2);
    EXPECT_EQ(at(0.0, 6.0, -1), 1);
    EXPECT_EQ(at(40.0, -3.0, -1), 8);  // column 4: edges 3 and -4 at x = 40
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Locate, BelowTheRockIsTheBottomElement) {
    EXPECT_EQ(at(5.0, 12.0, -1), 1);
    EXPECT_EQ(at(25.0, 100.0, -1), 5);
}

TEST_F(Locate, AboveTheGroundByLessThanTheColumnWidthIsTheTopElement) {
    // The top edge lies at -0.5 at x = 5; 9.9 above it is still in element 2.
    EXPECT_EQ(at(5.0, -10.4, -1), 2);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Locate, AboveTheGroundByTheColumnWidthIsOutside) {
    EXPECT_EQ(at(5.0, -10.5, -1), 1);
    EXPECT_EQ(MASTER.IERR, 1);
    ISOLPR.NMAT = 2;
    EXPECT_EQ(at(5.0, -12.0, 0), 1);
    EXPECT_EQ(MASTER.IERR, 1);
}

TEST_F(Locate, LeftOrRightOfTheMeshIsOutside) {
    EXPECT_EQ(at(-0.1, 5.0, -1), 1);
    EXPECT_EQ(MASTER.IERR, 1);
    MASTER.IERR = 0;
    EXPECT_EQ(at(40.1, 0.0, 0), 1);
    EXPECT_EQ(MASTER.IERR, 1);
    MASTER.IERR = 0;
    EXPECT_EQ(at(-0.1, 5.0, 3), 1);
    EXPECT_EQ(MASTER.IERR, 1);
}

TEST_F(Locate, ThePointOutsideIsReportedWithItsCode) {
    std::ostringstream out;
    io::setStdoutStream(&out);
    io::bindStdout(12);
    MASTER.NFOUT = 12;
    at(-2.5, 5.0, -1);
    io::setStdoutStream(nullptr);  // before the stream goes
    const std::string text = out.str();
    EXPECT_NE(text.find(" **** SR/LOCATE"), std::string::npos);
    EXPECT_NE(text.find("-2.5"), std::string::npos);
    EXPECT_NE(text.find("-1"), std::string::npos);
}

TEST_F(Locate, OneMaterialWithoutLayersOrTrianglesIsMaterialOne) {
    IGEOMS.IELMAT(2) = 3;
    EXPECT_EQ(at(5.0, 3.0, 0), 1);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Locate, SeveralMaterialsWithoutLayersTakeTheElementMaterial) {
    ISOLPR.NMAT = 3;
    IGEOMS.IELMAT(1) = 2;
    IGEOMS.IELMAT(2) = 3;
    EXPECT_EQ(at(5.0, 3.0, 0), 3);
    EXPECT_EQ(at(5.0, 7.0, 0), 2);
    EXPECT_EQ(at(15.0, 7.0, 0), 1);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Locate, LayersReachFromTheLevelAboveDownToTheirOwn) {
    ISOLPR.NMAT = 6;
    IGEOMS.IELMAT(2) = 3;  // not used while there are layers
    IGEOMS.NLAYER = 3;
    GEOMSH.ZLAYER(1) = 2.0;
    GEOMSH.ZLAYER(2) = 6.0;
    GEOMSH.ZLAYER(3) = 8.0;
    IGEOMS.LAYMAT(1) = 4;
    IGEOMS.LAYMAT(2) = 5;
    IGEOMS.LAYMAT(3) = 6;
    EXPECT_EQ(at(5.0, -3.0, 0), 4);
    EXPECT_EQ(at(5.0, 1.0, 0), 4);
    EXPECT_EQ(at(5.0, 2.0, 0), 4);
    EXPECT_EQ(at(5.0, 3.0, 0), 5);
    EXPECT_EQ(at(5.0, 6.0, 0), 5);
    EXPECT_EQ(at(5.0, 7.0, 0), 6);
    EXPECT_EQ(at(5.0, 20.0, 0), 6);  // below the last level the last layer holds
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Locate, TrianglesOverrideLayers) {
    ISOLPR.NMAT = 8;
    IGEOMS.NLAYER = 2;
    GEOMSH.ZLAYER(1) = 2.0;
    GEOMSH.ZLAYER(2) = 6.0;
    IGEOMS.LAYMAT(1) = 4;
    IGEOMS.LAYMAT(2) = 5;
    // Triangle 1: (2, 0), (6, 4), (10, 0), material 7; triangle 2 overlaps it, material 8.
    IGEOMS.NTRI = 2;
    const double x1[3] = {2.0, 6.0, 10.0}, z1[3] = {0.0, 4.0, 0.0};
    const double x2[3] = {4.0, 8.0, 12.0}, z2[3] = {0.0, 8.0, 0.0};
    for (int k = 1; k <= 3; ++k) {
        GEOMSH.XTRI(k, 1) = x1[k - 1];
        GEOMSH.ZTRI(k, 1) = z1[k - 1];
        GEOMSH.XTRI(k, 2) = x2[k - 1];
        GEOMSH.ZTRI(k, 2) = z2[k - 1];
    }
    IGEOMS.ITRMAT(1) = 7;
    IGEOMS.ITRMAT(2) = 8;
    EXPECT_EQ(at(6.0, 1.0, 0), 7);  // in both: the first in input order
    EXPECT_EQ(at(6.0, 3.0, 0), 7);  // layer 2 level, but inside triangle 1
    EXPECT_EQ(at(6.0, 4.0, 0), 7);  // vertex of triangle 1
    EXPECT_EQ(at(6.0, 5.0, 0), 5);  // below triangle 1, left of triangle 2's reach at this depth
    EXPECT_EQ(at(8.0, 5.0, 0), 8);
    EXPECT_EQ(at(11.0, 0.5, 0), 8);
    EXPECT_EQ(at(11.0, 1.5, 0), 8);  // edge 2-3 of triangle 2 lies at 2 there
    EXPECT_EQ(at(11.0, 2.5, 0), 5);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Locate, TrianglesOverrideTheMesh) {
    ISOLPR.NMAT = 3;
    IGEOMS.IELMAT(2) = 2;
    IGEOMS.NTRI = 1;
    const double xv[3] = {2.0, 6.0, 10.0}, zv[3] = {0.0, 4.0, 0.0};
    for (int k = 1; k <= 3; ++k) {
        GEOMSH.XTRI(k, 1) = xv[k - 1];
        GEOMSH.ZTRI(k, 1) = zv[k - 1];
    }
    IGEOMS.ITRMAT(1) = 3;
    EXPECT_EQ(at(6.0, 1.0, 0), 3);
    EXPECT_EQ(at(3.0, 3.0, 0), 2);
}

TEST_F(Locate, ElementModeIgnoresLayersAndTriangles) {
    IGEOMS.NLAYER = 1;
    GEOMSH.ZLAYER(1) = 2.0;
    IGEOMS.LAYMAT(1) = 4;
    EXPECT_EQ(at(15.0, 7.0, -1), 3);
}
