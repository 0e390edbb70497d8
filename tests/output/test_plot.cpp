// PLOT: the section sketch with the shear surface and the material table, and the stress
// sketch, each on its own page of the result file.
//
// Expected lines are put together from the field codes of the layout ("  7" is I3 of 7,
// "  1.250" F7.3 of 1.25). The positions in the sketches are worked out here from the scale
// rules of the layout: column = nearest whole number to 70·(x - x0)/(x range) + 1.5, so that
// x runs from X1 of the first slice to X2 of the last over columns 2 to 72 (71 columns),
// rows = (depth range / x range)·(284/7) + 0.5 to the nearest whole number within 1..30, each
// row one equal band of depth from the top down.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "output/output.h"
#include "output/output_world.h"
#include "records.h"

using namespace kalmo_test;

namespace {

std::string blanks(int n) { return std::string(static_cast<size_t>(n), ' '); }

const std::string kSectionLegend = " BELOW SKETCH SHOWS SHEAR SURFACE WITH SLICE DIVISIONS AND MATERIAL ID-S";
const std::string kMaterialHeading =
    "  MAT GAMTOT SUA/SU0 SUD/SU0 SUP/SU0 COHESN PHIANG PHIRED RU-FCT  B-FCT  K-NOT B-SIG2 D/SU(B)";
const std::string kZeroAxis = " " + std::string(72, '-') + "ZERO";
const std::string kSigmaAxis = " " + std::string(72, '-') + "SIGMAX";

// A flat-topped section of slices under z = 0 whose bases follow a circle through (0, 0) and
// (30, 0) with its centre at (15, -10): the deepest base point lies 8.03 below the top.
const std::vector<double> kBorders = {0.0, 1.5, 4.0, 6.0, 9.5, 12.0, 14.0, 15.5, 18.0, 21.0, 23.5, 26.0, 28.5, 30.0};

double circleDepth(double x) { return -10.0 + std::sqrt(325.0 - (x - 15.0) * (x - 15.0)); }

int layDownCircle() {
    const int slices = static_cast<int>(kBorders.size()) - 1;
    for (int i = 1; i <= slices; ++i) {
        const double x1 = kBorders[static_cast<size_t>(i - 1)], x2 = kBorders[static_cast<size_t>(i)];
        putSliceCorners(i, x1, x2, 0.0, 0.0, circleDepth(x2), circleDepth(x1));
        SURF.L34(i) = std::hypot(x2 - x1, circleDepth(x2) - circleDepth(x1));
    }
    return slices;
}

class Plot : public OutputWorld {
protected:
    void SetUp() override {
        OutputWorld::SetUp();
        MASTER.SF = 1.25;
        MASTER.SCORE = 0.125;
        MASTER.IDEFTO = 1;
        MASTER.PI = 4.0 * std::atan(1.0);
        ISOLPR.NMAT = 1;
        SOLPRP.MAT(GAMTOT, 1) = 19.0;
        SOLPRP.MAT(COHESN, 1) = 8.0;
        SOLPRP.MAT(PHIANG, 1) = std::tan(30.0 * MASTER.PI / 180.0);
        SOLPRP.MAT(SUASU0, 1) = 1.0;
        SOLPRP.MAT(SUDSU0, 1) = 1.0;
        SOLPRP.MAT(SUPSU0, 1) = 1.0;
    }

    // The lines of the section sketch: from the line after the legend's blank line up to the
    // slice number line, which is returned apart.
    Lines sectionRows(std::string* numberLine = nullptr) {
        const Lines lines = pages(16);
        size_t at = 0;
        while (at < lines.size() && lines[at] != kSectionLegend) ++at;
        EXPECT_LT(at + 1, lines.size());
        EXPECT_EQ(lines[at + 1], " ");
        Lines rows;
        for (size_t k = at + 2; k < lines.size() && !lines[k].empty(); ++k) rows.push_back(lines[k]);
        EXPECT_FALSE(rows.empty());
        if (rows.empty()) return rows;
        if (numberLine) *numberLine = rows.back();
        rows.pop_back();
        return rows;
    }

