// slices/geomet.cpp
//
// GEOMET — cuts the current shear surface into vertical slices under the soil surface.
//
// Lifts shear-surface points that lie in rock, shifts the surface through the wall foot in an
// earth-pressure problem, finds where the surface enters (dc below the soil surface) and leaves
// the soil, places the slice borders (equal widths, or the points of a general surface), snaps
// borders to the crossings with horizontal layer boundaries and halves wide slices, and gives
// every slice its corners 1-4, its area and its centroid (corner 5, the load point).
//
// Arguments: nsp soil-surface points xsoil, zsoil with the rock levels zrock at the same x;
//   npt shear-surface points xs, zs (changed where lifted or shifted); numslc in: requested
//   slices, out: slices made; nslreq the requested count as set by the user (0: a general
//   surface brings its own borders); idtyp 1 stability, 2 earth pressure; dc start depth of the
//   surface below the soil surface (stored back when below 1.0E-6); xwall, zwall the wall x and
//   the depth of the wall foot; XX, ZZ, AREA the slices (out); ntyp surface type (1 general),
//   negated on return when points were lifted out of rock; nlayer, zlayer the layer
//   boundaries; ierr (out); icsrch set when a circle's centre lies below the soil surface.
// Reads:  MASTER.JPRINT, NF18, NFIN, IGWARN; POSTGRAF.NFCOPY (6 in batch mode)
// Writes: the arguments above; MASTER.IGWARN (the many-intersections warning is given once)
// IERR:   0 ok; 1 no intersection with the soil; 2 one intersection only (allowed in earth
//         pressure problems); 3 wall position; 4 soil segment of zero length; 5 shear segment
//         of zero length; 10+, 20+, 30+ INTPOL code on the soil, shear and rock surface;
//         99 more than 99 slices on a general surface (or a requested count outside 1..99);
//         200 more than 50 layer crossings; 200+ INTPOL code while snapping to a layer;
//         299 more than 99 slices after refinement; 300+ INTPOL code while halving a slice;
//         -I slice I of zero width or negative face height; 100+I slice I of zero or
//         negative area

#include <algorithm>
#include <cmath>
#include <string>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr double kTol = 1.0e-6f;          // coincidence of x values, parallel lines, widths
constexpr double kRockMargin = 1.0e-6f;   // a point this close above rock counts as in rock
constexpr double kRockLift = 0.002f;      // a point in rock is lifted this far above it
constexpr double kEndShift = 0.001f;      // end borders move inward by this part of a width
constexpr double kEndFace = 0.001f;       // height of the end faces of a general surface
constexpr double kWideSlice = 1.1f;       // a slice wider than this times slice 1 is halved
constexpr double kLayerProduct = 1.0e-6f; // product of the end distances at a layer crossing
constexpr int kMaxCrossings = 50;

using Corners = Arr2<double, 5, MAXSLC>;

// The two surfaces and the slices every step works on.
struct Section {
    int nsp;
    int npt;
    const Arr1<double, MAXCOL>& xsoil;
    const Arr1<double, MAXCOL>& zsoil;
    const Arr1<double, MAXCOL>& zrock;
    Arr1<double, MAXPTS>& xs;
    Arr1<double, MAXPTS>& zs;
    Corners& XX;
    Corners& ZZ;
    int& numslc;
    // The three broken lines, checked once: the abscissas of the soil surface and of the
    // shear surface do not change while the surface is sliced (only its depths do).
    BrokenLine soil;
    BrokenLine rock;
    BrokenLine shear;
};

// Depths at x; each returns the INTPOL code.
int soilDepth(const Section& s, double x, double& depth) {
    int code = 0;
    interpolate(s.soil, x, depth, code);
    return code;
}

int rockDepth(const Section& s, double x, double& depth) {
    int code = 0;
    interpolate(s.rock, x, depth, code);
    return code;
}

int shearDepth(const Section& s, double x, double& depth) {
    int code = 0;
    interpolate(s.shear, x, depth, code);
    return code;
}

