// Mesh builder: x-lines, nodes, elements, materials, layers and triangles from the geometry
// section of the work file, with every refusal of bad data.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

constexpr int kWorkUnit = 15;
constexpr int kConsoleUnit = 12;
constexpr int kCopyUnit = 9;
constexpr int kLogUnit = 18;

// An integer free-format item: right-aligned in 12 columns.
std::string I12(long long value) {
    std::string digits = std::to_string(value);
    return std::string(12 - digits.size(), ' ') + digits;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> out;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) out.push_back(line);
    return out;
}

// A geometry section as the work file holds it: the blank line ending the control section,
// the heading, the four counts, the x-lines, node shifts, element materials, layers and
// triangles, then record 2200 and the blank end line that the reader goes on with.
std::string section(const std::string& counts, const std::string& xlines, const std::string& shifts = "0 0 0 0 0\n",
                    const std::string& elements = "0 0 0 0\n", const std::string& layers = "",
                    const std::string& triangles = "") {
    return "\nGEOMETRY OF THE SECTION\n" + counts + "X-LINES: X, Z-SURFACE, Z-ROCK, NUMX\n" + xlines + shifts + elements +
           "HORIZONTAL LAYERS\n" + layers + "MATERIAL TRIANGLES\n" + triangles + "0.0 0.0 0.0\n\n";
}

// Two x-lines 100 apart, ground at 0 and rock at 10, ten columns; NZ = 5.
const std::string kTenColumns = "2\n5\n0\n0\n";
const std::string kTenColumnXLines = "0.0 0.0 10.0 10\n100.0 0.0 10.0 0\n";

// Sloping ground and rock: x-lines at 0 (ground 2, rock 14) and 30 (ground 8, rock 20),
// three columns of width 10, NZ = 3: 12 elements, 16 nodes.
const std::string kSlopeCounts = "2\n3\n0\n0\n";
const std::string kSlopeXLines = "0 2 14 3\n30 8 20 0\n";

class MeshTest : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();  // channels 15 (kWorkUnit), 12 (kConsoleUnit) and 18 (kLogUnit) among them
        POSTGRAF.NFCOPY = kCopyUnit;
        MASTER.FCTLEN = 1.0;
        ASSERT_EQ(io::openNew(kConsoleUnit, dir_.path("CONSOLE.TXT")), 0);
        ASSERT_EQ(io::openNew(kCopyUnit, dir_.path("COPY.TXT")), 0);
        ASSERT_EQ(io::openNew(kLogUnit, dir_.path("KALMO.LOG")), 0);
    }
    void TearDown() override { io::resetAll(); }

    int build(const std::string& text) {
        dir_.write("KALMO.TMP", text);
        EXPECT_EQ(io::openOld(kWorkUnit, dir_.path("KALMO.TMP")), 0);
        MASTER.IERR = 0;
        maxMaterial_ = -1;
        MESH(maxMaterial_);
        return MASTER.IERR;
    }

    std::vector<std::string> messages() const { return linesOf(io::contents(kConsoleUnit)); }

    // The one message of a refused build, on the console and on the log-copy channel alike.
    void expectOnlyMessage(const std::string& expected) const {
        auto console = messages();
        ASSERT_EQ(console.size(), 1u) << io::contents(kConsoleUnit);
        EXPECT_EQ(console[0], expected);
        EXPECT_EQ(io::contents(kCopyUnit), io::contents(kConsoleUnit));
    }

    std::string nextWorkLine() const {
        std::string line;
        io::readLine(kWorkUnit, line);
        return line;
    }

    kalmo_test::TempDir dir_;
    int maxMaterial_ = -1;
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// Numbering and coordinates
// ---------------------------------------------------------------------------------------------

TEST_F(MeshTest, TwoXLinesWithTenColumnsAndFiveZElements) {
    ASSERT_EQ(build(section(kTenColumns, kTenColumnXLines)), 0);
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(IGEOMS.NXLINE, 2);
    EXPECT_EQ(IGEOMS.NX, 10);
    EXPECT_EQ(IGEOMS.NZ, 5);
    EXPECT_EQ(IGEOMS.NELEM, 50);
    EXPECT_EQ(IGEOMS.NNODE, 66);
    // Node 1: rock point of the left edge; node 6: its ground point; node 7: rock of the next column.
    EXPECT_DOUBLE_EQ(GEOMSH.XNOD(1), 0.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(1), 10.0);
    EXPECT_DOUBLE_EQ(GEOMSH.XNOD(6), 0.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(6), 0.0);
    EXPECT_DOUBLE_EQ(GEOMSH.XNOD(7), 10.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(7), 10.0);
    // Evenly spaced from the rock up: 10, 8, 6, 4, 2, 0.
    for (int j = 1; j <= 6; ++j) EXPECT_NEAR(GEOMSH.ZNOD(j), 10.0 - 2.0 * (j - 1), 1e-12) << j;
    EXPECT_DOUBLE_EQ(GEOMSH.XNOD(66), 100.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(66), 0.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(61), 10.0);
    // Every element has the default material 1.
    for (int e = 1; e <= 50; ++e) EXPECT_EQ(IGEOMS.IELMAT(e), 1);
    EXPECT_EQ(maxMaterial_, 1);
    // The reader goes on with record 2200.
    EXPECT_EQ(nextWorkLine(), "0.0 0.0 0.0");
}

