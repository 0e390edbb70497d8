// solver/solver.cpp
//
// SOLVER — analyses one trial shear surface and keeps it when it is the best of the run.
//
// The polyline XS, ZS that a surface routine has just filled is cut into slices; the slices
// get their strengths, pore pressures and loads; then the safety factor is solved by the
// method of the control data (in an earth-pressure problem the safety factor is given and the
// force on the wall is solved instead), and the solution is checked slice by slice. The
// solution is repeated while stress-dependent strengths or pore pressures are being updated.
// Last, the best-surface rule: the lowest safety factor (or, in an earth-pressure problem, the
// largest active or smallest passive wall force) is copied into the best-surface record; a tie
// goes to the later surface. A surface that is rejected, dropped or discarded on the way never
// competes. In an earth-pressure problem SF is the safety factor the user gave for the search:
// the driver neither starts it afresh nor marks it, so every surface of the search uses it.
//
// Routines of later work are not in the program yet; their call sites below are marked with
// the condition under which they will be called, and the analysis runs as if that condition
// were off: slice modification (MODIFY, IDMOD = 1), line control (LCONTRL, more than one line
// control point), soil nails (NAILS, NNAILS > 0), the direct solution of undrained circles
// (SUCRCL) and the stress-dependent update (UPDATE).
//
// Arguments: NPTS, the number of points of the polyline XS, ZS.
// Reads:  MASTER.NSLREQ, NTYP, IDTYP, METHOD, BESTSF, BESTE2, NFIN; POSTGRAF.NFCOPY (6 in batch
//         mode); the section (GEOMSH, IGEOMS, SOLPRP.STRDAT(1)) through the slice geometry;
//         SURF.R0, E2 (and what the routines called read)
// Writes: MASTER.SF (safety-factor analyses), SFTZ (earth pressure: the given SF), SCORE,
//         RFACTOR, IERR, NUMSRF (one more), NUMSLC, NTYP (made positive), ITSBLK (set once a
//         surface came back with a negative type), BESTSF or BESTE2, KBEST and KBSAVE (1 when
//         a new best surface is kept); SURF (the slices and their solution); SPAR(2) of an
//         earth-pressure plane; IBES/BEST (the new best surface)
// IERR:   0 the surface was analysed, or skipped, dropped or discarded without error; else the
//         code of the first routine that failed (its message and the driver's are written)

#include "solver/solver.h"

#include <string_view>

#include "control/control.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kStartSF = 999.99f;
constexpr double kMarkerSkippedSF = 99.999f;       // rejected by line control or the load builder
constexpr double kScoreLineControl = 8.888f;
constexpr double kScoreLoadBuilder = 7.777f;
constexpr double kDiscardSF = 500.0;               // slice-force methods: above it, no solution
constexpr int kFirstItrMax = 10;

// Run-long state: the limit of the update iteration, whether its question was asked, and the
// number of surfaces solved as undrained circles.
int gItrMax = kFirstItrMax;
bool gItrMaxAsked = false;
int gUndrainedCircles = 0;

void reportError(std::string_view routine) {
    say(io::Line(" **** SR/SOLVER : ERROR FROM SR/").A(routine).Free(MASTER.IERR).str());
}

// A surface skipped by line control or the load builder. In an earth-pressure problem SF is
// the safety factor the user gave for the whole search; it is never replaced by a marker.
void markSkipped(double score) {
    if (MASTER.IDTYP == 1) MASTER.SF = kMarkerSkippedSF;
    MASTER.SCORE = score;
    MASTER.RFACTOR = 0.0;
}

void roughnessFromStart() {
    for (int i = 1; i <= MASTER.NUMSLC; ++i) SURF.R(i) = SURF.R0(i);
}

// The safety factor of the surface by the method of the control data. False when the surface
// leaves the driver here: an error (reported), or a surface dropped for a very high safety
// factor or discarded by a slice-force method (IERR 0).
bool solveSafetyFactor() {
    SETSF0();
    if (MASTER.IERR == -2) {
        MASTER.IERR = 0;
        return false;
    }
    if (MASTER.IERR != 0) {
        reportError("SETSF0");
        return false;
    }

    if (MASTER.METHOD <= 0) {
        // Pure force equilibrium starts from the initial roughness; the 1988-2002 method
        // searches its roughness factor from what the slices carry now.
        if (MASTER.METHOD < 0) roughnessFromStart();
        RMULT();
        if (MASTER.IERR != 0) {
            reportError("RMULT");
            return false;
        }
        return true;
    }
    SLV123();
    if (MASTER.IERR != 0) {
        reportError("SLV123");
        return false;
    }
    // A slice-force solution rejected by its physics checks carries a marker above the cut-off.
    return MASTER.SF <= kDiscardSF;
}

// The wall force at the given safety factor: one force-equilibrium sweep at R = R0.
bool solveEarthPressure() {
    roughnessFromStart();
    FRCEQR();
    if (MASTER.IERR != 0) {
        reportError("RMULT");  // the driver names the roughness search here, as it always has
        return false;
    }
    // No safety factor is searched here: the given one is the only solution of the surface,
    // and so the reference of the equilibrium check, which would otherwise take every passive
    // (negative) factor for one below the zero-roughness solution.
    MASTER.SFTZ = MASTER.SF;
    // The moment arms of the wall solution, and its score.
    double A = 1.0, B = 0.0, C = 1.0 / MASTER.SF;
    MOMEQL(A, B, C);
    SCORER();
    return true;
}

