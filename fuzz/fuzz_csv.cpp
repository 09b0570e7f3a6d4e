// CSV tables in every encoding and with every delimiter, into both views, with and without
// columns and header.

#include "FuzzInput.hpp"

#include "corvane/csv_support/CSVParseError.hpp"
#include "corvane/csv_support/CSVReader.hpp"
#include "corvane/csv_support/TextEncoding.hpp"

#include <optional>

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const TextEncoding encodings[] = {TextEncoding::utf8(),
                                             TextEncoding::isoLatin1(),
                                             TextEncoding::windowsCP1252(),
                                             TextEncoding::macOSRoman(),
                                             TextEncoding::utf16(),
                                             TextEncoding::utf16BigEndian(),
                                             TextEncoding::utf16LittleEndian(),
                                             TextEncoding::utf32LittleEndian(),
                                             TextEncoding::ascii()};
    static const std::optional<CSVDelimiter> delimiters[] = {std::nullopt, CSVDelimiter::comma(),
                                                             CSVDelimiter::semicolon(), CSVDelimiter::tab(),
                                                             CSVDelimiter::character(U'|')};
    const auto [selector, bytes] = fuzz::selectorAndRest(fuzz::text(data, size));
    const TextEncoding& encoding =
        (selector & 0x80) ? TextEncoding::detect(bytes) : encodings[(selector & 0x0f) % std::size(encodings)];
    const auto& delimiter = delimiters[((selector >> 4) & 0x07) % std::size(delimiters)];
    const bool loadColumns = selector & 0x01;
    const bool hasHeader = selector & 0x02;
    const auto decoded = encoding.decode(bytes);
    if (!decoded) return 0;
    try {
        (void)CSVReader<NamedCSVView>::fromString(*decoded, delimiter, loadColumns, hasHeader);
    } catch (const CSVParseError&) {
    }
    try {
        (void)CSVReader<EnumeratedCSVView>::fromString(*decoded, delimiter, loadColumns, hasHeader, 50);
    } catch (const CSVParseError&) {
    }
    return 0;
}
