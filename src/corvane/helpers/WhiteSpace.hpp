#pragma once

#include <string_view>

namespace corvane {

// White space as Unicode defines it (blanks, tabs, line breaks, no-break and other wide spaces).
struct WhiteSpace {
    // Nothing but white space, or empty. Malformed UTF-8 is not blank.
    static bool isBlank(std::string_view text);
    // The text without white space at either end.
    static std::string_view trimmed(std::string_view text);
};

} // namespace corvane
