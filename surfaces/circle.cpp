// surfaces/circle.cpp
//
// CIRCLE — circular shear surfaces: one circle given by the user, a step search of the centre
// over a 9 x 9 field, or a full search over a rectangular grid of centres.
//
// Every trial circle is made a polyline by CIRSRF and analysed by the solver; then its
// stabilising and driving moments about the centre are taken from the slice forces (unless the
// solver solved it directly by those moments, ICIRCM). A single circle shows its safety factor
// and moments. A search passes all its circles either through a fixed point (the radius is the
// distance to it) or tangent to a fixed z-level (the radius is the height above it), lists
// every circle, and ends with the summary of its critical circle: the lowest safety factor,
// the later circle on a tie. The step search analyses the 3 x 3 centres around the present best
// centre of the field, moves there when another centre is lower, and stops when the best
// centre is in the middle of what it has analysed; it never leaves the field around its start
// centre. In an earth-pressure problem only single circles are offered, each through the foot
// of the wall, and a circle whose centre lies at or below the wall foot is turned over (its
// right half mirrored about the centre level) so that it rises from the foot.
//
// The values typed and the critical circle are kept for the whole run. A failed or ended read
// at a question returns to the central decision point.
//
// Reads:  the answers on MASTER.NFIN (the slice count in answer-file mode from the log-copy
//         channel); MASTER.NSLREQ, NUMSLC, IDTYP, IDEFTO, METHOD, EPS, NFOUT; POSTGRAF.NFCOPY
//         (6 in answer-file mode); GEOMSH XWALL, DWALL, ZWALL (the wall) and XSURF, ZSURF (the
//         soil surface); after the solver: MASTER.IERR, SF, SCORE, RFACTOR, NUMSRF, ICIRCM;
//         SURF slice corners and forces, AREA, AREAU; ISUR.MODE
// Writes: MASTER.NUMSLC and NSLREQ (when asked), NTYP (2), ICSRCH (1 while a circle whose
//         centre lies below the soil surface is analysed), ICIRCM (cleared before each
//         circle), SF (999.99 after a solver failure), BESTSF (the step search keeps the lowest
//         value of its field there); SURF.XS, ZS, SPAR(1..5); through SOLVER the surface and
//         its result
// IERR:   as the solver left it for the last circle

#include <algorithm>
#include <cmath>
#include <string>
#include <string_view>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"
#include "slices/slices.h"
#include "solver/solver.h"
#include "surfaces/surfaces.h"