// Border k of the slices: the right side of slice k and the left side of slice k + 1.
void placeBorder(Section& s, int k, double x, double top, double bottom) {
    if (k >= 1 && k <= s.numslc) {
        s.XX(2, k) = x;
        s.XX(3, k) = x;
        s.ZZ(2, k) = top;
        s.ZZ(3, k) = bottom;
    }
    if (k + 1 >= 1 && k + 1 <= s.numslc) {
        s.XX(1, k + 1) = x;
        s.XX(4, k + 1) = x;
        s.ZZ(1, k + 1) = top;
        s.ZZ(4, k + 1) = bottom;
    }
}

// The soil and shear surfaces side by side on the log file, for the user to find what failed.
void printProfile(const Section& s, int ierr) {
    const int log = MASTER.NF18;
    io::writeLine(log, io::Line(" **** SR/GEOMET PROBLEM  N1,N2,NUMSLC,IERR=")
                           .Free(s.nsp).Free(s.npt).Free(s.numslc).Free(ierr).str());
    io::writeLine(log, std::string(" POINT     SOIL SURFACE COORD      SHEAR SURFACE ") + " COORD");
    io::writeLine(log, io::Line().X(6).A("X", 12).A("Z", 12).A("X", 12).A("Z", 12).str());
    const int soilPoints = std::clamp(s.nsp, 0, MAXCOL);
    const int shearPoints = std::clamp(s.npt, 0, MAXPTS);
    for (int k = 1; k <= std::max(soilPoints, shearPoints); ++k) {
        const bool soil = k <= soilPoints;
        const bool shear = k <= shearPoints;
        io::writeLine(log, io::Line().I(k, 6)
                               .F(soil ? s.xsoil(k) : 0.0, 12, 4).F(soil ? s.zsoil(k) : 0.0, 12, 4)
                               .F(shear ? s.xs(k) : 0.0, 12, 4).F(shear ? s.zs(k) : 0.0, 12, 4).str());
    }
}

void traceSlices(const Section& s, std::string_view title) {
    const int log = MASTER.NF18;
    io::writeLine(log, title);
    io::writeLine(log, " SLICE   X1/X4     X2/X3     Z1/Z4     Z2/Z3");
    for (int i = 1; i <= s.numslc; ++i) {
        io::writeLine(log, io::Line().I(i, 6).F(s.XX(1, i), 10, 3).F(s.XX(2, i), 10, 3).F(s.ZZ(1, i), 10, 3)
                               .F(s.ZZ(2, i), 10, 3).str());
        io::writeLine(log, io::Line().X(6).F(s.XX(4, i), 10, 3).F(s.XX(3, i), 10, 3).F(s.ZZ(4, i), 10, 3)
                               .F(s.ZZ(3, i), 10, 3).str());
    }
}

void traceRock(const Section& s) {
    const int log = MASTER.NF18;
    io::writeLine(log, " SR/GEOMET GEOMETRY CONTROL PRINT");
    io::writeLine(log, "  N    X-SHRSRF     Z-SHRSRF     Z-ROCK");
    for (int i = 1; i <= s.npt; ++i) {
        double rock = 0.0;
        rockDepth(s, s.xs(i), rock);
        io::writeLine(log, io::Line().I(i, 3).F(s.xs(i), 13, 4).F(s.zs(i), 13, 4).F(rock, 13, 4).str());
    }
}

