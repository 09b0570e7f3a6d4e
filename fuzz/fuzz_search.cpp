// The searches people type: the comparison's text search (folded case and diacritics) and the
// tables' pattern search. The first line is the search, the rest the text searched.

#include "FuzzInput.hpp"

#include "corvane/comparison/TagComparatorTextSearch.hpp"
#include "corvane/tag_table/detail/PatternSearch.hpp"

using namespace corvane;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto [search, text] = fuzz::firstLineAndRest(fuzz::text(data, size));
    const TagComparatorTextSearch comparison(search);
    (void)comparison.rangeIn(text);
    const detail::PatternSearch pattern(search);
    (void)pattern.isFoundIn(text);
    return 0;
}
