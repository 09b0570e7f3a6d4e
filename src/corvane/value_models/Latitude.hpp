#pragma once

#include "corvane/value_models/AngularAxis.hpp"

#include <array>
#include <functional>
#include <string_view>

namespace corvane {

/// The sides of the equator.
enum class LatitudeReference { north, south };

/// A position north or south of the equator. No range is enforced: 99 is a
/// valid latitude. The parts in degrees, minutes and seconds are derived once.
class Latitude : public AngularAxis<Latitude, LatitudeReference> {
public:
    /// From signed decimal degrees, positive to the north.
    explicit Latitude(double value) : AngularAxis(value) {}

private:
    friend class AngularAxis<Latitude, LatitudeReference>;
    static constexpr std::array<std::string_view, 2> rawReferences{"N", "S"};
};

} // namespace corvane

template <> struct std::hash<corvane::Latitude> {
    size_t operator()(const corvane::Latitude& l) const noexcept { return l.hash(); }
};
