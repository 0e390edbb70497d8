// plot/svgtxt.cpp
//
// Helpers of the picture routines: picture numbers and texts, material colours, the ground
// level at an x, the middle of the slices, and counts kept within the arrays they drive.
//
// Picture coordinates are written fixed with two decimals (a hundredth of a picture unit,
// far below what a screen or a printer shows); a point far off the page is written as lying
// a billion units off it, and a value that is no number as 0. Material colours are light, distinct tints,
// each of another brightness, so that neighbouring materials stay apart on a grey print too.
//
// Reads:  IGEOMS.NX, GEOMSH.XSURF, ZSURF (ground level)
// Writes: nothing
// IERR:   not used

#include <cmath>
#include <vector>

#include "input/input.h"
#include "io/fmt.h"
#include "plot/plot.h"
#include "records.h"

namespace svg {

namespace {
const char* const kMaterialColours[] = {"#f3dd9e", "#b9d7a1", "#d9b48f", "#a8c8e4", "#e7b3b3", "#cdbfe6",
                                        "#e9e3c0", "#9fc7bd", "#f0c27f", "#c7c7c7", "#d6e6a8", "#e3c3dc"};
constexpr int kColourCount = static_cast<int>(std::size(kMaterialColours));
}  // namespace

bool finite(double value) { return std::isfinite(value); }

double slicesMiddle(const plt::Block& block, double otherwise) {
    const std::vector<plt::Row>& sides = block.geometry.rows;
    if (sides.empty() || sides.front().values.empty() || sides.back().values.empty()) return otherwise;
    const double middle = (sides.front().values[0] + sides.back().values[0]) / 2.0;
    return finite(middle) ? middle : otherwise;
}

int limited(int count, int maximum) { return count < 0 ? 0 : (count > maximum ? maximum : count); }

std::string trimmed(std::string_view raw) {
    while (!raw.empty() && raw.front() == ' ') raw.remove_prefix(1);
    while (!raw.empty() && raw.back() == ' ') raw.remove_suffix(1);
    return std::string(raw);
}

std::string num(double value) {
    // Far off the page is as good as any farther: the field never overflows.
    constexpr double kFarOff = 1.0e9;
    if (!finite(value)) value = 0.0;
    if (value > kFarOff) value = kFarOff;
    if (value < -kFarOff) value = -kFarOff;
    return trimmed(io::fmtF(value, 16, 2));
}

std::string text(std::string_view raw) {
    std::string escaped;
    for (char c : raw) {
        switch (c) {
            case '&': escaped += "&amp;"; break;
            case '<': escaped += "&lt;"; break;
            case '>': escaped += "&gt;"; break;
            case '"': escaped += "&quot;"; break;
            default:
                // Control characters have no place in XML text.
                if (static_cast<unsigned char>(c) < 0x20) escaped += ' ';
                else escaped += c;
        }
    }
    return escaped;
}

std::string points(const std::vector<double>& xy) {
    std::string list;
    for (size_t k = 0; k + 1 < xy.size(); k += 2) {
        if (!list.empty()) list += ' ';
        list += num(xy[k]) + "," + num(xy[k + 1]);
    }
    return list;
}

std::string materialColour(int material) {
    if (material < 1) material = 1;
    return kMaterialColours[(material - 1) % kColourCount];
}

double groundLevel(double x) {
    const int columns = limited(IGEOMS.NX + 1, MAXCOL);
    if (columns < 1) return 0.0;
    if (columns < 2) return GEOMSH.ZSURF(1);
    double level = 0.0;
    int ierr = 0;
    INTPOL(columns, 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), x, level, ierr);
    return ierr == 0 ? level : GEOMSH.ZSURF(1);
}

}  // namespace svg
