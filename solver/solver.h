// solver/solver.h
//
// Equilibrium solution: force equilibrium of the slice system, the root finder of its residual
// curve, the drained/undrained mode switch of the combined analysis and the start value of the
// safety factor; the moment-equilibrium correction of a force-equilibrium solution, its two
// solvers of the three global equations and their small linear solver; the numerical helpers
// of the slice-force methods (circle through three points, roots of a quadratic, root of the
// safety-factor residual over the trials); the roughness search and the score of a solution,
// the slice-force methods themselves and the equilibrium check of the final solution; the
// driver that analyses one trial surface from its polyline to its result.

#pragma once

#include <string_view>

#include "io/channels.h"
#include "records.h"

void FRCEQR();
void ROOT1(int N, double* X, double* Y, double XMAX, double XMIN, double YMAX, double& ROOT, int& IERR);
void CHKCMB(int& NUMCHG);
void SETSF0();

// Analyses the trial surface XS, ZS (NPTS points) and keeps it when it is the best so far.
void SOLVER(int NPTS);
// Sets the run-long state of SOLVER back to its start (the update limit 10 and its question
// not yet asked; as at program start; tests begin a fresh run with it).
void resetSolverRunState();

// Coefficients of the three global equilibrium equations of the sliding body: rows 1
// horizontal force, 2 vertical force, 3 moment about the origin; equation e reads
//   A*CC(e,1) + B*CC(e,2) + C*(CC(e,3) + A*CC(e,4) + B*CC(e,5)) + CC(e,6) = 0.
using EquationCoefficients = Arr2<double, 3, 6>;

void MOMEQL(double& A, double& B, double& C);
void SOLABC(int trace, int& IERR, const EquationCoefficients& CC, double& A, double& B, double& C);
void SOLXYZ(int trace, const EquationCoefficients& CC, double ZMIN, double ZMAX, double& X, double& Y, double& Z,
            int& IERR);
// A is N by N and W is N by NP, both stored column by column with leading dimension N.
void LINEQ(const double* B, const double* A, double* X, double* W, int N, int NP, int& IERR);

void CIRC3P(const double* X, const double* Z, double& XC, double& ZC, double& RAD, int& IERR);
void EQUAT2(double A, double B, double C, double& X1, double& X2, int& IERR);
void ROOT3(int N, int TRACE, double* X, double* Y, double XMIN, double XMAX, double& ROOT, int& IERR);

// Forgets the keep-force-equilibrium decision of MOMEQL, so that its question is due again
// (a new run; tests).
void resetMomeqlDecision();
// Sets the alternating choice of ROOT3 back to its start-of-run state (a new run; tests).
void resetRoot3Alternation();

// The roughness search and the score of a solution, the slice-force methods and the
// equilibrium check of the final solution.
void RMULT();
void SCORER();
void SLV123();
void CHKEQL();

// Stress-dependent friction angles and pore pressures of the current surface: ITER 0 before
// the first solution (B-factor flag only), else the number of the solution just made; CONV 1
// when they have settled (or there is nothing to update), 0 when another solution is needed.
void UPDATE(int ITER, int& CONV);

// Forgets that the note on a failed centre of rotation was given (a new run; tests).
void resetSlv123Note();

// The force-equilibrium view of the scratch record: the safety factors tried, SFTRY(1..100),
// followed by the unbalanced end forces they left, UNBAL(1..100); entry k belongs to trial k.
struct TrialTable {
    static constexpr int kTrials = 100;
    static double& SFTRY(int k) { KALMO_INDEX(k, kTrials); return SCRTCH.W[k - 1]; }
    static double& UNBAL(int k) { KALMO_INDEX(k, kTrials); return SCRTCH.W[kTrials + k - 1]; }
    static double* sftry() { return SCRTCH.W; }
    static double* unbal() { return SCRTCH.W + kTrials; }
};

// Writes a line to the log file and then to the log-copy channel (trace prints and the
// messages that the log keeps).
inline void sayLog(std::string_view text) {
    io::writeLine(MASTER.NF18, text);
    io::writeLine(POSTGRAF.NFCOPY, text);
}
