// Whole runs of the general surface autosearch on the dry 1:2 slope of the general surface runs
// (c = 8 kPa, phi = 30 degrees, 19 kN/m3, force equilibrium with no interslice shear, 8
// slices). In tests/data/autosearch_arc the start is the input's general surface, a circular
// arc through the toe; in tests/data/autosearch_circle it is a single circle through the toe
// analysed by the circle routine, as an engineer follows a circle search with an autosearch.
// The answers analyse the start surface, improve it with the autosearch at a search width of
// 0.5 m, then print (and in batch mode save) the best surface. Besides the comparison with the expected
// files, the expected files are checked: the search never ends above the factor of its start,
// the result file was started again for the lowest surface (one echo of the input, one print
// of it, then the best surface's print, which is the same surface), and the printed factor of
// the lowest surface is the method of slices worked by hand on its printed slices.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "solver/solver_world.h"
#include "support/wholerun.h"

using namespace kalmo_test;

namespace {

std::string expectedFile(const std::string& caseName, const std::string& name) {
    return readFile(std::string(KALMO_TEST_DATA) + "/" + caseName + "/expected/" + name);
}

int countOf(const std::string& text, const std::string& part) {
    int n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// The slices of the print that starts at line `from`: two lines per slice, I4 1X 3F8.2 (X1, Z1,
// Z2, then X2, Z4, Z3).
std::vector<HandSlice> printedSlices(const std::vector<std::string>& lines, size_t from, double unitWeight) {
    std::vector<HandSlice> slices;
    for (size_t k = from; k + 1 < lines.size(); ++k) {
        const std::string& first = lines[k];
        const std::string& second = lines[k + 1];
        if (first.size() < 29 || second.size() < 29) continue;
        if (first.substr(0, 4) != second.substr(0, 4) || first.find_first_not_of(" 0123456789") < 4) continue;
        if (first.substr(0, 4).find_first_of("0123456789") == std::string::npos) continue;
        if (std::stoi(first.substr(0, 4)) != static_cast<int>(slices.size()) + 1) break;
        const double x1 = std::stod(first.substr(5, 8)), z1 = std::stod(first.substr(13, 8));
        const double z2 = std::stod(first.substr(21, 8));
        const double x2 = std::stod(second.substr(5, 8)), z4 = std::stod(second.substr(13, 8));
        const double z3 = std::stod(second.substr(21, 8));
        slices.push_back({x1, x2, z1, z2, z4, z3, unitWeight});
        ++k;
    }
    return slices;
}

// The ground of the section: crest at z = 0 up to x = 20, slope 1:2 down to z = 10 at x = 40.
double caseGround(double x) {
    if (x <= 20.0) return 0.0;
    if (x >= 40.0) return 10.0;
    return 0.5 * (x - 20.0);
}

// A slice whose top crosses a bend of the ground holds more or less soil than the trapezoid
// of its corners: its unit weight is scaled so that its weight is that of the soil between the
// ground and the straight base, integrated piece by piece between the bends.
void weighTheSoil(HandSlice& slice) {
    double soil = 0.0;
    double x = slice.xLeft;
    for (double bend : {20.0, 40.0, slice.xRight}) {
        if (bend <= x) continue;
        const double xr = std::min(bend, slice.xRight);
        auto base = [&](double at) {
            return slice.baseLeft + (slice.baseRight - slice.baseLeft) * (at - slice.xLeft) / slice.width();
        };
        soil += 0.5 * ((base(x) - caseGround(x)) + (base(xr) - caseGround(xr))) * (xr - x);
        x = xr;
        if (x >= slice.xRight) break;
    }
    slice.unitWeight *= soil / slice.area();
}

// The expected files of an autosearch run: the search ends below its start, at the lowest
// surface it listed, and that surface's printed factor is the method of slices by hand.
void checkAutosearchRun(const std::string& caseName) {
    const std::string eko = expectedFile(caseName, "SVAR.EKO");
    const std::string res = expectedFile(caseName, "KALMO.RES");

    // The listed factors: the start surface first, then the trials.
    std::vector<double> factors;
    for (const std::string& line : linesOf(eko))
        if (line.rfind(" ++++ SAFETY FACTOR =", 0) == 0) factors.push_back(std::stod(line.substr(21, 8)));
    ASSERT_GT(factors.size(), 100u);
    const double arcSF = factors.front();
    double lowest = 1e9;
    for (size_t k = 1; k < factors.size(); ++k) lowest = std::min(lowest, factors[k]);
    EXPECT_LT(lowest, arcSF);
    EXPECT_EQ(countOf(eko, " ITERATION COMPETED, NUMBER OF ITERATIONS :"), 1);
    EXPECT_NE(eko.find(" CRITICAL SURFACE, NO OF VERTEX :   9\n"), std::string::npos);  // 8 slices

    // The result file: one echo (the search started it again), the print of the lowest surface
    // and the print of the best surface, the same one.
    EXPECT_EQ(countOf(res, "ECHO PRINT OF DATA ON FORTRAN UNIT NUMBER = 14"), 1);
    const std::vector<std::string> lines = linesOf(res);
    std::vector<size_t> prints;
    for (size_t k = 0; k < lines.size(); ++k)
        if (lines[k].find("  SAFETY FACTOR =") != std::string::npos) prints.push_back(k);
    ASSERT_EQ(prints.size(), 2u);
    EXPECT_EQ(lines[prints[0]], lines[prints[1]]);
    EXPECT_EQ(lines[prints[0] + 1], lines[prints[1] + 1]);  // the surface number
    const double printedSF = std::stod(lines[prints[0]].substr(lines[prints[0]].size() - 9));
    EXPECT_NEAR(printedSF, lowest, 0.0005);

    // The method of slices by hand on the printed slices (coordinates to two decimals): force
    // equilibrium of every slice with no interslice shear.
    std::vector<HandSlice> slices = printedSlices(lines, prints[0], 19.0);
    ASSERT_EQ(slices.size(), 8u);
    for (HandSlice& slice : slices) weighTheSoil(slice);
    const double handSF = simplifiedFactor(slices, 8.0, std::tan(30.0 * 3.14159265358979323846 / 180.0));
    EXPECT_NEAR(printedSF, handSF, 0.01);
}

}  // namespace

TEST(WholeRun, AutosearchFromACircularArc) { checkCase("autosearch_arc"); }

TEST(WholeRun, TheAutosearchRunEndsAtItsLowestSurfaceCheckedByHand) { checkAutosearchRun("autosearch_arc"); }

TEST(WholeRun, CircleThenAutosearch) { checkCase("autosearch_circle"); }

// The circle is the start: its own result line comes first, with its moments, and the search
// ends below it on a surface that is no longer a circle.
TEST(WholeRun, TheAutosearchFromACircleEndsBelowItCheckedByHand) {
    checkAutosearchRun("autosearch_circle");
    const std::string eko = expectedFile("autosearch_circle", "SVAR.EKO");
    const size_t circleLine = eko.find(" ++++ SAFETY FACTOR =");
    ASSERT_NE(circleLine, std::string::npos);
    EXPECT_EQ(eko.find(" STABILIZING AND DRIVING MOMENT ="), eko.find('\n', circleLine) + 1);
}
