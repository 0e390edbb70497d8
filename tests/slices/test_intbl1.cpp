// INTBL1: crossings of a straight segment with a broken line.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/channels.h"
#include "records.h"
#include "slices/slices.h"
#include "support/tempdir.h"

namespace {

struct Crossings {
    int num = -1;
    int ierr = -1;
    double x[10] = {};
    double y[10] = {};
};

Crossings cross(const std::vector<double>& x, const std::vector<double>& y, double x1, double y1, double x2,
                double y2) {
    Crossings c;
    INTBL1(static_cast<int>(x.size()), x.data(), y.data(), x1, y1, x2, y2, c.num, c.x, c.y, c.ierr);
    return c;
}

class Intbl1 : public ::testing::Test {
protected:
    void SetUp() override {
        clearRecords();
        io::resetAll();
    }
    void TearDown() override { io::resetAll(); }
};

}  // namespace

TEST_F(Intbl1, ASegmentCrossingOnePart) {
    const Crossings c = cross({0.0, 10.0, 20.0}, {0.0, 0.0, 10.0}, 14.0, 0.0, 14.0, 10.0);
    EXPECT_EQ(c.ierr, 0);
    ASSERT_EQ(c.num, 1);
    EXPECT_DOUBLE_EQ(c.x[0], 14.0);
    EXPECT_DOUBLE_EQ(c.y[0], 4.0);
}

TEST_F(Intbl1, AnInclinedSegmentCrossingAnInclinedPart) {
    // Segment y = 8 - 0.5 x from x = 0 to 20: it meets the line of the first piece (y = 0) at
    // x = 16, beyond that piece, and the second piece (y = x - 10) at x = 12, y = 2.
    const Crossings c = cross({0.0, 10.0, 20.0}, {0.0, 0.0, 10.0}, 0.0, 8.0, 20.0, -2.0);
    EXPECT_EQ(c.ierr, 0);
    ASSERT_EQ(c.num, 1);
    EXPECT_DOUBLE_EQ(c.x[0], 12.0);
    EXPECT_DOUBLE_EQ(c.y[0], 2.0);
}

TEST_F(Intbl1, ACrossingThroughAVertexCountsOnce) {
    const Crossings c = cross({0.0, 10.0, 20.0}, {0.0, 0.0, 10.0}, 0.0, 5.0, 20.0, -5.0);
    EXPECT_EQ(c.ierr, 0);
    ASSERT_EQ(c.num, 1);
    EXPECT_DOUBLE_EQ(c.x[0], 10.0);
    EXPECT_DOUBLE_EQ(c.y[0], 0.0);
}

TEST_F(Intbl1, CrossingsComeInBrokenLineOrder) {
    const std::vector<double> x{0.0, 10.0, 20.0};
    const std::vector<double> y{10.0, 0.0, 10.0};
    for (bool reversed : {false, true}) {
        const Crossings c = reversed ? cross(x, y, 20.0, 5.0, 0.0, 5.0) : cross(x, y, 0.0, 5.0, 20.0, 5.0);
        EXPECT_EQ(c.ierr, 0);
        ASSERT_EQ(c.num, 2);
        EXPECT_DOUBLE_EQ(c.x[0], 5.0);
        EXPECT_DOUBLE_EQ(c.y[0], 5.0);
        EXPECT_DOUBLE_EQ(c.x[1], 15.0);
        EXPECT_DOUBLE_EQ(c.y[1], 5.0);
    }
}

TEST_F(Intbl1, ACrossingBeyondTheSegmentEndIsNotKept) {
    const Crossings c = cross({0.0, 10.0, 20.0}, {10.0, 0.0, 10.0}, 0.0, 5.0, 12.0, 5.0);
    EXPECT_EQ(c.num, 1);
    EXPECT_DOUBLE_EQ(c.x[0], 5.0);
    const Crossings none = cross({0.0, 10.0, 20.0}, {10.0, 0.0, 10.0}, 6.0, 5.0, 12.0, 5.0);
    EXPECT_EQ(none.num, 0);
    EXPECT_EQ(none.ierr, 0);
}

