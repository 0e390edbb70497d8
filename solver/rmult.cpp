// solver/rmult.cpp
//
// RMULT — search for the interslice roughness factor that gives the most plausible solution.
//
// The roughness of every face is R = RFACTOR * R0, R0 the initial distribution. For a factor
// the force equilibrium is solved (FRCEQR), corrected to moment equilibrium (MOMEQL) and scored
// (SCORER); a low score is a plausible solution. A first pass runs the factor from 0 to the
// value at which the largest R reaches 1, in ten steps; a second pass searches around the best
// factor with a step ten times finer; the solution at the best factor is then computed once
// more and kept. A score below the critical score CRTSCR ends the search at once. With the
// search switched off (CRTSCR above 0.99999) or for pure force equilibrium one solution is
// computed at R = R0. The start value of each force solution is interpolated from the factors
// already tried, so that the force iteration starts close to its root.
//
// Reads:  MASTER.NUMSLC, METHOD, JPRINT, EPS, SFTZ, CRTSCR; SURF.R0 (and what FRCEQR, MOMEQL
//         and SCORER read)
// Writes: MASTER.SF, SCORE, RFACTOR, IERR; SURF.R and the whole solution in the slice table
// IERR:   0 ok; -1 the moment solution failed at the evaluation whose solution is returned
//         (the slice table then holds its force solution without moment arms, which the
//         equilibrium check must not judge); 1 no usable initial roughness (every R0 zero), or
//         no force solution even with zero roughness; >= 2 the error of FRCEQR; else the
//         error of INTPOL

#include <cmath>

#include "input/input.h"
#include "io/fmt.h"
#include "slices/slices.h"
#include "solver/solver.h"

namespace {

constexpr double kSearchOff = 0.99999f;
constexpr double kZeroRoughness = 0.0001f;
constexpr double kDistinctFactor = 0.0001f;
constexpr double kPassEndSlack = 0.0001f;
constexpr double kNearTie = 0.001f;
constexpr double kFlatSF = 0.001f;
constexpr double kFirstStepShare = 0.1;
constexpr double kStartAboveSFTZ = 1.5;
constexpr double kFinerStep = 0.1;
constexpr double kNoScore = 1.0E6;
constexpr double kNoRoughness = -1.0E6;
constexpr int kMaxTable = 50;
constexpr int kFlatPoints = 10;
constexpr int kSecondPassBack = 9;
constexpr int kSecondPassSteps = 18;
constexpr int kRisingScores = 3;

enum class Outcome {
    Solved,      // force solution found, corrected and scored
    NoSolution,  // FRCEQR found no solution at this roughness (IERR 1, cleared)
    Abort,       // an error that ends the search, IERR set and reported
    ForceOnly    // pure force equilibrium: the force solution is the result
};

// The factors tried and the safety factors they gave, kept sorted by factor.
struct FactorTable {
    double factor[kMaxTable];
    double SF[kMaxTable];
    int count = 0;

    void add(double newFactor, double newSF) {
        if (count >= kMaxTable) return;
        factor[count] = newFactor;
        SF[count] = newSF;
        ++count;
        SORT2(count, 1, factor, SF);
        // The factors are the abscissas of the start-value interpolation: keep them distinct.
        for (int k = 0; k + 1 < count; ++k) {
            if (factor[k + 1] - factor[k] < kDistinctFactor) factor[k] -= kDistinctFactor;
        }
    }
};

struct Best {
    double factor = 0.0;
    double SF = 0.0;
    double score = kNoScore;
};

// Whether the moment solution failed at the last evaluation (MOMEQL's -1); set afresh by
// every evaluation and at every call, so it lives no longer than one search.
bool gMomentsFailed = false;

// One solution at R = factor * R0, starting the force iteration at startSF.
Outcome evaluate(double factor, double startSF) {
    gMomentsFailed = false;
    const int numSlices = MASTER.NUMSLC;
    MASTER.SF = startSF;
    for (int i = 1; i <= numSlices; ++i) SURF.R(i) = factor * SURF.R0(i);
    FRCEQR();
    if (MASTER.IERR >= 2 || (MASTER.METHOD < 0 && MASTER.IERR != 0)) {
        say(io::Line(" **** SR/RMULT : SR/FRCEQR ERROR   IERR=").Free(MASTER.IERR).str());
        return Outcome::Abort;
    }
    if (MASTER.METHOD < 0) return Outcome::ForceOnly;
    if (MASTER.IERR == 1) {
        MASTER.IERR = 0;
        return Outcome::NoSolution;
    }
    double A = 1.0, B = 0.0, C = 1.0 / MASTER.SF;
    MOMEQL(A, B, C);
    // Without a moment solution the force solution stays in the table; it is scored as it is
    // and the search goes on. Should it be the solution the search returns, the -1 is handed
    // on at the end.
    gMomentsFailed = MASTER.IERR == -1;
    MASTER.IERR = 0;
    SCORER();
    return Outcome::Solved;
}

// A solution that must be had (the single one, or the final one of a search): when the
// roughness is too high for any solution it is repeated without roughness.
Outcome evaluateOrSmooth(double& factor, double startSF) {
    Outcome outcome = evaluate(factor, startSF);
    if (outcome != Outcome::NoSolution) return outcome;
    sayLog(" **** SR/RMULT : TOO HIGH R ?   REPEATED WITH R=0.0");
    factor = 0.0;
    outcome = evaluate(factor, startSF);
    if (outcome != Outcome::NoSolution) return outcome;
    MASTER.IERR = 1;
    say(io::Line(" **** SR/RMULT : SR/FRCEQR ERROR   IERR=").Free(MASTER.IERR).str());
    return Outcome::Abort;
}

void judgeBest(Best& best, double factor) {
    const double score = MASTER.SCORE;
    bool better;
    if (score <= MASTER.EPS) {
        // Among perfect solutions the highest safety factor wins.
        better = best.score > MASTER.EPS || MASTER.SF >= best.SF;
    } else {
        // Later factors win near-ties.
        better = score - best.score <= kNearTie;
    }
    if (!better) return;
    best.factor = factor;
    best.SF = MASTER.SF;
    best.score = score;
}

void traceRow(double factor, const Best& best) {
    sayLog(io::Line()
               .F(factor, 9, 5)
               .F(MASTER.SF, 12, 7)
               .F(MASTER.SCORE, 11, 7)
               .F(best.factor, 11, 5)
               .F(best.score, 12, 7)
               .str());
}

}  // namespace

