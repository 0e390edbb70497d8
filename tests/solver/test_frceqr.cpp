// FRCEQR: force equilibrium of the slice system.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "solver/slice_system.h"
#include "solver/solver.h"

using namespace kalmo_test;

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

// One slice base as the textbook sees it: inclination (positive when the base goes deeper in
// the direction of sliding, to the right), length, weight and strength.
struct Base {
    double sinA, cosA, length, weight, c, tanPhi;
};

std::vector<Base> slopeBases(double unitWeight, double cohesion, double tanPhi) {
    std::vector<Base> bases;
    for (int i = 0; i < kSlopeSlices; ++i) {
        const double dx = kSlopeX[i + 1] - kSlopeX[i];
        const double dz = kSlopeBase[i + 1] - kSlopeBase[i];
        const double length = std::hypot(dx, dz);
        const double height = ((kSlopeBase[i] - kSlopeTop[i]) + (kSlopeBase[i + 1] - kSlopeTop[i + 1])) * 0.5;
        bases.push_back({dz / length, dx / length, length, unitWeight * dx * height, cohesion, tanPhi});
    }
    return bases;
}

// Base normal force of a slice with horizontal interslice forces only: the vertical balance
// W = N cos a + (c l + N tan phi)/F sin a.
double normalForce(const Base& b, double F) {
    return (b.weight - b.c * b.length * b.sinA / F) / (b.cosA + b.sinA * b.tanPhi / F);
}

// Horizontal force left at the exit when every slice balances vertically at F.
double horizontalResidual(const std::vector<Base>& bases, double F) {
    double sum = 0.0;
    for (const Base& b : bases) {
        const double N = normalForce(b, F);
        sum += N * b.sinA - (b.c * b.length + N * b.tanPhi) / F * b.cosA;
    }
    return sum;
}

// The simplified method: F = sum (c l + N tan phi) cos a / sum N sin a, iterated.
double simplifiedFactor(const std::vector<Base>& bases) {
    double F = 1.0;
    for (int iteration = 0; iteration < 1000; ++iteration) {
        double resisting = 0.0, driving = 0.0;
        for (const Base& b : bases) {
            const double N = normalForce(b, F);
            resisting += (b.c * b.length + N * b.tanPhi) * b.cosA;
            driving += N * b.sinA;
        }
        const double next = resisting / driving;
        if (std::abs(next - F) < 1e-14 * next) return next;
        F = next;
    }
    ADD_FAILURE() << "textbook iteration did not settle";
    return F;
}

// The bounds the start routine prepares: the lowest admissible factor and the force left
// without strength.
void prepareBounds(const std::vector<Base>& bases) {
    double limit = 0.0, noStrength = 0.0;
    for (const Base& b : bases) {
        limit = std::max(limit, -b.sinA * b.tanPhi / b.cosA);
        noStrength += b.weight * b.sinA / b.cosA;
    }
    MASTER.SFLIM = limit;
    MASTER.E2LIM = noStrength;
    MASTER.SFMIN = limit + static_cast<double>(0.001f);
    MASTER.SFMAX = 1.0E6;
}

// The trace rows "ITER SF UNBAL-FORCE RGHMOD NUMCHG" of the log: trial number -> SF.
std::vector<std::pair<int, double>> tracedTrials(const std::string& log) {
    std::vector<std::pair<int, double>> rows;
    std::istringstream lines(log);
    std::string line;
    bool inTable = false;
    while (std::getline(lines, line)) {
        if (line.rfind("ITER   SF", 0) == 0) {
            inTable = true;
            continue;
        }
        if (!inTable) continue;
        std::istringstream fields(line);
        int trial = 0;
        double sf = 0.0;
        if (fields >> trial >> sf) rows.emplace_back(trial, sf);
    }
    return rows;
}

class FrceqrTest : public ::testing::Test {
protected:
    void SetUp() override { freshRun(dir); }
    TempDir dir;
};

}  // namespace

// ---------------------------------------------------------------------------------------------
// The physics: zero interslice roughness is the simplified method of slices
// ---------------------------------------------------------------------------------------------

TEST_F(FrceqrTest, ZeroRoughnessDrySlopeGivesTheSimplifiedMethodFactor) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    const std::vector<Base> bases = slopeBases(19.0, 8.0, tanPhi);
    const double expected = simplifiedFactor(bases);
    ASSERT_NEAR(expected, 1.7428547659, 1e-8);  // the textbook loop itself, as a sanity anchor

    prepareBounds(bases);
    MASTER.SF = 3.0;
    FRCEQR();

    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected, 1e-3 * expected);
    EXPECT_NEAR(MASTER.SF, expected, 1e-5 * expected);
    EXPECT_LT(std::abs(SURF.E2(kSlopeSlices)), MASTER.E2TOL);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        const Base& b = bases[static_cast<size_t>(i - 1)];
        const double N = normalForce(b, MASTER.SF);
        EXPECT_NEAR(SURF.P(i), N, 1e-9 * std::abs(N) + 1e-9) << "slice " << i;
        EXPECT_NEAR(SURF.S1(i), (b.c * b.length + N * b.tanPhi) / MASTER.SF, 1e-9 * std::abs(N) + 1e-9);
        EXPECT_EQ(SURF.S(i), SURF.S1(i));
        EXPECT_EQ(SURF.T2(i), 0.0);  // no interslice shear at all
        if (i < kSlopeSlices) {
            EXPECT_EQ(SURF.E1(i + 1), SURF.E2(i));
            EXPECT_EQ(SURF.T1(i + 1), 0.0);
        }
    }
}

TEST_F(FrceqrTest, ZeroRoughnessAfterTheStartRoutineAgreesWithTheSimplifiedMethod) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    const double expected = simplifiedFactor(slopeBases(19.0, 8.0, tanPhi));
    SETSF0();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, expected, 1e-3 * expected);
    EXPECT_EQ(MASTER.SFTZ, MASTER.SF);
}

