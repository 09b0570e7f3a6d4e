#include "corvane/value_models/ExifOrientation.hpp"
#include "corvane/value_models/RenamedExifOrientation.hpp"

#include <gtest/gtest.h>

using namespace corvane;

// The published table of the four transforms, row by raw value: horizontal mirror, vertical mirror,
// left turn, right turn. It fixes every transform of every case, so turning four times and mirroring
// twice coming back follow from it.
template <class O> void expectTransformTable() {
    constexpr int table[8][4] = {{2, 4, 8, 6}, {1, 3, 5, 7}, {4, 2, 6, 8}, {3, 1, 7, 5},
                                 {6, 8, 4, 2}, {5, 7, 1, 3}, {8, 6, 2, 4}, {7, 5, 3, 1}};
    for (int raw = 1; raw <= 8; ++raw) {
        const O o = *O::fromRawValue(raw);
        const int* row = table[raw - 1];
        EXPECT_EQ(o.horizontalMirrored().rawValue(), row[0]) << raw;
        EXPECT_EQ(o.verticalMirrored().rawValue(), row[1]) << raw;
        EXPECT_EQ(o.leftRotated().rawValue(), row[2]) << raw;
        EXPECT_EQ(o.rightRotated().rawValue(), row[3]) << raw;
    }
}

TEST(Orientation, RawValuesNamesAndTheTransformTableOfBothNamings) {
    expectTransformTable<ExifOrientation>();
    expectTransformTable<RenamedExifOrientation>();
    for (int raw = 1; raw <= 8; ++raw) {
        EXPECT_EQ(ExifOrientation::fromRawValue(raw)->renamed().rawValue(), raw);
        EXPECT_EQ(ExifOrientation(RenamedExifOrientation::allCases()[raw - 1]).rawValue(), raw);
    }
    EXPECT_FALSE(ExifOrientation::fromRawValue(0));
    EXPECT_FALSE(RenamedExifOrientation::fromRawValue(9));
    EXPECT_EQ(ExifOrientation(ExifOrientation::rotate90CW).renamed(), RenamedExifOrientation::left);
}
