// Whole runs of the built program in a temporary folder, and the comparison of what they
// wrote with the expected text of a case folder.
//
// A case folder tests/data/<case>/ holds:
//   input files        every file at the top of the folder except the ones named below is
//                      copied into the empty working folder of the run (KALMO.INP, SVAR.TMP ...)
//   args.txt           optional: the command line arguments, on one line
//   stdin.txt          optional: the standard input of the run (else the null device)
//   absent.txt         optional: files the run must not create, one name a line
//   status.txt         optional: the exit status the run must end with (else 0)
//   expected/<file>    the text each named file must hold after the run; expected/screen.txt
//                      is the standard output
// Dates and times in the output are masked before the comparison ("DD MON YYYY", "HH:MM:SS",
// " TIME USED = <seconds> SECONDS"), and so is the working folder of the run ("<folder>"), so
// the expected files hold the masked form.
// To run a case by hand: copy its input files into an empty folder and start the program there
// with the arguments and standard input of the case.

#pragma once

#include <gtest/gtest.h>

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "support/tempdir.h"

namespace kalmo_test {

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

inline std::string maskClock(const std::string& text) {
    static const std::regex date(R"(\d\d [A-Z?]{3} \d{4})");
    static const std::regex time(R"(\d\d:\d\d:\d\d)");
    static const std::regex used(R"( TIME USED = *-?\d+ SECONDS)");
    std::string masked = std::regex_replace(text, date, "DD MON YYYY");
    masked = std::regex_replace(masked, time, "HH:MM:SS");
    return std::regex_replace(masked, used, " TIME USED = <seconds> SECONDS");
}

// The working folder of a run, wherever the test made it, reads as "<folder>".
inline std::string maskFolder(std::string text, const std::filesystem::path& folder) {
    std::error_code ec;
    for (const std::string& name : {std::filesystem::canonical(folder, ec).string(), folder.string()}) {
        if (name.empty()) continue;
        for (size_t at = text.find(name); at != std::string::npos; at = text.find(name, at))
            text.replace(at, name.size(), "<folder>");
    }
    return text;
}

inline std::string shellQuoted(const std::string& text) {
    std::string quoted = "'";
    for (char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

struct RunOutcome {
    int exitCode = -1;   // 124: the run did not end within the time limit
    std::string screen;  // the standard output
};

// Runs the program in `folder` with the given arguments (already split) and standard input
// file (empty: the null device). A run that has not ended after a minute is stopped.
inline RunOutcome runProgram(const std::string& folder, const std::vector<std::string>& arguments,
                             const std::string& stdinFile, const std::string& screenFile) {
    std::string command = "cd " + shellQuoted(folder) + " && timeout 60 " + shellQuoted(KALMO_EXE);
    for (const std::string& argument : arguments) command += " " + shellQuoted(argument);
    command += " < " + shellQuoted(stdinFile.empty() ? "/dev/null" : stdinFile);
    command += " > " + shellQuoted(screenFile) + " 2>&1";
    int status = std::system(command.c_str());
    RunOutcome outcome;
    outcome.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    outcome.screen = readFile(screenFile);
    return outcome;
}

// Runs the case folder tests/data/<name> and compares every expected file.
inline void checkCase(const std::string& name) {
    namespace fs = std::filesystem;
    const fs::path caseFolder = fs::path(KALMO_TEST_DATA) / name;
    ASSERT_TRUE(fs::is_directory(caseFolder)) << caseFolder;
    TempDir root;
    const fs::path work = fs::path(root.path()) / "run";
    fs::create_directory(work);

    std::vector<std::string> arguments;
    std::string stdinFile;
    std::vector<std::string> absent;
    int expectedStatus = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(caseFolder)) {
        if (!entry.is_regular_file()) continue;
        const std::string file = entry.path().filename().string();
        if (file == "args.txt") {
            std::istringstream words(readFile(entry.path()));
            for (std::string word; words >> word;) arguments.push_back(word);
        } else if (file == "stdin.txt") {
            stdinFile = entry.path().string();
        } else if (file == "status.txt") {
            std::istringstream(readFile(entry.path())) >> expectedStatus;
        } else if (file == "absent.txt") {
            std::istringstream names(readFile(entry.path()));
            for (std::string absentName; names >> absentName;) absent.push_back(absentName);
        } else {
            fs::copy_file(entry.path(), work / file);
        }
    }

    RunOutcome outcome = runProgram(work.string(), arguments, stdinFile, root.path("screen.txt"));
    EXPECT_EQ(outcome.exitCode, expectedStatus) << "case " << name;

    int compared = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(caseFolder / "expected")) {
        const std::string file = entry.path().filename().string();
        const std::string expected = readFile(entry.path());
        const std::string actual = file == "screen.txt" ? outcome.screen : readFile(work / file);
        EXPECT_TRUE(file == "screen.txt" || fs::exists(work / file)) << "case " << name << ": " << file << " missing";
        EXPECT_EQ(maskClock(maskFolder(actual, work)), expected) << "case " << name << ": " << file;
        ++compared;
    }
    EXPECT_GT(compared, 0) << "case " << name << " has no expected files";
    for (const std::string& file : absent) EXPECT_FALSE(fs::exists(work / file)) << "case " << name << ": " << file;
}

}  // namespace kalmo_test