TEST_F(FrceqrTest, UndrainedSlopeGivesTheClosedFormFactor) {
    // With phi = 0 every base gives N = (W - c l sin a / F)/cos a, and the horizontal balance
    // sum (N sin a - c l cos a / F) = 0 becomes F = sum (c l / cos a) / sum (W tan a).
    const double su = 30.0;
    const std::vector<Base> bases = slopeBases(19.0, su, 0.0);
    double resisting = 0.0, driving = 0.0;
    for (const Base& b : bases) {
        resisting += b.c * b.length / b.cosA;
        driving += b.weight * b.sinA / b.cosA;
    }
    const double closedForm = resisting / driving;

    for (int analysis : {1, 2}) {
        freshRun(dir);
        setSlope(19.0, su, 0.0);
        MASTER.IDEFTO = analysis;
        prepareBounds(bases);
        MASTER.SF = 2.5;
        FRCEQR();
        ASSERT_EQ(MASTER.IERR, 0) << "analysis " << analysis;
        EXPECT_NEAR(MASTER.SF, closedForm, 1e-3 * closedForm) << "analysis " << analysis;
        EXPECT_NEAR(MASTER.SF, closedForm, 1e-9 * closedForm) << "analysis " << analysis;
    }
}

// ---------------------------------------------------------------------------------------------
// Earth pressure: one sweep at the given factor
// ---------------------------------------------------------------------------------------------

TEST_F(FrceqrTest, EarthPressureSweepOfAWedgeGivesTheWedgeForce) {
    // A wedge behind a vertical wall (the right face, height H) sliding on a plane at angle theta:
    // E = W tan(theta - phi_m) - c_m l cos(phi_m) / cos(theta - phi_m), tan phi_m = tan phi / F,
    // c_m = c / F (active for F > 0, passive for F < 0).
    const double H = 6.0, theta = 55.0 * kDegree, unitWeight = 18.0, c = 5.0, tanPhi = std::tan(30.0 * kDegree);
    const double width = H / std::tan(theta);
    const double weight = unitWeight * width * H * 0.5;
    const double length = H / std::sin(theta);

    for (double F : {1.0, 1.5, -1.5}) {
        freshRun(dir);
        MASTER.IDTYP = 2;
        MASTER.NUMSLC = 1;
        SURF.XX(1, 1) = 0.0;
        SURF.XX(4, 1) = 0.0;
        SURF.XX(2, 1) = width;
        SURF.XX(3, 1) = width;
        SURF.ZZ(1, 1) = 0.0;
        SURF.ZZ(4, 1) = 0.0;
        SURF.ZZ(2, 1) = 0.0;
        SURF.ZZ(3, 1) = H;
        SURF.SINB(1) = std::sin(theta);
        SURF.COSB(1) = std::cos(theta);
        SURF.L34(1) = length;
        SURF.WZ(1) = weight;
        SURF.C3(1) = c;
        SURF.TAN3(1) = tanPhi;
        SURF.C2(1) = c;
        SURF.TAN2(1) = tanPhi;
        SURF.R(1) = 0.0;
        MASTER.SF = F;

        FRCEQR();

        const double phiM = std::atan(tanPhi / F);
        const double expected = weight * std::tan(theta - phiM) - c / F * length * std::cos(phiM) / std::cos(theta - phiM);
        EXPECT_EQ(MASTER.IERR, 0);
        EXPECT_NEAR(SURF.E2(1), expected, 1e-9 * std::abs(expected)) << "F = " << F;
        EXPECT_EQ(MASTER.SF, F);
        EXPECT_EQ(SURF.T2(1), 0.0);
        // One sweep only: no trial is recorded.
        EXPECT_EQ(TrialTable::SFTRY(1), 0.0);
        EXPECT_EQ(TrialTable::UNBAL(1), 0.0);
    }
}

namespace {

// One wedge slice behind a vertical wall: plane base at angle theta from (0, 0) down to the
// wall foot (width, H), ground level with the top of the wall.
void setWedge(double H, double theta, double unitWeight, double c, double tanPhi) {
    const double width = H / std::tan(theta);
    MASTER.NUMSLC = 1;
    SURF.XX(1, 1) = 0.0;
    SURF.XX(4, 1) = 0.0;
    SURF.XX(2, 1) = width;
    SURF.XX(3, 1) = width;
    SURF.ZZ(1, 1) = 0.0;
    SURF.ZZ(4, 1) = 0.0;
    SURF.ZZ(2, 1) = 0.0;
    SURF.ZZ(3, 1) = H;
    SURF.SINB(1) = std::sin(theta);
    SURF.COSB(1) = std::cos(theta);
    SURF.L34(1) = H / std::sin(theta);
    SURF.WZ(1) = unitWeight * width * H * 0.5;
    SURF.C3(1) = c;
    SURF.TAN3(1) = tanPhi;
    SURF.C2(1) = c;
    SURF.TAN2(1) = tanPhi;
    SURF.R(1) = 0.0;
}

}  // namespace

