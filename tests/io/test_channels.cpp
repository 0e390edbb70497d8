// The channel table: files, streams, the null device, rewind and step-back.

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>

#include "io/channels.h"
#include "support/tempdir.h"

using namespace io;

namespace {
class Channels : public ::testing::Test {
protected:
    void SetUp() override { resetAll(); }
    void TearDown() override {
        setStdoutStream(nullptr);
        resetAll();
    }
    kalmo_test::TempDir dir_;
};
}  // namespace

TEST_F(Channels, OpenOldOfAMissingFileGivesTheNotFoundCode) {
    EXPECT_EQ(openOld(14, dir_.path("KALMO.INP")), kOpenNotFound);
    EXPECT_EQ(kOpenNotFound, 6416);
    EXPECT_FALSE(isOpen(14));
}

TEST_F(Channels, OpenNewInAMissingFolderFails) {
    EXPECT_NE(openNew(16, dir_.path("no/such/folder/KALMO.RES")), 0);
}

TEST_F(Channels, LinesAreCutAtEightyAndCarriageReturnsDropped) {
    std::string longLine(100, 'A');
    dir_.write("IN.TXT", "first\r\n" + longLine + "\nlast");
    ASSERT_EQ(openOld(14, dir_.path("IN.TXT")), 0);
    std::string line;
    ASSERT_EQ(readLine(14, line), kReadOk);
    EXPECT_EQ(line, "first");
    ASSERT_EQ(readLine(14, line), kReadOk);
    EXPECT_EQ(line, std::string(80, 'A'));
    ASSERT_EQ(readLine(14, line), kReadOk);  // a last line without a line end is still a line
    EXPECT_EQ(line, "last");
    EXPECT_EQ(readLine(14, line), kReadEnd);
    EXPECT_EQ(readLine(14, line), kReadEnd);
}

TEST_F(Channels, ReadingAnOutputOrClosedChannelIsAnErrorNotEndOfFile) {
    std::string line;
    EXPECT_EQ(readLine(33, line), kReadError);
    bindStdout(6);
    EXPECT_EQ(readLine(6, line), kReadError);
    EXPECT_EQ(readLine(200, line), kReadError);
}

TEST_F(Channels, RewindAndBackspace) {
    dir_.write("IN.TXT", "a\nb\nc\n");
    ASSERT_EQ(openOld(15, dir_.path("IN.TXT")), 0);
    std::string line;
    readLine(15, line);
    readLine(15, line);
    backspace(15);
    readLine(15, line);
    EXPECT_EQ(line, "b");
    rewind(15);
    readLine(15, line);
    EXPECT_EQ(line, "a");
    rewind(15);
    backspace(15);  // at the start: nothing happens
    readLine(15, line);
    EXPECT_EQ(line, "a");
}

TEST_F(Channels, TheLinePositionIsTheNumberOfTheLineReadLast) {
    dir_.write("IN.TXT", "a\nb\nc\n");
    ASSERT_EQ(openOld(15, dir_.path("IN.TXT")), 0);
    std::string line;
    EXPECT_EQ(linePosition(15), 0);
    readLine(15, line);
    readLine(15, line);
    EXPECT_EQ(linePosition(15), 2);
    backspace(15);
    EXPECT_EQ(linePosition(15), 1);
    readLine(15, line);
    readLine(15, line);
    EXPECT_EQ(readLine(15, line), kReadEnd);  // the end of the file leaves the last line named
    EXPECT_EQ(linePosition(15), 3);
    rewind(15);
    EXPECT_EQ(linePosition(15), 0);
    bindStdout(6);
    EXPECT_EQ(linePosition(6), 0);
    EXPECT_EQ(linePosition(200), 0);
}

TEST_F(Channels, ALineReadWithoutALimitKeepsAllItsCharacters) {
    dir_.write("IN.TXT", std::string(100, 'A') + "\r\n");
    ASSERT_EQ(openOld(14, dir_.path("IN.TXT")), 0);
    std::string line;
    ASSERT_EQ(readLine(14, line, -1), kReadOk);
    EXPECT_EQ(line, std::string(100, 'A'));
}

TEST_F(Channels, WritesGoThroughToDisk) {
    ASSERT_EQ(openNew(16, dir_.path("OUT.TXT")), 0);
    writeLine(16, "one");
    writeLine(16, "two");
    io::close(16);
    EXPECT_EQ(dir_.read("OUT.TXT"), "one\ntwo\n");
}

TEST_F(Channels, WriteAfterRewindStartsTheFileAgain) {
    ASSERT_EQ(openNew(16, dir_.path("KALMO.RES")), 0);
    writeLine(16, "old 1");
    writeLine(16, "old 2");
    rewind(16);
    writeLine(16, "new");
    io::close(16);
    EXPECT_EQ(dir_.read("KALMO.RES"), "new\n");
}

