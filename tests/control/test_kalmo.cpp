// Whole runs of the program: start-up, the dialogue in batch mode and at the console, and the
// end of the run, compared with the expected text of the case folders under tests/data.
// The runs that reach the central decision point read the plain slope of the case folders.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/tempdir.h"
#include "support/wholerun.h"

using kalmo_test::checkCase;

TEST(WholeRun, AnEmptyFolderEndsWithTheOpenMessage) { checkCase("empty_folder"); }

TEST(WholeRun, BatchWithoutAnInputFileEndsWithTheErrorExit) { checkCase("batch_no_input"); }

TEST(WholeRun, BatchAnswersThatEndAtTheMenuEndTheRun) { checkCase("batch_end_of_answers"); }

// Operation 7 shows the menu of the HELP.KMO that lies beside the program; the empty standard
// input of the run leaves it at once.
TEST(WholeRun, BatchMenuAndBookkeepingMessages) { checkCase("batch_menu"); }

TEST(WholeRun, BatchWithZeroArgumentSendsNothingToTheScreen) { checkCase("batch_quiet"); }

TEST(WholeRun, ConsoleDialogueThroughTheStandardInput) { checkCase("console_dialogue"); }

namespace {
// A complete input file: the plain slope of the case folders.
std::string plainSlope() { return kalmo_test::readFile(std::string(KALMO_TEST_DATA) + "/batch_menu/KALMO.INP"); }

// Answers that no question can use: empty lines, words for numbers, numbers out of range or
// too large, control characters and very long lines.
std::string badAnswers() {
    const std::string longLine(300000, '9');
    return "\n   \n" + longLine + "\n" + "no\n" + "eight\n" + "\n\n\n" + "1e999\n" + "2147483648\n" + "-99\n" +
           longLine + "\n" + std::string(100000, 'x') + "\n" + "\x01\x1b[2J\xfe\n" + "1\n" + "circle\n" + "1\n" +
           "0\n" + "\t\t\n" + "2\n" + "6\n" + "1 2 three\n" + "6\n" + longLine + "\n" + "14\n" + "1,5\n" + ",\n" +
           "/\n" + "-8\n";
}
}  // namespace

TEST(WholeRun, BadAnswersInBatchNeverCrashOrHang) {
    kalmo_test::TempDir dir;
    dir.write("KALMO.INP", plainSlope());
    dir.write("SVAR.TMP", badAnswers());
    kalmo_test::RunOutcome outcome = kalmo_test::runProgram(dir.path(), {}, "", dir.path("screen.txt"));
    EXPECT_EQ(outcome.exitCode, 0);
    const std::string eko = dir.read("SVAR.EKO");
    const std::string ending = " **** SR/CONTRL : END OF ANSWERS , RUN TERMINATED\n";
    EXPECT_NE(eko.find(ending), std::string::npos);
    EXPECT_NE(eko.find(" TIME USED ="), std::string::npos);
    EXPECT_NE(outcome.screen.find(ending + " End of program KALMO\n"), std::string::npos);
}

TEST(WholeRun, BadAnswersAtTheConsoleNeverCrashOrHang) {
    kalmo_test::TempDir dir;
    std::filesystem::create_directory(dir.path("run"));
    dir.write("run/KALMO.INP", plainSlope());
    dir.write("answers.txt", badAnswers());
    kalmo_test::RunOutcome outcome =
        kalmo_test::runProgram(dir.path("run"), {}, dir.path("answers.txt"), dir.path("screen.txt"));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.screen.find(" **** SR/CONTRL : END OF ANSWERS , RUN TERMINATED\n"), std::string::npos);
    EXPECT_NE(outcome.screen.find(" TIME USED ="), std::string::npos);
}

TEST(WholeRun, AClosedStandardInputEndsTheRun) {
    kalmo_test::TempDir dir;
    dir.write("KALMO.INP", plainSlope());
    kalmo_test::RunOutcome outcome = kalmo_test::runProgram(dir.path(), {}, "", dir.path("screen.txt"));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.screen.find(" **** SR/CONTRL : END OF ANSWERS , RUN TERMINATED\n"), std::string::npos);
}

TEST(WholeRun, TheClockMaskLeavesTheLayout) {
    EXPECT_EQ(kalmo_test::maskClock(" THIS RUN WAS STARTED :  05 MAR 2017  AT  07:04:09 HOURS\n"
                                    " TIME USED =          65 SECONDS\n"),
              " THIS RUN WAS STARTED :  DD MON YYYY  AT  HH:MM:SS HOURS\n"
              " TIME USED = <seconds> SECONDS\n");
}

// ---------------------------------------------------------------------------------------------
// First contact: the exit status and the lines that say where the input is wrong, on the
// slope example as a new user would change it.
// ---------------------------------------------------------------------------------------------

