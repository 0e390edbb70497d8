// solver/frceqr.cpp
//
// FRCEQR — safety factor from the force equilibrium of the slice system.
//
// A sweep at a trial safety factor F balances the slices one after another from the entry to
// the exit: each slice takes the forces E1, T1 that its left neighbour hands over, and the
// horizontal and vertical force balance, closed by the interslice shear T2 = R (E2 tan2 +
// c2 h) / F on its right face, gives its base normal force P and the forces E2, T2 it hands
// on. Whatever horizontal force is left at the exit, E2(NUMSLC), is the residual; F is
// adjusted until it vanishes. A combined analysis repeats the solution while slices change
// between drained and undrained failure; an earth-pressure analysis makes one sweep at the
// given F and the residual is the earth force on the wall. The balance of one slice is the
// one the 2003 method uses as well; this sweep solves it slice by slice in the order of
// operations its results have always had (balanceSlices). A slice fails here when its divisor
// falls below EPS.
//
// Reads:  MASTER.NUMSLC, IDTYP, IDEFTO, METHOD, JPRINT, EPS, E2TOL, SFLIM, SFMAX, E2LIM;
//         SURF columns SINB, COSB, L34, C3, TAN3, SU3, C2, TAN2, SS, WX, WZ, SNX, SNZ, ZZ,
//         E1(1), T1(1); ISUR.MODE
// Writes: MASTER.SF, SFMIN (raised from the 31st trial on), SCORE (pure force equilibrium),
//         IERR; SURF columns P, S, S1, S2, E2, T2, E1 and T1 of slices 2.., R (reduced in
//         place), H1, H2, H3 (zeroed for pure force equilibrium); ISUR.MODE (combined
//         analysis); the trial table SFTRY/UNBAL of the scratch record
// IERR:   0 converged, or the single earth-pressure sweep done, or a very large safety factor
//         (SF = 999.999 with a warning); 1 no slice system solvable after 50 roughness
//         reductions, the safety factor step stalled, the combined analysis did not settle, or
//         no slices; 2 ROOT1 failed; 3 no convergence within 50 trials

#include <cmath>

#include "io/fmt.h"
#include "solver/slicebalance.h"
#include "solver/solver.h"

namespace {

constexpr double kRoughReduction = 0.9f;
constexpr double kScanStep = 0.2f;
constexpr double kScanStart = 0.15f;
constexpr double kSettledSF = 0.01f;
constexpr double kAboveLimit = 0.001f;
constexpr double kMinStep = 0.001f;
constexpr double kStalledStep = 0.0001f;
constexpr double kMarkerLargeSF = 999.999f;
constexpr double kScoreForceOnly = 6.666f;
constexpr double kLargeSF = 1000.0;
constexpr int kMaxReductions = 50;
constexpr int kMaxTrials = 50;
constexpr int kScanFirst = 15;
constexpr int kScanLast = 30;
constexpr int kProportionalTrials = 3;
constexpr int kMaxCombinedPasses = 5;
constexpr int kMaxModeChanges = 2;

void printDivisorProblem(double F, int i, double DIV) {
    sayLog(" **** SR/FRCEQR : P-FORCE PROBLEM , TOO STEEP SHEAR SURFACE EXIT ANGLE ?");
    sayLog("    SF   SLICE  SIN(BETA)  TAN(PHI2)  TAN(PHI3)  ROUGHNESS   DIV");
    sayLog(io::Line()
               .F(F, 7, 3)
               .I(i, 7)
               .F(SURF.SINB(i), 11, 4)
               .F(SURF.TAN2(i), 11, 4)
               .F(SURF.TAN3(i), 11, 4)
               .F(SURF.R(i), 11, 4)
               .ES(DIV, 12, 3)
               .str());
}

// One sweep over the slices at the present SF. A slice that cannot carry its load at the
// present roughness (divisor below EPS) reduces the roughness of the whole system and starts
// the sweep again, the slices before it balanced as far as they came; the reduction factor
// stays in force, so every later sweep of this pass reduces R once more. Returns false
// (IERR = 1) when 50 reductions did not help.
bool sweep(const SliceCoefficients& coefficients, double& RGHMOD, int& NRED) {
    const double F = MASTER.SF;
    for (;;) {
        double DIV = 0.0;
        const int failed = balanceSlices(coefficients, F, SURF.R.data(), RGHMOD, DivisorRule::BelowEps, DIV);
        if (failed == 0) return true;
        if (MASTER.JPRINT >= 2) printDivisorProblem(F, failed, DIV);
        RGHMOD = RGHMOD * kRoughReduction;
        NRED = NRED + 1;
        if (NRED >= kMaxReductions) break;
    }
    sayLog(" **** SR/FRCEQR : Reduced R-values did not work");
    MASTER.IERR = 1;
    return false;
}

void traceTrial(int ITNOW, double unbalance, double RGHMOD, int NUMCHG) {
    if (ITNOW == 1) {
        sayLog("SR/FRCEQR TRACE PRINT");
        sayLog("ITER   SF   UNBAL-FORCE   RGHMOD  NUMCHG");
    }
    sayLog(io::Line().I(ITNOW, 4).F(MASTER.SF, 10, 5).ES(unbalance, 14, 5).F(RGHMOD, 9, 5).I(NUMCHG, 8).str());
}

}  // namespace

