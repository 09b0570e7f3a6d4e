#include "corvane/value_models/GPSLocation.hpp"

namespace corvane {

GPSLocation::GPSLocation(const PlatformLocation& location)
    : coordinate_(location.coordinate), altitude_(Altitude(location.altitude)),
      stamp_(DateTime(location.timestamp)) {}

PlatformLocation GPSLocation::platformLocation() const {
    PlatformLocation location;
    location.coordinate = coordinate_.locationCoordinate2D();
    location.altitude = altitude_ ? altitude_->value() : 0;
    location.horizontalAccuracy = 0;
    location.verticalAccuracy = 0;
    location.timestamp = stamp_ ? stamp_->date() : Date::now();
    return location;
}

} // namespace corvane
