// surfaces/comlow.cpp
//
// COMLOW — the combined surface under a foundation base: a circle whose centre lies below the
// base, joined to the ground on both sides by fans about the base corners and straight planes.
//
// The base runs from XLEFT to XRGHT at the level ZBOTM; the circle about (XC, ZC) touches that
// level from below (radius R0 = ZC - ZBOTM). When the centre lies right of the left corner:
// the entry plane rises to the left at 45 + PHIDG/2 degrees and touches a fan about the left
// corner; the fan turns down until it points at the centre, where the arc about the centre
// takes over under the base; a second fan about the right corner turns from the centre's
// direction until the exit plane, rising to the right at 45 - PHIDG/2 degrees, leaves it as
// its tangent. The fans' radii are the distances from each corner to the arc along the line to
// the centre. When the centre lies at or left of the left corner, the arc passes through the
// left corner and there is no left fan. Every piece starts where the one before it ends, so the
// polyline is continuous: 3 points of the entry plane (a far one first), 24 of the left fan,
// 49 of the arc and 49 of the right fan (or 73 of the arc alone), and 2 of the exit plane: 127.
//
// KBEAM = 2 (the cantilevered beam shape), with the centre right of the left corner: the
// sliding body starts at the centre's x. The entry plane rises from (XC, ZBOTM); from there a
// cantilever's deflection line, clamped level at the base and free at the point where the exit
// plane starts, is drawn in 122 equal x-steps; then the exit plane as above: again 127 points.
// The line never rises above the base level, since the exit plane starts below it.
//
// Angles of points about a centre are measured with z downward: direction a is (cos a, sin a),
// so -pi/2 points straight up and pi/2 straight down.
//
// Arguments: XLEFT, XRGHT, ZBOTM the base; XC, ZC the centre; PHIDG the friction angle of the
//            planes in degrees; KBEAM 1 (type 2) or 2 (type 3); NPTS, X, Z (out) the polyline;
//            SPAR (out) XLEFT, XRGHT, ZBOTM, XC, ZC, the exit angle 45 - PHIDG/2 in degrees and
//            the type mark KBEAM + 0.5
// IERR:   0 ok; 1 the centre is not below the base (R0 < 1.0E-6); 2 the centre is not left of
//         the right corner; 3 KBEAM is neither 1 nor 2. No polyline is made on an error.

#include "surfaces/surfaces.h"

#include <cmath>

#include "records.h"

namespace {

constexpr double kTiny = 1.0e-6f;
constexpr double kFar = 1000.0;
constexpr int kLeftFanPoints = 24;
constexpr int kArcPoints = 49;
constexpr int kRightFanPoints = 49;
constexpr int kLoneArcPoints = 73;
constexpr int kBeamSteps = 122;

// Appends the point at angle a on the circle of radius r about (xc, zc).
void onCircle(double xc, double zc, double r, double a, int& n, Arr1<double, MAXPTS>& X, Arr1<double, MAXPTS>& Z) {
    ++n;
    X(n) = xc + r * std::cos(a);
    Z(n) = zc + r * std::sin(a);
}

// Appends `count` points of an arc from angle `from` (not drawn: the point before ends there)
// in equal steps of `step`.
void arc(double xc, double zc, double r, double from, double step, int count, int& n, Arr1<double, MAXPTS>& X,
         Arr1<double, MAXPTS>& Z) {
    for (int k = 1; k <= count; ++k) onCircle(xc, zc, r, from + k * step, n, X, Z);
}

// Points 1..3: the entry plane rising to the left at gamma (tanBeta = 1/tan gamma) from
// (x3, z3), point 1 a thousand times further out.
void entryPlane(double x3, double z3, double tanBeta, Arr1<double, MAXPTS>& X, Arr1<double, MAXPTS>& Z) {
    X(1) = x3 - (1.0 + kFar) * tanBeta;
    Z(1) = z3 - (1.0 + kFar);
    X(2) = x3 - tanBeta;
    Z(2) = z3 - 1.0;
    X(3) = x3;
    Z(3) = z3;
}

// Two more points: the exit plane from point n rising to the right at beta
// (tanGamma = 1/tan beta), and a point a thousand times further out.
void exitPlane(double tanGamma, int& n, Arr1<double, MAXPTS>& X, Arr1<double, MAXPTS>& Z) {
    X(n + 1) = X(n) + tanGamma;
    Z(n + 1) = Z(n) - 1.0;
    X(n + 2) = X(n + 1) + kFar * tanGamma;
    Z(n + 2) = Z(n + 1) - kFar;
    n += 2;
}

}  // namespace

