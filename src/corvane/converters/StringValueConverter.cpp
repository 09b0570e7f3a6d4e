#include "corvane/converters/StringValueConverter.hpp"

namespace corvane {

namespace {

std::string joined(const StringArray& strings) {
    std::string out;
    for (size_t i = 0; i < strings.size(); ++i) {
        if (i) out += ", ";
        out += strings[i];
    }
    return out;
}

} // namespace

std::optional<std::string>
StringValueConverter::typedValueFromStringValue(const OptionalString& value) const {
    return value;
}

std::optional<std::string> StringValueConverter::typedValueFromNativeValue(const DynamicValue& value) const {
    if (value.isNothing()) return std::nullopt;
    if (auto n = value.numberValue()) return n->description();
    if (auto s = value.stringValue()) return *s;
    if (auto strings = value.stringArrayValue()) return joined(*strings);
    // An array of dynamic values made only of strings reads as an array of strings.
    if (auto array = value.arrayValue()) {
        bool allStrings = true;
        for (const auto& element : *array)
            allStrings = allStrings && element.is<std::string>();
        if (allStrings) {
            StringArray strings;
            strings.reserve(array->size());
            for (const auto& element : *array)
                strings.push_back(*element.stringValue());
            return joined(strings);
        }
    }
    // Bool, Int, UInt and Double convert without loss through their text;
    // any other value is printed.
    return value.description();
}

OptionalString
StringValueConverter::stringValueFromTypedValue(const std::optional<std::string>& value) const {
    return value;
}

DynamicValue StringValueConverter::nativeValueFromStringValue(const OptionalString& value) const {
    return DynamicValue(value);
}

OptionalString StringValueConverter::stringValueFromStringValue(const OptionalString& value) const {
    return value;
}

std::optional<ObjectValue>
StringValueConverter::objectValueFromStringValue(const OptionalString& value) const {
    if (!value) return std::nullopt;
    return ObjectValue(*value);
}

OptionalString StringValueConverter::formattedValueFromStringValue(const OptionalString& value) const {
    return typedValueFromNativeValue(DynamicValue(value));
}

DynamicValue StringValueConverter::jsonValueFromNativeValue(const DynamicValue& value) const {
    return DynamicValue(typedValueFromNativeValue(value));
}

DynamicValue StringValueConverter::exifToolValueFromStringValue(const OptionalString& value) const {
    return DynamicValue(typedValueFromNativeValue(DynamicValue(value)));
}

} // namespace corvane
