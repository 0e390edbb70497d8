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