// Lifts every shear-surface point that lies in rock to just above it; the first one of the
// pass is reported. Returns the INTPOL code of the rock surface; lifted is set when a point moved.
int liftOutOfRock(Section& s, bool& lifted) {
    // Above the shallowest rock point (the rock is held level beyond its ends) no point of the
    // shear surface can lie in rock; a rock table with an error is looked up all the same, so
    // that the error is reported.
    if (s.rock.code == 0 && s.rock.n >= 1) {
        bool clear = true;
        double shallowestRock = s.rock.y[0];
        for (int j = 0; j < s.rock.n && clear; ++j) {
            clear = std::isfinite(s.rock.y[j]);
            shallowestRock = std::fmin(shallowestRock, s.rock.y[j]);
        }
        const double inRockFrom = shallowestRock + kRockMargin;
        clear = clear && std::isfinite(inRockFrom);
        for (int i = 1; i <= s.npt && clear; ++i) clear = inRockFrom > s.zs(i);
        if (clear) return 0;
    }
    bool warned = false;
    for (int i = 1; i <= s.npt; ++i) {
        double rock = 0.0;
        const int code = rockDepth(s, s.xs(i), rock);
        if (code != 0) return code;
        const double zr = rock + kRockMargin;
        if (zr > s.zs(i)) continue;
        if (!warned) {
            say(io::Line(std::string(" **** SR/GEOMET WARNING : SHEAR-SURFACE INTERSECTS ROCK ") + " SURFACE AT X,Z =")
                    .Free(s.xs(i)).Free(s.zs(i)).A(" ROCK ").Free(zr).str());
            warned = true;
        }
        s.zs(i) = zr - kRockLift;
        lifted = true;
    }
    return 0;
}

// The shear surface runs from left to right, every segment wider than the coincidence
// tolerance, and the soil surface's abscissas are numbers: then the shear segments over one
// soil segment follow one another, and the crossings can be found by walking both lines.
bool walkable(const Section& s) {
    for (int i = 1; i < s.npt; ++i)
        if (!(s.xs(i + 1) - s.xs(i) > kTol)) return false;
    for (int j = 1; j <= s.nsp; ++j)
        if (!std::isfinite(s.xsoil(j))) return false;
    return true;
}

// Where the shear surface crosses the soil surface, in the order found (left to right). Until
// the first crossing is found the soil surface is taken dc lower, so that the surface enters
// dc below the ground. Only the first kMaxCrossings are kept; crossings counts them all.
// Every soil segment is tried against the shear segments over it, in the order of both lines;
// when the shear surface runs from left to right these are found by walking along it, else
// every shear segment is looked at.
// Returns 0, 4 (soil segment of zero length) or 5 (shear segment of zero length).
int findCrossings(const Section& s, double dc, int icsrch, double* crossX, int& crossings) {
    crossings = 0;
    double lastX = 0.0;
    const bool walk = walkable(s);
    int firstOver = 1;  // while walking: the first shear segment that reaches the soil segment
    for (int j = 1; j < s.nsp; ++j) {
        const double soilDx = s.xsoil(j + 1) - s.xsoil(j);
        if (soilDx <= kTol) return 4;
        const double soilSlope = (s.zsoil(j + 1) - s.zsoil(j)) / soilDx;
        const double soilLevel0 = s.zsoil(j) - soilSlope * s.xsoil(j);
        if (walk)
            while (firstOver < s.npt && s.xs(firstOver + 1) < s.xsoil(j)) ++firstOver;
        for (int i = walk ? firstOver : 1; i < s.npt; ++i) {
            if (walk && s.xs(i) > s.xsoil(j + 1)) break;
            if (std::max(s.xs(i), s.xs(i + 1)) < s.xsoil(j) || std::min(s.xs(i), s.xs(i + 1)) > s.xsoil(j + 1))
                continue;
            const double shearDx = s.xs(i + 1) - s.xs(i);
            if (shearDx <= kTol) return 5;
            const double shearSlope = (s.zs(i + 1) - s.zs(i)) / shearDx;
            const double shearLevel0 = s.zs(i) - shearSlope * s.xs(i);
            const double groundLevel0 = crossings == 0 ? soilLevel0 + dc : soilLevel0;
            double x = 0.0;
            if (std::fabs(soilSlope - shearSlope) <= kTol) {
                if (std::fabs(groundLevel0 - shearLevel0) > kTol) continue;
                x = std::max(s.xs(i), s.xsoil(j));  // lying on the ground: it enters where both start
            } else {
                x = (shearLevel0 - groundLevel0) / (soilSlope - shearSlope);
                if (x < s.xs(i) - kTol || x > s.xs(i + 1) + kTol) continue;
                if (x < s.xsoil(j) - kTol || x > s.xsoil(j + 1) + kTol) continue;
            }
            if (crossings > 0 && std::fabs(x - lastX) < kTol) continue;
            if (i == 1 && icsrch != 0) {
                // The circle's centre lies below the ground: its first segment does not enter.
                say(std::string(" Center below soil surface, ") + " no circular shear surface found! ");
                continue;
            }
            ++crossings;
            lastX = x;
            if (crossings <= kMaxCrossings) crossX[crossings] = x;
        }
    }
    return 0;
}

