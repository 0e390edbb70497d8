// io/channels.h
//
// The channel table: numbered input/output channels as the whole program uses them.
//
// A channel is a number (5, 6, 8, 12, 14 ...) bound to the standard input, the standard output,
// the null device or a named text file. Files are sequential text files read and written line
// by line, with rewind and step-back-one-line. Writing a line after a rewind or step-back cuts
// the file there, as a sequential file does. Channels 5 and 8, when both are bound to the
// standard input, share one buffer, so answers are consumed in order whichever channel reads.
//
// Status codes: 0 success; kOpenNotFound (6416) an existing file was asked for and is missing;
// kOpenFailed a file could not be created or read. Line reads return kReadOk, kReadEnd (end of
// file) or kReadError (channel not open for reading).

#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace io {

constexpr int kOpenNotFound = 6416;  // the file layer's code for a missing file
constexpr int kOpenFailed = 6422;    // any other failure to open

constexpr int kReadOk = 0;
constexpr int kReadEnd = -1;
constexpr int kReadError = 1;

constexpr int kMaxChannel = 99;
constexpr int kLineLength = 80;  // input lines are read as 80 characters

// Binding of channels to the process's own streams and to the null device.
void bindStdin(int unit);
void bindStdout(int unit);
void bindNull(int unit);

// Opens a named file. openOld: the file must exist; its lines are read from the start.
// openNew: the file is created, or emptied when it exists. Returns 0 or a status code.
int openOld(int unit, const std::string& path);
int openNew(int unit, const std::string& path);

void close(int unit);
void closeAll();
bool isOpen(int unit);
void rewind(int unit);
void backspace(int unit);

// Reads one line: at most maxLength characters are kept (longer lines are cut), a carriage
// return before the line end is dropped. The line is not padded.
int readLine(int unit, std::string& line, int maxLength = kLineLength);

// The position of a file channel as a line number: after a line has been read, its number
// in the file (1 for the first line); 0 after a rewind, and for every other kind of channel.
int linePosition(int unit);

// Writes one line. A line left open by a prompt is ended first: every write starts a new line.
void writeLine(int unit, std::string_view text);

// Writes text without a line end and flushes, so that an answer is typed on the same line.
void writePrompt(int unit, std::string_view text);

// Whole contents of a file channel (for tests and the echo of a file); empty for streams.
std::string contents(int unit);

// Forgets everything, including stdin lines read so far (tests start from a clean table).
void resetAll();

// Reads the standard input from a string instead of the process's stdin (tests).
void setStdinText(const std::string& text);

// True when the standard input is a terminal, where a user can type. A test text (above) is
// no terminal unless setStdinTerminal(true) says it stands for one (tests).
bool stdinIsTerminal();
void setStdinTerminal(bool terminal);

// Sends the standard output channels to another stream (tests); nullptr restores std::cout.
void setStdoutStream(std::ostream* stream);

}  // namespace io
