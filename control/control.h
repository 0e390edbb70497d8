// control/control.h
//
// Run control and dialogue: the central routine, yes/no answers, banner, clock, page top,
// echo listing and the help pages.

#pragma once

#include <string_view>

#include "records.h"

void CONTRL();
void YESNO(int& answer, int unit);
void HEADER(int nf, std::string_view version);
void TIMER8(int clock[8]);
void TIMER0(int mode, int nf1, int nf2, int& elapsed, Arr1<int, 6>& dattim);
void TOPLIN(int nf, std::string_view version, const Arr1<int, 6>& dattim);
void ECHO(int nfr, int nfw, int max);
void INPOUT(int nf, int& flag);
void HELP(int kind);
void PAGES(int nf, int section, int& answer, int& ierr);

// The program's command line as the entry received it (the arguments joined by blanks).
// CONTRL looks at its first two characters in batch mode.
void setCommandLine(std::string_view text);

// Clock seams. While an override is set, TIMER8 gives those eight values instead of reading
// the wall clock (nullptr restores the wall clock). resetRunClock forgets the start time of
// the run, as at program start.
void setClockOverride(const int* clock);
void resetRunClock();
