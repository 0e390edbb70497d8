// INTPOL: linear interpolation in a broken line, both directions, and every error code.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "input/input.h"

namespace {

constexpr double kNoValue = 1.0e10;

double interpolate(const std::vector<double>& x, const std::vector<double>& y, int direction, double xq, int& ierr) {
    double yq = -123.0;
    INTPOL(static_cast<int>(x.size()), direction, x.data(), y.data(), xq, yq, ierr);
    return yq;
}

}  // namespace

TEST(Intpol, IncreasingAbscissasInterpolateLinearly) {
    const std::vector<double> x{0.0, 10.0, 20.0};
    const std::vector<double> y{1.0, 3.0, -1.0};
    int ierr = -1;
    EXPECT_DOUBLE_EQ(interpolate(x, y, 1, 5.0, ierr), 2.0);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(interpolate(x, y, 1, 15.0, ierr), 1.0);
    EXPECT_DOUBLE_EQ(interpolate(x, y, 1, 17.5, ierr), 0.0);
    EXPECT_EQ(ierr, 0);
}

TEST(Intpol, IncreasingAbscissasHoldTheEndValuesOutside) {
    const std::vector<double> x{0.0, 10.0, 20.0};
    const std::vector<double> y{1.0, 3.0, -1.0};
    int ierr = -1;
    EXPECT_EQ(interpolate(x, y, 1, -5.0, ierr), 1.0);
    EXPECT_EQ(interpolate(x, y, 1, 0.0, ierr), 1.0);
    EXPECT_EQ(interpolate(x, y, 1, 20.0, ierr), -1.0);
    EXPECT_EQ(interpolate(x, y, 1, 1.0e6, ierr), -1.0);
    EXPECT_EQ(ierr, 0);
}

TEST(Intpol, AnAbscissaOfTheTableGivesItsValueExactly) {
    const std::vector<double> x{0.0, 0.1, 0.7, 1.3};
    const std::vector<double> y{0.3, 0.9, 0.11, 7.0};
    int ierr = -1;
    EXPECT_EQ(interpolate(x, y, 1, 0.7, ierr), 0.11);
    EXPECT_EQ(interpolate(x, y, 1, 0.1, ierr), 0.9);
    EXPECT_EQ(ierr, 0);
}

TEST(Intpol, DecreasingAbscissasInterpolateLinearly) {
    const std::vector<double> x{20.0, 10.0, 0.0};
    const std::vector<double> y{-1.0, 3.0, 1.0};
    int ierr = -1;
    EXPECT_DOUBLE_EQ(interpolate(x, y, -1, 5.0, ierr), 2.0);
    EXPECT_DOUBLE_EQ(interpolate(x, y, -1, 15.0, ierr), 1.0);
    EXPECT_EQ(interpolate(x, y, -1, 10.0, ierr), 3.0);
    EXPECT_EQ(ierr, 0);
}

TEST(Intpol, DecreasingAbscissasHoldTheEndValuesOutside) {
    const std::vector<double> x{20.0, 10.0, 0.0};
    const std::vector<double> y{-1.0, 3.0, 1.0};
    int ierr = -1;
    EXPECT_EQ(interpolate(x, y, -1, 25.0, ierr), -1.0);
    EXPECT_EQ(interpolate(x, y, -1, 20.0, ierr), -1.0);
    EXPECT_EQ(interpolate(x, y, -1, 0.0, ierr), 1.0);
    EXPECT_EQ(interpolate(x, y, -1, -3.0, ierr), 1.0);
    EXPECT_EQ(ierr, 0);
}

TEST(Intpol, OnePointGivesItsValue) {
    const std::vector<double> x{4.0};
    const std::vector<double> y{9.5};
    int ierr = -1;
    EXPECT_EQ(interpolate(x, y, 1, -100.0, ierr), 9.5);
    EXPECT_EQ(ierr, 0);
    EXPECT_EQ(interpolate(x, y, 7, 100.0, ierr), 9.5);  // the direction is not looked at
    EXPECT_EQ(ierr, 0);
}

TEST(Intpol, ABadDirectionIsErrorOne) {
    const std::vector<double> x{0.0, 10.0};
    const std::vector<double> y{1.0, 2.0};
    int ierr = -1;
    EXPECT_EQ(interpolate(x, y, 0, 5.0, ierr), kNoValue);
    EXPECT_EQ(ierr, 1);
    EXPECT_EQ(interpolate(x, y, 2, 5.0, ierr), kNoValue);
    EXPECT_EQ(ierr, 1);
    EXPECT_EQ(interpolate(x, y, -2, 5.0, ierr), kNoValue);
    EXPECT_EQ(ierr, 1);
}

