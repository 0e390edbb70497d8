// slices/slices.h
//
// Slice model: slice geometry, slice loads, pore pressures along the surface, external loads,
// and the two small utilities of the geometry (two-array sort, line intersections).

#pragma once

#include "records.h"

void SORT2(int n, int idir, double* a, double* b);
void INTBL1(int n, const double* x, const double* y, double x1, double y1, double x2, double y2, int& num, double* xi,
            double* yi, int& ierr);

// Cuts the shear surface (xs, zs; npt points) into vertical slices under the soil surface
// (xsoil, zsoil with the rock levels zrock; nsp points). numslc: in the requested count,
// out the count made. dc: the start depth below the soil surface, stored back when it was
// zero. ntyp comes back negated when points were lifted out of rock. Messages go to the
// console output and log-copy channels, the geometry profile to the log file.
void GEOMET(int nsp, int npt, int& numslc, int nslreq, int idtyp, const Arr1<double, MAXCOL>& xsoil,
            const Arr1<double, MAXCOL>& zsoil, const Arr1<double, MAXCOL>& zrock, Arr1<double, MAXPTS>& xs,
            Arr1<double, MAXPTS>& zs, double& dc, double xwall, double zwall, Arr2<double, 5, MAXSLC>& XX,
            Arr2<double, 5, MAXSLC>& ZZ, Arr1<double, MAXSLC>& AREA, int& ntyp, int nlayer,
            const Arr1<double, MAXLAY>& zlayer, int& ierr, int icsrch);

// The best surface of the run: SAVBST keeps the current surface as the best one, RSTBST brings
// the best one back as the current surface (IERR 1 when the record sizes are out of range).
void SAVBST();
void RSTBST();
// The best surface's result, slices and nails only (no counts, no failure modes).
void RSTSRF();

// Slice loads, strengths and initial values of the current surface; IREJ = 1 rejects it.
void BUILD(int& IREJ);
// Pore water forces on the base and the right face of slice I, with their positions.
void PWP(int I);
// Centre loads WX, WZ, WM of slice I, its undrained area and the load-centroid H30.
void LOADER(int I);

// Geometry and load helpers of LOADER. Slice corners are passed as the slice's column of
// SURF.XX / SURF.ZZ: x[0..4] and z[0..4] are corners 1..5.
void TRIANG(const double* x, const double* z, double& A);
void TRILIN(const double* x, const double* z, double zUpper, double zLower, double& A);
void STRIP(const double* xs, const double* zs, double XA, double XB, double QA, double QB, double DA, double DB,
           double& FX, double& FZ, double& M, double& M3);
void WATER(const double* xs, const double* zs, double ZW, double GAMW, double& FX, double& FZ, double& M);

// Run-long state of the load builder: the remembered answer of the negative-weight question
// (BUILD) and the count of reported non-horizontal water tables (LOADER). A run starts with
// both cleared; these put them back to that start (called by startRun).
void resetBuildWarningAnswer();
void resetLoaderWaterWarnings();
