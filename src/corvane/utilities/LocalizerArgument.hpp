#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <variant>

namespace corvane {

/// One formatting argument of a localised text: a text, an integer or a
/// floating-point number.
class LocalizerArgument {
public:
    /// A text, a whole number or a floating-point number.
    using Value = std::variant<std::string, long long, double>;

    /// A text argument.
    ///@{
    LocalizerArgument(std::string text) : value_(std::move(text)) {}
    LocalizerArgument(std::string_view text) : value_(std::string(text)) {}
    LocalizerArgument(const char* text) : value_(std::string(text ? text : "")) {}
    ///@}
    /// A whole-number argument (any integer type but bool and char).
    template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>) LocalizerArgument(T number)
        : value_(static_cast<long long>(number)) {}
    /// A floating-point argument.
    template <std::floating_point T> LocalizerArgument(T number) : value_(static_cast<double>(number)) {}

    /// The value as given.
    const Value& value() const { return value_; }
    /// The integer value, if the argument is a whole number.
    bool isInteger() const { return std::holds_alternative<long long>(value_); }
    /// The value as a whole number (a double truncated, a text read as decimal digits, 0 when it
    /// isn't); as a double; as text (a double printed "%g").
    ///@{
    long long integer() const;
    double number() const;
    std::string text() const;
    ///@}

private:
    Value value_;
};

} // namespace corvane
