// Field writers: every character of every result file comes through these.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>

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

TEST(FixedField, RestsBesideOneHalfAreJudgedOnTheirExactDigits) {
    // The digits beyond the last decimal read 0.4951 (not a half, though two of them round to
    // "50"), 0.5049 and 0.996 (which carries into the kept digits).
    EXPECT_EQ(fmtF(1.234951, 5, 2), " 1.23");
    EXPECT_EQ(fmtF(-1.234951, 6, 2), " -1.23");
    EXPECT_EQ(fmtF(1.235049, 5, 2), " 1.24");
    EXPECT_EQ(fmtF(1.239960, 5, 2), " 1.24");
    EXPECT_EQ(fmtF(9.999960, 6, 2), " 10.00");
    EXPECT_EQ(fmtES(1.234951, 10, 2), "  1.23E+00");
    EXPECT_EQ(fmtES(1.235049, 10, 2), "  1.24E+00");
    EXPECT_EQ(fmtE(0.9999951, 12, 5), " 0.10000E+01");
}

namespace {

// A value's fixed and scaled-exponent fields built from the C library's exact decimal expansion
// (enough digits that nothing is rounded), rounded half away from zero by hand.
std::string roundedAway(std::string digits, size_t keep, bool& carriedOut) {
    const bool up = digits[keep] >= '5';
    digits.resize(keep);
    carriedOut = false;
    if (!up) return digits;
    size_t k = keep;
    while (k > 0 && digits[k - 1] == '9') digits[--k] = '0';
    if (k == 0) carriedOut = true;
    else ++digits[k - 1];
    return digits;
}

std::string fixedByHand(double value, int decimals) {
    char exact[400];
    std::snprintf(exact, sizeof exact, "%.200f", std::fabs(value));
    std::string text(exact);
    const size_t point = text.find('.');
    const std::string joined = text.substr(0, point) + text.substr(point + 1);
    bool carriedOut = false;
    std::string kept = roundedAway(joined, point + static_cast<size_t>(decimals), carriedOut);
    if (carriedOut) kept = "1" + kept;
    const size_t integerDigits = kept.size() - static_cast<size_t>(decimals);
    std::string body = kept.substr(0, integerDigits) + "." + kept.substr(integerDigits);
    if (value < 0 && kept.find_first_not_of('0') != std::string::npos) body = "-" + body;
    return std::string(40 - body.size(), ' ') + body;
}

std::string scaledExponentByHand(double value, int decimals) {
    char exact[400];
    std::snprintf(exact, sizeof exact, "%.200e", std::fabs(value));
    std::string text(exact);
    const size_t e = text.find('e');
    int exponent = std::atoi(text.c_str() + e + 1);
    const std::string joined = text.substr(0, 1) + text.substr(2, e - 2);
    bool carriedOut = false;
    std::string kept = roundedAway(joined, 1 + static_cast<size_t>(decimals), carriedOut);
    if (carriedOut) {
        kept = "1" + kept.substr(0, kept.size() - 1);
        ++exponent;
    }
    char exponentText[16];
    std::snprintf(exponentText, sizeof exponentText, "E%c%02d", exponent < 0 ? '-' : '+', std::abs(exponent));
    std::string body = kept.substr(0, 1) + "." + kept.substr(1) + exponentText;
    if (value < 0) body = "-" + body;
    return std::string(40 - body.size(), ' ') + body;
}

}  // namespace

TEST(FixedField, EveryTieAndItsNeighboursRoundAsTheirExactValues) {
    // An odd multiple of 2^-j ends in a 5 at decimal j: a true tie at j - 1 decimals (and at
    // its j-th significant digit); its neighbours one binary place away lie just beside it.
    int compared = 0;
    for (int j = 1; j <= 24; ++j) {
        for (double odd : {1.0, 3.0, 77.0, 12345.0, 999999.0, 8388607.0}) {
            const double tie = std::ldexp(odd, -j);
            for (double value : {tie, std::nextafter(tie, 1.0e300), std::nextafter(tie, 0.0)}) {
                for (double signedValue : {value, -value}) {
                    for (int decimals = std::max(j - 2, 0); decimals <= j; ++decimals) {
                        EXPECT_EQ(fmtF(signedValue, 40, decimals), fixedByHand(signedValue, decimals))
                            << signedValue << " with " << decimals << " decimals";
                        ++compared;
                    }
                    const int leading = static_cast<int>(std::floor(std::log10(value)));
                    for (int decimals = j + leading - 2; decimals <= j + leading; ++decimals) {
                        if (decimals < 0) continue;
                        EXPECT_EQ(fmtES(signedValue, 40, decimals), scaledExponentByHand(signedValue, decimals))
                            << signedValue << " with " << decimals << " decimals";
                        ++compared;
                    }
                }
            }
        }
    }
    EXPECT_GT(compared, 2000);
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

TEST(FixedField, FieldsLongerThanFiveHundredCharactersKeepEveryExactDigit) {
    // The binary value of 0.1 is 0.1000000000000000055511151231257827021181583404541015625
    // exactly; the decimals after its 55th are zeros.
    const std::string tenth = "0.1000000000000000055511151231257827021181583404541015625";
    EXPECT_EQ(fmtF(0.1, 600, 560), std::string(600 - 562, ' ') + tenth + std::string(560 - 55, '0'));
    // 1.0E300 is the integer below, exactly, with no fraction at all.
    const std::string large =
        "1000000000000000052504760255204420248704468581108159154915854115511802457988908195786371375080447864043704"
        "443832883878176942523235360430575644792184786706982848387200926575803737830233794788090059368953234970799945"
        "081119038967640880074652742780142494579258788820056842838115669472196386865459400540160";
    ASSERT_EQ(large.size(), 301u);
    EXPECT_EQ(fmtF(-1.0e300, 620, 300), std::string(620 - 603, ' ') + "-" + large + "." + std::string(300, '0'));
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
