// input/input.h
//
// Problem input: the reader, the soil nail reader, the mesh builder, the node value plot and
// the point queries of the fields (interpolation, profiles, triangles, material at a point,
// pore pressure, undrained strength).

#pragma once

void READ();
void READSN();
void MESH(int& maxMaterial);
void XYPLOT(int lines, int positions, char* grid, int npoints, int nf, const double* x, const double* z, double* v,
            double scale);

// Arrays are passed as pointers to their first element; n, counts and indices are 1-based
// in the text of each routine's head.
void INTPOL(int n, int direction, const double* x, const double* y, double xq, double& yq, int& ierr);
// A broken line checked once for many look-ups: its table and the INTPOL error code of its
// abscissas (0 when they run as the direction asks). interpolate gives what INTPOL gives on
// the table, as long as its abscissas stay as they were when it was checked.
struct BrokenLine {
    int n;
    int direction;
    const double* x;
    const double* y;
    int code;
    mutable int lastFound;  // the point found by the last look-up (0: none yet), where the next one looks first
};
BrokenLine checkedBrokenLine(int n, int direction, const double* x, const double* y);
// The slope of the segment from point k - 1 to point k (index from 0), and the value on it at
// xq: what interpolate gives between the two points.
inline double brokenLineSlope(const double* x, const double* y, int k) { return (y[k] - y[k - 1]) / (x[k] - x[k - 1]); }
inline double brokenLineValue(const double* x, const double* y, int k, double slope, double xq) {
    return y[k - 1] + slope * (xq - x[k - 1]);
}
// The value at xq of a table whose abscissas increase (checked: code 0; two points or more),
// whose segment slopes were taken once (slopes[k] = brokenLineSlope(x, y, k), k = 1..n - 1),
// exactly as interpolate gives it, for abscissas asked from left to right: the search walks
// right from point segment (where the last look-up ended, or any point to start from; from
// the start when the point before it does not lie left of xq) and leaves the point found there.
inline double interpolateRightward(const BrokenLine& line, const double* slopes, double xq, int& segment) {
    const int n = line.n;
    const double* x = line.x;
    const double* y = line.y;
    if (xq <= x[0]) return y[0];
    if (xq >= x[n - 1]) return y[n - 1];
    int k = segment < 1 || segment >= n ? 1 : segment;
    if (!(x[k - 1] - xq < 0.0)) k = 1;  // asked left of where the walk stands
    while (x[k] - xq < 0.0) ++k;
    segment = k;
    return x[k] == xq ? y[k] : brokenLineValue(x, y, k, slopes[k], xq);
}
void interpolate(const BrokenLine& line, double xq, double& yq, int& ierr);
void INTPRF(int nprof, const double* xprof, const int* npoints, int ld, const double* zlev, const double* values,
            double xq, double zq, double& result, int& ierr);
void TRIPNT(const double* xv, const double* zv, double x, double z, int& inside);
void LOCATE(double x, double z, int& result);
// The parts of LOCATE a caller may use to see that many points get one material: whether x
// lies in the x range of the mesh, and the horizontal layer (1..NLAYER) whose material LOCATE
// gives a point at depth z when no triangle holds it.
bool insideMesh(double x);
int layerAt(double z);
void PWPXZ(double x, double z, double& u);
void SUXZ(double x, double z, double beta, double& su0, double& su);

// Starts the call count of INTPRF again, so that its next call validates the tables (tests).
void resetIntprfCalls();
// Inverse-distance-squared mean at (x, z) of a node value field over the four corners of a
// mesh element; node n's value is nodeValues[n - 1].
double NODMEAN(int element, double x, double z, const double* nodeValues);