    // The stress sketch: the lines between the ZERO and the SIGMAX axis.
    Lines stressLevels() {
        const Lines lines = pages(16);
        Lines levels;
        bool inside = false;
        for (const std::string& line : lines) {
            if (line == kSigmaAxis) break;
            if (inside) levels.push_back(line);
            if (line == kZeroAxis) inside = true;
        }
        return levels;
    }
};

int columnOf(double x, double x0, double range) { return static_cast<int>(std::lround(70.0 * (x - x0) / range + 1.5)); }

}  // namespace

// ------------------------------------------------------------------------------------------
// Pages and headings
// ------------------------------------------------------------------------------------------

TEST_F(Plot, TwoPagesWithTheirHeadingsTheMaterialTableAndTheStressLegend) {
    const int slices = layDownCircle();
    PLOT(7, 1, slices);
    const Lines lines = pages(16);
    const Lines head = {kPageTopMark,
                        "",
                        " SLOPE AT THE RIVER BANK" + blanks(80 - 23),
                        " SECTION A-A" + blanks(80 - 11),
                        "",
                        " SURFACE NO:  7  TYPE: GENERAL   SAFETY-FACTOR:  1.250   SCORE:  0.125"};
    ASSERT_GT(lines.size(), 2 * head.size());
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + 6), head);
    EXPECT_EQ(lines[6], kSectionLegend);
    EXPECT_EQ(lines[7], " ");

    // Page 2 starts after the material table: heading and one line per material.
    size_t page2 = 1;
    while (page2 < lines.size() && lines[page2] != kPageTopMark) ++page2;
    ASSERT_LT(page2 + 13, lines.size());
    EXPECT_EQ(lines[page2 - 3], "");
    EXPECT_EQ(lines[page2 - 2], kMaterialHeading);
    EXPECT_EQ(Lines(lines.begin() + static_cast<long>(page2), lines.begin() + static_cast<long>(page2) + 6), head);
    EXPECT_EQ(lines[page2 + 6], " BELOW SKETCH SHOWS EFFECTIVE NORMAL STRESSES: P=SHEAR-SURFACE  E=INTER-SLICE");
    EXPECT_EQ(lines[page2 + 7], blanks(47) + "U=RESULTING PWP AT SHEAR SURFACE");
    EXPECT_EQ(lines[page2 + 8], " ");
    EXPECT_EQ(lines[page2 + 10], kZeroAxis);
    // Two page tops in all: one per sketch.
    int pageTops = 0;
    for (const std::string& line : lines) pageTops += line == kPageTopMark;
    EXPECT_EQ(pageTops, 2);
    EXPECT_TRUE(console().empty());
}

TEST_F(Plot, ATotalStressAnalysisHasNoPorePressureLegend) {
    MASTER.IDEFTO = 2;
    const int slices = layDownCircle();
    for (int i = 1; i <= slices; ++i) SURF.U3(i) = 50.0;  // not drawn in total stresses
    PLOT(7, 2, slices);
    const Lines lines = pages(16);
    size_t at = 0;
    while (at < lines.size() && lines[at].find("NORMAL STRESSES") == std::string::npos) ++at;
    ASSERT_LT(at + 2, lines.size());
    EXPECT_EQ(lines[at], " BELOW SKETCH SHOWS TOTAL NORMAL STRESSES: P=SHEAR-SURFACE  E=INTER-SLICE");
    EXPECT_EQ(lines[at + 1], " ");
    for (const std::string& level : stressLevels()) EXPECT_EQ(level.find('U'), std::string::npos) << level;
    EXPECT_NE(io::contents(16).find(" SURFACE NO:  7  TYPE: CIRCLE  "), std::string::npos);
}

TEST_F(Plot, TypeNamesAreEightCharacters) {
    const char* names[] = {"GENERAL ", "CIRCLE  ", "COMBINED", "PLANE   "};
    for (int type = 1; type <= 4; ++type) {
        SetUp();
        const int slices = layDownCircle();
        PLOT(12, type, slices);
        EXPECT_NE(io::contents(16).find(std::string(" SURFACE NO: 12  TYPE: ") + names[type - 1] + "  SAFETY-FACTOR:"),
                  std::string::npos)
            << type;
    }
}

// ------------------------------------------------------------------------------------------
// The section sketch
// ------------------------------------------------------------------------------------------

