// READ: one broken input file per failure of the reader, each with its exact message and code.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "input/read_deck.h"

namespace {

using kalmo_test::Deck;
using kalmo_test::hasLine;
using kalmo_test::msg;
using kalmo_test::ReadHarness;
using kalmo_test::ReadResult;

const std::string kFormat = " **** SR/READ - INPUT FILE FORMAT ERROR - ID=";
const std::string kControl = " **** SR/READ - INPUT DATA CONTROL   ID=";
const std::string kPastEnd = " **** SR/READ - ATTEMPT TO READ PAST END-OF-FILE  ID=";

class ReadFailureTest : public ReadHarness {
protected:
    // Runs the deck and checks the code and that every expected line was written.
    void expectFailure(const Deck& deck, int code, const std::vector<std::string>& lines,
                       const std::string& answers = "N\n") {
        ReadResult run = runRead(deck, answers);
        EXPECT_EQ(run.ierr, code) << run.console;
        for (const auto& line : lines) EXPECT_TRUE(hasLine(run.console, line)) << "missing: [" << line << "]\n" << run.console;
    }
};

std::string found(const std::string& text) {
    std::string first40 = text.substr(0, 40);
    first40.resize(40, ' ');
    return " **** LINE FOUND STARTS WITH : " + first40;
}

// --- Free-format reads that fail -------------------------------------------------------------

struct BadValue {
    const char* tag;
    const char* text;
    int id;
};

class FormatErrorTest : public ReadFailureTest, public ::testing::WithParamInterface<BadValue> {};

TEST_P(FormatErrorTest, ReportsTheRecordNumber) {
    const BadValue bad = GetParam();
    expectFailure(Deck().set(bad.tag, bad.text), bad.id, {msg(kFormat, bad.id)});
}

// The deck has no comment lines, so the line of KALMO.INP is the place of the tag in the deck;
// the line named is the one just written with the bad value, right after the message.
TEST_P(FormatErrorTest, NamesTheLineOfTheInputFileThatHoldsTheBadValue) {
    const BadValue bad = GetParam();
    const Deck deck = Deck().set(bad.tag, bad.text);
    ReadResult run = runRead(deck);
    const std::string place = " AT KALMO.INP LINE " + std::to_string(deck.index(bad.tag) + 1) + ":" + bad.text;
    EXPECT_NE(run.console.find(msg(kFormat, bad.id) + "\n" + place + "\n"), std::string::npos) << run.console;
}

INSTANTIATE_TEST_SUITE_P(
    EveryRecordKind, FormatErrorTest,
    ::testing::Values(BadValue{"c100", "  1.0  ONE", 100}, BadValue{"c200", "  X", 200}, BadValue{"c500", "  1.5", 500},
                      BadValue{"c600", "  TWELVE", 600}, BadValue{"c700", "  A", 700}, BadValue{"c800", "  ten", 800},
                      BadValue{"c900", "  -", 900}, BadValue{"c1200", "  0.3  Q", 1200},
                      BadValue{"c1300", "  0.1  0.2  R3", 1300}, BadValue{"c1310", "  Y", 1310},
                      BadValue{"c1320", "  N", 1320}, BadValue{"c1350", "  3.", 1350}, BadValue{"c1360", "  +", 1360},
                      BadValue{"c1370", "  J", 1370}, BadValue{"c1400", "  1.0E", 1400},
                      BadValue{"c1450", "  .", 1450}, BadValue{"r2200", " 10.0  4.0  ROUGH", 2200},
                      BadValue{"m2500", "  two", 2500}, BadValue{"m2600", "  1.0", 2600},
                      BadValue{"m2700", "  X", 2700}, BadValue{"m2800", "  DC", 2800}, BadValue{"m2900", "  HW", 2900},
                      BadValue{"m2950", "  S", 2950},
                      BadValue{"m3002", "  2  20.0 10.0  45.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0   G", 3002},
                      BadValue{"m3051", "  1  19.0  1.0  1.0  1.0   0.0  YES", 3051},
                      BadValue{"m3101a", "  1  5.0  3   0.0  4.0  Z", 3101},
                      BadValue{"m3101b", "     10.0  20.0  SU", 3101}, BadValue{"m3202", "  7  S", 3202},
                      BadValue{"p3300", "  H", 3300}, BadValue{"p3400", "  N", 3400}, BadValue{"p3420", "  N", 3420},
                      BadValue{"p3425", "  M", 3425}, BadValue{"p3430", "  Z", 3430}, BadValue{"p3440", "  G", 3440},
                      BadValue{"p3450", "  G", 3450}, BadValue{"p3470", "  P", 3470},
                      BadValue{"p3501a", "  1  X  3   1.0  2.0  10.0", 3501},
                      BadValue{"p3501b", "    -10.0  0.0  U", 3501}, BadValue{"p3701", "  FOUR  5.0", 3701},
                      BadValue{"l4100", "  1.0", 4100}, BadValue{"l4200", "  S", 4200}, BadValue{"l4250", "  Q", 4250},
                      BadValue{"l4260", "  2.0  B", 4260}, BadValue{"l4300", "  F", 4300},
                      BadValue{"l4500", "  0.8  F", 4500}, BadValue{"l4701", "  1  4.0  0.5  5.0  V", 4701},
                      BadValue{"l4801", "  1  2.0  6.0  10.0  12.0  1.0  H", 4801},
                      BadValue{"s4901", "  1  N", 4901}, BadValue{"s5001", "  0.0  X  20.0", 5001},
                      BadValue{"s5101", " -1.0   5.0   Z", 5101}, BadValue{"s5201", " 10.0  20.0  P", 5201},
                      BadValue{"lcX", "  5.0  X", 5501}, BadValue{"lcZ", "  1.0  Z", 5501}));

TEST_F(ReadFailureTest, NodeValuesForAllNodesThatFailReportTheirRecord) {
    Deck deck;
    deck.set("m2700", "  15").set("m3201", "  1 2 3 4 5 6 7 8").set("m3202", "  9 10 11 12 13 14 X");
    expectFailure(deck, 3250, {msg(kFormat, 3250)});
    Deck water;
    water.set("p3420", "  15").set("p3701", "  1 1 1 1 1 1 1 1 1 1").set("p3702", "  1 1 1 1 W");
    expectFailure(water, 3750, {msg(kFormat, 3750)});
}

TEST_F(ReadFailureTest, Record1500EndingTheDataIsAFormatError) {
    std::vector<std::string> lines = Deck().lines();
    lines.resize(Deck().index("c1500"));
    lines.resize(60, "* the data end after record 1450");
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.ierr, 1500);
    EXPECT_TRUE(hasLine(run.console, msg(kFormat, 1500))) << run.console;
}

