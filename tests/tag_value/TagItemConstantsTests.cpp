#include "corvane/tag_value/TagItem.hpp"

#include <gtest/gtest.h>

using corvane::TagItem;

// Every constant the library names exists in the catalogue (a missing row throws on first use) and
// is the catalogue's own entry for its family and key, not a copy or a neighbour.
TEST(TagItemConstants, EachConstantIsItsCatalogueRow) {
#define CORVANE_TAG_ITEM(fn, family, key)                                                                    \
    EXPECT_EQ(&TagItem::fn(), TagItem::find(family, key)) << family ":" key;
#include "corvane/tag_value/detail/TagItemConstantList.inc"
#undef CORVANE_TAG_ITEM
}
