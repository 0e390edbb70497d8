// CONTRL: start-up, the checks after reading, the central decision point with its print and
// save bookkeeping, and the end of the run. The input reader and the circle routine are test
// doubles here (read_double.h, circle_double.h) and the routines of later work are stand-ins;
// through their hooks a test fills the problem (READ) and plays the solver's part for a
// surface routine (a counted surface, kept as the best when it is better). The result print is the real one: its summary
// headers in the result file show which surface was printed.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <sstream>
#include <string>
#include <vector>

#include "control/circle_double.h"
#include "control/control.h"
#include "control/read_double.h"
#include "io/channels.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

struct Stage {
    std::vector<std::string> calls;
    std::function<void()> read;     // fills the problem records
    std::function<void()> surface;  // the result of a surface routine
};
Stage gStage;

bool isSurfaceRoutine(std::string_view routine) {
    return routine == "CIRCLE";
}

void hook(std::string_view routine) {
    gStage.calls.push_back(std::string(routine));
    if (routine == "READ" && gStage.read) gStage.read();
    if (isSurfaceRoutine(routine) && gStage.surface) gStage.surface();
}

// The solver's bookkeeping for one analysed surface: it is counted, and it becomes the best
// surface when its safety factor is below the best so far.
void solvedSurface(double sf) {
    MASTER.NUMSRF += 1;
    MASTER.SF = sf;
    if (sf < MASTER.BESTSF) {
        MASTER.BESTSF = sf;
        IBES.NUMSRF = MASTER.NUMSRF;
        BEST.SF = sf;
        MASTER.KBEST = 1;
        MASTER.KBSAVE = 1;
    }
}

void clockAt(int hour, int minute, int second) {
    const int clock[8] = {2017, 3, 5, 0, hour, minute, second, 0};
    setClockOverride(clock);
}

