// slices/loader.cpp
//
// LOADER — centre loads of slice I.
//
// Builds WX, WZ (positive down) and WM of slice I, acting at its load point (corner 5), from:
// the soil weight with its mean unit weight over the slice (one material; exact integration
// over horizontal layers; otherwise a grid of cells located one by one), the vertical and
// horizontal load factors on the weight, the uniform surface load, the soil between the
// straight slice top and the ground where the ground breaks over the slice (the breaks of the
// soil surface are found once for as long as its points stay the same), the pore water forces
// of PWP, the point loads, the strip loads, free water standing on the slice top and, for
// slice 1, the water thrust in the crack behind it. Also measures the undrained part of the
// slice area and, when the control data H3(1) and H3(2) are both zero, places the base normal
// force at the centroid of the vertical loads.
//
// Moments follow one sense throughout: a vertical load V at x adds V * (XX(5,I) - x), a
// horizontal load H at depth z adds (z - ZZ(5,I)) * H.
//
// Reads:  SURF XX, ZZ, AREA, SINB, COSB, U1, U2, U3 and, as the heights of the water-force
//         resultants, E1, E2, P of slice I; MASTER IDEFTO, EPS, H3, NF18; POSTGRAF NOPT1, NOPT2,
//         NFCOPY; ISOLPR NMAT; SOLPRP MAT, STRDAT(1..2); IGEOMS NX, NLAYER, NTRI, LAYMAT;
//         GEOMSH XSURF, ZSURF, ZLAYER; IWATER IDPWP, NUMXPW; WATER1 ZWATER, GAMWAT, XPW, ZFREE;
//         ILOA NPF, NSTRIP; LOAD LDAT, QRANGE, XZPF, FPF, XSTRIP, QSTRV, QSTRH
// Writes: SURF AREAU, WX, WZ, WM, WZEXT of slice I, and H30 when |H3(1) + H3(2)| <= 0.001
// IERR:   0 ok; 100 + the code of a failing INTPOL; I + 200 when the integrated area differs
//         from AREA by 0.001 or more; the code of LOCATE when it fails

#include <algorithm>
#include <cmath>
#include <cstring>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kTiny = 1.0E-6f;
constexpr double kOpenLayer = 1.0E6f;
constexpr double kAreaTolerance = 0.001f;
constexpr double kWaterTolerance = 0.05f;
constexpr double kH3Zero = 0.001f;
constexpr double kRatioLow = 0.333f;
constexpr double kRatioHigh = 0.667f;
constexpr int kWarningsReported = 10;

int gNonHorizontalWarnings = 0;  // non-horizontal water tables reported so far in this run

int soilSurfacePoints() { return std::clamp(IGEOMS.NX + 1, 0, MAXCOL); }
int waterTablePoints() { return std::clamp(IWATER.NUMXPW, 0, MAXPWX); }

// Depth of the soil surface at x; false after an error (IERR = 100 + code).
bool soilSurfaceAt(const BrokenLine& ground, double x, double& z) {
    int ierr = 0;
    interpolate(ground, x, z, ierr);
    if (ierr != 0) {
        MASTER.IERR = ierr + 100;
        return false;
    }
    return true;
}

// The water-table polyline, checked once for all the levels one slice asks of it.
BrokenLine waterTable() {
    return checkedBrokenLine(waterTablePoints(), 1, WATER1.XPW.data(), WATER1.ZFREE.data());
}

// Level of the free water at x: the water-table polyline when there is one, else the water
// table level. ierr is the code of a failing interpolation.
double waterLevelAt(const BrokenLine& water, double x, int& ierr) {
    ierr = 0;
    if (waterTablePoints() == 0) return WATER1.ZWATER;
    double z = 0.0;
    interpolate(water, x, z, ierr);
    return z;
}

double waterLevelAt(double x, int& ierr) { return waterLevelAt(waterTable(), x, ierr); }

bool validMaterial(int m) { return m >= 1 && m <= MAXMAT; }

