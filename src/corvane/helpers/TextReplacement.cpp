#include "corvane/helpers/TextReplacement.hpp"

#include <unicode/normalizer2.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <memory>
#include <vector>

namespace corvane {

namespace {

using Options = TextReplacement::Options;

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
        if ((options & TextReplacement::caseInsensitive) && scalar >= 'A' && scalar <= 'Z')
            scalar += 'a' - 'A';
        out.push_back(static_cast<char32_t>(scalar));
        return;
    }
    icu::UnicodeString piece(scalar);
    bool width = (options & TextReplacement::widthInsensitive) != 0;
    if (width) {
        auto type = u_getIntPropertyValue(scalar, UCHAR_DECOMPOSITION_TYPE);
        width = type == U_DT_WIDE || type == U_DT_NARROW;
    }
    if (const icu::Normalizer2* nfd = normalizer(width)) {
        UErrorCode status = U_ZERO_ERROR;
        icu::UnicodeString decomposed = nfd->normalize(piece, status);
        if (U_SUCCESS(status)) piece = decomposed;
    }
    if (options & TextReplacement::diacriticInsensitive) {
        icu::UnicodeString bare;
        for (int32_t i = 0; i < piece.length();) {
            UChar32 c = piece.char32At(i);
            if (u_charType(c) != U_NON_SPACING_MARK) bare.append(c);
            i += U16_LENGTH(c);
        }
        piece = bare;
    }
    if (options & TextReplacement::caseInsensitive) piece.foldCase();
    for (int32_t i = 0; i < piece.length();) {
        UChar32 c = piece.char32At(i);
        out.push_back(static_cast<char32_t>(c));
        i += U16_LENGTH(c);
    }
}

// The folded form of a whole text, and for each folded unit the scalar it came from.
struct FoldedText {
    struct Scalar {
        std::size_t begin = 0; // bytes in the original text, marks folded to nothing included
        std::size_t end = 0;
        bool isMark = false;
    };
    std::u32string units;
    std::vector<std::size_t> unitScalar;
    std::vector<Scalar> scalars;
};

FoldedText fold(std::string_view text, Options options) {
    FoldedText folded;
    folded.units.reserve(text.size());
    folded.unitScalar.reserve(text.size());
    const auto* bytes = reinterpret_cast<const uint8_t*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    for (int32_t i = 0; i < length;) {
        const int32_t start = i;
        UChar32 c;
        U8_NEXT(bytes, i, length, c);
        if (c < 0) c = 0xFFFD; // a malformed sequence counts as one replacement character
        const std::size_t before = folded.units.size();
        appendFolded(c, options, folded.units);
        if (folded.units.size() == before && !folded.scalars.empty()) {
            // A dropped mark belongs to the scalar before it, so a hit on that one takes it along.
            folded.scalars.back().end = static_cast<std::size_t>(i);
            continue;
        }
        folded.scalars.push_back({static_cast<std::size_t>(start), static_cast<std::size_t>(i), isMark(c)});
        for (std::size_t k = before; k < folded.units.size(); ++k)
            folded.unitScalar.push_back(folded.scalars.size() - 1);
    }
    return folded;
}

std::string replaceLiterally(std::string_view text, std::string_view target, std::string_view replacement,
                             Options options) {
    const std::u32string search = fold(target, options).units;
    if (search.empty()) return std::string(text);
    const FoldedText folded = fold(text, options);
    const std::size_t n = folded.units.size();
    const auto startsScalar = [&](std::size_t unit) {
        return unit == 0 || folded.unitScalar[unit - 1] != folded.unitScalar[unit];
    };
    const auto endsCluster = [&](std::size_t unit) { // `unit` is the first unit after the hit
        if (unit == n) return true;
        return startsScalar(unit) && !folded.scalars[folded.unitScalar[unit]].isMark;
    };

    std::string result;
    std::size_t copied = 0; // bytes of `text` already handled
    std::size_t from = 0;
    while (from + search.size() <= n) {
        const std::size_t hit = folded.units.find(search, from);
        if (hit == std::u32string::npos) break;
        const std::size_t after = hit + search.size();
        if (!startsScalar(hit) || !endsCluster(after)) {
            from = hit + 1;
            continue;
        }
        const auto& first = folded.scalars[folded.unitScalar[hit]];
        const auto& last = folded.scalars[folded.unitScalar[after - 1]];
        result.append(text.substr(copied, first.begin - copied));
        result.append(replacement);
        copied = last.end;
        from = after;
    }
    if (copied == 0 && result.empty()) return std::string(text);
    result.append(text.substr(copied));
    return result;
}

std::string replaceByPattern(std::string_view text, std::string_view pattern, std::string_view replacement,
                             Options options) {
    UErrorCode status = U_ZERO_ERROR;
    uint32_t flags = (options & TextReplacement::caseInsensitive) ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<icu::RegexPattern> compiled(icu::RegexPattern::compile(
        icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), static_cast<int32_t>(pattern.size()))),
        flags, status));
    if (U_FAILURE(status) || !compiled) return std::string(text);
    const icu::UnicodeString input =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    std::unique_ptr<icu::RegexMatcher> matcher(compiled->matcher(input, status));
    if (U_FAILURE(status) || !matcher) return std::string(text);
    icu::UnicodeString replaced =
        matcher->replaceAll(icu::UnicodeString::fromUTF8(icu::StringPiece(
                                replacement.data(), static_cast<int32_t>(replacement.size()))),
                            status);
    if (U_FAILURE(status)) return std::string(text);
    std::string out;
    replaced.toUTF8String(out);
    return out;
}

} // namespace

std::string TextReplacement::replacingOccurrences(std::string_view text, std::string_view target,
                                                  std::string_view replacement, Options options) {
    if (target.empty()) return std::string(text);
    if (options & regularExpression) return replaceByPattern(text, target, replacement, options);
    return replaceLiterally(text, target, replacement, options);
}

} // namespace corvane
