// solver/slicepair.h
//
// SlicePair — two slices' values side by side, so that the divisions of balances independent
// from slice to slice go two to an instruction. Each lane is rounded exactly as the same
// operation on its own would be: results do not depend on whether slices are taken in pairs.
//
// Reads:  the columns handed over (two values from index k on)
// Writes: the column handed over (storePair)
// IERR:   none

#pragma once

#include <cstring>

using SlicePair = double __attribute__((vector_size(16)));
using SlicePairFlags = long long __attribute__((vector_size(16)));  // what comparing two pairs gives

inline SlicePair pairAt(const double* column, int k) {
    SlicePair pair;
    std::memcpy(&pair, column + k, sizeof pair);
    return pair;
}

inline SlicePair pairOf(double value) { return SlicePair{value, value}; }

inline void storePair(double* column, int k, SlicePair pair) { std::memcpy(column + k, &pair, sizeof pair); }
