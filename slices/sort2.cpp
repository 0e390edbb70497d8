// slices/sort2.cpp
//
// SORT2 — sorts a key array and carries a second array along with it.
//
// Straight insertion: each key moves left past the keys that must follow it, so equal keys keep
// their order.
//
// Reads:  n; idir, 1 ascending and any other value descending; a(1..n) keys, b(1..n)
// Writes: a and b, reordered together
// IERR:   none

#include "slices/slices.h"

void SORT2(int n, int idir, double* a, double* b) {
    const double order = idir == 1 ? 1.0 : -1.0;
    for (int j = 1; j < n; ++j) {
        const double key = a[j];
        const double carried = b[j];
        int k = j - 1;
        while (k >= 0 && (a[k] - key) * order > 0.0) {
            a[k + 1] = a[k];
            b[k + 1] = b[k];
            --k;
        }
        a[k + 1] = key;
        b[k + 1] = carried;
    }
}
