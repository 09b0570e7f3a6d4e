#pragma once

#include "corvane/converters/ValueConverter.hpp"

#include <array>
#include <string_view>

namespace corvane {

/// Boolean tags: reads the usual spellings of yes and no, writes "true"/"false",
/// and hands the engines a Boolean number.
class BoolValueConverter : public TypedValueConverter<bool> {
public:
    /// Compared exactly and case-sensitively.
    static constexpr std::array<std::string_view, 7> trueStringValues{"True", "true", "1", "Yes",
                                                                      "yes",  "Y",    "y"};
    /// The texts read as false; see the class comment for the rest.
    static constexpr std::array<std::string_view, 7> falseStringValues{"False", "false", "0", "No",
                                                                       "no",    "N",     "n"};

    std::optional<bool> typedValueFromNativeValue(const DynamicValue& value) const override;
    std::optional<bool> typedValueFromStringValue(const OptionalString& value) const override;
    OptionalString stringValueFromTypedValue(const std::optional<bool>& value) const override;

    /// 0 is false, 1 is true, any other number nothing.
    std::optional<bool> typedValueFromIntegerValue(const std::optional<int64_t>& value) const;
    /// 0.0 is false, 1.0 is true, anything else (NaN too) nothing.
    std::optional<bool> typedValueFromDoubleValue(const std::optional<double>& value) const;

    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
    DynamicValue jsonValueFromNativeValue(const DynamicValue& value) const override;
};

} // namespace corvane