TEST_F(ReadFailureTest, MissingLinesAtAHeadingOrSectionEndAreFormatErrors) {
    // The data end where a section end is expected: reported under that section's code.
    std::vector<std::string> lines = Deck().lines();
    lines.resize(Deck().index("blank3"));
    lines.resize(60, "* the data end after record 2200");
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.ierr, 102);
    EXPECT_TRUE(hasLine(run.console, msg(kFormat, 102))) << run.console;
}

// --- Reads past the end inside the general surfaces and line control --------------------------

std::vector<std::string> cutBefore(const Deck& deck, const std::string& tag) {
    std::vector<std::string> lines = deck.lines();
    lines.resize(deck.index(tag));
    return lines;
}

TEST_F(ReadFailureTest, EndOfDataInAGeneralSurfaceAsksForItsPorePressures) {
    for (const char* tag : {"s4901", "s5001", "s5101", "s5201"}) {
        ReadResult run = runRead(cutBefore(Deck(), tag));
        const int id = std::stoi(std::string(tag).substr(1));
        EXPECT_EQ(run.ierr, id) << tag;
        EXPECT_TRUE(hasLine(run.console, msg(kPastEnd, id))) << run.console;
        EXPECT_TRUE(hasLine(run.console, " CHECK THAT GENERAL SURFACE PWP-VALUES ARE INCLUDED")) << run.console;
    }
}

TEST_F(ReadFailureTest, EndOfDataWithHydrostaticPorePressuresGivesNoHint) {
    Deck deck;
    deck.set("p3300", "  1").set("p3400", "  0").set("p3420", "  0").set("p3450", "  10.0");
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  0.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0");
    deck.remove("p3501a").remove("p3501b").remove("p3701").remove("p3702");
    ReadResult run = runRead(cutBefore(deck, "s5101"));
    EXPECT_EQ(run.ierr, 5101);
    EXPECT_TRUE(hasLine(run.console, msg(kPastEnd, 5101))) << run.console;
    EXPECT_EQ(run.console.find("CHECK THAT"), std::string::npos);
}