TEST_F(Intbl1, ASegmentMissingTheBrokenLine) {
    const Crossings c = cross({0.0, 10.0, 20.0}, {0.0, 0.0, 10.0}, 0.0, -5.0, 20.0, -1.0);
    EXPECT_EQ(c.ierr, 0);
    EXPECT_EQ(c.num, 0);
    const Crossings beside = cross({0.0, 10.0, 20.0}, {0.0, 0.0, 10.0}, 30.0, -5.0, 40.0, 5.0);
    EXPECT_EQ(beside.num, 0);
}

TEST_F(Intbl1, APartLyingOnTheSegmentGivesItsEndPoint) {
    const Crossings c = cross({0.0, 10.0, 20.0}, {0.0, 0.0, 10.0}, 5.0, 0.0, 15.0, 0.0);
    EXPECT_EQ(c.ierr, 0);
    ASSERT_EQ(c.num, 1);
    EXPECT_DOUBLE_EQ(c.x[0], 10.0);
    EXPECT_DOUBLE_EQ(c.y[0], 0.0);
}

TEST_F(Intbl1, AVerticalPartIsCrossed) {
    const Crossings c = cross({0.0, 10.0, 10.0, 20.0}, {0.0, 0.0, 10.0, 10.0}, 0.0, 5.0, 20.0, 5.0);
    EXPECT_EQ(c.ierr, 0);
    ASSERT_EQ(c.num, 1);
    EXPECT_DOUBLE_EQ(c.x[0], 10.0);
    EXPECT_DOUBLE_EQ(c.y[0], 5.0);
}

TEST_F(Intbl1, AVerticalSegmentOnAVerticalPartGivesItsEndPoint) {
    const Crossings c = cross({0.0, 10.0, 10.0, 20.0}, {0.0, 0.0, 10.0, 10.0}, 10.0, 2.0, 10.0, 12.0);
    EXPECT_EQ(c.ierr, 0);
    ASSERT_EQ(c.num, 1);
    EXPECT_DOUBLE_EQ(c.x[0], 10.0);
    EXPECT_DOUBLE_EQ(c.y[0], 10.0);
}

TEST_F(Intbl1, ADegenerateSegmentIsErrorOne) {
    const Crossings c = cross({0.0, 10.0}, {0.0, 0.0}, 5.0, 0.0, 5.0 + 1.0e-13, 0.0);
    EXPECT_EQ(c.ierr, 1);
    EXPECT_EQ(c.num, 0);
    const Crossings shortOne = cross({0.0, 10.0}, {0.0, 0.0}, 5.0, -1.0e-6, 5.0, 1.0e-6);
    EXPECT_EQ(shortOne.ierr, 0);
    EXPECT_EQ(shortOne.num, 1);
}

TEST_F(Intbl1, TheTracePrintNumbersTheCallsAtTraceLevelFour) {
    kalmo_test::TempDir dir;
    MASTER.NF18 = 18;
    ASSERT_EQ(io::openNew(18, dir.path("KALMO.LOG")), 0);
    MASTER.JPRINT = 3;
    cross({0.0, 10.0, 20.0}, {10.0, 0.0, 10.0}, 0.0, 5.0, 20.0, 5.0);
    EXPECT_EQ(io::contents(18), "");

    MASTER.JPRINT = 4;
    cross({0.0, 10.0, 20.0}, {10.0, 0.0, 10.0}, 0.0, 5.0, 20.0, 5.0);
    cross({0.0, 10.0, 20.0}, {10.0, 0.0, 10.0}, 0.0, 5.0, 20.0, 5.0);
    const std::string log = io::contents(18);
    const std::string head = " SR/INTBL1 Trace print.  Call number =";
    const size_t first = log.find(head);
    ASSERT_NE(first, std::string::npos);
    const size_t second = log.find(head, first + 1);
    ASSERT_NE(second, std::string::npos);
    const int firstNumber = std::stoi(log.substr(first + head.size()));
    const int secondNumber = std::stoi(log.substr(second + head.size()));
    EXPECT_EQ(secondNumber, firstNumber + 1);
    EXPECT_NE(log.find(" Point     X     Y"), std::string::npos);
    EXPECT_NE(log.find(" Intersecting line, points 1 and 2"), std::string::npos);
    EXPECT_NE(log.find(" Intersections found =           2"), std::string::npos);
}