TEST_F(MeshTest, ElementCornersGoUpperLeftUpperRightLowerRightLowerLeft) {
    ASSERT_EQ(build(section(kTenColumns, kTenColumnXLines)), 0);
    // Element 1: lower-left node 1; first node above it (2), then across: 8, 7, 1.
    EXPECT_EQ(IGEOMS.IELNOD(1, 1), 2);
    EXPECT_EQ(IGEOMS.IELNOD(2, 1), 8);
    EXPECT_EQ(IGEOMS.IELNOD(3, 1), 7);
    EXPECT_EQ(IGEOMS.IELNOD(4, 1), 1);
    // Element 5 is the top one of column 1 (lower-left node 5); element 6 starts column 2.
    EXPECT_EQ(IGEOMS.IELNOD(1, 5), 6);
    EXPECT_EQ(IGEOMS.IELNOD(2, 5), 12);
    EXPECT_EQ(IGEOMS.IELNOD(3, 5), 11);
    EXPECT_EQ(IGEOMS.IELNOD(4, 5), 5);
    EXPECT_EQ(IGEOMS.IELNOD(4, 6), 7);
    EXPECT_EQ(IGEOMS.IELNOD(2, 6), 14);
    // The last element: column 10, top (lower-left node 9*6 + 5 = 59).
    EXPECT_EQ(IGEOMS.IELNOD(1, 50), 60);
    EXPECT_EQ(IGEOMS.IELNOD(2, 50), 66);
    EXPECT_EQ(IGEOMS.IELNOD(3, 50), 65);
    EXPECT_EQ(IGEOMS.IELNOD(4, 50), 59);
}

TEST_F(MeshTest, LevelsAreInterpolatedBetweenXLinesAndNodesSpacedEvenly) {
    ASSERT_EQ(build(section(kSlopeCounts, kSlopeXLines)), 0);
    EXPECT_EQ(IGEOMS.NELEM, 9);
    EXPECT_EQ(IGEOMS.NNODE, 16);
    // Column x = 10: ground 2 + 6/3 = 4, rock 14 + 6/3 = 16, steps of 4.
    // Column x = 20: ground 6, rock 18.  Column x = 30: ground 8, rock 20.
    const double x[4] = {0, 10, 20, 30};
    const double ground[4] = {2, 4, 6, 8};
    const double rock[4] = {14, 16, 18, 20};
    for (int c = 0; c < 4; ++c) {
        for (int j = 1; j <= 4; ++j) {
            const int n = c * 4 + j;
            EXPECT_NEAR(GEOMSH.XNOD(n), x[c], 1e-12) << n;
            EXPECT_NEAR(GEOMSH.ZNOD(n), rock[c] - (j - 1) * (rock[c] - ground[c]) / 3.0, 1e-12) << n;
        }
        // The rebuilt x-line table, one entry per node column.
        EXPECT_NEAR(GEOMSH.XSURF(c + 1), x[c], 1e-12);
        EXPECT_NEAR(GEOMSH.ZSURF(c + 1), ground[c], 1e-12);
        EXPECT_NEAR(GEOMSH.ZROCK(c + 1), rock[c], 1e-12);
    }
    // The x-lines as given.
    EXPECT_EQ(IGEOMS.NUMX(1), 3);
    EXPECT_EQ(IGEOMS.NUMX(2), 0);
    EXPECT_DOUBLE_EQ(GEOMSH.XLIN(2), 30.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZSLIN(2), 8.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZRLIN(2), 20.0);
}

TEST_F(MeshTest, EachIntervalHasItsOwnColumnWidth) {
    // x-lines at 0, 10 and 40 with 2 and 1 columns: node columns at 0, 5, 10, 40.
    ASSERT_EQ(build(section("3\n1\n0\n0\n", "0 0 10 2\n10 0 20 1\n40 4 20 0\n")), 0);
    EXPECT_EQ(IGEOMS.NX, 3);
    EXPECT_EQ(IGEOMS.NNODE, 8);
    const double x[4] = {0, 5, 10, 40};
    const double ground[4] = {0, 0, 0, 4};
    const double rock[4] = {10, 15, 20, 20};
    for (int c = 1; c <= 4; ++c) {
        EXPECT_NEAR(GEOMSH.XNOD(2 * c), x[c - 1], 1e-12);
        EXPECT_NEAR(GEOMSH.ZNOD(2 * c - 1), rock[c - 1], 1e-12);
        EXPECT_NEAR(GEOMSH.ZNOD(2 * c), ground[c - 1], 1e-12);
        EXPECT_NEAR(GEOMSH.ZSURF(c), ground[c - 1], 1e-12);
    }
}

TEST_F(MeshTest, ZeroCountsMeanTwoXLinesAndOneZElement) {
    ASSERT_EQ(build(section("0\n0\n0\n0\n", "0 0 10 4\n40 0 10 0\n")), 0);
    EXPECT_EQ(IGEOMS.NXLINE, 2);
    EXPECT_EQ(IGEOMS.NZ, 1);
    EXPECT_EQ(IGEOMS.NELEM, 4);
    EXPECT_EQ(IGEOMS.NNODE, 10);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(1), 10.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(2), 0.0);
}

