// PRINT: the result print of the last or the best surface on the result file.
//
// The expected lines are put together from their field codes: "   1" is I4 of 1, "   10.00"
// F8.2 of 10, "  1.500E+02" E11.3 with scale 1 of 150, and so on. The page top carries the
// clock, so its date and time are masked after its layout has been checked.

#include <gtest/gtest.h>

#include <cstring>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "control/control.h"
#include "io/channels.h"
#include "output/output.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

using Lines = std::vector<std::string>;


std::string blanks(int n) { return std::string(static_cast<size_t>(n), ' '); }

Lines splitLines(const std::string& text) {
    Lines lines;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

Lines operator+(Lines a, const Lines& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::string kPageTop = "<PAGE TOP>";
const std::string kRule(53, '=');

// One slice as the solver leaves it: corners, base ratios, loads, water and interslice forces.
struct Slice {
    double x1, x2, z1, z2, z3, z4;
    double l34, sinb, cosb;
    double wx, wz, u1, u2, u3, snx, snz;
    double p, s, e2, t2, r, h2, h3;
};

void putSlice(int i, const Slice& d) {
    SURF.XX(1, i) = d.x1;
    SURF.XX(4, i) = d.x1;
    SURF.XX(2, i) = d.x2;
    SURF.XX(3, i) = d.x2;
    SURF.XX(5, i) = (d.x1 + d.x2) / 2.0;
    SURF.ZZ(1, i) = d.z1;
    SURF.ZZ(2, i) = d.z2;
    SURF.ZZ(3, i) = d.z3;
    SURF.ZZ(4, i) = d.z4;
    SURF.ZZ(5, i) = (d.z1 + d.z3) / 2.0;
    SURF.L34(i) = d.l34;
    SURF.SINB(i) = d.sinb;
    SURF.COSB(i) = d.cosb;
    SURF.WX(i) = d.wx;
    SURF.WZ(i) = d.wz;
    SURF.U1(i) = d.u1;
    SURF.U2(i) = d.u2;
    SURF.U3(i) = d.u3;
    SURF.SNX(i) = d.snx;
    SURF.SNZ(i) = d.snz;
    SURF.P(i) = d.p;
    SURF.S(i) = d.s;
    SURF.E2(i) = d.e2;
    SURF.T2(i) = d.t2;
    SURF.R(i) = d.r;
    SURF.H2(i) = d.h2;
    SURF.H3(i) = d.h3;
}

// Three slices of width 4 between x = 10 and 22. Bases: 3-4-5 down to the right, flat, 3-4-5
// up to the right. Right side heights 2.5, 2.0 and 1.0.
const Slice kSlice1{10.0, 14.0, 2.0, 2.5, 5.0, 2.0, 5.0, 0.6, 0.8,
                    0.0, 200.0, 0.0, 25.0, 50.0, 0.0, 0.0,
                    150.0, 60.0, 80.0, 20.0, 0.5, 1.0, 2.5};
const Slice kSlice2{14.0, 18.0, 2.5, 3.0, 5.0, 5.0, 4.0, 0.0, 1.0,
                    10.0, 300.0, 25.0, 30.0, 100.0, 0.0, 0.0,
                    250.0, 90.0, 120.0, -15.0, -0.25, 0.5, 1.0};
const Slice kSlice3{18.0, 22.0, 3.0, 1.0, 2.0, 5.0, 5.0, -0.6, 0.8,
                    -20.0, 100.0, 30.0, 0.0, 40.0, 0.0, 0.0,
                    80.0, 30.0, 0.0, 0.0, 0.0, 0.0, 2.0};

// The slice lines of the three slices in force mode, worked out by hand:
//   slice 1: WXT = 0 - 0 + 25 - 0.6*50 = -5,  WZT = 200 + 0.8*50 = 240,
//            H2/Z23 = 1/2.5 = 0.4, H3/L34 = 2.5/4*0.8 = 0.5
//   slice 2: WXT = 10 - 25 + 30 - 0 = 15,     WZT = 300 + 100 = 400,
//            H2/Z23 = 0.5/2 = 0.25, H3/L34 = 1/4*1 = 0.25
//   slice 3: WXT = -20 - 30 + 0 + 0.6*40 = -26, WZT = 100 + 0.8*40 = 132,
//            H2/Z23 = 0/1 = 0, H3/L34 = 2/4*0.8 = 0.4
Lines forceSliceLines() {
    return {
        "",
        "   1" " " "   10.00" "    2.00" "    2.50" " " " -5.000E+00" "  1.500E+02" "  8.000E+01" "  2.500E+01" "  0.500" "  0.400",
        "   1" " " "   14.00" "    2.00" "    5.00" " " "  2.400E+02" "  6.000E+01" "  2.000E+01" "  5.000E+01" "         0.500",
        "",
        "   2" " " "   14.00" "    2.50" "    3.00" " " "  1.500E+01" "  2.500E+02" "  1.200E+02" "  3.000E+01" " -0.250" "  0.250",
        "   2" " " "   18.00" "    5.00" "    5.00" " " "  4.000E+02" "  9.000E+01" " -1.500E+01" "  1.000E+02" "         0.250",
        "",
        "   3" " " "   18.00" "    3.00" "    1.00" " " " -2.600E+01" "  8.000E+01" "  0.000E+00" "  0.000E+00" "  0.000" "  0.000",
        "   3" " " "   22.00" "    5.00" "    2.00" " " "  1.320E+02" "  3.000E+01" "  0.000E+00" "  4.000E+01" "         0.400",
    };
}

// The same slices in stress mode: P, S, U3 over L34; E2, T2, U2 over the side height.
//   slice 1: 150/5 = 30, 80/2.5 = 32, 25/2.5 = 10;  60/5 = 12, 20/2.5 = 8, 50/5 = 10
//   slice 2: 250/4 = 62.5, 120/2 = 60, 30/2 = 15;   90/4 = 22.5, -15/2 = -7.5, 100/4 = 25
//   slice 3: 80/5 = 16, 0/1 = 0, 0/1 = 0;           30/5 = 6, 0/1 = 0, 40/5 = 8
Lines stressSliceLines() {
    return {
        "",
        "   1" " " "   10.00" "    2.00" "    2.50" " " " -5.000E+00" "  3.000E+01" "  3.200E+01" "  1.000E+01" "  0.500" "  0.400",
        "   1" " " "   14.00" "    2.00" "    5.00" " " "  2.400E+02" "  1.200E+01" "  8.000E+00" "  1.000E+01" "         0.500",
        "",
        "   2" " " "   14.00" "    2.50" "    3.00" " " "  1.500E+01" "  6.250E+01" "  6.000E+01" "  1.500E+01" " -0.250" "  0.250",
        "   2" " " "   18.00" "    5.00" "    5.00" " " "  4.000E+02" "  2.250E+01" " -7.500E+00" "  2.500E+01" "         0.250",
        "",
        "   3" " " "   18.00" "    3.00" "    1.00" " " " -2.600E+01" "  1.600E+01" "  0.000E+00" "  0.000E+00" "  0.000" "  0.000",
        "   3" " " "   22.00" "    5.00" "    2.00" " " "  1.320E+02" "  6.000E+00" "  0.000E+00" "  8.000E+00" "         0.400",
    };
}

// Page top, titles and the summary header (SF and SCORE as F9.3, the surface number as I4).
Lines headLines(const std::string& sfField, const std::string& numberField, const std::string& scoreField,
                const std::string& kind = "FORCES") {
    return {
        kPageTop,
        "",
        " SLOPE AT THE RIVER BANK" + blanks(80 - 23),
        " SECTION A-A" + blanks(80 - 11),
        "",
        " " + kRule + "  SAFETY FACTOR =" + sfField,
        " SURFACE NO :" + numberField + "     SUMMARY OF GEOMETRY AND " + kind,
        " " + kRule + "  SOLUTION SCORE=" + scoreField,
    };
}

Lines methodLines(const std::string& text) { return {"", " SOLUTION METHOD = " + text}; }

Lines forceHeadings() {
    return {
        "",
        " SLICE    X1      Z1      Z2     WXT-FRC    P-FRC" + blanks(6) + "E2-FRC     U2-FRC    ROUGH  H2/Z23",
        blanks(10) + "X2      Z4" + blanks(6) + "Z3     WZT-FRC    S-FRC      T2-FRC     U3-FRC" + blanks(11) + "H3/L34",
    };
}

Lines stressHeadings() {
    return {
        "",
        " SLICE    X1      Z1      Z2     WXT-FRC    P-STR" + blanks(6) + "E2-STR     U2-STR    ROUGH  H2/Z23",
        blanks(10) + "X2      Z4" + blanks(6) + "Z3     WZT-FRC    S-STR      T2-STR     U3-STR" + blanks(11) + "H3/L34",
    };
}

class Print : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();
        POSTGRAF.NFCOPY = 9;
        ASSERT_EQ(io::openNew(16, dir_.path("KALMO.RES")), 0);
        ASSERT_EQ(io::openNew(12, dir_.path("CONSOLE.TXT")), 0);
        ASSERT_EQ(io::openNew(9, dir_.path("COPY.TXT")), 0);
        TEXT.VERSION.set("12 Jan 2017");
        TEXT.TITLE(1).set("SLOPE AT THE RIVER BANK");
        TEXT.TITLE(2).set("SECTION A-A");

        MASTER.KBEST = 1;
        MASTER.KLAST = -1;
        MASTER.JSTRES = 1;
        MASTER.METHOD = -1;
        MASTER.IDEFTO = 1;
        MASTER.NUMSRF = 7;
        MASTER.NTYP = 1;
        MASTER.NUMSLC = 3;
        MASTER.SF = 1.25;
        MASTER.SCORE = 0.125;
        MASTER.RFACTOR = 0.75;
        SURF.SPAR(1) = 10.0;
        SURF.SPAR(2) = 2.0;
        SURF.SPAR(3) = 22.0;
        SURF.SPAR(4) = 1.0;
        putSlice(1, kSlice1);
        putSlice(2, kSlice2);
        putSlice(3, kSlice3);
    }
    void TearDown() override { io::resetAll(); }

    // The result file with the page top checked and masked.
    Lines result() {
        Lines lines = splitLines(io::contents(16));
        static const std::regex kTop(
            "\f KALMO  Output   Program Version = 12 Jan 2017    Time = "
            "[0-3][0-9] (JAN|FEB|MAR|APR|MAY|JUN|JUL|AUG|SEP|OCT|NOV|DEC) [0-9]{4}  [0-2][0-9]:[0-5][0-9]:[0-5][0-9]");
        for (std::string& line : lines) {
            if (!line.empty() && line[0] == '\f') {
                EXPECT_TRUE(std::regex_match(line, kTop)) << "page top: " << line;
                line = kPageTop;
            }
        }
        return lines;
    }
    Lines console() const { return splitLines(io::contents(12)); }
    Lines copy() const { return splitLines(io::contents(9)); }

    // The slice lines: everything after the second column heading line.
    Lines sliceSection() {
        Lines lines = result();
        for (size_t k = 0; k < lines.size(); ++k)
            if (lines[k].find("H3/L34") != std::string::npos) return Lines(lines.begin() + static_cast<long>(k) + 1, lines.end());
        return {};
    }
    std::string firstLineOfSlice(int i) {
        Lines slices = sliceSection();
        size_t k = static_cast<size_t>(3 * (i - 1) + 1);
        return k < slices.size() ? slices[k] : std::string("<missing>");
    }
    std::string secondLineOfSlice(int i) {
        Lines slices = sliceSection();
        size_t k = static_cast<size_t>(3 * (i - 1) + 2);
        return k < slices.size() ? slices[k] : std::string("<missing>");
    }

    // The warning count the first line of slice i ends with, 0 when it has none.
    int warningsOfSlice(int i) {
        std::string line = firstLineOfSlice(i);
        constexpr size_t kPlainLength = 88;  // I4, 1X, 3F8.2, 1X, 4E11.3, 2F7.3
        if (line.size() == kPlainLength) return 0;
        EXPECT_EQ(line.size(), kPlainLength + 13) << line;
        EXPECT_EQ(line.substr(88, 11), "  WARNINGS:") << line;
        return std::stoi(line.substr(99, 2));
    }

    kalmo_test::TempDir dir_;
};

