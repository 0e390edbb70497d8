// input/locate.cpp
//
// LOCATE — the material at a point, or the mesh element that contains it.
//
// Material mode (result other than -1 on entry): material 1 unless horizontal layers say
// otherwise (a layer reaches from the level of the layer before it down to its own level; below
// the last level the last layer holds); a material triangle containing the point overrides the
// layers, the first such triangle in input order. Only when there are no layers and no triangle
// holds the point, and the problem has more than one material, does the element material of the
// mesh decide.
//
// Element mode (-1 on entry): the mesh element containing the point. The element column is the
// one whose node columns bracket x; in it the elements are walked from the rock upward and the
// first whose upper edge, interpolated at x, lies at or above the point is taken. A point below
// the rock therefore falls in the bottom element; a point above the ground surface falls in the
// top element unless it lies above the top edge by the column width or more.
//
// Mesh layout relied on: node (c, j) = (c - 1)(NZ + 1) + j with j = 1 at the rock; element
// (c, j) = (c - 1) NZ + j with corners IELNOD(1) upper left and IELNOD(2) upper right.
//
// Reads:  IGEOMS NX, NZ, NNODE, NLAYER, NTRI, IELNOD, IELMAT, ITRMAT, LAYMAT; GEOMSH XNOD, ZNOD,
//         ZLAYER, XTRI, ZTRI; ISOLPR NMAT
// Writes: result, the material or element number (1 on an error); MASTER.IERR
// IERR:   0 ok; 1 the point lies outside the mesh (message written)

#include "input/input.h"
#include "io/fmt.h"
#include "records.h"

namespace {

constexpr double kTiny = 1.0e-20f;

void reportOutside(double x, double z, int code, int& result) {
    say(io::Line(" **** SR/LOCATE : POINT OUTSIDE THE MESH   X,Z,CODE =").Free(x).Free(z).Free(code).str());
    result = 1;
    MASTER.IERR = 1;
}

// Level of the upper edge of element e at x.
double upperEdgeLevel(int e, double x, double& width) {
    const int left = IGEOMS.IELNOD(1, e);
    const int right = IGEOMS.IELNOD(2, e);
    const double xLeft = GEOMSH.XNOD(left);
    width = GEOMSH.XNOD(right) - xLeft;
    if (width < kTiny) return GEOMSH.ZNOD(left);
    return GEOMSH.ZNOD(left) + (GEOMSH.ZNOD(right) - GEOMSH.ZNOD(left)) * (x - xLeft) / width;
}

// The element containing (x, z), x inside the node range; 0 when the point lies too far above
// the ground surface.
int meshElement(double x, double z) {
    const int nz = IGEOMS.NZ;
    int column = 1;
    while (column < IGEOMS.NX && x > GEOMSH.XNOD(column * (nz + 1) + 1)) ++column;

    double width = 0.0;
    const int first = (column - 1) * nz + 1;
    const int top = column * nz;
    for (int e = first; e <= top; ++e)
        if (upperEdgeLevel(e, x, width) <= z) return e;
    if (upperEdgeLevel(top, x, width) - z >= width) return 0;
    return top;
}

}  // namespace

int layerAt(double z) {
    int layer = 1;
    while (layer < IGEOMS.NLAYER && GEOMSH.ZLAYER(layer) < z) ++layer;
    return layer;
}

bool insideMesh(double x) {
    const bool haveMesh = IGEOMS.NX >= 1 && IGEOMS.NZ >= 1 && IGEOMS.NNODE >= 2;
    return haveMesh && x >= GEOMSH.XNOD(1) && x <= GEOMSH.XNOD(IGEOMS.NNODE);
}

void LOCATE(double x, double z, int& result) {
    const int code = result;
    MASTER.IERR = 0;
    if (!insideMesh(x)) {
        reportOutside(x, z, code, result);
        return;
    }

    if (code == -1) {
        const int element = meshElement(x, z);
        if (element == 0) {
            reportOutside(x, z, code, result);
            return;
        }
        result = element;
        return;
    }

    int material = 1;
    if (IGEOMS.NLAYER > 0) material = IGEOMS.LAYMAT(layerAt(z));

    bool inTriangle = false;
    for (int t = 1; t <= IGEOMS.NTRI && !inTriangle; ++t) {
        int inside = 0;
        TRIPNT(GEOMSH.XTRI.column(t), GEOMSH.ZTRI.column(t), x, z, inside);
        if (inside == 1) {
            material = IGEOMS.ITRMAT(t);
            inTriangle = true;
        }
    }

    if (IGEOMS.NLAYER == 0 && !inTriangle && ISOLPR.NMAT > 1) {
        const int element = meshElement(x, z);
        if (element == 0) {
            reportOutside(x, z, code, result);
            return;
        }
        material = IGEOMS.IELMAT(element);
    }
    result = material;
}
