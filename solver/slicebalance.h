// solver/slicebalance.h
//
// SliceCoefficients, sliceDivisor, balanceSlices — the force balance of the slices at a trial
// safety factor, shared by the force-equilibrium sweep (FRCEQR) and the 2003 method (SLV123).
//
// Slice i takes the forces E1, T1 its left neighbour hands over. Its horizontal and vertical
// balance, with the mobilised base shear (c3 L34 + SS + P tan3) / F and the interslice shear
// T2 = R (E2 tan2 + c2 h) / F on its right face of height h, gives the base normal force P and
// the forces E2, T2 it hands on. The divisor of P (sliceDivisor) does not depend on what the
// neighbour hands over: the caller judges it for every slice by its own rule (a slice whose
// divisor vanishes cannot carry its load) before balanceSlices solves the forces. In a
// combined analysis a base that fails undrained carries su3 instead of c3 and no friction.
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
        }
    }
};

// The divisor of the base normal force of slice i at the reciprocal safety factor
// reciprocalSF = 1/F and face-2 roughness R: the vertical balance of the base forces per unit
// normal force, with the interslice shear that the horizontal balance brings along. It
// vanishes where the slice cannot carry its load.
inline double sliceDivisor(const SliceCoefficients& c, int i, double reciprocalSF, double R) {
    const int k = i - 1;
    const double horizontalPerP = c.sinb[k] - c.cosb[k] * c.baseTan[k] * reciprocalSF;
    return c.tan2[k] * R * reciprocalSF * horizontalPerP + c.sinb[k] * c.baseTan[k] * reciprocalSF + c.cosb[k];
}

// The forces of slices 1..last (last within 0..NUMSLC) at the safety factor F, every slice with
// its roughness SURF.R(i) and a divisor the caller has accepted.
// Reads:  SURF E1(1), T1(1), R; MASTER.NUMSLC
// Writes: SURF P, S1, S2, S, E2, T2 of slices 1..last, and E1, T1 of slices 2..last + 1
//         (within NUMSLC)
void balanceSlices(const SliceCoefficients& c, int last, double F);
