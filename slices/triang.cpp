// slices/triang.cpp
//
// TRIANG — area of a triangle.
//
// The absolute area of the triangle (x[0], z[0]), (x[1], z[1]), (x[2], z[2]) by the shoelace
// formula; the order of the vertices does not matter.
//
// Reads:  its arguments only
// Writes: A
// IERR:   not used

#include <cmath>

#include "slices/slices.h"

void TRIANG(const double* x, const double* z, double& A) {
    A = 0.5 * std::fabs(x[1] * z[0] - x[0] * z[1] + x[2] * z[1] - x[1] * z[2] + x[0] * z[2] - x[2] * z[0]);
}
