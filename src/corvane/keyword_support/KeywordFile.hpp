#pragma once

#include "corvane/helpers/JSONFileForm.hpp"
#include "corvane/helpers/JSONInput.hpp"
#include "corvane/keyword_support/KeywordItem.hpp"
#include "corvane/utilities/Error.hpp"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A keyword library on disk: an optional description and the root keywords.
///
/// Written as {"description": ..., "items": [...]} in that order, pretty-printed; an absent
/// description is left out. Reading requires "items" and every key of every keyword; a missing or
/// non-text description is read as none. A root that is a bare array of keywords (the form of
/// libraries written before files had a description) is read as the items.
///
/// Each level of keywords nests two levels of JSON (a keyword and its children), and library
/// files are read through the nesting limit of outside JSON (`maxJSONNesting`): so a tree deeper
/// than `maxDepth` keywords is refused when written, rather than saved as a file no reader takes.
class KeywordFile : public JSONFileForm<KeywordFile> {
public:
    /// A file or text that isn't a keyword library; `what()` names the source and the reason.
    class DecodingError : public Error {
    public:
        using Error::Error;
    };

    /// A tree too deep to be written (see `maxDepth`); nothing is written.
    class DepthError : public Error {
    public:
        using Error::Error;
    };
    /// The deepest keyword tree a file holds, in levels (a root alone is 1).
    static constexpr std::size_t maxDepth = (maxJSONNesting - 2) / 2;

    KeywordFile() = default;
    /// A file of these keywords, with an optional description.
    KeywordFile(std::optional<std::string> description, std::vector<KeywordItemRef> items)
        : description_(std::move(description)), items_(std::move(items)) {}

    /// The user's description; the root keywords, in order.
    ///@{
    const std::optional<std::string>& description() const { return description_; }
    const std::vector<KeywordItemRef>& items() const { return items_; }
    ///@}

    /// Throws DecodingError.
    static KeywordFile fromJSON(const nlohmann::ordered_json& j);
    /// Throws DepthError for a tree deeper than `maxDepth`.
    nlohmann::ordered_json toJSON() const;

    /// Parses through the nesting check of outside input. Throws DecodingError, or
    /// JSONNestingError for input nested too deep.
    static KeywordFile fromJSONData(std::string_view data, const std::string& source = "keyword library");
    /// Throws FileError when the file can't be read, and as fromJSONData.
    static KeywordFile fromJSONURL(const std::filesystem::path& url);
    // jsonData, exportTo (atomic, owner-only): see JSONFileForm.

    /// Equal descriptions and the same keyword objects.
    friend bool operator==(const KeywordFile&, const KeywordFile&) = default;

private:
    std::optional<std::string> description_;
    std::vector<KeywordItemRef> items_;
};

} // namespace corvane
