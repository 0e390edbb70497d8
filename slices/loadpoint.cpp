// slices/loadpoint.cpp
//
// The load point of a slice (corner 5): the centroid of its area, from the two triangles into
// which the diagonal from corner 2 to corner 4 splits it, (2, 1, 4) and (2, 3, 4). The slice
// has vertical sides, so each triangle's area is half its face height times the width.
//
// Reads:  corners 1-4 of slice i in XX, ZZ; area, the slice's area (nonzero)
// Writes: XX(5, i), ZZ(5, i)
// IERR:   none

#include "slices/slices.h"

void loadPoint(Arr2<double, 5, MAXSLC>& XX, Arr2<double, 5, MAXSLC>& ZZ, int i, double area) {
    const double width = XX(2, i) - XX(1, i);
    const double leftArea = 0.5 * (ZZ(4, i) - ZZ(1, i)) * width;
    const double rightArea = 0.5 * (ZZ(3, i) - ZZ(2, i)) * width;
    const double leftX = (XX(2, i) + XX(1, i) + XX(4, i)) / 3.0;
    const double leftZ = (ZZ(2, i) + ZZ(1, i) + ZZ(4, i)) / 3.0;
    const double rightX = (XX(2, i) + XX(3, i) + XX(4, i)) / 3.0;
    const double rightZ = (ZZ(2, i) + ZZ(3, i) + ZZ(4, i)) / 3.0;
    XX(5, i) = (leftX * leftArea + rightX * rightArea) / area;
    ZZ(5, i) = (leftZ * leftArea + rightZ * rightArea) / area;
}
