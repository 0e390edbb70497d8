// Bringing the best surface back as the current surface.

#include <gtest/gtest.h>

#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "records.h"
#include "slices/slices.h"
#include "support/tempdir.h"

namespace {

class RestoreBest : public ::testing::Test {
protected:
    void SetUp() override {
        io::resetAll();
        startRun();
        POSTGRAF.NFCOPY = 9;
        ASSERT_EQ(io::openNew(12, dir_.path("CONSOLE.TXT")), 0);
        io::bindNull(9);
    }
    void TearDown() override { io::resetAll(); }

    // A surface "analysed" with a given tag: every real of SURF and the results carry it.
    static void analyseSurface(double tag, int number, int slices) {
        double* word = reinterpret_cast<double*>(&SURF);
        for (int w = 0; w < NSURF; ++w) word[w] = tag + w;
        MASTER.NUMSRF = number;
        MASTER.NTYP = 1 + number % 5;
        MASTER.NUMSLC = slices;
        MASTER.SF = tag + 0.1;
        MASTER.SCORE = tag + 0.2;
        MASTER.RFACTOR = tag + 0.3;
        for (int i = 1; i <= MAXSLC; ++i) ISUR.MODE(i) = number;
        for (int n = 1; n <= MAXNAI; ++n) ISNAIL.INAIL(n, 1) = number;
        SNAILS.SN(1, 16) = tag;
    }

    kalmo_test::TempDir dir_;
};

TEST_F(RestoreBest, TheBestSurfaceComesBackWithItsResult) {
    analyseSurface(1000.0, 1, 20);
    SAVBST();
    analyseSurface(50000.0, 2, 30);

    RSTBST();

    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.NUMSRF, 1);
    EXPECT_EQ(MASTER.NTYP, 2);
    EXPECT_EQ(MASTER.NUMSLC, 20);
    EXPECT_EQ(MASTER.SF, 1000.1);
    EXPECT_EQ(MASTER.SCORE, 1000.2);
    EXPECT_EQ(MASTER.RFACTOR, 1000.3);
    EXPECT_EQ(SURF.XS(1), 1000.0);
    EXPECT_EQ(SURF.SNZ(MAXSLC), 1000.0 + NSURFCOPY - 1);
    EXPECT_EQ(ISUR.MODE(20), 1);
    EXPECT_EQ(ISUR.MODE(21), 2);  // beyond the best surface's slices the current modes stay
}

TEST_F(RestoreBest, NailMomentsAreThoseOfTheSurfaceAnalysedLast) {
    ISNAIL.NNAILS = 1;
    analyseSurface(1000.0, 1, 10);
    const double momentOfBest = SURF.SNM(1);
    SAVBST();
    analyseSurface(50000.0, 2, 10);
    const double momentOfLast = SURF.SNM(1);
    ASSERT_NE(momentOfBest, momentOfLast);

    RSTBST();

    EXPECT_EQ(SURF.SNM(1), momentOfLast);
    EXPECT_EQ(SURF.SNM(MAXSLC), 50000.0 + NSURF - 1);
    EXPECT_EQ(SURF.SNZ(1), 1000.0 + (NSURFCOPY - MAXSLC));  // the nail loads themselves are the best's
}

TEST_F(RestoreBest, NailRecordsComeBackOnlyWhenNailsExist) {
    ISNAIL.NNAILS = 3;
    analyseSurface(1000.0, 1, 10);
    SAVBST();
    analyseSurface(50000.0, 2, 10);

    ISNAIL.NNAILS = 0;
    RSTBST();
    EXPECT_EQ(ISNAIL.INAIL(1, 1), 2);
    EXPECT_EQ(SNAILS.SN(1, 16), 50000.0);

    ISNAIL.NNAILS = 3;
    RSTBST();
    EXPECT_EQ(ISNAIL.INAIL(MAXNAI, 1), 1);
    EXPECT_EQ(SNAILS.SN(1, 16), 1000.0);
    EXPECT_EQ(ISNAIL.NNAILS, 3);
}

TEST_F(RestoreBest, NinetyNineSlicesComeBackComplete) {
    analyseSurface(1000.0, 4, MAXSLC);
    SAVBST();
    analyseSurface(50000.0, 7, 3);

    RSTBST();

    EXPECT_EQ(MASTER.NUMSLC, MAXSLC);
    EXPECT_EQ(ISUR.MODE(MAXSLC), 4);
    auto wordOf = [](const double& field) {
        return static_cast<int>(&field - reinterpret_cast<const double*>(&SURF));
    };
    EXPECT_EQ(SURF.AREA(MAXSLC), 1000.0 + wordOf(SURF.AREA(MAXSLC)));
    EXPECT_EQ(SURF.ZZ(5, MAXSLC), 1000.0 + wordOf(SURF.ZZ(5, MAXSLC)));
    EXPECT_EQ(SURF.L34(MAXSLC), 1000.0 + wordOf(SURF.L34(MAXSLC)));
}

TEST_F(RestoreBest, CopyLengthOutOfRangeKeepsTheCurrentSurface) {
    analyseSurface(1000.0, 1, 10);
    SAVBST();
    analyseSurface(50000.0, 2, 10);

    for (int length : {-5, NSURFCOPY + 1}) {
        ISUR.NSRFCP = length;
        RSTBST();
        EXPECT_EQ(MASTER.IERR, 1);
        EXPECT_EQ(MASTER.NUMSRF, 2);
        EXPECT_EQ(MASTER.SF, 50000.1);
        EXPECT_EQ(SURF.XS(1), 50000.0);
    }
    EXPECT_NE(io::contents(12).find(" **** SR/RSTBST : SURFACE RECORD SIZE OUT OF RANGE"), std::string::npos);
}

TEST_F(RestoreBest, BestSliceCountOutOfRangeKeepsTheCurrentSurface) {
    analyseSurface(50000.0, 2, 10);
    IBES.NUMSRF = 9;
    IBES.NUMSLC = -1;
    RSTBST();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(MASTER.NUMSRF, 2);
}

}  // namespace
