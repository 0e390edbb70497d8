// HELP: the menus of the instructions and of the help texts, and a missing text file.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "control/control.h"
#include "io/channels.h"
#include "io/freeread.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

int countLinesStartingWith(const std::vector<std::string>& lines, const std::string& start) {
    int count = 0;
    for (const std::string& line : lines)
        if (line.rfind(start, 0) == 0) ++count;
    return count;
}

const std::string kPrompt = "          OPTION WANTED ...... ";

// Two sections of one page each, in the structure the pages reader expects.
const std::string kSmallHelpFile =
    "SMALL HELP FILE\n"
    "2\n"
    "FIRST\n"
    "SECOND\n"
    "1 1\n"
    "PAGE OF THE FIRST SECTION\n"
    "*\n"
    "2 1\n"
    "PAGE OF THE SECOND SECTION\n"
    "*\n"
    "0 0\n";

class Help : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        clearRecords();
        io::bindStdin(5);
        io::bindStdin(8);
        io::bindStdout(6);
        io::setStdoutStream(&console_);
        ASSERT_EQ(io::openNew(12, dir_.path("SCREEN.TXT")), 0);
        ASSERT_EQ(io::openNew(2, dir_.path("MESSAGES.TXT")), 0);
        work_ = dir_.path("work");
        std::filesystem::create_directory(work_);
        previous_ = std::filesystem::current_path();
        std::filesystem::current_path(work_);
    }
    void TearDown() override {
        std::filesystem::current_path(previous_);
        io::setStdoutStream(nullptr);
        io::resetAll();
    }

    void putInWorkingFolder(const std::string& name, const std::string& text) {
        std::ofstream out(work_ + "/" + name, std::ios::binary);
        out << text;
    }

    std::vector<std::string> console() const { return splitLines(console_.str()); }
    std::vector<std::string> screen() const { return splitLines(io::contents(12)); }
    std::vector<std::string> messages() const { return splitLines(io::contents(2)); }

    // The next answer still unread on the standard input, or -1.
    int nextAnswer() {
        int value = -1;
        if (io::readFree(8, value) != io::ReadStatus::Ok) return -1;
        return value;
    }

    static bool programFolderHas(const std::string& name) {
        std::error_code ec;
        std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ec);
        return !ec && std::filesystem::exists(program.parent_path() / name);
    }

    kalmo_test::TempDir dir_;
    std::string work_;
    std::filesystem::path previous_;
    std::ostringstream console_;
};

}  // namespace

TEST_F(Help, TheHelpMenuListsItsSixSectionsAndQuit) {
    putInWorkingFolder("HELP.KMO", kSmallHelpFile);
    io::setStdinText("7\n");
    HELP(2);
    std::vector<std::string> expected = {
        "", "",
        "          KALMO HELP MENU",
        "          ***************",
        "", "          1 : INPUT DATA ERROR CODES",
        "", "          2 : AVAILABLE SHEAR SURFACES",
        "", "          3 : CONTROL DATA EXPLANATION",
        "", "          4 : PRINT/SAVE/LAST/BEST",
        "", "          5 : EXECUTION ERROR MESSAGES",
        "", "          6 : USER NOTEBOOK",
        "", "          7 : QUIT",
        "", kPrompt,
    };
    EXPECT_EQ(console(), expected);
    EXPECT_TRUE(screen().empty());
    EXPECT_FALSE(io::isOpen(21));
}

TEST_F(Help, TheInstructionMenuListsItsFiveSectionsAndQuit) {
    putInWorkingFolder("INSTRUCT.KMO", kSmallHelpFile);
    io::setStdinText("6\n");
    HELP(1);
    std::vector<std::string> expected = {
        "", "",
        "          KALMO INSTRUCTIONS MENU",
        "          ***********************",
        "", "          1 : GETTING STARTED",
        "", "          2 : INPUT/OUTPUT FILES",
        "", "          3 : PREPARATION OF INPUT FILE",
        "", "          4 : RUNNING THE PROGRAM",
        "", "          5 : USER NOTEBOOK",
        "", "          6 : QUIT",
        "", kPrompt,
    };
    EXPECT_EQ(console(), expected);
    EXPECT_FALSE(io::isOpen(19));
}

