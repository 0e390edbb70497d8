// surfaces/combnd.cpp
//
// COMBND — combined shear surfaces: circle-and-plane surfaces for slopes (type 1) and the
// surfaces under a foundation base for bearing capacity (type 2, and type 3 with the
// cantilevered beam shape).
//
// The user gives the number of slices when none is set, then the type. Type 1: an entry point
// on the ground, a circle centre, the depth of the first circle bottom, a depth step and a count,
// and the friction angle of the exit plane; one surface (COMSRF) per depth is analysed and
// listed, and the lowest safety factor (the first of equal ones) is shown at the end. Types 2
// and 3: the base corners and level, a guess of the circle centre below the base, a step and
// the friction angle of the planes; the centres are searched step by step over a 9 x 9 field
// around the guess (or the guess alone with a zero step), each surface made by COMLOW, listed,
// and the lowest (the last of equal ones) summarised. Each type repeats while the user wants
// to go on. The input values live for the whole run and are offered again through the
// free-format reads (an item left out keeps its value).
//
// The search field of types 2 and 3 lies in the first 81 values of SCRTCH, which the
// force-equilibrium iteration also uses for its trial factors: a solution overwrites the field
// values of the first nodes (J = 1 first). Such a node is not analysed again and may be taken
// as the lowest one, which moves the search; the critical surface shown is always one that was
// analysed, from the list. The running minimum of each scan of the field is kept in BESTSF, the
// best-surface mark of the solver.
//
// Reads:  the answers on MASTER.NFIN; MASTER.NSLREQ, IDTYP, EPS, PI; the ground line (IGEOMS.NX,
//         GEOMSH.XSURF, ZSURF); after the solver: MASTER.IERR, SF, SCORE, RFACTOR, NUMSRF,
//         NUMSLC; SURF E2, T2, H2
// Writes: MASTER.NUMSLC, NSLREQ (when asked), KCOMB, BESTSF (the running minimum of the field
//         scan of types 2 and 3); SCRTCH(1..81) the search field; SURF.XS, ZS, SPAR; through
//         SOLVER each surface and its result
// IERR:   as the solver left it for the last surface, or the code of COMSRF or COMLOW

#include "surfaces/surfaces.h"

#include <cmath>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"
#include "solver/solver.h"

