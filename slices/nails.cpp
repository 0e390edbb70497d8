// slices/nails.cpp
//
// NAILS — the forces of the soil nails on the slices of the current surface.
//
// Every active nail is intersected with the shear-surface polyline. A nail that crosses it once
// carries an axial force, limited by pull-out of its tip part out of the stable soil beyond the
// surface (external), by pull-out of its bonded head part out of the sliding soil plus what its
// head plate holds (internal), or by yielding of the bar; it also carries its lateral force.
// The direction (tension or compression) follows from the nail angle and the slope of the base
// it crosses. The forces act on the sliding body as point loads per length of the section:
// the head-plate force at the head, the bond force as nine equal loads along the bonded part
// between the free head length and the crossing, and the lateral force at the crossing. Each
// load is added to the slices whose x range holds it (a load on a border goes to both) as
// SNX, SNZ and the moment SNM about the slice's load point. The solution methods divide these
// loads by the safety factor. A nail that misses the surface gives no load; one that crosses
// it more than once is reported (the first 24 such nails of the run) and gives no load either.
//
// Nail angle ang: the nail runs from its head in the direction (-cos ang, sin ang) (z downward);
// a nail whose tip lies left of and below its head has ang between 0 and pi/2, its dip.
//
// Arguments: NPT, the number of points of the polyline XS, ZS.
// Reads:  ISNAIL.NNAILS; SNAILS.SN(i, 1..13); SURF.XS, ZS, XX, ZZ, BETA (and WZ for the trace);
//         MASTER.NUMSLC, EPS, PI, JPRINT, NF18; POSTGRAF.NFCOPY
// Writes: SURF.SNX, SNZ, SNM of slices 1..NUMSLC; SNAILS.SN(i, SNLTOT..SNFLAT) and
//         ISNAIL.INAIL(i, SNDIR..SNSLC) of every nail; warnings and traces on NF18 and the
//         log-copy channel; MASTER.IERR
// IERR:   0 ok; else the code of INTBL1 (a nail whose ends coincide), with its message on the
//         console and the log-copy channel

#include <algorithm>
#include <cmath>
#include <string>

#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr int kWarningsReported = 24;
constexpr int kBondLoads = 9;
constexpr double kNinth = 0.1111111111111111;  // the share of each bond load, as stored
constexpr int kTraceLevel = 2;                 // traces when JPRINT is above it

// Run-long state: the number of nails reported for crossing a surface more than once.
int gSeveralCrossingsReported = 0;

void logAndCopy(const std::string& text) {
    io::writeLine(MASTER.NF18, text);
    io::writeLine(POSTGRAF.NFCOPY, text);
}

// One point load of a nail on the slices that hold its x.
void addLoad(int sliceCount, double x, double z, double FX, double FZ) {
    for (int I = 1; I <= sliceCount; ++I) {
        if (x < SURF.XX(1, I) || x > SURF.XX(2, I)) continue;
        SURF.SNX(I) += FX;
        SURF.SNZ(I) += FZ;
        SURF.SNM(I) += (z - SURF.ZZ(5, I)) * FX - (x - SURF.XX(5, I)) * FZ;
    }
}

