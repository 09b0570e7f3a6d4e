#pragma once

#include "corvane/location_support/PlaceMark.hpp"
#include "corvane/value_models/Coordinate.hpp"

#include <memory>
#include <optional>
#include <string_view>

namespace corvane {

/// Address look-ups: the place at a position (reverse) and the position of an address (forward).
/// Implementations are immutable once built, or guard themselves: both calls may come from any
/// thread at once. They block until they have an answer; nothing means no answer (no error is
/// reported, as a failed look-up simply leaves the tags as they are).
///
/// One geocoder serves the process: `shared()`, which is the built-in `GeoNamesGeocoder` where the
/// GeoNames cities database is available and nothing otherwise, until a host sets its own.
class Geocoder {
public:
    virtual ~Geocoder() = default;

    /// The place nearest `coordinate`; nothing when none is known near enough.
    virtual std::optional<PlaceMark> reverseGeocode(const Coordinate& coordinate) const = 0;
    /// `address` is free text such as a formatted address ("Paris, Île-de-France, France").
    virtual std::optional<PlaceMark> geocodeAddress(std::string_view address) const = 0;

    /// The geocoder of the library: GeoNames where this build has it.
    static std::shared_ptr<const Geocoder> shared();
    /// Replaces the process-wide geocoder; nullptr turns look-ups off.
    static void setShared(std::shared_ptr<const Geocoder> geocoder);
};

} // namespace corvane
