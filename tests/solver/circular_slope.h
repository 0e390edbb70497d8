// Slices of a shear surface through a homogeneous slope, filled into the surface record the way
// the slice geometry and slice-load routines leave them: corners, load point (the centroid of
// the slice), base terms, weight as the only load, one strength on every base and face, and
// the initial positions of the base forces in the middle of the bases.
//
// The slope faces right: the crest at depth 0 left of x = 10, the slope face falling 1 in 2 to
// the toe at depth 10 at x = 30, level ground beyond (z grows downward). A circle with its
// centre above the slope face cuts it from the crest to the toe; the body slides to the right.

#pragma once

#include <cmath>
#include <functional>

#include "records.h"

namespace kalmo_test {

inline double slopeGround(double x) {
    if (x <= 10.0) return 0.0;
    if (x >= 30.0) return 10.0;
    return (x - 10.0) * 0.5;
}

struct Circle {
    double XC, ZC, radius;
    double depth(double x) const { return ZC + std::sqrt(radius * radius - (x - XC) * (x - XC)); }
};

// The toe circle: centre (25, -10), through the toe (30, 10); it leaves the crest at
// x = 25 - sqrt(325).
inline Circle toeCircle() { return {25.0, -10.0, std::sqrt(425.0)}; }
inline double toeCircleEntry() { return 25.0 - std::sqrt(325.0); }

// n slices of equal width between xa and xb, under the ground line top(x), above the shear
// surface base(x), whose bases are the chords between the slice borders.
inline void setSurfaceSlices(int n, double xa, double xb, const std::function<double(double)>& top,
                             const std::function<double(double)>& base, double unitWeight, double cohesion,
                             double tanPhi) {
    MASTER.NUMSLC = n;
    double sumWeight = 0.0;
    for (int i = 1; i <= n; ++i) {
        const double xl = xa + (xb - xa) * (i - 1) / n;
        const double xr = i == n ? xb : xa + (xb - xa) * i / n;
        const double vx[4] = {xl, xr, xr, xl};
        const double vz[4] = {top(xl), top(xr), base(xr), base(xl)};
        for (int k = 0; k < 4; ++k) {
            SURF.XX(k + 1, i) = vx[k];
            SURF.ZZ(k + 1, i) = vz[k];
        }
        // Area and centroid of the quadrilateral (shoelace).
        double twiceArea = 0.0, cx = 0.0, cz = 0.0;
        for (int k = 0; k < 4; ++k) {
            const int m = (k + 1) % 4;
            const double cross = vx[k] * vz[m] - vx[m] * vz[k];
            twiceArea += cross;
            cx += (vx[k] + vx[m]) * cross;
            cz += (vz[k] + vz[m]) * cross;
        }
        const double area = std::abs(twiceArea) * 0.5;
        SURF.XX(5, i) = cx / (3.0 * twiceArea);
        SURF.ZZ(5, i) = cz / (3.0 * twiceArea);
        SURF.AREA(i) = area;

        const double dx = xr - xl, dz = vz[2] - vz[3];
        const double length = std::sqrt(dx * dx + dz * dz);
        SURF.L34(i) = length;
        SURF.SINB(i) = dz / length;
        SURF.COSB(i) = dx / length;
        SURF.BETA(i) = std::asin(dz / length);
        SURF.TANB(i) = dz / dx;
        SURF.WZ(i) = area * unitWeight;
        SURF.WX(i) = 0.0;
        SURF.WM(i) = 0.0;
        SURF.C3(i) = cohesion;
        SURF.TAN3(i) = tanPhi;
        SURF.C2(i) = cohesion;
        SURF.TAN2(i) = tanPhi;
        SURF.SU3(i) = 0.0;
        SURF.SS(i) = 0.0;
        SURF.HS(i) = 0.0;
        SURF.H30(i) = 0.5 * length;
        SURF.R(i) = 0.0;
        ISUR.MODE(i) = 1;
        sumWeight += SURF.WZ(i);
    }
    SURF.E1(1) = 0.0;
    SURF.T1(1) = 0.0;
    SURF.H1(1) = 0.0;
    MASTER.E2TOL = std::abs(sumWeight) * 1.0E-4;
}

// The toe circle through the slope in n slices, given as a circle surface.
inline void setToeCircle(int n, double unitWeight, double cohesion, double tanPhi) {
    const Circle circle = toeCircle();
    setSurfaceSlices(n, toeCircleEntry(), 30.0, slopeGround, [circle](double x) { return circle.depth(x); },
                     unitWeight, cohesion, tanPhi);
    MASTER.NTYP = 2;
    SURF.SPAR(1) = circle.XC;
    SURF.SPAR(2) = circle.ZC;
    SURF.SPAR(3) = circle.radius;
}

}  // namespace kalmo_test
