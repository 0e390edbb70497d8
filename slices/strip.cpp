// slices/strip.cpp
//
// STRIP — resultant of a strip load on the top of one slice.
//
// A strip load runs from XA to XB; its vertical intensity (force per horizontal length,
// positive down) goes linearly from QA to QB and its horizontal intensity (positive in +x)
// from DA to DB. The part of the strip over the slice top, x from corner 1 to corner 2, is
// taken; the top runs straight from corner 1 to corner 2, and the load acts on it.
//
// Arguments: xs, zs  corners 1..5 of the slice (xs[0] = x1, xs[1] = x2, xs[4] = x5, same for z)
//            XA, XB  x range of the strip; QA, QB vertical and DA, DB horizontal intensities
//                    at XA and XB
//            FX, FZ  (out) horizontal (+x) and vertical (+down) resultant on the slice
//            M       (out) moment of the resultant about the load point, corner 5
//            M3      (out) moment of the vertical part about the slice's right side
// All outputs are zero when the slice or the strip has no length or the strip misses the slice.
//
// Reads:  its arguments only
// Writes: FX, FZ, M, M3
// IERR:   not used

#include "slices/slices.h"

void STRIP(const double* xs, const double* zs, double XA, double XB, double QA, double QB, double DA, double DB,
           double& FX, double& FZ, double& M, double& M3) {
    constexpr double kTiny = 1.0E-6f;
    constexpr double kThird = 1.0 / 3.0;
    FX = 0.0;
    FZ = 0.0;
    M = 0.0;
    M3 = 0.0;
    double x1 = xs[0];
    double x2 = xs[1];
    double x5 = xs[4];
    double z1 = zs[0];
    double z2 = zs[1];
    double z5 = zs[4];
    double width = x2 - x1;
    if (width < kTiny) return;
    double length = XB - XA;
    if (length < kTiny) return;
    double slopeQ = (QB - QA) / length;
    double slopeD = (DB - DA) / length;
    double topDrop = z2 - z1;
    if (XB < x1 || XA > x2) return;

    // The loaded part [a, b] of the slice top and the intensities at its ends.
    double a, b, qa, qb, da, db;
    if (XA < x1 && XB > x2) {
        a = x1;
        b = x2;
        qa = QA + slopeQ * (x1 - XA);
        qb = QA + slopeQ * (x2 - XA);
        da = DA + slopeD * (x1 - XA);
        db = DA + slopeD * (x2 - XA);
    } else if (XA > x1 && XB < x2) {
        a = XA;
        b = XB;
        qa = QA;
        qb = QB;
        da = DA;
        db = DB;
    } else if (XA >= x1) {
        a = XA;
        b = x2;
        qa = QA;
        qb = QA + slopeQ * (x2 - XA);
        da = DA;
        db = DA + slopeD * (x2 - XA);
    } else {
        a = x1;
        b = XB;
        qa = QA + slopeQ * (x1 - XA);
        qb = QB;
        da = DA + slopeD * (x1 - XA);
        db = DB;
    }

    double loaded = b - a;
    double offsetX = a - x1;
    double offsetZ = topDrop / width * (a - x1);
    double dropZ = topDrop / width * (b - a);
    FX = 0.5 * (da + db) * loaded;
    FZ = 0.5 * (qa + qb) * loaded;
    // Uniform part at the middle of the loaded part, triangular part at two thirds of it.
    double momentV = qa * loaded * (offsetX + 0.5 * loaded) + 0.5 * (qb - qa) * loaded * (offsetX + loaded * kThird * 2.0);
    double momentH = da * loaded * (offsetZ + 0.5 * dropZ) + 0.5 * (db - da) * loaded * (offsetZ + dropZ * kThird * 2.0);
    M3 = width * FZ - momentV;
    M = -momentV + momentH + (x5 - x1) * FZ - (z5 - z1) * FX;
}
