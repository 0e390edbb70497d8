// ECHO: the listing of a file with column rulers and line numbers.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "support/tempdir.h"

namespace {
class Echo : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        io::setStdoutStream(&console_);
        io::bindStdout(12);
        ASSERT_EQ(io::openNew(16, dir_.path("KALMO.RES")), 0);
    }
    void TearDown() override {
        io::resetAll();
        io::setStdoutStream(nullptr);
    }
    void input(const std::string& text) {
        dir_.write("KALMO.INP", text);
        ASSERT_EQ(io::openOld(14, dir_.path("KALMO.INP")), 0);
    }
    kalmo_test::TempDir dir_;
    std::ostringstream console_;
};

// The two ruler lines: the tens digit of columns 1-80 above, the units digit below.
std::string rulers() {
    std::string tens = std::string(10, ' ') + "000000000";
    for (char digit = '1'; digit <= '7'; ++digit) tens += std::string(10, digit);
    tens += "8";
    std::string units = std::string(10, ' ');
    for (int k = 0; k < 8; ++k) units += "1234567890";
    return tens + "\n" + units + "\n";
}

std::string head(int nfr) {
    return "#\n          ECHO PRINT OF DATA ON FORTRAN UNIT NUMBER =" + std::string(nfr < 10 ? "  " : " ") +
           std::to_string(nfr) + "\n\n" + rulers() + "\n";
}

std::string listed(int number, const std::string& text) {
    std::string columns = text + std::string(80 - text.size(), ' ');
    std::string numberField = std::to_string(number);
    numberField = std::string(5 - numberField.size(), ' ') + numberField;
    return numberField + "---- " + columns + "\n";
}
}  // namespace

TEST_F(Echo, TheRulersMarkEightyColumns) {
    std::string r = rulers();
    EXPECT_EQ(r.substr(0, r.find('\n')).size(), 90u);
    // column 25 of the input stands under "2" above and "5" below
    std::string tens = r.substr(0, r.find('\n'));
    std::string units = r.substr(r.find('\n') + 1, 90);
    EXPECT_EQ(tens[10 + 24], '2');
    EXPECT_EQ(units[10 + 24], '5');
    EXPECT_EQ(tens[10 + 79], '8');
    EXPECT_EQ(units[10 + 79], '0');
}

TEST_F(Echo, AFileWithFewerLinesThanTheMaximumIsListedWhole) {
    input("TITLE ONE\n\n  100  1.0  2.0\n");
    ECHO(14, 16, 10);
    std::string expected = head(14) + listed(1, "TITLE ONE") + listed(2, "") + listed(3, "  100  1.0  2.0") +
                           rulers() + "\n";
    EXPECT_EQ(io::contents(16), expected);
    EXPECT_EQ(console_.str(), "");
}

TEST_F(Echo, AFileWithMoreLinesThanTheMaximumStopsWithTheErrorLine) {
    input("A\nB\nC\nD\n");
    ECHO(14, 16, 2);
    EXPECT_EQ(io::contents(16), head(14) + listed(1, "A") + listed(2, "B") + rulers() + "\n");
    EXPECT_EQ(console_.str(), "\n **** ERROR IN SR/ECHO  NFR,NFW,NOW,MAX=   14   16    2    2\n");
}

TEST_F(Echo, LinesAreListedAsTheirFirstEightyColumns) {
    std::string longLine(79, 'x');
    longLine += "yZZZ";
    input(longLine + "\n");
    ECHO(14, 16, 5);
    EXPECT_EQ(io::contents(16), head(14) + listed(1, longLine.substr(0, 80)) + rulers() + "\n");
}

TEST_F(Echo, TheFileIsRewoundBeforeAndAfter) {
    input("first\nsecond\n");
    std::string line;
    io::readLine(14, line);
    ECHO(14, 16, 10);
    EXPECT_NE(io::contents(16).find(listed(1, "first")), std::string::npos);
    ASSERT_EQ(io::readLine(14, line), io::kReadOk);
    EXPECT_EQ(line, "first");
}

TEST_F(Echo, AChannelThatCannotBeReadStopsTheListingWithTheErrorLine) {
    io::bindStdout(7);
    ECHO(7, 16, 10);
    EXPECT_EQ(io::contents(16), head(7) + rulers() + "\n");
    EXPECT_EQ(console_.str(), "\n **** ERROR IN SR/ECHO  NFR,NFW,NOW,MAX=    7   16    1   10\n");
}

TEST_F(Echo, AnEmptyFileGivesRulersOnly) {
    input("");
    ECHO(14, 16, 10);
    EXPECT_EQ(io::contents(16), head(14) + rulers() + "\n");
}
