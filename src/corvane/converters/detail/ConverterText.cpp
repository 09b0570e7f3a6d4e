#include "corvane/converters/detail/ConverterText.hpp"

#include "corvane/converters/DynamicValue.hpp"

#include <cctype>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <locale.h>

namespace corvane::detail::converter_text {

namespace {

// The C locale object, made once: strtod_l and snprintf through uselocale
// must not follow the process's locale (a decimal comma would break parsing).
locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return locale;
}

bool isCSpace(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

} // namespace

std::optional<double> parseCDouble(std::string_view text) {
    if (text.empty() || isCSpace(text.front())) return std::nullopt;
    std::string buffer(text); // NUL-terminated copy for strtod
    char* end = nullptr;
    double value = strtod_l(buffer.c_str(), &end, cLocale());
    if (end != buffer.c_str() + buffer.size() || end == buffer.c_str()) return std::nullopt;
    return value;
}

int64_t leadingIntegerValue(std::string_view text) {
    size_t i = 0;
    while (i < text.size() && isCSpace(text[i]))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    constexpr uint64_t limitPositive = static_cast<uint64_t>(std::numeric_limits<int64_t>::max());
    const uint64_t limit = negative ? limitPositive + 1 : limitPositive;
    uint64_t magnitude = 0;
    bool overflow = false;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        uint64_t digit = static_cast<uint64_t>(text[i] - '0');
        if (overflow || magnitude > (limit - digit) / 10) {
            overflow = true;
            continue;
        }
        magnitude = magnitude * 10 + digit;
    }
    if (overflow) return negative ? std::numeric_limits<int64_t>::min() : std::numeric_limits<int64_t>::max();
    if (negative)
        return magnitude == limitPositive + 1 ? std::numeric_limits<int64_t>::min()
                                              : -static_cast<int64_t>(magnitude);
    return static_cast<int64_t>(magnitude);
}

int64_t integerFromDoubleText(double value) {
    return leadingIntegerValue(shortestDoubleText(value));
}

std::string formatEightDecimals(double value) {
    // uselocale switches only this thread, so other threads keep their locale.
    locale_t previous = uselocale(cLocale());
    char stackBuffer[64];
    int needed = std::snprintf(stackBuffer, sizeof stackBuffer, "%.8f", value);
    std::string out;
    if (needed >= 0 && static_cast<size_t>(needed) < sizeof stackBuffer) {
        out.assign(stackBuffer, static_cast<size_t>(needed));
    } else if (needed > 0) {
        out.resize(static_cast<size_t>(needed) + 1);
        std::snprintf(out.data(), out.size(), "%.8f", value);
        out.resize(static_cast<size_t>(needed));
    }
    uselocale(previous);
    return out;
}

std::vector<std::string> split(std::string_view text, std::string_view separator) {
    std::vector<std::string> pieces;
    if (separator.empty()) {
        pieces.emplace_back(text);
        return pieces;
    }
    size_t start = 0;
    while (true) {
        size_t found = text.find(separator, start);
        if (found == std::string_view::npos) {
            pieces.emplace_back(text.substr(start));
            return pieces;
        }
        pieces.emplace_back(text.substr(start, found - start));
        start = found + separator.size();
    }
}

namespace {

// A quoted element at `at`: its content, and where the text goes on after it (at a separator or
// the end); nothing when the text there isn't one whole quoted element.
std::optional<std::pair<std::string, std::size_t>> quotedElement(std::string_view text, std::size_t at,
                                                                 std::string_view separator) {
    auto isPadding = [&](char c) {
        return (c == ' ' || c == '\t') && separator.find(c) == std::string_view::npos;
    };
    while (at < text.size() && isPadding(text[at]))
        ++at;
    if (at >= text.size() || text[at] != '"') return std::nullopt;
    std::string content;
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        if (text[i] != '"') {
            content += text[i];
            continue;
        }
        if (i + 1 < text.size() && text[i + 1] == '"') {
            content += '"';
            ++i;
            continue;
        }
        std::size_t end = i + 1;
        while (end < text.size() && isPadding(text[end]))
            ++end;
        if (end == text.size() || text.substr(end, separator.size()) == separator)
            return std::pair(std::move(content), end);
        return std::nullopt;
    }
    return std::nullopt;
}

} // namespace

std::vector<std::string> splitListElements(std::string_view text, std::string_view separator) {
    if (separator.empty() || text.find('"') == std::string_view::npos) return split(text, separator);
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (true) {
        if (auto quoted = quotedElement(text, start, separator)) {
            pieces.push_back(std::move(quoted->first));
            if (quoted->second == text.size()) return pieces;
            start = quoted->second + separator.size();
            continue;
        }
        const std::size_t found = text.find(separator, start);
        if (found == std::string_view::npos) {
            pieces.emplace_back(text.substr(start));
            return pieces;
        }
        pieces.emplace_back(text.substr(start, found - start));
        start = found + separator.size();
    }
}

std::string listElementText(std::string_view element, std::string_view separator) {
    const bool needsQuotes =
        (!separator.empty() && element.find(separator) != std::string_view::npos) || element.starts_with('"');
    if (!needsQuotes) return std::string(element);
    std::string quoted = "\"";
    for (const char c : element) {
        if (c == '"') quoted += '"';
        quoted += c;
    }
    return quoted + '"';
}

} // namespace corvane::detail::converter_text
