// Whole runs of the program: start-up, the dialogue in batch mode and at the console, and the
// end of the run, compared with the expected text of the case folders under tests/data.
// The runs that reach the central decision point read the plain slope of the case folders.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

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
