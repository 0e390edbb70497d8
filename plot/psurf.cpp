// plot/psurf.cpp
//
// PSURF — the saved shear surface and its slices, from the geometry table of the block.
//
// The geometry table gives the sides of the slices: row 0 the left side of slice 1 (x, top z,
// base z: corners 1 and 4), then for every slice its right side (x, top z, base z: corners 2
// and 3). Slice i is the quadrilateral between the side of row i-1 and the side of row i; the
// shear surface is the broken line through the base corners, left to right. A side whose
// values did not fit their fields (read back as not a number) breaks the surface there and
// its slices are left out.
//
// Reads:  block.geometry rows
// Writes: the picture lines; the surface polyline carries id "shear-surface"
// IERR:   not used

#include <string>
#include <vector>

#include "plot/plot.h"

void PSURF(const plt::Block& block, const View& view, Picture& out) {
    struct Side {
        double x, top, base;
        bool usable;
    };
    std::vector<Side> sides;
    for (const plt::Row& row : block.geometry.rows) {
        if (row.values.size() < 3) continue;
        const Side side{row.values[0], row.values[1], row.values[2],
                        svg::finite(row.values[0]) && svg::finite(row.values[1]) && svg::finite(row.values[2])};
        sides.push_back(side);
    }
    if (sides.size() < 2) return;

    out.push_back("<g id=\"slices\">");
    for (size_t i = 1; i < sides.size(); ++i) {
        const Side& left = sides[i - 1];
        const Side& right = sides[i];
        if (!left.usable || !right.usable) continue;
        out.push_back("<polygon class=\"slice\" points=\"" +
                      svg::points({view.px(left.x), view.py(left.top), view.px(right.x), view.py(right.top),
                                   view.px(right.x), view.py(right.base), view.px(left.x), view.py(left.base)}) +
                      "\"/>");
    }
    out.push_back("</g>");

    std::vector<double> base;
    for (const Side& side : sides)
        if (side.usable) base.insert(base.end(), {view.px(side.x), view.py(side.base)});
    out.push_back("<polyline id=\"shear-surface\" class=\"surface\" points=\"" + svg::points(base) + "\"/>");
}
