// output/readplt.h
//
// Reading the post-processor file KALMO.PLT back into plain data, block by block.
//
// Every save of a surface appends one block to the file; a block starts with the page top
// line (a form feed in its first column). Inside a block the reader finds each record by its
// label (" NUMSRF  NTYP ...", " SAFETY.FCT ...", " STORE(1,2,3,4,5)", the table titles) and
// reads the values by the columns they were written in, so the values come back to the
// precision of their field formats. A field written as asterisks (a value too large for it)
// comes back as NaN.
//
//   std::vector<plt::Block> blocks;
//   std::string error;
//   if (plt::readPltFile("KALMO.PLT", blocks, error) != 0) { ...error says what and where... }
//   const plt::Block& last = blocks.back();
//   last.SF, last.NUMSLC, last.geometry.rows[0].values ...

#pragma once

#include <array>
#include <string>
#include <vector>

namespace plt {

// One table row: the slice number (0 for the left side of the first slice in the geometry
// table) or the nail number, and the values in the order of the columns.
struct Row {
    int number = 0;
    std::vector<double> values;
    int mode = 0;          // nail forces: FAIL.MODE; combined analysis: the slice failure mode
    std::string modeText;  // combined analysis: "Drained" or "Undrained"
};

struct Table {
    bool present = false;  // the block holds this table
    std::vector<Row> rows;
};

// One saved surface.
struct Block {
    std::string pageTop;                 // the page top line, without its form feed
    std::array<std::string, 2> TITLE;    // the two title lines (80 characters each)
    int NUMSRF = 0, NTYP = 0, NUMSLC = 0, METHOD = 0, IDEFTO = 0, NNAILS = 0;
    std::array<int, 5> MISC{};
    double SF = 0.0, SCORE = 0.0, RFACTOR = 0.0;
    std::array<double, 5> VALMSC{};
    std::array<double, 10> SPAR{};

    // Rows of geometry: 0 with X1, Z1, Z4 of slice 1; then X2, Z2, Z3, X5, Z5, R0 per slice.
    Table geometry;
    Table strengths;          // C2, C3, TAN2, TAN3, U2, U3
    Table forces;             // P, S, E2, T2, SS/SF, R
    Table loads;              // WX+SNX/SF, WZ+SNZ/SF, WM+SNM/SF, H2, H3, HS
    Table loadsWithoutNails;  // WX, WZ, WM, SNX/SF, SNZ/SF, SNM/SF (only with nails)
    Table nailGeometry;       // head x, z, tip x, z, spacing, active length (only with nails)
    Table nailForces;         // axial/SF, lateral/SF, three further values; mode (only with nails)
    Table combined;           // C3, TAN3, SU3, S1, S2; mode and its word (only combined analysis)
    Table areas;              // AREA, AREAU

    bool hasUndrainedShare = false;  // combined analysis only
    double undrainedShare = 0.0;     // SUM(S2) / [SUM(S1)+SUM(S2)]
    double areaSum = 0.0, undrainedAreaSum = 0.0;
};

// Reads all blocks of the text of a post-processor file. Returns 0 ok (an empty file gives no
// blocks); 2 a record could not be read: error names the line and what was wrong, and blocks
// holds the blocks read completely before it.
int readPltText(const std::string& text, std::vector<Block>& blocks, std::string& error);

// The same for a file by name; returns 1 when the file cannot be opened.
int readPltFile(const std::string& path, std::vector<Block>& blocks, std::string& error);

}  // namespace plt
