// solver/equat2.cpp
//
// EQUAT2 — real roots of the quadratic A*x^2 + B*x + C = 0.
//
// A vanishing A leaves the linear equation B*x + C = 0 (both roots are its one root). A
// discriminant that is negative only by rounding, small against B^2, is taken as zero: the
// two roots then coincide. Every root of the quadratic is checked in the equation.
//
// Reads:  A, B, C
// Writes: X1 = (sqrt(D) - B)/(2A), X2 = (-B - sqrt(D))/(2A) with D = B^2 - 4AC; X1 = X2 =
//         -C/B when |A| <= 1.0E-10
// IERR:   0 ok; 1 no real roots (D <= -1.0E-10 and not a rounding effect); 2 |A| and |B| both
//         at most 1.0E-10 (no equation left); 3 a root leaves a residual above 1.0E-10

#include <cmath>

#include "solver/solver.h"

namespace {
constexpr double kSmall = 1.0E-10f;
constexpr double kRoundingShare = 0.0001f;
}  // namespace

void EQUAT2(double A, double B, double C, double& X1, double& X2, int& IERR) {
    IERR = 0;
    X1 = 0.0;
    X2 = 0.0;
    if (std::fabs(A) <= kSmall) {
        if (std::fabs(B) <= kSmall) {
            IERR = 2;
            return;
        }
        X1 = -C / B;
        X2 = X1;
        return;
    }

    double D = B * B - 4.0 * A * C;
    if (D <= -kSmall) {
        const bool roundingOnly = B * B >= kSmall && -D / (B * B) <= kRoundingShare;
        if (!roundingOnly) {
            IERR = 1;
            return;
        }
        D = 0.0;
    } else if (D < 0.0) {
        // Negative by less than the tolerance: a double root, not the root of a negative.
        D = 0.0;
    }
    const double rootD = std::sqrt(D);
    X1 = (rootD - B) / (2.0 * A);
    X2 = (-B - rootD) / (2.0 * A);
    const double residual1 = std::fabs((A * X1 + B) * X1 + C);
    const double residual2 = std::fabs((A * X2 + B) * X2 + C);
    if (residual1 > kSmall || residual2 > kSmall) IERR = 3;
}
