// input/mesh.cpp
//
// MESH — the structured mesh of the soil section: x-lines, nodes, elements, element
// materials, horizontal layers and material triangles; and the node value print.
//
// The section is cut by vertical x-lines carrying a ground level and a rock level (z down,
// the rock deeper). The interval between two x-lines is divided into its given number of
// element columns of equal width, and every column into NZ elements of equal height from the
// rock up to the ground. Nodes are numbered column by column from the left and, within a
// column, from the rock (first) up to the ground (last): node (c, j) = (c-1)(NZ+1) + j.
// Elements follow the same order; the element whose lower-left node is n has the corners
// n+1 (upper left), n+NZ+2 (upper right), n+NZ+1 (lower right), n (lower left).
//
// Two modes, chosen by MASTER.IERR on entry:
//   0        build: read the geometry section from the work file (channel MASTER.NF15), every
//            length multiplied by MASTER.FCTLEN; maxMaterial receives the highest material
//            number used by elements, layers and triangles.
//   nonzero  print: pore pressure and undrained strengths at every node, node, element and
//            x-line tables in the log file when JPLOT > 2, and a plot of the node values
//            (su0 in a total stress analysis, else the pore pressure) in the log file.
//            maxMaterial is not changed.
//
// Reads:  MASTER.IERR, NF15, NF18, FCTLEN, EPS, PI, IDEFTO, JPLOT; TEXT.TITLE;
//         in print mode the whole mesh and everything PWPXZ and SUXZ read.
// Writes: IGEOMS NXLINE, NUMX, NX, NZ, NELEM, NNODE, IELNOD, IELMAT, NLAYER, LAYMAT, NTRI,
//         ITRMAT; GEOMSH XLIN, ZSLIN, ZRLIN, XNOD, ZNOD, XSURF, ZSURF, ZROCK (one entry per
//         node column, NX+1 of them: the ground-surface broken line), ZLAYER, XTRI, ZTRI
//         (vertices sorted by x); in print mode PWNODV, SU0NOD, SUANOD, SUDNOD, SUPNOD.
// IERR:   0 ok; 1 a record could not be read (" **** SR/MESH : INPUT DATA FORMAT ERROR  ID="
//         with the record identifier below); 2 a data error; 4 no blank line ending the
//         control section; print mode: 3 a node value could not be computed.
//
// Record identifiers in the format error message: 10001..10004 the counts of x-lines,
// z-elements, layers and triangles; 20000+i x-line i; 30000+r the r-th node shift record;
// 40000+r the r-th element material record; 50000+r the r-th layer record; 60000+t triangle
// t. A heading line missing at the end of the data gives the identifier of its group with
// number 0 (10000, 20000, 50000, 60000). Beyond 9999 records of one group the number stays
// at 9999.
//
// Data errors are refused before any number from the input is used as an index: counts are
// tested against the array sizes first, node and element numbers of the shift and material
// records against the node and element counts.

#include <algorithm>
#include <string>
#include <string_view>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"
#include "slices/slices.h"

