// Small slice systems for the equilibrium tests, filled by hand into the surface record the
// way the slice geometry and slice-load routines leave it, and the channels the solver writes
// its messages to.

#pragma once

#include <cmath>
#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "support/tempdir.h"

namespace kalmo_test {

constexpr int kLogUnit = 18;
constexpr int kConsoleUnit = 12;
constexpr int kCopyUnit = 9;

// A fresh run (records and run-long state) and the three message channels on files of a
// temporary folder.
inline void freshRun(const TempDir& dir) {
    io::resetAll();
    startRun();
    MASTER.NF18 = kLogUnit;
    MASTER.NFOUT = kConsoleUnit;
    POSTGRAF.NFCOPY = kCopyUnit;
    io::openNew(kLogUnit, dir.path("KALMO.LOG"));
    io::openNew(kConsoleUnit, dir.path("console"));
    io::openNew(kCopyUnit, dir.path("copy"));
    MASTER.IDTYP = 1;
    MASTER.IDEFTO = 1;
    MASTER.METHOD = -1;
}

inline std::string logText() { return io::contents(kLogUnit); }
inline std::string consoleText() { return io::contents(kConsoleUnit); }
inline std::string copyText() { return io::contents(kCopyUnit); }

inline int countOf(const std::string& text, const std::string& part) {
    int count = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
    return count;
}

// Slices between the vertical borders x[0..n], the ground at depth top[0..n] and the shear
// surface at depth base[0..n] on those borders (z downward). Each slice gets its base terms,
// its weight (trapezoid area times the unit weight) as the only load, and the same drained
// strength on the base and on its right face.
inline void setSlices(int n, const double* x, const double* top, const double* base, double unitWeight,
                      double cohesion, double tanPhi) {
    MASTER.NUMSLC = n;
    double sumWeight = 0.0;
    for (int i = 1; i <= n; ++i) {
        const double xl = x[i - 1], xr = x[i];
        SURF.XX(1, i) = xl;
        SURF.XX(4, i) = xl;
        SURF.XX(2, i) = xr;
        SURF.XX(3, i) = xr;
        SURF.ZZ(1, i) = top[i - 1];
        SURF.ZZ(2, i) = top[i];
        SURF.ZZ(4, i) = base[i - 1];
        SURF.ZZ(3, i) = base[i];
        const double dx = xr - xl;
        const double dz = base[i] - base[i - 1];
        const double length = std::sqrt(dx * dx + dz * dz);
        SURF.L34(i) = length;
        SURF.SINB(i) = dz / length;
        SURF.COSB(i) = dx / length;
        const double area = dx * ((base[i - 1] - top[i - 1]) + (base[i] - top[i])) * 0.5;
        SURF.AREA(i) = area;
        SURF.WZ(i) = area * unitWeight;
        SURF.WX(i) = 0.0;
        SURF.C3(i) = cohesion;
        SURF.TAN3(i) = tanPhi;
        SURF.C2(i) = cohesion;
        SURF.TAN2(i) = tanPhi;
        SURF.SU3(i) = 0.0;
        SURF.SS(i) = 0.0;
        SURF.R(i) = 0.0;
        ISUR.MODE(i) = 1;
        sumWeight += SURF.WZ(i);
    }
    SURF.E1(1) = 0.0;
    SURF.T1(1) = 0.0;
    MASTER.E2TOL = std::abs(sumWeight) * 1.0E-4;
}

// A dry slope facing right: crest at depth 0 left of x = 8, toe at depth 10 right of x = 24,
// cut by a non-circular surface from the crest (x = 0) to the toe (x = 30) in ten slices.
constexpr int kSlopeSlices = 10;
constexpr double kSlopeX[kSlopeSlices + 1] = {0, 3, 6, 9, 12, 15, 18, 21, 24, 27, 30};
constexpr double kSlopeTop[kSlopeSlices + 1] = {0, 0, 0, 0.625, 2.5, 4.375, 6.25, 8.125, 10, 10, 10};
constexpr double kSlopeBase[kSlopeSlices + 1] = {0, 4.5, 8.0, 10.8, 12.8, 14.0, 14.5, 14.4, 13.6, 12.0, 10.0};

inline void setSlope(double unitWeight, double cohesion, double tanPhi) {
    setSlices(kSlopeSlices, kSlopeX, kSlopeTop, kSlopeBase, unitWeight, cohesion, tanPhi);
}

}  // namespace kalmo_test
