// output/post.cpp
//
// POST — saves one analysed surface to the post-processor file (channel NF17, KALMO.PLT).
//
// Appends one block: a page top line, the titles, the counts and results of the surface, its
// parameters, and the slice tables a graphical post-processor needs (geometry and initial
// roughness, strengths and pore pressures, forces and roughness, centre loads and arms), the
// nail tables when the problem has soil nails, the strengths and shear forces of a combined
// analysis with the share of undrained failure, and the slice areas with their sums. Every
// record is labelled, so that the file can be read back by label (output/readplt.h).
//
// The last surface is saved when the save-selection flag KLSAVE is negative, else the best
// surface of the run. Saving the best surface restores it, with its slice failure modes, into
// the current surface records, as the result print does; the run's surface number, type and
// slice count stay as they are.
//
// Nail results are taken as the soil nail force routine keeps them: per nail i
// ISNAIL.INAIL(i, 2) the failure mode, SNAILS.SN(i, 17) the active length, SN(i, 18) the axial
// and SN(i, 19) the lateral force; SN(i, 1..5) the head, the tip and the spacing and
// SN(i, 13..15) the three further values, as read.
//
// Reads:  MASTER.KLSAVE, NUMSRF, NTYP, NUMSLC, METHOD, IDEFTO, SF, SCORE, RFACTOR, MISC1..5,
//         VALMSC1..5, NF17; TEXT.TITLE, VERSION; SURF (SPAR, corners, slice columns); ISUR.MODE;
//         ISNAIL, SNAILS; for the best surface IBES, BEST and ISUR.NSRFCP
// Writes: MASTER.DATTIM; one block on NF17; for the best surface also MASTER.SF, SCORE,
//         RFACTOR, SURF(1..NSRFCP), ISUR.MODE and, with nails, ISNAIL.INAIL and SNAILS.SN
// IERR:   not used. A slice count or surface copy length out of range writes a message to the
//         console output and log-copy channels and saves nothing.

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "io/channels.h"
#include "io/fmt.h"
#include "output/output.h"
#include "records.h"
#include "slices/slices.h"

