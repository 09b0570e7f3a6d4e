#pragma once

#include "corvane/converters/ValueConverter.hpp"

namespace corvane {

/// Signed decimal tags. Reads numbers written with a decimal comma or with blanks
/// between digit groups ("1 234,5"), and writes them with eight decimals and a
/// full stop, whatever the locale.
class SDoubleValueConverter : public TypedValueConverter<double> {
public:
    SDoubleValueConverter() = default;

    std::optional<double> typedValueFromNativeValue(const DynamicValue& value) const override;
    std::optional<double> typedValueFromStringValue(const OptionalString& value) const override;
    OptionalString stringValueFromTypedValue(const std::optional<double>& value) const override;

    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
    DynamicValue jsonValueFromNativeValue(const DynamicValue& value) const override;

    /// The reading rule shared with the integer converters: TABs removed, commas
    /// made full stops, blanks removed, then the whole rest read by strtod in
    /// the C locale. Nothing for nothing, the empty string or leftovers.
    static std::optional<double> parseDecimal(const OptionalString& value);

protected:
    /// The unsigned variant refuses every value that is not >= 0.0.
    explicit SDoubleValueConverter(bool nonNegative) : nonNegative_(nonNegative) {}

private:
    std::optional<double> admit(std::optional<double> value) const {
        if (nonNegative_ && value && !(*value >= 0.0)) return std::nullopt;
        return value;
    }
    bool nonNegative_ = false;
};

} // namespace corvane
