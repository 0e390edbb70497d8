// READSN: soil nail records read from the work file, converted and checked.

#include <gtest/gtest.h>

#include <string>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

const std::string kHeadings = "SOIL NAILS\n  N  HEAD  TIP  ...\n";
// Head (10, 1), tip (4, 3), spacing 1.5, diameter 0.1, bond 80/90 kPa, free length 0.5,
// yield 200, lateral 10, head 100 kN, further values 0 1 2.
const std::string kNail1 = "  1  10.0 1.0  4.0 3.0  1.5  0.1  80.0 90.0  0.5  200.0 10.0 100.0  0.0 1.0 2.0\n";

class ReadsnTest : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        clearRecords();
        MASTER.NFOUT = 12;
        MASTER.NF15 = 15;
        MASTER.FCTFRC = 1.0;
        MASTER.FCTLEN = 1.0;
        POSTGRAF.NFCOPY = 9;
        io::bindNull(9);
        io::openNew(12, dir.path("CONSOLE"));
    }
    void TearDown() override { io::resetAll(); }

    // Runs READSN on a work file; returns IERR.
    int run(int nails, const std::string& work, int ierrOnEntry = 0) {
        dir.write("KALMO.TMP", work);
        io::openOld(15, dir.path("KALMO.TMP"));
        ISNAIL.NNAILS = nails;
        MASTER.IERR = ierrOnEntry;
        READSN();
        return MASTER.IERR;
    }
    std::string console() { return io::contents(12); }

    kalmo_test::TempDir dir;
};

TEST_F(ReadsnTest, StoresTheNailValuesAndKeepsIerrOnSuccess) {
    EXPECT_EQ(run(1, kHeadings + kNail1 + "\nNEXT SECTION\n", 0), 0);
    const double expected[15] = {10, 1, 4, 3, 1.5, 0.1, 80, 90, 0.5, 200, 10, 100, 0, 1, 2};
    for (int k = 1; k <= 15; ++k) EXPECT_DOUBLE_EQ(SNAILS.SN(1, k), expected[k - 1]) << k;
    EXPECT_EQ(console(), "");
    // The next record starts on the line after the nail.
    std::string line;
    io::readLine(15, line);
    EXPECT_EQ(line, "");
    // Success leaves the code it found.
    EXPECT_EQ(run(1, kHeadings + kNail1, 9), 9);
}

TEST_F(ReadsnTest, ConvertsLengthsStressesAndForcesButNotTheFurtherValues) {
    MASTER.FCTFRC = 2.0;
    MASTER.FCTLEN = 0.5;  // lengths x0.5, stresses x8, forces x2
    ASSERT_EQ(run(1, kHeadings + kNail1), 0) << console();
    const double expected[15] = {5, 0.5, 2, 1.5, 0.75, 0.05, 640, 720, 0.25, 400, 20, 200, 0, 1, 2};
    for (int k = 1; k <= 15; ++k) EXPECT_DOUBLE_EQ(SNAILS.SN(1, k), expected[k - 1]) << k;
}

TEST_F(ReadsnTest, ARecordMayRunOverSeveralLines) {
    const std::string nail2 = "  2  10.0 2.0  4.0 4.0  1.5  0.1\n  80 90 0.5\n  200 10 100 -1 0 0\n";
    ASSERT_EQ(run(2, kHeadings + kNail1 + nail2), 0) << console();
    EXPECT_DOUBLE_EQ(SNAILS.SN(2, 4), 4.0);
    EXPECT_DOUBLE_EQ(SNAILS.SN(2, 13), -1.0);
}

TEST_F(ReadsnTest, NailsMustBeNumberedInOrder) {
    EXPECT_EQ(run(2, kHeadings + kNail1 + kNail1), 1);
    EXPECT_EQ(console(), io::Line().A(" **** Soil nails sequence error  N,I=").Free(1).Free(2).str() + "\n");
}

TEST_F(ReadsnTest, ANailWhoseEndsCoincideIsRefusedFirst) {
    // Ends 0.05 apart, spacing and diameter wrong too: the length check comes first.
    EXPECT_EQ(run(1, kHeadings + "  1  10.0 1.0  10.03 1.04  0.0  50.0  1 1 0 1 1 1 0 0 0\n"), 2);
    EXPECT_EQ(console(), io::Line().A(" **** Soil nail zero length  N=").Free(1).str() + "\n");
}

