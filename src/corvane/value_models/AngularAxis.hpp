#pragma once

#include "corvane/value_models/AxisParts.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string_view>

namespace corvane {

/// What Latitude and Longitude share: signed decimal degrees, their parts in
/// degrees, minutes and seconds (derived once), and the side of the reference
/// line. `Ref` lists the positive side first; `Derived` names the one-letter raw
/// value of each side, in the same order, in `rawReferences`.
template <typename Derived, typename Ref> class AngularAxis {
public:
    /// The two sides of the reference line, the positive one first.
    using Reference = Ref;

    /// The one-letter text of a side ("N", "S", "E", "W").
    static std::string_view rawValue(Reference reference) {
        return Derived::rawReferences[static_cast<std::size_t>(reference)];
    }
    /// The side a one-letter text names; nothing for any other text.
    static std::optional<Reference> referenceFromRawValue(std::string_view raw) {
        for (std::size_t i = 0; i < Derived::rawReferences.size(); ++i)
            if (raw == Derived::rawReferences[i]) return static_cast<Reference>(i);
        return std::nullopt;
    }

    /// The axis at zero degrees.
    static const Derived& zero() {
        static const Derived z(0.0);
        return z;
    }

    /// Signed decimal degrees.
    double value() const { return value_; }
    /// Seconds part of the position, 0 up to 60, with its fraction.
    double seconds() const { return seconds_; }
    /// Absolute decimal degrees, with their fraction.
    double degrees() const { return degrees_; }
    /// Minutes part of the position, 0 up to 60, the seconds as a fraction.
    double minutes() const { return minutes_; }
    /// The side of the reference line (NaN counts as the negative side).
    Reference reference() const { return reference_; }

    friend bool operator==(const AngularAxis&, const AngularAxis&) = default;

    /// A hash of every field, for `std::hash`.
    std::size_t hash() const noexcept {
        std::size_t h = std::hash<double>()(value_);
        for (double v : {seconds_, degrees_, minutes_})
            h = h * 31 + std::hash<double>()(v);
        return h * 31 + static_cast<std::size_t>(reference_);
    }

protected:
    /// From signed decimal degrees; NaN counts as the negative side.
    explicit AngularAxis(double value) : AngularAxis(value, AxisParts(value)) {}

private:
    AngularAxis(double value, const AxisParts& parts)
        : value_(value), seconds_(parts.seconds), degrees_(parts.degrees), minutes_(parts.minutes),
          reference_(static_cast<Reference>(parts.negative ? 1 : 0)) {}

    double value_;
    double seconds_;
    double degrees_;
    double minutes_;
    Reference reference_;
};

} // namespace corvane
