#pragma once

#include "corvane/helpers/JSONFileForm.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagSection.hpp"
#include "corvane/tag_value/TagStream.hpp"
#include "corvane/utilities/Error.hpp"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <unordered_set>
#include <variant>
#include <vector>

namespace corvane {

class TagItem;

/// The user-arrangeable list of tags that a tag table shows: section headings and tag names, in
/// display order. Everything under a heading, up to the next one, belongs to it. A name the
/// catalogue doesn't know stays in the list (a newer catalogue may know it); only `tagItems()` and
/// the tables skip it.
///
/// JSON: {"entries": [{"type": "section", "value": "Camera"}, {"type": "name", "value":
/// "EXIF:Make"}, ...]}. Reading also accepts the older form, an object from family to its own list
/// of {"type": "sec"|"key", "value": ...}; see `fromJSON`.
class TagSet : public JSONFileForm<TagSet> {
public:
    /// Thrown when a set can't be read: not JSON, or neither of the two forms. Every decoding
    /// failure of this file derives from it.
    class DecodingError : public Error {
    public:
        using Error::Error;
    };

    class FlatEntry;
    class IndexedEntry;
    /// An entry of form `Entry` whose "type" is not one of that form's words; `type()` is the
    /// "type" text as read. Each form has its own, so a caller can tell which reading failed.
    template <class Entry> class EntryCodingError : public DecodingError {
    public:
        /// The error for an entry whose "type" is `type`.
        explicit EntryCodingError(std::string type)
            : DecodingError("Unknown tag set entry of type \"" + type + "\""), type_(std::move(type)) {}
        /// The "type" text as read.
        const std::string& type() const { return type_; }

    private:
        std::string type_;
    };

    /// One entry: a heading or a tag, compared by case and payload.
    class FlatEntry {
    public:
        /// Thrown for a "type" that is neither "section" nor "name" (any case), and for a name that
        /// isn't of the form Family:Key.
        using CodingError = EntryCodingError<FlatEntry>;

        /// A heading entry; a tag entry.
        ///@{
        FlatEntry(TagSection section) : value_(std::move(section)) {}
        FlatEntry(TagName name) : value_(std::move(name)) {}
        ///@}

        /// True for a heading.
        bool isSection() const { return std::holds_alternative<TagSection>(value_); }
        /// Null for a name entry.
        const TagSection* section() const { return std::get_if<TagSection>(&value_); }
        /// Null for a section entry.
        const TagName* name() const { return std::get_if<TagName>(&value_); }
        /// The catalogue's item of a name entry; null for a section or an unknown tag.
        const TagItem* tagItem() const;

        friend bool operator==(const FlatEntry&, const FlatEntry&) = default;

    private:
        std::variant<TagSection, TagName> value_;
    };

    /// An entry of the older form, where each family had its own list: a heading inside that list,
    /// or a key of that family. Only read, and turned into a `FlatEntry` by `flatten`.
    class IndexedEntry {
    public:
        /// Thrown for a "type" that is neither "sec" nor "key" (any case).
        using CodingError = EntryCodingError<IndexedEntry>;

        /// A heading of a family's list; a key of that family.
        ///@{
        IndexedEntry(TagSection section) : value_(std::move(section)) {}
        IndexedEntry(TagKey key) : value_(std::move(key)) {}
        ///@}

        /// The heading, or null for a key; the key, or null for a heading.
        ///@{
        const TagSection* section() const { return std::get_if<TagSection>(&value_); }
        const TagKey* key() const { return std::get_if<TagKey>(&value_); }
        ///@}

        /// A key gives the name of that key in `stream`. A heading gives a heading that starts with
        /// the family's name: heading "Camera" of family XMP becomes "XMP Camera", since the older
        /// form showed each family's list apart.
        FlatEntry flatten(const TagStream& stream) const;
        /// {"type": "sec"|"key", "value": ...}, the shape the older form was written in.
        nlohmann::ordered_json toJSON() const;

        friend bool operator==(const IndexedEntry&, const IndexedEntry&) = default;

    private:
        std::variant<TagSection, TagKey> value_;
    };

    TagSet() = default;
    /// A set of these entries, in display order.
    explicit TagSet(std::vector<FlatEntry> flatEntries) : entries_(std::move(flatEntries)) {}
    /// The older form: the families in ascending order of their names, each family's entries
    /// flattened in their order.
    explicit TagSet(const std::map<TagStream, std::vector<IndexedEntry>>& indexedEntries);

    /// The entries in display order; the second form lets the caller rearrange them.
    ///@{
    const std::vector<FlatEntry>& entries() const { return entries_; }
    std::vector<FlatEntry>& entries() { return entries_; }
    ///@}
    /// True for a set without entries.
    bool isEmpty() const { return entries_.empty(); }
    /// The catalogue items of the name entries, without order or duplicates; unknown tags skipped.
    std::unordered_set<const TagItem*> tagItems() const;

    /// Reads the current form, else the older one. When both fail, the error of the older form's
    /// reading reaches the caller: so a current-form set with one bad entry reports the older
    /// reader's complaint about the first entry, not the bad entry.
    static TagSet fromJSON(const nlohmann::ordered_json& j);
    /// The current JSON form.
    nlohmann::ordered_json toJSON() const;
    // fromJSONData, jsonData, fromJSONURL, exportTo: see JSONFileForm.

    /// The built-in sets, made anew at each call: 11 sections and 73 tags for images, 5 sections
    /// and 31 tags for videos.
    static TagSet forImages();
    static TagSet forVideos(); ///< the same for videos
    /// The tags of those sets sorted by name, without sections or duplicates; built once.
    static const std::vector<const TagItem*>& popularImageTagItems();
    static const std::vector<const TagItem*>& popularVideoTagItems(); ///< the same for the video set
    /// The tags of both sets together.
    static const std::vector<const TagItem*>& popularFileTagItems();

    friend bool operator==(const TagSet&, const TagSet&) = default;

private:
    std::vector<FlatEntry> entries_;
};

} // namespace corvane
