#include "corvane/value_models/DateTime.hpp"

#include "corvane/value_models/GregorianCalendar.hpp"

namespace corvane {

DateTime::DateTime(Date date) {
    const DateComponents c = GregorianCalendar::components(date);
    year = c.year.value_or(0);
    month = c.month.value_or(0);
    day = c.day.value_or(0);
    hour = c.hour.value_or(0);
    minute = c.minute.value_or(0);
    second = c.second.value_or(0);
}

DateTime::DateTime(const PartialDate& date, const PartialTime& time)
    : DateTime(date.year, date.month, date.day, time.hour, time.minute, time.second) {}

std::optional<DateTime> DateTime::fromOptional(const std::optional<Date>& date) {
    if (!date) return std::nullopt;
    return DateTime(*date);
}

DateComponents DateTime::dateComponents() const {
    return DateComponents::fromFields(year, month, day, hour, minute, second);
}

Date DateTime::date() const {
    return GregorianCalendar::date(dateComponents()).value_or(Date::now());
}

} // namespace corvane
