// READ: the places in KALMO.INP that its messages name. Every error report ends with the line
// of the input file where the fault lies (" AT KALMO.INP LINE n:" and the line's text), counted
// in KALMO.INP, comment lines included, not in the work copy; a line with text beyond column 80
// is warned about once while the work copy is made, and is still read as 80 characters.

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "input/read_deck.h"
#include "io/channels.h"
#include "records.h"

namespace {

using kalmo_test::Deck;
using kalmo_test::ReadHarness;
using kalmo_test::ReadResult;

// The expected place line, built from the line number and the text the test wrote itself.
std::string at(size_t lineNumber, const std::string& text) {
    return " AT KALMO.INP LINE " + std::to_string(lineNumber) + ":" + text + "\n";
}

std::string beyond80(size_t lineNumber) {
    return " **** WARNING : KALMO.INP LINE " + std::to_string(lineNumber) + " HAS TEXT BEYOND COLUMN 80, IGNORED\n";
}

size_t count(const std::string& text, const std::string& part) {
    size_t found = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) ++found;
    return found;
}

// The deck line of `tag`, as a line number of KALMO.INP.
size_t lineOf(const Deck& deck, const std::string& tag) { return deck.index(tag) + 1; }

class ReadPlaces : public ReadHarness {
protected:
    // Runs the deck; expects the code, and the end of the report (`report`, may be empty)
    // followed at once by the place of the line tagged `tag`, as the deck holds it.
    void expectPlace(const Deck& deck, int code, const std::string& report, const std::string& tag) {
        ReadResult run = runRead(deck);
        EXPECT_EQ(run.ierr, code) << run.console;
        const size_t line = lineOf(deck, tag);
        EXPECT_NE(run.console.find(report + at(line, deck.lines()[line - 1])), std::string::npos) << run.console;
        EXPECT_EQ(count(run.console, " AT KALMO.INP LINE"), 1u) << run.console;
    }
};

// ---------------------------------------------------------------------------------------------
// Text beyond column 80
// ---------------------------------------------------------------------------------------------

// "9.5" in columns 79-81 is read as "9.": the warning names the line, and the reading itself
// still cuts it, as every input line is read as 80 characters.
TEST_F(ReadPlaces, AValueRunningPastColumn80IsWarnedAboutAndStillCut) {
    std::string text = "  0.3";
    text.resize(78, ' ');
    text += "9.5";
    ASSERT_EQ(text.substr(78), "9.5");  // columns 79-81
    Deck deck;
    deck.set("c1200", text);
    ReadResult run = runRead(deck, "N\n", true);
    EXPECT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.H3(1), 0.3);
    EXPECT_EQ(MASTER.H3(2), 9.0);
    const std::string warning = beyond80(lineOf(deck, "c1200"));
    EXPECT_EQ(count(run.console, warning), 1u) << run.console;
    EXPECT_EQ(count(run.copy, warning), 1u) << run.copy;
    EXPECT_EQ(count(io::contents(18), warning), 1u) << io::contents(18);
    EXPECT_EQ(count(run.console, "BEYOND COLUMN 80"), 1u);
}

TEST_F(ReadPlaces, EveryLongLineIsNamedOnceInTheOrderOfTheFile) {
    Deck deck;
    deck.set("title1", std::string(85, 'T'));
    deck.set("m3001", Deck().lines()[Deck().index("m3001")] + std::string(30, ' ') + "NOTE");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 0) << run.console;
    const size_t first = run.console.find(beyond80(1));
    const size_t second = run.console.find(beyond80(lineOf(deck, "m3001")));
    ASSERT_NE(first, std::string::npos) << run.console;
    ASSERT_NE(second, std::string::npos) << run.console;
    EXPECT_LT(first, second);
    EXPECT_EQ(count(run.console, "BEYOND COLUMN 80"), 2u);
}

TEST_F(ReadPlaces, BlanksBeyondColumn80AndLongCommentsAreNoCause) {
    Deck deck;
    deck.set("c900", "  0.25" + std::string(120, ' '));
    deck.insertAfter("c900", {{"comment", "* " + std::string(100, 'x')}});
    deck.insertAfter("comment", {{"tabs", "C" + std::string(90, '-')}});
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(run.console.find("BEYOND COLUMN 80"), std::string::npos) << run.console;
}

// Lines after the END line are not read at all, long or not.
TEST_F(ReadPlaces, NothingAfterTheEndLineIsWarnedAbout) {
    std::vector<std::string> lines = Deck().lines();
    lines.push_back("END");
    lines.push_back(std::string(200, 'Z'));
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(run.console.find("BEYOND COLUMN 80"), std::string::npos);
}

// ---------------------------------------------------------------------------------------------
// The line that an error names
// ---------------------------------------------------------------------------------------------

// A change to the reference deck, the code READ returns, the end of the report the place must
// follow at once (may be empty) and the tag of the line that must be named.
struct Fault {
    const char* what;
    std::vector<std::pair<std::string, std::string>> changes;
    int code;
    std::string report;
    std::string tag;
};

class ReadFaultPlaces : public ReadPlaces, public ::testing::WithParamInterface<Fault> {};

TEST_P(ReadFaultPlaces, TheReportEndsWithTheLineWhereTheFaultLies) {
    const Fault& fault = GetParam();
    Deck deck;
    for (const auto& [tag, text] : fault.changes) deck.set(tag, text);
    expectPlace(deck, fault.code, fault.report, fault.tag);
}

