#include "corvane/helpers/detail/TextReplacement.hpp"

#include "corvane/helpers/detail/TextFolding.hpp"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <memory>

namespace corvane::detail {

namespace {

using Options = TextReplacement::Options;

std::string replaceLiterally(std::string_view text, std::string_view target, std::string_view replacement,
                             Options options) {
    const std::u32string search = TextFolding::folded(target, options);
    if (search.empty()) return std::string(text);
    const TextFolding folded(text, options);
    const std::u32string& units = folded.units();
    const std::size_t n = units.size();
    // A hit must not end in front of a combining mark that belongs to its last letter.
    const auto endsCluster = [&](std::size_t unit) { // `unit` is the first unit after the hit
        return unit == n || (folded.startsScalar(unit) && !folded.scalarOfUnit(unit).isMark);
    };

    std::string result;
    std::size_t copied = 0; // bytes of `text` already handled
    std::size_t from = 0;
    while (from + search.size() <= n) {
        const std::size_t hit = units.find(search, from);
        if (hit == std::u32string::npos) break;
        const std::size_t after = hit + search.size();
        if (!folded.startsScalar(hit) || !endsCluster(after)) {
            from = hit + 1;
            continue;
        }
        const std::size_t begin = folded.scalarOfUnit(hit).begin;
        result.append(text.substr(copied, begin - copied));
        result.append(replacement);
        copied = folded.scalarOfUnit(after - 1).end;
        from = after;
    }
    if (copied == 0 && result.empty()) return std::string(text);
    result.append(text.substr(copied));
    return result;
}

std::string replaceByPattern(std::string_view text, std::string_view pattern, std::string_view replacement,
                             Options options) {
    UErrorCode status = U_ZERO_ERROR;
    uint32_t flags = (options & TextReplacement::caseInsensitive) ? UREGEX_CASE_INSENSITIVE : 0;
    std::unique_ptr<icu::RegexPattern> compiled(icu::RegexPattern::compile(
        icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), static_cast<int32_t>(pattern.size()))),
        flags, status));
    if (U_FAILURE(status) || !compiled) return std::string(text);
    const icu::UnicodeString input =
        icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
    std::unique_ptr<icu::RegexMatcher> matcher(compiled->matcher(input, status));
    if (U_FAILURE(status) || !matcher) return std::string(text);
    icu::UnicodeString replaced =
        matcher->replaceAll(icu::UnicodeString::fromUTF8(icu::StringPiece(
                                replacement.data(), static_cast<int32_t>(replacement.size()))),
                            status);
    if (U_FAILURE(status)) return std::string(text);
    std::string out;
    replaced.toUTF8String(out);
    return out;
}

} // namespace

std::string TextReplacement::replacingOccurrences(std::string_view text, std::string_view target,
                                                  std::string_view replacement, Options options) {
    if (target.empty()) return std::string(text);
    if (options & regularExpression) return replaceByPattern(text, target, replacement, options);
    return replaceLiterally(text, target, replacement, options);
}

} // namespace corvane::detail
