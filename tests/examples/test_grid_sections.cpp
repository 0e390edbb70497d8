// Sections whose soil weight is integrated on a grid of cells (no horizontal layers, or
// material triangles over them): the columns of the grid run from the straight slice top,
// so a slice whose top spans a break of the ground line passes its area check, and the soil
// between the top chord and the ground is counted once, as a load of its own.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "support/tempdir.h"

namespace {

std::string exampleText(const std::string& folder, const std::string& name) {
    std::ifstream in(std::filesystem::path(KALMO_SOURCE_DIR) / "examples" / folder / name, std::ios::binary);
    std::ostringstream all;
    all << in.rdbuf();
    return all.str();
}

// Replaces the one place where `from` stands.
void replaceOnce(std::string& text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    ASSERT_NE(at, std::string::npos) << from;
    ASSERT_EQ(text.find(from, at + 1), std::string::npos) << from;
    text.replace(at, from.size(), to);
}

struct BatchRun {
    std::string screen;
    double SF = 0.0;
};

// A batch run of the input with the answers in a fresh folder; SF from the surface's result
// line " ++++ SAFETY FACTOR =".
BatchRun runBatch(const std::string& input, const std::string& answers) {
    kalmo_test::TempDir dir;
    dir.write("KALMO.INP", input);
    dir.write("SVAR.TMP", answers);
    const std::string command = "cd '" + dir.path() + "' && '" KALMO_EXE "' > screen.txt 2>&1 < /dev/null";
    BatchRun run;
    EXPECT_EQ(std::system(command.c_str()), 0);
    run.screen = dir.read("screen.txt");
    const std::string mark = " ++++ SAFETY FACTOR =";
    const size_t at = run.screen.find(mark);
    if (at != std::string::npos) run.SF = std::stod(run.screen.substr(at + mark.size()));
    return run;
}

// The slope example once more with material triangles over its three horizontal layers, two
// to a layer with the layer's material, reaching past the section at both ends: LOCATE finds
// the same material at every point and the slices are cut at the same layer boundaries, but
// with triangles the weight is integrated on the grid instead of exactly. The
// unit weight below the water table is made that above it, because the layer integration
// uses the one unit weight throughout. The safety factors must then agree to the accuracy of
// the grid; before the columns ran from the slice top, every slice whose top spans a break of
// the ground failed its area check.
TEST(GridSections, SlopeWithItsLayersAsTrianglesGivesTheLayeredSafetyFactor) {
    const std::string answers = exampleText("slope", "SVAR.TMP");
    const std::string layered = exampleText("slope", "KALMO.INP");
    std::string triangles = layered;
    replaceOnce(triangles, "   4\n   10\n   3\n   0\nX-LINES", "   4\n   10\n   3\n   6\nX-LINES");
    replaceOnce(triangles, "TRIANGLES (NONE)\n",
                "TRIANGLES\n"
                "   1   1   -1.0   0.0   61.0   0.0   61.0   4.0\n"
                "   2   1   -1.0   0.0   -1.0   4.0   61.0   4.0\n"
                "   3   2   -1.0   4.0   61.0   4.0   61.0  12.0\n"
                "   4   2   -1.0   4.0   -1.0  12.0   61.0  12.0\n"
                "   5   3   -1.0  12.0   61.0  12.0   61.0  25.0\n"
                "   6   3   -1.0  12.0   -1.0  25.0   61.0  25.0\n");
    replaceOnce(triangles, "0.0   0.0   0.0   0.0   0.0  21.0\n", "0.0   0.0   0.0   0.0   0.0  19.0\n");
    replaceOnce(triangles, "0.0   0.0   0.0   0.0   0.0  19.0\n* 3", "0.0   0.0   0.0   0.0   0.0  18.5\n* 3");
    replaceOnce(triangles, "0.0   0.0   0.0   0.0   0.0  22.0\n", "0.0   0.0   0.0   0.0   0.0  21.0\n");

    const BatchRun exact = runBatch(layered, answers);
    const BatchRun grid = runBatch(triangles, answers);
    ASSERT_GT(exact.SF, 0.5) << exact.screen;
    ASSERT_GT(grid.SF, 0.5) << grid.screen;
    EXPECT_EQ(grid.screen.find("SLICE AREA"), std::string::npos) << grid.screen;
    EXPECT_NEAR(grid.SF, exact.SF, 0.001 * exact.SF);
}

// The clay example (layers with a sand lens as a triangle, so grid-integrated) with a general
// surface through the crest at x = 15, where the ground breaks from level to the 1:3 bank.
TEST(GridSections, ClaySurfaceThroughTheCrestIsAnalysed) {
    std::string input = exampleText("clay", "KALMO.INP");
    replaceOnce(input, "GENERAL SHEAR SURFACES (NONE)\n",
                "GENERAL SHEAR SURFACES\n"
                "   1    4\n"
                "    5.0   15.0   25.0   34.0\n"
                "   -0.5    5.0    8.0    4.5\n");
    const std::string countLine = "* rec 700";
    const size_t at = input.find(countLine);
    ASSERT_NE(at, std::string::npos);
    const size_t valueLine = input.find('\n', at) + 1;
    const size_t valueEnd = input.find('\n', valueLine);
    input.replace(valueLine, valueEnd - valueLine, "   1");

    const BatchRun run = runBatch(input, exampleText("slope", "SVAR.TMP"));
    EXPECT_EQ(run.screen.find("SLICE AREA"), std::string::npos) << run.screen;
    EXPECT_EQ(run.screen.find(" **** SR/SOLVER"), std::string::npos) << run.screen;
    // A soft clay bank of 5 m at 1:3: a factor of safety near 1, certainly between 0.3 and 5.
    EXPECT_GT(run.SF, 0.3) << run.screen;
    EXPECT_LT(run.SF, 5.0) << run.screen;
}

}  // namespace
