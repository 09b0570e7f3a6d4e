#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/GPSLocation.hpp"
#include "corvane/value_models/PlatformLocation.hpp"
#include "corvane/value_models/TextLocation.hpp"

#include <nlohmann/json_fwd.hpp>

#include <functional>
#include <optional>
#include <string>

namespace corvane {

/// A place in one flat record: position, height, time, direction and address.
/// This is the form saved locations are stored in (JSON with thirteen keys in
/// snake case).
class Location {
public:
    /// An optional text field of the address.
    using Text = std::optional<std::string>;

    /// A place at this position (decimal degrees, north and east positive), nothing else known.
    ///@{
    Location(double latitude, double longitude) : latitude_(latitude), longitude_(longitude) {}
    explicit Location(const Coordinate& coordinate)
        : Location(coordinate.latitude().value(), coordinate.longitude().value()) {}
    ///@}
    /// Altitude keeps its sign; the stamp becomes a moment; text fields come
    /// from `text` where given.
    Location(const GPSLocation& gps, const std::optional<TextLocation>& text);
    /// Coordinate, altitude and time of a fix; no text.
    explicit Location(const PlatformLocation& location);

    /// Position in decimal degrees (north and east positive), altitude in metres (negative below
    /// sea level), the moment of the fix, direction in degrees from north; then the address fields,
    /// each absent when unknown. Setters take the value as given: nothing is range-checked.
    ///@{
    double latitude() const { return latitude_; }
    void setLatitude(double v) { latitude_ = v; }
    double longitude() const { return longitude_; }
    void setLongitude(double v) { longitude_ = v; }
    const std::optional<double>& altitude() const { return altitude_; }
    void setAltitude(std::optional<double> v) { altitude_ = v; }
    const std::optional<Date>& stamp() const { return stamp_; }
    void setStamp(std::optional<Date> v) { stamp_ = v; }
    const std::optional<double>& direction() const { return direction_; }
    void setDirection(std::optional<double> v) { direction_ = v; }
    const Text& placeName() const { return placeName_; }
    void setPlaceName(Text v) { placeName_ = std::move(v); }
    const Text& streetName() const { return streetName_; }
    void setStreetName(Text v) { streetName_ = std::move(v); }
    const Text& streetNumber() const { return streetNumber_; }
    void setStreetNumber(Text v) { streetNumber_ = std::move(v); }
    const Text& city() const { return city_; }
    void setCity(Text v) { city_ = std::move(v); }
    const Text& state() const { return state_; }
    void setState(Text v) { state_ = std::move(v); }
    const Text& zipCode() const { return zipCode_; }
    void setZipCode(Text v) { zipCode_ = std::move(v); }
    const Text& countryName() const { return countryName_; }
    void setCountryName(Text v) { countryName_ = std::move(v); }
    const Text& countryCode() const { return countryCode_; }
    void setCountryCode(Text v) { countryCode_ = std::move(v); }
    ///@}

    /// The position alone.
    Coordinate coordinate() const { return Coordinate(latitude_, longitude_); }
    /// The GPS part (position, altitude, stamp, direction) and the address part, as the tag editors
    /// write them.
    ///@{
    GPSLocation gpsLocation() const;
    TextLocation textLocation() const;
    ///@}
    /// The same place without its moment, for comparing places.
    Location withNoStamp() const;

    /// JSON object with all thirteen keys, absent values as null. The stamp is a
    /// number of seconds since 2001-01-01 00:00:00 UTC, the reference date of the
    /// platform's JSON coder, so saved locations keep their meaning across hosts.
    nlohmann::json toJson() const;
    /// Requires all thirteen keys (null for an absent value) and numeric
    /// latitude and longitude; throws nlohmann::json::exception otherwise.
    static Location fromJson(const nlohmann::json& json);

    friend bool operator==(const Location&, const Location&) = default;

private:
    double latitude_;
    double longitude_;
    std::optional<double> altitude_;
    std::optional<Date> stamp_;
    std::optional<double> direction_;
    Text placeName_;
    Text streetName_;
    Text streetNumber_;
    Text city_;
    Text state_;
    Text zipCode_;
    Text countryName_;
    Text countryCode_;
};

} // namespace corvane

namespace nlohmann {
/// Lets nlohmann::json read and write a `Location` in its JSON form (`Location::fromJson`,
/// `toJson`).
template <> struct adl_serializer<corvane::Location> {
    /// Reads the JSON form (`Location::fromJson`).
    static corvane::Location from_json(const json& j);
    /// Writes the JSON form (`Location::toJson`).
    static void to_json(json& j, const corvane::Location& l);
};
} // namespace nlohmann

template <> struct std::hash<corvane::Location> {
    size_t operator()(const corvane::Location& l) const noexcept {
        size_t h = std::hash<double>()(l.latitude()) * 31 + std::hash<double>()(l.longitude());
        h = h * 31 + (l.altitude() ? std::hash<double>()(*l.altitude()) : 1);
        h = h * 31 + (l.stamp() ? std::hash<double>()(l.stamp()->timeIntervalSince1970()) : 2);
        h = h * 31 + (l.direction() ? std::hash<double>()(*l.direction()) : 3);
        for (const auto* f : {&l.placeName(), &l.streetName(), &l.streetNumber(), &l.city(), &l.state(),
                              &l.zipCode(), &l.countryName(), &l.countryCode()})
            h = h * 31 + (*f ? std::hash<std::string>()(**f) : 7);
        return h;
    }
};
