// plot/ploads.cpp
//
// PLOADS — the external loads as they act in the analysis: the uniform surface load over its
// x range, the strip loads and the point forces, each times its magnitude factor of the load
// data (a load whose factor is zero does not act and is not drawn).
//
// A surface load is drawn standing on the ground line over its x range: a band whose height
// above the ground grows with the intensity (the largest vertical intensity of the picture
// gets the full height), with arrows down onto the ground (up for a negative intensity) and
// its intensities at the two ends written above it; a horizontal intensity is shown by an
// arrow along the band and its value. A point force is an arrow of fixed length ending at its
// point, in the direction of the force (x to the right, z downward), with its two components.
//
// Reads:  ILOA.NPF, NSTRIP; LOAD.LDAT, QRANGE, XZPF, FPF, XSTRIP, QSTRV, QSTRH; the ground line
// Writes: the picture lines
// IERR:   not used

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "plot/plot.h"
#include "records.h"

namespace {

constexpr double kTiny = 1.0E-20f;          // a magnitude factor below it switches the loads off
constexpr double kBandHeight = 36.0;        // picture units for the largest intensity
constexpr double kArrowLength = 60.0;       // picture units of a point force arrow
constexpr double kArrowSpacing = 28.0;      // picture units between the arrows of a band
constexpr double kMostArrows = 100.0;

struct SurfaceLoad {
    double x1, x2, vertical1, vertical2, horizontal1, horizontal2;
    std::string name;
};

// A load value as the picture writes it: up to five significant digits, no trailing zeros.
std::string value(double load) {
    std::string text = svg::trimmed(io::fmtG(load, 14, 5));
    if (text.find('E') == std::string::npos && text.find('.') != std::string::npos) {
        while (!text.empty() && text.back() == '0') text.pop_back();
        if (!text.empty() && text.back() == '.') text.pop_back();
    }
    return text.empty() ? "0" : text;
}

std::string arrow(double x1, double y1, double x2, double y2, const std::string& kind) {
    return "<line class=\"" + kind + "\" x1=\"" + svg::num(x1) + "\" y1=\"" + svg::num(y1) + "\" x2=\"" + svg::num(x2) +
           "\" y2=\"" + svg::num(y2) + "\" marker-end=\"url(#arrow-head)\"/>";
}

void drawBand(const SurfaceLoad& load, double largest, const View& view, Picture& out) {
    const double left = view.px(load.x1), right = view.px(load.x2);
    const double groundLeft = view.py(svg::groundLevel(load.x1)), groundRight = view.py(svg::groundLevel(load.x2));
    const double heightLeft = kBandHeight * std::fabs(load.vertical1) / largest;
    const double heightRight = kBandHeight * std::fabs(load.vertical2) / largest;
    out.push_back("<g class=\"load\">");
    out.push_back("<polygon class=\"load-band\" points=\"" +
                  svg::points({left, groundLeft, left, groundLeft - heightLeft, right, groundRight - heightRight, right,
                               groundRight}) +
                  "\"/>");
    // At least one arrow at each end; a band wider than the page gets no more than the page holds.
    double room = (right - left) / kArrowSpacing;
    if (!(room > 0.0)) room = 0.0;
    if (room > kMostArrows) room = kMostArrows;
    const int arrows = std::max(2, static_cast<int>(room) + 1);
    for (int k = 0; k < arrows; ++k) {
        const double share = static_cast<double>(k) / (arrows - 1);
        const double x = left + (right - left) * share;
        const double ground = groundLeft + (groundRight - groundLeft) * share;
        const double height = heightLeft + (heightRight - heightLeft) * share;
        const double intensity = load.vertical1 + (load.vertical2 - load.vertical1) * share;
        if (height < 4.0) continue;
        if (intensity > 0.0) out.push_back(arrow(x, ground - height, x, ground, "load-arrow"));
        else out.push_back(arrow(x, ground, x, ground - height, "load-arrow"));
    }
    std::string label = load.name + " q = " + value(load.vertical1);
    if (load.vertical2 != load.vertical1) label += " .. " + value(load.vertical2);
    if (load.horizontal1 != 0.0 || load.horizontal2 != 0.0) {
        label += ", qh = " + value(load.horizontal1);
        if (load.horizontal2 != load.horizontal1) label += " .. " + value(load.horizontal2);
        const double y = std::min(groundLeft - heightLeft, groundRight - heightRight) - 4.0;
        const double mid = (left + right) / 2.0;
        if (load.horizontal1 + load.horizontal2 > 0.0) out.push_back(arrow(mid - 20.0, y, mid + 20.0, y, "load-arrow"));
        else out.push_back(arrow(mid + 20.0, y, mid - 20.0, y, "load-arrow"));
    }
    label += " kPa";
    const double top = std::min(groundLeft - heightLeft, groundRight - heightRight);
    out.push_back("<text class=\"note\" x=\"" + svg::num((left + right) / 2.0) + "\" y=\"" + svg::num(top - 12.0) +
                  "\" text-anchor=\"middle\">" + svg::text(label) + "</text>");
    out.push_back("</g>");
}

}  // namespace

void PLOADS(const View& view, Picture& out) {
    std::vector<SurfaceLoad> bands;
    const double uniform = LOAD.LDAT(1);
    if (std::fabs(uniform) >= kTiny && LOAD.QRANGE(2) > LOAD.QRANGE(1))
        bands.push_back({LOAD.QRANGE(1), LOAD.QRANGE(2), uniform, uniform, 0.0, 0.0, "uniform"});
    const double stripFactor = LOAD.LDAT(5);
    if (stripFactor >= kTiny) {
        for (int j = 1; j <= svg::limited(ILOA.NSTRIP, MAXSTR); ++j) {
            bands.push_back({LOAD.XSTRIP(1, j), LOAD.XSTRIP(2, j), stripFactor * LOAD.QSTRV(1, j),
                             stripFactor * LOAD.QSTRV(2, j), stripFactor * LOAD.QSTRH(1, j),
                             stripFactor * LOAD.QSTRH(2, j), "S" + svg::trimmed(io::fmtI(j, 4))});
        }
    }
    double largest = 0.0;
    for (const SurfaceLoad& band : bands) largest = std::max({largest, std::fabs(band.vertical1), std::fabs(band.vertical2)});
    if (largest <= 0.0) largest = 1.0;
    for (const SurfaceLoad& band : bands) drawBand(band, largest, view, out);

    const double pointFactor = LOAD.LDAT(4);
    if (pointFactor < kTiny) return;
    for (int j = 1; j <= svg::limited(ILOA.NPF, MAXPF); ++j) {
        const double horizontal = pointFactor * LOAD.FPF(1, j), vertical = pointFactor * LOAD.FPF(2, j);
        const double size = std::hypot(horizontal, vertical);
        if (!(size > 0.0)) continue;
        const double tipX = view.px(LOAD.XZPF(1, j)), tipY = view.py(LOAD.XZPF(2, j));
        const double tailX = tipX - horizontal / size * kArrowLength, tailY = tipY - vertical / size * kArrowLength;
        out.push_back("<g class=\"load\">");
        out.push_back(arrow(tailX, tailY, tipX, tipY, "point-force"));
        out.push_back("<text class=\"note\" x=\"" + svg::num(tailX) + "\" y=\"" + svg::num(tailY - 6.0) +
                      "\" text-anchor=\"middle\">" +
                      svg::text("P" + svg::trimmed(io::fmtI(j, 4)) + " (" + value(horizontal) + ", " + value(vertical) +
                                ") kN/m") +
                      "</text>");
        out.push_back("</g>");
    }
}
