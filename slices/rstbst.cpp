// slices/rstbst.cpp
//
// RSTBST — brings the best surface of the run back as the current surface.
//
// The reverse of SAVBST: bookkeeping, result, the leading NSRFCP reals of SURF, the slice
// failure modes and, when soil nails exist, the nail integers and reals. The current surface
// is lost. SNM is not part of the copy, so a restored surface carries the nail moments of the
// surface analysed last; the nail loads are recomputed for every analysed surface anyway.
//
// Reads:  IBES; BEST; ISUR.NSRFCP; ISNAIL.NNAILS
// Writes: MASTER.NUMSRF, NTYP, NUMSLC, SF, SCORE, RFACTOR; SURF (all but SNM); ISUR.MODE;
//         ISNAIL.INAIL and SNAILS.SN when nails exist
// IERR:   0 ok; 1 NSRFCP outside 0..5857 or the best slice count outside 0..99 (nothing is
//         copied, the current surface stays)

#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

void RSTBST() {
    MASTER.IERR = 0;
    if (ISUR.NSRFCP < 0 || ISUR.NSRFCP > NSURFCOPY || IBES.NUMSLC < 0 || IBES.NUMSLC > MAXSLC) {
        say(io::Line(" **** SR/RSTBST : SURFACE RECORD SIZE OUT OF RANGE  NSRFCP,NUMSLC=")
                .Free(ISUR.NSRFCP)
                .Free(IBES.NUMSLC)
                .str());
        MASTER.IERR = 1;
        return;
    }

    MASTER.NUMSRF = IBES.NUMSRF;
    MASTER.NTYP = IBES.NTYP;
    MASTER.NUMSLC = IBES.NUMSLC;
    RSTSRF();
    for (int slice = 1; slice <= MASTER.NUMSLC; ++slice) ISUR.MODE(slice) = IBES.MODE(slice);
}
