#pragma once

#include "corvane/tag_set/TagSet.hpp"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// A tag set on disk, with the user's description of it.
///
/// Written as {"description": ..., "tag_set": {...}} in that order, an absent description as the
/// empty text. Reading is lenient about the wrapper: an unreadable description is left absent, and
/// a file without a readable "tag_set" is read whole as a bare `TagSet` (current or older form), so
/// an exported set opens as a file. Only the error of that last reading reaches the caller
/// (`TagSet::DecodingError` or one of its subclasses).
class TagSetFile : public JSONFileForm<TagSetFile> {
public:
    /// What a file that can't be read throws.
    using DecodingError = TagSet::DecodingError;

    TagSetFile() = default;
    /// A file of this set, with an optional description.
    TagSetFile(std::optional<std::string> description, TagSet tagSet)
        : description_(std::move(description)), tagSet_(std::move(tagSet)) {}

    /// The user's description; the set.
    ///@{
    const std::optional<std::string>& description() const { return description_; }
    const TagSet& tagSet() const { return tagSet_; }
    ///@}

    /// Reads the file form as described above.
    static TagSetFile fromJSON(const nlohmann::ordered_json& j);
    /// The file form, description first.
    nlohmann::ordered_json toJSON() const;
    // fromJSONData, jsonData, fromJSONURL, exportTo: see JSONFileForm.

    friend bool operator==(const TagSetFile&, const TagSetFile&) = default;

private:
    std::optional<std::string> description_;
    TagSet tagSet_;
};

} // namespace corvane
