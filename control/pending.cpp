// control/pending.cpp
//
// Stand-ins for routines that are not written yet: CIRCLE and COMBND.
// They let the central decision loop run end to end; each is removed from this file as the
// real routine lands, and the file goes with the last of them.
//
// A stand-in does nothing and returns to its caller.
//
// Tests may install a hook that every stand-in calls with its own name: a test fills the
// records the real routine would fill (a solved surface for a surface routine, an IERR) and
// sees which routines the loop called. The hook is declared for the tests in
// tests/control/pending_hook.h.

#include <string_view>

#include "output/output.h"
#include "records.h"
#include "surfaces/surfaces.h"

using PendingHook = void (*)(std::string_view routine);

namespace {
PendingHook gHook = nullptr;

void pending(std::string_view routine) {
    if (gHook) gHook(routine);
}
}  // namespace

void setPendingHook(PendingHook hook) { gHook = hook; }

void CIRCLE() { pending("CIRCLE"); }
void COMBND() { pending("COMBND"); }
