// solver/momeql.cpp
//
// MOMEQL — moment equilibrium added to a force-equilibrium solution of the slice system.
//
// The base normal forces P of a force-equilibrium solution are corrected by a factor that
// varies linearly along the surface, P'(i) = (A + B w(i)) P(i), w running from 0 at the start
// of the surface to 1 at its end. Horizontal and vertical force and the moment of the whole
// sliding body then give three equations for A, B and C = 1/F (coefficients CC, see
// EquationCoefficients), solved by SOLABC and, when that fails or gives a factor below SFTZ,
// by SOLXYZ. With the accepted A, B, C every slice is balanced again from the entry to the
// exit: its base forces, the interslice forces it hands on, the roughness they imply and the
// heights at which the interslice forces act (from the moment of the slice about its base
// corner 3).
//
// The first surfaces of a run with METHOD = 0 may prompt the question whether all
// force-equilibrium solutions are to be kept unchanged (few slices, or no interslice roughness
// given); the answer holds for the whole run.
//
// Reads:  MASTER.SF, IDTYP, IDEFTO, METHOD, JPRINT, EPS, E2TOL, SFMIN, SFMAX, SFTZ, R1, R2, R3,
//         NUMSLC, NFIN, IERR (the batch answer); SURF columns P, SINB, COSB, L34, C3, TAN3,
//         SU3, SS, HS, WX, WZ, WM, SNX, SNZ, SNM, C2, TAN2, E1(1), T1(1), H1(1), H30, XX, ZZ;
//         ISUR.MODE
// Writes: A, B, C; MASTER.SF = 1/C, IERR; SURF columns P, S1, S2, S, E2, T2, R, H1, H2, H3,
//         E1 and T1 of slices 2..NUMSLC; the keep-force-equilibrium decision (whole run)
// IERR:   0 ok; -1 no moment solution (the force-equilibrium solution and SF are kept, A = 1,
//         B = 0, C = 1/SF), or no slices

#include <cmath>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "solver/solver.h"

namespace {

constexpr double kPminShare = 0.0005f;
constexpr double kZmaxFactor = 1.25f;
constexpr int kFewSlices = 5;

// Keep-force-equilibrium decision: 0 not yet decided, 1 keep force-equilibrium solutions
// unchanged, -1 decided to solve for moments (the question is not asked again).
int gKeepForceDecision = 0;

bool undrainedBase(int i) { return MASTER.IDEFTO == 3 && ISUR.MODE(i) == 2; }

// Point of action of P on the base of slice i, and its relative position w along the surface.
struct BasePoint {
    double x, z, w;
};

BasePoint basePoint(int i, double surfaceStart, double span) {
    BasePoint point;
    point.x = SURF.XX(3, i) - SURF.COSB(i) * SURF.H30(i);
    point.z = SURF.ZZ(3, i) - SURF.SINB(i) * SURF.H30(i);
    point.w = std::fabs(span) > MASTER.EPS ? (point.x - surfaceStart) / span : 0.0;
    return point;
}

// The once-per-run question. Returns true when force-equilibrium solutions are to be kept.
bool keepForceEquilibrium() {
    if (gKeepForceDecision == 1) return true;
    if (gKeepForceDecision == -1) return false;
    const bool noRoughness = std::fabs(MASTER.R3) + std::fabs(MASTER.R2) + std::fabs(MASTER.R1) < MASTER.EPS;
    const bool fewSlices = MASTER.NUMSLC < kFewSlices;
    if (!noRoughness && !fewSlices) {
        gKeepForceDecision = -1;
        return false;
    }
    say("");
    if (noRoughness) say(" ZERO INTERSLICE ROUGHNESS WAS SPECIFIED");
    else say(io::Line(" THE SHEAR SURFACE HAS").Free(MASTER.NUMSLC).A(" SLICES ONLY").str());
    sayPrompt(" SHALL ALL FORCE EQUILIBRIUM SOLUTIONS BE KEPT UNCHANGED ? (Y/N)...... ");
    int answer = 0;
    if (batchMode()) {
        io::writeLine(POSTGRAF.NFCOPY,
                      io::Line(" **** WARNING FROM SR/MOMEQL : SR/SOLABC PROBLEM").Free(MASTER.IERR).str());
        answer = MASTER.IERR >= 1 ? 1 : 2;
    } else {
        YESNO(answer, MASTER.NFIN);
    }
    gKeepForceDecision = answer == 1 ? 1 : -1;
    return gKeepForceDecision == 1;
}

// The points of action of the base normal forces of slices 1..NUMSLC (within 1..MAXSLC).
struct BasePoints {
    BasePoint at[MAXSLC];
    void find(double surfaceStart, double span) {
        for (int i = 1; i <= MASTER.NUMSLC; ++i) at[i - 1] = basePoint(i, surfaceStart, span);
    }
};

void buildCoefficients(EquationCoefficients& CC, const BasePoints& points) {
    // Sums over the slices, row by row of CC: horizontal force, vertical force, moment.
    double sum[3][6] = {};
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const bool undrained = undrainedBase(i);
        const double K = (undrained ? SURF.SU3(i) : SURF.C3(i)) * SURF.L34(i) + SURF.SS(i);
        const double tanBase = undrained ? 0.0 : SURF.TAN3(i);
        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i), P = SURF.P(i);
        const BasePoint& at = points.at[i - 1];
        const double xw = SURF.XX(5, i), zw = SURF.ZZ(5, i);

