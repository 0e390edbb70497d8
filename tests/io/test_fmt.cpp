// Field writers: every character of every result file comes through these.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "io/fmt.h"

using namespace io;

TEST(IntegerField, RightAlignedInItsWidth) {
    EXPECT_EQ(fmtI(5, 3), "  5");
    EXPECT_EQ(fmtI(-5, 3), " -5");
    EXPECT_EQ(fmtI(0, 1), "0");
    EXPECT_EQ(fmtI(123, 3), "123");
    EXPECT_EQ(fmtI(-123, 4), "-123");
}

TEST(IntegerField, TooWideIsAsterisks) {
    EXPECT_EQ(fmtI(1234, 3), "***");
    EXPECT_EQ(fmtI(-10, 2), "**");
    EXPECT_EQ(fmtI(100000, 5), "*****");
}

TEST(IntegerField, MinimumDigitsWithLeadingZeros) {
    EXPECT_EQ(fmtI(5, 2, 2), "05");        // I2.2: a clock's minutes
    EXPECT_EQ(fmtI(0, 2, 2), "00");
    EXPECT_EQ(fmtI(12, 2, 2), "12");
    EXPECT_EQ(fmtI(7, 8, 2), "      07");  // I8.2
    EXPECT_EQ(fmtI(-7, 4, 2), " -07");
    EXPECT_EQ(fmtI(123, 2, 2), "**");
    EXPECT_EQ(fmtI(0, 3, 0), "   ");       // I3.0 of zero is all blanks
}

TEST(IntegerField, LargestValues) {
    EXPECT_EQ(fmtI(2147483647LL, 11), " 2147483647");
    EXPECT_EQ(fmtI(-2147483648LL, 11), "-2147483648");
}

TEST(FixedField, Basic) {
    EXPECT_EQ(fmtF(3.14159, 8, 3), "   3.142");
    EXPECT_EQ(fmtF(-3.14159, 8, 3), "  -3.142");
    EXPECT_EQ(fmtF(0.0, 6, 2), "  0.00");
    EXPECT_EQ(fmtF(100.0, 6, 2), "100.00");
    EXPECT_EQ(fmtF(12.0, 5, 0), "  12.");
}

TEST(FixedField, RoundingAtTheLastDecimalIsHalfAwayFromZero) {
    EXPECT_EQ(fmtF(0.125, 5, 2), " 0.13");     // 0.125 is exact in binary: a true tie
    EXPECT_EQ(fmtF(-0.125, 6, 2), " -0.13");
    EXPECT_EQ(fmtF(2.5, 3, 0), " 3.");
    EXPECT_EQ(fmtF(0.375, 5, 2), " 0.38");
    EXPECT_EQ(fmtF(1.005, 5, 2), " 1.00");     // 1.005 is 1.00499999999999989... in binary
    EXPECT_EQ(fmtF(0.0449999, 5, 2), " 0.04");
    EXPECT_EQ(fmtF(9.995, 5, 2), " 9.99");     // 9.99499999999999921...
    EXPECT_EQ(fmtF(9.9951, 5, 2), "10.00");    // carry into a new digit
    EXPECT_EQ(fmtF(99.96, 5, 1), "100.0");
    EXPECT_EQ(fmtF(999.96, 5, 1), "*****");    // the carry makes it too wide
}

TEST(FixedField, SinglePrecisionLiteralsShowTheirWidening) {
    EXPECT_EQ(fmtF(static_cast<double>(0.9f), 19, 17), "0.89999997615814209");
    EXPECT_EQ(fmtF(static_cast<double>(999.999f), 9, 4), " 999.9990");
    EXPECT_EQ(fmtF(static_cast<double>(999.999f), 12, 10), "************");
    EXPECT_EQ(fmtF(static_cast<double>(999.999f), 14, 10), "999.9990234375");
}

TEST(FixedField, NegativeZeroAndValuesRoundingToZeroHaveNoSign) {
    EXPECT_EQ(fmtF(-0.0, 6, 2), "  0.00");
    EXPECT_EQ(fmtF(-0.004, 6, 2), "  0.00");
    EXPECT_EQ(fmtF(-0.005, 6, 2), " -0.01");  // -0.005000000000000000104 rounds away
}

TEST(FixedField, LeadingZeroDroppedOnlyWhenItDoesNotFit) {
    EXPECT_EQ(fmtF(0.5, 4, 2), "0.50");
    EXPECT_EQ(fmtF(0.5, 3, 2), ".50");
    EXPECT_EQ(fmtF(-0.5, 4, 2), "-.50");
    EXPECT_EQ(fmtF(-0.5, 3, 2), "***");
}

TEST(FixedField, OverflowIsAsterisks) {
    EXPECT_EQ(fmtF(12345.678, 8, 3), "********");
    EXPECT_EQ(fmtF(-1234.5, 6, 1), "******");  // "-1234.5" needs 7 columns
    EXPECT_EQ(fmtF(-1234.5, 7, 1), "-1234.5");
}

TEST(FixedField, VeryLargeAndVerySmall) {
    EXPECT_EQ(fmtF(1.0e20, 10, 2), "**********");
    EXPECT_EQ(fmtF(1.0e20, 24, 2), "100000000000000000000.00");
    EXPECT_EQ(fmtF(1.0e-20, 8, 3), "   0.000");
    EXPECT_EQ(fmtF(5.0e-4, 6, 3), " 0.001");  // 0.0005000000000000000104: just above the tie
}

TEST(ExponentField, FormIsZeroPointDigits) {
    EXPECT_EQ(fmtE(1234.5, 11, 4), " 0.1235E+04");
    EXPECT_EQ(fmtE(-1234.5, 11, 4), "-0.1235E+04");
    EXPECT_EQ(fmtE(0.001234, 10, 3), " 0.123E-02");
    EXPECT_EQ(fmtE(1.0, 10, 4), "0.1000E+01");
    EXPECT_EQ(fmtE(0.1, 10, 4), "0.1000E+00");
}

