// Time of one surface analysis by each solution method, on the layered slope example, of a
// full grid search of circles on the same slope, and of one iteration of the general surface
// autosearch.
//
// The example's input is read once (as a run would read it); every iteration then hands
// its first general surface to the solver with the method under test, so the times of the
// methods can be compared as ratios. The grid search analyses 100 x 100 centres of circles
// through the toe with the example's own method and reports the time per circle. The
// autosearch starts from the general surface, analysed last,
// with a search width of 1 mm, so that its moves gain almost nothing and the search ends
// after one or two iterations (an iteration sweeps the 33 vertices of the surface, twelve
// trials each, and prints and saves its improvements). The counters give the trials and the
// iterations they make, so that the time of one iteration is the time over "iterations". A
// single circle of 50 slices on a homogeneous dry slope (bench/data/homogeneous) times the whole
// analysis of one trial surface as a search makes it: slicing, loads and solution, by Bishop's
// simplified method and by the 2003 method; the circle is not kept as the best surface (as most
// circles of a search are not), so that the copy of a new best surface is not counted.
// Run: build/bench/kalmo_bench

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "records.h"
#include "solver/solver.h"
#include "surfaces/surfaces.h"

namespace {

bool gReady = false;
int gExampleMethod = 0;
std::string gFolder;
std::string gInput;

// The start-up of a run, without the dialogue: the start of the run, the channels, the input
// read (again only when another input is asked for).
bool readInput(const std::string& input) {
    if (gReady && gInput == input) return true;
    startRun();
    POSTGRAF.NFCOPY = 9;
    io::bindNull(8);
    io::bindNull(9);
    io::bindNull(12);
    std::string folder = (std::filesystem::temp_directory_path() / "kalmo-bench").string();
    std::filesystem::create_directories(folder);
    if (io::openOld(14, input) != 0) return false;
    io::openNew(15, folder + "/KALMO.TMP");
    io::openNew(16, folder + "/KALMO.RES");
    io::openNew(17, folder + "/KALMO.PLT");
    io::openNew(18, folder + "/KALMO.LOG");
    MASTER.IERR = 0;
    READ();
    gReady = MASTER.IERR == 0;
    gExampleMethod = MASTER.METHOD;
    gFolder = folder;
    gInput = input;
    return gReady;
}

bool readExample() {
    return readInput(std::string(KALMO_EXAMPLES) + "/slope/KALMO.INP") && MASTER.NUMGEN >= 1;
}

// The example's first general surface as it stands.
void analyseSurfaceOne() {
    const int surface = 1;
    const int points = IGENER.NPGEN(surface);
    MASTER.NTYP = 1;
    MASTER.BESTSF = 1000000.0;
    GENSRF(points, GENERL.XGEN.column(surface), GENERL.ZGEN.column(surface), 0.0, 0.0, 1.0, 1.0, SURF.XS.data(),
           SURF.ZS.data(), SURF.SPAR.data());
    SOLVER(points + 2);
}

void analyseGeneralSurface(benchmark::State& state) {
    if (!readExample()) {
        state.SkipWithError("the slope example could not be read");
        return;
    }
    MASTER.METHOD = static_cast<int>(state.range(0));
    for (auto _ : state) {
        analyseSurfaceOne();
        benchmark::ClobberMemory();  // the result lives in the global records
    }
    if (MASTER.IERR != 0) state.SkipWithError("the solver reported an error");
    state.counters["SF"] = benchmark::Counter(MASTER.SF);
    state.counters["IERR"] = benchmark::Counter(MASTER.IERR);
}

void autosearchIteration(benchmark::State& state) {
    if (!readExample()) {
        state.SkipWithError("the slope example could not be read");
        return;
    }
    MASTER.METHOD = 3;  // the example's own method
    const std::string answers = gFolder + "/ANSWERS.TXT";
    {
        std::ofstream file(answers);
        file << "0.001\nN\n";
    }
    int trials = 0;
    for (auto _ : state) {
        state.PauseTiming();
        analyseSurfaceOne();
        MASTER.NUMSLC = MASTER.NSLREQ;  // as the central decision point leaves it
        MASTER.NTYP = 5;
        MASTER.KLAST = 0;
        MASTER.KLSAVE = 0;
        io::openOld(8, answers);
        io::openNew(17, gFolder + "/KALMO.PLT");  // the saves of one iteration only
        const int before = MASTER.NUMSRF;
        state.ResumeTiming();
        GENRALZI();
        trials = MASTER.NUMSRF - before;
        benchmark::ClobberMemory();
    }
    if (MASTER.IERR != 0) state.SkipWithError("the solver reported an error");
    state.counters["trials"] = benchmark::Counter(trials);
    // Two end sweeps and one sweep per vertex after the first, of twelve trials each.
    state.counters["iterations"] = benchmark::Counter(trials / (12.0 * (IGENER.NPGEN(2) + 1)));
    state.counters["SF"] = benchmark::Counter(MASTER.BESTSF);
}

}  // namespace

