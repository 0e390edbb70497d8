// slices/intbl1.cpp
//
// INTBL1 — the crossings of a straight segment with a broken line.
//
// The segment from (x1, y1) to (x2, y2) lies on the line y = a + b x, or on x = x1 when it is
// vertical. Every part of the broken line whose x range overlaps the segment's is crossed with
// that line; a crossing counts when it lies within both the part and the segment (tolerance
// 1.0E-12). A part lying on the segment's line (slope and intercept equal within 1.0E-12)
// contributes its end point. A crossing through a vertex of the broken line is found by the
// parts on both sides; it is counted once. The crossings come in broken-line order; there are
// at most n - 1 of them, which is the room xi and yi must have.
//
// Every call is counted; at trace level JPRINT 4 or more the call number, the broken line, the
// segment and the crossings are written to the log file NF18.
//
// Reads:  n, x(1..n), y(1..n), the segment ends; MASTER JPRINT, NF18 (trace only)
// Writes: num, xi(1..num), yi(1..num); ierr
// IERR:   0 ok; 1 the segment is degenerate (|x2 - x1| and |y2 - y1| both below 1.0E-12)

#include <cmath>

#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kTiny = 1.0e-12f;
constexpr double kSamePoint = 1.0e-9f;  // a vertex crossing found twice
constexpr int kTraceLevel = 4;

int callCount = 0;

bool within(double v, double a, double b) {
    const double low = a < b ? a : b;
    const double high = a < b ? b : a;
    return v >= low - kTiny && v <= high + kTiny;
}

void tracePrint(int n, const double* x, const double* y, double x1, double y1, double x2, double y2, int num,
                const double* xi, const double* yi) {
    const int unit = MASTER.NF18;
    io::writeLine(unit, io::Line(" SR/INTBL1 Trace print.  Call number =").Free(callCount).str());
    io::writeLine(unit, " Point     X     Y");
    for (int k = 0; k < n; ++k) io::writeLine(unit, io::Line().I(k + 1, 6).F(x[k], 14, 4).F(y[k], 14, 4).str());
    io::writeLine(unit, " Intersecting line, points 1 and 2");
    io::writeLine(unit, io::Line().I(1, 6).F(x1, 14, 4).F(y1, 14, 4).str());
    io::writeLine(unit, io::Line().I(2, 6).F(x2, 14, 4).F(y2, 14, 4).str());
    io::writeLine(unit, io::Line(" Intersections found =").Free(num).str());
    for (int k = 0; k < num; ++k) io::writeLine(unit, io::Line().I(k + 1, 6).F(xi[k], 14, 4).F(yi[k], 14, 4).str());
}

}  // namespace

void INTBL1(int n, const double* x, const double* y, double x1, double y1, double x2, double y2, int& num, double* xi,
            double* yi, int& ierr) {
    ++callCount;
    num = 0;
    ierr = 0;
    const double runX = x2 - x1;
    const double runY = y2 - y1;
    if (std::fabs(runX) < kTiny && std::fabs(runY) < kTiny) {
        ierr = 1;
        if (MASTER.JPRINT >= kTraceLevel) tracePrint(n, x, y, x1, y1, x2, y2, num, xi, yi);
        return;
    }

    const bool vertical = std::fabs(runX) < kTiny;
    const double slope = vertical ? 0.0 : runY / runX;
    const double intercept = y1 - slope * x1;
    const double segmentLow = x1 < x2 ? x1 : x2;
    const double segmentHigh = x1 < x2 ? x2 : x1;

    for (int j = 0; j + 1 < n; ++j) {
        const double xa = x[j], ya = y[j], xb = x[j + 1], yb = y[j + 1];
        const double partLow = xa < xb ? xa : xb;
        const double partHigh = xa < xb ? xb : xa;
        if (partHigh < segmentLow - kTiny || partLow > segmentHigh + kTiny) continue;

        const bool partVertical = std::fabs(xb - xa) < kTiny;
        double xc = 0.0, yc = 0.0;
        bool found = false;
        if (vertical && partVertical) {
            if (std::fabs(xa - x1) < kTiny) {
                xc = xb;
                yc = yb;
                found = within(yc, y1, y2);
            }
        } else if (vertical) {
            xc = x1;
            yc = ya + (yb - ya) / (xb - xa) * (x1 - xa);
            found = within(yc, y1, y2) && within(yc, ya, yb);
        } else if (partVertical) {
            xc = xa;
            yc = intercept + slope * xa;
            found = within(yc, ya, yb) && within(xc, x1, x2);
        } else {
            const double partSlope = (yb - ya) / (xb - xa);
            const double partIntercept = ya - partSlope * xa;
            if (std::fabs(slope - partSlope) < kTiny) {
                if (std::fabs(intercept - partIntercept) < kTiny) {
                    xc = xb;
                    yc = yb;
                    found = within(xc, x1, x2);
                }
            } else {
                xc = (partIntercept - intercept) / (slope - partSlope);
                yc = intercept + slope * xc;
                found = within(xc, xa, xb) && within(xc, x1, x2);
            }
        }
        if (!found) continue;
        if (num > 0 && std::fabs(xc - xi[num - 1]) <= kSamePoint && std::fabs(yc - yi[num - 1]) <= kSamePoint) continue;
        xi[num] = xc;
        yi[num] = yc;
        ++num;
    }

    if (MASTER.JPRINT >= kTraceLevel) tracePrint(n, x, y, x1, y1, x2, y2, num, xi, yi);
}