void FRCEQR() {
    const double e2limOnEntry = MASTER.E2LIM;
    MASTER.IERR = 0;
    int NUMCHG = 0;
    int ITRCMB = 0;
    const int numSlices = MASTER.NUMSLC;
    if (numSlices < 1 || numSlices > MAXSLC) {
        MASTER.IERR = 1;
        return;
    }

    SliceCoefficients coefficients;
    for (;;) {
        // A combined pass: the whole safety-factor iteration with the present failure modes.
        ++ITRCMB;
        const double SFLAST = MASTER.SF;
        double RGHMOD = 1.0;
        int ITNOW = 0;
        int NRED = 0;
        coefficients.take(numSlices);

        for (;;) {
            ++ITNOW;
            if (!sweep(coefficients, RGHMOD, NRED)) return;
            if (MASTER.IDTYP == 2) return;

            const double unbalance = SURF.E2(numSlices);
            TrialTable::SFTRY(ITNOW) = MASTER.SF;
            TrialTable::UNBAL(ITNOW) = unbalance;
            if (MASTER.JPRINT >= 3) traceTrial(ITNOW, unbalance, RGHMOD, NUMCHG);

            // The first trial is never accepted: one point says nothing about the curve.
            if (ITNOW > 1 && std::abs(unbalance) < MASTER.E2TOL) break;

            // Trials 15 to 30 scan upwards from just above the lowest admissible factor,
            // whatever the residual, to get points on both sides of a root that was missed.
            if (ITNOW >= kScanFirst && ITNOW <= kScanLast) {
                if (ITNOW == kScanFirst) MASTER.SF = MASTER.SFLIM - kScanStart;
                MASTER.SF = MASTER.SF + kScanStep;
                continue;
            }
            if (ITNOW > kScanLast) {
                MASTER.SF = MASTER.SF + kScanStep;
                MASTER.SFMIN = MASTER.SFLIM + kAboveLimit;
            }

            double next = 0.0;
            if (ITNOW <= kProportionalTrials && MASTER.IDEFTO != 1) {
                next = MASTER.SF * (MASTER.E2LIM - unbalance) / MASTER.E2LIM;
            } else {
                int rootError = 0;
                ROOT1(ITNOW, TrialTable::sftry(), TrialTable::unbal(), MASTER.SFMAX, MASTER.SFMIN, e2limOnEntry,
                      next, rootError);
                if (rootError != 0) {
                    sayLog(io::Line(" **** SR/FRCEQR : SR/ROOT1 PROBLEM  IERR,ITNOW=").Free(rootError).Free(ITNOW).str());
                    MASTER.IERR = 2;
                    return;
                }
            }

            // Keep the new factor above the lowest admissible one; failing that, move half-way
            // down towards it, and give up when even that step is negligible.
            if (!(next > MASTER.SFMIN)) {
                const double halfToMin = (MASTER.SFMIN + MASTER.SF) * 0.5;
                if (std::abs(halfToMin - MASTER.SF) > kMinStep) {
                    next = halfToMin;
                } else {
                    const double halfToLimit = (MASTER.SF + MASTER.SFLIM) * 0.5;
                    if (std::abs(halfToLimit - MASTER.SF) < kStalledStep) {
                        MASTER.IERR = 1;
                        return;
                    }
                    next = halfToLimit;
                }
            }
            MASTER.SF = next;
            if (ITNOW < kScanFirst) continue;
            if (ITNOW >= kMaxTrials) {
                say(io::Line(" **** SR/FRCEQR : NON-CONVERGING SOLUTION  ITNOW=").Free(ITNOW).str());
                MASTER.IERR = 3;
                return;
            }
            if (MASTER.SF < kLargeSF) continue;
            say(" WARNING FROM SR/FRCEQR : LARGE SAFETY FACTOR");
            MASTER.SF = kMarkerLargeSF;
            return;
        }

        // Converged. A combined analysis checks the failure mode of every base and solves
        // again while modes change, at most five passes.
        if (MASTER.IDEFTO != 3) break;
        if (ITRCMB == kMaxCombinedPasses) {
            if (std::abs(MASTER.SF - SFLAST) >= kSettledSF || NUMCHG > kMaxModeChanges) {
                sayLog(" **** SR/FRCEQR : Combined analysis non-convergence");
                sayLog(io::Line(" ITRCMB,NUMCHG,SF,SFLAST=").Free(ITRCMB).Free(NUMCHG).Free(MASTER.SF).Free(SFLAST).str());
                MASTER.IERR = 1;
                return;
            }
            break;
        }
        NUMCHG = 0;
        CHKCMB(NUMCHG);
        if (NUMCHG == 0) break;
    }

    if (MASTER.METHOD < 0) {
        for (int i = 1; i <= numSlices; ++i) {
            SURF.H1(i) = 0.0;
            SURF.H2(i) = 0.0;
            SURF.H3(i) = 0.0;
        }
        MASTER.SCORE = kScoreForceOnly;
    }
}