TEST_F(FrceqrTest, WedgeLoadsNailsEndShearAndEntryForcesEnterTheBalance) {
    // Loads on the wedge: a horizontal load and the entry force E1 push it towards the wall
    // directly; a vertical load, the entry shear T1 and the vertical nail force add to the
    // weight; the nail forces and the end-face shear are mobilised by 1/F like the cohesion.
    // E = W' tan(theta - phi_m) + H' - K_m cos(phi_m) / cos(theta - phi_m) with
    // W' = W + T1 + SNZ/F, H' = WX + E1 + SNX/F, K_m = (c l + SS)/F.
    const double H = 5.0, theta = 60.0 * kDegree, c = 4.0, tanPhi = std::tan(32.0 * kDegree);
    const double WX = 12.0, E1 = 7.0, T1 = 9.0, SNX = -30.0, SNZ = 20.0, SS = 6.0;
    for (double F : {1.3, -1.3}) {
        freshRun(dir);
        MASTER.IDTYP = 2;
        setWedge(H, theta, 19.0, c, tanPhi);
        SURF.WX(1) = WX;
        SURF.E1(1) = E1;
        SURF.T1(1) = T1;
        SURF.SNX(1) = SNX;
        SURF.SNZ(1) = SNZ;
        SURF.SS(1) = SS;
        MASTER.SF = F;
        FRCEQR();
        ASSERT_EQ(MASTER.IERR, 0);

        const double phiM = std::atan(tanPhi / F);
        const double weight = SURF.WZ(1) + T1 + SNZ / F;
        const double push = WX + E1 + SNX / F;
        const double K = (c * SURF.L34(1) + SS) / F;
        const double expected = weight * std::tan(theta - phiM) + push - K * std::cos(phiM) / std::cos(theta - phiM);
        EXPECT_NEAR(SURF.E2(1), expected, 1e-9 * std::abs(expected)) << "F = " << F;
        // The base shears: drained from the normal force, undrained from su, no end shear.
        EXPECT_NEAR(SURF.S1(1), (tanPhi * SURF.P(1) + SURF.L34(1) * c) / F, 1e-12 * std::abs(SURF.P(1)));
        EXPECT_EQ(SURF.S(1), SURF.S1(1));
    }
}

TEST_F(FrceqrTest, RoughWallCarriesShearAsInTheCoulombWedge) {
    // With roughness R the wall face carries T2 = R E2 tan2 / F upwards on the wedge, a wall
    // friction tan(delta_m) = R tan2 / F. For c = 0 the wedge force is
    // E = W sin(theta - phi_m) cos(delta_m) / cos(theta - phi_m - delta_m).
    const double H = 6.0, theta = 58.0 * kDegree, tanPhi = std::tan(30.0 * kDegree), R = 0.6, F = 1.2;
    MASTER.IDTYP = 2;
    setWedge(H, theta, 18.0, 0.0, tanPhi);
    SURF.R(1) = R;
    MASTER.SF = F;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);
    const double phiM = std::atan(tanPhi / F);
    const double deltaM = std::atan(R * tanPhi / F);
    const double expected = SURF.WZ(1) * std::sin(theta - phiM) * std::cos(deltaM) / std::cos(theta - phiM - deltaM);
    EXPECT_NEAR(SURF.E2(1), expected, 1e-9 * expected);
    EXPECT_NEAR(SURF.T2(1), expected * std::tan(deltaM), 1e-9 * expected);
    EXPECT_EQ(SURF.R(1), R);  // no reduction was needed

    // Adhesion on the wall, R c2 H / F, carries part of the weight: E falls as for a lighter wedge.
    const double c2 = 10.0;
    freshRun(dir);
    MASTER.IDTYP = 2;
    setWedge(H, theta, 18.0, 0.0, tanPhi);
    SURF.C2(1) = c2;
    SURF.R(1) = R;
    MASTER.SF = F;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);
    const double carried = R * c2 * H / F;
    const double lighter = (SURF.WZ(1) - carried) * std::sin(theta - phiM) * std::cos(deltaM) / std::cos(theta - phiM - deltaM);
    EXPECT_NEAR(SURF.E2(1), lighter, 1e-9 * lighter);
    EXPECT_NEAR(SURF.T2(1), lighter * std::tan(deltaM) + carried, 1e-9 * lighter);
}

// ---------------------------------------------------------------------------------------------
// Roughness reductions
// ---------------------------------------------------------------------------------------------

TEST_F(FrceqrTest, SliceUnsolvableAtEveryReductionEndsAfterFiftyReductions) {
    // Slice 1 rises steeply with full friction and no face friction: its divisor
    // sin b tan3 / F + cos b = -0.2 at F = 1 whatever the roughness.
    MASTER.NUMSLC = 2;
    for (int i = 1; i <= 2; ++i) {
        SURF.SINB(i) = -0.8;
        SURF.COSB(i) = 0.6;
        SURF.L34(i) = 5.0;
        SURF.TAN3(i) = 1.0;
        SURF.TAN2(i) = 0.0;
        SURF.WZ(i) = 100.0;
        SURF.R(i) = 0.5;
    }
    MASTER.SF = 1.0;
    MASTER.JPRINT = 2;
    FRCEQR();

    EXPECT_EQ(MASTER.IERR, 1);
    // R of slice 1 was reduced on each of the 50 sweeps, the k-th with 0.9^(k-1).
    double expectedR = 0.5, reduction = 1.0;
    for (int sweep = 1; sweep <= 50; ++sweep) {
        expectedR *= reduction;
        reduction *= static_cast<double>(0.9f);
    }
    EXPECT_NEAR(SURF.R(1), expectedR, 1e-12 * expectedR);
    EXPECT_EQ(SURF.R(2), 0.5);  // never reached
    const std::string log = logText();
    EXPECT_EQ(countOf(log, " **** SR/FRCEQR : P-FORCE PROBLEM , TOO STEEP SHEAR SURFACE EXIT ANGLE ?"), 50);
    EXPECT_EQ(countOf(log, "    SF   SLICE  SIN(BETA)  TAN(PHI2)  TAN(PHI3)  ROUGHNESS   DIV"), 50);
    EXPECT_EQ(countOf(log, " **** SR/FRCEQR : Reduced R-values did not work"), 1);
    EXPECT_EQ(countOf(copyText(), " **** SR/FRCEQR : Reduced R-values did not work"), 1);
    EXPECT_EQ(MASTER.SF, 1.0);
}

