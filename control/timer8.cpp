// control/timer8.cpp
//
// TIMER8 — the wall-clock date and time as eight integers.
//
// Fills CLOCK with year, month (1-12), day, 0, hour, minute, second and hundredths of a second
// of the local time. While a clock override is set (tests), the override's eight values are
// given instead.
//
// Reads:  the operating system's clock, or the override
// Writes: CLOCK(1..8)
// IERR:   not used

#include <chrono>
#include <ctime>

#include "control/control.h"

namespace {
bool gOverridden = false;
int gOverride[8] = {};
}  // namespace

void setClockOverride(const int* clock) {
    gOverridden = clock != nullptr;
    for (int k = 0; k < 8; ++k) gOverride[k] = clock ? clock[k] : 0;
}

void TIMER8(int clock[8]) {
    if (gOverridden) {
        for (int k = 0; k < 8; ++k) clock[k] = gOverride[k];
        return;
    }
    auto now = std::chrono::system_clock::now();
    std::time_t seconds = std::chrono::system_clock::to_time_t(now);
    auto sinceSecond = now - std::chrono::system_clock::from_time_t(seconds);
    long long hundredths = std::chrono::duration_cast<std::chrono::milliseconds>(sinceSecond).count() / 10;
    std::tm local{};
    localtime_r(&seconds, &local);
    clock[0] = local.tm_year + 1900;
    clock[1] = local.tm_mon + 1;
    clock[2] = local.tm_mday;
    clock[3] = 0;
    clock[4] = local.tm_hour;
    clock[5] = local.tm_min;
    clock[6] = local.tm_sec;
    clock[7] = static_cast<int>(hundredths < 0 ? 0 : (hundredths > 99 ? 99 : hundredths));
}
