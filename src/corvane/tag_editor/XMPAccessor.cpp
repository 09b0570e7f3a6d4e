#include "corvane/tag_editor/XMPAccessor.hpp"

#include "corvane/converters/SDoubleValueConverter.hpp"
#include "corvane/converters/detail/ConverterText.hpp"
#include "corvane/tag_edition/EditionManager.hpp"

#include <cmath>

namespace corvane {
namespace converter_text = detail::converter_text;

const FamilyAccessor::TextLocationItems& XMPAccessor::textLocationItems() {
    static const TextLocationItems items{&TagItem::itemXMPLocation(), &TagItem::itemXMPCity(),
                                         &TagItem::itemXMPState(), &TagItem::itemXMPCountry(),
                                         &TagItem::itemXMPCountryCode()};
    return items;
}

// --- GPS

std::optional<double> XMPAccessor::signedAxis(const TagItem& number, const TagItem& reference,
                                              std::string_view negative) const {
    static const SDoubleValueConverter converter;
    auto value = converter.typedValueFromStringValue(currentString(number));
    if (!value || !std::isfinite(*value)) return std::nullopt;
    if (*value > 0) {
        auto ref = currentString(reference);
        if (ref && *ref == negative) return -*value;
    }
    return value;
}

std::optional<Latitude> XMPAccessor::xmpGPSLatitude() const {
    auto value = signedAxis(TagItem::itemXMPGPSLatitude(), TagItem::itemXMPGPSLatitudeRef(), "S");
    if (!value || std::fabs(*value) > 90) return std::nullopt;
    return Latitude(*value);
}

std::optional<Longitude> XMPAccessor::xmpGPSLongitude() const {
    auto value = signedAxis(TagItem::itemXMPGPSLongitude(), TagItem::itemXMPGPSLongitudeRef(), "W");
    if (!value || std::fabs(*value) > 180) return std::nullopt;
    return Longitude(*value);
}

std::optional<Altitude> XMPAccessor::xmpGPSAltitude() const {
    auto value = readReferencedNumber(TagItem::itemXMPGPSAltitude(), TagItem::itemXMPGPSAltitudeRef(), "1");
    if (!value) return std::nullopt;
    return Altitude(*value);
}

std::optional<Coordinate> XMPAccessor::xmpGPSCoordinate() const {
    auto latitude = xmpGPSLatitude();
    if (!latitude) return std::nullopt;
    auto longitude = xmpGPSLongitude();
    if (!longitude) return std::nullopt;
    return Coordinate(*latitude, *longitude);
}

std::optional<DateTime> XMPAccessor::xmpGPSDateTime() const {
    auto value = currentNativeValue(TagItem::itemXMPGPSDateTime());
    if (const Date* date = value.dateValue()) return DateTime(*date);
    return std::nullopt;
}

std::optional<GPSLocation> XMPAccessor::xmpGPSLocation() const {
    auto coordinate = xmpGPSCoordinate();
    if (!coordinate) return std::nullopt;
    return GPSLocation(*coordinate, xmpGPSAltitude(), std::nullopt, xmpGPSDateTime());
}

void XMPAccessor::setXmpGPSLatitude(const TypedTagValue<Latitude>& value) const {
    if (const auto* latitude = value.getIf()) {
        // The sign travels in the value; see the class comment.
        setString(converter_text::formatEightDecimals(latitude->value()), TagItem::itemXMPGPSLatitude());
        return;
    }
    setStrings(value.isClear() ? TagValueClear : TagValueRestore,
               {&TagItem::itemXMPGPSLatitude(), &TagItem::itemXMPGPSLatitudeRef()});
}

void XMPAccessor::setXmpGPSLongitude(const TypedTagValue<Longitude>& value) const {
    if (const auto* longitude = value.getIf()) {
        setString(converter_text::formatEightDecimals(longitude->value()), TagItem::itemXMPGPSLongitude());
        return;
    }
    setStrings(value.isClear() ? TagValueClear : TagValueRestore,
               {&TagItem::itemXMPGPSLongitude(), &TagItem::itemXMPGPSLongitudeRef()});
}

void XMPAccessor::setXmpGPSAltitude(const TypedTagValue<Altitude>& value) const {
    if (const auto* altitude = value.getIf()) {
        writeReferencedNumber(altitude->value(), TagItem::itemXMPGPSAltitude(),
                              TagItem::itemXMPGPSAltitudeRef(), "0", "1");
        return;
    }
    setStrings(value.isClear() ? TagValueClear : TagValueRestore,
               {&TagItem::itemXMPGPSAltitude(), &TagItem::itemXMPGPSAltitudeRef()});
}

void XMPAccessor::setXmpGPSCoordinate(const TypedTagValue<Coordinate>& value) const {
    EditionManager::Session session(editor().manager());
    if (const auto* coordinate = value.getIf()) {
        setXmpGPSLatitude(TypedTagValue<Latitude>::value(coordinate->latitude()));
        setXmpGPSLongitude(TypedTagValue<Longitude>::value(coordinate->longitude()));
        return;
    }
    setStrings(value.isClear() ? TagValueClear : TagValueRestore,
               {&TagItem::itemXMPGPSLatitude(), &TagItem::itemXMPGPSLatitudeRef(),
                &TagItem::itemXMPGPSLongitude(), &TagItem::itemXMPGPSLongitudeRef()});
}

void XMPAccessor::setXmpGPSCoordinate(const TypedTagValue<GPSLocation>& value) const {
    if (const auto* location = value.getIf())
        setXmpGPSCoordinate(TypedTagValue<Coordinate>::value(location->coordinate()));
    else
        setXmpGPSCoordinate(value.isClear() ? TypedTagValue<Coordinate>::clear()
                                            : TypedTagValue<Coordinate>::restore());
}

void XMPAccessor::setXmpGPSDateTime(const TypedTagValue<DateTime>& value) const {
    const TagItem& item = TagItem::itemXMPGPSDateTime();
    if (const auto* stamp = value.getIf())
        setNativeValue(DynamicValue(stamp->date()), item);
    else
        setString(value.isClear() ? TagValueClear : TagValueRestore, item);
}

void XMPAccessor::setXmpGPSLocation(const TypedTagValue<GPSLocation>& value) const {
    EditionManager::Session session(editor().manager());
    if (const auto* location = value.getIf()) {
        setXmpGPSLatitude(TypedTagValue<Latitude>::value(location->coordinate().latitude()));
        setXmpGPSLongitude(TypedTagValue<Longitude>::value(location->coordinate().longitude()));
        setXmpGPSAltitude(location->altitude() ? TypedTagValue<Altitude>::value(*location->altitude())
                                               : TypedTagValue<Altitude>::clear());
        return;
    }
    setStrings(value.isClear() ? TagValueClear : TagValueRestore,
               {&TagItem::itemXMPGPSLatitude(), &TagItem::itemXMPGPSLatitudeRef(),
                &TagItem::itemXMPGPSLongitude(), &TagItem::itemXMPGPSLongitudeRef(),
                &TagItem::itemXMPGPSAltitude(), &TagItem::itemXMPGPSAltitudeRef()});
}

// --- Place as text

std::optional<std::string> XMPAccessor::xmpLocationName() const {
    return currentString(TagItem::itemXMPLocation());
}
std::optional<std::string> XMPAccessor::xmpLocationCity() const {
    return currentString(TagItem::itemXMPCity());
}
std::optional<std::string> XMPAccessor::xmpLocationState() const {
    return currentString(TagItem::itemXMPState());
}
std::optional<std::string> XMPAccessor::xmpCountryName() const {
    return currentString(TagItem::itemXMPCountry());
}
std::optional<std::string> XMPAccessor::xmpCountryCode() const {
    return currentString(TagItem::itemXMPCountryCode());
}
void XMPAccessor::setXmpLocationName(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemXMPLocation());
}
void XMPAccessor::setXMPLocationCity(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemXMPCity());
}
void XMPAccessor::setXmpLocationState(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemXMPState());
}
void XMPAccessor::setXMPCountryName(const TypedTagValue<std::string>& value) const {
    writeText(value, TagItem::itemXMPCountry());
}
void XMPAccessor::setXmpCountryCode(const TypedTagValue<std::string>& value) const {
    writeCountryCode(value, TagItem::itemXMPCountryCode());
}

std::optional<TextLocation> XMPAccessor::xmpTextLocation() const {
    return readTextLocation(textLocationItems());
}

void XMPAccessor::setXmpTextLocation(const TypedTagValue<TextLocation>& value) const {
    writeTextLocation(value, textLocationItems());
}

bool XMPAccessor::oneOrMoreXmpLocationTagsAreEdited() const {
    return oneOrMoreTagsAreEdited(TagName::xmpLocationTagNames());
}

bool XMPAccessor::hasOneOrMoreXmpLocationValues() const {
    return hasOneOrMoreValues(TagName::xmpLocationTagNames());
}

} // namespace corvane
