#include "corvane/tag_editor/TagEditorArrayEditions.hpp"

#include "corvane/preset_support/TagEditorPresets.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/EmbeddedImageAccessor.hpp"
#include "corvane/tag_editor/IPTCAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/XMPAccessor.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <algorithm>

namespace corvane {

void TagEditorArrayEditions::editConcurrently(const Block& block) const {
    EditionManager::Session session;
    concurrentPerform(editors_.size(), [&](std::size_t i) { block(*editors_[i]); });
}

bool TagEditorArrayEditions::anyEditor(const std::function<bool(const TagEditor&)>& predicate) const {
    return std::any_of(editors_.begin(), editors_.end(),
                       [&](const TagEditorRef& e) { return predicate(*e); });
}

// --- Values

void TagEditorArrayEditions::setValues(
    const std::unordered_map<TagName, std::optional<std::string>>& values) const {
    editConcurrently([&](TagEditor& editor) {
        for (const auto& [name, value] : values)
            editor.setValue(value, name);
    });
}

void TagEditorArrayEditions::setValue(const std::optional<std::string>& value,
                                      const std::vector<TagName>& tagNames) const {
    editConcurrently([&](TagEditor& editor) {
        for (const auto& name : tagNames)
            editor.setValue(value, name);
    });
}

void TagEditorArrayEditions::forceValues(const std::vector<TagName>& tagNames) const {
    editConcurrently([&](TagEditor& editor) {
        for (const auto& name : tagNames)
            editor.forceValue(name);
    });
}

void TagEditorArrayEditions::clearValues(const std::vector<TagStream>& tagStreams) const {
    editConcurrently([&](TagEditor& editor) { TagEditorEditions(editor).clearValues(tagStreams); });
}

void TagEditorArrayEditions::restoreValues(const std::vector<TagStream>& tagStreams) const {
    editConcurrently([&](TagEditor& editor) { TagEditorEditions(editor).restoreValues(tagStreams); });
}

void TagEditorArrayEditions::applyDateEdition(const DateEdition& edition,
                                              const std::vector<TagName>& tagNames) const {
    editConcurrently([&](TagEditor& editor) { TagEditorEditions(editor).editDate(edition, tagNames); });
}

void TagEditorArrayEditions::applyPresetEntries(const std::vector<PresetItemEntry>& entries) const {
    editConcurrently([&](TagEditor& editor) { TagEditorPresets(editor).apply(entries); });
}

void TagEditorArrayEditions::applyDateEditionToDateTags(const DateEdition& edition,
                                                        const std::vector<TagStream>& tagStreams) const {
    std::unordered_set<TagStream> streams(tagStreams.begin(), tagStreams.end());
    editConcurrently([&](TagEditor& editor) {
        std::vector<TagName> names;
        for (const TagName& name : editor.currentTagNames()) {
            if (streams.empty() ? name.stream() == TagStream::streamFile : !streams.contains(name.stream()))
                continue;
            const TagItem* item = name.item();
            if (item && item->type().isDateTimeOrPartial()) names.push_back(name);
        }
        TagEditorEditions(editor).editDate(edition, names);
    });
}

// --- Questions

bool TagEditorArrayEditions::haveValues(const std::vector<TagName>& tagNames) const {
    return anyEditor([&](const TagEditor& e) {
        return std::any_of(tagNames.begin(), tagNames.end(),
                           [&](const TagName& n) { return e.currentValue(n); });
    });
}

bool TagEditorArrayEditions::haveOriginalValues(const std::vector<TagName>& tagNames) const {
    return anyEditor([&](const TagEditor& e) {
        return std::any_of(tagNames.begin(), tagNames.end(),
                           [&](const TagName& n) { return e.originalValue(n); });
    });
}

bool TagEditorArrayEditions::haveWrittenValues(const std::vector<TagName>& tagNames) const {
    return anyEditor([&](const TagEditor& e) {
        return std::any_of(tagNames.begin(), tagNames.end(),
                           [&](const TagName& n) { return e.writtenValue(n); });
    });
}

bool TagEditorArrayEditions::isValueEdited(const TagName& tagName) const {
    return anyEditor([&](const TagEditor& e) { return e.isValueEdited(tagName); });
}

bool TagEditorArrayEditions::canEditValue(const TagName& tagName) const {
    return anyEditor([&](const TagEditor& e) { return e.canEditValue(tagName); });
}

std::set<std::string> TagEditorArrayEditions::originalValues(const TagName& tagName) const {
    std::set<std::string> values;
    for (const auto& editor : editors_)
        if (auto value = editor->originalValue(tagName)) values.insert(*value);
    return values;
}

std::set<std::string> TagEditorArrayEditions::currentOrEmptyValues(const TagName& tagName) const {
    std::set<std::string> values;
    for (const auto& editor : editors_)
        values.insert(editor->currentValue(tagName).value_or(std::string()));
    return values;
}

// --- Families

std::optional<GPSLocation> TagEditorArrayEditions::exifGPSLocation() const {
    return commonValue<GPSLocation>([](TagEditor& e) { return EXIFAccessor(e).exifGPSLocation(); });
}
std::optional<GPSLocation> TagEditorArrayEditions::xmpGPSLocation() const {
    return commonValue<GPSLocation>([](TagEditor& e) { return XMPAccessor(e).xmpGPSLocation(); });
}
std::optional<GPSLocation> TagEditorArrayEditions::quicktimeGPSLocation() const {
    return commonValue<GPSLocation>([](TagEditor& e) { return QuickTimeAccessor(e).quicktimeGPSLocation(); });
}
std::optional<TextLocation> TagEditorArrayEditions::iptcTextLocation() const {
    return commonValue<TextLocation>([](TagEditor& e) { return IPTCAccessor(e).iptcTextLocation(); });
}
std::optional<TextLocation> TagEditorArrayEditions::xmpTextLocation() const {
    return commonValue<TextLocation>([](TagEditor& e) { return XMPAccessor(e).xmpTextLocation(); });
}
std::optional<Coordinate> TagEditorArrayEditions::exifGPSCoordinate() const {
    return commonValue<Coordinate>([](TagEditor& e) { return EXIFAccessor(e).exifGPSCoordinate(); });
}
std::optional<Coordinate> TagEditorArrayEditions::xmpGPSCoordinate() const {
    return commonValue<Coordinate>([](TagEditor& e) { return XMPAccessor(e).xmpGPSCoordinate(); });
}
std::optional<Coordinate> TagEditorArrayEditions::quicktimeGPSCoordinate() const {
    return commonValue<Coordinate>(
        [](TagEditor& e) { return QuickTimeAccessor(e).quicktimeGPSCoordinate(); });
}
std::optional<Coordinate> TagEditorArrayEditions::gpsCoordinate() const {
    return commonValue<Coordinate>([](TagEditor& e) { return TagEditorEditions(e).gpsCoordinate(); });
}

void TagEditorArrayEditions::setExifGPSLocation(const TypedTagValue<GPSLocation>& value) const {
    editConcurrently([&](TagEditor& e) { EXIFAccessor(e).setExifGPSLocation(value); });
}
void TagEditorArrayEditions::setXmpGPSLocation(const TypedTagValue<GPSLocation>& value) const {
    editConcurrently([&](TagEditor& e) { XMPAccessor(e).setXmpGPSLocation(value); });
}
void TagEditorArrayEditions::setQuicktimeGPSLocation(const TypedTagValue<GPSLocation>& value) const {
    editConcurrently([&](TagEditor& e) { QuickTimeAccessor(e).setQuicktimeGPSLocation(value); });
}
void TagEditorArrayEditions::setIptcTextLocation(const TypedTagValue<TextLocation>& value) const {
    editConcurrently([&](TagEditor& e) { IPTCAccessor(e).setIptcTextLocation(value); });
}
void TagEditorArrayEditions::setXmpTextLocation(const TypedTagValue<TextLocation>& value) const {
    editConcurrently([&](TagEditor& e) { XMPAccessor(e).setXmpTextLocation(value); });
}
void TagEditorArrayEditions::setGPSCoordinate(const TypedTagValue<Coordinate>& value) const {
    editConcurrently([&](TagEditor& e) { TagEditorEditions(e).setGPSCoordinate(value); });
}

// The remaining family accessors, each the one-editor accessor on every editor of the selection.
#define CORVANE_ARRAY_GET(Type, Accessor, name)                                                              \
    std::optional<Type> TagEditorArrayEditions::name() const {                                               \
        return commonValue<Type>([](TagEditor& e) -> std::optional<Type> { return Accessor(e).name(); });    \
    }
#define CORVANE_ARRAY_ANY(Accessor, name)                                                                    \
    bool TagEditorArrayEditions::name() const {                                                              \
        return std::any_of(editors_.begin(), editors_.end(),                                                 \
                           [](const TagEditorRef& e) { return Accessor(*e).name(); });                       \
    }
#define CORVANE_ARRAY_SET(Argument, Accessor, name)                                                          \
    void TagEditorArrayEditions::name(const Argument& value) const {                                         \
        editConcurrently([&](TagEditor& e) { Accessor(e).name(value); });                                    \
    }
#define CORVANE_ARRAY_SET_PLAIN(Argument, Accessor, name)                                                    \
    void TagEditorArrayEditions::name(Argument value) const {                                                \
        editConcurrently([&](TagEditor& e) { Accessor(e).name(value); });                                    \
    }
#define CORVANE_ARRAY_DO(Accessor, name)                                                                     \
    void TagEditorArrayEditions::name() const {                                                              \
        editConcurrently([](TagEditor& e) { Accessor(e).name(); });                                          \
    }

CORVANE_ARRAY_GET(Latitude, EXIFAccessor, exifGPSLatitude)
CORVANE_ARRAY_GET(Longitude, EXIFAccessor, exifGPSLongitude)
CORVANE_ARRAY_GET(Altitude, EXIFAccessor, exifGPSAltitude)
CORVANE_ARRAY_GET(double, EXIFAccessor, exifGPSImgDirection)
CORVANE_ARRAY_GET(PartialDate, EXIFAccessor, exifGPSDateStamp)
CORVANE_ARRAY_GET(PartialTime, EXIFAccessor, exifGPSTimeStamp)
CORVANE_ARRAY_GET(DateTime, EXIFAccessor, exifGPSStamp)
CORVANE_ARRAY_GET(Date, EXIFAccessor, exifDateTimeOriginal)
CORVANE_ARRAY_GET(Date, EXIFAccessor, exifCreateDate)
CORVANE_ARRAY_SET(TypedTagValue<Latitude>, EXIFAccessor, setExifGPSLatitude)
CORVANE_ARRAY_SET(TypedTagValue<Longitude>, EXIFAccessor, setExifGPSLongitude)
CORVANE_ARRAY_SET(TypedTagValue<Altitude>, EXIFAccessor, setExifGPSAltitude)
CORVANE_ARRAY_SET(TypedTagValue<double>, EXIFAccessor, setExifGPSImgDirection)
CORVANE_ARRAY_SET(TypedTagValue<Coordinate>, EXIFAccessor, setExifGPSCoordinate)
CORVANE_ARRAY_SET(TypedTagValue<GPSLocation>, EXIFAccessor, setExifGPSCoordinate)
CORVANE_ARRAY_SET(TypedTagValue<PartialDate>, EXIFAccessor, setExifGPSDateStamp)
CORVANE_ARRAY_SET(TypedTagValue<PartialTime>, EXIFAccessor, setExifGPSTimeStamp)
CORVANE_ARRAY_SET(TypedTagValue<DateTime>, EXIFAccessor, setExifGPSStamp)
CORVANE_ARRAY_ANY(EXIFAccessor, oneOrMoreExifLocationTagsAreEdited)
CORVANE_ARRAY_ANY(EXIFAccessor, hasOneOrMoreExifLocationValues)

CORVANE_ARRAY_GET(Latitude, XMPAccessor, xmpGPSLatitude)
CORVANE_ARRAY_GET(Longitude, XMPAccessor, xmpGPSLongitude)
CORVANE_ARRAY_GET(Altitude, XMPAccessor, xmpGPSAltitude)
CORVANE_ARRAY_GET(DateTime, XMPAccessor, xmpGPSDateTime)
CORVANE_ARRAY_SET(TypedTagValue<Latitude>, XMPAccessor, setXmpGPSLatitude)
CORVANE_ARRAY_SET(TypedTagValue<Longitude>, XMPAccessor, setXmpGPSLongitude)
CORVANE_ARRAY_SET(TypedTagValue<Altitude>, XMPAccessor, setXmpGPSAltitude)
CORVANE_ARRAY_SET(TypedTagValue<Coordinate>, XMPAccessor, setXmpGPSCoordinate)
CORVANE_ARRAY_SET(TypedTagValue<GPSLocation>, XMPAccessor, setXmpGPSCoordinate)
CORVANE_ARRAY_SET(TypedTagValue<DateTime>, XMPAccessor, setXmpGPSDateTime)
CORVANE_ARRAY_GET(std::string, XMPAccessor, xmpLocationName)
CORVANE_ARRAY_GET(std::string, XMPAccessor, xmpLocationCity)
CORVANE_ARRAY_GET(std::string, XMPAccessor, xmpLocationState)
CORVANE_ARRAY_GET(std::string, XMPAccessor, xmpCountryName)
CORVANE_ARRAY_GET(std::string, XMPAccessor, xmpCountryCode)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, XMPAccessor, setXmpLocationName)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, XMPAccessor, setXMPLocationCity)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, XMPAccessor, setXmpLocationState)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, XMPAccessor, setXMPCountryName)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, XMPAccessor, setXmpCountryCode)
CORVANE_ARRAY_ANY(XMPAccessor, oneOrMoreXmpLocationTagsAreEdited)
CORVANE_ARRAY_ANY(XMPAccessor, hasOneOrMoreXmpLocationValues)

