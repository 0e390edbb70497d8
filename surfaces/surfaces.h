// surfaces/surfaces.h
//
// Shear surfaces: the five surface types offered at the central decision point. Each routine
// asks for its surfaces, hands every trial surface to the solver and returns to the menu.

#pragma once

#include <string>
#include <string_view>

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

// The listed result of the surface just analysed: " ++++ SAFETY FACTOR =" SF, SCORE, R-FACTOR
// and the surface number after the given label ("   SURFACE =").
std::string SFLINE(std::string_view surfaceLabel);

// The base line of the current slices (NUMSLC of them) as general surface 2: the entry point,
// the left end of every later slice base and the exit point; NPGEN(2) = NPGEN(3) = the count.
void MOVEC2G();

// Forgets the critical plane of the earth-pressure plane sweeps (as at program start; tests
// begin a fresh run with it).
void resetPlaneCritical();