int count(const std::string& text, const std::string& what) {
    int found = 0;
    for (size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++found;
    return found;
}

// The summary header line of a printed surface in the result file.
std::string printedSurface(int number) {
    std::string field = std::to_string(number);
    return " SURFACE NO :" + std::string(4 - field.size(), ' ') + field + "     SUMMARY OF GEOMETRY AND FORCES";
}

// The safety factors (F9.4) of the surfaces saved in the post-processor file, one per block:
// the line under the values label.
std::vector<std::string> savedFactors(const std::string& plt) {
    std::vector<std::string> factors;
    const std::string label = " SAFETY.FCT  SCORE  R-FACTOR   VALMSC1  VALMSC2  VALMSC3  VALMSC4  VALMSC5\n";
    for (size_t at = plt.find(label); at != std::string::npos; at = plt.find(label, at + 1))
        factors.push_back(plt.substr(at + label.size(), 9));
    return factors;
}

// True when the texts appear in this order.
bool inOrder(const std::string& text, std::initializer_list<std::string> parts) {
    size_t at = 0;
    for (const std::string& part : parts) {
        at = text.find(part, at);
        if (at == std::string::npos) return false;
        at += part.size();
    }
    return true;
}

const std::string kMenu =
    " ----- PROGRAM CONTROL IS AT CENTRAL DECISION POINT\n"
    " ----- SPECIFY NEXT OPERATION PLEASE\n"
    " -----   1 : TRY A NEW SHEAR SURFACE\n"
    " -----   2 : PRINT LAST SURFACE DATA TO FILE NF16\n"
    " -----   3 : SAVE  LAST SURFACE FOR POST PROCESSOR\n"
    " -----   4 : PRINT BEST SURFACE DATA TO FILE NF16\n"
    " -----   5 : SAVE  BEST SURFACE FOR POST PROCESSOR\n"
    " -----   6 : READ CONTROL DATA MODIFICATIONS\n"
    " -----   7 : HELP !\n"
    " -----   8 : TERMINATE\n"
    " .....   ";
const std::string kHeaderLine = " CRTSCR    R1     R2     R3    H3(1)   H3(2)  JPRINT  JPLOT NUMSLC";
const std::string kPresent = " PRESENT CONTROL DATA ARE :\n";
const std::string kZeroValues = "  0.000 0.000  0.000  0.000    0.000   0.000       0      0      0";
const std::string kTypePrompt =
    " GIVE SURFACE TYPE (1=GENERAL 2=CIRCLE 3=COMBINED 4=EP-PLANE 5=GENERAL AUTOSEARCH) .... ";
// The earth-pressure planes ask for their angles (the real routine: no stand-in hook).
const std::string kPlanePrompt = "\n GIVE EP-PLANE ANGLES (DEGRS)\n FIRST LAST STEP\n  ";
const std::string kNoResults = " NO RESULTS AVAILABLE YET\n";
const std::string kEndOfAnswers = " **** SR/CONTRL : END OF ANSWERS , RUN TERMINATED\n";
const std::string kEnd = " End of program KALMO\n";
const std::string kInstructions = "          KALMO INSTRUCTIONS MENU\n";
const std::string kHelpMenu = "          KALMO HELP MENU\n";

class Contrl : public ::testing::Test {
protected:
    void SetUp() override {
        home_ = std::filesystem::current_path();
        std::filesystem::current_path(dir_.path());
        clearRecords();
        io::resetAll();
        TEXT.VERSION.set("12 Jan 2017");
        setCommandLine("");
        resetRunClock();
        clockAt(10, 20, 30);
        gStage = Stage();
        setReadDoubleHook(&hook);
        setCircleDoubleHook(&hook);
        io::setStdoutStream(&screen_);
        io::setStdinText("");  // never the real standard input
    }
    void TearDown() override {
        setReadDoubleHook(nullptr);
        setCircleDoubleHook(nullptr);
        gStage = Stage();
        setClockOverride(nullptr);
        resetRunClock();
        io::resetAll();
        io::setStdoutStream(nullptr);
        setCommandLine("");
        std::filesystem::current_path(home_);
    }

    // A run at the console: the answers are the standard input, the dialogue the screen.
    std::string interactive(const std::string& answers) {
        dir_.write("KALMO.INP", "TEST INPUT\n");
        io::setStdinText(answers);
        CONTRL();
        return screen_.str();
    }
    // A batch run: the answers come from SVAR.TMP, the dialogue is kept in SVAR.EKO.
    std::string batch(const std::string& answers, const std::string& commandLine = "") {
        dir_.write("KALMO.INP", "TEST INPUT\n");
        dir_.write("SVAR.TMP", answers);
        setCommandLine(commandLine);
        CONTRL();
        return dir_.read("SVAR.EKO");
    }
    std::vector<std::string> calls() const { return gStage.calls; }
    // The instruction and help texts of the program, in the working folder of the run.
    void helpTexts() {
        for (const char* name : {"INSTRUCT.KMO", "HELP.KMO"})
            std::filesystem::copy_file(std::filesystem::path(KALMO_SOURCE_DIR) / name, dir_.path(name),
                                       std::filesystem::copy_options::overwrite_existing);
    }

    kalmo_test::TempDir dir_;
    std::filesystem::path home_;
    std::ostringstream screen_;
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// Start-up and files
// ---------------------------------------------------------------------------------------------

// The plain line after the open message names the file and the folder it was looked for in.
std::string notOpened(const std::string& file) {
    return " " + file + " COULD NOT BE OPENED IN " + std::filesystem::current_path().string() + "\n";
}

TEST_F(Contrl, AnEmptyFolderEndsWithTheOpenMessageAndTheFileInPlainWords) {
    CONTRL();
    // Interactively the error exit goes to the null device; the console has the open message.
    EXPECT_EQ(screen_.str(), " Fel i fil\"ppning  IERR=        6416 filnr=          14\n" + notOpened("KALMO.INP"));
    EXPECT_FALSE(dir_.exists("KALMO.LOG"));
    EXPECT_FALSE(dir_.exists("KALMO.RES"));
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(runExitStatus(), kExitFilesNotOpened);
}

TEST_F(Contrl, InBatchTheOpenFailureIsRecordedAndTheErrorExitShown) {
    dir_.write("SVAR.TMP", "N\n8\n");
    CONTRL();
    const std::string message = " Fel i fil\"ppning  IERR=        6416 filnr=          14\n" + notOpened("KALMO.INP");
    EXPECT_EQ(dir_.read("SVAR.EKO"), message);
    EXPECT_EQ(screen_.str(), message + " ERROR EXIT from program KALMO\n");
    EXPECT_TRUE(calls().empty());
    EXPECT_EQ(runExitStatus(), kExitFilesNotOpened);
}

// A folder named like a result file cannot be opened as that file: the line names it.
TEST_F(Contrl, TheLineNamesWhicheverFileFailedToOpen) {
    dir_.write("KALMO.INP", "TEST INPUT\n");
    std::filesystem::create_directory(dir_.path("KALMO.RES"));
    CONTRL();
    EXPECT_NE(screen_.str().find(" filnr=          16\n" + notOpened("KALMO.RES")), std::string::npos) << screen_.str();
    EXPECT_EQ(runExitStatus(), kExitFilesNotOpened);
}

TEST_F(Contrl, ANormalEndGivesExitStatusZero) {
    interactive("N\n8\n");
    EXPECT_EQ(runExitStatus(), kExitNormal);
}

TEST_F(Contrl, TheExitStatusIsThatOfTheLatestRun) {
    CONTRL();  // no input file
    EXPECT_EQ(runExitStatus(), kExitFilesNotOpened);
    TearDown();
    SetUp();
    interactive("N\n8\n");
    EXPECT_EQ(runExitStatus(), kExitNormal);
}

TEST_F(Contrl, TheOpenMessageTextIsTwentyFourCharactersWithAQuote) {
    const std::string text = " Fel i fil\"ppning  IERR=";
    EXPECT_EQ(text.size(), 24u);
    CONTRL();
    EXPECT_EQ(screen_.str().substr(0, 24), text);
}

TEST_F(Contrl, StartUpSetsTheConstantsAndChannels) {
    interactive("N\n8\n");
    EXPECT_EQ(MASTER.IHEAD, 2);
    EXPECT_DOUBLE_EQ(MASTER.PI, 3.14159265358979323846);
    EXPECT_EQ(MASTER.EPS, static_cast<double>(1.0E-20f));
    EXPECT_EQ(ISUR.NSRFCP, 5857);
    EXPECT_EQ(MASTER.NFIN, 8);
    EXPECT_EQ(MASTER.NFOUT, 12);
    EXPECT_EQ(MASTER.NF14, 14);
    EXPECT_EQ(MASTER.NF15, 15);
    EXPECT_EQ(MASTER.NF16, 16);
    EXPECT_EQ(MASTER.NF17, 17);
    EXPECT_EQ(MASTER.NF18, 18);
    EXPECT_EQ(POSTGRAF.NFCOPY, 9);
    EXPECT_EQ(BEST.SF, 98.0);
    for (const char* file : {"KALMO.TMP", "KALMO.RES", "KALMO.PLT", "KALMO.LOG"}) EXPECT_TRUE(dir_.exists(file));
}

TEST_F(Contrl, InBatchTheLogCopyIsChannelSix) {
    batch("N\n8\n");
    EXPECT_EQ(POSTGRAF.NFCOPY, 6);
}

TEST_F(Contrl, TheBannerTheStartStampAndThePageTopOpenTheRun) {
    std::string out = interactive("N\n8\n");
    EXPECT_EQ(out.substr(0, 4), "\n\n\n\n");
    EXPECT_TRUE(inOrder(out, {"PROGRAM KALMO", "Program Version : 12 Jan 2017",
                              "\n\n THIS RUN WAS STARTED :  05 MAR 2017  AT  10:20:30 HOURS\n",
                              " DO YOU NEED INSTRUCTIONS (Y/N) .................. "}));
    std::string log = dir_.read("KALMO.LOG");
    EXPECT_EQ(log.substr(0, 59), "\n THIS RUN WAS STARTED :  05 MAR 2017  AT  10:20:30 HOURS\n\f");
    EXPECT_TRUE(inOrder(log, {"\f KALMO  Output   Program Version = 12 Jan 2017    Time = 05 MAR 2017  10:20:30\n",
                              " This KALMO.LOG file contains messages from the run :\n"}));
}

TEST_F(Contrl, InstructionsAreShownOnYesBeforeTheInputIsRead) {
    helpTexts();
    bool shownBeforeReading = false;
    gStage.read = [this, &shownBeforeReading] {
        shownBeforeReading = screen_.str().find(kInstructions) != std::string::npos;
    };
    // "6" leaves the instructions menu
    std::string out = interactive("Y\n6\n8\n");
    EXPECT_TRUE(shownBeforeReading);
    EXPECT_EQ(count(out, kInstructions), 1);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, NoInstructionsOnNoOrOnThreeUnusableAnswers) {
    helpTexts();
    std::string out = interactive("N\n8\n");
    EXPECT_EQ(out.find(kInstructions), std::string::npos);
    EXPECT_NE(out.find(kMenu), std::string::npos);
    TearDown();
    SetUp();
    helpTexts();
    out = interactive("?\n?\n?\n8\n");
    EXPECT_EQ(out.find(kInstructions), std::string::npos);
    EXPECT_NE(out.find(kMenu), std::string::npos);
}

TEST_F(Contrl, YesInBatchIsReadFromTheAnswerFileAndTheQuestionRecorded) {
    helpTexts();
    io::setStdinText("1\n");  // an answer nobody typed: it must stay unread
    std::string eko = batch("Yes\n8\n");
    // The instructions would read their option from the standard input, which is no terminal
    // in this batch run: one line says so, and the run goes on without waiting there.
    const std::string noHelp = " **** SR/HELP : NO HELP PAGES IN BATCH MODE WITHOUT A TERMINAL , THE RUN GOES ON\n";
    EXPECT_EQ(screen_.str().find(kInstructions), std::string::npos);
    EXPECT_TRUE(inOrder(eko, {" DO YOU NEED INSTRUCTIONS (Y/N) .................. \n", noHelp, kMenu}));
    EXPECT_EQ(count(screen_.str(), noHelp), 1);
    std::string unread;
    io::bindStdin(5);  // the run has closed its channels
    EXPECT_EQ(io::readLine(5, unread), io::kReadOk);
    EXPECT_EQ(unread, "1");
    EXPECT_NE(eko.find(" DO YOU NEED INSTRUCTIONS (Y/N) .................. \n"), std::string::npos);
    // the copy goes to the screen too
    EXPECT_NE(screen_.str().find(" DO YOU NEED INSTRUCTIONS (Y/N) .................. "), std::string::npos);
}

TEST_F(Contrl, TheArraysTheInputLeavesOutAreClearedBeforeReading) {
    SOLPRP.SUNOD(7) = 1.0;
    WATER1.PWNOD(3) = 2.0;
    SURF.XS(1) = 3.0;
    SURF.SNM(99) = 3.5;
    GENERL.PGEN(1, 1) = 4.0;
    GENERL.SIGGEN(100, 500) = 5.0;
    GENERL.TAUGEN(2, 3) = 6.0;
    SOLPRP.MAT(BFCT, 50) = 7.0;
    IGEOMS.LAYMAT(35) = 8;
    GEOMSH.ZLAYER(1) = 9.0;
    MASTER.IUPDAT = 1;
    MASTER.ICOMBF = 1;
    MASTER.KCOMB = 3;
    bool seenClear = false;
    gStage.read = [&] {
        seenClear = SOLPRP.SUNOD(7) == 0.0 && WATER1.PWNOD(3) == 0.0 && SURF.XS(1) == 0.0 && SURF.SNM(99) == 0.0 &&
                    GENERL.PGEN(1, 1) == 0.0 && GENERL.SIGGEN(100, 500) == 0.0 && GENERL.TAUGEN(2, 3) == 0.0 &&
                    SOLPRP.MAT(BFCT, 50) == 0.0 && IGEOMS.LAYMAT(35) == 0 && GEOMSH.ZLAYER(1) == 0.0 &&
                    MASTER.IUPDAT == 0 && MASTER.ICOMBF == 0 && MASTER.KCOMB == 0 && MASTER.IERR == 0;
    };
    interactive("N\n8\n");
    EXPECT_TRUE(seenClear);
}

// ---------------------------------------------------------------------------------------------
// After reading
// ---------------------------------------------------------------------------------------------

TEST_F(Contrl, AnInputErrorOffersTheHelpMenuAndEndsWithTheTimeUsed) {
    helpTexts();
    gStage.read = [] { MASTER.IERR = 100; };
    // "7" leaves the help menu
    std::string out = interactive("N\nY\n7\n8\n");
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
    EXPECT_TRUE(inOrder(out, {" SHALL HELP MENU BE DISPLAYED (Y/N) ..... ", kHelpMenu,
                              "\n THIS RUN WAS TERMINATED :  05 MAR 2017  AT  10:20:30 HOURS\n",
                              " TIME USED =           0 SECONDS\n"}));
    EXPECT_EQ(out.find(" INPUT FILE TEXT LINES ARE :"), std::string::npos);
    EXPECT_EQ(out.find(kMenu), std::string::npos);
    EXPECT_EQ(runExitStatus(), kExitInputRefused);
}

TEST_F(Contrl, AnInputErrorWithoutHelpStillEnds) {
    helpTexts();
    gStage.read = [] { MASTER.IERR = 5; };
    batch("N\nN\n");
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
    EXPECT_EQ(screen_.str().find(kHelpMenu), std::string::npos);
    EXPECT_NE(dir_.read("SVAR.EKO").find(" TIME USED ="), std::string::npos);
    EXPECT_TRUE(inOrder(screen_.str(), {" SHALL HELP MENU BE DISPLAYED (Y/N) ..... ", kEnd}));
    EXPECT_EQ(runExitStatus(), kExitInputRefused);
}

TEST_F(Contrl, TheTitleLinesGoToTheConsoleAndTheLog) {
    gStage.read = [] {
        TEXT.TITLE(1).set("SLOPE AT THE RIVER");
        TEXT.TITLE(2).set("SECTION 4");
    };
    std::string out = interactive("N\n8\n");
    const std::string title1 = " SLOPE AT THE RIVER" + std::string(80 - 18, ' ') + "\n";
    const std::string title2 = " SECTION 4" + std::string(80 - 9, ' ') + "\n";
    EXPECT_NE(out.find(" INPUT FILE TEXT LINES ARE :\n" + title1 + title2), std::string::npos);
    EXPECT_NE(dir_.read("KALMO.LOG").find(" This KALMO.LOG file contains messages from the run :\n" + title1 + title2),
              std::string::npos);
}

TEST_F(Contrl, SeveralSizeProblemsAreAllReportedBeforeTheRunEnds) {
    gStage.read = [] {
        IGEOMS.NELEM = 3501;
        IGEOMS.NNODE = 3636;  // at the limit: no message
        ISOLPR.NMAT = 51;
        ISOLPR.NSUX = 2;
        ISOLPR.NSUPT(2) = 26;
        IWATER.NUMXPW = 126;  // too many x-lines; the points of 125 of them are checked
        IWATER.NPWPT(125) = 130;
        ILOA.NSTRIP = 21;
        MASTER.NUMGEN = 3;
        IGENER.NPGEN(2) = 101;
        MASTER.NUMSLC = 100;
        ISNAIL.NNAILS = 76;
        MASTER.IDTYP = 0;  // not looked at: the sizes failed
    };
    std::string out = batch("N\n8\n");
    const std::string expected =
        " SIZE PROBLEM : NUMBER OF ELEMENTS        3501        3500\n"
        " SIZE PROBLEM : NUMBER OF MATERIALS          51          50\n"
        " SIZE PROBLEM : NUMBER OF SU0 Z-POINTS          26          25\n"
        " SIZE PROBLEM : NUMBER OF PWP X-LINES         126         125\n"
        " SIZE PROBLEM : NUMBER OF PWP Z-POINTS         130         125\n"
        " SIZE PROBLEM : NUMBER OF STRIP LOADS          21          20\n"
        " SIZE PROBLEM : SHEAR SURFACE           2 NUMBER OF POINTS         101         100\n"
        " SIZE PROBLEM : NUMBER OF SLICES         100          99\n"
        " SIZE PROBLEM : NUMBER OF SOIL NAILS          76          75\n";
    EXPECT_NE(out.find(expected), std::string::npos) << out;
    EXPECT_NE(screen_.str().find(expected), std::string::npos);  // the log copy
    EXPECT_EQ(count(out, " SIZE PROBLEM"), 9);
    EXPECT_EQ(out.find("CONTROL DATA ERROR"), std::string::npos);
    EXPECT_EQ(out.find(kMenu), std::string::npos);
    EXPECT_NE(out.find(" TIME USED ="), std::string::npos);
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(runExitStatus(), kExitInputRefused);
}

TEST_F(Contrl, AllControlDataErrorsAreReported) {
    gStage.read = [] {
        MASTER.IDTYP = 3;
        MASTER.IDEFTO = 0;
        IWATER.IDPWP = -2;
    };
    std::string out = batch("N\n8\n");
    EXPECT_NE(out.find(" CONTROL DATA ERROR , IDTYP  =           3\n"
                       " CONTROL DATA ERROR , IDEFTO =           0\n"
                       " CONTROL DATA ERROR , IDPWP  =          -2\n"),
              std::string::npos);
    EXPECT_EQ(out.find(kMenu), std::string::npos);
    EXPECT_NE(out.find(" TIME USED ="), std::string::npos);
}

TEST_F(Contrl, OneControlDataErrorIsEnough) {
    gStage.read = [] { MASTER.IDEFTO = 4; };
    std::string out = batch("N\n8\n");
    EXPECT_NE(out.find(" CONTROL DATA ERROR , IDEFTO =           4\n"), std::string::npos);
    EXPECT_EQ(count(out, "CONTROL DATA ERROR"), 1);
    EXPECT_EQ(out.find(kMenu), std::string::npos);
    EXPECT_EQ(runExitStatus(), kExitInputRefused);
}

TEST_F(Contrl, TheResultPrintModeIsLimitedToOneOrTwo) {
    gStage.read = [] { MASTER.JSTRES = 0; };
    interactive("N\n8\n");
    EXPECT_EQ(MASTER.JSTRES, 1);
    TearDown();
    SetUp();
    gStage.read = [] { MASTER.JSTRES = 7; };
    interactive("N\n8\n");
    EXPECT_EQ(MASTER.JSTRES, 2);
}

TEST_F(Contrl, CombinedAnalysisRefusesAnEarthPressureProblem) {
    gStage.read = [] {
        MASTER.IDTYP = 2;
        MASTER.IDEFTO = 3;
    };
    std::string out = batch("N\n8\n");
    EXPECT_NE(out.find(" **** EARTH PRESSURE ANALYSIS AND COMBINED ANALYSIS ARE IN-COMPATIBLE\n"), std::string::npos);
    EXPECT_EQ(out.find(kMenu), std::string::npos);
    EXPECT_NE(out.find(" TIME USED ="), std::string::npos);
    EXPECT_EQ(runExitStatus(), kExitInputRefused);
}

TEST_F(Contrl, CombinedAnalysisRefusesTheFirstMaterialWithAPorePressureParameterB) {
    gStage.read = [] {
        MASTER.IDEFTO = 3;
        ISOLPR.NMAT = 4;
        SOLPRP.MAT(BFCT, 1) = 1.0E-21;  // below the zero tolerance: no B-factor
        SOLPRP.MAT(BFCT, 3) = 0.5;
        SOLPRP.MAT(BFCT, 4) = 0.7;
    };
    std::string out = batch("N\n8\n");
    EXPECT_NE(out.find(" **** UESA B-FACTOR GIVEN FOR LAYER =            3"
                       " THIS IS IN-COMPATIBLE WITH COMBINED ANALYSIS METHOD\n"),
              std::string::npos);
    EXPECT_EQ(count(out, "UESA"), 1);
    EXPECT_EQ(out.find(kMenu), std::string::npos);
}

TEST_F(Contrl, CombinedAnalysisWithoutBFactorsIsAccepted) {
    gStage.read = [] {
        MASTER.IDEFTO = 3;
        ISOLPR.NMAT = 2;
        SOLPRP.MAT(BFCT, 1) = 1.0E-21;
    };
    std::string out = batch("N\n8\n");
    EXPECT_TRUE(inOrder(out, {" COMBINED SWEDISH ANALYSIS\n",
                              " EFFECTIVE STRESS SHEAR STRENGTH IS LIMITED TO GIVEN SU VALUES\n", kMenu}));
}

TEST_F(Contrl, TheProblemTypeIsPrintedToConsoleAndCopy) {
    gStage.read = [] {
        MASTER.IDTYP = 2;
        MASTER.IDEFTO = 2;
        MASTER.METHOD = 3;
        MASTER.NUMGEN = 4;
        ISNAIL.NNAILS = 12;
    };
    std::string out = batch("N\n8\n");
    const std::string expected =
        " EARTH PRESSURE PROBLEM TYPE\n"
        " TOTAL STRESS ANALYSIS\n"
        " Solution Method : 3 KALMO-2003\n"
        "            4 GENERAL SHEAR SURFACES          12 SOIL NAILS\n";
    EXPECT_NE(out.find(expected), std::string::npos);
    EXPECT_NE(screen_.str().find(expected), std::string::npos);
}

TEST_F(Contrl, EachSolutionMethodHasItsLine) {
    const char* lines[5] = {" Solution Method : -1 Force Equilibrium\n", " Solution Method : 0 KALMO 1988-2002\n",
                            " Solution Method : 1 Bishop Simplified\n", " Solution Method : 2 Bishop Modified\n",
                            " Solution Method : 3 KALMO-2003\n"};
    for (int method = -1; method <= 3; ++method) {
        TearDown();
        SetUp();
        gStage.read = [method] { MASTER.METHOD = method; };
        std::string out = batch("N\n8\n");
        EXPECT_TRUE(inOrder(out, {" STABILITY/BEARING PROBLEM TYPE\n", " EFFECTIVE STRESS ANALYSIS\n",
                                  lines[method + 1]}))
            << method;
    }
}

TEST_F(Contrl, TheBookkeepingStartsWithNoResults) {
    gStage.read = [] {
        MASTER.KBEST = 5;
        MASTER.NUMSRF = 9;
    };
    interactive("N\n8\n");
    EXPECT_EQ(MASTER.BESTSF, 1000000.0);
    EXPECT_EQ(MASTER.BESTE2, -1000000.0);
    EXPECT_EQ(MASTER.NUMSRF, 0);
    EXPECT_EQ(MASTER.KBEST, 0);
    EXPECT_EQ(MASTER.KLAST, 2);
    EXPECT_EQ(MASTER.KBSAVE, 0);
    EXPECT_EQ(MASTER.KLSAVE, 2);
}

// ---------------------------------------------------------------------------------------------
// The central decision point
// ---------------------------------------------------------------------------------------------

TEST_F(Contrl, TheControlDataAndTheMenuAreShown) {
    std::string out = interactive("N\n8\n");
    EXPECT_NE(out.find(kPresent + kHeaderLine + "\n" + kZeroValues + "\n" + kMenu), std::string::npos);
}

TEST_F(Contrl, TheMenuGoesToTheConsoleOnlyAndTheControlDataToBoth) {
    batch("N\n8\n");
    std::string copy = screen_.str();
    EXPECT_EQ(copy.find(" ----- PROGRAM CONTROL"), std::string::npos);
    EXPECT_NE(copy.find(kPresent + kHeaderLine + "\n" + kZeroValues + "\n"), std::string::npos);
}

TEST_F(Contrl, TheControlDataShowTheRequestedNumberOfSlices) {
    gStage.read = [] {
        MASTER.CRTSCR = 0.5;
        MASTER.R1 = -0.25;
        MASTER.R2 = 1.0;
        MASTER.R3 = 12.5;
        MASTER.H3(1) = 0.333;
        MASTER.H3(2) = -1.5;
        MASTER.JPRINT = 3;
        MASTER.JPLOT = 12;
        MASTER.NUMSLC = 40;
        MASTER.NSLREQ = 30;
    };
    std::string out = interactive("N\n8\n");
    // F7.3 F6.3 F7.3 F7.3 F9.3 F8.3 I8 I7 I7
    EXPECT_NE(out.find(kHeaderLine + "\n  0.500-0.250  1.000 12.500    0.333  -1.500       3     12     30\n"),
              std::string::npos);
    EXPECT_EQ(MASTER.NUMSLC, 30);
}

TEST_F(Contrl, EachControlValueEndsUnderTheEndOfItsHeading) {
    gStage.read = [] {
        MASTER.CRTSCR = 1.25;
        MASTER.R1 = 0.5;
        MASTER.R2 = 0.75;
        MASTER.R3 = 0.125;
        MASTER.H3(1) = 0.33;
        MASTER.H3(2) = 0.67;
        MASTER.JPRINT = 1;
        MASTER.JPLOT = 2;
        MASTER.NSLREQ = 25;
    };
    std::string out = interactive("N\n8\n");
    size_t at = out.find(kHeaderLine + "\n");
    ASSERT_NE(at, std::string::npos);
    size_t start = at + kHeaderLine.size() + 1;
    std::string values = out.substr(start, out.find('\n', start) - start);
    ASSERT_EQ(values.size(), kHeaderLine.size());
    // Every heading word and every value end in the same columns.
    for (size_t column = 0; column < kHeaderLine.size(); ++column) {
        const bool last = column + 1 == kHeaderLine.size();
        bool headingEnds = kHeaderLine[column] != ' ' && (last || kHeaderLine[column + 1] == ' ');
        bool valueEnds = values[column] != ' ' && (last || values[column + 1] == ' ');
        EXPECT_EQ(headingEnds, valueEnds) << "column " << column + 1 << ": " << values;
    }
}

TEST_F(Contrl, AnsweringNineOrZeroOnlyRedisplaysTheControlDataAndTheMenu) {
    std::string out = interactive("N\n9\n0\n8\n");
    const std::string block = kPresent + kHeaderLine + "\n" + kZeroValues + "\n" + kMenu;
    EXPECT_NE(out.find(block + "\n" + block + "\n" + block + "\n"), std::string::npos);
    EXPECT_EQ(count(out, kMenu), 3);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, ALineWithoutANumberReturnsToTheMenu) {
    std::string out = interactive("N\nabc\n2x\n,\n8\n");
    EXPECT_EQ(count(out, kMenu), 4);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
    EXPECT_EQ(out.find(kEndOfAnswers), std::string::npos);
}

TEST_F(Contrl, AnEmptyAnswerAtTheMenuShowsItAgain) {
    std::string out = interactive("N\n\n   \n8\n");
    EXPECT_EQ(count(out, kMenu), 3);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, AShortControlDataAnswerKeepsTheOtherValuesAndTakesNoFurtherLine) {
    gStage.read = [] {
        MASTER.R1 = 0.25;
        MASTER.NSLREQ = 30;
    };
    interactive("N\n6\n0.7\n2\n8\n");
    EXPECT_EQ(MASTER.CRTSCR, 0.7);
    EXPECT_EQ(MASTER.R1, 0.25);
    EXPECT_EQ(MASTER.NSLREQ, 30);
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));  // the "2" answered the type question
}

