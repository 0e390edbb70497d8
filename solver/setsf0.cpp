// solver/setsf0.cpp
//
// SETSF0 — bounds and start value of the safety factor before a solution method runs.
//
// Finds the lowest admissible factor SFLIM (below it the base normal force of a slice whose
// base rises towards the exit has no positive solution), the horizontal force E2LIM left over
// when the soil has no strength (the asymptote of the residual curve), and a first force-
// equilibrium solution with zero interslice shear, SFTZ, which becomes the start value.
// Drops surfaces whose factor is evidently very high: a body that stands without strength, or
// one whose zero-roughness factor exceeds 25.
//
// Reads:  MASTER.NUMSLC, IDEFTO, JPRINT, E2TOL; SURF columns SINB, COSB, TAN3, WX, WZ
//         (and through FRCEQR the slice columns it reads)
// Writes: MASTER.SFLIM, E2LIM, SFMIN, SFMAX, SFTZ, SF, SCORE, IERR; ISUR.MODE := 1 and
//         SURF.R := 0 for all slices (and through FRCEQR its results)
// IERR:   0 ok; -2 surface dropped for a very high safety factor (a verdict, not an error);
//         else the code of FRCEQR

#include "io/fmt.h"
#include "solver/solver.h"

namespace {

constexpr double kStableFraction = 0.01f;
constexpr double kAboveLimit = 0.001f;
constexpr double kMarkerNoStrengthNeeded = 999.999f;
constexpr double kMarkerHighSF = 888.888f;
constexpr double kScoreDropped = 5.555f;
constexpr double kHighSF = 25.0;
constexpr double kUpperSF = 1.0E6;

void dropSurface(double markerSF) {
    MASTER.IERR = -2;
    MASTER.SF = markerSF;
    MASTER.SCORE = kScoreDropped;
}

}  // namespace

void SETSF0() {
    const int numSlices = MASTER.NUMSLC;
    if (numSlices > MAXSLC) {
        MASTER.IERR = 1;
        return;
    }

    // A total stress analysis has no friction on the base, so no lower limit from friction.
    MASTER.SFLIM = 0.0;
    if (MASTER.IDEFTO != 2) {
        for (int i = 1; i <= numSlices; ++i) {
            if (SURF.WZ(i) < 0.0) continue;
            const double candidate = -SURF.SINB(i) * SURF.TAN3(i) / SURF.COSB(i);
            if (candidate > MASTER.SFLIM) MASTER.SFLIM = candidate;
        }
    }

    MASTER.E2LIM = 0.0;
    for (int i = 1; i <= numSlices; ++i) MASTER.E2LIM += SURF.WX(i) + SURF.WZ(i) * SURF.SINB(i) / SURF.COSB(i);

    if (MASTER.E2LIM <= kStableFraction * MASTER.E2TOL) {
        if (MASTER.JPRINT > 0) {
            sayLog("");
            sayLog(" **** SR/SETSF0 : PRESENT SYSTEM HAS VERY HIGH SAFETY FACTOR");
            sayLog(io::Line(" E2LIM =").Free(MASTER.E2LIM).str());
        }
        dropSurface(kMarkerNoStrengthNeeded);
        return;
    }

    MASTER.SFMIN = MASTER.SFLIM + kAboveLimit;
    MASTER.SFMAX = kUpperSF;
    MASTER.SF = MASTER.SFLIM + 1.0;
    for (int i = 1; i <= numSlices; ++i) {
        ISUR.MODE(i) = 1;
        SURF.R(i) = 0.0;
    }
    FRCEQR();
    if (MASTER.IERR != 0) {
        say(io::Line(" **** SR/SETSF0 : SR/FRCEQR PROBLEM  IERR,SFLIM=").Free(MASTER.IERR).Free(MASTER.SFLIM).str());
        return;
    }

    MASTER.SFTZ = MASTER.SF;
    if (MASTER.SF > kHighSF) {
        if (MASTER.JPRINT > 0) {
            sayLog("");
            sayLog(" **** SR/SETSF0 : PRESENT SYSTEM HAS A HIGH SAFETY FACTOR");
            sayLog(io::Line(" SFTZ =").Free(MASTER.SFTZ).str());
        }
        dropSurface(kMarkerHighSF);
        return;
    }

    // The iteration of the solution methods may go down half-way from the zero-roughness
    // factor to the limit; SF stays at the zero-roughness solution as their start value.
    MASTER.SFMIN = MASTER.IDEFTO == 2 ? MASTER.SFLIM : (MASTER.SF + MASTER.SFLIM) * 0.5;
    if (MASTER.SFMIN < MASTER.SFLIM) MASTER.SFMIN = MASTER.SFLIM + kAboveLimit;
    if (MASTER.JPRINT != 0) {
        sayLog(io::Line(" SR/SETSF0 :  SFLIM,SFTZ,SFMIN,E2LIM =")
                   .Free(MASTER.SFLIM)
                   .Free(MASTER.SFTZ)
                   .Free(MASTER.SFMIN)
                   .Free(MASTER.E2LIM)
                   .str());
    }
}
