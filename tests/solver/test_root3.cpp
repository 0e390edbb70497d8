// ROOT3: next assumed safety factor from the trials of a moment iteration.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "solver/solver.h"
#include "support/tempdir.h"

namespace {

double root3(std::vector<double>& x, std::vector<double>& y, double xmin, double xmax, int& ierr) {
    double root = -99.0;
    ierr = -7;
    ROOT3(static_cast<int>(x.size()), 0, x.data(), y.data(), xmin, xmax, root, ierr);
    return root;
}

class Root3 : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();
    }
};

}  // namespace

TEST_F(Root3, ARangeNarrowerThanOneMillionthIsError1) {
    std::vector<double> x{1.0}, y{0.5};
    int ierr = 0;
    root3(x, y, 2.0, 2.0 + 5.0E-7, ierr);
    EXPECT_EQ(ierr, 1);
    root3(x, y, 3.0, 2.0, ierr);
    EXPECT_EQ(ierr, 1);
}

TEST_F(Root3, WithoutPointsTheMiddleOfTheRangeIsTaken) {
    std::vector<double> x, y;
    int ierr = 0;
    EXPECT_DOUBLE_EQ(root3(x, y, 1.0, 3.0, ierr), 2.0);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Root3, OnePointStepsHalfWayTowardsTheFarEndOfTheRange) {
    int ierr = 0;
    std::vector<double> x{2.5}, y{0.3};
    EXPECT_DOUBLE_EQ(root3(x, y, 1.0, 3.0, ierr), (2.5 + 1.0) * 0.5);  // middle below the point
    EXPECT_EQ(ierr, 0);
    x = {1.5};
    EXPECT_DOUBLE_EQ(root3(x, y, 1.0, 3.0, ierr), (1.5 + 3.0) * 0.5);  // middle above the point
    x = {2.0};
    EXPECT_DOUBLE_EQ(root3(x, y, 1.0, 3.0, ierr), 2.0);  // the point is the middle
}

TEST_F(Root3, TwoPointsGiveTheirSecantRootKeptInsideTheRange) {
    int ierr = 0;
    // Y = X - 1.8 through (2.0, 0.2) and (2.5, 0.7).
    std::vector<double> x{2.0, 2.5}, y{0.2, 0.7};
    EXPECT_NEAR(root3(x, y, 1.0, 3.0, ierr), 1.8, 1.0E-14);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(root3(x, y, 1.9, 3.0, ierr), (1.9 + 2.5) * 0.5);  // below XMIN
    // Y = X - 4 through (2, -2) and (3, -1): root 4 above XMAX.
    x = {2.0, 3.0};
    y = {-2.0, -1.0};
    EXPECT_DOUBLE_EQ(root3(x, y, 1.0, 3.5, ierr), (3.5 + 3.0) * 0.5);
    // Equal Y: the denominator is held at 1e-6 and the step runs far out, beyond XMAX.
    x = {2.0, 2.2};
    y = {0.5, 0.5};
    EXPECT_DOUBLE_EQ(root3(x, y, 1.0, 3.0, ierr), (3.0 + 2.2) * 0.5);
}

TEST_F(Root3, ThreeOrMorePointsAreSortedLargestFirst) {
    int ierr = 0;
    std::vector<double> x{2.0, 3.0, 1.0, 2.5}, y{0.1, 1.1, -0.9, 0.6};
    root3(x, y, 0.5, 4.0, ierr);
    EXPECT_EQ(x, (std::vector<double>{3.0, 2.5, 2.0, 1.0}));
    EXPECT_EQ(y, (std::vector<double>{1.1, 0.6, 0.1, -0.9}));
}

TEST_F(Root3, TwoEqualAssumedFactorsAreError2) {
    int ierr = 0;
    std::vector<double> x{2.0, 3.0, 2.0 + 5.0E-7}, y{0.1, 1.0, 0.2};
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 4.0, ierr), -1.0);
    EXPECT_EQ(ierr, 2);
}

