// YESNO: the first non-blank character of columns 1 to 10 decides; three failed attempts
// give 0; the retry request goes to the log file only.

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "support/tempdir.h"

namespace {
class Yesno : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        io::setStdoutStream(&console_);
        io::bindStdout(12);
        ASSERT_EQ(io::openNew(18, dir_.path("KALMO.LOG")), 0);
    }
    void TearDown() override {
        io::resetAll();
        io::setStdoutStream(nullptr);
    }
    // Answers on channel 8 from an answer file.
    void answers(const std::string& text) {
        dir_.write("SVAR.TMP", text);
        ASSERT_EQ(io::openOld(8, dir_.path("SVAR.TMP")), 0);
    }
    int ask() {
        int answer = -1;
        YESNO(answer, 8);
        return answer;
    }
    int retries() {
        std::string log = io::contents(18);
        int count = 0;
        for (size_t at = log.find(kRetry); at != std::string::npos; at = log.find(kRetry, at + 1)) ++count;
        return count;
    }
    static constexpr const char* kRetry = " Y/N REQUIRED , PLEASE TRY AGAIN..... \n";
    kalmo_test::TempDir dir_;
    std::ostringstream console_;
};
}  // namespace

TEST_F(Yesno, LeadingBlanksBeforeYesGiveYes) {
    answers("   yes\n");
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(retries(), 0);
}

TEST_F(Yesno, LowerAndUpperCaseBothCount) {
    answers("y\nN\nY\nn\n");
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(ask(), 2);
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(ask(), 2);
}

TEST_F(Yesno, AYInColumnElevenIsAFailedAttempt) {
    answers("          Y\nn\n");
    EXPECT_EQ(ask(), 2);  // the second line answers
    EXPECT_EQ(retries(), 1);
}

TEST_F(Yesno, AYInColumnTenStillCounts) {
    answers("         Y\n");
    EXPECT_EQ(ask(), 1);
}

TEST_F(Yesno, NoGivesTwoNotZero) {
    answers("no\n");
    EXPECT_EQ(ask(), 2);
}

TEST_F(Yesno, ThreeUnusableAnswersGiveZeroAndThreeRetryRequests) {
    answers("x\nx\nx\nY\n");
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(retries(), 3);
    EXPECT_EQ(ask(), 1);  // the fourth line was left for the next question
}

TEST_F(Yesno, TheFirstNonBlankCharacterDecidesAlone) {
    answers(" ny\n xY\nY\n");
    EXPECT_EQ(ask(), 2);  // "n" comes first
    EXPECT_EQ(ask(), 1);  // " xY" fails, then "Y"
    EXPECT_EQ(retries(), 1);
}

TEST_F(Yesno, EmptyAndBlankLinesAreFailedAttempts) {
    answers("\n          \ny\n");
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(retries(), 2);
}

TEST_F(Yesno, TheRetryRequestNeverReachesTheConsole) {
    answers("?\ny\n");
    EXPECT_EQ(ask(), 1);
    EXPECT_EQ(console_.str(), "");
    EXPECT_EQ(retries(), 1);
}

TEST_F(Yesno, AtTheEndOfTheAnswersThreeAttemptsFailAtOnce) {
    answers("");
    EXPECT_EQ(ask(), 0);
    EXPECT_EQ(retries(), 3);
    EXPECT_EQ(ask(), 0);  // and again, without waiting
}

TEST_F(Yesno, AVeryLongAnswerIsJudgedByItsFirstColumns) {
    answers(std::string(5, ' ') + "N" + std::string(100000, 'Y') + "\n");
    EXPECT_EQ(ask(), 2);
}

TEST_F(Yesno, ChannelZeroReadsTheStandardInput) {
    io::setStdinText("  Yes\n");
    io::bindStdin(5);
    int answer = -1;
    YESNO(answer, 0);
    EXPECT_EQ(answer, 1);
}

TEST_F(Yesno, StandardInputClosedGivesZero) {
    io::setStdinText("");
    io::bindStdin(8);
    int answer = -1;
    YESNO(answer, 8);
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(retries(), 3);
}
