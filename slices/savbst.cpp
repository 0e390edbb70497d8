// slices/savbst.cpp
//
// SAVBST — keeps the current surface as the best surface of the run.
//
// Copies the bookkeeping of the surface (number, type, slice count), its result (SF, SCORE,
// RFACTOR), the leading NSRFCP reals of SURF (XS through SNZ; the nail moments SNM stay
// behind by design), the failure modes of its slices and, when soil nails exist, the nail
// integers and reals with their results for this surface.
//
// Reads:  MASTER.NUMSRF, NTYP, NUMSLC, SF, SCORE, RFACTOR; ISUR.NSRFCP, MODE; SURF;
//         ISNAIL.NNAILS, INAIL; SNAILS.SN
// Writes: IBES (all fields); BEST (all fields)
// IERR:   0 ok; 1 NSRFCP outside 0..5857 or NUMSLC outside 0..99 (nothing is copied)

#include <cstring>

#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

void SAVBST() {
    MASTER.IERR = 0;
    if (ISUR.NSRFCP < 0 || ISUR.NSRFCP > NSURFCOPY || MASTER.NUMSLC < 0 || MASTER.NUMSLC > MAXSLC) {
        say(io::Line(" **** SR/SAVBST : SURFACE RECORD SIZE OUT OF RANGE  NSRFCP,NUMSLC=")
                .Free(ISUR.NSRFCP)
                .Free(MASTER.NUMSLC)
                .str());
        MASTER.IERR = 1;
        return;
    }

    IBES.NUMSRF = MASTER.NUMSRF;
    IBES.NTYP = MASTER.NTYP;
    IBES.NUMSLC = MASTER.NUMSLC;
    BEST.SF = MASTER.SF;
    BEST.SCORE = MASTER.SCORE;
    BEST.RFACTOR = MASTER.RFACTOR;

    // SURF is one contiguous block of reals; its first NSRFCP words are the surface proper.
    std::memcpy(BEST.SURF, &SURF, static_cast<size_t>(ISUR.NSRFCP) * sizeof(double));

    for (int slice = 1; slice <= MASTER.NUMSLC; ++slice) IBES.MODE(slice) = ISUR.MODE(slice);

    if (ISNAIL.NNAILS != 0) {
        IBES.INAIL = ISNAIL.INAIL;
        BEST.SN = SNAILS.SN;
    }
}
