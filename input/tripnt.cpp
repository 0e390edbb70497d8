// input/tripnt.cpp
//
// TRIPNT — whether a point lies in a material triangle.
//
// The vertices come sorted by ascending x. At the point's x the triangle spans the levels
// between the long edge 1-3 and the broken edge 1-2-3 (edge 1-2 left of vertex 2, edge 2-3 from
// it on). Every comparison is widened by the tolerance 1.0E-6, so a point on an edge or a vertex
// is inside; a near-vertical edge uses the tolerance as its x extent.
//
// Reads:  the arguments only: xv(1..3) ascending, zv(1..3), the point (x, z)
// Writes: inside, 1 inside and 0 outside
// IERR:   none

#include "input/input.h"

namespace {
constexpr double kTol = 1.0e-6f;

// Level at x of the edge from (xa, za) to (xb, zb), xb >= xa.
double edgeLevel(double xa, double za, double xb, double zb, double x) {
    double width = xb - xa;
    if (width < kTol) width = kTol;
    return za + (zb - za) / width * (x - xa);
}
}  // namespace

void TRIPNT(const double* xv, const double* zv, double x, double z, int& inside) {
    inside = 0;
    if (x < xv[0] - kTol || x > xv[2] + kTol || xv[2] - xv[0] < kTol) return;

    const double levelLong = edgeLevel(xv[0], zv[0], xv[2], zv[2], x);
    const double levelBroken = x < xv[1] ? edgeLevel(xv[0], zv[0], xv[1], zv[1], x)
                                         : edgeLevel(xv[1], zv[1], xv[2], zv[2], x);
    const double upper = levelLong < levelBroken ? levelLong : levelBroken;
    const double lower = levelLong < levelBroken ? levelBroken : levelLong;
    if (z >= upper - kTol && z <= lower + kTol) inside = 1;
}
