// output/readplt.cpp
//
// Reads the post-processor file back into plain data (see output/readplt.h).
//
// The file is split into blocks at the page top lines (a form feed in column 1). In a block the
// titles are the two lines after the empty line below the page top; every other record is found
// by its label and read by the columns the save routine wrote it in:
//   counts    I5, I7, I7, I8, I8, I8, I7, 4I6 under " NUMSRF  NTYP ..."
//   values    F9.4, F9.3, F8.3, 2X, 5F9.3 under " SAFETY.FCT ..."
//   SPAR      1X, 5E12.4 on the lines ending " STORE(1,2,3,4,5)" and " STORE(6,7,8,9,10)"
//   tables    a title, a column heading, then rows I4, 1X, up to six E12.4 (nail forces add I6,
//             the combined analysis I4 and a word); the area table has its column heading
//             only, rows of two E12.4 and a " SUM" line
//   share     F7.3 in front of "  Contribution from undrained failure ="
// Fields are taken by column, so values that fill their field completely still part.

#include "output/readplt.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <sstream>
#include <string_view>

namespace plt {

namespace {

enum class RowKind { Values, NailForces, Combined, Areas };

constexpr size_t kRowLead = 5;   // I4, 1X
constexpr size_t kField = 12;    // E12.4

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && text.front() == ' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
    return text;
}

std::string_view field(std::string_view line, size_t from, size_t width) {
    if (from >= line.size()) return {};
    return line.substr(from, width);
}

bool allStars(std::string_view text) { return !text.empty() && text.find_first_not_of('*') == std::string_view::npos; }

bool readInt(std::string_view text, int& value) {
    text = trimmed(text);
    if (text.empty()) return false;
    const char* end = text.data() + text.size();
    auto [at, failure] = std::from_chars(text.data(), end, value);
    return failure == std::errc() && at == end;
}

// A real in fixed or exponent form; the exponent may stand without its E when it has three
// digits (0.1234+100). A field of asterisks is a value that did not fit: NaN.
bool readReal(std::string_view text, double& value) {
    text = trimmed(text);
    if (text.empty()) return false;
    if (allStars(text)) {
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    std::string number(text);
    if (number.find_first_of("EeNnIi") == std::string::npos) {
        const size_t sign = number.find_last_of("+-");
        if (sign != std::string::npos && sign > 0 && number[sign - 1] != 'E') number.insert(sign, "E");
    }
    char* end = nullptr;
    value = std::strtod(number.c_str(), &end);
    return end == number.c_str() + number.size();
}

// The title of each table, where the block keeps it, and how its rows read.
struct TableLabel {
    std::string_view title;
    Table Block::*table;
    RowKind kind;
};

const TableLabel kTables[] = {
    {" GEOMETRY AND INITIAL ROUGHNESS", &Block::geometry, RowKind::Values},
    {" SOIL STRENGTHS AND PWP", &Block::strengths, RowKind::Values},
    {" CALCULATED FORCES AND ROUGHNESS", &Block::forces, RowKind::Values},
    {" CENTER LOADS AND MOMENT ARMS", &Block::loads, RowKind::Values},
    {" CENTRE LOADS (WX,WZ,WM) NEGLECTING SOIL NAILS AND THE NAIL LOADS (SNX,SNZ,SNM)", &Block::loadsWithoutNails,
     RowKind::Values},
    {" SOIL NAIL GEOMETRY VALUES", &Block::nailGeometry, RowKind::Values},
    {" SOIL NAIL FORCES AT SHEAR SURFACE INTERSECTION (UNITS=FORCE) AND MISC VALUES", &Block::nailForces,
     RowKind::NailForces},
    {" COMBINED ANALYSIS : SHEAR STRENGTH PARAMETERS AND SHEAR FORCES", &Block::combined, RowKind::Combined},
};

constexpr std::string_view kCountsLabel = " NUMSRF  NTYP  NUMSLC  METHOD  IDEFTO  NNAILS  MISC1 MISC2 MISC3 MISC4 MISC5";
constexpr std::string_view kValuesLabel = " SAFETY.FCT  SCORE  R-FACTOR   VALMSC1  VALMSC2  VALMSC3  VALMSC4  VALMSC5";
constexpr std::string_view kAreasLabel = " SLICE  AREA      AREA-UNDRAINED";
constexpr std::string_view kShareLabel = "  Contribution from undrained failure =";

class BlockReader {
public:
    BlockReader(const std::vector<std::string>& lines, size_t first, size_t end, int blockNumber)
        : lines_(lines), first_(first), end_(end), blockNumber_(blockNumber) {}

    bool read(Block& block, std::string& error) {
        block.pageTop = lines_[first_].substr(1);
        if (first_ + 3 >= end_ || !lines_[first_ + 1].empty()) return fail(first_ + 1, "no title lines", error);
        for (size_t k = 0; k < 2; ++k) block.TITLE[k] = lines_[first_ + 2 + k].substr(lines_[first_ + 2 + k].empty() ? 0 : 1);

        bool counts = false, values = false;
        for (size_t at = first_ + 4; at < end_; ++at) {
            const std::string& line = lines_[at];
            if (line == kCountsLabel) {
                if (!readCounts(at + 1, block)) return fail(at + 1, "counts record unreadable", error);
                counts = true;
                ++at;
            } else if (line == kValuesLabel) {
                if (!readValues(at + 1, block)) return fail(at + 1, "values record unreadable", error);
                values = true;
                ++at;
            } else if (line.ends_with(" STORE(1,2,3,4,5)")) {
                if (!readParameters(line, 0, block)) return fail(at, "SPAR(1..5) unreadable", error);
            } else if (line.ends_with(" STORE(6,7,8,9,10)")) {
                if (!readParameters(line, 5, block)) return fail(at, "SPAR(6..10) unreadable", error);
            } else if (line == kAreasLabel) {
                size_t next = at + 1;
                if (!readRows(next, RowKind::Areas, block.areas)) return fail(next, "area row unreadable", error);
                if (next >= end_ || !readSums(lines_[next], block)) return fail(next, "no SUM line", error);
                at = next;
            } else if (line.ends_with(std::string(kShareLabel) + "  SUM(S2) / [SUM(S1)+SUM(S2)]")) {
                if (!readReal(field(line, 0, 7), block.undrainedShare)) return fail(at, "share unreadable", error);
                block.hasUndrainedShare = true;
            } else if (const TableLabel* label = tableOf(line)) {
                size_t next = at + 2;  // past the column heading
                if (next > end_) return fail(at, "table without column heading", error);
                if (!readRows(next, label->kind, block.*(label->table))) return fail(next, "table row unreadable", error);
                at = next - 1;
            }
        }
        if (!counts) return fail(first_, "no counts record", error);
        if (!values) return fail(first_, "no values record", error);
        return true;
    }

private:
    bool fail(size_t at, std::string_view what, std::string& error) const {
        std::ostringstream text;
        text << "KALMO.PLT block " << blockNumber_ << ", line " << at + 1 << ": " << what;
        error = text.str();
        return false;
    }

    static const TableLabel* tableOf(const std::string& line) {
        for (const TableLabel& label : kTables)
            if (line == label.title) return &label;
        return nullptr;
    }

    bool readCounts(size_t at, Block& block) const {
        if (at >= end_) return false;
        const std::string_view line = lines_[at];
        int* targets[] = {&block.NUMSRF, &block.NTYP, &block.NUMSLC, &block.METHOD, &block.IDEFTO, &block.NNAILS,
                          &block.MISC[0], &block.MISC[1], &block.MISC[2], &block.MISC[3], &block.MISC[4]};
        const size_t widths[] = {5, 7, 7, 8, 8, 8, 7, 6, 6, 6, 6};
        size_t from = 0;
        for (size_t k = 0; k < std::size(widths); ++k) {
            if (!readInt(field(line, from, widths[k]), *targets[k])) return false;
            from += widths[k];
        }
        return true;
    }

    bool readValues(size_t at, Block& block) const {
        if (at >= end_) return false;
        const std::string_view line = lines_[at];
        if (!readReal(field(line, 0, 9), block.SF) || !readReal(field(line, 9, 9), block.SCORE) ||
            !readReal(field(line, 18, 8), block.RFACTOR))
            return false;
        for (size_t k = 0; k < 5; ++k)
            if (!readReal(field(line, 28 + 9 * k, 9), block.VALMSC[k])) return false;
        return true;
    }

    static bool readParameters(std::string_view line, size_t offset, Block& block) {
        for (size_t k = 0; k < 5; ++k)
            if (!readReal(field(line, 1 + kField * k, kField), block.SPAR[offset + k])) return false;
        return true;
    }

    static bool readSums(std::string_view line, Block& block) {
        return line.starts_with(" SUM") && readReal(field(line, kRowLead, kField), block.areaSum) &&
               readReal(field(line, kRowLead + kField, kField), block.undrainedAreaSum);
    }

    // Rows from line `at` on, as long as a line starts with a number; `at` ends on the first
    // line that is no row.
    bool readRows(size_t& at, RowKind kind, Table& table) const {
        table.present = true;
        for (; at < end_; ++at) {
            const std::string_view line = lines_[at];
            Row row;
            if (line.size() < kRowLead || line[4] != ' ' || !readInt(field(line, 0, 4), row.number)) return true;
            size_t valueCount = 0;
            switch (kind) {
                case RowKind::Values: valueCount = std::min<size_t>((line.size() - kRowLead) / kField, 6); break;
                case RowKind::NailForces:
                case RowKind::Combined: valueCount = 5; break;
                case RowKind::Areas: valueCount = 2; break;
            }
            for (size_t k = 0; k < valueCount; ++k) {
                double value = 0.0;
                if (!readReal(field(line, kRowLead + kField * k, kField), value)) return false;
                row.values.push_back(value);
            }
            const size_t tail = kRowLead + kField * valueCount;
            if (kind == RowKind::NailForces && !readInt(field(line, tail, 6), row.mode)) return false;
            if (kind == RowKind::Combined) {
                if (!readInt(field(line, tail, 4), row.mode)) return false;
                row.modeText = std::string(trimmed(field(line, tail + 4, std::string_view::npos)));
            }
            table.rows.push_back(std::move(row));
        }
        return true;
    }

    const std::vector<std::string>& lines_;
    size_t first_, end_;
    int blockNumber_;
};

}  // namespace

int readPltText(const std::string& text, std::vector<Block>& blocks, std::string& error) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(std::move(line));
    }

    std::vector<size_t> starts;
    for (size_t k = 0; k < lines.size(); ++k)
        if (!lines[k].empty() && lines[k][0] == '\f') starts.push_back(k);

    for (size_t b = 0; b < starts.size(); ++b) {
        const size_t end = b + 1 < starts.size() ? starts[b + 1] : lines.size();
        Block block;
        BlockReader reader(lines, starts[b], end, static_cast<int>(b) + 1);
        if (!reader.read(block, error)) return 2;
        blocks.push_back(std::move(block));
    }
    return 0;
}

int readPltFile(const std::string& path, std::vector<Block>& blocks, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot open " + path;
        return 1;
    }
    std::ostringstream all;
    all << in.rdbuf();
    return readPltText(all.str(), blocks, error);
}

}  // namespace plt