        const double normalX = sinb * P, normalZ = -cosb * P;
        const double normalMoment = P * (at.x * cosb + at.z * sinb);
        sum[0][0] += normalX;
        sum[1][0] += normalZ;
        sum[2][0] += normalMoment;
        sum[0][1] += normalX * at.w;
        sum[1][1] += normalZ * at.w;
        sum[2][1] += normalMoment * at.w;

        sum[0][2] += SURF.SNX(i) - K * cosb;
        sum[1][2] += SURF.SNZ(i) - K * sinb;
        sum[2][2] += SURF.HS(i) * SURF.SS(i) + K * sinb * at.x - K * cosb * at.z + zw * SURF.SNX(i) + SURF.SNM(i) -
                     xw * SURF.SNZ(i);

        const double frictionX = -cosb * P * tanBase, frictionZ = -sinb * P * tanBase;
        const double frictionMoment = P * tanBase * (sinb * at.x - cosb * at.z);
        sum[0][3] += frictionX;
        sum[1][3] += frictionZ;
        sum[2][3] += frictionMoment;
        sum[0][4] += frictionX * at.w;
        sum[1][4] += frictionZ * at.w;
        sum[2][4] += frictionMoment * at.w;

        sum[0][5] += SURF.WX(i);
        sum[1][5] += SURF.WZ(i);
        sum[2][5] += zw * SURF.WX(i) + SURF.WM(i) - xw * SURF.WZ(i);
    }
    for (int row = 1; row <= 3; ++row)
        for (int column = 1; column <= 6; ++column) CC(row, column) = sum[row - 1][column - 1];
}

void traceRow(std::string_view routine, double A, double B, double C, int code) {
    io::writeLine(MASTER.NF18, io::Line(routine)
                                   .F(A, 8, 4)
                                   .F(B, 8, 4)
                                   .F(C, 8, 4)
                                   .F(C != 0.0 ? 1.0 / C : 0.0, 8, 4)
                                   .I(code, 6)
                                   .str());
}

// Solves the three global equations for A, B, C. Returns false (IERR = -1, A = 1, B = 0,
// C = 1/SF) when neither solver gives an acceptable solution.
bool solveMoment(double& A, double& B, double& C, const BasePoints& points) {
    const double EPS = MASTER.EPS;
    EquationCoefficients CC;
    buildCoefficients(CC, points);

    int abcError = 0;
    A = 1.0 / std::fmax(MASTER.SFMAX, EPS);
    B = 1.0 / std::fmax(MASTER.SFMIN, EPS);
    C = 1.0 / MASTER.SF;
    SOLABC(MASTER.JPRINT > 2 ? 1 : 0, abcError, CC, A, B, C);
    const double abcA = A, abcB = B, abcC = C;
    if (abcError != 0) {
        if (MASTER.JPRINT > 0)
            io::writeLine(MASTER.NF18, io::Line(" **** WARNING FROM SR/MOMEQL : SR/SOLABC PROBLEM").Free(abcError).str());
        // A C outside its bounds is still a solution of the equations: keep it for the test
        // against SFTZ and for SOLXYZ to improve on.
        if (abcError != 101 && abcError != 102) {
            A = 1.0;
            B = 0.0;
            C = 1.0 / MASTER.SF;
        }
    }
    MASTER.IERR = abcError;
    if (1.0 / C < MASTER.SFTZ) MASTER.IERR = -1;
    if (MASTER.IERR == 0) return true;

    const double ZMAX = kZmaxFactor / std::fmax(std::fmax(MASTER.SFMIN, MASTER.SFTZ), EPS);
    const double ZMIN = 0.5 * ZMAX;
    const bool tracing = MASTER.JPRINT >= 3;
    double X = 0.0, Y = 0.0, Z = 0.0;
    int xyzError = 0;
    SOLXYZ(tracing ? MASTER.NF18 : 0, CC, ZMIN, ZMAX, X, Y, Z, xyzError);
    if (tracing) {
        io::writeLine(MASTER.NF18, " SR/MOMEQL trace print");
        io::writeLine(MASTER.NF18, " Routine   A       B       C       FoS    IERR");
        traceRow(" SOLABC ", abcA, abcB, abcC, abcError);
        traceRow(" SOLXYZ ", X, Y, Z, xyzError);
    }
    if (xyzError == 0) {
        A = X;
        B = Y;
        C = Z;
        MASTER.IERR = 0;
        return true;
    }
    const std::string failure = io::Line(" **** SR/MOMEQL : Error codes from SOLABC, SOLXYZ and")
                                    .A(" IERR ==")
                                    .Free(abcError)
                                    .Free(xyzError)
                                    .str();
    io::writeLine(MASTER.NF18, failure);
    io::writeLine(MASTER.NFOUT, failure);
    A = 1.0;
    B = 0.0;
    C = 1.0 / MASTER.SF;
    MASTER.IERR = -1;
    return false;
}

