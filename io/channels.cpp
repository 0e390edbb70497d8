// io/channels.cpp
//
// Channel table. A file channel keeps its lines in memory with a line position, which makes
// rewind and step-back exact; every write also goes through to the file on disk, appended
// while the file grows at its end and rewritten whole when a write cuts the file short.

#include "io/channels.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>
#include <sstream>
#include <vector>

#include <unistd.h>

namespace io {
namespace {

enum class Kind { Closed, Stdin, Stdout, Null, File };

struct Channel {
    Kind kind = Kind::Closed;
    std::string path;
    std::vector<std::string> lines;  // file lines; the last one may still be open
    size_t position = 0;             // index of the next line to read or write
    bool lineOpen = false;           // the last written line was a prompt without line end
    bool diskExact = true;           // false while the disk copy lacks a final line end
    std::ofstream disk;              // write-through copy on disk
};

// The standard input seen by every channel bound to it: lines read so far and the position.
struct StdinSource {
    std::vector<std::string> lines;
    size_t position = 0;
    std::unique_ptr<std::istringstream> testText;
    bool testTerminal = false;  // the test text stands for a terminal
    std::istream& stream() { return testText ? static_cast<std::istream&>(*testText) : std::cin; }
};

std::array<Channel, kMaxChannel + 1> gChannels;
StdinSource gStdin;
bool gStdoutLineOpen = false;
std::ostream* gStdoutStream = nullptr;

std::ostream& stdoutStream() { return gStdoutStream ? *gStdoutStream : std::cout; }

Channel* channel(int unit) {
    if (unit < 0 || unit > kMaxChannel) return nullptr;
    return &gChannels[static_cast<size_t>(unit)];
}

void cutLine(std::string& line, int maxLength) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    if (maxLength >= 0 && line.size() > static_cast<size_t>(maxLength)) line.resize(static_cast<size_t>(maxLength));
}

void rewriteDisk(Channel& c) {
    c.disk.close();
    c.disk.open(c.path, std::ios::out | std::ios::trunc | std::ios::binary);
    for (size_t i = 0; i < c.lines.size(); ++i) {
        c.disk << c.lines[i];
        if (i + 1 < c.lines.size() || !c.lineOpen) c.disk << '\n';
    }
}

// Prepares a file channel for a write at its position: a write after a rewind or a
// step-back cuts the file there. Returns true when the disk copy must be rewritten.
bool cutForWrite(Channel& c) {
    if (c.position < c.lines.size()) {
        c.lines.resize(c.position);
        c.lineOpen = false;
        return true;
    }
    return false;
}

void writeFile(Channel& c, std::string_view text, bool endLine) {
    bool rewrite = cutForWrite(c) || !c.diskExact;
    c.diskExact = true;
    // A file opened for reading gets its disk stream at the first write only, so that a
    // write-protected file (an installed help text) can still be read.
    if (!rewrite && !c.disk.is_open()) c.disk.open(c.path, std::ios::out | std::ios::app | std::ios::binary);
    if (c.lineOpen && !c.lines.empty()) {
        // A prompt left the last line open: this write starts a new line.
        if (!rewrite) c.disk << '\n';
        c.lineOpen = false;
    }
    c.lines.emplace_back(text);
    c.position = c.lines.size();
    c.lineOpen = !endLine;
    if (rewrite) {
        rewriteDisk(c);
    } else {
        c.disk << text;
        if (endLine) c.disk << '\n';
    }
    if (!endLine) c.disk.flush();
}

void writeStdout(std::string_view text, bool endLine) {
    std::ostream& out = stdoutStream();
    if (gStdoutLineOpen) out << '\n';
    out << text;
    if (endLine) {
        out << '\n';
    } else {
        out.flush();
    }
    gStdoutLineOpen = !endLine;
}

int readStdin(std::string& line, int maxLength) {
    if (gStdin.position >= gStdin.lines.size()) {
        std::string fresh;
        if (!std::getline(gStdin.stream(), fresh)) return kReadEnd;
        gStdin.lines.push_back(std::move(fresh));
    }
    line = gStdin.lines[gStdin.position++];
    cutLine(line, maxLength);
    // At a terminal the user's Enter has ended the prompt's line.
    if (!gStdin.testText && isatty(STDIN_FILENO) && gStdoutStream == nullptr) gStdoutLineOpen = false;
    return kReadOk;
}

}  // namespace

void bindStdin(int unit) {
    if (Channel* c = channel(unit)) {
        close(unit);
        c->kind = Kind::Stdin;
    }
}

void bindStdout(int unit) {
    if (Channel* c = channel(unit)) {
        close(unit);
        c->kind = Kind::Stdout;
    }
}

void bindNull(int unit) {
    if (Channel* c = channel(unit)) {
        close(unit);
        c->kind = Kind::Null;
    }
}

