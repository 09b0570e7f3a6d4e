#include "corvane/comparison/TagComparatorTextSearch.hpp"

#include "corvane/csv_support/Utf8.hpp"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <functional>

namespace corvane {

namespace {

// Appends the folded form of one scalar: nothing for a combining mark.
void appendFolded(char32_t scalar, std::u32string& out) {
    if (scalar < 0x80) {
        out.push_back(scalar >= U'A' && scalar <= U'Z' ? scalar - U'A' + U'a' : scalar);
        return;
    }
    UErrorCode status = U_ZERO_ERROR;
    static const icu::Normalizer2* nfd = icu::Normalizer2::getNFDInstance(status);
    icu::UnicodeString piece(static_cast<UChar32>(scalar));
    if (nfd) {
        UErrorCode normStatus = U_ZERO_ERROR;
        icu::UnicodeString decomposed = nfd->normalize(piece, normStatus);
        if (U_SUCCESS(normStatus)) piece = decomposed;
    }
    icu::UnicodeString bare;
    for (int32_t i = 0; i < piece.length();) {
        UChar32 c = piece.char32At(i);
        if (u_charType(c) != U_NON_SPACING_MARK) bare.append(c);
        i += U16_LENGTH(c);
    }
    bare.toLower(icu::Locale::getDefault());
    bare.foldCase();
    for (int32_t i = 0; i < bare.length();) {
        UChar32 c = bare.char32At(i);
        out.push_back(static_cast<char32_t>(c));
        i += U16_LENGTH(c);
    }
}

std::u32string fold(std::string_view text) {
    std::u32string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();)
        appendFolded(utf8::decode(text, i), out);
    return out;
}

} // namespace

TagComparatorTextSearch::TagComparatorTextSearch(std::string_view search)
    : search_(search), folded_(fold(search)) {}

std::optional<TagComparatorSearchValue::Range> TagComparatorTextSearch::rangeIn(std::string_view text) const {
    if (folded_.empty()) return std::nullopt;
    // The folded text, and for each folded scalar the bytes of the scalar it came from.
    std::u32string folded;
    std::vector<TagComparatorSearchValue::Range> origins;
    folded.reserve(text.size());
    origins.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        std::size_t start = i;
        char32_t scalar = utf8::decode(text, i);
        std::size_t before = folded.size();
        appendFolded(scalar, folded);
        if (folded.size() == before) {
            // A mark on its own belongs to the scalar before it.
            if (!origins.empty()) origins.back().second = i;
            continue;
        }
        for (std::size_t k = before; k < folded.size(); ++k)
            origins.emplace_back(start, i);
    }
    auto hit = std::search(folded.begin(), folded.end(),
                           std::boyer_moore_horspool_searcher(folded_.begin(), folded_.end()));
    if (hit == folded.end()) return std::nullopt;
    auto first = static_cast<std::size_t>(hit - folded.begin());
    auto last = first + folded_.size() - 1;
    return TagComparatorSearchValue::Range(origins[first].first, origins[last].second);
}

} // namespace corvane
