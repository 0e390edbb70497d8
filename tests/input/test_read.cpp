// READ: a complete input file read into the problem records, in internal units; the work
// file, titles, comments and END line; the analysis code; the optional records; the questions
// and their batch answers.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "input/read_deck.h"

namespace {

using kalmo_test::Deck;
using kalmo_test::hasLine;
using kalmo_test::ReadHarness;
using kalmo_test::ReadResult;
using kalmo_test::splitLines;

constexpr double kDeg = 3.14159265358979323846 / 180.0;

class ReadTest : public ReadHarness {};

TEST_F(ReadTest, ReferenceDeckIsReadIntoTheRecords) {
    ReadResult run = runRead(Deck());
    ASSERT_EQ(run.ierr, 0) << run.console;

    EXPECT_EQ(TEXT.TITLE(1).view().substr(0, 22), "KALMO READER TEST DECK");
    EXPECT_EQ(TEXT.TITLE(2).view().substr(0, 34), "SECOND TITLE LINE OF THE TEST DECK");
    EXPECT_EQ(POSTGRAF.IECHO, 0);

    EXPECT_DOUBLE_EQ(MASTER.FCTFRC, 1.0);
    EXPECT_DOUBLE_EQ(MASTER.FCTLEN, 1.0);
    EXPECT_DOUBLE_EQ(MASTER.FCTSUC, 1.0);
    EXPECT_DOUBLE_EQ(MASTER.FCTTAN, 1.0);
    EXPECT_EQ(MASTER.IDTYP, 1);
    EXPECT_EQ(MASTER.IDEFTO, 1);
    EXPECT_EQ(MASTER.METHOD, 0);
    EXPECT_EQ(MASTER.NUMGEN, 1);
    EXPECT_EQ(MASTER.NUMSLC, 10);
    EXPECT_EQ(MASTER.NSLREQ, 10);
    EXPECT_DOUBLE_EQ(MASTER.FCTSS, 0.25);
    EXPECT_DOUBLE_EQ(MASTER.H3(1), 0.3);
    EXPECT_DOUBLE_EQ(MASTER.H3(2), 0.4);
    EXPECT_DOUBLE_EQ(MASTER.R1, 0.1);
    EXPECT_DOUBLE_EQ(MASTER.R2, 0.2);
    EXPECT_DOUBLE_EQ(MASTER.R3, 0.3);
    EXPECT_EQ(MASTER.NEGPOK, 1);
    EXPECT_EQ(MASTER.NEGEOK, 2);
    EXPECT_EQ(MASTER.JPRINT, 3);
    EXPECT_EQ(MASTER.JSTRES, 2);  // -2 as read: made non-negative
    EXPECT_EQ(MASTER.JPLOT, 1);
    EXPECT_DOUBLE_EQ(MASTER.E2TOL, 0.01);
    EXPECT_DOUBLE_EQ(MASTER.CRTSCR, 0.15);
    EXPECT_EQ(MASTER.MISC1, 1);
    EXPECT_EQ(MASTER.MISC5, 5);
    EXPECT_DOUBLE_EQ(MASTER.VALMSC1, 1.5);
    EXPECT_DOUBLE_EQ(MASTER.VALMSC5, 5.5);

    // The wall at x 10, 4 high; the ground between (0, 0) and (20, 2) lies at 1 there.
    EXPECT_DOUBLE_EQ(GEOMSH.XWALL, 10.0);
    EXPECT_DOUBLE_EQ(GEOMSH.DWALL, 4.0);
    EXPECT_DOUBLE_EQ(GEOMSH.RWALL, 0.5);
    EXPECT_DOUBLE_EQ(GEOMSH.ZWALL, 5.0);
    EXPECT_EQ(IGEOMS.NELEM, 8);
    EXPECT_EQ(IGEOMS.NNODE, 15);

    EXPECT_EQ(ISOLPR.NMAT, 2);
    EXPECT_EQ(POSTGRAF.NOPT1, 4);
    EXPECT_EQ(POSTGRAF.NOPT2, 12);
    EXPECT_EQ(ISOLPR.NSUX, 1);
    EXPECT_EQ(ISOLPR.NSUNOD, 2);
    EXPECT_DOUBLE_EQ(SOLPRP.STRDAT(1), 2.0);
    EXPECT_DOUBLE_EQ(SOLPRP.STRDAT(2), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.STRDAT(3), 0.0);

    EXPECT_DOUBLE_EQ(SOLPRP.MAT(GAMTOT, 1), 18.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(COHESN, 1), 5.0);
    EXPECT_NEAR(SOLPRP.MAT(PHIANG, 1), std::tan(30.0 * kDeg), 1e-15);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(PWPMAT, 1), 3.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(KNOT, 1), 0.4);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(BSIG2, 1), 0.5);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(DSUB, 1), 0.6);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT17, 1), 7.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT18, 1), 20.0);
    EXPECT_NEAR(SOLPRP.MAT(PHIANG, 2), 1.0, 1e-15);
    // A unit weight below water under 0.01 takes the unit weight as read.
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT18, 2), 20.0);
    // Second table: isotropic material 1, anisotropic material 2.
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(SUASU0, 1), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(ISOTRP, 1), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT16, 1), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(SUASU0, 2), 1.2);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(SUDSU0, 2), 0.6);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(SUPSU0, 2), 0.4);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(ISOTRP, 2), 0.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT14, 2), 30.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(GAMTOT, 2), 20.0);  // effective stress: the first table's weight
    EXPECT_EQ(MASTER.IUPDAT, 0);

    EXPECT_EQ(ISOLPR.NSUPT(1), 3);
    EXPECT_DOUBLE_EQ(SOLPRP.XSU(1), 5.0);
    EXPECT_DOUBLE_EQ(SOLPRP.ZSU(2, 1), 4.0);
    EXPECT_DOUBLE_EQ(SOLPRP.ZSU(3, 1), 10.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUPRF(1, 1), 10.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUPRF(3, 1), 40.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(3), 12.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(7), 14.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(4), 0.0);

    EXPECT_EQ(IWATER.IDPWP, 2);
    EXPECT_EQ(IWATER.NUMXPW, 1);
    EXPECT_EQ(IWATER.NODPWP, 2);
    EXPECT_DOUBLE_EQ(WATER1.GAMWAT, 10.0);
    EXPECT_DOUBLE_EQ(WATER1.GAMPWP, 9.0);
    EXPECT_DOUBLE_EQ(WATER1.PWPMIN, -5.0);
    EXPECT_EQ(IWATER.NPWPT(1), 3);
    EXPECT_DOUBLE_EQ(WATER1.XPW(1), 8.0);
    EXPECT_DOUBLE_EQ(WATER1.ZPW(3, 1), 10.0);
    EXPECT_DOUBLE_EQ(WATER1.PWPRF(1, 1), -10.0);
    EXPECT_DOUBLE_EQ(WATER1.PWPRF(3, 1), 80.0);
    // Zero pressure at z 2 with a positive pressure below: the free water stands at 2.
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(1), 2.0);
    // Node pore pressures carry the multiplier 2 of record 3425.
    EXPECT_DOUBLE_EQ(WATER1.PWNOD(4), 10.0);
    EXPECT_DOUBLE_EQ(WATER1.PWNOD(9), 12.0);

    EXPECT_EQ(ILOA.NPF, 1);
    EXPECT_EQ(ISNAIL.NNAILS, 1);
    EXPECT_EQ(ILOA.NSTRIP, 1);
    EXPECT_DOUBLE_EQ(LOAD.LDAT(1), 10.0);
    EXPECT_DOUBLE_EQ(LOAD.QRANGE(1), 2.0);
    EXPECT_DOUBLE_EQ(LOAD.QRANGE(2), 8.0);
    EXPECT_DOUBLE_EQ(LOAD.LDAT(2), 1.0);
    EXPECT_DOUBLE_EQ(LOAD.LDAT(3), 0.1);
    // Record 4500 is stored in reverse order.
    EXPECT_DOUBLE_EQ(LOAD.LDAT(5), 0.8);
    EXPECT_DOUBLE_EQ(LOAD.LDAT(4), 0.6);
    EXPECT_DOUBLE_EQ(LOAD.XZPF(1, 1), 4.0);
    EXPECT_DOUBLE_EQ(LOAD.XZPF(2, 1), 0.5);
    EXPECT_DOUBLE_EQ(LOAD.FPF(1, 1), 5.0);
    EXPECT_DOUBLE_EQ(LOAD.FPF(2, 1), 20.0);
    EXPECT_DOUBLE_EQ(LOAD.XSTRIP(1, 1), 2.0);
    EXPECT_DOUBLE_EQ(LOAD.XSTRIP(2, 1), 6.0);
    EXPECT_DOUBLE_EQ(LOAD.QSTRV(1, 1), 10.0);
    EXPECT_DOUBLE_EQ(LOAD.QSTRV(2, 1), 12.0);
    EXPECT_DOUBLE_EQ(LOAD.QSTRH(1, 1), 1.0);
    EXPECT_DOUBLE_EQ(LOAD.QSTRH(2, 1), 2.0);

    const double nail[15] = {10, 1, 4, 3, 1.5, 0.1, 80, 90, 0.5, 200, 10, 100, 0, 1, 2};
    for (int k = 1; k <= 15; ++k) EXPECT_DOUBLE_EQ(SNAILS.SN(1, k), nail[k - 1]) << "nail value " << k;

    EXPECT_EQ(IGENER.NPGEN(1), 3);
    EXPECT_DOUBLE_EQ(GENERL.XGEN(2, 1), 10.0);
    EXPECT_DOUBLE_EQ(GENERL.ZGEN(1, 1), -1.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(3, 1), 30.0);

    EXPECT_EQ(LINECONTROL.NLCP, 2);
    EXPECT_DOUBLE_EQ(LINECONTROL.XLC(2), 6.0);
    EXPECT_DOUBLE_EQ(LINECONTROL.ZLC(2), 7.0);

    // Nothing but the echo question was shown.
    EXPECT_EQ(run.console, " SHALL ECHO PRINT OF INPUT DATA BE MADE (Y/N) .... ");
}