// The shear surface is drawn as one digit under the middle of each slice base. Its row is
// worked out here from the base depth and the band of each row; in every column that carries
// no slice side the base digit is the only mark.
TEST_F(Plot, TheShearSurfaceMarkOfEachSliceLiesAtTheRowOfItsBaseDepth) {
    const int slices = layDownCircle();
    PLOT(1, 2, slices);
    const Lines rows = sectionRows();

    const double x0 = 0.0, xRange = 30.0;
    const double zTop = 0.0, zBottom = circleDepth(15.0);
    const int expectedRows = static_cast<int>(std::lround((zBottom - zTop) / xRange * (284.0 / 7.0) + 0.5));
    ASSERT_EQ(expectedRows, 11);  // 8.028/30·40.571 + 0.5 = 11.36
    ASSERT_EQ(static_cast<int>(rows.size()), expectedRows);
    const double band = (zBottom - zTop) / expectedRows;

    std::vector<bool> sideColumn(81, false);
    for (double x : kBorders) sideColumn[static_cast<size_t>(columnOf(x, x0, xRange))] = true;

    for (int i = 1; i <= slices; ++i) {
        const double x1 = kBorders[static_cast<size_t>(i - 1)], x2 = kBorders[static_cast<size_t>(i)];
        const double baseDepth = (circleDepth(x1) + circleDepth(x2)) / 2.0;
        int row = static_cast<int>(std::floor((baseDepth - zTop) / band)) + 1;
        if (row > expectedRows) row = expectedRows;
        const int column = columnOf((x1 + x2) / 2.0, x0, xRange);
        ASSERT_EQ(rows[static_cast<size_t>(row - 1)].size(), 81u);
        EXPECT_EQ(rows[static_cast<size_t>(row - 1)][static_cast<size_t>(column)], '1') << "slice " << i;
        if (sideColumn[static_cast<size_t>(column)]) continue;
        for (int r = 1; r <= expectedRows; ++r)
            if (r != row) {
                EXPECT_EQ(rows[static_cast<size_t>(r - 1)][static_cast<size_t>(column)], ' ') << "slice " << i << " row " << r;
            }
    }
}

// Each slice side is a vertical row of digits from the top of the section down to the base
// at that side, and nothing is drawn outside columns 2 to 72.
TEST_F(Plot, SliceSidesRunFromTheTopDownToTheShearSurface) {
    const int slices = layDownCircle();
    PLOT(1, 2, slices);
    const Lines rows = sectionRows();
    const double band = circleDepth(15.0) / static_cast<double>(rows.size());
    for (double x : kBorders) {
        const int column = columnOf(x, 0.0, 30.0);
        const double depth = circleDepth(x);
        const int bottomRow = std::min(static_cast<int>(std::floor(depth / band)) + 1, static_cast<int>(rows.size()));
        for (int r = 1; r <= bottomRow; ++r)
            EXPECT_EQ(rows[static_cast<size_t>(r - 1)][static_cast<size_t>(column)], '1') << "x " << x << " row " << r;
    }
    for (const std::string& row : rows) {
        EXPECT_EQ(row[1], ' ');
        EXPECT_EQ(row.substr(73), blanks(8)) << row;
    }
    EXPECT_EQ(columnOf(0.0, 0.0, 30.0), 2);
    EXPECT_EQ(columnOf(30.0, 0.0, 30.0), 72);
    EXPECT_EQ(rows[0][2], '1');
    EXPECT_EQ(rows[0][72], '1');
}

// The slice number line: two digits, the units under the middle of the slice top.
TEST_F(Plot, SliceNumbersStandUnderTheMiddleOfEachSliceTop) {
    putSliceCorners(1, 0.0, 35.0, 0.0, 0.0, 10.0, 10.0);
    putSliceCorners(2, 35.0, 70.0, 0.0, 0.0, 10.0, 10.0);
    PLOT(1, 1, 2);
    std::string numbers;
    sectionRows(&numbers);
    // Middles at x = 17.5 and 52.5: columns 70·0.25 + 1.5 = 19 and 70·0.75 + 1.5 = 54.
    std::string expected = " " + blanks(80);
    expected.replace(18, 2, "01");
    expected.replace(53, 2, "02");
    EXPECT_EQ(numbers, expected);
}

