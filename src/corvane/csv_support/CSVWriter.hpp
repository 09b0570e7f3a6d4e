#pragma once

#include "corvane/csv_support/CSVWriteError.hpp"
#include "corvane/csv_support/OutputStream.hpp"
#include "corvane/csv_support/TextEncoding.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Writes rows of strings as CSV to an output stream, one Unicode scalar at a
/// time, in UTF-8, an 8-bit charset, UTF-16 or UTF-32. The newline goes in front
/// of every row but the first, so the output has no line end after its last
/// row. No byte-order mark is written. All writes throw CSVWriteException.
class CSVWriter {
public:
    /// Byte order of UTF-16 and UTF-32 output (`unknown` writes little-endian).
    enum class WriteEndian { big, little, unknown };
    /// Line end written between rows: "\n" or "\r\n".
    enum class WriteNewline { lf, crlf };
    /// Codecs with code units wider than a byte.
    enum class WideCodec { utf16, utf32 };

    /// The field separator unless another is given.
    static constexpr std::string_view defaultDelimiter = ",";
    /// The characters that make a field quoted, and the quoting texts.
    ///@{
    static constexpr char32_t CSV_CR = U'\r';
    static constexpr char32_t CSV_LF = U'\n';
    static constexpr char32_t CSV_DQUOTE = U'"';
    static constexpr std::string_view CSV_DQUOTE_STR = "\"";
    static constexpr std::string_view CSV_DQUOTE2_STR = "\"\"";
    ///@}

    /// UTF-8. Opens the stream if it is not open yet.
    explicit CSVWriter(std::shared_ptr<OutputStream> stream,
                       std::string delimiter = std::string(defaultDelimiter),
                       WriteNewline newline = WriteNewline::lf);
    /// A charset with 8-bit code units (UTF-8, ISO-8859-1, windows-1252...);
    /// std::invalid_argument for any other. Unmappable scalars get the charset's
    /// substitution character.
    CSVWriter(std::shared_ptr<OutputStream> stream, const TextEncoding& codecType,
              std::string delimiter = std::string(defaultDelimiter), WriteNewline newline = WriteNewline::lf);
    /// UTF-16 or UTF-32 code units, big-endian for `big`, little-endian otherwise.
    CSVWriter(std::shared_ptr<OutputStream> stream, WideCodec codecType, WriteEndian endian,
              std::string delimiter = std::string(defaultDelimiter), WriteNewline newline = WriteNewline::lf);

    CSVWriter(const CSVWriter&) = delete;
    CSVWriter& operator=(const CSVWriter&) = delete;
    /// Closes the stream unless it is closed already.
    ~CSVWriter();

    /// The stream written to; the field separator; the line end between rows.
    ///@{
    const std::shared_ptr<OutputStream>& stream() const { return stream_; }
    const std::string& delimiter() const { return delimiter_; }
    const std::string& newline() const { return newline_; }
    ///@}

    /// The next field starts a new row.
    void beginNewRow();
    /// Writes one field, quoted when asked or when it holds the delimiter, a
    /// quotation mark, CR or LF; quotation marks inside quotes are doubled.
    void writeField(std::string_view field, bool quoted = false);
    /// beginNewRow() and each field, quoted where `quotedAtIndex` says so.
    void writeRow(const std::vector<std::string>& row,
                  const std::function<bool(std::size_t)>& quotedAtIndex = {});

private:
    enum class Codec { utf8, charset, utf16, utf32 };

    CSVWriter(std::shared_ptr<OutputStream> stream, Codec codec, std::string delimiter, WriteNewline newline);

    void writeUnit(const void* bytes, std::size_t size);
    void writeScalar(char32_t scalar);
    /// Writes the scalars of UTF-8 text; malformed bytes are written as U+FFFD.
    void writeScalars(std::string_view text);

    std::shared_ptr<OutputStream> stream_;
    std::string delimiter_;
    std::string newline_;
    Codec codec_;
    bool bigEndian_ = false;
    struct CharsetConverter;
    std::unique_ptr<CharsetConverter> charset_;
    bool isFirstRow_ = true;
    bool isFirstField_ = true;
};

} // namespace corvane