TEST_F(ReadTest, UnitFactorsConvertLengthsForcesStressesAndUnitWeights) {
    // Force factor 2, length factor 0.5: stresses x8, unit weights x16.
    ReadResult run = runRead(Deck().set("c100", "  2.0  0.5"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(GEOMSH.XWALL, 5.0);
    EXPECT_DOUBLE_EQ(GEOMSH.DWALL, 2.0);
    EXPECT_DOUBLE_EQ(GEOMSH.RWALL, 0.5);
    EXPECT_DOUBLE_EQ(GEOMSH.ZWALL, 2.5);
    EXPECT_DOUBLE_EQ(SOLPRP.STRDAT(1), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.STRDAT(2), 0.5);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(GAMTOT, 1), 18.0 * 16);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(COHESN, 1), 5.0 * 8);
    EXPECT_NEAR(SOLPRP.MAT(PHIANG, 1), std::tan(30.0 * kDeg), 1e-15);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(PWPMAT, 1), 3.0 * 8);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT17, 1), 7.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT18, 1), 20.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT18, 2), 20.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT14, 2), 30.0 * 8);
    EXPECT_DOUBLE_EQ(SOLPRP.XSU(1), 2.5);
    EXPECT_DOUBLE_EQ(SOLPRP.ZSU(2, 1), 2.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUPRF(2, 1), 20.0 * 8);
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(3), 12.0 * 8);
    EXPECT_DOUBLE_EQ(WATER1.GAMWAT, 10.0 * 16);
    EXPECT_DOUBLE_EQ(WATER1.GAMPWP, 9.0 * 16);
    EXPECT_DOUBLE_EQ(WATER1.PWPMIN, -5.0 * 8);
    EXPECT_DOUBLE_EQ(WATER1.XPW(1), 4.0);
    EXPECT_DOUBLE_EQ(WATER1.ZPW(3, 1), 5.0);
    EXPECT_DOUBLE_EQ(WATER1.PWPRF(3, 1), 80.0 * 8);
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(1), 1.0);
    EXPECT_DOUBLE_EQ(WATER1.PWNOD(4), 5.0 * 8 * 2);
    EXPECT_DOUBLE_EQ(LOAD.LDAT(1), 10.0 * 8);
    EXPECT_DOUBLE_EQ(LOAD.QRANGE(2), 4.0);
    EXPECT_DOUBLE_EQ(LOAD.LDAT(2), 1.0);  // load factors and magnitudes as read
    EXPECT_DOUBLE_EQ(LOAD.LDAT(5), 0.8);
    EXPECT_DOUBLE_EQ(LOAD.XZPF(1, 1), 2.0);
    EXPECT_DOUBLE_EQ(LOAD.FPF(2, 1), 40.0);
    EXPECT_DOUBLE_EQ(LOAD.XSTRIP(2, 1), 3.0);
    EXPECT_DOUBLE_EQ(LOAD.QSTRV(2, 1), 12.0 * 8);
    EXPECT_DOUBLE_EQ(LOAD.QSTRH(2, 1), 2.0 * 8);
    const double nail[15] = {5, 0.5, 2, 1.5, 0.75, 0.05, 640, 720, 0.25, 400, 20, 200, 0, 1, 2};
    for (int k = 1; k <= 15; ++k) EXPECT_DOUBLE_EQ(SNAILS.SN(1, k), nail[k - 1]) << "nail value " << k;
    EXPECT_DOUBLE_EQ(GENERL.XGEN(3, 1), 10.0);
    EXPECT_DOUBLE_EQ(GENERL.ZGEN(2, 1), 2.5);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(2, 1), 160.0);
    // Line control points are stored as written.
    EXPECT_DOUBLE_EQ(LINECONTROL.XLC(1), 5.0);
    EXPECT_DOUBLE_EQ(LINECONTROL.ZLC(2), 7.0);
}

