// solver/solver.h
//
// Equilibrium solution: force equilibrium of the slice system, the root finder of its residual
// curve, the drained/undrained mode switch of the combined analysis and the start value of the
// safety factor.

#pragma once

#include <string_view>

#include "io/channels.h"
#include "records.h"

void FRCEQR();
void ROOT1(int N, double* X, double* Y, double XMAX, double XMIN, double YMAX, double& ROOT, int& IERR);
void CHKCMB(int& NUMCHG);
void SETSF0();

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