TEST_F(ReadFailureTest, EndOfDataBeforeInitialStressesAsksForThem) {
    Deck deck;
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  3.0  0.0  0.7  0.4  0.5  0.6  7.0  20.0");
    ReadResult run = runRead(cutBefore(deck, "lcCount"), "N\nY\n");
    EXPECT_EQ(run.ierr, 5301);
    EXPECT_TRUE(hasLine(run.console, msg(kPastEnd, 5301))) << run.console;
    EXPECT_TRUE(hasLine(run.console, " CHECK THAT GENERAL SURFACE INITIAL STRESSES ARE INCLUDED")) << run.console;
}

TEST_F(ReadFailureTest, EndOfDataInTheLineControlPointsAsksForThem) {
    for (const char* tag : {"lcX", "lcZ"}) {
        ReadResult run = runRead(cutBefore(Deck(), tag));
        EXPECT_EQ(run.ierr, 5501) << tag;
        EXPECT_TRUE(hasLine(run.console, msg(kPastEnd, 5501))) << run.console;
        EXPECT_TRUE(hasLine(run.console, " CHECK THAT LINE CONTROL POINTS ARE INCLUDED")) << run.console;
    }
}

TEST_F(ReadFailureTest, EndOfDataAtTheGeneralSurfacesHeadingWithSurfacesAnnounced) {
    ReadResult run = runRead(cutBefore(Deck(), "sHead"));
    EXPECT_EQ(run.ierr, 4901);
    EXPECT_TRUE(hasLine(run.console, msg(kPastEnd, 4901))) << run.console;
}

TEST_F(ReadFailureTest, MoreLineControlPointsThanTheTableHoldsAreRefused) {
    // Ten values a line: the records run over several lines.
    auto values = [](int count, bool xs) {
        std::string text;
        for (int k = 1; k <= count; ++k) text += (xs ? " " + std::to_string(k) : std::string(" 1")) + (k % 10 == 0 && k < count ? "\n" : "");
        return text;
    };
    expectFailure(Deck().set("lcCount", "  101").set("lcX", values(101, true)).set("lcZ", values(101, false)), 5500,
                  {msg(kControl, 5500)});
    ReadResult run = runRead(Deck().set("lcCount", "  100").set("lcX", values(100, true)).set("lcZ", values(100, false)));
    EXPECT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(LINECONTROL.NLCP, 100);
    EXPECT_DOUBLE_EQ(LINECONTROL.XLC(100), 100.0);
    EXPECT_DOUBLE_EQ(LINECONTROL.ZLC(100), 1.0);
}

// --- Consistency checks ------------------------------------------------------------------------

TEST_F(ReadFailureTest, MaterialNumbersMustFollowEachOther) {
    expectFailure(Deck().set("m3002", "  3  20.0 10.0  45.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0   0.0"), 3002,
                  {msg(kControl, 3002)});
    expectFailure(Deck().set("m3051", "  2  19.0  1.0  1.0  1.0   0.0  1.0"), 3051, {msg(kControl, 3051)});
}

TEST_F(ReadFailureTest, BFactorsAreRefusedInEarthPressureProblems) {
    Deck deck;
    deck.set("c500", "  2");
    deck.set("m3002", "  2  20.0 10.0  45.0  0.0  0.0  0.0  0.2  0.0  0.0  0.0  0.0   0.0");
    expectFailure(deck, 3049, {msg(kControl, 3049)});
}

TEST_F(ReadFailureTest, StressDependentFrictionNeedsAReferenceStress) {
    Deck deck;
    deck.set("m3002", "  2  20.0 10.0  45.0  -0.5  0.0  0.0  0.0  0.0  0.0  0.0  0.0   0.0");
    expectFailure(deck, 3060, {msg(kControl, 3060)});
    ReadResult run = runRead(deck.set("m2950", "  100.0"));
    EXPECT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(SOLPRP.STRDAT(3), 100.0);
}

TEST_F(ReadFailureTest, StrengthProfilesMustBeNumberedInOrder) {
    expectFailure(Deck().set("m3101a", "  2  5.0  3   0.0  4.0  10.0"), 3101, {msg(kControl, 3101)});
    expectFailure(Deck().set("p3501a", "  0  8.0  3   1.0  2.0  10.0"), 3501, {msg(kControl, 3501)});
}