TEST_F(ReadTest, MillimetreInputScalesStressesByAMillionAndUnitWeightsByABillion) {
    Deck deck;
    deck.set("c100", "  1.0  0.001");
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  3.0  0.0  0.0  0.4  0.5  0.6  7.0  18.0");
    deck.set("n1", "  1  10000 1000  4000 3000  1500  25  80 90  500  200 10 100  0 1 2");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_NEAR(SOLPRP.MAT(COHESN, 1), 5.0e6, 1e-6);
    EXPECT_NEAR(SOLPRP.MAT(GAMTOT, 1), 18.0e9, 1e-3);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT18, 1), 18.0);
    EXPECT_NEAR(SNAILS.SN(1, 6), 0.025, 1e-15);
    EXPECT_DOUBLE_EQ(LINECONTROL.XLC(1), 5.0);
    EXPECT_DOUBLE_EQ(LINECONTROL.ZLC(1), 1.0);
}

TEST_F(ReadTest, UnitFactorsBelowTheToleranceMeanOne) {
    ReadResult run = runRead(Deck().set("c100", "  0.0  -3.0"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(MASTER.FCTFRC, 1.0);
    EXPECT_DOUBLE_EQ(MASTER.FCTLEN, 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(GAMTOT, 1), 18.0);
}

TEST_F(ReadTest, TotalStressTakesTheSecondTablesUnitWeight) {
    ReadResult run = runRead(Deck().set("c600", "  2").set("c100", "  2.0  0.5"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.IDEFTO, 2);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(GAMTOT, 1), 19.0 * 16);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(GAMTOT, 2), 21.0 * 16);
    // The unit weight below water was taken from the first table's value as read.
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(MAT18, 2), 20.0);
}

