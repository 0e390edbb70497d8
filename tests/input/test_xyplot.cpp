// Node value plot: marks of sign and three digits placed on a character grid.

#include <gtest/gtest.h>

#include <limits>
#include <sstream>
#include <string>
#include <vector>

#include "input/input.h"
#include "io/channels.h"
#include "records.h"
#include "support/tempdir.h"

namespace {

class XyplotTest : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        clearRecords();
        ASSERT_EQ(io::openNew(kPlotUnit, dir_.path("PLOT.TXT")), 0);
    }
    void TearDown() override { io::resetAll(); }

    std::vector<std::string> plot(int lines, int positions, int npoints, const std::vector<double>& x,
                                  const std::vector<double>& z, std::vector<double>& v, double scale = -1.0) {
        grid_.assign(static_cast<size_t>(std::max(lines, 2) * std::max(positions, 5)), '?');
        XYPLOT(lines, positions, grid_.data(), npoints, kPlotUnit, x.data(), z.data(), v.data(), scale);
        std::vector<std::string> out;
        std::istringstream text(io::contents(kPlotUnit));
        for (std::string line; std::getline(text, line);) out.push_back(line);
        return out;
    }

    static constexpr int kPlotUnit = 20;
    kalmo_test::TempDir dir_;
    std::vector<char> grid_;
};

std::string blanks(int n) { return std::string(static_cast<size_t>(n), ' '); }

}  // namespace

TEST_F(XyplotTest, AllZeroValuesShowAsPlusAndThreeZerosWithFactorOne) {
    // x from 0 to 16 over 20 - 4 = 16 cells of 1; z from 0 to 2 over 3 - 1 = 2 lines of 1.
    std::vector<double> x{0.0, 10.0, 16.0}, z{0.0, 1.0, 2.0}, v{0.0, 0.0, 0.0};
    auto out = plot(3, 20, 3, x, z, v);
    ASSERT_EQ(out.size(), 4u);
    EXPECT_EQ(out[0], " +000" + blanks(16));
    EXPECT_EQ(out[1], " " + blanks(10) + "+000" + blanks(6));
    EXPECT_EQ(out[2], " " + blanks(16) + "+000");
    EXPECT_EQ(out[3], " POINTS =           3  MIN/MAX VALUES =   0.000000       0.000000       FACTOR =   1.000000    ");
}

TEST_F(XyplotTest, SmallValuesAreScaledByAHundredToThreeDigits) {
    // Largest magnitude 3.2: two steps of ten bring it to 320, so F = 100 and 1.25 shows as 125.
    std::vector<double> x{0.0, 8.0, 16.0}, z{0.0, 0.0, 1.0}, v{0.5, 1.25, 3.2};
    auto out = plot(2, 20, 3, x, z, v);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0], " +050" + blanks(4) + "+125" + blanks(8));
    EXPECT_EQ(out[1], " " + blanks(16) + "+320");
    EXPECT_EQ(out[2], " POINTS =           3  MIN/MAX VALUES =  0.5000000       3.200000       FACTOR =   100.0000    ");
}

TEST_F(XyplotTest, LargeValuesAreScaledDownByTenths) {
    // 12345 needs two steps of 0.1 (single-precision tenth): 12345 * F + 0.5 truncates to 123;
    // -250 gives 2.5 + 0.5, just above 3.
    const double tenth = 0.1f;
    const double factor = tenth * tenth;
    std::vector<double> x{0.0, 16.0}, z{0.0, 0.0}, v{12345.0, -250.0};
    auto out = plot(2, 20, 2, x, z, v);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0], " +123" + blanks(12) + "-003");
    EXPECT_EQ(out[1], " " + blanks(20));
    EXPECT_NE(out[2].find("FACTOR ="), std::string::npos);
    EXPECT_EQ(static_cast<int>(12345.0 * factor + 0.5), 123);  // the rule the mark follows
}

TEST_F(XyplotTest, ValuesAlreadyInRangeKeepFactorOneAndRoundToNearest) {
    std::vector<double> x{0.0, 16.0}, z{0.0, 0.0}, v{999.7, 100.4};
    auto out = plot(2, 20, 2, x, z, v);
    // 999.7 rounds to 1000, more than three digits: shown as 999.
    EXPECT_EQ(out[0], " +999" + blanks(12) + "+100");
    EXPECT_NE(out[2].find("FACTOR =   1.000000"), std::string::npos);
}

