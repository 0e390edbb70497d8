// A small complete input file for the reader's tests, kept as tagged lines so that a test can
// change, insert or remove single records, and a harness that runs READ on it in a temporary
// folder with the channels as the central routine opens them.
//
// The reference deck: two x-lines (x 0 and 20, ground 0 and 2, rock 10), four element columns,
// two z-elements (8 elements, 15 nodes), two horizontal layers and one material triangle; a
// wall at x 10, 4 high (ground level 1 there); two materials; one undrained-strength x-line
// and two node strengths; general pore pressures with one x-line and two node values; one
// point force, one strip load, one soil nail; one general surface; two line control points.

#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "support/tempdir.h"

namespace kalmo_test {

class Deck {
public:
    Deck() {
        add("title1", "KALMO READER TEST DECK");
        add("title2", "SECOND TITLE LINE OF THE TEST DECK");
        add("blank1", "");
        add("c100", "  1.0  1.0");
        add("c200", "  1.0  1.0");
        add("c500", "  1");
        add("c600", "  1");
        add("c700", "  1");
        add("c800", "  10");
        add("c900", "  0.25");
        add("c1200", "  0.3  0.4");
        add("c1300", "  0.1  0.2  0.3");
        add("c1310", "  1");
        add("c1320", "  2");
        add("c1350", "  3");
        add("c1360", "  -2");
        add("c1370", "  1");
        add("c1400", "  0.01");
        add("c1450", "  0.15");
        add("c1500", "  1 2 3 4 5  1.5 2.5 3.5 4.5 5.5");
        add("blank2", "");
        add("gHead", "GEOMETRY");
        add("gCountX", "  2");
        add("gCountZ", "  2");
        add("gCountL", "  2");
        add("gCountT", "  1");
        add("gXHead", "X-LINES");
        add("gX1", "  0.0   0.0  10.0  4");
        add("gX2", " 20.0   2.0  10.0  0");
        add("gShift", "  0 0 0 0.0 0.0");
        add("gElem", "  0 0 0 0");
        add("gLHead", "LAYERS");
        add("gL1", "  1   3.0  1");
        add("gL2", "  2  10.0  2");
        add("gTHead", "TRIANGLES");
        add("gT1", "  1  2   5.0 1.0  2.0 1.0  3.0 2.0");
        add("r2200", " 10.0  4.0  0.5");
        add("blank3", "");
        add("mHead", "MATERIALS");
        add("m2500", "    2    4   12");
        add("m2600", "  1");
        add("m2700", "  2");
        add("m2800", "  2.0");
        add("m2900", "  1.0");
        add("m2950", "  0.0");
        add("mT1a", "FIRST MATERIAL TABLE");
        add("mT1b", "   UNITS");
        add("m3001", "  1  18.0  5.0  30.0  0.0  3.0  0.0  0.0  0.4  0.5  0.6  7.0  20.0");
        add("m3002", "  2  20.0 10.0  45.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0  0.0   0.0");
        add("mT2a", "SECOND MATERIAL TABLE");
        add("mT2b", "   UNITS");
        add("m3051", "  1  19.0  1.0  1.0  1.0   0.0  1.0");
        add("m3052", "  2  21.0  1.2  0.6  0.4  30.0  0.0");
        add("mSuHead", "UNDRAINED STRENGTH X-LINES");
        add("m3101a", "  1  5.0  3   0.0  4.0  10.0");
        add("m3101b", "     10.0  20.0  40.0");
        add("mSnHead", "NODE UNDRAINED STRENGTHS");
        add("m3201", "  3  12.0");
        add("m3202", "  7  14.0");
        add("blank4", "");
        add("pHead", "PORE WATER");
        add("p3300", "  2");
        add("p3400", "  1");
        add("p3420", "  2");
        add("p3425", "  2.0");
        add("p3430", "  0.0");
        add("p3440", "  10.0");
        add("p3450", "  9.0");
        add("p3470", "  -5.0");
        add("pXHead", "PORE PRESSURE X-LINES");
        add("p3501a", "  1  8.0  3   1.0  2.0  10.0");
        add("p3501b", "    -10.0  0.0  80.0");
        add("pNHead", "NODE PORE PRESSURES");
        add("p3701", "  4  5.0");
        add("p3702", "  9  6.0");
        add("blank5", "");
        add("lHead", "LOADS");
        add("l4100", "  101");
        add("l4200", "  1");
        add("l4250", "  10.0");
        add("l4260", "  2.0  8.0");
        add("l4300", "  1.0  0.1");
        add("l4500", "  0.8  0.6");
        add("lPfHead", "POINT FORCES");
        add("l4701", "  1  4.0  0.5  5.0  20.0");
        add("lStHead", "STRIP LOADS");
        add("l4801", "  1  2.0  6.0  10.0  12.0  1.0  2.0");
        add("nHead1", "SOIL NAILS");
        add("nHead2", "   N  HEAD  TIP  SPACING  DIAMETER ...");
        add("n1", "  1  10.0 1.0  4.0 3.0  1.5  0.1  80.0 90.0  0.5  200.0 10.0 100.0  0.0 1.0 2.0");
        add("blank6", "");
        add("sHead", "GENERAL SURFACES");
        add("s4901", "  1  3");
        add("s5001", "  0.0  10.0  20.0");
        add("s5101", " -1.0   5.0   1.0");
        add("s5201", " 10.0  20.0  30.0");
        add("lcCount", "  2");
        add("lcX", "  5.0  6.0");
        add("lcZ", "  1.0  7.0");
    }

