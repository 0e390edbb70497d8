// Whole runs that save surfaces to the post-processor file and print with sketches, in batch
// mode: the dry 1:2 slope of the general-surface cases (crest z = 0 up to x = 20, toe z = 10
// from x = 40, 19 kN/m3, c = 8, phi = 30, force equilibrium without interslice shear).
//   post_best_sketches   one surface; the best surface printed with sketches and saved (one block)
//   post_last_and_best   the surface, then the same shifted 1 m down; the last surface saved,
//                        then the best (two blocks)
// Besides the comparison with the expected files, the expected files are read back through the
// file reader and checked against the method of slices worked by hand for the same slices,
// and the sketches against the scale rules of the layout.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "io/fmt.h"
#include "output/readplt.h"
#include "solver/solver_world.h"
#include "support/wholerun.h"

using namespace kalmo_test;

namespace {

double slopeGround(double x) { return x <= 20.0 ? 0.0 : (x >= 40.0 ? 10.0 : 0.5 * (x - 20.0)); }

constexpr double kSlopeWeight = 19.0, kSlopeCohesion = 8.0;
const double kSlopeTanPhi = std::tan(30.0 * 3.14159265358979323846 / 180.0);

// The surface of the input file, shifted down by dz.
std::vector<Point> slopeSurface(double dz) {
    std::vector<Point> points = {{10, -2}, {14, 4}, {17, 6.5}, {20, 8.5}, {25, 10.8}, {30, 12.2},
                                 {35, 12.8}, {40, 12.6}, {44, 11.2}, {48, 9}};
    for (Point& p : points) p.z += dz;
    return points;
}

// The slices the geometry makes of the surface; after the first surface of a run the start
// depth below the ground is the end-face height the first one was given (0.001).
std::vector<HandSlice> slopeSlices(double dz, double startDepth) {
    return handSlices(slopeSurface(dz), slopeGround, startDepth, 10.0, kSlopeWeight);
}

std::vector<plt::Block> savedBlocks(const std::string& folder) {
    std::vector<plt::Block> blocks;
    std::string error;
    EXPECT_EQ(plt::readPltFile(std::string(KALMO_TEST_DATA) + "/" + folder + "/expected/KALMO.PLT", blocks, error), 0)
        << error;
    return blocks;
}

// A saved block against the hand solution of its slices.
void checkBlock(const plt::Block& b, int number, const std::vector<HandSlice>& slices, const std::vector<Point>& surface) {
    const double F = simplifiedFactor(slices, kSlopeCohesion, kSlopeTanPhi);
    const std::vector<HandForces> forces = simplifiedForces(slices, kSlopeCohesion, kSlopeTanPhi, F);
    double totalWeight = 0.0, totalArea = 0.0;
    for (const HandSlice& s : slices) {
        totalWeight += s.weight();
        totalArea += s.area();
    }
    EXPECT_EQ(b.TITLE[0].substr(0, 55), "DRY 1:2 SLOPE IN SILTY SAND - ONE GENERAL SHEAR SURFACE");
    EXPECT_EQ(b.NUMSRF, number);
    EXPECT_EQ(b.NTYP, 1);
    EXPECT_EQ(b.NUMSLC, static_cast<int>(slices.size()));
    EXPECT_EQ(b.METHOD, -1);
    EXPECT_EQ(b.IDEFTO, 1);
    EXPECT_EQ(b.NNAILS, 0);
    EXPECT_NEAR(b.SF, F, 0.001 * F) << "surface " << number;
    // The general surface's parameters: its first and last point.
    EXPECT_NEAR(b.SPAR[0], surface.front().x, 1e-3);
    EXPECT_NEAR(b.SPAR[1], surface.front().z, 1e-3);
    EXPECT_NEAR(b.SPAR[2], surface.back().x, 1e-3);
    EXPECT_NEAR(b.SPAR[3], surface.back().z, 1e-3);

    ASSERT_EQ(b.geometry.rows.size(), slices.size() + 1);
    const std::vector<double>& left = b.geometry.rows[0].values;
    ASSERT_EQ(left.size(), 3u);
    EXPECT_NEAR(left[0], slices.front().xLeft, 1e-3);
    EXPECT_NEAR(left[1], slices.front().topLeft, 1e-3);
    EXPECT_NEAR(left[2], slices.front().baseLeft, 1e-6);
    const double forceTolerance = 0.002 * totalWeight;
    for (size_t k = 0; k < slices.size(); ++k) {
        const HandSlice& s = slices[k];
        const std::vector<double>& g = b.geometry.rows[k + 1].values;
        EXPECT_NEAR(g[0], s.xRight, 1e-3 * std::fabs(s.xRight));
        EXPECT_NEAR(g[1], s.topRight, 1e-3);
        EXPECT_NEAR(g[2], s.baseRight, 1e-3 * std::fabs(s.baseRight));
        const std::vector<double>& c = b.strengths.rows[k].values;
        EXPECT_NEAR(c[1], kSlopeCohesion, 1e-3);
        EXPECT_NEAR(c[3], kSlopeTanPhi, 1e-4);
        const std::vector<double>& f = b.forces.rows[k].values;
        EXPECT_NEAR(f[0], forces[k].P, forceTolerance) << "P of slice " << k + 1;
        EXPECT_NEAR(f[1], forces[k].S, forceTolerance) << "S of slice " << k + 1;
        EXPECT_NEAR(f[2], forces[k].E2, forceTolerance) << "E2 of slice " << k + 1;
        EXPECT_EQ(f[3], 0.0);  // no interslice shear
        const std::vector<double>& w = b.loads.rows[k].values;
        EXPECT_EQ(w[0], 0.0);  // dry, no loads
        EXPECT_NEAR(w[1], s.weight(), 0.0006 * s.weight());
        EXPECT_NEAR(b.areas.rows[k].values[0], s.area(), 0.0006 * s.area());
        EXPECT_EQ(b.areas.rows[k].values[1], 0.0);
    }
    EXPECT_NEAR(b.areaSum, totalArea, 0.0006 * totalArea);
    EXPECT_FALSE(b.combined.present);
    EXPECT_FALSE(b.nailGeometry.present);
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

}  // namespace

TEST(WholeRun, TheBestSurfacePrintedWithSketchesAndSaved) { checkCase("post_best_sketches"); }

TEST(WholeRun, TheLastAndTheBestSurfaceSaved) { checkCase("post_last_and_best"); }

TEST(PostRunCases, TheSavedBestSurfaceIsTheSimplifiedMethodByHand) {
    const std::vector<plt::Block> blocks = savedBlocks("post_best_sketches");
    ASSERT_EQ(blocks.size(), 1u);
    checkBlock(blocks[0], 1, slopeSlices(0.0, 0.0), slopeSurface(0.0));
}

TEST(PostRunCases, TheLastSurfaceAndThenTheBestAreSavedAsTwoBlocks) {
    const std::vector<plt::Block> blocks = savedBlocks("post_last_and_best");
    ASSERT_EQ(blocks.size(), 2u);
    checkBlock(blocks[0], 2, slopeSlices(1.0, kEndFace), slopeSurface(1.0));
    checkBlock(blocks[1], 1, slopeSlices(0.0, 0.0), slopeSurface(0.0));
    EXPECT_GT(blocks[0].SF, blocks[1].SF);  // the deeper surface is the less critical one
    const std::string eko = readFile(std::string(KALMO_TEST_DATA) + "/post_last_and_best/expected/SVAR.EKO");
    EXPECT_NE(eko.find(" LAST SURFACE (NUM=           2 SF="), std::string::npos);
    EXPECT_NE(eko.find(" BEST SURFACE (NUM=           1 SF="), std::string::npos);
}

// The sketch of the printed surface: the shear surface digit of every slice at the row of its
// base depth and the column of its middle, and the material line from the input values.
TEST(PostRunCases, TheSketchShowsTheSlicesOfTheHandSolution) {
    const std::vector<std::string> lines =
        linesOf(readFile(std::string(KALMO_TEST_DATA) + "/post_best_sketches/expected/KALMO.RES"));
    const std::vector<HandSlice> slices = slopeSlices(0.0, 0.0);
    size_t at = 0;
    while (at < lines.size() && lines[at] != " BELOW SKETCH SHOWS SHEAR SURFACE WITH SLICE DIVISIONS AND MATERIAL ID-S") ++at;
    ASSERT_LT(at + 1, lines.size());
    EXPECT_NE(lines[at - 1].find(" SURFACE NO:  1  TYPE: GENERAL   SAFETY-FACTOR:  2.090   SCORE:  6.666"), std::string::npos);

    const double x0 = slices.front().xLeft, xRange = slices.back().xRight - x0;
    double zTop = 1e6, zBottom = -1e6;
    for (const HandSlice& s : slices) {
        zTop = std::min({zTop, s.topLeft, s.topRight});
        zBottom = std::max({zBottom, s.baseLeft, s.baseRight});
    }
    const int rows = std::clamp(static_cast<int>(std::lround((zBottom - zTop) / xRange * (284.0 / 7.0) + 0.5)), 1, 30);
    const double band = (zBottom - zTop) / rows;
    ASSERT_LT(at + 2 + static_cast<size_t>(rows), lines.size());
    for (size_t k = 0; k < slices.size(); ++k) {
        const HandSlice& s = slices[k];
        const double depth = (s.baseLeft + s.baseRight) / 2.0;
        const int row = std::min(static_cast<int>(std::floor((depth - zTop) / band)) + 1, rows);
        const int column = static_cast<int>(std::lround(70.0 * ((s.xLeft + s.xRight) / 2.0 - x0) / xRange + 1.5));
        const std::string& line = lines[at + 1 + static_cast<size_t>(row)];
        ASSERT_GT(line.size(), static_cast<size_t>(column));
        EXPECT_EQ(line[static_cast<size_t>(column)], '1') << "slice " << k + 1;
        // The slice number line under the sketch: two digits ending at the middle of the top.
        const std::string& numbers = lines[at + 2 + static_cast<size_t>(rows)];
        EXPECT_EQ(numbers.substr(static_cast<size_t>(column) - 1, 2), io::fmtI(static_cast<long long>(k + 1), 2, 2));
    }
    // One material: 19 kN/m3, anisotropy ratios 1, c = 8, phi = 30, nothing else.
    const size_t table = at + 5 + static_cast<size_t>(rows);
    ASSERT_LT(table, lines.size());
    EXPECT_EQ(lines[table - 1], "  MAT GAMTOT SUA/SU0 SUD/SU0 SUP/SU0 COHESN PHIANG PHIRED RU-FCT  B-FCT  K-NOT B-SIG2 D/SU(B)");
    EXPECT_EQ(lines[table], "   1  19.000  1.000   1.000   1.000   8.000  30.00  0.00  0.000   0.000  0.000  0.000  0.000");

    // The stress page: the greatest and least base stress P/L of the hand solution.
    const double F = simplifiedFactor(slices, kSlopeCohesion, kSlopeTanPhi);
    const std::vector<HandForces> forces = simplifiedForces(slices, kSlopeCohesion, kSlopeTanPhi, F);
    double low = 1e30, high = -1e30;
    for (size_t k = 0; k < slices.size(); ++k) {
        low = std::min(low, forces[k].P / slices[k].length());
        high = std::max(high, forces[k].P / slices[k].length());
    }
    const auto range = std::find_if(lines.begin(), lines.end(), [](const std::string& l) { return l.starts_with(" P-MIN ="); });
    ASSERT_NE(range, lines.end());
    EXPECT_NEAR(std::stod(range->substr(8, 11)), low, 0.01 * low);
    EXPECT_NEAR(std::stod(range->substr(33, 11)), high, 0.01 * high);
    EXPECT_EQ(range->substr(19, 14), "       P-MAX =");
}
