// INTPRF: interpolation between vertical profiles, with the first-call validation of its tables.

#include <gtest/gtest.h>

#include "control/control.h"
#include "input/input.h"

namespace {

// Profiles of up to four points (leading dimension 4), filled column by column.
struct Profiles {
    int count = 0;
    double x[5] = {};
    int points[5] = {};
    double z[4 * 5] = {};
    double value[4 * 5] = {};
    static constexpr int ld = 4;

    void add(double xProfile, std::initializer_list<double> levels, std::initializer_list<double> values) {
        x[count] = xProfile;
        points[count] = static_cast<int>(levels.size());
        int k = 0;
        for (double level : levels) z[count * ld + k++] = level;
        k = 0;
        for (double v : values) value[count * ld + k++] = v;
        ++count;
    }

    double at(double xq, double zq, int& ierr) const {
        double result = -99.0;
        INTPRF(count, x, points, ld, z, value, xq, zq, result, ierr);
        return result;
    }
};

// Profile 1 at x = 0: levels 0, 10 with values 0, 100. Profile 2 at x = 10: levels 5, 15 with
// values 50, 250. The first points join along a slope of 0.5.
Profiles twoProfiles() {
    Profiles p;
    p.add(0.0, {0.0, 10.0}, {0.0, 100.0});
    p.add(10.0, {5.0, 15.0}, {50.0, 250.0});
    return p;
}

class Intprf : public ::testing::Test {
protected:
    void SetUp() override { startRun(); }
};

}  // namespace

TEST_F(Intprf, LeftOfAllProfilesTheFirstProfileAloneIsUsed) {
    const Profiles p = twoProfiles();
    int ierr = -1;
    EXPECT_DOUBLE_EQ(p.at(-5.0, 5.0, ierr), 50.0);
    EXPECT_EQ(ierr, 0);
    EXPECT_DOUBLE_EQ(p.at(-1000.0, 2.5, ierr), 25.0);
}

TEST_F(Intprf, AboveTheFirstLevelTheFirstValueIsReturned) {
    const Profiles p = twoProfiles();
    int ierr = -1;
    EXPECT_EQ(p.at(-5.0, -3.0, ierr), 0.0);
    EXPECT_EQ(p.at(-5.0, 0.0, ierr), 0.0);
    EXPECT_EQ(p.at(20.0, 4.0, ierr), 50.0);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Intprf, AtAndBelowTheLastLevelTheLastValueIsReturned) {
    const Profiles p = twoProfiles();
    int ierr = -1;
    EXPECT_EQ(p.at(-5.0, 10.0, ierr), 100.0);
    EXPECT_EQ(p.at(-5.0, 40.0, ierr), 100.0);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Intprf, AtAndRightOfTheLastProfileItAloneIsUsed) {
    const Profiles p = twoProfiles();
    int ierr = -1;
    // Profile 2 at level 10: 50 + (250 - 50) / 10 * 5.
    EXPECT_DOUBLE_EQ(p.at(15.0, 10.0, ierr), 150.0);
    EXPECT_DOUBLE_EQ(p.at(10.0, 10.0, ierr), 150.0);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Intprf, BetweenProfilesTheLevelIsCarriedParallelToTheFirstPoints) {
    const Profiles p = twoProfiles();
    int ierr = -1;
    // At x = 4, z = 6: slope 0.5, level on profile 1 is 6 - 0.5 * 4 = 4 (value 40), on profile 2
    // it is 6 + 0.5 * 6 = 9 (value 50 + 20 * 4 = 130); 40 + (130 - 40) / 10 * 4 = 76.
    EXPECT_DOUBLE_EQ(p.at(4.0, 6.0, ierr), 76.0);
    EXPECT_EQ(ierr, 0);
    // On the line joining the first points both profiles give their first values.
    EXPECT_DOUBLE_EQ(p.at(6.0, 3.0, ierr), 30.0);
}

TEST_F(Intprf, BetweenProfilesWithLevelProfilesTheLevelIsKept) {
    Profiles p;
    p.add(0.0, {0.0, 10.0}, {0.0, 100.0});
    p.add(20.0, {0.0, 10.0}, {0.0, 60.0});
    p.add(40.0, {0.0, 20.0}, {10.0, 30.0});
    int ierr = -1;
    // x = 5, z = 5: 50 and 30, a quarter of the way: 45.
    EXPECT_DOUBLE_EQ(p.at(5.0, 5.0, ierr), 45.0);
    // x = 30 lies between profiles 2 and 3: first points both at 0; 30 and 15, halfway: 22.5.
    EXPECT_DOUBLE_EQ(p.at(30.0, 5.0, ierr), 22.5);
    // x = 20 exactly: profiles 2 and 3 are bracketed, and profile 2 alone counts there.
    EXPECT_DOUBLE_EQ(p.at(20.0, 5.0, ierr), 30.0);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Intprf, OneProfileIsUsedEverywhere) {
    Profiles p;
    p.add(3.0, {1.0, 2.0, 4.0}, {10.0, 20.0, 0.0});
    int ierr = -1;
    EXPECT_DOUBLE_EQ(p.at(-10.0, 3.0, ierr), 10.0);
    EXPECT_DOUBLE_EQ(p.at(50.0, 1.5, ierr), 15.0);
    EXPECT_EQ(ierr, 0);
}

TEST_F(Intprf, NoProfilesIsErrorOne) {
    Profiles p;
    int ierr = -1;
    p.at(0.0, 0.0, ierr);
    EXPECT_EQ(ierr, 1);
}

TEST_F(Intprf, ALeadingDimensionBelowOneIsErrorThree) {
    const Profiles p = twoProfiles();
    double result = 0.0;
    int ierr = -1;
    INTPRF(p.count, p.x, p.points, 0, p.z, p.value, 1.0, 1.0, result, ierr);
    EXPECT_EQ(ierr, 3);
}

TEST_F(Intprf, AProfileWithoutPointsIsErrorTwo) {
    Profiles p = twoProfiles();
    p.points[1] = 0;
    int ierr = -1;
    p.at(1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 2);
}

TEST_F(Intprf, AProfileWithMorePointsThanReservedIsErrorFour) {
    Profiles p = twoProfiles();
    p.points[0] = 5;
    int ierr = -1;
    p.at(1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 4);
}

TEST_F(Intprf, ProfileAbscissasNotIncreasingAreErrorFive) {
    Profiles p = twoProfiles();
    p.x[1] = 0.0;
    int ierr = -1;
    p.at(1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 5);
    resetIntprfCalls();
    p.x[1] = -4.0;
    p.at(1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 5);
}

TEST_F(Intprf, LevelsNotIncreasingAreErrorSix) {
    Profiles p = twoProfiles();
    p.z[Profiles::ld + 1] = 5.0;  // profile 2: levels 5, 5
    int ierr = -1;
    p.at(1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 6);
}

TEST_F(Intprf, OnlyTheFirstCallValidatesTheTables) {
    const Profiles good = twoProfiles();
    int ierr = -1;
    good.at(1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 0);
    Profiles bad = twoProfiles();
    bad.z[Profiles::ld + 1] = 5.0;
    bad.at(-1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 0);
    resetIntprfCalls();
    bad.at(-1.0, 1.0, ierr);
    EXPECT_EQ(ierr, 6);
}