// ------------------------------------------------------------------------------------------
// Whole prints, one per surface type line
// ------------------------------------------------------------------------------------------

TEST_F(Print, GeneralSurfaceFullPrint) {
    PRINT();
    Lines expected = headLines("    1.250", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = GENERAL" + blanks(8) + "X-START   Z-START" + "     X-END    Z-END",
                           blanks(26) + "     10.000" + "     2.000" + "     22.000" + "    1.000"} +
                     methodLines("Force Equilibrium / EFFECTIVE STRESS ANALYSIS") + forceHeadings() + forceSliceLines();
    EXPECT_EQ(result(), expected);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_TRUE(console().empty());
    EXPECT_TRUE(copy().empty());
}

TEST_F(Print, CircleFullPrint) {
    MASTER.NTYP = 2;
    MASTER.METHOD = 0;
    MASTER.IDEFTO = 2;
    SURF.SPAR(1) = 16.0;
    SURF.SPAR(2) = -4.5;
    SURF.SPAR(3) = 9.25;
    PRINT();
    Lines expected = headLines("    1.250", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = CIRCLE" + blanks(9) + "X-CENTER  Z-CENTER" + "   RADIUS",
                           blanks(27) + "     16.000" + "    -4.500" + "     9.250"} +
                     methodLines("KALMO 1988-2002 / TOTAL STRESS ANALYSIS    ") + forceHeadings() + forceSliceLines();
    EXPECT_EQ(result(), expected);
}

