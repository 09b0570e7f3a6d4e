#pragma once

#include "corvane/location_support/Geocoder.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/value_models/GPSLocation.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <memory>

namespace corvane {

/// Completes an editor's location from one family's position or address, through a `Geocoder`:
/// the place found is applied to every family with `TagEditorEditions::setLocation`.
///
/// The look-ups block the calling thread (the built-in geocoder answers from memory; a network
/// geocoder may take long, so call them off the main thread). Each returns whether a place was
/// found and applied; no coordinate or address, no geocoder, or no answer change nothing.
class AddressLookup {
public:
    /// Look-ups through `geocoder`, by default the shared one.
    explicit AddressLookup(std::shared_ptr<const Geocoder> geocoder = Geocoder::shared())
        : geocoder_(std::move(geocoder)) {}

    /// The place at the family's position, keeping that family's fix (position, altitude,
    /// direction): the geocoder's position of a city mustn't replace where the picture was taken.
    ///@{
    bool autocompleteUsingEXIFCoordinate(TagEditor& editor) const;
    bool autocompleteUsingXMPCoordinate(TagEditor& editor) const;
    bool autocompleteUsingQuickTimeCoordinate(TagEditor& editor) const;
    ///@}
    /// The position and place of the family's address text (its formatted address).
    bool autocompleteUsingIPTCAddress(TagEditor& editor) const;
    bool autocompleteUsingXMPAddress(TagEditor& editor) const; ///< the same from the XMP address text

private:
    bool reverse(TagEditor& editor, const std::optional<GPSLocation>& gps) const;
    bool forward(TagEditor& editor, const std::optional<TextLocation>& text) const;

    std::shared_ptr<const Geocoder> geocoder_;
};

} // namespace corvane
