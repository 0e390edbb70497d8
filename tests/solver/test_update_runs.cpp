// Whole runs of the stress update: the slope of the dry case general_effective with pore
// pressure parameters. With B = 1 the pore pressures generated at failure settle within the
// first limit of the update and lower the safety factor; with a B of only 1.0E-6 the start
// pressures die away by half a round, the limit of 10 rounds is met, the question whether to
// double it comes once in the run and batch mode answers no.

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "support/wholerun.h"

using namespace kalmo_test;

namespace {

std::string expectedEko(const std::string& folder) {
    return readFile(std::string(KALMO_TEST_DATA) + "/" + folder + "/expected/SVAR.EKO");
}

// The safety factor of the given surface's result line (-1 when there is none).
double safetyFactor(const std::string& eko, int surface) {
    const std::string tail = "   SURFACE =   " + std::to_string(surface) + "\n";
    const size_t end = eko.find(tail);
    if (end == std::string::npos) return -1.0;
    const std::string head = " ++++ SAFETY FACTOR =";
    const size_t start = eko.rfind(head, end);
    if (start == std::string::npos) return -1.0;
    return std::strtod(eko.c_str() + start + head.size(), nullptr);
}

size_t count(const std::string& text, const std::string& part) {
    size_t n = 0;
    for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++n;
    return n;
}

}  // namespace

TEST(UpdateRuns, PorePressuresFromTheChangeOfStressSettle) { checkCase("update_bfactor"); }

TEST(UpdateRuns, AnUpdateBeyondItsLimitAsksOnce) { checkCase("update_slow"); }

TEST(UpdateRuns, TheExpectedRecordsAgreeWithTheDryCase) {
    const double dry = safetyFactor(expectedEko("general_effective"), 1);
    ASSERT_NEAR(dry, 2.090, 1e-9);  // worked by hand in test_general_runs.cpp

    const std::string wet = expectedEko("update_bfactor");
    // Batch mode reads no initial stresses along the surface.
    EXPECT_NE(wet.find(" SHALL INITIAL STRESSES ALONG GENERAL SURFACE(S) BE READ (Y/N) ..... \n"), std::string::npos);
    EXPECT_EQ(wet.find("ITRMAX"), std::string::npos);
    // Water on the bases: well below the dry factor.
    EXPECT_LT(safetyFactor(wet, 1), dry - 0.2);

    const std::string slow = expectedEko("update_slow");
    EXPECT_NE(slow.find("\n SR/SOLVER : PWP OR PHI ITERATIONS DID NOT CONVERGE\n"
                        " ITRMAX =          10   SHALL VALUE BE DOUBLED (Y/N)..... \n"),
              std::string::npos);
    EXPECT_EQ(count(slow, "ITRMAX"), 1u);
    // Both surfaces keep the solution of the last round: after nine halvings the water left is
    // 0.33 / 2^9 of the vertical stress, which takes off no more than a few thousandths.
    for (int surface = 1; surface <= 2; ++surface) {
        EXPECT_LE(safetyFactor(slow, surface), dry) << surface;
        EXPECT_GE(safetyFactor(slow, surface), dry - 0.005) << surface;
    }
}
