// LCONTRL: does a slice base of the current surface cut the polyline of the control points?

#include <gtest/gtest.h>

#include <vector>

#include "records.h"
#include "slices/slices.h"

namespace {

class LcontrlTest : public ::testing::Test {
protected:
    LcontrlTest() { clearRecords(); }

    // Slices whose bases join the given base points (corner 4 of slice i at point i, corner 3
    // at point i + 1); the tops are at z = 0.
    static void bases(const std::vector<double>& x, const std::vector<double>& z) {
        MASTER.NUMSLC = static_cast<int>(x.size()) - 1;
        for (int i = 1; i <= MASTER.NUMSLC; ++i) {
            SURF.XX(1, i) = SURF.XX(4, i) = x[static_cast<size_t>(i - 1)];
            SURF.XX(2, i) = SURF.XX(3, i) = x[static_cast<size_t>(i)];
            SURF.ZZ(1, i) = SURF.ZZ(2, i) = 0.0;
            SURF.ZZ(4, i) = z[static_cast<size_t>(i - 1)];
            SURF.ZZ(3, i) = z[static_cast<size_t>(i)];
        }
    }
    static void controlLine(const std::vector<double>& x, const std::vector<double>& z) {
        LINECONTROL.NLCP = static_cast<int>(x.size());
        for (int k = 1; k <= LINECONTROL.NLCP; ++k) {
            LINECONTROL.XLC(k) = x[static_cast<size_t>(k - 1)];
            LINECONTROL.ZLC(k) = z[static_cast<size_t>(k - 1)];
        }
    }
    static int missed() {
        int out = -1;
        LCONTRL(out);
        return out;
    }
};

}  // namespace

TEST_F(LcontrlTest, ASurfaceCuttingTheLineIsKept) {
    // A bowl from (0, 1) down to (10, 6) and up to (20, 1); a vertical line x = 15, z 0..8.
    bases({0, 5, 10, 15, 20}, {1, 4, 6, 4, 1});
    controlLine({15, 15}, {0, 8});
    EXPECT_EQ(missed(), 0);
}

TEST_F(LcontrlTest, ASurfacePassingBelowTheLineIsSkipped) {
    // The control line ends at z = 3, above the base at x = 15 (z = 4).
    bases({0, 5, 10, 15, 20}, {1, 4, 6, 4, 1});
    controlLine({15, 15}, {0, 3});
    EXPECT_EQ(missed(), 1);
}

TEST_F(LcontrlTest, TheLaterSegmentsOfTheLineAreTriedToo) {
    // The first control segment lies left of the surface; the second, level at z = 5, cuts
    // the base of the second slice at x = 7.5.
    bases({0, 5, 10, 15, 20}, {1, 4, 6, 4, 1});
    controlLine({-10, -5, 12}, {0, 5, 5});
    EXPECT_EQ(missed(), 0);
}

TEST_F(LcontrlTest, ABaseTouchingTheLineAtItsEndCounts) {
    // The control line ends exactly on the border point (15, 4) of slices 3 and 4.
    bases({0, 5, 10, 15, 20}, {1, 4, 6, 4, 1});
    controlLine({15, 15}, {0, 4});
    EXPECT_EQ(missed(), 0);
}

TEST_F(LcontrlTest, ABaseAlongTheLineDoesNotCount) {
    // The control line runs along the base of slice 2 and stops short of the others' bases.
    // Its end points differ by 2.5 and 1.0, exactly in binary, so the cross product with the
    // base direction (5, 2) is exactly zero: parallel is only what is exactly parallel.
    bases({0, 5, 10, 15, 20}, {1, 4, 6, 4, 1});
    controlLine({6.25, 8.75}, {4.5, 5.5});
    EXPECT_EQ(missed(), 1);
}

TEST_F(LcontrlTest, OnePointOrTwoCoincidentPointsCutNothing) {
    bases({0, 5, 10, 15, 20}, {1, 4, 6, 4, 1});
    controlLine({10}, {6});
    EXPECT_EQ(missed(), 1);
    // Two coincident points on the base: a segment of no length is parallel to everything.
    controlLine({10, 10}, {6, 6});
    EXPECT_EQ(missed(), 1);
}
