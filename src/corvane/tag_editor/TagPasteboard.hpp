#pragma once

#include "corvane/tag_value/TagPair.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Where copied tag values go, and where pasted ones come from: the platform's pasteboard in an
/// application, `InProcessTagPasteboard` by default.
///
/// Tags travel as text, so that they can be pasted into other programs and back: one pair a line,
/// the name, a colon, a blank and the value in double quotes, with backslash escapes for quotes,
/// backslashes and line breaks:
///     EXIF:Artist: "Jane \"JD\" Doe"
///     IPTC:Keywords: "sea, sun"
/// Implementations must accept calls from any thread (an implementation on a pasteboard that lives
/// on the main thread hops there itself).
class TagPasteboard {
public:
    virtual ~TagPasteboard() = default;

    /// The pasteboard's text; nothing when it holds none.
    virtual std::optional<std::string> string() const = 0;
    /// Replaces the pasteboard's content with the text.
    virtual void setString(const std::string& text) = 0;

    /// The pairs in text form on the pasteboard.
    void setMultipleValues(const std::vector<TagPair>& pairs);
    /// The pairs read from the pasteboard's text; lines that aren't pairs are skipped.
    std::vector<TagPair> multipleValues() const;

    /// The text form of the pairs, in order, one line each.
    static std::string multipleValuesText(const std::vector<TagPair>& pairs);
    /// The pairs of the text form. A line must read name, colon, quoted value; anything else on
    /// the line, a malformed name or an unterminated quote drops the line.
    static std::vector<TagPair> parseMultipleValues(std::string_view text);
    /// The quoted form of one value: in double quotes, with the escapes above.
    static std::string quoted(std::string_view value);

    /// The process's pasteboard: an InProcessTagPasteboard until a host sets its own.
    ///@{
    static std::shared_ptr<TagPasteboard> shared();
    static void setShared(std::shared_ptr<TagPasteboard> pasteboard);
    ///@}
};

} // namespace corvane
