// solver/slicebalance.h
//
// SliceCoefficients, balanceSlices, balanceVertically — the force balance
// of the slices at a trial safety factor, of the force-equilibrium sweep (FRCEQR), the 2003
// method and the Bishop methods (SLV123).
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

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

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
    double tan2[MAXSLC];
    double tan3[MAXSLC];
    double drainedCohesion[MAXSLC];    // L34 c3
    double undrainedCohesion[MAXSLC];  // L34 su3
    double wx[MAXSLC];
    double wz[MAXSLC];
    double snz[MAXSLC];
    double sinbTan3[MAXSLC];          // sinb tan3 (tan3 of the slice also on an undrained base)
    double snx[MAXSLC];
    double baseCosb[MAXSLC];          // baseResistance cosb
    double baseSinb[MAXSLC];          // baseResistance sinb
    bool undrained[MAXSLC];
    bool noUndrainedCohesion;  // undrainedCohesion zero on every slice
    bool anyUndrained;         // some base fails undrained
    bool noHorizontalPull;     // WX and SNX a positive zero on every slice
    double largestTan2;          // at least the largest |tan2| (infinite when one is no number)
    double largestFaceCohesion;  // at least the largest |faceCohesionFull| (likewise)
    // Products that every trial factor multiplies alike (baseTan: tan3, 0 on an undrained base).
    double cosbTan[MAXSLC];           // cosb baseTan
    double sinbTan[MAXSLC];           // sinb baseTan
    double verticalPull[MAXSLC];      // snz - baseResistance sinb (per unit 1/F)
    double faceCohesionFull[MAXSLC];  // c2 h, h the height of face 2, ZZ(3) - ZZ(2)

    // Slices 1..n (n within 1..99).
    void take(int n) {
        if (n > MAXSLC) n = MAXSLC;
        const bool combined = MASTER.IDEFTO == 3;
        const int* mode = ISUR.MODE.data();
        const double* l34 = SURF.L34.data();
        const double* su3 = SURF.SU3.data();
        const double* c3 = SURF.C3.data();
        const double* ss = SURF.SS.data();
        const double* tanBase = SURF.TAN3.data();
        const double* c2 = SURF.C2.data();
        const double* snxColumn = SURF.SNX.data();
        const double* corners = SURF.ZZ.data();  // corner j of slice i at 5 (i - 1) + j - 1
        std::copy_n(SURF.SINB.data(), n, sinb);
        std::copy_n(SURF.COSB.data(), n, cosb);
        std::copy_n(SURF.TAN2.data(), n, tan2);
        std::copy_n(tanBase, n, tan3);
        std::copy_n(SURF.WX.data(), n, wx);
        std::copy_n(SURF.WZ.data(), n, wz);
        std::copy_n(SURF.SNZ.data(), n, snz);
        std::copy_n(snxColumn, n, snx);
        // Flags and bounds gathered without a branch per slice: the bits of a positive zero
        // are all clear, and a sum of magnitudes bounds each of them (and is no number when
        // one of them is none).
        bool undrainedCohesionFound = false;
        bool undrainedFound = false;
        std::uint64_t horizontalBits = 0;
        double tan2Sum = 0.0;
        double faceCohesionSum = 0.0;
        for (int k = 0; k < n; ++k) {
            undrained[k] = combined && mode[k] == 2;
            baseResistance[k] = l34[k] * (undrained[k] ? su3[k] : c3[k]) + ss[k];
            drainedCohesion[k] = l34[k] * c3[k];
            undrainedCohesion[k] = l34[k] * su3[k];
            const double baseTan = undrained[k] ? 0.0 : tanBase[k];
            const double faceHeight = corners[5 * k + 2] - corners[5 * k + 1];
            cosbTan[k] = cosb[k] * baseTan;
            sinbTan[k] = sinb[k] * baseTan;
            sinbTan3[k] = sinb[k] * tanBase[k];
            baseCosb[k] = baseResistance[k] * cosb[k];
            baseSinb[k] = baseResistance[k] * sinb[k];
            verticalPull[k] = snz[k] - baseSinb[k];
            faceCohesionFull[k] = c2[k] * faceHeight;
            undrainedCohesionFound |= undrainedCohesion[k] != 0.0;
            undrainedFound |= undrained[k];
            horizontalBits |= std::bit_cast<std::uint64_t>(wx[k]) | std::bit_cast<std::uint64_t>(snx[k]);
            tan2Sum += std::fabs(tan2[k]);
            faceCohesionSum += std::fabs(faceCohesionFull[k]);
        }
        noUndrainedCohesion = !undrainedCohesionFound;
        anyUndrained = undrainedFound;
        noHorizontalPull = horizontalBits == 0;
        largestTan2 = std::isnan(tan2Sum) ? HUGE_VAL : tan2Sum;
        largestFaceCohesion = std::isnan(faceCohesionSum) ? HUGE_VAL : faceCohesionSum;
    }
};

