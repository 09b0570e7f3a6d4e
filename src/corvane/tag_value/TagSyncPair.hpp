#pragma once

#include "corvane/tag_value/TagName.hpp"

#include <nlohmann/json.hpp>

#include <optional>
#include <string_view>

namespace corvane {

/// One copy of a sync: the value of `from` is set as the value of `to`. Coded in JSON as
/// {"from": "EXIF:DateTimeOriginal", "to": "XMP:CreateDate"}, each name in its "Family:Key" form.
class TagSyncPair {
public:
    /// Copy the value of `from` into `to`.
    TagSyncPair(TagName from, TagName to) : from_(std::move(from)), to_(std::move(to)) {}

    /// The pair a text "FROM>TO" names ("EXIF:DateTimeOriginal>XMP:CreateDate"); nothing when either
    /// side isn't a "Family:Key" name.
    static std::optional<TagSyncPair> fromText(std::string_view text);

    /// The tag read; the tag written.
    ///@{
    const TagName& from() const { return from_; }
    const TagName& to() const { return to_; }
    ///@}

    /// Throws nlohmann::json::exception when a key is missing or not a tag name.
    static TagSyncPair fromJSON(const nlohmann::json& json);
    /// {"from": ..., "to": ...}, as `fromJSON` reads.
    nlohmann::json toJSON() const;

    friend bool operator==(const TagSyncPair&, const TagSyncPair&) = default;

private:
    TagName from_;
    TagName to_;
};

} // namespace corvane

template <> struct std::hash<corvane::TagSyncPair> {
    size_t operator()(const corvane::TagSyncPair& p) const noexcept {
        size_t h = std::hash<corvane::TagName>()(p.from());
        return h ^ (std::hash<corvane::TagName>()(p.to()) + 0x9e3779b97f4a7c15ULL + (h << 6) + (h >> 2));
    }
};
