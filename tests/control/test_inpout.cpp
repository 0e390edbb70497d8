// INPOUT: the print-type switch after the marker "IPRTTP" in columns 11 to 16.

#include <gtest/gtest.h>

#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "support/tempdir.h"

namespace {
class Inpout : public ::testing::Test {
protected:
    void SetUp() override { io::resetAll(); }
    void TearDown() override { io::resetAll(); }
    int flagFor(const std::string& text, int start) {
        dir_.write("F.TXT", text);
        EXPECT_EQ(io::openOld(20, dir_.path("F.TXT")), 0);
        int flag = start;
        INPOUT(20, flag);
        return flag;
    }
    kalmo_test::TempDir dir_;
};
}  // namespace

TEST_F(Inpout, ANegativeValueOnTheMarkerLineSetsTheFlag) {
    EXPECT_EQ(flagFor("header\n-1        IPRTTP\nrest\n", 7), 1);
}

TEST_F(Inpout, AZeroOrPositiveValueClearsTheFlag) {
    EXPECT_EQ(flagFor("  3       IPRTTP\n", 7), 0);
    EXPECT_EQ(flagFor("0         IPRTTP\n", 7), 0);
}

TEST_F(Inpout, TheMarkerMustStandInColumnsElevenToSixteen) {
    EXPECT_EQ(flagFor("-1       IPRTTP\n-1         IPRTTP\n", 7), 7);
}

TEST_F(Inpout, WithoutAMarkerTheFlagStaysAndTheFileIsRewound) {
    EXPECT_EQ(flagFor("a\nb\n", 5), 5);
    std::string line;
    ASSERT_EQ(io::readLine(20, line), io::kReadOk);
    EXPECT_EQ(line, "a");
}
