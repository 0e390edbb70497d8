// A dry 1:2 slope for whole-surface analyses: ground at z = 0 left of x = 0, falling to z = 10
// at x = 20 and level beyond, rock at z = 50, one material (20 kN/m3, c = 10, tan phi = 0.5),
// the water table far below. Run control as the central loop leaves it before a surface is
// tried, force-equilibrium method, zero interslice roughness, a crack depth dc = 0.5 at the
// upper end of every surface. Helpers hand a polyline to the solver and rebuild, by hand, the
// slices the slice geometry makes of a general surface, with their weights.

#pragma once

#include <cmath>
#include <string>
#include <vector>

#include "io/channels.h"
#include "records.h"
#include "slices/slice_world.h"
#include "solver/solver.h"
#include "surfaces/surfaces.h"

namespace kalmo_test {

constexpr double kUnitWeight = 20.0;
constexpr double kCohesion = 10.0;
constexpr double kTanPhi = 0.5;
constexpr double kCrackDepth = 0.5;
constexpr double kEndFace = 0.001f;  // the height the geometry gives the end faces of a general surface

// Ground depth of the slope section at x.
inline double worldGround(double x) {
    if (x <= 0.0) return 0.0;
    if (x >= 20.0) return 10.0;
    return 0.5 * x;
}

struct Point {
    double x, z;
};

class SolverWorld : public SliceWorld {
public:
    SolverWorld() {
        setGround({-100.0, 0.0, 20.0, 100.0}, {0.0, 0.0, 10.0, 10.0});
        SOLPRP.MAT(COHESN, 1) = kCohesion;
        SOLPRP.MAT(PHIANG, 1) = kTanPhi;
        SOLPRP.MAT(GAMTOT, 1) = kUnitWeight;
        SOLPRP.STRDAT(1) = kCrackDepth;
        MASTER.METHOD = -1;
        MASTER.NTYP = 1;
        MASTER.NSLREQ = 0;
        MASTER.BESTSF = 1000000.0;
        MASTER.BESTE2 = -1000000.0;
        MASTER.KLAST = 2;
        MASTER.KLSAVE = 2;
    }

    // Answers of the dialogue, read from channel 8.
    void answers(const std::string& lines) {
        dir.write("ANSWERS.TXT", lines);
        io::openOld(8, dir.path("ANSWERS.TXT"));
    }

    // The log-copy channel becomes the standard output of a batch run (a file here).
    void batchMode() {
        POSTGRAF.NFCOPY = 6;
        io::openNew(6, dir.path("SCREEN.TXT"));
    }
    std::string copy() const { return io::contents(POSTGRAF.NFCOPY); }

    // The polyline as a general surface routine leaves it: the stored points with a far point
    // added at each end; then the solver.
    static void solve(const std::vector<Point>& points) {
        std::vector<double> x, z;
        for (const Point& p : points) {
            x.push_back(p.x);
            z.push_back(p.z);
        }
        const int n = static_cast<int>(points.size());
        GENSRF(n, x.data(), z.data(), 0.0, 0.0, 1.0, 1.0, SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
        SOLVER(n + 2);
    }
};

// A slice as the geometry makes it, and its weight.
struct HandSlice {
    double xLeft, xRight, topLeft, topRight, baseLeft, baseRight, unitWeight;
    double width() const { return xRight - xLeft; }
    double area() const { return 0.5 * ((baseLeft - topLeft) + (baseRight - topRight)) * width(); }
    double weight() const { return unitWeight * area(); }
    double length() const { return std::hypot(width(), baseRight - baseLeft); }
    double sinBase() const { return (baseRight - baseLeft) / length(); }
    double cosBase() const { return width() / length(); }
};

// The slices of a general surface in a section of the given ground depth, whose entry segment
// (first two points) crosses the ground dc lower, and whose exit lies on level ground at depth
// exitLevel: the first slice starts at the entry with a face dc + 0.001 high, every stored point
// between entry and exit is a border, and the last face is 0.001 high. The stored points must
// lie where the ground has its kinks or on level ground, so that every slice top is straight.
template <typename Ground>
std::vector<HandSlice> handSlices(const std::vector<Point>& points, Ground ground, double dc, double exitLevel,
                                  double unitWeight) {
    const Point& a = points[0];
    const Point& b = points[1];
    const double entryX = a.x + (ground(a.x) + dc - a.z) * (b.x - a.x) / (b.z - a.z);
    double exitX = 0.0;
    for (size_t k = 1; k < points.size(); ++k) {
        const Point& p = points[k - 1];
        const Point& q = points[k];
        if (p.z > exitLevel && q.z <= exitLevel) exitX = p.x + (exitLevel - p.z) * (q.x - p.x) / (q.z - p.z);
    }
    std::vector<HandSlice> slices;
    double x = entryX;
    double base = ground(entryX) + kEndFace + dc;
    for (size_t k = 1; k < points.size(); ++k) {
        if (points[k].x <= entryX) continue;
        const bool last = points[k].x >= exitX;
        const double right = last ? exitX : points[k].x;
        const double rightBase = last ? ground(exitX) + kEndFace : points[k].z;
        slices.push_back({x, right, ground(x), ground(right), base, rightBase, unitWeight});
        if (last) break;
        x = right;
        base = rightBase;
    }
    return slices;
}

// The slices of a general surface in the slope section of SolverWorld.
inline std::vector<HandSlice> handSlices(const std::vector<Point>& points) {
    return handSlices(points, worldGround, kCrackDepth, 10.0, kUnitWeight);
}

// Base forces and the interslice force handed on, slice by slice, at the safety factor F with
// no interslice shear.
struct HandForces {
    double P, S, E2;
};
inline std::vector<HandForces> simplifiedForces(const std::vector<HandSlice>& slices, double cohesion, double tanPhi,
                                                double F) {
    std::vector<HandForces> forces;
    double E = 0.0;
    for (const HandSlice& s : slices) {
        const double sinA = s.sinBase(), cosA = s.cosBase(), l = s.length();
        const double P = (s.weight() - cohesion * l * sinA / F) / (cosA + sinA * tanPhi / F);
        const double S = (cohesion * l + P * tanPhi) / F;
        E += P * sinA - S * cosA;
        forces.push_back({P, S, E});
    }
    return forces;
}

// Safety factor of force equilibrium with no interslice shear (the simplified method of
// slices): every slice balances its weight vertically with the base forces P and S = (c l +
// P tan phi)/F; F makes the horizontal base forces sum to zero. Solved by bisection.
inline double simplifiedFactor(const std::vector<HandSlice>& slices, double cohesion, double tanPhi) {
    auto unbalanced = [&](double F) { return simplifiedForces(slices, cohesion, tanPhi, F).back().E2; };
    double low = 0.2, high = 20.0;
    for (int k = 0; k < 200; ++k) {
        const double mid = 0.5 * (low + high);
        if (unbalanced(mid) < 0.0) {
            low = mid;
        } else {
            high = mid;
        }
    }
    return 0.5 * (low + high);
}

}  // namespace kalmo_test