// The update limit is reached: asked once per run whether to double it. Returns 1 to go on
// with the update, 0 to take the present solution, -1 when no valid answer came.
int askItrMax() {
    if (gItrMaxAsked) return 0;
    gItrMaxAsked = true;
    say("");
    say(" SR/SOLVER : PWP OR PHI ITERATIONS DID NOT CONVERGE");
    sayPrompt(io::Line(" ITRMAX =").Free(gItrMax).A("   SHALL VALUE BE DOUBLED (Y/N)..... ").str());
    int answer = 2;
    if (!batchMode()) YESNO(answer, MASTER.NFIN);
    if (answer == 1) {
        gItrMax *= 2;
        return 1;
    }
    return answer == 2 ? 0 : -1;
}

// The best-surface rule. True when the surface became the best of the run.
bool keptAsBest() {
    if (MASTER.IDTYP == 2) {
        if (MASTER.NTYP == 4) SURF.SPAR(2) = SURF.XX(1, 1);
        const double wallForce = SURF.E2(MASTER.NUMSLC);
        // Active pressure (SF >= 0) looks for the largest force, passive for the smallest.
        const bool better = MASTER.SF >= 0.0 ? wallForce >= MASTER.BESTE2 : wallForce <= MASTER.BESTE2;
        if (!better) return false;
        MASTER.BESTE2 = wallForce;
    } else {
        if (!(MASTER.SF <= MASTER.BESTSF)) return false;
        MASTER.BESTSF = MASTER.SF;
    }
    SAVBST();
    if (MASTER.IERR != 0) return false;
    MASTER.KBEST = 1;
    MASTER.KBSAVE = 1;
    return true;
}

}  // namespace

void resetSolverRunState() {
    gItrMax = kFirstItrMax;
    gItrMaxAsked = false;
    gUndrainedCircles = 0;
}

void SOLVER(int NPTS) {
    MASTER.IERR = 0;
    if (MASTER.IDTYP == 1) MASTER.SF = kStartSF;
    MASTER.NUMSRF += 1;
    MASTER.NUMSLC = MASTER.NSLREQ;
    // Only a general surface may bring its slice borders along (zero slices requested).
    if (MASTER.NSLREQ < 1 && MASTER.NTYP != 1) {
        say(" ZERO SLICES ALLOWED FOR GENERAL SURFACES ONLY");
        return;
    }

    GEOMET(IGEOMS.NX + 1, NPTS, MASTER.NUMSLC, MASTER.NSLREQ, MASTER.IDTYP, GEOMSH.XSURF, GEOMSH.ZSURF,
           GEOMSH.ZROCK, SURF.XS, SURF.ZS, SOLPRP.STRDAT(1), GEOMSH.XWALL, GEOMSH.ZWALL, SURF.XX, SURF.ZZ, SURF.AREA,
           MASTER.NTYP, IGEOMS.NLAYER, GEOMSH.ZLAYER, MASTER.IERR, MASTER.ICSRCH);
    if (MASTER.IERR != 0) {
        reportError("GEOMET");
        return;
    }
    // Points lifted out of rock: the surface is no longer the one its routine made, and from
    // now on for the whole run no total-stress circle is solved directly.
    if (MASTER.NTYP < 0) {
        MASTER.NTYP = -MASTER.NTYP;
        MASTER.ITSBLK = 1;
    }

    // Steep exit ends are reshaped by MODIFY when IDMOD = 1 (not in the program yet).
    // Line control (LCONTRL) when LINECONTROL.NLCP > 1 (not in the program yet); a surface it
    // rejects is marked with markSkipped(kScoreLineControl).

    int rejected = 0;
    BUILD(rejected);
    if (MASTER.IERR != 0) {
        reportError("BUILD");
        return;
    }
    if (rejected == 1) {
        markSkipped(kScoreLoadBuilder);
        return;
    }

    // Soil nail forces (NAILS) when ISNAIL.NNAILS > 0 (not in the program yet).
    // Undrained circles (NTYP = 2, METHOD = 0, and IDEFTO = 2 with ITSBLK = 0, or IDEFTO = 1
    // with no friction on any base) are solved directly by SUCRCL (not in the program yet);
    // they go through the solution below.

    MASTER.RFACTOR = 1.0;
    for (int iteration = 1;; ++iteration) {
        // With IUPDAT set, UPDATE(0) gives the initial strengths and pore pressures before
        // the first solution (not in the program yet).
        if (MASTER.IDTYP == 1) {
            if (!solveSafetyFactor()) return;
        } else {
            if (!solveEarthPressure()) return;
        }

        CHKEQL();
        if (MASTER.IERR != 0) {
            reportError("CHKEQL");
            return;
        }

        if (iteration >= gItrMax) {
            const int goOn = askItrMax();
            if (goOn < 0) return;
            if (goOn == 0) break;
        }
        // UPDATE(iteration) recomputes stress-dependent strengths and pore pressures and says
        // whether they have settled (not in the program yet: nothing changes, so the solution
        // has settled).
        break;
    }

    keptAsBest();
}
