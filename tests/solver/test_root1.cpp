// ROOT1: the next safety factor from the residual curve through the trials.

#include <gtest/gtest.h>

#include <vector>

#include "solver/slice_system.h"
#include "solver/solver.h"

using namespace kalmo_test;

namespace {

// A residual curve with the horizontal asymptote YMAX and a vertical one at x0:
// Y(x) = YMAX + A/(x - x0), whose root is x0 - A/YMAX.
struct Hyperbola {
    double YMAX, x0, A;
    double operator()(double x) const { return YMAX + A / (x - x0); }
    double root() const { return x0 - A / YMAX; }
};

struct Call {
    double ROOT = -7.0;
    int IERR = -7;
};

Call root1(std::vector<double>& X, std::vector<double>& Y, double XMAX, double XMIN, double YMAX) {
    Call call;
    ROOT1(static_cast<int>(X.size()), X.data(), Y.data(), XMAX, XMIN, YMAX, call.ROOT, call.IERR);
    return call;
}

class Root1Test : public ::testing::Test {
protected:
    void SetUp() override { freshRun(dir); }
    TempDir dir;
};

}  // namespace

TEST_F(Root1Test, NoTrialsIsErrorMinusOne) {
    double x = 1.0, y = 1.0, ROOT = 5.0;
    int IERR = 9;
    ROOT1(0, &x, &y, 10.0, 0.0, 1.0, ROOT, IERR);
    EXPECT_EQ(IERR, -1);
    EXPECT_EQ(ROOT, 0.0);
}

TEST_F(Root1Test, UpperBoundNotAboveLowerIsErrorOne) {
    std::vector<double> X{2.0}, Y{1.0};
    Call call = root1(X, Y, 1.5, 1.5000001, 10.0);
    EXPECT_EQ(call.IERR, 1);
    EXPECT_EQ(call.ROOT, 0.0);
    X = {2.0};
    call = root1(X, Y, 1.0, 3.0, 10.0);
    EXPECT_EQ(call.IERR, 1);
    // Equal bounds are still a range.
    X = {2.0};
    call = root1(X, Y, 1.5, 1.5, 10.0);
    EXPECT_EQ(call.IERR, 0);
}

TEST_F(Root1Test, OneTrialWithoutAsymptoteShrinksOrHalvesTowardsTheLowerBound) {
    std::vector<double> X{2.0}, Y{-3.0};
    Call call = root1(X, Y, 100.0, 0.0, -1.0);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_EQ(call.ROOT, 2.0 * static_cast<double>(0.9f));

    X = {2.0};
    call = root1(X, Y, 100.0, 1.0, -1.0);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_EQ(call.ROOT, 1.5);

    // A trial that already balances points to the upper bound.
    X = {2.0};
    Y = {0.0};
    call = root1(X, Y, 100.0, 1.0, -1.0);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_EQ(call.ROOT, 100.0);
}

TEST_F(Root1Test, OneTrialUsesTheHyperbolaThroughTheOrigin) {
    // Y(x) = 40 - 60/x passes through (2, 10); its root is 1.5.
    const Hyperbola curve{40.0, 0.0, -60.0};
    std::vector<double> X{2.0}, Y{curve(2.0)};
    Call call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, curve.root(), 1e-12);
    EXPECT_NEAR(call.ROOT, 1.5, 1e-12);
}

TEST_F(Root1Test, OneTrialWithZeroAsymptoteIsErrorThree) {
    std::vector<double> X{2.0}, Y{-5.0};
    Call call = root1(X, Y, 1.0E6, 0.001, 0.0);
    EXPECT_EQ(call.IERR, 3);
    EXPECT_EQ(call.ROOT, 0.0);
    EXPECT_EQ(countOf(logText(), "  SR/ROOT1  N     X(N)       Y(N)"), 1);
    EXPECT_EQ(countOf(logText(), " IERR,XMAX,XMIN,YMAX,ROOT="), 1);
    EXPECT_EQ(countOf(copyText(), " IERR,XMAX,XMIN,YMAX,ROOT="), 1);
}

TEST_F(Root1Test, BracketingPairGivesTheRootOfTheHyperbolaThroughIt) {
    const Hyperbola curve{50.0, 0.3, -40.0};  // root 1.1
    std::vector<double> X{0.9, 3.0, 2.0};
    std::vector<double> Y{curve(0.9), curve(3.0), curve(2.0)};
    Call call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, curve.root(), 1e-12);
    EXPECT_NEAR(call.ROOT, 1.1, 1e-12);
    // The trials come back sorted by the safety factor, largest first, residuals carried along.
    EXPECT_EQ(X, (std::vector<double>{3.0, 2.0, 0.9}));
    EXPECT_EQ(Y[0], curve(3.0));
    EXPECT_EQ(Y[2], curve(0.9));
    EXPECT_TRUE(logText().empty());
}

TEST_F(Root1Test, AllPositiveExtrapolatesFromTheTwoSmallestFactors) {
    const Hyperbola curve{50.0, 0.3, -40.0};
    // The largest trial lies off the curve: it must not be used.
    std::vector<double> X{2.0, 10.0, 1.5};
    std::vector<double> Y{curve(2.0), 49.0, curve(1.5)};
    Call call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 1.1, 1e-12);
}

