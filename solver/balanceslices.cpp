// solver/balanceslices.cpp
//
// balanceSlices — the forces of a row of slices at a trial safety factor, slice after slice
// from the entry on, each slice solved from what its left neighbour hands over.
//
// The balance of slice i at the factor F (t = 1/F) and face-2 roughness R:
//   hP = sinb - cosb tan3 t                       horizontal share of the base forces per unit P
//   H  = (c3 L34 + SS) cosb t - E1 - WX - SNX t   horizontal forces other than P and E2
//   V  = WZ + T1 + SNZ t - (c3 L34 + SS) sinb t   vertical forces other than P and T2
//   D  = tan2 R t hP + sinb tan3 t + cosb         divisor of P
//   P  = (R (tan2 H / F - c2 h t) + V) / D,   E2 = P hP - H,   T2 = (tan2 E2 + c2 h) R / F
// in exactly this order of operations: the force-equilibrium results are those this sweep has
// always given, to the last binary digit. The forces handed on pass from slice to slice in
// registers; where no slice has a horizontal load or nail force (WX and SNX positive zeros, and
// a positive finite 1/F) their subtraction from H, which leaves every number as it is, is left
// out of the chain.
//
// Without interslice shear (R = 0 on every slice, the first solution of every surface) the term
// R (...) vanishes and T2 is zero, so P follows from the slice's own loads alone and only the
// horizontal forces pass from slice to slice. The sweep then forms every P first and runs the
// short chain of the horizontal forces after; it gives the same numbers as the slice-by-slice
// order, and falls back on that order wherever the two could differ: a vertical load V of
// exactly zero (the sign of the zero), a term that is not finite or may overflow.
//
// Reads:  the coefficients; SURF E1(1), T1(1), the roughness to start from; MASTER.NUMSLC, EPS
// Writes: SURF R of the slices reached; P, S1, S2, S, E2, T2 of the slices balanced; E1, T1 of
//         the slice after each (within NUMSLC)
// IERR:   none (a divisor that fails the rule is returned to the caller)

#include <algorithm>
#include <cmath>

#include "solver/slicebalance.h"
#include "solver/slicepair.h"