namespace {

std::vector<std::string> slopeExample() {
    std::vector<std::string> lines;
    std::istringstream text(kalmo_test::readFile(std::string(KALMO_SOURCE_DIR) + "/examples/slope/KALMO.INP"));
    for (std::string line; std::getline(text, line);) lines.push_back(line);
    return lines;
}

// The line number (from 1) of the first line that starts with `start`.
size_t lineStarting(const std::vector<std::string>& lines, const std::string& start) {
    for (size_t k = 0; k < lines.size(); ++k)
        if (lines[k].compare(0, start.size(), start) == 0) return k + 1;
    ADD_FAILURE() << "no line starts with [" << start << "]";
    return 0;
}

std::string joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
}

size_t occurrences(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++found;
    return found;
}

// Runs the changed example in batch mode (no instructions, no echo, terminate at once).
kalmo_test::RunOutcome runSlope(const kalmo_test::TempDir& dir, const std::vector<std::string>& lines) {
    dir.write("KALMO.INP", joined(lines));
    dir.write("SVAR.TMP", "N\nN\n8\n");
    return kalmo_test::runProgram(dir.path(), {}, "", dir.path("screen.txt"));
}

}  // namespace

TEST(WholeRun, TheSlopeExampleEndsNormallyWithStatusZeroAndNoWarning) {
    kalmo_test::TempDir dir;
    kalmo_test::RunOutcome outcome = runSlope(dir, slopeExample());
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_NE(outcome.screen.find(" End of program KALMO\n"), std::string::npos);
    EXPECT_EQ(outcome.screen.find("WARNING"), std::string::npos) << outcome.screen;
}

// "9.5" in columns 79-81 of the strip load record is read as "9.": the run goes on, as the
// reading of 80 columns prescribes, but the line is named on the screen, in SVAR.EKO and in
// the log file.
TEST(WholeRun, ALongLineIsWarnedAboutOnceAndTheRunGoesOn) {
    std::vector<std::string> lines = slopeExample();
    const size_t strip = lineStarting(lines, "   1    5.0   15.0   20.0   20.0   0.0");
    std::string& record = lines[strip - 1];
    record = "   1    5.0   15.0   20.0   20.0   0.0";
    record.resize(78, ' ');
    record += "9.5";
    kalmo_test::TempDir dir;
    kalmo_test::RunOutcome outcome = runSlope(dir, lines);
    EXPECT_EQ(outcome.exitCode, 0);
    const std::string warning =
        " **** WARNING : KALMO.INP LINE " + std::to_string(strip) + " HAS TEXT BEYOND COLUMN 80, IGNORED\n";
    EXPECT_EQ(occurrences(outcome.screen, warning), 1u) << outcome.screen;
    EXPECT_EQ(occurrences(dir.read("SVAR.EKO"), warning), 1u);
    EXPECT_EQ(occurrences(dir.read("KALMO.LOG"), warning), 1u);
    EXPECT_EQ(occurrences(outcome.screen, "BEYOND COLUMN 80"), 1u);
    EXPECT_NE(outcome.screen.find(" End of program KALMO\n"), std::string::npos);
}

TEST(WholeRun, ATypoInTheMaterialTableNamesTheLineAndEndsWithStatusTwo) {
    std::vector<std::string> lines = slopeExample();
    const size_t material2 = lineStarting(lines, "  2  18.5");
    lines[material2 - 1].replace(0, 9, "  2  18.O");
    kalmo_test::TempDir dir;
    kalmo_test::RunOutcome outcome = runSlope(dir, lines);
    EXPECT_EQ(outcome.exitCode, 2);
    const std::string report = " **** SR/READ - INPUT FILE FORMAT ERROR - ID=        3002\n AT KALMO.INP LINE " +
                               std::to_string(material2) + ":" + lines[material2 - 1] + "\n";
    EXPECT_NE(dir.read("SVAR.EKO").find(report), std::string::npos) << dir.read("SVAR.EKO");
    EXPECT_NE(outcome.screen.find(report), std::string::npos);
    EXPECT_NE(outcome.screen.find(" End of program KALMO\n"), std::string::npos);
}

// A file cut off inside the general surface: the end of the data names the last line there is.
TEST(WholeRun, ACutFileNamesItsLastLineAndEndsWithStatusTwo) {
    std::vector<std::string> lines = slopeExample();
    const size_t surfaceX = lineStarting(lines, "    2.0   10.0   20.0   32.0   44.0");
    lines.resize(surfaceX);
    kalmo_test::TempDir dir;
    kalmo_test::RunOutcome outcome = runSlope(dir, lines);
    EXPECT_EQ(outcome.exitCode, 2);
    const std::string report = " **** SR/READ - ATTEMPT TO READ PAST END-OF-FILE  ID=        5101\n AT KALMO.INP LINE " +
                               std::to_string(surfaceX) + ":" + lines.back() + "\n";
    EXPECT_NE(dir.read("SVAR.EKO").find(report), std::string::npos) << dir.read("SVAR.EKO");
    EXPECT_NE(outcome.screen.find(report), std::string::npos);
}
