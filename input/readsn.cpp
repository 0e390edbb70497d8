// input/readsn.cpp
//
// READSN — reads the soil nails from the load section of the work file.
//
// Two heading lines, then one free-format record per nail: the nail number, twelve values and
// three further values (the record may run over several lines). Lengths are converted by the
// length factor, the two contact/material stresses by the stress factor FCTFRC/FCTLEN**2 and
// the three forces by the force factor; the three further values are stored as read. Each nail
// is checked for a length, a spacing and a diameter that a real nail can have (limits apply to
// internal units). The nail count may exceed the nail table: the nails beyond it are read and
// checked like the others but not stored, so that the size check after reading reports them.
//
// Reads:  work file (channel MASTER.NF15); MASTER.FCTFRC, FCTLEN; ISNAIL.NNAILS
// Writes: SNAILS.SN(i, 1..15) for the nails that fit the table; messages to the console and
//         the log-copy channel
// IERR:   unchanged on success; 1 nail number out of sequence; 2 nail of zero length; 3 spacing
//         too small; 4 diameter outside 0.01..10; 6 a value that is no number; 7 end of the data
//         before all nails are read

#include <cmath>
#include <string>

#include "input/input.h"
#include "io/channels.h"
#include "io/fmt.h"
#include "io/freeread.h"
#include "records.h"

namespace {

constexpr double kMinLength = 0.1f;     // shortest nail, and smallest spacing
constexpr double kMinDiameter = 0.01f;
constexpr double kMaxDiameter = 10.0f;

constexpr int kNailValues = 15;         // twelve values and three further values

void endOfData(int nail) {
    say(io::Line().A(" **** Soil nails end-of-file error  N=").Free(nail).str());
    MASTER.IERR = 7;
}

}  // namespace

void READSN() {
    const int unit = MASTER.NF15;
    const double lengthFactor = MASTER.FCTLEN;
    const double forceFactor = MASTER.FCTFRC;
    const double stressFactor = MASTER.FCTFRC / (MASTER.FCTLEN * MASTER.FCTLEN);

    std::string line;
    for (int heading = 1; heading <= 2; ++heading) {
        if (io::readLine(unit, line) != io::kReadOk) {
            endOfData(1);
            return;
        }
    }

    for (int nail = 1; nail <= ISNAIL.NNAILS; ++nail) {
        int number = 0;
        double value[kNailValues] = {};
        io::FreeReader reader(unit);
        reader(number).array(value, kNailValues);
        if (reader.failed()) {
            // Show the line that holds the bad item.
            io::backspace(unit);
            io::readLine(unit, line);
            say(io::Line().A(" **** Soil nail input format error  N=").Free(nail).str());
            say(io::Line().A(" Line read :").A(line).str());
            MASTER.IERR = 6;
            return;
        }
        if (reader.atEnd()) {
            endOfData(nail);
            return;
        }
        if (number != nail) {
            say(io::Line().A(" **** Soil nails sequence error  N,I=").Free(number).Free(nail).str());
            MASTER.IERR = 1;
            return;
        }

        // Values 1..6 and 9 are lengths, 7 and 8 stresses, 10..12 forces; 13..15 stay as read.
        for (int k : {1, 2, 3, 4, 5, 6, 9}) value[k - 1] *= lengthFactor;
        for (int k : {7, 8}) value[k - 1] *= stressFactor;
        for (int k : {10, 11, 12}) value[k - 1] *= forceFactor;

        const double headX = value[0], headZ = value[1], tipX = value[2], tipZ = value[3];
        const double spacing = value[4];
        const double diameter = value[5];
        const double nailLength = std::sqrt((headX - tipX) * (headX - tipX) + (headZ - tipZ) * (headZ - tipZ));
        if (nailLength < kMinLength) {
            say(io::Line().A(" **** Soil nail zero length  N=").Free(nail).str());
            MASTER.IERR = 2;
            return;
        }
        if (spacing < kMinLength) {
            say(io::Line().A(" **** Soil nail c/c distance error  N,c/c=").Free(nail).Free(spacing).str());
            MASTER.IERR = 3;
            return;
        }
        if (diameter < kMinDiameter || diameter > kMaxDiameter) {
            say(io::Line().A(" **** Soil nail diameter error  N,DIAM=").Free(nail).Free(diameter).str());
            MASTER.IERR = 4;
            return;
        }

        if (nail <= MAXNAI) {
            for (int k = 1; k <= kNailValues; ++k) SNAILS.SN(nail, k) = value[k - 1];
        }
    }
}
