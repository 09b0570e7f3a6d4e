#include "corvane/helpers/WhiteSpace.hpp"

#include <unicode/uchar.h>
#include <unicode/utf8.h>

#include <cstdint>

namespace corvane {

bool WhiteSpace::isBlank(std::string_view text) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    for (int32_t offset = 0; offset < length;) {
        UChar32 c;
        U8_NEXT(bytes, offset, length, c);
        if (c < 0 || !u_isUWhiteSpace(c)) return false;
    }
    return true;
}

std::string_view WhiteSpace::trimmed(std::string_view text) {
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    int32_t begin = 0;
    int32_t end = static_cast<int32_t>(text.size());
    while (begin < end) {
        int32_t next = begin;
        UChar32 c;
        U8_NEXT(bytes, next, end, c);
        if (c < 0 || !u_isUWhiteSpace(c)) break;
        begin = next;
    }
    while (end > begin) {
        int32_t previous = end;
        UChar32 c;
        U8_PREV(bytes, begin, previous, c);
        if (c < 0 || !u_isUWhiteSpace(c)) break;
        end = previous;
    }
    return text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
}

} // namespace corvane