// Mean unit weight by a grid of cells between the top chord (corner 1 to 2) and the base chord
// (corner 4 to 3); the cells of undrained material add to AREAU.
//
// Deliberate departure from integrating down from the real ground: the columns start at the
// straight slice top, as the exact integration over horizontal layers does. AREA is measured
// under that chord and the soil between the chord and a broken ground is added as a load of
// its own (soilAboveTop); integrating from the ground counted that soil twice and made the
// area check fail for every slice whose top spans a break of the ground line.
bool gridIntegration(int I, double& sumWeight, double& sumArea) {
    int columns = POSTGRAF.NOPT1;
    int rows = POSTGRAF.NOPT2;
    if (columns < 1 || rows < 1) return true;
    double x1 = SURF.XX(1, I);
    double width = SURF.XX(2, I) - x1;
    double columnWidth = width / columns;
    const BrokenLine water = waterTable();
    for (int j = 1; j <= columns; ++j) {
        double x = x1 + (j - 0.5) * columnWidth;
        double zTop = SURF.ZZ(1, I) + (SURF.ZZ(2, I) - SURF.ZZ(1, I)) * (x - x1) / width;
        double zBase = SURF.ZZ(4, I) + (SURF.ZZ(3, I) - SURF.ZZ(4, I)) * (x - SURF.XX(4, I)) / width;
        double cellHeight = (zBase - zTop) / rows;
        double cellArea = columnWidth * cellHeight;
        int ierrWater = 0;
        double zWater = waterLevelAt(water, x, ierrWater);
        bool noWaterTable = waterTablePoints() == 0 || ierrWater != 0;
        for (int k = 1; k <= rows; ++k) {
            double z = zTop + (k - 0.5) * cellHeight;
            int m = 0;
            LOCATE(x, z, m);
            if (MASTER.IERR != 0) return false;
            if (!validMaterial(m)) {
                MASTER.IERR = 1;
                return false;
            }
            double unitWeight = (noWaterTable || z <= zWater) ? SOLPRP.MAT(GAMTOT, m) : SOLPRP.MAT(MAT18, m);
            sumWeight += unitWeight * cellArea;
            sumArea += cellArea;
            bool undrained = SOLPRP.MAT(COHESN, m) == 0.0 && SOLPRP.MAT(PHIANG, m) == 0.0;
            if (MASTER.IDEFTO == 3 && SOLPRP.MAT(MAT14, m) < 100.0) undrained = true;
            if (undrained) SURF.AREAU(I) += cellArea;
        }
    }
    return true;
}

// Mean unit weight by exact integration over the horizontal layers.
void layerIntegration(int I, double& sumWeight, double& sumArea) {
    const double* x = SURF.XX.column(I);
    const double* z = SURF.ZZ.column(I);
    double sliceTop = std::min(z[0], z[1]);
    double sliceBase = std::max(z[2], z[3]);
    int layers = std::clamp(IGEOMS.NLAYER, 0, MAXLAY);
    for (int k = 1; k <= layers; ++k) {
        double upper = k == 1 ? -kOpenLayer : GEOMSH.ZLAYER(k - 1);
        double lower = k == layers ? kOpenLayer : GEOMSH.ZLAYER(k);
        if (lower <= sliceTop || upper >= sliceBase) continue;
        int m = IGEOMS.LAYMAT(k);
        if (!validMaterial(m)) continue;
        double area = 0.0;
        TRILIN(x, z, upper, lower, area);
        sumWeight += area * SOLPRP.MAT(GAMTOT, m);
        sumArea += area;
    }
}

// Mean unit weight of slice I; false after an error.
bool meanUnitWeight(int I, double& gamma) {
    gamma = 0.0;
    if (ISOLPR.NMAT == 1) {
        gamma = SOLPRP.MAT(GAMTOT, 1);
        return true;
    }
    double sumWeight = 0.0;
    double sumArea = 0.0;
    if (IGEOMS.NLAYER <= 0 || IGEOMS.NTRI > 0) {
        // Triangles override layers, so layers alone cannot say which soil a point is in.
        if (!gridIntegration(I, sumWeight, sumArea)) return false;
    } else {
        layerIntegration(I, sumWeight, sumArea);
    }
    if (std::fabs(SURF.AREA(I) - sumArea) >= kAreaTolerance) {
        say(io::Line().A(" ***** SR/LOADER PROBLEM : SLICE AREA").Free(I).Free(sumArea).Free(SURF.AREA(I)).str());
        MASTER.IERR = I + 200;
        return false;
    }
    gamma = sumWeight / sumArea;
    return true;
}

