// Free-format reads: blank or comma separated values, records over several lines.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "io/channels.h"
#include "io/freeread.h"
#include "support/tempdir.h"

using namespace io;

namespace {

// A channel on a file holding the given text.
class FileChannel : public ::testing::Test {
protected:
    void load(const std::string& text) {
        resetAll();
        dir_.write("DATA.TXT", text);
        ASSERT_EQ(openOld(15, dir_.path("DATA.TXT")), 0);
    }
    void TearDown() override { resetAll(); }
    kalmo_test::TempDir dir_;
};

}  // namespace

TEST(FreeDecode, BlankAndCommaSeparated) {
    int a = 0, b = 0;
    double x = 0;
    EXPECT_EQ(decodeFree("1 2 3.5", a, b, x), ReadStatus::Ok);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
    EXPECT_DOUBLE_EQ(x, 3.5);
    EXPECT_EQ(decodeFree("4,5,  -6.25E1", a, b, x), ReadStatus::Ok);
    EXPECT_EQ(a, 4);
    EXPECT_EQ(b, 5);
    EXPECT_DOUBLE_EQ(x, -62.5);
    EXPECT_EQ(decodeFree("  7 ,  8 , 9", a, b, x), ReadStatus::Ok);
    EXPECT_EQ(a, 7);
    EXPECT_EQ(b, 8);
    EXPECT_DOUBLE_EQ(x, 9.0);
}

TEST(FreeDecode, RealsWithOrWithoutPointOrExponent) {
    double x = 0;
    EXPECT_EQ(decodeFree("12", x), ReadStatus::Ok);
    EXPECT_DOUBLE_EQ(x, 12.0);
    EXPECT_EQ(decodeFree("12.", x), ReadStatus::Ok);
    EXPECT_DOUBLE_EQ(x, 12.0);
    EXPECT_EQ(decodeFree(".5", x), ReadStatus::Ok);
    EXPECT_DOUBLE_EQ(x, 0.5);
    EXPECT_EQ(decodeFree("1E3", x), ReadStatus::Ok);
    EXPECT_DOUBLE_EQ(x, 1000.0);
    EXPECT_EQ(decodeFree("1.5d-2", x), ReadStatus::Ok);
    EXPECT_DOUBLE_EQ(x, 0.015);
    EXPECT_EQ(decodeFree("+2.5e+001", x), ReadStatus::Ok);
    EXPECT_DOUBLE_EQ(x, 25.0);
    EXPECT_EQ(decodeFree("-0", x), ReadStatus::Ok);
    EXPECT_TRUE(std::signbit(x));
    EXPECT_EQ(decodeFree("1.0E-300", x), ReadStatus::Ok);
    EXPECT_DOUBLE_EQ(x, 1.0e-300);
    EXPECT_EQ(decodeFree("0.1", x), ReadStatus::Ok);
    EXPECT_EQ(x, 0.1);  // the nearest double, exactly as the compiler reads the literal
}

TEST(FreeDecode, TextThatIsNoNumberIsAFailedRead) {
    int n = 11;
    double x = 2.0;
    EXPECT_EQ(decodeFree("ABC", n), ReadStatus::Bad);
    EXPECT_EQ(n, 11);
    EXPECT_EQ(decodeFree("1.5", n), ReadStatus::Bad);  // an integer is a whole number
    EXPECT_EQ(decodeFree("3.", n), ReadStatus::Bad);
    EXPECT_EQ(decodeFree("1E2", n), ReadStatus::Bad);
    EXPECT_EQ(decodeFree("12A", x), ReadStatus::Bad);
    EXPECT_EQ(decodeFree(".", x), ReadStatus::Bad);
    EXPECT_EQ(decodeFree("-", x), ReadStatus::Bad);
    EXPECT_EQ(decodeFree("1E", x), ReadStatus::Bad);
    EXPECT_EQ(decodeFree("E5", x), ReadStatus::Bad);
    EXPECT_EQ(decodeFree("1.0E999", x), ReadStatus::Bad);  // beyond the largest real
    EXPECT_EQ(decodeFree("Q", x), ReadStatus::Bad);
    EXPECT_DOUBLE_EQ(x, 2.0);
    EXPECT_EQ(decodeFree("99999999999", n), ReadStatus::Bad);  // beyond a 32-bit integer
    EXPECT_EQ(decodeFree("2147483647", n), ReadStatus::Ok);
    EXPECT_EQ(n, 2147483647);
    EXPECT_EQ(decodeFree("-2147483648", n), ReadStatus::Ok);
    EXPECT_EQ(n, -2147483647 - 1);
}

TEST(FreeDecode, ValuesReadBeforeAFailureStay) {
    int a = 0, b = 0, c = 0;
    EXPECT_EQ(decodeFree("1 2 X", a, b, c), ReadStatus::Bad);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(c, 0);
}

