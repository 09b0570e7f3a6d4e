#pragma once

#include "corvane/tag_editor/FamilyAccessor.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/Altitude.hpp"
#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/DateTime.hpp"
#include "corvane/value_models/ExifOrientation.hpp"
#include "corvane/value_models/GPSLocation.hpp"
#include "corvane/value_models/Latitude.hpp"
#include "corvane/value_models/Longitude.hpp"
#include "corvane/value_models/PartialDate.hpp"
#include "corvane/value_models/PartialTime.hpp"

#include <optional>

namespace corvane {

/// Typed view of an editor's EXIF tags: the GPS position, altitude, direction and time stamps, the
/// two main dates and the orientation.
///
/// GPS numbers are stored as a magnitude ("%.8f") plus a reference tag: latitude "N"/"S",
/// longitude "E"/"W", altitude "0" (above) / "1" (below sea level), direction always "T" (true
/// north). A negative magnitude reads as nothing; a missing reference reads as the positive one.
///
/// Writers take a `TypedTagValue`: `value` writes, `clear` marks the accessor's tags for removal,
/// `restore` takes their edits back. Writers of several tags run in one edition session.
class EXIFAccessor : public FamilyAccessor {
public:
    /// Views the editor; the editor must outlive the view.
    using FamilyAccessor::FamilyAccessor;

    // --- GPS
    /// Latitude, longitude (with their references, see above) and altitude; nothing when absent or
    /// unreadable.
    ///@{
    std::optional<Latitude> exifGPSLatitude() const;
    std::optional<Longitude> exifGPSLongitude() const;
    std::optional<Altitude> exifGPSAltitude() const;
    ///@}
    /// The number alone; the reference is not read.
    std::optional<double> exifGPSImgDirection() const;
    /// Both axes or nothing.
    std::optional<Coordinate> exifGPSCoordinate() const;
    /// The GPS date stamp ("yyyy:MM:dd") and time stamp (UTC).
    ///@{
    std::optional<PartialDate> exifGPSDateStamp() const;
    std::optional<PartialTime> exifGPSTimeStamp() const;
    ///@}
    /// Both stamps or nothing.
    std::optional<DateTime> exifGPSStamp() const;
    /// Both axes required; altitude and direction where present; the stamp only if both stamp tags
    /// are present.
    std::optional<GPSLocation> exifGPSLocation() const;

    /// Write one value with its reference tag; `clear` and `restore` act on both. The direction is
    /// written with the reference "T".
    ///@{
    void setExifGPSLatitude(const TypedTagValue<Latitude>& value) const;
    void setExifGPSLongitude(const TypedTagValue<Longitude>& value) const;
    void setExifGPSAltitude(const TypedTagValue<Altitude>& value) const;
    void setExifGPSImgDirection(const TypedTagValue<double>& value) const;
    ///@}
    /// `clear` and `restore` act on the latitude and longitude tags and their references.
    void setExifGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    /// The coordinate of the location, nothing else.
    void setExifGPSCoordinate(const TypedTagValue<GPSLocation>& value) const;
    /// Write the date stamp or the time stamp alone.
    ///@{
    void setExifGPSDateStamp(const TypedTagValue<PartialDate>& value) const;
    void setExifGPSTimeStamp(const TypedTagValue<PartialTime>& value) const;
    ///@}
    /// The date half and the time half; `clear` and `restore` act on both tags.
    void setExifGPSStamp(const TypedTagValue<DateTime>& value) const;
    /// Latitude, longitude, altitude and direction (an absent altitude or direction is cleared);
    /// the stamp is not written. `clear` and `restore` act on the eight tags of the four values.
    void setExifGPSLocation(const TypedTagValue<GPSLocation>& value) const;

    // --- Dates, through the items' converters
    /// DateTimeOriginal and CreateDate (in EXIF, when the picture was taken and when it was
    /// digitised).
    ///@{
    std::optional<Date> exifDateTimeOriginal() const;
    std::optional<Date> exifCreateDate() const;
    ///@}

    // --- Orientation (EXIF Orientation)
    /// Orientation, as `OrientationAccessor` reads and turns it: current and original value (1 when
    /// absent), the same as `ExifOrientation`, setters and the four turns.
    ///@{
    int exifOrientationValue() const;
    int originalExifOrientationValue() const;
    ExifOrientation exifOrientation() const;
    ExifOrientation originalExifOrientation() const;
    void setExifOrientationValue(int value) const;
    void setExifOrientation(ExifOrientation orientation) const;
    void horizontalFlipExifOrientation() const;
    void verticalFlipExifOrientation() const;
    void rotateLeftExifOrientation() const;
    void rotateRightExifOrientation() const;
    ///@}

    // --- Groups, over TagName::exifLocationTagNames()
    /// Whether any tag of the group has a pending edit; whether any holds a value.
    ///@{
    bool oneOrMoreExifLocationTagsAreEdited() const;
    bool hasOneOrMoreExifLocationValues() const;
    ///@}
};

} // namespace corvane