namespace {

constexpr int kBatchCopy = 6;            // the log-copy channel of answer-file mode
constexpr int kMostPoints = 295;
constexpr double kFailedSF = 999.99f;    // a circle the solver could not analyse
constexpr double kNoCritical = 1.0E6f;
constexpr double kNotComputed = -1.0f;
constexpr double kGridSlack = 0.1f;      // of a step: the last centre of a grid row is reached
constexpr int kField = 9;
constexpr int kFieldMiddle = 5;

enum SearchCode { kSingle = 1, kStep = 2, kFull = 3 };
enum Fixing { kFixedPoint = 1, kFixedLevel = 2 };

struct CriticalCircle {
    int surface = 0;
    double xc = 0.0, zc = 0.0, radius = 0.0;
    double SF = kNoCritical, SCORE = 0.0, RFACTOR = 0.0;
    double stabilizing = 0.0, driving = 0.0;
    double area = 0.0, areaUndrained = 0.0;
};

// The values of the run.
struct CircleState {
    int ISRCH = 0;
    int NPTS = 0;
    double XC = 0.0, ZC = 0.0, RAD = 0.0;
    double XFIX = 0.0, ZFIX = 0.0, ZLVFIX = 0.0;
    int KFIX = 0;
    double DXZ = 0.0;
    double XCMIN = 0.0, XCMAX = 0.0, ZCMIN = 0.0, ZCMAX = 0.0;
    int NX = 0, NZ = 0;
    Arr2<double, kField, kField> SFGRID{};
    int IC = kFieldMiddle, JC = kFieldMiddle;
    CriticalCircle critical;
};
CircleState g;

bool answerFileMode() { return POSTGRAF.NFCOPY == kBatchCopy; }

void writeOut(std::string_view text) { io::writeLine(MASTER.NFOUT, text); }

bool askYes(std::string_view question) {
    io::writePrompt(MASTER.NFOUT, question);
    int answer = 0;
    YESNO(answer, MASTER.NFIN);
    return answer == 1;
}

// The number of slices, asked while it is not 1..99. An answer that can never come (the end
// of the answers, or a channel that cannot be read) returns false instead of asking without
// end.
bool askSliceCount() {
    for (;;) {
        const std::string_view prompt = " GIVE NUMBER OF SLICES..... ";
        io::writePrompt(MASTER.NFOUT, prompt);
        int from = MASTER.NFIN;
        if (answerFileMode()) {
            io::writePrompt(POSTGRAF.NFCOPY, prompt);
            from = POSTGRAF.NFCOPY;
        }
        const io::ReadStatus status = io::readAnswer(from, MASTER.NUMSLC);
        if (status == io::ReadStatus::End) return false;
        if (status == io::ReadStatus::Ok && MASTER.NUMSLC >= 1 && MASTER.NUMSLC <= MAXSLC) {
            MASTER.NSLREQ = MASTER.NUMSLC;
            return true;
        }
    }
}

// The search code (always 1 in an earth-pressure problem) and the number of polyline points,
// three for every two slices.
bool askSearchCode() {
    for (;;) {
        if (MASTER.IDTYP == 2) {
            g.ISRCH = kSingle;
        } else {
            io::writePrompt(MASTER.NFOUT, " GIVE CIRCLE SEARCH CODE :  1-SINGLE  2-STEP  3-FULL ..... ");
            if (io::readAnswer(MASTER.NFIN, g.ISRCH) != io::ReadStatus::Ok) return false;
        }
        const long long points = 2 * (3 * static_cast<long long>(MASTER.NUMSLC) / 2) + 1;
        g.NPTS = static_cast<int>(std::clamp(points, 1LL, static_cast<long long>(kMostPoints)));
        if (g.ISRCH >= kSingle && g.ISRCH <= kFull) return true;
    }
}

// The fixed point or the fixed level of a search, and whether the centres lie above it: the
// message when they do not, else empty. centreForPoint and centreForLevel are the z of the
// centres tested against the point and against the level.
std::string_view fixingProblem(double centreForPoint, double centreForLevel) {
    const double eps = MASTER.EPS;
    if (g.XFIX * g.XFIX + g.ZFIX * g.ZFIX > eps) {
        g.KFIX = kFixedPoint;
        if (std::fabs(g.ZLVFIX) > eps) return " EITHER (XFIX,ZFIX) OR (ZLVFIX) TO BE GIVEN , NOT BOTH";
        if (g.ZFIX - centreForPoint >= eps) return {};
        return " CIRCLE CENTER IS BELOW THE FIXED POINT";
    }
    g.KFIX = kFixedLevel;
    if (std::fabs(g.ZLVFIX) <= eps) return " BOTH (XFIX,ZFIX) AND (ZLVFIX) CAN NOT BE ZERO";
    if (g.ZLVFIX - centreForLevel >= eps) return {};
    return " CIRCLE CENTER IS BELOW THE FIXED Z-LEVEL";
}

double searchRadius(double xc, double zc) {
    if (g.KFIX == kFixedPoint) return std::sqrt((zc - g.ZFIX) * (zc - g.ZFIX) + (xc - g.XFIX) * (xc - g.XFIX));
    return std::fabs(zc - g.ZLVFIX);
}

// True when the centre lies below the soil surface (the slice geometry then refuses a circle
// that cuts the ground on its left prolongation).
bool centreBelowGround(double xc, double zc) {
    const int points = std::clamp(IGEOMS.NX + 1, 0, MAXCOL);
    if (points < 1) return false;
    double ground = 0.0;
    int ierr = 0;
    INTPOL(points, 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), xc, ground, ierr);
    return ierr == 0 && zc > ground;
}

// After a solver failure: the error line and whether to go on. In answer-file mode the answer
// is given without reading: yes for an error of the analysis (IERR 1 and above), else no.
bool goOnAfterFailure() {
    const std::string line = io::Line(" **** SR/CIRCLE : ERROR FROM SR/SOLVER  IERR=").I(MASTER.IERR, 5).str();
    writeOut("");
    writeOut(line);
    const std::string_view question = " SHALL AUTOMATIC SEARCH BE CONTINUED (Y/N) ..... ";
    if (!answerFileMode()) return askYes(question);
    io::writeLine(POSTGRAF.NFCOPY, line);
    io::writePrompt(MASTER.NFOUT, question);
    const bool goOn = MASTER.IERR >= 1;
    writeOut(goOn ? " YES" : " NO");
    return goOn;
}

