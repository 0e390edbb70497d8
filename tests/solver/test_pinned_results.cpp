// Pinned results of the slice analysis: every solution method (-1 force equilibrium, 0 the
// 1988-2002 method, 1 Bishop simplified, 2 Bishop modified, 3 the 2003 method) on the sections
// of the five examples, each with the example's own general surfaces, a set of random general
// surfaces and a few circles. For every surface the error code, the number of slices, the safety
// factor, the score and the forces of every slice (E2, T2, P, S) are compared with the values
// stored in tests/data/pinned/results.txt.
//
// Why the stored values are right: they are the results of the code as it stood before the
// speed work on the slice geometry, the table look-ups, the load builder and the solver loops.
// That code's safety factors are checked against independent values by the other tests (hand
// calculations of slices, closed forms of infinite slopes and circles, golden whole runs);
// this test pins every other number the solver leaves, so that a faster routine that gives a
// different result anywhere fails here.
//
// Every method must give every value, the score included, to 1e-12 relative of itself (they
// give them to the last digit). That holds for the 2003 method's forces too, although some of
// them are rounding residues of zero (the force left over at the exit, an interslice force
// where the thrust changes sign): its slices are balanced in the order of operations they have
// always had, so even those agree.
//
// To write the file anew (only ever from code whose results are known to be right), run this
// test with KALMO_PIN_WRITE set to the path of the file to write.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "records.h"
#include "solver/solver.h"
#include "support/tempdir.h"
#include "surfaces/surfaces.h"

namespace {

constexpr double kRelativeTolerance = 1e-12;
constexpr int kRandomSurfaces = 6;
constexpr int kCircles = 3;

// A small linear congruential generator: the same numbers on every platform and library.
class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    double uniform(double low, double high) {
        state_ = state_ * 6364136223846793005ULL + 1442695040888963407ULL;
        const double unit = static_cast<double>(state_ >> 11) / 9007199254740992.0;  // [0, 1)
        return low + (high - low) * unit;
    }

private:
    std::uint64_t state_;
};

// Ground level of the section at x (the ground broken line, held level beyond its ends).
double groundAt(double x) {
    const int n = IGEOMS.NX + 1;
    if (x <= GEOMSH.XSURF(1)) return GEOMSH.ZSURF(1);
    for (int k = 2; k <= n; ++k) {
        if (x <= GEOMSH.XSURF(k)) {
            const double span = GEOMSH.XSURF(k) - GEOMSH.XSURF(k - 1);
            if (span <= 0.0) return GEOMSH.ZSURF(k);
            return GEOMSH.ZSURF(k - 1) + (GEOMSH.ZSURF(k) - GEOMSH.ZSURF(k - 1)) * (x - GEOMSH.XSURF(k - 1)) / span;
        }
    }
    return GEOMSH.ZSURF(n);
}

struct Outcome {
    std::string label;
    std::vector<double> values;  // IERR, NUMSLC, SF, SCORE, then E2, T2, P, S of every slice
};

void record(std::vector<Outcome>& outcomes, const std::string& label) {
    Outcome o;
    o.label = label;
    const int slices = std::clamp(MASTER.NUMSLC, 0, MAXSLC);
    o.values = {static_cast<double>(MASTER.IERR), static_cast<double>(MASTER.NUMSLC), MASTER.SF, MASTER.SCORE};
    for (int i = 1; i <= slices; ++i) {
        o.values.push_back(SURF.E2(i));
        o.values.push_back(SURF.T2(i));
        o.values.push_back(SURF.P(i));
        o.values.push_back(SURF.S(i));
    }
    outcomes.push_back(o);
}

void startSurface() {
    MASTER.IERR = 0;
    MASTER.BESTSF = 1000000.0;
    MASTER.BESTE2 = -1000000.0;
}

