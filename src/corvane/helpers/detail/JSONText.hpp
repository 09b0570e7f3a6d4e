#pragma once

// Scanning JSON text without parsing it: the checks that run before a parser (nesting depth,
// numbers no double holds) need to step over strings, whose content may hold any bracket, quote
// or digit.

#include <cstddef>
#include <string_view>

namespace corvane::detail {

// The index just past the string that opens with the quote at `at` (escapes stepped over), or the
// text's size when it never closes.
inline std::size_t endOfJSONString(std::string_view text, std::size_t at) {
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        if (text[i] == '\\')
            ++i;
        else if (text[i] == '"')
            return i + 1;
    }
    return text.size();
}

} // namespace corvane::detail
