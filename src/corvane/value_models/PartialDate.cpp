#include "corvane/value_models/PartialDate.hpp"

#include "corvane/value_models/GregorianCalendar.hpp"

namespace corvane {

PartialDate::PartialDate() : PartialDate(Date::now()) {}

PartialDate::PartialDate(Date date) {
    const DateComponents c = GregorianCalendar::components(date);
    year = c.year.value_or(0);
    month = c.month.value_or(0);
    day = c.day.value_or(0);
}

std::optional<PartialDate> PartialDate::fromOptional(const std::optional<Date>& date) {
    if (!date) return std::nullopt;
    return PartialDate(*date);
}

DateComponents PartialDate::dateComponents() const {
    DateComponents c;
    c.year = year;
    c.month = month;
    c.day = day;
    return c;
}

Date PartialDate::date() const {
    DateComponents c = dateComponents();
    c.hour = 0;
    c.minute = 0;
    c.second = 0;
    return GregorianCalendar::date(c).value_or(Date::now());
}

} // namespace corvane
