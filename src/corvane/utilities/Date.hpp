#pragma once

#include <compare>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace corvane {

/// A point in time, as seconds since 1970-01-01 00:00:00 UTC. Fractions of a
/// second are kept; calendar work on it goes through ICU (see DateTimeValueConverter).
///
/// A date read from text may also carry how that text told it: its own UTC offset
/// ("+03:00" of "11:25:40+03:00"), the number of fraction digits written, and the
/// fields written (a year alone, a date alone, a time without seconds). Those are
/// presentation, not identity: two dates are equal when they are the same instant.
/// Calendar work and formatting use the own offset instead of the process's zone,
/// so a value keeps its wall clock and offset on any machine.
class Date {
public:
    /// The fields a text wrote: all, all but the seconds, the date alone, the year alone.
    enum class Fields : int8_t { all, noSeconds, dateOnly, yearOnly };

    constexpr Date() = default;
    /// The moment this many seconds after 1970-01-01 00:00:00 UTC; the second form also keeps how a
    /// text wrote it (its own zone offset, fraction digits, fields), which equality ignores.
    ///@{
    constexpr explicit Date(double secondsSince1970) : seconds_(secondsSince1970) {}
    constexpr Date(double secondsSince1970, std::optional<int32_t> ownOffsetSeconds, int fractionDigits = 0,
                   Fields fields = Fields::all)
        : seconds_(secondsSince1970), ownOffset_(ownOffsetSeconds),
          fractionDigits_(static_cast<int8_t>(fractionDigits)), fields_(fields) {}
    ///@}

    /// Seconds east of UTC of the text the date was read from; nothing for a
    /// date in the process's zone.
    constexpr std::optional<int32_t> ownOffset() const { return ownOffset_; }
    /// Digits of the fraction of a second that the text held (0: none written).
    constexpr int fractionDigits() const { return fractionDigits_; }
    /// The fields the text wrote (all for a date not read from text).
    constexpr Fields fields() const { return fields_; }
    /// The same instant with this presentation.
    constexpr Date withPresentation(std::optional<int32_t> ownOffsetSeconds, int fractionDigits,
                                    Fields fields = Fields::all) const {
        return Date(seconds_, ownOffsetSeconds, fractionDigits, fields);
    }

    /// The present moment, from the system clock.
    static Date now();
    /// The moment this many seconds after 1970-01-01 UTC.
    static constexpr Date fromTimeIntervalSince1970(double s) { return Date(s); }

    /// Seconds since 1970-01-01 00:00:00 UTC, with their fraction.
    constexpr double timeIntervalSince1970() const { return seconds_; }
    /// ICU's UDate: milliseconds since the epoch.
    constexpr double udate() const { return seconds_ * 1000.0; }
    /// From ICU's UDate, in milliseconds.
    static constexpr Date fromUDate(double ms) { return Date(ms / 1000.0); }

    /// The moment `s` seconds later (earlier when negative), with the same presentation.
    Date addingTimeInterval(double s) const {
        return Date(seconds_ + s, ownOffset_, fractionDigits_, fields_);
    }

    /// Stable text form in UTC, "2024-05-01 12:00:00 +0000".
    std::string description() const;

    /// Moments compare by their seconds alone.
    ///@{
    friend constexpr bool operator==(const Date& a, const Date& b) { return a.seconds_ == b.seconds_; }
    friend constexpr auto operator<=>(const Date& a, const Date& b) { return a.seconds_ <=> b.seconds_; }
    ///@}

private:
    double seconds_ = 0;
    std::optional<int32_t> ownOffset_;
    int8_t fractionDigits_ = 0;
    Fields fields_ = Fields::all;
};

} // namespace corvane

/// Hashes the instant, as equality compares it.
template <> struct std::hash<corvane::Date> {
    std::size_t operator()(const corvane::Date& d) const noexcept {
        return std::hash<double>()(d.timeIntervalSince1970());
    }
};
