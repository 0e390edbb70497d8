// control/timer0.cpp
//
// TIMER0 — date and time of the run, elapsed seconds, and the start and end stamps.
//
// Reads the clock (TIMER8), copies year, month, day, hour, minute and second into DATTIM and
// gives the seconds elapsed since the first call. The start time is the seconds since midnight
// at the first call; a start of 0 (a first call at 00:00:00) is taken again at the next call.
// Nothing corrects for midnight: a run that passes it gets a negative elapsed time.
// MODE 0 writes nothing; 1 writes the start stamp, 2 the end stamp, each after an empty line,
// to channel 2 when NF1 is 0, to NF1 when it is positive, and also to NF2 when it is positive.
//
// Reads:  the clock; the private start time
// Writes: DATTIM(1..6), ELAPSED; the stamp lines
// IERR:   not used

#include <string_view>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"

namespace {
int gStartSeconds = 0;  // seconds since midnight at the first call; 0 until then

constexpr std::string_view kMonthNames = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";

std::string_view monthName(int month) {
    if (month < 1 || month > 12) return "???";
    return kMonthNames.substr(static_cast<size_t>(month - 1) * 3, 3);
}

void writeStamp(int nf, const std::string& stamp) {
    io::writeLine(nf, "");
    io::writeLine(nf, stamp);
}
}  // namespace

void resetRunClock() { gStartSeconds = 0; }

void TIMER0(int mode, int nf1, int nf2, int& elapsed, Arr1<int, 6>& dattim) {
    int clock[8];
    TIMER8(clock);
    dattim(1) = clock[0];
    dattim(2) = clock[1];
    dattim(3) = clock[2];
    dattim(4) = clock[4];
    dattim(5) = clock[5];
    dattim(6) = clock[6];

    int secondsToday = dattim(5) * 60 + dattim(4) * 3600 + dattim(6);
    if (gStartSeconds < 1) gStartSeconds = secondsToday;
    elapsed = secondsToday - gStartSeconds;

    if (mode != 1 && mode != 2) return;
    std::string stamp = io::Line()
                            .A(mode == 1 ? " THIS RUN WAS STARTED :  " : " THIS RUN WAS TERMINATED :  ")
                            .I(dattim(3), 2, 2)
                            .X(1)
                            .A(monthName(dattim(2)))
                            .X(1)
                            .I(dattim(1), 4)
                            .A("  AT  ")
                            .I(dattim(4), 2, 2)
                            .A(":")
                            .I(dattim(5), 2, 2)
                            .A(":")
                            .I(dattim(6), 2, 2)
                            .A(" HOURS")
                            .str();
    if (nf1 == 0) writeStamp(2, stamp);
    if (nf1 > 0) writeStamp(nf1, stamp);
    if (nf2 > 0) writeStamp(nf2, stamp);
}
