// solver/slv123.cpp
//
// SLV123 — safety factor from the moment equilibrium of the sliding body about a centre of
// rotation: Bishop simplified (METHOD 1), Bishop modified (2) and the 2003 method (3).
//
// The centre is the circle's own for a circular surface, else the centre of the circle through
// the start, the middle and the end of the shear surface. For an assumed factor SFASM every
// base normal force is found slice by slice, from the vertical balance of the slice alone
// (methods 1 and 2) or from its full force balance with the interslice roughness R =
// RFACTOR * R0 handed on from slice to slice (method 3). The moment of the base forces, the
// loads, the nail forces and the end-face shear about the centre then gives the factor SFCMP
// that balances it; SFASM is moved to SFCMP until the two agree, with ROOT3 finding the root
// of SFASM - SFCMP when that plain iteration does not settle. Each solution is sought from two
// start values, the second one lower, so that a lower root is not missed.
//
// Methods 2 and 3 are completed by the moment-equilibrium correction (MOMEQL) and scored
// (SCORER); a correction that fails or is implausible marks the solution with a factor above
// 500, which the driver drops. Method 3 solves for the roughness factors 0.0, 0.1, ... 1.0 and
// keeps the best of them: the highest factor among the perfect solutions, else the lowest
// score; that one is computed once more and returned. A combined analysis repeats each
// solution while bases change between drained and undrained failure. The vertical balance of
// the Bishop methods is balanceVertically. The full force balance of a slice (method 3) is the
// one of the force-equilibrium sweep (balanceSlices), slice by slice in its order of
// operations, so that the method's results do not change with the speed of its sweeps; a
// slice fails here when its divisor is not above EPS.
//
// Reads:  MASTER.NUMSLC, METHOD, IDEFTO, NTYP, JPRINT, EPS, SFTZ, NEGPOK (and SFMIN, SFMAX
//         through MOMEQL); SURF.SPAR(1..2) of a circle; SURF columns XX, ZZ, SINB, COSB, L34,
//         C2, C3, TAN2, TAN3, SU3, SS, HS, WX, WZ, WM, SNX, SNZ, SNM, R0, E1(1), T1(1); ISUR.MODE
// Writes: MASTER.SF, SCORE, RFACTOR, IERR; SURF columns P, S1, S2, S; R, E2, T2 and E1, T1 of
//         slices 2.. (method 3); E1, E2, T1, T2, R, H1, H2, H3 zeroed (method 1); through
//         MOMEQL the corrected solution (methods 2, 3); ISUR.MODE (combined analysis); the
//         once-per-run note of a failed centre
// IERR:   0 solved, also when the solution is marked rejected (SF 511.111 ... 777.777);
//         1 no factor within 100 iterations, a vanishing moment of the normal forces, more
//         than 25 vanishing normal-force divisors, or no slices; the code of ROOT3 other than
//         2; the code of EQUAT2 other than 2

#include <cmath>

#include "io/fmt.h"
#include "slices/slices.h"
#include "solver/slicebalance.h"
#include "solver/solver.h"