// The horizontal share of the base forces per unit P of slice k (index from 0) at t = 1/F:
// sinb - cosb tan3 t (tan3 zero on an undrained base).
inline double horizontalShare(const SliceCoefficients& c, int k, double t) { return c.sinb[k] - c.cosbTan[k] * t; }

// The divisor of the base normal force of slice k at t = 1/F and face-2 roughness R, given its
// horizontal share hP: tan2 R t hP + sinb tan3 t + cosb.
inline double baseDivisor(const SliceCoefficients& c, int k, double t, double R, double horizontalPerP) {
    return c.tan2[k] * R * t * horizontalPerP + c.sinbTan[k] * t + c.cosb[k];
}

// Whether the horizontal loads and nail forces of every slice, WX and SNX / F, are positive
// zeros at t = 1/F (then subtracting them from a horizontal sum leaves it as it is).
inline bool noHorizontalPullAt(const SliceCoefficients& c, double t) { return c.noHorizontalPull && t > 0.0 && t < HUGE_VAL; }

// Which divisor of the base normal force leaves a slice unable to carry its load: one below
// EPS, or one not above EPS.
enum class DivisorRule { BelowEps, AtMostEps };

// Whether the divisor D of a slice's base normal force fails the rule.
inline bool failsDivisorRule(DivisorRule rule, double D, double eps) {
    return rule == DivisorRule::BelowEps ? D < eps : D <= eps;
}

// Balances the slices from the entry on at the safety factor F. The face-2 roughness of slice i
// becomes SURF.R(i) = roughnessFrom[i - 1] * roughnessFactor as it is reached (roughnessFrom
// may be SURF.R itself). The divisor of the base normal force vanishes where the slice cannot
// carry its load: at the first slice whose divisor fails the rule the sweep stops, the slices
// before it balanced. Returns 0 when every slice was balanced, else that slice (its divisor in
// divisor).
// Reads:  SURF E1(1), T1(1); MASTER.NUMSLC (within 1..MAXSLC), EPS
// Writes: SURF R of the slices reached; P, S1, S2, S, E2, T2 of the slices balanced, and E1,
//         T1 of the slice after each (within NUMSLC)
// Each slice is solved in turn from what its neighbour hands over, in the order of operations
// these sweeps have always had: the force-equilibrium sweep (FRCEQR) and the 2003 method give
// their results to the last digit.
int balanceSlices(const SliceCoefficients& c, double F, const double* roughnessFrom, double roughnessFactor,
                  DivisorRule rule, double& divisor);

// The base forces of every slice at F from its vertical balance alone (both Bishop methods).
// Returns 0, or the first slice whose divisor is not above EPS (its divisor in divisor), the
// slices before it balanced.
// Reads:  MASTER.NUMSLC, EPS
// Writes: SURF P, S1, S2, S of the slices balanced
int balanceVertically(const SliceCoefficients& c, double F, double& divisor);
