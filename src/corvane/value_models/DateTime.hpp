#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/DateComponents.hpp"
#include "corvane/value_models/PartialDate.hpp"
#include "corvane/value_models/PartialTime.hpp"

#include <cstdint>
#include <functional>
#include <optional>

namespace corvane {

/// A full calendar date and time of day, without a zone: the fields of the
/// Gregorian calendar in the process's time zone.
class DateTime {
public:
    /// The six fields as the calendar numbers them: month 1 to 12, day 1 to 31, hour 0 to 23. Not
    /// checked: a field out of range is carried as it is.
    ///@{
    int64_t year = 0;
    int64_t month = 0;
    int64_t day = 0;
    int64_t hour = 0;
    int64_t minute = 0;
    int64_t second = 0;
    ///@}

    DateTime() = default;
    /// A date-time of these fields.
    DateTime(int64_t year, int64_t month, int64_t day, int64_t hour, int64_t minute, int64_t second)
        : year(year), month(month), day(day), hour(hour), minute(minute), second(second) {}
    /// The fields of the moment, in the process's time zone.
    explicit DateTime(Date date);
    /// The date of one and the time of the other (a GPS date stamp and time stamp).
    DateTime(const PartialDate& date, const PartialTime& time);
    /// The fields of the moment, if there is one.
    static std::optional<DateTime> fromOptional(const std::optional<Date>& date);

    /// The date part, and the time part.
    ///@{
    PartialDate partialDate() const { return PartialDate(year, month, day); }
    PartialTime partialTime() const { return PartialTime(hour, minute, second); }
    ///@}

    /// The moment of the six fields; the present moment if the calendar can't
    /// build it.
    Date date() const;
    /// The six fields as calendar components.
    DateComponents dateComponents() const;

    friend bool operator==(const DateTime&, const DateTime&) = default;
};

} // namespace corvane

template <> struct std::hash<corvane::DateTime> {
    size_t operator()(const corvane::DateTime& t) const noexcept {
        size_t h = 0;
        for (int64_t v : {t.year, t.month, t.day, t.hour, t.minute, t.second})
            h = h * 31 + std::hash<int64_t>()(v);
        return h;
    }
};