TEST_F(FrceqrTest, DivisorProblemIsTracedOnlyFromLevelTwo) {
    MASTER.NUMSLC = 1;
    SURF.SINB(1) = -0.8;
    SURF.COSB(1) = 0.6;
    SURF.TAN3(1) = 1.0;
    SURF.WZ(1) = 100.0;
    MASTER.SF = 1.0;
    MASTER.JPRINT = 1;
    FRCEQR();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(countOf(logText(), "P-FORCE PROBLEM"), 0);
    EXPECT_EQ(countOf(logText(), " **** SR/FRCEQR : Reduced R-values did not work"), 1);
}

TEST_F(FrceqrTest, RoughnessReductionCompoundsOnEverySweep) {
    // Slice 2 rises: D8 = sin b - cos b tan3 / F = -1 at F = 1, so its divisor is
    // 0.5 - tan2 R, which needs R < 0.5. Slice 1 is an ordinary driving slice.
    MASTER.IDTYP = 2;
    MASTER.NUMSLC = 2;
    SURF.SINB(1) = 0.6;
    SURF.COSB(1) = 0.8;
    SURF.SINB(2) = -0.6;
    SURF.COSB(2) = 0.8;
    for (int i = 1; i <= 2; ++i) {
        SURF.L34(i) = 5.0;
        SURF.TAN3(i) = 0.5;
        SURF.TAN2(i) = 1.0;
        SURF.WZ(i) = 100.0;
        SURF.ZZ(2, i) = 0.0;
        SURF.ZZ(3, i) = 4.0;
        SURF.R(i) = 1.0;
    }
    MASTER.SF = 1.0;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);

    // The rule, followed by hand: every sweep multiplies R of each slice it reaches by the
    // present reduction factor; a failure at slice 2 multiplies the factor by 0.9.
    double r1 = 1.0, r2 = 1.0, factor = 1.0;
    int sweeps = 0;
    for (;;) {
        ++sweeps;
        r1 *= factor;
        r2 *= factor;
        if (0.5 - r2 >= 1.0E-20) break;
        factor *= static_cast<double>(0.9f);
    }
    ASSERT_EQ(sweeps, 5);  // R2 = 1, 0.9, 0.729, 0.531..., 0.348...
    EXPECT_DOUBLE_EQ(SURF.R(1), r1);
    EXPECT_DOUBLE_EQ(SURF.R(2), r2);
    EXPECT_LT(SURF.R(2), 0.5);
    // The slice is then in equilibrium with the face-2 condition at the reduced roughness.
    EXPECT_NEAR(SURF.T2(2), SURF.R(2) * (SURF.TAN2(2) * SURF.E2(2)), 1e-9 * std::abs(SURF.E2(2)));
}

// ---------------------------------------------------------------------------------------------
// The safety-factor iteration
// ---------------------------------------------------------------------------------------------

TEST_F(FrceqrTest, TotalStressAndCombinedAnalysesCorrectThreeTimesByTheProportionalRule) {
    const double tanPhi = std::tan(28.0 * kDegree);
    const std::vector<Base> bases = slopeBases(19.0, 8.0, tanPhi);
    for (int analysis : {2, 3}) {
        freshRun(dir);
        setSlope(19.0, 8.0, tanPhi);
        for (int i = 1; i <= kSlopeSlices; ++i) SURF.SU3(i) = 1.0E6;  // undrained never governs
        MASTER.IDEFTO = analysis;
        prepareBounds(bases);

        // The rule by hand: SF(k+1) = SF(k) (E2LIM - residual(k)) / E2LIM.
        const double E2LIM = MASTER.E2LIM;
        double sf[5] = {3.0, 0.0, 0.0, 0.0, 0.0};
        double residual[4] = {0.0, 0.0, 0.0, 0.0};
        for (int k = 0; k < 4; ++k) {
            residual[k] = horizontalResidual(bases, sf[k]);
            sf[k + 1] = sf[k] * (E2LIM - residual[k]) / E2LIM;
        }
        // Make the fourth trial the first one inside the tolerance.
        ASSERT_GT(std::abs(residual[2]), std::abs(residual[3]));
        MASTER.E2TOL = std::sqrt(std::abs(residual[2]) * std::abs(residual[3]));

        MASTER.SF = sf[0];
        FRCEQR();
        ASSERT_EQ(MASTER.IERR, 0) << "analysis " << analysis;
        // The trials stand in the order made: the root finder, which sorts them, was not used.
        for (int k = 0; k < 4; ++k) {
            EXPECT_NEAR(TrialTable::SFTRY(k + 1), sf[k], 1e-10 * sf[k]) << "analysis " << analysis << " trial " << k + 1;
            EXPECT_NEAR(TrialTable::UNBAL(k + 1), residual[k], 1e-8 * E2LIM) << "analysis " << analysis;
        }
        EXPECT_NEAR(MASTER.SF, sf[3], 1e-10 * sf[3]);
        for (int i = 1; i <= kSlopeSlices; ++i) EXPECT_EQ(ISUR.MODE(i), 1);
    }
}

TEST_F(FrceqrTest, CombinedAnalysisTurnsToTheRootFinderAfterThreeCorrections) {
    // Approached from above, every residual is positive: the fourth correction takes the
    // hyperbola through the two smallest factors, trials 3 and 4.
    const double tanPhi = std::tan(28.0 * kDegree);
    const std::vector<Base> bases = slopeBases(19.0, 8.0, tanPhi);
    setSlope(19.0, 8.0, tanPhi);
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.SU3(i) = 1.0E6;
    MASTER.IDEFTO = 3;
    prepareBounds(bases);
    const double E2LIM = MASTER.E2LIM;
    double sf[5] = {3.0, 0.0, 0.0, 0.0, 0.0};
    double residual[5] = {0.0, 0.0, 0.0, 0.0, 0.0};
    for (int k = 0; k < 4; ++k) {
        residual[k] = horizontalResidual(bases, sf[k]);
        if (k < 3) sf[k + 1] = sf[k] * (E2LIM - residual[k]) / E2LIM;
    }
    for (int k = 0; k < 4; ++k) ASSERT_GT(residual[k], 0.0);
    for (int k = 1; k < 4; ++k) ASSERT_LT(sf[k], sf[k - 1]);
    const double x0 = ((residual[2] - E2LIM) * sf[2] - (residual[3] - E2LIM) * sf[3]) / (residual[2] - residual[3]);
    sf[4] = x0 - (residual[3] - E2LIM) * (sf[3] - x0) / E2LIM;
    residual[4] = horizontalResidual(bases, sf[4]);
    ASSERT_LT(std::abs(residual[4]), std::abs(residual[3]));
    MASTER.E2TOL = std::sqrt(std::abs(residual[3]) * std::abs(residual[4]));
    MASTER.SF = sf[0];
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, sf[4], 1e-10 * sf[4]);
    EXPECT_GT(std::abs(sf[4] - sf[3] * (E2LIM - residual[3]) / E2LIM), 1e-6);
}

