// READ: counts beyond the system limits. The count is stored as read for the size checks of
// the central routine, the data that fit are stored, the rest is read and dropped, and nothing
// is written outside an array (the records' accessors and the sanitizers would catch it). A
// whole run then ends with the size messages.

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "control/control.h"
#include "input/read_deck.h"

namespace {

using kalmo_test::Deck;
using kalmo_test::ReadHarness;
using kalmo_test::ReadResult;

class ReadLimitsTest : public ReadHarness {};

// `count` records made by `record(i)`, one text of several lines.
template <typename Make>
std::string records(int count, Make record) {
    std::string text;
    for (int i = 1; i <= count; ++i) text += (i > 1 ? "\n" : "") + record(i);
    return text;
}

// n values a, a+step, ..., eight to a line (input lines are read up to column 80).
std::string series(int n, double first, double step) {
    std::string text;
    for (int k = 0; k < n; ++k) {
        char value[32];
        std::snprintf(value, sizeof value, " %g", first + k * step);
        text += value;
        if (k % 8 == 7 && k + 1 < n) text += "\n";
    }
    return text;
}

std::string str(int value) { return std::to_string(value); }

// The over-long lists below sit in the last column of their table, so that a write beyond
// it would land in the next array of the record, whose first values are checked.

TEST_F(ReadLimitsTest, MoreGeneralSurfacesThanTheTableHolds) {
    Deck deck;
    deck.set("c700", "  501");
    deck.remove("s5001").remove("s5101").remove("s5201");
    deck.set("s4901", records(501, [](int i) {
                 if (i == 500) return "  500  101\n" + series(101, 0.0, 1.0) + "\n" + series(101, 7.0, 0.0) + "\n" +
                                      series(101, 8.0, 0.0);
                 return "  " + str(i) + "  2\n  0.0  " + str(i) + ".0\n  1.0  2.0\n  5.0  6.0";
             }));
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.NUMGEN, 501);
    EXPECT_EQ(IGENER.NPGEN(499), 2);
    EXPECT_DOUBLE_EQ(GENERL.XGEN(2, 499), 499.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(2, 499), 6.0);
    EXPECT_EQ(IGENER.NPGEN(500), 101);
    EXPECT_DOUBLE_EQ(GENERL.XGEN(100, 500), 99.0);
    EXPECT_DOUBLE_EQ(GENERL.ZGEN(100, 500), 7.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(100, 500), 8.0);
    // The arrays after the x, z and pore pressure tables are untouched.
    EXPECT_DOUBLE_EQ(GENERL.ZGEN(1, 1), 1.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(1, 1), 5.0);
    EXPECT_DOUBLE_EQ(GENERL.SIGGEN(1, 1), 0.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);  // read after the dropped surface
}

TEST_F(ReadLimitsTest, MorePointsOnAGeneralSurfaceThanItsColumnHolds) {
    Deck deck;
    deck.set("s4901", "  1  101");
    deck.set("s5001", series(101, 0.0, 1.0));
    deck.set("s5101", series(101, 5.0, 0.0));
    deck.set("s5201", series(101, 1.0, 1.0));
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(IGENER.NPGEN(1), 101);
    EXPECT_DOUBLE_EQ(GENERL.XGEN(100, 1), 99.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(100, 1), 100.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

TEST_F(ReadLimitsTest, MorePointsOnAGeneralSurfaceWithOneFewerPorePressure) {
    Deck deck;
    deck.set("c800", "  0");
    deck.set("s4901", "  1  101");
    deck.set("s5001", series(101, 0.0, 1.0));
    deck.set("s5101", series(101, 5.0, 0.0));
    deck.set("s5201", series(100, 1.0, 1.0));
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(GENERL.PGEN(100, 1), 100.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

TEST_F(ReadLimitsTest, MoreMaterialsThanTheTableHolds) {
    Deck deck;
    deck.set("m2500", "   51    4   12");
    deck.set("m3001", records(51, [](int i) { return "  " + str(i) + "  18.0 5.0 30.0 0 0 0 0 0 0 0 0 19.0"; }));
    deck.remove("m3002");
    deck.set("m3051", records(51, [](int i) { return "  " + str(i) + "  19.0 1.0 0.5 0.5 " + str(i) + ".0 0.0"; }));
    deck.remove("m3052");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ISOLPR.NMAT, 51);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT18, 50), 19.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT14, 50), 50.0);
}

TEST_F(ReadLimitsTest, MaterialsBeyondTheTableAreStillCheckedForTheirNumber) {
    Deck deck;
    deck.set("m2500", "   52    4   12");
    deck.set("m3001", records(52, [](int i) {
                 return "  " + str(i == 52 ? 53 : i) + "  18.0 5.0 30.0 0 0 0 0 0 0 0 0 19.0";
             }));
    deck.remove("m3002");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 3052);
}

TEST_F(ReadLimitsTest, MoreUndrainedStrengthXLinesAndPointsThanTheTablesHold) {
    Deck deck;
    deck.set("m2600", "  27");
    deck.insertAfter("m3101b", {{"more", records(26, [](int i) {
                                      const int line = i + 1;
                                      if (line == 25 || line == 27)
                                          return "  " + str(line) + "  " + str(i) + ".5  26" + series(26, 0.0, 1.0) +
                                                 "\n" + series(26, 10.0, 2.0);
                                      return "  " + str(line) + "  " + str(i) + ".5  2  0.0  9.0\n  10.0  30.0";
                                  })}});
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ISOLPR.NSUX, 27);
    EXPECT_EQ(ISOLPR.NSUPT(24), 2);
    EXPECT_DOUBLE_EQ(SOLPRP.XSU(24), 23.5);
    EXPECT_EQ(ISOLPR.NSUPT(25), 26);
    EXPECT_DOUBLE_EQ(SOLPRP.ZSU(25, 25), 24.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUPRF(25, 25), 58.0);
    // Untouched: the first strength of line 1 after the levels, the first node strength after
    // the strengths.
    EXPECT_DOUBLE_EQ(SOLPRP.SUPRF(1, 1), 10.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(1), 0.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(7), 14.0);  // the node values after the lines were read
}

