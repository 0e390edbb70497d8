// Slice systems for the moment-equilibrium tests, filled by hand into the surface record as
// the slice-load routines and a force-equilibrium solution leave them, and the channels the
// moment solution writes to and reads its answer from.

#pragma once

#include <cmath>
#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "solver/solver.h"
#include "support/tempdir.h"

namespace kalmo_test::moments {

constexpr int kMomentLog = 18;
constexpr int kMomentConsole = 12;
constexpr int kMomentCopy = 9;
constexpr int kMomentAnswers = 8;

// Fresh records, a fresh run (no question answered yet), the message channels on files of a
// temporary folder and the answers, one a line, on the console input channel.
inline void freshMomentRun(const kalmo_test::TempDir& dir, const std::string& answers = "") {
    io::resetAll();
    startRun();
    MASTER.NF18 = kMomentLog;
    MASTER.NFOUT = kMomentConsole;
    MASTER.NFIN = kMomentAnswers;
    POSTGRAF.NFCOPY = kMomentCopy;
    io::openNew(kMomentLog, dir.path("KALMO.LOG"));
    io::openNew(kMomentConsole, dir.path("console"));
    io::openNew(kMomentCopy, dir.path("copy"));
    dir.write("answers", answers);
    io::openOld(kMomentAnswers, dir.path("answers"));
    MASTER.IDTYP = 1;
    MASTER.IDEFTO = 2;
    MASTER.METHOD = 0;
    MASTER.R1 = 0.5f;
    MASTER.R2 = 0.5f;
    MASTER.R3 = 0.5f;
}

inline std::string momentLog() { return io::contents(kMomentLog); }
inline std::string momentConsole() { return io::contents(kMomentConsole); }
inline std::string momentCopy() { return io::contents(kMomentCopy); }

inline int occurrences(const std::string& text, const std::string& part) {
    int count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

// Ground of a slope facing right (z downward): level at depth 0 left of x = 10, falling at
// 1:1.5 to depth 10 at x = 25, level beyond.
inline double groundDepth(double x) {
    if (x <= 10.0) return 0.0;
    if (x >= 25.0) return 10.0;
    return (x - 10.0) * (10.0 / 15.0);
}

// The slip circle of the tests: centre above the slope, radius 25. It leaves the crest at
// x = 15 - sqrt(525) and meets the toe level at x = 30.
constexpr double kCircleX = 15.0;
constexpr double kCircleZ = -10.0;
constexpr double kCircleRadius = 25.0;

inline double circleDepth(double x) {
    return kCircleZ + std::sqrt(kCircleRadius * kCircleRadius - (x - kCircleX) * (x - kCircleX));
}

// Centroid and area of the slice quadrilateral from its four corners.
inline void sliceCentroid(int i, double& area, double& xc, double& zc) {
    const int order[4] = {1, 2, 3, 4};
    double twiceArea = 0.0, sx = 0.0, sz = 0.0;
    for (int k = 0; k < 4; ++k) {
        const int a = order[k], b = order[(k + 1) % 4];
        const double xa = SURF.XX(a, i), za = SURF.ZZ(a, i), xb = SURF.XX(b, i), zb = SURF.ZZ(b, i);
        const double cross = xa * zb - xb * za;
        twiceArea += cross;
        sx += (xa + xb) * cross;
        sz += (za + zb) * cross;
    }
    area = std::fabs(twiceArea) * 0.5;
    xc = sx / (3.0 * twiceArea);
    zc = sz / (3.0 * twiceArea);
}

// Slices between the vertical borders x[0..n], each with the given top and base depths at
// its borders: corners, base terms, weight at the centroid, strengths, P acting at the
// middle of the base. Interslice forces at the entry are zero.
inline void setMomentSlices(int n, const double* x, const double* top, const double* base, double unitWeight,
                      double cohesion, double tanPhi) {
    MASTER.NUMSLC = n;
    double sumWeight = 0.0;
    for (int i = 1; i <= n; ++i) {
        SURF.XX(1, i) = SURF.XX(4, i) = x[i - 1];
        SURF.XX(2, i) = SURF.XX(3, i) = x[i];
        SURF.ZZ(1, i) = top[i - 1];
        SURF.ZZ(2, i) = top[i];
        SURF.ZZ(4, i) = base[i - 1];
        SURF.ZZ(3, i) = base[i];
        double area, xc, zc;
        sliceCentroid(i, area, xc, zc);
        SURF.XX(5, i) = xc;
        SURF.ZZ(5, i) = zc;
        SURF.AREA(i) = area;
        const double dx = x[i] - x[i - 1], dz = base[i] - base[i - 1];
        const double length = std::sqrt(dx * dx + dz * dz);
        SURF.L34(i) = length;
        SURF.SINB(i) = dz / length;
        SURF.COSB(i) = dx / length;
        SURF.H30(i) = 0.5 * length;
        SURF.WZ(i) = area * unitWeight;
        SURF.C3(i) = cohesion;
        SURF.C2(i) = cohesion;
        SURF.SU3(i) = cohesion;
        SURF.TAN3(i) = tanPhi;
        SURF.TAN2(i) = tanPhi;
        ISUR.MODE(i) = 1;
        sumWeight += SURF.WZ(i);
    }
    MASTER.E2TOL = 1.0E-4 * sumWeight;
}

// An undrained slope cut by the slip circle in n slices of equal width; the base corners lie
// on the circle.
inline void setCircleSlope(int n, double unitWeight, double undrainedStrength) {
    const double xEntry = kCircleX - std::sqrt(kCircleRadius * kCircleRadius - kCircleZ * kCircleZ);
    const double xExit = kCircleX + std::sqrt(kCircleRadius * kCircleRadius - (10.0 - kCircleZ) * (10.0 - kCircleZ));
    double x[MAXSLC + 1], top[MAXSLC + 1], base[MAXSLC + 1];
    for (int k = 0; k <= n; ++k) {
        x[k] = xEntry + (xExit - xEntry) * k / n;
        top[k] = groundDepth(x[k]);
        base[k] = k == 0 || k == n ? top[k] : circleDepth(x[k]);
    }
    setMomentSlices(n, x, top, base, unitWeight, undrainedStrength, 0.0);
}

// A start like that of a force-equilibrium solution at factor F: each base normal force
// balances the slice's weight and its mobilised base shear vertically.
inline void setVerticalBalanceStart(double F) {
    MASTER.SF = F;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const double shear = (SURF.C3(i) * SURF.L34(i) + SURF.SS(i)) / F;
        SURF.P(i) = (SURF.WZ(i) - shear * SURF.SINB(i)) / (SURF.COSB(i) + SURF.TAN3(i) * SURF.SINB(i) / F);
    }
}

// Moment about base corner 3 of slice i of a force (fx, fz) acting at (x, z), in the
// program's sense: z downward, positive for z*fx - x*fz.
inline double momentAboutCorner3(int i, double x, double z, double fx, double fz) {
    return (z - SURF.ZZ(3, i)) * fx - (x - SURF.XX(3, i)) * fz;
}

}  // namespace kalmo_test::moments