TEST_F(Contrl, OperationTwoRightAfterStartHasNoResults) {
    std::string out = interactive("N\n2\n8\n");
    EXPECT_NE(out.find(kMenu + "\n" + kNoResults + kPresent), std::string::npos);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, OperationTwoAfterOperationFourSaysAlreadyPrinted) {
    gStage.surface = [] { solvedSurface(1.25); };
    std::string out = interactive("N\n2\n1\n2\n4\n2\n8\n");
    EXPECT_TRUE(inOrder(out, {kNoResults, kTypePrompt,
                              " BEST SURFACE (NUM=           1 SF=   1.250000    ) IS PRINTED\n",
                              " THIS SURFACE HAS ALREADY BEEN PRINTED\n"}));
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));
    EXPECT_EQ(count(dir_.read("KALMO.RES"), " SURFACE NO :"), 1);
}

TEST_F(Contrl, InBatchPrintingTheBestSurfaceAlsoSavesIt) {
    gStage.surface = [] { solvedSurface(1.25); };
    std::string eko = batch("N\n1\n2\n4\n5\n8\n");
    EXPECT_TRUE(inOrder(eko, {" BEST SURFACE (NUM=           1 SF=   1.250000    ) IS PRINTED\n",
                              " BEST SURFACE (NUM=           1 SF=   1.250000    ) IS SAVED\n", kPresent,
                              " THIS SURFACE HAS ALREADY BEEN SAVED\n"}));
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));
    EXPECT_EQ(count(dir_.read("KALMO.RES"), printedSurface(1)), 1);
    EXPECT_EQ(savedFactors(dir_.read("KALMO.PLT")), std::vector<std::string>{"   1.2500"});
    EXPECT_EQ(MASTER.KBEST, 2);
    EXPECT_EQ(MASTER.KBSAVE, 2);
}

