// input/read.cpp
//
// READ — reads the whole input file KALMO.INP into the problem records.
//
// The input is first copied into the comment-free work file KALMO.TMP (from line 3 on, lines
// beginning with "*" or "C" are dropped; an "END" line or the end of the file ends the copy),
// then the work file is read section by section: control data, geometry (through MESH),
// materials, pore water, loads (and soil nails through READSN), general shear surfaces and
// line control points. Every value is converted into internal units on the way: lengths by
// FCTLEN, forces by FCTFRC, stresses by FCTFRC/FCTLEN**2, unit weights by the stress factor
// over FCTLEN; friction angles become their tangents. Line control coordinates are the one
// exception and are kept as written.
//
// Counts in the file may exceed the system limits. Such a count is stored as read, so that the
// size checks after reading report it, but only the records that fit the arrays are stored:
// the values beyond the limits are read and checked like all others and then dropped. A
// consistent file with too much data therefore reads to its end and meets the size message,
// not a read error. The line control points, which no size check covers, are refused instead.
//
// An error message names the failing record by its ID; the report then ends with the line of
// KALMO.INP where it stands (" AT KALMO.INP LINE n:" and the line's text): the line the reading
// stopped on, or the line of an earlier record that the failed check found wrong. A copied line
// with text beyond column 80, which the reading cuts off, is warned about once.
//
// Reads:  KALMO.INP (channel NF14); answers from NFIN; MASTER.PI, NFOUT, POSTGRAF.NFCOPY
// Writes: KALMO.TMP (NF15), the echo print on KALMO.RES (NF16), the column-80 warnings also on
//         KALMO.LOG (NF18); MASTER control data, TEXT titles, POSTGRAF, GEOMSH wall data,
//         ISOLPR/SOLPRP, IWATER/WATER1, ILOA/LOAD, IGENER/GENERL, LINECONTROL; MESH and READSN
//         fill IGEOMS/GEOMSH and SNAILS
// IERR:   0 accepted; otherwise the number of the failing record (read failures and data
//         control), or: 1 fewer than 50 lines, bad analysis code, strength factors refused,
//         strip load or general surface x out of order; 5 fewer materials than the mesh uses;
//         100/102/103/204/205 blank line missing after the titles / geometry / materials /
//         pore water / loads; 201 water table level given with pore-pressure x-lines; 202 run
//         stopped for a missing water unit weight; 2, 3, 4 or a material number: hydrostatic
//         pore pressure contradicted; the code of MESH, INTPOL or READSN as it stands

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "control/control.h"
#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"

