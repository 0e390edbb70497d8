// surfaces/genral.cpp
//
// GENRAL — general shear surfaces of the input file, chosen one at a time by the user.
//
// The user gives the number of a stored general surface and, optionally, the modification
// values: shifts in x and z, a horizontal stretch about the first point and a stretch of the
// vertical deviation from the chord. The surface so made is analysed by the solver, its result
// is shown, and the user is asked whether to try another one. Values left out of an answer
// keep their present values; the modification values live for the whole run, so they are
// offered again the next time general surfaces are tried. A surface number below 1, a number
// beyond the stored surfaces, an unreadable answer or the end of the answers return to the
// central decision point.
//
// Reads:  the answers on MASTER.NFIN; MASTER.NUMGEN, IDTYP; IGENER.NPGEN; GENERL.XGEN, ZGEN;
//         after the solver: MASTER.IERR, SF, SCORE, RFACTOR, NUMSRF, NUMSLC; SURF E2, T2, H2
// Writes: IGENER.IGEN (1 on entry, then the number typed last); SURF.XS, ZS and SPAR(1..4)
//         (the start and end points of the surface); through SOLVER the surface and its result
// IERR:   as the solver left it for the last surface

#include "surfaces/surfaces.h"

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"
#include "solver/solver.h"

namespace {

constexpr double kMinMultiplier = 0.001f;

// The modification values of the run.
double gXShift = 0.0;
double gZShift = 0.0;
double gXMult = 1.0;
double gZMult = 1.0;

// Shows the present values and reads the answer. False when the answer could not be read.
bool readSurfaceChoice() {
    const int out = MASTER.NFOUT;
    io::writeLine(out, "");
    io::writeLine(out, " GIVE GENERAL SURFACE NUMBER AND MODIFICATION INSTRUCTIONS");
    io::writeLine(out, "  NUM  X-SHIFT  Z-SHIFT   X-MULT  Z-MULT");
    io::writeLine(out, io::Line()
                           .I(IGENER.IGEN, 4)
                           .F(gXShift, 10, 3)
                           .F(gZShift, 9, 3)
                           .F(gXMult, 8, 3)
                           .F(gZMult, 8, 3)
                           .A("  = PRESENT VALUES")
                           .str());
    io::writePrompt(out, "  ");
    io::FreeReader reader(MASTER.NFIN, io::Span::Answer);
    reader(IGENER.IGEN)(gXShift)(gZShift)(gXMult)(gZMult);
    return reader.ok();
}

void showResult() {
    if (MASTER.IDTYP == 1) {
        say("");
        say(SFLINE("   SURFACE ="));
        return;
    }
    const int last = MASTER.NUMSLC;
    if (last < 1 || last > MAXSLC) return;
    io::writeLine(MASTER.NFOUT, "");
    io::writeLine(MASTER.NFOUT, io::Line()
                                    .A(" +++++ E2-FRC,T2-FRC,H2,SCORE=")
                                    .ES(SURF.E2(last), 12, 3)
                                    .ES(SURF.T2(last), 12, 3)
                                    .ES(SURF.H2(last), 12, 3)
                                    .F(MASTER.SCORE, 7, 3)
                                    .str());
}

}  // namespace

void resetGenralModifications() {
    gXShift = 0.0;
    gZShift = 0.0;
    gXMult = 1.0;
    gZMult = 1.0;
}

void GENRAL() {
    IGENER.IGEN = 1;
    for (;;) {
        if (!readSurfaceChoice()) return;
        // A multiplier of zero or below means "as stored".
        if (gXMult < kMinMultiplier) gXMult = 1.0;
        if (gZMult < kMinMultiplier) gZMult = 1.0;

        const int surface = IGENER.IGEN;
        if (surface < 1) return;
        if (surface > MASTER.NUMGEN || surface > MAXGEN) {
            say("");
            say(io::Line(" NUMBER OF GENERAL SURFACES IS ONLY :").I(MASTER.NUMGEN, 4).str());
            return;
        }

        // A surface needs two points at least, for its chord and its end segments; one with
        // fewer is not analysed.
        const int points = IGENER.NPGEN(surface);
        if (points >= 2 && points <= MAXGPT) {
            GENSRF(points, GENERL.XGEN.column(surface), GENERL.ZGEN.column(surface), gXShift, gZShift, gXMult,
                   gZMult, SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
            SOLVER(points + 2);
            if (MASTER.IERR == 0) showResult();
        }

        say("");
        sayPrompt(" SHALL NEW GENERAL SURFACE BE TRIED (Y/N)..... ");
        int answer = 0;
        YESNO(answer, MASTER.NFIN);
        if (answer != 1) return;
    }
}