namespace {

constexpr double kNoCritical = 1.0e6;
constexpr double kEntryAbove = 1.0e-4f;     // the entry point lies this much above the ground
constexpr double kRadiusMargin = 0.001f;
constexpr double kCentreMargin = 0.001f;
constexpr int kMaxArcPoints = 295;

// The values of the run.
struct SlopeInput {
    double XSURF1 = 0.0, XC = 0.0, ZC = 0.0, ZSTART = 0.0, ZSTEP = 0.0;
    int NZ = 0;
    double PHIDGR = 0.0;
};
struct BaseInput {
    double XLEFT = 0.0, XRGHT = 0.0, ZBOTM = 0.0, XCNTR = 0.0, ZCNTR = 0.0, XZSTP = 0.0, PHIDG = 0.0;
};
SlopeInput gSlope;
BaseInput gBase;

// The lowest safety factor of a pass and its surface.
struct Critical {
    int surface = 0;
    double first = 0.0, second = 0.0;  // type 1: depth and entry angle; types 2-3: centre x, z
    double SF = kNoCritical, SCORE = 0.0, RFACTOR = 0.0;
    void take(double a, double b) {
        surface = MASTER.NUMSRF;
        first = a;
        second = b;
        SF = MASTER.SF;
        SCORE = MASTER.SCORE;
        RFACTOR = MASTER.RFACTOR;
    }
};

enum class Next { TypeQuestion, Menu };

// ---------------------------------------------------------------------------------------------
// The step search over a 9 x 9 field of centres: node (I, J) is the centre offset by I - 5
// and J - 5 steps from the guess; a stored value of 0 or more is the safety factor found there,
// -1 a node not analysed. A sweep analyses the not yet analysed nodes of the 3 x 3
// neighbourhood of the present node; the search moves to the lowest node of the field and
// ends when that is the present node.
// ---------------------------------------------------------------------------------------------
constexpr int kFieldSide = 9;
constexpr int kFieldMiddle = 5;
constexpr int kMaxSweeps = kFieldSide * kFieldSide;  // a sweep that analyses nothing ends the search

double& fieldValue(int I, int J) { return SCRTCH.W[(I - 1) + (J - 1) * kFieldSide]; }

void clearField() {
    for (int J = 1; J <= kFieldSide; ++J)
        for (int I = 1; I <= kFieldSide; ++I) fieldValue(I, J) = -1.0;
}

// The lowest stored value, scanned I outer and J inner; a tie goes to the node scanned later.
// The running minimum is kept in BESTSF. The node stays (IC, JC) when nothing is stored.
void lowestNode(int& IC, int& JC) {
    MASTER.BESTSF = kNoCritical;
    for (int I = 1; I <= kFieldSide; ++I) {
        for (int J = 1; J <= kFieldSide; ++J) {
            const double value = fieldValue(I, J);
            if (value >= 0.0 && value <= MASTER.BESTSF) {
                MASTER.BESTSF = value;
                IC = I;
                JC = J;
            }
        }
    }
}

int clipped(int k) { return k < 1 ? 1 : (k > kFieldSide ? kFieldSide : k); }

// ---------------------------------------------------------------------------------------------
// Dialogue pieces
// ---------------------------------------------------------------------------------------------

// The number of slices, asked until a count 1..99 comes. False at the end of the answers.
bool askSliceCount() {
    if (MASTER.NSLREQ != 0) return true;
    for (;;) {
        io::writePrompt(MASTER.NFOUT, " GIVE NUMBER OF SLICES..... ");
        const io::ReadStatus status = io::readAnswer(MASTER.NFIN, MASTER.NUMSLC);
        // Without further answers the question cannot be answered: back to the menu.
        if (status == io::ReadStatus::End) return false;
        if (status == io::ReadStatus::Ok && MASTER.NUMSLC >= 1 && MASTER.NUMSLC <= MAXSLC) break;
    }
    MASTER.NSLREQ = MASTER.NUMSLC;
    return true;
}

// The combined type, asked until 1..3 comes. False when the answer could not be read.
bool askType() {
    do {
        const int out = MASTER.NFOUT;
        io::writeLine(out, "");
        io::writeLine(out, " GIVE TYPE OF COMBINED SURFACE TO BE USED");
        io::writeLine(out, "   1 : CIRCLE CENTER ABOVE SHEAR SURFACE");
        io::writeLine(out, "   2 : CIRCLE CENTER BELOW SHEAR SURFACE");
        io::writeLine(out, "   3 : TYPE 2 , REPLACED BY CANTILEVERED BEAM SHAPE");
        io::writePrompt(out, "   ");
        if (io::readAnswer(MASTER.NFIN, MASTER.KCOMB) != io::ReadStatus::Ok) return false;
    } while (MASTER.KCOMB < 1 || MASTER.KCOMB > 3);
    return true;
}

bool askAgain(std::string_view question) {
    sayPrompt(question);
    int answer = 0;
    YESNO(answer, MASTER.NFIN);
    return answer == 1;
}

// After a solver error: the error line and the question whether to go on. True to go on.
bool goOnAfterSolverError() {
    say(io::Line(" **** SR/COMBND : ERROR RETURN FROM SR/SOLVER").I(MASTER.IERR, 5).str());
    return askAgain(" SHALL AUTOMATIC SEARCH BE CONTINUED (Y/N) ..... ");
}

// Number of arc points of a type-1 surface for the present slice count.
int arcPoints() {
    const int points = 2 * (3 * MASTER.NUMSLC / 2) + 1;
    return points > kMaxArcPoints ? kMaxArcPoints : points;
}

// ---------------------------------------------------------------------------------------------
// Type 1
// ---------------------------------------------------------------------------------------------

// The input of one pass, asked until it is accepted. False when it could not be read.
bool readSlopeInput() {
    for (;;) {
        const int out = MASTER.NFOUT;
        io::writeLine(out, "");
        io::writeLine(out, " GIVE : XSURF1 = LEFT INTERSECTION BETWEEN SHEAR PLANE AND SOIL SURFACE");
        io::writeLine(out, "        XC,ZC  = CIRCLE CENTER COORDINATES");
        io::writeLine(out, "        ZSTART = START SHEAR SURFACE Z-LEVEL");
        io::writeLine(out, "        ZSTEP  = SHEAR SURFACE Z-DIRECTION STEP VALUE");
        io::writeLine(out, "         NZ    = NUMBER OF SHEAR SURFACES TO BE TRIED");
        io::writeLine(out, "        PHIDGR = PHI-ANGLE FOR EXIT SLOPE (=45-PHIDGR/2)");
        io::writeLine(out, " XSURF1  XC  ZC  ZSTART  ZSTEP  NZ  PHIDGR");
        io::writePrompt(out, "  ");
        SlopeInput& in = gSlope;
        if (io::readAnswer(MASTER.NFIN, in.XSURF1, in.XC, in.ZC, in.ZSTART, in.ZSTEP, in.NZ, in.PHIDGR) !=
            io::ReadStatus::Ok)
            return false;
        if (in.XC < in.XSURF1 || in.ZSTART < in.ZC) continue;
        if (MASTER.IDTYP != 1 && in.NZ != 1) {
            say(" EARTH PRESSURE PROBLEM. ONLY ONE SURFACE ALLOWED");
            continue;
        }
        return true;
    }
}

void slopeListLine(double depth, double angle1) {
    io::Line line;
    line.I(MASTER.NUMSRF, 4).F(depth, 11, 2).F(angle1, 7, 2);
    if (MASTER.IDTYP == 1) {
        line.F(MASTER.SF, 11, 3).F(MASTER.SCORE, 14, 3).F(MASTER.RFACTOR, 10, 3);
    } else {
        const int last = MASTER.NUMSLC;
        if (last >= 1 && last <= MAXSLC)
            line.ES(SURF.E2(last), 13, 3).ES(SURF.T2(last), 11, 3).ES(SURF.H2(last), 11, 3);
        line.F(MASTER.SCORE, 7, 3);
    }
    io::writeLine(MASTER.NFOUT, line.str());
}

// One pass of type 1 and its repetitions.
Next slopePasses() {
    for (;;) {
        Critical critical;
        if (!readSlopeInput()) return Next::Menu;
        const SlopeInput& in = gSlope;
        const double exitAngle = (45.0 - 0.5 * in.PHIDGR) * MASTER.PI / 180.0;

        double groundAtEntry = 0.0;
        int ierr = 0;
        INTPOL(IGEOMS.NX + 1, 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), in.XSURF1, groundAtEntry, ierr);
        if (ierr != 0) {
            say(io::Line(" **** SR/COMBND : SR/INTPOL PROBLEM").I(ierr, 5).str());
            return Next::Menu;
        }
        const double ZSURF1 = groundAtEntry - kEntryAbove;

        io::writeLine(MASTER.NFOUT, "");
        io::writeLine(MASTER.NFOUT, MASTER.IDTYP == 1
                                        ? " SURFACE  DEPTH  ANGLE1  SAFETY-FACTOR    SCORE   R-FACTOR"
                                        : " SURFACE  DEPTH  ANGLE1    E2-FORCE   T2-FORCE  H2-HEIGHT  SCORE");

        // The depth of the circle bottom advances by the step from whatever the last surface
        // used, also when the entry point or the centre limited that surface's radius.
        double depth = in.ZSTART;
        bool entryLimited = false;
        for (int k = 1; k <= in.NZ; ++k, depth += in.ZSTEP) {
            int NPTS = arcPoints();
            double R = depth - in.ZC;
            const double dx = in.XC - in.XSURF1, dz = in.ZC - ZSURF1;
            if (dx * dx + dz * dz <= R * R + kRadiusMargin) {
                if (entryLimited) break;
                entryLimited = true;
                R = std::sqrt(dx * dx + dz * dz) - kRadiusMargin;
                depth = in.ZC + R;
            }
            if (in.ZC <= ZSURF1 && depth <= ZSURF1) {
                R = ZSURF1 - in.ZC;
                depth = in.ZC + R;
            }
            if (ZSURF1 <= in.ZC && dx - kRadiusMargin <= R) {
                R = dx - kRadiusMargin;
                depth = in.ZC + R;
            }
            if (R <= kRadiusMargin) {
                say(io::Line(" COMBINED SURFACE :  RADIUS =").ES(R, 15, 3).str());
                return Next::TypeQuestion;
            }

            double angle = exitAngle;
            COMSRF(in.XSURF1, ZSURF1, in.XC, in.ZC, R, angle, SURF.XS, SURF.ZS, SURF.SPAR, NPTS, MASTER.NFOUT,
                   MASTER.IERR);
            if (MASTER.IERR != 0) {
                say(io::Line(" **** SR/COMBND : SR/COMSRF PROBLEM").I(MASTER.IERR, 5).str());
                return Next::Menu;
            }
            const double angle1 = angle * 180.0 / MASTER.PI;

            SOLVER(NPTS);
            if (MASTER.IERR != 0 && !goOnAfterSolverError()) return Next::Menu;

            slopeListLine(depth, angle1);
            if (MASTER.IDTYP == 1 && MASTER.SF < critical.SF) critical.take(depth, angle1);
        }

        io::writeLine(MASTER.NFOUT, "");
        io::writeLine(MASTER.NFOUT, io::Line()
                                        .I(critical.surface, 4)
                                        .F(critical.first, 11, 2)
                                        .F(critical.second, 7, 2)
                                        .F(critical.SF, 11, 3)
                                        .F(critical.SCORE, 14, 3)
                                        .F(critical.RFACTOR, 10, 3)
                                        .str());
        if (!askAgain(" SHALL NEW COMBINED SURFACE BE TRIED (Y/N)..... ")) return Next::Menu;
    }
}