TEST_F(MeshTest, ASingleXLineGivesOneNodeColumnAndNoElements) {
    ASSERT_EQ(build(section("1\n2\n0\n0\n", "5 0 4 0\n")), 0);
    EXPECT_EQ(IGEOMS.NX, 0);
    EXPECT_EQ(IGEOMS.NELEM, 0);
    EXPECT_EQ(IGEOMS.NNODE, 3);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(2), 2.0);
    EXPECT_DOUBLE_EQ(GEOMSH.XSURF(1), 5.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZROCK(1), 4.0);
    EXPECT_EQ(maxMaterial_, 0);
}

TEST_F(MeshTest, LengthsAreMultipliedByTheLengthFactor) {
    MASTER.FCTLEN = 2.0;
    ASSERT_EQ(build(section("2\n2\n1\n1\n", "0 1 5 2\n10 1 5 0\n", "2 2 1 3 3\n9 9 1 1 1\n", "0 0 0 0\n", "1 2.5 2\n",
                            "1 3 1 2 4 3 2 4\n")),
              0);
    EXPECT_DOUBLE_EQ(GEOMSH.XLIN(2), 20.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZSLIN(1), 2.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZRLIN(1), 10.0);
    EXPECT_DOUBLE_EQ(GEOMSH.XNOD(4), 10.0);
    // Node 2 (middle of column 1) shifted to level 3 * 2 = 6.
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(2), 6.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZLAYER(1), 5.0);
    EXPECT_DOUBLE_EQ(GEOMSH.XTRI(1, 1), 2.0);
    // Vertices (2, 4), (8, 6), (4, 8) sorted by x: the third is (8, 6).
    EXPECT_DOUBLE_EQ(GEOMSH.XTRI(3, 1), 8.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZTRI(3, 1), 6.0);
}

TEST_F(MeshTest, TheLargestMeshTheArraysHoldIsAccepted) {
    // 100 columns of 35 elements: exactly 3500 elements and 3636 nodes.
    ASSERT_EQ(build(section("2\n35\n0\n0\n", "0 0 35 100\n100 0 35 0\n")), 0);
    EXPECT_EQ(IGEOMS.NELEM, MAXELM);
    EXPECT_EQ(IGEOMS.NNODE, MAXNOD);
    EXPECT_NEAR(GEOMSH.XNOD(MAXNOD), 100.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZNOD(MAXNOD), 0.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZROCK(101), 35.0, 1e-12);
    EXPECT_EQ(IGEOMS.IELNOD(2, MAXELM), MAXNOD);
}

TEST_F(MeshTest, AThousandXLinesAreAccepted) {
    std::string xlines;
    for (int i = 1; i <= 1000; ++i) xlines += std::to_string(i) + " 0 1 " + (i < 1000 ? "1\n" : "0\n");
    ASSERT_EQ(build(section("1000\n1\n0\n0\n", xlines)), 0);
    EXPECT_EQ(IGEOMS.NX, 999);
    EXPECT_EQ(IGEOMS.NNODE, 2000);
    EXPECT_DOUBLE_EQ(GEOMSH.XSURF(1000), 1000.0);
}

// ---------------------------------------------------------------------------------------------
// Node shifts
// ---------------------------------------------------------------------------------------------

TEST_F(MeshTest, ANodeShiftRecordWithFirstNodeZeroLeavesTheLevelsUnchanged) {
    ASSERT_EQ(build(section(kSlopeCounts, kSlopeXLines, "0 16 1 99 99\n")), 0);
    EXPECT_NEAR(GEOMSH.ZNOD(2), 10.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZNOD(6), 12.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZNOD(16), 8.0, 1e-12);
    EXPECT_TRUE(messages().empty());
}

TEST_F(MeshTest, NodeShiftsInterpolateLinearlyInX) {
    // Nodes 2, 6, 10, 14 (second from the rock in every column) to the line from (0, 12) to
    // (30, 15); then node 16 alone (no x span: the first level) to 7.
    ASSERT_EQ(build(section(kSlopeCounts, kSlopeXLines, "2 14 4 12 15\n16 16 1 7 99\n")), 0);
    EXPECT_TRUE(messages().empty());
    EXPECT_NEAR(GEOMSH.ZNOD(2), 12.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZNOD(6), 13.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZNOD(10), 14.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZNOD(14), 15.0, 1e-12);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(16), 7.0);
    // Nodes between the steps keep their levels.
    EXPECT_NEAR(GEOMSH.ZNOD(3), 6.0, 1e-12);
    EXPECT_NEAR(GEOMSH.ZNOD(15), 12.0, 1e-12);
    // The rebuilt ground line follows the shifted top node.
    EXPECT_DOUBLE_EQ(GEOMSH.ZSURF(4), 7.0);
}

TEST_F(MeshTest, ANodeShiftStepBelowOneMeansOne) {
    // Nodes 12 (top of column 3, x = 20) and 13 (rock of column 4, x = 30) both shifted.
    ASSERT_EQ(build(section(kSlopeCounts, kSlopeXLines, "12 13 -3 5 19\n16 16 1 8 8\n")), 0);
    EXPECT_TRUE(messages().empty());
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(12), 5.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(13), 19.0);
}

