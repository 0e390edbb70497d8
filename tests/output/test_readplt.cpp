// The reader of the post-processor file: every value the save routine writes comes back, to
// the precision of its field format, for a surface with nails and for a combined analysis.
//
// Precision of a field: Fw.d is exact to half a unit of its last decimal, 0.5·10^-d; Ew.d
// with scale 1 (d.dddd E) to half a unit of the fourth decimal of the mantissa, at most
// 0.5·10^-4 of the value; Ew.d without scale (0.dddd E) to half a unit of the fourth digit,
// at most 0.5·10^-3 of the value.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "io/channels.h"
#include "output/output.h"
#include "output/output_world.h"
#include "output/readplt.h"
#include "records.h"

using namespace kalmo_test;

namespace {

// A spread of values over many magnitudes and both signs, the same every run.
double spreadValue(int k) {
    const double mantissa = 1.0 + std::fmod(0.6180339887 * k, 1.0) * 8.9;
    const int exponent = (k * 7) % 9 - 4;
    return (k % 3 == 0 ? -1.0 : 1.0) * mantissa * std::pow(10.0, exponent);
}

void expectScaled(double read, double written, const std::string& what) {
    EXPECT_NEAR(read, written, 0.5e-4 * std::fabs(written) * (1.0 + 1e-9) + 1e-300) << what;
}
void expectUnscaled(double read, double written, const std::string& what) {
    EXPECT_NEAR(read, written, 0.5e-3 * std::fabs(written) * (1.0 + 1e-9) + 1e-300) << what;
}
void expectFixed(double read, double written, int decimals, const std::string& what) {
    EXPECT_NEAR(read, written, 0.5 * std::pow(10.0, -decimals) * (1.0 + 1e-9)) << what;
}

class ReadPlt : public OutputWorld {
protected:
    void SetUp() override {
        OutputWorld::SetUp();
        MASTER.KLSAVE = -1;
        MASTER.NUMSRF = 42;
        MASTER.NTYP = 3;
        MASTER.NUMSLC = 17;
        MASTER.METHOD = 0;
        MASTER.IDEFTO = 1;
        MASTER.SF = 1.3456789;
        MASTER.SCORE = 0.87654;
        MASTER.RFACTOR = 0.96321;
        MASTER.MISC1 = 11;
        MASTER.MISC2 = -2;
        MASTER.MISC3 = 333;
        MASTER.MISC4 = 0;
        MASTER.MISC5 = 5;
        MASTER.VALMSC1 = 12.3456;
        MASTER.VALMSC2 = -0.0004;
        MASTER.VALMSC3 = 999.9994;
        MASTER.VALMSC4 = 0.5;
        MASTER.VALMSC5 = -77.7777;
        // Every slice real of the record and the nail reals a spread value; slice modes alternate.
        double* surf = reinterpret_cast<double*>(&SURF);
        for (int k = 0; k < NSURF; ++k) surf[k] = spreadValue(k + 1);
        for (int n = 1; n <= MAXNAI; ++n)
            for (int k = 1; k <= NNAILR; ++k) SNAILS.SN(n, k) = spreadValue(1000 + 19 * n + k);
        for (int i = 1; i <= MAXSLC; ++i) ISUR.MODE(i) = 1 + i % 2;
    }

    plt::Block saveAndRead(int blocks = 1) {
        std::vector<plt::Block> read;
        std::string error;
        EXPECT_EQ(plt::readPltText(io::contents(17), read, error), 0) << error;
        EXPECT_EQ(static_cast<int>(read.size()), blocks);
        return read.empty() ? plt::Block() : read.back();
    }

