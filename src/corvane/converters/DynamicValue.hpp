#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/Country.hpp"
#include "corvane/value_models/PartialDate.hpp"
#include "corvane/value_models/PartialTime.hpp"

#include <nlohmann/json_fwd.hpp>

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// The platform number: a Boolean, an integer or a double, readable as any of the
/// three. This is the number the engines and JSON hand over, whose kind is only
/// known at run time.
class Number {
public:
    /// What the number was made from; it decides equality and the description.
    enum class Kind : uint8_t { boolean, integer, real };

    constexpr Number() = default;
    /// A number of each kind; a double keeps its value and reads as an integer truncated toward
    /// zero, saturated at the 64-bit bounds (NaN reads as 0).
    ///@{
    static constexpr Number fromBool(bool b) { return Number(Kind::boolean, b ? 1 : 0, b ? 1.0 : 0.0); }
    static constexpr Number fromInteger(int64_t i) {
        return Number(Kind::integer, i, static_cast<double>(i));
    }
    static Number fromDouble(double d);
    ///@}

    /// The kind, and one test per kind.
    ///@{
    constexpr Kind kind() const { return kind_; }
    constexpr bool isBool() const { return kind_ == Kind::boolean; }
    constexpr bool isInteger() const { return kind_ == Kind::integer; }
    constexpr bool isReal() const { return kind_ == Kind::real; }
    ///@}

    /// Non-zero is true (NaN too, as it compares unequal to zero).
    constexpr bool boolValue() const { return kind_ == Kind::real ? double_ != 0.0 : integer_ != 0; }
    /// A double is truncated toward zero and saturates at the Int bounds; NaN gives 0.
    constexpr int64_t integerValue() const { return integer_; }
    /// The value as a double (a Boolean is 1 or 0).
    constexpr double doubleValue() const { return double_; }
    /// "1"/"0" for a Boolean, decimal digits for an integer, the shortest
    /// round-trip text for a double ("1.5", "1", "1e+16", "nan", "inf").
    std::string description() const;

    /// Numbers compare by kind and value.
    friend bool operator==(const Number& a, const Number& b) {
        return a.kind_ == b.kind_ &&
               (a.kind_ == Kind::real ? a.double_ == b.double_ : a.integer_ == b.integer_);
    }

private:
    constexpr Number(Kind k, int64_t i, double d) : kind_(k), integer_(i), double_(d) {}
    Kind kind_ = Kind::integer;
    int64_t integer_ = 0;
    double double_ = 0;
};

/// Any value the dynamic variant does not model, kept as its printed text.
struct OtherValue {
    /// The value as it was printed.
    std::string text;
    friend bool operator==(const OtherValue&, const OtherValue&) = default; ///< by text
};

struct DynamicValue;
/// An array of dynamic values; an array of strings.
///@{
using DynamicArray = std::vector<DynamicValue>;
using StringArray = std::vector<std::string>;
///@}

/// The dynamic value: what converters take and give when the type is only known
/// at run time. An "object value" (the form handed to the image I/O engine) is
/// the same variant restricted to a Number, a String or an array of object
/// values; see ObjectValue below.
struct DynamicValue {
    /// The alternatives a dynamic value can hold; `std::monostate` is nothing.
    using Storage =
        std::variant<std::monostate, bool, int64_t, uint64_t, double, Number, std::string, StringArray,
                     DynamicArray, Date, PartialDate, PartialTime, Country, OtherValue>;
    /// The held alternative; the accessors below read it.
    Storage storage;

    DynamicValue() = default;
    /// A value of each alternative; a signed integer is held as `int64_t`, an unsigned one as
    /// `uint64_t`, a float as a double, text as `std::string`.
    ///@{
    DynamicValue(std::nullopt_t) {}
    DynamicValue(std::monostate) {}
    DynamicValue(bool b) : storage(b) {}
    template <std::integral I>
    requires(!std::same_as<I, bool> && !std::same_as<I, char>) DynamicValue(I i) {
        if constexpr (std::is_signed_v<I>)
            storage = static_cast<int64_t>(i);
        else
            storage = static_cast<uint64_t>(i);
    }
    DynamicValue(double d) : storage(d) {}
    DynamicValue(float f) : storage(static_cast<double>(f)) {}
    DynamicValue(Number n) : storage(n) {}
    DynamicValue(std::string s) : storage(std::move(s)) {}
    DynamicValue(const char* s) : storage(std::string(s)) {}
    DynamicValue(std::string_view s) : storage(std::string(s)) {}
    DynamicValue(StringArray a) : storage(std::move(a)) {}
    DynamicValue(DynamicArray a) : storage(std::move(a)) {}
    DynamicValue(Date d) : storage(d) {}
    DynamicValue(PartialDate d) : storage(d) {}
    DynamicValue(PartialTime t) : storage(t) {}
    DynamicValue(Country c) : storage(std::move(c)) {}
    DynamicValue(OtherValue o) : storage(std::move(o)) {}
    ///@}
    /// Nothing stays nothing.
    template <typename T> DynamicValue(const std::optional<T>& o) {
        if (o) *this = DynamicValue(*o);
    }

