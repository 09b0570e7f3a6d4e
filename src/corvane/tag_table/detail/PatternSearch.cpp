#include "corvane/tag_table/detail/PatternSearch.hpp"

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace corvane::detail {

namespace {
// Steps of ICU's match engine (10,000 pattern operations each) and bytes of its backtracking stack.
constexpr int32_t searchTimeSteps = 50;
constexpr int32_t searchStackBytes = 4 * 1024 * 1024;
} // namespace

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
    // A pattern that backtracks without end ("(a*)*b") would freeze the table's reload on every
    // row: its search stops after some tens of milliseconds and counts as no match.
    matcher->setTimeLimit(searchTimeSteps, status);
    matcher->setStackLimit(searchStackBytes, status);
    const bool found = matcher->find(status);
    return U_SUCCESS(status) && found;
}

} // namespace corvane::detail