// numslc slices of equal width from x1 to x2, the end borders moved inward by 0.001 of a width
// so that the end faces keep a small height. Returns 0, 10+ or 20+ (INTPOL codes).
int equalBorders(Section& s, double x1, double x2) {
    const double width = (x2 - x1) / s.numslc;
    for (int k = 0; k <= s.numslc; ++k) {
        double x = x1 + k * width;
        if (k == 0) x += kEndShift * width;
        if (k == s.numslc) x -= kEndShift * width;
        double top = 0.0;
        double bottom = 0.0;
        int code = soilDepth(s, x, top);
        if (code != 0) return 10 + code;
        code = shearDepth(s, x, bottom);
        if (code != 0) return 20 + code;
        placeBorder(s, k, x, top, bottom);
    }
    return 0;
}

// The points of a general surface right of the entry are the borders, up to the exit x2. The
// first face is dc + 0.001 high, the last (except at a wall) 0.001. Returns 0, 10+ or 99.
int generalBorders(Section& s, double x1, double x2, double dc, bool earthPressure) {
    double top = 0.0;
    int code = soilDepth(s, x1, top);
    if (code != 0) return 10 + code;
    s.XX(1, 1) = x1;
    s.XX(4, 1) = x1;
    s.ZZ(1, 1) = top;
    s.ZZ(4, 1) = top + kEndFace + dc;
    int slice = 1;
    bool reachedExit = false;
    for (int i = 1; i <= s.npt && !reachedExit; ++i) {
        if (s.xs(i) < x1 + kTol) continue;
        if (slice > MAXSLC) {
            say(std::string(" **** SR/GEOMET : MORE THAN 99 SLICES ON GENERAL ") + " SURFACE");
            return 99;
        }
        const double x = std::min(s.xs(i), x2);
        code = soilDepth(s, x, top);
        if (code != 0) return 10 + code;
        reachedExit = x >= x2 - kTol;
        s.numslc = reachedExit ? slice : std::min(slice + 1, MAXSLC);
        placeBorder(s, slice, x, top, s.zs(i));
        if (!reachedExit) ++slice;
    }
    if (!reachedExit && slice == 1) {
        // No point closes the first slice: it keeps no width, and the slice check reports it.
        s.numslc = 1;
        placeBorder(s, 1, x1, s.ZZ(1, 1), s.ZZ(4, 1));
        return 0;
    }
    s.numslc = reachedExit ? slice : slice - 1;
    if (reachedExit && !earthPressure) s.ZZ(3, s.numslc) = s.ZZ(2, s.numslc) + kEndFace;
    return 0;
}

// Halves slice i: the slices right of it move up by one. Returns 0, 299 or 300+.
int halveSlice(Section& s, int i) {
    if (s.numslc == MAXSLC) return 299;
    const double x = 0.5 * (s.XX(1, i) + s.XX(2, i));
    double top = 0.0;
    double bottom = 0.0;
    int code = soilDepth(s, x, top);
    if (code == 0) code = shearDepth(s, x, bottom);
    if (code != 0) {
        say(io::Line(" **** SR/GEOMET : ERROR RETURN FROM SR/INTPOL").Free(code).str());
        return 300 + code;
    }
    for (int later = s.numslc; later > i; --later) {
        for (int corner = 1; corner <= 5; ++corner) {
            s.XX(corner, later + 1) = s.XX(corner, later);
            s.ZZ(corner, later + 1) = s.ZZ(corner, later);
        }
    }
    const double endX = s.XX(2, i);
    const double endTop = s.ZZ(2, i);
    const double endBottom = s.ZZ(3, i);
    ++s.numslc;
    placeBorder(s, i, x, top, bottom);
    placeBorder(s, i + 1, endX, endTop, endBottom);
    return 0;
}