// ---------------------------------------------------------------------------------------------
// Types 2 and 3
// ---------------------------------------------------------------------------------------------

void refuse(int code) { say(io::Line(" INPUT NOT ACCEPTED , PLEASE TRY AGAIN").I(code, 10).str()); }

// The input of one pass, asked until it is accepted. False when it could not be read.
bool readBaseInput() {
    for (;;) {
        const int out = MASTER.NFOUT;
        io::writeLine(out, "");
        io::writeLine(out, " GIVE : XLEFT = BASE LEFT CORNER X-VALUE");
        io::writeLine(out, "        XRGHT = BASE RIGHT CORNER X-VALUE");
        io::writeLine(out, "        ZBOTM = BASE BOTTOM Z-VALUE, CIRCLES TOUCH BASE");
        io::writeLine(out, "        XCNTR = CIRCLE CENTER X-COORD GUESS");
        io::writeLine(out, "        ZCNTR = CIRCLE CENTER Z-COORD GUESS");
        io::writeLine(out, "        XZSTP = STEP VALUE FOR CIRCLE CENTER GRID SEARCH");
        io::writeLine(out, "        PHIDG = FRICTION ANGLE (DEGR) FOR START AND EXIT SLOPE (45+-PHI/2)");
        io::writeLine(out, " XLEFT  XRGHT  ZBOTM  XCNTR  ZCNTR  XZSTP  PHIDG");
        io::writePrompt(out, "  ");
        BaseInput& in = gBase;
        if (io::readAnswer(MASTER.NFIN, in.XLEFT, in.XRGHT, in.ZBOTM, in.XCNTR, in.ZCNTR, in.XZSTP, in.PHIDG) !=
            io::ReadStatus::Ok)
            return false;
        // The last failing test gives the code.
        int code = 0;
        if (in.XRGHT - in.XLEFT < MASTER.EPS) code = 1;
        if (in.ZCNTR - in.ZBOTM < MASTER.EPS) code = 2;  // the centre must lie below the base
        if (in.XRGHT - in.XCNTR < MASTER.EPS) code = 3;
        if (code == 0) return true;
        refuse(code);
    }
}

