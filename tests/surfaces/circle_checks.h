// Independent values for circles through a slope: the moment ratio of an undrained circle over
// its true arc and sliding mass, and Bishop's simplified factor of a circle, both worked out
// from the ground line, the circle and the soil alone.

#pragma once

#include <algorithm>
#include <cmath>
#include <functional>

namespace kalmo_test {

using GroundLine = std::function<double(double)>;

struct TrueCircle {
    double xc, zc, R;
    double depth(double x) const { return zc + std::sqrt(std::max(R * R - (x - xc) * (x - xc), 0.0)); }
};

inline double bisectRoot(const std::function<double(double)>& f, double a, double b) {
    for (int k = 0; k < 200; ++k) {
        const double m = 0.5 * (a + b);
        if ((f(a) < 0.0) == (f(m) < 0.0)) {
            a = m;
        } else {
            b = m;
        }
    }
    return 0.5 * (a + b);
}

// Where the circle enters (crackDepth below the ground, on its left half) and leaves the ground
// (on its right half, at the ground itself).
inline double circleEntry(const TrueCircle& c, const GroundLine& ground, double crackDepth) {
    return bisectRoot([&](double x) { return c.depth(x) - ground(x) - crackDepth; }, c.xc - c.R, c.xc);
}
inline double circleExit(const TrueCircle& c, const GroundLine& ground) {
    return bisectRoot([&](double x) { return c.depth(x) - ground(x); }, c.xc + c.R, c.xc);
}

// Resisting over driving moment about the centre of an undrained circle: su along the true arc
// from entry to exit, against the weight of the mass between ground and arc (midpoint rule on
// 200000 strips).
inline double undrainedMomentRatio(const TrueCircle& c, const GroundLine& ground, double crackDepth, double su,
                                   double unitWeight) {
    const double entry = circleEntry(c, ground, crackDepth);
    const double exit = circleExit(c, ground);
    const int n = 200000;
    const double h = (exit - entry) / n;
    double driving = 0.0;
    for (int k = 0; k < n; ++k) {
        const double x = entry + (k + 0.5) * h;
        driving += unitWeight * (c.xc - x) * (c.depth(x) - ground(x)) * h;
    }
    const double angle =
        std::atan2(c.depth(entry) - c.zc, entry - c.xc) - std::atan2(c.depth(exit) - c.zc, exit - c.xc);
    return su * c.R * c.R * std::fabs(angle) / driving;
}

// Bishop's simplified factor of a dry circle in one c-phi soil, n slices of equal width from
// entry to exit with chord bases: F = sum (c b + W tan phi) / m / sum W sin(alpha), with
// m = cos(alpha) + sin(alpha) tan(phi) / F, iterated. The slice weights are those of the soil
// under the real ground (Simpson's rule on 40 strips a slice).
inline double bishopSimplified(const TrueCircle& c, const GroundLine& ground, double crackDepth, int n,
                               double cohesion, double tanPhi, double unitWeight) {
    const double entry = circleEntry(c, ground, crackDepth);
    const double exit = circleExit(c, ground);
    const double b = (exit - entry) / n;
    double F = 1.0;
    for (int iteration = 0; iteration < 200; ++iteration) {
        double resisting = 0.0, driving = 0.0;
        for (int i = 0; i < n; ++i) {
            const double xl = entry + i * b, xr = xl + b;
            const double zl = c.depth(xl), zr = c.depth(xr);
            const double alpha = std::atan2(zr - zl, b);
            const int strips = 40;
            const double h = b / strips;
            double area = 0.0;
            for (int k = 0; k < strips; ++k) {
                const double x = xl + (k + 0.5) * h;
                area += (zl + (zr - zl) * (x - xl) / b - ground(x)) * h;
            }
            const double W = unitWeight * area;
            resisting += (cohesion * b + W * tanPhi) / (std::cos(alpha) + std::sin(alpha) * tanPhi / F);
            driving += W * std::sin(alpha);
        }
        F = resisting / driving;
    }
    return F;
}

}  // namespace kalmo_test
