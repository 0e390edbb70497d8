// control/pages.cpp
//
// PAGES — shows one section of a help text file on the console, one page at a time.
//
// A help text file (the instructions or the help texts) holds, in order: a title line; the
// number of sections NSEC (1..10, free format); NSEC section names of 50 characters; then the
// pages, each a page line "S P" (section and page number, free format), at most 20 text lines
// and a line whose first character is "*"; a page line with S < 1 ends the file. The pages of
// one section follow each other with P = 1, 2, ...; sections never go back and never jump by
// more than 2. PAGES reads the pages of the wanted section into its page buffer (25 pages of
// 20 lines), shows page 1 and then moves forward or backward as the user asks.
//
// Reads:  the help file on channel NF (rewound first); the selection from channel 8
// Writes: the pages, the selection prompt and the error message on channel 12
// ANSWER: 1 show the help menu again (also after an error), 0 leave the help
// IERR:   0 ok;
//         1 wanted section outside 1..10, or beyond the file's section count;
//         2 section count outside 1..10, or a page's section outside 1..10 or beyond NSEC;
//         3 page number outside 1..25;
//         4 a page of more than 20 lines;
//         5 page number out of sequence (1 at a new section, else one more than before);
//         6 section number going back, or growing by more than 2;
//         7 text where a number was expected;
//        -1 the file ended where more was expected.
//         The error message carries a position code telling where the reading stopped:
//         0 before reading, 100 the title, 200 the section count, 300+k the k-th section
//         name, 400+k the k-th page line, 500+k skipping the k-th page, S*100+P the text of
//         page P of section S.

#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"

namespace {

constexpr int kConsoleIn = 8;
constexpr int kConsoleOut = 12;
constexpr int kMaxSections = 10;
constexpr int kMaxPages = 25;
constexpr int kMaxPageLines = 20;
constexpr int kScreenLines = 17;  // a shorter page is filled up to this many lines
constexpr int kNameLength = 50;
constexpr int kTextLength = 80;
constexpr int kShownLength = 79;
constexpr int kUnreadableNumber = 7;
constexpr int kEndOfFile = -1;

struct PageBuffer {
    Arr2<Text<kTextLength>, kMaxPageLines, kMaxPages> line;  // line(l, p): line l of page p
    Arr1<int, kMaxPages> count;                             // text lines of page p
};

PageBuffer gBuffer;

std::string blankPadded(const std::string& text, int length) {
    std::string padded = text;
    padded.resize(static_cast<size_t>(length), ' ');
    return padded;
}

int readStatusCode(io::ReadStatus status) {
    return status == io::ReadStatus::End ? kEndOfFile : kUnreadableNumber;
}

void reportError(int position, int ierr) {
    io::writeLine(kConsoleOut, io::Line(" **** SR/PAGES ERROR   ID,IERR=").I(position, 5).I(ierr, 5).str());
}

void showPage(const std::string& title, const std::string& sectionName, int page, int lastPage) {
    const std::string rule = " " + io::repeat('-', 78);
    io::writeLine(kConsoleOut, "");
    io::writeLine(kConsoleOut, "");
    io::writeLine(kConsoleOut, io::Line(" ").A(title, kShownLength).str());
    io::writeLine(kConsoleOut, io::Line(" SECTION : ").A(sectionName, kNameLength).str());
    io::writeLine(kConsoleOut, io::Line(" PAGE    :").I(page, 4).A(" OF").I(lastPage, 3).str());
    io::writeLine(kConsoleOut, rule);
    io::writeLine(kConsoleOut, " ");
    const int lineCount = gBuffer.count(page);
    for (int l = 1; l <= lineCount; ++l) {
        io::writeLine(kConsoleOut, io::Line(" ").A(gBuffer.line(l, page).view(), kShownLength).str());
    }
    for (int l = lineCount + 1; l <= kScreenLines; ++l) io::writeLine(kConsoleOut, "");
    io::writeLine(kConsoleOut, rule);
    io::writePrompt(kConsoleOut, " 1,2,... = MOVE FORWARD (-BACKWARD)    0 = MENU    Q = QUIT    SELECTION ....");
}

}  // namespace

