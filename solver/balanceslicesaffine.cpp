// solver/balanceslicesaffine.cpp
//
// balanceSlicesAffine — the forces of a row of slices at a trial safety factor, from the entry on.
//
// The balance of slice i at the factor F (reciprocal t = 1/F) and face-2 roughness R:
//   horizontal:  P hP - (E2 - E1) = H0,             hP = sinb - cosb tan3 t
//                                                   H0 = (c3 L34 + SS) cosb t - WX - SNX t
//   vertical:    P (sinb tan3 t + cosb) + T2 = V0 + T1,
//                                                   V0 = WZ + SNZ t - (c3 L34 + SS) sinb t
//   face 2:      T2 = R t (tan2 E2 + c2 h)
// Eliminating E2 and T2 gives P = (R tan2 t (H0 - E1) - R c2 h t + V0 + T1) / D, with the
// divisor D = R tan2 t hP + sinb tan3 t + cosb. So P and E2 are affine functions of the forces
// E1, T1 handed over from the left, and T2 follows from E2. Their coefficients do not depend
// on the neighbours, so what is handed on from slice to slice is a short chain of products
// and sums instead of the whole balance with its divisions, and the coefficients of the next
// slices are formed while the chain runs.
//
// Reads:  the coefficients; SURF E1(1), T1(1), the roughness to start from; MASTER.NUMSLC, EPS
// Writes: SURF R of the slices reached; P, S1, S2, S, E2, T2 of the slices balanced; E1, T1 of
//         the slice after each (within NUMSLC)
// IERR:   none (a divisor that fails the rule is returned to the caller)

#include "solver/slicebalance.h"

int balanceSlicesAffine(const SliceCoefficients& c, double F, const double* roughnessFrom, double roughnessFactor,
                        DivisorRule rule, double& divisor) {
    int numSlices = MASTER.NUMSLC;
    if (numSlices > MAXSLC) numSlices = MAXSLC;
    const double t = 1.0 / F;
    const double eps = MASTER.EPS;
    // The columns of slice 1 on: slice i at index i - 1.
    double* roughness = SURF.R.data();
    double* normalForce = SURF.P.data();
    double* exitForce = SURF.E2.data();
    double* exitShear = SURF.T2.data();
    double* entryForce = SURF.E1.data();
    double* entryShear = SURF.T1.data();
    double* drainedShear = SURF.S1.data();
    double* undrainedShear = SURF.S2.data();
    double* baseShear = SURF.S.data();

    double E1 = entryForce[0];
    double T1 = entryShear[0];
    for (int k = 0; k < numSlices; ++k) {
        const double R = roughnessFrom[k] * roughnessFactor;
        roughness[k] = R;
        const double horizontalPerP = horizontalShare(c, k, t);
        const double mobilisedRoughness = R * t;
        const double faceFriction = c.tan2[k] * mobilisedRoughness;  // interslice shear per unit E2
        const double verticalPerP = c.sinbTan[k] * t + c.cosb[k];
        // The divisor tan2 R t hP + sinb tan3 t + cosb from the products at hand: one operation
        // fewer per slice than baseDivisor takes, which the sweeps of the 2003 method feel.
        const double D = faceFriction * horizontalPerP + verticalPerP;
        if (failsDivisorRule(rule, D, eps)) {
            divisor = D;
            return k + 1;
        }
        const double horizontalFixed = c.horizontalPull[k] * t - c.wx[k];
        const double verticalFixed = c.wz[k] + c.verticalPull[k] * t;
        const double faceCohesion = c.faceCohesionFull[k] * mobilisedRoughness;  // mobilised face cohesion
        const double perDivisor = 1.0 / D;
        // P = pFixed + pPerE1 E1 + pPerT1 T1, and E2 = eFixed + ePerE1 E1 + ePerT1 T1.
        const double pFixed = (faceFriction * horizontalFixed - faceCohesion + verticalFixed) * perDivisor;
        const double pPerE1 = -faceFriction * perDivisor;
        const double eFixed = pFixed * horizontalPerP - horizontalFixed;
        const double ePerE1 = verticalPerP * perDivisor;  // 1 + pPerE1 hP, without the cancellation
        const double ePerT1 = horizontalPerP * perDivisor;

        const double E2 = eFixed + ePerE1 * E1 + ePerT1 * T1;
        const double T2 = faceFriction * E2 + faceCohesion;
        const double P = pFixed + pPerE1 * E1 + perDivisor * T1;
        const double S1 = (c.tan3[k] * P + c.drainedCohesion[k]) * t;
        const double S2 = c.undrainedCohesion[k] * t;
        normalForce[k] = P;
        exitForce[k] = E2;
        exitShear[k] = T2;
        drainedShear[k] = S1;
        undrainedShear[k] = S2;
        baseShear[k] = c.undrained[k] ? S2 : S1;
        if (k + 1 < numSlices) {
            entryForce[k + 1] = E2;
            entryShear[k + 1] = T2;
        }
        E1 = E2;
        T1 = T2;
    }
    return 0;
}