namespace {

constexpr double kMarkerLargeCorrection = 666.666f;
constexpr double kMarkerNoMoment = 555.555f;
constexpr double kMarkerBelowSFTZ = 511.111f;
constexpr double kMarkerNegativeP = 522.222f;
constexpr double kMarkerNoRoot = 777.777f;
constexpr double kScoreRejected = 5.555f;
constexpr double kScoreBelowSFTZ = 5.111f;
constexpr double kScoreNegativeP = 5.222f;
constexpr double kScoreSimplified = 8.888f;
constexpr double kRestartAbove = 1.02f;
constexpr double kRootAboveDivisorLimit = 1.01f;
constexpr double kNearDivisorLimit = 1.1f;
constexpr double kSecondStartNeeded = 0.95f;
constexpr double kRoughStep = 0.1f;
constexpr double kRoughBeforeFirst = -0.1f;
constexpr double kConverged = 5.0E-5f;
constexpr double kSameRoot = 0.001f;
constexpr double kModesSettled = 0.01f;
constexpr double kFirstStart = 1.5;
constexpr double kRangeFirstStart = 3.0;
constexpr double kRangeSecondStart = 2.0;
constexpr double kLargeCorrection = 5.0;
constexpr double kNoScore = 1.0E6;
constexpr int kMaxIterations = 100;
constexpr int kMaxDivisorEvents = 25;
constexpr int kEarlyIterations = 5;
constexpr int kRoughPasses = 11;
constexpr int kMaxCombinedPasses = 5;
constexpr int kMaxModeChanges = 2;

// The first failure of the centre construction in a run is reported, later ones are not.
bool gCentreWarningGiven = false;

void logLine(std::string_view text) { io::writeLine(MASTER.NF18, text); }

// Moment arms of the base forces of every slice about the centre, and the moments of the
// loads, of the nail forces and of the end-face shear.
struct Rotation {
    double XC = 0.0, ZC = 0.0;
    double armP[MAXSLC];
    double armS[MAXSLC];
    double MW = 0.0, MN = 0.0, MSS = 0.0;
};

// How one attempt ended.
enum class End {
    Done,    // a safety factor was found
    NoRoot,  // ROOT3 found no usable root: the pass is marked and ends
    GiveUp,  // no factor, but an earlier roughness pass has one: go to the choice of the pass
    Error    // IERR set and reported: SLV123 returns
};

struct Counters {
    int LOOP1 = 0, ITRCMB = 0, LOOP2 = 0;
};

void findCentre(Rotation& rot) {
    const int numSlices = MASTER.NUMSLC;
    if (MASTER.NTYP == 2) {
        rot.XC = SURF.SPAR(1);
        rot.ZC = SURF.SPAR(2);
        return;
    }
    int middle = (numSlices + 1) / 2;
    if (middle < 2) middle = 2;
    if (middle > numSlices) middle = numSlices;
    const double X[3] = {SURF.XX(4, 1), SURF.XX(4, middle), SURF.XX(3, numSlices)};
    const double Z[3] = {SURF.ZZ(4, 1), SURF.ZZ(4, middle), SURF.ZZ(3, numSlices)};
    double radius = 0.0;
    int circleError = 0;
    CIRC3P(X, Z, rot.XC, rot.ZC, radius, circleError);
    if (circleError == 0) return;
    if (!gCentreWarningGiven) {
        gCentreWarningGiven = true;
        logLine(io::Line(" **** Warning from SR/SLV123 : SR/CIRC3P error  IERR=").Free(circleError).str());
    }
    // Above the middle of the surface, as high as the surface is long.
    rot.XC = SURF.XX(4, middle);
    rot.ZC = SURF.ZZ(4, middle) - (SURF.XX(3, numSlices) - SURF.XX(4, 1));
}

void prepareMoments(Rotation& rot) {
    const double XC = rot.XC, ZC = rot.ZC;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        // The base point below the load point.
        const double xb = SURF.XX(5, i);
        const double baseWidth = SURF.XX(3, i) - SURF.XX(4, i);
        const double zb = std::abs(baseWidth) > MASTER.EPS
                              ? SURF.ZZ(4, i) + (SURF.ZZ(3, i) - SURF.ZZ(4, i)) * (xb - SURF.XX(4, i)) / baseWidth
                              : (SURF.ZZ(3, i) + SURF.ZZ(4, i)) * 0.5;
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        rot.armP[i - 1] = (zb - ZC) * sinb - (XC - xb) * cosb;
        rot.armS[i - 1] = -(zb - ZC) * cosb - (XC - xb) * sinb;
        const double xLoad = XC - SURF.XX(5, i), zLoad = SURF.ZZ(5, i) - ZC;
        rot.MW += xLoad * SURF.WZ(i) + zLoad * SURF.WX(i) + SURF.WM(i);
        rot.MN += xLoad * SURF.SNZ(i) + zLoad * SURF.SNX(i) + SURF.SNM(i);
        rot.MSS -= ((XC - xb) * sinb + (zb - SURF.HS(i) / cosb - ZC) * cosb) * SURF.SS(i);
    }
}

