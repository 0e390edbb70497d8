// PAGES: reading a section of a help text file and paging through it on the console.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

constexpr int kHelpUnit = 21;

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::string line;
    std::istringstream in(text);
    while (std::getline(in, line)) lines.push_back(line);
    return lines;
}

std::string readWholeFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

std::string numbered(const std::string& stem, int count) {
    std::string text;
    for (int k = 1; k <= count; ++k) text += stem + std::to_string(k) + "\n";
    return text;
}

// A text line as shown: one blank, then the text in 79 columns.
std::string shown(const std::string& text) { return " " + text + std::string(79 - text.size(), ' '); }

const std::string kRule = " " + std::string(78, '-');
const std::string kSelection =
    " 1,2,... = MOVE FORWARD (-BACKWARD)    0 = MENU    Q = QUIT    SELECTION ....";

struct PagesRun {
    int answer = -99;
    int ierr = -99;
    std::vector<std::string> screen;  // lines written on channel 12
};

class Pages : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        clearRecords();
        io::bindStdin(5);
        io::bindStdin(8);
        ASSERT_EQ(io::openNew(12, dir_.path("SCREEN.TXT")), 0);
    }
    void TearDown() override { io::resetAll(); }

    PagesRun run(const std::string& fileText, int section, const std::string& answers) {
        dir_.write("HELP.KMO", fileText);
        EXPECT_EQ(io::openOld(kHelpUnit, dir_.path("HELP.KMO")), 0);
        return runOpen(section, answers);
    }

    PagesRun runOpen(int section, const std::string& answers) {
        io::setStdinText(answers);
        PagesRun result;
        PAGES(kHelpUnit, section, result.answer, result.ierr);
        result.screen = splitLines(io::contents(12));
        return result;
    }

    // Lines of the shown pages that carry the page number, in order.
    static std::vector<std::string> pageLines(const PagesRun& run) {
        std::vector<std::string> found;
        for (const std::string& line : run.screen)
            if (line.rfind(" PAGE    :", 0) == 0) found.push_back(line);
        return found;
    }

    kalmo_test::TempDir dir_;
};

// A file with two sections: section 1 has pages of 5 and 20 lines, section 2 three short pages.
std::string twoSectionFile() {
    return "TEST HELP FILE\n"
           "2\n"
           "FIRST SECTION\n"
           "SECOND SECTION\n"
           "1 1\n" +
           numbered("FIVE LINE PAGE, LINE ", 5) +
           "*\n"
           "1 2\n" +
           numbered("TWENTY LINE PAGE, LINE ", 20) +
           "*\n"
           "2 1\n"
           "SECTION TWO, PAGE ONE\n"
           "*\n"
           "2 2\n"
           "SECTION TWO, PAGE TWO\n"
           "*\n"
           "2 3\n"
           "SECTION TWO, PAGE THREE\n"
           "*\n"
           "0 0\n";
}

}  // namespace

TEST_F(Pages, APageIsShownWithItsHeadTitleAndSelectionPrompt) {
    PagesRun result = run(twoSectionFile(), 2, "0\n");
    EXPECT_EQ(result.ierr, 0);
    EXPECT_EQ(result.answer, 1);
    std::vector<std::string> expected = {
        "",
        "",
        shown("TEST HELP FILE"),
        " SECTION : SECOND SECTION" + std::string(50 - 14, ' '),
        " PAGE    :   1 OF  3",
        kRule,
        " ",
        shown("SECTION TWO, PAGE ONE"),
    };
    for (int k = 0; k < 16; ++k) expected.push_back("");  // one text line, filled up to 17
    expected.push_back(kRule);
    expected.push_back(kSelection);
    EXPECT_EQ(result.screen, expected);
}

TEST_F(Pages, ZeroAtThePromptGoesBackToTheMenu) {
    PagesRun result = run(twoSectionFile(), 1, "0\nQ\n");
    EXPECT_EQ(result.ierr, 0);
    EXPECT_EQ(result.answer, 1);
    EXPECT_EQ(pageLines(result).size(), 1u);
}

TEST_F(Pages, QAtThePromptLeavesTheHelp) {
    PagesRun result = run(twoSectionFile(), 1, "Q\n0\n");
    EXPECT_EQ(result.ierr, 0);
    EXPECT_EQ(result.answer, 0);
    EXPECT_EQ(pageLines(result).size(), 1u);
}

