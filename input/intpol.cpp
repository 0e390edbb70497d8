// input/intpol.cpp
//
// INTPOL — linear interpolation in a broken line, end values held constant outside its range.
//
// The table holds n points (x(k), y(k)); its abscissas increase (direction 1) or decrease
// (direction -1) by more than 1.0E-10 from point to point. A table that breaks this anywhere
// is refused whatever the abscissa asked for, so that a bad table never goes unnoticed.
//
// A routine that asks many abscissas of one table checks the table once (checkedBrokenLine)
// and then asks it with interpolate, which gives exactly what INTPOL gives, the error code of
// a bad table included, as long as the table's abscissas stay as they were checked. The
// bracketing points are found by bisection, or next to the ones found last: the first point k
// with x(k) - x >= 0 (direction 1) or x(k) - x <= 0 (direction -1), the same point a walk from
// the start would stop at. Beyond the points found last the search strides forward from them
// first, as the borders of the slices of a surface are asked from left to right. A routine that
// asks one increasing table many abscissas from left to right and has taken the slopes of its
// segments once asks them with interpolateRightward, which walks and gives the same values.
//
// Reads:  the arguments only (n, direction, x(1..n), y(1..n), xq)
// Writes: yq, the value at xq (1.0E10 when an error is reported); ierr
// IERR:   0 ok; 1 direction neither 1 nor -1; 2 abscissas not increasing; 3 abscissas not
//         decreasing; 4 more than 1000 points

#include "input/input.h"

namespace {
constexpr int kMaxPoints = 1000;
constexpr double kNoValue = 1.0e10f;
constexpr double kMinStep = 1.0e-10f;

// The error code of the table's abscissas: 0 when they run as the direction asks.
int tableCode(int n, int direction, const double* x) {
    if (n > kMaxPoints) return 4;
    if (n < 2) return 0;
    if (direction == 1) {
        if (x[n - 1] - x[0] < kMinStep) return 2;
        for (int k = 1; k < n; ++k)
            if (x[k] - x[k - 1] - kMinStep < 0.0) return 2;
        return 0;
    }
    if (direction == -1) {
        if (x[0] - x[n - 1] < kMinStep) return 3;
        for (int k = 1; k < n; ++k)
            if (x[k - 1] - x[k] - kMinStep < 0.0) return 3;
        return 0;
    }
    return 1;
}
}  // namespace

BrokenLine checkedBrokenLine(int n, int direction, const double* x, const double* y) {
    return BrokenLine{n, direction, x, y, tableCode(n, direction, x), 0};
}

void interpolate(const BrokenLine& line, double xq, double& yq, int& ierr) {
    ierr = line.code;
    yq = kNoValue;
    if (ierr != 0) return;
    const int n = line.n;
    const double* x = line.x;
    const double* y = line.y;
    if (n < 2) {
        yq = y[0];
        return;
    }
    // The ends of an increasing table are its first and last point; of a decreasing one the
    // same points with the comparisons turned.
    const bool increasing = line.direction == 1;
    if (increasing ? xq <= x[0] : xq >= x[0]) {
        yq = y[0];
        return;
    }
    if (increasing ? xq >= x[n - 1] : xq <= x[n - 1]) {
        yq = y[n - 1];
        return;
    }
    // The first point that reaches xq is wanted. Look-ups mostly walk along the line, so the
    // segment found last and the one after it are tried first; else x(low) is short of xq,
    // x(high) reaches it, and the interval is halved until they are neighbours.
    const auto reaches = [&](int j) { return increasing ? !(x[j] - xq < 0.0) : !(x[j] - xq > 0.0); };
    int k = 0;
    const int last = line.lastFound;
    if (last >= 1 && last < n && !reaches(last - 1) && reaches(last)) {
        k = last;
    } else if (last >= 1 && last + 1 < n && !reaches(last) && reaches(last + 1)) {
        k = last + 1;
    } else {
        int low = 0;
        int high = n - 1;
        if (last >= 1 && last < n && !reaches(last)) {
            // Beyond the point found last: strides of doubling length from there until one
            // reaches xq (or the last point does), and the halving within that stride.
            low = last;
            for (int stride = 2;; stride *= 2) {
                const int probe = low + stride;
                if (probe >= n - 1) break;
                if (reaches(probe)) {
                    high = probe;
                    break;
                }
                low = probe;
            }
        }
        while (high - low > 1) {
            const int mid = low + (high - low) / 2;
            if (reaches(mid))
                high = mid;
            else
                low = mid;
        }
        k = high;
    }
    line.lastFound = k;
    if (x[k] == xq) {
        yq = y[k];
        return;
    }
    yq = brokenLineValue(x, y, k, brokenLineSlope(x, y, k), xq);
}

void INTPOL(int n, int direction, const double* x, const double* y, double xq, double& yq, int& ierr) {
    interpolate(checkedBrokenLine(n, direction, x, y), xq, yq, ierr);
}
