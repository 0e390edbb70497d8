// The nails example (examples/nails): a golden whole run of its general surface with the four
// nails, the nail table of that run checked against the nail capacities worked by hand, and
// the same run with the nails de-activated, which must give a lower safety factor.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/tempdir.h"
#include "support/wholerun.h"

namespace {

namespace fs = std::filesystem;
using kalmo_test::readFile;

constexpr double kPi = 3.14159265358979323846;

const fs::path kExample = fs::path(KALMO_SOURCE_DIR) / "examples" / "nails";
const fs::path kCase = fs::path(KALMO_TEST_DATA) / "nails_example";

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

// The safety factor of the line " ++++ SAFETY FACTOR =   1.754 ..." of a dialogue record.
double reportedFactor(const std::string& dialogue) {
    const std::string tag = " ++++ SAFETY FACTOR =";
    const size_t at = dialogue.find(tag);
    if (at == std::string::npos) return -1.0;
    return std::stod(dialogue.substr(at + tag.size(), 8));
}

// The best surface's factor as the dialogue reports it (seven digits).
double bestFactor(const std::string& dialogue) {
    const std::string tag = " BEST SURFACE (NUM=           1 SF=";
    const size_t at = dialogue.find(tag);
    if (at == std::string::npos) return -1.0;
    return std::stod(dialogue.substr(at + tag.size(), 15));
}

struct Point {
    double x, z;
};

// The general surface of the example and its nails (head, tip), as its input gives them.
const std::vector<Point> kSurface = {{12.0, -0.5}, {20.0, 6.0}, {26.0, 8.6}, {30.0, 7.5}};
const Point kHeads[4] = {{25.375, 1.0}, {26.125, 3.0}, {26.875, 5.0}, {27.625, 7.0}};
const Point kTips[4] = {{17.648, 3.071}, {18.398, 5.071}, {19.148, 7.071}, {19.898, 9.071}};

// Where the nail from head to tip crosses the surface, if it does (segment by segment).
bool crossing(const Point& head, const Point& tip, Point& at) {
    for (size_t k = 0; k + 1 < kSurface.size(); ++k) {
        const Point& a = kSurface[k];
        const Point& b = kSurface[k + 1];
        const double rx = tip.x - head.x, rz = tip.z - head.z, sx = b.x - a.x, sz = b.z - a.z;
        const double cross = rx * sz - rz * sx;
        const double t = ((a.x - head.x) * sz - (a.z - head.z) * sx) / cross;
        const double u = ((a.x - head.x) * rz - (a.z - head.z) * rx) / cross;
        if (t >= 0.0 && t <= 1.0 && u >= 0.0 && u <= 1.0) {
            at = {head.x + t * rx, head.z + t * rz};
            return true;
        }
    }
    return false;
}

}  // namespace

TEST(NailsExample, TheCaseRunsTheExampleAsItStands) {
    for (const char* name : {"KALMO.INP", "SVAR.TMP"})
        EXPECT_EQ(readFile(kCase / name), readFile(kExample / name)) << name;
}

TEST(NailsExample, GoldenRunOfItsGeneralSurfaceWithTheNails) { kalmo_test::checkCase("nails_example"); }

