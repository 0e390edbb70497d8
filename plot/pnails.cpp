// plot/pnails.cpp
//
// PNAILS — the soil nails: each a bar from its first end (the head) to its second end (the
// tip), the head marked by a plate, the nail numbered at its head.
//
// Reads:  ISNAIL.NNAILS; SNAILS.SN(i, 1..4)
// Writes: the picture lines
// IERR:   not used

#include <cmath>
#include <string>

#include "io/fmt.h"
#include "plot/plot.h"
#include "records.h"

void PNAILS(const View& view, Picture& out) {
    const int nails = svg::limited(ISNAIL.NNAILS, MAXNAI);
    if (nails == 0) return;
    out.push_back("<g id=\"nails\">");
    for (int i = 1; i <= nails; ++i) {
        const double headX = view.px(SNAILS.SN(i, 1)), headY = view.py(SNAILS.SN(i, 2));
        const double tipX = view.px(SNAILS.SN(i, 3)), tipY = view.py(SNAILS.SN(i, 4));
        out.push_back("<line class=\"nail\" x1=\"" + svg::num(headX) + "\" y1=\"" + svg::num(headY) + "\" x2=\"" +
                      svg::num(tipX) + "\" y2=\"" + svg::num(tipY) + "\"/>");
        // The plate stands across the bar.
        const double length = std::hypot(tipX - headX, tipY - headY);
        if (length > 0.0) {
            const double acrossX = -(tipY - headY) / length * 6.0, acrossY = (tipX - headX) / length * 6.0;
            out.push_back("<line class=\"nail-plate\" x1=\"" + svg::num(headX - acrossX) + "\" y1=\"" +
                          svg::num(headY - acrossY) + "\" x2=\"" + svg::num(headX + acrossX) + "\" y2=\"" +
                          svg::num(headY + acrossY) + "\"/>");
        }
        const double awayX = length > 0.0 ? (headX - tipX) / length * 14.0 : 0.0;
        const double awayY = length > 0.0 ? (headY - tipY) / length * 14.0 : 0.0;
        out.push_back("<text class=\"note\" x=\"" + svg::num(headX + awayX) + "\" y=\"" + svg::num(headY + awayY + 4.0) +
                      "\" text-anchor=\"middle\">N" + svg::trimmed(io::fmtI(i, 4)) + "</text>");
    }
    out.push_back("</g>");
}
