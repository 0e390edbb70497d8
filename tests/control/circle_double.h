// A test double of the circle routine for the central routine's own tests (test_contrl.cpp).
//
// Those tests play the solver's part for a surface routine through a hook, so that the
// central loop's print and save bookkeeping is seen on its own. The circle routine, surface
// type 2, is the one they use; its double is linked into their test program only (the program
// itself and every other test use the real one). Each call calls the hook with "CIRCLE". The
// double stands in for the routine's run-long state too, so the real routine is never linked.

#pragma once

#include <string_view>

void setCircleDoubleHook(void (*hook)(std::string_view routine));
