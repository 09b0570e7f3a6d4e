#include "corvane/tag_editor/detail/PrettyText.hpp"

#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/tag_value/detail/NumberText.hpp"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <string_view>
#include <vector>

namespace corvane::detail {

namespace {

std::optional<double> numberIn(std::string_view text) {
    text = trimUnicodeBlanks(text);
    if (text.empty()) return std::nullopt;
    if (text.front() == '+') text.remove_prefix(1);
    double number = 0;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (ec != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) return std::nullopt;
    return number;
}

// The title of the choice whose value is `text`, compared as text, then as a number ("9" and
// "9.0" are one value).
const std::string* choiceTitle(const TagItem& item, std::string_view text) {
    // Some choices are padded codes ("IEC ", "ADI "): as they stand first, then trimmed.
    for (const auto& choice : item.choices())
        if (choice.value == text) return &choice.title;
    text = trimUnicodeBlanks(text);
    for (const auto& choice : item.choices())
        if (trimUnicodeBlanks(choice.value) == text) return &choice.title;
    const auto number = numberIn(text);
    if (!number) return nullptr;
    for (const auto& choice : item.choices())
        if (const auto value = numberIn(choice.value); value && *value == *number) return &choice.title;
    return nullptr;
}

std::vector<std::string_view> split(std::string_view text, std::string_view separator) {
    std::vector<std::string_view> pieces;
    for (std::size_t from = 0;;) {
        const auto at = text.find(separator, from);
        pieces.push_back(
            text.substr(from, at == std::string_view::npos ? std::string_view::npos : at - from));
        if (at == std::string_view::npos) break;
        from = at + separator.size();
    }
    return pieces;
}

// Each element's title, joined by ", "; nothing unless every element has one.
std::optional<std::string> titlesOfElements(const TagItem& item, const std::string& value) {
    const std::string separator = item.isList() ? "," : item.valueSeparator();
    const auto pieces = split(value, separator.empty() ? " " : std::string_view(separator).substr(0, 1));
    if (pieces.size() < 2) return std::nullopt;
    std::string joined;
    for (const auto piece : pieces) {
        const std::string* title = choiceTitle(item, piece);
        if (!title) return std::nullopt;
        if (!joined.empty()) joined += ", ";
        joined += *title;
    }
    return joined;
}

bool isExposureTime(const TagItem& item) {
    const std::string_view key = item.key().rawValue();
    return key.ends_with("ExposureTime") || key == "ShutterSpeedValue" || key == "ShutterSpeed";
}

// Below a quarter of a second, the reciprocal rounded ("1/160"); above, one decimal at most.
std::string exposureTimeText(double seconds) {
    char buffer[32];
    if (seconds > 0 && seconds < 0.25001) {
        std::snprintf(buffer, sizeof buffer, "1/%d", static_cast<int>(0.5 + 1 / seconds));
        return buffer;
    }
    std::snprintf(buffer, sizeof buffer, "%.1f", seconds);
    std::string text = buffer;
    if (text.ends_with(".0")) text.resize(text.size() - 2);
    return text;
}

// "2.80000000 -1.50000000" → "2.8 -1.5": trailing zeros of each decimal number dropped.
std::string withoutTrailingZeros(const std::string& text) {
    std::string result;
    result.reserve(text.size());
    std::size_t i = 0;
    while (i < text.size()) {
        std::size_t end = i;
        while (end < text.size() && text[end] != ' ' && text[end] != ',')
            ++end;
        std::string token = text.substr(i, end - i);
        if (token.find('.') != std::string::npos && numberIn(token) &&
            token.find_first_of("eE") == std::string::npos) {
            while (token.ends_with('0'))
                token.pop_back();
            if (token.ends_with('.')) token.pop_back();
        }
        result += token;
        if (end < text.size()) result += text[end];
        i = end + 1;
    }
    return result;
}

} // namespace

std::optional<std::string> prettyText(const TagItem& item, const std::optional<std::string>& value) {
    if (!value) return std::nullopt;
    if (!item.choices().empty()) {
        if (const std::string* title = choiceTitle(item, *value)) return *title;
        if (auto titles = titlesOfElements(item, *value)) return titles;
    }
    // Numbers the converter would misread ("100 0" in a single-number tag) are shown as they stand.
    if (!convertsWholly(item, *value)) return value;
    if (isExposureTime(item) && item.type().isNumber())
        if (const auto seconds = numberIn(*value)) return exposureTimeText(*seconds);
    auto formatted = item.converter()->formattedValueFromStringValue(value);
    if (!formatted) return value;
    if (item.type().isFloat()) return withoutTrailingZeros(*formatted);
    return formatted;
}

} // namespace corvane::detail