// One circle of 50 slices through the toe (40, 10) of the homogeneous 1:2 slope, centre (30, -5),
// with the polyline a circle search gives 50 slices (151 points); argument: the method.
void analyseCircle(benchmark::State& state) {
    if (!readInput(std::string(KALMO_BENCH_DATA) + "/homogeneous/KALMO.INP")) {
        state.SkipWithError("the homogeneous slope could not be read");
        return;
    }
    MASTER.METHOD = static_cast<int>(state.range(0));
    MASTER.NSLREQ = 50;
    const double xc = 30.0;
    const double zc = -5.0;
    const double radius = std::hypot(40.0 - xc, 10.0 - zc);
    for (auto _ : state) {
        MASTER.NTYP = 2;
        MASTER.ICSRCH = 0;
        // Below any factor the circle can have: like most circles of a search, it is not the
        // best so far, and the time is that of its analysis, without the best-surface copy.
        MASTER.BESTSF = 0.0;
        int points = 151;
        CIRSRF(points, xc, zc, radius, SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
        SURF.SPAR(1) = xc;
        SURF.SPAR(2) = zc;
        SOLVER(points);
        benchmark::ClobberMemory();
    }
    if (MASTER.IERR != 0) state.SkipWithError("the solver reported an error");
    state.counters["SF"] = benchmark::Counter(MASTER.SF);
    state.counters["slices"] = benchmark::Counter(MASTER.NUMSLC);
}

// A full search of 100 x 100 circle centres (NX = NZ = 99) from x = 30 to 40 and z = -20 to -5,
// every circle through the toe of the slope (40, 10), with the example's 30 slices and method.
void searchCircleGrid(benchmark::State& state) {
    if (!readExample()) {
        state.SkipWithError("the slope example could not be read");
        return;
    }
    MASTER.METHOD = gExampleMethod;
    const std::string answers = gFolder + "/ANSWERS.TXT";
    {
        std::ofstream out(answers);
        out << "3\n40 10 0 30 40 -20 -5 99 99\nN\n";
    }
    resetCircleRunState();
    const int before = MASTER.NUMSRF;
    for (auto _ : state) {
        MASTER.BESTSF = 1000000.0;
        io::openOld(8, answers);
        CIRCLE();
        benchmark::ClobberMemory();
    }
    io::bindNull(8);
    const double circles = MASTER.NUMSRF - before;
    if (circles < 1.0) {
        state.SkipWithError("no circle was analysed");
        return;
    }
    state.counters["circles"] = benchmark::Counter(circles);
    // Seconds of the search per analysed circle.
    state.counters["time_per_circle"] = benchmark::Counter(circles, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["critical_SF"] = benchmark::Counter(MASTER.BESTSF);
}

BENCHMARK(analyseCircle)->ArgName("method")->Arg(1)->Arg(3);
BENCHMARK(analyseGeneralSurface)->ArgName("method")->DenseRange(-1, 3);
BENCHMARK(searchCircleGrid)->Iterations(1)->Unit(benchmark::kSecond);
BENCHMARK(autosearchIteration)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
