// surfaces/movec2g.cpp
//
// MOVEC2G — the base line of the current slices as a general surface (work slot 2).
//
// The vertices are the entry point (the top left corner of slice 1, on the ground), the left
// end of the base of every later slice, and the exit point (the top right corner of the last
// slice, on the ground). A slice whose base corner lies more than 0.1 sideways of its top
// corner at the entry or the exit adds that base corner too; with vertical slice sides this
// does not happen. One slice gives the entry point only.
//
// The vertex count of a general surface is limited (MAXGPT): the entry, the base left ends and
// the exit always fit (at most 99 slices, so at most 100 vertices); the two extra base corners
// are added only while room is left for the vertices still to come.
//
// Reads:  MASTER.NUMSLC; SURF.XX, ZZ (corners 1-4 of the slices)
// Writes: GENERL.XGEN, ZGEN column 2; IGENER.NPGEN(2) and NPGEN(3) (both the vertex count)
// IERR:   not used. A slice count outside 0..99 is taken as the nearest of them.

#include <algorithm>

#include "records.h"
#include "surfaces/surfaces.h"

namespace {

constexpr double kSideOffset = 0.1f;  // a base corner this far sideways of the top is a vertex too
constexpr int kSlot = 2;

struct Vertices {
    int count = 0;
    // Adds (x, z) when it and the `still` vertices that must follow it fit in the slot.
    bool add(double x, double z, int still = 0) {
        if (count + 1 + still > MAXGPT) return false;
        ++count;
        GENERL.XGEN(count, kSlot) = x;
        GENERL.ZGEN(count, kSlot) = z;
        return true;
    }
};

}  // namespace

void MOVEC2G() {
    const int slices = std::clamp(MASTER.NUMSLC, 0, MAXSLC);
    Vertices vertices;
    for (int i = 1; i <= slices; ++i) {
        if (i == 1) {
            vertices.add(SURF.XX(1, 1), SURF.ZZ(1, 1));
            // Still due after it: the base left ends of slices 2..n and the exit, n vertices.
            if (SURF.XX(4, 1) - SURF.XX(1, 1) > kSideOffset) vertices.add(SURF.XX(4, 1), SURF.ZZ(4, 1), slices);
            continue;
        }
        vertices.add(SURF.XX(4, i), SURF.ZZ(4, i));
        if (i == slices) {
            if (SURF.XX(2, i) - SURF.XX(3, i) > kSideOffset) vertices.add(SURF.XX(3, i), SURF.ZZ(3, i), 1);
            vertices.add(SURF.XX(2, i), SURF.ZZ(2, i));
        }
    }
    IGENER.NPGEN(kSlot) = vertices.count;
    IGENER.NPGEN(kSlot + 1) = vertices.count;
}
