// slices/pwp.cpp
//
// PWP — pore water forces on the base and on the right face of slice I.
//
// Two pore-pressure models. Below a horizontal water level (IDPWP not 2) the pressure is
// hydrostatic, u(z) = (z - z0) * GAMWAT, counted from the level zw where it equals the lowest
// allowed pore pressure p0 (zero or negative): the resultants follow in closed form from the
// trapezoid of pressure on the wetted part of each face. With the general model (IDPWP = 2)
// the pressures come from PWPXZ at six base points and eleven face points and are summed by
// the trapezoidal rule; on a general surface the pore pressures given at its points are added.
//
// During the load build the positions of the resultants are kept in fields the equilibrium
// solution reuses later: P(I) is the distance of the U3 resultant from corner 3 along the base,
// E2(I) the height of the U2 resultant above corner 3.
//
// Reads:  SURF XX, ZZ, COSB, L34 of slice I; MASTER NTYP, NSLREQ, NUMSLC, EPS, IUPDAT (set when
//         a material with a B factor is met: the stress update then supplies the pore pressures);
//         IWATER IDPWP; WATER1 ZWATER, GAMWAT, PWPMIN; IGENER IGEN, NPGEN; GENERL XGEN, PGEN
// Writes: SURF U2, E2, U3, P of slice I
// IERR:   0 ok; 100 + the code of a failing PWPXZ or INTPOL (fields then partly updated)

#include <cmath>

#include "input/input.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kSmallForce = 1.0E-6f;

// A resultant this small in magnitude is replaced by kSmallForce before it divides a moment.
double guarded(double force) { return std::fabs(force) < kSmallForce ? kSmallForce : force; }

// A resultant below EPS in magnitude is replaced by EPS in the division only.
double divisor(double force) { return std::fabs(force) < MASTER.EPS ? MASTER.EPS : force; }

void hydrostatic(int I) {
    double z0 = WATER1.ZWATER;
    double gamw = WATER1.GAMWAT;
    double p0 = WATER1.PWPMIN;
    // Top of the counted zone: where the hydrostatic pressure equals p0.
    double zw = gamw <= kSmallForce ? z0 : z0 + p0 / gamw;
    auto pressure = [&](double z) { return (z - z0) * gamw; };

    double z2 = SURF.ZZ(2, I);
    double z3 = SURF.ZZ(3, I);
    double z4 = SURF.ZZ(4, I);
    if (std::fmax(z3, z4) < zw) return;

    double length = (SURF.XX(3, I) - SURF.XX(4, I)) / SURF.COSB(I);
    double u3 = pressure(z3);
    double u4 = pressure(z4);
    double wetted = length;
    if (z4 <= z3) {
        // Corner 3 is the deeper end; the wetted part starts there.
        if (z4 <= zw) {
            if (z3 > z4) wetted = (z3 - zw) * length / (z3 - z4);
            u4 = p0;
        }
        SURF.U3(I) = guarded((u3 + u4) / 2.0 * wetted);
        SURF.P(I) = (u4 * wetted * wetted / 2.0 + (u3 - u4) / 2.0 * wetted * wetted / 3.0) / SURF.U3(I);
    } else {
        // Corner 4 is the deeper end; moments are taken about it and turned to corner 3.
        if (z3 <= zw) {
            wetted = (z4 - zw) * length / (z4 - z3);
            u3 = p0;
        }
        SURF.U3(I) = guarded((u3 + u4) / 2.0 * wetted);
        double momentAbout4 = u3 * wetted * wetted / 2.0 + (u4 - u3) / 2.0 * wetted * wetted / 3.0;
        SURF.P(I) = length - momentAbout4 / SURF.U3(I);
    }

    // Right face, wetted from zw (or its top corner) down to corner 3. The formula holds as it
    // stands even when corner 3 lies above zw.
    double uTop = p0;
    double height = z3 - zw;
    if (z2 > zw) {
        uTop = pressure(z2);
        height = z3 - z2;
    }
    SURF.U2(I) = guarded((u3 + uTop) / 2.0 * height);
    SURF.E2(I) = ((u3 - uTop) / 2.0 * height * height / 3.0 + uTop * height * height / 2.0) / SURF.U2(I);
}

// Pore pressure at a point of the general model; false after an error (IERR raised by 100).
bool pressureAt(double x, double z, double& u) {
    PWPXZ(x, z, u);
    if (MASTER.IERR != 0) {
        MASTER.IERR += 100;
        return false;
    }
    return true;
}

