// READ on hostile values found by fuzzing: numbers at the ends of the integer range, repeat
// items that announce far more values than any table holds, counts that leave out their
// optional values. Each must be read in time proportional to the text of the file, without
// undefined behaviour, and end in the result the input rules give.

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "input/read_deck.h"

namespace {

using kalmo_test::Deck;
using kalmo_test::ReadHarness;
using kalmo_test::ReadResult;

class ReadHostileTest : public ReadHarness {};

// A negative print mode is made non-negative; the most negative integer has no positive
// counterpart in 32 bits and must not stay negative (its absolute value overflows).
TEST_F(ReadHostileTest, MostNegativePrintModeBecomesPositive) {
    Deck deck;
    deck.set("c1360", "  -2147483648");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(MASTER.JSTRES, INT_MAX);
}

// A general surface that announces two thousand million points, all given by one repeat item
// each (the fuzzing case): the points beyond the column are dropped without being read one
// by one, so the reader comes at once to its verdict on the surface, whose x values do not
// increase.
TEST_F(ReadHostileTest, HugeRepeatedGeneralSurfaceIsDroppedWithoutReadingEveryCopy) {
    Deck deck;
    deck.set("s4901", "  1  2000000000");
    deck.set("s5001", "  2000000000*1.0");
    deck.set("s5101", "  2000000000*2.0");
    deck.set("s5201", "  2000000000*3.0");
    ReadResult run = runRead(deck);
    EXPECT_EQ(run.ierr, 1);
    EXPECT_NE(run.console.find(" **** SR/READ - GENERAL SURFACE SEQUENCE ERROR"), std::string::npos) << run.console;
    EXPECT_EQ(IGENER.NPGEN(1), 2000000000);
    EXPECT_DOUBLE_EQ(GENERL.ZGEN(MAXGPT, 1), 2.0);
}

// The same in a pore-pressure profile: its levels and values.
TEST_F(ReadHostileTest, HugeRepeatedPorePressureProfileIsDroppedWithoutReadingEveryCopy) {
    Deck deck;
    deck.set("p3501a", "  1  8.0  2000000000  2000000000*1.0");
    deck.set("p3501b", "  2000000000*5.0");
    ReadResult run = runRead(deck);
    ASSERT_EQ(run.ierr, 0) << run.console;
    EXPECT_EQ(IWATER.NPWPT(1), 2000000000);
    EXPECT_EQ(IGENER.NPGEN(1), 3);  // the general surface after it is read
}

}  // namespace
