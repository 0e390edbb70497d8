// output/nailsp.cpp
//
// NAILSP — the soil nail table of the result print (channel NF16).
//
// On a new page, one line per nail: its total and active length, the axial and the lateral
// force where it crosses the shear surface, mobilised (divided by the safety factor), the slice
// it crosses and its failure mode in words; a line of one blank after every third nail. The
// values are those of the surface in the records: the last surface analysed, or the best one
// after the result print has restored it.
//
// Reads:  ISNAIL.NNAILS (at most 75 are listed), INAIL (mode, slice); SNAILS.SN (lengths and
//         forces); MASTER.SF, DATTIM, NF16; TEXT.VERSION
// Writes: the nail table on NF16
// IERR:   not used

#include <algorithm>
#include <string_view>

#include "control/control.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "output/output.h"
#include "records.h"

namespace {

constexpr int kNailsPerGroup = 3;

// The failure mode in words, 20 characters; a code outside -1..5 has none.
std::string_view failureText(int mode) {
    switch (mode) {
        case -1: return "De-activated nail   ";
        case 0: return "No intersection     ";
        case 1: return "External/Tension    ";
        case 2: return "External/Compression";
        case 3: return "Internal/Tension    ";
        case 4: return "Internal/Compression";
        case 5: return "Nail/Pile yielding  ";
        default: return "                    ";
    }
}

}  // namespace

void NAILSP() {
    const int unit = MASTER.NF16;
    TOPLIN(unit, TEXT.VERSION.view(), MASTER.DATTIM);
    io::writeLine(unit, "");
    io::writeLine(unit, " Nail   Total   Active  Forces at shear surface   Slice   Failure mode");
    io::writeLine(unit, "  no.   length  length    Axially   Laterally    intsctn");
    io::writeLine(unit, " ");

    const int nailCount = std::clamp(ISNAIL.NNAILS, 0, MAXNAI);
    for (int nail = 1; nail <= nailCount; ++nail) {
        io::writeLine(unit, io::Line()
                                .I(nail, 4)
                                .F(SNAILS.SN(nail, SNLTOT), 10, 3)
                                .F(SNAILS.SN(nail, SNLACT), 8, 3)
                                .X(1)
                                .ES(SNAILS.SN(nail, SNFAX) / MASTER.SF, 11, 3)
                                .ES(SNAILS.SN(nail, SNFLAT) / MASTER.SF, 11, 3)
                                .I(ISNAIL.INAIL(nail, SNSLC), 8, 2)
                                .X(5)
                                .A(failureText(ISNAIL.INAIL(nail, SNMODE)))
                                .str());
        if (nail % kNailsPerGroup == 0) io::writeLine(unit, " ");
    }
}
