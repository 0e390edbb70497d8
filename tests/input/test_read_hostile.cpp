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

}  // namespace
