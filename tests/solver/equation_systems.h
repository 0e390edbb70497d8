// Coefficients of the three global equilibrium equations built from a chosen solution, so
// that a solver can be required to recover it.

#pragma once

#include <cmath>

#include "solver/solver.h"

namespace kalmo_test {

// Residual of equation e at (A, B, C).
inline double equationResidual(const EquationCoefficients& CC, int e, double A, double B, double C) {
    return A * CC(e, 1) + B * CC(e, 2) + C * (CC(e, 3) + A * CC(e, 4) + B * CC(e, 5)) + CC(e, 6);
}

// Columns 1 to 5 as given (row by row), column 6 chosen so that (A, B, C) solves all three.
inline EquationCoefficients systemWithSolution(const double columns[3][5], double A, double B, double C) {
    EquationCoefficients CC;
    CC.fill(0.0);
    for (int e = 1; e <= 3; ++e) {
        for (int j = 1; j <= 5; ++j) CC(e, j) = columns[e - 1][j - 1];
        CC(e, 6) = -(A * CC(e, 1) + B * CC(e, 2) + C * (CC(e, 3) + A * CC(e, 4) + B * CC(e, 5)));
    }
    return CC;
}

// A sliding body with base friction, forces of some thousands: rows horizontal force,
// vertical force, moment; columns A, B, C, A*C, B*C. Besides the solution built in, its
// equations have a second one near C = 1.16, which bounds on C keep out of reach.
constexpr double kFrictionColumns[3][5] = {
    {850.0, 410.0, -1900.0, -2300.0, -1250.0},
    {-2600.0, -1500.0, -700.0, -900.0, -380.0},
    {-4000.0, 6000.0, 9000.0, 7000.0, -3000.0},
};

// The same body without base friction: the equations are linear in A, B, C.
constexpr double kFrictionlessColumns[3][5] = {
    {850.0, 410.0, -1900.0, 0.0, 0.0},
    {-2600.0, -1500.0, -700.0, 0.0, 0.0},
    {-4000.0, 6000.0, 9000.0, 0.0, 0.0},
};

// The solution built into the test systems.
constexpr double kSolutionA = 1.05;
constexpr double kSolutionB = -0.12;
constexpr double kSolutionC = 0.6837;

}  // namespace kalmo_test
