#include "corvane/helpers/detail/WordSearch.hpp"

#include "corvane/helpers/detail/TextFolding.hpp"

#include <unicode/uchar.h>

#include <algorithm>
#include <functional>

namespace corvane::detail {

namespace {

constexpr TextFolding::Options wordFolding =
    TextFolding::caseInsensitive | TextFolding::diacriticInsensitive | TextFolding::widthInsensitive;

} // namespace

WordSearch::WordSearch(std::string_view search) {
    std::u32string word;
    for (char32_t unit : TextFolding::folded(search, wordFolding)) {
        if (u_isUWhiteSpace(static_cast<UChar32>(unit))) {
            if (!word.empty()) words_.push_back(std::move(word));
            word.clear();
        } else {
            word.push_back(unit);
        }
    }
    if (!word.empty()) words_.push_back(std::move(word));
}

bool WordSearch::isFoundIn(std::string_view text) const {
    if (words_.empty()) return true;
    const std::u32string folded = TextFolding::folded(text, wordFolding);
    return std::all_of(words_.begin(), words_.end(), [&](const std::u32string& word) {
        return std::search(folded.begin(), folded.end(),
                           std::boyer_moore_horspool_searcher(word.begin(), word.end())) != folded.end();
    });
}

} // namespace corvane::detail
