#include "corvane/tag_value/detail/NumberText.hpp"

#include "corvane/helpers/WhiteSpace.hpp"

#include <string>

namespace corvane::detail {

bool holdsSeveralNumbers(const TagItem& item, std::string_view text) {
    if (!item.type().isNumber() || item.isInSequence()) return false;
    text = trimAsciiWhiteSpace(text);
    if (text.find(' ') == std::string_view::npos) return false;
    for (char c : text)
        if (!((c >= '0' && c <= '9') || c == ' ' || c == '.' || c == '-' || c == '+' || c == 'e' || c == 'E'))
            return false;
    return true;
}

bool convertsWholly(const TagItem& item, std::string_view text) {
    if (!item.type().isNumber()) return true;
    if (!item.isInSequence()) return !holdsSeveralNumbers(item, text);
    return wholeJSONValue(item, text).has_value();
}

std::optional<DynamicValue> wholeJSONValue(const TagItem& item, std::string_view text) {
    const bool numbers = item.type().isNumber();
    if (numbers && !item.isInSequence() && holdsSeveralNumbers(item, text)) return std::nullopt;
    DynamicValue read =
        item.converter()->jsonValueFromNativeValue(item.nativeValueFromStringValue(std::string(text)));
    if (numbers && item.isInSequence()) {
        std::size_t pieces = 0;
        bool inPiece = false;
        for (char c : text) {
            const bool separator = c == ' ' || c == '\t' || c == ',';
            if (!separator && !inPiece) ++pieces;
            inPiece = !separator;
        }
        const DynamicArray* elements = read.arrayValue();
        if (elements ? elements->size() != pieces : pieces > 1) return std::nullopt;
    }
    return read;
}

} // namespace corvane::detail
