#include "corvane/tag_editor/QuickTimeAccessor.hpp"

#include "corvane/tag_editor/OrientationAccessor.hpp"
#include "corvane/utilities/Error.hpp"
#include "corvane/value_models/CoordinateParser.hpp"
#include "corvane/value_models/CoordinateWriter.hpp"

#include <cmath>
#include <cstdio>

namespace corvane {

std::optional<Coordinate> QuickTimeAccessor::quicktimeGPSCoordinate() const {
    auto text = currentString(TagItem::itemQuickTimeGPSCoordinates());
    if (!text || text->empty()) return std::nullopt;
    return CoordinateParser::coordinate(*text);
}

void QuickTimeAccessor::requireOnGlobe(const Coordinate& coordinate) {
    const double latitude = coordinate.latitude().value();
    const double longitude = coordinate.longitude().value();
    // Written so that NaN fails too.
    if (std::fabs(latitude) <= 90 && std::fabs(longitude) <= 180) return;
    char text[64];
    std::snprintf(text, sizeof text, "%g, %g", latitude, longitude);
    throw Error(TagItem::itemQuickTimeGPSCoordinates().name().rawValue() + ": the position " + text +
                " is not on the globe");
}

void QuickTimeAccessor::setQuicktimeGPSCoordinate(const TypedTagValue<Coordinate>& value) const {
    static const CoordinateWriter writer;
    if (const Coordinate* coordinate = value.getIf()) requireOnGlobe(*coordinate);
    setString(value.storageValue([](const Coordinate& c) { return writer.iso6709(c); }),
              TagItem::itemQuickTimeGPSCoordinates());
}

void QuickTimeAccessor::setQuicktimeGPSCoordinate(const TypedTagValue<GPSLocation>& value) const {
    if (const auto* location = value.getIf())
        setQuicktimeGPSCoordinate(TypedTagValue<Coordinate>::value(location->coordinate()));
    else
        setQuicktimeGPSCoordinate(value.isClear() ? TypedTagValue<Coordinate>::clear()
                                                  : TypedTagValue<Coordinate>::restore());
}

std::optional<GPSLocation> QuickTimeAccessor::quicktimeGPSLocation() const {
    auto coordinate = quicktimeGPSCoordinate();
    if (!coordinate) return std::nullopt;
    return GPSLocation(*coordinate);
}

void QuickTimeAccessor::setQuicktimeGPSLocation(const TypedTagValue<GPSLocation>& value) const {
    setQuicktimeGPSCoordinate(value);
}

std::optional<std::string> QuickTimeAccessor::quicktimeLocationName() const {
    const TagItem& item = TagItem::itemQuickTimeLocationName();
    auto value = currentNativeValue(item);
    if (const auto* text = value.stringValue()) return *text;
    return currentString(item);
}

void QuickTimeAccessor::setQuicktimeLocationName(const std::optional<std::string>& value) const {
    setString(value, TagItem::itemQuickTimeLocationName());
}

void QuickTimeAccessor::setQuicktimeLocationName(const TypedTagValue<TextLocation>& value) const {
    setQuicktimeLocationName(value.storageValue([](const TextLocation& t) { return t.formattedAddress(); }));
}

namespace {
OrientationAccessor quicktimeOrientationTag(TagEditor& editor) {
    return OrientationAccessor(editor, TagItem::itemQuickTimeVideoOrientation());
}
} // namespace

int QuickTimeAccessor::quicktimeOrientationValue() const {
    return quicktimeOrientationTag(editor()).orientationValue();
}
int QuickTimeAccessor::originalQuicktimeOrientationValue() const {
    return quicktimeOrientationTag(editor()).originalOrientationValue();
}
ExifOrientation QuickTimeAccessor::quicktimeOrientation() const {
    return quicktimeOrientationTag(editor()).orientation();
}
ExifOrientation QuickTimeAccessor::originalQuicktimeOrientation() const {
    return quicktimeOrientationTag(editor()).originalOrientation();
}
void QuickTimeAccessor::setQuicktimeOrientationValue(int value) const {
    quicktimeOrientationTag(editor()).setOrientationValue(value);
}
void QuickTimeAccessor::setQuicktimeOrientation(ExifOrientation orientation) const {
    quicktimeOrientationTag(editor()).setOrientation(orientation);
}
void QuickTimeAccessor::horizontalFlipQuicktimeOrientation() const {
    quicktimeOrientationTag(editor()).horizontalFlipOrientation();
}
void QuickTimeAccessor::verticalFlipQuicktimeOrientation() const {
    quicktimeOrientationTag(editor()).verticalFlipOrientation();
}
void QuickTimeAccessor::rotateLeftQuicktimeOrientation() const {
    quicktimeOrientationTag(editor()).rotateLeftOrientation();
}
void QuickTimeAccessor::rotateRightQuicktimeOrientation() const {
    quicktimeOrientationTag(editor()).rotateRightOrientation();
}

bool QuickTimeAccessor::oneOrMoreQuicktimeLocationTagsAreEdited() const {
    return oneOrMoreTagsAreEdited(TagName::quicktimeLocationTagNames());
}

bool QuickTimeAccessor::hasOneOrMoreQuicktimeLocationValues() const {
    return hasOneOrMoreValues(TagName::quicktimeLocationTagNames());
}

} // namespace corvane
