// Whole runs of line control: the bank of the clay example with two general shear surfaces,
// once with the example's control line (a vertical line below the crest edge, x = 15 m from
// z = 0 to 8 m) and once without it. The shallow slide lies wholly right of the crest edge and
// misses the line; the deep one has a slice border on it (x = 15 m, z = 6 m) and so cuts it.

#include <gtest/gtest.h>

#include <string>

#include "support/wholerun.h"

using namespace kalmo_test;

namespace {

std::string expectedEko(const std::string& folder) {
    return readFile(std::string(KALMO_TEST_DATA) + "/" + folder + "/expected/SVAR.EKO");
}

// The result line of the given surface in a dialogue record.
std::string resultLine(const std::string& eko, int surface) {
    const std::string tail = "   SURFACE =" + std::string(surface < 10 ? "   " : "  ") + std::to_string(surface) + "\n";
    const size_t end = eko.find(tail);
    if (end == std::string::npos) return "";
    const size_t start = eko.rfind(" ++++ SAFETY FACTOR =", end);
    return start == std::string::npos ? "" : eko.substr(start, end + tail.size() - start);
}

}  // namespace

TEST(LineControlRuns, TheSurfaceThatMissesTheControlLineIsSkipped) { checkCase("clay_line_control"); }

TEST(LineControlRuns, WithoutTheControlLineBothSurfacesAreAnalysed) { checkCase("clay_no_line_control"); }

TEST(LineControlRuns, TheExpectedRecordsShowTheEffectOfTheLine) {
    const std::string with = expectedEko("clay_line_control");
    const std::string without = expectedEko("clay_no_line_control");
    // Skipped: the markers SF 99.999 and R-FACTOR 0 (the score of the simplified method of
    // this example is 8.888 in any case).
    EXPECT_EQ(resultLine(with, 1),
              " ++++ SAFETY FACTOR =  99.999   SCORE =  8.888   R-FACTOR =  0.000   SURFACE =   1\n");
    // Analysed without the line, with a real safety factor.
    const std::string analysed = resultLine(without, 1);
    ASSERT_FALSE(analysed.empty());
    EXPECT_EQ(analysed.find("99.999"), std::string::npos) << analysed;
    // The surface that cuts the line is analysed exactly as without line control.
    ASSERT_FALSE(resultLine(with, 2).empty());
    EXPECT_EQ(resultLine(with, 2), resultLine(without, 2));
    // Apart from the first result line, both runs say the same.
    std::string withFirstReplaced = with;
    withFirstReplaced.replace(withFirstReplaced.find(resultLine(with, 1)), resultLine(with, 1).size(), analysed);
    EXPECT_EQ(withFirstReplaced, without);
}
