// POST: one block of the post-processor file per saved surface, with its records and tables.
//
// The expected lines are put together from the field codes of the file: "    7" is I5 of 7,
// "   1.2500" F9.4 of 1.25, "  1.0000E+01" E12.4 with scale 1 of 10, "  0.1000E+02" E12.4
// without scale of 10, and so on. Values are chosen to print exactly.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "output/output.h"
#include "output/output_world.h"
#include "records.h"

using namespace kalmo_test;

namespace {

std::string blanks(int n) { return std::string(static_cast<size_t>(n), ' '); }

// Two slices: x 10-14 and 14-20, tops 2.0/2.5/3.0, bases 5.0/6.0/4.0.
void layDownTwoSlices() {
    putSliceCorners(1, 10.0, 14.0, 2.0, 2.5, 6.0, 5.0);
    putSliceCorners(2, 14.0, 20.0, 2.5, 3.0, 4.0, 6.0);
    SURF.XX(5, 1) = 12.0;
    SURF.ZZ(5, 1) = 4.0;
    SURF.XX(5, 2) = 17.0;
    SURF.ZZ(5, 2) = 4.5;
    for (int i = 1; i <= 2; ++i) {
        const double k = i;
        SURF.R0(i) = 0.25 * k;
        SURF.C2(i) = 5.0 * k;
        SURF.C3(i) = 6.0 * k;
        SURF.TAN2(i) = 0.5;
        SURF.TAN3(i) = 0.625;
        SURF.U2(i) = 10.0 * k;
        SURF.U3(i) = 20.0 * k;
        SURF.P(i) = 100.0 * k;
        SURF.S(i) = 40.0 * k;
        SURF.E2(i) = 30.0 * k;
        SURF.T2(i) = 3.0 * k;
        SURF.SS(i) = 2.5 * k;
        SURF.R(i) = 0.125 * k;
        SURF.WX(i) = -5.0 * k;
        SURF.WZ(i) = 200.0 * k;
        SURF.WM(i) = 7.5 * k;
        SURF.H2(i) = 1.5 * k;
        SURF.H3(i) = 2.0 * k;
        SURF.HS(i) = 0.75 * k;
        SURF.AREA(i) = 10.0 * k;
        SURF.AREAU(i) = 4.0 * k;
        SURF.SU3(i) = 50.0 * k;
        SURF.S1(i) = 30.0 * k;
        SURF.S2(i) = 10.0 * k;
    }
}

class Post : public OutputWorld {
protected:
    void SetUp() override {
        OutputWorld::SetUp();
        MASTER.KLSAVE = -1;
        MASTER.NUMSRF = 7;
        MASTER.NTYP = 2;
        MASTER.NUMSLC = 2;
        MASTER.METHOD = 3;
        MASTER.IDEFTO = 1;
        MASTER.SF = 1.25;
        MASTER.SCORE = 0.125;
        MASTER.RFACTOR = 0.75;
        MASTER.MISC1 = 1;
        MASTER.MISC5 = -5;
        MASTER.VALMSC2 = 2.5;
        for (int k = 1; k <= 10; ++k) SURF.SPAR(k) = k;
        layDownTwoSlices();
    }
    static Lines from(const Lines& lines, const std::string& title, size_t count) {
        for (size_t k = 0; k < lines.size(); ++k)
            if (lines[k] == title) return Lines(lines.begin() + static_cast<long>(k), lines.begin() + static_cast<long>(std::min(lines.size(), k + count)));
        return {};
    }
};

const Lines kHead = {
    kPageTopMark,
    "",
    " SLOPE AT THE RIVER BANK" + blanks(80 - 23),
    " SECTION A-A" + blanks(80 - 11),
    "",
    " NUMSRF  NTYP  NUMSLC  METHOD  IDEFTO  NNAILS  MISC1 MISC2 MISC3 MISC4 MISC5",
    // I5, I7, I7, I8, I8, I8, I7, 4I6
    "    7" "      2" "      2" "       3" "       1" "       0" "      1" "     0" "     0" "     0" "    -5",
    " SAFETY.FCT  SCORE  R-FACTOR   VALMSC1  VALMSC2  VALMSC3  VALMSC4  VALMSC5",
    // F9.4, F9.3, F8.3, 2X, 5F9.3
    "   1.2500" "    0.125" "   0.750" "  " "    0.000" "    2.500" "    0.000" "    0.000" "    0.000",
    "",
    "   1.0000E+00  2.0000E+00  3.0000E+00  4.0000E+00  5.0000E+00 STORE(1,2,3,4,5)",
    "   6.0000E+00  7.0000E+00  8.0000E+00  9.0000E+00  1.0000E+01 STORE(6,7,8,9,10)",
    " ",
};

// The slice tables of the two slices (SS/SF = 2.5/1.25 = 2 and 5/1.25 = 4).
const Lines kSliceTables = {
    " GEOMETRY AND INITIAL ROUGHNESS",
    " SLICE  X2          Z2          Z3          X5          Z5          R0",
    "   0   1.0000E+01  2.0000E+00  5.0000E+00",
    "   1   1.4000E+01  2.5000E+00  6.0000E+00  1.2000E+01  4.0000E+00  2.5000E-01",
    "   2   2.0000E+01  3.0000E+00  4.0000E+00  1.7000E+01  4.5000E+00  5.0000E-01",
    " SOIL STRENGTHS AND PWP",
    " SLICE  C2          C3         TAN2        TAN3          U2          U3",
    "   1   5.0000E+00  6.0000E+00  5.0000E-01  6.2500E-01  1.0000E+01  2.0000E+01",
    "   2   1.0000E+01  1.2000E+01  5.0000E-01  6.2500E-01  2.0000E+01  4.0000E+01",
    " CALCULATED FORCES AND ROUGHNESS",
    " SLICE  P           S           E2          T2          SS          R ",
    "   1   1.0000E+02  4.0000E+01  3.0000E+01  3.0000E+00  2.0000E+00  1.2500E-01",
    "   2   2.0000E+02  8.0000E+01  6.0000E+01  6.0000E+00  4.0000E+00  2.5000E-01",
    " CENTER LOADS AND MOMENT ARMS",
    " SLICE  WX+SNX      WZ+SNZ      WM+SNM      H2          H3          HS",
    "   1  -5.0000E+00  2.0000E+02  7.5000E+00  1.5000E+00  2.0000E+00  7.5000E-01",
    "   2  -1.0000E+01  4.0000E+02  1.5000E+01  3.0000E+00  4.0000E+00  1.5000E+00",
};

// Areas 10 and 20, undrained 4 and 8 (E12.4 without scale).
const Lines kAreaTable = {
    " SLICE  AREA      AREA-UNDRAINED",
    "   1   0.1000E+02  0.4000E+01",
    "   2   0.2000E+02  0.8000E+01",
    " SUM   0.3000E+02  0.1200E+02",
};

Lines operator+(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

}  // namespace

TEST_F(Post, AWholeBlockWithoutNails) {
    POST();
    EXPECT_EQ(pages(17), kHead + kSliceTables + kAreaTable);
    EXPECT_TRUE(console().empty());
    EXPECT_TRUE(io::contents(16).empty());
}

// The geometry table has one row more than there are slices: row 0 is the left side.
TEST_F(Post, TheGeometryTableHasOneRowMoreThanSlices) {
    MASTER.NUMSLC = 1;
    POST();
    const Lines geometry = from(pages(17), " GEOMETRY AND INITIAL ROUGHNESS", 5);
    ASSERT_EQ(geometry.size(), 5u);
    EXPECT_EQ(geometry[2].substr(0, 4), "   0");
    EXPECT_EQ(geometry[3].substr(0, 4), "   1");
    EXPECT_EQ(geometry[4], " SOIL STRENGTHS AND PWP");
}

// With nails three more tables follow the centre loads; the nail loads and forces are
// mobilised by the safety factor (divided by it).
TEST_F(Post, ASurfaceWithNailsHasThreeMoreTables) {
    ISNAIL.NNAILS = 2;
    for (int i = 1; i <= 2; ++i) {
        SURF.SNX(i) = 2.5 * i;   // /1.25: 2, 4
        SURF.SNZ(i) = -5.0 * i;  // -4, -8
        SURF.SNM(i) = 1.25 * i;  // 1, 2
    }
    const double nail[2][19] = {
        {1.0, 2.0, 11.0, 6.0, 1.5, 0.025, 0, 0, 0, 0, 0, 0, 0.5, 0.25, -1.0, 12.0, 7.5, -25.0, 5.0},
        {1.0, 4.0, 13.0, 8.0, 1.5, 0.025, 0, 0, 0, 0, 0, 0, 0.0, 0.0, 0.0, 12.0, 0.0, 0.0, 0.0},
    };
    for (int n = 1; n <= 2; ++n)
        for (int k = 1; k <= 19; ++k) SNAILS.SN(n, k) = nail[n - 1][k - 1];
    ISNAIL.INAIL(1, 2) = 3;
    ISNAIL.INAIL(2, 2) = 0;
    POST();
    const Lines lines = pages(17);
    EXPECT_EQ(lines[6].substr(35, 8), "       2");  // NNAILS, the third I8
    const Lines loads = from(lines, " CENTER LOADS AND MOMENT ARMS", 4);
    ASSERT_EQ(loads.size(), 4u);
    // WX + SNX/SF = -5 + 2, WZ + SNZ/SF = 200 - 4, WM + SNM/SF = 7.5 + 1
    EXPECT_EQ(loads[2], "   1  -3.0000E+00  1.9600E+02  8.5000E+00  1.5000E+00  2.0000E+00  7.5000E-01");
    const Lines expected = {
        " CENTRE LOADS (WX,WZ,WM) NEGLECTING SOIL NAILS AND THE NAIL LOADS (SNX,SNZ,SNM)",
        " SLICE  WX          WZ          WM          SNX         SNZ         SNM",
        "   1  -5.0000E+00  2.0000E+02  7.5000E+00  2.0000E+00 -4.0000E+00  1.0000E+00",
        "   2  -1.0000E+01  4.0000E+02  1.5000E+01  4.0000E+00 -8.0000E+00  2.0000E+00",
        " SOIL NAIL GEOMETRY VALUES",
        " NAIL   X.HEAD      Z.HEAD      X.TIP       Z.TIP       C/C.DIST  ACTIVE.LNGTH",
        "   1   1.0000E+00  2.0000E+00  1.1000E+01  6.0000E+00  1.5000E+00  7.5000E+00",
        "   2   1.0000E+00  4.0000E+00  1.3000E+01  8.0000E+00  1.5000E+00  0.0000E+00",
        " SOIL NAIL FORCES AT SHEAR SURFACE INTERSECTION (UNITS=FORCE) AND MISC VALUES",
        " NAIL   FRC.AXIAL   FRC.LATRL    MISC.1      MISC.2      MISC.3    FAIL.MODE",
        // axial -25/1.25 = -20, lateral 5/1.25 = 4, the further values, the mode I6
        "   1  -2.0000E+01  4.0000E+00  5.0000E-01  2.5000E-01 -1.0000E+00     3",
        "   2   0.0000E+00  0.0000E+00  0.0000E+00  0.0000E+00  0.0000E+00     0",
        " SLICE  AREA      AREA-UNDRAINED",
    };
    EXPECT_EQ(from(lines, expected.front(), expected.size()), expected);
}

TEST_F(Post, ASurfaceWithoutNailsHasNoNailTables) {
    POST();
    const std::string text = io::contents(17);
    EXPECT_EQ(text.find("SOIL NAIL"), std::string::npos);
    EXPECT_EQ(text.find("NEGLECTING SOIL NAILS"), std::string::npos);
}

// A combined analysis: the strengths and shear forces with each slice's failure mode, the
// share of the undrained shear, and no undrained area on drained slices.
//   ΣS1 over drained slices = 30 (slice 1), ΣS2 over the others = 20 (slice 2): 20/50 = 0.400
TEST_F(Post, ACombinedAnalysisListsItsFailureModesAndTheUndrainedShare) {
    MASTER.IDEFTO = 3;
    ISUR.MODE(1) = 1;
    ISUR.MODE(2) = 2;
    POST();
    const Lines expected = {
        " COMBINED ANALYSIS : SHEAR STRENGTH PARAMETERS AND SHEAR FORCES",
        " SLICE  C3          TAN3        SU3        S1-DRAINED  S2-UNDRNED  FAILURE MODE",
        "   1   6.0000E+00  6.2500E-01  5.0000E+01  3.0000E+01  1.0000E+01   1 Drained",
        "   2   1.2000E+01  6.2500E-01  1.0000E+02  6.0000E+01  2.0000E+01   2 Undrained",
        "",
        "  0.400  Contribution from undrained failure =  SUM(S2) / [SUM(S1)+SUM(S2)]",
        " SLICE  AREA      AREA-UNDRAINED",
        "   1   0.1000E+02  0.0000E+00",
        "   2   0.2000E+02  0.8000E+01",
        " SUM   0.3000E+02  0.8000E+01",
    };
    const Lines lines = pages(17);
    EXPECT_EQ(from(lines, expected.front(), expected.size() + 1), expected);
    EXPECT_EQ(lines.back(), expected.back());
}

// No shear at all: the share 0/0 is undefined and written as it is.
TEST_F(Post, AnUndefinedUndrainedShareIsWrittenAsItIs) {
    MASTER.IDEFTO = 3;
    for (int i = 1; i <= 2; ++i) SURF.S1(i) = SURF.S2(i) = 0.0;
    ISUR.MODE(1) = 1;
    ISUR.MODE(2) = 2;
    POST();
    EXPECT_NE(io::contents(17).find("\n    NaN  Contribution from undrained failure ="), std::string::npos);
}

TEST_F(Post, EverySaveAppendsACompleteBlock) {
    POST();
    MASTER.NUMSRF = 8;
    POST();
    const Lines lines = pages(17);
    const Lines one = kHead + kSliceTables + kAreaTable;
    ASSERT_EQ(lines.size(), 2 * one.size());
    EXPECT_EQ(Lines(lines.begin(), lines.begin() + static_cast<long>(one.size())), one);
    Lines second(lines.begin() + static_cast<long>(one.size()), lines.end());
    EXPECT_EQ(second[0], kPageTopMark);
    EXPECT_EQ(second[6].substr(0, 5), "    8");
    second[6].replace(0, 5, "    7");
    EXPECT_EQ(second, one);
}

// Saving the best surface brings it back as the current surface with its failure modes; the
// run's surface number, type and slice count stay.
TEST_F(Post, SavingTheBestSurfaceRestoresItWithItsFailureModes) {
    // The best copy is the current surface with other results and modes.
    BEST.SF = 1.5;
    BEST.SCORE = 0.25;
    BEST.RFACTOR = 0.5;
    std::copy_n(reinterpret_cast<const double*>(&SURF), NSURFCOPY, BEST.SURF);
    BEST.SURF[0] = 99.0;  // XS(1), to see that the copy arrived
    IBES.NUMSRF = 3;
    IBES.NTYP = 1;
    IBES.NUMSLC = 2;
    IBES.MODE(1) = 2;
    IBES.MODE(2) = 1;
    // The current surface differs.
    SURF.XX(1, 1) = -1.0;
    ISUR.MODE(1) = ISUR.MODE(2) = 7;
    MASTER.KLSAVE = 0;
    POST();
    const Lines lines = pages(17);
    EXPECT_EQ(lines[6].substr(0, 19), "    3" "      1" "      2");
    EXPECT_EQ(lines[8].substr(0, 26), "   1.5000" "    0.250" "   0.500");
    EXPECT_EQ(from(lines, " GEOMETRY AND INITIAL ROUGHNESS", 3).back(), "   0   1.0000E+01  2.0000E+00  5.0000E+00");
    EXPECT_EQ(SURF.XS(1), 99.0);
    EXPECT_EQ(ISUR.MODE(1), 2);
    EXPECT_EQ(ISUR.MODE(2), 1);
    EXPECT_EQ(MASTER.SF, 1.5);
    EXPECT_EQ(MASTER.NUMSRF, 7);
    EXPECT_EQ(MASTER.NUMSLC, 2);
}

TEST_F(Post, ASliceCountOutOfRangeSavesNothing) {
    for (int count : {-1, 100}) {
        SetUp();
        MASTER.NUMSLC = count;
        POST();
        EXPECT_TRUE(io::contents(17).empty()) << count;
        ASSERT_EQ(console().size(), 1u);
        EXPECT_EQ(console()[0].substr(0, 64), " **** SR/POST : SURFACE RECORD SIZE OUT OF RANGE  NSRFCP,NUMSLC=");
        EXPECT_EQ(copy(), console());
    }
}
