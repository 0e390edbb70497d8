// Whole runs of a general surface from the input file to the result file, in batch mode: the
// effective-stress and the total-stress case of tests/data. Besides the comparison with the
// expected files, the expected files themselves are checked against the method of slices
// worked by hand for the same slices, and the result print against its layout rules.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "solver/solver_world.h"
#include "support/wholerun.h"

using namespace kalmo_test;

namespace {

// The section of both cases: crest at z = 0 up to x = 20, slope 1:2 down to z = 10 at x = 40.
double caseGround(double x) {
    if (x <= 20.0) return 0.0;
    if (x >= 40.0) return 10.0;
    return 0.5 * (x - 20.0);
}

struct Case {
    std::string folder;
    std::string title1, title2;
    std::string analysis;  // the 25-character analysis text of the method line
    std::vector<Point> surface;
    double unitWeight, cohesion, tanPhi;
};

const double kPi = 3.14159265358979323846;

Case effectiveCase() {
    return {"general_effective",
            "DRY 1:2 SLOPE IN SILTY SAND - ONE GENERAL SHEAR SURFACE",
            "EFFECTIVE STRESS ANALYSIS, KN AND M, FORCE EQUILIBRIUM, NO INTERSLICE SHEAR",
            "EFFECTIVE STRESS ANALYSIS",
            {{10, -2}, {14, 4}, {17, 6.5}, {20, 8.5}, {25, 10.8}, {30, 12.2}, {35, 12.8}, {40, 12.6}, {44, 11.2},
             {48, 9}},
            19.0,
            8.0,
            std::tan(30.0 * kPi / 180.0)};
}

Case totalCase() {
    return {"general_total",
            "1:2 SLOPE IN CLAY - ONE GENERAL SHEAR SURFACE",
            "TOTAL STRESS ANALYSIS, KN AND M, FORCE EQUILIBRIUM, NO INTERSLICE SHEAR",
            "TOTAL STRESS ANALYSIS    ",
            {{5, -3}, {8, 3}, {12, 6.5}, {16, 9}, {20, 10.5}, {26, 12}, {32, 12.5}, {38, 12}, {40, 11.6}, {45, 10.6},
             {50, 9}},
            18.0,
            40.0,  // the undrained strength
            0.0};
}

std::vector<HandSlice> slicesOf(const Case& c) { return handSlices(c.surface, caseGround, 0.0, 10.0, c.unitWeight); }

std::string expectedFile(const Case& c, const std::string& name) {
    return readFile(std::string(KALMO_TEST_DATA) + "/" + c.folder + "/expected/" + name);
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

double number(const std::string& line, size_t from, size_t width) { return std::stod(line.substr(from, width)); }

// The safety factor the dialogue reports for the best surface (seven digits).
double reportedFactor(const Case& c) {
    const std::string eko = expectedFile(c, "SVAR.EKO");
    const std::string tag = " BEST SURFACE (NUM=           1 SF=";
    const size_t at = eko.find(tag);
    if (at == std::string::npos) return -1.0;
    return std::stod(eko.substr(at + tag.size(), 15));
}

void checkFactor(const Case& c) {
    const double byHand = simplifiedFactor(slicesOf(c), c.cohesion, c.tanPhi);
    EXPECT_NEAR(reportedFactor(c), byHand, 0.001 * byHand) << c.folder;
    // The result line of the surface, three decimals.
    const std::string eko = expectedFile(c, "SVAR.EKO");
    const std::string tag = "\n ++++ SAFETY FACTOR =";
    const size_t at = eko.find(tag);
    ASSERT_NE(at, std::string::npos) << c.folder;
    const std::string line = eko.substr(at + 1, eko.find('\n', at + 1) - at - 1);
    EXPECT_NEAR(number(line, tag.size() - 1, 8), byHand, 0.001 * byHand) << line;
    EXPECT_EQ(line.substr(tag.size() - 1 + 8), "   SCORE =  6.666   R-FACTOR =  1.000   SURFACE =   1") << line;

    // The equilibrium check warns of the slices whose base normal force is negative.
    int negative = 0;
    for (const HandForces& f : simplifiedForces(slicesOf(c), c.cohesion, c.tanPhi, byHand)) negative += f.P < 0.0;
    const std::string warning = " **** WARNING : NEGATIVE P-FORCES FOR";
    if (negative == 0) {
        EXPECT_EQ(eko.find(warning), std::string::npos) << c.folder;
    } else {
        EXPECT_NE(eko.find(warning + io::fmtI(negative, 12) + " SLICES\n\n ++++ SAFETY FACTOR ="), std::string::npos)
            << c.folder;
    }
}

// The result print of the best surface, line by line from the layout rules; the numbers of the
// slice lines are compared with the hand solution.
void checkPrint(const Case& c) {
    const std::vector<std::string> lines = linesOf(expectedFile(c, "KALMO.RES"));
    const std::vector<HandSlice> slices = slicesOf(c);
    const double F = simplifiedFactor(slices, c.cohesion, c.tanPhi);
    const std::vector<HandForces> forces = simplifiedForces(slices, c.cohesion, c.tanPhi, F);
    double totalWeight = 0.0;
    for (const HandSlice& s : slices) totalWeight += s.weight();

    size_t at = 0;
    while (at < lines.size() && lines[at].find(" KALMO  Output") == std::string::npos) ++at;
    ASSERT_LT(at, lines.size()) << "no page top line";
    const std::string equals(53, '=');
    const std::vector<std::string> head = {
        "",
        " " + c.title1 + std::string(80 - c.title1.size(), ' '),
        " " + c.title2 + std::string(80 - c.title2.size(), ' '),
        "",
        " " + equals + "  SAFETY FACTOR =",  // and the factor, F9.3
        " SURFACE NO :   1     SUMMARY OF GEOMETRY AND FORCES",
        " " + equals + "  SOLUTION SCORE=    6.666",
        "",
        " SURFACE TYPE = GENERAL        X-START   Z-START     X-END    Z-END",
        io::fmtX(26) + io::fmtF(c.surface.front().x, 11, 3) + io::fmtF(c.surface.front().z, 10, 3) +
            io::fmtF(c.surface.back().x, 11, 3) + io::fmtF(c.surface.back().z, 9, 3),
        "",
        " SOLUTION METHOD = Force Equilibrium / " + c.analysis,
        "",
        " SLICE    X1      Z1      Z2     WXT-FRC    P-FRC      E2-FRC     U2-FRC    ROUGH  H2/Z23",
        "          X2      Z4      Z3     WZT-FRC    S-FRC      T2-FRC     U3-FRC           H3/L34",
    };
    for (const std::string& expected : head) {
        ++at;
        ASSERT_LT(at, lines.size());
        if (expected.ends_with("SAFETY FACTOR =")) {
            ASSERT_EQ(lines[at].size(), expected.size() + 9);
            EXPECT_EQ(lines[at].substr(0, expected.size()), expected);
            EXPECT_NEAR(number(lines[at], expected.size(), 9), F, 0.001 * F);
            continue;
        }
        EXPECT_EQ(lines[at], expected) << c.folder << " line " << at + 1;
    }

    const double forceTolerance = 0.002 * totalWeight;
    for (size_t k = 0; k < slices.size(); ++k) {
        const HandSlice& s = slices[k];
        const HandForces& f = forces[k];
        const int i = static_cast<int>(k) + 1;
        ASSERT_LT(at + 3, lines.size());
        EXPECT_EQ(lines[at + 1], "") << c.folder << " slice " << i;
        const std::string& first = lines[at + 2];
        const std::string& second = lines[at + 3];
        at += 3;
        // I4, 1X, 3F8.2, 1X, 4E11.3 (scale 1), 2F7.3 [, "  WARNINGS:", I2]; I4, 1X, 3F8.2, 1X,
        // 4E11.3 (scale 1), F14.3.
        const int warnings = (f.P < 0.0 ? 1 : 0) + (i < static_cast<int>(slices.size()) && f.E2 < 0.0 ? 1 : 0);
        ASSERT_EQ(first.size(), warnings == 0 ? 88u : 101u) << first;
        ASSERT_EQ(second.size(), 88u) << second;
        EXPECT_EQ(first.substr(0, 5), io::fmtI(i, 4) + " ");
        EXPECT_EQ(second.substr(0, 5), io::fmtI(i, 4) + " ");
        if (warnings != 0) {
            EXPECT_EQ(first.substr(88), "  WARNINGS:" + io::fmtI(warnings, 2));
        }
        EXPECT_NEAR(number(first, 5, 8), s.xLeft, 0.0051);
        EXPECT_NEAR(number(first, 13, 8), s.topLeft, 0.0051);
        EXPECT_NEAR(number(first, 21, 8), s.topRight, 0.0051);
        EXPECT_NEAR(number(first, 30, 11), 0.0, 1e-9);                    // WXT: dry, no loads
        EXPECT_NEAR(number(first, 41, 11), f.P, forceTolerance);          // P
        EXPECT_NEAR(number(first, 52, 11), f.E2, forceTolerance);         // E2
        EXPECT_EQ(number(first, 63, 11), 0.0);                            // U2
        EXPECT_EQ(number(first, 74, 7), 0.0);                             // roughness
        EXPECT_EQ(number(first, 81, 7), 0.0);                             // H2/Z23
        EXPECT_NEAR(number(second, 5, 8), s.xRight, 0.0051);
        EXPECT_NEAR(number(second, 13, 8), s.baseLeft, 0.0051);
        EXPECT_NEAR(number(second, 21, 8), s.baseRight, 0.0051);
        EXPECT_NEAR(number(second, 30, 11), s.weight(), 0.0006 * s.weight());  // WZT
        EXPECT_NEAR(number(second, 41, 11), f.S, forceTolerance);              // S
        EXPECT_EQ(number(second, 52, 11), 0.0);                                // T2
        EXPECT_EQ(number(second, 63, 11), 0.0);                                // U3
        EXPECT_EQ(number(second, 74, 14), 0.0);                                // H3/L34
    }
    ASSERT_LT(at + 3, lines.size());
    EXPECT_EQ(lines[at + 1], "");
    EXPECT_EQ(lines[at + 2].find(" THIS RUN WAS TERMINATED :"), 0u) << "a slice too many";
}

}  // namespace

TEST(WholeRun, GeneralSurfaceInAnEffectiveStressAnalysis) { checkCase("general_effective"); }

TEST(WholeRun, GeneralSurfaceInATotalStressAnalysis) { checkCase("general_total"); }

TEST(GeneralRunCases, TheEffectiveStressFactorIsTheSimplifiedMethodByHand) { checkFactor(effectiveCase()); }

TEST(GeneralRunCases, TheTotalStressFactorIsTheSimplifiedMethodByHand) { checkFactor(totalCase()); }

TEST(GeneralRunCases, TheEffectiveStressPrintFollowsTheLayoutAndTheHandSolution) { checkPrint(effectiveCase()); }

TEST(GeneralRunCases, TheTotalStressPrintFollowsTheLayoutAndTheHandSolution) { checkPrint(totalCase()); }
