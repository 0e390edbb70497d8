// output/paghed.cpp
//
// PAGHED — starts a new page of an output file with the page top line and the two titles.
//
// Refreshes the date and time, writes the page top line (form feed, program, version, date and
// time), an empty line and the two title lines of the problem, each after one blank.
//
// Reads:  TEXT.TITLE, VERSION
// Writes: MASTER.DATTIM; four lines on channel nf
// IERR:   not used

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "output/output.h"
#include "records.h"

void PAGHED(int nf) {
    int elapsed = 0;
    TIMER0(0, 0, 0, elapsed, MASTER.DATTIM);
    TOPLIN(nf, TEXT.VERSION.view(), MASTER.DATTIM);
    io::writeLine(nf, "");
    io::writeLine(nf, io::Line().X(1).A(TEXT.TITLE(1).view()).str());
    io::writeLine(nf, io::Line().X(1).A(TEXT.TITLE(2).view()).str());
}
