#pragma once

#include "corvane/converters/ValueConverter.hpp"

namespace corvane {

/// The converter of a tag type the system cannot represent: every operation
/// yields nothing, whatever the input, so such tags are never read or written
/// through the typed paths.
class NoneValueConverter : public TypedValueConverter<std::string> {
public:
    ~NoneValueConverter() override;

    std::optional<std::string> typedValueFromNativeValue(const DynamicValue&) const override { return {}; }
    std::optional<std::string> typedValueFromStringValue(const OptionalString&) const override { return {}; }
    OptionalString stringValueFromTypedValue(const std::optional<std::string>&) const override { return {}; }

    DynamicValue nativeValueFromStringValue(const OptionalString&) const override { return {}; }
    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString&) const override { return {}; }
    OptionalString stringValueFromNativeValue(const DynamicValue&) const override { return {}; }
    OptionalString stringValueFromStringValue(const OptionalString&) const override { return {}; }
    OptionalString formattedValueFromStringValue(const OptionalString&) const override { return {}; }
    OptionalString csvValueFromNativeValue(const DynamicValue&) const override { return {}; }
    DynamicValue jsonValueFromNativeValue(const DynamicValue&) const override { return {}; }
    DynamicValue coreImageValueFromStringValue(const OptionalString&) const override { return {}; }
    DynamicValue exifToolValueFromStringValue(const OptionalString&) const override { return {}; }
};

} // namespace corvane
