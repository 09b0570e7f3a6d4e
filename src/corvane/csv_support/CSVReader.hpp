#pragma once

#include "corvane/csv_support/CSVDelimiter.hpp"
#include "corvane/csv_support/EnumeratedCSVView.hpp"
#include "corvane/csv_support/NamedCSVView.hpp"
#include "corvane/csv_support/TextEncoding.hpp"

#include <concepts>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>

namespace corvane {

/// What CSVReader needs of a view of the parsed table.
template <class V>
concept CSVView = requires(const V& v, std::string_view text, const CSVDelimiter& d, bool b,
                           std::optional<std::size_t> limit) {
    typename V::Row;
    typename V::Columns;
    V(text, d, b, b, limit);
    v.rows();
    v.header();
    v.columns();
};

/// Reads a CSV text into a view: NamedCSVView (rows by column name) or
/// EnumeratedCSVView (rows as lists).
template <CSVView View> class CSVReader {
public:
    /// Without a delimiter, CSVDelimiter::guessed of the text is used. Throws CSVParseError.
    static CSVReader fromString(std::string string, std::optional<CSVDelimiter> delimiter = std::nullopt,
                                bool loadColumns = false, bool hasHeader = true,
                                std::optional<std::size_t> rowLimit = std::nullopt);

    /// Reads the file in `encoding` and drops a leading byte-order mark. Throws
    /// FileError when the file cannot be read or is not
    /// text in that encoding, and CSVParseError.
    static CSVReader fromFile(const std::filesystem::path& url,
                              std::optional<CSVDelimiter> delimiter = std::nullopt,
                              const TextEncoding& encoding = TextEncoding::utf8(), bool loadColumns = false,
                              bool hasHeader = true);

    /// The text read; its separator; the table it holds.
    ///@{
    const std::string& text() const { return text_; }
    const CSVDelimiter& delimiter() const { return delimiter_; }
    const View& content() const { return content_; }
    ///@}

private:
    CSVReader(std::string text, std::optional<CSVDelimiter> delimiter, bool loadColumns, bool hasHeader,
              std::optional<std::size_t> rowLimit);

    std::string text_;
    CSVDelimiter delimiter_;
    View content_;
};

extern template class CSVReader<NamedCSVView>;
extern template class CSVReader<EnumeratedCSVView>;

} // namespace corvane
