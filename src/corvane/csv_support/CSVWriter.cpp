#include "corvane/csv_support/CSVWriter.hpp"

#include "corvane/csv_support/detail/Utf8.hpp"

#include <stdexcept>
#include <unicode/ucnv.h>

namespace corvane {
namespace utf8 = detail::utf8;

// An ICU converter from UTF-16 to an 8-bit charset.
struct CSVWriter::CharsetConverter {
    UConverter* converter = nullptr;
    ~CharsetConverter() {
        if (converter) ucnv_close(converter);
    }
};

CSVWriter::CSVWriter(std::shared_ptr<OutputStream> stream, Codec codec, std::string delimiter,
                     WriteNewline newline)
    : stream_(std::move(stream)), delimiter_(std::move(delimiter)),
      newline_(newline == WriteNewline::lf ? "\n" : "\r\n"), codec_(codec) {
    if (!stream_) throw CSVWriteException(CSVWriteError::cannotOpenFile);
    if (stream_->status() == OutputStream::Status::notOpen) stream_->open();
    if (stream_->status() != OutputStream::Status::open)
        throw CSVWriteException(CSVWriteError::cannotOpenFile);
}

CSVWriter::CSVWriter(std::shared_ptr<OutputStream> stream, std::string delimiter, WriteNewline newline)
    : CSVWriter(std::move(stream), Codec::utf8, std::move(delimiter), newline) {}

CSVWriter::CSVWriter(std::shared_ptr<OutputStream> stream, const TextEncoding& codecType,
                     std::string delimiter, WriteNewline newline)
    : CSVWriter(std::move(stream), codecType.isUTF8() ? Codec::utf8 : Codec::charset, std::move(delimiter),
                newline) {
    if (codec_ == Codec::utf8) return;
    if (codecType.codeUnitBits() != 8)
        throw std::invalid_argument("not a charset with 8-bit code units: " + codecType.name());
    UErrorCode status = U_ZERO_ERROR;
    charset_ = std::make_unique<CharsetConverter>();
    charset_->converter = ucnv_open(codecType.name().c_str(), &status);
    if (U_FAILURE(status)) throw std::invalid_argument("unknown charset: " + codecType.name());
}

CSVWriter::CSVWriter(std::shared_ptr<OutputStream> stream, WideCodec codecType, WriteEndian endian,
                     std::string delimiter, WriteNewline newline)
    : CSVWriter(std::move(stream), codecType == WideCodec::utf16 ? Codec::utf16 : Codec::utf32,
                std::move(delimiter), newline) {
    bigEndian_ = endian == WriteEndian::big;
}

CSVWriter::~CSVWriter() {
    if (stream_ && stream_->status() != OutputStream::Status::closed) stream_->close();
}

void CSVWriter::writeUnit(const void* bytes, std::size_t size) {
    if (stream_->write(bytes, size) != static_cast<std::ptrdiff_t>(size))
        throw CSVWriteException(CSVWriteError::cannotWriteStream);
}

void CSVWriter::writeScalar(char32_t scalar) {
    switch (codec_) {
    case Codec::utf8: {
        // One write per byte, as the stream contract asks of every code unit.
        std::string bytes = utf8::encode(scalar);
        for (char b : bytes)
            writeUnit(&b, 1);
        return;
    }
    case Codec::charset: {
        UChar units[2];
        int32_t count = 0;
        if (scalar >= 0x10000 && scalar <= 0x10FFFF) {
            units[count++] = static_cast<UChar>(0xD800 + ((scalar - 0x10000) >> 10));
            units[count++] = static_cast<UChar>(0xDC00 + ((scalar - 0x10000) & 0x3FF));
        } else {
            units[count++] = static_cast<UChar>(scalar);
        }
        char out[16];
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length = ucnv_fromUChars(charset_->converter, out, sizeof out, units, count, &status);
        if (U_FAILURE(status)) throw CSVWriteException(CSVWriteError::cannotWriteStream);
        for (int32_t i = 0; i < length; ++i)
            writeUnit(&out[i], 1);
        return;
    }
    case Codec::utf16: {
        auto put = [this](char16_t unit) {
            const unsigned char bytes[2] = {
                static_cast<unsigned char>(bigEndian_ ? unit >> 8 : unit & 0xFF),
                static_cast<unsigned char>(bigEndian_ ? unit & 0xFF : unit >> 8),
            };
            writeUnit(bytes, 2);
        };
        if (scalar >= 0x10000) {
            put(static_cast<char16_t>(0xD800 + ((scalar - 0x10000) >> 10)));
            put(static_cast<char16_t>(0xDC00 + ((scalar - 0x10000) & 0x3FF)));
        } else {
            put(static_cast<char16_t>(scalar));
        }
        return;
    }
    case Codec::utf32: {
        unsigned char bytes[4];
        for (int i = 0; i < 4; ++i) {
            const int shift = bigEndian_ ? 24 - 8 * i : 8 * i;
            bytes[i] = static_cast<unsigned char>((scalar >> shift) & 0xFF);
        }
        writeUnit(bytes, 4);
        return;
    }
    }
}

void CSVWriter::writeScalars(std::string_view text) {
    std::size_t i = 0;
    const std::size_t n = text.size();
    if (codec_ == Codec::utf8) {
        // Well-formed UTF-8 passes through unchanged, so runs of it are written
        // whole; a stream that takes only part of a run fails just as it would
        // have on the first byte it refused.
        while (i < n) {
            std::size_t j = i;
            std::size_t len = 0;
            while (j < n && (len = utf8::sequenceLength(text, j)) != 0)
                j += len;
            if (j > i) writeUnit(text.data() + i, j - i);
            if (j < n) {
                writeScalar(0xFFFD);
                ++j;
            }
            i = j;
        }
        return;
    }
    while (i < n)
        writeScalar(utf8::decode(text, i));
}

void CSVWriter::beginNewRow() {
    isFirstField_ = true;
}

void CSVWriter::writeField(std::string_view field, bool quoted) {
    if (isFirstRow_)
        isFirstRow_ = false;
    else if (isFirstField_)
        writeScalars(newline_);

    if (isFirstField_)
        isFirstField_ = false;
    else
        writeScalars(delimiter_);

    const bool needsQuotes = quoted ||
                             (!delimiter_.empty() && field.find(delimiter_) != std::string_view::npos) ||
                             field.find_first_of("\"\r\n") != std::string_view::npos;
    if (!needsQuotes) {
        writeScalars(field);
        return;
    }
    writeScalar(CSV_DQUOTE);
    std::size_t start = 0;
    for (std::size_t q = field.find('"'); q != std::string_view::npos; q = field.find('"', start)) {
        writeScalars(field.substr(start, q - start));
        writeScalars(CSV_DQUOTE2_STR);
        start = q + 1;
    }
    writeScalars(field.substr(start));
    writeScalar(CSV_DQUOTE);
}

void CSVWriter::writeRow(const std::vector<std::string>& row,
                         const std::function<bool(std::size_t)>& quotedAtIndex) {
    beginNewRow();
    for (std::size_t i = 0; i < row.size(); ++i)
        writeField(row[i], quotedAtIndex ? quotedAtIndex(i) : false);
}

} // namespace corvane
