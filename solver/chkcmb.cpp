// solver/chkcmb.cpp
//
// CHKCMB — failure mode of every slice base in the combined drained/undrained analysis.
//
// The base fails in the mode that mobilises the lower shear: undrained (MODE 2) when the
// undrained mobilised shear S2 is at most the drained one S1, else drained (MODE 1). Counts
// the slices whose mode changed from the other mode (a mode not yet set is not a change).
//
// Reads:  MASTER.NUMSLC; SURF.S1, S2; ISUR.MODE
// Writes: ISUR.MODE; NUMCHG (out) the number of changed slices
// IERR:   not used

#include "solver/solver.h"

void CHKCMB(int& NUMCHG) {
    NUMCHG = 0;
    const int numSlices = MASTER.NUMSLC < MAXSLC ? MASTER.NUMSLC : MAXSLC;
    for (int i = 1; i <= numSlices; ++i) {
        if (SURF.S2(i) <= SURF.S1(i)) {
            if (ISUR.MODE(i) == 1) ++NUMCHG;
            ISUR.MODE(i) = 2;
        } else {
            if (ISUR.MODE(i) == 2) ++NUMCHG;
            ISUR.MODE(i) = 1;
        }
    }
}
