#pragma once

#include "corvane/value_models/Latitude.hpp"
#include "corvane/value_models/Longitude.hpp"

#include <functional>
#include <string>

namespace corvane {

/// A plain latitude and longitude pair in signed decimal degrees, the form
/// location services exchange.
struct LocationCoordinate2D {
    double latitude = 0;  ///< decimal degrees, north positive
    double longitude = 0; ///< decimal degrees, east positive
    friend bool operator==(const LocationCoordinate2D&, const LocationCoordinate2D&) = default;
};

/// A position on the globe.
class Coordinate {
public:
    /// A position of these axes, in decimal degrees (north and east positive); nothing is
    /// range-checked.
    ///@{
    Coordinate(Latitude latitude, Longitude longitude) : latitude_(latitude), longitude_(longitude) {}
    Coordinate(double latitude, double longitude) : latitude_(latitude), longitude_(longitude) {}
    explicit Coordinate(const LocationCoordinate2D& coordinate2D)
        : Coordinate(coordinate2D.latitude, coordinate2D.longitude) {}
    ///@}
    /// 0° N, 0° E.
    static const Coordinate& zero();

    /// The two axes.
    ///@{
    const Latitude& latitude() const { return latitude_; }
    const Longitude& longitude() const { return longitude_; }
    ///@}

    /// The plain pair of doubles.
    LocationCoordinate2D locationCoordinate2D() const { return {latitude_.value(), longitude_.value()}; }

    /// The two values in their shortest round-trip text, "40.2, -75.5".
    std::string description() const;

    friend bool operator==(const Coordinate&, const Coordinate&) = default;

private:
    Latitude latitude_;
    Longitude longitude_;
};

} // namespace corvane

template <> struct std::hash<corvane::Coordinate> {
    size_t operator()(const corvane::Coordinate& c) const noexcept {
        return std::hash<corvane::Latitude>()(c.latitude()) * 31 +
               std::hash<corvane::Longitude>()(c.longitude());
    }
};
