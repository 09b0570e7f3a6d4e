#include "corvane/converters/CountryValueConverter.hpp"

namespace corvane {

std::optional<Country> CountryValueConverter::typedValueFromStringValue(const OptionalString& value) const {
    if (!value) return std::nullopt;
    return Country::from(*value); // the look-up upper-cases the code
}

std::optional<Country> CountryValueConverter::typedValueFromNativeValue(const DynamicValue& value) const {
    if (value.isNothing()) return std::nullopt;
    if (auto s = value.stringValue()) return typedValueFromStringValue(*s);
    if (auto c = value.countryValue()) return *c;
    return typedValueFromStringValue(value.description());
}

OptionalString CountryValueConverter::stringValueFromTypedValue(const std::optional<Country>& value) const {
    if (!value) return std::nullopt;
    return value->alpha2();
}

std::optional<ObjectValue>
CountryValueConverter::objectValueFromStringValue(const OptionalString& value) const {
    auto country = typedValueFromStringValue(value);
    if (!country) return std::nullopt;
    return ObjectValue(country->alpha2());
}

OptionalString CountryValueConverter::formattedValueFromStringValue(const OptionalString& value) const {
    auto country = typedValueFromStringValue(value);
    if (!country) return std::nullopt;
    return country->localizedDescription();
}

} // namespace corvane
