// SETCHN: the constants and channel numbers every run starts with.

#include <gtest/gtest.h>

#include <cmath>

#include "control/control.h"
#include "records.h"

TEST(Setchn, SetsPiTheZeroToleranceAndTheChannelsOfTheRunFiles) {
    clearRecords();
    SETCHN();
    EXPECT_DOUBLE_EQ(MASTER.PI, 3.14159265358979323846);
    // 1.0E-20 as a single-precision constant, widened: not the double 1.0E-20.
    EXPECT_EQ(MASTER.EPS, static_cast<double>(1.0E-20f));
    EXPECT_NE(MASTER.EPS, 1.0E-20);
    // Answers 8, dialogue 12, then KALMO.INP, .TMP, .RES, .PLT, .LOG on 14 to 18.
    EXPECT_EQ(MASTER.NFIN, 8);
    EXPECT_EQ(MASTER.NFOUT, 12);
    EXPECT_EQ(MASTER.NF14, 14);
    EXPECT_EQ(MASTER.NF15, 15);
    EXPECT_EQ(MASTER.NF16, 16);
    EXPECT_EQ(MASTER.NF17, 17);
    EXPECT_EQ(MASTER.NF18, 18);
}
