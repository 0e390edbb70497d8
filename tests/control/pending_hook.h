// Test hook of the stand-ins in control/pending.cpp: each stand-in calls the hook with its
// own name ("CIRCLE", "COMBND"). Goes with that file.

#pragma once

#include <string_view>

void setPendingHook(void (*hook)(std::string_view routine));
