#include "corvane/value_models/DateComponents.hpp"

#include "corvane/value_models/GregorianCalendar.hpp"

namespace corvane {

DateComponents DateComponents::fromFields(std::optional<int64_t> year, std::optional<int64_t> month,
                                          std::optional<int64_t> day, std::optional<int64_t> hour,
                                          std::optional<int64_t> minute, std::optional<int64_t> second) {
    DateComponents c;
    c.year = year;
    c.month = month;
    c.day = day;
    c.hour = hour;
    c.minute = minute;
    c.second = second;
    return c;
}

std::optional<Date> DateComponents::date() const {
    return GregorianCalendar::date(*this);
}

} // namespace corvane
