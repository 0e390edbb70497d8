// output/plot.cpp
//
// PLOT — the two character sketches of an analysed surface at the end of the result print.
//
// Page 1 draws the section of slices to scale in characters: every slice side as a vertical row
// of material digits, the shear surface as one material digit under the middle of each slice
// base, a line of slice numbers, and the table of the materials. Page 2 draws the normal
// stresses along the surface and between the slices between a ZERO and a SIGMAX axis, with
// their least and greatest values. Any line printer shows them.
//
// Scale of page 1: the slices from X1 of the first to X2 of the last span columns 2 to 72. The
// rows keep the section's proportions for characters 7/4 times as high as wide; row r covers
// the depths from ztop + (r - 1) h to ztop + r h (h the depth range over the rows), a depth on
// a border belonging to the row below it and the deepest point to the last row.
//
// Reads:  the surface number, type and slice count (NS, 0..99) given by the result print;
//         MASTER.SF, SCORE, IDEFTO, EPS, NF16, DATTIM; TEXT.TITLE, VERSION; SURF corners XX, ZZ
//         and P, E2, U3, L34; ISOLPR.NMAT; SOLPRP.MAT; the mesh through LOCATE
// Writes: MASTER.DATTIM; two pages on NF16; a failed material lookup writes its message to
//         the console output and log-copy channels
// IERR:   unchanged: a failed material lookup marks its cell with "?" and the sketch goes on

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <string_view>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "output/output.h"
#include "records.h"

