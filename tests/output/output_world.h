// The records and channels the output routines work on, for the sketch and post-processor
// tests: a fresh run with the result file (16), the post-processor file (17), the console (12)
// and the log copy (9) on files of a temporary folder, and helpers to lay down slices.

#pragma once

#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "io/channels.h"
#include "records.h"
#include "support/tempdir.h"

namespace kalmo_test {

using Lines = std::vector<std::string>;

inline Lines splitLines(const std::string& text) {
    Lines lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

inline const std::string kPageTopMark = "<PAGE TOP>";

// A slice with vertical sides from x1 to x2: top z1 (left) and z2 (right), base z4 (left) and
// z3 (right); the load point at the middle of the slice.
inline void putSliceCorners(int i, double x1, double x2, double z1, double z2, double z3, double z4) {
    SURF.XX(1, i) = x1;
    SURF.XX(4, i) = x1;
    SURF.XX(2, i) = x2;
    SURF.XX(3, i) = x2;
    SURF.XX(5, i) = (x1 + x2) / 2.0;
    SURF.ZZ(1, i) = z1;
    SURF.ZZ(2, i) = z2;
    SURF.ZZ(3, i) = z3;
    SURF.ZZ(4, i) = z4;
    SURF.ZZ(5, i) = (z1 + z2 + z3 + z4) / 4.0;
}

class OutputWorld : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        clearRecords();
        MASTER.NF16 = 16;
        MASTER.NF17 = 17;
        MASTER.NFOUT = 12;
        POSTGRAF.NFCOPY = 9;
        ASSERT_EQ(io::openNew(16, dir_.path("KALMO.RES")), 0);
        ASSERT_EQ(io::openNew(17, dir_.path("KALMO.PLT")), 0);
        ASSERT_EQ(io::openNew(12, dir_.path("CONSOLE.TXT")), 0);
        ASSERT_EQ(io::openNew(9, dir_.path("COPY.TXT")), 0);
        MASTER.EPS = 1.0E-20f;
        ISUR.NSRFCP = NSURFCOPY;
        TEXT.VERSION.set("12 Jan 2017");
        TEXT.TITLE(1).set("SLOPE AT THE RIVER BANK");
        TEXT.TITLE(2).set("SECTION A-A");
    }
    void TearDown() override { io::resetAll(); }

    // The lines of a file channel, each page top line checked and replaced by a mark.
    static Lines pages(int unit) {
        Lines lines = splitLines(io::contents(unit));
        static const std::regex kTop(
            "\f KALMO  Output   Program Version = 12 Jan 2017    Time = "
            "[0-3][0-9] (JAN|FEB|MAR|APR|MAY|JUN|JUL|AUG|SEP|OCT|NOV|DEC) [0-9]{4}  [0-2][0-9]:[0-5][0-9]:[0-5][0-9]");
        for (std::string& line : lines) {
            if (!line.empty() && line[0] == '\f') {
                EXPECT_TRUE(std::regex_match(line, kTop)) << "page top: " << line;
                line = kPageTopMark;
            }
        }
        return lines;
    }
    static Lines console() { return splitLines(io::contents(12)); }
    static Lines copy() { return splitLines(io::contents(9)); }

    TempDir dir_;
};

}  // namespace kalmo_test