bool centreAdmitted(double x, double z) {
    return !(x > gBase.XRGHT - kCentreMargin) && !(z < gBase.ZBOTM + kCentreMargin);
}

// One surface of types 2 and 3 at the centre (x, z): made, solved and listed. False when the
// pass ends here (a COMLOW error, or no going on after a solver error).
bool analyseBaseSurface(double x, double z, Critical& critical) {
    const BaseInput& in = gBase;
    const int beam = MASTER.KCOMB == 3 ? 2 : 1;
    int NPTS = 0;
    COMLOW(in.XLEFT, in.XRGHT, in.ZBOTM, x, z, in.PHIDG, beam, NPTS, SURF.XS, SURF.ZS, SURF.SPAR, MASTER.IERR);
    if (MASTER.IERR != 0) {
        say(io::Line(" **** SR/COMBND : ERROR RETURN FROM SR/COMLOW").I(MASTER.IERR, 5).str());
        return false;
    }
    SOLVER(NPTS);
    if (MASTER.IERR != 0 && !goOnAfterSolverError()) return false;
    io::writeLine(MASTER.NFOUT, io::Line()
                                    .I(MASTER.NUMSRF, 5)
                                    .F(x, 12, 3)
                                    .F(z, 10, 3)
                                    .F(MASTER.SF, 13, 3)
                                    .F(MASTER.SCORE, 13, 3)
                                    .F(MASTER.RFACTOR, 10, 3)
                                    .str());
    if (MASTER.SF <= critical.SF) critical.take(x, z);
    return true;
}

