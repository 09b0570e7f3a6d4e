#include "corvane/tag_value/detail/DynamicTagItems.hpp"

#include "corvane/tag_value/TagCatalogue.hpp"

#include <algorithm>
#include <array>
#include <mutex>

namespace corvane::detail {

namespace {

// The families whose every tag is shown, known to the catalogue or not (maker notes are known by
// their group 0 name).
// EXIF and IPTC are left out: ExifTool names their unknown tags only when asked to, and an
// unknown name there is more likely a mistake than a tag of the file.
constexpr std::array<std::string_view, 8> shownFamilies = {"XMP",       "QuickTime",   "PNG",  "GIF",
                                                           "Photoshop", "ICC_Profile", "JFIF", "MakerNotes"};

// The group under which a JPEG file holds the directory of Canon's raw format.
constexpr std::string_view canonRawInJPEG = "CIFF";

bool isAlphaNumeric(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

std::string nameKey(std::string_view stream, std::string_view key) {
    std::string text(stream);
    text += ':';
    text += key;
    return text;
}

} // namespace

DynamicTagItems& DynamicTagItems::shared() {
    static DynamicTagItems items;
    return items;
}

bool DynamicTagItems::isLanguage(std::string_view text) {
    // Subtags of letters and digits joined by hyphens, the first of one to eight letters
    // ("x" and "i" begin private and registered tags).
    std::size_t start = 0;
    bool first = true;
    while (true) {
        const std::size_t end = std::min(text.find('-', start), text.size());
        const std::string_view part = text.substr(start, end - start);
        if (part.empty() || part.size() > 8) return false;
        for (char c : part)
            if (!isAlphaNumeric(c) || (first && c >= '0' && c <= '9')) return false;
        first = false;
        if (end == text.size()) return true;
        start = end + 1;
    }
}

const TagItem* DynamicTagItems::registered(std::string_view stream, std::string_view key) const {
    std::shared_lock lock(mutex_);
    const auto it = byName_.find(nameKey(stream, key));
    return it == byName_.end() ? nullptr : it->second;
}

const TagItem* DynamicTagItems::registerItem(TagItem item) {
    std::unique_lock lock(mutex_);
    const std::string name = nameKey(item.stream().rawValue(), item.key().rawValue());
    if (const auto it = byName_.find(name); it != byName_.end()) return it->second;
    if (items_.size() >= capacity) return nullptr;
    const TagItem* made = &items_.emplace_back(std::move(item));
    byName_.emplace(name, made);
    return made;
}

const TagItem* DynamicTagItems::languageItem(std::string_view stream, std::string_view key, bool anyBase) {
    const auto& catalogue = TagCatalogue::shared();
    // The base's own name may hold hyphens: each one is tried from the left.
    for (std::size_t at = key.find('-'); at != std::string_view::npos; at = key.find('-', at + 1)) {
        const TagItem* base = catalogue.find(stream, key.substr(0, at));
        if (!base || !isLanguage(key.substr(at + 1))) continue;
        const bool alternatives = base->type().value() == TagType::langAlt;
        if (!alternatives && !anyBase) continue;
        return registerItem(TagItem(TagName(TagStream(std::string(stream)), TagKey(std::string(key))),
                                    base->type(), base->count(), base->isWritable() && alternatives,
                                    base->isList(),
                                    base->displayName() + " (" + std::string(key.substr(at + 1)) + ")",
                                    base->choices(), base->hasOpenChoices()));
    }
    return nullptr;
}

const TagItem* DynamicTagItems::find(std::string_view stream, std::string_view key) {
    if (const TagItem* item = registered(stream, key)) return item;
    if (key.find('-') == std::string_view::npos) return nullptr;
    return languageItem(stream, key, false);
}

const TagItem* DynamicTagItems::itemForRead(std::string_view g0, std::string_view stream,
                                            std::string_view key) {
    if (const TagItem* item = find(stream, key)) return item;
    if (key.find('-') != std::string_view::npos)
        if (const TagItem* item = languageItem(stream, key, true)) return item;
    const bool shown = std::find(shownFamilies.begin(), shownFamilies.end(), g0) != shownFamilies.end();
    if (!shown || key.empty()) return nullptr;
    TagName name{TagStream(std::string(stream)), TagKey(std::string(key))};
    if (stream == canonRawInJPEG)
        if (const TagItem* raw = TagCatalogue::shared().find(TagStream::streamCanonRaw.rawValue(), key))
            return registerItem(TagItem(std::move(name), raw->type(), raw->count(), false, raw->isList(),
                                        raw->displayName(), raw->choices(), raw->hasOpenChoices()));
    // Text, one value or several: ExifTool prints a list as an array.
    return registerItem(
        TagItem(std::move(name), TagType(TagType::string), -1, false, true, std::string(key), {}));
}

} // namespace corvane::detail