TEST_F(ReadFailureTest, NodeNumbersMustLieInTheMesh) {
    expectFailure(Deck().set("m3202", "  16  14.0"), 3202, {msg(kControl, 3202)});
    expectFailure(Deck().set("m3201", "  0  14.0"), 3201, {msg(kControl, 3201)});
    expectFailure(Deck().set("p3702", "  16  6.0"), 3702, {msg(kControl, 3702)});
    expectFailure(Deck().set("p3701", "  -1  6.0"), 3701, {msg(kControl, 3701)});
}

TEST_F(ReadFailureTest, PorePressureKindMustBeOneOrTwo) {
    expectFailure(Deck().set("p3300", "  3"), 3300, {msg(kControl, 3300)});
    expectFailure(Deck().set("p3300", "  0"), 3300, {msg(kControl, 3300)});
}

TEST_F(ReadFailureTest, HydrostaticPorePressureExcludesBFactors) {
    Deck deck;
    deck.set("m3002", "  2  20.0 10.0  45.0  0.0  0.0  0.0  0.2  0.0  0.0  0.0  0.0   0.0");
    deck.set("p3300", "  1");
    expectFailure(deck, 3350, {msg(kControl, 3350)});
}

TEST_F(ReadFailureTest, NodePorePressureCountMustLieInTheMesh) {
    expectFailure(Deck().set("p3420", "  16"), 3420, {msg(kControl, 3420)});
    expectFailure(Deck().set("p3420", "  -1"), 3420, {msg(kControl, 3420)});
}

TEST_F(ReadFailureTest, LowestPorePressureMustBeBelowZero) {
    expectFailure(Deck().set("p3470", "  0.5"), 3470, {msg(kControl, 3470)});
    ReadResult run = runRead(Deck().set("p3470", "  0.0"));
    EXPECT_EQ(run.ierr, 0) << run.console;
}

TEST_F(ReadFailureTest, SurfaceLoadRangeMustNotRunBackwards) {
    expectFailure(Deck().set("l4260", "  8.0  2.0"), 4260, {msg(kControl, 4260)});
    ReadResult run = runRead(Deck().set("l4260", "  3.0  3.0"));
    EXPECT_EQ(run.ierr, 0) << run.console;
}

TEST_F(ReadFailureTest, GeneralSurfacesMustBeNumberedInOrder) {
    expectFailure(Deck().set("s4901", "  2  3"), 4901, {msg(kControl, 4901)});
}

// --- Missing blank lines -----------------------------------------------------------------------

TEST_F(ReadFailureTest, BlankLineAfterTheTitles) {
    const std::string text = "  1.0  1.0   this is record 100, not a blank line";
    expectFailure(Deck().set("blank1", text), 100,
                  {" **** SR/READ : BLANK LINE EXPECTED AFTER THE TWO FIRST TEXT LINES", found(text)});
}

TEST_F(ReadFailureTest, BlankLineAtTheEndOfTheGeometrySection) {
    Deck deck;
    deck.insertAfter("r2200", {{"extra", "MATERIALS TOO EARLY"}});
    expectFailure(deck, 102,
                  {" **** SR/READ : BLANK LINE EXPECTED AT END OF GEOMETRY SECTION", found("MATERIALS TOO EARLY")});
}

TEST_F(ReadFailureTest, BlankLineAtTheEndOfTheMaterialSection) {
    Deck deck;
    deck.insertAfter("m3202", {{"extra", "  8  16.0"}});
    expectFailure(deck, 103, {" **** SR/READ : BLANK LINE EXPECTED AT END OF MATERIAL PROPERTIES SECTION",
                              found("  8  16.0")});
}

TEST_F(ReadFailureTest, BlankLineAtTheEndOfThePoreWaterSection) {
    Deck deck;
    deck.remove("blank5");
    expectFailure(deck, 204,
                  {" **** SR/READ : BLANK LINE EXPECTED AT END OF PORE WATER PRESSURES SECTION", found("LOADS")});
}

TEST_F(ReadFailureTest, BlankLineAtTheEndOfTheLoadSection) {
    Deck deck;
    deck.set("blank6", "  2  10.0 1.0  4.0 3.0  1.5  0.1  80.0 90.0  0.5  200.0 10.0 100.0  0.0 1.0 2.0 a second nail");
    expectFailure(deck, 205,
                  {" **** SR/READ : BLANK LINE EXPECTED AT END OF LOAD SECTION",
                   found("  2  10.0 1.0  4.0 3.0  1.5  0.1  80.0 90.0  0.5  200.0 10.0 100.0  0.0 1.0 2.0")});
}