    // The slice tables every block has, row by row against the records.
    static void checkSliceTables(const plt::Block& b) {
        const int n = MASTER.NUMSLC;
        const double SF = MASTER.SF;
        ASSERT_TRUE(b.geometry.present);
        ASSERT_EQ(static_cast<int>(b.geometry.rows.size()), n + 1);
        const plt::Row& left = b.geometry.rows[0];
        EXPECT_EQ(left.number, 0);
        ASSERT_EQ(left.values.size(), 3u);
        expectScaled(left.values[0], SURF.XX(1, 1), "X1");
        expectScaled(left.values[1], SURF.ZZ(1, 1), "Z1");
        expectScaled(left.values[2], SURF.ZZ(4, 1), "Z4");
        ASSERT_EQ(static_cast<int>(b.strengths.rows.size()), n);
        ASSERT_EQ(static_cast<int>(b.forces.rows.size()), n);
        ASSERT_EQ(static_cast<int>(b.loads.rows.size()), n);
        ASSERT_EQ(static_cast<int>(b.areas.rows.size()), n);
        for (int i = 1; i <= n; ++i) {
            const auto check = [i](const plt::Table& table, std::vector<double> written, const char* name) {
                const plt::Row& row = table.rows[static_cast<size_t>(i - 1)];
                EXPECT_EQ(row.number, i) << name;
                ASSERT_EQ(row.values.size(), written.size()) << name << " slice " << i;
                for (size_t k = 0; k < written.size(); ++k)
                    expectScaled(row.values[k], written[k], std::string(name) + " slice " + std::to_string(i) + " column " + std::to_string(k + 1));
            };
            const plt::Row& g = b.geometry.rows[static_cast<size_t>(i)];
            EXPECT_EQ(g.number, i);
            const std::vector<double> geometry = {SURF.XX(2, i), SURF.ZZ(2, i), SURF.ZZ(3, i), SURF.XX(5, i), SURF.ZZ(5, i), SURF.R0(i)};
            ASSERT_EQ(g.values.size(), 6u);
            for (size_t k = 0; k < 6; ++k) expectScaled(g.values[k], geometry[k], "geometry");
            check(b.strengths, {SURF.C2(i), SURF.C3(i), SURF.TAN2(i), SURF.TAN3(i), SURF.U2(i), SURF.U3(i)}, "strengths");
            check(b.forces, {SURF.P(i), SURF.S(i), SURF.E2(i), SURF.T2(i), SURF.SS(i) / SF, SURF.R(i)}, "forces");
            check(b.loads, {SURF.WX(i) + SURF.SNX(i) / SF, SURF.WZ(i) + SURF.SNZ(i) / SF, SURF.WM(i) + SURF.SNM(i) / SF,
                            SURF.H2(i), SURF.H3(i), SURF.HS(i)}, "loads");
        }
    }

    static void checkCountsAndValues(const plt::Block& b) {
        EXPECT_EQ(b.TITLE[0], TEXT.TITLE(1).view());
        EXPECT_EQ(b.TITLE[1], TEXT.TITLE(2).view());
        EXPECT_EQ(b.pageTop.substr(0, 35), " KALMO  Output   Program Version = ");
        EXPECT_EQ(b.NUMSRF, MASTER.NUMSRF);
        EXPECT_EQ(b.NTYP, MASTER.NTYP);
        EXPECT_EQ(b.NUMSLC, MASTER.NUMSLC);
        EXPECT_EQ(b.METHOD, MASTER.METHOD);
        EXPECT_EQ(b.IDEFTO, MASTER.IDEFTO);
        EXPECT_EQ(b.NNAILS, ISNAIL.NNAILS);
        EXPECT_EQ(b.MISC, (std::array<int, 5>{MASTER.MISC1, MASTER.MISC2, MASTER.MISC3, MASTER.MISC4, MASTER.MISC5}));
        expectFixed(b.SF, MASTER.SF, 4, "SF");
        expectFixed(b.SCORE, MASTER.SCORE, 3, "SCORE");
        expectFixed(b.RFACTOR, MASTER.RFACTOR, 3, "RFACTOR");
        const double valmsc[5] = {MASTER.VALMSC1, MASTER.VALMSC2, MASTER.VALMSC3, MASTER.VALMSC4, MASTER.VALMSC5};
        for (size_t k = 0; k < 5; ++k) expectFixed(b.VALMSC[k], valmsc[k], 3, "VALMSC");
        for (int k = 1; k <= 10; ++k) expectScaled(b.SPAR[static_cast<size_t>(k - 1)], SURF.SPAR(k), "SPAR");
    }
};

}  // namespace

