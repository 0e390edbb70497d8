// READ: the places in KALMO.INP that its messages name. Every error report ends with the line
// of the input file where the fault lies (" AT KALMO.INP LINE n:" and the line's text), counted
// in KALMO.INP, comment lines included, not in the work copy; a line with text beyond column 80
// is warned about once while the work copy is made, and is still read as 80 characters.

#include <gtest/gtest.h>

#include <string>
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

class ReadPlaces : public ReadHarness {};

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

// The issue's own example: a letter O typed for a zero in the material table.
TEST_F(ReadPlaces, ATypoInTheMaterialTableNamesItsLine) {
    Deck deck;
    const std::string typo = "  2  2O.0 10.0  45.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0   0.0";
    deck.set("m3002", typo);
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 3002);
    EXPECT_NE(run.console.find(" **** SR/READ - INPUT FILE FORMAT ERROR - ID=        3002\n" +
                               at(lineOf(deck, "m3002"), typo)),
              std::string::npos)
        << run.console;
    EXPECT_EQ(count(run.console, " AT KALMO.INP LINE"), 1u);
}

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

// A record that runs short continues on the next lines; the read fails where the text that is
// no number stands, here the heading that follows.
TEST_F(ReadPlaces, ARecordShortOfValuesFailsOnTheLineAfterIt) {
    Deck deck;
    deck.set("m3051", "  1  19.0  1.0  1.0  1.0   0.0");
    deck.remove("m3052");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 3051);
    EXPECT_NE(run.console.find(at(lineOf(deck, "mSuHead"), "UNDRAINED STRENGTH X-LINES")), std::string::npos)
        << run.console;
}

// The place comes last, after the hint that belongs to the message.
TEST_F(ReadPlaces, AnEndOfTheDataNamesTheLastLineRead) {
    Deck deck;
    deck.cutFrom("s5101");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 5101);
    EXPECT_NE(run.console.find(" **** SR/READ - ATTEMPT TO READ PAST END-OF-FILE  ID=        5101\n"
                               " CHECK THAT GENERAL SURFACE PWP-VALUES ARE INCLUDED\n" +
                               at(lineOf(deck, "s5001"), "  0.0  10.0  20.0")),
              std::string::npos)
        << run.console;
}

TEST_F(ReadPlaces, ACheckOfARecordNamesThatRecordsLine) {
    Deck deck;
    deck.set("s4901", "  2  3");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 4901);
    EXPECT_NE(run.console.find(" **** SR/READ - INPUT DATA CONTROL   ID=        4901\n" +
                               at(lineOf(deck, "s4901"), "  2  3")),
              std::string::npos)
        << run.console;
}

// The mesh builder's message and the reader's follow-up come first, then the place.
TEST_F(ReadPlaces, AMeshErrorNamesTheLineTheMeshBuilderStoppedOn) {
    Deck deck;
    deck.set("gX2", " -5.0   2.0  10.0  0");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 2);
    EXPECT_NE(run.console.find(" **** SR/READ - SR/MESH PROBLEM  IERR=           2\n" +
                               at(lineOf(deck, "gX2"), " -5.0   2.0  10.0  0")),
              std::string::npos)
        << run.console;
}

// Checks made after later records were read name the record that is wrong, not the line the
// reading has reached.
TEST_F(ReadPlaces, AGeneralSurfaceOutOfOrderNamesItsXRecord) {
    Deck deck;
    deck.set("s5001", "  0.0  20.0  10.0");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 1);
    EXPECT_NE(run.console.find(at(lineOf(deck, "s5001"), "  0.0  20.0  10.0")), std::string::npos) << run.console;
    EXPECT_EQ(count(run.console, " AT KALMO.INP LINE"), 1u);
}

TEST_F(ReadPlaces, AWaterTableWithPorePressureLinesNamesTheWaterTableRecord) {
    Deck deck;
    deck.set("p3430", "  1.0");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 201);
    EXPECT_NE(run.console.find(at(lineOf(deck, "p3430"), "  1.0")), std::string::npos) << run.console;
}

TEST_F(ReadPlaces, AReducedStrengthWithoutReferenceStressNamesRecord2950) {
    Deck deck;
    deck.set("m3001", "  1  18.0  5.0  30.0  0.5  3.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 3060);
    EXPECT_NE(run.console.find(at(lineOf(deck, "m2950"), "  0.0")), std::string::npos) << run.console;
}

// Hydrostatic pore water contradicted: the deck's material 1 has a constant pore pressure,
// which wins over the x-lines, node values and unit weights (later checks win).
TEST_F(ReadPlaces, AContradictedHydrostaticPorePressureNamesTheMaterialLine) {
    Deck deck;
    deck.set("p3300", "  1");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 1);
    const std::string material1 = "  1  18.0  5.0  30.0  0.0  3.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0";
    EXPECT_NE(run.console.find("\"PWPMAT\" IS NOT ZERO, MATERIAL =           1\n" + at(lineOf(deck, "m3001"), material1)),
              std::string::npos)
        << run.console;
}

TEST_F(ReadPlaces, UnequalWaterUnitWeightsNameTheHydrostaticUnitWeight) {
    Deck deck;
    deck.set("p3300", "  1");
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  0.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 4);
    EXPECT_NE(run.console.find(at(lineOf(deck, "p3450"), "  9.0")), std::string::npos) << run.console;
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
