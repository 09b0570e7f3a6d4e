#include "corvane/keyword_support/ThesaurusReader.hpp"

#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/keyword_support/ThesaurusItem.hpp"
#include "corvane/utilities/CaseException.hpp"
#include "corvane/utilities/FatalError.hpp"

#include <unicode/regex.h>
#include <unicode/unistr.h>

#include <map>
#include <memory>

namespace corvane {

namespace {

using ReadingError = ThesaurusReader::ReadingError;

const icu::RegexPattern& compiledLinePattern() {
    static const std::unique_ptr<icu::RegexPattern> pattern = [] {
        UErrorCode status = U_ZERO_ERROR;
        UParseError parseError;
        std::unique_ptr<icu::RegexPattern> compiled(icu::RegexPattern::compile(
            icu::UnicodeString::fromUTF8(ThesaurusReader::linePattern), 0, parseError, status));
        if (U_FAILURE(status)) fatalError("ThesaurusReader: the line pattern doesn't compile");
        return compiled;
    }();
    return *pattern;
}

std::vector<std::string_view> nonEmptyLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = text.find('\n');
        const auto line = text.substr(0, end);
        if (!line.empty()) lines.push_back(line);
        if (end == std::string_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return lines;
}

} // namespace

std::string_view message(ReadingError error) {
    switch (error) {
    case ReadingError::rootItemIsMissing:
        return "Root item is missing";
    case ReadingError::lineDoesNotMatchPattern:
        return "Line does not match pattern";
    case ReadingError::lineIndentationIsInvalid:
        return "Line indentation is invalid";
    }
    return {};
}

std::optional<std::array<std::string, 4>> ThesaurusReader::capturesMatches(std::string_view line) {
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(line);
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::RegexMatcher> matcher(compiledLinePattern().matcher(text, status));
    if (U_FAILURE(status) || !matcher->find(status) || U_FAILURE(status)) return std::nullopt;
    std::vector<std::string> groups;
    for (int group = 1; group <= matcher->groupCount(); ++group) {
        // A group of an alternative that didn't match starts nowhere; an empty group that took part
        // (no tabs, the blank marks of a plain keyword) starts somewhere and counts.
        if (matcher->start(group, status) < 0 || U_FAILURE(status)) continue;
        std::string utf8;
        matcher->group(group, status).toUTF8String(utf8);
        groups.push_back(std::move(utf8));
    }
    if (groups.size() != 4) return std::nullopt;
    return std::array<std::string, 4>{groups[0], groups[1], groups[2], groups[3]};
}

std::vector<KeywordItemRef> ThesaurusReader::read(std::string_view string) const {
    const auto lines = nonEmptyLines(string);
    const auto matches = parallelMap(lines, [](std::string_view line) { return capturesMatches(line); });

    std::map<std::size_t, std::vector<ThesaurusItemRef>> itemsByDepth;
    for (const auto& match : matches) {
        if (!match) throw CaseException<ReadingError>(ReadingError::lineDoesNotMatchPattern);
        const auto& [tabs, opening, name, closing] = *match;
        const std::size_t depth = tabs.size();
        const bool isSynonym = opening == "{" && closing == "}";
        const bool isHeader = opening == "[" && closing == "]";
        auto item = std::make_shared<ThesaurusItem>(name);
        item->isHeader = isHeader;
        if (!isSynonym) itemsByDepth[depth].push_back(item);
        if (depth == 0 && !isSynonym) continue;
        const auto parents = depth == 0 ? itemsByDepth.end() : itemsByDepth.find(depth - 1);
        if (parents == itemsByDepth.end() || parents->second.empty())
            throw CaseException<ReadingError>(ReadingError::lineIndentationIsInvalid);
        ThesaurusItem& parent = *parents->second.back();
        if (isSynonym)
            parent.synonyms.push_back(name);
        else
            parent.children.push_back(std::move(item));
    }

    const auto roots = itemsByDepth.find(0);
    if (roots == itemsByDepth.end()) throw CaseException<ReadingError>(ReadingError::rootItemIsMissing);
    std::vector<KeywordItemRef> items;
    items.reserve(roots->second.size());
    for (const auto& root : roots->second)
        items.push_back(KeywordItem::create(*root));
    return items;
}

std::vector<KeywordItemRef> ThesaurusReader::readAt(const std::filesystem::path& url) const {
    return read(readFileBytes(url));
}

} // namespace corvane
