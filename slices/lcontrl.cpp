// slices/lcontrl.cpp
//
// LCONTRL — does the current surface cut the control line?
//
// The control line is the polyline of the line control points. Every control segment, in
// order, is tried against every slice base (corner 4 to corner 3), in order; the first pair
// whose segments cross (end points included) settles it. A base lying along a control segment
// is parallel to it and does not count.
//
// The parallel test takes a tolerance that is the single-precision 0.001 read as a double
// through its four bytes alone: a denormal near 4.85E-315. It means that only exactly parallel
// segments are passed over; a base nearly along the control line still cuts it. Surfaces that
// engineers have steered with their control lines depend on this, so it is not raised to 0.001.
//
// Reads:  LINECONTROL NLCP, XLC, ZLC (as read, no length factor); MASTER.NUMSLC; SURF XX, ZZ
// Writes: IOUT 0 some slice base cuts the control line, 1 none does (the surface is skipped)
// IERR:   none

#include <bit>
#include <cstdint>

#include "slices/slices.h"

namespace {

// The four bytes of the single-precision 0.001 in the low half of a double, the other half zero.
const double kParallelTolerance =
    std::bit_cast<double>(static_cast<std::uint64_t>(std::bit_cast<std::uint32_t>(0.001f)));

}  // namespace

void LCONTRL(int& IOUT) {
    IOUT = 1;
    const int points = LINECONTROL.NLCP < MAXLCP ? LINECONTROL.NLCP : MAXLCP;
    const int slices = MASTER.NUMSLC < MAXSLC ? MASTER.NUMSLC : MAXSLC;
    for (int i = 1; i < points; ++i) {
        for (int I = 1; I <= slices; ++I) {
            double xCross = 0.0, zCross = 0.0, tCross = 0.0;
            int crossing = 0;
            LKORS(LINECONTROL.XLC(i), LINECONTROL.ZLC(i), LINECONTROL.XLC(i + 1), LINECONTROL.ZLC(i + 1),
                  SURF.XX(4, I), SURF.ZZ(4, I), SURF.XX(3, I), SURF.ZZ(3, I), kParallelTolerance, xCross, zCross,
                  tCross, crossing);
            if (crossing == 2) {
                IOUT = 0;
                return;
            }
        }
    }
}