INSTANTIATE_TEST_SUITE_P(
    EveryKindOfFault, ReadFaultPlaces,
    ::testing::Values(
        // A letter O typed for a zero in the material table.
        Fault{"typo", {{"m3002", "  2  2O.0 10.0  45.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0   0.0"}}, 3002,
              " **** SR/READ - INPUT FILE FORMAT ERROR - ID=        3002\n", "m3002"},
        // A record short of values runs on over the (now blank) next line into the heading,
        // and fails there.
        Fault{"shortRecord", {{"m3051", "  1  19.0  1.0  1.0  1.0   0.0"}, {"m3052", ""}}, 3051, "", "mSuHead"},
        Fault{"recordNumber", {{"s4901", "  2  3"}}, 4901, " **** SR/READ - INPUT DATA CONTROL   ID=        4901\n",
              "s4901"},
        // The mesh builder's message and the reader's follow-up come first, then the place.
        Fault{"mesh", {{"gX2", " -5.0   2.0  10.0  0"}}, 2, " **** SR/READ - SR/MESH PROBLEM  IERR=           2\n",
              "gX2"},
        // Checks made after later records were read name the record that is wrong, not the
        // line the reading has reached.
        Fault{"surfaceOrder", {{"s5001", "  0.0  20.0  10.0"}}, 1, "", "s5001"},
        Fault{"waterTable", {{"p3430", "  1.0"}}, 201, "", "p3430"},
        Fault{"referenceStress", {{"m3001", "  1  18.0  5.0  30.0  0.5  3.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0"}}, 3060,
              " **** SR/READ - INPUT DATA CONTROL   ID=        3060\n", "m2950"},
        // Hydrostatic pore water contradicted: material 1 has a constant pore pressure, which
        // wins over the x-lines, node values and unit weights (later checks win) ...
        Fault{"materialPorePressure", {{"p3300", "  1"}}, 1, "\"PWPMAT\" IS NOT ZERO, MATERIAL =           1\n",
              "m3001"},
        // ... and without it the unequal unit weights of the water are named.
        Fault{"unitWeights",
              {{"p3300", "  1"}, {"m3001", "  1  18.0  5.0  30.0  0.0  0.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0"}}, 4,
              "\"GAMWAT\" IS NOT EQUAL TO \"GAMPWP\"\n", "p3450"}),
    [](const ::testing::TestParamInfo<Fault>& info) { return std::string(info.param.what); });

// Comment lines are dropped from the work copy but counted in KALMO.INP: the line number is
// the one the user sees in an editor.
TEST_F(ReadPlaces, CommentLinesCountInTheLineNumber) {
    Deck deck;
    deck.insertAfter("c100", {{"k1", "* a comment"}, {"k2", "C another"}, {"k3", "*"}});
    deck.set("c600", "  TWELVE");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 600);
    EXPECT_EQ(lineOf(deck, "c600"), 10u);  // 3 lines of titles, 100, 3 comments, 200, 500, 600
    EXPECT_NE(run.console.find(at(10, "  TWELVE")), std::string::npos) << run.console;
}

// The place comes last, after the hint that belongs to the message.
TEST_F(ReadPlaces, AnEndOfTheDataNamesTheLastLineRead) {
    Deck deck;
    deck.cutFrom("s5101");
    expectPlace(deck, 5101,
                " **** SR/READ - ATTEMPT TO READ PAST END-OF-FILE  ID=        5101\n"
                " CHECK THAT GENERAL SURFACE PWP-VALUES ARE INCLUDED\n",
                "s5001");
}

// ---------------------------------------------------------------------------------------------
// Fewer than 50 lines: the line where the copy stopped
// ---------------------------------------------------------------------------------------------

TEST_F(ReadPlaces, AnEarlyEndLineIsNamed) {
    std::vector<std::string> lines = Deck().lines();
    lines.resize(29);
    lines.push_back("END OF A TEST");
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.ierr, 1);
    EXPECT_NE(run.console.find(" **** SR/READ - LESS THAN 50 LINES IN INPUT FILE          30\n" +
                               at(30, "END OF A TEST")),
              std::string::npos)
        << run.console;
}

TEST_F(ReadPlaces, AShortFileWithoutEndNamesItsLastLine) {
    std::vector<std::string> lines = Deck().lines();
    lines.resize(40);
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.ierr, 1);
    EXPECT_NE(run.console.find(" **** SR/READ - LESS THAN 50 LINES IN INPUT FILE          41\n" +
                               at(40, lines[39])),
              std::string::npos)
        << run.console;
}

TEST_F(ReadPlaces, AnEmptyFileHasNoLineToName) {
    ReadResult run = runRead(std::vector<std::string>{});
    EXPECT_EQ(run.ierr, 1);
    EXPECT_NE(run.console.find(" **** SR/READ - LESS THAN 50 LINES IN INPUT FILE           1\n"), std::string::npos);
    EXPECT_EQ(run.console.find(" AT KALMO.INP LINE"), std::string::npos) << run.console;
}

// An accepted file names no place.
TEST_F(ReadPlaces, AGoodFileNamesNoPlace) {
    ReadResult run = runRead(Deck());
    EXPECT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(run.console.find(" AT KALMO.INP LINE"), std::string::npos) << run.console;
}

}  // namespace
