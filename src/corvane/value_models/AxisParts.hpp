#pragma once

#include <cmath>

namespace corvane {

/// The parts of a signed decimal-degree value shared by both axes. Seconds and
/// minutes come from the remainder of the value in seconds within its degree.
struct AxisParts {
    double seconds;
    double degrees;
    double minutes;
    bool negative; ///< false also for -0.0, true for NaN

    explicit AxisParts(double value) {
        const double a = std::fabs(std::fmod(value * 3600.0, 3600.0));
        seconds = std::fmod(a, 60.0);
        minutes = a / 60.0;
        degrees = std::fabs(value * 3600.0 / 3600.0);
        negative = !(value >= 0);
    }
};

} // namespace corvane
