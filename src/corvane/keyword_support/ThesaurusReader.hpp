#pragma once

#include "corvane/keyword_support/KeywordItem.hpp"

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads keyword trees from thesaurus text: UTF-8, one keyword per line, its depth given by leading
/// tabs; "[name]" is a header, "{name}" a synonym of the nearest keyword one level up, anything
/// else a keyword. Empty lines are skipped. Failures are thrown as
/// `CaseException<ThesaurusReader::ReadingError>`.
///
/// Lines are matched against `linePattern` with ICU's regular expressions, so ICU's rules decide
/// the edge cases: "." takes any character but a line terminator (a tab included, so a line of
/// two tabs is a keyword named by its last tab), and "$" also matches before a final "\r", so
/// "Name\r" reads as "Name". The depth map is never pruned: a keyword two levels down always hangs
/// under the last keyword seen one level down, even one that belongs to an earlier root.
class ThesaurusReader {
public:
    /// Why a text can't be read; `message` gives the text.
    enum class ReadingError { rootItemIsMissing, lineDoesNotMatchPattern, lineIndentationIsInvalid };

    /// Groups: tabs; then "[", name, "]" or "{", name, "}" or "", name, "".
    static constexpr std::string_view linePattern =
        R"(^(\t*)(?:(?:(\[)(.+)(\]))|(?:(\{)(.+)(\}))|(?:()(.+)()))$)";

    /// The tabs, opening mark, name and closing mark of a line: the groups of `linePattern` that
    /// took part in the match, empty ones included. Nothing when the line doesn't match.
    static std::optional<std::array<std::string, 4>> capturesMatches(std::string_view line);

    /// The root keywords of the text. An empty text fails with rootItemIsMissing.
    std::vector<KeywordItemRef> read(std::string_view string) const;
    /// Reads the file as UTF-8 text; throws FileError when it can't be read.
    std::vector<KeywordItemRef> readAt(const std::filesystem::path& url) const;
};

/// "Root item is missing", "Line does not match pattern", "Line indentation is invalid".
std::string_view message(ThesaurusReader::ReadingError error);

} // namespace corvane