TEST_F(ReadPlt, ASurfaceWithNailsComesBackValueByValue) {
    ISNAIL.NNAILS = 4;
    for (int n = 1; n <= 4; ++n) ISNAIL.INAIL(n, 2) = n - 2;  // modes -1, 0, 1, 2
    POST();
    const plt::Block b = saveAndRead();
    checkCountsAndValues(b);
    checkSliceTables(b);
    const double SF = MASTER.SF;

    ASSERT_TRUE(b.loadsWithoutNails.present);
    ASSERT_EQ(static_cast<int>(b.loadsWithoutNails.rows.size()), MASTER.NUMSLC);
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const plt::Row& row = b.loadsWithoutNails.rows[static_cast<size_t>(i - 1)];
        const double written[6] = {SURF.WX(i), SURF.WZ(i), SURF.WM(i), SURF.SNX(i) / SF, SURF.SNZ(i) / SF, SURF.SNM(i) / SF};
        ASSERT_EQ(row.values.size(), 6u);
        for (size_t k = 0; k < 6; ++k) expectScaled(row.values[k], written[k], "loads without nails");
    }
    ASSERT_EQ(b.nailGeometry.rows.size(), 4u);
    ASSERT_EQ(b.nailForces.rows.size(), 4u);
    for (int n = 1; n <= 4; ++n) {
        const plt::Row& g = b.nailGeometry.rows[static_cast<size_t>(n - 1)];
        EXPECT_EQ(g.number, n);
        const double geometry[6] = {SNAILS.SN(n, 1), SNAILS.SN(n, 2), SNAILS.SN(n, 3), SNAILS.SN(n, 4), SNAILS.SN(n, 5), SNAILS.SN(n, 17)};
        ASSERT_EQ(g.values.size(), 6u);
        for (size_t k = 0; k < 6; ++k) expectScaled(g.values[k], geometry[k], "nail geometry");
        const plt::Row& f = b.nailForces.rows[static_cast<size_t>(n - 1)];
        EXPECT_EQ(f.number, n);
        const double forces[5] = {SNAILS.SN(n, 18) / SF, SNAILS.SN(n, 19) / SF, SNAILS.SN(n, 13), SNAILS.SN(n, 14), SNAILS.SN(n, 15)};
        ASSERT_EQ(f.values.size(), 5u);
        for (size_t k = 0; k < 5; ++k) expectScaled(f.values[k], forces[k], "nail forces");
        EXPECT_EQ(f.mode, n - 2);
    }
    EXPECT_FALSE(b.combined.present);
    EXPECT_FALSE(b.hasUndrainedShare);

    double areaSum = 0.0, undrainedSum = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const plt::Row& row = b.areas.rows[static_cast<size_t>(i - 1)];
        expectUnscaled(row.values[0], SURF.AREA(i), "AREA");
        expectUnscaled(row.values[1], SURF.AREAU(i), "AREAU");
        areaSum += SURF.AREA(i);
        undrainedSum += SURF.AREAU(i);
    }
    expectUnscaled(b.areaSum, areaSum, "area sum");
    expectUnscaled(b.undrainedAreaSum, undrainedSum, "undrained area sum");
}

