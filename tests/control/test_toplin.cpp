// TOPLIN: the page top line of an output file.

#include <gtest/gtest.h>

#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "support/tempdir.h"

namespace {
class Toplin : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        ASSERT_EQ(io::openNew(16, dir_.path("KALMO.RES")), 0);
    }
    void TearDown() override { io::resetAll(); }
    kalmo_test::TempDir dir_;
};

Arr1<int, 6> dateAndTime(int year, int month, int day, int hour, int minute, int second) {
    Arr1<int, 6> dattim;
    dattim(1) = year;
    dattim(2) = month;
    dattim(3) = day;
    dattim(4) = hour;
    dattim(5) = minute;
    dattim(6) = second;
    return dattim;
}
}  // namespace

TEST_F(Toplin, DayFiveOfMarchPrintsAsZeroFiveMar) {
    TOPLIN(16, "12 Jan 2017", dateAndTime(2017, 3, 5, 14, 7, 3));
    EXPECT_EQ(io::contents(16), "\f KALMO  Output   Program Version = 12 Jan 2017    Time = 05 MAR 2017  14:07:03\n");
}

TEST_F(Toplin, OneLineStartingWithAFormFeedPerCall) {
    TOPLIN(16, "12 Jan 2017", dateAndTime(2016, 12, 31, 0, 0, 0));
    TOPLIN(16, "12 Jan 2017", dateAndTime(2017, 1, 1, 9, 59, 59));
    EXPECT_EQ(io::contents(16),
              "\f KALMO  Output   Program Version = 12 Jan 2017    Time = 31 DEC 2016  00:00:00\n"
              "\f KALMO  Output   Program Version = 12 Jan 2017    Time = 01 JAN 2017  09:59:59\n");
}

TEST_F(Toplin, TheVersionTakesElevenColumns) {
    TOPLIN(16, "V1", dateAndTime(2017, 10, 20, 1, 2, 3));
    // "V1" and nine blanks fill the eleven columns; four blanks lead the time.
    EXPECT_EQ(io::contents(16),
              "\f KALMO  Output   Program Version = V1" + std::string(9 + 4, ' ') + "Time = 20 OCT 2017  01:02:03\n");
}
