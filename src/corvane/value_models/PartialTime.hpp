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
    int64_t hour = 0;
    int64_t minute = 0;
    int64_t second = 0;

    /// The present time of day.
    PartialTime();
    PartialTime(int64_t hour, int64_t minute, int64_t second) : hour(hour), minute(minute), second(second) {}
    explicit PartialTime(Date date);
    static std::optional<PartialTime> fromOptional(const std::optional<Date>& date);

    /// The time on January 1, 2000: only the time part has meaning. Fields out of
    /// range roll over by the calendar's rules (25:00 is 01:00 on January 2). The
    /// present moment if the calendar can't build it.
    Date date() const;
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
