#pragma once

#include "corvane/tag_editor/FamilyAccessor.hpp"
#include "corvane/tag_value/TypedTagValue.hpp"
#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/ExifOrientation.hpp"
#include "corvane/value_models/GPSLocation.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <optional>
#include <string>

namespace corvane {

/// Typed view of an editor's QuickTime tags: the position in GPSCoordinates (an ISO 6709 text such
/// as "+40.20000-075.50000/"), the LocationName text and the VideoOrientation.
class QuickTimeAccessor : public FamilyAccessor {
public:
    /// Views the editor; the editor must outlive the view.
    using FamilyAccessor::FamilyAccessor;

    /// Parsed by CoordinateParser, in any notation it reads.
    std::optional<Coordinate> quicktimeGPSCoordinate() const;
    /// Throws the Error of setQuicktimeGPSCoordinate for a position off the globe; for callers that
    /// set several families and must refuse before the first.
    static void requireOnGlobe(const Coordinate& coordinate);
    /// Written as ISO 6709 with CoordinateWriter's defaults. A position off the globe (latitude
    /// beyond 90 degrees, longitude beyond 180, or not finite: an overflowed or mistyped number)
    /// has no such text and throws Error naming the tag, before anything changes.
    void setQuicktimeGPSCoordinate(const TypedTagValue<Coordinate>& value) const;
    /// The coordinate of the location; same rules.
    void setQuicktimeGPSCoordinate(const TypedTagValue<GPSLocation>& value) const;
    /// The coordinate and nothing else.
    std::optional<GPSLocation> quicktimeGPSLocation() const;
    /// The coordinate only: QuickTime has no tag here for altitude, direction or stamp.
    void setQuicktimeGPSLocation(const TypedTagValue<GPSLocation>& value) const;

    /// The LocationName text.
    std::optional<std::string> quicktimeLocationName() const;
    /// Nothing restores the tag; the empty text clears it.
    void setQuicktimeLocationName(const std::optional<std::string>& value) const;
    /// `value` writes the formatted address of the place.
    void setQuicktimeLocationName(const TypedTagValue<TextLocation>& value) const;

    /// VideoOrientation, as `OrientationAccessor` reads and turns it: current and original value (1
    /// when absent), the same as `ExifOrientation`, setters and the four turns.
    ///@{
    int quicktimeOrientationValue() const;
    int originalQuicktimeOrientationValue() const;
    ExifOrientation quicktimeOrientation() const;
    ExifOrientation originalQuicktimeOrientation() const;
    void setQuicktimeOrientationValue(int value) const;
    void setQuicktimeOrientation(ExifOrientation orientation) const;
    void horizontalFlipQuicktimeOrientation() const;
    void verticalFlipQuicktimeOrientation() const;
    void rotateLeftQuicktimeOrientation() const;
    void rotateRightQuicktimeOrientation() const;
    ///@}

    // --- Groups, over TagName::quicktimeLocationTagNames()
    /// Whether any tag of the group has a pending edit; whether any holds a value.
    ///@{
    bool oneOrMoreQuicktimeLocationTagsAreEdited() const;
    bool hasOneOrMoreQuicktimeLocationValues() const;
    ///@}
};

} // namespace corvane
