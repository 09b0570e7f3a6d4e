#include "corvane/tag_editor/TagEditorEditions.hpp"

#include "corvane/helpers/WhiteSpace.hpp"

#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/IPTCAccessor.hpp"
#include "corvane/tag_editor/OrientationAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/XMPAccessor.hpp"
#include "corvane/tag_editor/detail/PrettyText.hpp"
#include "corvane/value_models/DateTime.hpp"
#include "corvane/value_models/GPSLocation.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"
#include "corvane/value_models/PartialDate.hpp"
#include "corvane/value_models/PartialTime.hpp"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <variant>

namespace corvane {

namespace {

enum class DateKind { full, dateOnly, timeOnly, none };

DateKind dateKind(TagType type) {
    switch (type.value()) {
    case TagType::dateTime:
    case TagType::localDateTime:
    case TagType::dateTimeZone:
        return DateKind::full;
    case TagType::date:
    case TagType::partialDate:
        return DateKind::dateOnly;
    case TagType::time:
    case TagType::partialTime:
        return DateKind::timeOnly;
    default:
        return DateKind::none;
    }
}

std::optional<Date> dateOf(const DynamicValue& value) {
    if (const Date* date = value.dateValue()) return *date;
    if (const PartialDate* date = value.partialDateValue()) return date->date();
    if (const PartialTime* time = value.partialTimeValue()) return time->date();
    return std::nullopt;
}

std::optional<std::int64_t> integerOf(const DynamicValue& value) {
    if (const auto* i = value.intValue()) return *i;
    if (const auto* u = value.uintValue()) return static_cast<std::int64_t>(*u);
    if (const auto* n = value.numberValue()) return n->integerValue();
    if (const auto* d = value.doubleValue()) return static_cast<std::int64_t>(*d);
    return std::nullopt;
}

// The elements of a list value as strings; nothing when it isn't a list of texts.
std::optional<StringArray> stringElements(const DynamicValue& value) {
    if (const auto* strings = value.stringArrayValue()) return *strings;
    const auto* array = value.arrayValue();
    if (!array) return std::nullopt;
    StringArray strings;
    strings.reserve(array->size());
    for (const auto& element : *array) {
        const auto* text = element.stringValue();
        if (!text) return std::nullopt;
        strings.push_back(*text);
    }
    return strings;
}

template <class F> std::string mapCase(const std::string& text, F&& transform) {
    icu::UnicodeString u = icu::UnicodeString::fromUTF8(text);
    transform(u);
    std::string result;
    u.toUTF8String(result);
    return result;
}

} // namespace

// --- Format

std::optional<MediaType> TagEditorEditions::type() const {
    return editor().mediaType();
}

std::optional<MediaKind> TagEditorEditions::kind() const {
    auto t = type();
    if (!t) return std::nullopt;
    return t->kind();
}

bool TagEditorEditions::prefersQuicktime() const {
    auto t = type();
    if (!t) return false;
    if (!t->access(TagStream::streamQuickTime).canBeCreated()) return false;
    return t->kind() == MediaKind::movie || !t->access(TagStream::streamEXIF).canBeCreated();
}

bool TagEditorEditions::canWriteFamily(const TagStream& stream) const {
    auto t = type();
    // Without a known format the storage's own access rules decide, tag by tag.
    return !t || t->access(stream).canBeEdited();
}

// --- Values

DynamicValue TagEditorEditions::currentNativeValue(const TagName& tagName) const {
    const TagItem* item = tagName.item();
    return item ? currentNativeValue(*item) : DynamicValue();
}

void TagEditorEditions::setNativeValue(const DynamicValue& value, const TagName& tagName) const {
    if (const TagItem* item = tagName.item()) setNativeValue(value, *item);
}

void TagEditorEditions::copyValue(const TagName& from, const TagName& to) const {
    const TagItem* source = from.item();
    const TagItem* target = to.item();
    if (source && target) copyValue(*source, *target);
}

void TagEditorEditions::copyValue(const TagItem& from, const TagItem& to) const {
    if (from.type().isDateTimeOrPartial() && to.type().isDateTimeOrPartial()) {
        copyDate(from, to);
        return;
    }
    auto value = currentString(from);
    if (!value) return;
    if (auto text = to.stringValueFromNativeValue(from.nativeValueFromStringValue(value)))
        setString(text, to);
}

void TagEditorEditions::copyDate(const TagName& from, const TagName& to) const {
    const TagItem* source = from.item();
    const TagItem* target = to.item();
    if (source && target) copyDate(*source, *target);
}

void TagEditorEditions::copyDate(const TagItem& from, const TagItem& to) const {
    DateKind sourceKind = dateKind(from.type());
    DateKind targetKind = dateKind(to.type());
    if (sourceKind == DateKind::none || targetKind == DateKind::none) return;
    auto sourceDate = dateOf(currentNativeValue(from));
    if (!sourceDate) return;

    std::optional<Date> date;
    if (sourceKind == targetKind || sourceKind == DateKind::full) {
        // The target's converter keeps what its kind holds.
        date = sourceDate;
    } else if (targetKind == DateKind::full) {
        auto targetDate = dateOf(currentNativeValue(to));
        if (sourceKind == DateKind::dateOnly)
            date = targetDate ? DateTime(PartialDate(*sourceDate), PartialTime(*targetDate)).date()
                              : PartialDate(*sourceDate).date();
        else if (targetDate)
            date = DateTime(PartialDate(*targetDate), PartialTime(*sourceDate)).date();
    }
    if (!date) return;
    if (auto text = to.stringValueFromNativeValue(DynamicValue(*date))) setString(text, to);
}

void TagEditorEditions::setValueReferencedTagsOfStreams(const std::optional<std::string>& value,
                                                        const std::vector<TagStream>& tagStreams) const {
    EditionManager::Session session(editor().manager());
    for (const TagStream& stream : tagStreams)
        for (const TagItem* item : stream.items())
            editor().setValue(value, item->name());
}

void TagEditorEditions::setValueEvaluatedTagsOfStreams(
    const std::optional<std::string>& value, const std::unordered_set<TagStream>& tagStreams) const {
    EditionManager::Session session(editor().manager());
    for (const TagName& name : editor().currentTagNames())
        if (tagStreams.contains(name.stream())) editor().setValue(value, name);
}

void TagEditorEditions::clearValues(const std::vector<TagStream>& tagStreams) const {
    if (editor().isFolder())
        setValueReferencedTagsOfStreams(TagValueClear, tagStreams);
    else
        setValueEvaluatedTagsOfStreams(TagValueClear, {tagStreams.begin(), tagStreams.end()});
}

void TagEditorEditions::restoreValues(const std::vector<TagStream>& tagStreams) const {
    if (editor().isFolder()) {
        setValueReferencedTagsOfStreams(TagValueRestore, tagStreams);
        return;
    }
    // A restore must reach edited tags the file doesn't hold (a value added, or a tag of the
    // file cleared): current names alone would miss a cleared tag.
    std::unordered_set<TagStream> streams(tagStreams.begin(), tagStreams.end());
    EditionManager::Session session(editor().manager());
    for (const TagName& name : editor().writtenTagNames())
        if (streams.contains(name.stream())) editor().setValue(TagValueRestore, name);
}

// --- Text

bool TagEditorEditions::isTextType(TagType type) {
    return type.isShortString() || type.value() == TagType::longString || type.value() == TagType::string;
}

void TagEditorEditions::transformText(const TagItem& item, const TextTransform& transform) const {
    if (!isTextType(item.type())) return;
    auto value = currentString(item);
    if (!value) return;
    if (item.isInSequence()) {
        auto elements = stringElements(item.nativeValueFromStringValue(value));
        if (!elements) return;
        for (auto& element : *elements)
            element = transform(element);
        setNativeValue(DynamicValue(std::move(*elements)), item);
        return;
    }
    setString(transform(*value), item);
}

std::string TagEditorEditions::lowercased(const std::string& text) {
    return mapCase(text, [](icu::UnicodeString& u) { u.toLower(icu::Locale::getRoot()); });
}

std::string TagEditorEditions::uppercased(const std::string& text) {
    return mapCase(text, [](icu::UnicodeString& u) { u.toUpper(icu::Locale::getRoot()); });
}

std::string TagEditorEditions::capitalized(const std::string& text) {
    return mapCase(text, [](icu::UnicodeString& u) { u.toTitle(nullptr, icu::Locale::getRoot()); });
}

std::string TagEditorEditions::trimmed(const std::string& text) {
    return std::string(trimUnicodeWhiteSpace(text));
}

void TagEditorEditions::lowercaseText(const TagItem& item) const {
    transformText(item, lowercased);
}
void TagEditorEditions::uppercaseText(const TagItem& item) const {
    transformText(item, uppercased);
}
void TagEditorEditions::capitalizeText(const TagItem& item) const {
    transformText(item, capitalized);
}
void TagEditorEditions::trimWhitespacesText(const TagItem& item) const {
    transformText(item, trimmed);
}

void TagEditorEditions::sortKeywords(const TagItem& item, bool ascending) const {
    if (!item.isInSequence()) return;
    auto value = currentString(item);
    if (!value) return;
    auto elements = stringElements(item.nativeValueFromStringValue(value));
    if (!elements) return;
    if (ascending)
        std::stable_sort(elements->begin(), elements->end());
    else
        std::stable_sort(elements->begin(), elements->end(), std::greater<>());
    setNativeValue(DynamicValue(std::move(*elements)), item);
}

void TagEditorEditions::ascendingSortKeywords(const TagItem& item) const {
    sortKeywords(item, true);
}
void TagEditorEditions::descendingSortKeywords(const TagItem& item) const {
    sortKeywords(item, false);
}

// --- Dates

void TagEditorEditions::editDate(const DateEdition& edition, const TagItem& item) const {
    if (!item.type().isDateTimeOrPartial()) return;
    const auto& kind = edition.value();
    if (std::holds_alternative<DateEdition::Restore>(kind)) {
        setString(TagValueRestore, item);
        return;
    }
    if (std::holds_alternative<DateEdition::Remove>(kind)) {
        setString(TagValueClear, item);
        return;
    }
    std::optional<Date> date;
    if (const auto* select = std::get_if<DateEdition::Select>(&kind)) {
        date = select->values.date();
    } else {
        auto current = dateOf(currentNativeValue(item));
        if (!current) return;
        if (const auto* update = std::get_if<DateEdition::Update>(&kind))
            date = update->values.updateDate(current);
        else if (const auto* shift = std::get_if<DateEdition::Shift>(&kind))
            date = shift->values.shiftDate(current);
    }
    if (!date) return;
    if (auto text = item.stringValueFromNativeValue(DynamicValue(*date))) setString(text, item);
}

namespace {

// A date tag and the time tag that completes it: one moment in two tags.
struct DateTimePair {
    const TagItem* date;
    const TagItem* time;
};

const std::vector<DateTimePair>& dateTimePairs() {
    static const std::vector<DateTimePair> pairs = [] {
        const std::pair<const char*, const char*> names[] = {
            {"IPTC:DateCreated", "IPTC:TimeCreated"},
            {"IPTC:DigitalCreationDate", "IPTC:DigitalCreationTime"},
            {"IPTC:ReleaseDate", "IPTC:ReleaseTime"},
            {"IPTC:ExpirationDate", "IPTC:ExpirationTime"},
            {"IPTC:DateSent", "IPTC:TimeSent"},
            {"EXIF:GPSDateStamp", "EXIF:GPSTimeStamp"},
        };
        std::vector<DateTimePair> found;
        for (const auto& [date, time] : names) {
            const auto dateName = TagName::fromRawValue(date);
            const auto timeName = TagName::fromRawValue(time);
            const TagItem* dateItem = dateName ? dateName->item() : nullptr;
            const TagItem* timeItem = timeName ? timeName->item() : nullptr;
            if (dateItem && timeItem) found.push_back({dateItem, timeItem});
        }
        return found;
    }();
    return pairs;
}

} // namespace

bool TagEditorEditions::editDatePair(const DateEdition& edition, const TagItem& dateItem,
                                     const TagItem& timeItem) const {
    const auto& kind = edition.value();
    if (std::holds_alternative<DateEdition::Restore>(kind) ||
        std::holds_alternative<DateEdition::Remove>(kind) ||
        std::holds_alternative<DateEdition::Select>(kind))
        return false;
    const auto day = dateOf(currentNativeValue(dateItem));
    const auto time = dateOf(currentNativeValue(timeItem));
    if (!day || !time) return false;
    // The day of the one and the time of the other, on the time's own offset if it has one.
    const DateComponents dayFields = GregorianCalendar::components(*day);
    const DateComponents timeFields = GregorianCalendar::components(*time);
    DateComponents joined = DateComponents::fromFields(dayFields.year, dayFields.month, dayFields.day,
                                                       timeFields.hour, timeFields.minute, timeFields.second);
    if (time->ownOffset())
        joined.timeZoneIdentifier = GregorianCalendar::offsetZoneIdentifier(*time->ownOffset());
    auto moment = GregorianCalendar::date(joined);
    if (!moment) return false;
    moment = moment->withPresentation(time->ownOffset(), 0);
    std::optional<Date> result;
    if (const auto* update = std::get_if<DateEdition::Update>(&kind))
        result = update->values.updateDate(moment);
    else if (const auto* shift = std::get_if<DateEdition::Shift>(&kind))
        result = shift->values.shiftDate(moment);
    if (!result) return true;
    // Both halves are written on the moment's own wall clock, so a time moved past midnight moves
    // the day with it.
    auto dayText = dateItem.stringValueFromNativeValue(DynamicValue(*result));
    auto timeText = timeItem.stringValueFromNativeValue(DynamicValue(*result));
    if (dayText && timeText) {
        setString(dayText, dateItem);
        setString(timeText, timeItem);
    }
    return true;
}

void TagEditorEditions::editDate(const DateEdition& edition, const std::vector<TagName>& tagNames) const {
    EditionManager::Session session(editor().manager());
    std::vector<const TagItem*> items;
    for (const TagName& name : tagNames)
        if (const TagItem* item = name.item()) items.push_back(item);
    // A date and its time move together, as one moment, when either is named.
    std::vector<const TagItem*> done;
    for (const DateTimePair& pair : dateTimePairs()) {
        const bool named = std::find(items.begin(), items.end(), pair.date) != items.end() ||
                           std::find(items.begin(), items.end(), pair.time) != items.end();
        if (named && editDatePair(edition, *pair.date, *pair.time)) {
            done.push_back(pair.date);
            done.push_back(pair.time);
        }
    }
    for (const TagItem* item : items)
        if (std::find(done.begin(), done.end(), item) == done.end()) editDate(edition, *item);
}

std::optional<std::string> TagEditorEditions::rawValue(const TagName& of, const TagName& forTag) const {
    const TagItem* source = of.item();
    const TagItem* target = forTag.item();
    if (!source || !target) return std::nullopt;
    auto value = currentString(*source);
    if (!value) return std::nullopt;
    return target->stringValueFromNativeValue(source->nativeValueFromStringValue(value));
}

std::optional<std::string> TagEditorEditions::prettyValue(const TagName& of, const TagName& forTag) const {
    const TagItem* source = of.item();
    if (!source || !forTag.item()) return std::nullopt;
    // A list item's converter is the list converter: it formats element by element.
    return detail::prettyText(*source, currentString(*source));
}

// --- Orientation

const TagItem& TagEditorEditions::orientationItem() const {
    return prefersQuicktime() ? TagItem::itemQuickTimeVideoOrientation() : TagItem::itemEXIFOrientation();
}

int TagEditorEditions::orientationValue() const {
    return OrientationAccessor(editor(), orientationItem()).orientationValue();
}
int TagEditorEditions::originalOrientationValue() const {
    return OrientationAccessor(editor(), orientationItem()).originalOrientationValue();
}
void TagEditorEditions::setOrientationValue(int value) const {
    OrientationAccessor(editor(), orientationItem()).setClampedOrientationValue(value);
}
ExifOrientation TagEditorEditions::orientation() const {
    return OrientationAccessor(editor(), orientationItem()).orientation();
}
ExifOrientation TagEditorEditions::originalOrientation() const {
    return OrientationAccessor(editor(), orientationItem()).originalOrientation();
}
void TagEditorEditions::setOrientation(ExifOrientation orientation) const {
    OrientationAccessor(editor(), orientationItem()).setOrientation(orientation);
}
void TagEditorEditions::horizontalFlipOrientation() const {
    OrientationAccessor(editor(), orientationItem()).horizontalFlipOrientation();
}
void TagEditorEditions::verticalFlipOrientation() const {
    OrientationAccessor(editor(), orientationItem()).verticalFlipOrientation();
}
void TagEditorEditions::rotateLeftOrientation() const {
    OrientationAccessor(editor(), orientationItem()).rotateLeftOrientation();
}
void TagEditorEditions::rotateRightOrientation() const {
    OrientationAccessor(editor(), orientationItem()).rotateRightOrientation();
}

// --- Position and place

std::optional<Coordinate> TagEditorEditions::gpsCoordinate() const {
    if (auto coordinate = QuickTimeAccessor(editor()).quicktimeGPSCoordinate()) return coordinate;
    if (auto coordinate = EXIFAccessor(editor()).exifGPSCoordinate()) return coordinate;
    return XMPAccessor(editor()).xmpGPSCoordinate();
}

void TagEditorEditions::setGPSCoordinate(const TypedTagValue<Coordinate>& value) const {
    // Refused before the first family changes, so that no family keeps half an edit.
    if (const Coordinate* coordinate = value.getIf()) QuickTimeAccessor::requireOnGlobe(*coordinate);
    EditionManager::Session session(editor().manager());
    if (canWriteFamily(TagStream::streamEXIF)) EXIFAccessor(editor()).setExifGPSCoordinate(value);
    if (canWriteFamily(TagStream::streamXMP)) XMPAccessor(editor()).setXmpGPSCoordinate(value);
    if (canWriteFamily(TagStream::streamQuickTime))
        QuickTimeAccessor(editor()).setQuicktimeGPSCoordinate(value);
}

void TagEditorEditions::setLocation(const TypedTagValue<Location>& value) const {
    if (const Location* location = value.getIf()) QuickTimeAccessor::requireOnGlobe(location->coordinate());
    EditionManager::Session session(editor().manager());
    EXIFAccessor exif(editor());
    IPTCAccessor iptc(editor());
    XMPAccessor xmp(editor());
    QuickTimeAccessor quicktime(editor());
    if (const Location* location = value.getIf()) {
        GPSLocation gps(location->coordinate(), Altitude::fromOptional(location->altitude()),
                        location->direction(), DateTime::fromOptional(location->stamp()));
        TextLocation text = location->textLocation();
        auto gpsValue = TypedTagValue<GPSLocation>::value(gps);
        auto textValue = TypedTagValue<TextLocation>::value(text);
        exif.setExifGPSLocation(gpsValue);
        iptc.setIptcTextLocation(textValue);
        xmp.setXmpGPSLocation(gpsValue);
        xmp.setXmpTextLocation(textValue);
        quicktime.setQuicktimeGPSLocation(gpsValue);
        quicktime.setQuicktimeLocationName(text.formattedAddress());
        return;
    }
    bool clear = value.isClear();
    auto gpsValue = clear ? TypedTagValue<GPSLocation>::clear() : TypedTagValue<GPSLocation>::restore();
    auto textValue = clear ? TypedTagValue<TextLocation>::clear() : TypedTagValue<TextLocation>::restore();
    exif.setExifGPSLocation(gpsValue);
    iptc.setIptcTextLocation(textValue);
    xmp.setXmpGPSLocation(gpsValue);
    xmp.setXmpTextLocation(textValue);
    quicktime.setQuicktimeGPSLocation(gpsValue);
    quicktime.setQuicktimeLocationName(clear ? TagValueClear : TagValueRestore);
}

std::optional<ImageSize> TagEditorEditions::imageSize(const TagName& width, const TagName& height) const {
    const TagItem* widthItem = width.item();
    const TagItem* heightItem = height.item();
    if (!widthItem || !heightItem) return std::nullopt;
    auto w = integerOf(currentNativeValue(*widthItem));
    if (!w) return std::nullopt;
    auto h = integerOf(currentNativeValue(*heightItem));
    if (!h) return std::nullopt;
    return ImageSize{*w, *h};
}

std::optional<ImageSize> TagEditorEditions::imageSize() const {
    for (const auto& [width, height] : TagName::imageSizePairs())
        if (auto size = imageSize(width, height)) return size;
    return std::nullopt;
}

} // namespace corvane
