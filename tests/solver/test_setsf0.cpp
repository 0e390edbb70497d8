// SETSF0: bounds and start value of the safety factor.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>

#include "solver/slice_system.h"
#include "solver/solver.h"

using namespace kalmo_test;

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

// A slope whose every base falls towards the exit: a straight plane from the crest down to
// the toe, cutting a wedge out of the slope face.
constexpr int kWedgeSlices = 4;
constexpr double kWedgeX[kWedgeSlices + 1] = {0, 4, 8, 12, 16};
constexpr double kWedgeTop[kWedgeSlices + 1] = {0, 0, 0, 16.0 / 3.0, 8};
constexpr double kWedgeBase[kWedgeSlices + 1] = {0, 2, 4, 6, 8};

// Safety factor of the slope by the simplified method, from the geometry of the slope table.
double simplifiedFactor(double unitWeight, double cohesion, double tanPhi) {
    double F = 1.0;
    for (int iteration = 0; iteration < 1000; ++iteration) {
        double resisting = 0.0, driving = 0.0;
        for (int i = 0; i < kSlopeSlices; ++i) {
            const double dx = kSlopeX[i + 1] - kSlopeX[i];
            const double dz = kSlopeBase[i + 1] - kSlopeBase[i];
            const double l = std::hypot(dx, dz);
            const double sinA = dz / l, cosA = dx / l;
            const double W = unitWeight * dx * ((kSlopeBase[i] - kSlopeTop[i]) + (kSlopeBase[i + 1] - kSlopeTop[i + 1])) * 0.5;
            const double N = (W - cohesion * l * sinA / F) / (cosA + sinA * tanPhi / F);
            resisting += (cohesion * l + N * tanPhi) * cosA;
            driving += N * sinA;
        }
        const double next = resisting / driving;
        if (std::abs(next - F) < 1e-14 * next) return next;
        F = next;
    }
    return F;
}

class Setsf0Test : public ::testing::Test {
protected:
    void SetUp() override { freshRun(dir); }
    TempDir dir;
};

}  // namespace

TEST_F(Setsf0Test, PreparesBoundsAndStartsFromTheZeroRoughnessSolution) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        SURF.R(i) = 0.7;  // left by an earlier surface
        ISUR.MODE(i) = 2;
    }
    MASTER.JPRINT = 1;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);

    double limit = 0.0, noStrength = 0.0;
    for (int i = 1; i <= kSlopeSlices; ++i) {
        limit = std::max(limit, -SURF.SINB(i) * tanPhi / SURF.COSB(i));
        noStrength += SURF.WZ(i) * SURF.SINB(i) / SURF.COSB(i);
    }
    EXPECT_GT(limit, 0.3);  // the rising toe limits the factor from below
    EXPECT_DOUBLE_EQ(MASTER.SFLIM, limit);
    EXPECT_NEAR(MASTER.E2LIM, noStrength, 1e-12 * noStrength);
    EXPECT_EQ(MASTER.SFMAX, 1.0E6);
    const double expected = simplifiedFactor(19.0, 8.0, tanPhi);
    EXPECT_NEAR(MASTER.SF, expected, 1e-3 * expected);
    EXPECT_EQ(MASTER.SFTZ, MASTER.SF);
    EXPECT_EQ(MASTER.SFMIN, (MASTER.SF + MASTER.SFLIM) * 0.5);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        EXPECT_EQ(ISUR.MODE(i), 1);
        EXPECT_EQ(SURF.R(i), 0.0);
    }
    EXPECT_EQ(countOf(logText(), " SR/SETSF0 :  SFLIM,SFTZ,SFMIN,E2LIM ="), 1);
    EXPECT_EQ(countOf(copyText(), " SR/SETSF0 :  SFLIM,SFTZ,SFMIN,E2LIM ="), 1);
}

TEST_F(Setsf0Test, SummaryLineOnlyWhenPrintingIsOn) {
    setSlope(19.0, 8.0, std::tan(28.0 * kDegree));
    MASTER.JPRINT = 0;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_TRUE(logText().empty());
}

TEST_F(Setsf0Test, FirstTrialOfTheForceSolutionIsOneAboveTheLimit) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    MASTER.JPRINT = 3;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    std::istringstream lines(logText());
    std::string line;
    while (std::getline(lines, line) && line.rfind("ITER   SF", 0) != 0) {
    }
    ASSERT_TRUE(std::getline(lines, line));
    std::istringstream fields(line);
    int trial = 0;
    double sf = 0.0;
    fields >> trial >> sf;
    EXPECT_EQ(trial, 1);
    EXPECT_NEAR(sf, MASTER.SFLIM + 1.0, 1e-5);
}