// The step search of types 2 and 3. False when the pass ends early.
bool stepSearch(Critical& critical) {
    const BaseInput& in = gBase;
    clearField();
    int IC = kFieldMiddle, JC = kFieldMiddle;
    for (int sweep = 1; sweep <= kMaxSweeps; ++sweep) {
        for (int J = clipped(JC - 1); J <= clipped(JC + 1); ++J) {
            for (int I = clipped(IC - 1); I <= clipped(IC + 1); ++I) {
                if (fieldValue(I, J) > 0.0) continue;
                const double x = in.XCNTR + (I - kFieldMiddle) * in.XZSTP;
                const double z = in.ZCNTR + (J - kFieldMiddle) * in.XZSTP;
                if (!centreAdmitted(x, z)) break;  // the rest of the row lies as far out
                if (!analyseBaseSurface(x, z, critical)) return false;
                fieldValue(I, J) = MASTER.SF;
            }
        }
        int lowestI = IC, lowestJ = JC;
        lowestNode(lowestI, lowestJ);
        if (lowestI == IC && lowestJ == JC) return true;
        IC = lowestI;
        JC = lowestJ;
    }
    return true;
}

void baseSummary(const Critical& critical) {
    const int out = MASTER.NFOUT;
    const std::string rule = " " + io::repeat('+', 70);
    io::writeLine(out, "");
    io::writeLine(out, rule);
    io::writeLine(out, " CRITICAL SURFACE :  NO   X-CNTR   Z-CNTR    SAFETY   SCORE  R-FACTOR");
    io::writeLine(out, io::Line()
                           .I(critical.surface, 23)
                           .F(critical.first, 9, 3)
                           .F(critical.second, 9, 3)
                           .F(critical.SF, 9, 3)
                           .F(critical.SCORE, 9, 3)
                           .F(critical.RFACTOR, 8, 3)
                           .str());
    io::writeLine(out, rule);
}

// One pass of types 2 and 3 and its repetitions.
Next basePasses() {
    if (MASTER.IDTYP == 2) {
        say(" EARTH PRESSURE CASE REQUIRES TYPE = 1");
        return Next::TypeQuestion;
    }
    for (;;) {
        Critical critical;
        const BaseInput& in = gBase;
        bool single = false;
        for (;;) {
            if (!readBaseInput()) return Next::Menu;
            if (in.XZSTP >= MASTER.EPS) break;
            if (centreAdmitted(in.XCNTR, in.ZCNTR)) {
                single = true;
                break;
            }
            refuse(0);
        }

        io::writeLine(MASTER.NFOUT, "");
        io::writeLine(MASTER.NFOUT, " SURFACE  X-CENTER  Z-CENTER   SAFETY-FACTOR    SCORE  R-FACTOR");
        const bool done = single ? analyseBaseSurface(in.XCNTR, in.ZCNTR, critical) : stepSearch(critical);
        if (!done) return Next::Menu;

        baseSummary(critical);
        if (!askAgain(" SHALL NEW COMBINED SURFACES BE TRIED (Y/N) .... ")) return Next::Menu;
    }
}

}  // namespace

void resetCombndValues() {
    gSlope = SlopeInput();
    gBase = BaseInput();
}

void COMBND() {
    if (!askSliceCount()) return;
    for (;;) {
        if (!askType()) return;
        const Next next = MASTER.KCOMB == 1 ? slopePasses() : basePasses();
        if (next == Next::Menu) return;
    }
}
