// control/echo.cpp
//
// ECHO — listing of a text file with a column ruler and line numbers.
//
// Lists up to MAX lines of the file on channel NFR on channel NFW, each as its line number,
// "----" and the 80 columns of the line, between two column rulers (tens digit above, units
// digit below), so that every value can be checked against the columns it was typed in.
// The file is rewound before and after. When the listing stops before the end of the file
// (MAX lines listed, or a line that cannot be read) an error line with NFR, NFW, the number of
// the last line reached and MAX goes to the dialogue output channel 12.
//
// Reads:  lines from channel NFR
// Writes: the listing on channel NFW; the error line on channel 12
// IERR:   not used

#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"

namespace {
constexpr int kDialogueOut = 12;
constexpr int kColumns = 80;

void writeRuler(int nfw) {
    std::string tens = io::repeat('0', 9);
    for (char digit = '1'; digit <= '7'; ++digit) tens += io::repeat(digit, 10);
    tens += '8';
    std::string units;
    for (int k = 0; k < kColumns / 10; ++k) units += "1234567890";
    io::writeLine(nfw, io::Line().X(10).A(tens).str());
    io::writeLine(nfw, io::Line().X(10).A(units).str());
}
}  // namespace

void ECHO(int nfr, int nfw, int max) {
    io::rewind(nfr);
    io::writeLine(nfw, "#");
    io::writeLine(nfw, io::Line().X(10).A("ECHO PRINT OF DATA ON FORTRAN UNIT NUMBER").A(" =").I(nfr, 3).str());
    io::writeLine(nfw, "");
    writeRuler(nfw);
    io::writeLine(nfw, "");

    bool reachedEnd = false;
    int lineReached = 0;
    std::string line;
    for (int lineNumber = 1; lineNumber <= max; ++lineNumber) {
        lineReached = lineNumber;
        int status = io::readLine(nfr, line, kColumns);
        if (status == io::kReadEnd) {
            reachedEnd = true;
            break;
        }
        if (status != io::kReadOk) break;
        line.resize(kColumns, ' ');  // the line as its 80 columns
        io::writeLine(nfw, io::Line().I(lineNumber, 5).A("----").X(1).A(line).str());
    }
    if (!reachedEnd) {
        io::writeLine(kDialogueOut, "");
        io::writeLine(kDialogueOut, io::Line()
                                        .A(" **** ERROR IN SR/ECHO  NFR,NFW,NOW,MAX=")
                                        .I(nfr, 5)
                                        .I(nfw, 5)
                                        .I(lineReached, 5)
                                        .I(max, 5)
                                        .str());
    }

    io::rewind(nfr);
    writeRuler(nfw);
    io::writeLine(nfw, "");
}
