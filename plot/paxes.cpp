// plot/paxes.cpp
//
// PAXES — the axes: x along the foot of the drawing and the depth z along its left side, with
// ticks and labels at whole metres (a step of 1, 2 or 5 times a power of ten, about twelve
// ticks along the longer side), and a grid at the same steps across the drawing, faint enough
// to read the section through it. Depth grows downward, as the section is drawn.
//
// Reads:  view
// Writes: the picture lines; tick labels carry class "tick-x" or "tick-z" and the value
// IERR:   not used

#include <algorithm>
#include <cmath>
#include <string>

#include "io/fmt.h"
#include "plot/plot.h"

namespace {

constexpr double kTicksWanted = 12.0;
constexpr double kAxisGap = 12.0;  // picture units between the drawing and an axis
constexpr int kMostTicks = 200;

double tickStep(double span) {
    const double rough = span / kTicksWanted;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    for (double multiple : {1.0, 2.0, 5.0})
        if (multiple * power >= rough) return std::max(1.0, multiple * power);
    return std::max(1.0, 10.0 * power);
}

// Whole metres; a tick beyond any section a mesh can hold is written in exponent form.
std::string label(double metres) {
    constexpr double kLargestWhole = 1.0e12;
    if (std::fabs(metres) < kLargestWhole) return svg::trimmed(io::fmtI(std::llround(metres), 14));
    return svg::trimmed(io::fmtES(metres, 14, 3));
}

}  // namespace

void PAXES(const View& view, Picture& out) {
    const double step = tickStep(std::max(view.xMax - view.xMin, view.zMax - view.zMin));
    const double axisY = view.drawingBottom + kAxisGap;
    const double axisX = view.px(view.xMin) - kAxisGap;
    const double right = view.px(view.xMax), top = view.py(view.zMin);

    out.push_back("<g id=\"axes\">");
    out.push_back("<line class=\"axis\" x1=\"" + svg::num(view.px(view.xMin)) + "\" y1=\"" + svg::num(axisY) + "\" x2=\"" +
                  svg::num(right) + "\" y2=\"" + svg::num(axisY) + "\"/>");
    out.push_back("<line class=\"axis\" x1=\"" + svg::num(axisX) + "\" y1=\"" + svg::num(top) + "\" x2=\"" +
                  svg::num(axisX) + "\" y2=\"" + svg::num(view.drawingBottom) + "\"/>");

    const double firstX = std::ceil(view.xMin / step - 1.0e-9) * step;
    for (int k = 0; k < kMostTicks && firstX + k * step <= view.xMax + 1.0e-9 * step; ++k) {
        const double x = firstX + k * step;
        const std::string px = svg::num(view.px(x));
        out.push_back("<line class=\"grid\" x1=\"" + px + "\" y1=\"" + svg::num(top) + "\" x2=\"" + px + "\" y2=\"" +
                      svg::num(view.drawingBottom) + "\"/>");
        out.push_back("<line class=\"axis\" x1=\"" + px + "\" y1=\"" + svg::num(axisY) + "\" x2=\"" + px + "\" y2=\"" +
                      svg::num(axisY + 6.0) + "\"/>");
        out.push_back("<text class=\"tick-x\" x=\"" + px + "\" y=\"" + svg::num(axisY + 20.0) +
                      "\" text-anchor=\"middle\">" + label(x) + "</text>");
    }
    const double firstZ = std::ceil(view.zMin / step - 1.0e-9) * step;
    for (int k = 0; k < kMostTicks && firstZ + k * step <= view.zMax + 1.0e-9 * step; ++k) {
        const double z = firstZ + k * step;
        const std::string py = svg::num(view.py(z));
        out.push_back("<line class=\"grid\" x1=\"" + svg::num(view.px(view.xMin)) + "\" y1=\"" + py + "\" x2=\"" +
                      svg::num(right) + "\" y2=\"" + py + "\"/>");
        out.push_back("<line class=\"axis\" x1=\"" + svg::num(axisX - 6.0) + "\" y1=\"" + py + "\" x2=\"" +
                      svg::num(axisX) + "\" y2=\"" + py + "\"/>");
        out.push_back("<text class=\"tick-z\" x=\"" + svg::num(axisX - 9.0) + "\" y=\"" + svg::num(view.py(z) + 4.0) +
                      "\" text-anchor=\"end\">" + label(z) + "</text>");
    }
    out.push_back("<text class=\"axis-title\" x=\"" + svg::num((view.px(view.xMin) + right) / 2.0) + "\" y=\"" +
                  svg::num(axisY + 42.0) + "\" text-anchor=\"middle\">x (m)</text>");
    const double middle = (top + view.drawingBottom) / 2.0;
    out.push_back("<text class=\"axis-title\" x=\"" + svg::num(axisX - 52.0) + "\" y=\"" + svg::num(middle) +
                  "\" text-anchor=\"middle\" transform=\"rotate(-90 " + svg::num(axisX - 52.0) + " " + svg::num(middle) +
                  ")\">depth z (m)</text>");
    out.push_back("</g>");
}
