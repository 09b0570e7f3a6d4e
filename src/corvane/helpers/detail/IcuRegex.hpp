#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <unicode/regex.h>
#include <unicode/unistr.h>

namespace corvane::detail {

// An ICU regular expression compiled once and shared by all threads. Matching
// goes through a matcher owned by the calling thread, created on first use,
// so that no matcher is built per call and no lock is taken.
class IcuRegex {
public:
    enum Flags : unsigned { none = 0, caseInsensitive = 1 };

    // Bounds on one match, for patterns that backtrack heavily on text from
    // outside. A match that runs past either bound ends as "no match".
    struct MatchLimits {
        // Steps of ICU's match engine (10,000 pattern operations each, some
        // tens of microseconds); 0 is no limit.
        int32_t timeSteps = 0;
        // Bytes of the engine's backtracking stack (heap memory); 0 is no limit.
        int32_t stackBytes = 8 * 1024 * 1024;
    };

    // Compiles `pattern`; an invalid pattern is a programming fault and stops
    // the process with the ICU error.
    explicit IcuRegex(std::string_view pattern, unsigned flags = none);
    IcuRegex(std::string_view pattern, unsigned flags, MatchLimits limits);
    ~IcuRegex();
    IcuRegex(const IcuRegex&) = delete;
    IcuRegex& operator=(const IcuRegex&) = delete;

    // The capture groups of the first match in `text` (group 0 excluded); a group
    // that matched nothing or took no part is the empty string. Nothing without
    // a match.
    std::optional<std::vector<std::string>> firstMatchGroups(const icu::UnicodeString& text) const;
    std::optional<std::vector<std::string>> firstMatchGroups(std::string_view utf8) const;

    // `text` with every match replaced by `replacement` (taken literally).
    std::string replaceAll(std::string_view utf8, std::string_view replacement) const;

    int groupCount() const { return groupCount_; }
    const std::string& pattern() const { return source_; }

private:
    icu::RegexMatcher& matcher(const icu::UnicodeString& text) const;

    std::string source_;
    MatchLimits limits_;
    std::unique_ptr<icu::RegexPattern> compiled_;
    size_t slot_ = 0;
    int groupCount_ = 0;
};

} // namespace corvane::detail
