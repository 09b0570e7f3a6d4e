#pragma once

#include "corvane/converters/ValueConverter.hpp"

namespace corvane {

/// Country code tags: reads an alpha-2, alpha-3 or numeric code in any case and
/// writes the alpha-2 code, so "USA" and "840" both become "US".
class CountryValueConverter : public TypedValueConverter<Country> {
public:
    std::optional<Country> typedValueFromNativeValue(const DynamicValue& value) const override;
    std::optional<Country> typedValueFromStringValue(const OptionalString& value) const override;
    OptionalString stringValueFromTypedValue(const std::optional<Country>& value) const override;

    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    /// The country's localizedDescription; nothing for an unknown code.
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
};

} // namespace corvane