TEST_F(Print, CombinedWithCentreAboveFullPrint) {
    MASTER.NTYP = 3;
    MASTER.METHOD = 1;
    MASTER.IDEFTO = 3;
    const double spar[7] = {10.0, 16.5, -3.25, 8.75, 35.5, 99.0, 0.0};
    for (int k = 1; k <= 7; ++k) SURF.SPAR(k) = spar[k - 1];
    PRINT();
    Lines expected = headLines("    1.250", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = COMBINED-1" + blanks(5) + "XSURF1 X-CENTER" + " Z-CENTER  RADIUS  ANGLE2",
                           blanks(16) + "CNTR ABOVE" + "     10.000" + "  16.500" + "   -3.250" + "    8.750" + "   35.5"} +
                     methodLines("Bishop Simplified / SWEDISH COMBINED ANALYSIS") + forceHeadings() + forceSliceLines();
    EXPECT_EQ(result(), expected);
}

TEST_F(Print, CombinedWithCentreBelowFullPrint) {
    MASTER.NTYP = 3;
    MASTER.METHOD = 2;
    MASTER.IDEFTO = 1;
    const double spar[7] = {10.0, 22.0, 5.0, 16.0, -2.5, 30.0, 1.5};
    for (int k = 1; k <= 7; ++k) SURF.SPAR(k) = spar[k - 1];
    PRINT();
    Lines expected = headLines("    1.250", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = COMBINED-2    XLEFT   XRGHT   ZBASE" + std::string("   XCNTR   ZCNTR  ANGEXIT"),
                           blanks(16) + "CNTR BELOW" + " " + "   10.00" + "   22.00" + "    5.00" + "   16.00" + "   -2.50" + "   30.0"} +
                     methodLines("Bishop Modified / EFFECTIVE STRESS ANALYSIS") + forceHeadings() + forceSliceLines();
    EXPECT_EQ(result(), expected);
}