TEST_F(Contrl, AtTheConsolePrintingTheBestSurfaceLeavesItUnsaved) {
    gStage.surface = [] { solvedSurface(1.25); };
    std::string out = interactive("N\n1\n2\n4\n5\n8\n");
    EXPECT_TRUE(inOrder(out, {" BEST SURFACE (NUM=           1 SF=   1.250000    ) IS PRINTED\n", kPresent,
                              " BEST SURFACE (NUM=           1 SF=   1.250000    ) IS SAVED\n"}));
    EXPECT_EQ(out.find("ALREADY BEEN SAVED"), std::string::npos);
}

TEST_F(Contrl, InBatchARefusedPrintIsNotFollowedByASave) {
    std::string eko = batch("N\n4\n8\n");
    EXPECT_EQ(count(eko, kNoResults), 1);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, PrintingTheLastSurfaceMarksItWhileThePrintRuns) {
    // The best copy is given another factor: a print of the last surface must not show it.
    gStage.surface = [] {
        solvedSurface(2.5);
        BEST.SF = 9.0;
    };
    std::string out = interactive("N\n1\n2\n2\n2\n8\n");
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));
    std::string res = dir_.read("KALMO.RES");
    EXPECT_EQ(count(res, printedSurface(1)), 1);
    EXPECT_EQ(count(res, "  SAFETY FACTOR =    2.500"), 1);
    EXPECT_TRUE(inOrder(out, {" LAST SURFACE (NUM=           1 SF=   2.500000    ) IS PRINTED\n",
                              " THIS SURFACE HAS ALREADY BEEN PRINTED\n"}));
    EXPECT_EQ(MASTER.KLAST, 1);
}

