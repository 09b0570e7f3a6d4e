#include "corvane/helpers/WhiteSpace.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace corvane {

namespace {

// The text without the code points of `inSet` at either end.
template <class InSet> std::string_view trimUtf8(std::string_view text, InSet inSet) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    int32_t begin = 0;
    int32_t end = static_cast<int32_t>(text.size());
    while (begin < end) {
        int32_t next = begin;
        UChar32 c;
        U8_NEXT(bytes, next, end, c);
        if (c < 0 || !inSet(c)) break;
        begin = next;
    }
    while (end > begin) {
        int32_t previous = end;
        UChar32 c;
        U8_PREV(bytes, begin, previous, c);
        if (c < 0 || !inSet(c)) break;
        end = previous;
    }
    return text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

std::string_view trimAscii(std::string_view text, std::string_view set) {
    const auto begin = text.find_first_not_of(set);
    if (begin == std::string_view::npos) return {};
    return text.substr(begin, text.find_last_not_of(set) - begin + 1);
}

bool isWhiteSpace(UChar32 c) {
    return u_isUWhiteSpace(c);
}

bool isBlank(UChar32 c) {
    return u_isblank(c);
}

} // namespace

std::string_view trimUnicodeWhiteSpace(std::string_view text) {
    return trimUtf8(text, isWhiteSpace);
}

icu::UnicodeString trimUnicodeWhiteSpace(const icu::UnicodeString& text) {
    int32_t start = 0, end = text.length();
    while (start < end && u_isUWhiteSpace(text.char32At(start)))
        start = text.moveIndex32(start, 1);
    while (end > start) {
        const int32_t previous = text.moveIndex32(end, -1);
        if (!u_isUWhiteSpace(text.char32At(previous))) break;
        end = previous;
    }
    return icu::UnicodeString(text, start, end - start);
}

bool isUnicodeWhiteSpace(std::string_view text) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    for (int32_t offset = 0; offset < length;) {
        UChar32 c;
        U8_NEXT(bytes, offset, length, c);
        if (c < 0 || !u_isUWhiteSpace(c)) return false;
    }
    return true;
}

std::string_view trimUnicodeBlanks(std::string_view text) {
    return trimUtf8(text, isBlank);
}

std::string_view trimAsciiWhiteSpace(std::string_view text) {
    return trimAscii(text, " \t\n\v\f\r");
}

std::string_view trimAsciiBlanks(std::string_view text) {
    return trimAscii(text, " \t");
}

} // namespace corvane
