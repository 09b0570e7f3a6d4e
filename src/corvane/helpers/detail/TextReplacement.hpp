#pragma once

#include <string>
#include <string_view>

namespace corvane::detail {

// Replaces every occurrence of a text inside another, with the comparison options that a user
// picks in a search-and-replace field.
//
// Without options the comparison is exact up to canonical equivalence ("é" precomposed equals
// "e" with a combining accent). The insensitive options fold both texts scalar by scalar before
// comparing: case folding (so "strasse" finds "Straße"), marks dropped after canonical
// decomposition (so "cafe" finds "café"), and full-width and half-width forms taken as their
// plain ones (so "ＡＢＣ" finds "ABC"). A hit always covers whole scalars and never ends in front
// of a combining mark that belongs to its last letter. Occurrences are replaced left to right,
// without overlap.
//
// With `regularExpression` the target is an ICU pattern (case-insensitive with that option; the
// diacritic and width options don't apply) and the replacement a template where "$1" names a
// capture group and a backslash escapes the next character. A pattern that doesn't compile
// replaces nothing.
class TextReplacement {
public:
    // The bits of the comparison options.
    enum Option : unsigned {
        caseInsensitive = 1,
        diacriticInsensitive = 128,
        widthInsensitive = 256,
        regularExpression = 1024,
    };
    using Options = unsigned;

    // An empty target replaces nothing.
    static std::string replacingOccurrences(std::string_view text, std::string_view target,
                                            std::string_view replacement, Options options = 0);
};

} // namespace corvane::detail
