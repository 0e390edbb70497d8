// solver/solabc.cpp
//
// SOLABC — the three global equilibrium equations solved for A, B and C by iteration on C.
//
// For an assumed C the force equations (rows 1 and 2) are linear in A and B and give them;
// the moment equation (row 3) then gives a computed C. The assumed C is moved until the two
// agree: a first small step, then secants through the best point so far and the present one,
// kept inside [CMIN, CMAX]. When the secant fails (a C below 0.0001, or more than 100
// iterations) the C axis is scanned around the best C in ranges that narrow on every pass.
//
// Reads:  CC(3,6); A = CMIN and B = CMAX on entry; C = the start value; trace (> 0: trace
//         rows to the log file and the log-copy channel)
// Writes: A, B, C: the solution (or the values of the last iteration after an error)
// IERR:   0 ok; 2-7 degenerate equations (2 row 1 free of B and of A, 3 row 2 free of A with
//         row 1 free of A, 4 row 2 free of A and of B, 5 row 1 free of B with row 2 free of B,
//         6 the eliminated equation vanishes, 7 the moment equation is free of C); 40 more than
//         40 narrowing scans; 500 no agreement in 500 iterations; on any return a final C below
//         CMIN gives 101 and one above CMAX gives 102 instead

#include <cmath>

#include "io/fmt.h"
#include "solver/solver.h"

namespace {

constexpr double kTolerance = 1.0E-5f;
constexpr double kGuard = 1.0E-12f;
constexpr double kFirstStep = 0.0001f;
constexpr double kSmallestC = 0.0001f;
constexpr double kScanAcceptStep = 2.0E-5f;
constexpr double kScanShare = 0.05;
constexpr double kFirstFactor = 5.0;
constexpr double kLargestC = 10000.0;
constexpr double kInitialBestError = 1000.0;
constexpr int kMaxIterations = 500;
constexpr int kSecantIterations = 100;
constexpr int kScanStepsBeforeAccept = 100;
constexpr int kMaxRescans = 40;
constexpr int kScanIntervals = 20;  // 5 % of the range per step

// A and B from the two force equations at the assumed C. Returns 0 or the error code.
int solveForces(const EquationCoefficients& CC, double C, double& A, double& B) {
    const double a11 = C * CC(1, 4) + CC(1, 1);
    const double a12 = C * CC(1, 5) + CC(1, 2);
    const double b1 = C * CC(1, 3) + CC(1, 6);
    const double a21 = C * CC(2, 4) + CC(2, 1);
    const double a22 = C * CC(2, 5) + CC(2, 2);
    const double b2 = C * CC(2, 3) + CC(2, 6);
    if (std::fabs(a11) >= kGuard) {
        if (std::fabs(a22) >= kGuard) {
            const double d = a22 - a12 * a21 / a11;
            if (std::fabs(d) < kGuard) return 6;
            B = (b1 * a21 / a11 - b2) / d;
            A = -(B * a12 + b1) / a11;
            return 0;
        }
        if (std::fabs(a21) < kGuard) return 4;
        if (std::fabs(a12) < kGuard) return 5;
        A = -b2 / a21;
        B = -(A * a11 + b1) / a12;
        return 0;
    }
    if (std::fabs(a12) < kGuard) return 2;
    if (std::fabs(a21) < kGuard) return 3;
    B = -b1 / a12;
    A = -(B * a22 + b2) / a21;
    return 0;
}

}  // namespace

