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
    DateComponents c;
    c.hour = hour;
    c.minute = minute;
    c.second = second;
    return c;
}

Date PartialTime::date() const {
    // A fixed day carries the time, so that the fields always name a moment.
    DateComponents c = dateComponents();
    c.year = 2000;
    c.month = 1;
    c.day = 1;
    return GregorianCalendar::date(c).value_or(Date::now());
}

} // namespace corvane