TEST_F(ReadPlt, ACombinedAnalysisComesBackValueByValue) {
    MASTER.IDEFTO = 3;
    POST();
    const plt::Block b = saveAndRead();
    checkCountsAndValues(b);
    checkSliceTables(b);
    EXPECT_FALSE(b.nailGeometry.present);
    EXPECT_FALSE(b.loadsWithoutNails.present);

    ASSERT_TRUE(b.combined.present);
    ASSERT_EQ(static_cast<int>(b.combined.rows.size()), MASTER.NUMSLC);
    double drained = 0.0, undrained = 0.0, undrainedArea = 0.0;
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const plt::Row& row = b.combined.rows[static_cast<size_t>(i - 1)];
        const double written[5] = {SURF.C3(i), SURF.TAN3(i), SURF.SU3(i), SURF.S1(i), SURF.S2(i)};
        ASSERT_EQ(row.values.size(), 5u);
        for (size_t k = 0; k < 5; ++k) expectScaled(row.values[k], written[k], "combined");
        EXPECT_EQ(row.mode, ISUR.MODE(i));
        EXPECT_EQ(row.modeText, ISUR.MODE(i) == 1 ? "Drained" : "Undrained");
        if (ISUR.MODE(i) == 1) drained += SURF.S1(i);
        else undrained += SURF.S2(i);
        const double areaU = ISUR.MODE(i) == 1 ? 0.0 : SURF.AREAU(i);
        undrainedArea += areaU;
        EXPECT_EQ(b.areas.rows[static_cast<size_t>(i - 1)].values[1] == 0.0, areaU == 0.0) << i;
    }
    ASSERT_TRUE(b.hasUndrainedShare);
    expectFixed(b.undrainedShare, undrained / (drained + undrained), 3, "share");
    expectUnscaled(b.undrainedAreaSum, undrainedArea, "undrained area sum");
}

TEST_F(ReadPlt, EveryBlockOfAFileIsRead) {
    POST();
    MASTER.NUMSRF = 43;
    MASTER.NUMSLC = 3;
    POST();
    std::vector<plt::Block> blocks;
    std::string error;
    ASSERT_EQ(plt::readPltFile(dir_.path("KALMO.PLT"), blocks, error), 0) << error;
    ASSERT_EQ(blocks.size(), 2u);
    EXPECT_EQ(blocks[0].NUMSRF, 42);
    EXPECT_EQ(blocks[0].geometry.rows.size(), 18u);
    EXPECT_EQ(blocks[1].NUMSRF, 43);
    EXPECT_EQ(blocks[1].geometry.rows.size(), 4u);
}

// Values that do not fit come back as NaN; three-digit exponents stand without their E.
TEST_F(ReadPlt, OverflowingFieldsAndLongExponentsAreRead) {
    MASTER.NUMSLC = 1;
    MASTER.SF = 123456.0;  // too wide for F9.4
    SURF.P(1) = 1.5e150;   // 1.5000+150 in E12.4
    SURF.S(1) = -2.5e-120;
    POST();
    const plt::Block b = saveAndRead();
    EXPECT_TRUE(std::isnan(b.SF));
    EXPECT_NE(io::contents(17).find("  1.5000+150 -2.5000-120"), std::string::npos);
    EXPECT_NEAR(b.forces.rows[0].values[0], 1.5e150, 1e146);
    EXPECT_NEAR(b.forces.rows[0].values[1], -2.5e-120, 1e-124);
}

TEST_F(ReadPlt, EmptyMissingAndDamagedFiles) {
    std::vector<plt::Block> blocks;
    std::string error;
    EXPECT_EQ(plt::readPltText("", blocks, error), 0);
    EXPECT_TRUE(blocks.empty());
    EXPECT_EQ(plt::readPltFile(dir_.path("NO.PLT"), blocks, error), 1);
    EXPECT_NE(error.find("NO.PLT"), std::string::npos);

    POST();
    std::string text = io::contents(17);
    const std::string label = " SAFETY.FCT  SCORE  R-FACTOR   VALMSC1  VALMSC2  VALMSC3  VALMSC4  VALMSC5\n";
    const size_t values = text.find(label) + label.size();
    text.replace(values, 9, "  ABCDEFG");
    EXPECT_EQ(plt::readPltText(text, blocks, error), 2);
    EXPECT_NE(error.find("values record"), std::string::npos) << error;
    EXPECT_NE(error.find("line 9"), std::string::npos) << error;

    // A block cut off before its counts is refused, and the blocks before it are kept.
    blocks.clear();
    const std::string whole = io::contents(17);
    EXPECT_EQ(plt::readPltText(whole + whole.substr(0, whole.find(" NUMSRF")), blocks, error), 2);
    EXPECT_EQ(blocks.size(), 1u);
}
