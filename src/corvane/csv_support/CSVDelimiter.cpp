#include "corvane/csv_support/CSVDelimiter.hpp"

#include "corvane/csv_support/detail/Utf8.hpp"

namespace corvane {
namespace utf8 = detail::utf8;

std::string CSVDelimiter::rawString() const {
    return utf8::encode(raw_);
}

CSVDelimiter CSVDelimiter::guessed(std::string_view text) {
    // Trim white space and newlines from the front, but keep TAB: a table whose
    // first cell is empty starts with its delimiter. Trailing blanks cannot
    // change the first line unless it is the only one, and then only by
    // dropping blanks, which are no delimiters either (TAB excepted, kept).
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t next = i;
        const char32_t c = utf8::decode(text, next);
        if (c == U'\t' || !utf8::isWhitespace(c)) break;
        i = next;
    }
    bool inQuotes = false;
    while (i < text.size()) {
        const char c = text[i++];
        if (c == '\n' || c == '\r') break; // end of the first line
        if (c == '"') {
            inQuotes = !inQuotes;
        } else if (!inQuotes) {
            for (const CSVDelimiter& d : recognized())
                if (static_cast<char32_t>(static_cast<unsigned char>(c)) == d.rawValue()) return d;
        }
    }
    return comma();
}

} // namespace corvane
