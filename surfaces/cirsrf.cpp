// surfaces/cirsrf.cpp
//
// CIRSRF — the polyline of a circular shear surface.
//
// With m = NPTS/2 (whole part) and the angle step (pi/2)/m, the points 2..NPTS-1 lie on the
// lower half of the circle, from just below the centre level on the left through the lowest
// point (XC, ZC + R), point m + 1, to just below the centre level on the right; the two
// horizontal end points of the half circle are left out. Points 1 and NPTS prolong the ends by
// 100 R to the left and to the right and 100 R up, at 45 degrees, so that the polyline
// certainly cuts the ground.
//
// Arguments: NPTS (in/out) the number of points, raised to 5 when smaller and held to the
//   length of the polyline arrays (300); XC, ZC, R the centre and radius; X(1..NPTS),
//   Z(1..NPTS) (out) the polyline; SPAR(1..3) (out) XC, ZC, R. Arrays are passed by their
//   first element.
// Reads:  MASTER.PI
// Writes: the output arguments only
// IERR:   not used

#include <algorithm>
#include <cmath>

#include "records.h"
#include "surfaces/surfaces.h"

namespace {
constexpr int kFewestPoints = 5;
constexpr double kProlong = 100.0;

// The sines of the angles k * angleStep (k = 1..m - 1) of the last quarter circle divided into
// m parts: a search divides every circle alike, so they are worked out once for the search.
struct QuarterSines {
    int parts = 0;
    double pi = 0.0;
    double sine[MAXPTS / 2] = {};

    const double* of(int m) {
        if (m != parts || MASTER.PI != pi) {
            const double angleStep = MASTER.PI / 2.0 / m;
            for (int k = 1; k <= m - 1; ++k) sine[k] = std::sin(k * angleStep);
            parts = m;
            pi = MASTER.PI;
        }
        return sine;
    }
};
QuarterSines gQuarterSines;
}  // namespace

void CIRSRF(int& NPTS, double XC, double ZC, double R, double* X, double* Z, double* SPAR) {
    NPTS = std::clamp(NPTS, kFewestPoints, MAXPTS);
    const int m = NPTS / 2;
    const double* sine = gQuarterSines.of(m);
    // Zero-based: point k of the text is X[k - 1].
    for (int k = 1; k <= m - 1; ++k) {
        const double dz = R * sine[k];
        const double dx = std::sqrt(std::max(R * R - dz * dz, 0.0));
        X[k] = XC - dx;
        Z[k] = ZC + dz;
        X[NPTS - k - 1] = XC + dx;
        Z[NPTS - k - 1] = ZC + dz;
    }
    X[m] = XC;
    Z[m] = ZC + R;
    X[0] = X[1] - kProlong * R;
    Z[0] = Z[1] - kProlong * R;
    X[NPTS - 1] = X[NPTS - 2] + kProlong * R;
    Z[NPTS - 1] = Z[NPTS - 2] - kProlong * R;
    SPAR[0] = XC;
    SPAR[1] = ZC;
    SPAR[2] = R;
}
