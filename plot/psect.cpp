// plot/psect.cpp
//
// PSECT — the section: materials filled, layer and triangle boundaries, ground and rock
// lines, and the wall of an earth-pressure problem.
//
// The materials are filled as the program finds them at a point: the horizontal layers by
// depth (a layer reaches from the level of the layer above it down to its own level; the
// first layer has no upper bound and the last no lower one); without layers and with more
// than one material, the materials of the mesh elements; over both, the material triangles,
// the first triangle given on top since it is the one found first. All fills are cut to the
// section between the ground line and the rock line. The wall stands at its x from the ground
// down to its foot; it is drawn on the side away from the slices, where its body is.
//
// Reads:  IGEOMS (NX, NLAYER, NELEM, NNODE, IELNOD, IELMAT, NTRI, ITRMAT, LAYMAT), GEOMSH
//         (XSURF, ZSURF, ZROCK, ZLAYER, XNOD, ZNOD, XTRI, ZTRI, XWALL, DWALL, ZWALL),
//         ISOLPR.NMAT, MASTER.IDTYP; the block's geometry rows (side of the wall)
// Writes: the picture lines
// IERR:   not used

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "plot/plot.h"
#include "records.h"

namespace {

constexpr double kWallThickness = 8.0;  // picture units

std::string rect(double x1, double y1, double x2, double y2, const std::string& attributes) {
    return "<rect x=\"" + svg::num(std::min(x1, x2)) + "\" y=\"" + svg::num(std::min(y1, y2)) + "\" width=\"" +
           svg::num(std::fabs(x2 - x1)) + "\" height=\"" + svg::num(std::fabs(y2 - y1)) + "\" " + attributes + "/>";
}

std::string fillOf(int material) { return "fill=\"" + svg::materialColour(material) + "\""; }

}  // namespace

void PSECT(const plt::Block& block, const View& view, Picture& out) {
    const int columns = svg::limited(IGEOMS.NX + 1, MAXCOL);
    if (columns < 2) return;

    std::vector<double> ground, rock, outline;
    for (int c = 1; c <= columns; ++c) {
        ground.insert(ground.end(), {view.px(GEOMSH.XSURF(c)), view.py(GEOMSH.ZSURF(c))});
        rock.insert(rock.end(), {view.px(GEOMSH.XSURF(c)), view.py(GEOMSH.ZROCK(c))});
    }
    outline = ground;
    for (int c = columns; c >= 1; --c) outline.insert(outline.end(), {rock[2 * (c - 1)], rock[2 * (c - 1) + 1]});
    out.push_back("<defs><clipPath id=\"section-clip\"><polygon points=\"" + svg::points(outline) +
                  "\"/></clipPath></defs>");

    // Materials, cut to the section.
    out.push_back("<g id=\"materials\" clip-path=\"url(#section-clip)\">");
    const double xLeft = view.px(view.xMin), xRight = view.px(view.xMax);
    const double yTop = view.py(view.zMin) - 1.0, yBottom = view.py(view.zMax) + 1.0;
    const int layers = svg::limited(IGEOMS.NLAYER, MAXLAY);
    const int materials = svg::limited(ISOLPR.NMAT, MAXMAT);
    const int elements = svg::limited(IGEOMS.NELEM, MAXELM);
    const int nodes = svg::limited(IGEOMS.NNODE, MAXNOD);
    if (layers > 0) {
        for (int k = 1; k <= layers; ++k) {
            const double upper = k == 1 ? yTop : std::clamp(view.py(GEOMSH.ZLAYER(k - 1)), yTop, yBottom);
            const double lower = k == layers ? yBottom : std::clamp(view.py(GEOMSH.ZLAYER(k)), yTop, yBottom);
            if (lower > upper) out.push_back(rect(xLeft, upper, xRight, lower, fillOf(IGEOMS.LAYMAT(k))));
        }
    } else if (materials > 1 && elements > 0) {
        // One path per material, one closed figure per element.
        for (int m = 1; m <= materials; ++m) {
            std::string path;
            for (int e = 1; e <= elements; ++e) {
                if (IGEOMS.IELMAT(e) != m) continue;
                std::string figure;
                for (int corner = 1; corner <= 4; ++corner) {
                    const int n = IGEOMS.IELNOD(corner, e);
                    if (n < 1 || n > nodes) {
                        figure.clear();
                        break;
                    }
                    figure += (corner == 1 ? "M" : "L") + svg::num(view.px(GEOMSH.XNOD(n))) + "," +
                              svg::num(view.py(GEOMSH.ZNOD(n)));
                }
                if (!figure.empty()) path += figure + "Z";
            }
            if (!path.empty()) out.push_back("<path d=\"" + path + "\" " + fillOf(m) + " stroke=\"" +
                                             svg::materialColour(m) + "\" stroke-width=\"0.5\"/>");
        }
    } else {
        out.push_back(rect(xLeft, yTop, xRight, yBottom, fillOf(1)));
    }
    const int triangles = svg::limited(IGEOMS.NTRI, MAXTRI);
    for (int t = triangles; t >= 1; --t) {
        std::vector<double> corners;
        for (int v = 1; v <= 3; ++v) corners.insert(corners.end(), {view.px(GEOMSH.XTRI(v, t)), view.py(GEOMSH.ZTRI(v, t))});
        out.push_back("<polygon class=\"boundary\" points=\"" + svg::points(corners) + "\" " + fillOf(IGEOMS.ITRMAT(t)) + "/>");
    }
    for (int k = 1; k < layers; ++k) {
        const double level = view.py(GEOMSH.ZLAYER(k));
        out.push_back("<line class=\"boundary\" x1=\"" + svg::num(xLeft) + "\" y1=\"" + svg::num(level) + "\" x2=\"" +
                      svg::num(xRight) + "\" y2=\"" + svg::num(level) + "\"/>");
    }
    out.push_back("</g>");

    out.push_back("<polyline id=\"rock\" class=\"rock\" points=\"" + svg::points(rock) + "\"/>");
    out.push_back("<polyline id=\"ground\" class=\"ground\" points=\"" + svg::points(ground) + "\"/>");

    // The wall of an earth-pressure problem.
    if (MASTER.IDTYP == 2 && GEOMSH.DWALL > 0.0) {
        const double slicesMid = svg::slicesMiddle(block, GEOMSH.XWALL);
        const double face = view.px(GEOMSH.XWALL);
        const double back = slicesMid <= GEOMSH.XWALL ? face + kWallThickness : face - kWallThickness;
        out.push_back(rect(face, view.py(svg::groundLevel(GEOMSH.XWALL)), back, view.py(GEOMSH.ZWALL),
                           "id=\"wall\" class=\"wall\""));
    }
}
