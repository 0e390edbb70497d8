// input/suxz.cpp
//
// SUXZ — undrained shear strength at a point, and its value for a shear plane inclined at beta.
//
// su0 is the sum of the material's base value |MAT(14)|, the strength of the undrained-strength
// x-lines (used when the material asks for it with MAT(16) >= 0.5, or has a base value of 0.1 or
// less) and the node strengths read inside the element at the point. An anisotropic material
// (isotropy flag MAT(15) not above 0.5) has the direct strength SUD/SU0 x su0 on a horizontal
// plane, rising to SUA/SU0 x su0 at beta = +45 degrees and falling to SUP/SU0 x su0 at -45
// degrees, by sin(2 beta). A negative MAT(14) marks a material whose strengths are returned
// negated; for a plane steeper than 88.2 degrees the anisotropic strengths are returned before
// that sign is applied, as the system has always done.
//
// Reads:  SOLPRP.MAT (MAT14, MAT16, ISOTRP, SUASU0, SUDSU0, SUPSU0), XSU, ZSU, SUPRF, SUNOD;
//         ISOLPR NSUX, NSUPT, NSUNOD; the mesh through LOCATE
// Writes: su0, su (0 when an error is reported); MASTER.IERR
// IERR:   0 ok; code of LOCATE (1 point outside the mesh); 100 + code of INTPRF on the
//         undrained-strength x-lines

#include <cmath>

#include "input/input.h"
#include "records.h"

namespace {
constexpr double kTiny = 1.0e-20f;
constexpr double kProfileFlag = 0.5f;    // MAT(16) from this on: the x-lines apply
constexpr double kSmallBase = 0.1f;      // base value up to this: the x-lines apply
constexpr double kIsotropic = 0.5f;      // MAT(15) above this: no direction dependence
constexpr double kSteepPlane = 1.53938f; // 88.2 degrees
}  // namespace

void SUXZ(double x, double z, double beta, double& su0, double& su) {
    su0 = 0.0;
    su = 0.0;
    int m = 0;
    LOCATE(x, z, m);
    if (MASTER.IERR != 0) return;

    const double given = SOLPRP.MAT(MAT14, m);
    const double sign = given < -kTiny ? -1.0 : 1.0;
    const double baseValue = std::fabs(given);

    double profilePart = 0.0;
    if (ISOLPR.NSUX > 0 && (SOLPRP.MAT(MAT16, m) >= kProfileFlag || baseValue <= kSmallBase)) {
        int code = 0;
        INTPRF(ISOLPR.NSUX, SOLPRP.XSU.data(), ISOLPR.NSUPT.data(), MAXSUP, SOLPRP.ZSU.data(), SOLPRP.SUPRF.data(), x,
               z, profilePart, code);
        if (code != 0) {
            MASTER.IERR = 100 + code;
            return;
        }
    }

    double nodePart = 0.0;
    if (ISOLPR.NSUNOD > 0) {
        int element = -1;
        LOCATE(x, z, element);
        if (MASTER.IERR != 0) return;
        nodePart = NODMEAN(element, x, z, SOLPRP.SUNOD.data());
    }

    const double strength = baseValue + profilePart + nodePart;
    double directional = strength;
    if (SOLPRP.MAT(ISOTRP, m) <= kIsotropic) {
        directional = SOLPRP.MAT(SUDSU0, m) * strength;
        if (beta > kSteepPlane) {
            su0 = strength;
            su = directional;
            return;
        }
        if (beta >= 0.0)
            directional += std::sin(2.0 * beta) * (SOLPRP.MAT(SUASU0, m) * strength - directional);
        else
            directional += std::sin(2.0 * beta) * (directional - SOLPRP.MAT(SUPSU0, m) * strength);
    }
    su0 = sign * strength;
    su = sign * directional;
}