// Balances every slice again with the corrected normal forces, from the entry to the exit.
void updateSlices(double A, double B, const BasePoints& points) {
    const int numSlices = MASTER.NUMSLC;
    const double q = 1.0 / MASTER.SF;
    const double Pmin = kPminShare * MASTER.E2TOL;
    // What a slice hands on to the next: E2 and T2 (as E1, T1) and the height of E2 (as H1).
    double handedE = SURF.E1(1), handedT = SURF.T1(1), handedH = SURF.H1(1);
    for (int i = 1; i <= numSlices; ++i) {
        const BasePoint& at = points.at[i - 1];
        const double P = (A + B * at.w) * SURF.P(i);
        SURF.P(i) = P;
        SURF.S1(i) = (P * SURF.TAN3(i) + SURF.C3(i) * SURF.L34(i)) * q;
        SURF.S2(i) = SURF.SU3(i) * SURF.L34(i) * q;
        SURF.S(i) = undrainedBase(i) ? SURF.S2(i) : SURF.S1(i);

        const double sinb = SURF.SINB(i), cosb = SURF.COSB(i);
        const double baseShear = q * SURF.SS(i) + SURF.S(i);
        const double E1 = handedE, T1 = handedT, H1 = handedH;
        double E2 = sinb * P + q * SURF.SNX(i) + SURF.WX(i) + E1 - baseShear * cosb;
        const double T2 = q * SURF.SNZ(i) + SURF.WZ(i) + T1 - P * cosb - baseShear * sinb;
        SURF.T2(i) = T2;

        const double faceHeight = SURF.ZZ(3, i) - SURF.ZZ(2, i);
        double shearCapacity = (SURF.TAN2(i) * E2 + SURF.C2(i) * faceHeight) * q;
        if (std::fabs(shearCapacity) < MASTER.EPS) shearCapacity = MASTER.EPS;
        SURF.R(i) = std::fabs(T2) >= MASTER.E2TOL ? T2 / shearCapacity : 0.0;

        if (i < numSlices) {
            SURF.E1(i + 1) = E2;
            SURF.T1(i + 1) = T2;
        }
        handedE = E2;
        handedT = T2;

        // Moment about base corner 3 of every force on the slice but E2 and P.
        const double M = q * SURF.SS(i) * SURF.HS(i) + (SURF.XX(2, i) - SURF.XX(1, i)) * T1 +
                         (SURF.XX(3, i) - SURF.XX(5, i)) * SURF.WZ(i) + q * SURF.SNM(i) + SURF.WM(i) -
                         (SURF.ZZ(3, i) - SURF.ZZ(5, i)) * SURF.WX(i) -
                         (SURF.ZZ(3, i) - SURF.ZZ(4, i) + H1) * E1;
        if (i == numSlices) {
            // At the exit the end force acts at mid-height; the moment places P.
            SURF.H2(i) = 0.5 * faceHeight;
            const double divisor = std::fabs(P) < Pmin ? Pmin : P;
            SURF.H3(i) = (SURF.H2(i) * E2 + M) / divisor;
        } else {
            // Inside, P keeps its place and the moment places E2; a vanishing E2 is stored as
            // Pmin after it has been handed on, so that its arm stays finite.
            SURF.H3(i) = SURF.H30(i);
            if (std::fabs(E2) < Pmin) E2 = Pmin;
            const double H2 = (P * SURF.H30(i) - M) / E2;
            SURF.H2(i) = H2;
            SURF.H1(i + 1) = H2;
            handedH = H2;
        }
        SURF.E2(i) = E2;
    }
}

}  // namespace

void resetMomeqlDecision() { gKeepForceDecision = 0; }

void MOMEQL(double& A, double& B, double& C) {
    A = 1.0;
    B = 0.0;
    C = 1.0 / MASTER.SF;
    const int numSlices = MASTER.NUMSLC;
    if (numSlices < 1 || numSlices > MAXSLC) {
        MASTER.IERR = -1;
        return;
    }
    const double surfaceStart = SURF.XX(1, 1);
    const double span = SURF.XX(2, numSlices) - surfaceStart;
    BasePoints points;
    points.find(surfaceStart, span);

    bool solve = MASTER.IDTYP != 2;
    if (solve && MASTER.METHOD == 0) solve = !keepForceEquilibrium();
    if (solve) {
        if (!solveMoment(A, B, C, points)) return;
    } else {
        // Earth pressure, or force equilibrium kept: only the slices are balanced again.
        MASTER.IERR = 0;
    }

    MASTER.SF = 1.0 / C;
    updateSlices(A, B, points);
}
