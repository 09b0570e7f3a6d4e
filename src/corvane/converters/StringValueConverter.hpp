#pragma once

#include "corvane/converters/ValueConverter.hpp"

namespace corvane {

/// Text tags: the string is the value, kept as it stands (no trimming; the empty
/// string is a value). Other values are turned into their text.
class StringValueConverter : public TypedValueConverter<std::string> {
public:
    std::optional<std::string> typedValueFromNativeValue(const DynamicValue& value) const override;
    std::optional<std::string> typedValueFromStringValue(const OptionalString& value) const override;
    OptionalString stringValueFromTypedValue(const std::optional<std::string>& value) const override;

    DynamicValue nativeValueFromStringValue(const OptionalString& value) const override;
    OptionalString stringValueFromStringValue(const OptionalString& value) const override;
    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
    DynamicValue jsonValueFromNativeValue(const DynamicValue& value) const override;
    DynamicValue exifToolValueFromStringValue(const OptionalString& value) const override;
};

} // namespace corvane