TEST_F(Contrl, SavingTheLastSurfaceMarksItWhileTheSaveRuns) {
    // The best copy is given another factor: a save of the last surface must not show it.
    gStage.surface = [] {
        solvedSurface(0.875);
        BEST.SF = 9.0;
    };
    std::string out = interactive("N\n3\n1\n2\n3\n3\n8\n");
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));
    EXPECT_EQ(savedFactors(dir_.read("KALMO.PLT")), std::vector<std::string>{"   0.8750"});
    EXPECT_TRUE(inOrder(out, {kNoResults, " LAST SURFACE (NUM=           1 SF=  0.8750000    ) IS SAVED\n",
                              " THIS SURFACE HAS ALREADY BEEN SAVED\n"}));
    EXPECT_EQ(MASTER.KLSAVE, 1);
}

TEST_F(Contrl, SavingTheBestSurfaceLosesTheLastForPrinting) {
    gStage.surface = [] { solvedSurface(1.5); };
    std::string out = interactive("N\n1\n2\n5\n2\n8\n");
    EXPECT_TRUE(inOrder(out, {" BEST SURFACE (NUM=           1 SF=   1.500000    ) IS SAVED\n",
                              " LAST SURFACE LOST WHEN BEST SURFACE WAS SAVED\n"}));
}

