#include "corvane/location_support/PlaceMark.hpp"

namespace corvane {

TextLocation textLocationFromPlaceMark(const PlaceMark& placeMark) {
    return TextLocation(placeMark.name(), std::nullopt, std::nullopt, placeMark.city(), placeMark.state(),
                        std::nullopt, placeMark.country(), placeMark.countryCode());
}

Location locationFromPlaceMark(const PlaceMark& placeMark) {
    // Through TextLocation so that blank fields come out absent, as everywhere else.
    TextLocation text = textLocationFromPlaceMark(placeMark);
    Location location(placeMark.coordinate());
    location.setPlaceName(text.placeName());
    location.setCity(text.city());
    location.setState(text.state());
    location.setCountryName(text.countryName());
    location.setCountryCode(text.countryCode());
    return location;
}

} // namespace corvane