TEST(Intpol, TwoEqualAbscissasAnywhereAreErrorTwoWhereverXLies) {
    const std::vector<double> x{0.0, 10.0, 20.0, 20.0, 30.0};
    const std::vector<double> y{1.0, 2.0, 3.0, 4.0, 5.0};
    int ierr = -1;
    EXPECT_EQ(interpolate(x, y, 1, 5.0, ierr), kNoValue);
    EXPECT_EQ(ierr, 2);
    ierr = -1;
    interpolate(x, y, 1, -1.0, ierr);
    EXPECT_EQ(ierr, 2);
    ierr = -1;
    interpolate(x, y, 1, 31.0, ierr);
    EXPECT_EQ(ierr, 2);
    ierr = -1;
    interpolate(x, y, 1, 25.0, ierr);
    EXPECT_EQ(ierr, 2);
}

TEST(Intpol, AbscissasNotIncreasingAreErrorTwo) {
    int ierr = -1;
    interpolate({5.0, 5.0}, {1.0, 2.0}, 1, 5.0, ierr);
    EXPECT_EQ(ierr, 2);
    ierr = -1;
    interpolate({10.0, 0.0}, {1.0, 2.0}, 1, 5.0, ierr);  // a decreasing table asked as increasing
    EXPECT_EQ(ierr, 2);
    ierr = -1;
    interpolate({0.0, 3.0, 2.0, 8.0}, {1.0, 2.0, 3.0, 4.0}, 1, 1.0, ierr);
    EXPECT_EQ(ierr, 2);
    ierr = -1;
    interpolate({0.0, 5.0e-11, 8.0}, {1.0, 2.0, 3.0}, 1, 4.0, ierr);  // a step of no more than 1.0E-10
    EXPECT_EQ(ierr, 2);
}

TEST(Intpol, AbscissasNotDecreasingAreErrorThree) {
    int ierr = -1;
    EXPECT_EQ(interpolate({0.0, 10.0}, {1.0, 2.0}, -1, 5.0, ierr), kNoValue);
    EXPECT_EQ(ierr, 3);
    ierr = -1;
    interpolate({30.0, 20.0, 20.0, 0.0}, {1.0, 2.0, 3.0, 4.0}, -1, 25.0, ierr);
    EXPECT_EQ(ierr, 3);
    ierr = -1;
    interpolate({30.0, 20.0, 20.0, 0.0}, {1.0, 2.0, 3.0, 4.0}, -1, 40.0, ierr);
    EXPECT_EQ(ierr, 3);
}

TEST(Intpol, MoreThanAThousandPointsIsErrorFour) {
    std::vector<double> x(1001), y(1001);
    for (int k = 0; k < 1001; ++k) {
        x[static_cast<size_t>(k)] = k;
        y[static_cast<size_t>(k)] = 2.0 * k;
    }
    int ierr = -1;
    EXPECT_EQ(interpolate(x, y, 1, 5.5, ierr), kNoValue);
    EXPECT_EQ(ierr, 4);
    x.pop_back();
    y.pop_back();
    EXPECT_DOUBLE_EQ(interpolate(x, y, 1, 998.5, ierr), 1997.0);
    EXPECT_EQ(ierr, 0);
}

// A line checked once answers every abscissa as INTPOL answers it, in whatever order the
// abscissas are asked (the look-up starts next to the segment found last): the values are the
// straight-line values between the table points, worked out here from the points themselves.
TEST(Intpol, ACheckedLineAnswersLikeIntpolInAnyOrder) {
    const std::vector<double> x{0.0, 2.0, 3.0, 7.0, 8.5, 12.0};
    const std::vector<double> y{1.0, 5.0, -1.0, 3.0, 3.0, 10.0};
    const std::vector<double> asked{-1.0, 0.5, 1.0, 2.0, 2.5, 6.0, 8.0, 11.0, 12.0, 13.0,
                                    11.5, 7.5, 2.9, 0.1, 7.0, 7.1, 3.0, 1.9, 12.0, 0.0};
    for (int direction : {1, -1}) {
        std::vector<double> xs = x, ys = y;
        if (direction == -1)
            for (double& v : xs) v = -v;
        const BrokenLine line = checkedBrokenLine(6, direction, xs.data(), ys.data());
        ASSERT_EQ(line.code, 0);
        for (double a : asked) {
            const double q = direction == 1 ? a : -a;
            double expected = y.front();
            if (a >= x.back()) expected = y.back();
            for (size_t k = 1; k < x.size(); ++k)
                if (a > x[k - 1] && a <= x[k]) expected = y[k - 1] + (y[k] - y[k - 1]) * (a - x[k - 1]) / (x[k] - x[k - 1]);
            double value = 0.0, fromIntpol = 0.0;
            int ierr = -1, intpolErr = -1;
            interpolate(line, q, value, ierr);
            INTPOL(6, direction, xs.data(), ys.data(), q, fromIntpol, intpolErr);
            EXPECT_EQ(ierr, 0);
            EXPECT_EQ(intpolErr, 0);
            EXPECT_NEAR(value, expected, 1e-12) << a << " direction " << direction;
            EXPECT_EQ(value, fromIntpol) << a;
        }
    }
}

