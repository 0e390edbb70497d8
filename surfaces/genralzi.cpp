// surfaces/genralzi.cpp
//
// GENRALZI — general surface autosearch: the last analysed surface improved vertex by vertex.
//
// The base line of the last analysed surface becomes a general surface (MOVEC2G, work slot 2).
// One iteration sweeps its vertices one at a time: first the entry vertex and then the exit
// vertex sideways, then the inner vertices up and down, alternately from the front (second
// vertex on) and from the back (last vertex on) until the two meet. Each sweep tries twelve
// positions of its vertex (trial 1 the surface unchanged, trials 2..12 offsets from -h to +h in
// steps of 0.2 h) and the present surface becomes the trial with the lowest safety factor. An
// inner vertex moves by the offset times its depth over the largest vertex depth, so that deep
// vertices move more than shallow ones; a trial vertex left above both its neighbours is put
// back on the line between them. Iterations go on while they lower the safety factor by more
// than 0.005, at most 50 times. Every trial is listed on the console; every new lowest safety
// factor starts the result file again with the echo of the input and the print of that surface,
// appends its block to the post-processor file, and makes its slices the present surface.
//
// Work slots of the general surfaces (a surface of the input stored there is overwritten):
// 2 the present surface, 3 the trial, 4 the best trial of the sweep.
//
// Reads:  the answers on MASTER.NFIN; MASTER.NUMSLC, NSLREQ, NUMSRF; SURF corners (through
//         MOVEC2G); the ground line GEOMSH.XSURF, ZSURF (IGEOMS.NX + 1 points); after the
//         solver: MASTER.IERR, SF, SCORE, RFACTOR, NUMSRF
// Writes: GENERL.XGEN, ZGEN columns 2-4; IGENER.NPGEN(2..4), IGEN (3 while trials run);
//         SURF.XS, ZS, SPAR(1..4); MASTER.NTYP (1) at the first improvement, KLAST and KLSAVE
//         (-1 while an improvement is printed and saved, then as they were);
//         through SOLVER, PRINT and POST the trials, the result file and the post-processor file
// IERR:   as the solver left it for the last trial (a solver failure ends the search)

#include <algorithm>
#include <cmath>
#include <string_view>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "output/output.h"
#include "records.h"
#include "solver/solver.h"
#include "surfaces/surfaces.h"

namespace {

constexpr double kStartLowest = 99.9f;      // lowest safety factor before the first trial
constexpr double kIterationGain = 0.005f;   // an iteration must lower the factor by more than this
constexpr double kOffsetStep = 0.2f;        // offsets step by this part of h
constexpr double kSpacingMargin = 0.1f;     // h stays this much below the spacing of vertices 4, 5
constexpr double kEndGap = 0.01f;           // an end vertex keeps this far from its neighbour
constexpr double kNoSweepBest = 1.0E30;
constexpr int kTrials = 12;
constexpr int kMaxImprovingIterations = 50;
constexpr int kEchoMaxLines = 10000;
constexpr int kMinVertices = 5;             // the end sweeps measure h on vertices 4 and 5: 4 slices

constexpr int kPresent = 2;
constexpr int kTrial = 3;
constexpr int kSweepBest = 4;

struct Search {
    double width = 0.0;        // W, the search width
    double deepest = 0.0;      // DMAX, the largest vertex depth of the start surface
    double lowest = kStartLowest;
    double reference = kStartLowest;
    bool startAnalysed = false;
};

void copySlot(int from, int to) {
    const int count = std::clamp(IGENER.NPGEN(from), 0, MAXGPT);
    IGENER.NPGEN(to) = count;
    for (int j = 1; j <= count; ++j) {
        GENERL.XGEN(j, to) = GENERL.XGEN(j, from);
        GENERL.ZGEN(j, to) = GENERL.ZGEN(j, from);
    }
}

// Depth of (x, z) below the ground; false (and depth 0) when the ground cannot be looked up.
bool depthBelowGround(double x, double z, double& depth) {
    double ground = 0.0;
    int code = 0;
    INTPOL(IGEOMS.NX + 1, 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), x, ground, code);
    depth = code == 0 ? z - ground : 0.0;
    return code == 0;
}

// The number of slices of the surface analysed last. Deliberately not NUMSLC as it stands:
// the central decision point puts the requested slice count back into NUMSLC before every
// operation, while the surface analysed last may have more slices than requested (slices
// split at layer boundaries and halved) or slices of its own (a general surface cut at its
// points when no slice count is given). So its slices are followed from the first for as long
// as each one joins the one before it, and the search starts from the whole surface.
int lastSurfaceSlices() {
    if (!(SURF.XX(2, 1) - SURF.XX(1, 1) > 0.0)) return 0;
    int slices = 1;
    while (slices < MAXSLC) {
        const int next = slices + 1;
        const bool joins = SURF.XX(1, next) == SURF.XX(2, slices) && SURF.ZZ(1, next) == SURF.ZZ(2, slices) &&
                           SURF.ZZ(4, next) == SURF.ZZ(3, slices) && SURF.XX(2, next) - SURF.XX(1, next) > 0.0;
        if (!joins) break;
        slices = next;
    }
    return slices;
}

