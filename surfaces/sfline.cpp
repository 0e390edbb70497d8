// surfaces/sfline.cpp
//
// SFLINE — the result line of one analysed surface as the surface routines list it.
//
// " ++++ SAFETY FACTOR =" SF (F8.3), "   SCORE =" SCORE (F7.3), "   R-FACTOR =" RFACTOR
// (F7.3), then the label of the surface number ("   SURFACE =", or "   XSURFACE =" for the
// sideways moves of the autosearch) and NUMSRF (I4). A routine may add fields after it.
//
// Reads:  MASTER.SF, SCORE, RFACTOR, NUMSRF
// Writes: nothing (the line is returned)
// IERR:   not used

#include "surfaces/surfaces.h"

#include "io/fmt.h"
#include "records.h"

std::string SFLINE(std::string_view surfaceLabel) {
    return io::Line()
        .A(" ++++ SAFETY FACTOR =")
        .F(MASTER.SF, 8, 3)
        .A("   SCORE =")
        .F(MASTER.SCORE, 7, 3)
        .A("   R-FACTOR =")
        .F(MASTER.RFACTOR, 7, 3)
        .A(surfaceLabel)
        .I(MASTER.NUMSRF, 4)
        .str();
}
