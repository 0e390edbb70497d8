// plot/plegnd.cpp
//
// PLEGND — the material legend: for every material of the section its colour, its number,
// its unit weight, and its strength as the analysis uses it: cohesion and friction angle in
// an effective stress analysis, the undrained strength in a total stress analysis, both in a
// combined one. The undrained strength given in the material table is the base value; where
// the material takes its undrained strength from the profiles (or the nodes), the legend says
// so. More than eight materials are set in two columns.
//
// Reads:  ISOLPR.NMAT, NSUX; SOLPRP.MAT (GAMTOT, COHESN, PHIANG as its tangent, MAT14 the
//         undrained strength, MAT16 the profile switch); MASTER.IDEFTO, PI
// Writes: the picture lines; each row carries id "legend-material-<number>"
// IERR:   not used

#include <cmath>
#include <string>

#include "io/fmt.h"
#include "plot/plot.h"
#include "records.h"

namespace {

constexpr double kRow = 22.0;
constexpr double kColumnWidth = 520.0;
constexpr int kRowsPerColumn = 8;
constexpr double kProfileSwitch = 0.5f;   // MAT(16) at or above it adds the profiles
constexpr double kBaseFromProfiles = 0.1f; // a base value at most this takes the profiles

std::string fixed(double value, int decimals) { return svg::trimmed(io::fmtF(value, 14, decimals)); }

std::string strengthText(int m) {
    const double cohesion = SOLPRP.MAT(COHESN, m);
    const double friction = std::atan(SOLPRP.MAT(PHIANG, m)) * 180.0 / MASTER.PI;
    const double undrained = SOLPRP.MAT(MAT14, m);
    const bool fromProfiles = ISOLPR.NSUX > 0 &&
                              (SOLPRP.MAT(MAT16, m) >= kProfileSwitch || std::fabs(undrained) <= kBaseFromProfiles);
    std::string drained = "c' = " + fixed(cohesion, 1) + " kPa,  \xcf\x86' = " + fixed(friction, 1) + "\xc2\xb0";
    // The base value is left out where it is no more than a switch to the profiles.
    std::string total = "su";
    if (!fromProfiles || std::fabs(undrained) > kBaseFromProfiles) total += " = " + fixed(undrained, 1) + " kPa";
    if (fromProfiles) total += total == "su" ? " from the profiles" : " + profiles";
    if (ISOLPR.NSUNOD > 0) total += " + node values";
    switch (MASTER.IDEFTO) {
        case 2: return total;
        case 3: return drained + ",  " + total;
        default: return drained;
    }
}

}  // namespace

void PLEGND(const View& view, Picture& out) {
    const int materials = svg::limited(ISOLPR.NMAT, MAXMAT);
    if (materials == 0) return;
    out.push_back("<g id=\"legend\">");
    out.push_back("<text class=\"legend-head\" x=\"20\" y=\"" + svg::num(view.legendTop + 16.0) + "\">MATERIALS</text>");
    const int columns = materials > kRowsPerColumn ? 2 : 1;
    const int rows = (materials + columns - 1) / columns;
    for (int m = 1; m <= materials; ++m) {
        const double x = 20.0 + ((m - 1) / rows) * kColumnWidth;
        const double y = view.legendTop + 30.0 + ((m - 1) % rows) * kRow;
        out.push_back("<g id=\"legend-material-" + svg::trimmed(io::fmtI(m, 4)) + "\">");
        out.push_back("<rect class=\"swatch\" x=\"" + svg::num(x) + "\" y=\"" + svg::num(y) +
                      "\" width=\"28\" height=\"15\" fill=\"" + svg::materialColour(m) + "\"/>");
        const std::string row = "MATERIAL " + svg::trimmed(io::fmtI(m, 4)) + ":  \xce\xb3 = " +
                                fixed(SOLPRP.MAT(GAMTOT, m), 1) + " kN/m\xc2\xb3,  " + strengthText(m);
        out.push_back("<text class=\"legend\" x=\"" + svg::num(x + 38.0) + "\" y=\"" + svg::num(y + 12.0) + "\">" +
                      svg::text(row) + "</text>");
        out.push_back("</g>");
    }
    out.push_back("</g>");
}
