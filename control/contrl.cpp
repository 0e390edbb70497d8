// control/contrl.cpp
//
// CONTRL — the run: start-up, checks after reading, the central decision point and the end.
//
// Sets the constants and channel numbers, chooses interactive or batch mode (batch when an
// answer file SVAR.TMP lies in the working folder), opens the files of the run, writes the
// banner and the start stamp, offers the instructions, has the input read, checks the problem
// size and the control data and prints the problem type. Then the central decision point: the
// control data and the numbered menu are shown and one operation is read and carried out, over
// and over, until the user terminates, or the answers have ended (the answer file is used up,
// or the standard input is closed): an answer stream that has ended can never answer again, so
// the run then ends as if terminated. The print and save states of the last and the best
// surface are kept here. Every answer is one line; values a line leaves out keep their present
// values.
//
// Channels: 8 answers, 12 dialogue output, NFCOPY the log copy of every message (9, the null
// device, interactively; 6, the standard output or the null device, in batch mode), 14
// KALMO.INP, 15 KALMO.TMP, 16 KALMO.RES, 17 KALMO.PLT, 18 KALMO.LOG; 5 and 2 are the standard
// input and output.
//
// Reads:  the answers on channel 8; after reading: the counts of the problem records, IDTYP,
//         IDEFTO, IDPWP, METHOD, MAT(BFCT, m), NUMGEN, NNAILS, the control data
// Writes: MASTER constants, channels and bookkeeping (KBEST, KLAST, KBSAVE, KLSAVE, BESTSF,
//         BESTE2, NUMSRF, NTYP, NSLREQ, SF, the control data), POSTGRAF.NFCOPY, BEST.SF
// IERR:   cleared before reading; a code from READ ends the run; 1 after a failed check of
//         the problem size or the control data (the run then ends)

#include "control/control.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "output/output.h"
#include "records.h"
#include "surfaces/surfaces.h"