void solveGeneral(int n, const double* x, const double* z) {
    startSurface();
    MASTER.NTYP = 1;
    MASTER.ICSRCH = 0;
    GENSRF(n, x, z, 0.0, 0.0, 1.0, 1.0, SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
    SOLVER(n + 2);
}

void solveCircle(double xc, double zc, double radius) {
    startSurface();
    MASTER.NTYP = 2;
    MASTER.ICSRCH = 0;
    int points = 30;
    CIRSRF(points, xc, zc, radius, SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
    SURF.SPAR(1) = xc;
    SURF.SPAR(2) = zc;
    SOLVER(points);
}

// Every surface of one example's section under every method.
void analyseExample(const std::string& example, std::vector<Outcome>& outcomes) {
    kalmo_test::TempDir dir;
    startRun();
    POSTGRAF.NFCOPY = 9;
    io::bindNull(8);
    io::bindNull(9);
    io::bindNull(12);
    ASSERT_EQ(io::openOld(14, std::string(KALMO_SOURCE_DIR) + "/examples/" + example + "/KALMO.INP"), 0);
    io::openNew(15, dir.path("KALMO.TMP"));
    io::openNew(16, dir.path("KALMO.RES"));
    io::openNew(17, dir.path("KALMO.PLT"));
    io::openNew(18, dir.path("KALMO.LOG"));
    MASTER.IERR = 0;
    READ();
    ASSERT_EQ(MASTER.IERR, 0) << example;
    const int requestedSlices = MASTER.NSLREQ;

    const int columns = IGEOMS.NX + 1;
    const double xLeft = GEOMSH.XSURF(1);
    const double xRight = GEOMSH.XSURF(columns);
    const double width = xRight - xLeft;
    double relief = 0.0;
    for (int k = 1; k <= columns; ++k)
        relief = std::max(relief, std::abs(GEOMSH.ZSURF(k) - GEOMSH.ZSURF(1)));
    const double depthScale = std::max(relief, 0.1 * width);

    for (int method = -1; method <= 3; ++method) {
        MASTER.METHOD = method;
        const std::string head = example + " method " + std::to_string(method);
        for (int s = 1; s <= MASTER.NUMGEN; ++s) {
            solveGeneral(IGENER.NPGEN(s), GENERL.XGEN.column(s), GENERL.ZGEN.column(s));
            record(outcomes, head + " general surface " + std::to_string(s));
        }
        Random random(12345);
        for (int s = 1; s <= kRandomSurfaces; ++s) {
            // A polyline from just above the ground at its start to just above it at its end,
            // with two to six points between, deepest somewhere in the middle.
            const double x1 = random.uniform(xLeft + 0.1 * width, xLeft + 0.5 * width);
            const double x2 = random.uniform(x1 + 0.2 * width, xRight - 0.05 * width);
            const int inner = 2 + static_cast<int>(random.uniform(0.0, 5.0));
            const double depth = random.uniform(0.2, 0.8) * depthScale;
            std::vector<double> x{x1}, z{groundAt(x1) - 0.3};
            for (int k = 1; k <= inner; ++k) {
                const double t = (k + random.uniform(-0.3, 0.3)) / (inner + 1);
                const double xk = x1 + t * (x2 - x1);
                x.push_back(xk);
                z.push_back(groundAt(xk) + depth * std::sin(M_PI * t) * random.uniform(0.7, 1.2));
            }
            x.push_back(x2);
            z.push_back(groundAt(x2) - 0.3);
            solveGeneral(static_cast<int>(x.size()), x.data(), z.data());
            record(outcomes, head + " random surface " + std::to_string(s));
        }
        MASTER.NSLREQ = 30;
        for (int c = 1; c <= kCircles; ++c) {
            const double xc = random.uniform(xLeft + 0.3 * width, xLeft + 0.7 * width);
            const double xMid = xc;
            const double zc = groundAt(xMid) - random.uniform(0.3, 1.0) * depthScale;
            const double radius = (groundAt(xMid) - zc) + random.uniform(0.2, 0.6) * depthScale;
            solveCircle(xc, zc, radius);
            record(outcomes, head + " circle " + std::to_string(c));
        }
        MASTER.NSLREQ = requestedSlices;
    }
    for (int unit : {14, 15, 16, 17, 18}) io::close(unit);
}

std::vector<Outcome> analyseAll() {
    std::vector<Outcome> outcomes;
    for (const char* example : {"slope", "clay", "wall", "nails", "footing"}) analyseExample(example, outcomes);
    startRun();
    return outcomes;
}

std::string pinnedPath() { return std::string(KALMO_TEST_DATA) + "/pinned/results.txt"; }

void writePinned(const std::vector<Outcome>& outcomes, const std::string& path) {
    std::ofstream out(path);
    for (const Outcome& o : outcomes) {
        out << "# " << o.label << "\n" << o.values.size() << "\n";
        char buffer[40];
        for (double v : o.values) {
            std::snprintf(buffer, sizeof buffer, "%.17g", v);
            out << buffer << "\n";
        }
    }
}

std::vector<Outcome> readPinned(const std::string& path) {
    std::vector<Outcome> outcomes;
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind("# ", 0) != 0) break;
        Outcome o;
        o.label = line.substr(2);
        std::size_t count = 0;
        if (!(in >> count)) break;
        o.values.resize(count);
        // strtod also reads the "nan" a failed surface may leave in its slice forces.
        std::string word;
        for (double& v : o.values) {
            in >> word;
            v = std::strtod(word.c_str(), nullptr);
        }
        std::getline(in, line);  // the end of the last value's line
        outcomes.push_back(o);
    }
    return outcomes;
}

bool agrees(double expected, double actual) {
    if (expected == actual) return true;
    if (std::isnan(expected) || std::isnan(actual)) return std::isnan(expected) && std::isnan(actual);
    return std::abs(expected - actual) <= kRelativeTolerance * std::max(std::abs(expected), std::abs(actual));
}

TEST(PinnedResults, EveryMethodOnTheExamplesGivesTheResultsOfTheCodeBeforeTheSpeedWork) {
    const std::vector<Outcome> actual = analyseAll();
    if (const char* target = std::getenv("KALMO_PIN_WRITE")) {
        writePinned(actual, target);
        GTEST_SKIP() << "pinned results written to " << target;
    }
    const std::vector<Outcome> expected = readPinned(pinnedPath());
    ASSERT_EQ(expected.size(), actual.size());
    int solved = 0;
    for (std::size_t k = 0; k < expected.size(); ++k) {
        const Outcome& e = expected[k];
        const Outcome& a = actual[k];
        ASSERT_EQ(e.label, a.label);
        ASSERT_EQ(e.values.size(), a.values.size()) << e.label;
        if (e.values[0] == 0.0 && e.values[1] > 0.0) ++solved;
        int mismatches = 0;
        for (std::size_t v = 0; v < e.values.size() && mismatches < 3; ++v) {
            const bool agreeing = agrees(e.values[v], a.values[v]);
            if (!agreeing) {
                ++mismatches;
                ADD_FAILURE() << e.label << " value " << v << ": expected " << e.values[v] << " got " << a.values[v];
            }
        }
    }
    // The set must exercise the solver, not only its failures.
    EXPECT_GT(solved, static_cast<int>(expected.size()) / 2);
}

}  // namespace
