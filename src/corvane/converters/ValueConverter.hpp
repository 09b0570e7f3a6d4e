#pragma once

#include "corvane/converters/DynamicValue.hpp"

#include <memory>
#include <optional>
#include <string>

namespace corvane {

/// A tag value in its canonical string form; nothing when the tag has no value.
using OptionalString = std::optional<std::string>;

/// Converts one kind of tag value between its canonical string and the other
/// forms the system needs. Converters are stateless (or hold only their
/// configuration), immutable after construction and safe to share between
/// threads. No operation fails: unreadable input yields nothing.
class ValueConverter {
public:
    virtual ~ValueConverter() = default;

    /// Canonical string to the natural typed value.
    virtual DynamicValue nativeValueFromStringValue(const OptionalString& value) const = 0;
    /// Canonical string to the platform object form (Number, String or array).
    virtual std::optional<ObjectValue> objectValueFromStringValue(const OptionalString& value) const = 0;
    /// Any value to the canonical string.
    virtual OptionalString stringValueFromNativeValue(const DynamicValue& value) const = 0;
    /// Normalises a string to the canonical string.
    virtual OptionalString stringValueFromStringValue(const OptionalString& value) const = 0;
    /// String to its display form.
    virtual OptionalString formattedValueFromStringValue(const OptionalString& value) const = 0;
    /// Any value to a CSV cell.
    virtual OptionalString csvValueFromNativeValue(const DynamicValue& value) const = 0;
    /// Any value to a JSON-ready value (Number, String or array).
    virtual DynamicValue jsonValueFromNativeValue(const DynamicValue& value) const = 0;
    /// Canonical string to the value handed to the image I/O engine.
    virtual DynamicValue coreImageValueFromStringValue(const OptionalString& value) const = 0;
    /// Canonical string to the value handed to ExifTool.
    virtual DynamicValue exifToolValueFromStringValue(const OptionalString& value) const = 0;
};

/// Converters are shared and immutable.
using ValueConverterRef = std::shared_ptr<const ValueConverter>;

/// A converter with a natural typed value. Gives the shared default of every
/// ValueConverter operation in terms of the three typed operations; subclasses
/// override where their kind of value differs.
template <typename RawType> class TypedValueConverter : public ValueConverter {
public:
    /// The natural typed value of the converter's kind.
    using Raw = RawType;

    /// Any value to the typed value; nothing when it doesn't convert.
    virtual std::optional<RawType> typedValueFromNativeValue(const DynamicValue& value) const = 0;
    /// The typed value of a canonical string; nothing when it doesn't read.
    virtual std::optional<RawType> typedValueFromStringValue(const OptionalString& value) const = 0;
    /// The canonical string of a typed value; nothing stays nothing.
    virtual OptionalString stringValueFromTypedValue(const std::optional<RawType>& value) const = 0;

    /// The typed value read from the canonical string.
    DynamicValue nativeValueFromStringValue(const OptionalString& value) const override {
        return DynamicValue(typedValueFromStringValue(value));
    }
    /// The canonical string of the value read as the typed value.
    OptionalString stringValueFromNativeValue(const DynamicValue& value) const override {
        return stringValueFromTypedValue(typedValueFromNativeValue(value));
    }
    /// A round trip through the typed value.
    OptionalString stringValueFromStringValue(const OptionalString& value) const override {
        return stringValueFromTypedValue(typedValueFromStringValue(value));
    }
    /// The canonical string.
    OptionalString csvValueFromNativeValue(const DynamicValue& value) const override {
        return stringValueFromNativeValue(value);
    }
    /// The canonical string, as a JSON string.
    DynamicValue jsonValueFromNativeValue(const DynamicValue& value) const override {
        return DynamicValue(stringValueFromNativeValue(value));
    }
    /// The typed value.
    DynamicValue coreImageValueFromStringValue(const OptionalString& value) const override {
        return nativeValueFromStringValue(value);
    }
    /// The JSON value of the string as it stands.
    DynamicValue exifToolValueFromStringValue(const OptionalString& value) const override {
        return jsonValueFromNativeValue(DynamicValue(value));
    }
};

} // namespace corvane