// The nail crossing the surface once at (xCross, zCross): its capacities, failure mode and
// forces, and its loads on the slices.
void crossingNail(int nail, int sliceCount, double xCross, double zCross) {
    const double eps = MASTER.EPS;
    const double headX = SNAILS.SN(nail, SNXH), headZ = SNAILS.SN(nail, SNZH);
    const double tipX = SNAILS.SN(nail, SNXT), tipZ = SNAILS.SN(nail, SNZT);
    const double spacing = SNAILS.SN(nail, SNCC);
    const double diameter = SNAILS.SN(nail, SNDIA);
    const double freeLength = SNAILS.SN(nail, SNLF);
    const double yieldForce = SNAILS.SN(nail, SNFY);
    const double lateralForce = SNAILS.SN(nail, SNFL);
    const double headCapacity = SNAILS.SN(nail, SNFH);

    const double dx = headX - tipX;
    const double dz = tipZ - headZ;
    double ang = 0.0;
    if (std::fabs(dx) < eps) ang = MASTER.PI / 2.0;
    else if (dx > eps) ang = std::atan(dz / dx);
    else ang = MASTER.PI - std::atan(dz / std::fabs(dx));
    const double cosAng = std::cos(ang), sinAng = std::sin(ang);

    // The crossed slice: the first whose right side is not left of the crossing. A crossing
    // beyond the last slice (on the part of the polyline prolonged above the ground) is taken
    // with the last slice; its loads outside the slices fall on none.
    int crossed = sliceCount;
    for (int I = 1; I <= sliceCount; ++I) {
        if (xCross <= SURF.XX(2, I)) {
            crossed = I;
            break;
        }
    }
    ISNAIL.INAIL(nail, SNSLC) = crossed;

    // Tension when the nail points into the ground beyond the base, away from the sliding
    // direction; compression when it points along it.
    const bool tension = MASTER.PI / 2.0 <= (MASTER.PI - ang) - SURF.BETA(crossed) + eps;
    ISNAIL.INAIL(nail, SNDIR) = tension ? -1 : 1;
    const double bondStress = tension ? SNAILS.SN(nail, SNTAUT) : SNAILS.SN(nail, SNTAUC);
    const double bondPerLength = MASTER.PI * diameter * bondStress;

    const double headLength = std::hypot(headX - xCross, headZ - zCross);  // head to crossing
    const double tipLength = std::hypot(xCross - tipX, zCross - tipZ);     // crossing to tip
    const bool bondedInside = headLength > freeLength;

    double external = bondedInside ? tipLength * bondPerLength : (tipLength + headLength - freeLength) * bondPerLength;
    if (external <= 0.0) external = 0.0;
    double internal = (headLength - freeLength) * bondPerLength;
    if (internal <= 0.0) internal = 0.0;

    double T = 0.0, C = 0.0;
    const double second = tension ? headCapacity + internal : internal;
    if (tension) T = std::min({external, second, yieldForce});
    else C = std::min({external, second, yieldForce});
    SNAILS.SN(nail, SNFAX) = T > C ? -T : C;
    SNAILS.SN(nail, SNFLAT) = lateralForce;

    int mode = 0;
    double chosen = 0.0;
    if (external <= second) {
        mode = 1;
        chosen = external;
        SNAILS.SN(nail, SNLACT) = bondedInside ? tipLength : tipLength + headLength - freeLength;
    } else {
        mode = 3;
        chosen = second;
        SNAILS.SN(nail, SNLACT) = bondedInside ? headLength - freeLength : 0.0;
    }
    if (yieldForce < chosen) mode = 5;
    if (!tension && mode != 5) ++mode;  // 1 -> 2, 3 -> 4
    ISNAIL.INAIL(nail, SNMODE) = mode;

    // What the bond in the sliding soil carries, and what is left to the head plate.
    double bondForce = C, headForce = 0.0;
    if (T > eps) {
        bondForce = T;
        if (internal <= T) {
            bondForce = internal;
            headForce = T - internal;
        }
    }

    if (MASTER.JPRINT > kTraceLevel) {
        logAndCopy(io::Line(" N,XINT,ZINT,FLAG,SLICE=")
                       .Free(nail)
                       .Free(xCross)
                       .Free(zCross)
                       .Free(ISNAIL.INAIL(nail, SNDIR))
                       .Free(crossed)
                       .str());
        logAndCopy(io::Line(" Q1-2-3-TNS-CMP=").Free(external).Free(internal).Free(yieldForce).Free(T).Free(C).str());
    }

    // Loads per length of the section.
    addLoad(sliceCount, headX, headZ, -cosAng * headForce / spacing, sinAng * headForce / spacing);

    if (freeLength <= headLength) {
        // The bonded part runs from the end of the free length to the crossing.
        const double startShare = headLength > 0.0 ? freeLength / headLength : 0.0;
        const double startX = headX + (xCross - headX) * startShare;
        const double startZ = headZ + (zCross - headZ) * startShare;
        const double sense = C > eps ? -1.0 : 1.0;
        const double FX = -sense * bondForce * cosAng * kNinth / spacing;
        const double FZ = sense * bondForce * sinAng * kNinth / spacing;
        for (int part = 1; part <= kBondLoads; ++part) {
            const double share = (part - 0.5) / kBondLoads;
            addLoad(sliceCount, startX + (xCross - startX) * share, startZ + (zCross - startZ) * share, FX, FZ);
        }
    }

    addLoad(sliceCount, xCross, zCross, -sinAng * lateralForce / spacing, -cosAng * lateralForce / spacing);
}

}  // namespace