namespace {

// Places of the soil nail results in the nail records.
constexpr int kNailMode = 2;          // ISNAIL.INAIL(i, 2): failure mode
constexpr int kNailActiveLength = 17; // SNAILS.SN(i, 17..19): active length, axial and
constexpr int kNailAxialForce = 18;   //   lateral force at the shear surface
constexpr int kNailLateralForce = 19;
constexpr int kNailFurther = 13;      // SN(i, 13..15): the three further values as read
constexpr int kDrained = 1;

void writePost(std::string_view text) { io::writeLine(MASTER.NF17, text); }

// A table row: the slice or nail number (I4), 1X and the values (E12.4 with scale 1).
io::Line tableRow(int number, std::initializer_list<double> values) {
    io::Line row;
    row.I(number, 4).X(1);
    for (double value : values) row.ES(value, 12, 4);
    return row;
}

void writeRow(int number, std::initializer_list<double> values) { writePost(tableRow(number, values).str()); }

void writeHeading(std::string_view title, std::string_view columns) {
    writePost(title);
    writePost(columns);
}

void writeCounts(int surfaceNumber, int surfaceType, int sliceCount) {
    writePost("");
    writePost(" NUMSRF  NTYP  NUMSLC  METHOD  IDEFTO  NNAILS  MISC1 MISC2 MISC3 MISC4 MISC5");
    writePost(io::Line()
                  .I(surfaceNumber, 5)
                  .I(surfaceType, 7)
                  .I(sliceCount, 7)
                  .I(MASTER.METHOD, 8)
                  .I(MASTER.IDEFTO, 8)
                  .I(ISNAIL.NNAILS, 8)
                  .I(MASTER.MISC1, 7)
                  .I(MASTER.MISC2, 6)
                  .I(MASTER.MISC3, 6)
                  .I(MASTER.MISC4, 6)
                  .I(MASTER.MISC5, 6)
                  .str());
    writePost(" SAFETY.FCT  SCORE  R-FACTOR   VALMSC1  VALMSC2  VALMSC3  VALMSC4  VALMSC5");
    writePost(io::Line()
                  .F(MASTER.SF, 9, 4)
                  .F(MASTER.SCORE, 9, 3)
                  .F(MASTER.RFACTOR, 8, 3)
                  .X(2)
                  .F(MASTER.VALMSC1, 9, 3)
                  .F(MASTER.VALMSC2, 9, 3)
                  .F(MASTER.VALMSC3, 9, 3)
                  .F(MASTER.VALMSC4, 9, 3)
                  .F(MASTER.VALMSC5, 9, 3)
                  .str());
}

void writeSurfaceParameters() {
    writePost("");
    for (int first : {1, 6}) {
        io::Line line;
        line.X(1);
        for (int k = first; k < first + 5; ++k) line.ES(SURF.SPAR(k), 12, 4);
        line.A(first == 1 ? " STORE(1,2,3,4,5)" : " STORE(6,7,8,9,10)");
        writePost(line.str());
    }
    writePost(" ");
}

void writeSliceTables(int slices, bool withNails) {
    const double SF = MASTER.SF;
    writeHeading(" GEOMETRY AND INITIAL ROUGHNESS",
                 " SLICE  X2          Z2          Z3          X5          Z5          R0");
    // Row 0 is the left side of the first slice: its x, top and bottom.
    writeRow(0, {SURF.XX(1, 1), SURF.ZZ(1, 1), SURF.ZZ(4, 1)});
    for (int i = 1; i <= slices; ++i)
        writeRow(i, {SURF.XX(2, i), SURF.ZZ(2, i), SURF.ZZ(3, i), SURF.XX(5, i), SURF.ZZ(5, i), SURF.R0(i)});

    writeHeading(" SOIL STRENGTHS AND PWP", " SLICE  C2          C3         TAN2        TAN3          U2          U3");
    for (int i = 1; i <= slices; ++i)
        writeRow(i, {SURF.C2(i), SURF.C3(i), SURF.TAN2(i), SURF.TAN3(i), SURF.U2(i), SURF.U3(i)});

    writeHeading(" CALCULATED FORCES AND ROUGHNESS",
                 " SLICE  P           S           E2          T2          SS          R ");
    for (int i = 1; i <= slices; ++i)
        writeRow(i, {SURF.P(i), SURF.S(i), SURF.E2(i), SURF.T2(i), SURF.SS(i) / SF, SURF.R(i)});

    // The nail loads act on the slices mobilised by the safety factor.
    writeHeading(" CENTER LOADS AND MOMENT ARMS",
                 " SLICE  WX+SNX      WZ+SNZ      WM+SNM      H2          H3          HS");
    for (int i = 1; i <= slices; ++i)
        writeRow(i, {SURF.WX(i) + SURF.SNX(i) / SF, SURF.WZ(i) + SURF.SNZ(i) / SF, SURF.WM(i) + SURF.SNM(i) / SF,
                     SURF.H2(i), SURF.H3(i), SURF.HS(i)});

    if (!withNails) return;
    writeHeading(" CENTRE LOADS (WX,WZ,WM) NEGLECTING SOIL NAILS AND THE NAIL LOADS (SNX,SNZ,SNM)",
                 " SLICE  WX          WZ          WM          SNX         SNZ         SNM");
    for (int i = 1; i <= slices; ++i)
        writeRow(i, {SURF.WX(i), SURF.WZ(i), SURF.WM(i), SURF.SNX(i) / SF, SURF.SNZ(i) / SF, SURF.SNM(i) / SF});
}

void writeNailTables() {
    const double SF = MASTER.SF;
    const int nails = std::clamp(ISNAIL.NNAILS, 0, MAXNAI);
    writeHeading(" SOIL NAIL GEOMETRY VALUES",
                 " NAIL   X.HEAD      Z.HEAD      X.TIP       Z.TIP       C/C.DIST  ACTIVE.LNGTH");
    for (int n = 1; n <= nails; ++n) {
        const auto sn = [n](int k) { return SNAILS.SN(n, k); };
        writeRow(n, {sn(1), sn(2), sn(3), sn(4), sn(5), sn(kNailActiveLength)});
    }
    writeHeading(" SOIL NAIL FORCES AT SHEAR SURFACE INTERSECTION (UNITS=FORCE) AND MISC VALUES",
                 " NAIL   FRC.AXIAL   FRC.LATRL    MISC.1      MISC.2      MISC.3    FAIL.MODE");
    for (int n = 1; n <= nails; ++n) {
        const auto sn = [n](int k) { return SNAILS.SN(n, k); };
        io::Line row = tableRow(n, {sn(kNailAxialForce) / SF, sn(kNailLateralForce) / SF, sn(kNailFurther),
                                    sn(kNailFurther + 1), sn(kNailFurther + 2)});
        writePost(row.I(ISNAIL.INAIL(n, kNailMode), 6).str());
    }
}

// Strengths and shear forces per slice in a combined analysis, and the share of the shear
// force that comes from slices failing undrained.
void writeCombinedTable(int slices) {
    writeHeading(" COMBINED ANALYSIS : SHEAR STRENGTH PARAMETERS AND SHEAR FORCES",
                 " SLICE  C3          TAN3        SU3        S1-DRAINED  S2-UNDRNED  FAILURE MODE");
    double drainedShear = 0.0, undrainedShear = 0.0;
    for (int i = 1; i <= slices; ++i) {
        const int mode = ISUR.MODE(i);
        if (mode == kDrained) drainedShear += SURF.S1(i);
        else undrainedShear += SURF.S2(i);
        io::Line row = tableRow(i, {SURF.C3(i), SURF.TAN3(i), SURF.SU3(i), SURF.S1(i), SURF.S2(i)});
        writePost(row.I(mode, 4).A(mode == kDrained ? " Drained" : " Undrained").str());
    }
    // A sum of zero gives an undefined share, written as it is.
    writePost("");
    writePost(io::Line()
                  .F(undrainedShear / (drainedShear + undrainedShear), 7, 3)
                  .A("  Contribution from undrained failure =")
                  .A("  SUM(S2) / [SUM(S1)+SUM(S2)]")
                  .str());
}

// Slice areas. In a combined analysis a drained slice has no undrained area.
void writeAreaTable(int slices) {
    const bool combined = MASTER.IDEFTO == 3;
    writePost(" SLICE  AREA      AREA-UNDRAINED");
    double areaSum = 0.0, undrainedSum = 0.0;
    for (int i = 1; i <= slices; ++i) {
        const double undrainedArea = combined && ISUR.MODE(i) == kDrained ? 0.0 : SURF.AREAU(i);
        areaSum += SURF.AREA(i);
        undrainedSum += undrainedArea;
        writePost(io::Line().I(i, 4).X(1).E(SURF.AREA(i), 12, 4).E(undrainedArea, 12, 4).str());
    }
    writePost(io::Line().A(" SUM").X(1).E(areaSum, 12, 4).E(undrainedSum, 12, 4).str());
}

}  // namespace