// Borders snap to the crossings of the layer boundaries with the shear surface, so that every
// slice base lies in one layer; then slices that became too wide are halved.
// Returns 0, 200, 200+, 299 or 300+.
int refineAtLayers(Section& s, int layers, const Arr1<double, MAXLAY>& zlayer) {
    double layerX[kMaxCrossings + 1];
    double layerZ[kMaxCrossings + 1];
    int found = 0;
    for (int l = 1; l <= layers; ++l) {
        const double level = zlayer(l);
        for (int i = 1; i < s.npt; ++i) {
            if ((s.zs(i) - level) * (s.zs(i + 1) - level) > kLayerProduct) continue;
            const double dz = s.zs(i + 1) - s.zs(i);
            const double x = dz == 0.0 ? s.xs(i) : s.xs(i) + (level - s.zs(i)) / dz * (s.xs(i + 1) - s.xs(i));
            bool known = false;
            for (int k = 1; k <= found; ++k) known = known || std::fabs(layerX[k] - x) < kTol;
            if (known) continue;
            if (found == kMaxCrossings) {
                say(" **** SR/GEOMET : SLICE MODIFICATION PROBLEM");
                return 200;
            }
            ++found;
            layerX[found] = x;
            layerZ[found] = level;
        }
    }
    SORT2(found, 1, &layerX[1], &layerZ[1]);
    if (MASTER.JPRINT > 2) {
        io::writeLine(MASTER.NF18, "HORIZONTAL LAYERS INTERSECTION POINTS");
        io::writeLine(MASTER.NF18, io::Line().A("NUM", 4).A("XX", 12).A("ZZ", 12).str());
        for (int k = 1; k <= found; ++k)
            io::writeLine(MASTER.NF18, io::Line().I(k, 4).F(layerX[k], 12, 4).F(layerZ[k], 12, 4).str());
    }

    const double widthFirst = s.XX(2, 1) - s.XX(1, 1);
    int lastMoved = 0;  // border 0, the left end, never moves
    for (int k = 1; k <= found; ++k) {
        const double x = layerX[k];
        if (x < s.XX(1, 1) || x > s.XX(2, s.numslc)) continue;
        int slice = 1;
        while (slice < s.numslc && x > s.XX(2, slice)) ++slice;
        int border = x - s.XX(1, slice) <= s.XX(2, slice) - x ? slice - 1 : slice;
        if (border <= lastMoved) border = slice;
        if (border <= lastMoved) continue;
        double top = 0.0;
        const int code = soilDepth(s, x, top);
        if (code != 0) {
            say(io::Line(" **** SR/GEOMET : ERROR RETURN FROM SR/INTPOL").Free(code).str());
            return 200 + code;
        }
        if (border == s.numslc) {
            // The right end stays where it is: the last slice is split at the crossing.
            if (s.numslc == MAXSLC) return 299;
            const double endX = s.XX(2, s.numslc);
            const double endTop = s.ZZ(2, s.numslc);
            const double endBottom = s.ZZ(3, s.numslc);
            ++s.numslc;
            placeBorder(s, s.numslc - 1, x, top, layerZ[k]);
            placeBorder(s, s.numslc, endX, endTop, endBottom);
        } else {
            placeBorder(s, border, x, top, layerZ[k]);
        }
        lastMoved = border;
    }

    for (int i = 1; i <= s.numslc;) {
        if (s.XX(2, i) - s.XX(1, i) <= kWideSlice * widthFirst) {
            ++i;
            continue;
        }
        const int ierr = halveSlice(s, i);
        if (ierr != 0) return ierr;
    }
    return 0;
}

