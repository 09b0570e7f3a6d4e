#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::detail::converter_text {

// Parses the whole of `text` as a double by the rules of strtod in the C locale:
// sign, digits, fraction, exponent, "inf", "infinity", "nan", hexadecimal
// floats. Leading white space or anything left over makes it fail.
std::optional<double> parseCDouble(std::string_view text);

// Reads an integer like NSString.integerValue: optional leading white space,
// an optional sign and the digits up to the first other character. No digits
// give 0; overflow saturates at the Int bounds.
int64_t leadingIntegerValue(std::string_view text);

// The integer of a double through its shortest round-trip text (see
// shortestDoubleText): 3.7 gives 3, 1e16 gives 1, infinity gives 0.
int64_t integerFromDoubleText(double value);

// "%.8f" in the C locale, whatever the process's locale: 1.5 is "1.50000000".
std::string formatEightDecimals(double value);

// Splits on every occurrence of `separator`, keeping empty pieces. An empty
// separator gives the whole text as one piece.
std::vector<std::string> split(std::string_view text, std::string_view separator);

// The elements of a list text joined by `separator`, as `split` gives them, except that an element
// may be quoted so that it can hold the separator: an element that begins (past blanks and tabs
// that aren't part of the separator) with a double quote runs to the closing quote, "" standing for
// one quote inside; the quotes are dropped and blanks after the closing quote are ignored. A quote
// that isn't closed before the next separator, or that is followed by other text, is taken as it
// stands.
std::vector<std::string> splitListElements(std::string_view text, std::string_view separator);

// One element as it is written in a list text: quoted as `splitListElements` reads it when it holds
// the separator or begins with a double quote, else as it stands.
std::string listElementText(std::string_view element, std::string_view separator);

} // namespace corvane::detail::converter_text
