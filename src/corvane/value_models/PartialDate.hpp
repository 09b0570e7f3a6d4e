#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/DateComponents.hpp"

#include <cstdint>
#include <functional>
#include <optional>

namespace corvane {

/// A calendar date without a time: year, month and day as read from a tag.
/// Fields are those of the Gregorian calendar in the process's time zone.
class PartialDate {
public:
    /// Year, month 1 to 12, day 1 to 31; not checked.
    ///@{
    int64_t year = 0;
    int64_t month = 0;
    int64_t day = 0;
    ///@}

    /// Today.
    PartialDate();
    /// A date of these fields.
    PartialDate(int64_t year, int64_t month, int64_t day) : year(year), month(month), day(day) {}
    /// The date of the moment, in the process's time zone.
    explicit PartialDate(Date date);
    /// The date of the moment, if there is one.
    static std::optional<PartialDate> fromOptional(const std::optional<Date>& date);

    /// Midnight at the start of the day; the present moment if the calendar
    /// can't build it.
    Date date() const;
    /// The three fields as calendar components.
    DateComponents dateComponents() const;

    friend bool operator==(const PartialDate&, const PartialDate&) = default;
};

} // namespace corvane

template <> struct std::hash<corvane::PartialDate> {
    size_t operator()(const corvane::PartialDate& d) const noexcept {
        size_t h = std::hash<int64_t>()(d.year);
        h = h * 31 + std::hash<int64_t>()(d.month);
        return h * 31 + std::hash<int64_t>()(d.day);
    }
};
