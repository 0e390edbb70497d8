// slices/slices.h
//
// Slice model: slice geometry, slice loads, pore pressures along the surface, external loads,
// and the two small utilities of the geometry (two-array sort, line intersections).

#pragma once

void SORT2(int n, int idir, double* a, double* b);
void INTBL1(int n, const double* x, const double* y, double x1, double y1, double x2, double y2, int& num, double* xi,
            double* yi, int& ierr);