TEST_F(Pages, AnEmptyAnswerLineGoesBackToTheMenuWithoutWaitingForMore) {
    // Every answer is one line: an empty line gives no step (0) and does not consume the Q.
    PagesRun result = run(twoSectionFile(), 1, "\nQ\n");
    EXPECT_EQ(result.ierr, 0);
    EXPECT_EQ(result.answer, 1);
    EXPECT_EQ(pageLines(result).size(), 1u);
}

TEST_F(Pages, TheEndOfTheAnswersLeavesTheHelp) {
    PagesRun result = run(twoSectionFile(), 1, "");
    EXPECT_EQ(result.ierr, 0);
    EXPECT_EQ(result.answer, 0);
}

TEST_F(Pages, PagingBeyondTheLastPageShowsTheLastAndBeforeTheFirstShowsTheFirst) {
    PagesRun result = run(twoSectionFile(), 2, "1\n5\n-1\n-9\n0\n");
    EXPECT_EQ(result.answer, 1);
    std::vector<std::string> expected = {
        " PAGE    :   1 OF  3",  // start
        " PAGE    :   2 OF  3",  // +1
        " PAGE    :   3 OF  3",  // +5, held at the last page
        " PAGE    :   2 OF  3",  // -1
        " PAGE    :   1 OF  3",  // -9, held at the first page
    };
    EXPECT_EQ(pageLines(result), expected);
    // The page texts follow the page numbers.
    std::vector<std::string> texts;
    for (const std::string& line : result.screen)
        if (line.rfind(" SECTION TWO, PAGE ", 0) == 0) texts.push_back(line);
    std::vector<std::string> expectedTexts = {shown("SECTION TWO, PAGE ONE"), shown("SECTION TWO, PAGE TWO"),
                                              shown("SECTION TWO, PAGE THREE"), shown("SECTION TWO, PAGE TWO"),
                                              shown("SECTION TWO, PAGE ONE")};
    EXPECT_EQ(texts, expectedTexts);
}

TEST_F(Pages, ATwentyLinePageHasNoFillerLines) {
    PagesRun result = run(twoSectionFile(), 1, "1\n0\n");
    ASSERT_EQ(result.ierr, 0);
    // The second shown page starts after the second page line.
    size_t start = 0;
    int seen = 0;
    for (size_t k = 0; k < result.screen.size(); ++k) {
        if (result.screen[k].rfind(" PAGE    :   2 OF  2", 0) == 0) {
            start = k;
            ++seen;
        }
    }
    ASSERT_EQ(seen, 1);
    ASSERT_EQ(result.screen[start + 1], kRule);
    ASSERT_EQ(result.screen[start + 2], " ");
    for (int line = 1; line <= 20; ++line) {
        std::string text = "TWENTY LINE PAGE, LINE " + std::to_string(line);
        EXPECT_EQ(result.screen[start + 2 + static_cast<size_t>(line)], shown(text));
    }
    EXPECT_EQ(result.screen[start + 23], kRule);
    EXPECT_EQ(result.screen[start + 24], kSelection);
}

TEST_F(Pages, AFiveLinePageIsFollowedByTwelveBlankLines) {
    PagesRun result = run(twoSectionFile(), 1, "0\n");
    ASSERT_EQ(result.ierr, 0);
    ASSERT_EQ(result.screen.size(), 26u);
    EXPECT_EQ(result.screen[4], " PAGE    :   1 OF  2");
    EXPECT_EQ(result.screen[6], " ");
    for (int line = 1; line <= 5; ++line) EXPECT_NE(result.screen[6 + static_cast<size_t>(line)].find("LINE " + std::to_string(line)), std::string::npos);
    for (size_t k = 12; k < 24; ++k) EXPECT_EQ(result.screen[k], "") << "line " << k;
    EXPECT_EQ(result.screen[24], kRule);
    EXPECT_EQ(result.screen[25], kSelection);
}

TEST_F(Pages, TextLinesAreShownWithSeventyNineCharacters) {
    std::string longLine(80, 'X');
    longLine[78] = 'A';  // column 79: shown
    longLine[79] = 'B';  // column 80: cut off
    std::string longTitle(80, 'T');
    PagesRun result = run(longTitle + "\n1\nONLY\n1 1\n" + longLine + "\n*\n0 0\n", 1, "0\n");
    ASSERT_EQ(result.ierr, 0);
    EXPECT_EQ(result.screen[2], " " + std::string(79, 'T'));
    EXPECT_EQ(result.screen[7], " " + longLine.substr(0, 79));
}

