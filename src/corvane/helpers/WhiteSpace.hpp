#pragma once

#include <unicode/unistr.h>

#include <string_view>

namespace corvane {

// Trimming and blank tests, one function per character set, so that a caller says which white space
// it means. The UTF-8 versions never split a character and stop at malformed bytes, which stay.

/// Unicode White_Space: blanks, tabs, line breaks (LF, VT, FF, CR, NEL, LS, PS), no-break and wide spaces.
std::string_view trimUnicodeWhiteSpace(std::string_view text);
/// The same for a C string and an ICU string.
///@{
inline std::string_view trimUnicodeWhiteSpace(const char* text) {
    return trimUnicodeWhiteSpace(std::string_view(text));
}
icu::UnicodeString trimUnicodeWhiteSpace(const icu::UnicodeString& text);
///@}
/// Nothing but Unicode White_Space, or empty. Malformed UTF-8 is not white space.
bool isUnicodeWhiteSpace(std::string_view text);

/// Unicode blanks, the horizontal spaces: tab and the space separators (U+0020, U+00A0, U+2000...,
/// U+3000), never a line break.
std::string_view trimUnicodeBlanks(std::string_view text);

/// ASCII white space: space, tab, LF, VT, FF and CR, as the C locale's isspace.
std::string_view trimAsciiWhiteSpace(std::string_view text);

/// ASCII blanks: space and tab.
std::string_view trimAsciiBlanks(std::string_view text);

} // namespace corvane