TEST_F(FrceqrTest, EffectiveStressCorrectsByTheRootFinderFromTheSecondTrial) {
    // The hyperbola through trials 1 and 2 differs from the proportional rule of trial 2.
    const double tanPhi = std::tan(28.0 * kDegree);
    const std::vector<Base> bases = slopeBases(19.0, 8.0, tanPhi);
    setSlope(19.0, 8.0, tanPhi);
    prepareBounds(bases);
    const double E2LIM = MASTER.E2LIM;
    const double sf1 = 3.0, y1 = horizontalResidual(bases, sf1);
    const double sf2 = sf1 * (E2LIM - y1) / E2LIM;  // one trial: the hyperbola through the origin
    const double y2 = horizontalResidual(bases, sf2);
    const double x0 = ((y1 - E2LIM) * sf1 - (y2 - E2LIM) * sf2) / (y1 - y2);
    const double sf3 = x0 - (y2 - E2LIM) * (sf2 - x0) / E2LIM;
    const double y3 = horizontalResidual(bases, sf3);
    ASSERT_GT(std::abs(y2), std::abs(y3));
    MASTER.E2TOL = std::sqrt(std::abs(y2) * std::abs(y3));
    MASTER.SF = sf1;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, sf3, 1e-10 * sf3);
    EXPECT_GT(std::abs(sf3 - sf2 * (E2LIM - y2) / E2LIM), 1e-6);
}

TEST_F(FrceqrTest, CombinedAnalysisSwitchesWeakBasesToUndrainedAndSolvesAgain) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    // The deep middle of the surface runs through soft clay.
    const double su[kSlopeSlices] = {200, 200, 200, 20, 20, 20, 20, 200, 200, 200};
    for (int i = 1; i <= kSlopeSlices; ++i) SURF.SU3(i) = su[i - 1];
    MASTER.IDEFTO = 3;
    MASTER.E2TOL *= 1.0E-3;
    prepareBounds(slopeBases(19.0, 8.0, tanPhi));
    MASTER.SF = 3.0;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);

    // Independently: solve with the final modes (undrained bases: c = su, no friction) and
    // check that the modes are the ones the lower mobilised shear asks for at that solution.
    std::vector<Base> bases = slopeBases(19.0, 8.0, tanPhi);
    int undrained = 0;
    for (int i = 1; i <= kSlopeSlices; ++i) {
        if (ISUR.MODE(i) == 2) {
            bases[static_cast<size_t>(i - 1)].c = su[i - 1];
            bases[static_cast<size_t>(i - 1)].tanPhi = 0.0;
            ++undrained;
        }
    }
    EXPECT_GE(undrained, 1);
    EXPECT_LT(undrained, kSlopeSlices);
    const double expected = simplifiedFactor(bases);
    EXPECT_NEAR(MASTER.SF, expected, 1e-3 * expected);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        const Base& b = bases[static_cast<size_t>(i - 1)];
        const double N = normalForce(b, expected);
        const double drainedShear = (8.0 * b.length + N * tanPhi) / expected;
        const double undrainedShear = su[i - 1] * b.length / expected;
        EXPECT_EQ(ISUR.MODE(i), undrainedShear <= drainedShear ? 2 : 1) << "slice " << i;
        EXPECT_EQ(SURF.S(i), ISUR.MODE(i) == 2 ? SURF.S2(i) : SURF.S1(i));
    }
}

TEST_F(FrceqrTest, TrialsFifteenToThirtyScanUpwardsFromJustAboveTheLimit) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    prepareBounds(slopeBases(19.0, 8.0, tanPhi));
    MASTER.SFLIM = 0.4;
    MASTER.SFMIN = 0.5;
    MASTER.E2TOL = 0.0;  // never inside the tolerance
    MASTER.JPRINT = 3;
    MASTER.SF = 3.0;
    FRCEQR();

    const std::string log = logText();
    EXPECT_EQ(countOf(log, "SR/FRCEQR TRACE PRINT"), 1);
    const auto rows = tracedTrials(log);
    ASSERT_GE(rows.size(), 31u);
    double scan = 0.4 - static_cast<double>(0.15f);
    for (int trial = 16; trial <= 31; ++trial) {
        scan += static_cast<double>(0.2f);
        EXPECT_EQ(rows[static_cast<size_t>(trial - 1)].first, trial);
        EXPECT_NEAR(rows[static_cast<size_t>(trial - 1)].second, scan, 1e-5) << "trial " << trial;
    }
    EXPECT_NEAR(rows[15].second, 0.45, 1e-5);
    // From the 31st trial on, the lower bound is raised to just above the limit and stays so.
    EXPECT_EQ(MASTER.SFMIN, 0.4 + static_cast<double>(0.001f));
    EXPECT_NE(MASTER.IERR, 0);
}