// Stabilising and driving moments about the centre from the slice forces of the solution,
// into SPAR(4) and SPAR(5). The stabilising moment is the resisting sum (the mobilised base
// shears on their arms, the end-face shears and the nail loads, as mobilised) times SF.
void circleMoments(double xc, double zc) {
    const double SF = MASTER.SF;
    const double mobilised = SF != 0.0 ? 1.0 / SF : 0.0;
    double resisting = 0.0;
    double driving = 0.0;
    const int slices = std::clamp(MASTER.NUMSLC, 0, MAXSLC);
    for (int i = 1; i <= slices; ++i) {
        const double arm = std::hypot((SURF.XX(3, i) + SURF.XX(4, i)) / 2.0 - xc, (SURF.ZZ(3, i) + SURF.ZZ(4, i)) / 2.0 - zc);
        resisting += momentAboutCentre(i, xc, zc, SURF.SNX(i), SURF.SNZ(i), SURF.SNM(i)) * mobilised +
                     (arm - SURF.HS(i)) * mobilised * SURF.SS(i) + arm * SURF.S(i);
        driving += -SURF.SINB(i) * SURF.P(i) * (SURF.ZZ(3, i) - zc) + SURF.COSB(i) * SURF.P(i) * (xc - SURF.XX(3, i)) +
                   SURF.H3(i) * SURF.P(i) + momentAboutCentre(i, xc, zc, SURF.WX(i), SURF.WZ(i), SURF.WM(i));
    }
    // Bishop's simplified method balances the moments by its construction.
    if (MASTER.METHOD == 1) driving = -resisting;
    SURF.SPAR(4) = resisting * SF;
    SURF.SPAR(5) = driving;
}

// The circle now in XS, ZS (points of them) through the solver, and its moments. False when
// the user stops after a solver failure.
bool analyse(double xc, double zc, int points) {
    SURF.SPAR(1) = xc;
    SURF.SPAR(2) = zc;
    MASTER.ICIRCM = 0;  // the flag speaks of the circle analysed now
    MASTER.ICSRCH = centreBelowGround(xc, zc) ? 1 : 0;
    SOLVER(points);
    if (MASTER.IERR != 0) {
        MASTER.SF = kFailedSF;
        if (!goOnAfterFailure()) return false;
    }
    if (MASTER.ICIRCM == 0) circleMoments(xc, zc);
    return true;
}

// ---------------------------------------------------------------------------------------------
// Trial list and critical circle of a search
// ---------------------------------------------------------------------------------------------

void writeListHeading(bool copied) {
    const std::string_view heading =
        MASTER.IDTYP == 1
            ? "  NR  X-CENTER  Z-CENTER  RADIUS SAFETY-FAC SCORE   RFAC    STAB-MOM    DRIV-MOM  AREA  AREA-UNDRAINED"
            : " SURFACE  X-CENTER  Z-CENTER   RADIUS     E2-FORCE   T2-FORCE  H2-HEIGHT  SCORE";
    writeOut("");
    writeOut(heading);
    if (copied) {
        io::writeLine(POSTGRAF.NFCOPY, "");
        io::writeLine(POSTGRAF.NFCOPY, heading);
    }
}

void writeListLine(double xc, double zc, double radius, double area, double areaUndrained) {
    io::Line line;
    line.I(MASTER.NUMSRF, 4);
    if (MASTER.IDTYP == 1) {
        line.F(xc, 9, 2).F(zc, 10, 2).F(radius, 9, 3).F(MASTER.SF, 10, 3).F(MASTER.SCORE, 7, 3).F(MASTER.RFACTOR, 7, 2);
        line.E(SURF.SPAR(4), 12, 3).E(SURF.SPAR(5), 12, 3).F(area, 7, 1).F(areaUndrained, 7, 1);
    } else {
        const int last = std::clamp(MASTER.NUMSLC, 1, MAXSLC);
        line.F(xc, 14, 3).F(zc, 10, 3).F(radius, 9, 3);
        line.ES(SURF.E2(last), 13, 3).ES(SURF.T2(last), 11, 3).ES(SURF.H2(last), 11, 3).F(MASTER.SCORE, 7, 3);
    }
    say(line.str());
}