// The soil surface as it was checked last: its points, the error code of its table and the
// slopes of its segments. Every slice of every surface asks the same soil surface, so it is
// checked again only when its points have changed; they are compared at the first slice of a
// surface and whenever the slices are not asked one after another (nothing changes the ground
// between two neighbouring slices of one surface).
struct CheckedGround {
    int n = -1;
    double x[MAXCOL];
    double z[MAXCOL];
    double slope[MAXCOL];  // of the segment ending at point k (index k, from 1)
    int code = 0;

    // The checked soil surface for its look-ups (its points are the present ones after refresh).
    BrokenLine line() const { return BrokenLine{n, 1, x, z, code, 0}; }

    int lastSlice = 0;  // the slice that asked last

    void refresh(int slice) {
        const bool nextSlice = slice > 1 && slice == lastSlice + 1;
        lastSlice = slice;
        if (nextSlice && n == soilSurfacePoints()) return;
        const int points = soilSurfacePoints();
        const size_t bytes = static_cast<size_t>(points) * sizeof(double);
        if (points == n && std::memcmp(x, GEOMSH.XSURF.data(), bytes) == 0 &&
            std::memcmp(z, GEOMSH.ZSURF.data(), bytes) == 0)
            return;
        n = points;
        std::memcpy(x, GEOMSH.XSURF.data(), bytes);
        std::memcpy(z, GEOMSH.ZSURF.data(), bytes);
        code = checkedBrokenLine(n, 1, x, z).code;
        if (code == 0)
            for (int k = 1; k < n; ++k) slope[k] = brokenLineSlope(x, z, k);
    }
};
CheckedGround gGround;

// Whether the soil surface has a point over x1..x2 (ends included): there the ground may break
// and the soil between it and the straight slice top is weighed.
// firstWithin: that point (index from 0) of a soil surface whose abscissas increase.
bool groundPointWithin(int I, double x1, double x2, int& firstWithin) {
    gGround.refresh(I);
    const int n = gGround.n;
    firstWithin = 0;
    if (gGround.code != 0) {
        for (int k = 0; k < n; ++k)
            if (gGround.x[k] >= x1 && gGround.x[k] <= x2) return true;
        return false;
    }
    firstWithin = static_cast<int>(std::lower_bound(gGround.x, gGround.x + n, x1) - gGround.x);
    return firstWithin < n && gGround.x[firstWithin] <= x2;
}