    /// True when the value holds nothing; a value converts to true when it holds something.
    ///@{
    bool isNothing() const { return std::holds_alternative<std::monostate>(storage); }
    explicit operator bool() const { return !isNothing(); }
    ///@}

    /// Whether the value holds a `T`, and a pointer to it (null otherwise).
    ///@{
    template <typename T> bool is() const { return std::holds_alternative<T>(storage); }
    template <typename T> const T* getIf() const { return std::get_if<T>(&storage); }
    template <typename T> T* getIf() { return std::get_if<T>(&storage); }
    ///@}

    /// A pointer to the held alternative of that type, or null when the value holds another one (no
    /// conversion: an `int64_t` is no double).
    ///@{
    const bool* boolValue() const { return getIf<bool>(); }
    const int64_t* intValue() const { return getIf<int64_t>(); }
    const uint64_t* uintValue() const { return getIf<uint64_t>(); }
    const double* doubleValue() const { return getIf<double>(); }
    const Number* numberValue() const { return getIf<Number>(); }
    const std::string* stringValue() const { return getIf<std::string>(); }
    const StringArray* stringArrayValue() const { return getIf<StringArray>(); }
    const DynamicArray* arrayValue() const { return getIf<DynamicArray>(); }
    const Date* dateValue() const { return getIf<Date>(); }
    const PartialDate* partialDateValue() const { return getIf<PartialDate>(); }
    const PartialTime* partialTimeValue() const { return getIf<PartialTime>(); }
    const Country* countryValue() const { return getIf<Country>(); }
    const OtherValue* otherValue() const { return getIf<OtherValue>(); }
    ///@}

    /// The printed text of the value; stable, and numbers print as numbers:
    /// nothing "", Bool "true"/"false", Int/UInt decimal digits, Double its
    /// shortest round-trip text ("5.0", "0.1", "1e+16", "1e-05", "inf", "nan"),
    /// Number its own description, String itself, arrays "[a, b]" (strings
    /// quoted), Date "2024-05-01 12:00:00 +0000", PartialDate "yyyy:MM:dd",
    /// PartialTime "HH:mm:ss", Country its alpha-2 code, other values their text.
    std::string description() const;

    /// Same alternative and equal value.
    friend bool operator==(const DynamicValue&, const DynamicValue&) = default;
};

/// The platform object form (number, string or array). It shares the dynamic
/// variant: an ObjectValue only ever holds a Number, a std::string or a
/// DynamicArray whose elements are object values again.
using ObjectValue = DynamicValue;

/// Bridges a dynamic value to the object form: Bool, Int, UInt and Double become
/// a Number, arrays of strings an array of strings, arrays are bridged element by
/// element; a Number or String is kept, and any other value is kept as it is.
ObjectValue objectValueFromDynamicValue(const DynamicValue& value);

/// The shortest round-trip decimal text of a double, with ".0" on whole numbers
/// below 2^53 and an exponent above it or below 1e-4: 5.0, 0.001, 1e+16, 1e-05.
std::string shortestDoubleText(double value);

/// JSON bridge (sidecars, ExifTool's JSON import). To JSON: nothing is null,
/// Bool and Boolean Numbers are true/false, integers and doubles are numbers
/// (non-finite doubles become null), strings and arrays map directly; Date,
/// PartialDate, PartialTime, Country and other values are written as their
/// description. From JSON: null is nothing, true/false and numbers become a
/// Number (as the platform's JSON reader gives them), strings a String,
/// arrays an array of dynamic values, objects an other value with their JSON text.
nlohmann::json toJson(const DynamicValue& value);
/// The inverse of `toJson`, as described above.
DynamicValue dynamicValueFromJson(const nlohmann::json& json);

} // namespace corvane