// Every nail: 0.1 m grout body, bond 80 kPa both ways, no free length, bar 200 kN, head plate
// 100 kN, spacing 1.5 m. A nail crossing the surface is pulled out of the stable soil when its
// part beyond the surface holds less than the head plate plus its part inside, and the bar
// holds more; its force is then Lt pi 0.1 80. The table prints it divided by SF.
TEST(NailsExample, TheNailTableIsTheCapacityOfTheBondBeyondTheSurface) {
    const double SF = bestFactor(readFile(kCase / "expected" / "SVAR.EKO"));
    ASSERT_GT(SF, 1.0);
    const std::vector<std::string> lines = linesOf(readFile(kCase / "expected" / "KALMO.RES"));
    size_t at = 0;
    while (at < lines.size() && lines[at] != " Nail   Total   Active  Forces at shear surface   Slice   Failure mode") ++at;
    ASSERT_LT(at + 8, lines.size());
    EXPECT_EQ(lines[at + 1], "  no.   length  length    Axially   Laterally    intsctn");
    EXPECT_EQ(lines[at + 2], " ");
    EXPECT_EQ(lines[at + 6], " ");
    const size_t rows[4] = {at + 3, at + 4, at + 5, at + 7};

    const double perMetre = kPi * 0.1 * 80.0;
    int lastSlice = 0;
    for (int i = 0; i < 4; ++i) {
        const std::string& row = lines[rows[i]];
        ASSERT_EQ(row.size(), 78u) << row;
        EXPECT_EQ(std::stoi(row.substr(0, 4)), i + 1);
        const double length = std::hypot(kTips[i].x - kHeads[i].x, kTips[i].z - kHeads[i].z);
        EXPECT_NEAR(std::stod(row.substr(4, 10)), length, 0.0005) << row;
        EXPECT_EQ(row.substr(34, 11), "  0.000E+00") << row;  // no lateral force
        Point cross{};
        if (!crossing(kHeads[i], kTips[i], cross)) {
            EXPECT_EQ(row.substr(14, 31), "   0.000   0.000E+00  0.000E+00") << row;
            EXPECT_EQ(row.substr(45), "      00     No intersection     ") << row;
            continue;
        }
        const double Lt = std::hypot(kTips[i].x - cross.x, kTips[i].z - cross.z);
        const double Lh = std::hypot(kHeads[i].x - cross.x, kHeads[i].z - cross.z);
        ASSERT_LT(Lt * perMetre, 100.0 + Lh * perMetre);
        ASSERT_LT(Lt * perMetre, 200.0);
        EXPECT_NEAR(std::stod(row.substr(14, 8)), Lt, 0.0005) << row;
        const double axial = -Lt * perMetre / SF;
        EXPECT_NEAR(std::stod(row.substr(23, 11)), axial, 0.0005 * std::fabs(axial) + 1e-3) << row;
        EXPECT_EQ(row.substr(58), "External/Tension    ") << row;
        // The nails lower in the face cross the surface further to the right.
        const int slice = std::stoi(row.substr(45, 8));
        EXPECT_GT(slice, lastSlice) << row;
        EXPECT_LE(slice, 30) << row;
        lastSlice = slice;
    }
}

TEST(NailsExample, DeactivatedNailsGiveALowerSafetyFactor) {
    kalmo_test::TempDir root;
    const fs::path work = fs::path(root.path()) / "run";
    fs::create_directory(work);
    // The first further value of every nail record becomes -1.
    std::string input = readFile(kExample / "KALMO.INP");
    const std::string active = "          200.0    0.0   100.0    0.0   0.0   0.0";
    const std::string deactivated = "          200.0    0.0   100.0   -1.0   0.0   0.0";
    int nails = 0;
    for (size_t at = input.find(active); at != std::string::npos; at = input.find(active, at)) {
        input.replace(at, active.size(), deactivated);
        ++nails;
    }
    ASSERT_EQ(nails, 4);
    std::ofstream(work / "KALMO.INP") << input;
    fs::copy_file(kExample / "SVAR.TMP", work / "SVAR.TMP");
    const kalmo_test::RunOutcome outcome = kalmo_test::runProgram(work.string(), {}, "", root.path("screen.txt"));
    ASSERT_EQ(outcome.exitCode, 0) << outcome.screen;

    const double without = reportedFactor(outcome.screen);
    const double with = reportedFactor(readFile(kCase / "expected" / "screen.txt"));
    ASSERT_GT(without, 1.0) << outcome.screen;
    EXPECT_LT(without, with);
    const std::string result = readFile(work / "KALMO.RES");
    EXPECT_EQ(result.find("External/Tension"), std::string::npos);
    EXPECT_NE(result.find("De-activated nail   "), std::string::npos);
}