TEST_F(Pages, AnEndLineWithoutPageNumberEndsTheFile) {
    PagesRun result = run("T\n1\nONLY\n1 1\nTEXT\n*\n0\n", 1, "0\n");
    EXPECT_EQ(result.ierr, 0);
    EXPECT_EQ(result.answer, 1);
}

// --- errors: one file per code, with the position where the reading stopped ---

namespace {
std::string errorLine(int position, int code) {
    char text[80];
    std::snprintf(text, sizeof text, " **** SR/PAGES ERROR   ID,IERR=%5d%5d", position, code);
    return text;
}
}  // namespace

TEST_F(Pages, Error1SectionOutsideOneToTen) {
    PagesRun result = run(twoSectionFile(), 11, "0\n");
    EXPECT_EQ(result.ierr, 1);
    EXPECT_EQ(result.answer, 1);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(0, 1)});
}

TEST_F(Pages, Error1SectionBeyondTheSectionsOfTheFile) {
    PagesRun result = run(twoSectionFile(), 3, "0\n");
    EXPECT_EQ(result.ierr, 1);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(200, 1)});
}

TEST_F(Pages, Error2SectionCountOutsideOneToTen) {
    PagesRun result = run("T\n11\n", 1, "0\n");
    EXPECT_EQ(result.ierr, 2);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(200, 2)});
}

TEST_F(Pages, Error2PageOfASectionBeyondTheSectionCount) {
    PagesRun result = run("T\n2\nA\nB\n1 1\nX\n*\n3 1\nY\n*\n0 0\n", 2, "0\n");
    EXPECT_EQ(result.ierr, 2);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(402, 2)});
}

TEST_F(Pages, Error3PageNumberOutsideOneToTwentyFive) {
    std::string file = "T\n1\nA\n";
    for (int page = 1; page <= 26; ++page) file += "1 " + std::to_string(page) + "\nTEXT\n*\n";
    file += "0 0\n";
    PagesRun result = run(file, 1, "0\n");
    EXPECT_EQ(result.ierr, 3);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(426, 3)});
}

TEST_F(Pages, Error4PageOfTwentyOneLines) {
    std::string file = "T\n2\nA\nB\n1 1\nX\n*\n2 1\nY\n*\n2 2\n" + numbered("L", 21) + "*\n0 0\n";
    PagesRun result = run(file, 2, "0\n");
    EXPECT_EQ(result.ierr, 4);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(202, 4)});
}

TEST_F(Pages, Error5PageNumberOutOfSequence) {
    PagesRun result = run("T\n1\nA\n1 1\nX\n*\n1 3\nY\n*\n0 0\n", 1, "0\n");
    EXPECT_EQ(result.ierr, 5);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(402, 5)});
}

TEST_F(Pages, Error5NewSectionNotStartingAtPageOne) {
    PagesRun result = run("T\n2\nA\nB\n1 1\nX\n*\n2 2\nY\n*\n0 0\n", 2, "0\n");
    EXPECT_EQ(result.ierr, 5);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(402, 5)});
}

TEST_F(Pages, Error6SectionGoingBack) {
    PagesRun result = run("T\n2\nA\nB\n1 1\nX\n*\n2 1\nY\n*\n1 2\nZ\n*\n0 0\n", 2, "0\n");
    EXPECT_EQ(result.ierr, 6);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(403, 6)});
}

TEST_F(Pages, Error6SectionJumpingByMoreThanTwo) {
    PagesRun result = run("T\n4\nA\nB\nC\nD\n1 1\nX\n*\n4 1\nY\n*\n0 0\n", 1, "0\n");
    EXPECT_EQ(result.ierr, 6);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(402, 6)});
}

TEST_F(Pages, AFileEndingEarlyIsReportedWhereItEnded) {
    EXPECT_EQ(run("", 1, "0\n").screen, std::vector<std::string>{errorLine(100, -1)});
    io::resetAll();
    SetUp();
    EXPECT_EQ(run("T\n2\nA\n", 1, "0\n").screen, std::vector<std::string>{errorLine(302, -1)});
    io::resetAll();
    SetUp();
    // Passing over page 1 of section 1 while section 2 is wanted.
    EXPECT_EQ(run("T\n2\nA\nB\n1 1\nX\n", 2, "0\n").screen, std::vector<std::string>{errorLine(501, -1)});
    io::resetAll();
    SetUp();
    EXPECT_EQ(run("T\n1\nA\n1 1\nX\n", 1, "0\n").screen, std::vector<std::string>{errorLine(101, -1)});
}

