// TIMER0 and TIMER8: the date-and-time record, the elapsed seconds and the run stamps.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "support/tempdir.h"

namespace {
class Timer0 : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        io::setStdoutStream(&screen_);
        resetRunClock();
        dattim_.fill(-1);
    }
    void TearDown() override {
        setClockOverride(nullptr);
        resetRunClock();
        io::resetAll();
        io::setStdoutStream(nullptr);
    }
    void clockAt(int year, int month, int day, int hour, int minute, int second) {
        const int clock[8] = {year, month, day, 0, hour, minute, second, 37};
        setClockOverride(clock);
    }
    std::ostringstream screen_;
    Arr1<int, 6> dattim_;
    kalmo_test::TempDir dir_;
};
}  // namespace

TEST_F(Timer0, CopiesTheClockIntoTheDateAndTimeRecord) {
    clockAt(2017, 1, 12, 9, 8, 7);
    int elapsed = -1;
    TIMER0(0, -1, -1, elapsed, dattim_);
    EXPECT_EQ(dattim_(1), 2017);
    EXPECT_EQ(dattim_(2), 1);
    EXPECT_EQ(dattim_(3), 12);
    EXPECT_EQ(dattim_(4), 9);
    EXPECT_EQ(dattim_(5), 8);
    EXPECT_EQ(dattim_(6), 7);
    EXPECT_EQ(elapsed, 0);
    EXPECT_EQ(screen_.str(), "");
}

TEST_F(Timer0, ElapsedSecondsCountFromTheFirstCall) {
    clockAt(2017, 1, 12, 9, 8, 7);
    int elapsed = -1;
    TIMER0(1, -1, -1, elapsed, dattim_);
    clockAt(2017, 1, 12, 10, 9, 10);  // 1 h 1 min 3 s later
    TIMER0(0, -1, -1, elapsed, dattim_);
    EXPECT_EQ(elapsed, 3600 + 60 + 3);
}

TEST_F(Timer0, ARunThatPassesMidnightGetsANegativeElapsedTime) {
    clockAt(2017, 3, 4, 23, 59, 50);
    int elapsed = 0;
    TIMER0(1, -1, -1, elapsed, dattim_);
    clockAt(2017, 3, 5, 0, 0, 10);
    TIMER0(2, -1, -1, elapsed, dattim_);
    EXPECT_EQ(elapsed, 10 - (23 * 3600 + 59 * 60 + 50));
    EXPECT_LT(elapsed, 0);
}

TEST_F(Timer0, AFirstCallAtMidnightSharpLeavesTheStartToTheNextCall) {
    clockAt(2017, 3, 5, 0, 0, 0);
    int elapsed = -1;
    TIMER0(0, -1, -1, elapsed, dattim_);
    EXPECT_EQ(elapsed, 0);
    clockAt(2017, 3, 5, 0, 1, 0);
    TIMER0(0, -1, -1, elapsed, dattim_);
    EXPECT_EQ(elapsed, 0);  // this call set the start
    clockAt(2017, 3, 5, 0, 1, 30);
    TIMER0(0, -1, -1, elapsed, dattim_);
    EXPECT_EQ(elapsed, 30);
}

TEST_F(Timer0, DayFiveOfMarchPrintsAsZeroFiveMar) {
    clockAt(2017, 3, 5, 7, 4, 9);
    ASSERT_EQ(io::openNew(18, dir_.path("KALMO.LOG")), 0);
    int elapsed = 0;
    TIMER0(1, 18, -1, elapsed, dattim_);
    EXPECT_EQ(io::contents(18), "\n THIS RUN WAS STARTED :  05 MAR 2017  AT  07:04:09 HOURS\n");
}

TEST_F(Timer0, TheEndStampGoesToBothChannels) {
    clockAt(2016, 12, 31, 23, 5, 0);
    ASSERT_EQ(io::openNew(16, dir_.path("KALMO.RES")), 0);
    io::bindStdout(12);
    int elapsed = 0;
    TIMER0(2, 12, 16, elapsed, dattim_);
    const std::string stamp = "\n THIS RUN WAS TERMINATED :  31 DEC 2016  AT  23:05:00 HOURS\n";
    EXPECT_EQ(io::contents(16), stamp);
    EXPECT_EQ(screen_.str(), stamp);
}

TEST_F(Timer0, ChannelZeroMeansChannelTwoAndNegativeMeansNone) {
    clockAt(2017, 6, 1, 12, 0, 0);
    io::bindStdout(2);
    int elapsed = 0;
    TIMER0(1, 0, 0, elapsed, dattim_);
    EXPECT_EQ(screen_.str(), "\n THIS RUN WAS STARTED :  01 JUN 2017  AT  12:00:00 HOURS\n");
    screen_.str("");
    TIMER0(2, -1, -5, elapsed, dattim_);
    EXPECT_EQ(screen_.str(), "");
}

TEST_F(Timer0, EveryMonthHasItsAbbreviation) {
    const char* names[12] = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN", "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
    io::bindStdout(2);
    for (int month = 1; month <= 12; ++month) {
        clockAt(2017, month, 28, 1, 2, 3);
        screen_.str("");
        int elapsed = 0;
        TIMER0(1, 0, -1, elapsed, dattim_);
        EXPECT_NE(screen_.str().find(std::string("28 ") + names[month - 1] + " 2017"), std::string::npos) << month;
    }
}

TEST_F(Timer0, TheWallClockGivesAPlausibleDate) {
    int clock[8] = {0, 0, 0, -1, 0, 0, 0, 0};
    TIMER8(clock);
    EXPECT_GE(clock[0], 2017);
    EXPECT_GE(clock[1], 1);
    EXPECT_LE(clock[1], 12);
    EXPECT_GE(clock[2], 1);
    EXPECT_LE(clock[2], 31);
    EXPECT_EQ(clock[3], 0);
    EXPECT_LE(clock[4], 23);
    EXPECT_LE(clock[5], 59);
    EXPECT_LE(clock[6], 60);
    EXPECT_LE(clock[7], 99);
}

TEST_F(Timer0, TheClockOverrideIsGivenBackWhole) {
    const int fixed[8] = {2001, 2, 3, 0, 4, 5, 6, 7};
    setClockOverride(fixed);
    int clock[8] = {};
    TIMER8(clock);
    for (int k = 0; k < 8; ++k) EXPECT_EQ(clock[k], fixed[k]);
}
