#include "corvane/value_models/Location.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

namespace {

// Seconds from 1970-01-01 to 2001-01-01, both UTC.
constexpr double kReferenceDateOffset = 978307200.0;

template <class T> nlohmann::json orNull(const std::optional<T>& v) {
    return v ? nlohmann::json(*v) : nlohmann::json(nullptr);
}

// The value under a key that must be present; null reads as nothing.
template <class T> std::optional<T> optionalAt(const nlohmann::json& json, const char* key) {
    const nlohmann::json& v = json.at(key);
    if (v.is_null()) return std::nullopt;
    return v.get<T>();
}

double numberAt(const nlohmann::json& json, const char* key) {
    const nlohmann::json& v = json.at(key);
    if (!v.is_number())
        throw nlohmann::json::type_error::create(302, std::string("\"") + key + "\" must be a number", &v);
    return v.get<double>();
}

} // namespace

Location::Location(const GPSLocation& gps, const std::optional<TextLocation>& text)
    : latitude_(gps.coordinate().latitude().value()), longitude_(gps.coordinate().longitude().value()),
      direction_(gps.direction()) {
    if (gps.altitude()) altitude_ = gps.altitude()->value();
    if (gps.stamp()) stamp_ = gps.stamp()->date();
    if (text) {
        placeName_ = text->placeName();
        streetName_ = text->streetName();
        streetNumber_ = text->streetNumber();
        city_ = text->city();
        state_ = text->state();
        zipCode_ = text->zipCode();
        countryName_ = text->countryName();
        countryCode_ = text->countryCode();
    }
}

Location::Location(const PlatformLocation& location)
    : latitude_(location.coordinate.latitude), longitude_(location.coordinate.longitude),
      altitude_(location.altitude), stamp_(location.timestamp) {}

GPSLocation Location::gpsLocation() const {
    return GPSLocation(Coordinate(latitude_, longitude_), Altitude::fromOptional(altitude_), direction_,
                       DateTime::fromOptional(stamp_));
}

TextLocation Location::textLocation() const {
    return TextLocation(placeName_, streetName_, streetNumber_, city_, state_, zipCode_, countryName_,
                        countryCode_);
}

Location Location::withNoStamp() const {
    Location copy = *this;
    copy.stamp_ = std::nullopt;
    return copy;
}

nlohmann::json Location::toJson() const {
    nlohmann::json j = nlohmann::json::object();
    j["latitude"] = latitude_;
    j["longitude"] = longitude_;
    j["altitude"] = orNull(altitude_);
    j["stamp"] = stamp_ ? nlohmann::json(stamp_->timeIntervalSince1970() - kReferenceDateOffset)
                        : nlohmann::json(nullptr);
    j["direction"] = orNull(direction_);
    j["place_name"] = orNull(placeName_);
    j["street_name"] = orNull(streetName_);
    j["street_number"] = orNull(streetNumber_);
    j["city"] = orNull(city_);
    j["state"] = orNull(state_);
    j["zip_code"] = orNull(zipCode_);
    j["country_name"] = orNull(countryName_);
    j["country_code"] = orNull(countryCode_);
    return j;
}

Location Location::fromJson(const nlohmann::json& j) {
    Location location(numberAt(j, "latitude"), numberAt(j, "longitude"));
    location.altitude_ = optionalAt<double>(j, "altitude");
    if (const auto stamp = optionalAt<double>(j, "stamp"))
        location.stamp_ = Date(*stamp + kReferenceDateOffset);
    location.direction_ = optionalAt<double>(j, "direction");
    location.placeName_ = optionalAt<std::string>(j, "place_name");
    location.streetName_ = optionalAt<std::string>(j, "street_name");
    location.streetNumber_ = optionalAt<std::string>(j, "street_number");
    location.city_ = optionalAt<std::string>(j, "city");
    location.state_ = optionalAt<std::string>(j, "state");
    location.zipCode_ = optionalAt<std::string>(j, "zip_code");
    location.countryName_ = optionalAt<std::string>(j, "country_name");
    location.countryCode_ = optionalAt<std::string>(j, "country_code");
    return location;
}

} // namespace corvane

corvane::Location nlohmann::adl_serializer<corvane::Location>::from_json(const json& j) {
    return corvane::Location::fromJson(j);
}

void nlohmann::adl_serializer<corvane::Location>::to_json(json& j, const corvane::Location& l) {
    j = l.toJson();
}