TEST_F(Contrl, PrintingTheBestSurfaceLosesTheLastForSaving) {
    gStage.surface = [] { solvedSurface(1.5); };
    std::string out = interactive("N\n1\n2\n4\n3\n8\n");
    EXPECT_TRUE(inOrder(out, {" BEST SURFACE (NUM=           1 SF=   1.500000    ) IS PRINTED\n",
                              " LAST SURFACE LOST WHEN BEST SURFACE WAS PRINTED\n"}));
}

TEST_F(Contrl, PrintingOrSavingTheBestRestartsTheBestFactors) {
    gStage.surface = [] { solvedSurface(1.5); };
    interactive("N\n1\n2\n4\n8\n");
    EXPECT_EQ(MASTER.BESTSF, 1000000.0);
    EXPECT_EQ(MASTER.BESTE2, -(1.5 * 1000000.0));
    EXPECT_EQ(MASTER.KLAST, 1);
}

TEST_F(Contrl, SavingTheBestWithNothingFoundHasNoResults) {
    std::string out = interactive("N\n5\n3\n8\n");
    EXPECT_EQ(count(out, kNoResults), 2);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, OperationOneAsksTheTypeUntilItIsOneToFive) {
    // Type 5 is the autosearch: it asks for its search width, and the unreadable answer "x"
    // sends it back to the menu.
    std::string out = interactive("N\n1\n0\n6\n-1\n5\nx\n8\n");
    EXPECT_EQ(count(out, kTypePrompt), 4);
    EXPECT_TRUE(inOrder(out, {kTypePrompt + "\n\n GIVE SEARCH WIDTH: \n", kMenu}));
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ"}));
    EXPECT_EQ(MASTER.KLAST, 0);
    EXPECT_EQ(MASTER.KLSAVE, 0);
}

TEST_F(Contrl, AfterASurfaceOnlyTheMenuIsShownAgain) {
    std::string out = interactive("N\n1\n2\n8\n");
    EXPECT_NE(out.find(kTypePrompt + "\n" + kMenu), std::string::npos);
    EXPECT_EQ(count(out, kPresent), 1);
}

TEST_F(Contrl, AFailedTypeAnswerReturnsToTheMenu) {
    std::string out = interactive("N\n1\ncircle\n8\n");
    EXPECT_NE(out.find(kTypePrompt + "\n" + kPresent), std::string::npos);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
    EXPECT_EQ(MASTER.KLAST, 2);  // nothing was tried
}

TEST_F(Contrl, EarthPressurePlanesOnlyForEarthPressureProblems) {
    std::string out = interactive("N\n1\n4\n8\n");
    EXPECT_NE(out.find(kTypePrompt + "\n SURFACE TYPE=4 ONLY ALLOWED FOR EP-PROBLEMS\n"), std::string::npos);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, AnEarthPressureProblemAsksTheSafetyFactorFirst) {
    gStage.read = [] { MASTER.IDTYP = 2; };
    // The planes are asked for; the answer "x" is no angle, and the planes return at once.
    std::string out = interactive("N\n1\n-1.5\n4\nx\n8\n");
    EXPECT_TRUE(inOrder(out, {" EARTH PRESSURE PROBLEM , GIVE SAFETY FACTOR (ACTIVE+/PASSIVE-)...", kTypePrompt,
                              kPlanePrompt, kMenu}));
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
    EXPECT_EQ(MASTER.SF, -1.5);
    EXPECT_EQ(MASTER.BESTE2, 1000000.0);  // passive: the smallest force is sought
}

TEST_F(Contrl, AnActiveSafetyFactorLeavesTheBestForceAlone) {
    gStage.read = [] { MASTER.IDTYP = 2; };
    interactive("N\n1\n1.0\n4\nx\n8\n");
    EXPECT_EQ(MASTER.SF, 1.0);
    EXPECT_EQ(MASTER.BESTE2, -1000000.0);
}