void SOLABC(int trace, int& IERR, const EquationCoefficients& CC, double& A, double& B, double& C) {
    IERR = 0;
    const double CMIN = A;
    const double CMAX = std::fmin(B, kLargestC);
    if (trace > 0) {
        sayLog(io::Line(" SR/SOLABC TRACE PRINT   CC.ASM MIN & MAX ==").Free(CMIN).Free(CMAX).str());
        sayLog(" ITER JUMP LOOP ISTART   CC-ASM     A-CAL     B-CAL    CC-CAL   CC-BEST  DEL.BEST");
    }

    double Cbest = C, DELbest = 0.0, errorBest = kInitialBestError;
    bool scanning = false;
    int scanSteps = 0;     // scan points evaluated in all
    int rescans = 0;       // narrowing scans started after the first
    int scanIndex = 0;     // position in the present scan, 0 .. kScanIntervals
    double scanFactor = kFirstFactor, scanLow = 0.0, scanHigh = 0.0;
    double previousScanDEL = 0.0;
    bool converged = false;

    for (int iteration = 1; iteration <= kMaxIterations && IERR == 0 && !converged; ++iteration) {
        IERR = solveForces(CC, C, A, B);
        if (IERR != 0) break;
        const double den = B * CC(3, 5) + A * CC(3, 4) + CC(3, 3);
        if (std::fabs(den) < kGuard) {
            IERR = 7;
            break;
        }
        const double Ccal = -(B * CC(3, 2) + A * CC(3, 1) + CC(3, 6)) / den;
        const double DEL = C - Ccal;
        const bool firstOfScan = scanning && scanIndex == 0;

        // The best point before this one is the second point of the secant.
        const double CbestBefore = Cbest, DELbestBefore = DELbest;
        if (std::fabs(DEL) < errorBest) {
            errorBest = std::fabs(DEL);
            Cbest = C;
            DELbest = DEL;
        }
        if (trace > 0) {
            sayLog(io::Line()
                           .I(iteration, 5)
                           .I(scanSteps, 5)
                           .I(rescans, 5)
                           .I(firstOfScan ? 1 : 0, 7)
                           .F(C, 10, 5)
                           .F(A, 10, 5)
                           .F(B, 10, 5)
                           .F(Ccal, 10, 5)
                           .F(Cbest, 10, 5)
                           .ES(errorBest, 10, 2)
                           .str());
        }

        if (std::fabs(Ccal - C) < kTolerance * std::fabs(C)) {
            converged = true;
            break;
        }

        if (scanning) {
            // A change of sign of C - Ccal between neighbouring points of a fine scan brackets
            // the solution closely enough.
            const double step = (scanHigh - scanLow) / kScanIntervals;
            if (scanSteps > kScanStepsBeforeAccept && !firstOfScan && DEL * previousScanDEL < 0.0 &&
                std::fabs(step) <= kScanAcceptStep) {
                converged = true;
                break;
            }
            previousScanDEL = DEL;
        } else {
            double next;
            if (iteration == 1) {
                next = DEL > 0.0 ? C - kFirstStep : C + kFirstStep;
            } else {
                double denominator = DELbestBefore - DEL;
                if (std::fabs(denominator) < kGuard) denominator = denominator < 0.0 ? -kGuard : kGuard;
                next = (C * DELbestBefore - DEL * CbestBefore) / denominator;
                if (next < CMIN) next = (CMIN + C + CbestBefore) / 3.0;
                else if (next > CMAX) next = (CMAX + C + CbestBefore) / 3.0;
            }
            if (next < kSmallestC || iteration > kSecantIterations) {
                scanning = true;
                scanFactor = kFirstFactor;
                scanLow = Cbest / scanFactor;
                scanHigh = Cbest * scanFactor;
                scanIndex = 0;
                C = scanLow;
                continue;
            }
            C = next;
            continue;
        }

        ++scanSteps;
        ++scanIndex;
        if (scanIndex > kScanIntervals) {
            ++rescans;
            if (rescans > kMaxRescans) {
                IERR = 40;
                break;
            }
            scanFactor = std::sqrt(scanFactor);
            scanLow = Cbest / scanFactor;
            scanHigh = Cbest * scanFactor;
            scanIndex = 0;
        }
        C = scanLow + (scanHigh - scanLow) * scanIndex / kScanIntervals;
    }
    if (IERR == 0 && !converged) IERR = kMaxIterations;

    if (C < CMIN) IERR = 101;
    else if (C > CMAX) IERR = 102;
}