void resetNailCrossingWarnings() { gSeveralCrossingsReported = 0; }

void NAILS(int NPT) {
    MASTER.IERR = 0;
    const int sliceCount = std::clamp(MASTER.NUMSLC, 0, MAXSLC);
    const int nailCount = std::clamp(ISNAIL.NNAILS, 0, MAXNAI);
    const int points = std::clamp(NPT, 0, MAXPTS);

    for (int I = 1; I <= sliceCount; ++I) {
        SURF.SNX(I) = 0.0;
        SURF.SNZ(I) = 0.0;
        SURF.SNM(I) = 0.0;
    }
    for (int nail = 1; nail <= nailCount; ++nail) {
        const bool deactivated = std::fabs(SNAILS.SN(nail, SNV1) + 1.0) < MASTER.EPS;
        ISNAIL.INAIL(nail, SNMODE) = deactivated ? -1 : 0;
        ISNAIL.INAIL(nail, SNSLC) = 0;
        for (int k = SNLTOT; k <= SNFLAT; ++k) SNAILS.SN(nail, k) = 0.0;
    }

    double crossX[MAXPTS], crossZ[MAXPTS];
    for (int nail = 1; nail <= nailCount; ++nail) {
        const double headX = SNAILS.SN(nail, SNXH), headZ = SNAILS.SN(nail, SNZH);
        const double tipX = SNAILS.SN(nail, SNXT), tipZ = SNAILS.SN(nail, SNZT);
        ISNAIL.INAIL(nail, SNDIR) = 0;
        SNAILS.SN(nail, SNLTOT) = std::hypot(tipX - headX, tipZ - headZ);
        if (ISNAIL.INAIL(nail, SNMODE) == -1) continue;

        int crossings = 0;
        int status = 0;
        INTBL1(points, SURF.XS.data(), SURF.ZS.data(), headX, headZ, tipX, tipZ, crossings, crossX, crossZ, status);
        if (status != 0) {
            MASTER.IERR = status;
            say(io::Line(" **** SR/NAILS : Error return from SR/INTBL1  IERR =").Free(status).str());
            return;
        }
        if (crossings == 0) continue;
        if (crossings > 1) {
            if (gSeveralCrossingsReported < kWarningsReported) {
                ++gSeveralCrossingsReported;
                logAndCopy(io::Line(" **** Warning : Nail ")
                               .Free(nail)
                               .A(" has ")
                               .Free(crossings)
                               .A(" shear surface intersections - not included")
                               .str());
            }
            ISNAIL.INAIL(nail, SNDIR) = 2;
            continue;
        }
        if (sliceCount == 0) continue;  // no slices to load
        crossingNail(nail, sliceCount, crossX[0], crossZ[0]);
    }

    if (MASTER.JPRINT > kTraceLevel) {
        logAndCopy(" Slice  X-centre  Z-centre  Nails-X.frc  Nails-Z.frc   Nails-YY.mom  Slice.WZ");
        for (int I = 1; I <= sliceCount; ++I) {
            logAndCopy(io::Line()
                           .I(I, 6)
                           .F(SURF.XX(5, I), 10, 3)
                           .F(SURF.ZZ(5, I), 10, 3)
                           .ES(SURF.SNX(I), 13, 4)
                           .ES(SURF.SNZ(I), 13, 4)
                           .ES(SURF.SNM(I), 15, 4)
                           .ES(SURF.WZ(I), 12, 4)
                           .str());
        }
    }
}
