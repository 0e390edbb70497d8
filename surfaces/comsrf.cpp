// surfaces/comsrf.cpp
//
// COMSRF — the combined surface of a slope: a plane from a point of the soil surface tangent
// to a circle, the arc of the circle, and a straight exit plane.
//
// From the entry point (XS1, ZS1) a plane runs down to the point where it touches the circle
// about (XC, ZC) of radius R; the arc follows the circle to the point where its tangent rises
// at the exit angle BETA; from there the exit plane rises at BETA. Both planes are prolonged
// far out so that the polyline surely cuts the ground. The arc is drawn with n points (n the
// incoming NPTS), the polyline gets n + 4: the far and the true entry point, the arc, a point
// 10 higher on the exit plane and a far point on it. z grows downward, so "rises" means z falls.
//
// Arguments: XS1, ZS1 the entry point; XC, ZC the centre; R (in/out) the radius, made a little
//            smaller than the entry point's distance from the centre when it reaches it; BETA
//            (in/out) the exit angle in radians on entry, the entry plane's inclination on
//            return; X, Z (out) the polyline; SPAR (out) XS1, XC, ZC, R, the exit angle in
//            degrees with a negative sign, SPAR(7) = 0 (the type mark of the result print);
//            NPTS (in: arc points, raised to 2 and limited to what the polyline can hold; out:
//            all points); NFOUT the channel of the message; IERR (out)
// IERR:   0 ok; 101 the centre is not right of the entry point; 102 the centre is the entry
//         point; 3 the exit plane is flatter than tan = 0.02. Each writes the problem line
//         with its identifier (1001, 1002, 500) and the values to NFOUT.

#include "surfaces/surfaces.h"

#include <cmath>

#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"

namespace {

constexpr double kTiny = 1.0e-10f;
constexpr double kInside = 0.99999f;       // radius factor when the entry point lies on the circle
constexpr double kFlattestExit = 0.02f;    // tan of the flattest exit plane
constexpr double kRise = 10.0;             // height of the second exit point above the arc's end
constexpr double kFar = 1000.0;            // prolongation factor of both planes

void reportProblem(int nfout, double XS1, double ZS1, double XC, double ZC, double R, double BETA, int IERR, int id) {
    io::writeLine(nfout, " **** SR/COMSRF PROBLEM   XS,ZS,XC,ZC,R,BETA,IERR,ID=");
    io::writeLine(nfout, io::Line()
                             .E(XS1, 11, 4)
                             .E(ZS1, 11, 4)
                             .E(XC, 11, 4)
                             .E(ZC, 11, 4)
                             .E(R, 11, 4)
                             .E(BETA, 11, 4)
                             .I(IERR, 5)
                             .I(id, 5)
                             .str());
}

}  // namespace

void COMSRF(double XS1, double ZS1, double XC, double ZC, double& R, double& BETA, Arr1<double, MAXPTS>& X,
            Arr1<double, MAXPTS>& Z, Arr1<double, 10>& SPAR, int& NPTS, int NFOUT, int& IERR) {
    IERR = 0;
    const double exitAngle = BETA;
    if (XC - XS1 < kTiny) {
        IERR = 101;
        reportProblem(NFOUT, XS1, ZS1, XC, ZC, R, exitAngle, IERR, 1001);
        return;
    }
    const double distance = std::sqrt((ZS1 - ZC) * (ZS1 - ZC) + (XC - XS1) * (XC - XS1));
    if (distance < kTiny) {
        IERR = 102;
        reportProblem(NFOUT, XS1, ZS1, XC, ZC, R, exitAngle, IERR, 1002);
        return;
    }
    if (distance < R) R = kInside * distance;

    // The arc needs two points at least (its two tangent points), and the polyline holds it
    // with four more.
    int n = NPTS;
    if (n < 2) n = 2;
    if (n > MAXPTS - 4) n = MAXPTS - 4;

    // Inclination of the entry plane below the horizontal: the tangent from the entry point.
    const double entryAngle = std::asin(R / distance) - std::asin((ZS1 - ZC) / distance);

    // The arc, from the tangent point of the entry plane to the point whose tangent rises at
    // the exit angle.
    const double step = (entryAngle + exitAngle) / (n - 1);
    for (int j = 1; j <= n; ++j) {
        const double phi = 0.5 * MASTER.PI - entryAngle + (j - 1) * step;
        X(j + 2) = XC - R * std::cos(phi);
        Z(j + 2) = ZC + R * std::sin(phi);
    }

    const double tanExit = std::tan(exitAngle);
    Z(n + 3) = Z(n + 2) - kRise;
    if (!(tanExit > kFlattestExit)) {
        IERR = 3;
        reportProblem(NFOUT, XS1, ZS1, XC, ZC, R, exitAngle, IERR, 500);
        return;
    }
    X(n + 3) = X(n + 2) + kRise / tanExit;
    NPTS = n + 4;
    X(n + 4) = X(n + 3) + kFar * kRise / tanExit;
    Z(n + 4) = Z(n + 3) - kFar * kRise;

    X(2) = XS1;
    Z(2) = ZS1;
    X(1) = X(2) - kFar * (X(3) - X(2));
    Z(1) = Z(2) - kFar * (Z(3) - Z(2));

    SPAR(1) = XS1;
    SPAR(2) = XC;
    SPAR(3) = ZC;
    SPAR(4) = R;
    SPAR(5) = -exitAngle * 180.0 / MASTER.PI;
    SPAR(7) = 0.0;
    BETA = entryAngle;
}
