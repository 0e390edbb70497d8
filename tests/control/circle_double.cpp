// The circle routine as the central routine's tests see it: see circle_double.h.

#include "control/circle_double.h"

#include "surfaces/surfaces.h"

namespace {
void (*gCircleHook)(std::string_view routine) = nullptr;
}  // namespace

void setCircleDoubleHook(void (*hook)(std::string_view routine)) { gCircleHook = hook; }

void CIRCLE() {
    if (gCircleHook) gCircleHook("CIRCLE");
}

// The double keeps nothing between calls; the start of a run finds nothing to reset here.
void resetCircleRunState() {}