// One circle of a search: analysed, listed, and kept when it is the critical one so far. False
// when the user stops after a solver failure.
bool searchCircle(double xc, double zc) {
    const double radius = searchRadius(xc, zc);
    int points = g.NPTS;
    CIRSRF(points, xc, zc, radius, SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
    if (!analyse(xc, zc, points)) return false;

    double area = 0.0;
    double areaUndrained = 0.0;
    const int slices = std::clamp(MASTER.NUMSLC, 0, MAXSLC);
    for (int i = 1; i <= slices; ++i) {
        area += SURF.AREA(i);
        // In a combined analysis only the bases that failed undrained count.
        if (MASTER.IDEFTO != 3 || ISUR.MODE(i) != 1) areaUndrained += SURF.AREAU(i);
    }
    writeListLine(xc, zc, radius, area, areaUndrained);

    if (MASTER.SF <= g.critical.SF) {
        g.critical = {MASTER.NUMSRF, xc,       zc,           radius, MASTER.SF, MASTER.SCORE, MASTER.RFACTOR,
                      SURF.SPAR(4),  SURF.SPAR(5), area, areaUndrained};
    }
    return true;
}

// The summary of the critical circle, then whether to search again.
bool summaryAndAgain() {
    const CriticalCircle& c = g.critical;
    const std::string rule = " " + io::repeat('+', 78);
    writeOut("");
    writeOut(rule);
    writeOut(io::Line(" CRITICAL CIRCLE SUMMARY :").A("   SURFACE = ").I(c.surface, 5).str());
    writeOut(" X-CENTER  Z-CENTER  RADIUS  SAFETY  SCORE  R-FACTOR  STAB-MOMENT  DRIV-MOMENT  AREA  AREA-UNDRAINED");
    writeOut(io::Line()
                 .F(c.xc, 9, 3)
                 .F(c.zc, 10, 3)
                 .F(c.radius, 8, 3)
                 .F(c.SF, 8, 3)
                 .F(c.SCORE, 7, 3)
                 .F(c.RFACTOR, 8, 3)
                 .X(1)
                 .ES(c.stabilizing, 13, 3)
                 .ES(c.driving, 13, 3)
                 .F(c.area, 7, 2)
                 .F(c.areaUndrained, 7, 2)
                 .str());
    writeOut(rule);
    writeOut("");
    return askYes(" SHALL NEW CIRCLE SEARCH BE TRIED (Y/N)..... ");
}

// ---------------------------------------------------------------------------------------------
// Single circles
// ---------------------------------------------------------------------------------------------

void showSingleResult() {
    if (MASTER.IDTYP == 1) {
        say("");
        say(safetyFactorLine());
        say(io::Line(" STABILIZING AND DRIVING MOMENT =").ES(SURF.SPAR(4), 12, 3).ES(SURF.SPAR(5), 12, 3).str());
        return;
    }
    say(wallForceLine(std::clamp(MASTER.NUMSLC, 1, MAXSLC)));
}

// A circle whose centre lies at or below the wall foot, turned over: its lowest point and its
// right half (points m+1..NPTS) go to the front, mirrored about the centre level, so that the
// polyline rises from the top of the circle through the wall foot; its last point is lifted to
// 100 wall heights above the foot. Returns the new number of points.
int turnOverAtWall(int points, double zc) {
    const int m = points / 2;
    for (int k = m + 1; k <= points; ++k) {
        SURF.XS(k - m) = SURF.XS(k);
        SURF.ZS(k - m) = 2.0 * zc - SURF.ZS(k);
    }
    const int turned = points - m;
    SURF.ZS(turned) = GEOMSH.ZWALL - 100.0 * GEOMSH.DWALL;
    return turned;
}

void singleCircles() {
    for (;;) {
        writeOut(" X-CNTR  Z-CNTR  RADIUS  X-FIX  Z-FIX , PLEASE SPECIFY");
        io::writePrompt(MASTER.NFOUT, " ");
        if (io::readAnswer(MASTER.NFIN, g.XC, g.ZC, g.RAD, g.XFIX, g.ZFIX) != io::ReadStatus::Ok) return;
        SURF.SPAR(1) = g.XC;
        SURF.SPAR(2) = g.ZC;
        const double eps = MASTER.EPS;
        if (MASTER.IDTYP != 2 && g.RAD <= eps && g.ZFIX - g.ZC <= -eps) {
            const std::string_view message = " CIRCLE CENTER IS BELOW THE FIXED POINT";
            writeOut(message);
            if (answerFileMode()) {
                io::writeLine(POSTGRAF.NFCOPY, message);
                if (!askYes(" SHALL NEW SINGLE CIRCLE BE TRIED (Y/N)..... ")) return;
            }
            continue;
        }

        double radius = g.RAD >= eps ? g.RAD : std::hypot(g.XC - g.XFIX, g.ZC - g.ZFIX);
        if (MASTER.IDTYP == 2) radius = std::hypot(g.XC - GEOMSH.XWALL, g.ZC - GEOMSH.ZWALL);
        int points = g.NPTS;
        CIRSRF(points, g.XC, g.ZC, radius, SURF.XS.data(), SURF.ZS.data(), SURF.SPAR.data());
        if (MASTER.IDTYP != 1 && GEOMSH.ZWALL <= g.ZC) points = turnOverAtWall(points, g.ZC);

        if (!analyse(g.XC, g.ZC, points)) return;
        showSingleResult();
        if (!askYes(" SHALL NEW SINGLE CIRCLE BE TRIED (Y/N)..... ")) return;
    }
}

// ---------------------------------------------------------------------------------------------
// Searches
// ---------------------------------------------------------------------------------------------

// A fixing problem of a search: the message, then a new input, except that a step search in
// answer-file mode offers single circles instead. False when the search is not asked again.
bool reportFixingProblem(std::string_view message, bool stepSearch) {
    say("");
    say(message);
    if (!stepSearch || !answerFileMode()) return true;
    if (askYes(" SHALL NEW SINGLE CIRCLE BE TRIED (Y/N)..... ")) singleCircles();
    return false;
}

bool readStepInput() {
    for (;;) {
        writeOut("");
        writeOut(" GIVE : XFIX,ZFIX = FIXED POINT THAT ALL CIRCLES SHALL PASS");
        writeOut("        ZLVFIX    = Z-LEVEL THAT ALL CIRCLES SHALL TOUCH");
        writeOut("        XC,ZC     = CIRCLE CENTER LOCATION GUESS");
        writeOut("        DXZ       = STEP VALUE FOR CIRCLE CENTER SHIFT");
        writeOut("  XFIX   ZFIX   ZLVFIX    XC    ZC    DXZ");
        io::writePrompt(MASTER.NFOUT, " ");
        if (io::readAnswer(MASTER.NFIN, g.XFIX, g.ZFIX, g.ZLVFIX, g.XC, g.ZC, g.DXZ) != io::ReadStatus::Ok) return false;
        // Only the start centre is tested against a fixed point, the deepest centre of the
        // field against a fixed level.
        const std::string_view problem = fixingProblem(g.ZC, g.ZC + 4.0 * g.DXZ);
        if (problem.empty()) return true;
        if (!reportFixingProblem(problem, true)) return false;
    }
}

double fieldX(int I) { return g.XC + (I - kFieldMiddle) * g.DXZ; }
double fieldZ(int J) { return g.ZC + (J - kFieldMiddle) * g.DXZ; }

// The 3 x 3 centres around (IC, JC), within the field, that have no value yet. False when the
// user stops after a solver failure; lastCircle is set when a zero step ends the search.
bool sweepAroundBest(bool& lastCircle) {
    const double eps = MASTER.EPS;
    for (int J = std::max(g.JC - 1, 1); J <= std::min(g.JC + 1, kField); ++J) {
        for (int I = std::max(g.IC - 1, 1); I <= std::min(g.IC + 1, kField); ++I) {
            if (g.SFGRID(I, J) > 0.0) continue;
            if (!searchCircle(fieldX(I), fieldZ(J))) return false;
            g.SFGRID(I, J) = MASTER.SF;
            if (g.DXZ < eps) {
                lastCircle = true;
                return true;
            }
        }
    }
    return true;
}

// The field node of the lowest value found so far, scanning I outer and J inner; a tie goes to
// the node scanned later. The running lowest value is kept in BESTSF.
void lowestNode(int& lowI, int& lowJ) {
    MASTER.BESTSF = kNoCritical;
    lowI = g.IC;
    lowJ = g.JC;
    for (int I = 1; I <= kField; ++I) {
        for (int J = 1; J <= kField; ++J) {
            const double value = g.SFGRID(I, J);
            if (value >= 0.0 && value <= MASTER.BESTSF) {
                MASTER.BESTSF = value;
                lowI = I;
                lowJ = J;
            }
        }
    }
}

void stepSearch() {
    for (;;) {
        if (!readStepInput()) return;
        g.SFGRID.fill(kNotComputed);
        g.IC = kFieldMiddle;
        g.JC = kFieldMiddle;
        g.critical.SF = kNoCritical;
        writeListHeading(true);
        // Every sweep that moves goes to a node analysed in it, so at most 81 sweeps are made.
        for (;;) {
            bool lastCircle = false;
            if (!sweepAroundBest(lastCircle)) return;
            if (lastCircle) break;
            int lowI = 0, lowJ = 0;
            lowestNode(lowI, lowJ);
            if (lowI == g.IC && lowJ == g.JC) break;
            g.IC = lowI;
            g.JC = lowJ;
        }
        if (!summaryAndAgain()) return;
    }
}

bool readGridInput() {
    for (;;) {
        writeOut("");
        writeOut(" GIVE: XFIX,ZFIX   = FIX POINT COORDINATES, ALL CIRCLES PASS THROUGH");
        writeOut("       ZLVFIX      = FIXED Z-LEVEL, ALL CIRCLES TOUCH");
        writeOut("       XCMIN,XCMAX = CIRCLE CENTER X-BOUNDARIES");
        writeOut("       ZCMIN,ZCMAX = CIRCLE CENTER Z-BOUNDARIES");
        writeOut("       NX,NZ       = NUMBER OF DIVISIONS IN X- AND Z-DIRECTIONS");
        writeOut("  XFIX  ZFIX  ZLVFIX  XCMIN  XCMAX  ZCMIN  ZCMAX  NX  NZ");
        io::writePrompt(MASTER.NFOUT, " ");
        if (io::readAnswer(MASTER.NFIN, g.XFIX, g.ZFIX, g.ZLVFIX, g.XCMIN, g.XCMAX, g.ZCMIN, g.ZCMAX, g.NX, g.NZ) !=
            io::ReadStatus::Ok)
            return false;
        if (g.XCMAX < g.XCMIN || g.ZCMAX < g.ZCMIN || g.NX < 1 || g.NZ < 1) continue;
        const std::string_view problem = fixingProblem(g.ZCMAX, g.ZCMAX);
        if (problem.empty()) return true;
        reportFixingProblem(problem, false);
    }
}

void fullSearch() {
    for (;;) {
        if (!readGridInput()) return;
        const double DX = (g.XCMAX - g.XCMIN) / g.NX;
        const double DZ = (g.ZCMAX - g.ZCMIN) / g.NZ;
        writeListHeading(false);
        g.critical.SF = kNoCritical;
        // The centres are reached by adding the step, as far as the far boundary and a tenth of
        // a step; the counts keep a zero-width range (or a step lost in the size of the
        // coordinate) to its NX + 1 columns and NZ + 1 rows instead of going on for ever.
        double xc = g.XCMIN;
        for (long long column = 0; column <= g.NX && xc <= g.XCMAX + kGridSlack * DX; ++column, xc += DX) {
            double zc = g.ZCMIN;
            for (long long row = 0; row <= g.NZ && zc <= g.ZCMAX + kGridSlack * DZ; ++row, zc += DZ) {
                if (!searchCircle(xc, zc)) return;
            }
        }
        if (!summaryAndAgain()) return;
    }
}

void circleDialogue() {
    MASTER.NTYP = 2;
    if (MASTER.NSLREQ == 0 && !askSliceCount()) return;
    if (!askSearchCode()) return;
    if (g.ISRCH == kSingle) singleCircles();
    if (g.ISRCH == kStep) stepSearch();
    if (g.ISRCH == kFull) fullSearch();
}

}  // namespace

void resetCircleRunState() { g = CircleState(); }

void CIRCLE() {
    circleDialogue();
    MASTER.ICSRCH = 0;  // other surface types never ask for the circle test of the slice geometry
}
