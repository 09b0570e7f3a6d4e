#pragma once

#include <compare>
#include <string>

namespace corvane {

// A point in time, as seconds since 1970-01-01 00:00:00 UTC. Fractions of a
// second are kept; calendar work on it goes through ICU (see DateTimeValueConverter).
class Date {
public:
    constexpr Date() = default;
    constexpr explicit Date(double secondsSince1970) : seconds_(secondsSince1970) {}

    static Date now();
    static constexpr Date fromTimeIntervalSince1970(double s) { return Date(s); }

    constexpr double timeIntervalSince1970() const { return seconds_; }
    // ICU's UDate: milliseconds since the epoch.
    constexpr double udate() const { return seconds_ * 1000.0; }
    static constexpr Date fromUDate(double ms) { return Date(ms / 1000.0); }

    Date addingTimeInterval(double s) const { return Date(seconds_ + s); }

    // Stable text form in UTC, "2024-05-01 12:00:00 +0000".
    std::string description() const;

    friend constexpr bool operator==(const Date&, const Date&) = default;
    friend constexpr auto operator<=>(const Date&, const Date&) = default;

private:
    double seconds_ = 0;
};

} // namespace corvane
