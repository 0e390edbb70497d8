// input/intpol.cpp
//
// INTPOL — linear interpolation in a broken line, end values held constant outside its range.
//
// The table holds n points (x(k), y(k)); its abscissas increase (direction 1) or decrease
// (direction -1) by more than 1.0E-10 from point to point. A table that breaks this anywhere
// is refused whatever the abscissa asked for, so that a bad table never goes unnoticed.
//
// Reads:  the arguments only (n, direction, x(1..n), y(1..n), xq)
// Writes: yq, the value at xq (1.0E10 when an error is reported); ierr
// IERR:   0 ok; 1 direction neither 1 nor -1; 2 abscissas not increasing; 3 abscissas not
//         decreasing; 4 more than 1000 points

#include "input/input.h"

namespace {
constexpr int kMaxPoints = 1000;
constexpr double kNoValue = 1.0e10f;
constexpr double kMinStep = 1.0e-10f;
}  // namespace

void INTPOL(int n, int direction, const double* x, const double* y, double xq, double& yq, int& ierr) {
    ierr = 0;
    yq = kNoValue;
    if (n > kMaxPoints) {
        ierr = 4;
        return;
    }
    if (n < 2) {
        yq = y[0];
        return;
    }

    if (direction == 1) {
        if (x[n - 1] - x[0] < kMinStep) {
            ierr = 2;
            return;
        }
        for (int k = 1; k < n; ++k) {
            if (x[k] - x[k - 1] - kMinStep < 0.0) {
                ierr = 2;
                return;
            }
        }
        if (xq <= x[0]) {
            yq = y[0];
            return;
        }
        if (xq >= x[n - 1]) {
            yq = y[n - 1];
            return;
        }
        int k = 1;
        while (x[k] - xq < 0.0) ++k;
        if (x[k] == xq) {
            yq = y[k];
            return;
        }
        yq = y[k - 1] + (y[k] - y[k - 1]) / (x[k] - x[k - 1]) * (xq - x[k - 1]);
        return;
    }

    if (direction == -1) {
        if (x[0] - x[n - 1] < kMinStep) {
            ierr = 3;
            return;
        }
        for (int k = 1; k < n; ++k) {
            if (x[k - 1] - x[k] - kMinStep < 0.0) {
                ierr = 3;
                return;
            }
        }
        if (xq >= x[0]) {
            yq = y[0];
            return;
        }
        if (xq <= x[n - 1]) {
            yq = y[n - 1];
            return;
        }
        int k = 1;
        while (x[k] - xq > 0.0) ++k;
        if (x[k] == xq) {
            yq = y[k];
            return;
        }
        yq = y[k - 1] + (y[k] - y[k - 1]) / (x[k] - x[k - 1]) * (xq - x[k - 1]);
        return;
    }

    ierr = 1;
}