// Checks every slice and gives it its area and centroid. Returns 0, -I for a slice of no
// width or a negative face (at once), or 100+I for the last slice of no area.
int areasAndCentroids(Section& s, Arr1<double, MAXSLC>& AREA) {
    int ierr = 0;
    for (int i = 1; i <= s.numslc; ++i) {
        const double width = s.XX(2, i) - s.XX(1, i);
        const double leftHeight = s.ZZ(4, i) - s.ZZ(1, i);
        const double rightHeight = s.ZZ(3, i) - s.ZZ(2, i);
        if (width < kTol || leftHeight < 0.0 || rightHeight < 0.0) {
            say(io::Line(" **** SR/GEOMET : PROBLEM WITH SLICE = ").Free(i).str());
            say("   N     X-SLICE       Z-SLICE");
            for (int corner = 1; corner <= 4; ++corner)
                say(io::Line().I(corner, 4).F(s.XX(corner, i), 12, 4).F(s.ZZ(corner, i), 14, 4).str());
            return -i;
        }
        AREA(i) = 0.5 * (leftHeight + rightHeight) * width;
        if (AREA(i) <= kTol) {
            say(io::Line(" **** SR/GEOMET :  ZERO OR NEGATIVE SLICE AREA ").Free(i).Free(AREA(i)).str());
            ierr = 100 + i;
            continue;
        }
        loadPoint(s.XX, s.ZZ, i, AREA(i));
    }
    return ierr;
}

}  // namespace