// A bad table keeps its error code through a checked line, whatever abscissa is asked.
TEST(Intpol, ACheckedBadLineGivesTheErrorOfIntpol) {
    const std::vector<double> x{0.0, 2.0, 2.0, 7.0};
    const std::vector<double> y{1.0, 2.0, 3.0, 4.0};
    const BrokenLine line = checkedBrokenLine(4, 1, x.data(), y.data());
    EXPECT_EQ(line.code, 2);
    for (double q : {-1.0, 1.0, 5.0, 9.0}) {
        double value = 0.0;
        int ierr = 0;
        interpolate(line, q, value, ierr);
        EXPECT_EQ(ierr, 2);
        EXPECT_EQ(value, kNoValue);
    }
}

// A long line asked from left to right in jumps of many points (as the borders of slices ask
// a fine shear surface) and then back: every answer is the straight-line value between the two
// table points around the abscissa, and at a table point the point's own value.
TEST(Intpol, ALongLineAskedInJumpsAnswersLikeIntpol) {
    const int n = 200;
    std::vector<double> x(n), y(n);
    for (int k = 0; k < n; ++k) {
        x[k] = 0.5 * k + 0.001 * k * k;  // unequal steps
        y[k] = std::sin(0.1 * k) * 10.0;
    }
    const BrokenLine line = checkedBrokenLine(n, 1, x.data(), y.data());
    ASSERT_EQ(line.code, 0);
    std::vector<double> asked;
    for (double a = -1.0; a < x.back() + 2.0; a += 1.37) asked.push_back(a);  // forward jumps
    for (int k : {0, 7, 8, 150, 199, 3}) asked.push_back(x[k]);               // table points
    for (double a = x.back() + 1.0; a > -2.0; a -= 7.9) asked.push_back(a);   // backward jumps
    for (double a : asked) {
        double expected = a <= x.front() ? y.front() : y.back();
        for (int k = 1; k < n; ++k)
            if (a > x[k - 1] && a <= x[k]) expected = y[k - 1] + (y[k] - y[k - 1]) * (a - x[k - 1]) / (x[k] - x[k - 1]);
        double value = 0.0, fromIntpol = 0.0;
        int ierr = -1, intpolErr = -1;
        interpolate(line, a, value, ierr);
        INTPOL(n, 1, x.data(), y.data(), a, fromIntpol, intpolErr);
        ASSERT_EQ(ierr, 0) << a;
        EXPECT_NEAR(value, expected, 1e-12) << a;
        EXPECT_EQ(value, fromIntpol) << a;
    }
}

// A table asked from left to right with the slopes of its segments taken once answers every
// abscissa bit for bit as INTPOL does: between points, on points, at and beyond both ends, with
// a walk that starts where the last one ended, at the start, or past the abscissa asked.
TEST(Intpol, AskedFromLeftToRightWithItsSlopesATableAnswersLikeIntpol) {
    // Irregular points: straight runs (mesh points on one slope), breaks, a short segment.
    const std::vector<double> x{-40.0, -12.5, 0.0, 2.0, 4.0, 6.0, 6.001, 9.3, 20.0, 31.7};
    const std::vector<double> y{0.0, 0.0, 1.1, 1.6, 2.1, 2.6, 2.6, 7.0, 7.0, -3.25};
    const int n = static_cast<int>(x.size());
    const BrokenLine line = checkedBrokenLine(n, 1, x.data(), y.data());
    ASSERT_EQ(line.code, 0);
    std::vector<double> slopes(x.size());
    for (int k = 1; k < n; ++k) slopes[static_cast<size_t>(k)] = brokenLineSlope(x.data(), y.data(), k);
    const auto sameBits = [](double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; };
    std::vector<double> asked;
    for (double a = -45.0; a <= 35.0; a += 0.37) asked.push_back(a);
    asked.insert(asked.end(), x.begin(), x.end());
    std::sort(asked.begin(), asked.end());
    for (int restartEvery : {1, 3, 1000}) {
        int segment = 0;
        for (size_t q = 0; q < asked.size(); ++q) {
            if (q % static_cast<size_t>(restartEvery) == 0) segment = 0;
            double expected = 0.0;
            int ierr = -1;
            INTPOL(n, 1, x.data(), y.data(), asked[q], expected, ierr);
            ASSERT_EQ(ierr, 0);
            const double value = interpolateRightward(line, slopes.data(), asked[q], segment);
            EXPECT_TRUE(sameBits(value, expected)) << asked[q] << ": " << value << " " << expected;
        }
    }
    // A walk standing past the abscissa asked starts again from the first point.
    for (int standing = 1; standing < n; ++standing) {
        for (double a : {-12.5, -3.0, 2.0, 6.0005, 25.0}) {
            int segment = standing;
            double expected = 0.0;
            int ierr = -1;
            INTPOL(n, 1, x.data(), y.data(), a, expected, ierr);
            EXPECT_TRUE(sameBits(interpolateRightward(line, slopes.data(), a, segment), expected)) << standing << " " << a;
        }
    }
}
