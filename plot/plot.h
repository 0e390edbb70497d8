// plot/plot.h
//
// The picture program kalmoplot: the section as read from the input file, with a surface
// saved in the post-processor file, drawn to scale as an SVG picture.
//
// The picture is built as a list of text lines; every routine adds its elements to it. The
// drawing's transform (View) maps a point (x, z) of the section, z a depth growing downward,
// to picture coordinates (px to the right, py downward) with one scale for both directions,
// so that the section is drawn as it stands in the input.

#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "output/readplt.h"

// The lines of one SVG picture.
using Picture = std::vector<std::string>;

// The drawing's transform: section metres to picture units, the same scale across and down.
struct View {
    double xMin = 0.0, xMax = 1.0;   // section x shown (m)
    double zMin = 0.0, zMax = 1.0;   // section depths shown (m)
    double scale = 1.0;              // picture units per metre
    double left = 0.0, top = 0.0;    // picture position of (xMin, zMin)
    double width = 0.0;              // picture width of the whole page
    double height = 0.0;             // picture height of the whole page
    double drawingBottom = 0.0;      // picture y of zMax
    double legendTop = 0.0;          // picture y where the material legend starts
    double px(double x) const { return left + (x - xMin) * scale; }
    double py(double z) const { return top + (z - zMin) * scale; }
};

// Reads KALMO.INP of the working folder through the program's input reader, quietly: its
// messages and questions go to the null device and its work file to a temporary folder, so
// nothing in the run folder changes. Returns 0 or the reader's IERR; -1 when KALMO.INP cannot
// be opened, -2 when no temporary work file can be made.
int READQ();

// The whole picture of one saved surface over the section held in the problem records.
void SVGPIC(const plt::Block& block, Picture& out);

// The pieces of the picture, in drawing order.
void PFRAME(const plt::Block& block, View& view);                 // extents, scale and layout
void PSECT(const plt::Block& block, const View& view, Picture& out);  // materials, lines, wall
void PWATER(const View& view, double slicesMiddle, Picture& out);  // water table or pore-pressure level
void PLOADS(const View& view, Picture& out);                      // point and strip loads
void PNAILS(const View& view, Picture& out);                      // soil nails
void PSURF(const plt::Block& block, const View& view, Picture& out);  // slices and shear surface
void PAXES(const View& view, Picture& out);                       // axes with metre ticks
void PTITLE(const plt::Block& block, const View& view, Picture& out);  // title block
void PLEGND(const View& view, Picture& out);                      // material legend

// Small helpers shared by the pieces (plot/svgtxt.cpp).
namespace svg {
std::string num(double value);                 // a picture coordinate: fixed, two decimals
std::string text(std::string_view raw);        // text with the XML characters escaped
std::string trimmed(std::string_view raw);     // without leading and trailing blanks
std::string points(const std::vector<double>& xy);  // "x1,y1 x2,y2 ..." of picture coordinates
std::string materialColour(int material);      // fill colour of a material
double groundLevel(double x);                  // ground level at x in the section's surface line
bool finite(double value);
// The x halfway between the first and the last side of the slices; `otherwise` without slices.
double slicesMiddle(const plt::Block& block, double otherwise);
int limited(int count, int maximum);           // a count of the records, kept within its array
}  // namespace svg

// The numbers of the title block, as the post-processor file gives them.
std::string sfText(const plt::Block& block);   // the safety factor as its F9.4 field reads
