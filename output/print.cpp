// output/print.cpp
//
// PRINT — the result print of one analysed shear surface on the result file (channel NF16).
//
// Prints the last surface (KLAST < 0) or the best surface of the run (otherwise): a page top,
// the two title lines, the summary header with safety factor and score, a line that describes
// the surface by its type and parameters, the solution method, and two lines per slice with
// geometry, total forces, interslice and base forces (or stresses), roughness, the relative
// arms H2/Z23 and H3/L34 and a count of suspicious values; with soil nails the nail table
// follows on a new page. Printing the best surface first restores it into the current surface
// records (the slice failure modes excepted), so the best surface becomes the current one; the
// caller's print states say so.
//
// Reads:  MASTER.KBEST, KLAST, NUMSRF, NTYP, NUMSLC, JSTRES, JPLOT, IDEFTO, METHOD, EPS,
//         NF16, NFOUT; POSTGRAF.NFCOPY; TEXT.TITLE, VERSION; SURF (SPAR, corners XX/ZZ and the
//         slice forces); IBES, BEST and ISUR.NSRFCP for the best surface; ISNAIL.NNAILS
// Writes: MASTER.DATTIM; for the best surface also MASTER.SF, SCORE, RFACTOR, SURF(1..NSRFCP)
//         and, when nails exist, ISNAIL.INAIL and SNAILS.SN; the result lines on NF16
// IERR:   unchanged on success; 1 a slice with X3 - X4 < EPS stopped the print (the lines
//         written so far stay); 2 the slice count or the surface copy length is out of range
//         (nothing is restored or printed)

#include <cmath>
#include <string>
#include <string_view>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "output/output.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kArmRatioLimit = 10.0;
constexpr double kArmRatioClip = 9.999f;      // printed in place of a side ratio beyond the limit
constexpr double kRoughnessLimit = 1.001f;    // mobilised roughness beyond which a slice warns

// The analysis text of the method line keeps its content from call to call: an analysis code
// outside 1..3 prints the text of the previous print.
std::string gAnalysisText(25, ' ');

void writeResult(std::string_view text) { io::writeLine(MASTER.NF16, text); }

void writeSummaryHeader(int surfaceNumber) {
    std::string_view kind;
    if (MASTER.JSTRES == 1) kind = "     SUMMARY OF GEOMETRY AND FORCES";
    else if (MASTER.JSTRES == 2) kind = "     SUMMARY OF GEOMETRY AND STRESSES";
    else return;
    writeResult("");
    writeResult(io::Line().X(1).A(io::repeat('=', 53)).A("  SAFETY FACTOR =").F(MASTER.SF, 9, 3).str());
    writeResult(io::Line().A(" SURFACE NO :").I(surfaceNumber, 4).A(kind).str());
    writeResult(io::Line().X(1).A(io::repeat('=', 53)).A("  SOLUTION SCORE=").F(MASTER.SCORE, 9, 3).str());
}

// The two lines of a combined surface whose centre lies below the surface or that is shaped
// as a beam: left and right x, base z, centre, exit angle.
void writeCombinedLowLines(std::string_view variant, std::string_view shape) {
    writeResult("");
    writeResult(io::Line()
                    .A(" SURFACE TYPE = ")
                    .A(variant)
                    .A("    XLEFT   XRGHT   ZBASE")
                    .A("   XCNTR   ZCNTR  ANGEXIT")
                    .str());
    io::Line values;
    values.X(16).A(shape).X(1);
    for (int k = 1; k <= 5; ++k) values.F(SURF.SPAR(k), 8, 2);
    values.F(SURF.SPAR(6), 7, 1);
    writeResult(values.str());
}