// The largest safety factor at which the normal-force divisor of some slice vanishes (0 when
// none does). Returns false on an error of EQUAT2 (IERR set).
bool divisorLimit(int method, double& SFDIVZ) {
    SFDIVZ = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        double candidate = 0.0;
        if (method != 3) {
            if (!undrainedSliceBase(i)) candidate = -sinb * SURF.TAN3(i) / cosb;
        } else {
            const double R = MASTER.RFACTOR * SURF.R0(i);
            if (undrainedSliceBase(i)) {
                candidate = -R * SURF.TAN2(i) * sinb / cosb;
            } else {
                // The divisor of the slice balance as a quadratic in x = 1/F.
                const double a = R * SURF.TAN2(i) * SURF.TAN3(i) * cosb;
                const double b = -(R * SURF.TAN2(i) + SURF.TAN3(i)) * sinb;
                const double c = -cosb;
                double x1 = 0.0, x2 = 0.0;
                int rootError = 0;
                EQUAT2(a, b, c, x1, x2, rootError);
                if (rootError != 0 && rootError != 2) {
                    logLine(io::Line(" **** SR/SLV123 : Error from SR/EQUAT2 N,A,B,C,IERR")
                                .Free(i)
                                .Free(a)
                                .Free(b)
                                .Free(c)
                                .Free(rootError)
                                .str());
                    MASTER.IERR = rootError;
                    return false;
                }
                if (rootError == 0) {
                    double x = x1 * x2 >= 0.0 ? std::fmin(x1, x2) : std::fmax(x1, x2);
                    if (std::abs(x) < MASTER.EPS) x = x < 0.0 ? -MASTER.EPS : MASTER.EPS;
                    candidate = 1.0 / x;
                }
            }
        }
        if (candidate > SFDIVZ) SFDIVZ = candidate;
    }
    return true;
}


// Base and interslice forces of every slice at F from its full force balance, the face-2
// shear being R = RFACTOR * R0 of the available one; the forces on the exit face of a slice
// act on the entry face of the next.
int sweepRough(const SliceCoefficients& coefficients, double F, double& divisor) {
    return balanceSlices(coefficients, F, SURF.R0.data(), MASTER.RFACTOR, DivisorRule::AtMostEps, divisor);
}

// The moment of the loads and the base normal forces about the centre (SUMPM), and the
// moment of the base shear forces (SUM5), of slices 1..n (within 1..MAXSLC). Kept out of the
// iteration so that the two sums stay in registers.
[[gnu::noinline]] void momentSums(const Rotation& rot, int n, double& SUMPM, double& SUM5) {
    const double* normalForce = SURF.P.data();
    const double* baseShear = SURF.S.data();
    double normalMoment = rot.MW;
    double shearMoment = 0.0;
    for (int k = 0; k < n; ++k) {
        normalMoment += rot.armP[k] * normalForce[k];
        shearMoment += rot.armS[k] * baseShear[k];
    }
    SUMPM = normalMoment;
    SUM5 = shearMoment;
}