TEST_F(Help, QAtAPageLeavesTheHelpEntirely) {
    putInWorkingFolder("HELP.KMO", kSmallHelpFile);
    io::setStdinText("2\nQ\n5\n");
    HELP(2);
    EXPECT_EQ(countLinesStartingWith(console(), kPrompt), 1);  // the menu is not shown again
    EXPECT_EQ(countLinesStartingWith(screen(), " PAGE OF THE SECOND SECTION"), 1);
    EXPECT_FALSE(io::isOpen(21));
    EXPECT_EQ(nextAnswer(), 5);  // nothing after the Q was read
}

TEST_F(Help, ZeroAtAPageReturnsToTheMenu) {
    putInWorkingFolder("HELP.KMO", kSmallHelpFile);
    io::setStdinText("1\n0\n7\n5\n");
    HELP(2);
    EXPECT_EQ(countLinesStartingWith(console(), kPrompt), 2);
    EXPECT_EQ(countLinesStartingWith(screen(), " PAGE OF THE FIRST SECTION"), 1);
    EXPECT_FALSE(io::isOpen(21));
    EXPECT_EQ(nextAnswer(), 5);
}

TEST_F(Help, AnyNumberOutsideTheSectionsLeavesTheHelp) {
    putInWorkingFolder("INSTRUCT.KMO", kSmallHelpFile);
    io::setStdinText("0\n5\n");
    HELP(1);
    EXPECT_EQ(countLinesStartingWith(console(), kPrompt), 1);
    EXPECT_TRUE(screen().empty());
    EXPECT_FALSE(io::isOpen(19));
    EXPECT_EQ(nextAnswer(), 5);
}

TEST_F(Help, AnUnreadableOptionShowsTheMenuAgain) {
    putInWorkingFolder("HELP.KMO", kSmallHelpFile);
    io::setStdinText("X\n7\n");
    HELP(2);
    EXPECT_EQ(countLinesStartingWith(console(), kPrompt), 2);
}

TEST_F(Help, TheEndOfTheStandardInputLeavesTheHelp) {
    putInWorkingFolder("HELP.KMO", kSmallHelpFile);
    io::setStdinText("");
    HELP(2);
    EXPECT_EQ(countLinesStartingWith(console(), kPrompt), 1);
    EXPECT_FALSE(io::isOpen(21));
}

TEST_F(Help, AMissingHelpFileIsReportedAndTheRunGoesOn) {
    if (programFolderHas("HELP.KMO")) GTEST_SKIP() << "a HELP.KMO lies beside the test program";
    MASTER.IERR = 0;
    io::setStdinText("1\n");
    HELP(2);
    std::vector<std::string> expected = {
        " **** SR/HELP : ERROR DURING FILE OPENING  IERR= 6416",
        " FILE \"HELP.KMO\" WAS NOT FOUND",
    };
    EXPECT_EQ(messages(), expected);
    EXPECT_TRUE(console().empty());  // no menu
    EXPECT_FALSE(io::isOpen(21));
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(nextAnswer(), 1);  // the dialogue goes on where it was
}

TEST_F(Help, AMissingInstructionFileIsReportedAndTheRunGoesOn) {
    if (programFolderHas("INSTRUCT.KMO")) GTEST_SKIP() << "an INSTRUCT.KMO lies beside the test program";
    io::setStdinText("1\n");
    HELP(1);
    std::vector<std::string> expected = {
        " **** SR/HELP : ERROR DURING FILE OPENING  IERR= 6416",
        " FILE \"INSTRUCT.KMO\" WAS NOT FOUND",
    };
    EXPECT_EQ(messages(), expected);
    EXPECT_TRUE(console().empty());
    EXPECT_EQ(nextAnswer(), 1);
}

