// startRun: the start of a run inside one process, and the batch-mode predicate.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "control/control.h"
#include "records.h"

namespace {

TEST(StartRun, ClearsTheRecordsButKeepsTheVersionText) {
    clearRecords();
    TEXT.VERSION.set("12 Jan 2017");
    MASTER.IGWARN = 1;  // a once-per-run warning given in an earlier run
    MASTER.ITSBLK = 1;
    SURF.XX(1, 1) = 5.0;
    SOLPRP.MAT(GAMTOT, 1) = 20.0;
    startRun();
    EXPECT_EQ(std::string(TEXT.VERSION.view()), "12 Jan 2017");
    EXPECT_EQ(MASTER.IGWARN, 0);
    EXPECT_EQ(MASTER.ITSBLK, 0);
    EXPECT_EQ(SURF.XX(1, 1), 0.0);
    EXPECT_EQ(SOLPRP.MAT(GAMTOT, 1), 0.0);
}

// The whole list of constants and channels is checked after a run of CONTRL (test_contrl);
// here what holds before the mode is decided.
TEST(StartRun, SetsTheConstantsAndTheBatchLogCopyAndNoBestSurface) {
    clearRecords();
    MASTER.IERR = 7;
    startRun();
    EXPECT_DOUBLE_EQ(MASTER.PI, std::acos(-1.0));
    EXPECT_EQ(MASTER.EPS, static_cast<double>(1.0E-20f));
    EXPECT_EQ(ISUR.NSRFCP, NSURFCOPY);
    EXPECT_EQ(BEST.SF, 98.0);  // no best surface yet
    EXPECT_EQ(MASTER.IERR, 0);
    // Until the central routine decides the mode the log copy is that of batch mode.
    EXPECT_EQ(POSTGRAF.NFCOPY, 6);
    EXPECT_TRUE(batchMode());
}

TEST(BatchMode, IsTheLogCopyOnChannelSix) {
    POSTGRAF.NFCOPY = 6;
    EXPECT_TRUE(batchMode());
    POSTGRAF.NFCOPY = 9;  // interactive: the copies go to the null device
    EXPECT_FALSE(batchMode());
    POSTGRAF.NFCOPY = 7;
    EXPECT_FALSE(batchMode());
}

}  // namespace
