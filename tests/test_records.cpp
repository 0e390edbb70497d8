// The global records: limits, layout of the surface record, 1-based column-major arrays.

#include <gtest/gtest.h>

#include <cstddef>

#include "records.h"

TEST(Records, SurfaceRecordHoldsItsRealsWithoutGaps) {
    EXPECT_EQ(sizeof(SurfRecord), 5956 * sizeof(double));
    // All but the last per-slice array are copied into the best record: 5857 reals.
    EXPECT_EQ(offsetof(SurfRecord, SNM) / sizeof(double), 5857u);
    EXPECT_EQ(NSURFCOPY, 5857);
    EXPECT_EQ(offsetof(SurfRecord, ZS) / sizeof(double), 300u);
    EXPECT_EQ(offsetof(SurfRecord, XX) / sizeof(double), 600u);
    EXPECT_EQ(offsetof(SurfRecord, AREA) / sizeof(double), 600u + 2 * 495u);
    EXPECT_EQ(offsetof(SurfRecord, SPAR) / sizeof(double), 1590u + 31 * 99u);
}

TEST(Records, BestRecordCarriesTheSurfaceAndTheNails) {
    EXPECT_EQ(sizeof(BEST.SURF) / sizeof(double), 5857u);
    EXPECT_EQ(sizeof(BEST.SN) / sizeof(double), 1425u);
    EXPECT_EQ(sizeof(IBES.INAIL) / sizeof(int), 225u);
}

TEST(Records, TwoDimensionalArraysAreColumnByColumn) {
    clearRecords();
    SURF.XX(5, 1) = 1.0;
    SURF.XX(1, 2) = 2.0;
    EXPECT_EQ(SURF.XX.data()[4], 1.0);
    EXPECT_EQ(SURF.XX.data()[5], 2.0);
    GENERL.XGEN(1, 2) = 7.0;
    EXPECT_EQ(GENERL.XGEN.column(2)[0], 7.0);
    EXPECT_EQ(&GENERL.XGEN(100, 1) + 1, &GENERL.XGEN(1, 2));
}

TEST(Records, OneBasedIndexing) {
    clearRecords();
    SURF.XS(1) = 3.0;
    SURF.XS(300) = 4.0;
    EXPECT_EQ(SURF.XS.data()[0], 3.0);
    EXPECT_EQ(SURF.XS.data()[299], 4.0);
    SOLPRP.MAT(GAMTOT, 50) = 19.0;
    EXPECT_EQ(SOLPRP.MAT.column(50)[0], 19.0);
}

TEST(Records, ClearRecordsZeroesEverything) {
    MASTER.SF = 1.5;
    SURF.SNM(99) = 3.0;
    BEST.SF = 98.0;
    TEXT.TITLE(1).set("SLOPE");
    clearRecords();
    EXPECT_EQ(MASTER.SF, 0.0);
    EXPECT_EQ(SURF.SNM(99), 0.0);
    EXPECT_EQ(BEST.SF, 0.0);
    EXPECT_EQ(TEXT.TITLE(1).view(), std::string(80, ' '));
}

TEST(Records, TextIsBlankPaddedAndCut) {
    Text<11> version;
    version.set("12 Jan 2017");
    EXPECT_EQ(version.view(), "12 Jan 2017");
    version.set("ABC");
    EXPECT_EQ(version.view(), "ABC        ");
    version.set("TOO LONG FOR ELEVEN");
    EXPECT_EQ(version.view(), "TOO LONG FO");
}

#ifdef KALMO_CHECK_BOUNDS
TEST(RecordsDeathTest, IndexOutsideTheArrayIsCaught) {
    EXPECT_DEATH(SURF.XS(301) = 1.0, "ARRAY INDEX 301 OUTSIDE 1..300");
    EXPECT_DEATH(SURF.XX(6, 1) = 1.0, "ARRAY INDEX 6 OUTSIDE 1..5");
    EXPECT_DEATH(SURF.AREA(0) = 1.0, "ARRAY INDEX 0 OUTSIDE 1..99");
}
#endif