TEST(FreeDecode, EndOfDataIsToldApartFromAFailedRead) {
    int a = 5, b = 6;
    EXPECT_EQ(decodeFree("", a), ReadStatus::End);
    EXPECT_EQ(decodeFree("   ", a), ReadStatus::End);
    EXPECT_EQ(decodeFree("1", a, b), ReadStatus::End);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 6);
}

TEST(FreeDecode, EmptyItemsKeepThePresentValues) {
    int a = 1, b = 2, c = 3;
    EXPECT_EQ(decodeFree("10,,30", a, b, c), ReadStatus::Ok);
    EXPECT_EQ(a, 10);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(c, 30);
    EXPECT_EQ(decodeFree(",20", a, b), ReadStatus::Ok);  // a leading comma is an empty first item
    EXPECT_EQ(a, 10);
    EXPECT_EQ(b, 20);
    EXPECT_EQ(decodeFree("7 , , 9", a, b, c), ReadStatus::Ok);
    EXPECT_EQ(a, 7);
    EXPECT_EQ(b, 20);
    EXPECT_EQ(c, 9);
}

TEST(FreeDecode, SlashEndsTheRecordAndKeepsTheRest) {
    int a = 1, b = 2, c = 3;
    EXPECT_EQ(decodeFree("5 /", a, b, c), ReadStatus::Ok);
    EXPECT_EQ(a, 5);
    EXPECT_EQ(b, 2);
    EXPECT_EQ(c, 3);
    EXPECT_EQ(decodeFree("/", a, b), ReadStatus::Ok);
    EXPECT_EQ(a, 5);
    EXPECT_EQ(decodeFree("8/9", a, b), ReadStatus::Ok);
    EXPECT_EQ(a, 8);
    EXPECT_EQ(b, 2);
}

TEST(FreeDecode, RepeatCounts) {
    double v[4] = {9, 9, 9, 9};
    FreeReader reader("3*1.5 2", true);
    reader.array(v, 4);
    EXPECT_TRUE(reader.ok());
    EXPECT_DOUBLE_EQ(v[0], 1.5);
    EXPECT_DOUBLE_EQ(v[2], 1.5);
    EXPECT_DOUBLE_EQ(v[3], 2.0);
    int n[3] = {1, 2, 3};
    EXPECT_EQ(decodeFree("2* 7", n[0], n[1], n[2]), ReadStatus::Ok);
    EXPECT_EQ(n[0], 1);
    EXPECT_EQ(n[1], 2);
    EXPECT_EQ(n[2], 7);
    EXPECT_EQ(decodeFree("0*5", n[0]), ReadStatus::Bad);
}

TEST(FixedColumns, BlankFieldIsZero) {
    int value = 9;
    EXPECT_TRUE(decodeFixedInt("    3", value));
    EXPECT_EQ(value, 3);
    EXPECT_TRUE(decodeFixedInt("     ", value));
    EXPECT_EQ(value, 0);
    EXPECT_TRUE(decodeFixedInt("   -4", value));
    EXPECT_EQ(value, -4);
    EXPECT_TRUE(decodeFixedInt(" 1 2 ", value));  // blanks inside are ignored
    EXPECT_EQ(value, 12);
    EXPECT_FALSE(decodeFixedInt("  A  ", value));
    EXPECT_FALSE(decodeFixedInt("  1.5", value));
}

TEST_F(FileChannel, RecordContinuesOverFollowingLines) {
    load("1 2\n3\n4 5\n");
    int v[4] = {};
    FreeReader reader(15);
    reader.array(v, 4);
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(v[0], 1);
    EXPECT_EQ(v[3], 4);
    // The next record starts on the next line: the 5 is ignored.
    std::string line;
    EXPECT_EQ(readLine(15, line), kReadEnd);
}

TEST_F(FileChannel, ValuesAfterTheLastNeededOneAreIgnored) {
    load("1 2 3 4\n5\n");
    int a = 0, b = 0;
    EXPECT_EQ(readFree(15, a), ReadStatus::Ok);
    EXPECT_EQ(readFree(15, b), ReadStatus::Ok);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 5);
}

TEST_F(FileChannel, BlankLinesArePassedOver) {
    load("\n   \n42\n");
    int a = 0;
    EXPECT_EQ(readFree(15, a), ReadStatus::Ok);
    EXPECT_EQ(a, 42);
}

TEST_F(FileChannel, FailedReadLeavesThePositionAfterTheBadLine) {
    // The optional-record pattern: a blank line, then a heading where numbers were expected.
    load("\nGEOMETRY SECTION\n2\n");
    int a = 0;
    EXPECT_EQ(readFree(15, a), ReadStatus::Bad);
    backspace(15);
    backspace(15);
    std::string line;
    ASSERT_EQ(readLine(15, line), kReadOk);
    EXPECT_EQ(line, "");
    ASSERT_EQ(readLine(15, line), kReadOk);
    EXPECT_EQ(line, "GEOMETRY SECTION");
}

