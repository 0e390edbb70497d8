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

// Corner 5 of slice i, the centroid of its area (the load point); area is the slice's area.
void loadPoint(Arr2<double, 5, MAXSLC>& XX, Arr2<double, 5, MAXSLC>& ZZ, int i, double area);

// Replaces a steep exit end of the current slices by a plane at the passive angle; sets
// MASTER.IMODIF when it did. IERR 1 (or -I for slice I) on a failure, with its message.
void MODIFY();

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

// Line control: IOUT = 1 when no slice base of the current surface cuts the polyline of the
// line control points (the surface is then skipped), else 0.
void LCONTRL(int& IOUT);
// Crossing of segment AB with segment CD: the point (XI, ZI) where the lines cross, its
// fraction T along CD, and IRES 0 parallel (|cross product| < TOL), 1 crossing outside a
// segment, 2 the segments cross (end points included).
void LKORS(double XA, double ZA, double XB, double ZB, double XC, double ZC, double XD, double ZD, double TOL,
           double& XI, double& ZI, double& T, int& IRES);

// Undrained circle: solves the circular surface with centre SPAR(1), SPAR(2) directly by the
// balance of moments about its centre (phi = 0), with the circular segments under the chords.
void SUCRCL();

// Sets the interslice forces, their arms, the position of the base force and the roughness of
// slices 1..numSlices to zero (solutions that use no interslice forces).
inline void clearInterslice(int numSlices) {
    for (int i = 1; i <= numSlices; ++i) {
        SURF.E1(i) = 0.0;
        SURF.E2(i) = 0.0;
        SURF.T1(i) = 0.0;
        SURF.T2(i) = 0.0;
        SURF.R(i) = 0.0;
        SURF.H1(i) = 0.0;
        SURF.H2(i) = 0.0;
        SURF.H3(i) = 0.0;
    }
}

// Moment about the circle centre (xc, zc) of the horizontal and vertical loads FX, FZ acting at
// the load point of slice I and of their own moment M about that point, in the sense of the
// circle moments: a weight on the left of the centre of a slope that falls to the right gives
// a negative (driving) moment.
inline double momentAboutCentre(int I, double xc, double zc, double FX, double FZ, double M) {
    return -(xc - SURF.XX(5, I)) * FZ - (SURF.ZZ(5, I) - zc) * FX - M;
}

// Soil nail forces on the slices of the current surface (NPT points of XS, ZS) and the results
// of every nail. resetNailCrossingWarnings clears the run's count of nails reported for
// crossing a surface more than once (a run reports at most 24).
void NAILS(int NPT);
void resetNailCrossingWarnings();
