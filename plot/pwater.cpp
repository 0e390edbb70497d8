// plot/pwater.cpp
//
// PWATER — the ground water: the water table of hydrostatic pore pressures, or the free water
// level of the pore-pressure x-lines.
//
// With hydrostatic pore pressures, and with general ones given without pore-pressure x-lines
// (whose hydrostatic part then also hangs from the water table level), the water table is a
// level line across the section. With pore-pressure x-lines the free water level the reader
// derived for each x-line is joined from line to line and held level beyond the first and the
// last, as the profiles are used there. A level outside the depths drawn is left out. The
// line is marked with the usual triangle and named.
//
// Reads:  IWATER.IDPWP, NUMXPW; WATER1.ZWATER, XPW, ZFREE
// Writes: the picture lines
// IERR:   not used

#include <string>
#include <vector>

#include "plot/plot.h"
#include "records.h"

void PWATER(const View& view, double slicesMiddle, Picture& out) {
    std::vector<double> level;
    std::string name;
    const int xLines = svg::limited(IWATER.NUMXPW, MAXPWX);
    if (IWATER.IDPWP == 1 || (IWATER.IDPWP == 2 && xLines == 0)) {
        if (WATER1.ZWATER < view.zMin || WATER1.ZWATER > view.zMax) return;
        level = {view.px(view.xMin), view.py(WATER1.ZWATER), view.px(view.xMax), view.py(WATER1.ZWATER)};
        name = "water table";
    } else if (IWATER.IDPWP == 2) {
        level.insert(level.end(), {view.px(view.xMin), view.py(WATER1.ZFREE(1))});
        for (int i = 1; i <= xLines; ++i) {
            if (WATER1.XPW(i) <= view.xMin || WATER1.XPW(i) >= view.xMax) continue;
            level.insert(level.end(), {view.px(WATER1.XPW(i)), view.py(WATER1.ZFREE(i))});
        }
        level.insert(level.end(), {view.px(view.xMax), view.py(WATER1.ZFREE(xLines))});
        name = "pore-pressure level";
    } else {
        return;
    }
    for (size_t k = 1; k < level.size(); k += 2)
        if (level[k] < view.py(view.zMin) || level[k] > view.py(view.zMax)) return;

    out.push_back("<polyline id=\"water\" class=\"water\" points=\"" + svg::points(level) + "\"/>");
    // The triangle stands on the line near the end away from the slices, its name beside it.
    const bool atRight = slicesMiddle < (level.front() + level[level.size() - 2]) / 2.0;
    const double markX = atRight ? level[level.size() - 2] - 40.0 : level[0] + 40.0;
    const double markY = atRight ? level[level.size() - 1] : level[1];
    out.push_back("<polygon class=\"water-mark\" points=\"" +
                  svg::points({markX - 7.0, markY - 12.0, markX + 7.0, markY - 12.0, markX, markY}) + "\"/>");
    out.push_back("<text class=\"note water-name\" x=\"" + svg::num(atRight ? markX - 12.0 : markX + 12.0) + "\" y=\"" +
                  svg::num(markY - 4.0) + "\" text-anchor=\"" + (atRight ? "end" : "start") + "\">" + name + "</text>");
}