TEST_F(Print, CombinedBeamShapeFullPrint) {
    MASTER.NTYP = 3;
    MASTER.METHOD = 3;
    MASTER.IDEFTO = 2;
    const double spar[7] = {8.5, 24.25, 6.0, 16.0, -12.75, 45.25, 2.5};
    for (int k = 1; k <= 7; ++k) SURF.SPAR(k) = spar[k - 1];
    PRINT();
    // F7.1 of 45.25 rounds the tie away from zero: 45.3.
    Lines expected = headLines("    1.250", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = COMBINED-3    XLEFT   XRGHT   ZBASE" + std::string("   XCNTR   ZCNTR  ANGEXIT"),
                           blanks(16) + "BEAM SHAPE" + " " + "    8.50" + "   24.25" + "    6.00" + "   16.00" + "  -12.75" + "   45.3"} +
                     methodLines("KALMO-2003 / TOTAL STRESS ANALYSIS    ") + forceHeadings() + forceSliceLines();
    EXPECT_EQ(result(), expected);
}

TEST_F(Print, ActiveEarthPressurePlaneFullPrint) {
    MASTER.NTYP = 4;
    MASTER.SF = 0.8;
    SURF.SPAR(1) = 45.0;
    SURF.SPAR(2) = 22.0;
    SURF.SPAR(3) = 10.0;
    SURF.SPAR(4) = 3.0;
    PRINT();
    Lines expected = headLines("    0.800", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = EARTH PRESSURE PLANE    ANGLE  X-SURFACE  X-WALL  H-WALL",
                           blanks(16) + "ACTIVE " + blanks(17) + "45.00" + "    22.000" + "   10.000" + "   3.000"} +
                     methodLines("Force Equilibrium / EFFECTIVE STRESS ANALYSIS") + forceHeadings() + forceSliceLines();
    EXPECT_EQ(result(), expected);
}

TEST_F(Print, PassiveEarthPressurePlaneFullPrint) {
    MASTER.NTYP = 4;
    MASTER.SF = -1.5;
    MASTER.METHOD = 0;
    MASTER.IDEFTO = 2;
    SURF.SPAR(1) = 30.0;
    SURF.SPAR(2) = 21.5;
    SURF.SPAR(3) = 10.0;
    SURF.SPAR(4) = 4.5;
    PRINT();
    Lines expected = headLines("   -1.500", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = EARTH PRESSURE PLANE    ANGLE  X-SURFACE  X-WALL  H-WALL",
                           blanks(16) + "PASSIVE" + blanks(17) + "30.00" + "    21.500" + "   10.000" + "   4.500"} +
                     methodLines("KALMO 1988-2002 / TOTAL STRESS ANALYSIS    ") + forceHeadings() + forceSliceLines();
    EXPECT_EQ(result(), expected);
}

TEST_F(Print, StressModeFullPrint) {
    MASTER.JSTRES = 2;
    PRINT();
    Lines expected = headLines("    1.250", "   7", "    0.125", "STRESSES") +
                     Lines{"",
                           " SURFACE TYPE = GENERAL" + blanks(8) + "X-START   Z-START" + "     X-END    Z-END",
                           blanks(26) + "     10.000" + "     2.000" + "     22.000" + "    1.000"} +
                     methodLines("Force Equilibrium / EFFECTIVE STRESS ANALYSIS") + stressHeadings() +
                     stressSliceLines();
    EXPECT_EQ(result(), expected);
}

// ------------------------------------------------------------------------------------------
// Surface lines that are left out
// ------------------------------------------------------------------------------------------

// The line after the summary header: the method line follows at once when no surface line is
// printed.
TEST_F(Print, StrictComparisonsLeaveGapsInTheSurfaceLine) {
    struct Case {
        int type;
        double mark;
        double sf;
    };
    const Case cases[] = {{3, 1.0, 1.25}, {3, 2.0, 1.25}, {4, 0.0, 0.0}, {5, 0.0, 1.25}, {0, 0.0, 1.25}};
    for (const Case& c : cases) {
        SetUp();
        MASTER.NTYP = c.type;
        MASTER.SF = c.sf;
        SURF.SPAR(7) = c.mark;
        PRINT();
        Lines lines = result();
        ASSERT_GE(lines.size(), 10u);
        EXPECT_EQ(lines[8], "") << "type " << c.type << " mark " << c.mark;
        EXPECT_EQ(lines[9], " SOLUTION METHOD = Force Equilibrium / EFFECTIVE STRESS ANALYSIS")
            << "type " << c.type << " mark " << c.mark;
        for (const std::string& line : lines) EXPECT_EQ(line.find("SURFACE TYPE"), std::string::npos) << line;
    }
}

TEST_F(Print, CombinedMarksJustOffTheGapsPrintTheirVariant) {
    MASTER.NTYP = 3;
    SURF.SPAR(7) = 1.0000001;
    PRINT();
    EXPECT_EQ(result()[9].substr(0, 26), " SURFACE TYPE = COMBINED-2");
    SetUp();
    MASTER.NTYP = 3;
    SURF.SPAR(7) = 0.9999999;
    PRINT();
    EXPECT_EQ(result()[9].substr(0, 26), " SURFACE TYPE = COMBINED-1");
    SetUp();
    MASTER.NTYP = 3;
    SURF.SPAR(7) = 2.0000001;
    PRINT();
    EXPECT_EQ(result()[9].substr(0, 26), " SURFACE TYPE = COMBINED-3");
}