// Heading and value line of the surface by its type. The comparisons are strict: a combined
// surface whose variant mark SPAR(7) is exactly 1 or 2, an earth-pressure plane with SF
// exactly 0 and any other type print nothing here.
void writeSurfaceLines(int surfaceType) {
    const Arr1<double, 10>& spar = SURF.SPAR;
    if (surfaceType == 1) {
        writeResult("");
        writeResult(io::Line().A(" SURFACE TYPE = GENERAL").X(8).A("X-START   Z-START").A("     X-END    Z-END").str());
        writeResult(io::Line().X(26).F(spar(1), 11, 3).F(spar(2), 10, 3).F(spar(3), 11, 3).F(spar(4), 9, 3).str());
    } else if (surfaceType == 2) {
        writeResult("");
        writeResult(io::Line().A(" SURFACE TYPE = CIRCLE").X(9).A("X-CENTER  Z-CENTER").A("   RADIUS").str());
        writeResult(io::Line().X(27).F(spar(1), 11, 3).F(spar(2), 10, 3).F(spar(3), 10, 3).str());
    } else if (surfaceType == 3) {
        if (spar(7) < 1.0) {
            writeResult("");
            writeResult(io::Line().A(" SURFACE TYPE = COMBINED-1").X(5).A("XSURF1 X-CENTER").A(" Z-CENTER  RADIUS  ANGLE2").str());
            writeResult(io::Line()
                            .X(16)
                            .A("CNTR ABOVE")
                            .F(spar(1), 11, 3)
                            .F(spar(2), 8, 3)
                            .F(spar(3), 9, 3)
                            .F(spar(4), 9, 3)
                            .F(spar(5), 7, 1)
                            .str());
        } else if (spar(7) > 1.0 && spar(7) < 2.0) {
            writeCombinedLowLines("COMBINED-2", "CNTR BELOW");
        } else if (spar(7) > 2.0) {
            writeCombinedLowLines("COMBINED-3", "BEAM SHAPE");
        }
    } else if (surfaceType == 4) {
        // Active pressure is analysed with a positive given factor, passive with a negative one.
        std::string_view side;
        if (MASTER.SF > 0.0) side = "ACTIVE ";
        else if (MASTER.SF < 0.0) side = "PASSIVE";
        else return;
        writeResult("");
        writeResult(" SURFACE TYPE = EARTH PRESSURE PLANE    ANGLE  X-SURFACE  X-WALL  H-WALL");
        writeResult(io::Line()
                        .X(16)
                        .A(side)
                        .X(17)
                        .F(spar(1), 5, 2)
                        .F(spar(2), 10, 3)
                        .F(spar(3), 9, 3)
                        .F(spar(4), 8, 3)
                        .str());
    }
}

void writeMethodLine() {
    if (MASTER.IDEFTO == 1) gAnalysisText = "EFFECTIVE STRESS ANALYSIS";
    else if (MASTER.IDEFTO == 2) gAnalysisText = "TOTAL STRESS ANALYSIS    ";
    else if (MASTER.IDEFTO == 3) gAnalysisText = "SWEDISH COMBINED ANALYSIS";

    std::string_view method;
    switch (MASTER.METHOD) {
        case -1: method = " SOLUTION METHOD = Force Equilibrium / "; break;
        case 0: method = " SOLUTION METHOD = KALMO 1988-2002 / "; break;
        case 1: method = " SOLUTION METHOD = Bishop Simplified / "; break;
        case 2: method = " SOLUTION METHOD = Bishop Modified / "; break;
        case 3: method = " SOLUTION METHOD = KALMO-2003 / "; break;
        default: return;
    }
    writeResult("");
    writeResult(io::Line().A(method).A(gAnalysisText, 25).str());
}

void writeColumnHeadings() {
    std::string_view suffix;
    if (MASTER.JSTRES == 1) suffix = "FRC";
    else if (MASTER.JSTRES == 2) suffix = "STR";
    else return;
    std::string tag(suffix);
    writeResult("");
    writeResult(io::Line()
                    .A(" SLICE    X1      Z1      Z2     WXT-FRC    P-" + tag)
                    .X(6)
                    .A("E2-" + tag + "     U2-" + tag + "    ROUGH  H2/Z23")
                    .str());
    writeResult(io::Line()
                    .X(10)
                    .A("X2      Z4")
                    .X(6)
                    .A("Z3     WZT-FRC    S-" + tag + "      T2-" + tag + "     U3-" + tag)
                    .X(11)
                    .A("H3/L34")
                    .str());
}

}  // namespace

