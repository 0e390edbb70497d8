// solver/root3.cpp
//
// ROOT3 — next assumed safety factor from the trials of a moment iteration.
//
// The points are X = assumed factor, Y = assumed minus computed factor; the root of Y is
// wanted inside [XMIN, XMAX]. With no point the middle of the range is taken, with one point
// a step half-way towards the far end of the range, with two points their secant. With three
// or more the points are sorted by X, largest first: a sign change of Y is bracketed by a
// secant; a table whose slope turns (a minimum of |Y| without a root) is bisected around the
// turn, alternating from call to call between the pair at the turn and the pair before it, so
// that two calls in a row do not probe the same place; a monotonic table is extrapolated.
//
// Reads:  N, X(N), Y(N), XMIN, XMAX; TRACE (non-zero: the points go to the log file)
// Writes: ROOT; X and Y sorted by X descending when N >= 3; the alternation flag (kept for
//         the whole run)
// IERR:   0 ok; 1 range narrower than 1.0E-6; 2 two X closer than 1.0E-6, or the pair at a
//         turning slope closer than 0.0001 (ROOT = -1 in both cases)

#include <cmath>

#include "io/channels.h"
#include "io/fmt.h"
#include "slices/slices.h"
#include "solver/solver.h"

namespace {

constexpr double kEps = 1.0E-6f;
constexpr double kMinPairWidth = 0.0001f;

// Alternation between the pair at a turning slope and the pair one position earlier.
bool gUseEarlierPair = false;

double signOf(double value) { return value >= 0.0 ? 1.0 : -1.0; }

// Root of the secant through (xa, ya) and (xb, yb); the denominator is kept at least eps.
double secantRoot(double xa, double ya, double xb, double yb) {
    double denominator = ya - yb;
    if (std::fabs(denominator) < kEps) denominator = denominator < 0.0 ? -kEps : kEps;
    return xa - (xa - xb) * ya / denominator;
}

void tracePoints(int N, const double* X, const double* Y, double XMIN, double XMAX) {
    const int log = MASTER.NF18;
    io::writeLine(log, io::Line(" SR/ROOT3 TRACE PRINT   XMAX,XMIN==").Free(XMAX).Free(XMIN).str());
    io::writeLine(log, "    N   X=SF.asm  Y=SF.asm-SF.cmp");
    for (int n = 1; n <= N; ++n) io::writeLine(log, io::Line().I(n, 5).F(X[n - 1], 11, 5).ES(Y[n - 1], 14, 5).str());
}

// Root from three or more points, sorted by X descending.
void rootOfTable(int N, double* X, double* Y, double XMIN, double XMAX, double& ROOT, int& IERR) {
    auto x = [&](int k) { return X[k - 1]; };
    auto y = [&](int k) { return Y[k - 1]; };
    SORT2(N, -1, X, Y);
    for (int k = 2; k <= N; ++k) {
        if (std::fabs(x(k - 1) - x(k)) < kEps) {
            IERR = 2;
            ROOT = -1.0;
            return;
        }
    }

    for (int k = 2; k <= N; ++k) {
        if (y(k - 1) * y(k) < 0.0) {
            if (std::fabs(y(k - 1) - y(k)) < kEps) ROOT = (x(k - 1) + x(k)) * 0.5;
            else ROOT = secantRoot(x(k - 1), y(k - 1), x(k), y(k));
            return;
        }
    }

    // No root bracketed. Where the slope turns against the slope of the two largest X, |Y|
    // has its least value between the points there: bisect.
    const double firstSlope = (y(2) - y(1)) / (x(2) - x(1));
    for (int k = 3; k <= N; ++k) {
        const double slope = (y(k) - y(k - 1)) / (x(k) - x(k - 1));
        if (slope * firstSlope < kEps) {
            const int upper = gUseEarlierPair ? k - 2 : k - 1;
            gUseEarlierPair = !gUseEarlierPair;
            const double xa = x(upper), xb = x(upper + 1);
            if (std::fabs(xa - xb) >= kMinPairWidth) {
                ROOT = (xa + xb) * 0.5;
            } else {
                IERR = 2;
                ROOT = -1.0;
            }
            return;
        }
    }

    // Monotonic: extrapolate from the end of the table that points towards the root.
    const bool fromLargest = signOf(y(1)) * signOf(y(2)) <= 0.0;
    const int first = fromLargest ? 1 : N - 1;
    const int second = first + 1;
    ROOT = secantRoot(x(first), y(first), x(second), y(second));
    if (ROOT < XMIN) ROOT = (XMIN + x(N)) * 0.5;
    else if (ROOT > XMAX) ROOT = (XMAX + x(second)) * 0.5;
}

}  // namespace

void resetRoot3Alternation() { gUseEarlierPair = false; }

void ROOT3(int N, int TRACE, double* X, double* Y, double XMIN, double XMAX, double& ROOT, int& IERR) {
    IERR = 0;
    const double mid = (XMIN + XMAX) * 0.5;
    ROOT = mid;
    if (XMAX - XMIN < kEps) {
        IERR = 1;
    } else if (N == 1) {
        if (mid < X[0]) ROOT = (X[0] + XMIN) * 0.5;
        else if (mid > X[0]) ROOT = (X[0] + XMAX) * 0.5;
    } else if (N == 2) {
        ROOT = secantRoot(X[0], Y[0], X[1], Y[1]);
        if (ROOT < XMIN) ROOT = (XMIN + X[1]) * 0.5;
        else if (ROOT > XMAX) ROOT = (XMAX + X[1]) * 0.5;
    } else if (N >= 3) {
        rootOfTable(N, X, Y, XMIN, XMAX, ROOT, IERR);
    }
    if (TRACE != 0) tracePoints(N < 0 ? 0 : N, X, Y, XMIN, XMAX);
}