// ------------------------------------------------------------------------------------------
// Method line and analysis text
// ------------------------------------------------------------------------------------------

TEST_F(Print, AnalysisTextOfAnUnknownCodeIsThePreviousOne) {
    MASTER.IDEFTO = 2;
    PRINT();
    SetUp();
    MASTER.IDEFTO = 0;
    MASTER.METHOD = 3;
    PRINT();
    EXPECT_EQ(result()[12], " SOLUTION METHOD = KALMO-2003 / TOTAL STRESS ANALYSIS    ");
    SetUp();
    MASTER.IDEFTO = 3;
    PRINT();
    SetUp();
    MASTER.IDEFTO = 9;
    MASTER.METHOD = 1;
    PRINT();
    EXPECT_EQ(result()[12], " SOLUTION METHOD = Bishop Simplified / SWEDISH COMBINED ANALYSIS");
}

TEST_F(Print, UnknownMethodPrintsNoMethodLine) {
    MASTER.METHOD = 4;
    PRINT();
    Lines lines = result();
    for (const std::string& line : lines) EXPECT_EQ(line.find("SOLUTION METHOD"), std::string::npos) << line;
    // The surface value line is followed by the column headings.
    ASSERT_GE(lines.size(), 14u);
    EXPECT_EQ(lines[11], "");
    EXPECT_EQ(lines[12].substr(0, 6), " SLICE");
}

// ------------------------------------------------------------------------------------------
// Slice count, last slice, zero-height sides, nails and safety factor sign
// ------------------------------------------------------------------------------------------

TEST_F(Print, ZeroSlicesPrintsEverythingButSliceLines) {
    MASTER.NUMSLC = 0;
    PRINT();
    Lines expected = headLines("    1.250", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = GENERAL" + blanks(8) + "X-START   Z-START" + "     X-END    Z-END",
                           blanks(26) + "     10.000" + "     2.000" + "     22.000" + "    1.000"} +
                     methodLines("Force Equilibrium / EFFECTIVE STRESS ANALYSIS") + forceHeadings();
    EXPECT_EQ(result(), expected);
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Print, LastSliceNeverWarnsForEndForceArmOrRoughness) {
    // The wall force of an earth-pressure surface: negative end force, arm ratios beyond 1 and
    // below 0, roughness beyond 1.001 on the last slice.
    MASTER.NTYP = 4;
    MASTER.SF = 0.8;
    SURF.E2(3) = -500.0;
    SURF.H2(3) = 5.0;   // 5/1 = 5 > 1
    SURF.R(3) = 1.5;
    PRINT();
    EXPECT_EQ(warningsOfSlice(3), 0);

    SetUp();
    SURF.E2(3) = -500.0;
    SURF.H2(3) = -0.2;  // -0.2/1 < 0
    SURF.R(3) = -1.5;
    PRINT();
    EXPECT_EQ(warningsOfSlice(3), 0);

    // The same values on a slice that is not the last count three warnings.
    SetUp();
    SURF.E2(2) = -500.0;
    SURF.H2(2) = -0.2;
    SURF.R(2) = -1.5;
    PRINT();
    EXPECT_EQ(warningsOfSlice(2), 3);
    EXPECT_EQ(firstLineOfSlice(2),
              "   2" " " "   14.00" "    2.50" "    3.00" " " "  1.500E+01" "  2.500E+02" " -5.000E+02" "  3.000E+01"
              " -1.500" " -0.100" "  WARNINGS:" " 3");
}

TEST_F(Print, LastSliceStillWarnsForBaseForceAndWeight) {
    SURF.P(3) = -1.0;
    SURF.H3(3) = 6.0;     // 6/4*0.8 = 1.2 > 1
    SURF.WZ(3) = -40.0;   // WZT = -40 + 0.8*40 = -8 < 0
    PRINT();
    EXPECT_EQ(warningsOfSlice(3), 3);
}

