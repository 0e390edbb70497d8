// NAILSP: the soil nail table of the result print.
//
// The expected lines are put together from their field codes: "   1" is I4 of 1, "     8.000"
// F10.3 of 8, "   2.126" F8.3, "  2.000E+01" E11.3 with scale 1 of 20, "      07" I8.2 of 7
// (at least two digits), then 5X and the 20-character text of the failure mode.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "input/read_deck.h"
#include "io/channels.h"
#include "output/output.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

using Lines = std::vector<std::string>;

using kalmo_test::splitLines;

class NailPrint : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        clearRecords();
        MASTER.NF16 = 16;
        ASSERT_EQ(io::openNew(16, dir_.path("KALMO.RES")), 0);
        TEXT.VERSION.set("12 Jan 2017");
        MASTER.SF = 1.25;
        // The clock as the result print left it (year, month, day, hour, minute, second).
        const int clock[6] = {2026, 11, 24, 1, 2, 3};
        for (int k = 1; k <= 6; ++k) MASTER.DATTIM(k) = clock[k - 1];
    }
    void TearDown() override { io::resetAll(); }

    static void nail(int i, double total, double active, double axial, double lateral, int slice, int mode) {
        SNAILS.SN(i, SNLTOT) = total;
        SNAILS.SN(i, SNLACT) = active;
        SNAILS.SN(i, SNFAX) = axial;
        SNAILS.SN(i, SNFLAT) = lateral;
        ISNAIL.INAIL(i, SNSLC) = slice;
        ISNAIL.INAIL(i, SNMODE) = mode;
        if (ISNAIL.NNAILS < i) ISNAIL.NNAILS = i;
    }

    // The result file with the page top checked and dropped.
    Lines table() {
        Lines lines = splitLines(io::contents(16));
        EXPECT_FALSE(lines.empty());
        if (lines.empty()) return lines;
        EXPECT_EQ(lines[0], "\f KALMO  Output   Program Version = 12 Jan 2017    Time = 24 NOV 2026  01:02:03");
        return Lines(lines.begin() + 1, lines.end());
    }

    const Lines kHeading{"", " Nail   Total   Active  Forces at shear surface   Slice   Failure mode",
                         "  no.   length  length    Axially   Laterally    intsctn", " "};

    kalmo_test::TempDir dir_;
};

TEST_F(NailPrint, FourNailsPrintThreeLinesASeparatorAndOneMore) {
    // Forces divided by SF = 1.25: -25 -> -20, 5 -> 4, 100 -> 80.
    nail(1, 8.0, 0.0, 0.0, 0.0, 0, 0);
    nail(2, 8.0, 0.357, -25.0, 0.0, 12, 1);
    nail(3, 8.0, 2.126, -25.0, 5.0, 7, 3);
    nail(4, 12.5, 4.598, 100.0, 0.0, 23, 5);
    NAILSP();
    Lines expected = kHeading;
    expected.insert(expected.end(),
                    {
                        "   1" "     8.000" "   0.000" " " "  0.000E+00" "  0.000E+00" "      00" "     " "No intersection     ",
                        "   2" "     8.000" "   0.357" " " " -2.000E+01" "  0.000E+00" "      12" "     " "External/Tension    ",
                        "   3" "     8.000" "   2.126" " " " -2.000E+01" "  4.000E+00" "      07" "     " "Internal/Tension    ",
                        " ",
                        "   4" "    12.500" "   4.598" " " "  8.000E+01" "  0.000E+00" "      23" "     " "Nail/Pile yielding  ",
                    });
    EXPECT_EQ(table(), expected);
}

TEST_F(NailPrint, EveryFailureModeHasItsText) {
    const std::vector<std::pair<int, std::string>> modes{
        {-1, "De-activated nail   "}, {0, "No intersection     "}, {1, "External/Tension    "},
        {2, "External/Compression"}, {3, "Internal/Tension    "}, {4, "Internal/Compression"},
        {5, "Nail/Pile yielding  "}};
    for (size_t k = 0; k < modes.size(); ++k) nail(static_cast<int>(k) + 1, 1.0, 1.0, 0.0, 0.0, 1, modes[k].first);
    NAILSP();
    Lines lines = table();
    ASSERT_EQ(lines.size(), kHeading.size() + 7 + 2);  // two separators, after nails 3 and 6
    int row = 0;
    for (size_t k = kHeading.size(); k < lines.size(); ++k) {
        if (lines[k] == " ") continue;
        ASSERT_EQ(lines[k].size(), 78u) << lines[k];
        EXPECT_EQ(lines[k].substr(58), modes[static_cast<size_t>(row)].second);
        ++row;
    }
}

TEST_F(NailPrint, ACodeOutsideTheTableHasNoText) {
    nail(1, 1.0, 1.0, 0.0, 0.0, 3, 9);
    NAILSP();
    Lines lines = table();
    ASSERT_EQ(lines.size(), kHeading.size() + 1);
    EXPECT_EQ(lines.back(), "   1" "     1.000" "   1.000" " " "  0.000E+00" "  0.000E+00" "      03" "     " + std::string(20, ' '));
}

TEST_F(NailPrint, ThreeNailsEndWithASeparator) {
    for (int i = 1; i <= 3; ++i) nail(i, 1.0, 0.5, 0.0, 0.0, i, 1);
    NAILSP();
    Lines lines = table();
    ASSERT_EQ(lines.size(), kHeading.size() + 4);
    EXPECT_EQ(lines.back(), " ");
}

TEST_F(NailPrint, ACountBeyondTheTableListsTheTable) {
    for (int i = 1; i <= MAXNAI; ++i) nail(i, 1.0, 0.5, 0.0, 0.0, 1, 1);
    ISNAIL.NNAILS = 200;
    NAILSP();
    EXPECT_EQ(table().size(), kHeading.size() + MAXNAI + MAXNAI / 3);
}

}  // namespace