// The present surface can be searched from: enough vertices, finite, x increasing.
bool usableStart() {
    const int count = IGENER.NPGEN(kPresent);
    if (count < kMinVertices) return false;
    for (int j = 1; j <= count; ++j) {
        if (!std::isfinite(GENERL.XGEN(j, kPresent)) || !std::isfinite(GENERL.ZGEN(j, kPresent))) return false;
        if (j > 1 && !(GENERL.XGEN(j, kPresent) > GENERL.XGEN(j - 1, kPresent))) return false;
    }
    return true;
}

double offset(int trial, double h) { return trial == 1 ? 0.0 : -h + (trial - 2) * kOffsetStep * h; }

// A new lowest safety factor: the result file starts again with the echo of the input and the
// print of this surface, the post-processor file receives its block, and its slices become the
// present surface. The print and the save are told to take the last surface (state -1, an
// operation in progress) and the states are set back afterwards, as the central decision
// point does around its own print and save of the last surface. Left at -1, the state would
// make a later "print best surface" at the menu print the last trial of the search under the
// best surface's number; and without it the save would write (and bring back as the current
// surface) the best surface of the run, which an earlier analysis may hold.
void keepImprovement(Search& search) {
    io::rewind(MASTER.NF14);
    io::rewind(MASTER.NF16);
    ECHO(MASTER.NF14, MASTER.NF16, kEchoMaxLines);
    const int printState = MASTER.KLAST;
    const int saveState = MASTER.KLSAVE;
    MASTER.KLAST = -1;
    MASTER.NTYP = 1;
    PRINT();
    MASTER.KLAST = printState;
    MASTER.KLSAVE = -1;
    POST();
    MASTER.KLSAVE = saveState;
    MOVEC2G();
    search.lowest = MASTER.SF;
}

// Analyses the trial in slot 3, lists it and keeps it as the sweep's best and as the lowest of
// the search when it is. False when the solver failed.
bool analyseTrial(Search& search, double d, std::string_view surfaceLabel, double& sweepBest) {
    IGENER.IGEN = kTrial;
    const int count = IGENER.NPGEN(kTrial);
    GENSRF(count, GENERL.XGEN.column(kTrial), GENERL.ZGEN.column(kTrial), 0.0, 0.0, 1.0, 1.0, SURF.XS.data(),
           SURF.ZS.data(), SURF.SPAR.data());
    SOLVER(count + 2);
    if (MASTER.IERR != 0) return false;

    say("");
    say(io::Line(safetyFactorLine(surfaceLabel)).F(d, 7, 3).F(search.deepest, 7, 3).str());

    if (MASTER.SF < sweepBest) {
        sweepBest = MASTER.SF;
        copySlot(kTrial, kSweepBest);
    }
    // The first iteration is measured from the start surface's own factor, not from the start
    // value 99.9: counted from 99.9 it would always count as an improvement, and a surface that
    // no vertex move improves would be searched a second time with the very same trials.
    if (!search.startAnalysed) {
        search.startAnalysed = true;
        search.reference = std::min(search.reference, MASTER.SF);
    }
    if (MASTER.SF < search.lowest) keepImprovement(search);
    return true;
}

// The sideways sweep of the first (first = true) or the last vertex.
bool sweepEnd(Search& search, bool first) {
    double h = search.width;
    if (IGENER.NPGEN(kPresent) >= kMinVertices) {
        const double spacing = std::fabs(GENERL.XGEN(5, kPresent) - GENERL.XGEN(4, kPresent));
        if (!(spacing > search.width)) h = spacing - kSpacingMargin;
    }
    double sweepBest = kNoSweepBest;
    for (int trial = 1; trial <= kTrials; ++trial) {
        const double d = offset(trial, h);
        copySlot(kPresent, kTrial);
        const int count = IGENER.NPGEN(kTrial);
        if (first) {
            GENERL.XGEN(1, kTrial) = std::min(GENERL.XGEN(1, kTrial) + d, GENERL.XGEN(2, kTrial) - kEndGap);
        } else {
            GENERL.XGEN(count, kTrial) =
                std::max(GENERL.XGEN(count, kTrial) + d, GENERL.XGEN(count - 1, kTrial) + kEndGap);
        }
        if (!analyseTrial(search, d, "   XSURFACE =", sweepBest)) return false;
    }
    copySlot(kSweepBest, kPresent);
    return true;
}

// A trial vertex above both its neighbours is put on the line between them, vertex by vertex
// from the front.
void smoothTrial() {
    const int count = IGENER.NPGEN(kTrial);
    for (int j = 2; j < count; ++j) {
        const double xl = GENERL.XGEN(j - 1, kTrial), zl = GENERL.ZGEN(j - 1, kTrial);
        const double xr = GENERL.XGEN(j + 1, kTrial), zr = GENERL.ZGEN(j + 1, kTrial);
        const double x = GENERL.XGEN(j, kTrial);
        double& z = GENERL.ZGEN(j, kTrial);
        if (z < zl && z < zr) z = zl + (zr - zl) * (x - xl) / (xr - xl);
    }
}