void RMULT() {
    MASTER.IERR = 0;
    gMomentsFailed = false;
    const int numSlices = MASTER.NUMSLC;
    if (numSlices < 1 || numSlices > MAXSLC) {
        MASTER.IERR = 1;
        return;
    }

    MASTER.SCORE = kNoScore;
    Best best;
    FactorTable table;
    double largestR0 = kNoRoughness;
    for (int i = 1; i <= numSlices; ++i) largestR0 = std::fmax(largestR0, std::abs(SURF.R0(i)));

    const bool single = MASTER.CRTSCR > kSearchOff || MASTER.METHOD < 0;
    double factor = 0.0;
    double lastFactor = 0.0;
    double step = 1.0;
    double passEnd = 1.0;
    int pass = 1;
    int risingScores = 0;
    bool finalEvaluation = false;

    if (single) {
        factor = 1.0;
    } else if (largestR0 < kZeroRoughness) {
        say(io::Line(" **** SR/RMULT : ZERO R0-VALUES  R0-MAX,CRTSCR=").Free(largestR0).Free(MASTER.CRTSCR).str());
        MASTER.IERR = 1;
    } else {
        // The first pass ends where the largest roughness reaches 1.
        passEnd = 1.0 / largestR0;
        step = kFirstStepShare * passEnd;
    }

    if (MASTER.IERR == 0) {
        if (MASTER.JPRINT > 1) {
            sayLog("SR/RMULT TRACE PRINT");
            sayLog("RFACTOR   SF-COMP    SCORE  RFACT.BEST  SCORE.BEST");
        }

        for (;;) {
            double startSF = kStartAboveSFTZ * MASTER.SFTZ;
            if (table.count >= 2) {
                int interpolationError = 0;
                INTPOL(table.count, 1, table.factor, table.SF, factor, startSF, interpolationError);
                if (interpolationError != 0) {
                    say(io::Line(" **** SR/RMULT : SR/INTPOL ERROR   IERR=").Free(interpolationError).str());
                    MASTER.IERR = interpolationError;
                    break;
                }
            }

            const double previousScore = MASTER.SCORE;
            Outcome outcome = single ? evaluateOrSmooth(factor, startSF) : evaluate(factor, startSF);
            lastFactor = factor;
            if (outcome == Outcome::Abort) break;
            if (outcome == Outcome::ForceOnly) return;
            if (single) break;

            bool passEnds = false;
            if (outcome == Outcome::NoSolution) {
                // Larger factors would be rougher still: the pass ends here.
                passEnds = true;
            } else if (MASTER.CRTSCR > MASTER.EPS && MASTER.SCORE < MASTER.CRTSCR) {
                best.factor = factor;
                best.SF = MASTER.SF;
                best.score = MASTER.SCORE;
                break;
            } else {
                table.add(factor, MASTER.SF);
                if (pass == 2 && factor >= best.factor && MASTER.SCORE != 0.0) {
                    // Scores that keep rising beyond the best factor will not come down again.
                    risingScores = MASTER.SCORE > previousScore ? risingScores + 1 : 0;
                    if (risingScores >= kRisingScores) passEnds = true;
                }
                if (!passEnds) {
                    judgeBest(best, factor);
                    if (MASTER.JPRINT > 1) traceRow(factor, best);
                    if (table.count == kFlatPoints && std::abs(table.SF[0] - table.SF[kFlatPoints - 1]) <= kFlatSF) {
                        // The roughness does not matter for this surface.
                        finalEvaluation = true;
                    } else if (factor + step < passEnd + kPassEndSlack) {
                        factor += step;
                        continue;
                    } else {
                        passEnds = true;
                    }
                }
            }

            if (!finalEvaluation && pass == 1) {
                pass = 2;
                step *= kFinerStep;
                factor = best.score < MASTER.EPS ? best.factor + step
                                                 : std::fmax(0.0, best.factor - kSecondPassBack * step);
                passEnd = factor + kSecondPassSteps * step;
                MASTER.SCORE = kNoScore;
                risingScores = 0;
                continue;
            }

            // The final solution at the best factor, taken as it comes.
            factor = best.factor;
            startSF = best.score < kNoScore ? best.SF : kStartAboveSFTZ * MASTER.SFTZ;
            evaluateOrSmooth(factor, startSF);
            lastFactor = factor;
            break;
        }
    }

    MASTER.RFACTOR = lastFactor;
    // The returned solution has no moment solution: its moment arms are those of an earlier
    // evaluation, so it is reported as the moment solution's failure, not checked.
    if (MASTER.IERR == 0 && gMomentsFailed) MASTER.IERR = -1;
    if (MASTER.JPRINT > 0) {
        sayLog(io::Line("  SR/RMULT  :  SF,SCORE,RFACTOR =").Free(MASTER.SF).Free(MASTER.SCORE).Free(MASTER.RFACTOR).str());
    }
}