TEST_F(Pages, TextWhereANumberBelongsIsCode7) {
    PagesRun result = run("T\nTWO\n", 1, "0\n");
    EXPECT_EQ(result.ierr, 7);
    EXPECT_EQ(result.screen, std::vector<std::string>{errorLine(200, 7)});
}

// --- the shipped instruction and help files ---

namespace {

struct ShippedFile {
    std::string name;
    std::vector<std::string> sections;  // as the menu of HELP offers them
};

const std::vector<ShippedFile> kShippedFiles = {
    {"INSTRUCT.KMO",
     {"GETTING STARTED", "INPUT/OUTPUT FILES", "PREPARATION OF INPUT FILE", "RUNNING THE PROGRAM", "USER NOTEBOOK"}},
    {"HELP.KMO",
     {"INPUT DATA ERROR CODES", "AVAILABLE SHEAR SURFACES", "CONTROL DATA EXPLANATION", "PRINT/SAVE/LAST/BEST",
      "EXECUTION ERROR MESSAGES", "USER NOTEBOOK"}},
};

std::string shippedPath(const std::string& name) { return std::string(KALMO_SOURCE_DIR) + "/" + name; }

}  // namespace

TEST_F(Pages, EverySectionOfTheShippedFilesReadsWithoutError) {
    for (const ShippedFile& file : kShippedFiles) {
        std::vector<std::string> lines = splitLines(readWholeFile(shippedPath(file.name)));
        ASSERT_GT(lines.size(), 2u) << file.name;
        for (int section = 1; section <= static_cast<int>(file.sections.size()); ++section) {
            // The pages of the section, counted here from the page lines "S P" of the file.
            int pageCount = 0;
            for (const std::string& line : lines) {
                int s = 0, p = 0;
                char rest = 0;
                if (std::sscanf(line.c_str(), "%d %d %c", &s, &p, &rest) == 2 && s == section) pageCount = p;
            }
            ASSERT_GT(pageCount, 0) << file.name << " section " << section;

            io::resetAll();
            SetUp();
            ASSERT_EQ(io::openOld(kHelpUnit, shippedPath(file.name)), 0) << file.name;
            // Walk through every page, then back to the menu.
            std::string answers;
            for (int page = 2; page <= pageCount; ++page) answers += "1\n";
            answers += "0\n";
            PagesRun result = runOpen(section, answers);
            EXPECT_EQ(result.ierr, 0) << file.name << " section " << section;
            EXPECT_EQ(result.answer, 1) << file.name << " section " << section;
            std::vector<std::string> shown = pageLines(result);
            ASSERT_EQ(static_cast<int>(shown.size()), pageCount) << file.name << " section " << section;
            char last[40];
            std::snprintf(last, sizeof last, " PAGE    :%4d OF%3d", pageCount, pageCount);
            EXPECT_EQ(shown.back(), last);
            std::string name = file.sections[static_cast<size_t>(section - 1)];
            EXPECT_EQ(result.screen[3], " SECTION : " + name + std::string(50 - name.size(), ' '));
        }
    }
}

TEST_F(Pages, ShippedFilesShowEveryCharacterOfTheirLines) {
    for (const ShippedFile& file : kShippedFiles) {
        std::vector<std::string> lines = splitLines(readWholeFile(shippedPath(file.name)));
        ASSERT_GT(lines.size(), 2u);
        EXPECT_LE(lines[0].size(), 79u) << file.name << " title";
        EXPECT_EQ(lines[1], std::to_string(file.sections.size())) << file.name;
        for (size_t k = 0; k < file.sections.size(); ++k) EXPECT_EQ(lines[2 + k], file.sections[k]) << file.name;
        for (size_t k = 0; k < lines.size(); ++k) {
            EXPECT_LE(lines[k].size(), 79u) << file.name << " line " << k + 1;
            EXPECT_EQ(lines[k].find('\t'), std::string::npos) << file.name << " line " << k + 1;
        }
    }
}
