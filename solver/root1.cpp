// solver/root1.cpp
//
// ROOT1 — next safety factor from the residual curve through the trials made so far.
//
// The unbalanced end force Y of the slice system falls from the value YMAX it has without any
// strength (the safety factor X infinite) towards zero and below as X decreases. With YMAX > 0
// the curve through the trials is taken as a hyperbola with the horizontal asymptote Y = YMAX,
// Y = YMAX + A/(X - x0), laid through two trials; with YMAX < 0 a straight line through them.
// The two trials are the neighbours where Y changes sign, or, without a sign change, the two
// at the end of the table nearer the root. From 35 trials on the hyperbola gives way to the
// midpoint of the pair (bisection), which cannot stall.
//
// Arguments: N (in) number of trials; X(N), Y(N) (in/out) safety factors tried and their
//            residuals, sorted on return by X descending with Y carried along (N >= 2);
//            XMAX, XMIN (in) bounds of the safety factor; YMAX (in) asymptote of the residual;
//            ROOT (out) the next safety factor; IERR (out).
// Writes: on IERR 2 or 3 the table of trials to the log file and the log-copy channel.
// IERR:   0 ok; -1 no trials (N < 1); 1 XMAX not above XMIN; 2 the pair gives no line or
//         hyperbola (equal X, equal Y or a flat line); 3 the asymptote YMAX is not positive.

#include <cmath>

#include "io/fmt.h"
#include "slices/slices.h"
#include "solver/solver.h"

namespace {

constexpr double kTiny = 1.0E-20f;
constexpr double kShrink = 0.9f;
constexpr int kBisectFrom = 35;

void printTrials(int N, const double* X, const double* Y, double XMAX, double XMIN, double YMAX, double ROOT,
                 int IERR) {
    sayLog("  SR/ROOT1  N     X(N)       Y(N)");
    for (int n = 1; n <= N; ++n) sayLog(io::Line().I(n, 13).ES(X[n - 1], 14, 5).ES(Y[n - 1], 14, 5).str());
    sayLog(io::Line(" IERR,XMAX,XMIN,YMAX,ROOT=").Free(IERR).Free(XMAX).Free(XMIN).Free(YMAX).Free(ROOT).str());
}

}  // namespace

void ROOT1(int N, double* X, double* Y, double XMAX, double XMIN, double YMAX, double& ROOT, int& IERR) {
    ROOT = 0.0;
    IERR = N >= 1 ? 0 : -1;
    if (XMAX < XMIN + kTiny) IERR = 1;
    if (IERR != 0) return;

    // Arrays are used 1-based below, as the trials are numbered.
    auto x = [X](int n) -> double& { return X[n - 1]; };
    auto y = [Y](int n) -> double& { return Y[n - 1]; };

    int J1 = 0;
    int J2 = 1;
    bool throughOrigin = false;  // one trial: the hyperbola has its vertical asymptote at X = 0
    if (N == 1) {
        if (YMAX < 0.0) {
            ROOT = XMIN <= 0.0 ? kShrink * x(1) : (x(1) + XMIN) * 0.5;
            if (std::abs(y(1)) < kTiny) ROOT = XMAX;
            return;
        }
        throughOrigin = true;
    } else {
        SORT2(N, -1, X, Y);
        for (int k = 2; k <= N; ++k) {
            if (y(k) * y(k - 1) < 0.0) {
                J1 = k - 1;
                J2 = k;
                break;
            }
        }
        if (J1 == 0) {
            if (y(1) >= 0.0) {
                // Still positive at the smallest factor tried: go on from the two smallest.
                J1 = N - 1;
                J2 = N;
            } else {
                J1 = 2;
                J2 = 1;
                // Negative everywhere and no better at larger factors: step well beyond.
                if (N >= 5 && y(1) <= y(2)) {
                    ROOT = 1.5 * x(1);
                    if (ROOT > XMAX) ROOT = (x(1) + XMAX) * 0.5;
                    return;
                }
            }
        }
    }

    if (YMAX < 0.0) {
        const double deltaX = x(J2) - x(J1);
        if (std::abs(deltaX) <= kTiny) {
            IERR = 2;
        } else {
            const double slope = (y(J2) - y(J1)) / deltaX;
            if (std::abs(slope) <= kTiny) {
                IERR = 2;
            } else {
                ROOT = -(y(J2) - slope * x(J2)) / slope;
            }
        }
    } else {
        double x0 = 0.0;
        if (!throughOrigin) {
            const double deltaY = y(J1) - y(J2);
            if (std::abs(deltaY) <= kTiny) IERR = 2;
            if (IERR == 0) x0 = ((y(J1) - YMAX) * x(J1) - (y(J2) - YMAX) * x(J2)) / deltaY;
        }
        if (IERR == 0 && YMAX <= kTiny) IERR = 3;
        if (IERR == 0) {
            ROOT = x0 - (y(J2) - YMAX) * (x(J2) - x0) / YMAX;
            if (N >= kBisectFrom) ROOT = (x(J2) + x(J1)) * 0.5;
        }
    }

    if (IERR == 2 || IERR == 3) printTrials(N, X, Y, XMAX, XMIN, YMAX, ROOT, IERR);
}
