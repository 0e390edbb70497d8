// solver/lineq.cpp
//
// LINEQ — solution of a small dense linear system A*X = B by Gaussian elimination.
//
// The matrix and the right-hand side are copied into the work array W (columns 1..N the
// matrix, column N+1 the right-hand side) and every row is scaled by its largest coefficient,
// so that one fixed pivot threshold suits rows of any magnitude. Rows are exchanged only where
// a pivot vanishes. The solution is checked against the original system, since an elimination
// through a small pivot can return numbers that do not solve it.
//
// Reads:  B(N), A(N,N) (column by column, leading dimension N), N, NP (columns of W)
// Writes: X(N); W(N,NP) as work space (leading dimension N)
// IERR:   0 ok; 1 no usable pivot in some column (singular system); 2 W has fewer than N+1
//         columns, or N < 1; 3 the solution does not reproduce B (some |A*X - B| / max|B| at
//         least 0.001); 4 a row of A has no coefficient above 1.0E-24 in magnitude

#include <cmath>

#include "solver/solver.h"

namespace {
constexpr double kTiny = 1.0E-24f;
constexpr double kCheckTolerance = 0.001f;
}  // namespace

void LINEQ(const double* B, const double* A, double* X, double* W, int N, int NP, int& IERR) {
    IERR = 0;
    if (N < 1 || NP < N + 1) {
        IERR = 2;
        return;
    }
    auto a = [&](int i, int j) { return A[(i - 1) + (j - 1) * N]; };
    auto w = [&](int i, int j) -> double& { return W[(i - 1) + (j - 1) * N]; };
    const int rhs = N + 1;

    for (int i = 1; i <= N; ++i) {
        double largest = 0.0;
        for (int j = 1; j <= N; ++j) largest = std::fmax(largest, std::fabs(a(i, j)));
        if (largest < kTiny) {
            IERR = 4;
            return;
        }
        const double scale = 1.0 / largest;
        for (int j = 1; j <= N; ++j) w(i, j) = a(i, j) * scale;
        w(i, rhs) = B[i - 1] * scale;
    }

    for (int k = 1; k <= N; ++k) {
        if (std::fabs(w(k, k)) <= kTiny) {
            int swapRow = 0;
            for (int i = k + 1; i <= N && swapRow == 0; ++i)
                if (std::fabs(w(i, k)) > kTiny) swapRow = i;
            if (swapRow == 0) {
                IERR = 1;
                return;
            }
            for (int j = k; j <= rhs; ++j) {
                const double kept = w(k, j);
                w(k, j) = w(swapRow, j);
                w(swapRow, j) = kept;
            }
        }
        for (int i = k + 1; i <= N; ++i) {
            const double factor = w(i, k) / w(k, k);
            if (factor == 0.0) continue;
            for (int j = k; j <= rhs; ++j) w(i, j) -= factor * w(k, j);
        }
    }

    for (int i = N; i >= 1; --i) {
        double sum = w(i, rhs);
        for (int j = i + 1; j <= N; ++j) sum -= w(i, j) * X[j - 1];
        X[i - 1] = sum / w(i, i);
    }

    double largestRhs = 0.0;
    for (int i = 1; i <= N; ++i) largestRhs = std::fmax(largestRhs, std::fabs(B[i - 1]));
    // A zero right-hand side has the exact solution zero; its residual is judged unscaled.
    const double residualScale = largestRhs > 0.0 ? 1.0 / largestRhs : 1.0;
    for (int i = 1; i <= N; ++i) {
        double product = 0.0;
        for (int j = 1; j <= N; ++j) product += a(i, j) * X[j - 1];
        if (!(std::fabs(product - B[i - 1]) * residualScale < kCheckTolerance)) {
            IERR = 3;
            return;
        }
    }
}
