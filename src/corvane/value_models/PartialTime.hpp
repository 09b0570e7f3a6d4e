#pragma once

#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/DateComponents.hpp"

#include <cstdint>
#include <functional>
#include <optional>

namespace corvane {

/// A time of day without a date: hour, minute and second as read from a tag.
class PartialTime {
public:
    /// Hour 0 to 23, minute and second 0 to 59; not checked.
    ///@{
    int64_t hour = 0;
    int64_t minute = 0;
    int64_t second = 0;
    ///@}

    /// The present time of day.
    PartialTime();
    /// A time of these fields.
    PartialTime(int64_t hour, int64_t minute, int64_t second) : hour(hour), minute(minute), second(second) {}
    /// The time of day of the moment, in the process's time zone.
    explicit PartialTime(Date date);
    /// The time of day of the moment, if there is one.
    static std::optional<PartialTime> fromOptional(const std::optional<Date>& date);

    /// The time on January 1, 2000: only the time part has meaning. Fields out of
    /// range roll over by the calendar's rules (25:00 is 01:00 on January 2). The
    /// present moment if the calendar can't build it.
    Date date() const;
    /// The three fields as calendar components.
    DateComponents dateComponents() const;

    friend bool operator==(const PartialTime&, const PartialTime&) = default;
};

} // namespace corvane

template <> struct std::hash<corvane::PartialTime> {
    size_t operator()(const corvane::PartialTime& t) const noexcept {
        size_t h = std::hash<int64_t>()(t.hour);
        h = h * 31 + std::hash<int64_t>()(t.minute);
        return h * 31 + std::hash<int64_t>()(t.second);
    }
};
