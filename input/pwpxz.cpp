// input/pwpxz.cpp
//
// PWPXZ — pore-water pressure at a point (z grows downward).
//
// Hydrostatic model (IDPWP 1): (z - water table) x GAMWAT, never below the lowest allowed pore
// pressure (pore-water datum 4, PWPMIN, zero or negative).
//
// General model (otherwise), built from the material m at the point:
//  - pore-pressure ratio: with RU-FCT(m) nonzero, ru x GAMTOT x depth below the ground surface,
//    the unit weight taken from the material at mid-depth. A point at or above the ground gets
//    the negated product and nothing else is added;
//  - a material water level MAT(17) replaces that with (z - MAT(17)) x GAMWAT, never negative;
//    otherwise the material's own pressure PWPMAT is added, and, when that is (near) zero, the
//    value of the pore-pressure x-lines;
//  - without pore-pressure x-lines, the hydrostatic pressure below the water table: GAMPWP in
//    the soil, GAMWAT in free water standing above the ground;
//  - node pore pressures, read inside the element at the point;
//  - finally the lower limit PWPMIN, scaled by D/SU(B) of m when m has no B-factor.
//
// Reads:  IWATER IDPWP, NUMXPW, NPWPT, NODPWP; WATER1 ZWATER, GAMWAT, GAMPWP, PWPMIN, XPW, ZPW,
//         PWPRF, PWNOD; SOLPRP.MAT (GAMTOT, PWPMAT, RUFCT, BFCT, DSUB, MAT17); IGEOMS NX;
//         GEOMSH XSURF, ZSURF; the mesh through LOCATE
// Writes: u, the pore pressure (0 when an error is reported); MASTER.IERR
// IERR:   0 ok; code of LOCATE (1 point outside the mesh); 100 + code of INTPOL on the ground
//         surface; 300 + code of INTPRF on the pore-pressure x-lines

#include <cmath>

#include "input/input.h"
#include "records.h"

namespace {

constexpr double kTiny = 1.0e-20f;
constexpr double kMinWaterLevel = 0.001f;  // |MAT(17)| below this: no material water level
constexpr double kMinPwpMat = 0.01f;       // |PWPMAT| up to this: the x-lines apply

// Ground level at x; false (with IERR set) when the interpolation fails.
bool groundLevel(double x, double& zs) {
    int code = 0;
    INTPOL(IGEOMS.NX + 1, 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), x, zs, code);
    if (code != 0) {
        MASTER.IERR = 100 + code;
        return false;
    }
    return true;
}

}  // namespace

void PWPXZ(double x, double z, double& u) {
    MASTER.IERR = 0;
    u = 0.0;

    if (IWATER.IDPWP == 1) {
        u = (z - WATER1.ZWATER) * WATER1.GAMWAT;
        if (u < WATER1.PWPMIN) u = WATER1.PWPMIN;
        return;
    }

    int m = 0;
    LOCATE(x, z, m);
    if (MASTER.IERR != 0) return;

    double pressure = 0.0;
    bool aboveGround = false;
    const double ru = SOLPRP.MAT(RUFCT, m);
    if (std::fabs(ru) >= kTiny) {
        double zs = 0.0;
        if (!groundLevel(x, zs)) return;
        int midMaterial = 0;
        LOCATE(x, (z + zs) / 2.0, midMaterial);
        if (MASTER.IERR != 0) return;
        pressure = (z - zs) * ru * SOLPRP.MAT(GAMTOT, midMaterial);
        if (z - zs <= 0.0) {
            pressure = -pressure;
            aboveGround = true;
        }
    }

    if (!aboveGround) {
        const double waterLevel = SOLPRP.MAT(MAT17, m);
        if (std::fabs(waterLevel) >= kMinWaterLevel) {
            pressure = (z - waterLevel) * WATER1.GAMWAT;
            if (pressure < 0.0) pressure = 0.0;
        } else {
            const double materialPressure = SOLPRP.MAT(PWPMAT, m);
            pressure += materialPressure;
            if (std::fabs(materialPressure) <= kMinPwpMat && IWATER.NUMXPW > 0) {
                double profilePressure = 0.0;
                int code = 0;
                INTPRF(IWATER.NUMXPW, WATER1.XPW.data(), IWATER.NPWPT.data(), MAXPWP, WATER1.ZPW.data(),
                       WATER1.PWPRF.data(), x, z, profilePressure, code);
                if (code != 0) {
                    MASTER.IERR = 300 + code;
                    return;
                }
                pressure += profilePressure;
            }
        }

        if (IWATER.NUMXPW == 0) {
            double zs = 0.0;
            if (!groundLevel(x, zs)) return;
            const double level = WATER1.ZWATER;
            if (zs <= level)
                pressure += (z - level) * WATER1.GAMPWP;
            else
                pressure += (z - zs) * WATER1.GAMPWP + (zs - level) * WATER1.GAMWAT;
        }

        if (IWATER.NODPWP > 0) {
            int element = -1;
            LOCATE(x, z, element);
            if (MASTER.IERR != 0) return;
            pressure += NODMEAN(element, x, z, WATER1.PWNOD.data());
        }
    }

    double factor = 1.0;
    const double dsub = SOLPRP.MAT(DSUB, m);
    if (SOLPRP.MAT(BFCT, m) < kTiny && std::fabs(dsub) > kTiny) factor = dsub;
    if (pressure < factor * WATER1.PWPMIN) pressure = factor * WATER1.PWPMIN;
    u = pressure;
}