TEST_F(MeshTest, AHugeNodeShiftStepShiftsOnlyTheFirstNode) {
    ASSERT_EQ(build(section(kSlopeCounts, kSlopeXLines, "1 16 2147483647 13 0\n")), 0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZNOD(1), 13.0);
    EXPECT_NEAR(GEOMSH.ZNOD(16), 8.0, 1e-12);
}

TEST_F(MeshTest, NodeShiftSequenceError) {
    EXPECT_EQ(build(section(kSlopeCounts, kSlopeXLines, "5 3 1 0 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : NODE SHIFT SEQUENCE ERROR" + I12(5) + I12(3));
}

TEST_F(MeshTest, ANegativeFirstNodeIsASequenceError) {
    EXPECT_EQ(build(section(kSlopeCounts, kSlopeXLines, "-4 16 1 0 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : NODE SHIFT SEQUENCE ERROR" + I12(-4) + I12(16));
}

TEST_F(MeshTest, ALastShiftedNodeBeyondTheNodeCountIsTooHigh) {
    EXPECT_EQ(build(section(kSlopeCounts, kSlopeXLines, "1 17 1 0 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : LAST NODE NUMBER TOO HIGH" + I12(17) + I12(16));
    // Nothing was shifted.
    EXPECT_NEAR(GEOMSH.ZNOD(1), 14.0, 1e-12);
}

TEST_F(MeshTest, NodeShiftsEndingShortOfTheLastNodeAreRefused) {
    EXPECT_EQ(build(section(kSlopeCounts, kSlopeXLines, "2 14 4 12 15\n0 0 0 0 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : LAST NODE NUMBER TOO HIGH" + I12(14) + I12(16));
}

TEST_F(MeshTest, ANodeNotAboveTheNodeBelowIsReportedAndTheBuildGoesOn) {
    // Node 2 moved to 5, above node 3 (at 6): node 3 is out of place.
    ASSERT_EQ(build(section(kSlopeCounts, kSlopeXLines, "2 2 1 5 5\n16 16 1 8 8\n")), 0);
    auto console = messages();
    ASSERT_EQ(console.size(), 1u);
    EXPECT_EQ(console[0], " **** SR/MESH : NODE SHIFT POSITION ERROR" + I12(3) + "   0.000000       6.000000    ");
    EXPECT_EQ(io::contents(kCopyUnit), io::contents(kConsoleUnit));
    EXPECT_EQ(IGEOMS.IELNOD(4, 9), 11);  // the build went on to the end
}

TEST_F(MeshTest, MoreThanFiftyNodesOutOfPlaceStopTheBuild) {
    // 21 node columns of 6 nodes all moved to level 0: 5 nodes per column are not above the
    // node below; the 51st report stops the build.
    EXPECT_EQ(build(section("2\n5\n0\n0\n", "0 0 10 20\n20 0 10 0\n", "1 126 1 0 0\n")), 2);
    auto console = messages();
    ASSERT_EQ(console.size(), 51u);
    EXPECT_EQ(console[0], " **** SR/MESH : NODE SHIFT POSITION ERROR" + I12(2) + "   0.000000       0.000000    ");
    // Column 11 (x = 10), nodes 61..66: its first report (node 62) is the 51st.
    EXPECT_EQ(console[50], " **** SR/MESH : NODE SHIFT POSITION ERROR" + I12(62) + "   10.00000       0.000000    ");
}

// ---------------------------------------------------------------------------------------------
// Element materials
// ---------------------------------------------------------------------------------------------

TEST_F(MeshTest, OneMaterialRecordCanCoverAllElements) {
    ASSERT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "1 50 1 3\n")), 0);
    for (int e = 1; e <= 50; ++e) EXPECT_EQ(IGEOMS.IELMAT(e), 3) << e;
    EXPECT_EQ(maxMaterial_, 3);
    EXPECT_TRUE(messages().empty());
}

TEST_F(MeshTest, MaterialRecordsEndingAtElement49AreRefused) {
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "1 49 1 3\n0 0 0 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : LAST ELEMENT NUMBER TOO HIGH" + I12(49) + I12(50));
}

TEST_F(MeshTest, ALastElementBeyondTheElementCountIsTooHigh) {
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "1 51 1 3\n")), 2);
    expectOnlyMessage(" **** SR/MESH : LAST ELEMENT NUMBER TOO HIGH" + I12(51) + I12(50));
    EXPECT_EQ(IGEOMS.IELMAT(1), 1);
}

TEST_F(MeshTest, MaterialRecordsWithStepsAndSeveralRecords) {
    // Elements 1, 6, 11, ... 46 (bottom of every column) get 2; then 2..50 step 5 (second
    // row) get 4; then 50 alone gets 7. The step 0 means 1.
    ASSERT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "1 49 5 2\n2 47 5 4\n50 50 0 7\n")), 0);
    for (int c = 0; c < 10; ++c) {
        EXPECT_EQ(IGEOMS.IELMAT(c * 5 + 1), 2);
        EXPECT_EQ(IGEOMS.IELMAT(c * 5 + 2), 4);
        EXPECT_EQ(IGEOMS.IELMAT(c * 5 + 3), 1);
    }
    EXPECT_EQ(IGEOMS.IELMAT(50), 7);
    EXPECT_EQ(maxMaterial_, 7);
}

