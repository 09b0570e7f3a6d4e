#include "corvane/csv_support/detail/Utf8.hpp"

#include <cstdint>
#include <cstring>

namespace corvane::detail::utf8 {

std::size_t sequenceLength(std::string_view text, std::size_t i) {
    const std::size_t n = text.size();
    const auto b0 = static_cast<unsigned char>(text[i]);
    if (b0 < 0x80) return 1;
    auto cont = [&](std::size_t k) {
        return i + k < n && (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
    };
    if (b0 >= 0xC2 && b0 <= 0xDF) return cont(1) ? 2 : 0;
    if (b0 >= 0xE0 && b0 <= 0xEF) {
        if (!cont(1) || !cont(2)) return 0;
        const auto b1 = static_cast<unsigned char>(text[i + 1]);
        if (b0 == 0xE0 && b1 < 0xA0) return 0;  // overlong
        if (b0 == 0xED && b1 >= 0xA0) return 0; // surrogate
        return 3;
    }
    if (b0 >= 0xF0 && b0 <= 0xF4) {
        if (!cont(1) || !cont(2) || !cont(3)) return 0;
        const auto b1 = static_cast<unsigned char>(text[i + 1]);
        if (b0 == 0xF0 && b1 < 0x90) return 0;  // overlong
        if (b0 == 0xF4 && b1 >= 0x90) return 0; // beyond U+10FFFF
        return 4;
    }
    return 0;
}

char32_t decode(std::string_view text, std::size_t& i) {
    const std::size_t len = sequenceLength(text, i);
    const auto* p = reinterpret_cast<const unsigned char*>(text.data() + i);
    switch (len) {
    case 1:
        i += 1;
        return p[0];
    case 2:
        i += 2;
        return (char32_t(p[0] & 0x1F) << 6) | (p[1] & 0x3F);
    case 3:
        i += 3;
        return (char32_t(p[0] & 0x0F) << 12) | (char32_t(p[1] & 0x3F) << 6) | (p[2] & 0x3F);
    case 4:
        i += 4;
        return (char32_t(p[0] & 0x07) << 18) | (char32_t(p[1] & 0x3F) << 12) | (char32_t(p[2] & 0x3F) << 6) |
               (p[3] & 0x3F);
    default:
        i += 1;
        return 0xFFFD;
    }
}

void append(std::string& out, char32_t c) {
    if ((c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) c = 0xFFFD;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

std::string encode(char32_t scalar) {
    std::string out;
    append(out, scalar);
    return out;
}

bool isValid(std::string_view text) {
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n) {
        // Skip ASCII eight bytes at a time: most CSV text is plain ASCII.
        while (i + 8 <= n) {
            std::uint64_t word;
            std::memcpy(&word, text.data() + i, 8);
            if (word & 0x8080808080808080ULL) break;
            i += 8;
        }
        if (i >= n) break;
        const std::size_t len = sequenceLength(text, i);
        if (len == 0) return false;
        i += len;
    }
    return true;
}

bool isWhitespace(char32_t c) {
    if (c <= 0x20) return c == 0x20 || (c >= 0x09 && c <= 0x0D);
    if (c < 0x85) return false;
    return c == 0x85 || c == 0xA0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 ||
           c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

} // namespace corvane::detail::utf8