namespace {

// Writes the base forces of slice k (index from 0) from its normal force P.
void writeBase(const SliceCoefficients& c, int k, double F, double P) {
    const double S1 = (c.tan3[k] * P + c.drainedCohesion[k]) / F;
    const double S2 = c.undrainedCohesion[k] / F;
    SURF.P.data()[k] = P;
    SURF.S1.data()[k] = S1;
    SURF.S2.data()[k] = S2;
    SURF.S.data()[k] = c.undrained[k] ? S2 : S1;
}

// Slices 1..n one after another at the roughness R[k]. Returns 0 or the failing slice.
int sliceBySlice(const SliceCoefficients& c, double F, const double* R, int n, DivisorRule rule, double& divisor) {
    const double t = 1.0 / F;
    const double eps = MASTER.EPS;
    double* entryForce = SURF.E1.data();
    double* entryShear = SURF.T1.data();
    double E1 = entryForce[0];
    double T1 = entryShear[0];
    const bool plain = noHorizontalPullAt(c, t);
    for (int k = 0; k < n; ++k) {
        SURF.R.data()[k] = R[k];
        const double horizontalPerP = horizontalShare(c, k, t);
        double horizontalFixed = c.baseCosb[k] * t - E1;
        if (!plain) horizontalFixed = horizontalFixed - c.wx[k] - c.snx[k] * t;
        const double faceCohesion = c.faceCohesionFull[k] * t;
        const double verticalFixed = c.wz[k] + T1 + c.snz[k] * t - c.baseSinb[k] * t;
        const double D = baseDivisor(c, k, t, R[k], horizontalPerP);
        if (failsDivisorRule(rule, D, eps)) {
            divisor = D;
            return k + 1;
        }
        const double P = (R[k] * (c.tan2[k] * horizontalFixed / F - faceCohesion) + verticalFixed) / D;
        const double E2 = P * horizontalPerP - horizontalFixed;
        const double T2 = (c.tan2[k] * E2 + c.faceCohesionFull[k]) * R[k] / F;
        writeBase(c, k, F, P);
        SURF.E2.data()[k] = E2;
        SURF.T2.data()[k] = T2;
        if (k + 1 < n) {
            entryForce[k + 1] = E2;
            entryShear[k + 1] = T2;
        }
        E1 = E2;
        T1 = T2;
    }
    return 0;
}

// Slices 1..n without interslice shear (every R[k] zero): the normal forces first, then the
// chain of the horizontal forces. Returns false where the slice-by-slice order could give other
// numbers (what it wrote of the slices it balanced is then written again by that order, which
// balances the same slices); else sets result to 0 or the failing slice.
//
// Where a term is zero, or its sign alone matters, a product with t = 1/F gives to the bit
// what the division by F gives, as long as t is finite: so do a zero undrained cohesion's S2
// and the vanishing T2 = (tan2 E2 + c2 h) 0 / F. What R multiplies in P only has to be
// finite, and so does tan2 E2 + c2 h: bounds on their parts make sure of it. Subtracting a
// positive zero leaves any number as it is: without horizontal loads and nails the forces
// are handed on through two operations fewer.
bool withoutInterslice(const SliceCoefficients& c, double F, const double* R, int n, DivisorRule rule, double& divisor,
                       int& result) {
    constexpr double kSafeMagnitude = 0x1p500;  // two such numbers divide to a finite one
    const double t = 1.0 / F;
    if (!(std::fabs(t) <= kSafeMagnitude)) return false;
    const double eps = MASTER.EPS;
    double divisors[MAXSLC];
    double horizontalShares[MAXSLC];
    int balanced = n;
    result = 0;
    for (int k = 0; k < n; ++k) {
        const double horizontalPerP = horizontalShare(c, k, t);
        const double D = baseDivisor(c, k, t, R[k], horizontalPerP);
        if (failsDivisorRule(rule, D, eps)) {
            balanced = k;
            result = k + 1;
            divisor = D;
            break;
        }
        divisors[k] = D;
        horizontalShares[k] = horizontalPerP;
    }
    if (balanced == 0) {
        SURF.R(1) = R[0];
        return true;
    }

    // P = V / D on every slice balanced, two at a time. T1 is the shear handed over at the
    // entry on slice 1 and a zero on every later one; its sign cannot matter unless V itself
    // comes out zero.
    double* normalForce = SURF.P.data();
    double* drainedShear = SURF.S1.data();
    double* undrainedShear = SURF.S2.data();
    const bool cohesionByProduct = c.noUndrainedCohesion;
    bool vanishingLoad = false;
    const auto baseForces = [&](int k) {
        const double entryShear = k == 0 ? SURF.T1(1) : 0.0;
        const double verticalFixed = c.wz[k] + entryShear + c.snz[k] * t - c.baseSinb[k] * t;
        vanishingLoad = vanishingLoad || verticalFixed == 0.0;
        const double P = verticalFixed / divisors[k];
        normalForce[k] = P;
        drainedShear[k] = (c.tan3[k] * P + c.drainedCohesion[k]) / F;
        undrainedShear[k] = cohesionByProduct ? c.undrainedCohesion[k] * t : c.undrainedCohesion[k] / F;
    };
    baseForces(0);
    const SlicePair factor = pairOf(F);
    const SlicePair reciprocal = pairOf(t);
    const SlicePair none = pairOf(0.0);
    SlicePairFlags zeroLoads = {0, 0};
    int k = 1;
    for (; k + 1 < balanced; k += 2) {
        const SlicePair verticalFixed = pairAt(c.wz, k) + none + pairAt(c.snz, k) * reciprocal - pairAt(c.baseSinb, k) * reciprocal;
        zeroLoads |= verticalFixed == none;
        const SlicePair P = verticalFixed / pairAt(divisors, k);
        storePair(normalForce, k, P);
        storePair(drainedShear, k, (pairAt(c.tan3, k) * P + pairAt(c.drainedCohesion, k)) / factor);
        const SlicePair cohesion = pairAt(c.undrainedCohesion, k);
        storePair(undrainedShear, k, cohesionByProduct ? cohesion * reciprocal : cohesion / factor);
    }
    for (; k < balanced; ++k) baseForces(k);
    if (vanishingLoad || zeroLoads[0] != 0 || zeroLoads[1] != 0) return false;
    double* baseShear = SURF.S.data();
    if (c.anyUndrained) {
        for (k = 0; k < balanced; ++k) baseShear[k] = c.undrained[k] ? undrainedShear[k] : drainedShear[k];
    } else {
        std::copy_n(drainedShear, balanced, baseShear);
    }

    // The horizontal forces from slice to slice.
    double* exitForce = SURF.E2.data();
    double* exitShear = SURF.T2.data();
    double E1 = SURF.E1(1);
    double largestHorizontal = 0.0;  // of H and E2
    const bool plain = noHorizontalPullAt(c, t);
    for (k = 0; k < balanced; ++k) {
        double horizontalFixed = c.baseCosb[k] * t - E1;
        if (!plain) horizontalFixed = horizontalFixed - c.wx[k] - c.snx[k] * t;
        const double E2 = normalForce[k] * horizontalShares[k] - horizontalFixed;
        exitForce[k] = E2;
        exitShear[k] = (c.tan2[k] * E2 + c.faceCohesionFull[k]) * R[k] * t;
        largestHorizontal = std::max({largestHorizontal, std::fabs(horizontalFixed), std::fabs(E2)});
        E1 = E2;
    }
    // A force that is not finite is handed on to the exit.
    if (!std::isfinite(E1) || !(c.largestTan2 * largestHorizontal <= kSafeMagnitude) ||
        !(c.largestFaceCohesion <= kSafeMagnitude) || !(c.largestFaceCohesion * std::fabs(t) <= kSafeMagnitude))
        return false;
    const int handedOn = std::min(balanced, n - 1);
    std::copy_n(exitForce, handedOn, SURF.E1.data() + 1);
    std::copy_n(exitShear, handedOn, SURF.T1.data() + 1);
    std::copy_n(R, std::min(balanced + 1, n), SURF.R.data());
    return true;
}

}  // namespace

int balanceSlices(const SliceCoefficients& c, double F, const double* roughnessFrom, double roughnessFactor,
                  DivisorRule rule, double& divisor) {
    int numSlices = MASTER.NUMSLC;
    if (numSlices > MAXSLC) numSlices = MAXSLC;
    // The roughness of every slice, taken before any is written (roughnessFrom may be SURF.R).
    double R[MAXSLC];
    bool noInterslice = true;
    for (int k = 0; k < numSlices; ++k) {
        R[k] = roughnessFrom[k] * roughnessFactor;
        noInterslice = noInterslice && R[k] == 0.0;
    }
    if (numSlices < 1) return 0;
    const double entryForce = SURF.E1(1);
    const double entryShear = SURF.T1(1);
    int result = 0;
    if (noInterslice && withoutInterslice(c, F, R, numSlices, rule, divisor, result)) return result;
    SURF.E1(1) = entryForce;
    SURF.T1(1) = entryShear;
    return sliceBySlice(c, F, R, numSlices, rule, divisor);
}
