// HEADER: the title box of the program, always on the dialogue output channel 12.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "control/control.h"
#include "io/channels.h"

namespace {
class Header : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        io::setStdoutStream(&out_);
    }
    void TearDown() override {
        io::resetAll();
        io::setStdoutStream(nullptr);
    }
    std::ostringstream out_;
};

const std::string kStars = "      " + std::string(63, '*');
const std::string kEmptyBox = "      I" + std::string(61, ' ') + "I";
}  // namespace

TEST_F(Header, TheBoxNamesTheProgramAndTheVersion) {
    io::bindStdout(12);
    HEADER(2, "12 Jan 2017");
    std::string expected = "\n\n\n\n" + kStars + "\n" + kEmptyBox + "\n" +
                           "      I                       PROGRAM KALMO                         I\n" + kEmptyBox +
                           "\n" + "      I    SLOPE STABILITY / BEARING CAPACITY / EARTH PRESSURES     I\n" +
                           kEmptyBox + "\n" +
                           "      I               Program Version : 12 Jan 2017                 I\n" +
                           kEmptyBox + "\n" + kStars + "\n";
    EXPECT_EQ(out_.str(), expected);
}

TEST_F(Header, EveryBoxLineIsSixtyThreeWideAfterSixBlanks) {
    io::bindStdout(12);
    HEADER(2, "12 Jan 2017");
    std::istringstream lines(out_.str());
    std::string line;
    int boxLines = 0;
    while (std::getline(lines, line)) {
        if (line.empty()) continue;
        ++boxLines;
        EXPECT_EQ(line.size(), 69u) << line;
        EXPECT_EQ(line.substr(0, 6), "      ");
    }
    EXPECT_EQ(boxLines, 9);
}

TEST_F(Header, TheChannelArgumentDoesNotChooseTheChannel) {
    io::bindNull(12);
    io::bindStdout(6);
    HEADER(6, "12 Jan 2017");
    EXPECT_EQ(out_.str(), "");
}