TEST_F(Setsf0Test, EveryBaseFallingTowardsTheExitGivesNoLowerLimit) {
    setSlices(kWedgeSlices, kWedgeX, kWedgeTop, kWedgeBase, 19.0, 5.0, std::tan(30.0 * kDegree));
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SFLIM, 0.0);
    EXPECT_EQ(MASTER.SFMIN, MASTER.SF * 0.5);
    EXPECT_GT(MASTER.SF, 0.0);
}

TEST_F(Setsf0Test, EveryBaseFallingLeavesTheLowerBoundJustAboveZeroWhenTheSolutionFails) {
    // No strength at all: the residual is the whole driving force at every factor, so the
    // force solution cannot succeed and the bounds stay as set before it.
    setSlices(kWedgeSlices, kWedgeX, kWedgeTop, kWedgeBase, 19.0, 0.0, 0.0);
    SETSF0();
    EXPECT_NE(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SFLIM, 0.0);
    EXPECT_EQ(MASTER.SFMIN, static_cast<double>(0.001f));
    EXPECT_EQ(MASTER.SFMIN, 0.0010000000474974513);
    EXPECT_EQ(MASTER.SFMAX, 1.0E6);
}

TEST_F(Setsf0Test, LoadsPushingTheBodyIntoTheSlopeDropTheSurfaceUnsolved) {
    setSlope(19.0, 8.0, std::tan(28.0 * kDegree));
    double driving = 0.0;
    for (int i = 1; i <= kSlopeSlices; ++i) driving += SURF.WZ(i) * SURF.SINB(i) / SURF.COSB(i);
    SURF.WX(5) = -1.5 * driving;  // a heavy anchor force pulling back into the slope
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.R(i) = 0.4;
    MASTER.JPRINT = 1;
    SETSF0();
    EXPECT_EQ(MASTER.IERR, -2);
    EXPECT_EQ(MASTER.SF, static_cast<double>(999.999f));
    EXPECT_EQ(MASTER.SF, 999.9990234375);
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(5.555f));
    EXPECT_NEAR(MASTER.E2LIM, -0.5 * driving, 1e-9 * driving);
    // No solution was attempted: roughness and slice forces as they were.
    for (int i = 1; i <= kSlopeSlices; ++i) EXPECT_EQ(SURF.R(i), 0.4);
    EXPECT_EQ(SURF.P(1), 0.0);
    const std::string log = logText();
    EXPECT_EQ(countOf(log, "\n **** SR/SETSF0 : PRESENT SYSTEM HAS VERY HIGH SAFETY FACTOR\n E2LIM ="), 1);
    EXPECT_EQ(log.substr(0, 1), "\n");  // the message starts with a blank line
    EXPECT_EQ(countOf(copyText(), " **** SR/SETSF0 : PRESENT SYSTEM HAS VERY HIGH SAFETY FACTOR"), 1);
    EXPECT_TRUE(consoleText().empty());
}

TEST_F(Setsf0Test, SmallDrivingForceAboveTheStabilityMarginIsSolved) {
    // E2LIM at half the force tolerance is more than 0.01 of it: the solution is attempted.
    setSlope(19.0, 8.0, std::tan(28.0 * kDegree));
    double driving = 0.0;
    for (int i = 1; i <= kSlopeSlices; ++i) driving += SURF.WZ(i) * SURF.SINB(i) / SURF.COSB(i);
    SURF.WX(5) = 0.5 * MASTER.E2TOL - driving;
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.R(i) = 0.4;
    SETSF0();
    EXPECT_NEAR(MASTER.E2LIM, 0.5 * MASTER.E2TOL, 1e-9 * driving);
    EXPECT_NE(MASTER.SF, static_cast<double>(999.999f));
    for (int i = 1; i <= kSlopeSlices; ++i) EXPECT_EQ(SURF.R(i), 0.0);  // the solution was set up

    // Just below 0.01 of the tolerance the surface is dropped unsolved.
    freshRun(dir);
    setSlope(19.0, 8.0, std::tan(28.0 * kDegree));
    SURF.WX(5) = 0.009 * MASTER.E2TOL - driving;
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.R(i) = 0.4;
    SETSF0();
    EXPECT_EQ(MASTER.IERR, -2);
    EXPECT_EQ(MASTER.SF, static_cast<double>(999.999f));
    EXPECT_EQ(SURF.R(1), 0.4);
}

