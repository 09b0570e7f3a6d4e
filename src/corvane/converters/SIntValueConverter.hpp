#pragma once

#include "corvane/converters/ValueConverter.hpp"

#include <cstdint>

namespace corvane {

/// Signed integer tags. Reads through the decimal reader, so "12,0", "1e3" and
/// "0x10" are integers too, and writes plain decimal digits.
class SIntValueConverter : public TypedValueConverter<int64_t> {
public:
    SIntValueConverter() = default;

    std::optional<int64_t> typedValueFromNativeValue(const DynamicValue& value) const override;
    std::optional<int64_t> typedValueFromStringValue(const OptionalString& value) const override;
    OptionalString stringValueFromTypedValue(const std::optional<int64_t>& value) const override;

    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
    DynamicValue jsonValueFromNativeValue(const DynamicValue& value) const override;

protected:
    /// The unsigned variant refuses every negative result.
    explicit SIntValueConverter(bool nonNegative) : nonNegative_(nonNegative) {}

private:
    std::optional<int64_t> admit(std::optional<int64_t> value) const {
        if (nonNegative_ && value && *value < 0) return std::nullopt;
        return value;
    }
    bool nonNegative_ = false;
};

} // namespace corvane