// Solves SFASM = SFCMP from one start value. SF1 is the result of the first start when this
// is the second one (LOOP2 = 2). smallestTried is the lowest SFASM whose moment was taken.
End iterate(int method, const Rotation& rot, const SliceCoefficients& coefficients, const Counters& at, double start,
            double SFDIVZ, double SF1, bool anyPassSolved, double& result, double& smallestTried) {
    const int numSlices = MASTER.NUMSLC;
    const bool traceIterations = MASTER.JPRINT >= 3;
    double tried[kMaxIterations];
    double residual[kMaxIterations];
    int numTried = 0;
    int divisorEvents = 0;
    double SFASM = start;
    smallestTried = kNoScore;

    if (traceIterations) logLine(" LOOP1 ITRCMB LOOP2ITER    SFASM     SFCMP    SFDIVZ     DIV");
    for (int ITER = 1;; ++ITER) {
        if (ITER > kMaxIterations) {
            if (anyPassSolved) return End::GiveUp;
            logLine(io::Line(" **** SR/SLV123 : Max iterations LOOP1,ITRCMB,LOOP2,ITER==")
                        .Free(at.LOOP1)
                        .Free(at.ITRCMB)
                        .Free(at.LOOP2)
                        .Free(ITER - 1)
                        .str());
            MASTER.IERR = 1;
            return End::Error;
        }

        double divisor = 0.0;
        const int failedSlice = method == 3 ? sweepRough(coefficients, SFASM, divisor) : balanceVertically(coefficients, SFASM, divisor);
        if (failedSlice != 0) {
            // The assumed factor is at or below the limit where a base cannot carry its load:
            // push it up and repeat the iteration.
            ++divisorEvents;
            if (divisorEvents > kMaxDivisorEvents) {
                logLine(" **** SR/SLV123 : P-force zero division attempted");
                logLine(io::Line("LOOP1,ITRCMB,LOOP2,ITER,LOOP3,NS,SFASM,DIV =")
                            .Free(at.LOOP1)
                            .Free(at.ITRCMB)
                            .Free(at.LOOP2)
                            .Free(ITER)
                            .Free(failedSlice)
                            .Free(numSlices)
                            .Free(SFASM)
                            .Free(divisor)
                            .str());
                MASTER.IERR = 1;
                return End::Error;
            }
            logLine(io::Line(method == 3 ? " SR/SLV123-92 : LOOP1,ITRCMB,LOOP2,ITER,LOOP3,NS,"
                                         : " SR/SLV123-91 : LOOP1,ITRCMB,LOOP2,ITER,LOOP3,NS,")
                        .A("SFASM,SFDIVZ")
                        .Free(at.LOOP1)
                        .Free(at.ITRCMB)
                        .Free(at.LOOP2)
                        .Free(ITER)
                        .Free(failedSlice)
                        .Free(numSlices)
                        .Free(SFASM)
                        .Free(SFDIVZ)
                        .str());
            SFASM = 1.0 / (ITER - 1 > 1 ? ITER - 1 : 1) + std::fmax(SFASM, SFDIVZ);
            --ITER;
            continue;
        }

        double SUMPM = 0.0;
        double SUM5 = 0.0;
        momentSums(rot, numSlices, SUMPM, SUM5);
        // The smallest divisor of the vertical balance is only shown in the trace print.
        double smallestDivisor = kNoScore;
        if (method != 3 && traceIterations) {
            for (int i = 1; i <= numSlices; ++i) {
                const double D = undrainedSliceBase(i) ? SURF.COSB(i) : SURF.SINB(i) * SURF.TAN3(i) / SFASM + SURF.COSB(i);
                smallestDivisor = std::fmin(smallestDivisor, D);
            }
        }
        if (std::abs(SUMPM) < MASTER.EPS) {
            if (anyPassSolved) return End::GiveUp;
            logLine(" **** SR/SLV123 : SFCMP zero division attempted");
            logLine(io::Line("LOOP1,ITRCMB,LOOP2,ITER,SFASM,SUM5,SUMPM ==")
                        .Free(at.LOOP1)
                        .Free(at.ITRCMB)
                        .Free(at.LOOP2)
                        .Free(ITER)
                        .Free(SFASM)
                        .Free(SUM5)
                        .Free(SUMPM)
                        .str());
            MASTER.IERR = 1;
            return End::Error;
        }
        const double SFCMP = -(SUM5 * SFASM + rot.MN + rot.MSS) / SUMPM;
        if (traceIterations) {
            logLine(io::Line()
                        .I(at.LOOP1, 6)
                        .I(at.ITRCMB, 7)
                        .I(at.LOOP2, 6)
                        .I(ITER, 4)
                        .F(SFASM, 9, 4)
                        .F(SFCMP, 10, 4)
                        .F(SFDIVZ, 10, 4)
                        .ES(method != 3 ? smallestDivisor : 0.0, 11, 3)
                        .str());
        }

        tried[numTried] = SFASM;
        residual[numTried] = SFASM - SFCMP;
        ++numTried;
        smallestTried = std::fmin(smallestTried, SFASM);
        if (std::abs(SFASM - SFCMP) <= kConverged) {
            result = SFASM;
            return End::Done;
        }

        if (ITER > kEarlyIterations || SFCMP < kNearDivisorLimit * SFDIVZ) {
            const double XMIN = kRootAboveDivisorLimit * SFDIVZ;
            const double XMAX = at.LOOP2 == 1 ? kRangeFirstStart * MASTER.SFTZ : kRangeSecondStart * SF1;
            double root = 0.0;
            int rootError = 0;
            ROOT3(numTried, traceIterations ? 1 : 0, tried, residual, XMIN, XMAX, root, rootError);
            if (rootError == 2) return End::NoRoot;
            if (rootError != 0) {
                logLine(io::Line(" **** SR/SLV123 : Error return from SR/ROOT3  ITER")
                            .Free(ITER)
                            .A("IERR ==")
                            .Free(rootError)
                            .str());
                MASTER.IERR = rootError;
                return End::Error;
            }
            // The second start looks for a root below the first one: a computed factor that
            // points there is followed directly.
            if (at.LOOP2 == 1 || SFCMP <= SFASM || SFCMP >= SF1) SFASM = root;
            else SFASM = SFCMP;
        } else {
            SFASM = SFCMP;
        }
    }
}

