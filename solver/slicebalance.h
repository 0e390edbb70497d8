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
// Reads:  through SliceCoefficients::take the SURF columns SINB, COSB, L34, C3, TAN3, SU3, C2,
//         TAN2, SS, WX, WZ, SNX, SNZ, ZZ and ISUR.MODE, MASTER.IDEFTO; at every slice SURF E1,
//         T1 of slice i; MASTER.NUMSLC
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

inline SliceBalance sliceBalance(const SliceCoefficients& c, int i, double F, double R) {
    const int k = i - 1;
    const double t = 1.0 / F;
    const double baseResistance = c.baseResistance[k];
    const double baseTan = c.baseTan[k];
    const double sinb = c.sinb[k];
    const double cosb = c.cosb[k];

    SliceBalance b;
    b.horizontalPerP = sinb - cosb * baseTan * t;
    b.horizontalFixed = baseResistance * cosb * t - SURF.E1(i) - c.wx[k] - c.snx[k] * t;
    b.faceCohesion = c.c2[k] * c.faceHeight[k] * t;
    b.verticalFixed = c.wz[k] + SURF.T1(i) + c.snz[k] * t - baseResistance * sinb * t;
    b.divisor = c.tan2[k] * R * t * b.horizontalPerP + sinb * baseTan * t + cosb;
    return b;
}

inline void applySliceBalance(const SliceCoefficients& c, int i, double F, double R, const SliceBalance& b) {
    const int k = i - 1;
    const double P = (R * (c.tan2[k] * b.horizontalFixed / F - b.faceCohesion) + b.verticalFixed) / b.divisor;
    const double E2 = P * b.horizontalPerP - b.horizontalFixed;
    const double T2 = (c.tan2[k] * E2 + c.c2[k] * c.faceHeight[k]) * R / F;
    const double S1 = (c.tan3[k] * P + c.drainedCohesion[k]) / F;
    const double S2 = c.undrainedCohesion[k] / F;
    SURF.P(i) = P;
    SURF.E2(i) = E2;
    SURF.T2(i) = T2;
    SURF.S1(i) = S1;
    SURF.S2(i) = S2;
    SURF.S(i) = c.undrained[k] ? S2 : S1;
    if (i < MASTER.NUMSLC) {
        SURF.E1(i + 1) = E2;
        SURF.T1(i + 1) = T2;
    }
}
