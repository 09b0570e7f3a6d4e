#pragma once

#include <cmath>

namespace corvane {

/// The parts of a signed decimal-degree value shared by both axes. Seconds and
/// minutes come from the remainder of the value in seconds within its degree.
struct AxisParts {
    double seconds; ///< 0 up to 60, with its fraction
    double degrees; ///< absolute degrees, with their fraction
    double minutes; ///< 0 up to 60, the seconds as a fraction
    bool negative;  ///< false also for -0.0, true for NaN

    /// The parts of `value`, in signed decimal degrees.
    explicit AxisParts(double value) {
        const double a = std::fabs(std::fmod(value * 3600.0, 3600.0));
        seconds = std::fmod(a, 60.0);
        minutes = a / 60.0;
        degrees = std::fabs(value * 3600.0 / 3600.0);
        negative = !(value >= 0);
    }
};

} // namespace corvane