TEST_F(XyplotTest, CollisionsMoveTheMarkAndMarkItWithPOrM) {
    // All three fall on position 1 of line 1; F = 100. The second finds its first free place
    // four positions to the right, the third eight.
    std::vector<double> x{0.0, 0.0, 0.0, 16.0}, z{0.0, 0.0, 0.0, 1.0}, v{1.0, 2.0, -3.0, 0.0};
    auto out = plot(2, 20, 4, x, z, v);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0], " +100P200M300" + blanks(8));
    EXPECT_EQ(out[1], " " + blanks(16) + "+000");
}

TEST_F(XyplotTest, ACollisionAtTheRightEndMovesLeft) {
    std::vector<double> x{0.0, 16.0, 16.0}, z{1.0, 0.0, 0.0}, v{0.0, 1.0, -2.0};
    auto out = plot(2, 20, 3, x, z, v);
    EXPECT_EQ(out[0], " " + blanks(12) + "M200+100");
}

TEST_F(XyplotTest, AMarkWithNoFreePlaceNearbyIsLeftOut) {
    // Six marks on a line of eight positions: only two fit (starts 1 and 5).
    std::vector<double> x(6, 0.0), z(6, 0.0), v{1, 2, 3, 4, 5, 6};
    auto out = plot(2, 8, 6, x, z, v);
    // F = 100: 6.0 -> 600 is the largest.
    EXPECT_EQ(out[0], " +100P200");
    EXPECT_NE(out[2].find("POINTS =           6"), std::string::npos);
}

TEST_F(XyplotTest, TooSmallGridIsRaisedToTwoLinesOfFivePositions) {
    std::vector<double> x{0.0}, z{0.0}, v{5.0};
    auto out = plot(0, 1, 1, x, z, v);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_EQ(out[0], " +500 ");
    EXPECT_EQ(out[1], " " + blanks(5));
}

TEST_F(XyplotTest, PointNumberModeShowsRunningNumbers) {
    std::vector<double> x{0.0, 16.0}, z{0.0, 1.0}, v{-7.0, 555.0};
    auto out = plot(2, 20, -2, x, z, v);
    ASSERT_EQ(out.size(), 3u);
    EXPECT_DOUBLE_EQ(v[0], 1.1);
    EXPECT_DOUBLE_EQ(v[1], 2.1);
    EXPECT_EQ(out[0], "  001" + blanks(16));
    EXPECT_EQ(out[1], " " + blanks(16) + " 002");
    EXPECT_EQ(out[2], " POINTS =           2  MIN/MAX VALUES =   1.100000       2.100000       FACTOR =   1.000000    ");
}

TEST_F(XyplotTest, APositiveScaleCodeIsTheFactor) {
    std::vector<double> x{0.0}, z{0.0}, v{1.5};
    auto out = plot(2, 20, 1, x, z, v, 10.0);
    EXPECT_EQ(out[0], " +015" + blanks(16));
    EXPECT_NE(out[2].find("FACTOR =   10.00000"), std::string::npos);
}

TEST_F(XyplotTest, UnscalableValuesGiveTheScalingMessageAndNoPlot) {
    std::vector<double> x{0.0, 1.0}, z{0.0, 1.0}, v{1.0, std::numeric_limits<double>::infinity()};
    auto out = plot(5, 20, 2, x, z, v);
    ASSERT_EQ(out.size(), 1u);
    EXPECT_EQ(out[0].rfind(" ***** SR/XYPLOT : SCALING-10 PROBLEM", 0), 0u);
}

TEST_F(XyplotTest, NearestLineAndPositionAreChosen) {
    // Cells of 1 along x (16 over 16) and 2 along z (8 over 4): x 4.4 -> start 5, x 4.6 ->
    // start 6; z 2.9 -> line 2, z 3.1 -> line 3.
    std::vector<double> x{0.0, 4.4, 4.6, 16.0}, z{0.0, 2.9, 3.1, 8.0}, v{0, 0, 0, 0};
    auto out = plot(5, 20, 4, x, z, v);
    ASSERT_EQ(out.size(), 6u);
    EXPECT_EQ(out[1], " " + blanks(4) + "+000" + blanks(12));
    EXPECT_EQ(out[2], " " + blanks(5) + "+000" + blanks(11));
    EXPECT_EQ(out[4], " " + blanks(16) + "+000");
}
