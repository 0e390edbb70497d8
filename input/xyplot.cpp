// input/xyplot.cpp
//
// XYPLOT — scattered point values drawn as a character picture for a printed log.
//
// Every point (x, z) is placed on a character grid, z growing downward from the top line, and
// marked by four characters: a sign and three digits of its value, scaled by a power of ten so
// that the largest magnitude shows with three significant digits. The picture is written line
// by line to an output channel, followed by a summary line with the point count, the smallest
// and largest value and the factor F the printed digits carry (printed = |value| * F).
//
// Arguments:
//   lines      grid lines (z direction); fewer than 2 are raised to 2
//   positions  character positions per line (x direction); fewer than 5 are raised to 5
//   grid       work storage for max(lines,2) * max(positions,5) characters, line after line
//   npoints    number of points; a negative count selects point-number mode: each value is
//              replaced by its running number + 0.1 and the mark shows that number (F = 1)
//   nf         output channel
//   x, z, v    point coordinates and values (1..npoints); v is changed in point-number mode
//   scale      scale code: zero or negative selects the automatic decimal scaling; a positive
//              code is taken as the factor F itself
// Writes: lines to channel nf only.
// Failure: when no power of ten brings the largest magnitude into [100, 1000] within 100
//   steps (an infinite value, say), " ***** SR/XYPLOT : SCALING-10 PROBLEM" is written to nf
//   instead of the picture. Nothing is returned to the caller.
// IERR:   not used
//
// Placing a mark: the x range is mapped onto start positions 1..positions-3 and the z range
// onto lines 1..lines, each to the nearest cell (offset / cell size + 0.5, truncated), so the
// sign stands at the point's place and the digits follow to its right, and the mark of the
// rightmost point still ends inside the line. When any of the four places is taken, start
// positions on the same line are tried nearest first, right before left (+1, -1, +2, -2, ...)
// up to two mark widths away; a mark placed there carries P or M instead of + or -. A mark
// that finds no free place within that reach is left out of the picture (the summary still
// counts it). A scaled value of 1000 or more (the largest value rounding up) shows as 999.

#include <cmath>
#include <string_view>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"

namespace {

constexpr char kMarkChars[] = "0123456789+-PM ";
constexpr int kSignPlus = 11;
constexpr int kSignMinus = 12;
constexpr int kSignMovedPlus = 13;
constexpr int kSignMovedMinus = 14;
constexpr int kSignBlank = 15;

constexpr double kHuge = 1.0E20f;
constexpr double kTinyExtent = 1.0E-6f;
constexpr double kRoundingNudge = 0.00001f;
constexpr double kTenth = 0.1f;
constexpr double kLowMark = 100.0;
constexpr double kHighMark = 1000.0;
constexpr int kMaxScaleSteps = 100;
constexpr int kMarkWidth = 4;
constexpr int kMaxShift = 2 * kMarkWidth;

char markChar(int index) { return kMarkChars[index - 1]; }

// Cell index of an offset from the low end, to the nearest cell, held within 0..last.
int nearestCell(double offset, double cellSize, int last) {
    double cell = offset / cellSize + 0.5;
    if (!(cell >= 0.0)) return 0;
    if (cell >= last + 1.0) return last;
    return static_cast<int>(cell);
}

bool placeIsFree(const char* row, int start) {
    for (int k = 0; k < kMarkWidth; ++k)
        if (row[start - 1 + k] != ' ') return false;
    return true;
}

}  // namespace

void XYPLOT(int lines, int positions, char* grid, int npoints, int nf, const double* x, const double* z, double* v,
            double scale) {
    if (lines < 2) lines = 2;
    if (positions < 5) positions = 5;
    for (int k = 0; k < lines * positions; ++k) grid[k] = ' ';

    const bool numberMode = npoints < 0;
    const int count = numberMode ? -npoints : npoints;
    if (numberMode)
        for (int i = 1; i <= count; ++i) v[i - 1] = i + 0.1;

    double xMin = kHuge, xMax = -kHuge, zMin = kHuge, zMax = -kHuge;
    double valueMin = kHuge, valueMax = -kHuge, largest = -kHuge;
    for (int i = 0; i < count; ++i) {
        xMin = std::fmin(xMin, x[i]);
        xMax = std::fmax(xMax, x[i]);
        zMin = std::fmin(zMin, z[i]);
        zMax = std::fmax(zMax, z[i]);
        valueMin = std::fmin(valueMin, v[i]);
        valueMax = std::fmax(valueMax, v[i]);
        largest = std::fmax(largest, std::fabs(v[i]));
    }

    // Decimal scaling: three significant digits of the largest magnitude.
    // Point numbers are shown as they are (F = 1).
    double factor = 1.0;
    if (!numberMode && scale > 0.0) {
        factor = scale;
    } else if (!numberMode && !(largest < kTinyExtent || (largest >= kLowMark && largest <= kHighMark))) {
        bool scaled = false;
        for (int step = 1; step <= kMaxScaleSteps && !scaled; ++step) {
            if (largest < kLowMark) {
                factor *= 10.0;
                largest *= 10.0;
            } else if (largest > kHighMark) {
                factor *= kTenth;
                largest *= kTenth;
            }
            scaled = largest >= kLowMark && largest <= kHighMark;
        }
        if (!scaled) {
            io::writeLine(nf, io::Line(" ***** SR/XYPLOT : SCALING-10 PROBLEM").Free(largest).str());
            return;
        }
    }

    double xCell = (xMax - xMin) / (positions - kMarkWidth);
    double zCell = (zMax - zMin) / (lines - 1);
    if (xCell < kTinyExtent) xCell = 1.0;
    if (zCell < kTinyExtent) zCell = 1.0;

    const int lastStart = positions - kMarkWidth + 1;
    for (int i = 0; i < count; ++i) {
        const int line = 1 + nearestCell(z[i] - zMin, zCell, lines - 1);
        const int home = 1 + nearestCell(x[i] - xMin, xCell, lastStart - 1);
        char* row = grid + (line - 1) * positions;

        int start = 0;
        for (int shift = 0; shift <= kMaxShift && start == 0; ++shift) {
            if (home + shift <= lastStart && placeIsFree(row, home + shift)) {
                start = home + shift;
            } else if (shift > 0 && home - shift >= 1 && placeIsFree(row, home - shift)) {
                start = home - shift;
            }
        }
        if (start == 0) continue;

        double shown = std::fabs(v[i]) * factor + kRoundingNudge;
        if (!numberMode) shown += 0.5;
        int mark = shown < 999.0 ? static_cast<int>(shown) : 999;
        if (!(shown >= 0.0)) mark = 0;

        const bool negative = v[i] < 0.0;
        const bool moved = start != home;
        int sign = negative ? kSignMinus : kSignPlus;
        if (moved) sign = negative ? kSignMovedMinus : kSignMovedPlus;
        if (numberMode && !moved) sign = kSignBlank;

        row[start - 1] = markChar(sign);
        row[start] = markChar(mark / 100 + 1);
        row[start + 1] = markChar(mark / 10 % 10 + 1);
        row[start + 2] = markChar(mark % 10 + 1);
    }

    for (int line = 1; line <= lines; ++line) {
        std::string_view row(grid + (line - 1) * positions, static_cast<size_t>(positions));
        io::writeLine(nf, io::Line(" ").A(row).str());
    }
    io::writeLine(nf, io::Line(" POINTS =")
                          .Free(count)
                          .A("  MIN/MAX VALUES =")
                          .Free(valueMin)
                          .Free(valueMax)
                          .A("   FACTOR =")
                          .Free(factor)
                          .str());
}
