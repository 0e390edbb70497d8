// control/kalmo.cpp
//
// KALMO — program entry. Stores the version date text, passes the command line on and hands
// control to the central routine; the process then ends with the exit status of the run.

#include <string>

#include "control/control.h"
#include "records.h"

int main(int argc, char** argv) {
    clearRecords();
    TEXT.VERSION.set("12 Jan 2017");
    std::string commandLine;
    for (int k = 1; k < argc; ++k) {
        if (k > 1) commandLine += ' ';
        commandLine += argv[k];
    }
    setCommandLine(commandLine);
    CONTRL();
    // The process used to end with status 0 whatever happened; it now reports a run that
    // ended on unopenable files or on a refused input, so that a script running many
    // sections one after the other can tell which runs failed (0 still means a normal end).
    return runExitStatus();
}
