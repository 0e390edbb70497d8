// control/help.cpp
//
// HELP — the menu of the instructions (KIND 1) or of the help texts (KIND 2, and any other).
//
// Opens the text file of its kind, INSTRUCT.KMO on channel 19 or HELP.KMO on channel 21, as an
// existing file: first in the working folder, then in the folder of the program itself, so
// that an installed program finds its own texts. Shows the menu of the file's sections on the
// standard output and lets PAGES show the section the user picks; PAGES says whether to show
// the menu again or to leave. A number outside the sections (the QUIT entry among them)
// leaves the help; an unreadable answer shows the menu again; the end of the standard input
// leaves the help as well, so that an unattended run cannot loop here.
//
// In batch mode the standard input is read as well, as at the console; but when it is no
// terminal nobody can be typing there, and a run whose standard input stays open would wait
// for ever (silently, when the command line keeps the dialogue off the screen). Such a run
// says so in one line and leaves the help at once.
//
// Reads:  the option from channel 5 (standard input)
// Writes: the menu on channel 6 (standard output); an open failure on channel 2, or on
//         channel 6 when channel 2 is not open; the batch-mode line on the console output
//         and log-copy channels
// IERR:   MASTER.IERR is not touched; a file that cannot be opened is reported and the run
//         goes on.

#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"

namespace {

constexpr int kStdIn = 5;
constexpr int kStdOut = 6;
constexpr int kMessages = 2;
constexpr int kInstructionUnit = 19;
constexpr int kHelpUnit = 21;

// The folder of the running program, empty when the system does not tell.
std::filesystem::path programFolder() {
    std::error_code ec;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ec);
    if (ec) return {};
    return program.parent_path();
}

// Opens the text file: the working folder first, then the program's folder.
int openTextFile(int unit, const std::string& name) {
    int status = io::openOld(unit, name);
    if (status != io::kOpenNotFound) return status;
    const std::filesystem::path folder = programFolder();
    if (folder.empty()) return status;
    return io::openOld(unit, (folder / name).string());
}

void writeMenuLine(std::string_view text) {
    io::writeLine(kStdOut, "");
    io::writeLine(kStdOut, io::Line().X(10).A(text).str());
}

void showMenu(int kind) {
    io::writeLine(kStdOut, "");
    io::writeLine(kStdOut, "");
    if (kind == 1) {
        io::writeLine(kStdOut, io::Line().X(10).A("KALMO INSTRUCTIONS MENU").str());
        io::writeLine(kStdOut, io::Line().X(10).A(io::repeat('*', 23)).str());
        writeMenuLine("1 : GETTING STARTED");
        writeMenuLine("2 : INPUT/OUTPUT FILES");
        writeMenuLine("3 : PREPARATION OF INPUT FILE");
        writeMenuLine("4 : RUNNING THE PROGRAM");
        writeMenuLine("5 : USER NOTEBOOK");
        writeMenuLine("6 : QUIT");
    } else {
        io::writeLine(kStdOut, io::Line().X(10).A("KALMO HELP MENU").str());
        io::writeLine(kStdOut, io::Line().X(10).A(io::repeat('*', 15)).str());
        writeMenuLine("1 : INPUT DATA ERROR CODES");
        writeMenuLine("2 : AVAILABLE SHEAR SURFACES");
        writeMenuLine("3 : CONTROL DATA EXPLANATION");
        writeMenuLine("4 : PRINT/SAVE/LAST/BEST");
        writeMenuLine("5 : EXECUTION ERROR MESSAGES");
        writeMenuLine("6 : USER NOTEBOOK");
        writeMenuLine("7 : QUIT");
    }
    io::writeLine(kStdOut, "");
    io::writePrompt(kStdOut, io::Line().X(10).A("OPTION WANTED ...... ").str());
}

}  // namespace

void HELP(int kind) {
    if (batchMode() && !io::stdinIsTerminal()) {
        say(" **** SR/HELP : NO HELP PAGES IN BATCH MODE WITHOUT A TERMINAL , THE RUN GOES ON");
        return;
    }
    // The help dialogue runs on the process's own standard streams.
    if (!io::isOpen(kStdIn)) io::bindStdin(kStdIn);
    if (!io::isOpen(kStdOut)) io::bindStdout(kStdOut);

    const bool instructions = kind == 1;
    const int unit = instructions ? kInstructionUnit : kHelpUnit;
    const std::string name = instructions ? "INSTRUCT.KMO" : "HELP.KMO";
    const int lastSection = instructions ? 5 : 6;

    const int status = openTextFile(unit, name);
    if (status != 0) {
        const int messages = io::isOpen(kMessages) ? kMessages : kStdOut;
        io::writeLine(messages, io::Line(" **** SR/HELP : ERROR DURING FILE OPENING  IERR=").I(status, 5).str());
        if (status == io::kOpenNotFound) io::writeLine(messages, " FILE \"" + name + "\" WAS NOT FOUND");
        return;
    }

    for (;;) {
        showMenu(instructions ? 1 : 2);
        int option = 0;
        const io::ReadStatus read = io::readAnswer(kStdIn, option);
        if (read == io::ReadStatus::Bad) continue;
        if (read == io::ReadStatus::End || option < 1 || option > lastSection) break;
        int answer = 0;
        int ierr = 0;
        PAGES(unit, option, answer, ierr);
        if (answer != 1) break;
    }
    io::close(unit);
}
