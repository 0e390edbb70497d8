// GENRAL: the dialogue of the general surfaces of the input, each analysed by the solver.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "io/fmt.h"
#include "solver/solver_world.h"

using namespace kalmo_test;

namespace {

const std::vector<Point> kSurface1 = {{-12, -2}, {-8, 4}, {0, 9}, {10, 13}, {20, 13}, {30, 8}};
const std::vector<Point> kSurface2 = {{-4, -0.5}, {0, 5.5}, {10, 9}, {20, 11}, {28, 7}};
const std::vector<Point> kSurface3 = {{-6, -1}, {-2, 3}, {4, 8}, {12, 12}, {24, 8}};

std::string prompt(int number, double xShift, double zShift, double xMult, double zMult) {
    return "\n GIVE GENERAL SURFACE NUMBER AND MODIFICATION INSTRUCTIONS\n"
           "  NUM  X-SHIFT  Z-SHIFT   X-MULT  Z-MULT\n" +
           io::Line().I(number, 4).F(xShift, 10, 3).F(zShift, 9, 3).F(xMult, 8, 3).F(zMult, 8, 3).str() +
           "  = PRESENT VALUES\n  ";
}

const std::string kAgain = "\n SHALL NEW GENERAL SURFACE BE TRIED (Y/N)..... ";

class GenralTest : public ::testing::Test, public SolverWorld {
protected:
    GenralTest() {
        store(1, kSurface1);
        store(2, kSurface2);
        store(3, kSurface3);
        MASTER.NUMGEN = 3;
    }
    static void store(int k, const std::vector<Point>& points) {
        IGENER.NPGEN(k) = static_cast<int>(points.size());
        for (size_t j = 0; j < points.size(); ++j) {
            GENERL.XGEN(static_cast<int>(j) + 1, k) = points[j].x;
            GENERL.ZGEN(static_cast<int>(j) + 1, k) = points[j].z;
        }
    }
    static std::string resultLine() {
        return io::Line()
            .A(" ++++ SAFETY FACTOR =")
            .F(MASTER.SF, 8, 3)
            .A("   SCORE =")
            .F(MASTER.SCORE, 7, 3)
            .A("   R-FACTOR =")
            .F(MASTER.RFACTOR, 7, 3)
            .A("   SURFACE =")
            .I(MASTER.NUMSRF, 4)
            .str();
    }
    // The inner polyline points are the stored points, moved and stretched as asked.
    static void expectPolyline(const std::vector<Point>& stored, double xShift, double xMult) {
        for (size_t j = 0; j < stored.size(); ++j) {
            const int k = static_cast<int>(j) + 2;
            EXPECT_DOUBLE_EQ(SURF.XS(k), stored[0].x + xShift + xMult * (stored[j].x - stored[0].x)) << k;
            EXPECT_DOUBLE_EQ(SURF.ZS(k), stored[j].z) << k;
        }
    }
};

}  // namespace

TEST_F(GenralTest, TheFirstOfferIsSurfaceOneWithTheStartValues) {
    answers("0\n");
    GENRAL();
    EXPECT_EQ(console(), prompt(1, 0.0, 0.0, 1.0, 1.0));
    EXPECT_EQ(io::contents(9), "");  // the offer is not copied
}

TEST_F(GenralTest, ANumberAloneAnalysesThatSurfaceAsItIsStored) {
    answers("3\nN\n");
    GENRAL();
    EXPECT_EQ(MASTER.IERR, 0) << console();
    EXPECT_EQ(MASTER.NUMSRF, 1);
    EXPECT_EQ(IGENER.IGEN, 3);
    for (size_t j = 0; j < kSurface3.size(); ++j) {
        EXPECT_EQ(SURF.XS(static_cast<int>(j) + 2), kSurface3[j].x);
        EXPECT_EQ(SURF.ZS(static_cast<int>(j) + 2), kSurface3[j].z);
    }
    EXPECT_EQ(SURF.SPAR(1), -6.0);
    EXPECT_EQ(SURF.SPAR(2), -1.0);
    EXPECT_EQ(SURF.SPAR(3), 24.0);
    EXPECT_EQ(SURF.SPAR(4), 8.0);
    const std::string shown = "\n" + resultLine() + "\n" + kAgain;
    EXPECT_EQ(console(), prompt(1, 0.0, 0.0, 1.0, 1.0) + "\n" + shown);  // the answer ends the open line
    EXPECT_EQ(io::contents(9), shown);
}

TEST_F(GenralTest, TheResultIsTheSafetyFactorOfTheChosenSurface) {
    answers("1\nN\n");
    GENRAL();
    const double expected = simplifiedFactor(handSlices(kSurface1), kCohesion, kTanPhi);
    EXPECT_NEAR(MASTER.SF, expected, 0.001 * expected);
    EXPECT_NE(console().find(io::Line(" ++++ SAFETY FACTOR =").F(expected, 8, 3).str()), std::string::npos);
}

TEST_F(GenralTest, ThreeCommasAndAValueChangeOnlyTheXStretch) {
    answers("3,,,2.0\nY\n\nN\n");
    GENRAL();
    expectPolyline(kSurface3, 0.0, 2.0);
    EXPECT_EQ(MASTER.NUMSRF, 2);  // the empty answer analysed it once more
    const std::string out = console();
    const std::string second = prompt(3, 0.0, 0.0, 2.0, 1.0);
    EXPECT_NE(out.find(kAgain + "\n" + second), std::string::npos) << out;
}