TEST_F(FileChannel, EndOfFileInsideARecord) {
    load("1 2\n");
    int a = 0, b = 0, c = 0;
    EXPECT_EQ(readFree(15, a, b, c), ReadStatus::End);
    EXPECT_EQ(a, 1);
    EXPECT_EQ(b, 2);
}

TEST_F(FileChannel, DynamicCountInsideOneRecord) {
    // An x-line profile: number, x, count n, then n levels in the same record.
    load("1 5.0 3 0.0 1.0\n2.0\n9\n");
    int number = 0, count = 0;
    double x = 0, levels[3] = {};
    FreeReader reader(15);
    reader(number)(x)(count);
    ASSERT_TRUE(reader.ok());
    ASSERT_EQ(count, 3);
    reader.array(levels, count);
    EXPECT_TRUE(reader.ok());
    EXPECT_DOUBLE_EQ(levels[2], 2.0);
    int next = 0;
    EXPECT_EQ(readFree(15, next), ReadStatus::Ok);
    EXPECT_EQ(next, 9);
}

TEST_F(FileChannel, AnswerIsOneLineAndLeftOutValuesKeepTheirPresentValues) {
    // "3" alone at a prompt of five present values changes only the first.
    load("3\n4,,,2.0\n\n");
    int number = 1;
    double xShift = 0.5, zShift = 0.25, xMult = 1.0, zMult = 1.0;
    EXPECT_EQ(readAnswer(15, number, xShift, zShift, xMult, zMult), ReadStatus::Ok);
    EXPECT_EQ(number, 3);
    EXPECT_DOUBLE_EQ(xShift, 0.5);
    EXPECT_DOUBLE_EQ(zMult, 1.0);
    // "4,,,2.0": the number and the x-stretch change, the shifts keep their values.
    EXPECT_EQ(readAnswer(15, number, xShift, zShift, xMult, zMult), ReadStatus::Ok);
    EXPECT_EQ(number, 4);
    EXPECT_DOUBLE_EQ(xShift, 0.5);
    EXPECT_DOUBLE_EQ(zShift, 0.25);
    EXPECT_DOUBLE_EQ(xMult, 2.0);
    // An empty answer line gives no values at all.
    FreeReader empty(15, Span::Answer);
    empty(number);
    EXPECT_TRUE(empty.ok());
    EXPECT_EQ(empty.valuesRead(), 0);
    EXPECT_EQ(number, 4);
    // The answers have ended.
    EXPECT_EQ(readAnswer(15, number), ReadStatus::End);
}

TEST_F(FileChannel, AnswerWithTextIsAFailedRead) {
    load("Q\n");
    int selection = 1;
    EXPECT_EQ(readAnswer(15, selection), ReadStatus::Bad);
    EXPECT_EQ(selection, 1);
}

// Dropping values: the copies of a repeat item are passed over at once, so a count of two
// thousand million costs no more than the text (the reader would otherwise take minutes).
TEST(FreeDecode, DroppedRepeatCopiesArePassedOverInOneStep) {
    FreeReader reader("1 2000000000*1.5 7", true);
    int first = 0, last = 0;
    reader(first).drop<double>(2000000000)(last);
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(first, 1);
    EXPECT_EQ(last, 7);
    EXPECT_EQ(reader.valuesRead(), 2000000002);
}

TEST(FreeDecode, DroppingPartOfARepeatLeavesTheRestForTheNextValues) {
    FreeReader reader("5*2.5 9", true);
    double x = 0.0, y = 0.0;
    int n = 0;
    reader.drop<double>(3)(x)(y)(n);
    EXPECT_TRUE(reader.ok());
    EXPECT_EQ(x, 2.5);
    EXPECT_EQ(y, 2.5);
    EXPECT_EQ(n, 9);
}

TEST(FreeDecode, DroppedValuesAreCheckedOnceForTheirRepeat) {
    FreeReader reals("1 2000000000*1.5", true);
    int first = 0;
    reals(first).drop<int>(2000000000);  // 1.5 is no whole number
    EXPECT_TRUE(reals.failed());
    EXPECT_EQ(reals.badItem(), "1.5");
    FreeReader bad("3 X", true);
    bad.drop<int>(5);
    EXPECT_TRUE(bad.failed());
}

TEST(FreeDecode, DroppingAfterASlashOrAnEmptyRepeatEndsAtOnce) {
    FreeReader stopped("1.0 /", true);
    stopped.drop<double>(2000000000);
    EXPECT_TRUE(stopped.ok());
    EXPECT_EQ(stopped.valuesRead(), 1);
    FreeReader empty("2000000000* 4", true);
    int n = 0;
    empty.drop<int>(2000000000)(n);
    EXPECT_TRUE(empty.ok());
    EXPECT_EQ(n, 4);
    EXPECT_EQ(empty.valuesRead(), 1);
    FreeReader shortText("1 2", true);
    shortText.drop<int>(2000000000);
    EXPECT_TRUE(shortText.atEnd());
}
