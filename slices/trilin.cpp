// slices/trilin.cpp
//
// TRILIN — area of the part of a slice that lies between two horizontal lines.
//
// The slice is the quadrilateral of its corners 1..4 (x[0..3], z[0..3]): top chord from
// corner 1 to corner 2, base chord from corner 4 to corner 3, vertical sides x[0] = x[3] and
// x[1] = x[2]; z grows downward. The lines are the levels zUpper <= zLower. The part of the
// slice above a level c is the area between c and the top chord less the area between c and
// the base chord, each counted only where the chord lies above c; the area between the two
// levels is the difference of these parts. Each such area under a chord is a triangle or a
// trapezoid (two triangles), measured with TRIANG.
//
// Reads:  its arguments only
// Writes: A (0 when the levels do not reach into the slice)
// IERR:   not used

#include <algorithm>

#include "slices/slices.h"

namespace {

// Area between the level c and the chord from (xa, za) to (xb, zb), where the chord lies
// above c (za, zb < c); zero where it does not.
double areaAboveLevel(double xa, double za, double xb, double zb, double c) {
    double A = 0.0;
    if (za >= c && zb >= c) return 0.0;
    if (za < c && zb < c) {
        double x1[3] = {xa, xb, xa};
        double z1[3] = {za, zb, c};
        double x2[3] = {xb, xb, xa};
        double z2[3] = {zb, c, c};
        double first = 0.0;
        double second = 0.0;
        TRIANG(x1, z1, first);
        TRIANG(x2, z2, second);
        return first + second;
    }
    // The chord crosses the level once: a triangle on the side where it lies above.
    double crossing = xa + (xb - xa) * (c - za) / (zb - za);
    if (za < c) {
        double x[3] = {xa, xa, crossing};
        double z[3] = {za, c, c};
        TRIANG(x, z, A);
    } else {
        double x[3] = {xb, xb, crossing};
        double z[3] = {zb, c, c};
        TRIANG(x, z, A);
    }
    return A;
}

// Area of the slice above the level c.
double sliceAreaAbove(const double* x, const double* z, double c) {
    // Beyond the slice's own depth range the answer no longer changes; keeping c inside it
    // avoids differences of large numbers for the open first and last layers.
    double top = std::min(z[0], z[1]);
    double bottom = std::max(z[2], z[3]);
    c = std::clamp(c, top, std::max(top, bottom));
    return areaAboveLevel(x[0], z[0], x[1], z[1], c) - areaAboveLevel(x[3], z[3], x[2], z[2], c);
}

}  // namespace

void TRILIN(const double* x, const double* z, double zUpper, double zLower, double& A) {
    A = 0.0;
    if (zLower <= zUpper) return;
    A = sliceAreaAbove(x, z, zLower) - sliceAreaAbove(x, z, zUpper);
    if (A < 0.0) A = 0.0;
}