namespace {

constexpr double kEps = 1.0E-20f;            // the zero tolerance, a single-precision constant
constexpr double kNoBestYet = 98.0;          // best safety factor before any surface
constexpr double kNoBestSF = 1000000.0;      // BESTSF when no best surface is pending
constexpr double kNoBestE2 = -1000000.0;     // BESTE2 at start
constexpr double kReprintLimit = 100000.0;   // operation 14 rewinds while the remembered SF is below it
constexpr int kEchoMaxLines = 10000;
constexpr int kCommandLineLength = 127;
constexpr int kHiddenReprint = 14;           // operation 14: reprint the best surface when it improved
constexpr int kBatchCopy = 6;
constexpr int kInteractiveCopy = 9;
constexpr int kNoHelpCopy = 7;               // a log-copy channel 7 skips the instructions

std::string gCommandLine;
int gStartElapsed = 0;  // elapsed seconds given by the clock at the start of the run

// The control data line. The values stand right-aligned under the last letter of their
// heading: CRTSCR F7.3, R1 F6.3, R2 F7.3, R3 F7.3, H3(1) F9.3, H3(2) F8.3, JPRINT I8,
// JPLOT I7, NUMSLC I7.
constexpr std::string_view kControlHeader =
    " CRTSCR    R1     R2     R3    H3(1)   H3(2)  JPRINT  JPLOT NUMSLC";

std::string controlValues() {
    return io::Line()
        .F(MASTER.CRTSCR, 7, 3)
        .F(MASTER.R1, 6, 3)
        .F(MASTER.R2, 7, 3)
        .F(MASTER.R3, 7, 3)
        .F(MASTER.H3(1), 9, 3)
        .F(MASTER.H3(2), 8, 3)
        .I(MASTER.JPRINT, 8)
        .I(MASTER.JPLOT, 7)
        .I(MASTER.NUMSLC, 7)
        .str();
}

void writeBoth(int nf1, int nf2, const std::string& text) {
    io::writeLine(nf1, text);
    io::writeLine(nf2, text);
}

// ---------------------------------------------------------------------------------------------
// Start-up
// ---------------------------------------------------------------------------------------------

void setConstants() {
    MASTER.IHEAD = 2;
    MASTER.PI = 4.0 * std::atan(1.0);
    MASTER.EPS = kEps;
    ISUR.NSRFCP = NSURFCOPY;
    MASTER.NFIN = 8;
    MASTER.NFOUT = 12;
    MASTER.NF14 = 14;
    MASTER.NF15 = 15;
    MASTER.NF16 = 16;
    MASTER.NF17 = 17;
    MASTER.NF18 = 18;
    POSTGRAF.NFCOPY = kBatchCopy;
}

// Opens the channels of the run. On a failure writes the open message and the error exit and
// returns false.
bool openChannels() {
    io::bindStdin(5);
    io::bindStdout(6);
    io::bindStdout(2);

    int status = 0;
    int failedUnit = 0;
    std::error_code ec;
    if (!std::filesystem::exists("SVAR.TMP", ec)) {
        io::bindStdin(MASTER.NFIN);
        io::bindStdout(MASTER.NFOUT);
        POSTGRAF.NFCOPY = kInteractiveCopy;
        io::bindNull(POSTGRAF.NFCOPY);
    } else {
        status = io::openOld(MASTER.NFIN, "SVAR.TMP");
        if (status != 0) failedUnit = MASTER.NFIN;
        if (status == 0) {
            status = io::openNew(MASTER.NFOUT, "SVAR.EKO");
            if (status != 0) failedUnit = MASTER.NFOUT;
        }
        // Only the first two characters of the command line matter: a "0" there keeps the
        // copies of the dialogue off the screen.
        std::string_view command(gCommandLine);
        command = command.substr(0, kCommandLineLength);
        if ((command.size() > 0 && command[0] == '0') || (command.size() > 1 && command[1] == '0'))
            io::bindNull(kBatchCopy);
    }

    struct RunFile {
        int unit;
        const char* name;
        bool mustExist;
    };
    const RunFile files[] = {{MASTER.NF14, "KALMO.INP", true},
                             {MASTER.NF15, "KALMO.TMP", false},
                             {MASTER.NF16, "KALMO.RES", false},
                             {MASTER.NF17, "KALMO.PLT", false},
                             {MASTER.NF18, "KALMO.LOG", false}};
    for (const RunFile& file : files) {
        if (status != 0) break;
        status = file.mustExist ? io::openOld(file.unit, file.name) : io::openNew(file.unit, file.name);
        if (status != 0) failedUnit = file.unit;
    }
    if (status == 0) return true;

    say(io::Line().A(" Fel i fil\"ppning  IERR=").Free(status).A(" filnr=").Free(failedUnit).str());
    io::writeLine(POSTGRAF.NFCOPY, io::freeRecord("ERROR EXIT from program KALMO"));
    return false;
}

// The arrays that must read as 0 where the input gives nothing.
void clearBeforeReading() {
    SOLPRP.SUNOD.fill(0.0);
    WATER1.PWNOD.fill(0.0);
    std::memset(static_cast<void*>(&SURF), 0, sizeof SURF);
    GENERL.PGEN.fill(0.0);
    GENERL.SIGGEN.fill(0.0);
    GENERL.TAUGEN.fill(0.0);
    SOLPRP.MAT.fill(0.0);
    IGEOMS.LAYMAT.fill(0);
    GEOMSH.ZLAYER.fill(0.0);
    MASTER.IUPDAT = 0;
    MASTER.ICOMBF = 0;
    MASTER.KCOMB = 0;
    MASTER.IERR = 0;
}

// ---------------------------------------------------------------------------------------------
// Checks after reading
// ---------------------------------------------------------------------------------------------

void writeTitles() {
    io::writeLine(MASTER.NFOUT, " INPUT FILE TEXT LINES ARE :");
    io::writeLine(MASTER.NF18, " This KALMO.LOG file contains messages from the run :");
    for (int k = 1; k <= 2; ++k)
        writeBoth(MASTER.NFOUT, MASTER.NF18, io::Line().X(1).A(TEXT.TITLE(k).view()).str());
}

// One size check: the message, the value found and the maximum, and IERR = 1.
void checkSize(std::string_view message, int found, int maximum) {
    if (found <= maximum) return;
    say(io::Line().A(message).Free(found).Free(maximum).str());
    MASTER.IERR = 1;
}

// All size checks are made before the run stops, so that every problem is reported at once.
// Per-line counts are looked at only for the x-lines that exist in the arrays.
bool sizesPass() {
    checkSize(" SIZE PROBLEM : NUMBER OF ELEMENTS", IGEOMS.NELEM, MAXELM);
    checkSize(" SIZE PROBLEM : NUMBER OF NODES", IGEOMS.NNODE, MAXNOD);
    checkSize(" SIZE PROBLEM : NUMBER OF LAYERS", IGEOMS.NLAYER, MAXLAY);
    checkSize(" SIZE PROBLEM : NUMBER OF MATERIALS", ISOLPR.NMAT, MAXMAT);
    checkSize(" SIZE PROBLEM : NUMBER OF SU0 X-LINES", ISOLPR.NSUX, MAXSUX);
    for (int line = 1; line <= ISOLPR.NSUX && line <= MAXSUX; ++line)
        checkSize(" SIZE PROBLEM : NUMBER OF SU0 Z-POINTS", ISOLPR.NSUPT(line), MAXSUP);
    checkSize(" SIZE PROBLEM : NUMBER OF PWP X-LINES", IWATER.NUMXPW, MAXPWX);
    for (int line = 1; line <= IWATER.NUMXPW && line <= MAXPWX; ++line)
        checkSize(" SIZE PROBLEM : NUMBER OF PWP Z-POINTS", IWATER.NPWPT(line), MAXPWP);
    checkSize(" SIZE PROBLEM : NUMBER OF POINT FORCES", ILOA.NPF, MAXPF);
    checkSize(" SIZE PROBLEM : NUMBER OF STRIP LOADS", ILOA.NSTRIP, MAXSTR);
    checkSize(" SIZE PROBLEM : NUMBER OF GENERAL SURFACES", MASTER.NUMGEN, MAXGEN);
    for (int surface = 1; surface <= MASTER.NUMGEN && surface <= MAXGEN; ++surface) {
        int points = IGENER.NPGEN(surface);
        if (points <= MAXGPT) continue;
        say(io::Line()
                .A(" SIZE PROBLEM : SHEAR SURFACE")
                .Free(surface)
                .A(" NUMBER OF POINTS")
                .Free(points)
                .Free(MAXGPT)
                .str());
        MASTER.IERR = 1;
    }
    checkSize(" SIZE PROBLEM : NUMBER OF SLICES", MASTER.NUMSLC, MAXSLC);
    checkSize(" SIZE PROBLEM : NUMBER OF SOIL NAILS", ISNAIL.NNAILS, MAXNAI);
    return MASTER.IERR == 0;
}

bool controlDataPass() {
    bool pass = true;
    if (MASTER.IDTYP != 1 && MASTER.IDTYP != 2) {
        say(io::Line().A(" CONTROL DATA ERROR , IDTYP  =").Free(MASTER.IDTYP).str());
        MASTER.IERR = 1;
        pass = false;
    }
    if (MASTER.IDEFTO < 1 || MASTER.IDEFTO > 3) {
        say(io::Line().A(" CONTROL DATA ERROR , IDEFTO =").Free(MASTER.IDEFTO).str());
        MASTER.IERR = 1;
        pass = false;
    }
    if (IWATER.IDPWP != 1 && IWATER.IDPWP != 2) {
        say(io::Line().A(" CONTROL DATA ERROR , IDPWP  =").Free(IWATER.IDPWP).str());
        MASTER.IERR = 1;
        pass = false;
    }
    return pass;
}

// The combined analysis decides drained or undrained per slice and cannot take an earth
// pressure problem or a material with a pore-pressure parameter B.
bool combinedAnalysisPass() {
    if (MASTER.IDEFTO != 3) return true;
    if (MASTER.IDTYP == 2) {
        say(" **** EARTH PRESSURE ANALYSIS AND COMBINED ANALYSIS ARE IN-COMPATIBLE");
        MASTER.IERR = 1;
        return false;
    }
    for (int material = 1; material <= ISOLPR.NMAT && material <= MAXMAT; ++material) {
        if (SOLPRP.MAT(BFCT, material) >= MASTER.EPS) {
            say(io::Line()
                    .A(" **** UESA B-FACTOR GIVEN FOR LAYER = ")
                    .Free(material)
                    .A(" THIS IS IN-COMPATIBLE WITH COMBINED ANALYSIS METHOD")
                    .str());
            MASTER.IERR = 1;
            return false;
        }
    }
    return true;
}

void printProblem() {
    say(io::freeRecord(MASTER.IDTYP == 1 ? "STABILITY/BEARING PROBLEM TYPE" : "EARTH PRESSURE PROBLEM TYPE"));
    if (MASTER.IDEFTO == 1) say(io::freeRecord("EFFECTIVE STRESS ANALYSIS"));
    if (MASTER.IDEFTO == 2) say(io::freeRecord("TOTAL STRESS ANALYSIS"));
    if (MASTER.IDEFTO == 3) {
        say(io::freeRecord("COMBINED SWEDISH ANALYSIS"));
        say(io::freeRecord("EFFECTIVE STRESS SHEAR STRENGTH IS LIMITED TO GIVEN SU VALUES"));
    }
    switch (MASTER.METHOD) {
        case -1: say(io::freeRecord("Solution Method : -1 Force Equilibrium")); break;
        case 0: say(io::freeRecord("Solution Method : 0 KALMO 1988-2002")); break;
        case 1: say(io::freeRecord("Solution Method : 1 Bishop Simplified")); break;
        case 2: say(io::freeRecord("Solution Method : 2 Bishop Modified")); break;
        case 3: say(io::freeRecord("Solution Method : 3 KALMO-2003")); break;
        default: break;
    }
    say(io::freeRecord(MASTER.NUMGEN, " GENERAL SHEAR SURFACES", ISNAIL.NNAILS, " SOIL NAILS"));
}

// ---------------------------------------------------------------------------------------------
// Central decision point
// ---------------------------------------------------------------------------------------------

// Where the loop goes next: the control data and the menu, the menu alone, or straight to
// reading the next answer.
enum class Next { ControlData, Menu, Answer };

void showControlData() {
    MASTER.NUMSLC = MASTER.NSLREQ;
    say(" PRESENT CONTROL DATA ARE :");
    say(kControlHeader);
    say(controlValues());
}

void showMenu() {
    const int out = MASTER.NFOUT;
    io::writeLine(out, " ----- PROGRAM CONTROL IS AT CENTRAL DECISION POINT");
    io::writeLine(out, " ----- SPECIFY NEXT OPERATION PLEASE");
    io::writeLine(out, " -----   1 : TRY A NEW SHEAR SURFACE");
    io::writeLine(out, " -----   2 : PRINT LAST SURFACE DATA TO FILE NF16");
    io::writeLine(out, " -----   3 : SAVE  LAST SURFACE FOR POST PROCESSOR");
    io::writeLine(out, " -----   4 : PRINT BEST SURFACE DATA TO FILE NF16");
    io::writeLine(out, " -----   5 : SAVE  BEST SURFACE FOR POST PROCESSOR");
    io::writeLine(out, " -----   6 : READ CONTROL DATA MODIFICATIONS");
    io::writeLine(out, " -----   7 : HELP !");
    io::writeLine(out, " -----   8 : TERMINATE");
    io::writePrompt(out, " .....   ");
}

std::string surfaceLine(std::string_view which, int number, double sf, std::string_view done) {
    return io::Line().A(which).Free(number).A(" SF=").Free(sf).A(done).str();
}

// Operation 1: a new shear surface of the type the user gives.
Next tryNewSurface() {
    if (MASTER.IDTYP == 2) {
        sayPrompt(" EARTH PRESSURE PROBLEM , GIVE SAFETY FACTOR (ACTIVE+/PASSIVE-)...");
        if (io::readAnswer(MASTER.NFIN, MASTER.SF) != io::ReadStatus::Ok) return Next::ControlData;
        if (MASTER.SF < 0.0) MASTER.BESTE2 = std::fabs(MASTER.BESTE2);
    }
    // Asked again until a type 1..5 comes; a failed read (or the end of the answers) leaves.
    do {
        sayPrompt(" GIVE SURFACE TYPE (1=GENERAL 2=CIRCLE 3=COMBINED 4=EP-PLANE 5=GENERAL AUTOSEARCH) .... ");
        if (io::readAnswer(MASTER.NFIN, MASTER.NTYP) != io::ReadStatus::Ok) return Next::ControlData;
    } while (MASTER.NTYP < 1 || MASTER.NTYP > 5);

    MASTER.KLAST = 0;
    MASTER.KLSAVE = 0;
    switch (MASTER.NTYP) {
        case 1: GENRAL(); break;
        case 2: CIRCLE(); break;
        case 3: COMBND(); break;
        case 4:
            if (MASTER.IDTYP == 2) {
                PLANE();
            } else {
                say(" SURFACE TYPE=4 ONLY ALLOWED FOR EP-PROBLEMS");
            }
            break;
        case 5: GENRALZI(); break;
        default: break;
    }
    return Next::Menu;
}

// Operation 2.
void printLast() {
    if (MASTER.KLAST == 2) {
        say(" NO RESULTS AVAILABLE YET");
    } else if (MASTER.KLAST == 1) {
        say(" THIS SURFACE HAS ALREADY BEEN PRINTED");
    } else if (MASTER.KBSAVE == 2) {
        say(" LAST SURFACE LOST WHEN BEST SURFACE WAS SAVED");
    } else {
        MASTER.KLAST = -1;
        PRINT();
        MASTER.KLAST = 1;
        say(surfaceLine(" LAST SURFACE (NUM=", MASTER.NUMSRF, MASTER.SF, ") IS PRINTED"));
    }
}

// Operation 3.
void saveLast() {
    if (MASTER.KLSAVE == 2) {
        say(" NO RESULTS AVAILABLE YET");
    } else if (MASTER.KLSAVE == 1) {
        say(" THIS SURFACE HAS ALREADY BEEN SAVED");
    } else if (MASTER.KBEST == 2) {
        say(" LAST SURFACE LOST WHEN BEST SURFACE WAS PRINTED");
    } else {
        MASTER.KLSAVE = -1;
        POST();
        MASTER.KLSAVE = 1;
        say(surfaceLine(" LAST SURFACE (NUM=", MASTER.NUMSRF, MASTER.SF, ") IS SAVED"));
    }
}

// After the best surface is printed or saved, no later surface is better until a new one is
// solved: the best factors start again.
void restartBestFactors() {
    MASTER.BESTSF = kNoBestSF;
    MASTER.BESTE2 = -(MASTER.SF * 1000000.0);
}

// Operation 4. Returns true when the best surface was printed.
bool printBest() {
    if (MASTER.KBEST == 2) {
        say(" THIS SURFACE HAS ALREADY BEEN PRINTED");
        return false;
    }
    if (MASTER.KBEST == 0) {
        say(" NO RESULTS AVAILABLE YET");
        return false;
    }
    PRINT();
    MASTER.KBEST = 2;
    MASTER.KLAST = 1;
    restartBestFactors();
    say(surfaceLine(" BEST SURFACE (NUM=", IBES.NUMSRF, BEST.SF, ") IS PRINTED"));
    return true;
}

// Operation 5.
void saveBest() {
    if (MASTER.KBSAVE == 0) {
        say(" NO RESULTS AVAILABLE YET");
        return;
    }
    if (MASTER.KBSAVE == 2) {
        say(" THIS SURFACE HAS ALREADY BEEN SAVED");
        return;
    }
    POST();
    MASTER.KBSAVE = 2;
    MASTER.KLSAVE = 1;
    restartBestFactors();
    say(surfaceLine(" BEST SURFACE (NUM=", IBES.NUMSRF, BEST.SF, ") IS SAVED"));
}

// Operation 6: new control data, then a new surface. The values are taken only from a read
// that succeeds; a failed read changes nothing and returns to the menu.
Next modifyControlData() {
    const std::string separator = io::repeat('=', 76);
    showControlData();
    say(separator);
    for (;;) {
        say(" GIVE CONTROL DATA MODIFICATIONS");
        say(kControlHeader);
        double crtscr = MASTER.CRTSCR, r1 = MASTER.R1, r2 = MASTER.R2, r3 = MASTER.R3;
        double h31 = MASTER.H3(1), h32 = MASTER.H3(2);
        int jprint = MASTER.JPRINT, jplot = MASTER.JPLOT, numslc = MASTER.NUMSLC;
        io::FreeReader reader(MASTER.NFIN, io::Span::Answer);
        reader(crtscr)(r1)(r2)(r3)(h31)(h32)(jprint)(jplot)(numslc);
        if (!reader.ok()) return Next::ControlData;
        MASTER.CRTSCR = crtscr;
        MASTER.R1 = r1;
        MASTER.R2 = r2;
        MASTER.R3 = r3;
        MASTER.H3(1) = h31;
        MASTER.H3(2) = h32;
        MASTER.JPRINT = jprint;
        MASTER.JPLOT = jplot;
        MASTER.NUMSLC = numslc;
        if (MASTER.NUMSLC < MAXSLC + 1) break;
        say(io::Line().A(" MAXIMUM ALLOWED NUMBER OF SLICES IS").Free(MAXSLC).str());
    }
    say(separator);
    MASTER.NSLREQ = MASTER.NUMSLC;
    return tryNewSurface();
}

// Operation 14 (not in the menu): when the best surface has improved since the last time,
// the result file starts again with the echo of the input and the best surface is printed.
bool reprintImprovedBest(double& rememberedSF) {
    if (!(BEST.SF < rememberedSF)) return false;
    if (rememberedSF < kReprintLimit) {
        io::rewind(MASTER.NF14);
        io::rewind(MASTER.NF16);
    }
    if (POSTGRAF.IECHO == 1) ECHO(MASTER.NF14, MASTER.NF16, kEchoMaxLines);
    rememberedSF = BEST.SF;
    return true;
}

// Runs the central decision point until the user terminates or the answers end.
void decisionLoop() {
    double rememberedSF = kNoBestYet;
    Next next = Next::ControlData;
    for (;;) {
        if (next == Next::ControlData) showControlData();
        if (next != Next::Answer) showMenu();
        next = Next::ControlData;

        int operation = 0;
        io::ReadStatus status = io::readAnswer(MASTER.NFIN, operation);
        if (status == io::ReadStatus::End) {
            say(" **** SR/CONTRL : END OF ANSWERS , RUN TERMINATED");
            return;
        }
        if (status != io::ReadStatus::Ok) continue;

        if (operation == kHiddenReprint) {
            if (!reprintImprovedBest(rememberedSF)) {
                next = Next::Answer;
                continue;
            }
            operation = 4;
        }
        switch (operation) {
            case 1: next = tryNewSurface(); break;
            case 2: printLast(); break;
            case 3: saveLast(); break;
            case 4:
                // In batch mode printing the best surface also saves it.
                if (printBest() && POSTGRAF.NFCOPY == kBatchCopy) saveBest();
                break;
            case 5: saveBest(); break;
            case 6: next = modifyControlData(); break;
            case 7: HELP(2); break;
            case 8: return;
            default: break;
        }
    }
}

// The normal end of a run: the end stamp and the time used, then the files are closed.
void endRun() {
    int elapsed = 0;
    TIMER0(2, MASTER.NFOUT, MASTER.NF16, elapsed, MASTER.DATTIM);
    const int timeUsed = static_cast<int>(std::floor(static_cast<double>(elapsed - gStartElapsed) + 0.5));
    writeBoth(MASTER.NFOUT, MASTER.NF16, io::Line().A(" TIME USED =").Free(timeUsed).A(" SECONDS").str());
    io::writeLine(POSTGRAF.NFCOPY, io::freeRecord("End of program KALMO"));
    io::closeAll();
}

}  // namespace

