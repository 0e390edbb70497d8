// SORT2: insertion sort of a key array carrying a second array along.

#include <gtest/gtest.h>

#include <vector>

#include "slices/slices.h"

TEST(Sort2, AscendingOrderCarriesTheSecondArray) {
    std::vector<double> a{3.0, -1.0, 2.0, 10.0, 0.5};
    std::vector<double> b{30.0, -10.0, 20.0, 100.0, 5.0};
    SORT2(5, 1, a.data(), b.data());
    EXPECT_EQ(a, (std::vector<double>{-1.0, 0.5, 2.0, 3.0, 10.0}));
    EXPECT_EQ(b, (std::vector<double>{-10.0, 5.0, 20.0, 30.0, 100.0}));
}

TEST(Sort2, AnyOtherDirectionSortsDescending) {
    for (int direction : {-1, 0, 2}) {
        std::vector<double> a{3.0, -1.0, 2.0, 10.0, 0.5};
        std::vector<double> b{30.0, -10.0, 20.0, 100.0, 5.0};
        SORT2(5, direction, a.data(), b.data());
        EXPECT_EQ(a, (std::vector<double>{10.0, 3.0, 2.0, 0.5, -1.0}));
        EXPECT_EQ(b, (std::vector<double>{100.0, 30.0, 20.0, 5.0, -10.0}));
    }
}

TEST(Sort2, EqualKeysKeepTheirOrder) {
    std::vector<double> a{2.0, 1.0, 2.0, 1.0, 2.0};
    std::vector<double> b{1.0, 2.0, 3.0, 4.0, 5.0};
    SORT2(5, 1, a.data(), b.data());
    EXPECT_EQ(a, (std::vector<double>{1.0, 1.0, 2.0, 2.0, 2.0}));
    EXPECT_EQ(b, (std::vector<double>{2.0, 4.0, 1.0, 3.0, 5.0}));
    std::vector<double> c{1.0, 2.0, 1.0, 2.0};
    std::vector<double> d{1.0, 2.0, 3.0, 4.0};
    SORT2(4, -1, c.data(), d.data());
    EXPECT_EQ(c, (std::vector<double>{2.0, 2.0, 1.0, 1.0}));
    EXPECT_EQ(d, (std::vector<double>{2.0, 4.0, 1.0, 3.0}));
}

TEST(Sort2, OnlyTheFirstNValuesAreSorted) {
    std::vector<double> a{5.0, 4.0, 3.0, 2.0, 1.0};
    std::vector<double> b{1.0, 2.0, 3.0, 4.0, 5.0};
    SORT2(3, 1, a.data(), b.data());
    EXPECT_EQ(a, (std::vector<double>{3.0, 4.0, 5.0, 2.0, 1.0}));
    EXPECT_EQ(b, (std::vector<double>{3.0, 2.0, 1.0, 4.0, 5.0}));
}

TEST(Sort2, FewerThanTwoValuesAreLeftAlone) {
    std::vector<double> a{5.0, 4.0};
    std::vector<double> b{1.0, 2.0};
    SORT2(1, 1, a.data(), b.data());
    SORT2(0, 1, a.data(), b.data());
    SORT2(-3, 1, a.data(), b.data());
    EXPECT_EQ(a, (std::vector<double>{5.0, 4.0}));
    EXPECT_EQ(b, (std::vector<double>{1.0, 2.0}));
}
