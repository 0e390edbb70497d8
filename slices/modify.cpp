// slices/modify.cpp
//
// MODIFY — replaces the steep exit end of a shear surface by a plane at the passive angle.
//
// A passive failure plane leaves the ground at 45 - phi_m/2 degrees, phi_m the mobilised
// friction angle (tan phi_m = tan phi / F). Where a slice base rises towards the exit at least
// that steeply, the slices from there to the end are rebuilt along the plane that starts at the
// slice's base-left corner and rises at that angle to the ground; its exit is taken 0.002 below
// the ground. Without horizontal layers between the two ends of the plane the slices are spread
// at equal widths along it; with such layers each border is moved onto the plane at its own
// base depth, so that the borders the slice geometry put on layer boundaries stay on them. The
// slices rebuilt are tested again in their turn. After a change every slice is checked and
// gets its area and load point again.
//
// The friction used here is the mean of |tan phi| x FCTTAN at five points of each base (BUILD
// replaces it later); F is the best safety factor of the run when one of 990 or less exists
// (98.0 marks "none yet"), else 1.0, and 1.0 when below 0.1.
//
// Reads:  MASTER NUMSLC, FCTTAN, EPS, PI, JPRINT, NF18; BEST.SF; the ground line (IGEOMS.NX,
//         GEOMSH.XSURF, ZSURF); horizontal layers (IGEOMS.NLAYER, GEOMSH.ZLAYER); SOLPRP.MAT
//         (tan phi); SURF XX, ZZ
// Writes: SURF XX, ZZ, AREA, TAN3; MASTER.IMODIF (1 when the surface was modified), IERR
// IERR:   0 ok; 1 a failure of LOCATE, a plane that meets the ground not once to ten times or
//         left of the slice, a slice top below its new base, a slice without area, or an
//         interpolation failure (the code of INTPOL or INTBL1 then); -I slice I has no width
//         or a negative face. Each failure writes its message to the console and log copy.

#include <cmath>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kExitBelow = 0.002f;       // the exit lies this far below the ground
constexpr double kBeyondGround = 1.0;       // the plane is drawn this far past the ground's end
constexpr double kHighestF = 990.0;
constexpr double kLowestF = 0.1f;
constexpr int kMostCrossings = 10;
constexpr int kTraceLevel = 2;
constexpr double kBaseFractions[5] = {0.1f, 0.3f, 0.5f, 0.7f, 0.9f};

using Corners = Arr2<double, 5, MAXSLC>;

int groundPoints() { return IGEOMS.NX + 1; }

// The friction on each base: the mean of |tan phi| x FCTTAN at five base points.
bool baseFriction() {
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        double sum = 0.0;
        for (double f : kBaseFractions) {
            const double x = SURF.XX(4, i) + f * (SURF.XX(3, i) - SURF.XX(4, i));
            const double z = SURF.ZZ(4, i) + f * (SURF.ZZ(3, i) - SURF.ZZ(4, i));
            int material = 0;
            LOCATE(x, z, material);
            if (MASTER.IERR != 0) {
                say(io::Line(" **** SR/MODIFY : ERROR FROM SR/LOCATE  XX,ZZ=").Free(x).Free(z).str());
                return false;
            }
            if (material >= 1 && material <= MAXMAT) sum += std::fabs(SOLPRP.MAT(PHIANG, material)) * MASTER.FCTTAN;
        }
        SURF.TAN3(i) = sum / 5.0;
    }
    return true;
}

double mobilisationFactor() {
    double F = BEST.SF <= kHighestF ? BEST.SF : 1.0;
    if (F < kLowestF) F = 1.0;
    return F;
}

// The ground depth at x. False (IERR set, message written) on an interpolation failure.
bool groundAt(double x, double& depth) {
    int ierr = 0;
    INTPOL(groundPoints(), 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), x, depth, ierr);
    if (ierr != 0) {
        say(io::Line(" **** SR/MODIFY : ERROR FROM SR/INTPOL  IERR=").Free(ierr).str());
        MASTER.IERR = ierr;
        return false;
    }
    return true;
}

// Gives border j (the right side of slice j, the left of slice j + 1) its new base point and
// its top on the ground. False on a failure.
bool placeBorder(int j, double x, double base) {
    double top = 0.0;
    if (!groundAt(x, top)) return false;
    if (top > base) {
        say(io::Line(" **** SR/MODIFY : Z-TOP ERROR : NS,ZTOP,ZLSC3=").Free(j).Free(top).Free(base).str());
        MASTER.IERR = 1;
        return false;
    }
    SURF.XX(2, j) = x;
    SURF.XX(3, j) = x;
    SURF.ZZ(2, j) = top;
    SURF.ZZ(3, j) = base;
    if (j < MASTER.NUMSLC) {
        SURF.XX(1, j + 1) = x;
        SURF.XX(4, j + 1) = x;
        SURF.ZZ(1, j + 1) = top;
        SURF.ZZ(4, j + 1) = base;
    }
    if (MASTER.JPRINT >= kTraceLevel)
        io::writeLine(MASTER.NF18, io::Line().I(j, 5).F(x, 32, 3).F(top, 9, 3).F(base, 9, 3).str());
    return true;
}

// True when a horizontal layer boundary lies between the two depths.
bool layerBetween(double upper, double lower) {
    for (int k = 1; k <= IGEOMS.NLAYER && k <= MAXLAY; ++k) {
        const double level = GEOMSH.ZLAYER(k);
        if (level > upper && level < lower) return true;
    }
    return false;
}

