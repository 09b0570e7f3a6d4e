#pragma once

#include "corvane/utilities/Date.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace corvane {

/// Calendar fields of a moment, any of which may be unset, tied to the calendar
/// they belong to. `year` is the astronomical year (1 BC is 0), so that every
/// date round-trips without an era field.
class DateComponents {
public:
    /// The fields, each absent unless set; counted as the Gregorian calendar counts them.
    ///@{
    std::optional<int64_t> year;
    std::optional<int64_t> month;
    std::optional<int64_t> day;
    std::optional<int64_t> hour;
    std::optional<int64_t> minute;
    std::optional<int64_t> second;
    std::optional<int64_t> nanosecond;
    ///@}

    /// The calendar the fields are counted in; always the Gregorian one here.
    std::string calendarIdentifier = "gregorian";
    /// Olson identifier of the zone the fields were read in; empty means the
    /// process's time zone at the time of use.
    std::string timeZoneIdentifier;

    /// The fields from year to second; the others unset.
    static DateComponents fromFields(std::optional<int64_t> year, std::optional<int64_t> month,
                                     std::optional<int64_t> day, std::optional<int64_t> hour = std::nullopt,
                                     std::optional<int64_t> minute = std::nullopt,
                                     std::optional<int64_t> second = std::nullopt);

    /// The moment these fields name in their calendar; unset fields take the
    /// calendar's defaults. Nothing where the calendar can't build one.
    std::optional<Date> date() const;

    friend bool operator==(const DateComponents&, const DateComponents&) = default;
};

} // namespace corvane
