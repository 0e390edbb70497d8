// plot/svgpic.cpp
//
// SVGPIC — the whole picture of one saved surface: the page, its styles and the pieces in
// drawing order (section, water, slices and surface, nails, loads, axes, title block, legend).
//
// The drawing group carries the drawing's transform as data attributes (the x and depth at
// the drawing's upper left corner, its picture position and the scale in picture units per
// metre), so that a reader of the picture can map the section's points onto it. The page is
// white, lines are dark and colours light, so that it reads on a screen and on paper.
//
// Reads:  the block; the problem records through the pieces
// Writes: out, the lines of the SVG text
// IERR:   not used

#include <string>

#include "io/fmt.h"
#include "plot/plot.h"

namespace {

const char* const kStyle[] = {
    "<style>",
    "text { font-family: 'DejaVu Sans', Arial, Helvetica, sans-serif; fill: #1a1a1a; }",
    ".title { font-size: 17px; font-weight: bold; }",
    ".subtitle { font-size: 14px; }",
    ".info { font-size: 13px; }",
    ".result { font-size: 19px; font-weight: bold; }",
    ".note { font-size: 11px; }",
    ".tick-x, .tick-z { font-size: 12px; }",
    ".axis-title { font-size: 13px; font-style: italic; }",
    ".legend-head { font-size: 13px; font-weight: bold; }",
    ".legend { font-size: 13px; }",
    ".frame { fill: none; stroke: #1a1a1a; stroke-width: 1.2; }",
    ".boundary { stroke: #5a4a3a; stroke-width: 0.8; }",
    ".ground { fill: none; stroke: #2b1d0e; stroke-width: 2.4; stroke-linejoin: round; }",
    ".rock { fill: none; stroke: #6b4f2a; stroke-width: 2; stroke-dasharray: 10 4 2 4; }",
    ".wall { fill: #8c8c8c; stroke: #1a1a1a; stroke-width: 1.2; }",
    ".water { fill: none; stroke: #1f5fbf; stroke-width: 1.8; stroke-dasharray: 8 4; }",
    ".water-mark { fill: #1f5fbf; }",
    ".water-name { fill: #1f5fbf; }",
    ".slice { fill: #c0392b; fill-opacity: 0.12; stroke: #7b241c; stroke-width: 0.7; }",
    ".surface { fill: none; stroke: #c0392b; stroke-width: 3; stroke-linejoin: round; }",
    ".nail { stroke: #2e2e2e; stroke-width: 2.2; }",
    ".nail-plate { stroke: #2e2e2e; stroke-width: 3; }",
    ".load-band { fill: #e6e6e6; fill-opacity: 0.8; stroke: #333333; stroke-width: 1; }",
    ".load-arrow, .point-force { stroke: #333333; stroke-width: 1.3; }",
    ".point-force { stroke-width: 2; }",
    ".axis { stroke: #1a1a1a; stroke-width: 1; }",
    ".grid { stroke: #777777; stroke-width: 0.5; stroke-opacity: 0.35; }",
    ".swatch { stroke: #1a1a1a; stroke-width: 0.8; }",
    "</style>",
};

std::string precise(double value) { return io::Line().ES(value, 24, 15).str(); }

}  // namespace

void SVGPIC(const plt::Block& block, Picture& out) {
    View view;
    PFRAME(block, view);

    out.push_back("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
    out.push_back("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + svg::num(view.width) + "\" height=\"" +
                  svg::num(view.height) + "\" viewBox=\"0 0 " + svg::num(view.width) + " " + svg::num(view.height) +
                  "\">");
    out.push_back("<title>" + svg::text(svg::trimmed(block.TITLE[0])) + "</title>");
    for (const char* line : kStyle) out.push_back(line);
    out.push_back("<defs><marker id=\"arrow-head\" viewBox=\"0 0 10 10\" refX=\"10\" refY=\"5\" markerWidth=\"9\" "
                  "markerHeight=\"9\" markerUnits=\"userSpaceOnUse\" orient=\"auto\"><path d=\"M0,0 L10,5 L0,10 Z\" fill=\"#333333\"/></marker></defs>");
    out.push_back("<rect x=\"0\" y=\"0\" width=\"" + svg::num(view.width) + "\" height=\"" + svg::num(view.height) +
                  "\" fill=\"#ffffff\"/>");

    out.push_back("<g id=\"drawing\" data-x-min=\"" + svg::trimmed(precise(view.xMin)) + "\" data-z-min=\"" +
                  svg::trimmed(precise(view.zMin)) + "\" data-left=\"" + svg::trimmed(precise(view.left)) +
                  "\" data-top=\"" + svg::trimmed(precise(view.top)) + "\" data-scale=\"" +
                  svg::trimmed(precise(view.scale)) + "\">");
    PSECT(block, view, out);
    PWATER(view, view.px(svg::slicesMiddle(block, (view.xMin + view.xMax) / 2.0)), out);
    PSURF(block, view, out);
    PNAILS(view, out);
    PLOADS(view, out);
    PAXES(view, out);
    out.push_back("</g>");
    PTITLE(block, view, out);
    PLEGND(view, out);
    out.push_back("</svg>");
}