void COMLOW(double XLEFT, double XRGHT, double ZBOTM, double XC, double ZC, double PHIDG, int KBEAM, int& NPTS,
            Arr1<double, MAXPTS>& X, Arr1<double, MAXPTS>& Z, Arr1<double, 10>& SPAR, int& IERR) {
    IERR = 0;
    const double R0 = ZC - ZBOTM;
    if (R0 < kTiny) IERR = 1;
    if (XRGHT - XC < kTiny) IERR = 2;
    if (KBEAM != 1 && KBEAM != 2) IERR = 3;
    if (IERR != 0) return;

    const double pi = MASTER.PI;
    const double degree = pi / 180.0;
    const double exitAngle = (45.0 - 0.5 * PHIDG) * degree;   // beta: the exit plane's rise
    const double entryAngle = (45.0 + 0.5 * PHIDG) * degree;  // gamma: the entry plane's rise
    const bool leftFan = XC > XLEFT;

    double arcRadius, leftFanRadius = 0.0, rightFanRadius, rightTurn;
    double arcFrom, arcStep;
    int arcPoints;
    double leftFanTurn = 0.0;
    if (!leftFan) {
        const double toRight = std::atan((XRGHT - XC) / R0);
        const double toLeft = std::atan((XLEFT - XC) / R0);
        arcRadius = std::hypot(XLEFT - XC, R0);
        rightFanRadius = std::hypot(XRGHT - XC, R0) - arcRadius;
        rightTurn = exitAngle + toRight;
        arcFrom = toLeft - 0.5 * pi;
        arcStep = (toRight - toLeft) / kLoneArcPoints;
        arcPoints = kLoneArcPoints;
    } else {
        const double toRight = std::atan((XRGHT - XC) / R0);
        const double toLeft = std::atan((XC - XLEFT) / R0);
        arcRadius = R0;
        leftFanRadius = R0 / std::cos(toLeft) - R0;
        rightFanRadius = R0 / std::cos(toRight) - R0;
        rightTurn = exitAngle + toRight;
        leftFanTurn = entryAngle + toLeft;
        arcFrom = -0.5 * pi - toLeft;
        arcStep = (toRight + toLeft) / kArcPoints;
        arcPoints = kArcPoints;
    }

    // Entry plane: point 3 touches the left fan (the left corner itself without one).
    const double entryStart = pi - exitAngle;
    const double tanExit = std::tan(exitAngle);
    entryPlane(XLEFT + leftFanRadius * std::cos(entryStart), ZBOTM + leftFanRadius * std::sin(entryStart), tanExit,
               X, Z);
    int n = 3;

    if (leftFan) arc(XLEFT, ZBOTM, leftFanRadius, entryStart, -leftFanTurn / kLeftFanPoints, kLeftFanPoints, n, X, Z);
    arc(XC, ZC, arcRadius, arcFrom, arcStep, arcPoints, n, X, Z);
    arc(XRGHT, ZBOTM, rightFanRadius, rightTurn + entryAngle, -rightTurn / kRightFanPoints, kRightFanPoints, n, X, Z);

    // Exit plane, tangent to the right fan where the fan's direction is gamma below the level.
    const double tanEntry = std::tan(entryAngle);
    const double xExit = X(n), zExit = Z(n);
    exitPlane(tanEntry, n, X, Z);

    if (KBEAM == 2 && leftFan) {
        // The beam: clamped level at (XC, ZBOTM), its free end where the exit plane starts.
        entryPlane(XC, ZBOTM, tanExit, X, Z);
        const double span = xExit - XC;
        const double drop = zExit - ZBOTM;
        n = 3;
        for (int k = 1; k <= kBeamSteps; ++k) {
            const double xi = static_cast<double>(k) / kBeamSteps;
            ++n;
            X(n) = XC + xi * span;
            Z(n) = ZBOTM + drop * xi * xi * (3.0 - xi) / 2.0;
        }
        exitPlane(tanEntry, n, X, Z);
    }
    NPTS = n;

    SPAR(1) = XLEFT;
    SPAR(2) = XRGHT;
    SPAR(3) = ZBOTM;
    SPAR(4) = XC;
    SPAR(5) = ZC;
    SPAR(6) = 45.0 - 0.5 * PHIDG;
    SPAR(7) = KBEAM + 0.5;
}
