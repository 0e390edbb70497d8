// input/intprf.cpp
//
// INTPRF — value at a point (x, z) from vertical profiles given at increasing abscissas.
//
// Profile i stands at x = xprof(i) and holds npoints(i) levels zlev(k, i), increasing with k
// (z grows downward), with a value values(k, i) at each; both tables have the leading dimension
// ld. Between two profiles the query level is carried to each profile parallel to the line that
// joins their first points (so a layered profile sloping with the ground is followed), each
// profile is read at its carried level, and the two values are interpolated linearly in x.
// Outside the profiles' x range the nearest profile alone is used; outside a profile's level
// range its end value is held.
//
// The tables are validated on the first call of the run only: they are read once and do not
// change afterwards.
//
// Reads:  the arguments only; keeps a call counter across calls (see resetIntprfCalls)
// Writes: result (0 when the validation fails); ierr
// IERR:   0 ok; on the first call only: 1 no profiles; 3 leading dimension below 1; 2 a profile
//         with fewer than one point; 4 a profile with more points than the leading dimension;
//         5 profile abscissas not increasing by at least 1.0E-10; 6 levels of a profile not
//         increasing by at least 1.0E-10

#include "input/input.h"

namespace {

constexpr double kMinStep = 1.0e-10f;

int callCount = 0;

int validateProfiles(int nprof, const double* xprof, const int* npoints, int ld, const double* zlev) {
    if (nprof < 1) return 1;
    if (ld < 1) return 3;
    for (int i = 0; i < nprof; ++i) {
        if (npoints[i] < 1) return 2;
        if (npoints[i] > ld) return 4;
    }
    for (int i = 1; i < nprof; ++i)
        if (xprof[i] - xprof[i - 1] < kMinStep) return 5;
    for (int i = 0; i < nprof; ++i) {
        const double* level = zlev + static_cast<long>(i) * ld;
        for (int k = 1; k < npoints[i]; ++k)
            if (level[k] - level[k - 1] < kMinStep) return 6;
    }
    return 0;
}

// Value of profile i (0-based) at level z: end values held above the first and below the last
// level, linear in between.
double profileValue(int i, const int* npoints, int ld, const double* zlev, const double* values, double z) {
    const double* level = zlev + static_cast<long>(i) * ld;
    const double* value = values + static_cast<long>(i) * ld;
    int count = npoints[i];
    if (count > ld) count = ld;  // only reachable with tables that skipped validation
    if (count < 1) count = 1;
    if (count == 1 || z < level[0]) return value[0];
    if (z >= level[count - 1]) return value[count - 1];
    int k = 1;
    while (k < count - 1 && level[k] <= z) ++k;
    return value[k - 1] + (value[k] - value[k - 1]) / (level[k] - level[k - 1]) * (z - level[k - 1]);
}

}  // namespace

void resetIntprfCalls() { callCount = 0; }

void INTPRF(int nprof, const double* xprof, const int* npoints, int ld, const double* zlev, const double* values,
            double xq, double zq, double& result, int& ierr) {
    ierr = 0;
    result = 0.0;
    ++callCount;
    if (callCount == 1) {
        ierr = validateProfiles(nprof, xprof, npoints, ld, zlev);
        if (ierr != 0) return;
    }
    if (nprof < 1 || ld < 1) return;  // only reachable with tables that skipped validation

    int k1, k2;  // 0-based: the profiles left and right of xq
    if (xq < xprof[0]) {
        k1 = k2 = 0;
    } else if (nprof == 1 || xq >= xprof[nprof - 1]) {
        k1 = k2 = nprof - 1;
    } else {
        k2 = 1;
        while (k2 < nprof - 1 && !(xq < xprof[k2])) ++k2;
        k1 = k2 - 1;
    }

    if (k1 == k2) {
        result = profileValue(k1, npoints, ld, zlev, values, zq);
        return;
    }

    const double xLeft = xprof[k1];
    const double xRight = xprof[k2];
    const double slope = (zlev[static_cast<long>(k2) * ld] - zlev[static_cast<long>(k1) * ld]) / (xRight - xLeft);
    const double levelLeft = zq - slope * (xq - xLeft);
    const double levelRight = zq + slope * (xRight - xq);
    const double valueLeft = profileValue(k1, npoints, ld, zlev, values, levelLeft);
    const double valueRight = profileValue(k2, npoints, ld, zlev, values, levelRight);
    result = valueLeft + (valueRight - valueLeft) / (xRight - xLeft) * (xq - xLeft);
}
