#pragma once

#include "corvane/value_models/AngularAxis.hpp"

#include <array>
#include <functional>
#include <string_view>

namespace corvane {

/// The sides of the prime meridian.
enum class LongitudeReference { east, west };

/// A position east or west of the prime meridian. No range is enforced: 199 is a
/// valid longitude. The parts in degrees, minutes and seconds are derived once.
class Longitude : public AngularAxis<Longitude, LongitudeReference> {
public:
    /// From signed decimal degrees, positive to the east.
    explicit Longitude(double value) : AngularAxis(value) {}

private:
    friend class AngularAxis<Longitude, LongitudeReference>;
    static constexpr std::array<std::string_view, 2> rawReferences{"E", "W"};
};

} // namespace corvane

template <> struct std::hash<corvane::Longitude> {
    size_t operator()(const corvane::Longitude& l) const noexcept { return l.hash(); }
};
