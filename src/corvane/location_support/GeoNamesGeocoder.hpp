#pragma once

#include "corvane/location_support/Geocoder.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// The built-in offline geocoder, on the GeoNames cities database shipped with libgeonames (the
/// cities of 15,000 people or more, some 24,000 of them).
///
/// Reverse look-ups answer the nearest city, found through a k-d tree over the cities' points on
/// the unit sphere (straight-line distance there orders places as the great-circle distance does);
/// a position farther than `maximumDistance()` from any city has no answer. Forward look-ups read
/// the address as comma-separated parts and as runs of words, match city names folded for case
/// and diacritics ("zurich" finds "Zürich"), prefer a city whose state or country the address also
/// names, then the most populous; libgeonames' own search is the last resort.
///
/// The database and its indexes are loaded once per process, on the first look-up (or by
/// `prepare()`), safely from any thread; afterwards every look-up is a read of immutable data.
/// Without libgeonames at build time the geocoder answers nothing and `isAvailable()` is false.
class GeoNamesGeocoder : public Geocoder {
public:
    static constexpr double defaultMaximumDistance = 150'000; ///< metres

    /// A geocoder that finds no place farther than `maximumDistance` metres.
    explicit GeoNamesGeocoder(double maximumDistance = defaultMaximumDistance)
        : maximumDistance_(maximumDistance) {}

    /// Whether this build has the GeoNames database.
    static bool isAvailable();
    /// Loads the database and builds the indexes now; gives the number of cities.
    static std::size_t prepare();

    /// Metres beyond which no place is found.
    double maximumDistance() const { return maximumDistance_; }

    /// The nearest city within `maximumDistance()`; nothing when none is or the database is absent.
    std::optional<PlaceMark> reverseGeocode(const Coordinate& coordinate) const override;
    std::optional<PlaceMark> geocodeAddress(std::string_view address) const override;

    /// Lower case, without diacritics, punctuation turned into single spaces: the form in which
    /// names are compared.
    static std::string foldedText(std::string_view text);

private:
    double maximumDistance_;
};

} // namespace corvane
