#include "corvane/converters/SDoubleValueConverter.hpp"

#include "corvane/converters/detail/ConverterText.hpp"

namespace corvane {
namespace converter_text = detail::converter_text;

std::optional<double> SDoubleValueConverter::parseDecimal(const OptionalString& value) {
    if (!value || value->empty()) return std::nullopt;
    std::string cleaned;
    cleaned.reserve(value->size());
    for (char c : *value) {
        if (c == '\t' || c == ' ') continue;
        cleaned += c == ',' ? '.' : c;
    }
    return converter_text::parseCDouble(cleaned);
}

std::optional<double> SDoubleValueConverter::typedValueFromStringValue(const OptionalString& value) const {
    return admit(parseDecimal(value));
}

std::optional<double> SDoubleValueConverter::typedValueFromNativeValue(const DynamicValue& value) const {
    if (value.isNothing()) return std::nullopt;
    if (auto d = value.doubleValue()) return admit(*d);
    if (auto n = value.numberValue()) return admit(n->doubleValue());
    if (auto i = value.intValue()) return admit(static_cast<double>(*i));
    if (auto u = value.uintValue()) return admit(static_cast<double>(*u));
    if (auto s = value.stringValue()) return typedValueFromStringValue(*s);
    return typedValueFromStringValue(value.description());
}

OptionalString SDoubleValueConverter::stringValueFromTypedValue(const std::optional<double>& value) const {
    auto admitted = admit(value);
    if (!admitted) return std::nullopt;
    return converter_text::formatEightDecimals(*admitted);
}

std::optional<ObjectValue>
SDoubleValueConverter::objectValueFromStringValue(const OptionalString& value) const {
    auto typed = typedValueFromStringValue(value);
    if (!typed) return std::nullopt;
    return ObjectValue(Number::fromDouble(*typed));
}

OptionalString SDoubleValueConverter::formattedValueFromStringValue(const OptionalString& value) const {
    return stringValueFromTypedValue(typedValueFromNativeValue(DynamicValue(value)));
}

DynamicValue SDoubleValueConverter::jsonValueFromNativeValue(const DynamicValue& value) const {
    auto typed = typedValueFromNativeValue(value);
    if (!typed) return {};
    return Number::fromDouble(*typed);
}

} // namespace corvane