TEST_F(FrceqrTest, NoConvergenceInFiftyTrialsIsErrorThree) {
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    prepareBounds(slopeBases(19.0, 8.0, tanPhi));
    MASTER.E2TOL = 0.0;
    MASTER.JPRINT = 3;
    MASTER.SF = 3.0;
    FRCEQR();
    EXPECT_EQ(MASTER.IERR, 3);
    EXPECT_EQ(tracedTrials(logText()).size(), 50u);
    EXPECT_EQ(countOf(consoleText(), " **** SR/FRCEQR : NON-CONVERGING SOLUTION  ITNOW="), 1);
    EXPECT_EQ(countOf(copyText(), " **** SR/FRCEQR : NON-CONVERGING SOLUTION  ITNOW="), 1);
    EXPECT_NE(consoleText().find("ITNOW=          50"), std::string::npos);
}

TEST_F(FrceqrTest, LargeSafetyFactorFromTheThirtyFirstTrialIsCutTo999) {
    // A nearly flat surface in strong soil: the root lies far above 1000.
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 8.0, tanPhi);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        SURF.C3(i) = 5.0E4;
    }
    std::vector<Base> bases = slopeBases(19.0, 5.0E4, tanPhi);
    prepareBounds(bases);
    MASTER.E2TOL = 0.0;
    MASTER.SF = 2000.0;
    FRCEQR();
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SF, static_cast<double>(999.999f));
    EXPECT_EQ(countOf(consoleText(), " WARNING FROM SR/FRCEQR : LARGE SAFETY FACTOR"), 1);
    EXPECT_EQ(countOf(copyText(), " WARNING FROM SR/FRCEQR : LARGE SAFETY FACTOR"), 1);
}

TEST_F(FrceqrTest, ConvergedLargeFactorBeforeTheScanIsKept) {
    // The same strong soil with a working tolerance converges long before the 31st trial:
    // no warning, the factor stands as found.
    const double tanPhi = std::tan(28.0 * kDegree);
    setSlope(19.0, 5.0E4, tanPhi);
    std::vector<Base> bases = slopeBases(19.0, 5.0E4, tanPhi);
    prepareBounds(bases);
    MASTER.SF = 2000.0;
    FRCEQR();
    EXPECT_EQ(MASTER.IERR, 0);
    const double expected = simplifiedFactor(bases);
    EXPECT_GT(expected, 1000.0);
    EXPECT_NEAR(MASTER.SF, expected, 1e-3 * expected);
    EXPECT_EQ(countOf(consoleText(), "LARGE SAFETY FACTOR"), 0);
}

TEST_F(FrceqrTest, RootFinderFailureIsErrorTwo) {
    setSlope(19.0, 30.0, 0.0);
    prepareBounds(slopeBases(19.0, 30.0, 0.0));
    MASTER.E2LIM = 0.0;  // no asymptote for the hyperbola
    MASTER.SF = 2.0;
    FRCEQR();
    EXPECT_EQ(MASTER.IERR, 2);
    EXPECT_EQ(countOf(logText(), " **** SR/FRCEQR : SR/ROOT1 PROBLEM  IERR,ITNOW="), 1);
    EXPECT_EQ(countOf(copyText(), " **** SR/FRCEQR : SR/ROOT1 PROBLEM  IERR,ITNOW="), 1);
    EXPECT_EQ(MASTER.SF, 2.0);
}

TEST_F(FrceqrTest, StalledStepAtTheLowerBoundIsErrorOneWithoutMessage) {
    // The undrained root (0.906) lies below the lower bound 1.0; the start sits just above it,
    // so neither half-way step moves the factor.
    setSlope(19.0, 30.0, 0.0);
    prepareBounds(slopeBases(19.0, 30.0, 0.0));
    MASTER.SFLIM = 1.0;
    MASTER.SFMIN = 1.0;
    MASTER.SF = 1.00001;
    FRCEQR();
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_EQ(MASTER.SF, 1.00001);
    EXPECT_TRUE(consoleText().empty());
    EXPECT_TRUE(logText().empty());
}

TEST_F(FrceqrTest, SmallStepTowardsTheLowerBoundGivesWayToHalfWayToTheLimit) {
    // The undrained root 0.906 lies below the lower bound 1.0. From 1.001 the half-way step
    // to the bound (0.0005) is too small, so the factor goes half-way to the limit 0.9.
    setSlope(19.0, 30.0, 0.0);
    prepareBounds(slopeBases(19.0, 30.0, 0.0));
    MASTER.SFLIM = 0.9;
    MASTER.SFMIN = 1.0;
    MASTER.SF = 1.001;
    MASTER.JPRINT = 3;
    FRCEQR();
    const auto rows = tracedTrials(logText());
    ASSERT_GE(rows.size(), 2u);
    EXPECT_NEAR(rows[0].second, 1.001, 1e-9);
    EXPECT_NEAR(rows[1].second, (1.001 + 0.9) * 0.5, 1e-5);

    // From 1.01 the half-way step to the bound (0.005) is large enough.
    freshRun(dir);
    setSlope(19.0, 30.0, 0.0);
    prepareBounds(slopeBases(19.0, 30.0, 0.0));
    MASTER.SFLIM = 0.9;
    MASTER.SFMIN = 1.0;
    MASTER.SF = 1.01;
    MASTER.JPRINT = 3;
    FRCEQR();
    const auto again = tracedTrials(logText());
    ASSERT_GE(again.size(), 2u);
    EXPECT_NEAR(again[1].second, (1.01 + 1.0) * 0.5, 1e-5);
}

