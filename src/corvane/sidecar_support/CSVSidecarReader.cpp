#include "corvane/sidecar_support/CSVSidecarReader.hpp"

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/csv_support/CSVDelimiter.hpp"
#include "corvane/csv_support/EnumeratedCSVView.hpp"
#include "corvane/csv_support/Utf8.hpp"
#include "corvane/tag_value/TagPair.hpp"

namespace corvane {

std::string_view message(CSVSidecarReader::ReadError error) {
    switch (error) {
    case CSVSidecarReader::ReadError::dataDecodingFailed:
        return "Data decoding failed";
    }
    return "Data decoding failed";
}

bool CSVSidecarReader::trimCharSet(char32_t scalar) {
    // The White_Space property holds the blanks and also LF, CR, VT, FF, NEL, LS and PS.
    return utf8::isWhitespace(scalar);
}

std::string_view CSVSidecarReader::trimmed(std::string_view text) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        std::size_t next = begin;
        if (!trimCharSet(utf8::decode(text, next))) break;
        begin = next;
    }
    std::size_t end = text.size();
    while (end > begin) {
        // Step back to the first byte of the last scalar.
        std::size_t start = end - 1;
        while (start > begin && (static_cast<unsigned char>(text[start]) & 0xC0) == 0x80)
            --start;
        std::size_t next = start;
        char32_t scalar = utf8::decode(text, next);
        if (next != end || !trimCharSet(scalar)) break;
        end = start;
    }
    return text.substr(begin, end - begin);
}

SidecarReader::Values CSVSidecarReader::readData(std::string_view data) const {
    if (!utf8::isValid(data)) throw ReadException(ReadError::dataDecodingFailed);
    if (data.starts_with("\xEF\xBB\xBF")) data.remove_prefix(3);
    return readString(data);
}

SidecarReader::Values CSVSidecarReader::readString(std::string_view string) const {
    auto delimiter = CSVDelimiter::guessed(string);
    EnumeratedCSVView view(string, delimiter, /*loadColumns*/ false, /*hasHeader*/ false, std::nullopt);

    Values result;
    result.reserve(view.rows().size());
    for (const auto& row : view.rows()) {
        if (row.size() != 2) continue;
        auto name = TagName::fromRawValue(trimmed(row[0]));
        if (!name) continue;
        auto pair = TagPair::fromName(*name, DynamicValue(std::string(trimmed(row[1]))));
        if (!pair) continue;
        result.insert_or_assign(pair->name(), pair->value());
    }
    return result;
}

} // namespace corvane
