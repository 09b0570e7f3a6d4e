#pragma once

#include "corvane/sidecar_support/SidecarReader.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <string_view>

namespace corvane {

/// Reads a CSV sidecar: one tag per row, the tag name ("EXIF:Make") then its value, no header. The
/// delimiter is guessed from the first line, so comma, semicolon and tab files all read. Rows of
/// another width, rows whose first field isn't a catalogue tag, and values the tag's converter
/// refuses are skipped; a later row of a tag replaces an earlier one.
class CSVSidecarReader : public SidecarReader {
public:
    /// Why a sidecar can't be read; `message` gives the text.
    enum class ReadError { dataDecodingFailed };

    /// Thrown by the reader; `what()` is the message of the case.
    using ReadException = CaseException<ReadError>;

    /// ReadException(dataDecodingFailed) when the bytes aren't UTF-8; a leading byte-order mark is
    /// dropped. Then as `readString`.
    Values readData(std::string_view data) const override;
    /// Throws CSVParseError for text the CSV parser refuses (an unterminated quote, for instance).
    Values readString(std::string_view string) const override;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(CSVSidecarReader::ReadError error);

} // namespace corvane
