// solver/slicebalance.h
//
// SliceCoefficients, balanceSlices — the force balance of the slices at a trial safety factor,
// shared by the force-equilibrium sweep (FRCEQR) and the 2003 method (SLV123).
//
// Slice i takes the forces E1, T1 its left neighbour hands over. Its horizontal and vertical
// balance, with the mobilised base shear (c3 L34 + SS + P tan3) / F and the interslice shear
// T2 = R (E2 tan2 + c2 h) / F on its right face of height h, gives the base normal force P and
// the forces E2, T2 it hands on. The divisor of P does not depend on what the neighbour hands
// over; each caller judges it by its own rule (a slice whose divisor vanishes cannot carry its
// load). In a combined analysis a base that fails undrained carries su3 instead of c3 and no
// friction.
//
// Reads:  through SliceCoefficients::take the SURF columns SINB, COSB, L34, C3, TAN3, SU3, C2,
//         TAN2, SS, WX, WZ, SNX, SNZ, ZZ and ISUR.MODE, MASTER.IDEFTO
// IERR:   none

#pragma once

#include "records.h"

// A base that fails undrained in a combined analysis.
inline bool undrainedSliceBase(int i) { return MASTER.IDEFTO == 3 && ISUR.MODE(i) == 2; }

// What the balance of every slice takes from its loads and strengths, unchanged by the trial
// factor and the roughness, in plain per-slice arrays (slice i at index i - 1). A series of
// sweeps takes them from SURF once (take), and again when failure modes have changed.
struct SliceCoefficients {
    double sinb[MAXSLC];
    double cosb[MAXSLC];
    double baseResistance[MAXSLC];  // L34 c3 (L34 su3 on an undrained base) + SS
    double baseTan[MAXSLC];         // tan3 (0 on an undrained base)
    double faceHeight[MAXSLC];      // height of face 2, ZZ(3) - ZZ(2)
    double tan2[MAXSLC];
    double c2[MAXSLC];
    double tan3[MAXSLC];
    double drainedCohesion[MAXSLC];    // L34 c3
    double undrainedCohesion[MAXSLC];  // L34 su3
    double wx[MAXSLC];
    double wz[MAXSLC];
    double snx[MAXSLC];
    double snz[MAXSLC];
    bool undrained[MAXSLC];
    // Products of the above that every trial factor multiplies alike.
    double cosbTan[MAXSLC];           // cosb baseTan
    double sinbTan[MAXSLC];           // sinb baseTan
    double resistanceCos[MAXSLC];     // baseResistance cosb
    double resistanceSin[MAXSLC];     // baseResistance sinb
    double faceCohesionFull[MAXSLC];  // c2 h

    // Slices 1..n (n within 1..99).
    void take(int n) {
        for (int i = 1; i <= n; ++i) {
            const int k = i - 1;
            undrained[k] = undrainedSliceBase(i);
            baseResistance[k] = SURF.L34(i) * (undrained[k] ? SURF.SU3(i) : SURF.C3(i)) + SURF.SS(i);
            baseTan[k] = undrained[k] ? 0.0 : SURF.TAN3(i);
            faceHeight[k] = SURF.ZZ(3, i) - SURF.ZZ(2, i);
            sinb[k] = SURF.SINB(i);
            cosb[k] = SURF.COSB(i);
            tan2[k] = SURF.TAN2(i);
            c2[k] = SURF.C2(i);
            tan3[k] = SURF.TAN3(i);
            drainedCohesion[k] = SURF.L34(i) * SURF.C3(i);
            undrainedCohesion[k] = SURF.L34(i) * SURF.SU3(i);
            wx[k] = SURF.WX(i);
            wz[k] = SURF.WZ(i);
            snx[k] = SURF.SNX(i);
            snz[k] = SURF.SNZ(i);
            cosbTan[k] = cosb[k] * baseTan[k];
            sinbTan[k] = sinb[k] * baseTan[k];
            resistanceCos[k] = baseResistance[k] * cosb[k];
            resistanceSin[k] = baseResistance[k] * sinb[k];
            faceCohesionFull[k] = c2[k] * faceHeight[k];
        }
    }
};

// Which divisor of the base normal force leaves a slice unable to carry its load: one below
// EPS, or one not above EPS.
enum class DivisorRule { BelowEps, AtMostEps };

// Balances the slices from the entry on at the safety factor F. The face-2 roughness of slice i
// becomes SURF.R(i) = roughnessFrom[i - 1] * roughnessFactor as it is reached (roughnessFrom
// may be SURF.R itself). The divisor of the base normal force vanishes where the slice cannot
// carry its load: at the first slice whose divisor fails the rule the sweep stops, the slices
// before it balanced. Returns 0 when every slice was balanced, else that slice (its divisor in
// divisor).
// Reads:  SURF E1(1), T1(1); MASTER.NUMSLC (within 1..MAXSLC), EPS
// Writes: SURF R of the slices reached; P, S1, S2, S, E2, T2 of the slices balanced, and E1,
//         T1 of the slice after each (within NUMSLC)
int balanceSlices(const SliceCoefficients& c, double F, const double* roughnessFrom, double roughnessFactor,
                  DivisorRule rule, double& divisor);
