// Whole runs of circle searches from the input file to the result file, in batch mode: a step
// search of undrained toe circles solved by their moments (circle_step) and a full grid search
// of toe circles by Bishop's simplified method in a c-phi slope (circle_full). Besides the
// comparison with the expected files, every circle the expected dialogue lists is checked
// against its own independent value (the moment ratio integrated over the true arc and mass,
// or Bishop's simplified method worked out from the circle), the summary against the list, and
// the result print against the summary.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "support/wholerun.h"
#include "surfaces/circle_checks.h"

using namespace kalmo_test;

namespace {

// Both cases: crest at z = 0 up to x = 20, slope 1:2 down to the toe at z = 10, x = 40.
double caseGround(double x) {
    if (x <= 20.0) return 0.0;
    if (x >= 40.0) return 10.0;
    return 0.5 * (x - 20.0);
}

const double kPi = 3.14159265358979323846;

struct ListedCircle {
    int surface;
    double xc, zc, R, SF;
};

std::string expectedFile(const std::string& folder, const std::string& name) {
    return readFile(std::string(KALMO_TEST_DATA) + "/" + folder + "/expected/" + name);
}

// The trial list: I4, F9.2, F10.2, F9.3, F10.3, 2F7.3, 2E12.3, 2F7.1.
std::vector<ListedCircle> listOf(const std::string& eko) {
    std::vector<ListedCircle> listed;
    const std::string heading =
        "  NR  X-CENTER  Z-CENTER  RADIUS SAFETY-FAC SCORE   RFAC    STAB-MOM    DRIV-MOM  AREA  AREA-UNDRAINED\n";
    size_t at = eko.find(heading);
    if (at == std::string::npos) return listed;
    std::istringstream in(eko.substr(at + heading.size()));
    for (std::string line; std::getline(in, line) && line.size() == 94;) {
        listed.push_back({std::stoi(line.substr(0, 4)), std::stod(line.substr(4, 9)), std::stod(line.substr(13, 10)),
                          std::stod(line.substr(23, 9)), std::stod(line.substr(32, 10))});
    }
    return listed;
}

struct Summary {
    int surface = -1;
    double xc = 0.0, zc = 0.0, R = 0.0, SF = 0.0;
};

Summary summaryOf(const std::string& eko) {
    Summary s;
    const std::string tag = " CRITICAL CIRCLE SUMMARY :   SURFACE = ";
    const size_t at = eko.find(tag);
    if (at == std::string::npos) return s;
    s.surface = std::stoi(eko.substr(at + tag.size(), 5));
    const size_t values = eko.find('\n', eko.find('\n', at) + 1) + 1;
    const std::string line = eko.substr(values, eko.find('\n', values) - values);
    s.xc = std::stod(line.substr(0, 9));
    s.zc = std::stod(line.substr(9, 10));
    s.R = std::stod(line.substr(19, 8));
    s.SF = std::stod(line.substr(27, 8));
    return s;
}

// The summary names a circle of the lowest listed factor (the list shows three decimals, so
// circles that differ further down look equal there), and the result print shows that circle
// as the best surface.
void checkSummaryAndPrint(const std::string& folder) {
    const std::string eko = expectedFile(folder, "SVAR.EKO");
    const std::vector<ListedCircle> listed = listOf(eko);
    ASSERT_FALSE(listed.empty()) << folder;
    double lowest = listed[0].SF;
    for (const ListedCircle& c : listed) lowest = std::min(lowest, c.SF);
    const Summary s = summaryOf(eko);
    bool found = false;
    for (const ListedCircle& c : listed) {
        if (c.surface != s.surface) continue;
        found = true;
        EXPECT_EQ(c.SF, lowest) << folder;
        EXPECT_EQ(s.xc, c.xc);
        EXPECT_EQ(s.zc, c.zc);
        EXPECT_NEAR(s.R, c.R, 0.0011);
    }
    EXPECT_TRUE(found) << folder;
    EXPECT_EQ(s.SF, lowest);

    const std::string res = expectedFile(folder, "KALMO.RES");
    EXPECT_NE(res.find(" SURFACE NO :" + std::string(s.surface < 10 ? "   " : "  ") + std::to_string(s.surface) +
                       "     SUMMARY OF GEOMETRY AND FORCES"),
              std::string::npos)
        << folder;
    std::ostringstream centre;
    centre.setf(std::ios::fixed);
    centre.precision(3);
    centre << s.xc;
    EXPECT_NE(res.find(" SURFACE TYPE = CIRCLE         X-CENTER  Z-CENTER   RADIUS\n"), std::string::npos);
    EXPECT_NE(res.find(centre.str()), std::string::npos);
}

}  // namespace

TEST(WholeRun, StepSearchOfUndrainedCircles) { checkCase("circle_step"); }

TEST(WholeRun, FullSearchOfCirclesByBishopSimplified) { checkCase("circle_full"); }

TEST(CircleRunCases, EveryUndrainedCircleHasTheMomentRatioOfItsTrueArcAndMass) {
    const std::vector<ListedCircle> listed = listOf(expectedFile("circle_step", "SVAR.EKO"));
    ASSERT_EQ(listed.size(), 17u);
    for (const ListedCircle& c : listed) {
        const TrueCircle circle{c.xc, c.zc, std::hypot(c.xc - 40.0, c.zc - 10.0)};
        EXPECT_NEAR(c.R, circle.R, 0.0005);
        // su 40 kPa, 18 kN/m3, no crack; 30 slices: chords and segments approach the arc.
        const double exact = undrainedMomentRatio(circle, caseGround, 0.0, 40.0, 18.0);
        EXPECT_NEAR(c.SF, exact, 0.002 * exact) << c.surface;
    }
}

TEST(CircleRunCases, EveryGridCircleHasItsBishopSimplifiedFactor) {
    const std::vector<ListedCircle> listed = listOf(expectedFile("circle_full", "SVAR.EKO"));
    ASSERT_EQ(listed.size(), 25u);
    for (size_t k = 0; k < listed.size(); ++k) {
        const ListedCircle& c = listed[k];
        // x outer from 32 in steps of 2, z inner from -20 in steps of 3.
        EXPECT_EQ(c.xc, 32.0 + 2.0 * static_cast<double>(k / 5));
        EXPECT_EQ(c.zc, -20.0 + 3.0 * static_cast<double>(k % 5));
        const TrueCircle circle{c.xc, c.zc, std::hypot(c.xc - 40.0, c.zc - 10.0)};
        // c' 8 kPa, phi' 30 degrees, 19 kN/m3, 20 slices.
        const double byHand = bishopSimplified(circle, caseGround, 0.0, 20, 8.0, std::tan(30.0 * kPi / 180.0), 19.0);
        EXPECT_NEAR(c.SF, byHand, 0.003 * byHand) << c.surface;
    }
}

TEST(CircleRunCases, TheStepSearchSummaryAndPrintNameTheLowestCircle) { checkSummaryAndPrint("circle_step"); }

TEST(CircleRunCases, TheFullSearchSummaryAndPrintNameTheLowestCircle) { checkSummaryAndPrint("circle_full"); }