TEST_F(Root1Test, AllNegativeExtrapolatesFromTheTwoLargestFactors) {
    const Hyperbola curve{50.0, 0.3, -40.0};
    std::vector<double> X{0.5, 1.0, 0.8};
    std::vector<double> Y{-300.0, curve(1.0), curve(0.8)};
    Call call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 1.1, 1e-12);
}

TEST_F(Root1Test, NegativeAndNotImprovingAfterFiveTrialsStepsWellBeyond) {
    std::vector<double> X{0.6, 0.7, 0.8, 0.9, 1.0};
    std::vector<double> Y{-5.0, -5.0, -5.0, -5.0, -5.0};
    Call call = root1(X, Y, 1.0E6, 0.001, 50.0);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_EQ(call.ROOT, 1.5);

    // Capped half-way between the largest trial and the upper bound.
    X = {0.6, 0.7, 0.8, 0.9, 1.0};
    Y = {-1.0, -2.0, -3.0, -4.0, -6.0};
    call = root1(X, Y, 1.2, 0.001, 50.0);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 1.1, 1e-15);
}

TEST_F(Root1Test, NegativeButImprovingAfterFiveTrialsUsesTheHyperbola) {
    const Hyperbola curve{50.0, 0.3, -40.0};
    std::vector<double> X{0.5, 0.6, 0.7, 0.8, 1.0};
    std::vector<double> Y(X.size());
    for (size_t k = 0; k < X.size(); ++k) Y[k] = curve(X[k]);
    Call call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 1.1, 1e-12);
}

TEST_F(Root1Test, NegativeAsymptoteUsesTheSecant) {
    // Y = 3x - 6, root 2: bracketing and extrapolated.
    std::vector<double> X{1.0, 4.0}, Y{-3.0, 6.0};
    Call call = root1(X, Y, 1.0E6, 0.001, -1.0);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 2.0, 1e-14);

    X = {3.0, 4.0, 5.0};
    Y = {3.0, 6.0, 9.0};
    call = root1(X, Y, 1.0E6, 0.001, -1.0);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 2.0, 1e-14);
}

TEST_F(Root1Test, SecantThroughEqualFactorsOrEqualResidualsIsErrorTwo) {
    std::vector<double> X{2.0, 2.0}, Y{1.0, -1.0};
    Call call = root1(X, Y, 1.0E6, 0.001, -1.0);
    EXPECT_EQ(call.IERR, 2);
    EXPECT_EQ(call.ROOT, 0.0);

    X = {1.0, 2.0};
    Y = {5.0, 5.0};
    call = root1(X, Y, 1.0E6, 0.001, -1.0);
    EXPECT_EQ(call.IERR, 2);
    EXPECT_EQ(countOf(logText(), "  SR/ROOT1  N     X(N)       Y(N)"), 2);
}

TEST_F(Root1Test, HyperbolaThroughEqualResidualsIsErrorTwo) {
    std::vector<double> X{1.0, 2.0}, Y{5.0, 5.0};
    Call call = root1(X, Y, 1.0E6, 0.001, 10.0);
    EXPECT_EQ(call.IERR, 2);
    EXPECT_EQ(call.ROOT, 0.0);
    const std::string log = logText();
    EXPECT_EQ(countOf(log, "  SR/ROOT1  N     X(N)       Y(N)"), 1);
    EXPECT_EQ(countOf(log, " IERR,XMAX,XMIN,YMAX,ROOT="), 1);
    // One line per trial between the header and the closing line.
    EXPECT_EQ(countOf(log, "\n"), 4);
}

TEST_F(Root1Test, HyperbolaWithoutPositiveAsymptoteIsErrorThree) {
    std::vector<double> X{1.0, 2.0}, Y{-5.0, 5.0};
    Call call = root1(X, Y, 1.0E6, 0.001, 0.0);
    EXPECT_EQ(call.IERR, 3);
    X = {1.0, 2.0};
    Y = {-5.0, 5.0};
    call = root1(X, Y, 1.0E6, 0.001, 1.0E-25);
    EXPECT_EQ(call.IERR, 3);
    EXPECT_EQ(call.ROOT, 0.0);
}

TEST_F(Root1Test, FromThirtyFiveTrialsTheBracketIsBisected) {
    // Trials at 1, 2, ..., N on a hyperbola whose root 34.3 lies between the two largest of 35.
    const Hyperbola curve{50.0, 0.0, -50.0 * 34.3};
    auto trials = [&](int n, std::vector<double>& X, std::vector<double>& Y) {
        X.clear();
        Y.clear();
        for (int k = 1; k <= n; ++k) {
            X.push_back(k);
            Y.push_back(curve(k));
        }
    };
    std::vector<double> X, Y;
    trials(35, X, Y);
    Call call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_EQ(call.ROOT, 34.5);

    // With 34 trials there is no bracket: the hyperbola through the two largest gives the root.
    trials(34, X, Y);
    call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 34.3, 1e-10);

    // 34 trials bracketing the root still use the hyperbola.
    trials(34, X, Y);
    X[0] = 35.0;
    Y[0] = curve(35.0);
    call = root1(X, Y, 1.0E6, 0.001, curve.YMAX);
    EXPECT_EQ(call.IERR, 0);
    EXPECT_NEAR(call.ROOT, 34.3, 1e-10);
}
