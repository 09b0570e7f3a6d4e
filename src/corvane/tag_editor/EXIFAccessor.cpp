#include "corvane/tag_editor/EXIFAccessor.hpp"

#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/detail/ConverterText.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/OrientationAccessor.hpp"

namespace corvane {
namespace converter_text = detail::converter_text;

namespace {

std::optional<Date> dateOf(const DynamicValue& value) {
    if (const Date* date = value.dateValue()) return *date;
    return std::nullopt;
}

} // namespace

// --- GPS reading

std::optional<Latitude> EXIFAccessor::exifGPSLatitude() const {
    auto value = readReferencedNumber(TagItem::itemEXIFGPSLatitude(), TagItem::itemEXIFGPSLatitudeRef(), "S");
    if (!value) return std::nullopt;
    return Latitude(*value);
}

std::optional<Longitude> EXIFAccessor::exifGPSLongitude() const {
    auto value =
        readReferencedNumber(TagItem::itemEXIFGPSLongitude(), TagItem::itemEXIFGPSLongitudeRef(), "W");
    if (!value) return std::nullopt;
    return Longitude(*value);
}

std::optional<Altitude> EXIFAccessor::exifGPSAltitude() const {
    auto value = readReferencedNumber(TagItem::itemEXIFGPSAltitude(), TagItem::itemEXIFGPSAltitudeRef(), "1");
    if (!value) return std::nullopt;
    return Altitude(*value);
}

std::optional<double> EXIFAccessor::exifGPSImgDirection() const {
    static const SDoubleValueConverter converter;
    return converter.typedValueFromStringValue(currentString(TagItem::itemEXIFGPSImgDirection()));
}

std::optional<Coordinate> EXIFAccessor::exifGPSCoordinate() const {
    auto latitude = exifGPSLatitude();
    if (!latitude) return std::nullopt;
    auto longitude = exifGPSLongitude();
    if (!longitude) return std::nullopt;
    return Coordinate(*latitude, *longitude);
}

std::optional<PartialDate> EXIFAccessor::exifGPSDateStamp() const {
    return PartialDate::fromOptional(dateOf(currentNativeValue(TagItem::itemEXIFGPSDateStamp())));
}

std::optional<PartialTime> EXIFAccessor::exifGPSTimeStamp() const {
    return PartialTime::fromOptional(dateOf(currentNativeValue(TagItem::itemEXIFGPSTimeStamp())));
}

std::optional<DateTime> EXIFAccessor::exifGPSStamp() const {
    auto date = exifGPSDateStamp();
    if (!date) return std::nullopt;
    auto time = exifGPSTimeStamp();
    if (!time) return std::nullopt;
    return DateTime(*date, *time);
}

std::optional<GPSLocation> EXIFAccessor::exifGPSLocation() const {
    auto coordinate = exifGPSCoordinate();
    if (!coordinate) return std::nullopt;
    return GPSLocation(*coordinate, exifGPSAltitude(), exifGPSImgDirection(), exifGPSStamp());
}

// --- GPS writing

void EXIFAccessor::setExifGPSLatitude(const TypedTagValue<Latitude>& value) const {
    if (const auto* latitude = value.getIf()) {
        writeReferencedNumber(latitude->value(), TagItem::itemEXIFGPSLatitude(),
                              TagItem::itemEXIFGPSLatitudeRef(), "N", "S");
        return;
    }
    setStrings(value.storageValue([](const Latitude&) { return std::string(); }),
               {&TagItem::itemEXIFGPSLatitude(), &TagItem::itemEXIFGPSLatitudeRef()});
}

void EXIFAccessor::setExifGPSLongitude(const TypedTagValue<Longitude>& value) const {
    if (const auto* longitude = value.getIf()) {
        writeReferencedNumber(longitude->value(), TagItem::itemEXIFGPSLongitude(),
                              TagItem::itemEXIFGPSLongitudeRef(), "E", "W");
        return;
    }
    setStrings(value.storageValue([](const Longitude&) { return std::string(); }),
               {&TagItem::itemEXIFGPSLongitude(), &TagItem::itemEXIFGPSLongitudeRef()});
}

void EXIFAccessor::setExifGPSAltitude(const TypedTagValue<Altitude>& value) const {
    if (const auto* altitude = value.getIf()) {
        writeReferencedNumber(altitude->value(), TagItem::itemEXIFGPSAltitude(),
                              TagItem::itemEXIFGPSAltitudeRef(), "0", "1");
        return;
    }
    setStrings(value.storageValue([](const Altitude&) { return std::string(); }),
               {&TagItem::itemEXIFGPSAltitude(), &TagItem::itemEXIFGPSAltitudeRef()});
}

void EXIFAccessor::setExifGPSImgDirection(const TypedTagValue<double>& value) const {
    EditionManager::Session session(editor().manager());
    if (const double* direction = value.getIf()) {
        setString(converter_text::formatEightDecimals(*direction), TagItem::itemEXIFGPSImgDirection());
        setString(std::string("T"), TagItem::itemEXIFGPSImgDirectionRef());
        return;
    }
    setStrings(value.storageValue([](double) { return std::string(); }),
               {&TagItem::itemEXIFGPSImgDirection(), &TagItem::itemEXIFGPSImgDirectionRef()});
}

void EXIFAccessor::setExifGPSCoordinate(const TypedTagValue<Coordinate>& value) const {
    EditionManager::Session session(editor().manager());
    if (const auto* coordinate = value.getIf()) {
        setExifGPSLatitude(TypedTagValue<Latitude>::value(coordinate->latitude()));
        setExifGPSLongitude(TypedTagValue<Longitude>::value(coordinate->longitude()));
        return;
    }
    setStrings(value.storageValue([](const Coordinate&) { return std::string(); }),
               {&TagItem::itemEXIFGPSLatitude(), &TagItem::itemEXIFGPSLatitudeRef(),
                &TagItem::itemEXIFGPSLongitude(), &TagItem::itemEXIFGPSLongitudeRef()});
}

void EXIFAccessor::setExifGPSCoordinate(const TypedTagValue<GPSLocation>& value) const {
    if (const auto* location = value.getIf())
        setExifGPSCoordinate(TypedTagValue<Coordinate>::value(location->coordinate()));
    else
        setExifGPSCoordinate(value.isClear() ? TypedTagValue<Coordinate>::clear()
                                             : TypedTagValue<Coordinate>::restore());
}

void EXIFAccessor::setExifGPSDateStamp(const TypedTagValue<PartialDate>& value) const {
    const TagItem& item = TagItem::itemEXIFGPSDateStamp();
    if (const auto* date = value.getIf())
        setNativeValue(DynamicValue(date->date()), item);
    else
        setString(value.isClear() ? TagValueClear : TagValueRestore, item);
}

void EXIFAccessor::setExifGPSTimeStamp(const TypedTagValue<PartialTime>& value) const {
    const TagItem& item = TagItem::itemEXIFGPSTimeStamp();
    if (const auto* time = value.getIf())
        setNativeValue(DynamicValue(time->date()), item);
    else
        setString(value.isClear() ? TagValueClear : TagValueRestore, item);
}

void EXIFAccessor::setExifGPSStamp(const TypedTagValue<DateTime>& value) const {
    EditionManager::Session session(editor().manager());
    if (const auto* stamp = value.getIf()) {
        setExifGPSDateStamp(TypedTagValue<PartialDate>::value(stamp->partialDate()));
        setExifGPSTimeStamp(TypedTagValue<PartialTime>::value(stamp->partialTime()));
        return;
    }
    setStrings(value.isClear() ? TagValueClear : TagValueRestore,
               {&TagItem::itemEXIFGPSDateStamp(), &TagItem::itemEXIFGPSTimeStamp()});
}

void EXIFAccessor::setExifGPSLocation(const TypedTagValue<GPSLocation>& value) const {
    EditionManager::Session session(editor().manager());
    if (const auto* location = value.getIf()) {
        setExifGPSLatitude(TypedTagValue<Latitude>::value(location->coordinate().latitude()));
        setExifGPSLongitude(TypedTagValue<Longitude>::value(location->coordinate().longitude()));
        setExifGPSAltitude(location->altitude() ? TypedTagValue<Altitude>::value(*location->altitude())
                                                : TypedTagValue<Altitude>::clear());
        setExifGPSImgDirection(TypedTagValue<double>::optional(location->direction()));
        return;
    }
    setStrings(value.isClear() ? TagValueClear : TagValueRestore,
               {&TagItem::itemEXIFGPSLatitude(), &TagItem::itemEXIFGPSLatitudeRef(),
                &TagItem::itemEXIFGPSLongitude(), &TagItem::itemEXIFGPSLongitudeRef(),
                &TagItem::itemEXIFGPSAltitude(), &TagItem::itemEXIFGPSAltitudeRef(),
                &TagItem::itemEXIFGPSImgDirection(), &TagItem::itemEXIFGPSImgDirectionRef()});
}

// --- Dates

std::optional<Date> EXIFAccessor::exifDateTimeOriginal() const {
    return dateOf(currentNativeValue(TagItem::itemEXIFDateTimeOriginal()));
}

std::optional<Date> EXIFAccessor::exifCreateDate() const {
    return dateOf(currentNativeValue(TagItem::itemEXIFCreateDate()));
}

// --- Orientation

namespace {
OrientationAccessor exifOrientationTag(TagEditor& editor) {
    return OrientationAccessor(editor, TagItem::itemEXIFOrientation());
}
} // namespace

int EXIFAccessor::exifOrientationValue() const {
    return exifOrientationTag(editor()).orientationValue();
}
int EXIFAccessor::originalExifOrientationValue() const {
    return exifOrientationTag(editor()).originalOrientationValue();
}
ExifOrientation EXIFAccessor::exifOrientation() const {
    return exifOrientationTag(editor()).orientation();
}
ExifOrientation EXIFAccessor::originalExifOrientation() const {
    return exifOrientationTag(editor()).originalOrientation();
}
void EXIFAccessor::setExifOrientationValue(int value) const {
    exifOrientationTag(editor()).setOrientationValue(value);
}
void EXIFAccessor::setExifOrientation(ExifOrientation orientation) const {
    exifOrientationTag(editor()).setOrientation(orientation);
}
void EXIFAccessor::horizontalFlipExifOrientation() const {
    exifOrientationTag(editor()).horizontalFlipOrientation();
}
void EXIFAccessor::verticalFlipExifOrientation() const {
    exifOrientationTag(editor()).verticalFlipOrientation();
}
void EXIFAccessor::rotateLeftExifOrientation() const {
    exifOrientationTag(editor()).rotateLeftOrientation();
}
void EXIFAccessor::rotateRightExifOrientation() const {
    exifOrientationTag(editor()).rotateRightOrientation();
}

// --- Groups

bool EXIFAccessor::oneOrMoreExifLocationTagsAreEdited() const {
    return oneOrMoreTagsAreEdited(TagName::exifLocationTagNames());
}

bool EXIFAccessor::hasOneOrMoreExifLocationValues() const {
    return hasOneOrMoreValues(TagName::exifLocationTagNames());
}

} // namespace corvane
