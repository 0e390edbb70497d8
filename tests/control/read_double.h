// A test double of the input reader for the central routine's own tests (test_contrl.cpp).
//
// Those tests stage the problem that a read would leave behind, including states no input
// file can give (an analysis code the reader refuses, more elements than the mesh builder
// takes), so the central routine's checks and loop are tested on their own. The double is
// linked into their test program only; the program itself and every other test use the real
// reader. Each call sets the plainest problem (stability, effective stress, hydrostatic pore
// water) and then calls the hook with "READ", where a test fills in its problem.

#pragma once

#include <string_view>

void setReadDoubleHook(void (*hook)(std::string_view routine));
