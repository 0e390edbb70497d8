// control/toplin.cpp
//
// TOPLIN — the page top line of an output file.
//
// Writes one line on NF: a form feed (a new page on a printer), the program name, the version
// text and the date and time of DATTIM (year, month, day, hour, minute, second).
//
// Reads:  VERSION (11 characters), DATTIM(1..6)
// Writes: one line on channel NF
// IERR:   not used

#include <string_view>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"

namespace {
constexpr std::string_view kMonthNames = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";

std::string_view monthName(int month) {
    if (month < 1 || month > 12) return "???";
    return kMonthNames.substr(static_cast<size_t>(month - 1) * 3, 3);
}
}  // namespace

void TOPLIN(int nf, std::string_view version, const Arr1<int, 6>& dattim) {
    std::string versionText(version.substr(0, 11));
    versionText.resize(11, ' ');
    io::writeLine(nf, io::Line()
                          .A("\f")
                          .X(1)
                          .A("KALMO ")
                          .A(" Output   Program Version = ")
                          .A(versionText)
                          .A("    Time = ")
                          .I(dattim(3), 2, 2)
                          .X(1)
                          .A(monthName(dattim(2)))
                          .X(1)
                          .I(dattim(1), 4)
                          .X(2)
                          .I(dattim(4), 2, 2)
                          .A(":")
                          .I(dattim(5), 2, 2)
                          .A(":")
                          .I(dattim(6), 2, 2)
                          .str());
}
