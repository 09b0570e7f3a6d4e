#include "corvane/csv_support/TextEncoding.hpp"

#include "corvane/csv_support/detail/Utf8.hpp"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>
#include <unicode/ustring.h>
#include <vector>

namespace corvane {
namespace utf8 = detail::utf8;

namespace {

struct ConverterCloser {
    void operator()(UConverter* c) const { ucnv_close(c); }
};
using ConverterPtr = std::unique_ptr<UConverter, ConverterCloser>;

ConverterPtr openConverter(const std::string& name) {
    UErrorCode status = U_ZERO_ERROR;
    ConverterPtr converter(ucnv_open(name.c_str(), &status));
    if (U_FAILURE(status)) return nullptr;
    return converter;
}

bool startsWith(std::string_view bytes, std::string_view prefix) {
    return bytes.substr(0, prefix.size()) == prefix;
}

} // namespace

std::optional<TextEncoding> TextEncoding::named(std::string_view charsetName) {
    std::string name(charsetName);
    if (name.empty() || !openConverter(name)) return std::nullopt;
    return TextEncoding(std::move(name));
}

bool TextEncoding::isUTF8() const {
    if (name_.empty()) return false;
    UErrorCode status = U_ZERO_ERROR;
    const char* canonical = ucnv_getCanonicalName(name_.c_str(), "", &status);
    if (U_SUCCESS(status) && canonical) return std::string_view(canonical) == "UTF-8";
    return name_ == "UTF-8";
}

int TextEncoding::codeUnitBits() const {
    if (name_.empty()) return 0;
    ConverterPtr converter = openConverter(name_);
    if (!converter) return 0;
    switch (ucnv_getMinCharSize(converter.get())) {
    case 2:
        return 16;
    case 4:
        return 32;
    default:
        return 8;
    }
}

TextEncoding TextEncoding::detect(std::string_view bytes) {
    // Byte-order marks first; UTF-32LE's mark begins like UTF-16LE's.
    if (startsWith(bytes, "\xEF\xBB\xBF")) return utf8();
    if (startsWith(bytes, std::string_view("\xFF\xFE\0\0", 4))) return utf32LittleEndian();
    if (startsWith(bytes, std::string_view("\0\0\xFE\xFF", 4))) return utf32BigEndian();
    if (startsWith(bytes, "\xFF\xFE")) return utf16LittleEndian();
    if (startsWith(bytes, "\xFE\xFF")) return utf16BigEndian();
    if (utf8::isValid(bytes)) return utf8();

    UErrorCode status = U_ZERO_ERROR;
    UCharsetDetector* detector = ucsdet_open(&status);
    std::optional<TextEncoding> found;
    if (U_SUCCESS(status)) {
        ucsdet_setText(detector, bytes.data(),
                       static_cast<int32_t>(std::min<std::size_t>(bytes.size(), INT32_MAX)), &status);
        const UCharsetMatch* match = ucsdet_detect(detector, &status);
        if (U_SUCCESS(status) && match) {
            const char* name = ucsdet_getName(match, &status);
            if (U_SUCCESS(status) && name) found = named(name);
        }
        ucsdet_close(detector);
    }
    // Every byte is a character in windows-1252 but for five; it is the usual
    // legacy encoding of spreadsheet exports.
    return found.value_or(windowsCP1252());
}

std::optional<std::string> TextEncoding::decode(std::string_view bytes) const {
    if (isAutomatic()) return detect(bytes).decode(bytes);
    if (isUTF8()) {
        if (!utf8::isValid(bytes)) return std::nullopt;
        return std::string(bytes);
    }
    ConverterPtr converter = openConverter(name_);
    if (!converter) return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    // Stop at the first unmappable or malformed sequence instead of substituting.
    ucnv_setToUCallBack(converter.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    if (U_FAILURE(status)) return std::nullopt;

    std::vector<UChar> utf16(bytes.size() + 1);
    const char* source = bytes.data();
    const char* const sourceLimit = bytes.data() + bytes.size();
    std::size_t used = 0; // UTF-16 units produced so far
    for (;;) {
        UChar* target = utf16.data() + used;
        UChar* const targetLimit = utf16.data() + utf16.size();
        status = U_ZERO_ERROR;
        ucnv_toUnicode(converter.get(), &target, targetLimit, &source, sourceLimit, nullptr, true, &status);
        used = static_cast<std::size_t>(target - utf16.data());
        if (status != U_BUFFER_OVERFLOW_ERROR) break;
        utf16.resize(utf16.size() * 2);
    }
    if (U_FAILURE(status)) return std::nullopt;
    const auto length = static_cast<int32_t>(used);

    int32_t needed = 0;
    status = U_ZERO_ERROR;
    u_strToUTF8(nullptr, 0, &needed, utf16.data(), length, &status);
    if (status != U_BUFFER_OVERFLOW_ERROR && U_FAILURE(status)) return std::nullopt;
    std::string out(static_cast<std::size_t>(needed), '\0');
    status = U_ZERO_ERROR;
    u_strToUTF8(out.data(), needed, nullptr, utf16.data(), length, &status);
    if (U_FAILURE(status)) return std::nullopt;
    return out;
}

} // namespace corvane
