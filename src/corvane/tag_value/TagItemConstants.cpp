#include "corvane/tag_value/TagItem.hpp"

namespace corvane {

// Each constant is looked up once and then served from its own static.
#define CORVANE_TAG_ITEM(fn, family, key)                                                                    \
    const TagItem& TagItem::fn() {                                                                           \
        static const TagItem& item = TagItem::require(family, key);                                          \
        return item;                                                                                         \
    }
#include "corvane/tag_value/detail/TagItemConstantList.inc"
#undef CORVANE_TAG_ITEM

} // namespace corvane
