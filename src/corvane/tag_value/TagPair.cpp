#include "corvane/tag_value/TagPair.hpp"

#include "corvane/converters/ValueConverter.hpp"
#include "corvane/preset_support/PresetItemEntry.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/value_models/DateEdition.hpp"

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

std::optional<PresetItemEntry> TagPair::convertToPresetEntry() const {
    const TagItem* item = name_.item();
    if (!item) return std::nullopt;
    std::string text = value_;
    if (item->type().isDateTimeOrPartial()) {
        const DynamicValue native = item->nativeValueFromStringValue(value_);
        std::optional<Date> date;
        if (const Date* d = native.dateValue()) date = *d;
        text = DateEdition::select(DateValues(date)).description();
    }
    return PresetItemEntry(item->name(), PresetEdition::useCustomValue(std::move(text)));
}

} // namespace corvane
