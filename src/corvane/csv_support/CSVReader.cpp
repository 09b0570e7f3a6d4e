#include "corvane/csv_support/CSVReader.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/FileError.hpp"

namespace corvane {

template <CSVView View>
CSVReader<View>::CSVReader(std::string text, std::optional<CSVDelimiter> delimiter, bool loadColumns,
                           bool hasHeader, std::optional<std::size_t> rowLimit)
    : text_(std::move(text)), delimiter_(delimiter.value_or(CSVDelimiter::guessed(text_))),
      content_(text_, delimiter_, loadColumns, hasHeader, rowLimit) {}

template <CSVView View>
CSVReader<View> CSVReader<View>::fromString(std::string string, std::optional<CSVDelimiter> delimiter,
                                            bool loadColumns, bool hasHeader,
                                            std::optional<std::size_t> rowLimit) {
    return CSVReader(std::move(string), delimiter, loadColumns, hasHeader, rowLimit);
}

template <CSVView View>
CSVReader<View> CSVReader<View>::fromFile(const std::filesystem::path& url,
                                          std::optional<CSVDelimiter> delimiter, const TextEncoding& encoding,
                                          bool loadColumns, bool hasHeader) {
    std::optional<std::string> text = encoding.decode(readFileBytes(url));
    if (!text)
        throw FileError(url, "file is not text in " + encoding.name(),
                        std::make_error_code(std::errc::illegal_byte_sequence));
    static constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // U+FEFF in UTF-8
    if (text->starts_with(byteOrderMark)) text->erase(0, byteOrderMark.size());
    return CSVReader(std::move(*text), delimiter, loadColumns, hasHeader, std::nullopt);
}

template class CSVReader<NamedCSVView>;
template class CSVReader<EnumeratedCSVView>;

} // namespace corvane