TEST_F(ReadFailureTest, ABlankLineNeedsOnlyItsFirstFortyColumnsBlank) {
    ReadResult run = runRead(Deck().set("blank4", std::string(40, ' ') + "notes beyond column 40"));
    EXPECT_EQ(run.ierr, 0) << run.console;
}

// --- Failures with code 1 --------------------------------------------------------------------

TEST_F(ReadFailureTest, StripLoadMustRunFromLeftToRight) {
    expectFailure(Deck().set("l4801", "  1  6.0  6.0  10.0  12.0  1.0  2.0"), 1,
                  {io::Line().A(" **** SR/READ - STRIP LOAD X ERROR").Free(1).Free(6.0).Free(6.0).str()});
    expectFailure(Deck().set("l4801", "  1  6.0  2.0  10.0  12.0  1.0  2.0"), 1,
                  {io::Line().A(" **** SR/READ - STRIP LOAD X ERROR").Free(1).Free(6.0).Free(2.0).str()});
}

TEST_F(ReadFailureTest, GeneralSurfaceMustRunFromLeftToRight) {
    expectFailure(Deck().set("s5001", "  0.0  10.0  10.0"), 1,
                  {io::Line().A(" **** SR/READ - GENERAL SURFACE SEQUENCE ERROR").Free(1).Free(3).Free(10.0).Free(10.0).str()});
    // The first x must lie beyond -1 000 000.
    expectFailure(Deck().set("s5001", "  -1000000.0  10.0  20.0"), 1,
                  {io::Line()
                       .A(" **** SR/READ - GENERAL SURFACE SEQUENCE ERROR")
                       .Free(1)
                       .Free(1)
                       .Free(-1000000.0)
                       .Free(-1000000.0)
                       .str()});
}

TEST_F(ReadFailureTest, InteractiveRefusalOfAMissingWaterUnitWeightStopsTheRun) {
    Deck deck;
    deck.set("p3440", "  0.0");
    expectFailure(deck, 202,
                  {" **** SR/READ : X-LINES WITH PWP WERE GIVEN",
                   io::Line().A(" **** WATER UNIT WEIGHT IS GIVEN AS : ").Free(0.0).str()},
                  "N\nN\n");
    ReadResult run = runRead(deck, "N\n", true);
    EXPECT_EQ(run.ierr, 0) << run.console;
    EXPECT_NE(run.copy.find(" SHALL RUN BE CONTINUED (Y/N)....... "), std::string::npos);
}

TEST_F(ReadFailureTest, WaterTableLevelWithPorePressureXLines) {
    expectFailure(Deck().set("p3430", "  2.5"), 201,
                  {" **** SR/READ : X-LINES WITH PWP WERE GIVEN",
                   io::Line().A(" **** WATER TABLE Z VALUE IS NON-ZERO : ").Free(2.5).str()});
}

TEST_F(ReadFailureTest, FewerMaterialsThanTheMeshUses) {
    expectFailure(Deck().set("m2500", "    1    4   12"), 5,
                  {io::Line().A(" **** SR/READ - NUMBER OF MATERIALS ERROR").Free(1).Free(2).str()});
}

// --- Hydrostatic pore pressure contradicted --------------------------------------------------

// A deck with hydrostatic pore pressure that passes every check.
Deck hydrostatic() {
    Deck deck;
    deck.set("p3300", "  1").set("p3400", "  0").set("p3420", "  0").set("p3450", "  10.0");
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  0.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0");
    deck.remove("p3501a").remove("p3501b").remove("p3701").remove("p3702").remove("s5201");
    return deck;
}

std::vector<std::string> hydrostaticLines(const std::string& last) {
    return {" **** SR/READ : HYDROSTATIC PWP WAS SPECIFIED, BUT INPUT DATA",
            io::freeRecord("CONTAINS NON-HYDROSTATIC CONTRIBUTION(S) :"), last};
}

TEST_F(ReadFailureTest, HydrostaticDeckPasses) {
    ReadResult run = runRead(hydrostatic());
    EXPECT_EQ(run.ierr, 0) << run.console;
    // A unit weight for the pressure above that of water passes (the test is one-sided).
    ReadResult heavier = runRead(hydrostatic().set("p3450", "  12.0"));
    EXPECT_EQ(heavier.ierr, 0) << heavier.console;
}

