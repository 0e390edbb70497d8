// Time of one surface analysis by each solution method, on the layered slope example.
//
// The example's input is read once (as a run would read it); every iteration then hands
// its first general surface to the solver with the method under test, so the times of the
// methods can be compared as ratios. Run: build/bench/kalmo_bench

#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <string>

#include "input/input.h"
#include "io/channels.h"
#include "records.h"
#include "solver/solver.h"
#include "surfaces/surfaces.h"

namespace {

bool gReady = false;

// The start-up of a run, without the dialogue: constants, channels, the input read.
bool readExample() {
    if (gReady) return true;
    clearRecords();
    MASTER.PI = 4.0 * std::atan(1.0);
    MASTER.EPS = 1.0E-20f;
    ISUR.NSRFCP = NSURFCOPY;
    MASTER.NFIN = 8;
    MASTER.NFOUT = 12;
    MASTER.NF14 = 14;
    MASTER.NF15 = 15;
    MASTER.NF16 = 16;
    MASTER.NF17 = 17;
    MASTER.NF18 = 18;
    POSTGRAF.NFCOPY = 9;
    BEST.SF = 98.0;
    io::bindNull(8);
    io::bindNull(9);
    io::bindNull(12);
    std::string folder = (std::filesystem::temp_directory_path() / "kalmo-bench").string();
    std::filesystem::create_directories(folder);
    if (io::openOld(14, std::string(KALMO_EXAMPLES) + "/slope/KALMO.INP") != 0) return false;
    io::openNew(15, folder + "/KALMO.TMP");
    io::openNew(16, folder + "/KALMO.RES");
    io::openNew(17, folder + "/KALMO.PLT");
    io::openNew(18, folder + "/KALMO.LOG");
    MASTER.IERR = 0;
    READ();
    gReady = MASTER.IERR == 0 && MASTER.NUMGEN >= 1;
    return gReady;
}

void analyseGeneralSurface(benchmark::State& state) {
    if (!readExample()) {
        state.SkipWithError("the slope example could not be read");
        return;
    }
    MASTER.METHOD = static_cast<int>(state.range(0));
    const int surface = 1;
    const int points = IGENER.NPGEN(surface);
    for (auto _ : state) {
        MASTER.NTYP = 1;
        MASTER.BESTSF = 1000000.0;
        GENSRF(points, GENERL.XGEN.column(surface), GENERL.ZGEN.column(surface), 0.0, 0.0, 1.0, 1.0,
               SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
        SOLVER(points + 2);
        benchmark::ClobberMemory();  // the result lives in the global records
    }
    if (MASTER.IERR != 0) state.SkipWithError("the solver reported an error");
    state.counters["SF"] = benchmark::Counter(MASTER.SF);
    state.counters["IERR"] = benchmark::Counter(MASTER.IERR);
}

}  // namespace

BENCHMARK(analyseGeneralSurface)->ArgName("method")->DenseRange(-1, 3);

BENCHMARK_MAIN();
