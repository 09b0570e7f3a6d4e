#include "corvane/value_models/DateComponents.hpp"

#include "corvane/value_models/GregorianCalendar.hpp"

namespace corvane {

std::optional<Date> DateComponents::date() const {
    return GregorianCalendar::date(*this);
}

} // namespace corvane