TEST_F(ReadLimitsTest, MorePorePressureXLinesAndPointsThanTheTablesHold) {
    Deck deck;
    deck.set("p3400", "  126");
    deck.insertAfter("p3501b", {{"more", records(125, [](int i) {
                                      const int line = i + 1;
                                      if (line == 125)
                                          return "  125  " + str(i) + ".5  126" + series(126, 0.0, 0.1) + "\n" +
                                                 series(126, 0.0, 1.0);
                                      return "  " + str(line) + "  " + str(i) + ".5  2  1.0  9.0\n  0.0  80.0";
                                  })}});
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(IWATER.NUMXPW, 126);
    EXPECT_EQ(IWATER.NPWPT(125), 126);
    EXPECT_NEAR(WATER1.ZPW(125, 125), 12.4, 1e-12);
    EXPECT_DOUBLE_EQ(WATER1.PWPRF(125, 125), 124.0);
    EXPECT_EQ(IWATER.NPWPT(124), 2);
    // Free water levels of the stored lines: zero pressure at the first point.
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(124), 1.0);
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(125), 0.0);
    // Untouched: the first pressure of line 1, the first node pressure.
    EXPECT_DOUBLE_EQ(WATER1.PWPRF(1, 1), -10.0);
    EXPECT_DOUBLE_EQ(WATER1.PWNOD(1), 0.0);
    EXPECT_DOUBLE_EQ(WATER1.PWNOD(9), 12.0);
}

TEST_F(ReadLimitsTest, MorePointForcesThanTheTableHolds) {
    Deck deck;
    deck.set("l4100", "  151");
    deck.set("l4701", records(51, [](int i) { return "  " + str(i) + "  4.0  0.5  1.0  " + str(i) + ".0"; }));
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ILOA.NPF, 51);
    EXPECT_EQ(ISNAIL.NNAILS, 1);
    EXPECT_DOUBLE_EQ(LOAD.FPF(2, 50), 50.0);
}

TEST_F(ReadLimitsTest, MoreStripLoadsThanTheTableHolds) {
    Deck deck;
    deck.set("l4200", "  21");
    deck.set("l4801", records(21, [](int i) { return "  " + str(i) + "  2.0  6.0  " + str(i) + ".0  1.0  0.0  0.0"; }));
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ILOA.NSTRIP, 21);
    EXPECT_DOUBLE_EQ(LOAD.QSTRV(1, 20), 20.0);
}

TEST_F(ReadLimitsTest, StripLoadsBeyondTheTableAreStillChecked) {
    Deck deck;
    deck.set("l4200", "  21");
    deck.set("l4801", records(21, [](int i) {
                 return "  " + str(i) + "  2.0  " + (i == 21 ? "1.0" : "6.0") + "  1.0  1.0  0.0  0.0";
             }));
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 1);
}

TEST_F(ReadLimitsTest, MoreSoilNailsThanTheTableHolds) {
    Deck deck;
    deck.set("l4100", "  7601");
    deck.set("n1", records(76, [](int i) {
                 return "  " + str(i) + "  10.0 1.0  4.0 3.0  1.5  0.1  80 90 0.5 " + str(i) + " 10 100  0 1 2";
             }));
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ISNAIL.NNAILS, 76);
    EXPECT_EQ(ILOA.NPF, 1);
    EXPECT_DOUBLE_EQ(SNAILS.SN(75, 10), 75.0);
}

TEST_F(ReadLimitsTest, SlicesAreLimitedOnlyAfterReading) {
    ReadResult run = runRead(Deck().set("c800", "  150"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.NSLREQ, 150);
}

// --- A whole run reports every size problem ----------------------------------------------------

TEST(ReadLimitsRun, TheCentralRoutineReportsEveryCountBeyondItsLimit) {
    Deck deck;
    deck.set("c800", "  120");
    deck.set("l4100", "  152");
    deck.set("l4701", records(52, [](int i) { return "  " + str(i) + "  4.0  0.5  1.0  1.0"; }));
    deck.set("l4200", "  21");
    deck.set("l4801", records(21, [](int) { return std::string("  1  2.0  6.0  1.0  1.0  0.0  0.0"); }));
    deck.set("n1", records(1, [](int) { return std::string("  1  10.0 1.0  4.0 3.0  1.5  0.1  80 90 0.5 200 10 100 0 1 2"); }));
    kalmo_test::TempDir dir;
    dir.write("KALMO.INP", kalmo_test::joinLines(deck.lines()));
    dir.write("SVAR.TMP", "N\nN\n8\n");
    const std::string command = "cd '" + dir.path() + "' && '" KALMO_EXE "' > out.txt 2>&1";
    // The size problem refuses the input: the run ends with the exit status that says so.
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), kExitInputRefused);
    const std::string dialogue = dir.read("SVAR.EKO");
    for (const char* size : {" SIZE PROBLEM : NUMBER OF POINT FORCES", " SIZE PROBLEM : NUMBER OF STRIP LOADS",
                             " SIZE PROBLEM : NUMBER OF SLICES"}) {
        EXPECT_NE(dialogue.find(size), std::string::npos) << size << "\n" << dialogue;
    }
    EXPECT_EQ(dialogue.find("SR/READ"), std::string::npos) << dialogue;
    EXPECT_EQ(dialogue.find("PROBLEM TYPE"), std::string::npos) << dialogue;
}

}  // namespace
