// solver/balancevertically.cpp
//
// balanceVertically — the base forces of every slice at a trial safety factor from its vertical
// balance alone, as both Bishop methods take them: P (cosb + sinb tan3 / F) = WZ + (SNZ -
// (c3 L34 + SS) sinb) / F, so P = ((SNZ - (c3 L34 + SS) sinb) / F + WZ) / D with the divisor
// D = sinb tan3 / F + cosb (cosb alone on a base that fails undrained in a combined analysis),
// and the mobilised base shear S1 = (tan3 P + c3 L34) / F, S2 = su3 L34 / F. Each slice in
// this order of operations, so that the results are those the methods have always given; the
// slices are independent of one another and go two at a time, each lane rounded exactly as
// the same operations on one slice. A zero undrained cohesion divided by F is the zero its
// product with 1/F gives, sign included.
//
// Reads:  the coefficients; MASTER.NUMSLC, EPS
// Writes: SURF P, S1, S2, S of the slices before the first whose divisor is not above EPS
// IERR:   none (returns 0, or that slice with its divisor in divisor)

#include <algorithm>
#include <cmath>

#include "solver/slicebalance.h"
#include "solver/slicepair.h"

int balanceVertically(const SliceCoefficients& c, double F, double& divisor) {
    const int numSlices = std::clamp(MASTER.NUMSLC, 0, MAXSLC);
    double* normalForce = SURF.P.data();
    double* drainedShear = SURF.S1.data();
    double* undrainedShear = SURF.S2.data();
    double* baseShear = SURF.S.data();
    const double eps = MASTER.EPS;
    // The divisor of every slice; the sweep stops at the first one not above EPS.
    double D[MAXSLC + 1];
    const SlicePair factor = pairOf(F);
    const SlicePair limit = pairOf(eps);
    SlicePairFlags failing = {0, 0};
    int k = 0;
    for (; k + 1 < numSlices; k += 2) {
        const SlicePair divisors = pairAt(c.sinbTan3, k) / factor + pairAt(c.cosb, k);
        failing |= divisors <= limit;
        storePair(D, k, divisors);
    }
    bool anyFailing = failing[0] != 0 || failing[1] != 0;
    for (; k < numSlices; ++k) {
        D[k] = c.sinbTan3[k] / F + c.cosb[k];
        anyFailing = anyFailing || D[k] <= eps;
    }
    int balanced = numSlices;
    if (c.anyUndrained || anyFailing) {
        for (k = 0; k < numSlices; ++k) {
            if (c.undrained[k]) D[k] = c.cosb[k];
            if (D[k] <= eps) {
                balanced = k;
                break;
            }
        }
    }
    const double reciprocal = 1.0 / F;
    const bool cohesionByProduct = c.noUndrainedCohesion && std::isfinite(reciprocal);
    const SlicePair reciprocals = pairOf(reciprocal);
    for (k = 0; k + 1 < balanced; k += 2) {
        const SlicePair P = (pairAt(c.verticalPull, k) / factor + pairAt(c.wz, k)) / pairAt(D, k);
        storePair(normalForce, k, P);
        storePair(drainedShear, k, (pairAt(c.tan3, k) * P + pairAt(c.drainedCohesion, k)) / factor);
        const SlicePair cohesion = pairAt(c.undrainedCohesion, k);
        storePair(undrainedShear, k, cohesionByProduct ? cohesion * reciprocals : cohesion / factor);
    }
    for (; k < balanced; ++k) {
        const double P = (c.verticalPull[k] / F + c.wz[k]) / D[k];
        normalForce[k] = P;
        drainedShear[k] = (c.tan3[k] * P + c.drainedCohesion[k]) / F;
        undrainedShear[k] = cohesionByProduct ? c.undrainedCohesion[k] * reciprocal : c.undrainedCohesion[k] / F;
    }
    if (c.anyUndrained) {
        for (k = 0; k < balanced; ++k) baseShear[k] = c.undrained[k] ? undrainedShear[k] : drainedShear[k];
    } else {
        std::copy_n(drainedShear, balanced, baseShear);
    }
    if (balanced == numSlices) return 0;
    divisor = D[balanced];
    return balanced + 1;
}
