// CHKCMB: the lower mobilised base shear decides between drained and undrained failure.

#include <gtest/gtest.h>

#include "records.h"
#include "solver/solver.h"

TEST(Chkcmb, LowerMobilisedShearDecidesTheModeAndChangesAreCounted) {
    clearRecords();
    MASTER.NUMSLC = 6;
    // slice:              1     2     3     4     5     6
    const double S1[] = {10.0, 10.0, 10.0, 10.0, 10.0, 10.0};
    const double S2[] = {5.0, 15.0, 10.0, 15.0, 5.0, 5.0};
    const int before[] = {1, 2, 1, 1, 2, 0};
    for (int i = 1; i <= 6; ++i) {
        SURF.S1(i) = S1[i - 1];
        SURF.S2(i) = S2[i - 1];
        ISUR.MODE(i) = before[i - 1];
    }
    // Slice beyond the surface must stay as it is.
    ISUR.MODE(7) = 1;
    SURF.S2(7) = 0.0;
    SURF.S1(7) = 1.0;

    int NUMCHG = -1;
    CHKCMB(NUMCHG);

    // 1: undrained lower, was drained -> change. 2: drained lower, was undrained -> change.
    // 3: equal shears -> undrained, was drained -> change. 4: stays drained. 5: stays undrained.
    // 6: no mode yet -> undrained, not counted.
    const int after[] = {2, 1, 2, 1, 2, 2};
    for (int i = 1; i <= 6; ++i) EXPECT_EQ(ISUR.MODE(i), after[i - 1]) << "slice " << i;
    EXPECT_EQ(NUMCHG, 3);
    EXPECT_EQ(ISUR.MODE(7), 1);

    // A second check finds the modes settled.
    CHKCMB(NUMCHG);
    EXPECT_EQ(NUMCHG, 0);
}

TEST(Chkcmb, NoSlicesNoChanges) {
    clearRecords();
    MASTER.NUMSLC = 0;
    int NUMCHG = 5;
    CHKCMB(NUMCHG);
    EXPECT_EQ(NUMCHG, 0);
}
