// control/kalmo.cpp
//
// KALMO — program entry. Stores the version date text, passes the command line on and hands
// control to the central routine; the process then ends normally.

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
    return 0;
}
