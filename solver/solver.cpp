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
// With soil nails (NNAILS > 0) their forces are added to the slices after the slice loads, for
// every type of surface.
//
// Circles under the 1988-2002 method in a total stress analysis (or through clay only in an
// effective stress analysis) are solved directly by the moments about their centre (SUCRCL)
// instead; once a surface has been lifted out of rock, the total stress analysis no longer
// takes that way for the rest of the run (ITSBLK).
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
constexpr double kScoreUndrainedCircle = 9.999f;    // solved by the moments about the centre
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

// A circle solved directly from the undrained strength (SUCRCL) under the 1988-2002 method: in a
// total stress analysis while no surface has been lifted out of rock in this run, or in an
// effective stress analysis when no slice base has friction (the circle cuts through clay
// only).
bool undrainedCircle() {
    if (MASTER.METHOD != 0 || MASTER.NTYP != 2) return false;
    if (MASTER.IDEFTO == 2) return MASTER.ITSBLK == 0;
    if (MASTER.IDEFTO != 1) return false;
    double sumFriction = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) sumFriction += SURF.TAN3(i);
    return sumFriction < MASTER.EPS;
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
    const double givenSF = MASTER.SF;
    roughnessFromStart();
    FRCEQR();
    if (MASTER.IERR != 0) {
        reportError("RMULT");  // the driver names the roughness search here, as it always has
        return false;
    }
    // The equilibrium check rejects a solution whose factor lies below SFTZ, the factor of the
    // same surface without interslice shear, which a safety-factor search leaves behind. Here
    // no factor is searched: the given one is the only solution of the surface and so its own
    // reference. Left as it was (zero, or the value of an earlier surface), SFTZ would make the
    // check take every passive (negative) factor for one too low, mark the plane 533.333 and
    // leave that marker as the factor of every later plane of the sweep.
    MASTER.SFTZ = givenSF;
    // The moment arms of the wall solution, and its score.
    double A = 1.0, B = 0.0, C = 1.0 / givenSF;
    MOMEQL(A, B, C);
    // The moment solution hands back the factor as the reciprocal of its reciprocal, which may
    // differ from the typed value in the last binary digit; every plane of a sweep is solved
    // at exactly the factor the user gave.
    MASTER.SF = givenSF;
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
    // A safety-factor analysis starts every surface from 999.99. An earth-pressure problem does
    // not: there SF is the factor the user gave for the whole search (its sign chooses active or
    // passive pressure), and a start value written here would have the first plane of a sweep,
    // and every one after it, solved at 999.99 instead, as active pressure on soil that has
    // next to no strength.
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

    // Steep exit ends are rebuilt along the passive plane when the switch is on; a surface
    // that cannot be rebuilt leaves without a word of the driver (MODIFY has said why).
    if (MASTER.IDMOD == 1) {
        MODIFY();
        if (MASTER.IERR != 0) return;
    }
    // With a control line (two points or more) only surfaces that cut it are analysed.
    if (LINECONTROL.NLCP > 1) {
        int missed = 0;
        LCONTRL(missed);
        if (missed == 1) {
            markSkipped(kScoreLineControl);
            return;
        }
    }

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

    // Soil nail forces; NAILS has written its own message when it fails.
    if (ISNAIL.NNAILS > 0) {
        NAILS(NPTS);
        if (MASTER.IERR != 0) return;
    }

    if (undrainedCircle()) {
        // Solved directly by the moments about the centre: no equilibrium check, no update.
        gUndrainedCircles += 1;
        if (gUndrainedCircles == 1 && MASTER.IDEFTO == 1) say(" Total stress analysis used for circles that cut through clay only");
        MASTER.RFACTOR = 1.0;
        SUCRCL();
        if (MASTER.IERR != 0) {
            reportError("SUCRCL");
            return;
        }
        MASTER.SCORE = kScoreUndrainedCircle;
        keptAsBest();
        return;
    }

    MASTER.RFACTOR = 1.0;
    for (int iteration = 1;; ++iteration) {
        if (MASTER.IDTYP == 1) {
            // With a B-factor the first solution already carries pore pressures: the initial
            // excess pressures of the update.
            if (MASTER.IUPDAT != 0 && iteration == 1) {
                int settled = 0;
                UPDATE(0, settled);
                if (MASTER.IERR != 0) {
                    reportError("UPDATE");
                    return;
                }
            }
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
        // Stress-dependent friction angles and pore pressures from this solution; another
        // solution until they have settled.
        int settled = 0;
        UPDATE(iteration, settled);
        if (MASTER.IERR != 0) {
            reportError("UPDATE");
            return;
        }
        if (settled == 1) break;
    }

    keptAsBest();
}
