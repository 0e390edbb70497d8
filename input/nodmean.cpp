// input/nodmean.cpp
//
// NODMEAN — a node value field read at a point inside a mesh element.
//
// The four corner nodes of the element are weighted by the inverse square of their distance
// from the point, the square held at 1.0E-6 or more so that a point on a node takes that node's
// value without dividing by zero.
//
// Reads:  IGEOMS IELNOD; GEOMSH XNOD, ZNOD; the node values given (node n at nodeValues[n - 1])
// Writes: nothing; returns the weighted mean
// IERR:   none

#include "input/input.h"
#include "records.h"

namespace {
constexpr double kMinSquare = 1.0e-6f;
}

double NODMEAN(int element, double x, double z, const double* nodeValues) {
    double sumWeight = 0.0;
    double sumValue = 0.0;
    for (int corner = 1; corner <= 4; ++corner) {
        const int node = IGEOMS.IELNOD(corner, element);
        const double dx = GEOMSH.XNOD(node) - x;
        const double dz = GEOMSH.ZNOD(node) - z;
        double square = dx * dx + dz * dz;
        if (square < kMinSquare) square = kMinSquare;
        const double weight = 1.0 / square;
        sumWeight += weight;
        sumValue += weight * nodeValues[node - 1];
    }
    return sumValue / sumWeight;
}
