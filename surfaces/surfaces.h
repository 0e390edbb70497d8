// surfaces/surfaces.h
//
// Shear surfaces: the five surface types offered at the central decision point. Each routine
// asks for its surfaces, hands every trial surface to the solver and returns to the menu.

#pragma once

#include <string>
#include <string_view>

#include "records.h"

void GENRAL();    // type 1: general surfaces of the input file
void CIRCLE();    // type 2: circles
void COMBND();    // type 3: combined circle-and-plane surfaces
void PLANE();     // type 4: earth-pressure planes
void GENRALZI();  // type 5: general surface autosearch

// The polyline X(1..N+2), Z(1..N+2) of a stored general surface XG(1..N), ZG(1..N), shifted
// and stretched, with a far-away point added at each end; XZEND(1..4) the first and the last
// transformed stored point (x, z, x, z). Arrays are passed by their first element.
void GENSRF(int N, const double* XG, const double* ZG, double XSHIFT, double ZSHIFT, double XMULT, double ZMULT,
            double* X, double* Z, double* XZEND);

// Sets the shifts and multipliers that GENRAL offers back to their start values 0, 0, 1, 1
// (as at program start; tests begin a fresh run with it).
void resetGenralModifications();


// The base line of the current slices (NUMSLC of them) as general surface 2: the entry point,
// the left end of every later slice base and the exit point; NPGEN(2) = NPGEN(3) = the count.
void MOVEC2G();

// Forgets the critical plane of the earth-pressure plane sweeps (as at program start; tests
// begin a fresh run with it).
void resetPlaneCritical();

// The combined surface of a slope (type 1): entry plane from (XS1, ZS1) tangent to the circle
// about (XC, ZC) of radius R, the arc, and the exit plane rising at BETA (radians; returned: the
// entry plane's inclination). NPTS: in the arc points, out all points. IERR 0, 101, 102 or 3.
void COMSRF(double XS1, double ZS1, double XC, double ZC, double& R, double& BETA, Arr1<double, MAXPTS>& X,
            Arr1<double, MAXPTS>& Z, Arr1<double, 10>& SPAR, int& NPTS, int NFOUT, int& IERR);
// The combined surface under a foundation base from XLEFT to XRGHT at ZBOTM, about a centre
// (XC, ZC) below the base; KBEAM 1 (type 2) or 2 (type 3, the beam shape). IERR 0..3.
void COMLOW(double XLEFT, double XRGHT, double ZBOTM, double XC, double ZC, double PHIDG, int KBEAM, int& NPTS,
            Arr1<double, MAXPTS>& X, Arr1<double, MAXPTS>& Z, Arr1<double, 10>& SPAR, int& IERR);
// Forgets the combined-surface input of the run (all values 0, as at program start; tests
// begin a fresh run with it).
void resetCombndValues();

// The polyline X(1..NPTS), Z(1..NPTS) of the circle with centre XC, ZC and radius R: its lower
// half without the two horizontal end points, prolonged at 45 degrees upward by 100 R at both
// ends; SPAR(1..3) = XC, ZC, R. NPTS is raised to 5 when smaller and held to 300.
void CIRSRF(int& NPTS, double XC, double ZC, double R, double* X, double* Z, double* SPAR);

// Sets the values CIRCLE keeps for the whole run (search code, fixed point and level, steps,
// grid, critical circle) back to their start, as at program start (tests begin a fresh run
// with it).
void resetCircleRunState();

// The result line of a trial surface, " ++++ SAFETY FACTOR =" with the score, R-factor and
// the surface number after its label (the autosearch's sideways moves are "   XSURFACE =");
// in an earth-pressure problem " +++++ E2-FRC,T2-FRC,H2,SCORE=" with the
// forces on the right face of slice last (1..99) and the score.
std::string safetyFactorLine(std::string_view surfaceLabel = "   SURFACE =");
std::string wallForceLine(int last);
