// slices/rstsrf.cpp
//
// RSTSRF — brings the best surface's result and slices back as the current surface.
//
// Copies SF, SCORE and RFACTOR, the leading NSRFCP reals of SURF (all but SNM) and, when soil
// nails exist, the nail integers and reals from the best-surface record. The run's surface
// number, type and slice count and the slice failure modes are left as they are: the result
// print works on its own copies of those, and RSTBST adds them for a full restore.
//
// Reads:  BEST; IBES.INAIL; ISUR.NSRFCP (the caller has checked it lies in 0..5857); ISNAIL.NNAILS
// Writes: MASTER.SF, SCORE, RFACTOR; SURF (all but SNM); ISNAIL.INAIL and SNAILS.SN with nails
// IERR:   not used

#include <cstring>

#include "records.h"
#include "slices/slices.h"

void RSTSRF() {
    MASTER.SF = BEST.SF;
    MASTER.SCORE = BEST.SCORE;
    MASTER.RFACTOR = BEST.RFACTOR;
    std::memcpy(static_cast<void*>(&SURF), BEST.SURF, static_cast<size_t>(ISUR.NSRFCP) * sizeof(double));
    if (ISNAIL.NNAILS != 0) {
        ISNAIL.INAIL = IBES.INAIL;
        SNAILS.SN = BEST.SN;
    }
}
