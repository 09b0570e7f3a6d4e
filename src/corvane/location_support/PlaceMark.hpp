#pragma once

#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/Location.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <optional>
#include <string>

namespace corvane {

/// One answer of a `Geocoder`: a named place with its position. Fields a geocoder doesn't know
/// stay absent. `name` is a point of interest or a place name when the geocoder knows one (a city
/// database leaves it absent: the city is in `city`).
class PlaceMark {
public:
    /// An optional text field.
    using Text = std::optional<std::string>;

    /// A place at `coordinate` with what the database knows of it.
    explicit PlaceMark(Coordinate coordinate, Text city = std::nullopt, Text state = std::nullopt,
                       Text country = std::nullopt, Text countryCode = std::nullopt,
                       Text timeZone = std::nullopt, Text name = std::nullopt)
        : coordinate_(coordinate), city_(std::move(city)), state_(std::move(state)),
          country_(std::move(country)), countryCode_(std::move(countryCode)), timeZone_(std::move(timeZone)),
          name_(std::move(name)) {}

    /// The position; the city (or town, village); the state or region; the country's name.
    ///@{
    const Coordinate& coordinate() const { return coordinate_; }
    const Text& city() const { return city_; }
    const Text& state() const { return state_; }
    const Text& country() const { return country_; }
    ///@}
    /// ISO 3166-1 alpha-2, upper case.
    const Text& countryCode() const { return countryCode_; }
    /// IANA zone name, e.g. "Europe/Paris".
    const Text& timeZone() const { return timeZone_; }
    /// The place's own name, when the database has one apart from the city.
    const Text& name() const { return name_; }

    friend bool operator==(const PlaceMark&, const PlaceMark&) = default;

private:
    Coordinate coordinate_;
    Text city_;
    Text state_;
    Text country_;
    Text countryCode_;
    Text timeZone_;
    Text name_;
};

/// The place as text: name to place name, then city, state, country name and code; no street or
/// zip code.
TextLocation textLocationFromPlaceMark(const PlaceMark& placeMark);
/// The position of the place (no altitude, direction or stamp) with its text.
Location locationFromPlaceMark(const PlaceMark& placeMark);

} // namespace corvane