bool generalModel(int I) {
    constexpr double kFifth = 0.2f;
    constexpr double kTenth = 0.1f;

    // Base: five equal steps from corner 3 to corner 4.
    double stepX = (SURF.XX(3, I) - SURF.XX(4, I)) * kFifth;
    double stepZ = (SURF.ZZ(3, I) - SURF.ZZ(4, I)) * kFifth;
    double step = std::sqrt(stepX * stepX + stepZ * stepZ);
    double force = 0.0;
    double moment = 0.0;
    double uPrev = 0.0;
    if (!pressureAt(SURF.XX(3, I), SURF.ZZ(3, I), uPrev)) return false;
    for (int k = 1; k <= 5; ++k) {
        double u = 0.0;
        if (!pressureAt(SURF.XX(3, I) - k * stepX, SURF.ZZ(3, I) - k * stepZ, u)) return false;
        double start = (k - 1) * step;
        force += (uPrev + u) / 2.0 * step;
        // Trapezoid from uPrev to u over [start, start + step]: its first moment about corner 3.
        moment += (uPrev + u) / 2.0 * step * start + (uPrev + 2.0 * u) * step * step / 6.0;
        uPrev = u;
    }
    SURF.U3(I) = force;
    SURF.P(I) = moment / divisor(force);

    // Right face: ten equal steps from corner 2 down to corner 3.
    double x2 = SURF.XX(2, I);
    double faceStep = (SURF.ZZ(3, I) - SURF.ZZ(2, I)) * kTenth;
    force = 0.0;
    moment = 0.0;
    if (!pressureAt(x2, SURF.ZZ(2, I), uPrev)) return false;
    for (int k = 1; k <= 10; ++k) {
        double u = 0.0;
        if (!pressureAt(x2, SURF.ZZ(2, I) + k * faceStep, u)) return false;
        double start = (k - 1) * faceStep;
        force += (uPrev + u) / 2.0 * faceStep;
        moment += (uPrev + u) / 2.0 * faceStep * start + (uPrev + 2.0 * u) * faceStep * faceStep / 6.0;
        uPrev = u;
    }
    SURF.U2(I) = force;
    SURF.E2(I) = (SURF.ZZ(3, I) - SURF.ZZ(2, I)) - moment / divisor(force);
    return true;
}

// Pore pressures given at the points of the general surface in use, added to slice I.
void generalSurface(int I) {
    constexpr double kTwoThirds = 0.6667f;
    int surface = IGENER.IGEN;
    if (surface < 1 || surface > MAXGEN) return;
    int points = IGENER.NPGEN(surface);
    if (points < 1 || points > MAXGPT) return;
    const double* xs = GENERL.XGEN.column(surface);
    const double* ps = GENERL.PGEN.column(surface);

    double left = 0.0;
    double right = 0.0;
    if (MASTER.NSLREQ == 0) {
        // The slices are the surface's own segments.
        left = GENERL.PGEN(I, surface);
        right = left;
    } else {
        double x = SURF.XX(1, I);
        int ierr = 0;
        INTPOL(points, 1, xs, ps, x, left, ierr);
        if (ierr == 0) {
            x = SURF.XX(2, I);
            INTPOL(points, 1, xs, ps, x, right, ierr);
        }
        if (ierr != 0) {
            say(io::Line()
                    .A(" ***** SR/PWP PROBLEM WHEN COMPUTING GEN SURF PWP")
                    .A(" IERR,SLICE,XVALUE =")
                    .Free(ierr)
                    .Free(I)
                    .Free(x)
                    .str());
            MASTER.IERR = ierr + 100;
            return;
        }
    }

    double length = SURF.L34(I);
    double baseOld = SURF.U3(I);
    double armOld = SURF.P(I);
    SURF.U3(I) = baseOld + (left + right) / 2.0 * length;
    // The triangular part is placed at two thirds of the base length in this sum, as it stands.
    SURF.P(I) = ((right - left) / 2.0 * length * length * kTwoThirds + left * length * length / 2.0 + armOld * baseOld) /
                divisor(SURF.U3(I));

    double bottom = right;
    if (MASTER.NSLREQ == 0 && I < MASTER.NUMSLC && I + 1 <= MAXGPT) bottom = (left + GENERL.PGEN(I + 1, surface)) / 2.0;
    double height = SURF.ZZ(3, I) - SURF.ZZ(2, I);
    double added = bottom * height / 2.0;
    double faceOld = SURF.U2(I);
    double faceArmOld = SURF.E2(I);
    SURF.U2(I) = faceOld + added;
    SURF.E2(I) = (added * height / 3.0 + faceArmOld * faceOld) / divisor(SURF.U2(I));
}

}  // namespace

void PWP(int I) {
    MASTER.IERR = 0;
    SURF.U2(I) = 0.0;
    SURF.E2(I) = 0.0;
    SURF.U3(I) = 0.0;
    SURF.P(I) = 0.0;
    if (IWATER.IDPWP != 2) {
        hydrostatic(I);
        return;
    }
    if (MASTER.IUPDAT != 0) return;
    if (!generalModel(I)) return;
    if (MASTER.NTYP == 1) generalSurface(I);
}