TEST_F(ReadTest, AnisotropyRatiosBelowTheToleranceBecomeOne) {
    ReadResult run = runRead(Deck().set("m3052", "  2  21.0  0.0  -1.0  1.0  30.0  0.0"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(SUASU0, 2), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(SUDSU0, 2), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.MAT(ISOTRP, 2), 1.0);
}

TEST_F(ReadTest, CrackWaterHeightIsLimitedToTheCrackDepth) {
    ReadResult run = runRead(Deck().set("m2900", "  3.5"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(SOLPRP.STRDAT(2), 2.0);
}

TEST_F(ReadTest, NoWallHeightLeavesTheWallFootUnset) {
    ReadResult run = runRead(Deck().set("r2200", "  10.0  0.0  0.5"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(GEOMSH.ZWALL, 0.0);
}

// --- Work file, titles, comments, END ---------------------------------------------------------

TEST_F(ReadTest, ACommentOnLineThreeIsDroppedButTheSameLineAsTitleIsKept) {
    Deck deck;
    deck.set("title2", "C THIS SECOND TITLE BEGINS WITH C");
    deck.insertAfter("title2", {{"comment3", "C THIS THIRD LINE IS A COMMENT"}});
    deck.insertAfter("c500", {{"star", "* A STAR COMMENT"}, {"cee", "CC ANOTHER"}});
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(TEXT.TITLE(2).view().substr(0, 33), "C THIS SECOND TITLE BEGINS WITH C");
    std::vector<std::string> work = splitLines(run.work);
    ASSERT_GE(work.size(), 3u);
    EXPECT_EQ(work[1], "C THIS SECOND TITLE BEGINS WITH C");
    EXPECT_EQ(work[2], "");
    EXPECT_EQ(run.work.find("COMMENT"), std::string::npos);
    EXPECT_EQ(run.work.find("ANOTHER"), std::string::npos);
    EXPECT_EQ(work.size(), Deck().lines().size());
}

TEST_F(ReadTest, ALowerCaseCommentLetterIsNoComment) {
    ReadResult run = runRead(Deck().insertAfter("c500", {{"lower", "c lower case is data"}}));
    EXPECT_EQ(run.ierr, 600);
    EXPECT_TRUE(hasLine(run.console, kalmo_test::msg(" **** SR/READ - INPUT FILE FORMAT ERROR - ID=", 600)));
}

TEST_F(ReadTest, AnEndLineWithMoreTextStopsTheCopy) {
    std::vector<std::string> lines = Deck().lines();
    lines.push_back("END OF THE DATA");
    lines.push_back("this line is never read 1 2 3");
    ReadResult run = runRead(lines);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(run.work.find("END"), std::string::npos);
    EXPECT_EQ(run.work.find("never read"), std::string::npos);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

TEST_F(ReadTest, AnEndLineStopsBeforeOptionalData) {
    // END before the line control count: the optional data are simply absent.
    Deck deck;
    deck.insertAfter("s5201", {{"end", "END"}});
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(LINECONTROL.NLCP, 0);
}

TEST_F(ReadTest, LinesAreCutAtColumnEighty) {
    Deck deck;
    deck.set("c800", "  10" + std::string(76, ' ') + "99 beyond column 80");
    deck.set("title1", std::string(80, 'T') + "IGNORED");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.NUMSLC, 10);
    EXPECT_EQ(TEXT.TITLE(1).view(), std::string(80, 'T'));
}

TEST_F(ReadTest, RecordsContinueOnTheNextLineAndIgnoreTextAfterTheirValues) {
    Deck deck;
    deck.set("c1300", "  0.1  0.2");
    deck.insertAfter("c1300", {{"c1300b", "  0.3  this note is ignored"}});
    deck.set("c1200", "  0.3  0.4   H3(1) H3(2)");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(MASTER.R3, 0.3);
    EXPECT_DOUBLE_EQ(MASTER.H3(2), 0.4);
    EXPECT_EQ(MASTER.NEGPOK, 1);
}

// --- Line count --------------------------------------------------------------------------------

std::vector<std::string> padded(int count) {
    std::vector<std::string> lines = Deck().lines();
    lines.resize(static_cast<size_t>(count), "* padding");
    return lines;
}

TEST_F(ReadTest, FortyEightLinesAndEndAreRefusedAsTooShort) {
    std::vector<std::string> lines = padded(48);
    lines.push_back("END");
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.ierr, 1);
    EXPECT_TRUE(hasLine(run.console, kalmo_test::msg(" **** SR/READ - LESS THAN 50 LINES IN INPUT FILE", 49)))
        << run.console;
}

TEST_F(ReadTest, FortyNineLinesAndEndPassTheLineCount) {
    std::vector<std::string> lines = padded(49);
    lines.push_back("END");
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.console.find("LESS THAN 50 LINES"), std::string::npos) << run.console;
}

TEST_F(ReadTest, FortyNineLinesWithoutEndCountTheFailedReadAsFifty) {
    ReadResult run = runRead(padded(49));
    EXPECT_EQ(run.console.find("LESS THAN 50 LINES"), std::string::npos) << run.console;
    ReadResult shorter = runRead(padded(48));
    EXPECT_EQ(shorter.ierr, 1);
    EXPECT_TRUE(hasLine(shorter.console, kalmo_test::msg(" **** SR/READ - LESS THAN 50 LINES IN INPUT FILE", 49)));
}

TEST_F(ReadTest, CommentLinesCountTowardsTheFiftyLines) {
    // 47 lines of data and comments, then END: 48 counted.
    std::vector<std::string> lines = {"TITLE 1", "TITLE 2"};
    for (int k = 0; k < 45; ++k) lines.push_back("* comment");
    lines.push_back("END");
    ReadResult run = runRead(lines);
    EXPECT_EQ(run.ierr, 1);
    EXPECT_TRUE(hasLine(run.console, kalmo_test::msg(" **** SR/READ - LESS THAN 50 LINES IN INPUT FILE", 48)));
}

// --- Record 600 --------------------------------------------------------------------------------

struct AnalysisCode {
    int code, idefto, method;
};

class AnalysisCodeTest : public ReadHarness, public ::testing::WithParamInterface<AnalysisCode> {};

TEST_P(AnalysisCodeTest, DecodesIntoAnalysisAndMethod) {
    const AnalysisCode c = GetParam();
    ReadResult run = runRead(Deck().set("c600", "  " + std::to_string(c.code)));
    // IDEFTO 3 with the B-factor flag off reads like the others.
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.IDEFTO, c.idefto);
    EXPECT_EQ(MASTER.METHOD, c.method);
}

INSTANTIATE_TEST_SUITE_P(AcceptedValues, AnalysisCodeTest,
                         ::testing::Values(AnalysisCode{-3, 3, -1}, AnalysisCode{-2, 2, -1}, AnalysisCode{-1, 1, -1},
                                           AnalysisCode{1, 1, 0}, AnalysisCode{2, 2, 0}, AnalysisCode{3, 3, 0},
                                           AnalysisCode{11, 1, 1}, AnalysisCode{12, 2, 1}, AnalysisCode{13, 3, 1},
                                           AnalysisCode{21, 1, 2}, AnalysisCode{22, 2, 2}, AnalysisCode{23, 3, 2},
                                           AnalysisCode{31, 1, 3}, AnalysisCode{32, 2, 3}, AnalysisCode{33, 3, 3}));

class RefusedAnalysisCodeTest : public ReadHarness, public ::testing::WithParamInterface<int> {};

TEST_P(RefusedAnalysisCodeTest, IsRefusedWithItsValue) {
    const int code = GetParam();
    ReadResult run = runRead(Deck().set("c600", "  " + std::to_string(code)));
    EXPECT_EQ(run.ierr, 1);
    EXPECT_TRUE(hasLine(run.console, kalmo_test::msg(" **** SR/READ : NON-ACCEPTED IDEFTO INPUT VALUE=", code)))
        << run.console;
}

INSTANTIATE_TEST_SUITE_P(OtherValues, RefusedAnalysisCodeTest, ::testing::Values(0, 4, -4, 10, 14, 20, 24, 34, 41, 99));

// --- Optional records and defaults -----------------------------------------------------------

TEST_F(ReadTest, MissingRecord1500LeavesTheTenValuesZeroAndReadsTheGeometry) {
    ReadResult run = runRead(Deck().remove("c1500"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.MISC1, 0);
    EXPECT_EQ(MASTER.MISC5, 0);
    EXPECT_DOUBLE_EQ(MASTER.VALMSC1, 0.0);
    EXPECT_DOUBLE_EQ(MASTER.VALMSC5, 0.0);
    EXPECT_EQ(IGEOMS.NELEM, 8);
    EXPECT_DOUBLE_EQ(GEOMSH.ZWALL, 5.0);
}

TEST_F(ReadTest, MaterialCountLineWithBlankOptionalColumnsGivesTheDefaultGrid) {
    // Blank columns decode as 0; a grid of 0 columns or rows would weigh no soil, so 0 means
    // the default grid of 3 columns and 15 rows.
    ReadResult run = runRead(Deck().set("m2500", "    2"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ISOLPR.NMAT, 2);
    EXPECT_EQ(POSTGRAF.NOPT1, 3);
    EXPECT_EQ(POSTGRAF.NOPT2, 15);
}

TEST_F(ReadTest, MaterialCountLineWithOneGridSizeLeftOutOrNegativeTakesItsDefault) {
    ReadResult run = runRead(Deck().set("m2500", "    2    5"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(POSTGRAF.NOPT1, 5);
    EXPECT_EQ(POSTGRAF.NOPT2, 15);
    run = runRead(Deck().set("m2500", "    2   -1    0"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(POSTGRAF.NOPT1, 3);
    EXPECT_EQ(POSTGRAF.NOPT2, 15);
}

TEST_F(ReadTest, MaterialCountLineWithAHugeGridIsHeldToFiftyColumnsAndRows) {
    // Every cell of a slice is located; 99999 x 99999 cells would make a surface take hours.
    ReadResult run = runRead(Deck().set("m2500", "    29999999999"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(POSTGRAF.NOPT1, 50);
    EXPECT_EQ(POSTGRAF.NOPT2, 50);
    run = runRead(Deck().set("m2500", "    2   50   51"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(POSTGRAF.NOPT1, 50);
    EXPECT_EQ(POSTGRAF.NOPT2, 50);
}

TEST_F(ReadTest, MaterialCountLineWithUnreadableOptionalColumnsKeepsTheDefaults) {
    ReadResult run = runRead(Deck().set("m2500", "    2    x   12   these columns are free"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ISOLPR.NMAT, 2);
    EXPECT_EQ(POSTGRAF.NOPT1, 3);
    EXPECT_EQ(POSTGRAF.NOPT2, 15);
}

TEST_F(ReadTest, MaterialCountIsReadFromFixedColumns) {
    // "2" in column 5 and "4" in column 10; a free-format reader would see other numbers.
    ReadResult run = runRead(Deck().set("m2500", "    2    4   125"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(POSTGRAF.NOPT1, 4);
    EXPECT_EQ(POSTGRAF.NOPT2, 12);
}

TEST_F(ReadTest, NoLineControlDataAfterTheLastGeneralSurfaceIsAccepted) {
    ReadResult run = runRead(Deck().cutFrom("lcCount"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(LINECONTROL.NLCP, 0);
}

TEST_F(ReadTest, ANonPositiveLineControlCountEndsTheReading) {
    ReadResult run = runRead(Deck().set("lcCount", "  0"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(LINECONTROL.NLCP, 0);
    ReadResult negative = runRead(Deck().set("lcCount", "  -2"));
    ASSERT_EQ(negative.ierr, 0) << negative.console;
    EXPECT_EQ(LINECONTROL.NLCP, 0);
}

TEST_F(ReadTest, TextInsteadOfTheLineControlCountEndsTheReading) {
    ReadResult run = runRead(Deck().set("lcCount", "NO LINE CONTROL"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(LINECONTROL.NLCP, 0);
}

TEST_F(ReadTest, WithoutGeneralSurfacesTheRestOfTheFileIsOptional) {
    Deck deck;
    deck.set("c700", "  0");
    deck.cutFrom("sHead");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.NUMGEN, 0);
    EXPECT_EQ(LINECONTROL.NLCP, 0);
}

TEST_F(ReadTest, WithoutGeneralSurfacesLineControlFollowsTheHeading) {
    Deck deck;
    deck.set("c700", "  0");
    deck.remove("s4901").remove("s5001").remove("s5101").remove("s5201");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

// --- Pore pressures along general surfaces ----------------------------------------------------

TEST_F(ReadTest, WithZeroSlicesOneFewerPorePressureIsReadAndTheLastPointRepeatsIt) {
    Deck deck;
    deck.set("c800", "  0");
    deck.set("s5201", " 10.0  20.0");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(GENERL.PGEN(1, 1), 10.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(2, 1), 20.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(3, 1), 20.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

TEST_F(ReadTest, HydrostaticPorePressuresReadNoValuesAlongGeneralSurfaces) {
    Deck deck;
    deck.set("p3300", "  1").set("p3400", "  0").set("p3420", "  0").set("p3450", "  10.0");
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  0.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0");
    deck.set("p3430", "  3.0");
    deck.remove("p3501a").remove("p3501b").remove("p3701").remove("p3702").remove("s5201");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(WATER1.ZWATER, 3.0);
    EXPECT_DOUBLE_EQ(GENERL.PGEN(1, 1), 0.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

// A B-factor in material 1 (general pore pressures, stability problem).
Deck withBFactor() {
    Deck deck;
    deck.set("m3001", "  1  18.0  5.0  30.0  0.0  3.0  0.0  0.7  0.4  0.5  0.6  7.0  20.0");
    return deck;
}

TEST_F(ReadTest, BFactorSetsTheFlagAndInitialStressesAreReadOnYes) {
    Deck deck = withBFactor();
    deck.insertAfter("s5201", {{"s5301", " 100.0 110.0 120.0"}, {"s5401", " 5.0 6.0 7.0"}});
    ReadResult run = runRead(deck, "N\nY\n");
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.IUPDAT, 1);
    EXPECT_TRUE(run.console.find(" SHALL INITIAL STRESSES ALONG GENERAL SURFACE(S) BE READ (Y/N) ..... ") !=
                std::string::npos);
    EXPECT_DOUBLE_EQ(GENERL.SIGGEN(3, 1), 120.0);
    EXPECT_DOUBLE_EQ(GENERL.TAUGEN(2, 1), 6.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

TEST_F(ReadTest, InitialStressesAreSkippedOnNo) {
    ReadResult run = runRead(withBFactor(), "N\nN\n");
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(GENERL.SIGGEN(1, 1), 0.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
}

TEST_F(ReadTest, InitialStressesAreSkippedInBatchModeWithoutReadingAnAnswer) {
    // The answer file holds only the echo answer: the stress question must not read.
    ReadResult run = runRead(withBFactor(), "N\n", true);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(GENERL.SIGGEN(1, 1), 0.0);
    EXPECT_EQ(LINECONTROL.NLCP, 2);
    EXPECT_NE(run.copy.find(" SHALL INITIAL STRESSES ALONG GENERAL SURFACE(S) BE READ (Y/N) ..... "),
              std::string::npos);
}

// --- Questions ---------------------------------------------------------------------------------

TEST_F(ReadTest, EchoPrintCopiesTheInputIntoTheResultFile) {
    ReadResult run = runRead(Deck(), "Y\n");
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(POSTGRAF.IECHO, 1);
    EXPECT_NE(run.result.find("ECHO PRINT OF DATA ON FORTRAN UNIT NUMBER"), std::string::npos);
    EXPECT_NE(run.result.find("KALMO READER TEST DECK"), std::string::npos);
}

TEST_F(ReadTest, NoEchoLeavesTheResultFileEmpty) {
    ReadResult run = runRead(Deck(), "N\n");
    ASSERT_EQ(run.ierr, 0);
    EXPECT_EQ(run.result, "");
}

std::vector<std::string> strengthWarning(double suc, double tan) {
    return {io::freeRecord("WARNING FROM SR/READ :"),
            io::freeRecord("MATERIAL STRENGTH FACTOR \"FCTSUC\" = ", suc),
            io::freeRecord("MATERIAL STRENGTH FACTOR \"FCTTAN\" = ", tan)};
}

TEST_F(ReadTest, StrengthFactorsOutsideTheLimitsAreQuestionedAndAcceptedOnYes) {
    ReadResult run = runRead(Deck().set("c200", "  1.2  1.0"), "N\nY\n");
    ASSERT_EQ(run.ierr, 0) << run.console;
    for (const auto& line : strengthWarning(1.2, 1.0)) EXPECT_TRUE(hasLine(run.console, line)) << line;
    EXPECT_NE(run.console.find(" ARE THESE VALUES CORRECT (Y/N).......... "), std::string::npos);
    EXPECT_DOUBLE_EQ(MASTER.FCTSUC, 1.2);
}

TEST_F(ReadTest, StrengthFactorsRefusedEndTheReading) {
    ReadResult run = runRead(Deck().set("c200", "  1.0  0.8"), "N\nN\n");
    EXPECT_EQ(run.ierr, 1);
    for (const auto& line : strengthWarning(1.0, 0.8)) EXPECT_TRUE(hasLine(run.console, line)) << line;
    EXPECT_EQ(MASTER.IDTYP, 0);  // record 500 was not read
}

TEST_F(ReadTest, StrengthFactorsAreAcceptedInBatchModeWithTheQuestionOnTheCopyChannel) {
    ReadResult run = runRead(Deck().set("c200", "  0.5  1.0"), "N\n", true);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_NE(run.copy.find(" ARE THESE VALUES CORRECT (Y/N).......... "), std::string::npos);
    EXPECT_TRUE(hasLine(run.copy, strengthWarning(0.5, 1.0)[1]));
}

TEST_F(ReadTest, StrengthFactorLimitsAreSinglePrecisionValues) {
    // 1.001 as read lies below the single-precision 1.001 and passes; 0.999 as read lies
    // below the single-precision 0.999 and is questioned.
    ReadResult high = runRead(Deck().set("c200", "  1.001  1.0"), "N\nN\n");
    EXPECT_EQ(high.ierr, 0) << high.console;
    ReadResult low = runRead(Deck().set("c200", "  1.0  0.999"), "N\nN\n");
    EXPECT_EQ(low.ierr, 1);
    ReadResult inside = runRead(Deck().set("c200", "  0.9995  1.0005"), "N\nN\n");
    EXPECT_EQ(inside.ierr, 0) << inside.console;
}

// --- Pore-pressure x-lines: free water level ---------------------------------------------------

TEST_F(ReadTest, FreeWaterLevelFollowsThePressureProfile) {
    Deck deck;
    deck.set("p3400", "  4");
    deck.remove("p3501a").remove("p3501b");
    deck.insertAfter("pXHead", {
                                   // first point already under pressure: z - p/gamma = 1 - 20/10
                                   {"a1", "  1  2.0  2  1.0  5.0"},
                                   {"a2", "     20.0  60.0"},
                                   // suction to pressure: zero crossing at 2 + 10*(4-2)/(10+30)
                                   {"b1", "  2  4.0  3  1.0  2.0  4.0"},
                                   {"b2", "     -20.0 -10.0  30.0"},
                                   // never positive: the last point, 6 - (-5)/10
                                   {"c1", "  3  6.0  2  1.0  6.0"},
                                   {"c2", "     -10.0 -5.0"},
                                   // a single point: z - p/gamma = 3 - 0/10
                                   {"d1", "  4  7.0  1  3.0"},
                                   {"d2", "     0.0"},
                               });
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(1), -1.0);
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(2), 2.5);
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(3), 6.5);
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(4), 3.0);
}

TEST_F(ReadTest, FreeWaterLevelWithoutWaterUnitWeightIsThePointLevel) {
    Deck deck;
    deck.set("p3440", "  0.0");
    deck.set("p3501b", "     5.0  10.0  80.0");
    ReadResult run = runRead(deck, "N\nY\n");
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(WATER1.ZFREE(1), 1.0);
}

// --- Node values -------------------------------------------------------------------------------

TEST_F(ReadTest, NodeValuesForAllNodesComeInOneRecord) {
    Deck deck;
    deck.set("m2700", "  15");
    deck.set("m3201", "  1 2 3 4 5 6 7 8");
    deck.set("m3202", "  9 10 11 12 13 14 15");
    deck.set("p3420", "  15");
    deck.set("p3701", "  1 1 1 1 1 1 1 1 1 1");
    deck.set("p3702", "  1 1 1 1 3");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(1), 1.0);
    EXPECT_DOUBLE_EQ(SOLPRP.SUNOD(15), 15.0);
    EXPECT_DOUBLE_EQ(WATER1.PWNOD(14), 2.0);
    EXPECT_DOUBLE_EQ(WATER1.PWNOD(15), 6.0);
}

// --- Soil nails through the reader ------------------------------------------------------------

TEST_F(ReadTest, PointForceCountCarriesTheSoilNailsInItsHundreds) {
    Deck deck;
    deck.set("l4100", "  305");
    deck.insertAfter("l4701", {{"pf2", "  2  4.0 0.5 1.0 1.0"},
                               {"pf3", "  3  4.0 0.5 1.0 1.0"},
                               {"pf4", "  4  4.0 0.5 1.0 1.0"},
                               {"pf5", "  5  9.0 0.5 1.0 7.0"}});
    deck.insertAfter("n1", {{"n2", "  2  10.0 2.0  4.0 4.0  1.5  0.1  80 90 0.5 200 10 100 0 0 0"},
                            {"n3", "  3  10.0 3.0  4.0 5.0  1.5  0.1  80 90 0.5 200 10 100 0 0 0"}});
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ILOA.NPF, 5);
    EXPECT_EQ(ISNAIL.NNAILS, 3);
    EXPECT_DOUBLE_EQ(LOAD.FPF(2, 5), 7.0);
    EXPECT_DOUBLE_EQ(SNAILS.SN(3, 4), 5.0);
}

TEST_F(ReadTest, TwoNailsAndOnePointForce) {
    Deck deck;
    deck.set("l4100", "  201");
    deck.insertAfter("n1", {{"n2", "  2  10.0 2.0  4.0 4.0  1.5  0.1  80 90 0.5 200 10 100 -1"},
                            {"n2b", "     0 0"}});
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ILOA.NPF, 1);
    EXPECT_EQ(ISNAIL.NNAILS, 2);
    EXPECT_DOUBLE_EQ(SNAILS.SN(2, 13), -1.0);
}

TEST_F(ReadTest, ANailErrorIsReturnedAsItStands) {
    ReadResult run = runRead(Deck().set("n1", "  2  10.0 1.0  4.0 3.0  1.5  0.1  80 90 0.5 200 10 100 0 1 2"));
    EXPECT_EQ(run.ierr, 1);
    EXPECT_TRUE(hasLine(run.console, io::Line().A(" **** Soil nails sequence error  N,I=").Free(2).Free(1).str()));
}

TEST_F(ReadTest, NoNailsMeansNoNailHeadings) {
    Deck deck;
    deck.set("l4100", "  1");
    deck.remove("nHead1").remove("nHead2").remove("n1");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(ISNAIL.NNAILS, 0);
}

// --- Node plot pass ----------------------------------------------------------------------------

TEST_F(ReadTest, PlotLevelTwoPrintsTheNodeValuesAfterReading) {
    ReadResult run = runRead(Deck().set("c1370", "  2"));
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_NE(io::contents(18).find("PLOT SHOWS PORE-WATER-PRESSURES COMPUTED AT MESH NODAL POINTS"),
              std::string::npos);
}

}  // namespace
