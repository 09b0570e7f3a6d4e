#include "corvane/converters/BoolValueConverter.hpp"

#include <algorithm>

namespace corvane {

std::optional<bool> BoolValueConverter::typedValueFromStringValue(const OptionalString& value) const {
    if (!value || value->empty()) return std::nullopt;
    if (std::find(trueStringValues.begin(), trueStringValues.end(), *value) != trueStringValues.end())
        return true;
    if (std::find(falseStringValues.begin(), falseStringValues.end(), *value) != falseStringValues.end())
        return false;
    return std::nullopt;
}

std::optional<bool>
BoolValueConverter::typedValueFromIntegerValue(const std::optional<int64_t>& value) const {
    if (!value) return std::nullopt;
    if (*value == 0) return false;
    if (*value == 1) return true;
    return std::nullopt;
}

std::optional<bool> BoolValueConverter::typedValueFromDoubleValue(const std::optional<double>& value) const {
    if (!value) return std::nullopt;
    if (*value == 0.0) return false;
    if (*value == 1.0) return true;
    return std::nullopt;
}

std::optional<bool> BoolValueConverter::typedValueFromNativeValue(const DynamicValue& value) const {
    if (value.isNothing()) return std::nullopt;
    if (auto b = value.boolValue()) return *b;
    if (auto n = value.numberValue()) return n->boolValue();
    if (auto i = value.intValue()) return typedValueFromIntegerValue(*i);
    if (auto d = value.doubleValue()) return typedValueFromDoubleValue(*d);
    if (auto s = value.stringValue()) return typedValueFromStringValue(*s);
    return typedValueFromStringValue(value.description());
}

OptionalString BoolValueConverter::stringValueFromTypedValue(const std::optional<bool>& value) const {
    if (!value) return std::nullopt;
    return *value ? "true" : "false";
}

std::optional<ObjectValue> BoolValueConverter::objectValueFromStringValue(const OptionalString& value) const {
    auto typed = typedValueFromStringValue(value);
    if (!typed) return std::nullopt;
    return ObjectValue(Number::fromBool(*typed));
}

OptionalString BoolValueConverter::formattedValueFromStringValue(const OptionalString& value) const {
    return stringValueFromTypedValue(typedValueFromNativeValue(DynamicValue(value)));
}

DynamicValue BoolValueConverter::jsonValueFromNativeValue(const DynamicValue& value) const {
    auto typed = typedValueFromNativeValue(value);
    if (!typed) return {};
    return Number::fromBool(*typed);
}

} // namespace corvane
