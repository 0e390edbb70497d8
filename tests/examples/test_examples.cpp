// The example problems run in batch mode as the README runs them: each folder's KALMO.INP and
// SVAR.TMP are copied to a fresh folder and the program is started there. The input is read
// without a message, the problem type is printed and the run ends normally; the slope and nails
// examples analyse their general surface on the way and show the safety factor, the wall example
// sweeps its earth-pressure planes and prints the critical one (the 18th plane, 62 degrees), the
// clay example runs a step search of circles and prints its best circle.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "support/tempdir.h"

namespace {

struct ExampleRun {
    const char* folder;
    std::vector<std::string> expected;  // lines of the problem description
};

class ExampleRunTest : public ::testing::TestWithParam<ExampleRun> {};

TEST_P(ExampleRunTest, ReadsAndPrintsTheProblemType) {
    const ExampleRun example = GetParam();
    kalmo_test::TempDir dir;
    const std::filesystem::path source = std::filesystem::path(KALMO_SOURCE_DIR) / "examples" / example.folder;
    ASSERT_TRUE(std::filesystem::exists(source / "KALMO.INP"));
    ASSERT_TRUE(std::filesystem::exists(source / "SVAR.TMP"));
    for (const char* name : {"KALMO.INP", "SVAR.TMP"})
        std::filesystem::copy_file(source / name, std::filesystem::path(dir.path()) / name);

    const std::string command = "cd '" + dir.path() + "' && '" KALMO_EXE "' > screen.txt 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0);

    const std::string screen = dir.read("screen.txt");
    for (const auto& line : example.expected) EXPECT_NE(screen.find(line), std::string::npos) << line << "\n" << screen;
    EXPECT_EQ(screen.find("****"), std::string::npos) << screen;
    EXPECT_NE(screen.find("End of program KALMO"), std::string::npos) << screen;
    // The echo print of the input was asked for.
    EXPECT_NE(dir.read("KALMO.RES").find("ECHO PRINT OF DATA ON FORTRAN UNIT NUMBER"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Examples, ExampleRunTest,
    ::testing::Values(ExampleRun{"slope",
                                 {"STABILITY/BEARING PROBLEM TYPE", "EFFECTIVE STRESS ANALYSIS",
                                  "Solution Method : 3 KALMO-2003", "1 GENERAL SHEAR SURFACES",
                                  " ++++ SAFETY FACTOR =", " BEST SURFACE (NUM=           1 SF="}},
                      ExampleRun{"clay",
                                 {"STABILITY/BEARING PROBLEM TYPE", "TOTAL STRESS ANALYSIS",
                                  "Solution Method : 1 Bishop Simplified",
                                  "  NR  X-CENTER  Z-CENTER  RADIUS SAFETY-FAC SCORE", " BEST SURFACE (NUM="}},
                      ExampleRun{"wall",
                                 {"EARTH PRESSURE PROBLEM TYPE", "EFFECTIVE STRESS ANALYSIS",
                                  "Solution Method : 0 KALMO 1988-2002",
                                  " BEST SURFACE (NUM=          18 SF=   1.000000    ) IS PRINTED"}},
                      ExampleRun{"nails",
                                 {"STABILITY/BEARING PROBLEM TYPE", "EFFECTIVE STRESS ANALYSIS",
                                  "Solution Method : 2 Bishop Modified", "4 SOIL NAILS", " ++++ SAFETY FACTOR =",
                                  " BEST SURFACE (NUM=           1 SF="}},
                      ExampleRun{"footing",
                                 {"STABILITY/BEARING PROBLEM TYPE", "TOTAL STRESS ANALYSIS",
                                  "Solution Method : -1 Force Equilibrium", " BEST SURFACE (NUM=          22 SF=  0.898"}}),
    [](const ::testing::TestParamInfo<ExampleRun>& info) { return std::string(info.param.folder); });

}  // namespace
