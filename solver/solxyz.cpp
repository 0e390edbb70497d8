// solver/solxyz.cpp
//
// SOLXYZ — the three global equilibrium equations solved for X, Y and Z (= A, B, C) by a
// scan over Z.
//
// Without base friction (columns 4 and 5 negligible) the equations are linear in X, Y, Z and
// are solved directly. Otherwise, for an assumed Z, the moment equation is added to each
// force equation and the two sums are solved for X and Y; the sum of the absolute residuals of
// the three equations (SUMERR) measures how far Z is from a solution. Z is scanned in nine
// steps from ZMIN to ZMAX, then the least SUMERR of the table is refined by halving the
// interval to its left and to its right neighbour in turn, until SUMERR is small enough.
//
// Reads:  CC(3,6); ZMIN, ZMAX: the admissible range of Z; trace: 0, or the channel of the
//         log file for trace prints
// Writes: X, Y, Z; messages to the log file
// IERR:   0 ok; -1 the linear solver failed; 1-5 degenerate force equations at some Z (see
//         solvePair), 6 Y vanishes, 7 the two values of Y disagree; 10 / 11 the solution has
//         Z below the range searched (ZMIN, or half of it after the restart) / above ZMAX
//         (X, Y, Z are returned all the same); 12 no solution
//         within 100 points; 13 / 14 the least residual lies at the first / last point of
//         the table

#include <cmath>

#include "io/channels.h"
#include "io/fmt.h"
#include "solver/solver.h"

namespace {

constexpr double kAccept = 0.05f;
constexpr double kYAgreement = 1.0E-6f;
constexpr double kGuard = 1.0E-12f;
constexpr double kInitialBest = 1.0E6;
constexpr int kScanIntervals = 9;
constexpr int kScanPoints = kScanIntervals + 1;
constexpr int kMaxPoints = 100;

// X and Y at the assumed Z from the force equations, each with the moment equation added:
//   a11 X + a12 Y + b1 = 0,  a21 X + a22 Y + b2 = 0.
// The elimination takes the path the vanishing coefficients leave open: 1 the first sum is
// free of X and of Y, 2 the first sum is free of X and the second of X too, 3 the second sum
// is free of Y and of X, 4 the second sum is free of Y and the first of Y too, 5 the
// eliminated equation vanishes. Y is then taken from every sum that contains it, as the mean
// of the values when both do: 6 when it vanishes, 7 when the two values disagree.
int solvePair(const EquationCoefficients& CC, double Z, double& X, double& Y) {
    double a[3][2], b[3];
    for (int e = 1; e <= 3; ++e) {
        a[e - 1][0] = CC(e, 1) + Z * CC(e, 4);
        a[e - 1][1] = CC(e, 2) + Z * CC(e, 5);
        b[e - 1] = Z * CC(e, 3) + CC(e, 6);
    }
    const double a11 = a[0][0] + a[2][0], a12 = a[0][1] + a[2][1], b1 = b[0] + b[2];
    const double a21 = a[1][0] + a[2][0], a22 = a[1][1] + a[2][1], b2 = b[1] + b[2];
    if (std::fabs(a11) >= kGuard) {
        if (std::fabs(a22) >= kGuard) {
            const double d = a22 - a12 * a21 / a11;
            if (std::fabs(d) < kGuard) return 5;
            const double eliminatedY = (b1 * a21 / a11 - b2) / d;
            X = -(eliminatedY * a12 + b1) / a11;
        } else {
            if (std::fabs(a21) < kGuard) return 3;
            if (std::fabs(a12) < kGuard) return 4;
            X = -b2 / a21;
        }
    } else {
        if (std::fabs(a12) < kGuard) return 1;
        if (std::fabs(a21) < kGuard) return 2;
        const double firstY = -b1 / a12;
        X = -(firstY * a22 + b2) / a21;
    }
    const bool fromFirst = std::fabs(a12) >= kGuard;
    const bool fromSecond = std::fabs(a22) >= kGuard;
    const double yFirst = fromFirst ? -(a11 * X + b1) / a12 : 0.0;
    const double ySecond = fromSecond ? -(a21 * X + b2) / a22 : 0.0;
    Y = fromFirst && fromSecond ? (yFirst + ySecond) * 0.5 : (fromFirst ? yFirst : ySecond);
    if (std::fabs(Y) < kGuard) return 6;
    if (fromFirst && fromSecond && std::fabs(yFirst - ySecond) > kYAgreement * std::fabs(Y)) return 7;
    return 0;
}

double sumOfResiduals(const EquationCoefficients& CC, double X, double Y, double Z) {
    double sum = 0.0;
    for (int e = 1; e <= 3; ++e)
        sum += std::fabs(X * CC(e, 1) + Y * CC(e, 2) + Z * (CC(e, 3) + X * CC(e, 4) + Y * CC(e, 5)) + CC(e, 6));
    return sum;
}

void traceCoefficients(int trace, const EquationCoefficients& CC, double ZMIN, double ZMAX) {
    io::writeLine(trace, " SR/SOLXYZ trace print");
    io::writeLine(trace, " C-Coefficients");
    for (int e = 1; e <= 3; ++e) {
        io::Line row;
        for (int j = 1; j <= 6; ++j) row.ES(CC(e, j), 13, 4);
        io::writeLine(trace, row.str());
    }
    io::writeLine(trace, io::Line(" Allowed range : ZMIN =").Free(ZMIN).A("  ZMAX =").Free(ZMAX).str());
    io::writeLine(trace, "  ITER    Z.ASM    X.CMP    Y.CMP     SUMERR    Z.BEST     ERRBEST");
}

void solveLinear(int trace, const EquationCoefficients& CC, double ZMIN, double ZMAX, double& X, double& Y,
                 double& Z, int& IERR) {
    const int log = MASTER.NF18;
    double rhs[3], solution[3], work[12];
    for (int e = 1; e <= 3; ++e) rhs[e - 1] = -CC(e, 6);
    // Columns 1 to 3 of CC are the first nine values of its column-by-column storage.
    int linearError = 0;
    LINEQ(rhs, CC.column(1), solution, work, 3, 4, linearError);
    if (linearError != 0) {
        io::writeLine(log, io::Line(" **** SR/SOLXYZ : Error from SR/LINEQ  IERR=").Free(linearError).str());
        IERR = -1;
        return;
    }
    X = solution[0];
    Y = solution[1];
    Z = solution[2];
    if (trace != 0) {
        io::writeLine(trace, " SR/SOLXYZ trace print for zero shear surface friction angle");
        io::writeLine(trace, "    X        Y        Z        FoS");
        io::writeLine(trace, io::Line().F(X, 9, 4).F(Y, 9, 4).F(Z, 9, 4).F(Z != 0.0 ? 1.0 / Z : 0.0, 9, 4).str());
    }
    if (Z < ZMIN) IERR = 10;
    else if (Z > ZMAX) IERR = 11;
    if (IERR != 0) io::writeLine(log, io::Line(" **** SR/SOLXYZ : Non-accepted linear solution  IERR=").Free(IERR).str());
}

}  // namespace