TEST_F(GenralTest, ShiftsAndTheZStretchAreTakenFromTheAnswer) {
    answers("2 1.5 -0.25 1 2\nN\n");
    GENRAL();
    // Chord of surface 2 from (-4, -0.5) to (28, 7).
    const double slope = 7.5 / 32.0;
    for (size_t j = 0; j < kSurface2.size(); ++j) {
        const int k = static_cast<int>(j) + 2;
        const double chord = -0.5 + slope * (kSurface2[j].x + 4.0);
        EXPECT_DOUBLE_EQ(SURF.XS(k), kSurface2[j].x + 1.5) << k;
        EXPECT_NEAR(SURF.ZS(k), chord - 0.25 + 2.0 * (kSurface2[j].z - chord), 1e-12) << k;
    }
}

TEST_F(GenralTest, MultipliersOfZeroOrBelowMeanAsStored) {
    answers("2 0 0 0 -1\nY\n0\n");
    GENRAL();
    expectPolyline(kSurface2, 0.0, 1.0);
    EXPECT_NE(console().find(prompt(2, 0.0, 0.0, 1.0, 1.0)), std::string::npos);
    EXPECT_EQ(MASTER.NUMSRF, 1);
}

TEST_F(GenralTest, ZeroReturnsToTheMenuWithoutAnalysing) {
    answers("0 3.0\n");
    GENRAL();
    EXPECT_EQ(MASTER.NUMSRF, 0);
    EXPECT_EQ(console(), prompt(1, 0.0, 0.0, 1.0, 1.0));
    // The values typed with the 0 are kept.
    answers("0\n");
    GENRAL();
    EXPECT_NE(console().find(prompt(1, 3.0, 0.0, 1.0, 1.0)), std::string::npos);
}

TEST_F(GenralTest, ANumberBeyondTheStoredSurfacesEndsWithoutAskingAgain) {
    answers("4\n1\nN\n");
    GENRAL();
    const std::string message = "\n NUMBER OF GENERAL SURFACES IS ONLY :   3\n";
    EXPECT_EQ(console(), prompt(1, 0.0, 0.0, 1.0, 1.0) + "\n" + message);
    EXPECT_EQ(io::contents(9), message);
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(GenralTest, TheModificationsAreOfferedAgainAtTheNextVisit) {
    answers("2 1.5 -0.5 1.2 0.9\nN\n0\n");
    GENRAL();
    EXPECT_EQ(MASTER.NUMSRF, 1);
    GENRAL();
    // The number starts from 1 again; the modifications stay.
    EXPECT_NE(console().find(kAgain + "\n" + prompt(1, 1.5, -0.5, 1.2, 0.9)), std::string::npos)
        << console();
}

TEST_F(GenralTest, AFailedAnalysisShowsNoResultButTheQuestion) {
    // Lifted 50 m the surface misses the soil; the geometry offers its profile (N), then the
    // question follows.
    answers("1 0 -50\nN\nN\n");
    GENRAL();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(console().find("++++"), std::string::npos);
    EXPECT_TRUE(console().ends_with(kAgain)) << console();
    EXPECT_NE(console().find(" **** SR/SOLVER : ERROR FROM SR/GEOMET"), std::string::npos);
}

TEST_F(GenralTest, AnUnreadableAnswerOrTheEndOfTheAnswersReturns) {
    answers("three\n1\nN\n");
    GENRAL();
    EXPECT_EQ(console(), prompt(1, 0.0, 0.0, 1.0, 1.0));
    EXPECT_EQ(MASTER.NUMSRF, 0);
    answers("");
    GENRAL();
    EXPECT_EQ(MASTER.NUMSRF, 0);
}

TEST_F(GenralTest, AnyAnswerButYesEndsTheDialogue) {
    answers("1\nmaybe\nno\nx\n1\n");
    GENRAL();
    EXPECT_EQ(MASTER.NUMSRF, 1);
}

TEST_F(GenralTest, AnEarthPressureResultIsShownOnTheConsoleOnly) {
    setGround({-100.0, 100.0}, {0.0, 0.0});
    SOLPRP.MAT(COHESN, 1) = 0.0;
    MASTER.IDTYP = 2;
    MASTER.NSLREQ = 10;
    MASTER.SF = 1.0;
    GEOMSH.XWALL = 0.0;
    GEOMSH.ZWALL = 6.0;
    store(1, {{-40.0, -34.0}, {10.0, 16.0}});
    answers("1\nN\n");
    GENRAL();
    ASSERT_EQ(MASTER.IERR, 0) << console();
    const int last = MASTER.NUMSLC;
    const std::string line = io::Line()
                                 .A(" +++++ E2-FRC,T2-FRC,H2,SCORE=")
                                 .ES(SURF.E2(last), 12, 3)
                                 .ES(SURF.T2(last), 12, 3)
                                 .ES(SURF.H2(last), 12, 3)
                                 .F(MASTER.SCORE, 7, 3)
                                 .str();
    EXPECT_EQ(console(), prompt(1, 0.0, 0.0, 1.0, 1.0) + "\n\n" + line + "\n" + kAgain);
    EXPECT_EQ(io::contents(9), kAgain);
    EXPECT_GT(SURF.E2(last), 0.0);
}
