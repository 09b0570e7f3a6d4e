#pragma once

#include "corvane/converters/ValueConverter.hpp"

#include <string>

namespace corvane {

/// List tags and tags of several values: a canonical string of elements joined
/// by `separator`, each element handled by `valueConverter`. Elements that the
/// element converter cannot read are dropped without a trace. An element that
/// holds the separator (a keyword "Smith, John") is written in double quotes,
/// an inner quote doubled: `"Smith, John",Paris` is two elements.
class ArrayValueConverter : public ValueConverter {
public:
    /// A converter of lists whose elements `valueConverter` converts, joined and split on
    /// `separator`.
    ArrayValueConverter(ValueConverterRef valueConverter, std::string separator);

    /// The converter of one element; the separator.
    ///@{
    const ValueConverterRef& valueConverter() const { return valueConverter_; }
    const std::string& separator() const { return separator_; }
    ///@}

    /// Split on the separator, each trimmed piece through the element converter;
    /// nothing for nothing or the empty string, otherwise an array (maybe empty).
    DynamicValue nativeValueFromStringValue(const OptionalString& value) const override;
    std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const override;
    /// Arrays are joined element by element; a String comes back untouched.
    OptionalString stringValueFromNativeValue(const DynamicValue& value) const override;
    OptionalString stringValueFromStringValue(const OptionalString& value) const override;
    OptionalString formattedValueFromStringValue(const OptionalString& value) const override;
    OptionalString csvValueFromNativeValue(const DynamicValue& value) const override;
    DynamicValue jsonValueFromNativeValue(const DynamicValue& value) const override;
    DynamicValue coreImageValueFromStringValue(const OptionalString& value) const override;
    /// One normalised string, not a list.
    DynamicValue exifToolValueFromStringValue(const OptionalString& value) const override;

private:
    std::optional<DynamicArray> elements(const OptionalString& value) const;
    OptionalString joinedElements(const DynamicArray& elements) const;

    ValueConverterRef valueConverter_;
    std::string separator_;
};

} // namespace corvane
