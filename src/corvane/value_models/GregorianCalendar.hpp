#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/DateComponents.hpp"

#include <optional>
#include <string>

namespace corvane {

/// Calendar arithmetic of the whole library: the Gregorian calendar with the
/// locale "en_US_POSIX" in the process's current time zone (ICU's default zone).
/// Every call is independent and thread-safe; each thread keeps its own ICU
/// calendar because ICU calendars are not.
class GregorianCalendar {
public:
    /// The moment the fields name. Unset fields take the calendar's defaults:
    /// year 1, January, day 1, 00:00:00. Out-of-range fields roll over (25:00 is
    /// 01:00 the next day). Nothing for fields beyond the calendar's reach.
    static std::optional<Date> date(const DateComponents& components);

    /// All fields of a moment, year to nanosecond, in the process's time zone, or
    /// at the date's own offset when it has one.
    static DateComponents components(Date date);

    /// Adds the set fields as offsets, larger units first, without wrapping: a
    /// month added to January 31 gives the last day of February, 40 seconds carry
    /// into the minutes, and a day keeps the wall-clock time across a DST change.
    /// A date with its own offset moves on that offset's wall clock and keeps it.
    static std::optional<Date> adding(const DateComponents& offset, Date date);

    /// The identifier of a fixed-offset zone, "GMT+03:00", as the calendar takes it.
    static std::string offsetZoneIdentifier(int32_t offsetSeconds);

    /// Olson identifier of the zone the calendar works in.
    static std::string timeZoneIdentifier();
};

} // namespace corvane