CORVANE_ARRAY_GET(std::string, IPTCAccessor, iptcSubLocation)
CORVANE_ARRAY_GET(std::string, IPTCAccessor, iptcCity)
CORVANE_ARRAY_GET(std::string, IPTCAccessor, iptcProvince_State)
CORVANE_ARRAY_GET(std::string, IPTCAccessor, iptcLocationName)
CORVANE_ARRAY_GET(std::string, IPTCAccessor, iptcLocationCode)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, IPTCAccessor, setIptcSubLocation)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, IPTCAccessor, setIptcCity)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, IPTCAccessor, setIptcProvince_State)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, IPTCAccessor, setIptcLocationName)
CORVANE_ARRAY_SET(TypedTagValue<std::string>, IPTCAccessor, setIptcLocationCode)
CORVANE_ARRAY_ANY(IPTCAccessor, oneOrMoreIptcLocationTagsAreEdited)
CORVANE_ARRAY_ANY(IPTCAccessor, hasOneOrMoreIptcLocationValues)

CORVANE_ARRAY_SET(TypedTagValue<Coordinate>, QuickTimeAccessor, setQuicktimeGPSCoordinate)
CORVANE_ARRAY_SET(TypedTagValue<GPSLocation>, QuickTimeAccessor, setQuicktimeGPSCoordinate)
CORVANE_ARRAY_GET(std::string, QuickTimeAccessor, quicktimeLocationName)
CORVANE_ARRAY_SET(std::optional<std::string>, QuickTimeAccessor, setQuicktimeLocationName)
CORVANE_ARRAY_SET(TypedTagValue<TextLocation>, QuickTimeAccessor, setQuicktimeLocationName)
CORVANE_ARRAY_ANY(QuickTimeAccessor, oneOrMoreQuicktimeLocationTagsAreEdited)
CORVANE_ARRAY_ANY(QuickTimeAccessor, hasOneOrMoreQuicktimeLocationValues)