    // Replaces the text of a tagged line.
    Deck& set(const std::string& tag, const std::string& text) {
        lines_[index(tag)].second = text;
        return *this;
    }
    // Inserts lines after a tagged line; each new line gets the tag given with it.
    Deck& insertAfter(const std::string& tag, const std::vector<std::pair<std::string, std::string>>& more) {
        size_t at = index(tag) + 1;
        lines_.insert(lines_.begin() + static_cast<long>(at), more.begin(), more.end());
        return *this;
    }
    Deck& remove(const std::string& tag) {
        lines_.erase(lines_.begin() + static_cast<long>(index(tag)));
        return *this;
    }
    // Removes every line from the tagged one to the end.
    Deck& cutFrom(const std::string& tag) {
        lines_.resize(index(tag));
        return *this;
    }
    bool has(const std::string& tag) const {
        for (const auto& line : lines_)
            if (line.first == tag) return true;
        return false;
    }
    size_t index(const std::string& tag) const {
        for (size_t k = 0; k < lines_.size(); ++k)
            if (lines_[k].first == tag) return k;
        ADD_FAILURE() << "no line tagged " << tag;
        return 0;
    }
    std::vector<std::string> lines() const {
        std::vector<std::string> all;
        for (const auto& line : lines_) all.push_back(line.second);
        return all;
    }

private:
    void add(const std::string& tag, const std::string& text) { lines_.emplace_back(tag, text); }
    std::vector<std::pair<std::string, std::string>> lines_;
};

inline std::string joinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const auto& line : lines) text += line + "\n";
    return text;
}

// What a READ run left behind.
struct ReadResult {
    int ierr = 0;
    std::string console;  // channel 12 (and the log-copy channel, which is null here)
    std::string copy;     // the log-copy channel when it is the standard output (batch mode)
    std::string work;     // KALMO.TMP
    std::string result;   // KALMO.RES
};

// Sets up the records and channels as the central routine does before it calls READ.
class ReadHarness : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        clearRecords();
        resetIntprfCalls();
    }
    void TearDown() override {
        io::setStdoutStream(nullptr);
        io::resetAll();
    }

    // Runs READ on the given input lines with the given console answers. In batch mode the
    // log-copy channel is the standard output, captured in `copy`.
    ReadResult runRead(const std::vector<std::string>& input, const std::string& answers = "N\n",
                       bool batch = false) {
        dir.write("KALMO.INP", joinLines(input));
        dir.write("ANSWERS", answers);
        io::closeAll();
        clearRecords();
        resetIntprfCalls();
        MASTER.NFIN = 8;
        MASTER.NFOUT = 12;
        MASTER.NF14 = 14;
        MASTER.NF15 = 15;
        MASTER.NF16 = 16;
        MASTER.NF17 = 17;
        MASTER.NF18 = 18;
        MASTER.PI = 4.0 * std::atan(1.0);
        MASTER.EPS = 1.0e-20f;
        io::openOld(8, dir.path("ANSWERS"));
        io::openNew(12, dir.path("CONSOLE"));
        io::openOld(14, dir.path("KALMO.INP"));
        io::openNew(15, dir.path("KALMO.TMP"));
        io::openNew(16, dir.path("KALMO.RES"));
        io::openNew(18, dir.path("KALMO.LOG"));
        std::ostringstream copy;
        if (batch) {
            POSTGRAF.NFCOPY = 6;
            io::setStdoutStream(&copy);
            io::bindStdout(6);
        } else {
            POSTGRAF.NFCOPY = 9;
            io::bindNull(9);
        }
        MASTER.IERR = 0;
        READ();
        ReadResult result;
        result.ierr = MASTER.IERR;
        result.console = io::contents(12);
        result.work = io::contents(15);
        result.result = io::contents(16);
        io::setStdoutStream(nullptr);
        result.copy = copy.str();
        return result;
    }

    ReadResult runRead(const Deck& deck, const std::string& answers = "N\n", bool batch = false) {
        return runRead(deck.lines(), answers, batch);
    }

    TempDir dir;
};

// The lines of a text.
inline std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

inline bool hasLine(const std::string& text, const std::string& line) {
    for (const auto& candidate : splitLines(text))
        if (candidate == line) return true;
    return false;
}

// Message lines as the reader writes them: a text, then free-format values.
inline std::string msg(const std::string& text) { return text; }
inline std::string msg(const std::string& text, int value) { return io::Line().A(text).Free(value).str(); }

}  // namespace kalmo_test
