// surfaces/plane.cpp
//
// PLANE — earth-pressure planes: plane shear surfaces through the wall foot at a sweep of angles.
//
// The user gives the first and the last angle of the sweep and its step, in degrees (in either
// order; the step is at least one degree). Every plane rises from the wall foot at its angle
// to both sides, far beyond the section, and is handed to the solver, which cuts the soil
// wedge behind the wall into slices and finds the earth-pressure force on the wall at the
// safety factor the user gave. Each plane is listed with the x where it meets the ground and
// the earth-pressure force E2, the wall friction T2 and the height H2 of E2 at the wall. The
// critical plane is the one with the largest force when the safety factor is positive (active
// pressure), the smallest when it is negative (passive pressure), the last one solved when it
// is zero; of equal forces the later plane wins. A plane the solver fails on is reported and
// the user decides whether the sweep goes on; it is not listed and cannot become critical.
// Every plane analysed becomes the last surface of the run; the solver keeps the best one.
//
// The critical plane's angle, x at the ground, wall friction, height and score are kept from
// sweep to sweep (the summary of a sweep in which no plane was solved shows them with the start
// value of the force); the critical force starts afresh with every sweep.
//
// Reads:  the answers on MASTER.NFIN; MASTER.SF (the given safety factor), PI; GEOMSH.XWALL,
//         DWALL, ZWALL (the wall); after the solver: MASTER.IERR, NUMSLC, SCORE; SURF XX(1,1),
//         E2, T2, H2 of the last slice
// Writes: the sweep on MASTER.NFOUT (console), solver errors and their question also on
//         POSTGRAF.NFCOPY; SURF.XS, ZS (three points) and SPAR(1) (angle, degrees), SPAR(3)
//         (wall x), SPAR(4) (wall height); through SOLVER the planes and their results
// IERR:   0 on return, except after a solver error the user did not want to pass over (its code)

#include <algorithm>
#include <cmath>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"
#include "solver/solver.h"
#include "surfaces/surfaces.h"

namespace {

constexpr double kNoForce = 1.0E12f;  // start of the critical force: below (active) or above (passive) any force
constexpr double kReachPerHeight = 20.0;  // the plane reaches 20 wall heights out from the foot
// A sweep never turns further than once round; beyond that it would only repeat planes, and a
// huge range would keep the program sweeping for ever.
constexpr double kWidestSweep = 360.0;
// A sweep ends on LAST itself when its steps land there; rounding in the angles must not lose it.
constexpr double kLandingTolerance = 1.0E-6;

// One listed plane.
struct PlaneResult {
    double angle = 0.0;     // degrees
    double xGround = 0.0;   // where the plane meets the ground (x of the first slice)
    double wallForce = 0.0; // E2 of the last slice: the earth pressure on the wall
    double friction = 0.0;  // T2 of the last slice: the wall friction
    double height = 0.0;    // H2 of the last slice: height of the earth pressure above the wall foot
    double score = 0.0;
};

// The critical plane of the run (its force is set afresh by every sweep).
PlaneResult gCritical;

void listPlane(const PlaneResult& plane) {
    io::writeLine(MASTER.NFOUT, io::Line()
                                    .F(plane.angle, 9, 1)
                                    .F(plane.xGround, 11, 3)
                                    .ES(plane.wallForce, 14, 3)
                                    .ES(plane.friction, 16, 3)
                                    .F(plane.height, 11, 3)
                                    .F(plane.score, 9, 3)
                                    .str());
}

// The plane through the wall foot, rising at `angle` (radians) on both sides of the wall.
void makePlane(double angle) {
    const double reach = kReachPerHeight * GEOMSH.DWALL;
    const double rise = reach * std::tan(angle);
    SURF.XS(1) = GEOMSH.XWALL - reach;
    SURF.ZS(1) = GEOMSH.ZWALL - rise;
    SURF.XS(2) = GEOMSH.XWALL;
    SURF.ZS(2) = GEOMSH.ZWALL;
    SURF.XS(3) = GEOMSH.XWALL + reach;
    SURF.ZS(3) = GEOMSH.ZWALL - rise;
}

// Active pressure keeps the largest force, passive the smallest; with no sign every solved
// plane becomes critical. Equal forces go to the later plane.
bool isCritical(double wallForce, double criticalForce) {
    if (MASTER.SF > 0.0) return wallForce >= criticalForce;
    if (MASTER.SF < 0.0) return wallForce <= criticalForce;
    return true;
}

}  // namespace

void resetPlaneCritical() { gCritical = PlaneResult{}; }

void PLANE() {
    const int out = MASTER.NFOUT;
    io::writeLine(out, "");
    io::writeLine(out, " GIVE EP-PLANE ANGLES (DEGRS)");
    io::writeLine(out, " FIRST LAST STEP");
    io::writePrompt(out, "  ");
    double first = 0.0, last = 0.0, step = 0.0;
    io::FreeReader reader(MASTER.NFIN, io::Span::Answer);
    reader(first)(last)(step);
    if (!reader.ok()) return;

    const double degree = MASTER.PI / 180.0;
    const double lowest = std::min(first, last) * degree;
    const double highest = std::max(first, last) * degree;
    const double stepAngle = std::max(step * degree, degree);
    if (highest - lowest > kWidestSweep * degree) {
        say(io::Line(" **** SR/PLANE : ANGLE RANGE ABOVE").F(kWidestSweep, 6, 0).A(" DEGREES").str());
        return;
    }
    // The angles are counted out from the lowest rather than summed step by step: a sum of
    // steps drifts by rounding and would miss LAST in most sweeps (40, 41, ... 60 would stop
    // at 59). The count is at most 361 planes.
    const int planes = static_cast<int>(std::floor((highest - lowest) / stepAngle + kLandingTolerance)) + 1;

    io::writeLine(out, "");
    io::writeLine(out, "     ANGLE  X-SURFACE  EARTH PRESSURE  WALL FRICTION  HEIGHT H2  SCORE");

    gCritical.wallForce = MASTER.SF >= 0.0 ? -kNoForce : kNoForce;
    for (int k = 0; k < planes; ++k) {
        const double angle = lowest + k * stepAngle;
        makePlane(angle);
        SURF.SPAR(1) = angle / degree;
        SURF.SPAR(3) = GEOMSH.XWALL;
        SURF.SPAR(4) = GEOMSH.DWALL;
        SOLVER(3);

        if (MASTER.IERR != 0) {
            say("");
            say(io::Line(" **** SR/PLANE :  ERROR FROM SR/SOLVER ").I(MASTER.IERR, 5).str());
            sayPrompt(" SHALL AUTOMATIC SEARCH BE CONTINUED (Y/N) ..... ");
            int answer = 0;
            YESNO(answer, MASTER.NFIN);
            if (answer != 1) return;
            MASTER.IERR = 0;
            continue;
        }

        // A plane the solver did not cut into slices (none requested) has no force to list.
        const int wallSlice = MASTER.NUMSLC;
        if (wallSlice < 1 || wallSlice > MAXSLC) continue;
        PlaneResult plane;
        plane.angle = SURF.SPAR(1);
        plane.xGround = SURF.XX(1, 1);
        plane.wallForce = SURF.E2(wallSlice);
        plane.friction = SURF.T2(wallSlice);
        plane.height = SURF.H2(wallSlice);
        plane.score = MASTER.SCORE;
        listPlane(plane);
        if (isCritical(plane.wallForce, gCritical.wallForce)) gCritical = plane;
    }

    io::writeLine(out, " CRITICAL PLANE :");
    listPlane(gCritical);
}
