#pragma once

#include <functional>
#include <optional>
#include <string_view>

namespace corvane {

// A position east or west of the prime meridian. No range is enforced: 199 is a
// valid longitude. The parts in degrees, minutes and seconds are derived once.
class Longitude {
public:
    enum class Reference { east, west };
    static std::string_view rawValue(Reference reference);
    static std::optional<Reference> referenceFromRawValue(std::string_view raw);

    // From signed decimal degrees, positive to the east.
    explicit Longitude(double value);
    static const Longitude& zero();

    // Signed decimal degrees.
    double value() const { return value_; }
    // Seconds part of the position, 0 up to 60, with its fraction.
    double seconds() const { return seconds_; }
    // Absolute decimal degrees, with their fraction.
    double degrees() const { return degrees_; }
    // Minutes part of the position, 0 up to 60, the seconds as a fraction.
    double minutes() const { return minutes_; }
    Reference reference() const { return reference_; }

    friend bool operator==(const Longitude&, const Longitude&) = default;

private:
    double value_;
    double seconds_;
    double degrees_;
    double minutes_;
    Reference reference_;
};

} // namespace corvane

template <> struct std::hash<corvane::Longitude> {
    size_t operator()(const corvane::Longitude& l) const noexcept {
        size_t h = std::hash<double>()(l.value());
        for (double v : {l.seconds(), l.degrees(), l.minutes()})
            h = h * 31 + std::hash<double>()(v);
        return h * 31 + static_cast<size_t>(l.reference());
    }
};
