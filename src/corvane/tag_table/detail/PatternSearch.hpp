#pragma once

#include <unicode/utypes.h>

#include <memory>
#include <string_view>

U_NAMESPACE_BEGIN
class RegexPattern;
U_NAMESPACE_END

namespace corvane::detail {

// A regular expression typed by a user into a filter. A pattern that doesn't compile is kept as
// one that matches nothing: a half-typed pattern must not fail a reload. Safe to share between
// threads (each search makes its own matcher). A search that runs past a bound of time or memory
// (a pattern that backtracks without end) counts as no match.
class PatternSearch {
public:
    explicit PatternSearch(std::string_view pattern);
    ~PatternSearch();
    PatternSearch(const PatternSearch&) = delete;
    PatternSearch& operator=(const PatternSearch&) = delete;

    // `text` contains a match.
    bool isFoundIn(std::string_view text) const;

private:
    std::unique_ptr<icu::RegexPattern> compiled_; // null for a malformed pattern
};

} // namespace corvane::detail
