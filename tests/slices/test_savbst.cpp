// Keeping the current surface as the best one: what is copied and what is not.

#include <gtest/gtest.h>

#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "slices/slices.h"
#include "support/tempdir.h"

namespace {

class SaveBest : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();
        POSTGRAF.NFCOPY = 9;
        ASSERT_EQ(io::openNew(12, dir_.path("CONSOLE.TXT")), 0);
        io::bindNull(9);
    }
    void TearDown() override { io::resetAll(); }

    // Every real of SURF gets its own recognisable value: word w holds w.
    static void numberSurfaceWords() {
        double* word = reinterpret_cast<double*>(&SURF);
        for (int w = 0; w < NSURF; ++w) word[w] = w + 1;
    }

    kalmo_test::TempDir dir_;
};

TEST_F(SaveBest, TheStartValueOfTheCopyLengthIsAllOfTheSurfaceButTheNailMoments) {
    EXPECT_EQ(NSURFCOPY, 5857);
    EXPECT_EQ(NSURF - NSURFCOPY, MAXSLC);
}

TEST_F(SaveBest, BookkeepingResultAndSurfaceWordsGoToTheBestRecord) {
    numberSurfaceWords();
    MASTER.NUMSRF = 17;
    MASTER.NTYP = 2;
    MASTER.NUMSLC = 12;
    MASTER.SF = 1.234;
    MASTER.SCORE = 0.5;
    MASTER.RFACTOR = 0.75;

    SAVBST();

    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(IBES.NUMSRF, 17);
    EXPECT_EQ(IBES.NTYP, 2);
    EXPECT_EQ(IBES.NUMSLC, 12);
    EXPECT_EQ(BEST.SF, 1.234);
    EXPECT_EQ(BEST.SCORE, 0.5);
    EXPECT_EQ(BEST.RFACTOR, 0.75);
    for (int w = 0; w < NSURFCOPY; ++w) ASSERT_EQ(BEST.SURF[w], w + 1) << "word " << w + 1;
    // The copy runs from the first shear-surface point to the last vertical nail load.
    EXPECT_EQ(BEST.SURF[0], SURF.XS(1));
    EXPECT_EQ(BEST.SURF[NSURFCOPY - 1], SURF.SNZ(MAXSLC));
}

TEST_F(SaveBest, ShorterCopyLengthLeavesTheRestOfTheBestRecordAlone) {
    numberSurfaceWords();
    for (double& word : BEST.SURF) word = -1.0;
    ISUR.NSRFCP = MAXPTS;  // the shear-surface x values only

    SAVBST();

    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(BEST.SURF[MAXPTS - 1], SURF.XS(MAXPTS));
    EXPECT_EQ(BEST.SURF[MAXPTS], -1.0);
}

TEST_F(SaveBest, FailureModesOfTheSlicesInUseOnly) {
    for (int i = 1; i <= MAXSLC; ++i) ISUR.MODE(i) = 2;
    MASTER.NUMSLC = 3;

    SAVBST();

    EXPECT_EQ(IBES.MODE(1), 2);
    EXPECT_EQ(IBES.MODE(3), 2);
    EXPECT_EQ(IBES.MODE(4), 0);
}

TEST_F(SaveBest, NinetyNineSlicesFillEveryPerSliceArrayOfTheCopy) {
    numberSurfaceWords();
    for (int i = 1; i <= MAXSLC; ++i) ISUR.MODE(i) = 1 + i % 2;
    MASTER.NUMSLC = MAXSLC;

    SAVBST();

    EXPECT_EQ(IBES.MODE(MAXSLC), 1 + MAXSLC % 2);
    const double* best = BEST.SURF;
    auto wordOf = [](const double& field) {
        return static_cast<int>(&field - reinterpret_cast<const double*>(&SURF));
    };
    EXPECT_EQ(best[wordOf(SURF.AREA(MAXSLC))], SURF.AREA(MAXSLC));
    EXPECT_EQ(best[wordOf(SURF.XX(5, MAXSLC))], SURF.XX(5, MAXSLC));
    EXPECT_EQ(best[wordOf(SURF.SU3(MAXSLC))], SURF.SU3(MAXSLC));
    EXPECT_EQ(best[wordOf(SURF.SNZ(MAXSLC))], SURF.SNZ(MAXSLC));
}

TEST_F(SaveBest, NailRecordsAreCopiedOnlyWhenNailsExist) {
    ISNAIL.INAIL(75, 3) = 9;
    SNAILS.SN(75, 19) = 2.5;
    SNAILS.SN(1, 1) = 1.5;

    SAVBST();
    EXPECT_EQ(IBES.INAIL(75, 3), 0);
    EXPECT_EQ(BEST.SN(75, 19), 0.0);

    ISNAIL.NNAILS = 2;
    SAVBST();
    EXPECT_EQ(IBES.INAIL(75, 3), 9);
    EXPECT_EQ(BEST.SN(75, 19), 2.5);
    EXPECT_EQ(BEST.SN(1, 1), 1.5);
}

TEST_F(SaveBest, SliceOneFaceOneFieldsStayZeroInTheCopy) {
    MASTER.NUMSLC = 3;
    for (int i = 2; i <= 3; ++i) {
        SURF.C1(i) = 10.0 * i;
        SURF.TAN1(i) = 0.5;
        SURF.H1(i) = 1.0;
        SURF.U1(i) = 7.0;
        SURF.E1(i) = 3.0;
    }

    SAVBST();
    // A later surface with a boundary force and strengths on every face, slice 1 included.
    for (int i = 1; i <= 3; ++i) {
        SURF.C1(i) = 99.0;
        SURF.TAN1(i) = 99.0;
        SURF.H1(i) = 99.0;
        SURF.U1(i) = 99.0;
        SURF.E1(i) = 99.0;
    }
    RSTBST();

    EXPECT_EQ(SURF.C1(1), 0.0);
    EXPECT_EQ(SURF.TAN1(1), 0.0);
    EXPECT_EQ(SURF.H1(1), 0.0);
    EXPECT_EQ(SURF.U1(1), 0.0);
    EXPECT_EQ(SURF.E1(1), 0.0);
    EXPECT_EQ(SURF.C1(2), 20.0);
    EXPECT_EQ(SURF.U1(3), 7.0);
}

TEST_F(SaveBest, CopyLengthOutOfRangeCopiesNothing) {
    numberSurfaceWords();
    MASTER.NUMSRF = 5;
    for (int length : {-1, NSURFCOPY + 1, NSURF}) {
        ISUR.NSRFCP = length;
        SAVBST();
        EXPECT_EQ(MASTER.IERR, 1) << length;
        EXPECT_EQ(IBES.NUMSRF, 0);
        EXPECT_EQ(BEST.SURF[0], 0.0);
    }
    EXPECT_NE(io::contents(12).find(" **** SR/SAVBST : SURFACE RECORD SIZE OUT OF RANGE"), std::string::npos);

    ISUR.NSRFCP = 0;  // zero words is a valid, empty copy
    SAVBST();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(IBES.NUMSRF, 5);
    EXPECT_EQ(BEST.SURF[0], 0.0);
}

TEST_F(SaveBest, SliceCountOutOfRangeCopiesNothing) {
    MASTER.NUMSRF = 5;
    MASTER.NUMSLC = MAXSLC + 1;
    SAVBST();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(IBES.NUMSRF, 0);
}

}  // namespace
