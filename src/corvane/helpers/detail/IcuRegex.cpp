#include "corvane/helpers/detail/IcuRegex.hpp"

#include "corvane/utilities/FatalError.hpp"

#include <unicode/regex.h>

#include <atomic>

namespace corvane::detail {

namespace {

std::atomic<size_t> nextSlot{0};

// Matchers of the calling thread, indexed by the slot of their pattern.
std::vector<std::unique_ptr<icu::RegexMatcher>>& threadMatchers() {
    thread_local std::vector<std::unique_ptr<icu::RegexMatcher>> matchers;
    return matchers;
}

std::string toUTF8(const icu::UnicodeString& s) {
    std::string out;
    s.toUTF8String(out);
    return out;
}

} // namespace

IcuRegex::IcuRegex(std::string_view pattern, unsigned flags) : IcuRegex(pattern, flags, MatchLimits{}) {}

IcuRegex::IcuRegex(std::string_view pattern, unsigned flags, MatchLimits limits)
    : source_(pattern), limits_(limits), slot_(nextSlot++) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError parseError{};
    uint32_t icuFlags = (flags & caseInsensitive) ? UREGEX_CASE_INSENSITIVE : 0;
    compiled_.reset(icu::RegexPattern::compile(
        icu::UnicodeString::fromUTF8(icu::StringPiece(source_.data(), static_cast<int32_t>(source_.size()))),
        icuFlags, parseError, status));
    if (U_FAILURE(status) || !compiled_) {
        fatalError("Invalid regular expression " + source_ + ": " + u_errorName(status) + " at offset " +
                   std::to_string(parseError.offset));
    }
    std::unique_ptr<icu::RegexMatcher> probe(compiled_->matcher(status));
    groupCount_ = probe ? probe->groupCount() : 0;
}

IcuRegex::~IcuRegex() = default;

icu::RegexMatcher& IcuRegex::matcher(const icu::UnicodeString& text) const {
    auto& matchers = threadMatchers();
    if (matchers.size() <= slot_) matchers.resize(slot_ + 1);
    auto& m = matchers[slot_];
    UErrorCode status = U_ZERO_ERROR;
    if (!m) {
        m.reset(compiled_->matcher(status));
        if (!m) fatalError("No matcher for regular expression " + source_ + ": " + u_errorName(status));
        m->setTimeLimit(limits_.timeSteps, status);
        m->setStackLimit(limits_.stackBytes, status);
    }
    m->reset(text);
    return *m;
}

std::optional<std::vector<std::string>> IcuRegex::firstMatchGroups(const icu::UnicodeString& text) const {
    icu::RegexMatcher& m = matcher(text);
    UErrorCode status = U_ZERO_ERROR;
    if (!m.find(status) || U_FAILURE(status)) return std::nullopt;
    std::vector<std::string> groups;
    groups.reserve(static_cast<size_t>(groupCount_));
    for (int i = 1; i <= groupCount_; ++i) {
        const int32_t start = m.start(i, status);
        const int32_t end = m.end(i, status);
        if (U_FAILURE(status) || start < 0) {
            groups.emplace_back();
            status = U_ZERO_ERROR;
            continue;
        }
        groups.push_back(toUTF8(text.tempSubStringBetween(start, end)));
    }
    return groups;
}

std::optional<std::vector<std::string>> IcuRegex::firstMatchGroups(std::string_view utf8) const {
    return firstMatchGroups(
        icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size()))));
}

std::string IcuRegex::replaceAll(std::string_view utf8, std::string_view replacement) const {
    const icu::UnicodeString text =
        icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
    icu::RegexMatcher& m = matcher(text);
    icu::UnicodeString result;
    const icu::UnicodeString with = icu::UnicodeString::fromUTF8(
        icu::StringPiece(replacement.data(), static_cast<int32_t>(replacement.size())));
    UErrorCode status = U_ZERO_ERROR;
    int32_t last = 0;
    while (m.find(status) && U_SUCCESS(status)) {
        const int32_t start = m.start(status);
        const int32_t end = m.end(status);
        result.append(text, last, start - last);
        result.append(with);
        last = end;
    }
    result.append(text, last, text.length() - last);
    return toUTF8(result);
}

} // namespace corvane::detail