TEST_F(Help, WithoutChannel2TheMissingFileIsReportedOnTheStandardOutput) {
    if (programFolderHas("HELP.KMO")) GTEST_SKIP() << "a HELP.KMO lies beside the test program";
    io::close(2);
    io::setStdinText("");
    HELP(2);
    std::vector<std::string> expected = {
        " **** SR/HELP : ERROR DURING FILE OPENING  IERR= 6416",
        " FILE \"HELP.KMO\" WAS NOT FOUND",
    };
    EXPECT_EQ(console(), expected);
}

TEST_F(Help, TheShippedHelpFileServesEverySectionOfTheMenu) {
    std::ifstream shipped(std::string(KALMO_SOURCE_DIR) + "/HELP.KMO", std::ios::binary);
    std::ostringstream text;
    text << shipped.rdbuf();
    ASSERT_FALSE(text.str().empty());
    putInWorkingFolder("HELP.KMO", text.str());
    io::setStdinText("1\n0\n2\n0\n3\n0\n4\n0\n5\n0\n6\n0\n7\n");
    HELP(2);
    EXPECT_EQ(countLinesStartingWith(console(), kPrompt), 7);
    EXPECT_EQ(countLinesStartingWith(screen(), " **** SR/PAGES ERROR"), 0);
    EXPECT_EQ(countLinesStartingWith(screen(), " PAGE    :   1 OF"), 6);
}

// In batch mode the help reads the standard input as well; when that is no terminal nobody
// can answer there, so the help says so in one line and returns at once, reading nothing.
TEST_F(Help, InBatchModeWithoutATerminalOneLineAndNothingRead) {
    putInWorkingFolder("HELP.KMO", kSmallHelpFile);
    io::setStdinText("1\n");
    MASTER.NFOUT = 12;
    POSTGRAF.NFCOPY = 6;  // batch mode: the copies go to the standard output
    HELP(2);
    const std::string line = " **** SR/HELP : NO HELP PAGES IN BATCH MODE WITHOUT A TERMINAL , THE RUN GOES ON";
    EXPECT_EQ(screen(), std::vector<std::string>{line});
    EXPECT_EQ(console(), std::vector<std::string>{line});
    EXPECT_EQ(nextAnswer(), 1);
}

// A batch run started from a terminal keeps the help on the keyboard, as at the console.
TEST_F(Help, InBatchModeAtATerminalTheMenuIsShown) {
    putInWorkingFolder("HELP.KMO", kSmallHelpFile);
    io::setStdinText("7\n");
    io::setStdinTerminal(true);
    MASTER.NFOUT = 12;
    POSTGRAF.NFCOPY = 6;
    HELP(2);
    EXPECT_NE(console_.str().find("          KALMO HELP MENU\n"), std::string::npos);
    EXPECT_EQ(nextAnswer(), -1);  // the 7 was read by the menu
}

// The help and instruction texts quote the messages the program writes about where the input
// is wrong, and the exit statuses of the program, in the program's own words.
TEST(ShippedTexts, QuoteTheInputPlaceMessagesAndTheExitStatus) {
    auto whole = [](const std::string& name) {
        std::ifstream in(std::string(KALMO_SOURCE_DIR) + "/" + name, std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    };
    const std::string help = whole("HELP.KMO");
    const std::string instruct = whole("INSTRUCT.KMO");
    EXPECT_NE(help.find(" **** WARNING : KALMO.INP LINE n HAS TEXT BEYOND COLUMN 80, IGNORED\n"), std::string::npos);
    EXPECT_NE(help.find(" AT KALMO.INP LINE 82:"), std::string::npos);
    EXPECT_NE(help.find(" KALMO.INP COULD NOT BE OPENED IN folder\n"), std::string::npos);
    for (const char* status : {"   0  normal end", "   1  error exit", "   2  the input was refused"})
        EXPECT_NE(help.find(status), std::string::npos) << status;
    for (const char* status : {" 0  normal end", " 1  ERROR EXIT", " 2  the input was refused"})
        EXPECT_NE(instruct.find(status), std::string::npos) << status;
    // The reader counts the END line (or the read past the end) as line 50 at the least.
    EXPECT_NE(instruct.find("at least 49 lines before the END line"), std::string::npos);
    EXPECT_NE(help.find("The END line must be line 50 or later"), std::string::npos);
}