TEST_F(ReadFailureTest, HydrostaticWithPorePressureXLines) {
    Deck deck = hydrostatic();
    deck.set("p3400", "  1").set("p3430", "  0.0");
    deck.insertAfter("pXHead", {{"x1", "  1  8.0  2  1.0  2.0"}, {"x2", "  0.0  10.0"}});
    expectFailure(deck, 2, hydrostaticLines(io::freeRecord("\"NUMXPW\" IS NOT ZERO")));
}

TEST_F(ReadFailureTest, HydrostaticWithNodePorePressures) {
    Deck deck = hydrostatic();
    deck.set("p3420", "  1");
    deck.insertAfter("pNHead", {{"n", "  4  5.0"}});
    expectFailure(deck, 3, hydrostaticLines(io::freeRecord("\"NODPWP\" IS NOT ZERO")));
}

TEST_F(ReadFailureTest, HydrostaticWithALighterPressureUnitWeight) {
    expectFailure(hydrostatic().set("p3450", "  9.0"), 4,
                  hydrostaticLines(io::freeRecord("\"GAMWAT\" IS NOT EQUAL TO \"GAMPWP\"")));
}

TEST_F(ReadFailureTest, HydrostaticWithAMaterialPorePressure) {
    expectFailure(hydrostatic().set("m3002", "  2  20.0 10.0  45.0  0.0  -4.0  0.0  0.0  0.0  0.0  0.0  0.0   0.0"), 2,
                  hydrostaticLines(io::freeRecord("\"PWPMAT\" IS NOT ZERO, MATERIAL =", 2)));
}

TEST_F(ReadFailureTest, HydrostaticWithAPorePressureRatio) {
    expectFailure(hydrostatic().set("m3001", "  1  18.0  5.0  30.0  0.0  0.0  0.3  0.0  0.4  0.5  0.6  7.0  20.0"), 1,
                  hydrostaticLines(io::freeRecord("\"RU-MAT\" IS NOT ZERO, MATERIAL =", 1)));
}

TEST_F(ReadFailureTest, HydrostaticContradictionsReportTheLastOne) {
    // x-lines, a lighter pressure weight and a pressure in material 1, a ratio in material 1:
    // the ratio of the last material checked wins.
    Deck deck = hydrostatic();
    deck.set("p3450", "  9.0");
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  2.0  0.3  0.0  0.4  0.5  0.6  7.0  20.0");
    expectFailure(deck, 1, hydrostaticLines(io::freeRecord("\"RU-MAT\" IS NOT ZERO, MATERIAL =", 1)));
    Deck pressures = hydrostatic();
    pressures.set("m3001", "  1  18.0  5.0  30.0  0.0  0.0  0.3  0.0  0.4  0.5  0.6  7.0  20.0");
    pressures.set("m3002", "  2  20.0 10.0  45.0  0.0  -4.0  0.0  0.0  0.0  0.0  0.0  0.0   0.0");
    expectFailure(pressures, 2, hydrostaticLines(io::freeRecord("\"PWPMAT\" IS NOT ZERO, MATERIAL =", 2)));
}

// --- Mesh builder and interpolation ------------------------------------------------------------

TEST_F(ReadFailureTest, AMeshErrorIsReportedWithItsCode) {
    expectFailure(Deck().set("gCountZ", "  36"), 2, {msg(" **** SR/READ - SR/MESH PROBLEM  IERR=", 2)});
}

TEST_F(ReadFailureTest, AMissingBlankLineBeforeTheGeometryIsTheMeshBuildersError) {
    Deck deck;
    deck.set("blank2", "  9 9 9 9 9  9 9 9 9 9");
    deck.remove("c1500");
    expectFailure(deck, 4, {msg(" **** SR/READ - SR/MESH PROBLEM  IERR=", 4)});
}

TEST_F(ReadFailureTest, AnInterpolationErrorForTheWallIsReportedWithItsCode) {
    // 1000 element columns give 1001 node columns: one more point than the interpolation takes.
    Deck deck;
    deck.set("gCountZ", "  1").set("gX1", "  0.0   0.0  10.0  1000");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 4);
    EXPECT_TRUE(hasLine(run.console, msg(" **** SR/READ - SR/INTPOL PROBLEM  IERR=", 4))) << run.console;
    ReadResult noWall = runRead(deck.set("r2200", "  10.0  0.0  0.5"));
    EXPECT_EQ(noWall.ierr, 0) << noWall.console;
}

}  // namespace