CORVANE_ARRAY_GET(int, EXIFAccessor, exifOrientationValue)
CORVANE_ARRAY_GET(int, EXIFAccessor, originalExifOrientationValue)
CORVANE_ARRAY_GET(ExifOrientation, EXIFAccessor, exifOrientation)
CORVANE_ARRAY_GET(ExifOrientation, EXIFAccessor, originalExifOrientation)
CORVANE_ARRAY_SET_PLAIN(int, EXIFAccessor, setExifOrientationValue)
CORVANE_ARRAY_SET_PLAIN(ExifOrientation, EXIFAccessor, setExifOrientation)
CORVANE_ARRAY_DO(EXIFAccessor, horizontalFlipExifOrientation)
CORVANE_ARRAY_DO(EXIFAccessor, verticalFlipExifOrientation)
CORVANE_ARRAY_DO(EXIFAccessor, rotateLeftExifOrientation)
CORVANE_ARRAY_DO(EXIFAccessor, rotateRightExifOrientation)
CORVANE_ARRAY_GET(int, QuickTimeAccessor, quicktimeOrientationValue)
CORVANE_ARRAY_GET(int, QuickTimeAccessor, originalQuicktimeOrientationValue)
CORVANE_ARRAY_GET(ExifOrientation, QuickTimeAccessor, quicktimeOrientation)
CORVANE_ARRAY_GET(ExifOrientation, QuickTimeAccessor, originalQuicktimeOrientation)
CORVANE_ARRAY_SET_PLAIN(int, QuickTimeAccessor, setQuicktimeOrientationValue)
CORVANE_ARRAY_SET_PLAIN(ExifOrientation, QuickTimeAccessor, setQuicktimeOrientation)
CORVANE_ARRAY_DO(QuickTimeAccessor, horizontalFlipQuicktimeOrientation)
CORVANE_ARRAY_DO(QuickTimeAccessor, verticalFlipQuicktimeOrientation)
CORVANE_ARRAY_DO(QuickTimeAccessor, rotateLeftQuicktimeOrientation)
CORVANE_ARRAY_DO(QuickTimeAccessor, rotateRightQuicktimeOrientation)

