// A small structured mesh for the tests of the point queries, filled straight into the records
// in the layout the mesh builder makes: node (c, j) = (c - 1)(NZ + 1) + j with j = 1 at the
// rock, element (c, j) = (c - 1) NZ + j with corners upper left, upper right, lower right,
// lower left; the x-line table holds one entry per node column.

#pragma once

#include "records.h"

namespace kalmo_test {

// nx element columns of equal width from x0 to x1, nz elements per column; the ground surface
// runs straight from groundLeft (at x0) to groundRight (at x1), the rock lies flat at rock.
// Every element gets material 1.
inline void fillMesh(double x0, double x1, int nx, int nz, double groundLeft, double groundRight, double rock) {
    IGEOMS.NX = nx;
    IGEOMS.NZ = nz;
    IGEOMS.NELEM = nx * nz;
    IGEOMS.NNODE = (nx + 1) * (nz + 1);
    const double width = (x1 - x0) / nx;
    for (int c = 1; c <= nx + 1; ++c) {
        const double x = x0 + (c - 1) * width;
        const double ground = groundLeft + (groundRight - groundLeft) * (x - x0) / (x1 - x0);
        for (int j = 1; j <= nz + 1; ++j) {
            const int node = (c - 1) * (nz + 1) + j;
            GEOMSH.XNOD(node) = x;
            GEOMSH.ZNOD(node) = rock - (j - 1) * (rock - ground) / nz;
        }
        GEOMSH.XSURF(c) = x;
        GEOMSH.ZSURF(c) = ground;
        GEOMSH.ZROCK(c) = rock;
    }
    for (int c = 1; c <= nx; ++c) {
        for (int j = 1; j <= nz; ++j) {
            const int element = (c - 1) * nz + j;
            const int lowerLeft = (c - 1) * (nz + 1) + j;
            IGEOMS.IELNOD(1, element) = lowerLeft + 1;
            IGEOMS.IELNOD(2, element) = lowerLeft + nz + 2;
            IGEOMS.IELNOD(3, element) = lowerLeft + nz + 1;
            IGEOMS.IELNOD(4, element) = lowerLeft;
            IGEOMS.IELMAT(element) = 1;
        }
    }
}

}  // namespace kalmo_test