void GEOMET(int nsp, int npt, int& numslc, int nslreq, int idtyp, const Arr1<double, MAXCOL>& xsoil,
            const Arr1<double, MAXCOL>& zsoil, const Arr1<double, MAXCOL>& zrock, Arr1<double, MAXPTS>& xs,
            Arr1<double, MAXPTS>& zs, double& dc, double xwall, double zwall, Corners& XX, Corners& ZZ,
            Arr1<double, MAXSLC>& AREA, int& ntyp, int nlayer, const Arr1<double, MAXLAY>& zlayer, int& ierr,
            int icsrch) {
    Section s{nsp,
              npt,
              xsoil,
              zsoil,
              zrock,
              xs,
              zs,
              XX,
              ZZ,
              numslc,
              // (counts beyond the arrays are reported below, before any depth is asked)
              checkedBrokenLine(std::min(nsp, MAXCOL), 1, xsoil.data(), zsoil.data()),
              checkedBrokenLine(std::min(nsp, MAXCOL), 1, xsoil.data(), zrock.data()),
              checkedBrokenLine(std::min(npt, MAXPTS), 1, xs.data(), zs.data())};
    const bool earthPressure = idtyp == 2;
    bool lifted = false;
    ierr = 0;

    // Counts that would index outside the surface arrays are segment errors of that surface.
    if (nsp > MAXCOL) ierr = 4;
    if (npt > MAXPTS) ierr = 5;

    // Rock; in an earth-pressure problem the surface is then shifted through the wall foot
    // and cleared of rock once more.
    if (ierr == 0) {
        const int code = liftOutOfRock(s, lifted);
        if (code != 0) ierr = 30 + code;
    }
    if (ierr == 0 && earthPressure) {
        double depthAtWall = 0.0;
        int code = shearDepth(s, xwall, depthAtWall);
        if (code != 0) {
            ierr = 20 + code;
        } else {
            const double shift = depthAtWall - zwall;
            for (int i = 1; i <= npt; ++i) zs(i) -= shift;
            code = liftOutOfRock(s, lifted);
            if (code != 0) ierr = 30 + code;
        }
    }
    if (ierr == 0 && MASTER.JPRINT > 2) traceRock(s);

    double crossX[kMaxCrossings + 1];
    int crossings = 0;
    if (ierr == 0) ierr = findCrossings(s, dc, icsrch, crossX, crossings);
    if (ierr != 0) {
        printProfile(s, ierr);
        return;
    }

    // Entry x1 and exit x2.
    double x1 = 0.0;
    double x2 = 0.0;
    if (crossings == 0) {
        say(std::string(" **** SR/GEOMET : NO INTERSECTION BETWEEN SOIL AND ") + " SHEAR SURFACE");
        ierr = 1;
    } else if (crossings == 1 && !earthPressure) {
        say(std::string(" **** SR/GEOMET : ONE INTERSECTION ONLY BETWEEN SOIL ") + " AND SHEAR SURFACE");
        ierr = 2;
    } else {
        if (crossings > 2 && MASTER.IGWARN == 0) {
            MASTER.IGWARN = 1;
            say(io::Line(" **** SR/GEOMET WARNING :").Free(crossings)
                    .A(std::string(" INTERSECTIONS ") + " BETWEEN SOIL AND SHEAR SURFACE").str());
            io::Line values(" X-VALUES :");
            for (int k = 1; k <= std::min(crossings, kMaxCrossings); ++k) values.Free(crossX[k]);
            say(values.str());
        }
        x1 = crossX[1];
        x2 = crossings > 1 ? crossX[2] : x1;
    }
    // The wall bounds the slices of an earth-pressure problem.
    if (ierr == 0 && earthPressure) {
        if (crossings == 1 && x1 >= xwall) {
            say(io::Line(" **** SR/GEOMET PROBLEM  XWALL,XX(1)=").Free(xwall).Free(x1).str());
            ierr = 3;
        } else if (crossings > 1 && xwall > x2) {
            say(io::Line(" **** SR/GEOMET PROBLEM  XWALL,XX(1),XX(2)=").Free(xwall).Free(x1).Free(x2).str());
            ierr = 3;
        }
        x2 = xwall;
    }
    if (ierr != 0) {
        // In batch mode nobody can answer; interactively the user decides on the profile.
        if (batchMode()) {
            if (ierr != 1 && ierr != 2) say(io::Line(" **** SR/GEOMET PROBLEM  IERR=").Free(ierr).str());
            return;
        }
        sayPrompt(std::string("SHALL GEOMETRY PROFILE BE PRINTED ON FILE NF18 ") + " (Y/N) ..... ");
        int answer = 0;
        YESNO(answer, MASTER.NFIN);
        if (answer == 1) printProfile(s, ierr);
        return;
    }

    // Slice borders.
    const bool equalWidths = ntyp != 1 || nslreq != 0;
    if (equalWidths) {
        if (numslc < 1 || numslc > MAXSLC) {
            ierr = 99;
            return;
        }
        ierr = equalBorders(s, x1, x2);
    } else {
        ierr = generalBorders(s, x1, x2, dc, earthPressure);
        if (ierr == 99) return;
    }
    if (ierr != 0) {
        printProfile(s, ierr);
        return;
    }
    if (MASTER.JPRINT > 2) traceSlices(s, std::string(" SR/GEOMET TRACE PRINT * * * UNSHIFTED SLICE") + " GEOMETRY");

    const int layers = std::clamp(nlayer, 0, MAXLAY);
    if (equalWidths && layers > 0) {
        ierr = refineAtLayers(s, layers, zlayer);
        // Splitting at the layer boundaries adds slices to the number asked for: say why the
        // surface fails and what helps.
        if (ierr == 299)
            say(io::Line(" **** SR/GEOMET : MORE THAN").I(MAXSLC, 3)
                    .A(" SLICES AFTER SPLITTING AT LAYER BOUNDARIES , GIVE FEWER SLICES").str());
        if (ierr != 0) return;
        if (MASTER.JPRINT > 2) traceSlices(s, " SHIFTED SLICE GEOMETRY");
    }

    ierr = areasAndCentroids(s, AREA);
    if (ierr < 0) return;
    if (ierr != 0) {
        printProfile(s, ierr);
        return;
    }

    if (dc < kTol) dc = ZZ(4, 1) - ZZ(1, 1);
    if (lifted) ntyp = -ntyp;
}