TEST_F(Plot, TheRowCountIsLimitedToOneAndThirty) {
    // A deep narrow section: 100/10·40.57 would be 406 rows.
    putSliceCorners(1, 0.0, 10.0, 0.0, 0.0, 100.0, 100.0);
    PLOT(1, 1, 1);
    EXPECT_EQ(sectionRows().size(), 30u);
    // A shallow wide section: 0.01/100·40.57 + 0.5 rounds to 1.
    SetUp();
    putSliceCorners(1, 0.0, 100.0, 0.0, 0.0, 0.01, 0.01);
    PLOT(1, 1, 1);
    EXPECT_EQ(sectionRows().size(), 1u);
}

// Materials 1-9 print as their digit, 10 as 0 and 11 or more as *; the material is the one
// at the point, here from horizontal layers.
TEST_F(Plot, MaterialDigitsComeFromTheMaterialAtEachPoint) {
    ISOLPR.NMAT = 12;
    IGEOMS.NX = 1;
    IGEOMS.NZ = 1;
    IGEOMS.NNODE = 4;
    GEOMSH.XNOD(1) = -10.0;
    GEOMSH.XNOD(4) = 100.0;
    IGEOMS.NLAYER = 3;
    GEOMSH.ZLAYER(1) = 10.0;
    GEOMSH.ZLAYER(2) = 20.0;
    GEOMSH.ZLAYER(3) = 30.0;
    IGEOMS.LAYMAT(1) = 3;
    IGEOMS.LAYMAT(2) = 10;
    IGEOMS.LAYMAT(3) = 11;
    // One slice 30 wide and 30 deep: 30/30·40.57 + 0.5 → 30 rows of 1 m (capped at 30).
    putSliceCorners(1, 0.0, 30.0, 0.0, 0.0, 30.0, 30.0);
    PLOT(1, 1, 1);
    const Lines rows = sectionRows();
    ASSERT_EQ(rows.size(), 30u);
    // The left side at column 2: rows 1-10 in material 3, 11-20 in 10, 21-30 in 11.
    for (int r = 1; r <= 30; ++r) {
        const char expected = r <= 10 ? '3' : (r <= 20 ? '0' : '*');
        EXPECT_EQ(rows[static_cast<size_t>(r - 1)][2], expected) << "row " << r;
        EXPECT_EQ(rows[static_cast<size_t>(r - 1)][72], expected) << "row " << r;
    }
    // The base middle (15, 30) lies in the last row, in material 11.
    EXPECT_EQ(rows[29][static_cast<size_t>(columnOf(15.0, 0.0, 30.0))], '*');
    EXPECT_TRUE(console().empty());
}

TEST_F(Plot, AFailedMaterialLookupIsReportedAndMarked) {
    ISOLPR.NMAT = 2;  // no mesh at all: every lookup fails
    MASTER.IERR = 0;
    putSliceCorners(1, 0.0, 10.0, 0.0, 0.0, 0.01, 0.01);
    PLOT(1, 1, 1);
    const Lines rows = sectionRows();
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0][2], '?');
    EXPECT_EQ(rows[0][72], '?');
    const std::string message = " **** SR/PLOT :  ERROR IN SR/LOCATE   SLICE =    1";
    int reported = 0;
    for (const std::string& line : console()) reported += line == message;
    EXPECT_EQ(reported, 3);  // left side, base middle, right side
    EXPECT_EQ(copy(), console());
    EXPECT_EQ(MASTER.IERR, 0);
}

// ------------------------------------------------------------------------------------------
// The material table
// ------------------------------------------------------------------------------------------