void setCommandLine(std::string_view text) { gCommandLine = std::string(text); }

void CONTRL() {
    setConstants();
    if (!openChannels()) {
        io::closeAll();
        return;
    }

    BEST.SF = kNoBestYet;
    HEADER(MASTER.IHEAD, TEXT.VERSION.view());
    TIMER0(1, MASTER.NFOUT, MASTER.NF18, gStartElapsed, MASTER.DATTIM);
    TOPLIN(MASTER.NF18, TEXT.VERSION.view(), MASTER.DATTIM);

    int answer = 0;
    sayPrompt(" DO YOU NEED INSTRUCTIONS (Y/N) .................. ");
    YESNO(answer, MASTER.NFIN);
    if (answer == 1 && POSTGRAF.NFCOPY != kNoHelpCopy) HELP(1);

    clearBeforeReading();
    READ();
    if (MASTER.IERR != 0) {
        sayPrompt(" SHALL HELP MENU BE DISPLAYED (Y/N) ..... ");
        YESNO(answer, MASTER.NFIN);
        if (answer == 1) HELP(2);
        endRun();
        return;
    }

    writeTitles();
    if (!sizesPass() || !controlDataPass()) {
        endRun();
        return;
    }
    if (MASTER.JSTRES < 1) MASTER.JSTRES = 1;
    if (MASTER.JSTRES > 2) MASTER.JSTRES = 2;
    if (!combinedAnalysisPass()) {
        endRun();
        return;
    }
    printProblem();

    MASTER.BESTSF = kNoBestSF;
    MASTER.BESTE2 = kNoBestE2;
    MASTER.NUMSRF = 0;
    MASTER.KBEST = 0;
    MASTER.KLAST = 2;
    MASTER.KBSAVE = 0;
    MASTER.KLSAVE = 2;

    decisionLoop();
    endRun();
}
