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
    std::size_t pieces = 0;
    bool inPiece = false;
    for (char c : text) {
        const bool separator = c == ' ' || c == '\t' || c == ',';
        if (!separator && !inPiece) ++pieces;
        inPiece = !separator;
    }
    const DynamicValue read =
        item.converter()->jsonValueFromNativeValue(item.nativeValueFromStringValue(std::string(text)));
    const DynamicArray* elements = read.arrayValue();
    return elements ? elements->size() == pieces : pieces <= 1;
}

} // namespace corvane::detail
