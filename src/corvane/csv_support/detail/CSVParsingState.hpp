#pragma once

#include "corvane/csv_support/CSVDelimiter.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane::detail {

// The character-level state machine of the CSV reader.
//
// A character is one Unicode scalar, except that CR followed by LF is one
// character. A newline is "\n", "\r\n" or "\r". Leading white space of a field
// is dropped, a quotation mark inside an unquoted field must be doubled, and
// white space after a closing quote is ignored.
class CSVParsingState {
public:
    using Row = std::vector<std::string>;
    using RowCallback = std::function<void(Row&& fields)>;
    using DictCallback = std::function<void(std::unordered_map<std::string, std::string>&& row)>;

    explicit CSVParsingState(char32_t delimiter = U',') : delimiter(delimiter) {}

    bool atFieldStart = true;
    bool inPlainField = false;
    bool inQuotedField = false;
    bool afterQuote = false;
    char32_t delimiter;

    std::function<void()> endRow;
    std::function<void(std::string_view character)> appendCharacter;
    std::function<void()> endField;

    // Feeds one character (its UTF-8 bytes: one scalar, or "\r\n") through the
    // machine and calls the callbacks it triggers. Throws CSVParseError.
    void change(std::string_view character);

    // All rows of `text` from row `startAt`, at most `rowLimit` of them.
    static std::vector<Row> array(std::string_view text, char32_t delimiter, std::size_t startAt = 0,
                                  std::optional<std::size_t> rowLimit = std::nullopt);

    // Calls `rowCallback` with each row of `text` from row `startAt`, at most
    // `rowLimit` rows. Rows delivered before a parse failure stay delivered.
    static void enumArray(std::string_view text, char32_t delimiter, std::size_t startAt,
                          std::optional<std::size_t> rowLimit, const RowCallback& rowCallback);

    // Like enumArray, but delivers each row as a dictionary keyed by `header`.
    static void enumDict(const std::vector<std::string>& header, std::string_view content, char32_t delimiter,
                         std::optional<std::size_t> rowLimit, const DictCallback& block,
                         std::size_t startAt = 0);

    // One row keyed by header names: missing fields are empty, extra fields are
    // dropped, and a repeated name keeps the later value.
    static std::unordered_map<std::string, std::string> dictionary(const std::vector<std::string>& header,
                                                                   Row&& fields);
};

} // namespace corvane::detail