// Weight of the soil between the straight slice top and a broken ground surface above or
// below it, by ten columns. Where the ground point over the slice is no real break the ground
// and the chord coincide, up to the rounding of the two, and the columns add nothing else.
bool soilAboveTop(int I, double gamma, double tolerance) {
    double x1 = SURF.XX(1, I);
    double x2 = SURF.XX(2, I);
    // Every column lies beyond the first ground point within the slice's left border: the
    // walk along the ground starts there.
    int groundSegment = 0;
    if (!groundPointWithin(I, x1, x2, groundSegment)) return true;
    const BrokenLine ground = gGround.line();
    const bool walkGround = gGround.code == 0 && gGround.n >= 2;
    const BrokenLine water = waterTable();
    const bool waterLevel = waterTablePoints() == 0;
    double width = x2 - x1;
    double columnWidth = width / 10.0;
    double gamw = WATER1.GAMWAT;
    const double zLeft = SURF.ZZ(1, I);
    const double rise = SURF.ZZ(2, I) - zLeft;
    const double xLoad = SURF.XX(5, I);
    const double zLoad = SURF.ZZ(5, I);
    const double verticalFactor = LOAD.LDAT(2);
    const double horizontalFactor = LOAD.LDAT(3);
    // The loads of the slice, summed in registers in the order of the columns.
    double WZ = SURF.WZ(I);
    double WX = SURF.WX(I);
    double WM = SURF.WM(I);
    // Where the ground point is no real break, ground and chord mostly meet to the last digit:
    // such a column adds a zero to every load, which leaves a sum as it is unless the sum is a
    // negative zero, as long as every factor of it is finite and the water level cannot fail.
    const bool zeroColumnsAddNothing = std::isfinite(gamma) && std::isfinite(gamw) && std::isfinite(columnWidth) &&
                                       std::isfinite(verticalFactor) && std::isfinite(horizontalFactor) &&
                                       std::isfinite(xLoad) && std::isfinite(zLoad) && (waterLevel || water.code == 0);
    const auto negativeZero = [](double sum) { return sum == 0.0 && std::signbit(sum); };
    bool ok = true;
    for (int j = 1; j <= 10; ++j) {
        double x = x1 + (j - 0.5) * columnWidth;
        double zChord = zLeft + rise * (x - x1) / width;
        double zGround = 0.0;
        if (walkGround) {
            zGround = interpolateRightward(ground, gGround.slope, x, groundSegment);
        } else if (!soilSurfaceAt(ground, x, zGround)) {
            ok = false;
            break;
        }
        if (zChord == zGround && std::isfinite(zChord) && zeroColumnsAddNothing && std::isfinite(x) && !negativeZero(WZ) &&
            !negativeZero(WX) && !negativeZero(WM))
            continue;
        int ierr = 0;
        double zWater = waterLevel ? WATER1.ZWATER : waterLevelAt(water, x, ierr);
        if (ierr != 0) {
            MASTER.IERR = ierr + 100;
            ok = false;
            break;
        }
        double thickness = zChord - zGround;  // soil above the chord when positive
        double unitWeight = gamma;
        double upper = std::min(zChord, zGround);
        double lower = std::max(zChord, zGround);
        if (zGround - zWater > tolerance) {
            unitWeight = gamma - gamw;
        } else if (zWater > upper && zWater < lower && IWATER.IDPWP != 2) {
            double dry = zWater - upper;
            double submerged = lower - zWater;
            unitWeight = (gamma * dry + (gamma - gamw) * submerged) / (dry + submerged);
        }
        double weight = thickness * columnWidth * unitWeight;
        double midDepth = (zChord + zGround) / 2.0;
        double weightZ = weight * verticalFactor;
        double weightX = weight * horizontalFactor;
        WZ += weightZ;
        WX += weightX;
        WM += (xLoad - x) * weightZ - (zLoad - midDepth) * weightX;
    }
    SURF.WZ(I) = WZ;
    SURF.WX(I) = WX;
    SURF.WM(I) = WM;
    return ok;
}

// Water level for the free water on the slice top.
bool freeWaterLevel(int I, double tolerance, double& level) {
    if (waterTablePoints() == 0) {
        level = WATER1.ZWATER;
        return true;
    }
    int ierr = 0;
    double left = waterLevelAt(SURF.XX(1, I), ierr);
    double right = 0.0;
    if (ierr == 0) right = waterLevelAt(SURF.XX(2, I), ierr);
    if (ierr != 0) {
        say(io::Line().A(" ***** SR/LOADER PROBLEM :  WATER PRESSURE ON SLICE ").Free(I).A(" TOP").str());
        MASTER.IERR = ierr + 100;
        return false;
    }
    double z1 = SURF.ZZ(1, I);
    double z2 = SURF.ZZ(2, I);
    level = (left + right) / 2.0;
    if (std::fabs(left - right) < tolerance) return true;
    double a1 = left + tolerance;
    double a2 = right + tolerance;
    if (z1 <= a1 || z2 <= a2) {
        if (a1 <= z1 || a2 <= z2) {
            level = a2 < z2 ? a2 : a1;
            level -= tolerance;
        } else {
            level = std::max(a1, a2);
        }
    } else if (gNonHorizontalWarnings < kWarningsReported) {
        // The water stands above both top corners by more than the tolerance: the mean level.
        ++gNonHorizontalWarnings;
        std::string text =
            io::Line().A(" ***** WARNING FROM SR/LOADER : NON-HORIZONTAL ").A(" WATER TABLE ABOVE SLICE").str();
        io::writeLine(MASTER.NF18, text);
        io::writeLine(POSTGRAF.NFCOPY, text);
    }
    return true;
}