TEST_F(MeshTest, ElementSequenceError) {
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "5 3 1 2\n")), 2);
    expectOnlyMessage(" **** SR/MESH : ELEMENT SEQUENCE ERROR" + I12(5) + I12(3) + I12(2));
}

TEST_F(MeshTest, ANegativeFirstElementIsASequenceError) {
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "-1 50 1 2\n")), 2);
    expectOnlyMessage(" **** SR/MESH : ELEMENT SEQUENCE ERROR" + I12(-1) + I12(50) + I12(2));
}

TEST_F(MeshTest, AnElementMaterialBelowOneIsASequenceError) {
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "1 50 1 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : ELEMENT SEQUENCE ERROR" + I12(1) + I12(50) + I12(0));
}

// ---------------------------------------------------------------------------------------------
// Layers and triangles
// ---------------------------------------------------------------------------------------------

TEST_F(MeshTest, HorizontalLayersAreStoredByTheirNumber) {
    ASSERT_EQ(build(section("2\n5\n2\n0\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "1 3.0 2\n2 6.5 4\n")), 0);
    EXPECT_EQ(IGEOMS.NLAYER, 2);
    EXPECT_DOUBLE_EQ(GEOMSH.ZLAYER(1), 3.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZLAYER(2), 6.5);
    EXPECT_EQ(IGEOMS.LAYMAT(1), 2);
    EXPECT_EQ(IGEOMS.LAYMAT(2), 4);
    EXPECT_EQ(maxMaterial_, 4);
}

TEST_F(MeshTest, LayerLevelsNotIncreasingAreRefused) {
    EXPECT_EQ(build(section("2\n5\n2\n0\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "1 3.0 2\n2 3.0 4\n")), 2);
    expectOnlyMessage(" **** SR/MESH : SOIL LAYER DATA PROBLEM" + I12(2) + I12(2) + "   3.000000    " + I12(4));
}

TEST_F(MeshTest, ALayerNumberOutsideOneTo35IsRefused) {
    EXPECT_EQ(build(section("2\n5\n1\n0\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "36 3.0 2\n")), 2);
    expectOnlyMessage(" **** SR/MESH : SOIL LAYER DATA PROBLEM" + I12(1) + I12(36) + "   3.000000    " + I12(2));
}

TEST_F(MeshTest, ALayerNumberZeroIsRefused) {
    EXPECT_EQ(build(section("2\n5\n1\n0\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "0 3.0 2\n")), 2);
    expectOnlyMessage(" **** SR/MESH : SOIL LAYER DATA PROBLEM" + I12(1) + I12(0) + "   3.000000    " + I12(2));
}

TEST_F(MeshTest, ALayerNumberOutOfTurnIsRefused) {
    // Layer 2 given first would leave layer 1 without a material.
    EXPECT_EQ(build(section("2\n5\n2\n0\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "2 3.0 2\n1 6.5 4\n")), 2);
    expectOnlyMessage(" **** SR/MESH : SOIL LAYER DATA PROBLEM" + I12(1) + I12(2) + "   3.000000    " + I12(2));
}

TEST_F(MeshTest, ALayerMaterialBelowOneIsRefused) {
    EXPECT_EQ(build(section("2\n5\n1\n0\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "1 3.0 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : SOIL LAYER DATA PROBLEM" + I12(1) + I12(1) + "   3.000000    " + I12(0));
}

TEST_F(MeshTest, TriangleVerticesAreSortedByX) {
    ASSERT_EQ(build(section("2\n5\n0\n2\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "",
                            "1 4 30 5 10 2 20 8\n2 6 5 1 6 2 7 3\n")),
              0);
    EXPECT_EQ(IGEOMS.NTRI, 2);
    EXPECT_EQ(IGEOMS.ITRMAT(1), 4);
    EXPECT_DOUBLE_EQ(GEOMSH.XTRI(1, 1), 10.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZTRI(1, 1), 2.0);
    EXPECT_DOUBLE_EQ(GEOMSH.XTRI(2, 1), 20.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZTRI(2, 1), 8.0);
    EXPECT_DOUBLE_EQ(GEOMSH.XTRI(3, 1), 30.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZTRI(3, 1), 5.0);
    // Already in order: unchanged.
    EXPECT_DOUBLE_EQ(GEOMSH.XTRI(1, 2), 5.0);
    EXPECT_DOUBLE_EQ(GEOMSH.ZTRI(3, 2), 3.0);
    EXPECT_EQ(maxMaterial_, 6);
}

TEST_F(MeshTest, TrianglesOutOfSequenceAreRefused) {
    EXPECT_EQ(build(section("2\n5\n0\n1\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "", "2 4 0 0 1 1 2 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : MATERIAL TRIANGLES SEQUENCE ERROR" + I12(1) + I12(2) + I12(4));
}

TEST_F(MeshTest, ATriangleMaterialBelowOneIsRefused) {
    EXPECT_EQ(build(section("2\n5\n0\n1\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "", "1 0 0 0 1 1 2 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : MATERIAL TRIANGLES SEQUENCE ERROR" + I12(1) + I12(1) + I12(0));
}

TEST_F(MeshTest, TheHighestMaterialOfElementsLayersAndTrianglesIsReturned) {
    ASSERT_EQ(build(section("2\n5\n1\n1\n", kTenColumnXLines, "0 0 0 0 0\n", "1 50 1 5\n", "1 3.0 2\n",
                            "1 3 0 0 1 1 2 0\n")),
              0);
    EXPECT_EQ(maxMaterial_, 5);
}

// ---------------------------------------------------------------------------------------------
// The blank line, the counts and the x-lines
// ---------------------------------------------------------------------------------------------

TEST_F(MeshTest, TheControlSectionMustEndWithABlankLine) {
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines).substr(1)), 4);
    expectOnlyMessage(" **** SR/MESH : BLANK LINE EXPECTED AT END OF CONTROL SECTION");
}

TEST_F(MeshTest, OnlyTheFirst40CharactersOfTheBlankLineCount) {
    ASSERT_EQ(build(std::string(40, ' ') + "TEXT BEYOND COLUMN 40" + section(kTenColumns, kTenColumnXLines)), 0);
    EXPECT_EQ(IGEOMS.NELEM, 50);
}

TEST_F(MeshTest, NoDataAtAllIsAMissingBlankLine) {
    EXPECT_EQ(build(""), 4);
    expectOnlyMessage(" **** SR/MESH : BLANK LINE EXPECTED AT END OF CONTROL SECTION");
}

TEST_F(MeshTest, NumberOfXLinesAbove1000) {
    EXPECT_EQ(build(section("1001\n5\n0\n0\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF X-LINES" + I12(1001));
}

TEST_F(MeshTest, NegativeNumberOfXLines) {
    EXPECT_EQ(build(section("-1\n5\n0\n0\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF X-LINES" + I12(-1));
}

TEST_F(MeshTest, NumberOfZElementsAbove35) {
    EXPECT_EQ(build(section("2\n36\n0\n0\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF Z-ELEMENTS" + I12(36));
}

TEST_F(MeshTest, NegativeNumberOfZElements) {
    EXPECT_EQ(build(section("2\n-2\n0\n0\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF Z-ELEMENTS" + I12(-2));
}

TEST_F(MeshTest, NumberOfHorizontalLayersAbove35) {
    EXPECT_EQ(build(section("2\n5\n36\n0\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF HORIZONTAL LAYERS" + I12(36));
}

TEST_F(MeshTest, NegativeNumberOfHorizontalLayers) {
    EXPECT_EQ(build(section("2\n5\n-1\n0\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF HORIZONTAL LAYERS" + I12(-1));
}

TEST_F(MeshTest, NumberOfMaterialTrianglesAbove950) {
    EXPECT_EQ(build(section("2\n5\n0\n951\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF MATERIAL TRIANGLES" + I12(951));
}

TEST_F(MeshTest, NegativeNumberOfMaterialTriangles) {
    EXPECT_EQ(build(section("2\n5\n0\n-3\n", kTenColumnXLines)), 2);
    expectOnlyMessage(" **** SR/MESH : NUMBER OF MATERIAL TRIANGLES" + I12(-3));
}

TEST_F(MeshTest, XLinesOutOfSequence) {
    EXPECT_EQ(build(section(kTenColumns, "10 0 10 10\n5 0 10 0\n")), 2);
    expectOnlyMessage(" **** SR MESH : X-LINES SEQUENCE ERROR" + I12(2) + "   10.00000       5.000000    ");
}

TEST_F(MeshTest, EqualXIsASequenceError) {
    EXPECT_EQ(build(section(kTenColumns, "10 0 10 10\n10 0 10 0\n")), 2);
    expectOnlyMessage(" **** SR MESH : X-LINES SEQUENCE ERROR" + I12(2) + "   10.00000       10.00000    ");
}

TEST_F(MeshTest, RockNotBelowTheGroundSurface) {
    EXPECT_EQ(build(section(kTenColumns, "0 5 5 10\n100 0 10 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : SURFACE/ROCK Z-LEVELS" + I12(1) + "   5.000000       5.000000    ");
}

TEST_F(MeshTest, MoreThan1000ColumnsInAll) {
    EXPECT_EQ(build(section("3\n1\n0\n0\n", "0 0 10 600\n10 0 10 401\n20 0 10 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : TOO MANY X-DIRECTION ELEMENTS" + I12(2) + I12(401) + I12(1001));
}

TEST_F(MeshTest, AnXLineButTheLastNeedsAColumn) {
    EXPECT_EQ(build(section("3\n5\n0\n0\n", "0 0 10 0\n10 0 10 2\n20 0 10 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : NON-ACCEPTED NUMX   N,NUMX =" + I12(1) + I12(0));
}

TEST_F(MeshTest, TheLastXLineMustHaveNoColumns) {
    EXPECT_EQ(build(section(kTenColumns, "0 0 10 10\n100 0 10 3\n")), 2);
    expectOnlyMessage(" **** SR/MESH : LAST X-LINE NUMX IS NOT ZERO" + I12(2) + I12(3));
}

TEST_F(MeshTest, MoreThan3500Elements) {
    EXPECT_EQ(build(section("2\n35\n0\n0\n", "0 0 35 101\n100 0 35 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : TOO MANY ELEMENTS" + I12(3535));
}

TEST_F(MeshTest, MoreNodesThanTheNodeArraysHoldAreRefused) {
    // 1000 columns of 3 elements: 3000 elements, but 1001 * 4 = 4004 nodes.
    EXPECT_EQ(build(section("2\n3\n0\n0\n", "0 0 10 1000\n1000 0 10 0\n")), 2);
    expectOnlyMessage(" **** SR/MESH : NODE NUMBER PROBLEM" + I12(4004) + I12(3636));
}

// ---------------------------------------------------------------------------------------------
// Records that cannot be read
// ---------------------------------------------------------------------------------------------

TEST_F(MeshTest, TextInAnXLineRecordIsAFormatError) {
    EXPECT_EQ(build(section(kTenColumns, "0 0 10 10\n100 ZERO 10 0\n")), 1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(20002));
}

TEST_F(MeshTest, TextInACountRecordIsAFormatError) {
    EXPECT_EQ(build(section("2\nFIVE\n0\n0\n", kTenColumnXLines)), 1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(10002));
}

TEST_F(MeshTest, AMissingShiftRecordIsAFormatErrorOfTheShiftRecord) {
    // Without the closing zero record the element record gives four of the five values of the
    // first shift record, and the layer heading fails as its fifth.
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines, "", "0 0 0 0\n")), 1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(30001));
}

TEST_F(MeshTest, TextInAnElementRecordIsAFormatError) {
    EXPECT_EQ(build(section(kTenColumns, kTenColumnXLines, "0 0 0 0 0\n", "1 40 1 3\n41 X 1 3\n")), 1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(40002));
}

TEST_F(MeshTest, TextInALayerRecordIsAFormatError) {
    EXPECT_EQ(build(section("2\n5\n1\n0\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "1 DEEP 2\n")), 1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(50001));
}

TEST_F(MeshTest, TextInATriangleRecordIsAFormatError) {
    EXPECT_EQ(build(section("2\n5\n0\n2\n", kTenColumnXLines, "0 0 0 0 0\n", "0 0 0 0\n", "",
                            "1 3 0 0 1 1 2 0\n2 3 0 0 1 1 2 X\n")),
              1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(60002));
}

TEST_F(MeshTest, DataEndingInsideTheXLinesIsAFormatError) {
    EXPECT_EQ(build("\nGEOMETRY\n3\n5\n0\n0\nX-LINES\n0 0 10 10\n"), 1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(20002));
}

TEST_F(MeshTest, DataEndingBeforeTheLayerHeadingIsAFormatError) {
    EXPECT_EQ(build("\nGEOMETRY\n2\n5\n0\n0\nX-LINES\n0 0 10 10\n100 0 10 0\n0 0 0 0 0\n0 0 0 0\n"), 1);
    expectOnlyMessage(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=" + I12(50000));
}

// ---------------------------------------------------------------------------------------------
// Print mode: node values, tables and the node value plot
// ---------------------------------------------------------------------------------------------

namespace {

// Two columns of width 5 over a section 10 deep with flat ground, NZ = 2: nodes at z = 10, 5, 0
// in the columns x = 0, 5, 10. One material with base undrained strength 20 and anisotropy
// SUA/SU0 1.2, SUD/SU0 0.8, SUP/SU0 0.5; hydrostatic pore pressure below a water table at 2
// with water unit weight 10, never below 0.
class MeshPrintTest : public MeshTest {
protected:
    void SetUp() override {
        MeshTest::SetUp();
        ASSERT_EQ(build(section("2\n2\n0\n0\n", "0 0 10 2\n10 0 10 0\n")), 0);
        ISOLPR.NMAT = 1;
        SOLPRP.MAT(MAT14, 1) = 20.0;
        SOLPRP.MAT(SUASU0, 1) = 1.2;
        SOLPRP.MAT(SUDSU0, 1) = 0.8;
        SOLPRP.MAT(SUPSU0, 1) = 0.5;
        SOLPRP.MAT(ISOTRP, 1) = 0.0;
        IWATER.IDPWP = 1;
        WATER1.ZWATER = 2.0;
        WATER1.GAMWAT = 10.0;
        WATER1.PWPMIN = 0.0;
        MASTER.IDEFTO = 1;
        MASTER.JPLOT = 3;
        TEXT.TITLE(1).set("FIRST TITLE LINE");
        TEXT.TITLE(2).set("SECOND TITLE LINE");
    }

    int print() {
        MASTER.IERR = 9;
        maxMaterial_ = 77;
        MESH(maxMaterial_);
        return MASTER.IERR;
    }

    std::vector<std::string> logLines() const { return linesOf(io::contents(kLogUnit)); }

    bool logHas(const std::string& line) const {
        for (const auto& l : logLines())
            if (l == line) return true;
        return false;
    }
};

}  // namespace

TEST_F(MeshPrintTest, NodeValuesAreComputedAtEveryNode) {
    ASSERT_EQ(print(), 0);
    EXPECT_TRUE(messages().empty());
    EXPECT_EQ(maxMaterial_, 77);
    for (int c = 0; c < 3; ++c) {
        // (z - 2) * 10, at least 0: 80, 30, 0 from the rock up.
        EXPECT_NEAR(GEOMSH.PWNODV(c * 3 + 1), 80.0, 1e-12);
        EXPECT_NEAR(GEOMSH.PWNODV(c * 3 + 2), 30.0, 1e-12);
        EXPECT_NEAR(GEOMSH.PWNODV(c * 3 + 3), 0.0, 1e-12);
    }
    for (int n = 1; n <= 9; ++n) {
        EXPECT_NEAR(GEOMSH.SU0NOD(n), 20.0, 1e-12);
        // 45 degrees: 16 + sin 90 * (24 - 16); 0 degrees: 0.8 * 20; -45 degrees: 16 - (16 - 10).
        EXPECT_NEAR(GEOMSH.SUANOD(n), 24.0, 1e-12);
        EXPECT_NEAR(GEOMSH.SUDNOD(n), 16.0, 1e-12);
        EXPECT_NEAR(GEOMSH.SUPNOD(n), 10.0, 1e-12);
    }
}

TEST_F(MeshPrintTest, TablesGoToTheLogFileAboveThePlotLevelTwo) {
    ASSERT_EQ(print(), 0);
    EXPECT_TRUE(logHas("  NODE  X-COORD   Z-COORD    P.W.P.     SU-0     SU-ACT    SU-DIR    SU-PAS"));
    EXPECT_TRUE(logHas("     1     0.000    10.000     80.00     20.00     24.00     16.00     10.00"));
    EXPECT_TRUE(logHas("     9    10.000     0.000      0.00     20.00     24.00     16.00     10.00"));
    EXPECT_TRUE(logHas("  ELM   MAT     I    J    K    L"));
    EXPECT_TRUE(logHas("    1     1     2    5    4    1"));
    EXPECT_TRUE(logHas("    4     1     6    9    8    5"));
    EXPECT_TRUE(logHas("  X-COORD     Z-SURF     Z-ROCK"));
    EXPECT_TRUE(logHas("    5.000      0.000     10.000"));
}

TEST_F(MeshPrintTest, PlotLevelTwoPlotsWithoutTables) {
    MASTER.JPLOT = 2;
    ASSERT_EQ(print(), 0);
    EXPECT_FALSE(logHas("  ELM   MAT     I    J    K    L"));
    EXPECT_TRUE(logHas(" PLOT SHOWS PORE-WATER-PRESSURES COMPUTED AT MESH NODAL POINTS"));
}

TEST_F(MeshPrintTest, ThePorePressurePlotShowsEveryNode) {
    ASSERT_EQ(print(), 0);
    auto log = logLines();
    size_t title = 0;
    while (title < log.size() && log[title] != " PLOT SHOWS PORE-WATER-PRESSURES COMPUTED AT MESH NODAL POINTS") ++title;
    ASSERT_LT(title + 3, log.size());
    EXPECT_EQ(log[title + 1], " FIRST TITLE LINE");
    EXPECT_EQ(log[title + 2], " SECOND TITLE LINE");
    // A square section: 1 + 0.6 * 96 = 58.6 lines, rounded 59, cells of 10 / 58 down.
    // Largest value 80: F = 10.
    const size_t first = title + 4;
    ASSERT_EQ(log.size(), first + 60);  // 59 grid lines and the summary
    const std::string gap(44, ' ');
    EXPECT_EQ(log[first], " +000" + gap + "+000" + gap + "+000");
    EXPECT_EQ(log[first + 58], " +800" + gap + "+800" + gap + "+800");
    // z = 5: 29 cells down, line 30.
    EXPECT_EQ(log[first + 29], " +300" + gap + "+300" + gap + "+300");
    EXPECT_EQ(log[first + 59],
              " POINTS =           9  MIN/MAX VALUES =   0.000000       80.00000       FACTOR =   10.00000    ");
}

TEST_F(MeshPrintTest, ATotalStressAnalysisPlotsTheUndrainedStrength) {
    MASTER.IDEFTO = 2;
    ASSERT_EQ(print(), 0);
    auto log = logLines();
    EXPECT_TRUE(logHas(" PLOT SHOWS UNDRAINED SHEAR STRENGTH (SU0-VALUES) COMPUTED AT MESH NODAL POINTS"));
    EXPECT_EQ(log.back(), " POINTS =           9  MIN/MAX VALUES =   20.00000       20.00000       FACTOR =   10.00000    ");
}

TEST_F(MeshPrintTest, AFailingNodeIsReportedAndTheOthersAreStillComputed) {
    // Moving node 1 to x = 0.5 puts nodes 2 and 3 (x = 0) outside the mesh for the material
    // search of the undrained strength; the hydrostatic pore pressure needs no material.
    GEOMSH.XNOD(1) = 0.5;
    EXPECT_EQ(print(), 3);
    int reports = 0;
    for (const auto& line : messages())
        if (line.rfind(" **** SR/MESH : ERROR IN SR/SUXZ   NP,IERR=", 0) == 0) ++reports;
    EXPECT_EQ(reports, 6);  // nodes 2 and 3, three inclinations each
    bool node2 = false;
    for (const auto& line : messages())
        if (line == " **** SR/MESH : ERROR IN SR/SUXZ   NP,IERR=" + I12(2) + I12(1)) node2 = true;
    EXPECT_TRUE(node2);
    EXPECT_NEAR(GEOMSH.PWNODV(2), 30.0, 1e-12);
    EXPECT_NEAR(GEOMSH.SUANOD(4), 24.0, 1e-12);
    EXPECT_EQ(io::contents(kCopyUnit), io::contents(kConsoleUnit));
}
