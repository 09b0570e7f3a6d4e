#include "corvane/comparison/TagComparatorSearchValue.hpp"

#include "corvane/comparison/TagComparatorTextSearch.hpp"

namespace corvane {

std::optional<TagComparatorSearchValue::Range> TagComparatorSearchValue::rangeOf(std::string_view search,
                                                                                 std::string_view text) {
    if (search.empty()) return std::nullopt;
    return TagComparatorTextSearch(search).rangeIn(text);
}

std::optional<TagComparatorSearchValue::Range> TagComparatorSearchValue::highlightedRange() const {
    if (!search || !rawText) return std::nullopt;
    return rangeOf(*search, *rawText);
}

} // namespace corvane