TEST_F(FrceqrTest, PureForceEquilibriumClearsTheArmsAndScores6666) {
    setSlope(19.0, 30.0, 0.0);
    prepareBounds(slopeBases(19.0, 30.0, 0.0));
    for (int i = 1; i <= kSlopeSlices + 1; ++i) {
        SURF.H1(i) = 1.0;
        SURF.H2(i) = 2.0;
        SURF.H3(i) = 3.0;
    }
    MASTER.SCORE = 1.0;
    MASTER.METHOD = -1;
    MASTER.SF = 2.0;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SCORE, static_cast<double>(6.666f));
    EXPECT_EQ(MASTER.SCORE, 6.6659998893737793);
    for (int i = 1; i <= kSlopeSlices; ++i) {
        EXPECT_EQ(SURF.H1(i), 0.0);
        EXPECT_EQ(SURF.H2(i), 0.0);
        EXPECT_EQ(SURF.H3(i), 0.0);
    }
    EXPECT_EQ(SURF.H2(kSlopeSlices + 1), 2.0);  // beyond the surface nothing is touched

    // With the moment methods the arms and the score are left to them.
    freshRun(dir);
    setSlope(19.0, 30.0, 0.0);
    prepareBounds(slopeBases(19.0, 30.0, 0.0));
    SURF.H2(1) = 2.0;
    MASTER.SCORE = 1.0;
    MASTER.METHOD = 0;
    MASTER.SF = 2.0;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(MASTER.SCORE, 1.0);
    EXPECT_EQ(SURF.H2(1), 2.0);
}

TEST_F(FrceqrTest, FirstTrialIsNeverAccepted) {
    // Start exactly at the undrained closed-form root: the residual is within the tolerance at
    // once, yet a second trial is made.
    const std::vector<Base> bases = slopeBases(19.0, 30.0, 0.0);
    double resisting = 0.0, driving = 0.0;
    for (const Base& b : bases) {
        resisting += b.c * b.length / b.cosA;
        driving += b.weight * b.sinA / b.cosA;
    }
    setSlope(19.0, 30.0, 0.0);
    prepareBounds(bases);
    MASTER.JPRINT = 3;
    MASTER.SF = resisting / driving;
    FRCEQR();
    ASSERT_EQ(MASTER.IERR, 0);
    EXPECT_EQ(tracedTrials(logText()).size(), 2u);
}

// ---------------------------------------------------------------------------------------------
// Combined analysis that keeps changing modes
// ---------------------------------------------------------------------------------------------

namespace {

// A slice of the combined analysis: base terms, weight, drained strength and undrained
// strength of the base.
struct CombinedSlice {
    double sinA, cosA, weight, length, c, tanPhi, su;
};

// Residual of one sweep at F with horizontal interslice forces only, and, per slice, the
// drained and undrained base resistances (mobilised shear times F) that decide the mode.
double combinedSweep(const std::vector<CombinedSlice>& slices, const std::vector<int>& modes, double F,
                     std::vector<double>& drained, std::vector<double>& undrained) {
    double residual = 0.0;
    drained.assign(slices.size(), 0.0);
    undrained.assign(slices.size(), 0.0);
    for (size_t i = 0; i < slices.size(); ++i) {
        const CombinedSlice& s = slices[i];
        const bool isUndrained = modes[i] == 2;
        const double K = s.length * (isUndrained ? s.su : s.c);
        const double tanBase = isUndrained ? 0.0 : s.tanPhi;
        const double N = (s.weight - K * s.sinA / F) / (s.cosA + s.sinA * tanBase / F);
        residual += N * s.sinA - (N * tanBase + K) / F * s.cosA;
        drained[i] = s.tanPhi * N + s.length * s.c;
        undrained[i] = s.length * s.su;
    }
    return residual;
}

void loadCombined(const std::vector<CombinedSlice>& slices) {
    MASTER.NUMSLC = static_cast<int>(slices.size());
    for (int i = 1; i <= MASTER.NUMSLC; ++i) {
        const CombinedSlice& s = slices[static_cast<size_t>(i - 1)];
        SURF.SINB(i) = s.sinA;
        SURF.COSB(i) = s.cosA;
        SURF.WZ(i) = s.weight;
        SURF.L34(i) = s.length;
        SURF.C3(i) = s.c;
        SURF.TAN3(i) = s.tanPhi;
        SURF.SU3(i) = s.su;
        SURF.R(i) = 0.0;
        ISUR.MODE(i) = 1;
    }
}

struct CombinedPass {
    double sfStart, sfEnd;
    int changes;  // mode changes found at the end of the pass
};

// With a tolerance that every second trial meets, a combined pass is two sweeps: the start
// value and one proportional correction SF (E2LIM - residual) / E2LIM; the modes are then
// checked at the corrected value. Up to five passes, the fifth without a check.
std::vector<CombinedPass> combinedPasses(const std::vector<CombinedSlice>& slices, double sf, double E2LIM,
                                         std::vector<int>& modes) {
    std::vector<CombinedPass> passes;
    std::vector<double> drained, undrained;
    modes.assign(slices.size(), 1);
    for (int pass = 1; pass <= 5; ++pass) {
        const double residual = combinedSweep(slices, modes, sf, drained, undrained);
        const double next = sf * (E2LIM - residual) / E2LIM;
        combinedSweep(slices, modes, next, drained, undrained);
        int changes = 0;
        if (pass < 5) {
            for (size_t i = 0; i < slices.size(); ++i) {
                const int mode = undrained[i] <= drained[i] ? 2 : 1;
                if (mode != modes[i]) ++changes;
                modes[i] = mode;
            }
        }
        passes.push_back({sf, next, changes});
        sf = next;
        if (pass < 5 && changes == 0) break;
    }
    return passes;
}

// A heavy driving slice and six light slices rising towards the exit. The rising slices carry
// more normal force as the factor falls, so their drained strength grows pass by pass; the
// undrained strengths are chosen so that slice 2 turns undrained after pass 1, slice 3 after
// pass 2, slice 4 after pass 3 and slices 5 to lastSwitching after pass 4.
struct Cascade {
    double driveCohesion, driveTan, riseWeight;
    int lastSwitching;
};

constexpr double kCascadeStart = 12.0;

std::vector<CombinedSlice> cascadeSlices(const Cascade& cascade, double& E2LIM) {
    const double sin45 = std::sin(45.0 * kDegree), cos45 = std::cos(45.0 * kDegree);
    const double sinRise = -std::sin(25.0 * kDegree), cosRise = std::cos(25.0 * kDegree);
    std::vector<CombinedSlice> slices{{sin45, cos45, 3000.0, 12.0, cascade.driveCohesion, cascade.driveTan, 1.0E6}};
    for (int i = 2; i <= 7; ++i) slices.push_back({sinRise, cosRise, cascade.riseWeight, 4.0, 0.0, 0.5, 1.0E6});
    E2LIM = 0.0;
    for (const CombinedSlice& s : slices) E2LIM += s.weight * s.sinA / s.cosA;

    std::vector<int> modes(slices.size(), 1);
    std::vector<double> drained, undrained, drainedBefore;
    double sf = kCascadeStart;
    for (int pass = 1; pass <= 4; ++pass) {
        const double residual = combinedSweep(slices, modes, sf, drained, undrained);
        sf = sf * (E2LIM - residual) / E2LIM;
        combinedSweep(slices, modes, sf, drained, undrained);
        const int first = pass == 4 ? 5 : pass + 1;
        const int last = pass == 4 ? cascade.lastSwitching : pass + 1;
        for (int slice = first; slice <= last; ++slice) {
            const size_t k = static_cast<size_t>(slice - 1);
            // Below the drained resistance now, above it at the previous check.
            const double low = pass == 1 ? 0.5 * drained[k] : drainedBefore[k];
            slices[k].su = (low + drained[k]) * 0.5 / slices[k].length;
            modes[k] = 2;
        }
        drainedBefore = drained;
    }
    return slices;
}

// Runs the force solution on the cascade with a tolerance that every second trial meets.
void runCascade(const std::vector<CombinedSlice>& slices, double E2LIM) {
    loadCombined(slices);
    MASTER.IDEFTO = 3;
    MASTER.E2LIM = E2LIM;
    MASTER.SFLIM = 0.0;
    MASTER.SFMIN = 0.001;
    MASTER.SFMAX = 1.0E6;
    MASTER.E2TOL = 1.0E30;
    MASTER.SF = kCascadeStart;
    FRCEQR();
}

}  // namespace

