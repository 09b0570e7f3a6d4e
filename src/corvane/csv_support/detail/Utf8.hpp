#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvane::detail::utf8 {

// Small UTF-8 primitives shared by the CSV reader and writer. They work on
// std::string bytes directly so that the hot loops never leave UTF-8.

// Length of the well-formed UTF-8 sequence starting at `i`, or 0 when the
// bytes there are not one (truncated, overlong, surrogate, beyond U+10FFFF).
std::size_t sequenceLength(std::string_view text, std::size_t i);

// Decodes the scalar at `i` and moves `i` past it. A malformed byte decodes
// as U+FFFD and is skipped alone, so the loop always advances.
char32_t decode(std::string_view text, std::size_t& i);

// Appends the UTF-8 form of `scalar` (U+FFFD for a surrogate or out-of-range value).
void append(std::string& out, char32_t scalar);
std::string encode(char32_t scalar);

// True when every byte of `text` belongs to a well-formed sequence.
bool isValid(std::string_view text);

// The Unicode White_Space property: the set a Character's isWhitespace and
// trimming "white space and newlines" both rely on.
bool isWhitespace(char32_t scalar);

} // namespace corvane::detail::utf8