void PRINT() {
    if (MASTER.KBEST == 0) {
        say("");
        say(" ABOVE PRINT ORDER NEGLECTED , NO DATA ON FILE");
        return;
    }

    const bool lastSurface = MASTER.KLAST < 0;
    const int surfaceNumber = lastSurface ? MASTER.NUMSRF : IBES.NUMSRF;
    const int surfaceType = lastSurface ? MASTER.NTYP : IBES.NTYP;
    const int sliceCount = lastSurface ? MASTER.NUMSLC : IBES.NUMSLC;
    if (sliceCount < 0 || sliceCount > MAXSLC || (!lastSurface && (ISUR.NSRFCP < 0 || ISUR.NSRFCP > NSURFCOPY))) {
        say(io::Line(" **** SR/PRINT : SURFACE RECORD SIZE OUT OF RANGE  NSRFCP,NUMSLC=")
                .Free(ISUR.NSRFCP)
                .Free(sliceCount)
                .str());
        MASTER.IERR = 2;
        return;
    }
    if (!lastSurface) RSTSRF();  // the slice failure modes and the run's counts stay

    int elapsed = 0;
    TIMER0(0, 0, 0, elapsed, MASTER.DATTIM);
    TOPLIN(MASTER.NF16, TEXT.VERSION.view(), MASTER.DATTIM);

    writeResult("");
    writeResult(io::Line().X(1).A(TEXT.TITLE(1).view()).str());
    writeResult(io::Line().X(1).A(TEXT.TITLE(2).view()).str());

    writeSummaryHeader(surfaceNumber);
    writeSurfaceLines(surfaceType);
    writeMethodLine();
    writeColumnHeadings();

    const bool stresses = MASTER.JSTRES == 2;
    for (int i = 1; i <= sliceCount; ++i) {
        const double X1 = SURF.XX(1, i), X2 = SURF.XX(2, i), X3 = SURF.XX(3, i), X4 = SURF.XX(4, i);
        const double Z1 = SURF.ZZ(1, i), Z2 = SURF.ZZ(2, i), Z3 = SURF.ZZ(3, i), Z4 = SURF.ZZ(4, i);

        // Height of the right side; a side of no height is measured as EPS so that the arm
        // ratio comes out clipped with the sign of H2 instead of undefined.
        const double sideHeight = Z3 - Z2;
        const double sideDivisor = std::fabs(sideHeight) < MASTER.EPS ? MASTER.EPS : sideHeight;
        double armRatioE2 = SURF.H2(i) / sideDivisor;
        if (std::fabs(armRatioE2) > kArmRatioLimit) armRatioE2 = std::copysign(kArmRatioClip, armRatioE2);

        const double baseWidth = X3 - X4;
        if (baseWidth < MASTER.EPS) {
            say("");
            say("");
            say(" **** SR/PRINT : GEOMETRY ERROR  SLICE,X3,X4 =");
            say(io::Line().I(i, 8).E(X3, 15, 4).E(X4, 15, 4).str());
            MASTER.IERR = 1;
            return;
        }
        const double armRatioP = (SURF.H3(i) / baseWidth) * SURF.COSB(i);

        // Total forces on the slice: loads, water on the sides and the base, and the nail
        // forces mobilised by the safety factor.
        const double totalX = SURF.WX(i) - SURF.U1(i) + SURF.U2(i) - SURF.SINB(i) * SURF.U3(i) + SURF.SNX(i) / MASTER.SF;
        const double totalZ = SURF.WZ(i) + SURF.COSB(i) * SURF.U3(i) + SURF.SNZ(i) / MASTER.SF;

        // The last slice carries the end force (an earth-pressure wall force, for one): its
        // interslice values are not suspicious.
        int warnings = 0;
        if (SURF.P(i) < 0.0) ++warnings;
        if (armRatioP > 1.0) ++warnings;
        if (armRatioP < 0.0) ++warnings;
        if (i != sliceCount) {
            if (SURF.E2(i) < 0.0) ++warnings;
            if (armRatioE2 > 1.0) ++warnings;
            if (armRatioE2 < 0.0) ++warnings;
            if (std::fabs(SURF.R(i)) > kRoughnessLimit) ++warnings;
        }
        if (totalZ < 0.0) ++warnings;

        double baseNormal = SURF.P(i), sideNormal = SURF.E2(i), sideWater = SURF.U2(i);
        double baseShear = SURF.S(i), sideShear = SURF.T2(i), baseWater = SURF.U3(i);
        if (stresses) {
            // Side stresses divide by the true side height: a side of no height is not guarded.
            const double baseLength = SURF.L34(i);
            baseNormal /= baseLength;
            sideNormal /= sideHeight;
            sideWater /= sideHeight;
            baseShear /= baseLength;
            sideShear /= sideHeight;
            baseWater /= baseLength;
        }

        io::Line first;
        first.I(i, 4).X(1).F(X1, 8, 2).F(Z1, 8, 2).F(Z2, 8, 2).X(1);
        first.ES(totalX, 11, 3).ES(baseNormal, 11, 3).ES(sideNormal, 11, 3).ES(sideWater, 11, 3);
        first.F(SURF.R(i), 7, 3).F(armRatioE2, 7, 3);
        if (warnings != 0) first.A("  WARNINGS:").I(warnings, 2);
        writeResult("");
        writeResult(first.str());

        io::Line second;
        second.I(i, 4).X(1).F(X2, 8, 2).F(Z4, 8, 2).F(Z3, 8, 2).X(1);
        second.ES(totalZ, 11, 3).ES(baseShear, 11, 3).ES(sideShear, 11, 3).ES(baseWater, 11, 3);
        second.F(armRatioP, 14, 3);
        writeResult(second.str());
    }

    if (MASTER.JPLOT != 0) PLOT(surfaceNumber, surfaceType, sliceCount);

    // The soil nail table ends the print.
    if (ISNAIL.NNAILS > 0) NAILSP();
}
