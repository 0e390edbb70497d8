// plot/pframe.cpp
//
// PFRAME — the layout of the picture and the drawing's transform.
//
// The drawing shows the whole section (all node columns of the mesh, from the ground surface
// down to the rock) and everything drawn on it: the saved surface and its slices, soil nails,
// point and strip loads and the wall. One scale serves x and z, the largest that fits the
// drawing into the page width and into a height that keeps the page printable; the drawing
// is centred across the page. Above it the title block and room for load arrows; below it
// the x axis and the material legend.
//
// Reads:  block geometry rows; IGEOMS.NX; GEOMSH.XSURF, ZSURF, ZROCK, XWALL, DWALL, ZWALL;
//         MASTER.IDTYP; ISNAIL.NNAILS, SNAILS.SN; ILOA.NPF, NSTRIP; LOAD.XZPF, XSTRIP;
//         ISOLPR.NMAT
// Writes: view
// IERR:   not used

#include <algorithm>
#include <cmath>

#include "plot/plot.h"
#include "records.h"

namespace {

constexpr double kPageWidth = 1120.0;
constexpr double kMarginLeft = 90.0;      // room for the depth labels
constexpr double kMarginRight = 40.0;
constexpr double kTitleHeight = 130.0;    // the title block
constexpr double kLoadRoom = 80.0;        // load arrows and their values above the ground
constexpr double kMaxDrawingHeight = 600.0;
constexpr double kAxisRoom = 70.0;        // x axis, its labels and title
constexpr double kLegendHead = 34.0;
constexpr double kLegendRow = 22.0;
constexpr int kLegendRowsPerColumn = 8;   // more materials than this go in two columns
constexpr double kSmallestSpan = 1.0;     // metres: a drawing never spans less

struct Extent {
    double low = INFINITY, high = -INFINITY;
    void take(double value) {
        if (!std::isfinite(value)) return;
        low = std::min(low, value);
        high = std::max(high, value);
    }
    bool empty() const { return !(low <= high); }
};

}  // namespace

void PFRAME(const plt::Block& block, View& view) {
    Extent across, down;

    const int columns = svg::limited(IGEOMS.NX + 1, MAXCOL);
    if (columns >= 2) {
        for (int c = 1; c <= columns; ++c) {
            across.take(GEOMSH.XSURF(c));
            down.take(GEOMSH.ZSURF(c));
            down.take(GEOMSH.ZROCK(c));
        }
    }
    for (const plt::Row& row : block.geometry.rows) {
        if (row.values.size() < 3) continue;
        across.take(row.values[0]);
        down.take(row.values[1]);
        down.take(row.values[2]);
    }
    for (int i = 1; i <= svg::limited(ISNAIL.NNAILS, MAXNAI); ++i) {
        across.take(SNAILS.SN(i, 1));
        across.take(SNAILS.SN(i, 3));
        down.take(SNAILS.SN(i, 2));
        down.take(SNAILS.SN(i, 4));
    }
    for (int i = 1; i <= svg::limited(ILOA.NPF, MAXPF); ++i) {
        across.take(LOAD.XZPF(1, i));
        down.take(LOAD.XZPF(2, i));
    }
    if (MASTER.IDTYP == 2 && GEOMSH.DWALL > 0.0) {
        across.take(GEOMSH.XWALL);
        down.take(GEOMSH.ZWALL);
    }
    if (across.empty()) across.low = across.high = 0.0;
    if (down.empty()) down.low = down.high = 0.0;
    if (across.high - across.low < kSmallestSpan) across.high = across.low + kSmallestSpan;
    if (down.high - down.low < kSmallestSpan) down.high = down.low + kSmallestSpan;

    view.xMin = across.low;
    view.xMax = across.high;
    view.zMin = down.low;
    view.zMax = down.high;
    const double room = kPageWidth - kMarginLeft - kMarginRight;
    view.scale = std::min(room / (view.xMax - view.xMin), kMaxDrawingHeight / (view.zMax - view.zMin));
    view.width = kPageWidth;
    view.left = kMarginLeft + (room - (view.xMax - view.xMin) * view.scale) / 2.0;
    view.top = kTitleHeight + kLoadRoom;
    view.drawingBottom = view.py(view.zMax);
    view.legendTop = view.drawingBottom + kAxisRoom;

    const int materials = svg::limited(ISOLPR.NMAT, MAXMAT);
    const int legendColumns = materials > kLegendRowsPerColumn ? 2 : 1;
    const int legendRows = (materials + legendColumns - 1) / legendColumns;
    view.height = view.legendTop + kLegendHead + legendRows * kLegendRow + 20.0;
}
