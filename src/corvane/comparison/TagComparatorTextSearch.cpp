#include "corvane/comparison/TagComparatorTextSearch.hpp"

#include "corvane/helpers/detail/TextFolding.hpp"

#include <algorithm>
#include <functional>

namespace corvane {
using detail::TextFolding;

namespace {

// Case by the current locale's rules, then folded; marks dropped.
constexpr TextFolding::Options searchFolding =
    TextFolding::caseInsensitive | TextFolding::currentLocaleCase | TextFolding::diacriticInsensitive;

} // namespace

TagComparatorTextSearch::TagComparatorTextSearch(std::string_view search)
    : search_(search), folded_(TextFolding::folded(search, searchFolding)) {}

std::optional<TagComparatorSearchValue::Range> TagComparatorTextSearch::rangeIn(std::string_view text) const {
    if (folded_.empty()) return std::nullopt;
    const TextFolding folded(text, searchFolding);
    const std::u32string& units = folded.units();
    auto hit = std::search(units.begin(), units.end(),
                           std::boyer_moore_horspool_searcher(folded_.begin(), folded_.end()));
    if (hit == units.end()) return std::nullopt;
    const auto first = static_cast<std::size_t>(hit - units.begin());
    const auto last = first + folded_.size() - 1;
    return TagComparatorSearchValue::Range(folded.scalarOfUnit(first).begin, folded.scalarOfUnit(last).end);
}

} // namespace corvane