namespace {

constexpr int kFinestGrid = 50;  // most columns and rows of the weight grid of a slice

constexpr double kSmall = 1.0e-20f;            // zero tolerance of the checks
constexpr double kFactorHigh = 1.001f;         // strength factors outside these limits
constexpr double kFactorLow = 0.999f;          //   are questioned
constexpr double kMinWeightBelowWater = 0.01f; // a smaller MAT(18) takes the unit weight as read
constexpr double kFarLeft = -1000000.0;        // below every general surface x
constexpr int kMinLines = 50;
constexpr int kEchoLines = 10000;
constexpr int kFirstValues = 12;               // MAT(1..10), MAT(17), MAT(18)

// Unit factors of the run, fixed once record 100 is read.
double lengthFactor = 1.0;
double forceFactor = 1.0;
double stressFactor = 1.0;
double weightFactor = 1.0;

// Inside the general surfaces and line control, an end of the data is reported as a read
// past the end of the file, with a hint at what may be missing.
bool readingSurfaces = false;

// Where the lines of the work file came from, so that an error can name the line of KALMO.INP
// as the user wrote it: work line k is line inputLineOf[k - 1] of KALMO.INP, with that text.
std::vector<int> inputLineOf;
std::vector<std::string> inputText;
// The work line on which the read of each record ended, by record ID.
std::map<int, int> recordLine;
// The work line an error names: 0 is the line read last, where the reading stopped.
int errorLine = 0;
// The error has named its place already, or has no place in the file to name.
bool placeNamed = false;

// " AT KALMO.INP LINE n:" and the text of that line, after an error message.
void sayInputLine(int lineNumber, std::string_view text) {
    std::string shown(text);
    while (!shown.empty() && (shown.back() == ' ' || shown.back() == '\t')) shown.pop_back();
    say(io::Line().A(" AT KALMO.INP LINE ").A(std::to_string(lineNumber)).A(":").A(shown).str());
}

// Names the line of KALMO.INP that work line `workLine` was copied from.
void sayWorkLine(int workLine) {
    if (workLine < 1 || workLine > static_cast<int>(inputLineOf.size())) return;
    sayInputLine(inputLineOf[workLine - 1], inputText[workLine - 1]);
}

// An error found after record `id` was read lies in that record: name its line.
void blameRecord(int id) {
    const auto found = recordLine.find(id);
    if (found != recordLine.end()) errorLine = found->second;
}

void formatError(int id) {
    say(io::Line().A(" **** SR/READ - INPUT FILE FORMAT ERROR - ID=").Free(id).str());
    MASTER.IERR = id;
}

void pastEndOfFile(int id) {
    say(io::Line().A(" **** SR/READ - ATTEMPT TO READ PAST END-OF-FILE  ID=").Free(id).str());
    if (id < 5500) {
        if (IWATER.IDPWP == 2) {
            if (id < 5300) say(" CHECK THAT GENERAL SURFACE PWP-VALUES ARE INCLUDED");
            if (id > 5300) say(" CHECK THAT GENERAL SURFACE INITIAL STRESSES ARE INCLUDED");
        }
    } else {
        say(" CHECK THAT LINE CONTROL POINTS ARE INCLUDED");
    }
    MASTER.IERR = id;
}

void dataControl(int id) {
    say(io::Line().A(" **** SR/READ - INPUT DATA CONTROL   ID=").Free(id).str());
    MASTER.IERR = id;
}

// Reports a failed free-format read of record `id`; returns true when the read went well.
bool readOk(const io::FreeReader& reader, int id) {
    if (reader.ok()) {
        recordLine[id] = io::linePosition(MASTER.NF15);
        return true;
    }
    if (reader.atEnd() && readingSurfaces) {
        pastEndOfFile(id);
    } else {
        formatError(id);
    }
    return false;
}

// Reads the listed values as record `id`.
template <typename... Values>
bool readRecord(int id, Values&... values) {
    io::FreeReader reader(MASTER.NF15);
    (reader(values), ...);
    return readOk(reader, id);
}

// Reads `count` values into one record's reader: the first `room` go to `values`, the rest
// are read and dropped. A count beyond the array therefore never writes outside it, and a
// huge count given with a repeat item ("2000000000*1.0") is dropped in one step.
template <typename T>
void readList(io::FreeReader& reader, T* values, int count, int room) {
    const int stored = count < room ? count : room;
    for (int k = 0; k < stored && reader.ok(); ++k) reader(values[k]);
    if (count > stored) reader.drop<T>(count - stored);
}

// Reads a heading or other text line; the end of the data is reported under `id`.
bool readText(int id, std::string& line) {
    if (io::readLine(MASTER.NF15, line) == io::kReadOk) return true;
    if (readingSurfaces) {
        pastEndOfFile(id);
    } else {
        formatError(id);
    }
    return false;
}

bool skipLine(int id) {
    std::string line;
    return readText(id, line);
}

// The blank line that ends a section: its first 40 characters must be blank.
bool blankLine(int code, std::string_view expected) {
    std::string line;
    if (!readText(code, line)) return false;
    if (line.size() > 40) line.resize(40);
    if (io::isBlank(line)) return true;
    line.resize(40, ' ');
    say(io::Line().A(" **** SR/READ : BLANK LINE EXPECTED ").A(expected).str());
    say(io::Line().A(" **** LINE FOUND STARTS WITH : ").A(line).str());
    MASTER.IERR = code;
    return false;
}

bool answeredYes(std::string_view prompt, bool batchAnswer) {
    sayPrompt(prompt);
    if (batchMode()) return batchAnswer;
    int answer = 0;
    YESNO(answer, MASTER.NFIN);
    return answer == 1;
}

// ---------------------------------------------------------------------------------------------
// Work file and titles
// ---------------------------------------------------------------------------------------------

// Lines are read as 80 characters: text beyond column 80 would be lost without a sign, and a
// value cut short there changes the problem. Such a line is named once, as it is copied.
bool isCutOff(std::string_view line) {
    return line.size() > static_cast<size_t>(io::kLineLength) && !io::isBlank(line.substr(io::kLineLength));
}

void warnCutOff(int lineNumber) {
    const std::string warning = io::Line()
                                    .A(" **** WARNING : KALMO.INP LINE ")
                                    .A(std::to_string(lineNumber))
                                    .A(" HAS TEXT BEYOND COLUMN 80, IGNORED")
                                    .str();
    say(warning);
    io::writeLine(MASTER.NF18, warning);
}

bool prepare() {
    sayPrompt(" SHALL ECHO PRINT OF INPUT DATA BE MADE (Y/N) .... ");
    int answer = 0;
    YESNO(answer, MASTER.NFIN);
    POSTGRAF.IECHO = answer == 1 ? 1 : 0;

    io::rewind(MASTER.NF14);
    io::rewind(MASTER.NF15);
    io::rewind(MASTER.NF16);
    if (POSTGRAF.IECHO == 1) ECHO(MASTER.NF14, MASTER.NF16, kEchoLines);

    // The count includes the line that stops the copy (the END line or the failed read).
    int lineCount = 0;
    bool endLine = false;
    std::string line, lastRead;
    for (;;) {
        ++lineCount;
        if (io::readLine(MASTER.NF14, line, -1) != io::kReadOk) break;
        const bool beyondColumn80 = isCutOff(line);
        line.resize(std::min(line.size(), static_cast<size_t>(io::kLineLength)));
        lastRead = line;
        endLine = line.compare(0, 3, "END") == 0;
        if (endLine) break;
        bool comment = lineCount >= 3 && !line.empty() && (line[0] == '*' || line[0] == 'C');
        if (comment) continue;
        if (beyondColumn80) warnCutOff(lineCount);
        io::writeLine(MASTER.NF15, line);
        inputLineOf.push_back(lineCount);
        inputText.push_back(line);
    }
    if (lineCount < kMinLines) {
        say(io::Line().A(" **** SR/READ - LESS THAN 50 LINES IN INPUT FILE").Free(lineCount).str());
        // Where the copy stopped: at an END line, or at the last line of the file.
        const int lastLine = endLine ? lineCount : lineCount - 1;
        if (lastLine >= 1) sayInputLine(lastLine, lastRead);
        placeNamed = true;
        MASTER.IERR = 1;
        return false;
    }

    io::rewind(MASTER.NF15);
    for (int title = 1; title <= 2; ++title) {
        if (!readText(100, line)) return false;
        TEXT.TITLE(title).set(line);
    }

    if (!readText(100, line)) return false;
    if (line.size() > 40) line.resize(40);
    if (!io::isBlank(line)) {
        line.resize(40, ' ');
        say(" **** SR/READ : BLANK LINE EXPECTED AFTER THE TWO FIRST TEXT LINES");
        say(io::Line().A(" **** LINE FOUND STARTS WITH : ").A(line).str());
        MASTER.IERR = 100;
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------------------------
// Control section: records 100 to 1500
// ---------------------------------------------------------------------------------------------
bool decodeAnalysis(int code) {
    switch (code) {
        case -3: case -2: case -1:
        case 1: case 2: case 3:
        case 11: case 12: case 13:
        case 21: case 22: case 23:
        case 31: case 32: case 33:
            break;
        default:
            say(io::Line().A(" **** SR/READ : NON-ACCEPTED IDEFTO INPUT VALUE=").Free(code).str());
            MASTER.IERR = 1;
            return false;
    }
    if (code < 0) {
        MASTER.IDEFTO = -code;
        MASTER.METHOD = -1;
    } else if (code < 10) {
        MASTER.IDEFTO = code;
        MASTER.METHOD = 0;
    } else {
        MASTER.IDEFTO = code % 10;
        MASTER.METHOD = code / 10;
    }
    return true;
}

bool controlSection() {
    if (!readRecord(100, MASTER.FCTFRC, MASTER.FCTLEN)) return false;
    if (MASTER.FCTFRC < kSmall) MASTER.FCTFRC = 1.0;
    if (MASTER.FCTLEN < kSmall) MASTER.FCTLEN = 1.0;
    lengthFactor = MASTER.FCTLEN;
    forceFactor = MASTER.FCTFRC;
    stressFactor = forceFactor / (lengthFactor * lengthFactor);
    weightFactor = stressFactor / lengthFactor;

    if (!readRecord(200, MASTER.FCTSUC, MASTER.FCTTAN)) return false;
    if (MASTER.FCTSUC > kFactorHigh || MASTER.FCTSUC < kFactorLow || MASTER.FCTTAN > kFactorHigh ||
        MASTER.FCTTAN < kFactorLow) {
        say(io::freeRecord("WARNING FROM SR/READ :"));
        say(io::freeRecord("MATERIAL STRENGTH FACTOR \"FCTSUC\" = ", MASTER.FCTSUC));
        say(io::freeRecord("MATERIAL STRENGTH FACTOR \"FCTTAN\" = ", MASTER.FCTTAN));
        if (!answeredYes(" ARE THESE VALUES CORRECT (Y/N).......... ", true)) {
            MASTER.IERR = 1;
            return false;
        }
    }

    if (!readRecord(500, MASTER.IDTYP)) return false;
    int analysisCode = 0;
    if (!readRecord(600, analysisCode)) return false;
    if (!decodeAnalysis(analysisCode)) return false;
    if (!readRecord(700, MASTER.NUMGEN)) return false;
    if (!readRecord(800, MASTER.NUMSLC)) return false;
    MASTER.NSLREQ = MASTER.NUMSLC;
    if (!readRecord(900, MASTER.FCTSS)) return false;
    if (!readRecord(1200, MASTER.H3(1), MASTER.H3(2))) return false;
    if (!readRecord(1300, MASTER.R1, MASTER.R2, MASTER.R3)) return false;
    if (!readRecord(1310, MASTER.NEGPOK)) return false;
    if (!readRecord(1320, MASTER.NEGEOK)) return false;
    if (!readRecord(1350, MASTER.JPRINT)) return false;
    if (!readRecord(1360, MASTER.JSTRES)) return false;
    // The most negative integer has no positive counterpart: it becomes the largest one, which
    // the run then limits to 1..2 like any other large value.
    MASTER.JSTRES = MASTER.JSTRES == std::numeric_limits<int>::min() ? std::numeric_limits<int>::max()
                                                                     : std::abs(MASTER.JSTRES);
    if (!readRecord(1370, MASTER.JPLOT)) return false;
    if (!readRecord(1400, MASTER.E2TOL)) return false;
    if (!readRecord(1450, MASTER.CRTSCR)) return false;

    // Record 1500 is optional. Without it the read runs over the blank line into the geometry
    // heading: step back over both, so that the mesh builder finds its blank line.
    io::FreeReader reader(MASTER.NF15);
    reader(MASTER.MISC1)(MASTER.MISC2)(MASTER.MISC3)(MASTER.MISC4)(MASTER.MISC5);
    reader(MASTER.VALMSC1)(MASTER.VALMSC2)(MASTER.VALMSC3)(MASTER.VALMSC4)(MASTER.VALMSC5);
    if (reader.failed()) {
        io::backspace(MASTER.NF15);
        io::backspace(MASTER.NF15);
        MASTER.MISC1 = MASTER.MISC2 = MASTER.MISC3 = MASTER.MISC4 = MASTER.MISC5 = 0;
        MASTER.VALMSC1 = MASTER.VALMSC2 = MASTER.VALMSC3 = MASTER.VALMSC4 = MASTER.VALMSC5 = 0.0;
    } else if (reader.atEnd()) {
        formatError(1500);
        return false;
    }
    return true;
}

// ---------------------------------------------------------------------------------------------
// Geometry section: the mesh, then the wall of record 2200
// ---------------------------------------------------------------------------------------------
bool geometrySection(int& highestMaterial) {
    MASTER.IERR = 0;
    MESH(highestMaterial);
    if (MASTER.IERR != 0) {
        say(io::Line().A(" **** SR/READ - SR/MESH PROBLEM  IERR=").Free(MASTER.IERR).str());
        return false;
    }

    double wallX = 0.0, wallHeight = 0.0, wallRoughness = 0.0;
    if (!readRecord(2200, wallX, wallHeight, wallRoughness)) return false;
    GEOMSH.XWALL = wallX * lengthFactor;
    GEOMSH.DWALL = wallHeight * lengthFactor;
    GEOMSH.RWALL = wallRoughness;
    if (GEOMSH.DWALL >= kSmall) {
        // The ground-surface broken line has one point per node column.
        int columns = IGEOMS.NX + 1;
        if (columns > MAXCOL) columns = MAXCOL;
        double groundLevel = 0.0;
        int code = 0;
        INTPOL(columns, 1, GEOMSH.XSURF.data(), GEOMSH.ZSURF.data(), GEOMSH.XWALL, groundLevel, code);
        if (code != 0) {
            say(io::Line().A(" **** SR/READ - SR/INTPOL PROBLEM  IERR=").Free(code).str());
            MASTER.IERR = code;
            return false;
        }
        GEOMSH.ZWALL = GEOMSH.DWALL + groundLevel;
    }

    return blankLine(102, "AT END OF GEOMETRY SECTION");
}

// ---------------------------------------------------------------------------------------------
// Material section
// ---------------------------------------------------------------------------------------------

// Node values of a field: none, all nodes in one record, or one record per node.
// `listBase` + k is the record of the k-th listed node.
bool readNodeValues(int count, int allId, int listBase, double* nodeValues, double factor) {
    const int nodes = IGEOMS.NNODE;
    if (count == 0) return true;
    if (count == nodes) {
        const int room = nodes < MAXNOD ? nodes : MAXNOD;
        io::FreeReader reader(MASTER.NF15);
        readList(reader, nodeValues, nodes, room);
        if (!readOk(reader, allId)) return false;
        for (int n = 0; n < room; ++n) nodeValues[n] *= factor;
        return true;
    }
    for (int k = 1; k <= count; ++k) {
        int node = 0;
        double value = 0.0;
        if (!readRecord(listBase + k, node, value)) return false;
        if (node < 1 || node > nodes) {
            dataControl(listBase + k);
            return false;
        }
        if (node <= MAXNOD) nodeValues[node - 1] = value * factor;
    }
    return true;
}

// Profiles at given x: record base + i holds the x-line number, x, the point count and the
// levels; the next record the values. Counts beyond the arrays are kept for the size check.
bool readProfiles(int count, int base, int maxLines, int maxPoints, int* pointCount, double* xLine,
                  double* levels, double* values, double valueFactor) {
    for (int i = 1; i <= count; ++i) {
        const int id = base + i;
        const bool stored = i <= maxLines;
        int number = 0, points = 0;
        double x = 0.0;
        io::FreeReader head(MASTER.NF15);
        head(number)(x)(points);
        double* lineLevels = stored ? levels + (i - 1) * maxPoints : nullptr;
        double* lineValues = stored ? values + (i - 1) * maxPoints : nullptr;
        const int room = !stored ? 0 : (points < maxPoints ? points : maxPoints);
        readList(head, lineLevels, points, room);
        if (!readOk(head, id)) return false;
        if (number != i) {
            dataControl(id);
            return false;
        }
        io::FreeReader tail(MASTER.NF15);
        readList(tail, lineValues, points, room);
        if (!readOk(tail, id)) return false;
        if (!stored) continue;
        pointCount[i - 1] = points;
        xLine[i - 1] = x * lengthFactor;
        for (int k = 0; k < room; ++k) {
            lineLevels[k] *= lengthFactor;
            lineValues[k] *= valueFactor;
        }
    }
    return true;
}

bool materialSection(int highestMaterial) {
    std::string line;
    if (!skipLine(2500)) return false;
    if (!readText(2500, line)) return false;
    line.resize(80, ' ');
    int materials = 0;
    if (!io::decodeFixedInt(std::string_view(line).substr(0, 5), materials)) {
        formatError(2500);
        return false;
    }
    ISOLPR.NMAT = materials;
    POSTGRAF.NOPT1 = 3;
    POSTGRAF.NOPT2 = 15;
    int first = 0, second = 0, third = 0;
    if (io::decodeFixedInt(std::string_view(line).substr(0, 5), first) &&
        io::decodeFixedInt(std::string_view(line).substr(5, 5), second) &&
        io::decodeFixedInt(std::string_view(line).substr(10, 5), third)) {
        // Deliberately unlike a plain decode, a grid size left blank (0) or below 1 means the
        // default: a grid of no columns or rows covers no area, and every slice would then fail
        // its area check with a message that does not point at this line.
        if (second >= 1) POSTGRAF.NOPT1 = second;
        if (third >= 1) POSTGRAF.NOPT2 = third;
        // Also deliberately, a grid finer than kFinestGrid is held to it: every cell of every
        // slice locates its material (against every material triangle), so a grid of 99999 x
        // 99999 would make one surface take hours, while a grid of 50 x 50 already weighs a
        // slice far closer than its straight top and base describe the section.
        POSTGRAF.NOPT1 = std::min(POSTGRAF.NOPT1, kFinestGrid);
        POSTGRAF.NOPT2 = std::min(POSTGRAF.NOPT2, kFinestGrid);
    }

    if (materials < highestMaterial) {
        say(io::Line().A(" **** SR/READ - NUMBER OF MATERIALS ERROR").Free(materials).Free(highestMaterial).str());
        MASTER.IERR = 5;
        return false;
    }

    if (!readRecord(2600, ISOLPR.NSUX)) return false;
    if (!readRecord(2700, ISOLPR.NSUNOD)) return false;
    if (!readRecord(2800, SOLPRP.STRDAT(1))) return false;
    SOLPRP.STRDAT(1) *= lengthFactor;
    if (!readRecord(2900, SOLPRP.STRDAT(2))) return false;
    SOLPRP.STRDAT(2) *= lengthFactor;
    if (SOLPRP.STRDAT(2) > SOLPRP.STRDAT(1)) SOLPRP.STRDAT(2) = SOLPRP.STRDAT(1);
    if (!readRecord(2950, SOLPRP.STRDAT(3))) return false;
    SOLPRP.STRDAT(3) *= stressFactor;

    // First material table: unit weight, drained strength, pore pressure and B-factor data.
    bool reducedStrength = false;
    if (!skipLine(3001) || !skipLine(3001)) return false;
    for (int i = 1; i <= materials; ++i) {
        const int id = 3000 + i;
        int number = 0;
        double value[kFirstValues] = {};
        io::FreeReader reader(MASTER.NF15);
        reader(number).array(value, kFirstValues);
        if (!readOk(reader, id)) return false;
        if (number != i) {
            dataControl(id);
            return false;
        }
        if (i > MAXMAT) continue;
        for (int k = 1; k <= 10; ++k) SOLPRP.MAT(k, i) = value[k - 1];
        SOLPRP.MAT(MAT17, i) = value[10];
        SOLPRP.MAT(MAT18, i) = value[11];
        if (SOLPRP.MAT(MAT18, i) < kMinWeightBelowWater) SOLPRP.MAT(MAT18, i) = SOLPRP.MAT(GAMTOT, i);
        if (std::abs(SOLPRP.MAT(PHIRED, i)) > kSmall) reducedStrength = true;
        if (SOLPRP.MAT(BFCT, i) > kSmall) MASTER.IUPDAT = 1;
        SOLPRP.MAT(GAMTOT, i) *= weightFactor;
        SOLPRP.MAT(COHESN, i) *= stressFactor;
        SOLPRP.MAT(PHIANG, i) = std::tan(SOLPRP.MAT(PHIANG, i) * MASTER.PI / 180.0);
        SOLPRP.MAT(PWPMAT, i) *= stressFactor;
    }

    if (MASTER.IUPDAT != 0 && MASTER.IDTYP == 2) {
        dataControl(3049);
        return false;
    }

    // Second material table: total unit weight and undrained strength anisotropy.
    if (!skipLine(3051) || !skipLine(3051)) return false;
    for (int i = 1; i <= materials; ++i) {
        const int id = 3050 + i;
        int number = 0;
        double totalWeight = 0.0, ratioActive = 0.0, ratioDirect = 0.0, ratioPassive = 0.0;
        double mat14 = 0.0, mat16 = 0.0;
        if (!readRecord(id, number, totalWeight, ratioActive, ratioDirect, ratioPassive, mat14, mat16)) return false;
        if (number != i) {
            dataControl(id);
            return false;
        }
        if (i > MAXMAT) continue;
        if (MASTER.IDEFTO == 2) SOLPRP.MAT(GAMTOT, i) = totalWeight * weightFactor;
        if (ratioActive < kSmall) ratioActive = 1.0;
        if (ratioDirect < kSmall) ratioDirect = 1.0;
        if (ratioPassive < kSmall) ratioPassive = 1.0;
        SOLPRP.MAT(SUASU0, i) = ratioActive;
        SOLPRP.MAT(SUDSU0, i) = ratioDirect;
        SOLPRP.MAT(SUPSU0, i) = ratioPassive;
        const bool isotropic = std::abs(ratioActive - 1.0) <= kSmall && std::abs(ratioDirect - 1.0) <= kSmall &&
                               std::abs(ratioPassive - 1.0) <= kSmall;
        SOLPRP.MAT(ISOTRP, i) = isotropic ? 1.0 : 0.0;
        SOLPRP.MAT(MAT14, i) = mat14 * stressFactor;
        SOLPRP.MAT(MAT16, i) = mat16;
    }

    if (reducedStrength && !(SOLPRP.STRDAT(3) > kSmall)) {
        blameRecord(2950);
        dataControl(3060);
        return false;
    }

    if (!skipLine(3101)) return false;
    if (!readProfiles(ISOLPR.NSUX, 3100, MAXSUX, MAXSUP, ISOLPR.NSUPT.data(), SOLPRP.XSU.data(), SOLPRP.ZSU.data(),
                      SOLPRP.SUPRF.data(), stressFactor))
        return false;
    if (!skipLine(3201)) return false;
    if (!readNodeValues(ISOLPR.NSUNOD, 3250, 3200, SOLPRP.SUNOD.data(), stressFactor)) return false;

    return blankLine(103, "AT END OF MATERIAL PROPERTIES SECTION");
}

// ---------------------------------------------------------------------------------------------
// Pore water section
// ---------------------------------------------------------------------------------------------

// The free water level of one pore-pressure x-line: where its pressure first rises above zero.
double freeWaterLevel(const double* z, const double* p, int points) {
    for (int k = 0; k < points; ++k) {
        const bool last = k == points - 1;
        if (last || (k == 0 && p[0] > kSmall)) {
            return WATER1.GAMWAT < kSmall ? z[k] : z[k] - p[k] / WATER1.GAMWAT;
        }
        if (std::abs(p[k]) <= kSmall && p[k + 1] > kSmall) return z[k];
        if (p[k] < kSmall && p[k + 1] > kSmall) return z[k] - p[k] * (z[k + 1] - z[k]) / (p[k + 1] - p[k]);
    }
    return 0.0;
}

bool hydrostaticCheck() {
    int code = 0;
    if (IWATER.NUMXPW > 0) code = 2;
    if (IWATER.NODPWP > 0) code = 3;
    if (WATER1.GAMWAT - WATER1.GAMPWP > kSmall) code = 4;
    const int materials = ISOLPR.NMAT < MAXMAT ? ISOLPR.NMAT : MAXMAT;
    for (int i = 1; i <= materials; ++i) {
        if (std::abs(SOLPRP.MAT(PWPMAT, i)) > kSmall) code = 500 + i;
        if (std::abs(SOLPRP.MAT(RUFCT, i)) > kSmall) code = 600 + i;
    }
    if (code == 0) return true;

    // The contradicting record, not the line read last, is where the input is wrong.
    if (code == 2) blameRecord(3400);
    if (code == 3) blameRecord(3420);
    if (code == 4) blameRecord(3450);
    if (code > 500) blameRecord(3000 + code % 100);

    say(" **** SR/READ : HYDROSTATIC PWP WAS SPECIFIED, BUT INPUT DATA");
    say(io::freeRecord("CONTAINS NON-HYDROSTATIC CONTRIBUTION(S) :"));
    if (code == 2) {
        say(io::freeRecord("\"NUMXPW\" IS NOT ZERO"));
        MASTER.IERR = 2;
    } else if (code == 3) {
        say(io::freeRecord("\"NODPWP\" IS NOT ZERO"));
        MASTER.IERR = 3;
    } else if (code == 4) {
        say(io::freeRecord("\"GAMWAT\" IS NOT EQUAL TO \"GAMPWP\""));
        MASTER.IERR = 4;
    } else if (code < 600) {
        say(io::freeRecord("\"PWPMAT\" IS NOT ZERO, MATERIAL =", code - 500));
        MASTER.IERR = code - 500;
    } else {
        say(io::freeRecord("\"RU-MAT\" IS NOT ZERO, MATERIAL =", code - 600));
        MASTER.IERR = code - 600;
    }
    return false;
}

bool porewaterSection() {
    if (!skipLine(3300)) return false;
    if (!readRecord(3300, IWATER.IDPWP)) return false;
    if (IWATER.IDPWP != 1 && IWATER.IDPWP != 2) {
        dataControl(3300);
        return false;
    }
    if (IWATER.IDPWP == 1 && MASTER.IUPDAT != 0) {
        dataControl(3350);
        return false;
    }

    if (!readRecord(3400, IWATER.NUMXPW)) return false;
    if (!readRecord(3420, IWATER.NODPWP)) return false;
    if (IWATER.NODPWP < 0 || IWATER.NODPWP > IGEOMS.NNODE) {
        dataControl(3420);
        return false;
    }
    double nodeMultiplier = 0.0;
    if (!readRecord(3425, nodeMultiplier)) return false;
    if (!readRecord(3430, WATER1.ZWATER)) return false;
    WATER1.ZWATER *= lengthFactor;
    if (!readRecord(3440, WATER1.GAMWAT)) return false;
    WATER1.GAMWAT *= weightFactor;
    if (!readRecord(3450, WATER1.GAMPWP)) return false;
    WATER1.GAMPWP *= weightFactor;
    if (!readRecord(3470, WATER1.PWPMIN)) return false;
    WATER1.PWPMIN *= stressFactor;
    if (!(WATER1.PWPMIN < kSmall)) {
        dataControl(3470);
        return false;
    }
    if (!skipLine(3501)) return false;

    if (IWATER.NUMXPW > 0) {
        if (std::abs(WATER1.ZWATER) > kSmall) {
            say(" **** SR/READ : X-LINES WITH PWP WERE GIVEN");
            say(io::Line().A(" **** WATER TABLE Z VALUE IS NON-ZERO : ").Free(WATER1.ZWATER).str());
            blameRecord(3430);
            MASTER.IERR = 201;
            return false;
        }
        if (WATER1.GAMWAT < kSmall) {
            say(" **** SR/READ : X-LINES WITH PWP WERE GIVEN");
            say(io::Line().A(" **** WATER UNIT WEIGHT IS GIVEN AS : ").Free(WATER1.GAMWAT).str());
            if (!answeredYes(" SHALL RUN BE CONTINUED (Y/N)....... ", true)) {
                blameRecord(3440);
                MASTER.IERR = 202;
                return false;
            }
        }
    }

    if (!readProfiles(IWATER.NUMXPW, 3500, MAXPWX, MAXPWP, IWATER.NPWPT.data(), WATER1.XPW.data(),
                      WATER1.ZPW.data(), WATER1.PWPRF.data(), stressFactor))
        return false;
    const int lines = IWATER.NUMXPW < MAXPWX ? IWATER.NUMXPW : MAXPWX;
    for (int i = 1; i <= lines; ++i) {
        const int points = IWATER.NPWPT(i) < MAXPWP ? IWATER.NPWPT(i) : MAXPWP;
        WATER1.ZFREE(i) = freeWaterLevel(WATER1.ZPW.column(i), WATER1.PWPRF.column(i), points);
    }

    if (!skipLine(3701)) return false;
    if (!readNodeValues(IWATER.NODPWP, 3750, 3700, WATER1.PWNOD.data(), stressFactor * nodeMultiplier))
        return false;

    if (IWATER.IDPWP == 1 && !hydrostaticCheck()) return false;

    return blankLine(204, "AT END OF PORE WATER PRESSURES SECTION");
}

// ---------------------------------------------------------------------------------------------
// Load section
// ---------------------------------------------------------------------------------------------
bool loadSection() {
    if (!skipLine(4100)) return false;
    int packedCount = 0;
    if (!readRecord(4100, packedCount)) return false;
    // Soil nails are announced in the hundreds of the point-force count.
    ILOA.NPF = packedCount % 100;
    ISNAIL.NNAILS = packedCount >= 100 ? packedCount / 100 : 0;
    if (!readRecord(4200, ILOA.NSTRIP)) return false;
    if (!readRecord(4250, LOAD.LDAT(1))) return false;
    LOAD.LDAT(1) *= stressFactor;
    if (!readRecord(4260, LOAD.QRANGE(1), LOAD.QRANGE(2))) return false;
    LOAD.QRANGE(1) *= lengthFactor;
    LOAD.QRANGE(2) *= lengthFactor;
    if (LOAD.QRANGE(2) < LOAD.QRANGE(1)) {
        dataControl(4260);
        return false;
    }
    if (!readRecord(4300, LOAD.LDAT(2), LOAD.LDAT(3))) return false;
    if (!readRecord(4500, LOAD.LDAT(5), LOAD.LDAT(4))) return false;

    if (!skipLine(4701)) return false;
    for (int i = 1; i <= ILOA.NPF; ++i) {
        int number = 0;
        double x = 0.0, z = 0.0, horizontal = 0.0, vertical = 0.0;
        if (!readRecord(4700 + i, number, x, z, horizontal, vertical)) return false;
        if (i > MAXPF) continue;
        LOAD.XZPF(1, i) = x * lengthFactor;
        LOAD.XZPF(2, i) = z * lengthFactor;
        LOAD.FPF(1, i) = horizontal * forceFactor;
        LOAD.FPF(2, i) = vertical * forceFactor;
    }

    if (!skipLine(4801)) return false;
    for (int i = 1; i <= ILOA.NSTRIP; ++i) {
        int number = 0;
        double x1 = 0.0, x2 = 0.0, vertical1 = 0.0, vertical2 = 0.0, horizontal1 = 0.0, horizontal2 = 0.0;
        if (!readRecord(4800 + i, number, x1, x2, vertical1, vertical2, horizontal1, horizontal2)) return false;
        x1 *= lengthFactor;
        x2 *= lengthFactor;
        if (!(x1 < x2)) {
            say(io::Line().A(" **** SR/READ - STRIP LOAD X ERROR").Free(i).Free(x1).Free(x2).str());
            MASTER.IERR = 1;
            return false;
        }
        if (i > MAXSTR) continue;
        LOAD.XSTRIP(1, i) = x1;
        LOAD.XSTRIP(2, i) = x2;
        LOAD.QSTRV(1, i) = vertical1 * stressFactor;
        LOAD.QSTRV(2, i) = vertical2 * stressFactor;
        LOAD.QSTRH(1, i) = horizontal1 * stressFactor;
        LOAD.QSTRH(2, i) = horizontal2 * stressFactor;
    }

    if (ISNAIL.NNAILS > 0) {
        READSN();
        if (MASTER.IERR != 0) return false;
    }

    return blankLine(205, "AT END OF LOAD SECTION");
}

// ---------------------------------------------------------------------------------------------
// General shear surfaces and line control points
// ---------------------------------------------------------------------------------------------

// One list of values along general surface i: `count` values read, the point beyond them
// (when the list is one short) takes the last value read.
bool readSurfaceValues(int id, double* values, int count, int points, int room) {
    io::FreeReader reader(MASTER.NF15);
    readList(reader, values, count, room);
    if (!readOk(reader, id)) return false;
    if (count >= 1 && count < points && points <= room) values[points - 1] = values[count - 1];
    for (int k = 0; k < room; ++k) values[k] *= stressFactor;
    return true;
}

bool generalSurfaces() {
    // With no general surfaces the rest of the file is optional.
    std::string heading;
    if (io::readLine(MASTER.NF15, heading) != io::kReadOk) {
        if (MASTER.NUMGEN <= 0) return true;
        pastEndOfFile(4901);
        return false;
    }

    bool readStresses = false;
    for (int i = 1; i <= MASTER.NUMGEN; ++i) {
        const bool stored = i <= MAXGEN;
        int number = 0, points = 0;
        if (!readRecord(4900 + i, number, points)) return false;
        if (number != i) {
            dataControl(4900 + i);
            return false;
        }
        if (stored) IGENER.NPGEN(i) = points;
        // A surface beyond the table, or points beyond a surface's column, are read and dropped.
        const int room = !stored ? 0 : (points < MAXGPT ? points : MAXGPT);
        double* xs = stored ? GENERL.XGEN.column(i) : nullptr;
        double* zs = stored ? GENERL.ZGEN.column(i) : nullptr;

        io::FreeReader xRecord(MASTER.NF15);
        readList(xRecord, xs, points, room);
        if (!readOk(xRecord, 5000 + i)) return false;
        io::FreeReader zRecord(MASTER.NF15);
        readList(zRecord, zs, points, room);
        if (!readOk(zRecord, 5100 + i)) return false;

        if (IWATER.IDPWP == 2) {
            const int count = MASTER.NSLREQ == 0 ? points - 1 : points;
            if (!readSurfaceValues(5200 + i, stored ? GENERL.PGEN.column(i) : nullptr, count, points, room))
                return false;
            if (MASTER.IUPDAT != 0) {
                if (i == 1) {
                    readStresses = answeredYes(
                        " SHALL INITIAL STRESSES ALONG GENERAL SURFACE(S) BE READ (Y/N) ..... ", false);
                }
                if (readStresses) {
                    if (!readSurfaceValues(5300 + i, stored ? GENERL.SIGGEN.column(i) : nullptr, count, points, room))
                        return false;
                    if (!readSurfaceValues(5400 + i, stored ? GENERL.TAUGEN.column(i) : nullptr, count, points, room))
                        return false;
                }
            }
        }

        double previous = kFarLeft;
        for (int k = 0; k < room; ++k) {
            const double current = xs[k] * lengthFactor;
            if (!(current > previous)) {
                say(io::Line()
                        .A(" **** SR/READ - GENERAL SURFACE SEQUENCE ERROR")
                        .Free(i)
                        .Free(k + 1)
                        .Free(previous)
                        .Free(current)
                        .str());
                blameRecord(5000 + i);
                MASTER.IERR = 1;
                return false;
            }
            xs[k] = current;
            zs[k] *= lengthFactor;
            previous = current;
        }
    }
    return true;
}

bool lineControl() {
    LINECONTROL.NLCP = 0;
    int points = 0;
    io::FreeReader count(MASTER.NF15);
    count(points);
    if (!count.ok() || points <= 0) return true;
    // No size check after reading covers these points: refuse more than the table holds.
    if (points > MAXLCP) {
        dataControl(5500);
        return false;
    }
    io::FreeReader xs(MASTER.NF15);
    xs.array(LINECONTROL.XLC.data(), points);
    if (!readOk(xs, 5501)) return false;
    io::FreeReader zs(MASTER.NF15);
    zs.array(LINECONTROL.ZLC.data(), points);
    if (!readOk(zs, 5501)) return false;
    LINECONTROL.NLCP = points;
    return true;
}

// Reads the file section by section; false when an error stopped the reading.
bool readSections(int& highestMaterial) {
    if (!prepare()) return false;
    if (!controlSection()) return false;
    if (!geometrySection(highestMaterial)) return false;
    if (!materialSection(highestMaterial)) return false;
    if (!porewaterSection()) return false;
    if (!loadSection()) return false;

    readingSurfaces = true;
    if (!generalSurfaces()) return false;
    if (!lineControl()) return false;
    readingSurfaces = false;
    return true;
}

}  // namespace

void READ() {
    readingSurfaces = false;
    lengthFactor = forceFactor = stressFactor = weightFactor = 1.0;
    inputLineOf.clear();
    inputText.clear();
    recordLine.clear();
    errorLine = 0;
    placeNamed = false;

    int highestMaterial = 0;
    if (!readSections(highestMaterial)) {
        // The messages name a record; this line names where it stands in KALMO.INP. The
        // reading stopped on the line read last (the last line of the file for an end of the
        // data), unless the error lies in a record read earlier.
        if (MASTER.IERR != 0 && !placeNamed)
            sayWorkLine(errorLine > 0 ? errorLine : io::linePosition(MASTER.NF15));
        return;
    }

    if (MASTER.JPLOT >= 2) {
        MASTER.IERR = 9;
        MESH(highestMaterial);
        if (MASTER.IERR != 0) {
            say(io::Line().A(" **** SR/READ - SR/MESH PROBLEM  IERR=").Free(MASTER.IERR).str());
        }
    }
}