TEST_F(Contrl, AFailedSafetyFactorReturnsToTheMenu) {
    gStage.read = [] { MASTER.IDTYP = 2; };
    std::string out = interactive("N\n1\nactive\n8\n");
    EXPECT_EQ(out.find(kTypePrompt), std::string::npos);
    EXPECT_EQ(count(out, kPresent), 2);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, OperationSixRepeatsForOneHundredSlicesAndAcceptsNinetyNine) {
    std::string out = interactive(
        "N\n6\n"
        "0.5 0.1 0.2 0.3 0.4 0.6 1 0 100\n"
        "0.5 0.1 0.2 0.3 0.4 0.6 1 0 99\n"
        "2\n9\n8\n");
    const std::string separator(76, '=');
    const std::string ask = " GIVE CONTROL DATA MODIFICATIONS\n" + kHeaderLine + "\n";
    EXPECT_TRUE(inOrder(out, {kPresent + kHeaderLine + "\n" + kZeroValues + "\n" + separator + "\n" + ask,
                              " MAXIMUM ALLOWED NUMBER OF SLICES IS          99\n" + ask,
                              separator + "\n" + kTypePrompt,
                              "\n" + kMenu}));
    EXPECT_EQ(count(out, " MAXIMUM ALLOWED NUMBER OF SLICES IS"), 1);
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));
    EXPECT_EQ(MASTER.NSLREQ, 99);
    EXPECT_EQ(MASTER.CRTSCR, 0.5);
    EXPECT_EQ(MASTER.R1, 0.1);
    EXPECT_EQ(MASTER.R2, 0.2);
    EXPECT_EQ(MASTER.R3, 0.3);
    EXPECT_EQ(MASTER.H3(1), 0.4);
    EXPECT_EQ(MASTER.H3(2), 0.6);
    EXPECT_EQ(MASTER.JPRINT, 1);
    EXPECT_EQ(MASTER.JPLOT, 0);
    // The 9 shows the new control data.
    EXPECT_NE(out.find(kHeaderLine + "\n  0.500 0.100  0.200  0.300    0.400   0.600       1      0     99\n"),
              std::string::npos);
}

TEST_F(Contrl, OperationSixKeepsTheValuesLeftOut) {
    gStage.read = [] {
        MASTER.CRTSCR = 0.75;
        MASTER.NSLREQ = 20;
        MASTER.JPRINT = 2;
    };
    interactive("N\n6\n, 0.1 /\n1\n8\n");
    EXPECT_EQ(MASTER.CRTSCR, 0.75);
    EXPECT_EQ(MASTER.R1, 0.1);
    EXPECT_EQ(MASTER.JPRINT, 2);
    EXPECT_EQ(MASTER.NSLREQ, 20);
}

TEST_F(Contrl, AFailedControlDataReadChangesNothing) {
    gStage.read = [] { MASTER.NSLREQ = 20; };
    std::string out = interactive("N\n6\n0.9 0.8 x\n8\n");
    EXPECT_EQ(MASTER.CRTSCR, 0.0);
    EXPECT_EQ(MASTER.R1, 0.0);
    EXPECT_EQ(MASTER.NSLREQ, 20);
    EXPECT_EQ(out.find(kTypePrompt), std::string::npos);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, OperationSixInAnEarthPressureProblemGoesOnToTheSafetyFactor) {
    gStage.read = [] { MASTER.IDTYP = 2; };
    std::string out = interactive("N\n6\n/\n-2\n4\nx\n8\n");
    const std::string separator(76, '=');
    EXPECT_TRUE(inOrder(out, {separator + "\n EARTH PRESSURE PROBLEM , GIVE SAFETY FACTOR (ACTIVE+/PASSIVE-)...",
                              kTypePrompt, kPlanePrompt}));
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, OperationSevenShowsTheHelpMenu) {
    helpTexts();
    // "7" leaves the help menu, and the control data and the menu come back
    std::string out = interactive("N\n7\n7\n8\n");
    EXPECT_TRUE(inOrder(out, {kMenu, kHelpMenu, kPresent, kMenu}));
    EXPECT_EQ(count(out, kMenu), 2);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, HiddenReprintWaitsForABetterBestSurface) {
    std::string out = interactive("N\n14\n14\n8\n");
    // no improvement: the answer is read again without the menu
    EXPECT_EQ(count(out, kMenu), 1);
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, HiddenReprintStartsTheResultFileAgainWithTheEcho) {
    double nextSF = 1.5;
    gStage.read = [] { POSTGRAF.IECHO = 1; };
    gStage.surface = [&nextSF] { solvedSurface(nextSF); };
    dir_.write("KALMO.INP", "TEST INPUT\n");
    io::setStdinText("N\n1\n2\n14\n14\n8\n");
    CONTRL();
    std::string out = screen_.str();
    std::string res = dir_.read("KALMO.RES");
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));
    EXPECT_TRUE(inOrder(out, {" BEST SURFACE (NUM=           1 SF=   1.500000    ) IS PRINTED\n", kPresent}));
    EXPECT_EQ(res.substr(0, 2), "#\n");
    EXPECT_NE(res.find("    1---- TEST INPUT"), std::string::npos);
    EXPECT_TRUE(inOrder(res, {"    1---- TEST INPUT", printedSurface(1)}));
    EXPECT_EQ(count(out, kMenu), 3);  // start, after the surface, after the reprint; not after the second 14
}

TEST_F(Contrl, HiddenReprintAgainAfterABetterSurfaceListsTheInputOnce) {
    double nextSF = 1.5;
    gStage.read = [] { POSTGRAF.IECHO = 1; };
    gStage.surface = [&nextSF] {
        solvedSurface(nextSF);
        nextSF = 1.2;
    };
    dir_.write("KALMO.INP", "TEST INPUT\n");
    io::setStdinText("N\n1\n2\n14\n1\n2\n14\n8\n");
    CONTRL();
    std::string res = dir_.read("KALMO.RES");
    EXPECT_EQ(count(res, "ECHO PRINT OF DATA"), 1);
    // The second reprint started the file again: only the print of surface 2 is left in it.
    EXPECT_EQ(count(res, " SURFACE NO :"), 1);
    EXPECT_EQ(count(res, printedSurface(2)), 1);
    EXPECT_TRUE(inOrder(screen_.str(), {" BEST SURFACE (NUM=           1 SF=   1.500000    ) IS PRINTED\n",
                                        " BEST SURFACE (NUM=           2 SF=   1.200000    ) IS PRINTED\n"}));
}

TEST_F(Contrl, HiddenReprintInBatchAlsoSaves) {
    gStage.surface = [] { solvedSurface(1.5); };
    std::string eko = batch("N\n1\n2\n14\n8\n");
    EXPECT_EQ(calls(), (std::vector<std::string>{"READ", "CIRCLE"}));
    EXPECT_EQ(savedFactors(dir_.read("KALMO.PLT")), std::vector<std::string>{"   1.5000"});
    EXPECT_EQ(count(dir_.read("KALMO.RES"), printedSurface(1)), 1);
    EXPECT_NE(eko.find(" BEST SURFACE (NUM=           1 SF=   1.500000    ) IS SAVED\n"), std::string::npos);
}

