#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/Coordinate.hpp"

namespace corvane {

/// A position fix as location services report it: where, how high, how sure,
/// and when. The library reads and builds these; it measures nothing itself.
struct PlatformLocation {
    LocationCoordinate2D coordinate; ///< decimal degrees
    double altitude = 0;             ///< metres
    double horizontalAccuracy = 0;   ///< metres; negative when unknown
    double verticalAccuracy = 0;     ///< metres; negative when unknown
    Date timestamp;                  ///< when the fix was taken

    friend bool operator==(const PlatformLocation&, const PlatformLocation&) = default;
};

} // namespace corvane
