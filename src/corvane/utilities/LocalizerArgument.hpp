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
    using Value = std::variant<std::string, long long, double>;

    LocalizerArgument(std::string text) : value_(std::move(text)) {}
    LocalizerArgument(std::string_view text) : value_(std::string(text)) {}
    LocalizerArgument(const char* text) : value_(std::string(text ? text : "")) {}
    template <std::integral T>
    requires(!std::same_as<T, bool> && !std::same_as<T, char>) LocalizerArgument(T number)
        : value_(static_cast<long long>(number)) {}
    template <std::floating_point T> LocalizerArgument(T number) : value_(static_cast<double>(number)) {}

    const Value& value() const { return value_; }
    /// The integer value, if the argument is a whole number.
    bool isInteger() const { return std::holds_alternative<long long>(value_); }
    long long integer() const;
    double number() const;
    std::string text() const;

private:
    Value value_;
};

} // namespace corvane