// A material with its cohesion as a percentage of the undrained strength (negative COHESN)
// prints the percentage F5.1 with "%*C"; the others their cohesion F8.3. The friction angle is
// printed in degrees from its stored tangent.
TEST_F(Plot, TheMaterialTableHasTwoFormats) {
    ISOLPR.NMAT = 2;
    IGEOMS.NX = 1;
    IGEOMS.NZ = 1;
    IGEOMS.NNODE = 4;
    GEOMSH.XNOD(4) = 100.0;
    IGEOMS.NLAYER = 1;  // the whole section in material 1
    GEOMSH.ZLAYER(1) = 100.0;
    IGEOMS.LAYMAT(1) = 1;
    const double values[2][13] = {
        // GAMTOT SUA SUD SUP COHESN PHIANG PHIRED RU B K0 BSIG2 D/SU
        {19.0, 1.2, 0.8, 0.5, 12.5, 32.0, 0.0, 0.25, 0.0, 0.5, 0.0, 0.1},
        {16.5, 1.0, 1.0, 1.0, -10.0, 27.5, 1.5, 0.0, 0.9, 0.6, 0.3, 0.0},
    };
    for (int m = 1; m <= 2; ++m) {
        const double* v = values[m - 1];
        SOLPRP.MAT(GAMTOT, m) = v[0];
        SOLPRP.MAT(SUASU0, m) = v[1];
        SOLPRP.MAT(SUDSU0, m) = v[2];
        SOLPRP.MAT(SUPSU0, m) = v[3];
        SOLPRP.MAT(COHESN, m) = v[4];
        SOLPRP.MAT(PHIANG, m) = std::tan(v[5] * MASTER.PI / 180.0);
        SOLPRP.MAT(PHIRED, m) = v[6];
        SOLPRP.MAT(RUFCT, m) = v[7];
        SOLPRP.MAT(BFCT, m) = v[8];
        SOLPRP.MAT(KNOT, m) = v[9];
        SOLPRP.MAT(BSIG2, m) = v[10];
        SOLPRP.MAT(DSUB, m) = v[11];
    }
    putSliceCorners(1, 0.0, 10.0, 0.0, 0.0, 5.0, 5.0);
    PLOT(1, 1, 1);
    const Lines lines = pages(16);
    size_t at = 0;
    while (at < lines.size() && lines[at] != kMaterialHeading) ++at;
    ASSERT_LT(at + 2, lines.size());
    // I4, F8.3, F7.3, 3F8.3, F7.2, F6.2, F7.3, F8.3, 3F7.3
    EXPECT_EQ(lines[at + 1],
              "   1" "  19.000" "  1.200" "   0.800" "   0.500" "  12.500" "  32.00" "  0.00" "  0.250" "   0.000"
              "  0.500" "  0.000" "  0.100");
    // I4, F8.3, F7.3, 2F8.3, F5.1, "%*C", F7.2, F6.2, F7.3, F8.3, 3F7.3
    EXPECT_EQ(lines[at + 2],
              "   2" "  16.500" "  1.000" "   1.000" "   1.000" " 10.0%*C" "  27.50" "  1.50" "  0.000" "   0.900"
              "  0.600" "  0.300" "  0.000");
    EXPECT_EQ(lines[at + 1].size(), lines[at + 2].size());
}

// ------------------------------------------------------------------------------------------
// The stress sketch
// ------------------------------------------------------------------------------------------