// ---------------------------------------------------------------------------------------------
// End of the run
// ---------------------------------------------------------------------------------------------

TEST_F(Contrl, TerminationWritesTheEndStampAndTheTimeUsed) {
    gStage.surface = [] { clockAt(10, 21, 35); };  // 65 seconds after the start
    std::string eko = batch("N\n1\n2\n8\n");
    const std::string end =
        "\n THIS RUN WAS TERMINATED :  05 MAR 2017  AT  10:21:35 HOURS\n"
        " TIME USED =          65 SECONDS\n";
    EXPECT_EQ(eko.substr(eko.size() - end.size()), end);
    std::string res = dir_.read("KALMO.RES");
    EXPECT_EQ(res, end);
    EXPECT_EQ(screen_.str().substr(screen_.str().size() - kEnd.size()), kEnd);
    EXPECT_EQ(screen_.str().find(" TIME USED"), std::string::npos);
}

TEST_F(Contrl, ARunThatPassesMidnightReportsANegativeTimeUsed) {
    clockAt(23, 59, 50);
    gStage.surface = [] { clockAt(0, 0, 20); };
    std::string eko = batch("N\n1\n2\n8\n");
    const int expected = 20 - (23 * 3600 + 59 * 60 + 50);
    EXPECT_NE(eko.find(" TIME USED =      " + std::to_string(expected) + " SECONDS\n"), std::string::npos) << eko;
}

TEST_F(Contrl, InBatchTheEndOfTheAnswersEndsTheRun) {
    std::string eko = batch("N\n2\n");
    EXPECT_TRUE(inOrder(eko, {kNoResults, kMenu + "\n" + kEndOfAnswers,
                              "\n THIS RUN WAS TERMINATED :  05 MAR 2017  AT  10:20:30 HOURS\n",
                              " TIME USED =           0 SECONDS\n"}));
    EXPECT_TRUE(inOrder(screen_.str(), {kEndOfAnswers, kEnd}));
    EXPECT_EQ(count(eko, kMenu), 2);
}

TEST_F(Contrl, AtTheConsoleAClosedInputEndsTheRun) {
    std::string out = interactive("N\n");
    EXPECT_TRUE(inOrder(out, {kMenu + "\n" + kEndOfAnswers, " TIME USED ="}));
}

TEST_F(Contrl, AnswersEndingInsideOperationOneEndTheRun) {
    std::string eko = batch("N\n1\n");
    EXPECT_TRUE(inOrder(eko, {kTypePrompt, kMenu + "\n" + kEndOfAnswers, " TIME USED ="}));
    EXPECT_EQ(calls(), std::vector<std::string>{"READ"});
}

TEST_F(Contrl, AnswersEndingInsideOperationSixEndTheRun) {
    std::string eko = batch("N\n6\n0 0 0 0 0 0 0 0 100\n");
    EXPECT_TRUE(inOrder(eko, {" MAXIMUM ALLOWED NUMBER OF SLICES IS", kEndOfAnswers, " TIME USED ="}));
}

TEST_F(Contrl, AnswersEndingAtTheSafetyFactorEndTheRun) {
    gStage.read = [] { MASTER.IDTYP = 2; };
    std::string eko = batch("N\n1\n");
    EXPECT_TRUE(inOrder(eko, {" EARTH PRESSURE PROBLEM", kEndOfAnswers, " TIME USED ="}));
}

TEST_F(Contrl, AnEmptyAnswerFileEndsTheRun) {
    std::string eko = batch("");
    EXPECT_TRUE(inOrder(eko, {" DO YOU NEED INSTRUCTIONS", kEndOfAnswers, " TIME USED ="}));
    EXPECT_EQ(count(dir_.read("KALMO.LOG"), " Y/N REQUIRED , PLEASE TRY AGAIN..... "), 3);
}

// ---------------------------------------------------------------------------------------------
// Batch mode and the screen
// ---------------------------------------------------------------------------------------------

TEST_F(Contrl, BatchWithAZeroArgumentSendsNothingToTheScreen) {
    gStage.surface = [] { solvedSurface(1.25); };
    std::string eko = batch("N\n1\n2\n4\n2\n8\n", "0");
    EXPECT_EQ(screen_.str(), "");
    EXPECT_TRUE(inOrder(eko, {" DO YOU NEED INSTRUCTIONS", kMenu, " BEST SURFACE (NUM=", " TIME USED ="}));
}

TEST_F(Contrl, AZeroInTheSecondColumnAlsoKeepsTheScreenQuiet) {
    batch("N\n8\n", "10 extra words");
    EXPECT_EQ(screen_.str(), "");
}

TEST_F(Contrl, OtherArgumentsShowTheCopiesOnTheScreen) {
    batch("N\n2\n8\n", "x 0");
    EXPECT_TRUE(inOrder(screen_.str(), {" DO YOU NEED INSTRUCTIONS (Y/N) .................. ", kNoResults, kEnd}));
}

TEST_F(Contrl, AtTheConsoleTheArgumentDoesNotMatter) {
    setCommandLine("0");
    std::string out = interactive("N\n8\n");
    EXPECT_NE(out.find(kMenu), std::string::npos);
}

// ---------------------------------------------------------------------------------------------
// Bad answers
// ---------------------------------------------------------------------------------------------

TEST_F(Contrl, BadAnswersAnywhereNeverStopTheDialogue) {
    const std::string longLine(200000, '7');
    const std::string answers = "\n\n" + longLine + "\n" +  // the instruction question: three failed attempts
                                "N\n" + "zzz\n" + "\n\n  \n" + "1e400\n" + "99999999999\n" + "-2147483649\n" +
                                longLine + "\n" + std::string(1000, 'x') + "\n" + "\x01\x02\xff\n" + "1\n" +
                                "nine\n" + "1\n" + "77\n" + "\t\n" + "1\n" + "4\n" + "6\n" + "a b c\n" + "6\n" +
                                longLine + "\n" + "14\n" + "3.5\n" + "-8\n";
    std::string eko = batch(answers);
    EXPECT_TRUE(inOrder(eko, {kMenu, kEndOfAnswers, " TIME USED ="}));
    EXPECT_TRUE(inOrder(screen_.str(), {kEndOfAnswers, kEnd}));
}

TEST_F(Contrl, BadAnswersAtTheConsoleEndWhenTheInputCloses) {
    std::string out = interactive("junk\n\n" + std::string(5000, ' ') + "\n1\n\n?\n6\n1 2 3 4 5 6 7 8 x\n");
    EXPECT_TRUE(inOrder(out, {kMenu, kEndOfAnswers, " TIME USED ="}));
}