// Rebuilds slices first..NUMSLC along the plane from the base-left corner of slice `first`,
// rising at `angle` (radians). False on a failure.
bool rebuildAlongPlane(int first, double angle) {
    const double x4 = SURF.XX(4, first), z4 = SURF.ZZ(4, first);
    const double slope = -std::tan(angle);  // dz/dx of the plane
    const double xEnd = GEOMSH.XSURF(groundPoints()) + kBeyondGround;
    const double zEnd = z4 + slope * (xEnd - x4);

    double xi[MAXCOL], zi[MAXCOL];
    int crossings = 0, ierr = 0;
    INTBL1(groundPoints(), GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), x4, z4, xEnd, zEnd, crossings, xi, zi, ierr);
    if (ierr != 0) {
        say(io::Line(" **** SR/MODIFY : ERROR FROM SR/INTBL1  NS,IERR=").Free(first).Free(ierr).str());
        MASTER.IERR = ierr;
        return false;
    }
    if (crossings < 1 || crossings > kMostCrossings) {
        say(io::Line(" **** SR/MODIFY : NUMINT ERROR : NS,NUMINT=").Free(first).Free(crossings).str());
        MASTER.IERR = 1;
        return false;
    }
    const double xe = xi[0];
    if (xe < SURF.XX(3, first)) {
        say(io::Line(" **** SR/MODIFY : X-COORDS ERROR : NS,XSLC3,XX1=").Free(first).Free(SURF.XX(3, first)).Free(xe).str());
        MASTER.IERR = 1;
        return false;
    }
    const double ze = zi[0] + kExitBelow;
    // The plane is at least as long as slice `first` is wide (the test above), so this cannot
    // happen; where it still did, the run would end here. An analysis routine never ends the
    // run: the surface is refused instead.
    if (xe - x4 < MASTER.EPS) {
        say(" **** SR/MODIFY STOP-1");
        MASTER.IERR = 1;
        return false;
    }

    const int last = MASTER.NUMSLC;
    const bool byLayers = IGEOMS.NLAYER > 0 && !(slope > MASTER.EPS) && layerBetween(ze, z4);
    if (!byLayers) {
        const int count = last - first + 1;
        for (int k = 1; k <= count; ++k) {
            const double f = static_cast<double>(k) / count;
            if (!placeBorder(first + k - 1, x4 + f * (xe - x4), z4 + f * (ze - z4))) return false;
        }
        return true;
    }
    // Borders keep their order; those at or below the exit depth go onto the plane at their
    // own depth, those above it halfway between the border before and the exit.
    double xBefore = x4, zBefore = z4;
    for (int j = first; j <= last; ++j) {
        double x = xe, base = ze;
        if (j < last) {
            base = SURF.ZZ(3, j);
            if (base >= ze) {
                x = x4 + (z4 - base) / std::tan(angle);
            } else {
                x = 0.5 * (xBefore + xe);
                base = 0.5 * (zBefore + ze);
            }
        }
        if (!placeBorder(j, x, base)) return false;
        xBefore = x;
        zBefore = base;
    }
    return true;
}

// Every slice checked, with its area and load point. False on a failure.
bool checkSlices() {
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double width = SURF.XX(2, i) - SURF.XX(1, i);
        const double leftHeight = SURF.ZZ(4, i) - SURF.ZZ(1, i);
        const double rightHeight = SURF.ZZ(3, i) - SURF.ZZ(2, i);
        if (width < MASTER.EPS || leftHeight < 0.0 || rightHeight < 0.0) {
            for (int copy = 1; copy <= 2; ++copy) {
                say(io::Line(" **** SR/MODIFY : Slice coordinate error, N=").Free(i).str());
                say("   N     X-SLICE       Z-SLICE");
                for (int corner = 1; corner <= 4; ++corner)
                    say(io::Line().I(corner, 4).F(SURF.XX(corner, i), 12, 4).F(SURF.ZZ(corner, i), 14, 4).str());
            }
            MASTER.IERR = -i;
            return false;
        }
        SURF.AREA(i) = 0.5 * (leftHeight + rightHeight) * width;
        if (SURF.AREA(i) < MASTER.EPS) {
            say(io::Line(" **** SR/MODIFY : Slice area error  N,A=").Free(i).Free(SURF.AREA(i)).str());
            MASTER.IERR = 1;
            return false;
        }
        loadPoint(SURF.XX, SURF.ZZ, i, SURF.AREA(i));
    }
    return true;
}

}  // namespace

void MODIFY() {
    MASTER.IERR = 0;
    MASTER.IMODIF = 0;
    if (MASTER.NUMSLC < 1 || MASTER.NUMSLC > MAXSLC) return;
    if (!baseFriction()) return;
    const double F = mobilisationFactor();
    const double degree = MASTER.PI / 180.0;

    if (MASTER.JPRINT >= kTraceLevel) {
        io::writeLine(MASTER.NF18, "SLICE  TAN3   ANGB   ANGMX   NSR   XSLC23  ZSLC2    ZSLC3");
    }
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double rise = SURF.ZZ(4, i) - SURF.ZZ(3, i);
        if (rise < 0.0) continue;
        const double baseAngle = std::atan(rise / (SURF.XX(3, i) - SURF.XX(4, i))) / degree;
        const double passiveAngle = 45.0 - 0.5 * std::atan(SURF.TAN3(i) / F) / degree;
        if (MASTER.JPRINT >= kTraceLevel)
            io::writeLine(MASTER.NF18,
                          io::Line().I(i, 5).F(SURF.TAN3(i), 7, 3).F(baseAngle, 7, 2).F(passiveAngle, 7, 2).str());
        if (passiveAngle > baseAngle) continue;
        MASTER.IMODIF = 1;
        if (MASTER.JPRINT >= kTraceLevel) io::writeLine(MASTER.NF18, io::Line().X(26).I(i, 5).str());
        if (!rebuildAlongPlane(i, passiveAngle * degree)) return;
    }
    if (MASTER.IMODIF == 1) checkSlices();
}
