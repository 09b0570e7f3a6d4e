#include "corvane/sidecar_support/CSVSidecarReader.hpp"

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/csv_support/CSVDelimiter.hpp"
#include "corvane/csv_support/EnumeratedCSVView.hpp"
#include "corvane/csv_support/detail/Utf8.hpp"
#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/tag_value/TagPair.hpp"

namespace corvane {
namespace utf8 = detail::utf8;

std::string_view message(CSVSidecarReader::ReadError error) {
    switch (error) {
    case CSVSidecarReader::ReadError::dataDecodingFailed:
        return "Data decoding failed";
    }
    return "Data decoding failed";
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
        // Blanks and CR/LF around a name or a value never reach the tag.
        auto name = TagName::fromRawValue(trimUnicodeWhiteSpace(row[0]));
        if (!name) continue;
        auto pair = TagPair::fromName(*name, DynamicValue(std::string(trimUnicodeWhiteSpace(row[1]))));
        if (!pair) continue;
        result.insert_or_assign(pair->name(), pair->value());
    }
    return result;
}

} // namespace corvane