CORVANE_ARRAY_ANY(EmbeddedImageAccessor, hasCurrentExifThumbnail)
CORVANE_ARRAY_ANY(EmbeddedImageAccessor, hasOriginalExifThumbnail)
CORVANE_ARRAY_ANY(EmbeddedImageAccessor, isExifThumbnailEdited)
CORVANE_ARRAY_DO(EmbeddedImageAccessor, clearExifThumbnail)
CORVANE_ARRAY_DO(EmbeddedImageAccessor, restoreExifThumbnail)
CORVANE_ARRAY_ANY(EmbeddedImageAccessor, hasCurrentExifPreview)
CORVANE_ARRAY_ANY(EmbeddedImageAccessor, hasOriginalExifPreview)
CORVANE_ARRAY_ANY(EmbeddedImageAccessor, isExifPreviewEdited)
CORVANE_ARRAY_DO(EmbeddedImageAccessor, clearExifPreview)
CORVANE_ARRAY_DO(EmbeddedImageAccessor, restoreExifPreview)

#undef CORVANE_ARRAY_GET
#undef CORVANE_ARRAY_ANY
#undef CORVANE_ARRAY_SET
#undef CORVANE_ARRAY_SET_PLAIN
#undef CORVANE_ARRAY_DO

std::optional<Location> TagEditorArrayEditions::location() const {
    auto gps = exifGPSLocation();
    if (!gps) gps = xmpGPSLocation();
    if (!gps) gps = quicktimeGPSLocation();
    if (!gps) return std::nullopt;
    auto text = iptcTextLocation();
    if (!text) text = xmpTextLocation();
    return Location(*gps, text);
}

