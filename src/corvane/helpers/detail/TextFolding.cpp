#include "corvane/helpers/detail/TextFolding.hpp"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

namespace corvane::detail {

namespace {

using Options = TextFolding::Options;

const icu::Normalizer2* normalizer(bool compatibility) {
    UErrorCode status = U_ZERO_ERROR;
    return compatibility ? icu::Normalizer2::getNFKDInstance(status)
                         : icu::Normalizer2::getNFDInstance(status);
}

bool isMark(UChar32 c) {
    return (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0;
}

// Appends the comparison form of one scalar; nothing for a mark that the options drop.
void appendFolded(UChar32 scalar, Options options, std::u32string& out) {
    if (scalar < 0x80) {
        if ((options & TextFolding::caseInsensitive) && scalar >= 'A' && scalar <= 'Z') scalar += 'a' - 'A';
        out.push_back(static_cast<char32_t>(scalar));
        return;
    }
    icu::UnicodeString piece(scalar);
    bool width = (options & TextFolding::widthInsensitive) != 0;
    if (width) {
        auto type = u_getIntPropertyValue(scalar, UCHAR_DECOMPOSITION_TYPE);
        width = type == U_DT_WIDE || type == U_DT_NARROW;
    }
    if (const icu::Normalizer2* nfd = normalizer(width)) {
        UErrorCode status = U_ZERO_ERROR;
        icu::UnicodeString decomposed = nfd->normalize(piece, status);
        if (U_SUCCESS(status)) piece = decomposed;
    }
    if (options & TextFolding::diacriticInsensitive) {
        icu::UnicodeString bare;
        for (int32_t i = 0; i < piece.length();) {
            UChar32 c = piece.char32At(i);
            if (u_charType(c) != U_NON_SPACING_MARK) bare.append(c);
            i += U16_LENGTH(c);
        }
        piece = bare;
    }
    if (options & TextFolding::caseInsensitive) {
        if (options & TextFolding::currentLocaleCase) piece.toLower(icu::Locale::getDefault());
        piece.foldCase();
    }
    for (int32_t i = 0; i < piece.length();) {
        UChar32 c = piece.char32At(i);
        out.push_back(static_cast<char32_t>(c));
        i += U16_LENGTH(c);
    }
}

} // namespace

TextFolding::TextFolding(std::string_view text, Options options) {
    units_.reserve(text.size());
    unitScalar_.reserve(text.size());
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    for (int32_t i = 0; i < length;) {
        const int32_t start = i;
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0) c = 0xFFFD;
        const std::size_t before = units_.size();
        appendFolded(c, options, units_);
        if (units_.size() == before && !scalars_.empty()) {
            scalars_.back().end = static_cast<std::size_t>(i);
            continue;
        }
        scalars_.push_back({static_cast<std::size_t>(start), static_cast<std::size_t>(i), isMark(c)});
        for (std::size_t k = before; k < units_.size(); ++k)
            unitScalar_.push_back(scalars_.size() - 1);
    }
}

std::u32string TextFolding::folded(std::string_view text, Options options) {
    std::u32string units;
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    for (int32_t i = 0; i < length;) {
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        appendFolded(c < 0 ? 0xFFFD : c, options, units);
    }
    return units;
}

} // namespace corvane::detail