TEST(ExponentField, Zero) {
    EXPECT_EQ(fmtE(0.0, 10, 3), " 0.000E+00");
    EXPECT_EQ(fmtE(-0.0, 10, 3), " 0.000E+00");
}

TEST(ExponentField, RoundingCarriesIntoTheExponent) {
    EXPECT_EQ(fmtE(9.9996, 10, 3), " 0.100E+02");
    EXPECT_EQ(fmtE(0.99995, 11, 4), " 0.1000E+01");  // 0.99995000000000000551 rounds up
    EXPECT_EQ(fmtE(0.125, 9, 2), " 0.13E+00");      // exact tie, away from zero
}

TEST(ExponentField, ThreeDigitExponentsDropTheLetter) {
    EXPECT_EQ(fmtE(1.0e100, 10, 4), "0.1000+101");
    EXPECT_EQ(fmtE(1.0e-100, 10, 4), "0.1000E-99");  // 0.1E-99 still has two exponent digits
    EXPECT_EQ(fmtE(1.0e-101, 10, 4), "0.1000-100");
    EXPECT_EQ(fmtE(-2.5e200, 11, 4), "-0.2500+201");
    EXPECT_EQ(fmtE(1.0e99, 10, 4), "0.1000+100");
    EXPECT_EQ(fmtE(9.0e98, 10, 4), "0.9000E+99");
}

TEST(ExponentField, LeadingZeroOptionalAndOverflow) {
    EXPECT_EQ(fmtE(1234.5, 9, 4), ".1235E+04");
    EXPECT_EQ(fmtE(-1234.5, 9, 4), "*********");
    EXPECT_EQ(fmtE(-1234.5, 10, 4), "-.1235E+04");
}

TEST(ExponentField, ExtremeDoubles) {
    EXPECT_EQ(fmtE(std::numeric_limits<double>::max(), 12, 5), " 0.17977+309");
    EXPECT_EQ(fmtE(std::numeric_limits<double>::denorm_min(), 12, 5), " 0.49407-323");
}

TEST(ScaledExponentField, OneDigitBeforeThePoint) {
    EXPECT_EQ(fmtES(1234.5, 10, 3), " 1.235E+03");
    EXPECT_EQ(fmtES(-0.0012345, 11, 3), " -1.234E-03");  // -0.00123449999999999992 in binary
    EXPECT_EQ(fmtES(-0.0012355, 11, 3), " -1.236E-03");
    EXPECT_EQ(fmtES(0.0, 10, 3), " 0.000E+00");
    EXPECT_EQ(fmtES(9.9996, 10, 3), " 1.000E+01");
    EXPECT_EQ(fmtES(1.0e100, 10, 3), " 1.000+100");
    EXPECT_EQ(fmtES(1.0, 8, 3), "********");  // 9 characters needed
    EXPECT_EQ(fmtES(1.0, 9, 3), "1.000E+00");
}

TEST(GeneralField, FixedInsideItsRangeExponentOutside) {
    EXPECT_EQ(fmtG(1.5, 15, 7), "   1.500000    ");
    EXPECT_EQ(fmtG(-1.5, 15, 7), "  -1.500000    ");
    EXPECT_EQ(fmtG(0.1, 15, 7), "  0.1000000    ");
    EXPECT_EQ(fmtG(1234567.0, 15, 7), "   1234567.    ");
    EXPECT_EQ(fmtG(12345678.0, 15, 7), "  0.1234568E+08");
    EXPECT_EQ(fmtG(0.01, 15, 7), "  0.1000000E-01");
    EXPECT_EQ(fmtG(0.0, 15, 7), "   0.000000    ");
    EXPECT_EQ(fmtG(9999999.6, 15, 7), "  0.1000000E+08");  // rounds up out of the fixed range
    EXPECT_EQ(fmtG(0.099999999, 15, 7), "  0.1000000    ");  // rounds up into it
}

TEST(TextField, RightAlignedWhenShortLeftPartWhenLong) {
    EXPECT_EQ(fmtA("AB", 4), "  AB");
    EXPECT_EQ(fmtA("ABCDEF", 4), "ABCD");
    EXPECT_EQ(fmtA("ABCD", 4), "ABCD");
    EXPECT_EQ(fmtX(3), "   ");
    EXPECT_EQ(fmtX(0), "");
    EXPECT_EQ(repeat('=', 5), "=====");
}

TEST(FreeFormat, OneLayoutForTheWholeSystem) {
    EXPECT_EQ(freeRecord("ERROR EXIT from program KALMO"), " ERROR EXIT from program KALMO");
    EXPECT_EQ(freeRecord("VALUE=", 48), " VALUE=          48");
    EXPECT_EQ(freeRecord("SF=", 1.5), " SF=   1.500000");
    EXPECT_EQ(freeRecord(1.0e-30), "   0.1000000E-29");
    EXPECT_EQ(freeRecord(-7), "           -7");
    EXPECT_EQ(freeItem(2147483647), "  2147483647");
}

TEST(LineBuilder, ConcatenatesFields) {
    Line line;
    line.A(" TIME USED =").I(12, 6).A(" SECONDS");
    EXPECT_EQ(line.str(), " TIME USED =    12 SECONDS");
    EXPECT_EQ(Line().X(2).F(1.25, 6, 2).E(1.0, 11, 4).ES(2.0, 10, 3).A("X", 3).str(),
              "    1.25 0.1000E+01 2.000E+00  X");
    EXPECT_EQ(Line(" N=").Free(3).str(), " N=           3");
}
