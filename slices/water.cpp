// slices/water.cpp
//
// WATER — free water standing on the top of one slice.
//
// The water surface is the level ZW; the slice top is the straight chord from corner 1 to
// corner 2 (z grows downward, so a corner lies under water when its z is greater than ZW).
// The water's weight on the top and its horizontal thrust against the inclined top are
// returned with their moment about the load point, corner 5.
//
// Arguments: xs, zs  corners 1..5 of the slice (xs[0] = x1, xs[1] = x2, xs[4] = x5, same for z)
//            ZW      water level; GAMW unit weight of water
//            FX      (out) horizontal force, positive in +x
//            FZ      (out) vertical force, positive down
//            M       (out) moment about the load point
// All outputs are zero when neither top corner lies under water.
//
// Reads:  its arguments only
// Writes: FX, FZ, M
// IERR:   not used

#include "slices/slices.h"

void WATER(const double* xs, const double* zs, double ZW, double GAMW, double& FX, double& FZ, double& M) {
    constexpr double kTiny = 1.0E-6f;
    constexpr double kThird = 1.0 / 3.0;
    FX = 0.0;
    FZ = 0.0;
    M = 0.0;
    double x1 = xs[0];
    double x2 = xs[1];
    double x5 = xs[4];
    double z1 = zs[0];
    double z2 = zs[1];
    double z5 = zs[4];
    double dx = x2 - x1;
    double dz = z2 - z1;
    if (ZW > z1 && ZW > z2) return;

    if (z1 > ZW && !(z2 > ZW)) {
        // Only corner 1 under water: a triangle of water against a top rising to the right.
        double depth = z1 - ZW;
        double wetted = -dx / dz * depth;
        FX = 0.5 * GAMW * depth * depth;
        FZ = 0.5 * GAMW * depth * wetted;
        M = -depth * FX / 3.0 - wetted * FZ / 3.0 + (x5 - x1) * FZ - (z5 - z1) * FX;
        return;
    }
    if (!(z1 > ZW) && dz >= kTiny) {
        // Only corner 2 under water: a triangle of water against a top descending to the right.
        double depth = z2 - ZW;
        double wetted = dx / dz * depth;
        FX = -0.5 * GAMW * depth * depth;
        FZ = 0.5 * GAMW * depth * wetted;
        M = (wetted * FZ - depth * FX) / 3.0 - (x2 - x5) * FZ - (z5 - z2) * FX;
        return;
    }
    // The whole top under water (or a top too flat for a triangle): the water column is a
    // rectangle over corner 1's depth and a triangle over the top's fall.
    double cover = z1 - ZW;
    double rectangleV = GAMW * cover * dx;
    double triangleV = 0.5 * GAMW * dz * dx;
    double rectangleH = GAMW * cover * dz;
    double triangleH = 0.5 * GAMW * dz * dz;
    double twoThirds = kThird * 2.0;
    FX = -rectangleH - triangleH;
    FZ = rectangleV + triangleV;
    M = -0.5 * dx * rectangleV - twoThirds * dx * triangleV - 0.5 * dz * rectangleH - twoThirds * dz * triangleH -
        (z5 - z1) * FX + (x5 - x1) * FZ;
}
