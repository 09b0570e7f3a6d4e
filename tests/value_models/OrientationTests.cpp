#include "corvane/value_models/ExifOrientation.hpp"
#include "corvane/value_models/RenamedExifOrientation.hpp"

#include <gtest/gtest.h>

using namespace corvane;

TEST(Orientation, RawValuesAndNames) {
    EXPECT_EQ(ExifOrientation::allCases().size(), 8u);
    for (int raw = 1; raw <= 8; ++raw) {
        EXPECT_EQ(ExifOrientation::allCases()[raw - 1].rawValue(), raw);
        EXPECT_EQ(ExifOrientation::fromRawValue(raw)->renamed().rawValue(), raw);
        EXPECT_EQ(ExifOrientation(RenamedExifOrientation::allCases()[raw - 1]).rawValue(), raw);
    }
    EXPECT_FALSE(ExifOrientation::fromRawValue(0));
    EXPECT_FALSE(RenamedExifOrientation::fromRawValue(9));
    EXPECT_EQ(ExifOrientation(ExifOrientation::rotate90CW).renamed(), RenamedExifOrientation::left);
}

TEST(Orientation, KnownTransforms) {
    const ExifOrientation up = ExifOrientation::horizontal;
    EXPECT_EQ(up.horizontalMirrored(), ExifOrientation::mirrorHorizontal);
    EXPECT_EQ(up.verticalMirrored(), ExifOrientation::mirrorVertical);
    EXPECT_EQ(up.leftRotated(), ExifOrientation::rotate270CW);
    EXPECT_EQ(up.rightRotated(), ExifOrientation::rotate90CW);
    EXPECT_EQ(ExifOrientation(ExifOrientation::mirrorHorizontalAndRotate270CW).leftRotated(),
              ExifOrientation::mirrorVertical);
}

template <class O> void expectGroupLaws() {
    for (O o : O::allCases()) {
        EXPECT_EQ(o.leftRotated().leftRotated().leftRotated().leftRotated(), o) << o.rawValue();
        EXPECT_EQ(o.rightRotated().rightRotated().rightRotated().rightRotated(), o) << o.rawValue();
        EXPECT_EQ(o.leftRotated().rightRotated(), o);
        EXPECT_EQ(o.horizontalMirrored().horizontalMirrored(), o);
        EXPECT_EQ(o.verticalMirrored().verticalMirrored(), o);
        // Mirroring both ways is a half turn.
        EXPECT_EQ(o.horizontalMirrored().verticalMirrored(), o.rightRotated().rightRotated());
        EXPECT_NE(o.rightRotated(), o);
    }
}

TEST(Orientation, TurningFourTimesComesBackAndMirrorsUndoThemselves) {
    expectGroupLaws<ExifOrientation>();
    expectGroupLaws<RenamedExifOrientation>();
}

// The published table of the four transforms, row by raw value: horizontal
// mirror, vertical mirror, left turn, right turn.
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

TEST(Orientation, BothNamingsFollowTheTransformTable) {
    expectTransformTable<ExifOrientation>();
    expectTransformTable<RenamedExifOrientation>();
}