// Two slices 10 wide with flat bases 10 long and right sides 10 and 5 high:
//   base stresses P/L34 = 100/10 = 10 and 400/10 = 40 (the greatest: the last level),
//   side stresses E2/height = 150/10 = 15 and 0/5 = 0, pore pressures U3/L34 = 20 and 0.
TEST_F(Plot, StressesStandAtTheirLevelsAndTheirExtremesAreListed) {
    putSliceCorners(1, 0.0, 10.0, 0.0, 0.0, 10.0, 10.0);
    putSliceCorners(2, 10.0, 20.0, 0.0, 5.0, 10.0, 10.0);
    for (int i = 1; i <= 2; ++i) SURF.L34(i) = 10.0;
    SURF.P(1) = 100.0;
    SURF.P(2) = 400.0;
    SURF.E2(1) = 150.0;
    SURF.E2(2) = 0.0;
    SURF.U3(1) = 200.0;
    PLOT(1, 1, 2);

    const Lines lines = pages(16);
    size_t axis = 0;
    while (axis < lines.size() && lines[axis] != kZeroAxis) ++axis;
    ASSERT_GT(axis, 0u);
    // The slice sides at x = 0, 10, 20: columns 1.5 → 2, 36.5 → 37, 71.5 → 72.
    std::string sides = " " + blanks(80);
    sides[2] = 'I';
    sides[37] = 'I';
    sides[72] = 'I';
    EXPECT_EQ(lines[axis - 1], sides);

    const Lines levels = stressLevels();
    ASSERT_GE(levels.size(), 2u);
    const double steps = static_cast<double>(levels.size() - 1);
    const auto levelOf = [steps](double stress) { return static_cast<size_t>(std::lround(stress / 40.0 * steps)); };
    const auto markAt = [&levels](size_t level, int column) { return levels[level][static_cast<size_t>(column)]; };
    // Base middles at x = 5 and 15: columns 19 and 54; the right sides at columns 37 and 72.
    EXPECT_EQ(markAt(levelOf(10.0), 19), 'P');
    EXPECT_EQ(markAt(levels.size() - 1, 54), 'P');
    EXPECT_EQ(markAt(levelOf(15.0), 37), 'E');
    EXPECT_EQ(markAt(0, 72), 'E');
    EXPECT_EQ(markAt(levelOf(20.0), 19), 'U');
    EXPECT_EQ(markAt(0, 54), 'U');
    int marks = 0;
    for (const std::string& level : levels)
        for (char c : level) marks += c != ' ';
    EXPECT_EQ(marks, 6);

    const size_t sigma = axis + 1 + levels.size();
    ASSERT_LT(sigma + 4, lines.size());
    EXPECT_EQ(lines[sigma], kSigmaAxis);
    EXPECT_EQ(lines[sigma + 1], "");
    EXPECT_EQ(lines[sigma + 2], " P-MIN =  1.000E+01       P-MAX =  4.000E+01");
    EXPECT_EQ(lines[sigma + 3], " E-MIN =  0.000E+00       E-MAX =  1.500E+01");
    EXPECT_EQ(lines[sigma + 4], " U-MIN =  0.000E+00       U-MAX =  2.000E+01");
}

// A side of no height (a surface ending at the ground) carries no interslice stress.
TEST_F(Plot, ASideOfNoHeightHasNoInterSliceStress) {
    putSliceCorners(1, 0.0, 10.0, 0.0, 0.0, 0.0, 10.0);
    SURF.L34(1) = std::hypot(10.0, 10.0);
    SURF.P(1) = 100.0;
    SURF.E2(1) = 5.0;
    PLOT(1, 1, 1);
    for (const std::string& level : stressLevels()) EXPECT_EQ(level.find('E'), std::string::npos) << level;
    EXPECT_NE(io::contents(16).find(" E-MIN =  0.000E+00       E-MAX =  0.000E+00"), std::string::npos);
}

TEST_F(Plot, NoSlicesGiveThePagesWithoutASketch) {
    PLOT(3, 1, 0);
    const Lines lines = pages(16);
    size_t at = 0;
    while (at < lines.size() && lines[at] != kSectionLegend) ++at;
    ASSERT_LT(at + 3, lines.size());
    EXPECT_EQ(lines[at + 1], " ");
    EXPECT_EQ(lines[at + 2], "");
    EXPECT_EQ(lines[at + 3], kMaterialHeading);
    EXPECT_TRUE(stressLevels().size() > 0);
    EXPECT_NE(io::contents(16).find(" P-MIN =  0.000E+00       P-MAX =  0.000E+00"), std::string::npos);
}

// ------------------------------------------------------------------------------------------
// Called by the result print
// ------------------------------------------------------------------------------------------

TEST_F(Plot, TheResultPrintEndsWithTheSketchesOnlyWhenAsked) {
    for (int jplot : {0, 1, 2}) {
        SetUp();
        const int slices = layDownCircle();
        MASTER.KBEST = 1;
        MASTER.KLAST = -1;
        MASTER.JSTRES = 1;
        MASTER.METHOD = -1;
        MASTER.NUMSRF = 4;
        MASTER.NTYP = 2;
        MASTER.NUMSLC = slices;
        MASTER.JPLOT = jplot;
        PRINT();
        int pageTops = 0;
        for (const std::string& line : pages(16)) pageTops += line == kPageTopMark;
        EXPECT_EQ(pageTops, jplot == 0 ? 1 : 3) << "JPLOT " << jplot;
        const bool sketched = io::contents(16).find(" SURFACE NO:  4  TYPE: CIRCLE  ") != std::string::npos;
        EXPECT_EQ(sketched, jplot != 0);
    }
}