int openOld(int unit, const std::string& path) {
    Channel* c = channel(unit);
    if (!c) return kOpenFailed;
    close(unit);
    std::error_code ec;
    if (!std::filesystem::exists(path, ec) || std::filesystem::is_directory(path, ec)) return kOpenNotFound;
    std::ifstream in(path, std::ios::binary);
    if (!in) return kOpenFailed;
    std::vector<std::string> lines;
    std::string line;
    bool endsWithLineEnd = true;
    while (std::getline(in, line)) {
        endsWithLineEnd = !in.eof();
        lines.push_back(std::move(line));
    }
    c->kind = Kind::File;
    c->path = path;
    c->lines = std::move(lines);
    c->position = 0;
    c->lineOpen = false;
    c->diskExact = endsWithLineEnd;
    return 0;
}

int openNew(int unit, const std::string& path) {
    Channel* c = channel(unit);
    if (!c) return kOpenFailed;
    close(unit);
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) return kOpenFailed;
    c->disk.open(path, std::ios::out | std::ios::trunc | std::ios::binary);
    if (!c->disk) return kOpenFailed;
    c->kind = Kind::File;
    c->path = path;
    c->lines.clear();
    c->position = 0;
    c->lineOpen = false;
    c->diskExact = true;
    return 0;
}

void close(int unit) {
    Channel* c = channel(unit);
    if (!c) return;
    if (c->kind == Kind::File) {
        if (c->lineOpen) c->disk << '\n';
        c->disk.close();
    }
    c->diskExact = true;
    if (c->kind == Kind::Stdout) stdoutStream().flush();
    c->kind = Kind::Closed;
    c->path.clear();
    c->lines.clear();
    c->position = 0;
    c->lineOpen = false;
}

void closeAll() {
    for (int unit = 0; unit <= kMaxChannel; ++unit) close(unit);
}

bool isOpen(int unit) {
    Channel* c = channel(unit);
    return c && c->kind != Kind::Closed;
}

void rewind(int unit) {
    Channel* c = channel(unit);
    if (!c) return;
    if (c->kind == Kind::File) c->position = 0;
    if (c->kind == Kind::Stdin) gStdin.position = 0;
}

void backspace(int unit) {
    Channel* c = channel(unit);
    if (!c) return;
    if (c->kind == Kind::File && c->position > 0) c->position = std::min(c->position, c->lines.size()) - 1;
    if (c->kind == Kind::Stdin && gStdin.position > 0) --gStdin.position;
}

int readLine(int unit, std::string& line, int maxLength) {
    line.clear();
    Channel* c = channel(unit);
    if (!c) return kReadError;
    switch (c->kind) {
        case Kind::File:
            if (c->position >= c->lines.size()) return kReadEnd;
            line = c->lines[c->position++];
            cutLine(line, maxLength);
            return kReadOk;
        case Kind::Stdin:
            return readStdin(line, maxLength);
        case Kind::Null:
            return kReadEnd;
        default:
            return kReadError;
    }
}

int linePosition(int unit) {
    Channel* c = channel(unit);
    if (!c || c->kind != Kind::File) return 0;
    return static_cast<int>(std::min(c->position, c->lines.size()));
}

void writeLine(int unit, std::string_view text) {
    Channel* c = channel(unit);
    if (!c) return;
    if (c->kind == Kind::File) writeFile(*c, text, true);
    if (c->kind == Kind::Stdout) writeStdout(text, true);
}

void writePrompt(int unit, std::string_view text) {
    Channel* c = channel(unit);
    if (!c) return;
    if (c->kind == Kind::File) writeFile(*c, text, false);
    if (c->kind == Kind::Stdout) writeStdout(text, false);
}

std::string contents(int unit) {
    Channel* c = channel(unit);
    std::string all;
    if (!c || c->kind != Kind::File) return all;
    for (size_t i = 0; i < c->lines.size(); ++i) {
        all += c->lines[i];
        if (i + 1 < c->lines.size() || !c->lineOpen) all += '\n';
    }
    return all;
}

void resetAll() {
    closeAll();
    gStdin.lines.clear();
    gStdin.position = 0;
    gStdin.testText.reset();
    gStdin.testTerminal = false;
    gStdoutLineOpen = false;
}

void setStdinText(const std::string& text) {
    gStdin.lines.clear();
    gStdin.position = 0;
    gStdin.testText = std::make_unique<std::istringstream>(text);
}

bool stdinIsTerminal() { return gStdin.testText ? gStdin.testTerminal : isatty(STDIN_FILENO) != 0; }

void setStdinTerminal(bool terminal) { gStdin.testTerminal = terminal; }

void setStdoutStream(std::ostream* stream) {
    stdoutStream().flush();
    gStdoutStream = stream;
    gStdoutLineOpen = false;
}

}  // namespace io