namespace {

constexpr int kMaxZElements = 35;
constexpr double kLowestLayer = -1000000.0;
constexpr int kMaxPositionErrors = 50;

constexpr int kIdCounts = 10000;
constexpr int kIdXLine = 20000;
constexpr int kIdShift = 30000;
constexpr int kIdElement = 40000;
constexpr int kIdLayer = 50000;
constexpr int kIdTriangle = 60000;
constexpr int kIdLastNumber = 9999;

// Node value plot: 100 positions by at most 100 lines; a print line is about 5/3 as high as
// a character is wide, so 0.6 lines per character width keep the section's proportions.
constexpr int kPlotPositions = 100;
constexpr int kPlotMaxLines = 100;
constexpr double kLinesPerPosition = 0.6;
constexpr double kTinyExtent = 1.0E-6f;
char gPlotGrid[kPlotMaxLines * kPlotPositions];

int recordId(int group, int number) { return group + std::min(number, kIdLastNumber); }

void fail(int code, const io::Line& message) {
    say(message.str());
    MASTER.IERR = code;
}

void formatError(int id) { fail(1, io::Line(" **** SR/MESH : INPUT DATA FORMAT ERROR  ID=").Free(id)); }

void skipHeading(int id) {
    std::string line;
    if (io::readLine(MASTER.NF15, line, 40) != io::kReadOk) formatError(id);
}

template <typename... Values>
void readRecord(int id, Values&... values) {
    if (io::readFree(MASTER.NF15, values...) != io::ReadStatus::Ok) formatError(id);
}

// Step 2: the four counts, each tested before it sizes anything.
void readCounts() {
    int count = 0;
    readRecord(kIdCounts + 1, count);
    if (MASTER.IERR != 0) return;
    if (count < 0 || count > MAXXLN) return fail(2, io::Line(" **** SR/MESH : NUMBER OF X-LINES").Free(count));
    IGEOMS.NXLINE = count == 0 ? 2 : count;

    readRecord(kIdCounts + 2, count);
    if (MASTER.IERR != 0) return;
    if (count < 0 || count > kMaxZElements)
        return fail(2, io::Line(" **** SR/MESH : NUMBER OF Z-ELEMENTS").Free(count));
    IGEOMS.NZ = count == 0 ? 1 : count;

    readRecord(kIdCounts + 3, count);
    if (MASTER.IERR != 0) return;
    if (count < 0 || count > MAXLAY)
        return fail(2, io::Line(" **** SR/MESH : NUMBER OF HORIZONTAL LAYERS").Free(count));
    IGEOMS.NLAYER = count;

    readRecord(kIdCounts + 4, count);
    if (MASTER.IERR != 0) return;
    if (count < 0 || count > MAXTRI)
        return fail(2, io::Line(" **** SR/MESH : NUMBER OF MATERIAL TRIANGLES").Free(count));
    IGEOMS.NTRI = count;
}

// Step 3: the x-lines with their column counts; NX is their sum.
void readXLines() {
    skipHeading(kIdXLine);
    if (MASTER.IERR != 0) return;
    long long columns = 0;
    for (int i = 1; i <= IGEOMS.NXLINE; ++i) {
        double x = 0, ground = 0, rock = 0;
        int numx = 0;
        readRecord(recordId(kIdXLine, i), x, ground, rock, numx);
        if (MASTER.IERR != 0) return;
        x *= MASTER.FCTLEN;
        ground *= MASTER.FCTLEN;
        rock *= MASTER.FCTLEN;
        if (i > 1 && !(x > GEOMSH.XLIN(i - 1)))
            return fail(2, io::Line(" **** SR MESH : X-LINES SEQUENCE ERROR").Free(i).Free(GEOMSH.XLIN(i - 1)).Free(x));
        if (!(rock > ground))
            return fail(2, io::Line(" **** SR/MESH : SURFACE/ROCK Z-LEVELS").Free(i).Free(ground).Free(rock));
        columns += numx;
        if (columns > MAXXLN)
            return fail(2, io::Line(" **** SR/MESH : TOO MANY X-DIRECTION ELEMENTS").Free(i).Free(numx).Free(columns));
        if (i < IGEOMS.NXLINE && numx < 1)
            return fail(2, io::Line(" **** SR/MESH : NON-ACCEPTED NUMX   N,NUMX =").Free(i).Free(numx));
        if (i == IGEOMS.NXLINE && numx != 0)
            return fail(2, io::Line(" **** SR/MESH : LAST X-LINE NUMX IS NOT ZERO").Free(i).Free(numx));
        GEOMSH.XLIN(i) = x;
        GEOMSH.ZSLIN(i) = ground;
        GEOMSH.ZRLIN(i) = rock;
        IGEOMS.NUMX(i) = numx;
    }
    IGEOMS.NX = static_cast<int>(columns);
}

// One node column at x: NZ+1 nodes evenly spaced from the rock up to the ground.
void addNodeColumn(int& node, double x, double ground, double rock) {
    const double step = (rock - ground) / IGEOMS.NZ;
    for (int j = 1; j <= IGEOMS.NZ + 1; ++j) {
        ++node;
        GEOMSH.XNOD(node) = x;
        GEOMSH.ZNOD(node) = rock - (j - 1) * step;
    }
}

// Steps 4 and 5: element and node counts, node coordinates.
void generateNodes() {
    IGEOMS.NELEM = IGEOMS.NX * IGEOMS.NZ;
    if (IGEOMS.NELEM > MAXELM) return fail(2, io::Line(" **** SR/MESH : TOO MANY ELEMENTS").Free(IGEOMS.NELEM));
    IGEOMS.NNODE = (IGEOMS.NX + 1) * (IGEOMS.NZ + 1);
    // More nodes than the node arrays hold is possible within the element limit (many thin
    // columns); it is refused here, before any node is stored.
    if (IGEOMS.NNODE > MAXNOD)
        return fail(2, io::Line(" **** SR/MESH : NODE NUMBER PROBLEM").Free(IGEOMS.NNODE).Free(MAXNOD));

    int node = 0;
    for (int k = 1; k < IGEOMS.NXLINE; ++k) {
        const int numx = IGEOMS.NUMX(k);
        for (int c = 0; c < numx; ++c) {
            const double part = static_cast<double>(c) / numx;
            addNodeColumn(node, GEOMSH.XLIN(k) + part * (GEOMSH.XLIN(k + 1) - GEOMSH.XLIN(k)),
                          GEOMSH.ZSLIN(k) + part * (GEOMSH.ZSLIN(k + 1) - GEOMSH.ZSLIN(k)),
                          GEOMSH.ZRLIN(k) + part * (GEOMSH.ZRLIN(k + 1) - GEOMSH.ZRLIN(k)));
        }
    }
    const int last = IGEOMS.NXLINE;
    addNodeColumn(node, GEOMSH.XLIN(last), GEOMSH.ZSLIN(last), GEOMSH.ZRLIN(last));
    if (node != IGEOMS.NNODE)
        return fail(2, io::Line(" **** SR/MESH : NODE NUMBER PROBLEM").Free(node).Free(IGEOMS.NNODE));
}

// Step 6: node shift records, read until one reaches the last node; a record with first
// node 0 ends them at once. Shift records that stop short of the last node leave their last
// node number standing against the node count, as if it overshot.
void readNodeShifts() {
    int lastNode = 0;
    for (int record = 1;; ++record) {
        int first = 0, lastShifted = 0, step = 0;
        double zFirst = 0, zLast = 0;
        readRecord(recordId(kIdShift, record), first, lastShifted, step, zFirst, zLast);
        if (MASTER.IERR != 0) return;
        if (first == 0) {
            if (record > 1)
                return fail(2, io::Line(" **** SR/MESH : LAST NODE NUMBER TOO HIGH").Free(lastNode).Free(IGEOMS.NNODE));
            return;
        }
        zFirst *= MASTER.FCTLEN;
        zLast *= MASTER.FCTLEN;
        if (step < 1) step = 1;
        if (first < 1 || lastShifted < first)
            return fail(2, io::Line(" **** SR/MESH : NODE SHIFT SEQUENCE ERROR").Free(first).Free(lastShifted));
        if (lastShifted > IGEOMS.NNODE)
            return fail(2,
                        io::Line(" **** SR/MESH : LAST NODE NUMBER TOO HIGH").Free(lastShifted).Free(IGEOMS.NNODE));

        const double xFirst = GEOMSH.XNOD(first);
        const double span = GEOMSH.XNOD(lastShifted) - xFirst;
        // span <= 0 is listed too so that a zero tolerance can never divide by zero.
        const bool vertical = span < MASTER.EPS || span <= 0.0;
        for (int n = first;; n += step) {
            GEOMSH.ZNOD(n) = vertical ? zFirst : zFirst + (zLast - zFirst) * (GEOMSH.XNOD(n) - xFirst) / span;
            if (lastShifted - n < step) break;
        }
        lastNode = lastShifted;
        if (lastShifted == IGEOMS.NNODE) return;
    }
}

// Every node must lie above (smaller z than) the node below it in its column. Up to 50
// violations are listed and the build goes on (a layer may pinch out to zero thickness);
// more stop it.
void checkNodeOrder() {
    int violations = 0;
    for (int c = 1; c <= IGEOMS.NX + 1; ++c) {
        const int bottom = (c - 1) * (IGEOMS.NZ + 1) + 1;
        for (int n = bottom + 1; n <= bottom + IGEOMS.NZ; ++n) {
            if (GEOMSH.ZNOD(n) < GEOMSH.ZNOD(n - 1)) continue;
            ++violations;
            say(io::Line(" **** SR/MESH : NODE SHIFT POSITION ERROR")
                    .Free(n)
                    .Free(GEOMSH.XNOD(n))
                    .Free(GEOMSH.ZNOD(n))
                    .str());
            if (violations > kMaxPositionErrors) {
                MASTER.IERR = 2;
                return;
            }
        }
    }
}

// Step 7: element material records, default material 1, with the same ending rules as the
// node shifts. A material below 1 is refused as a sequence error: no material table entry
// could answer for it.
void readElementMaterials() {
    for (int e = 1; e <= IGEOMS.NELEM; ++e) IGEOMS.IELMAT(e) = 1;
    int lastElement = 0;
    for (int record = 1;; ++record) {
        int first = 0, last = 0, step = 0, material = 0;
        readRecord(recordId(kIdElement, record), first, last, step, material);
        if (MASTER.IERR != 0) return;
        if (first == 0) {
            if (record > 1)
                return fail(2, io::Line(" **** SR/MESH : LAST ELEMENT NUMBER TOO HIGH")
                                   .Free(lastElement)
                                   .Free(IGEOMS.NELEM));
            return;
        }
        if (step < 1) step = 1;
        if (first < 1 || last < first || material < 1)
            return fail(2, io::Line(" **** SR/MESH : ELEMENT SEQUENCE ERROR").Free(first).Free(last).Free(material));
        if (last > IGEOMS.NELEM)
            return fail(2, io::Line(" **** SR/MESH : LAST ELEMENT NUMBER TOO HIGH").Free(last).Free(IGEOMS.NELEM));
        for (int e = first;; e += step) {
            IGEOMS.IELMAT(e) = material;
            if (last - e < step) break;
        }
        lastElement = last;
        if (last == IGEOMS.NELEM) return;
    }
}

// Step 8: horizontal layers, levels strictly increasing (downward) from record to record.
void readLayers(int& maxMaterial) {
    skipHeading(kIdLayer);
    if (MASTER.IERR != 0) return;
    double previous = kLowestLayer;
    for (int i = 1; i <= IGEOMS.NLAYER; ++i) {
        int layer = 0, material = 0;
        double level = 0;
        readRecord(recordId(kIdLayer, i), layer, level, material);
        if (MASTER.IERR != 0) return;
        level *= MASTER.FCTLEN;
        // Layers are walked in their order from the top down, so layer k is the k-th record:
        // a number out of turn would leave a layer without a material.
        if (!(level > previous) || layer != i || layer > MAXLAY || material < 1)
            return fail(2, io::Line(" **** SR/MESH : SOIL LAYER DATA PROBLEM")
                               .Free(i)
                               .Free(layer)
                               .Free(level)
                               .Free(material));
        GEOMSH.ZLAYER(layer) = level;
        IGEOMS.LAYMAT(layer) = material;
        maxMaterial = std::max(maxMaterial, material);
        previous = level;
    }
}

// Step 9: material triangles, numbered 1, 2, ... in order; vertices stored by ascending x.
void readTriangles(int& maxMaterial) {
    skipHeading(kIdTriangle);
    if (MASTER.IERR != 0) return;
    for (int t = 1; t <= IGEOMS.NTRI; ++t) {
        int number = 0, material = 0;
        double corner[6] = {0, 0, 0, 0, 0, 0};
        io::FreeReader reader(MASTER.NF15);
        reader(number)(material).array(corner, 6);
        if (!reader.ok()) return formatError(recordId(kIdTriangle, t));
        if (number != t || material < 1)
            return fail(2, io::Line(" **** SR/MESH : MATERIAL TRIANGLES SEQUENCE ERROR")
                               .Free(t)
                               .Free(number)
                               .Free(material));
        IGEOMS.ITRMAT(t) = material;
        for (int k = 1; k <= 3; ++k) {
            GEOMSH.XTRI(k, t) = corner[2 * k - 2] * MASTER.FCTLEN;
            GEOMSH.ZTRI(k, t) = corner[2 * k - 1] * MASTER.FCTLEN;
        }
        SORT2(3, 1, GEOMSH.XTRI.column(t), GEOMSH.ZTRI.column(t));
        maxMaterial = std::max(maxMaterial, material);
    }
}

// Step 10: element corners, and the x-line table rebuilt from the top and bottom node of
// every node column.
void connectMesh() {
    const int NZ = IGEOMS.NZ;
    for (int c = 1; c <= IGEOMS.NX; ++c) {
        for (int j = 1; j <= NZ; ++j) {
            const int e = (c - 1) * NZ + j;
            const int lowerLeft = (c - 1) * (NZ + 1) + j;
            IGEOMS.IELNOD(1, e) = lowerLeft + 1;
            IGEOMS.IELNOD(2, e) = lowerLeft + NZ + 2;
            IGEOMS.IELNOD(3, e) = lowerLeft + NZ + 1;
            IGEOMS.IELNOD(4, e) = lowerLeft;
        }
    }
    for (int c = 1; c <= IGEOMS.NX + 1; ++c) {
        const int top = c * (NZ + 1);
        const int bottom = top - NZ;
        GEOMSH.XSURF(c) = GEOMSH.XNOD(top);
        GEOMSH.ZSURF(c) = GEOMSH.ZNOD(top);
        GEOMSH.ZROCK(c) = GEOMSH.ZNOD(bottom);
    }
}

void buildMesh(int& maxMaterial) {
    maxMaterial = 0;
    std::string line;
    if (io::readLine(MASTER.NF15, line, 40) != io::kReadOk || !io::isBlank(line))
        return fail(4, io::Line(" **** SR/MESH : BLANK LINE EXPECTED AT END OF CONTROL SECTION"));
    skipHeading(kIdCounts);
    if (MASTER.IERR != 0) return;
    readCounts();
    if (MASTER.IERR != 0) return;
    readXLines();
    if (MASTER.IERR != 0) return;
    generateNodes();
    if (MASTER.IERR != 0) return;
    readNodeShifts();
    if (MASTER.IERR != 0) return;
    checkNodeOrder();
    if (MASTER.IERR != 0) return;
    readElementMaterials();
    if (MASTER.IERR != 0) return;
    for (int e = 1; e <= IGEOMS.NELEM; ++e) maxMaterial = std::max(maxMaterial, IGEOMS.IELMAT(e));
    readLayers(maxMaterial);
    if (MASTER.IERR != 0) return;
    readTriangles(maxMaterial);
    if (MASTER.IERR != 0) return;
    connectMesh();
}

// Print mode: pore pressure and the undrained strengths at 45, 0 and -45 degrees base
// inclination at every node. A failing node is reported and the loop goes on.
bool computeNodeValues() {
    bool allComputed = true;
    for (int n = 1; n <= IGEOMS.NNODE; ++n) {
        const double x = GEOMSH.XNOD(n), z = GEOMSH.ZNOD(n);
        MASTER.IERR = 0;
        PWPXZ(x, z, GEOMSH.PWNODV(n));
        if (MASTER.IERR != 0) {
            say(io::Line(" **** SR/MESH : ERROR IN SR/PWPXZ  NP,IERR=").Free(n).Free(MASTER.IERR).str());
            allComputed = false;
        }
        double beta = MASTER.PI * 0.5;
        double* strength[3] = {&GEOMSH.SUANOD(n), &GEOMSH.SUDNOD(n), &GEOMSH.SUPNOD(n)};
        for (double* su : strength) {
            beta -= MASTER.PI * 0.25;
            MASTER.IERR = 0;
            SUXZ(x, z, beta, GEOMSH.SU0NOD(n), *su);
            if (MASTER.IERR != 0) {
                say(io::Line(" **** SR/MESH : ERROR IN SR/SUXZ   NP,IERR=").Free(n).Free(MASTER.IERR).str());
                allComputed = false;
            }
        }
    }
    MASTER.IERR = 0;
    return allComputed;
}

void printTables() {
    const int nf = MASTER.NF18;
    io::writeLine(nf, "");
    io::writeLine(nf, "  NODE  X-COORD   Z-COORD    P.W.P.     SU-0     SU-ACT    SU-DIR    SU-PAS");
    for (int n = 1; n <= IGEOMS.NNODE; ++n)
        io::writeLine(nf, io::Line()
                              .I(n, 6)
                              .F(GEOMSH.XNOD(n), 10, 3)
                              .F(GEOMSH.ZNOD(n), 10, 3)
                              .F(GEOMSH.PWNODV(n), 10, 2)
                              .F(GEOMSH.SU0NOD(n), 10, 2)
                              .F(GEOMSH.SUANOD(n), 10, 2)
                              .F(GEOMSH.SUDNOD(n), 10, 2)
                              .F(GEOMSH.SUPNOD(n), 10, 2)
                              .str());
    io::writeLine(nf, "");
    io::writeLine(nf, "  ELM   MAT     I    J    K    L");
    for (int e = 1; e <= IGEOMS.NELEM; ++e)
        io::writeLine(nf, io::Line()
                              .I(e, 5)
                              .I(IGEOMS.IELMAT(e), 6)
                              .I(IGEOMS.IELNOD(1, e), 6)
                              .I(IGEOMS.IELNOD(2, e), 5)
                              .I(IGEOMS.IELNOD(3, e), 5)
                              .I(IGEOMS.IELNOD(4, e), 5)
                              .str());
    io::writeLine(nf, "");
    io::writeLine(nf, "  X-COORD     Z-SURF     Z-ROCK");
    for (int c = 1; c <= IGEOMS.NX + 1; ++c)
        io::writeLine(nf,
                      io::Line().F(GEOMSH.XSURF(c), 9, 3).F(GEOMSH.ZSURF(c), 11, 3).F(GEOMSH.ZROCK(c), 11, 3).str());
}

// Plot lines for the node extents: true proportions, at least 2 and at most 100 lines.
int plotLines(double xExtent, double zExtent) {
    if (xExtent < kTinyExtent) return kPlotMaxLines;
    const double lines = 1.0 + kLinesPerPosition * (kPlotPositions - 4) * zExtent / xExtent + 0.5;
    if (lines >= kPlotMaxLines) return kPlotMaxLines;
    return std::max(2, static_cast<int>(lines));
}

std::string trimmed(std::string_view text) {
    size_t end = text.find_last_not_of(' ');
    return std::string(end == std::string_view::npos ? std::string_view() : text.substr(0, end + 1));
}

void plotNodeValues() {
    double xMin = GEOMSH.XNOD(1), xMax = xMin, zMin = GEOMSH.ZNOD(1), zMax = zMin;
    for (int n = 2; n <= IGEOMS.NNODE; ++n) {
        xMin = std::min(xMin, GEOMSH.XNOD(n));
        xMax = std::max(xMax, GEOMSH.XNOD(n));
        zMin = std::min(zMin, GEOMSH.ZNOD(n));
        zMax = std::max(zMax, GEOMSH.ZNOD(n));
    }
    const bool totalStress = MASTER.IDEFTO == 2;
    const int nf = MASTER.NF18;
    io::writeLine(nf, "");
    io::writeLine(nf, totalStress
                          ? " PLOT SHOWS UNDRAINED SHEAR STRENGTH (SU0-VALUES) COMPUTED AT MESH NODAL POINTS"
                          : " PLOT SHOWS PORE-WATER-PRESSURES COMPUTED AT MESH NODAL POINTS");
    io::writeLine(nf, io::Line(" ").A(trimmed(TEXT.TITLE(1).view())).str());
    io::writeLine(nf, io::Line(" ").A(trimmed(TEXT.TITLE(2).view())).str());
    io::writeLine(nf, "");
    double* values = totalStress ? GEOMSH.SU0NOD.data() : GEOMSH.PWNODV.data();
    XYPLOT(plotLines(xMax - xMin, zMax - zMin), kPlotPositions, gPlotGrid, IGEOMS.NNODE, nf, GEOMSH.XNOD.data(),
           GEOMSH.ZNOD.data(), values, -1.0);
}

void printNodeValues() {
    MASTER.IERR = 0;
    if (IGEOMS.NNODE < 1 || IGEOMS.NNODE > MAXNOD) return;
    const bool allComputed = computeNodeValues();
    if (MASTER.JPLOT > 2) printTables();
    plotNodeValues();
    MASTER.IERR = allComputed ? 0 : 3;
}

}  // namespace

void MESH(int& maxMaterial) {
    if (MASTER.IERR != 0) {
        printNodeValues();
        return;
    }
    buildMesh(maxMaterial);
}
