// The input reader as the central routine's tests see it: see read_double.h.

#include "control/read_double.h"

#include "input/input.h"
#include "records.h"

namespace {
void (*gReadHook)(std::string_view routine) = nullptr;
}  // namespace

void setReadDoubleHook(void (*hook)(std::string_view routine)) { gReadHook = hook; }

void READ() {
    MASTER.IDTYP = 1;
    MASTER.IDEFTO = 1;
    IWATER.IDPWP = 1;
    if (gReadHook) gReadHook("READ");
}
