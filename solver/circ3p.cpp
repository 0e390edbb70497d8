// solver/circ3p.cpp
//
// CIRC3P — the circle through three points (the centre of rotation of a non-circular surface).
//
// The centre is the crossing of the perpendicular bisectors of two chords, found relative to
// point 1. Coinciding points and points on one straight line have no circle; a centre whose
// distances to the three points disagree is refused as well, since it came out of a nearly
// singular system.
//
// Reads:  X(1..3), Z(1..3): the three points
// Writes: XC, ZC: the centre; RAD: the mean of its three distances to the points
// IERR:   0 ok; 1, 2, 3 points 1-2, 1-3, 2-3 coincide (squared distance below 1.0E-12);
//         4 the points lie on a straight line (|determinant| below 1.0E-12); 5 the three
//         distances from the centre differ relatively by more than 0.0001

#include <cmath>

#include "solver/solver.h"

namespace {
constexpr double kCoincide = 1.0E-12f;
constexpr double kCollinear = 1.0E-12f;
constexpr double kRadiusAgreement = 0.0001f;

double squaredDistance(double xa, double za, double xb, double zb) {
    return (xb - xa) * (xb - xa) + (zb - za) * (zb - za);
}
}  // namespace

void CIRC3P(const double* X, const double* Z, double& XC, double& ZC, double& RAD, int& IERR) {
    IERR = 0;
    XC = 0.0;
    ZC = 0.0;
    RAD = 0.0;
    if (squaredDistance(X[0], Z[0], X[1], Z[1]) < kCoincide) IERR = 1;
    else if (squaredDistance(X[0], Z[0], X[2], Z[2]) < kCoincide) IERR = 2;
    else if (squaredDistance(X[1], Z[1], X[2], Z[2]) < kCoincide) IERR = 3;
    if (IERR != 0) return;

    // Chords from point 1 to points 2 and 3.
    const double ax = X[1] - X[0], az = Z[1] - Z[0];
    const double bx = X[2] - X[0], bz = Z[2] - Z[0];
    const double determinant = ax * bz - az * bx;
    if (std::fabs(determinant) < kCollinear) {
        IERR = 4;
        return;
    }
    const double aa = ax * ax + az * az;
    const double bb = bx * bx + bz * bz;
    XC = X[0] + (bz * aa - az * bb) / (2.0 * determinant);
    ZC = Z[0] + (ax * bb - bx * aa) / (2.0 * determinant);

    const double d1 = std::sqrt(squaredDistance(XC, ZC, X[0], Z[0]));
    const double d2 = std::sqrt(squaredDistance(XC, ZC, X[1], Z[1]));
    const double d3 = std::sqrt(squaredDistance(XC, ZC, X[2], Z[2]));
    RAD = (d1 + d2 + d3) / 3.0;
    const double spread = std::fmax(d1, std::fmax(d2, d3)) - std::fmin(d1, std::fmin(d2, d3));
    // Written so that a centre lost to overflow (not a number) is refused too.
    if (!(spread <= kRadiusAgreement * RAD)) IERR = 5;
}