namespace {

constexpr int kCells = 80;           // character cells of a sketch line
// Columns: the nearest whole number to 70·(x - x0)/(x range) + 1.5. The first slice side falls
// on column 2 (1.5 rounds up) and the far side of the last slice on 72 (71.5 rounds up), one
// column beyond the "2 to 71" the sketch is commonly described with. The rounding rule is kept
// as it stands, so that every point keeps its column; the drawing area is the 71 columns 2-72.
constexpr int kFirstColumn = 2;
constexpr int kLastColumn = 72;
constexpr int kMaxRows = 30;         // rows of the section sketch at most
constexpr int kStressLevels = 20;    // lines between the ZERO and the SIGMAX axis
constexpr double kRowsPerAspect = 284.0 / 7.0;  // 71 columns, characters 7/4 as high as wide
constexpr int kAxisLength = 72;
constexpr char kUnknownMaterial = '?';

void writeResult(std::string_view text) { io::writeLine(MASTER.NF16, text); }

// One sketch line: 80 cells, printed after one blank.
struct SketchLine {
    std::string cells = std::string(kCells, ' ');
    void put(int column, char mark) {
        if (column >= 1 && column <= kCells) cells[static_cast<size_t>(column - 1)] = mark;
    }
    void write() const { writeResult(io::Line().X(1).A(cells).str()); }
};

// The horizontal scale shared by both pages: x0 at column 2, x0 + range at column 72.
struct Scale {
    double x0 = 0.0;
    double range = 1.0;
    int column(double x) const {
        const double at = 70.0 * (x - x0) / range + 1.5;
        if (!(at >= kFirstColumn)) return kFirstColumn;  // NaN falls here too
        if (!(at <= kLastColumn)) return kLastColumn;
        return static_cast<int>(std::lround(at));
    }
};

std::string_view surfaceTypeName(int surfaceType) {
    switch (surfaceType) {
        case 1: return "GENERAL ";
        case 2: return "CIRCLE  ";
        case 3: return "COMBINED";
        case 4: return "PLANE   ";
        // The autosearch improves a general surface: its surfaces are general ones.
        case 5: return "GENERAL ";
        default: return "        ";
    }
}

void writePageHead(int surfaceNumber, int surfaceType) {
    PAGHED(MASTER.NF16);
    writeResult("");
    writeResult(io::Line()
                    .A(" SURFACE NO:")
                    .I(surfaceNumber, 3)
                    .A("  TYPE: ")
                    .A(surfaceTypeName(surfaceType))
                    .A("  SAFETY-FACTOR:")
                    .F(MASTER.SF, 7, 3)
                    .A("   SCORE:")
                    .F(MASTER.SCORE, 7, 3)
                    .str());
}

// The digit of a material: 1-9, 0 for material 10, * for 11 and more.
char materialMark(int material) {
    if (material >= 1 && material <= 9) return static_cast<char>('0' + material);
    if (material == 10) return '0';
    if (material >= 11) return '*';
    return kUnknownMaterial;
}

// The material digit at (x, z) of slice I; a single material needs no lookup.
char materialAt(int I, double x, double z) {
    if (ISOLPR.NMAT == 1) return '1';
    const int errorBefore = MASTER.IERR;
    int material = 0;
    LOCATE(x, z, material);
    const bool failed = MASTER.IERR != 0;
    MASTER.IERR = errorBefore;
    if (failed) {
        say(io::Line(" **** SR/PLOT :  ERROR IN SR/LOCATE   SLICE =").I(I, 5).str());
        return kUnknownMaterial;
    }
    return materialMark(material);
}

// Rows of the section sketch and their band height.
struct Rows {
    int count = 1;
    double top = 0.0;
    double height = 1.0;
    // The row whose band holds depth z (a border depth belongs to the row below it).
    int of(double z) const {
        const double at = std::floor((z - top) / height) + 1.0;
        if (!(at >= 1.0)) return 1;
        if (!(at <= count)) return count;
        return static_cast<int>(at);
    }
    double middle(int row) const { return top + (row - 0.5) * height; }
};

// A slice side at x from depth zUpper down to zLower: one digit in every row it reaches, the
// material looked up at the row's middle depth kept within the side.
void drawSide(std::string* grid, const Rows& rows, const Scale& scale, int I, double x, double zUpper, double zLower) {
    const double low = std::min(zUpper, zLower), high = std::max(zUpper, zLower);
    const int column = scale.column(x);
    for (int row = rows.of(low); row <= rows.of(high); ++row) {
        const double z = std::clamp(rows.middle(row), low, high);
        grid[row - 1][static_cast<size_t>(column - 1)] = materialAt(I, x, z);
    }
}

void writeSectionSketch(int NS, const Scale& scale) {
    double zTop = 1.0E6, zBottom = -1.0E6;
    for (int i = 1; i <= NS; ++i) {
        zTop = std::min({zTop, SURF.ZZ(1, i), SURF.ZZ(2, i)});
        zBottom = std::max({zBottom, SURF.ZZ(3, i), SURF.ZZ(4, i)});
    }
    Rows rows;
    rows.top = zTop;
    const double depthRange = zBottom - zTop;
    // The Part's rounding: the proportional count plus one half, to the nearest whole number.
    const double proportional = depthRange / scale.range * kRowsPerAspect + 0.5;
    rows.count = std::isfinite(proportional) ? static_cast<int>(std::clamp(std::round(proportional), 1.0, double(kMaxRows))) : 1;
    rows.height = depthRange > MASTER.EPS ? depthRange / rows.count : 1.0;

    std::string grid[kMaxRows];
    for (std::string& row : grid) row.assign(kCells, ' ');
    for (int i = 1; i <= NS; ++i) {
        drawSide(grid, rows, scale, i, SURF.XX(1, i), SURF.ZZ(1, i), SURF.ZZ(4, i));
        if (i == NS) drawSide(grid, rows, scale, i, SURF.XX(2, i), SURF.ZZ(2, i), SURF.ZZ(3, i));
        const double baseX = (SURF.XX(3, i) + SURF.XX(4, i)) / 2.0;
        const double baseZ = (SURF.ZZ(3, i) + SURF.ZZ(4, i)) / 2.0;
        grid[rows.of(baseZ) - 1][static_cast<size_t>(scale.column(baseX) - 1)] = materialAt(i, baseX, baseZ);
    }
    for (int row = 1; row <= rows.count; ++row) writeResult(io::Line().X(1).A(grid[row - 1]).str());

    // Slice numbers as two digits, the units under the middle of the slice top.
    SketchLine numbers;
    for (int i = 1; i <= NS; ++i) {
        const int column = scale.column((SURF.XX(1, i) + SURF.XX(2, i)) / 2.0);
        numbers.put(column, static_cast<char>('0' + i % 10));
        numbers.put(column - 1, static_cast<char>('0' + (i / 10) % 10));
    }
    numbers.write();
}

// The material table. A material whose cohesion is given as a percentage of the undrained
// strength (a negative COHESN) shows that percentage with "%*C"; the others their cohesion.
void writeMaterialTable() {
    writeResult("");
    writeResult("  MAT GAMTOT SUA/SU0 SUD/SU0 SUP/SU0 COHESN PHIANG PHIRED RU-FCT  B-FCT  K-NOT B-SIG2 D/SU(B)");
    const int materials = std::clamp(ISOLPR.NMAT, 0, MAXMAT);
    for (int m = 1; m <= materials; ++m) {
        const auto mat = [m](int k) { return SOLPRP.MAT(k, m); };
        io::Line line;
        line.I(m, 4).F(mat(GAMTOT), 8, 3).F(mat(SUASU0), 7, 3).F(mat(SUDSU0), 8, 3).F(mat(SUPSU0), 8, 3);
        if (mat(COHESN) < 0.0) line.F(-mat(COHESN), 5, 1).A("%*C");
        else line.F(mat(COHESN), 8, 3);
        const double frictionAngle = std::atan(mat(PHIANG)) * 180.0 / std::numbers::pi;
        line.F(frictionAngle, 7, 2).F(mat(PHIRED), 6, 2).F(mat(RUFCT), 7, 3).F(mat(BFCT), 8, 3);
        line.F(mat(KNOT), 7, 3).F(mat(BSIG2), 7, 3).F(mat(DSUB), 7, 3);
        writeResult(line.str());
    }
}

// Normal stresses of the slices: on the base (P/L34), on the right side (E2 over its height;
// sides of no height carry none) and the pore pressure on the base (U3/L34).
struct Stresses {
    double P[MAXSLC], E[MAXSLC], U[MAXSLC];
    bool hasE[MAXSLC];
};

struct Range {
    double low = 0.0, high = 0.0;
    bool any = false;
    void add(double value) {
        low = any ? std::min(low, value) : value;
        high = any ? std::max(high, value) : value;
        any = true;
    }
};

void writeRangeLine(std::string_view name, const Range& range) {
    writeResult(io::Line()
                    .X(1)
                    .A(name)
                    .A("-MIN =")
                    .ES(range.low, 11, 3)
                    .X(7)
                    .A(name)
                    .A("-MAX =")
                    .ES(range.high, 11, 3)
                    .str());
}

void writeStressSketch(int NS, const Scale& scale) {
    const bool effective = MASTER.IDEFTO != 2;
    if (effective) {
        writeResult(" BELOW SKETCH SHOWS EFFECTIVE NORMAL STRESSES: P=SHEAR-SURFACE  E=INTER-SLICE");
        writeResult(io::Line().X(47).A("U=RESULTING PWP AT SHEAR SURFACE").str());
    } else {
        writeResult(" BELOW SKETCH SHOWS TOTAL NORMAL STRESSES: P=SHEAR-SURFACE  E=INTER-SLICE");
    }
    writeResult(" ");

    Stresses stress{};
    Range baseRange, sideRange, waterRange;
    double greatest = 0.0;
    for (int i = 1; i <= NS; ++i) {
        const int k = i - 1;
        const double baseLength = SURF.L34(i);
        const double sideHeight = SURF.ZZ(3, i) - SURF.ZZ(2, i);
        stress.P[k] = baseLength > MASTER.EPS ? SURF.P(i) / baseLength : 0.0;
        stress.U[k] = baseLength > MASTER.EPS ? SURF.U3(i) / baseLength : 0.0;
        stress.hasE[k] = sideHeight > MASTER.EPS;
        stress.E[k] = stress.hasE[k] ? SURF.E2(i) / sideHeight : 0.0;
        baseRange.add(stress.P[k]);
        waterRange.add(stress.U[k]);
        if (stress.hasE[k]) sideRange.add(stress.E[k]);
        greatest = std::max(greatest, stress.P[k]);
        if (stress.hasE[k]) greatest = std::max(greatest, stress.E[k]);
        if (effective) greatest = std::max(greatest, stress.U[k]);
    }

    // The slice sides, where the interslice stresses stand.
    SketchLine sides;
    for (int i = 1; i <= NS; ++i) {
        sides.put(scale.column(SURF.XX(1, i)), 'I');
        if (i == NS) sides.put(scale.column(SURF.XX(2, i)), 'I');
    }
    sides.write();
    writeResult(io::Line().X(1).A(io::repeat('-', kAxisLength)).A("ZERO").str());

    // Level 1 lies at ZERO, the last at the greatest stress; negative stresses stay at ZERO.
    const auto level = [greatest](double value) {
        if (!(greatest > MASTER.EPS)) return 1;
        const double at = std::round(value / greatest * (kStressLevels - 1)) + 1.0;
        if (!(at >= 1.0)) return 1;
        if (!(at <= kStressLevels)) return kStressLevels;
        return static_cast<int>(at);
    };
    SketchLine levels[kStressLevels];
    // The base stress is drawn last, so that it shows where marks meet.
    for (int i = 1; i <= NS; ++i) {
        const int k = i - 1;
        const int baseColumn = scale.column((SURF.XX(3, i) + SURF.XX(4, i)) / 2.0);
        if (effective) levels[level(stress.U[k]) - 1].put(baseColumn, 'U');
        if (stress.hasE[k]) levels[level(stress.E[k]) - 1].put(scale.column(SURF.XX(2, i)), 'E');
    }
    for (int i = 1; i <= NS; ++i) {
        const int baseColumn = scale.column((SURF.XX(3, i) + SURF.XX(4, i)) / 2.0);
        levels[level(stress.P[i - 1]) - 1].put(baseColumn, 'P');
    }
    for (const SketchLine& line : levels) line.write();
    writeResult(io::Line().X(1).A(io::repeat('-', kAxisLength)).A("SIGMAX").str());

    writeResult("");
    writeRangeLine("P", baseRange);
    writeRangeLine("E", sideRange);
    writeRangeLine("U", waterRange);
}

}  // namespace

void PLOT(int NUMSRF, int NTYP, int NS) {
    const int slices = std::clamp(NS, 0, MAXSLC);
    Scale scale;
    if (slices > 0) {
        scale.x0 = SURF.XX(1, 1);
        const double range = SURF.XX(2, slices) - scale.x0;
        scale.range = range > MASTER.EPS ? range : 1.0;
    }

    writePageHead(NUMSRF, NTYP);
    writeResult(" BELOW SKETCH SHOWS SHEAR SURFACE WITH SLICE DIVISIONS AND MATERIAL ID-S");
    writeResult(" ");
    if (slices > 0) writeSectionSketch(slices, scale);
    writeMaterialTable();

    writePageHead(NUMSRF, NTYP);
    writeStressSketch(slices, scale);
}