TEST_F(Print, EveryWarningConditionIsCounted) {
    struct Case {
        const char* what;
        int slice;
        void (*change)();
        int count;
    };
    const Case cases[] = {
        {"base normal force below zero", 1, [] { SURF.P(1) = -1.0; }, 1},
        {"base normal force zero", 1, [] { SURF.P(1) = 0.0; }, 0},
        {"H3/L34 above one", 2, [] { SURF.H3(2) = 4.4; }, 1},          // 4.4/4*1 = 1.1
        {"H3/L34 exactly one", 2, [] { SURF.H3(2) = 4.0; }, 0},        // 4/4*1 = 1
        {"H3/L34 below zero", 1, [] { SURF.H3(1) = -0.5; }, 1},
        {"end force below zero", 1, [] { SURF.E2(1) = -1.0; }, 1},
        {"H2/Z23 above one", 1, [] { SURF.H2(1) = 3.0; }, 1},          // 3/2.5 = 1.2
        {"H2/Z23 exactly one", 2, [] { SURF.H2(2) = 2.0; }, 0},        // 2/2 = 1
        {"H2/Z23 below zero", 1, [] { SURF.H2(1) = -0.5; }, 1},
        {"roughness above 1.001", 1, [] { SURF.R(1) = 1.01; }, 1},
        {"roughness below -1.001", 1, [] { SURF.R(1) = -1.01; }, 1},
        // The limit is the single-precision 1.001 (1.00100004673...): a roughness between the
        // double 1.001 and it does not warn, one just above it does.
        {"roughness at the single-precision limit", 1, [] { SURF.R(1) = 1.001f; }, 0},
        {"roughness just below the limit", 1, [] { SURF.R(1) = 1.00100004; }, 0},
        {"roughness just above the limit", 1, [] { SURF.R(1) = 1.0010001; }, 1},
        {"vertical total force below zero", 1, [] { SURF.WZ(1) = -100.0; }, 1},  // -100 + 40
        {"all at once", 1,
         [] {
             SURF.P(1) = -1.0;
             SURF.H3(1) = 6.0;   // 6/4*0.8 = 1.2
             SURF.E2(1) = -1.0;
             SURF.H2(1) = 5.0;   // 5/2.5 = 2
             SURF.R(1) = 2.0;
             SURF.WZ(1) = -100.0;
         },
         6},
        {"low side of both ratios", 1,
         [] {
             SURF.H3(1) = -1.0;
             SURF.H2(1) = -1.0;
             SURF.R(1) = -2.0;
         },
         3},
    };
    for (const Case& c : cases) {
        SetUp();
        c.change();
        PRINT();
        EXPECT_EQ(warningsOfSlice(c.slice), c.count) << c.what;
        for (int i = 1; i <= 3; ++i) {
            if (i == c.slice) continue;
            EXPECT_EQ(warningsOfSlice(i), 0) << c.what << ", slice " << i;
        }
    }
}

TEST_F(Print, ZeroHeightSideClipsTheArmRatioWithTheSignOfH2) {
    // Slice 2 gets a right side of no height: Z2 = Z3 = 5.
    struct Case {
        double h2;
        const char* field;
        int warnings;
    };
    const Case cases[] = {{0.3, "  9.999", 1}, {-0.3, " -9.999", 1}, {0.0, "  0.000", 0}};
    for (const Case& c : cases) {
        SetUp();
        SURF.ZZ(2, 2) = 5.0;
        SURF.H2(2) = c.h2;
        PRINT();
        std::string line = firstLineOfSlice(2);
        EXPECT_EQ(line.substr(0, 88),
                  "   2" " " "   14.00" "    2.50" "    5.00" " " "  1.500E+01" "  2.500E+02" "  1.200E+02" "  3.000E+01"
                  " -0.250" + std::string(c.field))
            << "H2 = " << c.h2;
        EXPECT_EQ(warningsOfSlice(2), c.warnings) << "H2 = " << c.h2;
    }
}

TEST_F(Print, SideBelowTheToleranceIsMeasuredAsThePositiveTolerance) {
    // A side of height -1E-21 is divided by +EPS, so the ratio takes the sign of H2 alone.
    SURF.ZZ(2, 1) = 0.0;
    SURF.ZZ(3, 1) = -1.0E-21;
    SURF.H2(1) = 0.3;
    PRINT();
    EXPECT_EQ(firstLineOfSlice(1).substr(81, 7), "  9.999");
}

TEST_F(Print, LargeArmRatiosAreClippedOnlyBeyondTen) {
    SURF.H2(1) = 25.0;   // 25/2.5 = 10: printed as it is
    SURF.H2(2) = 20.5;   // 20.5/2 = 10.25: clipped
    PRINT();
    EXPECT_EQ(firstLineOfSlice(1).substr(81, 7), " 10.000");
    EXPECT_EQ(firstLineOfSlice(2).substr(81, 7), "  9.999");
}

TEST_F(Print, ZeroHeightSideInStressModeIsNotGuarded) {
    MASTER.JSTRES = 2;
    SURF.ZZ(2, 2) = 5.0;
    SURF.H2(2) = 0.3;
    SURF.E2(2) = 50.0;
    SURF.U2(2) = 0.0;
    SURF.T2(2) = -10.0;
    PRINT();
    // 50/0, 0/0 and -10/0 as the field writers show them; the arm ratio is still clipped, and
    // the base stresses divide by the base length as usual (250/4, 90/4, 100/4).
    // WXT = 10 - 25 + 0 - 0 = -15 with the side water force gone.
    EXPECT_EQ(firstLineOfSlice(2),
              "   2" " " "   14.00" "    2.50" "    5.00" " " " -1.500E+01" "  6.250E+01" "   Infinity" "        NaN"
              " -0.250" "  9.999" "  WARNINGS:" " 1");
    EXPECT_EQ(secondLineOfSlice(2),
              "   2" " " "   18.00" "    5.00" "    5.00" " " "  4.000E+02" "  2.250E+01" "  -Infinity" "  2.500E+01"
              "         0.250");
}