struct PassResult {
    End end = End::Done;
    double momentSF = 0.0;  // the factor of the moment iteration
    double A = 1.0, B = 0.0;
    const char* marker = " ";
};

// One roughness pass: the moment iteration from two start values, the moment-equilibrium
// correction and its judgement, repeated while bases change their failure mode.
PassResult solvePass(int method, const Rotation& rot, SliceCoefficients& coefficients, Counters at, bool finalPass,
                     double finalStart, bool anyPassSolved, bool& havePrevious, double& previousSolution) {
    PassResult pass;
    int NUMCHG = 0;
    double SFLAST = 0.0;
    for (at.ITRCMB = 1;; ++at.ITRCMB) {
        double SFDIVZ = 0.0;
        if (!divisorLimit(method, SFDIVZ)) {
            pass.end = End::Error;
            return pass;
        }
        const double lowest = std::fmax(SFDIVZ, MASTER.SFTZ);

        at.LOOP2 = 1;
        double start = kFirstStart * lowest;
        if (finalPass && at.ITRCMB == 1) start = finalStart;
        else if (havePrevious) start = kRestartAbove * previousSolution;
        double SF1 = 0.0, smallestTried = 0.0;
        pass.end = iterate(method, rot, coefficients, at, start, SFDIVZ, 0.0, anyPassSolved, SF1, smallestTried);
        if (pass.end != End::Done) break;

        double SF2 = SF1;
        if (!(smallestTried < kSecondStartNeeded * SF1)) {
            at.LOOP2 = 2;
            double unused = 0.0;
            pass.end = iterate(method, rot, coefficients, at, (SF1 + lowest) * 0.5, SFDIVZ, SF1, anyPassSolved, SF2, unused);
            if (pass.end != End::Done) break;
        }
        pass.marker = " ";
        if (std::abs(SF1 - SF2) <= kSameRoot) {
            MASTER.SF = (SF1 + SF2) * 0.5;
        } else {
            MASTER.SF = SF1;
            pass.marker = "#";
        }
        pass.momentSF = MASTER.SF;
        previousSolution = MASTER.SF;
        havePrevious = true;
        MASTER.SCORE = kScoreSimplified;

        pass.A = 1.0;
        pass.B = 0.0;
        if (method != 1) {
            double C = 1.0 / MASTER.SF;
            MOMEQL(pass.A, pass.B, C);
            const bool momentFailed = MASTER.IERR != 0;
            SCORER();
            bool negativeP = false;
            for (int i = 1; i <= MASTER.NUMSLC; ++i) negativeP = negativeP || SURF.P(i) < 0.0;
            if (std::abs(pass.A) + std::abs(pass.B) > kLargeCorrection) {
                MASTER.SF = kMarkerLargeCorrection;
                MASTER.SCORE = kScoreRejected;
                pass.marker = "*";
            } else if (momentFailed) {
                MASTER.IERR = 0;
                MASTER.SF = kMarkerNoMoment;
                MASTER.SCORE = kScoreRejected;
                pass.marker = "$";
            } else if (finalPass) {
                // The chosen solution is taken as it is.
            } else if (1.0 / C < MASTER.SFTZ) {
                MASTER.SF = kMarkerBelowSFTZ;
                MASTER.SCORE = kScoreBelowSFTZ;
                pass.marker = "@";
            } else if (negativeP && MASTER.NEGPOK == 0) {
                MASTER.SF = kMarkerNegativeP;
                MASTER.SCORE = kScoreNegativeP;
                pass.marker = "\xC2\xA4";
            }
        }

        if (MASTER.IDEFTO != 3) break;
        if (at.ITRCMB == kMaxCombinedPasses) {
            if (std::abs(MASTER.SF - SFLAST) / MASTER.SF >= kModesSettled || NUMCHG > kMaxModeChanges) {
                logLine(" **** SR/SLV123 : Combined analysis non-convergence");
                logLine(io::Line("  LOOP1,ITRCMB,NUMCHG,SF,SFLAST ==")
                            .Free(at.LOOP1)
                            .Free(at.ITRCMB)
                            .Free(NUMCHG)
                            .Free(MASTER.SF)
                            .Free(SFLAST)
                            .str());
            }
            break;
        }
        SFLAST = MASTER.SF;
        NUMCHG = 0;
        CHKCMB(NUMCHG);
        if (NUMCHG == 0) break;
        // Bases changed between drained and undrained failure: their coefficients with them.
        coefficients.take(MASTER.NUMSLC);
    }
    if (pass.end == End::NoRoot) {
        MASTER.SF = kMarkerNoRoot;
        MASTER.SCORE = kScoreRejected;
    }
    return pass;
}

