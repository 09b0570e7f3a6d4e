#include "corvane/comparison/TagComparatorGroupKey.hpp"

#include "corvane/tag_value/TagItem.hpp"

namespace corvane {

std::string TagComparatorGroupKey::localizedNameText() const {
    return name_.stream().rawValue() + " " + localizedKeyText();
}

std::string TagComparatorGroupKey::localizedKeyText() const {
    const TagItem* item = TagItem::find(name_);
    if (item && !item->displayName().empty()) return item->displayName();
    return name_.key().rawValue();
}

} // namespace corvane
