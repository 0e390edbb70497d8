// control/yesno.cpp
//
// YESNO — a yes/no answer read from an answer channel.
//
// The caller has written the question. Up to three answer lines are read (70 characters each)
// from channel UNIT; channel 0 stands for the standard input (channel 5). The first character
// that is not blank within columns 1 to 10 decides: Y or y is yes, N or n is no. Anything
// else, ten blanks, or no line at all (the answers have ended) is a failed attempt, after
// which the request to answer Y or N goes to the log file, channel 18, not to the console.
// Three failed attempts give 0, which every caller takes as no; at the end of the answers the
// three attempts fail at once, so a run never waits here for answers that cannot come.
//
// Reads:  lines from channel UNIT (5 when UNIT is 0)
// Writes: ANSWER: 1 yes, 2 no, 0 no valid answer; the retry request on channel 18
// IERR:   not used

#include <string>

#include "control/control.h"
#include "io/channels.h"

namespace {
constexpr int kAnswerLength = 70;
constexpr size_t kColumnsLooked = 10;
constexpr int kAttempts = 3;
constexpr int kStandardInput = 5;
constexpr int kLogFile = 18;
}  // namespace

void YESNO(int& answer, int unit) {
    answer = 0;
    const int channel = unit == 0 ? kStandardInput : unit;
    std::string buffer;
    for (int attempt = 1; attempt <= kAttempts; ++attempt) {
        if (io::readLine(channel, buffer, kAnswerLength) == io::kReadOk) {
            const size_t looked = buffer.size() < kColumnsLooked ? buffer.size() : kColumnsLooked;
            for (size_t k = 0; k < looked; ++k) {
                char c = buffer[k];
                if (c == ' ') continue;
                if (c == 'Y' || c == 'y') {
                    answer = 1;
                    return;
                }
                if (c == 'N' || c == 'n') {
                    answer = 2;
                    return;
                }
                break;
            }
        }
        io::writeLine(kLogFile, " Y/N REQUIRED , PLEASE TRY AGAIN..... ");
    }
}
