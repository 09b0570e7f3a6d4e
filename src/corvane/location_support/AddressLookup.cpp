#include "corvane/location_support/AddressLookup.hpp"

#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/IPTCAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"
#include "corvane/tag_editor/XMPAccessor.hpp"

namespace corvane {

bool AddressLookup::reverse(TagEditor& editor, const std::optional<GPSLocation>& gps) const {
    if (!gps || !geocoder_) return false;
    auto placeMark = geocoder_->reverseGeocode(gps->coordinate());
    if (!placeMark) return false;
    // The family's own fix (position, altitude, direction) with the place's text.
    Location location(*gps, textLocationFromPlaceMark(*placeMark));
    TagEditorEditions(editor).setLocation(TypedTagValue<Location>::value(location));
    return true;
}

bool AddressLookup::forward(TagEditor& editor, const std::optional<TextLocation>& text) const {
    if (!text || !geocoder_) return false;
    auto address = text->formattedAddress();
    if (address.empty()) return false;
    auto placeMark = geocoder_->geocodeAddress(address);
    if (!placeMark) return false;
    TagEditorEditions(editor).setLocation(TypedTagValue<Location>::value(locationFromPlaceMark(*placeMark)));
    return true;
}

bool AddressLookup::autocompleteUsingEXIFCoordinate(TagEditor& editor) const {
    return reverse(editor, EXIFAccessor(editor).exifGPSLocation());
}

bool AddressLookup::autocompleteUsingXMPCoordinate(TagEditor& editor) const {
    return reverse(editor, XMPAccessor(editor).xmpGPSLocation());
}

bool AddressLookup::autocompleteUsingQuickTimeCoordinate(TagEditor& editor) const {
    return reverse(editor, QuickTimeAccessor(editor).quicktimeGPSLocation());
}

bool AddressLookup::autocompleteUsingIPTCAddress(TagEditor& editor) const {
    return forward(editor, IPTCAccessor(editor).iptcTextLocation());
}

bool AddressLookup::autocompleteUsingXMPAddress(TagEditor& editor) const {
    return forward(editor, XMPAccessor(editor).xmpTextLocation());
}

} // namespace corvane
