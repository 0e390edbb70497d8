// An infinite slope cut into identical slices, with its exact equilibrium solution filled into
// the surface record: the tests of the score and of the equilibrium check start from it and
// spoil what they want to see reported.
//
// The ground and the shear surface are parallel planes at the angle beta, the shear surface a
// vertical depth h below the ground; the slices have vertical sides and the width b. On such a
// slope the forces on the two sides of a slice are equal and act parallel to the slope, so
// they cancel: the base carries the weight alone, P = W cos(beta), S = W sin(beta), and the
// slope stands with F = (c l + P tan(phi)) / S. The weight acts through the middle of the base.

#pragma once

#include <cmath>

#include "records.h"

namespace kalmo_test {

struct InfiniteSlope {
    double beta;        // inclination of ground and shear surface (radians), deeper to the right
    double depth;       // vertical depth of the shear surface below the ground
    double width;       // slice width
    double unitWeight;
    double cohesion;
    double tanPhi;
    double sideForce;   // interslice normal force, the same on every face
    double sideHeight;  // its height above the base, relative to the face height
};

// The safety factor at which the infinite slope is in equilibrium.
inline double infiniteSlopeFactor(const InfiniteSlope& s) {
    const double weight = s.unitWeight * s.width * s.depth;
    const double length = s.width / std::cos(s.beta);
    return (s.cohesion * length + weight * std::cos(s.beta) * s.tanPhi) / (weight * std::sin(s.beta));
}

// Fills n slices of the slope and their equilibrium solution at its own safety factor.
inline void setInfiniteSlope(int n, const InfiniteSlope& s) {
    const double sinb = std::sin(s.beta), cosb = std::cos(s.beta), tanb = std::tan(s.beta);
    const double weight = s.unitWeight * s.width * s.depth;
    const double length = s.width / cosb;
    const double F = infiniteSlopeFactor(s);
    const double sideShear = s.sideForce * tanb;
    MASTER.NUMSLC = n;
    MASTER.SF = F;
    MASTER.SFTZ = F;
    MASTER.E2TOL = 1.0E-4 * weight * n;
    for (int i = 1; i <= n; ++i) {
        const double xl = (i - 1) * s.width, xr = i * s.width, xm = (xl + xr) * 0.5;
        SURF.XX(1, i) = xl;
        SURF.XX(4, i) = xl;
        SURF.XX(2, i) = xr;
        SURF.XX(3, i) = xr;
        SURF.XX(5, i) = xm;
        SURF.ZZ(1, i) = xl * tanb;
        SURF.ZZ(2, i) = xr * tanb;
        SURF.ZZ(4, i) = xl * tanb + s.depth;
        SURF.ZZ(3, i) = xr * tanb + s.depth;
        SURF.ZZ(5, i) = xm * tanb + s.depth * 0.5;
        SURF.AREA(i) = s.width * s.depth;
        SURF.SINB(i) = sinb;
        SURF.COSB(i) = cosb;
        SURF.L34(i) = length;
        SURF.WZ(i) = weight;
        SURF.C3(i) = s.cohesion;
        SURF.TAN3(i) = s.tanPhi;
        SURF.C2(i) = s.cohesion;
        SURF.TAN2(i) = s.tanPhi;
        SURF.P(i) = weight * cosb;
        SURF.S1(i) = weight * sinb;
        SURF.S(i) = weight * sinb;
        SURF.E1(i) = s.sideForce;
        SURF.E2(i) = s.sideForce;
        SURF.T1(i) = sideShear;
        SURF.T2(i) = sideShear;
        SURF.H1(i) = s.sideHeight * s.depth;
        SURF.H2(i) = s.sideHeight * s.depth;
        SURF.H3(i) = length * 0.5;
        SURF.H30(i) = length * 0.5;
        const double shearCapacity = (s.tanPhi * s.sideForce + s.cohesion * s.depth) / F;
        SURF.R(i) = shearCapacity != 0.0 ? sideShear / shearCapacity : 0.0;
        SURF.R0(i) = SURF.R(i);
        ISUR.MODE(i) = 1;
    }
}

}  // namespace kalmo_test