TEST_F(Setsf0Test, BodyStableWithoutStrengthIsDroppedSilentlyWhenNotPrinting) {
    setSlope(19.0, 8.0, std::tan(28.0 * kDegree));
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.WX(i) = -1.0E4;
    MASTER.JPRINT = 0;
    SETSF0();
    EXPECT_EQ(MASTER.IERR, -2);
    EXPECT_EQ(MASTER.SF, static_cast<double>(999.999f));
    EXPECT_TRUE(logText().empty());
    EXPECT_TRUE(copyText().empty());
}

TEST_F(Setsf0Test, ZeroRoughnessFactorAbove25DropsTheSurface) {
    const double tanPhi = std::tan(28.0 * kDegree);
    const double expected = simplifiedFactor(19.0, 1500.0, tanPhi);
    ASSERT_GT(expected, 25.0);
    setSlope(19.0, 1500.0, tanPhi);
    MASTER.JPRINT = 1;
    SETSF0();
    EXPECT_EQ(MASTER.IERR, -2);
    EXPECT_EQ(MASTER.SF, static_cast<double>(888.888f));
    EXPECT_EQ(MASTER.SF, 888.88800048828125);
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(5.555f));
    EXPECT_NEAR(MASTER.SFTZ, expected, 1e-3 * expected);
    EXPECT_EQ(countOf(logText(), "\n **** SR/SETSF0 : PRESENT SYSTEM HAS A HIGH SAFETY FACTOR\n SFTZ ="), 1);
    EXPECT_EQ(countOf(copyText(), " **** SR/SETSF0 : PRESENT SYSTEM HAS A HIGH SAFETY FACTOR"), 1);
}

TEST_F(Setsf0Test, TotalStressHasNoFrictionLimitAndTheLowerBoundAtIt) {
    // A rising toe with friction would raise the limit in an effective stress analysis.
    setSlope(19.0, 30.0, 0.3);
    MASTER.IDEFTO = 2;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SFLIM, 0.0);
    EXPECT_EQ(MASTER.SFMIN, 0.0);
    EXPECT_GT(MASTER.SF, 0.0);

    freshRun(dir);
    setSlope(19.0, 30.0, 0.3);
    MASTER.IDEFTO = 1;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_GT(MASTER.SFLIM, 0.0);
}

TEST_F(Setsf0Test, SlicesWithNegativeLoadDoNotSetTheLimit) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    // The steepest rising base is the last one; give it an uplift larger than its weight.
    SURF.WZ(kSlopeSlices) = -1.0;
    double limit = 0.0;
    for (int i = 1; i < kSlopeSlices; ++i) limit = std::max(limit, -SURF.SINB(i) * tanPhi / SURF.COSB(i));
    const double lastCandidate = -SURF.SINB(kSlopeSlices) * tanPhi / SURF.COSB(kSlopeSlices);
    ASSERT_GT(lastCandidate, limit);
    SETSF0();
    EXPECT_DOUBLE_EQ(MASTER.SFLIM, limit);
}

TEST_F(Setsf0Test, ForceSolutionFailureIsReportedWithItsCode) {
    // Flat bases and a vanishing horizontal load: the residual curve has no usable asymptote.
    const double x[3] = {0, 5, 10};
    const double top[3] = {0, 0, 0};
    const double base[3] = {3, 3, 3};
    setSlices(2, x, top, base, 19.0, 10.0, 0.5);
    SURF.WX(1) = 1.0E-25;
    MASTER.E2TOL = 0.0;
    SETSF0();
    EXPECT_EQ(MASTER.IERR, 2);
    EXPECT_EQ(MASTER.SFLIM, 0.0);
    EXPECT_EQ(countOf(consoleText(), " **** SR/SETSF0 : SR/FRCEQR PROBLEM  IERR,SFLIM="), 1);
    EXPECT_EQ(countOf(copyText(), " **** SR/SETSF0 : SR/FRCEQR PROBLEM  IERR,SFLIM="), 1);
    EXPECT_EQ(countOf(logText(), " **** SR/FRCEQR : SR/ROOT1 PROBLEM  IERR,ITNOW="), 1);
}

TEST_F(Setsf0Test, PureForceMethodLeavesTheForceOnlyScore) {
    setSlope(19.0, 8.0, std::tan(28.0 * kDegree));
    MASTER.METHOD = -1;
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(6.666f));
}
