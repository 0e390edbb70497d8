// control/header.cpp
//
// HEADER — the title box of the program, written once at the start of a run.
//
// Four empty lines, then a box 63 characters wide, indented six columns, that names the
// program, its three problem kinds and the version date. The box always goes to the dialogue
// output channel 12; NF (the header flag of the caller) does not choose the channel.
//
// Reads:  VERSION (11 characters)
// Writes: lines on channel 12
// IERR:   not used

#include <string>
#include <string_view>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"

namespace {
constexpr int kDialogueOut = 12;
constexpr int kBoxWidth = 63;

void boxLine(std::string_view inside) {
    io::writeLine(kDialogueOut, io::Line().X(6).A("I").A(inside).A("I").str());
}
}  // namespace

void HEADER(int /*nf*/, std::string_view version) {
    std::string versionText(version.substr(0, 11));
    versionText.resize(11, ' ');
    const std::string emptyInside = io::fmtX(kBoxWidth - 2);
    const std::string border = io::Line().X(6).A(io::repeat('*', kBoxWidth)).str();

    for (int k = 0; k < 4; ++k) io::writeLine(kDialogueOut, "");
    io::writeLine(kDialogueOut, border);
    boxLine(emptyInside);
    boxLine(io::Line().X(23).A("PROGRAM").A(" KALMO ").X(24).str());
    boxLine(emptyInside);
    boxLine("    SLOPE STABILITY / BEARING CAPACITY / EARTH PRESSURES     ");
    boxLine(emptyInside);
    boxLine(io::Line().X(15).A("Program Version : ").A(versionText).X(17).str());
    boxLine(emptyInside);
    io::writeLine(kDialogueOut, border);
}
