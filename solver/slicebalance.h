// solver/slicebalance.h
//
// sliceBalance, applySliceBalance — the force balance of one slice at a trial safety factor,
// shared by the force-equilibrium sweep (FRCEQR) and the 2003 method (SLV123).
//
// Slice i takes the forces E1, T1 its left neighbour hands over. Its horizontal and vertical
// balance, with the mobilised base shear (c3 L34 + SS + P tan3) / F and the interslice shear
// T2 = R (E2 tan2 + c2 h) / F on its right face of height h, gives the base normal force P and
// the forces E2, T2 it hands on. sliceBalance forms the terms of that balance; the caller
// judges the divisor of P by its own rule (a slice whose divisor vanishes cannot carry its
// load) and applySliceBalance then writes the forces. In a combined analysis a base that
// fails undrained carries su3 instead of c3 and no friction.
//
// Reads:  SURF columns SINB, COSB, L34, C3, TAN3, SU3, C2, TAN2, SS, WX, WZ, SNX, SNZ, ZZ, E1,
//         T1 of slice i; ISUR.MODE(i); MASTER.IDEFTO, NUMSLC
// Writes: (applySliceBalance) SURF P, S1, S2, S, E2, T2 of slice i, and E1, T1 of slice i + 1
//         when there is one
// IERR:   none
//
// Both are inline: the sweeps call them for every slice at every trial factor.

#pragma once

#include "records.h"

// The terms of the force balance of slice i at the safety factor F with the face-2 roughness R
// (the share of the face's available shear carried as interslice shear).
struct SliceBalance {
    double horizontalPerP;   // horizontal share of the base forces per unit normal force
    double horizontalFixed;  // mobilised base cohesion less E1, WX and the nail's pull (horizontal)
    double faceCohesion;     // face-2 cohesion mobilised at F, per unit roughness
    double verticalFixed;    // WZ, T1 and the nail's pull less the mobilised base cohesion (vertical)
    double divisor;          // divisor of P: vanishes where the slice cannot carry its load
};

// A base that fails undrained in a combined analysis.
inline bool undrainedSliceBase(int i) { return MASTER.IDEFTO == 3 && ISUR.MODE(i) == 2; }

inline SliceBalance sliceBalance(int i, double F, double R) {
    const double t = 1.0 / F;
    const bool undrained = undrainedSliceBase(i);
    const double baseResistance = SURF.L34(i) * (undrained ? SURF.SU3(i) : SURF.C3(i)) + SURF.SS(i);
    const double baseTan = undrained ? 0.0 : SURF.TAN3(i);
    const double faceHeight = SURF.ZZ(3, i) - SURF.ZZ(2, i);
    const double sinb = SURF.SINB(i);
    const double cosb = SURF.COSB(i);

    SliceBalance b;
    b.horizontalPerP = sinb - cosb * baseTan * t;
    b.horizontalFixed = baseResistance * cosb * t - SURF.E1(i) - SURF.WX(i) - SURF.SNX(i) * t;
    b.faceCohesion = SURF.C2(i) * faceHeight * t;
    b.verticalFixed = SURF.WZ(i) + SURF.T1(i) + SURF.SNZ(i) * t - baseResistance * sinb * t;
    b.divisor = SURF.TAN2(i) * R * t * b.horizontalPerP + sinb * baseTan * t + cosb;
    return b;
}

inline void applySliceBalance(int i, double F, double R, const SliceBalance& b) {
    const double faceHeight = SURF.ZZ(3, i) - SURF.ZZ(2, i);
    SURF.P(i) = (R * (SURF.TAN2(i) * b.horizontalFixed / F - b.faceCohesion) + b.verticalFixed) / b.divisor;
    SURF.E2(i) = SURF.P(i) * b.horizontalPerP - b.horizontalFixed;
    SURF.T2(i) = (SURF.TAN2(i) * SURF.E2(i) + SURF.C2(i) * faceHeight) * R / F;
    SURF.S1(i) = (SURF.TAN3(i) * SURF.P(i) + SURF.L34(i) * SURF.C3(i)) / F;
    SURF.S2(i) = SURF.L34(i) * SURF.SU3(i) / F;
    SURF.S(i) = undrainedSliceBase(i) ? SURF.S2(i) : SURF.S1(i);
    if (i < MASTER.NUMSLC) {
        SURF.E1(i + 1) = SURF.E2(i);
        SURF.T1(i + 1) = SURF.T2(i);
    }
}
