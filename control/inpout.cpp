// control/inpout.cpp
//
// INPOUT — the print-type switch after the marker line "IPRTTP" of a file.
//
// Searches the file on NF for the first line that holds "IPRTTP" in columns 11 to 16, reads
// the first value of that line as an integer (free format) and sets FLAG to 1 when it is
// negative, else to 0. When no such line exists, or its value cannot be read, FLAG keeps its
// value. The file is rewound afterwards. Nothing in the run calls this routine at present.
//
// Reads:  lines of channel NF
// Writes: FLAG
// IERR:   not used

#include <string>

#include "control/control.h"
#include "io/channels.h"
#include "io/freeread.h"

namespace {
constexpr int kSearchLength = 20;
}  // namespace

void INPOUT(int nf, int& flag) {
    std::string line;
    bool found = false;
    while (io::readLine(nf, line, kSearchLength) == io::kReadOk) {
        if (line.size() >= 16 && line.compare(10, 6, "IPRTTP") == 0) {
            found = true;
            break;
        }
    }
    if (found) {
        io::backspace(nf);
        int value = 0;
        if (io::readFree(nf, value) == io::ReadStatus::Ok) flag = value < 0 ? 1 : 0;
    }
    io::rewind(nf);
}