void PAGES(int nf, int section, int& answer, int& ierr) {
    ierr = 0;
    answer = 1;
    int position = 0;

    // Reading stops at the first failure; the message names the place.
    auto fail = [&](int code) {
        ierr = code;
        reportError(position, ierr);
    };

    if (section < 1 || section > kMaxSections) return fail(1);

    io::rewind(nf);
    std::string text;
    position = 100;
    if (io::readLine(nf, text, kTextLength) != io::kReadOk) return fail(kEndOfFile);
    const std::string title = blankPadded(text, kTextLength);

    position = 200;
    int sectionCount = 0;
    io::ReadStatus status = io::readFree(nf, sectionCount);
    if (status != io::ReadStatus::Ok) return fail(readStatusCode(status));
    if (sectionCount < 1 || sectionCount > kMaxSections) return fail(2);
    if (sectionCount < section) return fail(1);

    std::string sectionName;
    for (int k = 1; k <= sectionCount; ++k) {
        position = 300 + k;
        if (io::readLine(nf, text, kNameLength) != io::kReadOk) return fail(kEndOfFile);
        if (k == section) sectionName = blankPadded(text, kNameLength);
    }

    // The first page line continues from section 0, page 0.
    int previousSection = 0;
    int previousPage = 0;
    int lastPage = 0;
    for (int k = 1;; ++k) {
        position = 400 + k;
        int pageSection = 0;
        int pageNumber = 0;
        io::FreeReader pageLine(nf);
        pageLine(pageSection);
        if (pageLine.ok() && pageSection < 1) break;  // the end line needs no page number
        pageLine(pageNumber);
        if (!pageLine.ok()) return fail(readStatusCode(pageLine.status()));
        if (pageSection > kMaxSections || pageSection > sectionCount) return fail(2);
        if (pageNumber < 1 || pageNumber > kMaxPages) return fail(3);
        if (pageSection < previousSection || pageSection > previousSection + 2) return fail(6);
        const int expectedPage = pageSection == previousSection + 1 ? 1 : previousPage + 1;
        if (pageNumber != expectedPage) return fail(5);
        previousSection = pageSection;
        previousPage = pageNumber;
        if (pageSection > section) break;

        if (pageSection < section) {
            position = 500 + k;
            do {
                if (io::readLine(nf, text, kTextLength) != io::kReadOk) return fail(kEndOfFile);
            } while (text.empty() || text[0] != '*');
            continue;
        }

        position = pageSection * 100 + pageNumber;
        int lineCount = 0;
        for (;;) {
            if (io::readLine(nf, text, kTextLength) != io::kReadOk) return fail(kEndOfFile);
            if (!text.empty() && text[0] == '*') break;
            if (lineCount == kMaxPageLines) return fail(4);
            ++lineCount;
            gBuffer.line(lineCount, pageNumber).set(text);
        }
        gBuffer.count(pageNumber) = lineCount;
        lastPage = pageNumber;
    }

    // A section without pages still shows one (empty) page.
    if (lastPage == 0) gBuffer.count(1) = 0;
    const int highestPage = lastPage > 0 ? lastPage : 1;
    int page = 1;
    for (;;) {
        showPage(title, sectionName, page, lastPage);
        int step = 0;
        if (io::readAnswer(kConsoleIn, step) != io::ReadStatus::Ok) {
            answer = 0;
            return;
        }
        if (step == 0) {
            answer = 1;
            return;
        }
        const long long wanted = static_cast<long long>(page) + step;
        page = wanted < 1 ? 1 : wanted > highestPage ? highestPage : static_cast<int>(wanted);
    }
}
