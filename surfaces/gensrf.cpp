// surfaces/gensrf.cpp
//
// GENSRF — the current shear-surface polyline from a stored general surface.
//
// Every point is moved by the two shifts, stretched horizontally about the first point by
// XMULT, and its vertical distance from the chord (the straight line from the first to the
// last stored point) is scaled by ZMULT, so that the end points stay on the chord while the
// surface deepens or flattens. The chord height is taken at the unstretched x. One far-away
// point is then added at each end, 1000 end-segment lengths out along the x-direction of the
// end segment and 1000 times the end segment's height difference up (towards smaller z,
// whatever way the segment runs), so that the polyline certainly reaches out of the section.
//
// Arguments: N points of the stored surface XG(1..N), ZG(1..N); the shifts and multipliers;
//   X(1..N+2), Z(1..N+2) (out) the polyline; XZEND (out) x and z of the first and of the last
//   transformed stored point (X(2), Z(2), X(N+1), Z(N+1)).
// Reads:  nothing else
// Writes: the output arguments only
// IERR:   not used. The stored surface needs two points with different x at its ends (the
//         input reader sees to that); with fewer than two points nothing is written.

#include "surfaces/surfaces.h"

#include <cmath>

namespace {
constexpr double kProlong = 1000.0;
}

void GENSRF(int N, const double* XG, const double* ZG, double XSHIFT, double ZSHIFT, double XMULT, double ZMULT,
            double* X, double* Z, double* XZEND) {
    if (N < 2) return;  // no chord and no end segment to prolong

    // x = XG(1) + XSHIFT + XMULT d and z = zc + ZSHIFT + ZMULT (ZG - zc), written as the
    // stored point plus what the modification adds, so that a surface taken as it is (no
    // shifts, multipliers 1) keeps its stored points to the last bit.
    const double chordSlope = (ZG[N - 1] - ZG[0]) / (XG[N - 1] - XG[0]);
    for (int i = 0; i < N; ++i) {
        const double fromFirst = XG[i] - XG[0];
        const double chordZ = ZG[0] + chordSlope * fromFirst;
        X[i + 1] = XG[i] + XSHIFT + (XMULT - 1.0) * fromFirst;
        Z[i + 1] = ZG[i] + ZSHIFT + (ZMULT - 1.0) * (ZG[i] - chordZ);
    }

    // Zero-based: X[1] and X[m-2] are the first and last transformed points, m = N + 2.
    const int last = N + 1;
    X[0] = X[1] - kProlong * (X[2] - X[1]);
    Z[0] = Z[1] - kProlong * std::fabs(Z[2] - Z[1]);
    X[last] = X[last - 1] + kProlong * (X[last - 1] - X[last - 2]);
    Z[last] = Z[last - 1] - kProlong * std::fabs(Z[last - 2] - Z[last - 1]);

    XZEND[0] = X[1];
    XZEND[1] = Z[1];
    XZEND[2] = X[last - 1];
    XZEND[3] = Z[last - 1];
}