void TagEditorArrayEditions::setLocation(const TypedTagValue<Location>& value) const {
    editConcurrently([&](TagEditor& e) { TagEditorEditions(e).setLocation(value); });
}

// --- Orientation

void TagEditorArrayEditions::setOrientationValue(int value) const {
    editConcurrently([&](TagEditor& e) { TagEditorEditions(e).setOrientationValue(value); });
}
void TagEditorArrayEditions::horizontalFlipOrientation() const {
    editConcurrently([](TagEditor& e) { TagEditorEditions(e).horizontalFlipOrientation(); });
}
void TagEditorArrayEditions::verticalFlipOrientation() const {
    editConcurrently([](TagEditor& e) { TagEditorEditions(e).verticalFlipOrientation(); });
}
void TagEditorArrayEditions::rotateLeftOrientation() const {
    editConcurrently([](TagEditor& e) { TagEditorEditions(e).rotateLeftOrientation(); });
}
void TagEditorArrayEditions::rotateRightOrientation() const {
    editConcurrently([](TagEditor& e) { TagEditorEditions(e).rotateRightOrientation(); });
}

// --- Copy and paste

std::vector<TagPair> TagEditorArrayEditions::copyTags(const std::vector<TagName>& tagNames,
                                                      TagPasteboard& pasteboard) const {
    std::vector<TagPair> pairs;
    if (!editors_.empty())
        for (const TagName& name : tagNames) {
            auto values = currentOrEmptyValues(name);
            // Only where all editors agree; a tag none of them holds is no value to paste.
            if (values.size() == 1 && !values.begin()->empty()) pairs.emplace_back(name, *values.begin());
        }
    pasteboard.setMultipleValues(pairs);
    return pairs;
}