void SOLXYZ(int trace, const EquationCoefficients& CC, double ZMIN, double ZMAX, double& X, double& Y, double& Z,
            int& IERR) {
    IERR = 0;
    const int log = MASTER.NF18;
    double friction = 0.0;
    for (int e = 1; e <= 3; ++e) friction += std::fabs(CC(e, 4)) + std::fabs(CC(e, 5));
    if (friction <= kGuard) {
        solveLinear(trace, CC, ZMIN, ZMAX, X, Y, Z, IERR);
        return;
    }
    if (trace != 0) traceCoefficients(trace, CC, ZMIN, ZMAX);

    // The table of evaluated points, sorted by Z once the first scan is complete.
    double tableZ[kMaxPoints], tableErr[kMaxPoints];
    int points = 0;
    double scanStart = ZMIN;
    bool restarted = false;
    double Zbest = 0.0, errorBest = kInitialBest;
    bool towardsLeft = true;

    for (int evaluation = 1; evaluation <= kMaxPoints; ++evaluation) {
        double Zassumed;
        if (points < kScanPoints) {
            Zassumed = scanStart + (ZMAX - scanStart) * points / kScanIntervals;
        } else {
            int least = 1;
            for (int k = 2; k <= points; ++k)
                if (tableErr[k - 1] < tableErr[least - 1]) least = k;
            if (least == 1 || least == points) {
                IERR = least == 1 ? 13 : 14;
                io::writeLine(log, io::Line(" **** SR/SOLXYZ : Iterative solution problem  IERR=").Free(IERR).str());
                return;
            }
            const int neighbour = towardsLeft ? least - 1 : least + 1;
            towardsLeft = !towardsLeft;
            Zassumed = (tableZ[least - 1] + tableZ[neighbour - 1]) * 0.5;
        }

        double Xcomputed = 0.0, Ycomputed = 0.0;
        const int pairError = solvePair(CC, Zassumed, Xcomputed, Ycomputed);
        if (pairError != 0) {
            IERR = pairError;
            io::writeLine(log, io::Line(" **** SR/SOLXYZ : Equation solving problem IERR=").Free(IERR).str());
            return;
        }
        const double SUMERR = sumOfResiduals(CC, Xcomputed, Ycomputed, Zassumed);
        if (SUMERR < errorBest) {
            errorBest = SUMERR;
            Zbest = Zassumed;
        }
        if (trace != 0) {
            io::writeLine(trace, io::Line()
                                     .I(evaluation, 6)
                                     .F(Zassumed, 9, 5)
                                     .F(Xcomputed, 9, 4)
                                     .F(Ycomputed, 9, 4)
                                     .ES(SUMERR, 11, 3)
                                     .F(Zbest, 10, 5)
                                     .ES(errorBest, 12, 3)
                                     .str());
        }

        if (SUMERR <= kAccept) {
            X = Xcomputed;
            Y = Ycomputed;
            Z = Zassumed;
            // After the restart the range searched begins at half of ZMIN: a root found there
            // is the answer the restart was made for.
            if (Z < scanStart) IERR = 10;
            else if (Z > ZMAX) IERR = 11;
            if (IERR != 0)
                io::writeLine(log, io::Line(" **** SR/SOLXYZ : Non-accepted solution X,Y,Z==").Free(X).Free(Y).Free(Z).str());
            return;
        }

        // Insert into the table, keeping it sorted by Z.
        int at = points + 1;
        while (at > 1 && tableZ[at - 2] > Zassumed) {
            tableZ[at - 1] = tableZ[at - 2];
            tableErr[at - 1] = tableErr[at - 2];
            --at;
        }
        tableZ[at - 1] = Zassumed;
        tableErr[at - 1] = SUMERR;
        ++points;

        // A residual that grows from the first point to the second points below ZMIN: the
        // scan starts once more from half of it.
        if (points == 2 && !restarted && tableErr[1] >= tableErr[0]) {
            restarted = true;
            scanStart = 0.5 * scanStart;
            points = 0;
        }
    }
    IERR = 12;
    io::writeLine(log, " **** SR/SOLXYZ : Max iterations reached");
}
