// surfaces/resultlines.cpp
//
// The result lines the surface routines show after a trial surface: the safety factor with
// its score, R-factor and surface number, and, in an earth-pressure problem, the forces on the
// last slice's right face with the score.
//
// Reads:  MASTER.SF, SCORE, RFACTOR, NUMSRF; SURF E2, T2, H2 of the slice asked for
// Writes: nothing
// IERR:   none

#include <string>
#include <string_view>

#include "io/fmt.h"
#include "records.h"
#include "surfaces/surfaces.h"

std::string safetyFactorLine(std::string_view surfaceLabel) {
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

std::string wallForceLine(int last) {
    return io::Line()
        .A(" +++++ E2-FRC,T2-FRC,H2,SCORE=")
        .ES(SURF.E2(last), 12, 3)
        .ES(SURF.T2(last), 12, 3)
        .ES(SURF.H2(last), 12, 3)
        .F(MASTER.SCORE, 7, 3)
        .str();
}