TEST_F(Root3, ASignChangeIsBracketedByTheSecantOfItsNeighbours) {
    int ierr = 0;
    // Y = (X - 1.75)(X + 1) sampled at 3, 2, 1.5, 1: the change lies between 2 and 1.5.
    std::vector<double> x{1.0, 3.0, 1.5, 2.0}, y;
    for (double v : x) y.push_back((v - 1.75) * (v + 1.0));
    const double yHigh = (2.0 - 1.75) * 3.0, yLow = (1.5 - 1.75) * 2.5;
    const double expected = 2.0 - (2.0 - 1.5) * yHigh / (yHigh - yLow);
    EXPECT_NEAR(root3(x, y, 0.5, 4.0, ierr), expected, 1.0E-14);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Root3, ASignChangeOfTinyResidualsTakesTheMidpoint) {
    int ierr = 0;
    std::vector<double> x{3.0, 2.0, 1.6}, y{2.0E-7, 1.0E-7, -3.0E-7};
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 4.0, ierr), (2.0 + 1.6) * 0.5);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Root3, ATurningSlopeIsBisectedAlternatelyAtTheTurnAndOnePairEarlier) {
    // All residuals positive, least between X = 2 and X = 1: the slope turns at the fourth
    // point (largest X first).
    const std::vector<double> xs{4.0, 3.0, 2.0, 1.0}, ys{3.0, 1.0, 0.5, 2.0};
    int ierr = 0;
    std::vector<double> x = xs, y = ys;
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 5.0, ierr), 1.5);  // pair at the turn: 2 and 1
    EXPECT_EQ(ierr, 0);
    x = xs, y = ys;
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 5.0, ierr), 2.5);  // one pair earlier: 3 and 2
    x = xs, y = ys;
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 5.0, ierr), 1.5);  // and back
    // Calls that end elsewhere do not move the alternation.
    std::vector<double> x2{3.0, 2.0, 1.0}, y2{1.0, 0.5, -0.5};
    root3(x2, y2, 0.5, 5.0, ierr);
    x = xs, y = ys;
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 5.0, ierr), 2.5);
}

TEST_F(Root3, ATurningSlopeBetweenPointsCloserThanOneTenThousandthIsError2) {
    std::vector<double> x{4.0, 3.0, 2.00005, 2.0}, y{3.0, 1.0, 0.5, 2.0};
    int ierr = 0;
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 5.0, ierr), -1.0);
    EXPECT_EQ(ierr, 2);
}

TEST_F(Root3, AMonotonicTableIsExtrapolatedFromItsSmallestFactors) {
    int ierr = 0;
    // Y = 0.8 (X - 1.5), all positive: secant through the two smallest X.
    std::vector<double> x{3.0, 2.5, 2.0}, y{1.2, 0.8, 0.4};
    EXPECT_NEAR(root3(x, y, 1.0, 4.0, ierr), 1.5, 1.0E-14);
    EXPECT_EQ(ierr, 0);
    x = {3.0, 2.5, 2.0}, y = {1.2, 0.8, 0.4};
    EXPECT_DOUBLE_EQ(root3(x, y, 1.6, 4.0, ierr), (1.6 + 2.0) * 0.5);  // below XMIN
    // Y = 0.8 (X - 3.5), all negative: the same two points extrapolate upwards.
    x = {3.0, 2.5, 2.0}, y = {-0.4, -0.8, -1.2};
    EXPECT_NEAR(root3(x, y, 1.0, 4.0, ierr), 3.5, 1.0E-14);
    x = {3.0, 2.5, 2.0}, y = {-0.4, -0.8, -1.2};
    EXPECT_DOUBLE_EQ(root3(x, y, 1.0, 3.2, ierr), (3.2 + 2.0) * 0.5);  // above XMAX
}

TEST_F(Root3, AZeroResidualAtTheLargestFactorExtrapolatesFromTheLargestFactors) {
    // Y = X - 3 with Y(1) = 0 exactly: no strict sign change, and the signs of the first two
    // points (0 counts as positive) differ, so the secant runs through points 1 and 2.
    int ierr = 0;
    std::vector<double> x{3.0, 2.0, 1.0}, y{0.0, -1.0, -2.0};
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 4.0, ierr), 3.0);
    EXPECT_EQ(ierr, 0);
    x = {3.0, 2.0, 1.0}, y = {0.0, -1.0, -2.0};
    EXPECT_DOUBLE_EQ(root3(x, y, 0.5, 2.5, ierr), (2.5 + 2.0) * 0.5);  // above XMAX
}

TEST_F(Root3, TheTraceListsTheRangeAndThePoints) {
    kalmo_test::TempDir dir;
    MASTER.NF18 = 18;
    io::openNew(18, dir.path("KALMO.LOG"));
    std::vector<double> x{2.0, 3.0, 1.0}, y{0.1, 1.1, -0.9};
    double root = 0.0;
    int ierr = 0;
    ROOT3(3, 1, x.data(), y.data(), 0.5, 4.0, root, ierr);
    const std::string log = io::contents(18);
    EXPECT_NE(log.find(" SR/ROOT3 TRACE PRINT   XMAX,XMIN=="), std::string::npos);
    EXPECT_NE(log.find("    N   X=SF.asm  Y=SF.asm-SF.cmp"), std::string::npos);
    EXPECT_NE(log.find("3.00000"), std::string::npos);
    ROOT3(3, 0, x.data(), y.data(), 0.5, 4.0, root, ierr);
    EXPECT_EQ(io::contents(18), log);
    io::resetAll();
}
