#pragma once

#include "corvane/value_models/Altitude.hpp"
#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/DateTime.hpp"
#include "corvane/value_models/PlatformLocation.hpp"

#include <functional>
#include <optional>

namespace corvane {

/// A position as the GPS tags hold it: coordinate, and where present the
/// altitude, the direction in degrees and the time of the fix.
class GPSLocation {
public:
    /// A fix: position, altitude, direction in degrees from true north, and the moment.
    explicit GPSLocation(Coordinate coordinate, std::optional<Altitude> altitude = std::nullopt,
                         std::optional<double> direction = std::nullopt,
                         std::optional<DateTime> stamp = std::nullopt)
        : coordinate_(coordinate), altitude_(altitude), direction_(direction), stamp_(stamp) {}
    /// Coordinate, altitude and time of a fix; no direction.
    explicit GPSLocation(const PlatformLocation& location);

    /// The position; the altitude; the direction in degrees; the date and time of the fix.
    ///@{
    const Coordinate& coordinate() const { return coordinate_; }
    const std::optional<Altitude>& altitude() const { return altitude_; }
    const std::optional<double>& direction() const { return direction_; }
    const std::optional<DateTime>& stamp() const { return stamp_; }
    ///@}

    /// A fix with accuracies of 0, altitude 0 when absent, and the present
    /// moment when there is no stamp.
    PlatformLocation platformLocation() const;

    friend bool operator==(const GPSLocation&, const GPSLocation&) = default;

private:
    Coordinate coordinate_;
    std::optional<Altitude> altitude_;
    std::optional<double> direction_;
    std::optional<DateTime> stamp_;
};

} // namespace corvane

template <> struct std::hash<corvane::GPSLocation> {
    size_t operator()(const corvane::GPSLocation& l) const noexcept {
        size_t h = std::hash<corvane::Coordinate>()(l.coordinate());
        h = h * 31 + (l.altitude() ? std::hash<corvane::Altitude>()(*l.altitude()) : 1);
        h = h * 31 + (l.direction() ? std::hash<double>()(*l.direction()) : 2);
        return h * 31 + (l.stamp() ? std::hash<corvane::DateTime>()(*l.stamp()) : 3);
    }
};
