#include "corvane/tag_table/detail/PatternSearch.hpp"

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace corvane::detail {

PatternSearch::PatternSearch(std::string_view pattern) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError parseError;
    compiled_.reset(icu::RegexPattern::compile(
        icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), static_cast<int32_t>(pattern.size()))),
        0, parseError, status));
    if (U_FAILURE(status)) compiled_.reset();
}

PatternSearch::~PatternSearch() = default;

bool PatternSearch::isFoundIn(std::string_view text) const {
    if (!compiled_) return false;
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    std::unique_ptr<icu::RegexMatcher> matcher(compiled_->matcher(input, status));
    if (U_FAILURE(status)) return false;
    const bool found = matcher->find(status);
    return U_SUCCESS(status) && found;
}

} // namespace corvane::detail