TEST_F(FrceqrTest, CombinedAnalysisStillChangingModesAfterFivePassesFails) {
    double E2LIM = 0.0;
    const std::vector<CombinedSlice> slices = cascadeSlices({2.0, 0.3, 200.0, 7}, E2LIM);
    std::vector<int> modes;
    const std::vector<CombinedPass> passes = combinedPasses(slices, kCascadeStart, E2LIM, modes);
    ASSERT_EQ(passes.size(), 5u);
    EXPECT_EQ(passes[0].changes, 1);
    EXPECT_EQ(passes[1].changes, 1);
    EXPECT_EQ(passes[2].changes, 1);
    ASSERT_EQ(passes[3].changes, 3);  // more than two changes before the last pass
    ASSERT_LT(std::abs(passes[4].sfEnd - passes[4].sfStart), 0.01);

    runCascade(slices, E2LIM);
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NEAR(MASTER.SF, passes[4].sfEnd, 1e-9);
    for (int i = 1; i <= 7; ++i) EXPECT_EQ(ISUR.MODE(i), modes[static_cast<size_t>(i - 1)]) << "slice " << i;
    const std::string log = logText();
    EXPECT_EQ(countOf(log, " **** SR/FRCEQR : Combined analysis non-convergence\n ITRCMB,NUMCHG,SF,SFLAST="), 1);
    EXPECT_NE(log.find(" ITRCMB,NUMCHG,SF,SFLAST=           5           3"), std::string::npos);
    EXPECT_EQ(countOf(copyText(), " **** SR/FRCEQR : Combined analysis non-convergence"), 1);
}

TEST_F(FrceqrTest, CombinedAnalysisStillMovingInTheFifthPassFails) {
    double E2LIM = 0.0;
    const std::vector<CombinedSlice> slices = cascadeSlices({0.0, 1.0, 100.0, 5}, E2LIM);
    std::vector<int> modes;
    const std::vector<CombinedPass> passes = combinedPasses(slices, kCascadeStart, E2LIM, modes);
    ASSERT_EQ(passes.size(), 5u);
    ASSERT_EQ(passes[3].changes, 1);
    ASSERT_GE(std::abs(passes[4].sfEnd - passes[4].sfStart), 0.012);

    runCascade(slices, E2LIM);
    EXPECT_EQ(MASTER.IERR, 1);
    EXPECT_NEAR(MASTER.SF, passes[4].sfEnd, 1e-9);
    EXPECT_NE(logText().find(" ITRCMB,NUMCHG,SF,SFLAST=           5           1"), std::string::npos);
}

TEST_F(FrceqrTest, CombinedAnalysisSettledWithinTheFifthPassIsAccepted) {
    double E2LIM = 0.0;
    const std::vector<CombinedSlice> slices = cascadeSlices({0.0, 1.0, 200.0, 5}, E2LIM);
    std::vector<int> modes;
    const std::vector<CombinedPass> passes = combinedPasses(slices, kCascadeStart, E2LIM, modes);
    ASSERT_EQ(passes.size(), 5u);
    ASSERT_EQ(passes[3].changes, 1);
    const double lastStep = std::abs(passes[4].sfEnd - passes[4].sfStart);
    ASSERT_LT(lastStep, 0.009);
    ASSERT_GT(lastStep, 0.005);

    runCascade(slices, E2LIM);
    EXPECT_EQ(MASTER.IERR, 0);
    EXPECT_NEAR(MASTER.SF, passes[4].sfEnd, 1e-9);
    EXPECT_EQ(countOf(logText(), "Combined analysis non-convergence"), 0);
    for (int i = 1; i <= 7; ++i) EXPECT_EQ(ISUR.MODE(i), modes[static_cast<size_t>(i - 1)]) << "slice " << i;
}
