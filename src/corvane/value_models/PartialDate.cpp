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
    return DateComponents::fromFields(year, month, day);
}

Date PartialDate::date() const {
    return GregorianCalendar::date(DateComponents::fromFields(year, month, day, 0, 0, 0))
        .value_or(Date::now());
}

} // namespace corvane
