// solver/scorer.cpp
//
// SCORER — score of a solution of the slice system: the mean count of its doubtful features.
//
// A plausible solution has compression on every base and between the slices, lines of thrust
// inside the middle third of every base and every interslice face, and a mobilised interslice
// roughness of at most 1. Every slice adds 1 for a tensile base force, 1 for a tensile force
// on its right face, a penalty growing from 0 at the edge of the middle third to 1 at the edge
// of the face for the base force and for the interslice force, and 1 for a roughness above 1
// (the right face of the last slice is the end of the body and is not judged). The sum over the
// slices divided by their number is the score; 0 is a perfect solution.
//
// Reads:  MASTER.NUMSLC, NEGPOK, NEGEOK; SURF columns P, E2, H2, H3, L34, R, ZZ
// Writes: MASTER.SCORE
// IERR:   not used

#include <cmath>

#include "solver/solver.h"

namespace {

constexpr double kThirdLow = 0.33f;
constexpr double kThirdHigh = 0.67f;
constexpr double kMiddle = 0.5;
constexpr double kFullPenalty = 1.0;
constexpr double kPerfect = 0.0005;

// Penalty for a force whose point of action lies at the relative position q of its face.
double outsideThird(double q) {
    if (q > kThirdLow && q < kThirdHigh) return 0.0;
    double penalty = q <= kMiddle ? (kThirdLow - q) / kThirdLow : (q - kThirdHigh) / kThirdLow;
    if (penalty > kFullPenalty) penalty = kFullPenalty;
    return penalty;
}

}  // namespace

void SCORER() {
    const int numSlices = MASTER.NUMSLC;
    if (numSlices < 1 || numSlices > MAXSLC) {
        MASTER.SCORE = 0.0;
        return;
    }
    double doubts = 0.0;
    for (int i = 1; i <= numSlices; ++i) {
        if (SURF.P(i) < 0.0 && MASTER.NEGPOK == 0) doubts += 1.0;
        if (i < numSlices && SURF.E2(i) < 0.0 && MASTER.NEGEOK == 0) doubts += 1.0;
        doubts += outsideThird(SURF.H3(i) / SURF.L34(i));
        if (i < numSlices) {
            const double faceHeight = SURF.ZZ(3, i) - SURF.ZZ(2, i);
            doubts += outsideThird(SURF.H2(i) / faceHeight);
            if (std::abs(SURF.R(i)) > 1.0) doubts += 1.0;
        }
    }
    MASTER.SCORE = doubts / numSlices;
    if (MASTER.SCORE < kPerfect) MASTER.SCORE = 0.0;
}
