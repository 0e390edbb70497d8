// plot/ptitle.cpp
//
// PTITLE — the title block: the two title lines of the saved block, the surface (number and
// type), the solution method, the analysis and the problem type, and the result as the
// post-processor file gives it: the safety factor, or for an earth-pressure problem the force
// on the wall (E2 of the slice next to the wall, the last slice) with the safety factor given
// for it (positive active, negative passive).
//
// Reads:  block (TITLE, NUMSRF, NTYP, METHOD, IDEFTO, SF, SCORE, RFACTOR, forces rows);
//         MASTER.IDTYP
// Writes: the picture lines; the result text carries id "safety-factor" and, for earth
//         pressure, "earth-pressure"
// IERR:   not used

#include <cmath>
#include <string>
#include <string_view>

#include "io/fmt.h"
#include "plot/plot.h"
#include "records.h"

namespace {

std::string_view surfaceTypeName(int type) {
    switch (type) {
        case 1: return "GENERAL SURFACE";
        case 2: return "CIRCLE";
        case 3: return "COMBINED SURFACE";
        case 4: return "EARTH PRESSURE PLANE";
        case 5: return "GENERAL SURFACE, AUTOSEARCH";
        default: return "SURFACE";
    }
}

std::string_view methodName(int method) {
    switch (method) {
        case -1: return "-1 Force Equilibrium";
        case 0: return "0 KALMO 1988-2002";
        case 1: return "1 Bishop Simplified";
        case 2: return "2 Bishop Modified";
        case 3: return "3 KALMO-2003";
        default: return "unknown";
    }
}

std::string_view analysisName(int analysis) {
    switch (analysis) {
        case 1: return "EFFECTIVE STRESS ANALYSIS";
        case 2: return "TOTAL STRESS ANALYSIS";
        case 3: return "COMBINED ANALYSIS";
        default: return "ANALYSIS UNKNOWN";
    }
}

std::string textAt(double x, double y, const std::string& attributes, const std::string& content) {
    return "<text x=\"" + svg::num(x) + "\" y=\"" + svg::num(y) + "\" " + attributes + ">" + content + "</text>";
}

}  // namespace

// A field the file wrote as asterisks came back as not a number: it reads as asterisks again.
std::string sfText(const plt::Block& block) {
    return svg::finite(block.SF) ? svg::trimmed(io::fmtF(block.SF, 9, 4)) : io::repeat('*', 9);
}

void PTITLE(const plt::Block& block, const View& view, Picture& out) {
    const double left = 20.0, right = view.width - 20.0;
    out.push_back("<g id=\"title-block\">");
    out.push_back("<rect class=\"frame\" x=\"" + svg::num(left) + "\" y=\"14\" width=\"" + svg::num(right - left) +
                  "\" height=\"104\"/>");
    out.push_back(textAt(left + 12.0, 38.0, "class=\"title\"", svg::text(svg::trimmed(block.TITLE[0]))));
    out.push_back(textAt(left + 12.0, 60.0, "class=\"subtitle\"", svg::text(svg::trimmed(block.TITLE[1]))));

    const std::string surface = "SURFACE " + svg::trimmed(io::fmtI(block.NUMSRF, 8)) + " : " +
                                std::string(surfaceTypeName(block.NTYP)) + ",  METHOD " +
                                std::string(methodName(block.METHOD)) + ",  " +
                                svg::trimmed(io::fmtI(block.NUMSLC, 6)) + " SLICES";
    out.push_back(textAt(left + 12.0, 84.0, "class=\"info\"", svg::text(surface)));
    const std::string analysis = std::string(analysisName(block.IDEFTO)) + ",  " +
                                 (MASTER.IDTYP == 2 ? "EARTH PRESSURE PROBLEM" : "STABILITY/BEARING PROBLEM") +
                                 ",  SCORE " + svg::trimmed(io::fmtF(block.SCORE, 9, 3)) + ",  R-FACTOR " +
                                 svg::trimmed(io::fmtF(block.RFACTOR, 8, 3));
    out.push_back(textAt(left + 12.0, 106.0, "class=\"info\"", svg::text(analysis)));

    if (block.NTYP == 4 || MASTER.IDTYP == 2) {
        // The force on the wall is E2 of the last slice, the slice next to the wall.
        std::string force = "not saved";
        const plt::Table& forces = block.forces;
        if (!forces.rows.empty() && forces.rows.back().values.size() >= 3)
            force = svg::finite(forces.rows.back().values[2])
                        ? svg::trimmed(io::fmtG(forces.rows.back().values[2], 14, 5)) + " kN/m"
                        : io::repeat('*', 12);
        out.push_back(textAt(right - 12.0, 86.0, "id=\"earth-pressure\" class=\"result\" text-anchor=\"end\"",
                             svg::text("EARTH PRESSURE = " + force)));
        const std::string side = block.SF > 0.0 ? " (ACTIVE)" : (block.SF < 0.0 ? " (PASSIVE)" : "");
        out.push_back(textAt(right - 12.0, 106.0, "id=\"safety-factor\" class=\"info\" text-anchor=\"end\"",
                             "SAFETY FACTOR = " + sfText(block) + side));
    } else {
        out.push_back(textAt(right - 12.0, 96.0, "id=\"safety-factor\" class=\"result\" text-anchor=\"end\"",
                             "SAFETY FACTOR = " + sfText(block)));
    }
    out.push_back("</g>");
}
