#pragma once

#include "corvane/tag_value/TagItem.hpp"

#include <deque>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace corvane::detail {

// Tags that ExifTool names as it reads a file but that are no rows of the catalogue, because
// their names are made from the file's content:
//
// - a language of an alternative text, "XMP:Title-de" or "ICC_Profile:ProfileDescriptionML-fr-FR":
//   the base tag's item under the longer name, writable where the base is writable text in
//   several languages (ExifTool writes such names); a name that was never read is known only for
//   such a base;
// - the Canon raw directory that a JPEG file holds under the group "CIFF" rather than
//   "CanonRaw": the CanonRaw tag's item under the CIFF name, read only;
// - any other name of the families compared with ExifTool (tags of XMP namespaces the catalogue
//   doesn't list, PNG text keywords, ...): read only text, a list where ExifTool gives several
//   values.
//
// Items are made on first use and live as long as the process, like the catalogue's; at most
// `capacity` of them, so that files with endless made-up names can't grow the process without
// bound (past it, such names are not shown). Thread-safe: lookups share a lock, a new item takes
// it alone.
class DynamicTagItems {
public:
    static constexpr std::size_t capacity = 50000;

    static DynamicTagItems& shared();

    // The item of a name the catalogue lacks: one made before, or a language of an alternative
    // text. nullptr otherwise.
    const TagItem* find(std::string_view stream, std::string_view key);
    // The item for a tag that ExifTool printed under the groups g0 and g1 (`stream` is the one
    // the name is filed under: g1 for maker notes, g0 otherwise): `find`, then the CIFF names and
    // the other names of the compared families. nullptr for names of other families.
    const TagItem* itemForRead(std::string_view g0, std::string_view stream, std::string_view key);

    // Whether the text is a language tag as XMP spells them: "de", "en-US", "x-default".
    static bool isLanguage(std::string_view text);

private:
    DynamicTagItems() = default;

    const TagItem* registered(std::string_view stream, std::string_view key) const;
    const TagItem* registerItem(TagItem item);
    // The item of a language of a base tag of the catalogue, made now; nullptr if the name is not
    // one. Only a base of alternative texts counts unless `anyBase` (a name ExifTool printed).
    const TagItem* languageItem(std::string_view stream, std::string_view key, bool anyBase);

    mutable std::shared_mutex mutex_;
    std::deque<TagItem> items_;
    std::unordered_map<std::string, const TagItem*> byName_; // "stream:key"
};

} // namespace corvane::detail