void POST() {
    const bool lastSurface = MASTER.KLSAVE < 0;
    const int surfaceNumber = lastSurface ? MASTER.NUMSRF : IBES.NUMSRF;
    const int surfaceType = lastSurface ? MASTER.NTYP : IBES.NTYP;
    const int sliceCount = lastSurface ? MASTER.NUMSLC : IBES.NUMSLC;
    if (sliceCount < 0 || sliceCount > MAXSLC || (!lastSurface && (ISUR.NSRFCP < 0 || ISUR.NSRFCP > NSURFCOPY))) {
        say(io::Line(" **** SR/POST : SURFACE RECORD SIZE OUT OF RANGE  NSRFCP,NUMSLC=")
                .Free(ISUR.NSRFCP)
                .Free(sliceCount)
                .str());
        return;
    }
    if (!lastSurface) {
        RSTSRF();
        for (int i = 1; i <= sliceCount; ++i) ISUR.MODE(i) = IBES.MODE(i);
    }

    PAGHED(MASTER.NF17);

    const bool withNails = ISNAIL.NNAILS > 0;
    writeCounts(surfaceNumber, surfaceType, sliceCount);
    writeSurfaceParameters();
    writeSliceTables(sliceCount, withNails);
    if (withNails) writeNailTables();
    if (MASTER.IDEFTO == 3) writeCombinedTable(sliceCount);
    writeAreaTable(sliceCount);
}