// Water thrust in the crack of depth dc behind slice 1, holding water of height hw.
bool crackWaterThrust() {
    double crackDepth = SOLPRP.STRDAT(1);
    double waterHeight = SOLPRP.STRDAT(2);
    double gamw = WATER1.GAMWAT;
    int ierr = 0;
    double zWater = waterLevelAt(SURF.XX(1, 1), ierr);
    if (ierr != 0) {
        MASTER.IERR = ierr + 100;
        return false;
    }
    double zTop = SURF.ZZ(1, 1);
    double thrust = 0.0;
    double zAction = 0.0;
    if (zTop <= zWater) {
        thrust = 0.5 * gamw * waterHeight * waterHeight;
        zAction = zTop + crackDepth - waterHeight / 3.0;
    } else {
        double pTop = (zTop - zWater) * gamw;
        double pBottom = pTop + crackDepth * gamw;
        thrust = (pTop + pBottom) / 2.0 * crackDepth;
        double below = pTop + pBottom > 0.0 ? crackDepth * (pTop + 2.0 * pBottom) / (3.0 * (pTop + pBottom))
                                            : crackDepth / 2.0;
        zAction = zTop + below;
    }
    SURF.WX(1) += thrust;
    SURF.WM(1) -= thrust * (SURF.ZZ(5, 1) - zAction);
    return true;
}

}  // namespace

void resetLoaderWaterWarnings() { gNonHorizontalWarnings = 0; }

