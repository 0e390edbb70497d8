// solver/chkeql.cpp
//
// CHKEQL — check that every slice of the final solution is in equilibrium.
//
// A solution whose safety factor lies below the zero-roughness factor SFTZ is no solution of
// this surface: it is marked (SF 533.333, SCORE 5.333) and competes for the best surface with
// that factor, which loses against any real one. Otherwise every slice is checked for its
// horizontal and vertical force balance, its moment balance about base corner 3 and the
// agreement of its base shear with the strength law; the simplified method carries no
// horizontal interslice forces and, like pure force equilibrium, no moment balance of the
// slice, so those checks are left out for it. A residual force at the exit is reported as a
// warning only.
//
// Reads:  MASTER.SF, SFTZ, E2TOL, METHOD, IDEFTO, IDTYP, NEGPOK, NUMSLC; SURF columns P, S, E1,
//         E2, T1, T2, H1, H2, H3, HS, SINB, COSB, L34, C3, TAN3, SU3, SS, WX, WZ, WM, SNX, SNZ,
//         SNM, XX, ZZ; ISUR.MODE
// Writes: MASTER.IERR (not on rejection); MASTER.SF and SCORE on rejection
// IERR:   0 every check passed; n > 0 the number of failed checks (the check stops at 26)

#include <cmath>

#include "io/fmt.h"
#include "solver/solver.h"

namespace {

constexpr double kBelowZeroRoughness = -0.001f;
constexpr double kMarkerBelowSFTZ = 533.333f;
constexpr double kScoreBelowSFTZ = 5.333f;
constexpr double kEndForceTolerance = 10.0;
constexpr int kMaxFailures = 25;

void reportSlice(std::string_view text, int slice, double value, double tolerance) {
    sayLog(io::Line(text).Free(slice).Free(value).Free(tolerance).str());
    MASTER.IERR += 1;
}

}  // namespace

void CHKEQL() {
    if (MASTER.SF - MASTER.SFTZ <= kBelowZeroRoughness) {
        MASTER.SF = kMarkerBelowSFTZ;
        MASTER.SCORE = kScoreBelowSFTZ;
        return;
    }
    const int numSlices = MASTER.NUMSLC;
    if (numSlices < 1 || numSlices > MAXSLC) {
        MASTER.IERR = 1;
        return;
    }

    if (MASTER.NEGPOK == 0) {
        int negative = 0;
        for (int i = 1; i <= numSlices; ++i) {
            if (SURF.P(i) < 0.0) ++negative;
        }
        if (negative > 0) say(io::Line(" **** WARNING : NEGATIVE P-FORCES FOR").Free(negative).A(" SLICES").str());
    }

    MASTER.IERR = 0;
    const double tol = MASTER.E2TOL;
    const double tolM = MASTER.E2TOL * (SURF.XX(2, 1) - SURF.XX(1, 1));
    const double q = 1.0 / MASTER.SF;
    const bool checkHorizontal = MASTER.METHOD != 1;
    const bool checkMoment = MASTER.METHOD != -1 && MASTER.METHOD != 1;
    for (int i = 1; i <= numSlices; ++i) {
        const double baseShear = q * SURF.SS(i) + SURF.S(i);
        if (checkHorizontal) {
            const double ex = q * SURF.SNX(i) + SURF.SINB(i) * SURF.P(i) + SURF.WX(i) + SURF.E1(i) - SURF.E2(i) -
                              baseShear * SURF.COSB(i);
            if (std::abs(ex) > tol) {
                reportSlice(" **** SR/CHKEQL : SUM FRC-X ERROR", i, ex, tol);
                if (MASTER.IERR > kMaxFailures) return;
            }
        }
        const double ez = q * SURF.SNZ(i) + SURF.WZ(i) + SURF.T1(i) - SURF.T2(i) - SURF.COSB(i) * SURF.P(i) -
                          baseShear * SURF.SINB(i);
        if (std::abs(ez) > tol) {
            reportSlice(" **** SR/CHKEQL : SUM FRC-Z ERROR", i, ez, tol);
            if (MASTER.IERR > kMaxFailures) return;
        }
        if (checkMoment) {
            // Moments about base corner 3: the base shear and T2 pass through it.
            const double em = q * SURF.SNM(i) + q * SURF.SS(i) * SURF.HS(i) + SURF.H2(i) * SURF.E2(i) +
                              (SURF.XX(2, i) - SURF.XX(1, i)) * SURF.T1(i) +
                              (SURF.XX(3, i) - SURF.XX(5, i)) * SURF.WZ(i) + SURF.WM(i) -
                              (SURF.ZZ(3, i) - SURF.ZZ(5, i)) * SURF.WX(i) -
                              (SURF.ZZ(3, i) - SURF.ZZ(4, i) + SURF.H1(i)) * SURF.E1(i) - SURF.P(i) * SURF.H3(i);
            if (std::abs(em) > tolM) {
                reportSlice(" **** SR/CHKEQL : SUM MOMENTS ERROR", i, em, tolM);
                if (MASTER.IERR > kMaxFailures) return;
            }
        }
        const bool undrainedBase = MASTER.IDEFTO == 3 && ISUR.MODE(i) != 1;
        const double expected = undrainedBase ? SURF.L34(i) * SURF.SU3(i) / MASTER.SF
                                              : (SURF.P(i) * SURF.TAN3(i) + SURF.L34(i) * SURF.C3(i)) / MASTER.SF;
        if (std::abs(expected - SURF.S(i)) > tol) {
            sayLog(io::Line(" **** SR/CHKEQL : S-FORCE ERROR").Free(i).Free(expected).Free(SURF.S(i)).Free(tol).str());
            MASTER.IERR += 1;
            if (MASTER.IERR > kMaxFailures) return;
        }
    }

    if (MASTER.IDTYP == 2) return;
    const double tolE = kEndForceTolerance * MASTER.E2TOL;
    std::string endForceLines[2];
    int warnings = 0;
    if (std::abs(SURF.E2(numSlices)) > tolE)
        endForceLines[warnings++] = io::Line(" **** SR/CHKEQL : E2-FORCE LAST SLICE=").Free(SURF.E2(numSlices)).Free(tol).str();
    if (std::abs(SURF.T2(numSlices)) > tolE)
        endForceLines[warnings++] = io::Line(" **** SR/CHKEQL : T2-FORCE LAST SLICE=").Free(SURF.T2(numSlices)).Free(tol).str();
    for (int k = 0; k < warnings; ++k) io::writeLine(MASTER.NF18, endForceLines[k]);
    for (int k = 0; k < warnings; ++k) io::writeLine(POSTGRAF.NFCOPY, endForceLines[k]);
}
