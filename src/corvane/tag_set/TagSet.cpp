#include "corvane/tag_set/TagSet.hpp"

#include "corvane/tag_value/TagItem.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cctype>
#include <set>

namespace corvane {

namespace {

using json = nlohmann::ordered_json;

std::string lowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// The "type" and "value" texts of an entry object.
std::pair<std::string, std::string> typeAndValue(const json& j) {
    if (!j.is_object()) throw TagSet::DecodingError("A tag set entry is not an object");
    const auto type = j.find("type");
    const auto value = j.find("value");
    if (type == j.end() || !type->is_string() || value == j.end() || !value->is_string())
        throw TagSet::DecodingError("A tag set entry lacks its \"type\" or \"value\" text");
    return {type->get<std::string>(), value->get<std::string>()};
}

TagSet::FlatEntry flatEntryFromJSON(const json& j) {
    auto [type, value] = typeAndValue(j);
    const std::string kind = lowercased(type);
    if (kind == "section") return TagSection(std::move(value));
    if (kind == "name")
        if (auto name = TagName::fromRawValue(value)) return std::move(*name);
    throw TagSet::FlatEntry::CodingError(std::move(type));
}

TagSet::IndexedEntry indexedEntryFromJSON(const json& j) {
    auto [type, value] = typeAndValue(j);
    const std::string kind = lowercased(type);
    if (kind == "sec") return TagSection(std::move(value));
    if (kind == "key") return TagKey(std::move(value));
    throw TagSet::IndexedEntry::CodingError(std::move(type));
}

std::vector<TagSet::FlatEntry> currentForm(const json& j) {
    if (!j.is_object()) throw TagSet::DecodingError("A tag set is not an object");
    const auto list = j.find("entries");
    if (list == j.end() || !list->is_array()) throw TagSet::DecodingError("A tag set lacks its \"entries\"");
    std::vector<TagSet::FlatEntry> entries;
    entries.reserve(list->size());
    for (const auto& entry : *list)
        entries.push_back(flatEntryFromJSON(entry));
    return entries;
}

std::map<TagStream, std::vector<TagSet::IndexedEntry>> legacyForm(const json& j) {
    if (!j.is_object()) throw TagSet::DecodingError("A tag set is not an object");
    std::map<TagStream, std::vector<TagSet::IndexedEntry>> streams;
    for (const auto& [stream, list] : j.items()) {
        if (!list.is_array()) throw TagSet::DecodingError("The entries of \"" + stream + "\" are not a list");
        auto& entries = streams[TagStream(stream)];
        for (const auto& entry : list)
            entries.push_back(indexedEntryFromJSON(entry));
    }
    return streams;
}

std::vector<const TagItem*> sortedItems(const std::unordered_set<const TagItem*>& items) {
    std::vector<const TagItem*> sorted(items.begin(), items.end());
    std::sort(sorted.begin(), sorted.end(), [](const TagItem* a, const TagItem* b) { return *a < *b; });
    return sorted;
}

} // namespace

const TagItem* TagSet::FlatEntry::tagItem() const {
    const TagName* tagName = name();
    return tagName ? tagName->item() : nullptr;
}

TagSet::FlatEntry TagSet::IndexedEntry::flatten(const TagStream& stream) const {
    if (const TagKey* k = key()) return TagName(stream, *k);
    return TagSection(stream.rawValue() + " " + section()->rawValue());
}

json TagSet::IndexedEntry::toJSON() const {
    if (const TagKey* k = key()) return json{{"type", "key"}, {"value", k->rawValue()}};
    return json{{"type", "sec"}, {"value", section()->rawValue()}};
}

TagSet::TagSet(const std::map<TagStream, std::vector<IndexedEntry>>& indexedEntries) {
    // std::map already holds the families in ascending order of their names.
    for (const auto& [stream, entries] : indexedEntries)
        for (const auto& entry : entries)
            entries_.push_back(entry.flatten(stream));
}

std::unordered_set<const TagItem*> TagSet::tagItems() const {
    std::unordered_set<const TagItem*> items;
    for (const auto& entry : entries_)
        if (const TagItem* item = entry.tagItem()) items.insert(item);
    return items;
}

TagSet TagSet::fromJSON(const json& j) {
    try {
        return TagSet(currentForm(j));
    } catch (const std::exception&) {
        // Sets written by earlier versions hold one list per family; only that reading's error
        // is reported.
    }
    try {
        return TagSet(legacyForm(j));
    } catch (const DecodingError&) {
        throw;
    } catch (const std::exception& e) {
        throw DecodingError(e.what());
    }
}

json TagSet::toJSON() const {
    json list = json::array();
    for (const auto& entry : entries_) {
        if (const TagSection* section = entry.section())
            list.push_back(json{{"type", "section"}, {"value", section->rawValue()}});
        else
            list.push_back(json{{"type", "name"}, {"value", entry.name()->rawValue()}});
    }
    return json{{"entries", std::move(list)}};
}

// --- Built-in sets

namespace {

struct Group {
    const char* section;
    std::vector<const TagItem& (*)()> items;
};

TagSet makeSet(const std::vector<Group>& groups) {
    std::vector<TagSet::FlatEntry> entries;
    for (const auto& group : groups) {
        entries.emplace_back(TagSection(group.section));
        for (auto item : group.items)
            entries.emplace_back(item().name());
    }
    return TagSet(std::move(entries));
}

} // namespace

TagSet TagSet::forImages() {
    using I = TagItem;
    return makeSet({
        {"File", {I::itemFileFileName, I::itemFileFilePath, I::itemFileMDItemUserTags}},
        {"General", {I::itemEXIFArtist, I::itemIPTCBy_line, I::itemIPTCBy_lineTitle, I::itemIPTCContact}},
        {"Information",
         {I::itemEXIFImageDescription, I::itemEXIFCopyright, I::itemEXIFSoftware, I::itemEXIFUserComment,
          I::itemIPTCHeadline, I::itemIPTCCaption_Abstract, I::itemIPTCObjectName, I::itemIPTCKeywords,
          I::itemXMPSubject, I::itemXMPKeyword}},
        {"Date and Time",
         {I::itemFileFileCreateDate, I::itemFileFileModifyDate, I::itemEXIFDateTimeOriginal,
          I::itemEXIFCreateDate, I::itemEXIFModifyDate, I::itemIPTCDateCreated, I::itemIPTCTimeCreated,
          I::itemXMPCreateDate, I::itemXMPModifyDate}},
        {"Camera", {I::itemEXIFMake, I::itemEXIFModel, I::itemEXIFSerialNumber}},
        {"Camera Settings",
         {I::itemEXIFISO, I::itemEXIFFNumber, I::itemEXIFApertureValue, I::itemEXIFShutterSpeedValue,
          I::itemEXIFFocalLength, I::itemEXIFFocalLengthIn35mmFormat, I::itemEXIFExposureCompensation,
          I::itemEXIFFlash}},
        {"Advanced Settings",
         {I::itemEXIFColorSpace, I::itemEXIFMaxApertureValue, I::itemEXIFExposureMode,
          I::itemEXIFExposureProgram, I::itemEXIFExposureTime, I::itemEXIFMeteringMode,
          I::itemEXIFWhiteBalance, I::itemEXIFSaturation, I::itemEXIFSharpness}},
        {"Lens",
         {I::itemEXIFLensMake, I::itemEXIFLens, I::itemEXIFLensModel, I::itemEXIFLensSerialNumber,
          I::itemXMPLens, I::itemXMPLensInfo, I::itemXMPFocalLength}},
        {"Dimension And Resolution",
         {I::itemEXIFOrientation, I::itemEXIFImageWidth, I::itemEXIFImageHeight, I::itemEXIFExifImageWidth,
          I::itemEXIFExifImageHeight, I::itemEXIFXResolution, I::itemEXIFYResolution}},
        {"GPS Coordinates",
         {I::itemEXIFGPSLatitude, I::itemEXIFGPSLatitudeRef, I::itemEXIFGPSLongitude,
          I::itemEXIFGPSLongitudeRef, I::itemEXIFGPSAltitude, I::itemEXIFGPSAltitudeRef,
          I::itemEXIFGPSDateStamp, I::itemEXIFGPSTimeStamp}},
        {"Location Address",
         {I::itemIPTCCity, I::itemIPTCProvince_State, I::itemIPTCSub_location,
          I::itemIPTCCountry_PrimaryLocationName, I::itemIPTCCountry_PrimaryLocationCode}},
    });
}

TagSet TagSet::forVideos() {
    using I = TagItem;
    return makeSet({
        {"File", {I::itemFileFileName, I::itemFileFilePath, I::itemFileMDItemUserTags}},
        {"General",
         {I::itemQuickTimeArtwork, I::itemQuickTimeCoverArt, I::itemQuickTimeName,
          I::itemQuickTimeDisplayName, I::itemQuickTimeTitle, I::itemQuickTimeAuthor,
          I::itemQuickTimeSortName, I::itemQuickTimeModel, I::itemQuickTimeDescription,
          I::itemQuickTimeLongDescription, I::itemQuickTimeCopyright}},
        {"Information",
         {I::itemQuickTimeArtist, I::itemQuickTimePerformer, I::itemQuickTimeProducer,
          I::itemQuickTimeArtDirector, I::itemQuickTimeComposer, I::itemQuickTimeCategory,
          I::itemQuickTimePodcast, I::itemQuickTimeKeyword}},
        {"Date and Time",
         {I::itemFileFileCreateDate, I::itemFileFileModifyDate, I::itemQuickTimeContentCreateDate,
          I::itemQuickTimeReleaseDate, I::itemQuickTimePurchaseDate, I::itemXMPCreateDate,
          I::itemXMPModifyDate}},
        {"GPS And Location", {I::itemQuickTimeGPSCoordinates, I::itemQuickTimeLocationName}},
    });
}

const std::vector<const TagItem*>& TagSet::popularImageTagItems() {
    static const std::vector<const TagItem*> items = sortedItems(forImages().tagItems());
    return items;
}

const std::vector<const TagItem*>& TagSet::popularVideoTagItems() {
    static const std::vector<const TagItem*> items = sortedItems(forVideos().tagItems());
    return items;
}

const std::vector<const TagItem*>& TagSet::popularFileTagItems() {
    static const std::vector<const TagItem*> items = [] {
        auto all = forImages().tagItems();
        all.merge(forVideos().tagItems());
        return sortedItems(all);
    }();
    return items;
}

} // namespace corvane
