// READ on damaged input: every file cut short after each of its lines, and every number in
// turn replaced by text, must end with an input error message and never crash or write
// outside an array (the records' accessors abort on a bad index, and CI runs these tests
// under the sanitizers). Files cut only where the rest is optional are read without error.

#include <gtest/gtest.h>

#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "input/read_deck.h"
#include "io/freeread.h"

namespace {

using kalmo_test::Deck;
using kalmo_test::ReadHarness;
using kalmo_test::ReadResult;
using kalmo_test::splitLines;

constexpr size_t kPaddedLines = 60;

class ReadRobustnessTest : public ReadHarness {
protected:
    // A failed run must say why: every failure writes a " ****" message.
    void expectInputError(const ReadResult& run, const std::string& what) {
        EXPECT_NE(run.ierr, 0) << what << "\n" << run.console;
        EXPECT_NE(run.console.find(" ****"), std::string::npos) << what << "\n" << run.console;
    }
};

std::vector<std::string> keepLines(const std::vector<std::string>& lines, size_t kept, bool padded) {
    std::vector<std::string> cut(lines.begin(), lines.begin() + static_cast<long>(kept));
    // Comment lines after the cut pass the line count, so the reader meets the end of its data.
    if (padded)
        while (cut.size() < kPaddedLines) cut.push_back("* padding after the cut");
    return cut;
}

// Tokens of a line that read as numbers: (start, length).
std::vector<std::pair<size_t, size_t>> numberTokens(const std::string& line) {
    std::vector<std::pair<size_t, size_t>> tokens;
    size_t k = 0;
    while (k < line.size()) {
        while (k < line.size() && (line[k] == ' ' || line[k] == ',')) ++k;
        size_t start = k;
        while (k < line.size() && line[k] != ' ' && line[k] != ',') ++k;
        double value = 0;
        if (k > start && io::parseReal(line.substr(start, k - start), value)) tokens.emplace_back(start, k - start);
    }
    return tokens;
}

std::string withText(const std::string& line, std::pair<size_t, size_t> token) {
    std::string changed = line;
    changed.replace(token.first, token.second, std::string(token.second, 'X'));
    return changed;
}

// --- The reference deck ------------------------------------------------------------------------

TEST_F(ReadRobustnessTest, ReferenceDeckCutAfterEveryLine) {
    const Deck deck;
    const std::vector<std::string> lines = deck.lines();
    const size_t optionalFrom = deck.index("lcCount");
    for (bool padded : {false, true}) {
        for (size_t kept = 1; kept <= lines.size(); ++kept) {
            ReadResult run = runRead(keepLines(lines, kept, padded));
            const std::string what = "kept " + std::to_string(kept) + (padded ? " padded" : "");
            if (kept == optionalFrom || kept == lines.size()) {
                EXPECT_EQ(run.ierr, 0) << what << "\n" << run.console;
            } else {
                expectInputError(run, what);
            }
        }
    }
}

TEST_F(ReadRobustnessTest, ReferenceDeckWithEachNumberReplacedByText) {
    const Deck deck;
    const std::vector<std::string> lines = deck.lines();
    const std::set<size_t> textLines = {deck.index("title1"), deck.index("title2"), deck.index("gHead"),
                                        deck.index("gXHead"), deck.index("gLHead"), deck.index("gTHead"),
                                        deck.index("mHead"),  deck.index("mT1a"),   deck.index("mT1b"),
                                        deck.index("mT2a"),   deck.index("mT2b"),   deck.index("mSuHead"),
                                        deck.index("mSnHead"), deck.index("pHead"), deck.index("pXHead"),
                                        deck.index("pNHead"), deck.index("lHead"),  deck.index("lPfHead"),
                                        deck.index("lStHead"), deck.index("nHead1"), deck.index("nHead2"),
                                        deck.index("sHead")};
    int runs = 0;
    for (size_t n = 0; n < lines.size(); ++n) {
        if (textLines.count(n)) continue;
        const auto tokens = numberTokens(lines[n]);
        for (size_t t = 0; t < tokens.size(); ++t) {
            std::vector<std::string> changed = lines;
            changed[n] = withText(lines[n], tokens[t]);
            ReadResult run = runRead(changed);
            ++runs;
            const std::string what = "line " + std::to_string(n + 1) + " [" + changed[n] + "]";
            // The optional columns of the material count line fall back to their defaults, and
            // a line control count that is no number means no line control.
            const bool optional = (n == deck.index("m2500") && t > 0) || n == deck.index("lcCount");
            if (optional) {
                EXPECT_EQ(run.ierr, 0) << what << "\n" << run.console;
            } else {
                expectInputError(run, what);
            }
        }
    }
    EXPECT_GT(runs, 200);
}

// --- The example files -------------------------------------------------------------------------

struct Example {
    const char* folder;
    bool surfacesGiven;  // general surfaces follow the loads: the file is complete only at its end
};

std::vector<std::string> exampleLines(const Example& example) {
    std::ifstream in(std::string(KALMO_SOURCE_DIR) + "/examples/" + example.folder + "/KALMO.INP");
    std::ostringstream all;
    all << in.rdbuf();
    std::vector<std::string> lines;
    for (const auto& line : splitLines(all.str())) {
        if (line.compare(0, 3, "END") == 0) break;
        lines.push_back(line);
    }
    return lines;
}

bool isBlank(const std::string& line) { return line.find_first_not_of(' ') == std::string::npos; }

// A line the reader takes numbers from: from line 3 on, not a comment, and starting with a
// number (headings start with a letter).
bool isDataLine(const std::vector<std::string>& lines, size_t n) {
    if (n < 2 || isBlank(lines[n]) || lines[n][0] == '*' || lines[n][0] == 'C') return false;
    const char first = lines[n][lines[n].find_first_not_of(' ')];
    return (first >= '0' && first <= '9') || first == '-' || first == '+' || first == '.';
}

class ExampleRobustnessTest : public ReadRobustnessTest, public ::testing::WithParamInterface<Example> {};

TEST_P(ExampleRobustnessTest, ReadsWithoutError) {
    ReadResult run = runRead(exampleLines(GetParam()));
    EXPECT_EQ(run.ierr, 0) << run.console;
}

TEST_P(ExampleRobustnessTest, CutAfterEveryLine) {
    const std::vector<std::string> lines = exampleLines(GetParam());
    // Without general surfaces everything after the blank line ending the loads (the sixth
    // blank line) is optional.
    size_t mandatory = lines.size();
    if (!GetParam().surfacesGiven) {
        int blanks = 0;
        for (size_t n = 2; n < lines.size(); ++n) {
            if (isBlank(lines[n]) && ++blanks == 6) {
                mandatory = n + 1;
                break;
            }
        }
    }
    for (bool padded : {false, true}) {
        for (size_t kept = 1; kept < lines.size(); ++kept) {
            ReadResult run = runRead(keepLines(lines, kept, padded));
            const std::string what = "kept " + std::to_string(kept) + (padded ? " padded" : "");
            if (kept < mandatory) {
                expectInputError(run, what);
            } else if (run.ierr != 0) {
                EXPECT_NE(run.console.find(" ****"), std::string::npos) << what << "\n" << run.console;
            }
        }
    }
}

TEST_P(ExampleRobustnessTest, EachNumberReplacedByText) {
    const std::vector<std::string> lines = exampleLines(GetParam());
    size_t materialCountLine = 0;
    size_t lineControlCount = lines.size();
    for (size_t n = 2; n < lines.size(); ++n) {
        if (lines[n].compare(0, 8, "MATERIAL") == 0)
            for (size_t m = n + 1; m < lines.size() && !materialCountLine; ++m)
                if (isDataLine(lines, m)) materialCountLine = m;
        if (lines[n].compare(0, 7, "GENERAL") == 0 && !GetParam().surfacesGiven)
            for (size_t m = n + 1; m < lines.size() && lineControlCount == lines.size(); ++m)
                if (isDataLine(lines, m)) lineControlCount = m;
    }
    ASSERT_GT(materialCountLine, 0u);
    for (size_t n = 0; n < lines.size(); ++n) {
        if (!isDataLine(lines, n)) continue;
        const auto tokens = numberTokens(lines[n]);
        for (size_t t = 0; t < tokens.size(); ++t) {
            std::vector<std::string> changed = lines;
            changed[n] = withText(lines[n], tokens[t]);
            ReadResult run = runRead(changed);
            const std::string what = "line " + std::to_string(n + 1) + " [" + changed[n] + "]";
            if ((n == materialCountLine && t > 0) || n == lineControlCount) {
                EXPECT_EQ(run.ierr, 0) << what << "\n" << run.console;
            } else {
                expectInputError(run, what);
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Examples, ExampleRobustnessTest,
                         ::testing::Values(Example{"slope", true}, Example{"clay", false}, Example{"wall", false},
                                           Example{"nails", true}),
                         [](const ::testing::TestParamInfo<Example>& info) { return std::string(info.param.folder); });

}  // namespace
