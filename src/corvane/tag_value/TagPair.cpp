#include "corvane/tag_value/TagPair.hpp"

#include "corvane/converters/ValueConverter.hpp"
#include "corvane/tag_value/TagItem.hpp"

namespace corvane {

std::optional<TagPair> TagPair::fromName(const TagName& name, const DynamicValue& rawValue) {
    const TagItem* item = name.item();
    if (!item) return std::nullopt;
    std::optional<std::string> value = item->stringValueFromNativeValue(rawValue);
    if (!value) return std::nullopt;
    return TagPair(item->name(), std::move(*value));
}

std::optional<TagPair> TagPair::fromRawName(std::string_view rawName, const DynamicValue& rawValue) {
    auto name = TagName::fromRawValue(rawName);
    if (!name) return std::nullopt;
    return fromName(*name, rawValue);
}

} // namespace corvane