void LOADER(int I) {
    MASTER.IERR = 0;
    const double* xs = SURF.XX.column(I);
    const double* zs = SURF.ZZ.column(I);
    double width = SURF.XX(2, I) - SURF.XX(1, I);
    SURF.AREAU(I) = 0.0;
    SURF.WZEXT(I) = 0.0;
    SURF.WX(I) = 0.0;
    SURF.WZ(I) = 0.0;
    SURF.WM(I) = 0.0;

    // Soil weight.
    double gamma = 0.0;
    if (!meanUnitWeight(I, gamma)) return;
    double weight = gamma * SURF.AREA(I);
    SURF.WZ(I) = weight * LOAD.LDAT(2);
    SURF.WX(I) = weight * LOAD.LDAT(3);

    // Uniform surface load over its x range.
    double q = LOAD.LDAT(1);
    if (std::fabs(q) >= MASTER.EPS) {
        double from = std::max(SURF.XX(1, I), LOAD.QRANGE(1));
        double to = std::min(SURF.XX(2, I), LOAD.QRANGE(2));
        if (to > from) {
            double Q = q * (to - from);
            SURF.WZ(I) += Q;
            SURF.WM(I) = Q * (SURF.XX(5, I) - (from + to) / 2.0);
        }
    }

    // Moment about corner 3 and total of the vertical loads, for the load centroid.
    double momentAbout3 = (SURF.XX(3, I) - SURF.XX(5, I)) * SURF.WZ(I) + SURF.WM(I);
    double verticalTotal = SURF.WZ(I);

    // Soil above (or missing below) the straight slice top.
    double tolerance = std::fabs(SURF.ZZ(5, I) - SURF.ZZ(1, I)) * kWaterTolerance;
    if (!soilAboveTop(I, gamma, tolerance)) return;

    // Pore water forces: U1 at height E1 above corner 4, U2 at height E2 above corner 3,
    //    U3 normal to the base at distance P from corner 3.
    if (MASTER.IDEFTO != 2) {
        double sinb = SURF.SINB(I);
        double cosb = SURF.COSB(I);
        double u1 = SURF.U1(I);
        double u2 = SURF.U2(I);
        double u3 = SURF.U3(I);
        double x5 = SURF.XX(5, I);
        double z5 = SURF.ZZ(5, I);
        SURF.WX(I) += u1 - u2 + sinb * u3;
        SURF.WZ(I) -= cosb * u3;
        double zU1 = SURF.ZZ(4, I) - SURF.E1(I);
        double zU2 = SURF.ZZ(3, I) - SURF.E2(I);
        double xU3 = SURF.XX(3, I) - SURF.P(I) * cosb;
        double zU3 = SURF.ZZ(3, I) - SURF.P(I) * sinb;
        SURF.WM(I) += (zU1 - z5) * u1 - (zU2 - z5) * u2 + (x5 - xU3) * (-cosb * u3) + (zU3 - z5) * (sinb * u3);
    }

    // Point loads on the slice (on or above its base).
    double pointMagnitude = LOAD.LDAT(4);
    int points = std::clamp(ILOA.NPF, 0, MAXPF);
    if (pointMagnitude >= kTiny && points != 0) {
        for (int j = 1; j <= points; ++j) {
            double x = LOAD.XZPF(1, j);
            double z = LOAD.XZPF(2, j);
            if (x < SURF.XX(1, I) || x > SURF.XX(2, I)) continue;
            double zBase = SURF.ZZ(4, I) + (SURF.ZZ(3, I) - SURF.ZZ(4, I)) * (x - SURF.XX(4, I)) / width;
            if (z > zBase) continue;
            double horizontal = pointMagnitude * LOAD.FPF(1, j);
            double vertical = pointMagnitude * LOAD.FPF(2, j);
            SURF.WX(I) += horizontal;
            SURF.WZEXT(I) += vertical;
            SURF.WM(I) -= (SURF.ZZ(5, I) - z) * horizontal + (x - SURF.XX(5, I)) * vertical;
            momentAbout3 += (SURF.XX(3, I) - x) * vertical;
            verticalTotal += vertical;
        }
    }

    // Strip loads.
    double stripMagnitude = LOAD.LDAT(5);
    int strips = std::clamp(ILOA.NSTRIP, 0, MAXSTR);
    if (stripMagnitude >= kTiny) {
        for (int j = 1; j <= strips; ++j) {
            if (LOAD.XSTRIP(2, j) < SURF.XX(1, I) || LOAD.XSTRIP(1, j) > SURF.XX(2, I)) continue;
            double FX = 0.0, FZ = 0.0, M = 0.0, M3 = 0.0;
            STRIP(xs, zs, LOAD.XSTRIP(1, j), LOAD.XSTRIP(2, j), LOAD.QSTRV(1, j), LOAD.QSTRV(2, j), LOAD.QSTRH(1, j),
                  LOAD.QSTRH(2, j), FX, FZ, M, M3);
            SURF.WX(I) += stripMagnitude * FX;
            SURF.WZEXT(I) += stripMagnitude * FZ;
            SURF.WM(I) += stripMagnitude * M;
            momentAbout3 += stripMagnitude * M3;
            verticalTotal += stripMagnitude * FZ;
        }
    }

    // The external vertical loads join the centre load.
    SURF.WZ(I) += SURF.WZEXT(I);

    // Base normal force at the centroid of the vertical loads, within the middle third (kept
    // only when the slice's loads are complete; worked out here, where they are known).
    const bool atLoadCentroid = std::fabs(MASTER.H3(1) + MASTER.H3(2)) <= kH3Zero;
    double centroidArm = 0.0;
    if (atLoadCentroid) {
        if (std::fabs(verticalTotal) < kTiny) verticalTotal = std::copysign(kTiny, verticalTotal);
        double ratio = std::clamp(momentAbout3 / verticalTotal / width, kRatioLow, kRatioHigh);
        centroidArm = ratio * width / SURF.COSB(I);
    }

    // Free water standing on the slice top.
    double level = 0.0;
    if (!freeWaterLevel(I, tolerance, level)) return;
    double FX = 0.0, FZ = 0.0, M = 0.0;
    WATER(xs, zs, level, WATER1.GAMWAT, FX, FZ, M);
    SURF.WX(I) += FX;
    SURF.WZ(I) += FZ;
    SURF.WM(I) += M;

    // Water in the crack behind the first slice.
    if (I == 1 && !crackWaterThrust()) return;

    if (atLoadCentroid) SURF.H30(I) = centroidArm;
}
