#include "corvane/value_models/PartialTime.hpp"

#include "corvane/value_models/GregorianCalendar.hpp"

namespace corvane {

PartialTime::PartialTime() : PartialTime(Date::now()) {}

PartialTime::PartialTime(Date date) {
    const DateComponents c = GregorianCalendar::components(date);
    hour = c.hour.value_or(0);
    minute = c.minute.value_or(0);
    second = c.second.value_or(0);
}

std::optional<PartialTime> PartialTime::fromOptional(const std::optional<Date>& date) {
    if (!date) return std::nullopt;
    return PartialTime(*date);
}

DateComponents PartialTime::dateComponents() const {
    return DateComponents::fromFields(std::nullopt, std::nullopt, std::nullopt, hour, minute, second);
}

Date PartialTime::date() const {
    // A fixed day carries the time, so that the fields always name a moment.
    return GregorianCalendar::date(DateComponents::fromFields(2000, 1, 1, hour, minute, second))
        .value_or(Date::now());
}

} // namespace corvane