TEST_F(Print, NailForcesAreDividedByTheSafetyFactorWithItsSign) {
    SURF.SNX(1) = 30.0;
    SURF.SNZ(1) = -15.0;
    MASTER.NTYP = 4;
    MASTER.SF = -1.5;
    SURF.SPAR(1) = 30.0;
    PRINT();
    Lines lines = result();
    ASSERT_GE(lines.size(), 11u);
    EXPECT_EQ(lines[10].substr(0, 23), blanks(16) + "PASSIVE");
    // WXT = -5 + 30/(-1.5) = -25; WZT = 240 + (-15)/(-1.5) = 250
    EXPECT_EQ(firstLineOfSlice(1).substr(30, 11), " -2.500E+01");
    EXPECT_EQ(secondLineOfSlice(1).substr(30, 11), "  2.500E+02");

    SetUp();
    SURF.SNX(1) = 30.0;
    SURF.SNZ(1) = -15.0;
    MASTER.NTYP = 4;
    MASTER.SF = 1.5;
    PRINT();
    // WXT = -5 + 30/1.5 = 15; WZT = 240 - 15/1.5 = 230
    EXPECT_EQ(result()[10].substr(0, 23), blanks(16) + "ACTIVE ");
    EXPECT_EQ(firstLineOfSlice(1).substr(30, 11), "  1.500E+01");
    EXPECT_EQ(secondLineOfSlice(1).substr(30, 11), "  2.300E+02");
}

TEST_F(Print, SuccessLeavesTheErrorCodeAsItWas) {
    MASTER.IERR = 3;
    PRINT();
    EXPECT_EQ(MASTER.IERR, 3);
}

// ------------------------------------------------------------------------------------------
// Failures
// ------------------------------------------------------------------------------------------

TEST_F(Print, NoSolvedSurfaceIsRefused) {
    MASTER.KBEST = 0;
    MASTER.KLAST = 0;
    BEST.SF = 3.0;
    PRINT();
    const Lines message{"", " ABOVE PRINT ORDER NEGLECTED , NO DATA ON FILE"};
    EXPECT_EQ(console(), message);
    EXPECT_EQ(copy(), message);
    EXPECT_TRUE(io::contents(16).empty());
    EXPECT_EQ(MASTER.SF, 1.25);  // nothing restored
    EXPECT_EQ(MASTER.IERR, 0);
}

TEST_F(Print, WithNailsTheNailTableEndsThePrintOnANewPage) {
    ISNAIL.NNAILS = 1;
    SNAILS.SN(1, SNLTOT) = 8.0;
    ISNAIL.INAIL(1, SNMODE) = 0;
    PRINT();
    const Lines nailTable{kPageTop,
                          "",
                          " Nail   Total   Active  Forces at shear surface   Slice   Failure mode",
                          "  no.   length  length    Axially   Laterally    intsctn",
                          " ",
                          "   1     8.000   0.000   0.000E+00  0.000E+00      00     No intersection     "};
    Lines expected = headLines("    1.250", "   7", "    0.125") +
                     Lines{"",
                           " SURFACE TYPE = GENERAL" + blanks(8) + "X-START   Z-START" + "     X-END    Z-END",
                           blanks(26) + "     10.000" + "     2.000" + "     22.000" + "    1.000"} +
                     methodLines("Force Equilibrium / EFFECTIVE STRESS ANALYSIS") + forceHeadings() + forceSliceLines() +
                     nailTable;
    EXPECT_EQ(result(), expected);
}

TEST_F(Print, AGeometryErrorLeavesOutTheNailTable) {
    ISNAIL.NNAILS = 1;
    SURF.XX(3, 2) = 14.0;  // X3 = X4 = 14
    PRINT();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(io::contents(16).find("Failure mode"), std::string::npos);
}

TEST_F(Print, SliceWithoutBaseWidthStopsThePrint) {
    SURF.XX(3, 2) = 14.0;  // X3 = X4 = 14
    PRINT();
    const Lines message{"", "", " **** SR/PRINT : GEOMETRY ERROR  SLICE,X3,X4 =",
                        "       2" "     0.1400E+02" "     0.1400E+02"};
    EXPECT_EQ(console(), message);
    EXPECT_EQ(copy(), message);
    EXPECT_EQ(MASTER.IERR, 1);
    Lines allSlices = forceSliceLines();
    EXPECT_EQ(sliceSection(), Lines(allSlices.begin(), allSlices.begin() + 3));
}

TEST_F(Print, BaseRunningBackwardsIsAGeometryError) {
    SURF.XX(3, 1) = 9.5;  // X3 < X4 = 10
    PRINT();
    const Lines message{"", "", " **** SR/PRINT : GEOMETRY ERROR  SLICE,X3,X4 =",
                        "       1" "     0.9500E+01" "     0.1000E+02"};
    EXPECT_EQ(console(), message);
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_TRUE(sliceSection().empty());
}

TEST_F(Print, SliceCountOutOfRangeIsRefused) {
    MASTER.NUMSLC = 100;
    PRINT();
    EXPECT_EQ(MASTER.IERR, 2);
    EXPECT_TRUE(io::contents(16).empty());
    ASSERT_EQ(console().size(), 1u);
    EXPECT_EQ(console()[0].substr(0, 50), " **** SR/PRINT : SURFACE RECORD SIZE OUT OF RANGE ");

    SetUp();
    MASTER.KLAST = 0;
    IBES.NUMSLC = -1;
    MASTER.IERR = 0;
    PRINT();
    EXPECT_EQ(MASTER.IERR, 2);
    EXPECT_EQ(MASTER.SF, 1.25);  // nothing restored
}

// ------------------------------------------------------------------------------------------
// The best surface
// ------------------------------------------------------------------------------------------

