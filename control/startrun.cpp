// control/startrun.cpp
//
// startRun — the start of a run: the records as the program starts with them, the constants,
// the channel numbers, and every value that a routine keeps between its calls for the whole
// run put back to its start.
//
// This is the one place where a run begins. CONTRL calls it first; the benchmark, the fuzzing
// target and the test fixtures call it to begin a fresh run inside one process. It opens no
// files: CONTRL binds the channels to the console or the batch files once the mode is known;
// until then the log-copy channel is that of batch mode, as the program has it at its start.
//
// Run-long state. A routine that keeps values between calls for the whole run (a question
// answered once, a warning given only so often, a decision latched for the run) holds them in
// its own file, offers a reset function declared in its folder's header ("reset" and what it
// forgets: resetSolverRunState, resetMomeqlDecision, ...), and that function is called in the
// list below, in the order of the folders. Values kept in the records (MASTER.IGWARN,
// MASTER.ITSBLK, ...) need nothing more: the records are cleared here.
//
// Reads:  TEXT.VERSION (the entry stores it before the run starts; it is kept)
// Writes: every record (cleared); MASTER.IHEAD, PI, EPS, NFIN, NFOUT, NF14..NF18;
//         ISUR.NSRFCP; POSTGRAF.NFCOPY; BEST.SF; the run-long state of the routines below
// IERR:   none (MASTER.IERR is 0 afterwards)

#include <cmath>

#include "control/control.h"
#include "input/input.h"
#include "records.h"
#include "slices/slices.h"
#include "solver/solver.h"
#include "surfaces/surfaces.h"

namespace {

constexpr double kEps = 1.0E-20f;    // the zero tolerance, a single-precision constant
constexpr double kNoBestYet = 98.0;  // best safety factor before any surface

void setConstantsAndChannels() {
    MASTER.IHEAD = 2;
    MASTER.PI = 4.0 * std::atan(1.0);
    MASTER.EPS = kEps;
    ISUR.NSRFCP = NSURFCOPY;
    MASTER.NFIN = 8;
    MASTER.NFOUT = 12;
    MASTER.NF14 = 14;
    MASTER.NF15 = 15;
    MASTER.NF16 = 16;
    MASTER.NF17 = 17;
    MASTER.NF18 = 18;
    POSTGRAF.NFCOPY = kBatchCopyChannel;
}

// Every value kept between calls for the whole run, back to its start. A new piece of
// run-long state adds its reset function here.
void resetRunLongState() {
    // control/
    resetRunClock();
    // input/
    resetIntprfCalls();
    // slices/
    resetBuildWarningAnswer();
    resetLoaderWaterWarnings();
    resetNailCrossingWarnings();
    // solver/
    resetSolverRunState();
    resetMomeqlDecision();
    resetRoot3Alternation();
    resetSlv123Note();
    // surfaces/
    resetGenralModifications();
    resetCircleRunState();
    resetCombndValues();
    resetPlaneCritical();
}

}  // namespace

void startRun() {
    const Text<11> version = TEXT.VERSION;
    clearRecords();
    TEXT.VERSION = version;
    setConstantsAndChannels();
    BEST.SF = kNoBestYet;
    resetRunLongState();
}
