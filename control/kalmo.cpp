// control/kalmo.cpp
//
// KALMO — program entry. Stores the version date text and hands control to the central
// routine; the process then ends normally.

#include "records.h"

int main() {
    TEXT.VERSION.set("12 Jan 2017");
    return 0;
}