class PrintBest : public Print {
protected:
    void SetUp() override {
        Print::SetUp();
        // The current surface: surface 9 of the run, a circle, with its own failure modes and
        // nail moments.
        MASTER.NUMSRF = 9;
        MASTER.NTYP = 2;
        for (int i = 1; i <= 3; ++i) ISUR.MODE(i) = 2;
        SURF.SNM(1) = 7.0;

        // The best surface: surface 4, general, two slices; slices 1 and 2 of the current
        // surface shifted by 100 in x, its own roughness and SPAR.
        static SurfRecord best;
        best = SURF;
        for (int i = 1; i <= 2; ++i)
            for (int k = 1; k <= 5; ++k) best.XX(k, i) += 100.0;
        best.R(1) = 0.125;
        best.SPAR(1) = 110.0;
        best.SPAR(2) = 2.0;
        best.SPAR(3) = 118.0;
        best.SPAR(4) = 5.0;
        best.SNM(1) = -3.0;
        best.XS(1) = 110.0;
        std::memcpy(BEST.SURF, &best, sizeof BEST.SURF);
        IBES.NUMSRF = 4;
        IBES.NTYP = 1;
        IBES.NUMSLC = 2;
        BEST.SF = 1.1;
        BEST.SCORE = 0.25;
        BEST.RFACTOR = 0.5;
        for (int i = 1; i <= 2; ++i) IBES.MODE(i) = 1;
        BEST.SN(1, 1) = 3.5;
        IBES.INAIL(1, 1) = 11;
        SNAILS.SN(1, 1) = -1.0;
        ISNAIL.INAIL(1, 1) = -1;
        MASTER.KLAST = 0;
    }
};

TEST_F(PrintBest, PrintsTheBestSurface) {
    PRINT();
    Lines expected = headLines("    1.100", "   4", "    0.250") +
                     Lines{"",
                           " SURFACE TYPE = GENERAL" + blanks(8) + "X-START   Z-START" + "     X-END    Z-END",
                           blanks(26) + "    110.000" + "     2.000" + "    118.000" + "    5.000"} +
                     methodLines("Force Equilibrium / EFFECTIVE STRESS ANALYSIS") + forceHeadings() +
                     Lines{
                         "",
                         "   1" " " "  110.00" "    2.00" "    2.50" " " " -5.000E+00" "  1.500E+02" "  8.000E+01" "  2.500E+01" "  0.125" "  0.400",
                         "   1" " " "  114.00" "    2.00" "    5.00" " " "  2.400E+02" "  6.000E+01" "  2.000E+01" "  5.000E+01" "         0.500",
                         "",
                         "   2" " " "  114.00" "    2.50" "    3.00" " " "  1.500E+01" "  2.500E+02" "  1.200E+02" "  3.000E+01" " -0.250" "  0.250",
                         "   2" " " "  118.00" "    5.00" "    5.00" " " "  4.000E+02" "  9.000E+01" " -1.500E+01" "  1.000E+02" "         0.250",
                     };
    EXPECT_EQ(result(), expected);
}

TEST_F(PrintBest, AfterwardsTheCurrentRecordsHoldTheBestSurface) {
    ISNAIL.NNAILS = 1;
    PRINT();
    EXPECT_EQ(std::memcmp(&SURF, BEST.SURF, sizeof BEST.SURF), 0);
    EXPECT_EQ(SURF.XX(1, 1), 110.0);
    EXPECT_EQ(SURF.XS(1), 110.0);
    EXPECT_EQ(MASTER.SF, 1.1);
    EXPECT_EQ(MASTER.SCORE, 0.25);
    EXPECT_EQ(MASTER.RFACTOR, 0.5);
    EXPECT_EQ(SNAILS.SN(1, 1), 3.5);
    EXPECT_EQ(ISNAIL.INAIL(1, 1), 11);
    // Beyond the copy: the nail moments of the surface analysed last, its slice failure modes
    // and the run's surface bookkeeping stay.
    EXPECT_EQ(SURF.SNM(1), 7.0);
    EXPECT_EQ(ISUR.MODE(1), 2);
    EXPECT_EQ(MASTER.NUMSRF, 9);
    EXPECT_EQ(MASTER.NTYP, 2);
    EXPECT_EQ(MASTER.NUMSLC, 3);
}

TEST_F(PrintBest, WithoutNailsTheNailRecordsStay) {
    PRINT();
    EXPECT_EQ(SNAILS.SN(1, 1), -1.0);
    EXPECT_EQ(ISNAIL.INAIL(1, 1), -1);
    EXPECT_EQ(SURF.XX(1, 1), 110.0);
}

TEST_F(PrintBest, OnlyTheCopyLengthIsRestored) {
    ISUR.NSRFCP = 600;  // XS and ZS only
    PRINT();
    EXPECT_EQ(SURF.XS(1), 110.0);
    EXPECT_EQ(SURF.XX(1, 1), 10.0);
}

TEST_F(PrintBest, LastSurfaceIsPrintedFromTheCurrentRecords) {
    MASTER.KLAST = -1;
    PRINT();
    EXPECT_EQ(MASTER.SF, 1.25);
    EXPECT_EQ(SURF.XX(1, 1), 10.0);
    Lines lines = result();
    ASSERT_GE(lines.size(), 8u);
    EXPECT_EQ(lines[6], " SURFACE NO :   9     SUMMARY OF GEOMETRY AND FORCES");
    EXPECT_EQ(lines[9], " SURFACE TYPE = CIRCLE" + blanks(9) + "X-CENTER  Z-CENTER" + "   RADIUS");
}

}  // namespace
