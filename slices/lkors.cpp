// slices/lkors.cpp
//
// LKORS — where two straight segments cross.
//
// Segment AB (a control segment) and segment CD (a slice base from corner 4 to corner 3) are
// taken as the lines through them. With d the cross product of their directions, the crossing
// lies at the fraction s of AB and t of CD:
//   d = (XD - XC)(ZB - ZA) - (ZD - ZC)(XB - XA)
//   s = ((XD - XC)(ZC - ZA) - (ZD - ZC)(XC - XA)) / d
//   t = ((XB - XA)(ZC - ZA) - (XC - XA)(ZB - ZA)) / d
// The segments themselves cross when both fractions lie in 0..1, end points included, so a
// base that only touches the control line counts as crossing it.
//
// Arguments: XA, ZA, XB, ZB, XC, ZC, XD, ZD the end points; TOL the smallest |d| taken for
//            lines that are not parallel
// Writes:    XI, ZI the crossing of the two lines and T its fraction along CD (all three left
//            as they are for parallel lines); IRES 0 the lines are parallel, 1 they cross
//            outside one of the segments, 2 the segments cross
// IERR:      none

#include <cmath>

#include "slices/slices.h"

void LKORS(double XA, double ZA, double XB, double ZB, double XC, double ZC, double XD, double ZD, double TOL,
           double& XI, double& ZI, double& T, int& IRES) {
    const double d = (XD - XC) * (ZB - ZA) - (ZD - ZC) * (XB - XA);
    if (std::fabs(d) < TOL) {
        IRES = 0;
        return;
    }
    const double s = ((XD - XC) * (ZC - ZA) - (ZD - ZC) * (XC - XA)) / d;
    const double t = ((XB - XA) * (ZC - ZA) - (XC - XA) * (ZB - ZA)) / d;
    XI = XA + s * (XB - XA);
    ZI = ZA + s * (ZB - ZA);
    T = t;
    IRES = (s >= 0.0 && s <= 1.0 && t >= 0.0 && t <= 1.0) ? 2 : 1;
}
