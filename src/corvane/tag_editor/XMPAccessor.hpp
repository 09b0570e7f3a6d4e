#pragma once

#include "corvane/tag_editor/FamilyAccessor.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/value_models/Altitude.hpp"
#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/DateTime.hpp"
#include "corvane/value_models/GPSLocation.hpp"
#include "corvane/value_models/Latitude.hpp"
#include "corvane/value_models/Longitude.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <optional>
#include <string>

namespace corvane {

/// Typed view of an editor's XMP location tags: GPS position, altitude and time, and the place as
/// text (XMP Location, City, State, Country, CountryCode).
///
/// XMP keeps the hemisphere inside the latitude and longitude values themselves ("45,30.0S", read
/// by ExifTool as -45.5), and ExifTool offers no writable reference tag for them. So these two are
/// read as signed numbers (a positive number with a reference "S" or "W" still reads negative) and
/// written as signed numbers. The altitude works as in EXIF: a magnitude plus "0" or "1".
/// There is no XMP direction.
class XMPAccessor : public FamilyAccessor {
public:
    /// Views the editor; the editor must outlive the view.
    using FamilyAccessor::FamilyAccessor;

    // --- GPS
    /// Latitude and longitude (signed, see above), altitude, both axes together, and the GPS date
    /// and time; nothing when absent or unreadable.
    ///@{
    std::optional<Latitude> xmpGPSLatitude() const;
    std::optional<Longitude> xmpGPSLongitude() const;
    std::optional<Altitude> xmpGPSAltitude() const;
    std::optional<Coordinate> xmpGPSCoordinate() const;
    std::optional<DateTime> xmpGPSDateTime() const;
    ///@}
    /// Both axes required; the altitude where present; the stamp from xmpGPSDateTime.
    std::optional<GPSLocation> xmpGPSLocation() const;

    /// Write one value; `clear` and `restore` act on the value's tags (the altitude's reference
    /// included).
    ///@{
    void setXmpGPSLatitude(const TypedTagValue<Latitude>& value) const;
    void setXmpGPSLongitude(const TypedTagValue<Longitude>& value) const;
    void setXmpGPSAltitude(const TypedTagValue<Altitude>& value) const;
    ///@}
    /// `clear` and `restore` act on latitude, longitude and their references.
    void setXmpGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    /// The coordinate of the location, nothing else.
    void setXmpGPSCoordinate(const TypedTagValue<GPSLocation>& value) const;
    /// Written as one date-time; `clear` and `restore` act on that tag.
    void setXmpGPSDateTime(const TypedTagValue<DateTime>& value) const;
    /// Latitude, longitude and altitude (an absent altitude is cleared); the stamp is not written.
    /// `clear` and `restore` act on the six tags.
    void setXmpGPSLocation(const TypedTagValue<GPSLocation>& value) const;

    // --- Place as text
    /// The place as text: location name, city, state or province, country name and country code.
    ///@{
    std::optional<std::string> xmpLocationName() const;
    std::optional<std::string> xmpLocationCity() const;
    std::optional<std::string> xmpLocationState() const;
    std::optional<std::string> xmpCountryName() const;
    std::optional<std::string> xmpCountryCode() const;
    ///@}
    /// Write one text field of the place.
    ///@{
    void setXmpLocationName(const TypedTagValue<std::string>& value) const;
    void setXMPLocationCity(const TypedTagValue<std::string>& value) const;
    void setXmpLocationState(const TypedTagValue<std::string>& value) const;
    void setXMPCountryName(const TypedTagValue<std::string>& value) const;
    ///@}
    /// Only a known country code is written; an unknown one changes nothing.
    void setXmpCountryCode(const TypedTagValue<std::string>& value) const;
    /// The five tags as a whole; nothing when all are blank.
    ///@{
    std::optional<TextLocation> xmpTextLocation() const;
    void setXmpTextLocation(const TypedTagValue<TextLocation>& value) const;
    ///@}

    // --- Groups, over TagName::xmpLocationTagNames()
    /// Whether any tag of the group has a pending edit; whether any holds a value.
    ///@{
    bool oneOrMoreXmpLocationTagsAreEdited() const;
    bool hasOneOrMoreXmpLocationValues() const;
    ///@}

    /// The five place tags, by role, for `TextLocation` reading and writing.
    static const TextLocationItems& textLocationItems();

private:
    std::optional<double> signedAxis(const TagItem& number, const TagItem& reference,
                                     std::string_view negative) const;
};

} // namespace corvane