TEST_F(Channels, WorkFileWrittenThenReadBack) {
    ASSERT_EQ(openNew(15, dir_.path("KALMO.TMP")), 0);
    writeLine(15, "x");
    writeLine(15, "y");
    rewind(15);
    std::string line;
    ASSERT_EQ(readLine(15, line), kReadOk);
    EXPECT_EQ(line, "x");
    ASSERT_EQ(readLine(15, line), kReadOk);
    EXPECT_EQ(line, "y");
    EXPECT_EQ(readLine(15, line), kReadEnd);
}

TEST_F(Channels, PromptLeavesTheLineOpenUntilTheNextWrite) {
    ASSERT_EQ(openNew(12, dir_.path("SVAR.EKO")), 0);
    writePrompt(12, " .....   ");
    writeLine(12, " NEXT");
    writePrompt(12, " LAST ");
    io::close(12);
    EXPECT_EQ(dir_.read("SVAR.EKO"), " .....   \n NEXT\n LAST \n");
}

TEST_F(Channels, PromptIsOnDiskAtOnce) {
    ASSERT_EQ(openNew(12, dir_.path("SVAR.EKO")), 0);
    writePrompt(12, " ANSWER ");
    EXPECT_EQ(dir_.read("SVAR.EKO"), " ANSWER ");
    io::close(12);
}

TEST_F(Channels, AppendingToAnOldFileWithoutFinalLineEnd) {
    dir_.write("LOG.TXT", "a");
    ASSERT_EQ(openOld(18, dir_.path("LOG.TXT")), 0);
    std::string line;
    readLine(18, line);
    writeLine(18, "b");
    io::close(18);
    EXPECT_EQ(dir_.read("LOG.TXT"), "a\nb\n");
}

TEST_F(Channels, NullDeviceSwallowsWritesAndReadsAsEmpty) {
    bindNull(9);
    writeLine(9, "gone");
    std::string line;
    EXPECT_EQ(readLine(9, line), kReadEnd);
    EXPECT_TRUE(isOpen(9));
}

TEST_F(Channels, StandardInputSharedBetweenChannelsFiveAndEight) {
    setStdinText("first\nsecond\nthird\n");
    bindStdin(5);
    bindStdin(8);
    std::string line;
    ASSERT_EQ(readLine(8, line), kReadOk);
    EXPECT_EQ(line, "first");
    ASSERT_EQ(readLine(5, line), kReadOk);
    EXPECT_EQ(line, "second");
    ASSERT_EQ(readLine(8, line), kReadOk);
    EXPECT_EQ(line, "third");
    EXPECT_EQ(readLine(5, line), kReadEnd);
    EXPECT_EQ(readLine(8, line), kReadEnd);
}

TEST_F(Channels, StandardInputStepBackRereadsTheLine) {
    setStdinText("one\ntwo\n");
    bindStdin(8);
    std::string line;
    readLine(8, line);
    backspace(8);
    readLine(8, line);
    EXPECT_EQ(line, "one");
}

TEST_F(Channels, VeryLongAnswerLineIsCut) {
    setStdinText(std::string(100000, '7') + "\n");
    bindStdin(8);
    std::string line;
    ASSERT_EQ(readLine(8, line), kReadOk);
    EXPECT_EQ(line.size(), 80u);
}

TEST_F(Channels, StandardOutputChannelsShareOneStream) {
    std::ostringstream out;
    setStdoutStream(&out);
    bindStdout(6);
    bindStdout(2);
    writePrompt(6, "ASK ");
    writeLine(2, "TOLD");
    writeLine(6, "DONE");
    setStdoutStream(nullptr);  // give the output back while the test's stream still lives
    EXPECT_EQ(out.str(), "ASK \nTOLD\nDONE\n");
}

TEST_F(Channels, ContentsOfAFileChannel) {
    ASSERT_EQ(openNew(17, dir_.path("KALMO.PLT")), 0);
    writeLine(17, "A");
    writePrompt(17, "B");
    EXPECT_EQ(contents(17), "A\nB");
}

TEST_F(Channels, WriteProtectedFileCanBeRead) {
    dir_.write("HELP.KMO", "TITLE\n");
    std::filesystem::permissions(dir_.path("HELP.KMO"), std::filesystem::perms::owner_read);
    ASSERT_EQ(openOld(21, dir_.path("HELP.KMO")), 0);
    std::string line;
    ASSERT_EQ(readLine(21, line), kReadOk);
    EXPECT_EQ(line, "TITLE");
}