// The up-and-down sweep of inner vertex `vertex`.
bool sweepInner(Search& search, int vertex) {
    double depth = 0.0;
    depthBelowGround(GENERL.XGEN(vertex, kPresent), GENERL.ZGEN(vertex, kPresent), depth);
    const double h = std::min(search.width, search.deepest);
    // A surface with no vertex below the ground has no depth to scale by: nothing moves.
    const double share = search.deepest > 0.0 ? depth / search.deepest : 0.0;
    double sweepBest = kNoSweepBest;
    for (int trial = 1; trial <= kTrials; ++trial) {
        const double d = offset(trial, h);
        copySlot(kPresent, kTrial);
        if (vertex <= IGENER.NPGEN(kTrial)) GENERL.ZGEN(vertex, kTrial) += d * share;
        smoothTrial();
        if (!analyseTrial(search, d, "   SURFACE =", sweepBest)) return false;
    }
    copySlot(kSweepBest, kPresent);
    return true;
}

// One iteration over all vertices. False when the solver failed.
bool iterate(Search& search) {
    if (!sweepEnd(search, true)) return false;
    if (!sweepEnd(search, false)) return false;
    bool fromFront = true;
    int front = 2;
    int back = IGENER.NPGEN(kPresent);
    // An improvement makes the slices of the trial the present surface, whose vertex count may
    // differ: the sweeps stay within it.
    while (front <= back && back <= IGENER.NPGEN(kPresent)) {
        if (!sweepInner(search, fromFront ? front : back)) return false;
        fromFront = !fromFront;
        if (fromFront) {
            --back;
        } else {
            ++front;
        }
        back = std::min(back, IGENER.NPGEN(kPresent));
    }
    return true;
}

void refuse(std::string_view reason) {
    say("");
    say(io::Line(" **** SR/GENRALZI : ").A(reason).str());
}

void listCriticalSurface(int improvingIterations) {
    say("");
    say(io::Line(" ITERATION COMPETED, NUMBER OF ITERATIONS :").I(improvingIterations, 4).str());
    say("");
    const int count = IGENER.NPGEN(kPresent);
    say(io::Line(" CRITICAL SURFACE, NO OF VERTEX :").I(count, 4).str());
    for (int j = 1; j <= count; ++j)
        say(io::Line().F(GENERL.XGEN(j, kPresent), 12, 3).F(GENERL.ZGEN(j, kPresent), 12, 3).str());
}

}  // namespace

void GENRALZI() {
    Search search;
    say("");
    say(" GIVE SEARCH WIDTH: ");
    if (io::readAnswer(MASTER.NFIN, search.width) != io::ReadStatus::Ok) return;
    sayPrompt(io::Line().F(search.width, 8, 3).str());

    if (!(search.width > 0.0) || !std::isfinite(search.width)) {
        refuse("SEARCH WIDTH MUST BE GREATER THAN ZERO , NO SEARCH");
        return;
    }
    if (MASTER.NUMSRF < 1) {
        refuse("NO SURFACE HAS BEEN ANALYSED YET , NOTHING TO START FROM");
        return;
    }
    // The trials are cut into the requested number of slices; a general surface that brings
    // its own slices is one of the input file only.
    if (MASTER.NSLREQ < 1) {
        refuse("GIVE A NUMBER OF SLICES (CONTROL DATA NUMSLC) FOR THE AUTOSEARCH");
        return;
    }

    MASTER.NUMSLC = lastSurfaceSlices();
    MOVEC2G();
    if (!usableStart()) {
        refuse("LAST SURFACE NEEDS AT LEAST 4 SLICES , NO SEARCH");
        return;
    }
    IGENER.IGEN = kPresent;
    search.deepest = 0.0;
    for (int j = 1; j <= IGENER.NPGEN(kPresent); ++j) {
        double depth = 0.0;
        if (depthBelowGround(GENERL.XGEN(j, kPresent), GENERL.ZGEN(j, kPresent), depth))
            search.deepest = std::max(search.deepest, depth);
    }

    int improvingIterations = 0;
    bool solved = true;
    for (;;) {
        search.reference = search.lowest;
        solved = iterate(search);
        if (!solved) break;
        if (search.reference < search.lowest) search.lowest = search.reference;
        if (!(search.reference - search.lowest > kIterationGain)) break;
        ++improvingIterations;
        // At most 50 improving iterations: after the 50th the search stops even if it still
        // improves.
        if (improvingIterations >= kMaxImprovingIterations) break;
    }
    if (solved) listCriticalSurface(improvingIterations);

    // The answer is read, but a new search is not started from here.
    sayPrompt(" SHALL NEW GENERAL SURFACE BE TRIED (Y/N)..... ");
    int answer = 0;
    YESNO(answer, MASTER.NFIN);
}