std::vector<TagPair> TagEditorArrayEditions::copyTags(const std::vector<TagStream>& tagStreams,
                                                      TagPasteboard& pasteboard) const {
    std::vector<TagName> names;
    for (const TagStream& stream : tagStreams)
        for (const TagItem* item : stream.items())
            names.push_back(item->name());
    return copyTags(names, pasteboard);
}

void TagEditorArrayEditions::pasteTags(const std::vector<TagName>& tagNames,
                                       TagPasteboard& pasteboard) const {
    std::unordered_set<TagName> wanted(tagNames.begin(), tagNames.end());
    std::unordered_map<TagName, std::optional<std::string>> values;
    for (const TagPair& pair : pasteboard.multipleValues())
        if (wanted.contains(pair.name())) values[pair.name()] = pair.value();
    if (!values.empty()) setValues(values);
}

void TagEditorArrayEditions::pasteTags(bool clearOther, TagPasteboard& pasteboard) const {
    // Normalised once, not per editor; pairs without a catalogue item are dropped.
    std::vector<std::pair<TagName, std::optional<std::string>>> values;
    std::unordered_set<TagStream> streams;
    for (const TagPair& pair : pasteboard.multipleValues()) {
        const TagItem* item = pair.name().item();
        if (!item) continue;
        std::optional<std::string> value = TagValueClear;
        if (!pair.value().empty()) {
            value = item->converter()->stringValueFromStringValue(pair.value());
            if (!value) continue;
        }
        values.emplace_back(item->name(), std::move(value));
        streams.insert(item->stream());
    }
    if (values.empty()) return;
    editConcurrently([&](TagEditor& editor) {
        if (clearOther) TagEditorEditions(editor).setValueEvaluatedTagsOfStreams(TagValueClear, streams);
        for (const auto& [name, value] : values)
            editor.setValue(value, name);
    });
}

} // namespace corvane