void tracePass(int LOOP1, const PassResult& pass) {
    logLine(io::Line()
                .I(LOOP1, 7)
                .F(MASTER.RFACTOR, 11, 4)
                .F(pass.momentSF, 12, 7)
                .F(pass.A, 9, 4)
                .F(pass.B, 8, 4)
                .F(MASTER.SF, 13, 7)
                .F(MASTER.SCORE, 11, 7)
                .A(" ")
                .A(pass.marker)
                .str());
}

}  // namespace

void resetSlv123Note() { gCentreWarningGiven = false; }

void SLV123() {
    MASTER.IERR = 0;
    const int numSlices = MASTER.NUMSLC;
    const int method = MASTER.METHOD;
    if (numSlices < 1 || numSlices > MAXSLC) {
        MASTER.IERR = 1;
        return;
    }
    if (method == 1) {
        // The simplified method has no interslice forces at all.
        clearInterslice(numSlices);
    }

    Rotation rot;
    findCentre(rot);
    prepareMoments(rot);
    // What the slice balance takes from the slices stays the same from pass to pass, as long as
    // no base changes its failure mode.
    SliceCoefficients coefficients;
    coefficients.take(numSlices);

    const bool tracePasses = MASTER.JPRINT >= 2;
    if (tracePasses) logLine(" Trace print from SR/SLV123");

    const int roughPasses = method == 3 ? kRoughPasses : 1;
    double passSF[kRoughPasses], passScore[kRoughPasses], passFactor[kRoughPasses];
    int numPasses = 0;
    bool havePrevious = false;
    double previousSolution = 0.0;
    MASTER.SCORE = 1.0;
    MASTER.RFACTOR = kRoughBeforeFirst;
    Counters at;
    for (at.LOOP1 = 1; at.LOOP1 <= roughPasses; ++at.LOOP1) {
        MASTER.RFACTOR += kRoughStep;
        const PassResult pass =
            solvePass(method, rot, coefficients, at, false, 0.0, numPasses > 0, havePrevious, previousSolution);
        if (pass.end == End::Error) return;
        if (pass.end == End::GiveUp) break;
        if (tracePasses) {
            if (at.LOOP1 == 1) logLine("  LOOP1   R.FACTOR   SF.MOM     A       B      SF.ALL" "    SCORE");
            tracePass(at.LOOP1, pass);
        }
        if (method != 3) return;
        passSF[numPasses] = MASTER.SF;
        passScore[numPasses] = MASTER.SCORE;
        passFactor[numPasses] = MASTER.RFACTOR;
        ++numPasses;
    }

    // The roughness factor of the best pass: among perfect solutions the highest factor of
    // safety, else the lowest score; later passes win ties.
    int chosen = 0;
    bool anyPerfect = false;
    for (int k = 0; k < numPasses; ++k) anyPerfect = anyPerfect || passScore[k] < MASTER.EPS;
    for (int k = 1; k < numPasses; ++k) {
        if (anyPerfect) {
            if (passScore[k] > MASTER.EPS) continue;
            if (passScore[chosen] > MASTER.EPS || passSF[k] >= passSF[chosen]) chosen = k;
        } else if (passScore[k] <= passScore[chosen]) {
            chosen = k;
        }
    }

    // The chosen pass once more; a failure now is an error, there is nothing to fall back on.
    MASTER.RFACTOR = passFactor[chosen];
    at.LOOP1 = roughPasses + 1;
    const PassResult pass =
        solvePass(method, rot, coefficients, at, true, passSF[chosen], false, havePrevious, previousSolution);
    if (pass.end == End::Error) return;
    if (tracePasses) tracePass(at.LOOP1, pass);
}
