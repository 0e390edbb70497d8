// slices/sucrcl.cpp
//
// SUCRCL — a circular shear surface in purely cohesive soil, solved by the moments about its
// centre.
//
// The slice bases are chords of the circle. The resistance is the undrained strength of each
// base along its true arc, R times the angle the chord subtends; the weight of the circular
// segment between chord and arc, with the unit weight of the material at the middle of the
// base, is added to the driving loads at that point (times the vertical and horizontal load
// factors). The safety factor is the resisting moment over the driving moment about the
// centre, including the end-face shear, the centre loads and the nail loads:
//   Mr = sum of R S + (R - HS) SS + (moment of the nail loads)
//   Md = sum of (moment of the centre loads) + (moment of the segment weights)
//   SF = Mr / (-Md); above 1000, below 0 or with no driving moment SF is the marker 999.999.
// The base shears are then the mobilised ones, S / SF; no normal or interslice force is used.
//
// Reads:  SURF SPAR(1..2) (centre), XX, ZZ, L34, C3, WX, WZ, WM, SS, HS, SNX, SNZ, SNM;
//         MASTER NUMSLC, EPS; SOLPRP.MAT (unit weights); LOAD.LDAT(2..3) (load factors)
// Writes: SURF S (mobilised), P, E1, E2, T1, T2, R, H1, H2, H3 (zero), SPAR(4) (resisting
//         moment), SPAR(5) (driving moment); MASTER SF, ICIRCM (1: solved by the moments)
// IERR:   0 ok; the code of LOCATE when the material at a base middle cannot be found (message
//         written)

#include <algorithm>
#include <cmath>

#include "input/input.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {
constexpr double kMarkerSF = 999.999f;
constexpr double kHighestSF = 1000.0f;
}  // namespace

void SUCRCL() {
    MASTER.IERR = 0;
    const int slices = std::clamp(MASTER.NUMSLC, 0, MAXSLC);
    if (slices < 1) return;
    const double xc = SURF.SPAR(1);
    const double zc = SURF.SPAR(2);
    const double radius = std::hypot(SURF.XX(3, 1) - xc, SURF.ZZ(3, 1) - zc);

    double resisting = 0.0;
    double driving = 0.0;
    for (int i = 1; i <= slices; ++i) {
        // A chord is never longer than the diameter; the bound keeps rounding out of asin.
        const double halfChord = radius > MASTER.EPS ? SURF.L34(i) / (2.0 * radius) : 1.0;
        const double angle = 2.0 * std::asin(std::min(halfChord, 1.0));
        const double arc = radius * angle;

        const double xm = (SURF.XX(3, i) + SURF.XX(4, i)) / 2.0;
        const double zm = (SURF.ZZ(3, i) + SURF.ZZ(4, i)) / 2.0;
        int m = 0;
        LOCATE(xm, zm, m);
        if (MASTER.IERR != 0 || m < 1 || m > MAXMAT) {
            if (MASTER.IERR == 0) MASTER.IERR = 1;
            say(io::Line(" **** SR/SUCRCL : ERROR IN SR/LOCATE  XX,ZZ,IERR=").Free(xm).Free(zm).Free(MASTER.IERR).str());
            return;
        }
        const double segmentWeight = radius * radius / 2.0 * (angle - std::sin(angle)) * SOLPRP.MAT(GAMTOT, m);
        const double segmentZ = segmentWeight * LOAD.LDAT(2);
        const double segmentX = segmentWeight * LOAD.LDAT(3);

        SURF.S(i) = SURF.C3(i) * arc;
        resisting += radius * SURF.S(i) + (radius - SURF.HS(i)) * SURF.SS(i) +
                     momentAboutCentre(i, xc, zc, SURF.SNX(i), SURF.SNZ(i), SURF.SNM(i));
        driving += momentAboutCentre(i, xc, zc, SURF.WX(i), SURF.WZ(i), SURF.WM(i)) - (xc - xm) * segmentZ -
                   (zm - zc) * segmentX;
    }

    double SF = kMarkerSF;
    if (std::fabs(driving) >= MASTER.EPS) {
        SF = resisting / (-driving);
        if (SF > kHighestSF || SF < 0.0) SF = kMarkerSF;
    }
    MASTER.SF = SF;

    for (int i = 1; i <= slices; ++i) {
        if (SF != 0.0) SURF.S(i) /= SF;  // no resistance at all: the shears are nought already
        SURF.P(i) = 0.0;
    }
    clearInterslice(slices);
    SURF.SPAR(5) = driving;
    SURF.SPAR(4) = resisting;
    MASTER.ICIRCM = 1;
}