TEST_F(ReadsnTest, LengthLimitIsTheSinglePrecisionTenth) {
    // 0.1 as the single-precision value is 0.100000001490116...: a nail of exactly 0.1 is short.
    EXPECT_EQ(run(1, kHeadings + "  1  0.0 0.0  0.1 0.0  1.5  0.1  1 1 0 1 1 1 0 0 0\n"), 2);
    EXPECT_EQ(run(1, kHeadings + "  1  0.0 0.0  0.1000001 0.0  1.5  0.1  1 1 0 1 1 1 0 0 0\n"), 0);
}

TEST_F(ReadsnTest, SpacingBelowATenthIsRefused) {
    EXPECT_EQ(run(1, kHeadings + "  1  10.0 1.0  4.0 3.0  0.05  0.1  1 1 0 1 1 1 0 0 0\n"), 3);
    EXPECT_EQ(console(), io::Line().A(" **** Soil nail c/c distance error  N,c/c=").Free(1).Free(0.05).str() + "\n");
}

TEST_F(ReadsnTest, DiameterOutsideTheLimitsIsRefused) {
    EXPECT_EQ(run(1, kHeadings + "  1  10.0 1.0  4.0 3.0  1.5  10.5  1 1 0 1 1 1 0 0 0\n"), 4);
    EXPECT_EQ(console(), io::Line().A(" **** Soil nail diameter error  N,DIAM=").Free(1).Free(10.5).str() + "\n");
    EXPECT_EQ(run(1, kHeadings + "  1  10.0 1.0  4.0 3.0  1.5  0.005  1 1 0 1 1 1 0 0 0\n"), 4);
    EXPECT_EQ(run(1, kHeadings + "  1  10.0 1.0  4.0 3.0  1.5  10.0  1 1 0 1 1 1 0 0 0\n"), 0);
}

TEST_F(ReadsnTest, MillimetreDiametersAreCheckedInMetres) {
    MASTER.FCTLEN = 0.001;
    const std::string ends = "  1  10000 1000  4000 3000  1500  ";
    EXPECT_EQ(run(1, kHeadings + ends + "25  1 1 0 1 1 1 0 0 0\n"), 0) << console();
    EXPECT_NEAR(SNAILS.SN(1, 6), 0.025, 1e-15);
    EXPECT_EQ(run(1, kHeadings + ends + "5  1 1 0 1 1 1 0 0 0\n"), 4);
}

TEST_F(ReadsnTest, TextInsteadOfANumberShowsTheLine) {
    const std::string bad = "  200 10 1OO -1 0 0";
    EXPECT_EQ(run(2, kHeadings + kNail1 + "  2  10.0 2.0  4.0 4.0  1.5  0.1  80 90 0.5\n" + bad + "\n"), 6);
    EXPECT_EQ(console(), io::Line().A(" **** Soil nail input format error  N=").Free(2).str() + "\n" +
                             " Line read :" + bad + "\n");
}

TEST_F(ReadsnTest, EndOfDataBeforeAllNailsAreRead) {
    EXPECT_EQ(run(2, kHeadings + kNail1), 7);
    EXPECT_EQ(console(), io::Line().A(" **** Soil nails end-of-file error  N=").Free(2).str() + "\n");
    EXPECT_EQ(run(1, kHeadings + "  1  10.0 1.0  4.0 3.0\n"), 7);
    EXPECT_EQ(run(1, "SOIL NAILS\n"), 7);
}

TEST_F(ReadsnTest, NailsBeyondTheTableAreCheckedButNotStored) {
    std::string work = kHeadings;
    for (int i = 1; i <= 77; ++i)
        work += "  " + std::to_string(i) + "  10.0 1.0  4.0 3.0  1.5  0.1  80 90 0.5 " + std::to_string(i) +
                " 10 100 0 0 0\n";
    EXPECT_EQ(run(77, work), 0) << console();
    EXPECT_DOUBLE_EQ(SNAILS.SN(75, 10), 75.0);
    // A bad nail beyond the table is still refused.
    work += "  78  10.0 1.0  10.0 1.0  1.5  0.1  80 90 0.5 78 10 100 0 0 0\n";
    EXPECT_EQ(run(78, work), 2);
}

}  // namespace
