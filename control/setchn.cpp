// control/setchn.cpp
//
// SETCHN — the constants and channel numbers every run starts with: pi, the zero tolerance,
// and the channels of the answers (8), the dialogue output (12), KALMO.INP (14), KALMO.TMP
// (15), KALMO.RES (16), KALMO.PLT (17) and KALMO.LOG (18). The program's start-up and the
// picture program's quiet reading of the input both set them here.
//
// Reads:  nothing
// Writes: MASTER.PI, EPS, NFIN, NFOUT, NF14, NF15, NF16, NF17, NF18
// IERR:   not used

#include <cmath>

#include "control/control.h"
#include "records.h"

namespace {
constexpr double kEps = 1.0E-20f;  // the zero tolerance, a single-precision constant
}  // namespace

void SETCHN() {
    MASTER.PI = 4.0 * std::atan(1.0);
    MASTER.EPS = kEps;
    MASTER.NFIN = 8;
    MASTER.NFOUT = 12;
    MASTER.NF14 = 14;
    MASTER.NF15 = 15;
    MASTER.NF16 = 16;
    MASTER.NF17 = 17;
    MASTER.NF18 = 18;
}
