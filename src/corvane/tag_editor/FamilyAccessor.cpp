#include "corvane/tag_editor/FamilyAccessor.hpp"

#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/detail/ConverterText.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/value_models/Country.hpp"

#include <algorithm>
#include <cmath>

namespace corvane {
namespace converter_text = detail::converter_text;

std::optional<std::string> FamilyAccessor::currentString(const TagItem& item) const {
    return editor_.currentValue(item.name());
}

std::optional<std::string> FamilyAccessor::originalString(const TagItem& item) const {
    return editor_.originalValue(item.name());
}

DynamicValue FamilyAccessor::currentNativeValue(const TagItem& item) const {
    auto value = currentString(item);
    if (!value) return {};
    return item.nativeValueFromStringValue(value);
}

DynamicValue FamilyAccessor::originalNativeValue(const TagItem& item) const {
    auto value = originalString(item);
    if (!value) return {};
    return item.nativeValueFromStringValue(value);
}

void FamilyAccessor::setNativeValue(const DynamicValue& value, const TagItem& item) const {
    if (auto text = item.stringValueFromNativeValue(value)) editor_.setValue(text, item.name());
}

void FamilyAccessor::setString(const std::optional<std::string>& value, const TagItem& item) const {
    editor_.setValue(value, item.name());
}

void FamilyAccessor::setStrings(const std::optional<std::string>& value,
                                const std::vector<const TagItem*>& items) const {
    EditionManager::Session session(editor_.manager());
    for (const TagItem* item : items)
        editor_.setValue(value, item->name());
}

bool FamilyAccessor::hasOneOrMoreValues(const std::vector<TagName>& tagNames) const {
    // A short shared pass per name: cheaper than a snapshot of the whole storage for a handful
    // of names, and it stops at the first value.
    return std::any_of(tagNames.begin(), tagNames.end(),
                       [&](const TagName& name) { return editor_.currentValue(name).has_value(); });
}

bool FamilyAccessor::oneOrMoreTagsAreEdited(const std::vector<TagName>& tagNames) const {
    return std::any_of(tagNames.begin(), tagNames.end(),
                       [&](const TagName& name) { return editor_.isValueEdited(name); });
}

std::optional<double> FamilyAccessor::readReferencedNumber(const TagItem& number, const TagItem& reference,
                                                           std::string_view negative) const {
    static const SDoubleValueConverter converter;
    auto magnitude = converter.typedValueFromStringValue(currentString(number));
    if (!magnitude || *magnitude < 0 || !std::isfinite(*magnitude)) return std::nullopt;
    auto ref = currentString(reference);
    if (ref && *ref == negative) return -*magnitude;
    return *magnitude;
}

void FamilyAccessor::writeReferencedNumber(double value, const TagItem& number, const TagItem& reference,
                                           std::string_view positive, std::string_view negative) const {
    EditionManager::Session session(editor_.manager());
    editor_.setValue(converter_text::formatEightDecimals(std::fabs(value)), number.name());
    editor_.setValue(std::string(value < 0 ? negative : positive), reference.name());
}

std::optional<TextLocation> FamilyAccessor::readTextLocation(const TextLocationItems& items) const {
    TextLocation location(currentString(*items[0]), std::nullopt, std::nullopt, currentString(*items[1]),
                          currentString(*items[2]), std::nullopt, currentString(*items[3]),
                          currentString(*items[4]));
    if (location.isEmpty()) return std::nullopt;
    return location;
}

void FamilyAccessor::writeTextLocation(const TypedTagValue<TextLocation>& value,
                                       const TextLocationItems& items) const {
    EditionManager::Session session(editor_.manager());
    const TextLocation* location = value.getIf();
    if (!location) {
        setStrings(value.isClear() ? TagValueClear : TagValueRestore, {items.begin(), items.end()});
        return;
    }
    // An absent field clears its tag; a country code that names no country leaves its tag alone.
    auto write = [&](const TextLocation::Field& text, const TagItem& item) {
        setString(text ? text : TagValueClear, item);
    };
    write(location->iptcSublocation(), *items[0]);
    write(location->iptcCity(), *items[1]);
    write(location->iptcProvinceState(), *items[2]);
    write(location->iptcCountryName(), *items[3]);
    if (const auto& code = location->iptcCountryCode(); !code || Country::from(*code)) write(code, *items[4]);
}

void FamilyAccessor::writeText(const TypedTagValue<std::string>& value, const TagItem& item) const {
    setString(value.storageValue([](const std::string& text) { return text; }), item);
}

void FamilyAccessor::writeCountryCode(const TypedTagValue<std::string>& value, const TagItem& item) const {
    if (const std::string* code = value.getIf(); code && !Country::from(*code)) return;
    writeText(value, item);
}

} // namespace corvane
