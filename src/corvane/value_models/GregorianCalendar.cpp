#include "corvane/value_models/GregorianCalendar.hpp"

#include <unicode/gregocal.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>

#include <cmath>
#include <cstdio>
#include <limits>
#include <memory>

namespace corvane {

namespace {

// One calendar per thread, set to the wanted zone before each use so that a
// change of the process's zone is seen at once.
icu::GregorianCalendar* calendar(const std::string& zoneIdentifier) {
    thread_local std::unique_ptr<icu::GregorianCalendar> cal;
    UErrorCode status = U_ZERO_ERROR;
    if (!cal) {
        cal = std::make_unique<icu::GregorianCalendar>(icu::Locale("en_US_POSIX"), status);
        if (U_FAILURE(status)) {
            cal.reset();
            return nullptr;
        }
        cal->setLenient(true);
    }
    if (zoneIdentifier.empty())
        cal->adoptTimeZone(icu::TimeZone::createDefault());
    else
        cal->adoptTimeZone(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zoneIdentifier)));
    return cal.get();
}

bool fitsInt32(int64_t v) {
    return v >= std::numeric_limits<int32_t>::min() && v <= std::numeric_limits<int32_t>::max();
}

constexpr int64_t kNanosPerMilli = 1'000'000;

// The zone a date's fields are read and moved in: its own offset when its text gave one.
std::string zoneOf(Date date) {
    return date.ownOffset() ? GregorianCalendar::offsetZoneIdentifier(*date.ownOffset()) : std::string();
}

} // namespace

std::string GregorianCalendar::offsetZoneIdentifier(int32_t offsetSeconds) {
    const int32_t minutes = (offsetSeconds < 0 ? -offsetSeconds : offsetSeconds) / 60;
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "GMT%c%02d:%02d", offsetSeconds < 0 ? '-' : '+',
                  static_cast<int>(minutes / 60), static_cast<int>(minutes % 60));
    return buffer;
}

std::optional<Date> GregorianCalendar::date(const DateComponents& c) {
    icu::GregorianCalendar* cal = calendar(c.timeZoneIdentifier);
    if (!cal) return std::nullopt;
    const int64_t year = c.year.value_or(1);
    const int64_t fields[] = {c.month.value_or(1) - 1, c.day.value_or(1), c.hour.value_or(0),
                              c.minute.value_or(0), c.second.value_or(0)};
    for (int64_t v : fields)
        if (!fitsInt32(v)) return std::nullopt;
    if (!fitsInt32(year)) return std::nullopt;
    const int64_t nanos = c.nanosecond.value_or(0);
    const int64_t millis = nanos / kNanosPerMilli;
    if (!fitsInt32(millis)) return std::nullopt;

    cal->clear();
    cal->set(UCAL_EXTENDED_YEAR, static_cast<int32_t>(year));
    cal->set(UCAL_MONTH, static_cast<int32_t>(fields[0]));
    cal->set(UCAL_DATE, static_cast<int32_t>(fields[1]));
    cal->set(UCAL_HOUR_OF_DAY, static_cast<int32_t>(fields[2]));
    cal->set(UCAL_MINUTE, static_cast<int32_t>(fields[3]));
    cal->set(UCAL_SECOND, static_cast<int32_t>(fields[4]));
    cal->set(UCAL_MILLISECOND, static_cast<int32_t>(millis));
    UErrorCode status = U_ZERO_ERROR;
    UDate udate = cal->getTime(status);
    if (U_FAILURE(status)) return std::nullopt;
    udate += static_cast<double>(nanos % kNanosPerMilli) / 1e6;
    return Date::fromUDate(udate);
}

DateComponents GregorianCalendar::components(Date date) {
    DateComponents c;
    icu::GregorianCalendar* cal = calendar(zoneOf(date));
    if (!cal) return c;
    const double ms = date.udate();
    const double wholeMs = std::floor(ms);
    UErrorCode status = U_ZERO_ERROR;
    cal->setTime(wholeMs, status);
    if (U_FAILURE(status)) return c;
    c.year = cal->get(UCAL_EXTENDED_YEAR, status);
    c.month = cal->get(UCAL_MONTH, status) + 1;
    c.day = cal->get(UCAL_DATE, status);
    c.hour = cal->get(UCAL_HOUR_OF_DAY, status);
    c.minute = cal->get(UCAL_MINUTE, status);
    c.second = cal->get(UCAL_SECOND, status);
    c.nanosecond = static_cast<int64_t>(cal->get(UCAL_MILLISECOND, status)) * kNanosPerMilli +
                   static_cast<int64_t>(std::llround((ms - wholeMs) * 1e6));
    if (U_FAILURE(status)) return DateComponents{};
    icu::UnicodeString zone;
    cal->getTimeZone().getID(zone);
    zone.toUTF8String(c.timeZoneIdentifier);
    return c;
}

std::optional<Date> GregorianCalendar::adding(const DateComponents& offset, Date date) {
    // A date with an offset of its own moves on its own wall clock and keeps that offset.
    icu::GregorianCalendar* cal =
        calendar(offset.timeZoneIdentifier.empty() ? zoneOf(date) : offset.timeZoneIdentifier);
    if (!cal) return std::nullopt;
    // ICU recomputes the time from whole fields for month and year steps, so the
    // fraction of a millisecond is set aside and put back at the end.
    const double ms = date.udate();
    const double wholeMs = std::floor(ms);
    UErrorCode status = U_ZERO_ERROR;
    cal->setTime(wholeMs, status);
    const std::pair<UCalendarDateFields, std::optional<int64_t>> steps[] = {
        {UCAL_YEAR, offset.year},
        {UCAL_MONTH, offset.month},
        {UCAL_DATE, offset.day},
        {UCAL_HOUR, offset.hour},
        {UCAL_MINUTE, offset.minute},
        {UCAL_SECOND, offset.second},
        {UCAL_MILLISECOND,
         offset.nanosecond ? std::optional<int64_t>(*offset.nanosecond / kNanosPerMilli) : std::nullopt},
    };
    for (const auto& [field, amount] : steps) {
        if (!amount || *amount == 0) continue;
        if (!fitsInt32(*amount)) return std::nullopt;
        cal->add(field, static_cast<int32_t>(*amount), status);
        if (U_FAILURE(status)) return std::nullopt;
    }
    UDate result = cal->getTime(status);
    if (U_FAILURE(status)) return std::nullopt;
    result += ms - wholeMs;
    if (offset.nanosecond) result += static_cast<double>(*offset.nanosecond % kNanosPerMilli) / 1e6;
    return Date::fromUDate(result).withPresentation(date.ownOffset(), date.fractionDigits(), date.fields());
}

std::string GregorianCalendar::timeZoneIdentifier() {
    std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::createDefault());
    icu::UnicodeString id;
    zone->getID(id);
    std::string out;
    id.toUTF8String(out);
    return out;
}

} // namespace corvane
