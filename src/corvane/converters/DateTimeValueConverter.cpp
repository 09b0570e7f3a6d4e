#include "corvane/converters/DateTimeValueConverter.hpp"

#include "corvane/helpers/WhiteSpace.hpp"

#include <unicode/basictz.h>
#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>

namespace corvane {

namespace {

// ICU's current default zone; formatters and calendars made earlier are kept in
// step with it, so a change of the process's zone is seen at the next call.
std::unique_ptr<icu::TimeZone> currentZone() {
    return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createDefault());
}

// ICU formatters and calendars are costly to build and not thread-safe: each
// thread keeps its own, formatters one per pattern.
struct ThreadFormatting {
    std::unordered_map<std::string, std::unique_ptr<icu::SimpleDateFormat>> formatters;
    std::unique_ptr<icu::Calendar> calendar; // strict Gregorian, "en_US_POSIX"

    icu::SimpleDateFormat* formatter(const std::string& pattern) {
        auto it = formatters.find(pattern);
        if (it == formatters.end()) {
            if (formatters.size() >= 64)
                formatters.clear(); // patterns are few; bound the odd caller-made ones
            UErrorCode status = U_ZERO_ERROR;
            auto made = std::make_unique<icu::SimpleDateFormat>(icu::UnicodeString::fromUTF8(pattern),
                                                                icu::Locale("en_US_POSIX"), status);
            if (U_FAILURE(status)) return nullptr;
            made->setLenient(false);
            it = formatters.emplace(pattern, std::move(made)).first;
        }
        icu::SimpleDateFormat* found = it->second.get();
        auto zone = currentZone();
        if (zone && found->getTimeZone() != *zone) found->setTimeZone(*zone);
        return found;
    }

    icu::Calendar* strictCalendar() {
        if (!calendar) {
            UErrorCode status = U_ZERO_ERROR;
            calendar.reset(
                icu::Calendar::createInstance(icu::Locale("en_US_POSIX@calendar=gregorian"), status));
            if (U_FAILURE(status)) {
                calendar.reset();
                return nullptr;
            }
            calendar->setLenient(false);
        }
        auto zone = currentZone();
        if (zone && calendar->getTimeZone() != *zone) calendar->setTimeZone(*zone);
        return calendar.get();
    }
};

ThreadFormatting& threadFormatting() {
    thread_local ThreadFormatting formatting;
    return formatting;
}

// The first `count` code points of `s`.
icu::UnicodeString prefix(const icu::UnicodeString& s, int32_t count) {
    return icu::UnicodeString(s, 0, s.moveIndex32(0, count));
}

enum class FastParse { date, failed, unsupported };

// The fields of one text date, as read.
struct TextFields {
    int32_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
    double fraction = 0;    // of a second
    int fractionDigits = 0; // as written
    std::optional<int32_t> offsetSeconds;
    Date::Fields fields = Date::Fields::all;
};

// Milliseconds since the epoch of the fields read as UTC, through a strict GMT calendar, so that
// out-of-range fields fail as the strict formatter fails them (and old dates follow ICU's
// Julian calendar before the Gregorian reform, as the formatter does).
std::optional<double> wallClockAsUTC(const TextFields& f) {
    thread_local std::unique_ptr<icu::Calendar> gmt;
    UErrorCode status = U_ZERO_ERROR;
    if (!gmt) {
        gmt.reset(icu::Calendar::createInstance(icu::TimeZone::getGMT()->clone(),
                                                icu::Locale("en_US_POSIX@calendar=gregorian"), status));
        if (U_FAILURE(status)) {
            gmt.reset();
            return std::nullopt;
        }
        gmt->setLenient(false);
    }
    gmt->clear();
    gmt->set(UCAL_YEAR, f.year);
    gmt->set(UCAL_MONTH, f.month - 1);
    gmt->set(UCAL_DATE, f.day);
    gmt->set(UCAL_HOUR_OF_DAY, f.hour);
    gmt->set(UCAL_MINUTE, f.minute);
    gmt->set(UCAL_SECOND, f.second);
    const UDate udate = gmt->getTime(status);
    if (U_FAILURE(status)) return std::nullopt;
    return udate;
}

// The moment the fields name. A written offset is the value's own. Without one the fields are
// wall-clock time in the process's zone, a repeated one (the hour gained back) taken at its second
// occurrence as the formatter takes it; a wall-clock time that the zone skips (the hour lost to
// daylight saving) is read with the offset in force before the change and keeps that offset as
// its own, so that the value is neither lost nor moved.
std::optional<Date> dateOfFields(const TextFields& f) {
    const auto wall = wallClockAsUTC(f);
    if (!wall) return std::nullopt;
    std::optional<int32_t> ownOffset = f.offsetSeconds;
    double udate;
    if (ownOffset) {
        udate = *wall - *ownOffset * 1000.0;
    } else {
        const auto zone = currentZone();
        if (!zone) return std::nullopt;
        UErrorCode status = U_ZERO_ERROR;
        int32_t raw = 0, dst = 0;
        if (const auto* basic = dynamic_cast<const icu::BasicTimeZone*>(zone.get()))
            basic->getOffsetFromLocal(*wall, UCAL_TZ_LOCAL_FORMER, UCAL_TZ_LOCAL_LATTER, raw, dst, status);
        else
            zone->getOffset(*wall, true, raw, dst, status);
        if (U_FAILURE(status)) return std::nullopt;
        udate = *wall - (raw + dst);
        int32_t actualRaw = 0, actualDst = 0;
        zone->getOffset(udate, false, actualRaw, actualDst, status);
        if (U_FAILURE(status)) return std::nullopt;
        if (actualRaw + actualDst != raw + dst) ownOffset = (raw + dst) / 1000;
    }
    return Date::fromUDate(udate + f.fraction * 1000.0)
        .withPresentation(ownOffset, f.fractionDigits, f.fields);
}

bool readDigits(std::string_view s, std::size_t start, std::size_t count, int32_t& out) {
    out = 0;
    if (start + count > s.size()) return false;
    for (std::size_t i = start; i < start + count; ++i) {
        const char c = s[i];
        if (c < '0' || c > '9') return false;
        out = out * 10 + (c - '0');
    }
    return true;
}

bool allDigits(std::string_view s) {
    return !s.empty() && s.find_first_not_of("0123456789") == std::string_view::npos;
}

// Today's year, month and day in the current zone, or 2000-01-01 if the calendar fails.
void setToday(TextFields& f);

// The shapes of ExifTool's date texts, in ASCII, after the colons and underscores are taken out:
// "yyyyMMdd HHmmss" (or without the blank), a date, a year, a time "HHmmss" or an hour "HH";
// where there is a time, also without seconds ("yyyyMMdd HHmm", as XMP allows), with a
// fraction of a second (".5", ",123456") and with a zone ("Z", "+0200"). The strict formatter
// is left the rest (shapes it reads by length that these don't cover).
FastParse parseTextFields(std::string_view text, Date& result) {
    TextFields f;
    std::string_view core = text;
    // A zone behind a time: "Z" is UTC, "+HHMM" the offset.
    const bool mayHaveTime = core.size() >= 7;
    if (mayHaveTime && core.back() == 'Z' && core[core.size() - 2] >= '0' && core[core.size() - 2] <= '9') {
        f.offsetSeconds = 0;
        core.remove_suffix(1);
    } else if (mayHaveTime && core.size() >= 11) {
        const std::string_view zone = core.substr(core.size() - 5);
        int32_t hours, minutes;
        if ((zone[0] == '+' || zone[0] == '-') && readDigits(zone, 1, 2, hours) &&
            readDigits(zone, 3, 2, minutes)) {
            if (hours > 23 || minutes > 59) return FastParse::unsupported;
            f.offsetSeconds = (hours * 3600 + minutes * 60) * (zone[0] == '-' ? -1 : 1);
            core.remove_suffix(5);
        }
    }
    // A fraction of a second.
    if (const auto dot = core.find_first_of(".,"); dot != std::string_view::npos) {
        const std::string_view digits = core.substr(dot + 1);
        if (!allDigits(digits) || digits.size() > 9) return FastParse::unsupported;
        f.fractionDigits = static_cast<int>(digits.size());
        int32_t value = 0;
        readDigits(digits, 0, digits.size(), value);
        f.fraction = value / std::pow(10.0, static_cast<double>(digits.size()));
        core = core.substr(0, dot);
    }
    const bool decorated = f.offsetSeconds || f.fractionDigits > 0;
    const auto dateAndTime = [&](std::string_view date, std::string_view time) {
        return allDigits(date) && date.size() == 8 && allDigits(time) &&
               (time.size() == 6 || time.size() == 4) && readDigits(date, 0, 4, f.year) &&
               readDigits(date, 4, 2, f.month) && readDigits(date, 6, 2, f.day) &&
               readDigits(time, 0, 2, f.hour) && readDigits(time, 2, 2, f.minute) &&
               (time.size() == 4 || readDigits(time, 4, 2, f.second));
    };
    bool read = false;
    if (core.size() == 15 && core[8] == ' ') {
        read = dateAndTime(core.substr(0, 8), core.substr(9));
    } else if (core.size() == 13 && core[8] == ' ') {
        read = dateAndTime(core.substr(0, 8), core.substr(9)); // no seconds
        f.fields = Date::Fields::noSeconds;
    } else if (core.size() == 14) {
        read = dateAndTime(core.substr(0, 8), core.substr(8));
    } else if (core.size() == 6 && allDigits(core)) {
        setToday(f);
        read = readDigits(core, 0, 2, f.hour) && readDigits(core, 2, 2, f.minute) &&
               readDigits(core, 4, 2, f.second);
    } else if (!decorated && core.size() == 8 && allDigits(core)) {
        read = readDigits(core, 0, 4, f.year) && readDigits(core, 4, 2, f.month) &&
               readDigits(core, 6, 2, f.day);
        f.fields = Date::Fields::dateOnly;
    } else if (!decorated && core.size() == 4 && allDigits(core)) {
        f.month = f.day = 1;
        read = readDigits(core, 0, 4, f.year);
        f.fields = Date::Fields::yearOnly;
    } else if (!decorated && core.size() == 2 && allDigits(core)) {
        setToday(f);
        read = readDigits(core, 0, 2, f.hour);
    }
    if (!read) return FastParse::unsupported;
    if (auto date = dateOfFields(f)) {
        result = *date;
        return FastParse::date;
    }
    return FastParse::failed;
}

void setToday(TextFields& f) {
    icu::Calendar* calendar = threadFormatting().strictCalendar();
    UErrorCode status = U_ZERO_ERROR;
    f.year = 2000;
    f.month = f.day = 1;
    if (!calendar) return;
    calendar->setTime(Date::now().udate(), status);
    const int32_t year = calendar->get(UCAL_YEAR, status);
    const int32_t month = calendar->get(UCAL_MONTH, status) + 1;
    const int32_t day = calendar->get(UCAL_DATE, status);
    if (U_FAILURE(status) || year <= 0 || year > 9999) return;
    f.year = year;
    f.month = month;
    f.day = day;
}

// Today as "yyyyMMdd" in the current zone, or "20000101" if the calendar fails.
icu::UnicodeString todayText() {
    icu::Calendar* calendar = threadFormatting().strictCalendar();
    UErrorCode status = U_ZERO_ERROR;
    if (calendar) {
        calendar->setTime(Date::now().udate(), status);
        int32_t year = calendar->get(UCAL_YEAR, status);
        int32_t month = calendar->get(UCAL_MONTH, status) + 1;
        int32_t day = calendar->get(UCAL_DATE, status);
        char buffer[32];
        if (U_SUCCESS(status) && year > 0 && year <= 9999) {
            std::snprintf(buffer, sizeof buffer, "%04d%02d%02d", year, month, day);
            return icu::UnicodeString(buffer, -1, US_INV);
        }
    }
    return u"20000101";
}

} // namespace

namespace {

// Whether `pattern` has a fractional-seconds field ("S" outside quoted text).
bool hasFractionField(std::string_view pattern) {
    bool quoted = false;
    for (char c : pattern) {
        if (c == '\'')
            quoted = !quoted;
        else if (c == 'S' && !quoted)
            return true;
    }
    return false;
}

// ICU scales a fraction of n digits down by 10^(n-3) held in 32 bits: from 35 digits on that
// factor wraps to 0 and the division stops the process. No date text holds that many digits.
constexpr int32_t maxFractionTextDigits = 32;

bool hasTooManyDigits(const icu::UnicodeString& text) {
    int32_t digits = 0;
    for (int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1))
        if (u_isdigit(text.char32At(i)) && ++digits > maxFractionTextDigits) return true;
    return false;
}

} // namespace

std::optional<Date> DateTimeValueConverter::parse(const std::string& text, const std::string& pattern) {
    icu::SimpleDateFormat* formatter = threadFormatting().formatter(pattern);
    if (!formatter) return std::nullopt;
    icu::UnicodeString input = icu::UnicodeString::fromUTF8(text);
    if (hasFractionField(pattern) && hasTooManyDigits(input)) return std::nullopt;
    icu::ParsePosition position(0);
    UDate udate = formatter->parse(input, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != input.length()) return std::nullopt;
    return Date::fromUDate(udate);
}

namespace {

// A non-negative value in at least `width` digits.
void appendDigits(std::string& out, int32_t value, int width) {
    char buffer[12];
    int n = 0;
    do {
        buffer[n++] = static_cast<char>('0' + value % 10);
        value /= 10;
    } while (value > 0 && n < 11);
    while (n < width && n < 11)
        buffer[n++] = '0';
    while (n > 0)
        out += buffer[--n];
}

// The catalogue's patterns ("yyyy:MM:dd HH:mm:ss", with "ZZZZZ", or a date or time alone) written
// from the strict calendar's fields, as ICU's formatter would write them, without its per-field
// number formatting (most of the cost of reading a file's dates). Gives false for anything else:
// other pattern letters or quotes, years outside 1...9999, offsets with seconds.
// A date with its own offset is written on its own wall clock, with that offset; `fractionDigits`
// digits of the second's fraction follow the seconds.
bool formatWorkingShape(Date date, const std::string& pattern, int fractionDigits, std::string& out) {
    icu::Calendar* calendar = threadFormatting().strictCalendar();
    double udate = date.udate();
    if (date.ownOffset()) {
        thread_local std::unique_ptr<icu::Calendar> gmt;
        if (!gmt) {
            UErrorCode status = U_ZERO_ERROR;
            gmt.reset(icu::Calendar::createInstance(icu::TimeZone::getGMT()->clone(),
                                                    icu::Locale("en_US_POSIX@calendar=gregorian"), status));
            if (U_FAILURE(status)) gmt.reset();
        }
        calendar = gmt.get();
        udate += *date.ownOffset() * 1000.0;
    }
    if (!calendar) return false;
    UErrorCode status = U_ZERO_ERROR;
    const double wholeSeconds = std::floor(udate / 1000.0) * 1000.0;
    calendar->setTime(wholeSeconds, status);
    const int32_t era = calendar->get(UCAL_ERA, status);
    const int32_t year = calendar->get(UCAL_YEAR, status);
    if (U_FAILURE(status) || era != 1 || year < 1 || year > 9999) return false;
    out.reserve(pattern.size() + 4);
    for (std::size_t i = 0; i < pattern.size();) {
        const char c = pattern[i];
        std::size_t run = 1;
        while (i + run < pattern.size() && pattern[i + run] == c)
            ++run;
        UCalendarDateFields field;
        if (c == 'y' && run == 4)
            field = UCAL_YEAR;
        else if (c == 'M' && run == 2)
            field = UCAL_MONTH;
        else if (c == 'd' && run == 2)
            field = UCAL_DATE;
        else if (c == 'H' && run == 2)
            field = UCAL_HOUR_OF_DAY;
        else if (c == 'm' && run == 2)
            field = UCAL_MINUTE;
        else if (c == 's' && run == 2)
            field = UCAL_SECOND;
        else if (c == 'Z' && run == 5) {
            // ISO 8601 extended offset: "Z" for UTC, else "+HH:mm".
            const int32_t offset = date.ownOffset() ? *date.ownOffset() * 1000
                                                    : calendar->get(UCAL_ZONE_OFFSET, status) +
                                                          calendar->get(UCAL_DST_OFFSET, status);
            if (U_FAILURE(status) || offset % 60000 != 0) return false;
            if (offset == 0) {
                out += 'Z';
            } else {
                const int32_t minutes = (offset < 0 ? -offset : offset) / 60000;
                out += offset < 0 ? '-' : '+';
                appendDigits(out, minutes / 60, 2);
                out += ':';
                appendDigits(out, minutes % 60, 2);
            }
            i += run;
            continue;
        } else if ((c == ':' || c == ' ' || c == '-') && run == 1) {
            out += c;
            i += run;
            continue;
        } else {
            return false;
        }
        const int32_t value = calendar->get(field, status) + (field == UCAL_MONTH ? 1 : 0);
        if (U_FAILURE(status)) return false;
        appendDigits(out, value, static_cast<int>(run));
        if (field == UCAL_SECOND && fractionDigits > 0) {
            const double scale = std::pow(10.0, fractionDigits);
            const auto digits = static_cast<int32_t>(
                std::min(std::floor((udate - wholeSeconds) / 1000.0 * scale + 0.5), scale - 1));
            out += '.';
            appendDigits(out, digits, fractionDigits);
        }
        i += run;
    }
    return true;
}

// "+02:00", or "Z" at zero offset, as the "ZZZZZ" pattern writes it.
std::string offsetText(int32_t offsetSeconds) {
    if (offsetSeconds == 0) return "Z";
    const int32_t minutes = (offsetSeconds < 0 ? -offsetSeconds : offsetSeconds) / 60;
    std::string out(1, offsetSeconds < 0 ? '-' : '+');
    appendDigits(out, minutes / 60, 2);
    out += ':';
    appendDigits(out, minutes % 60, 2);
    return out;
}

} // namespace

std::string DateTimeValueConverter::format(Date date, const std::string& pattern) {
    return formatOnOwnClock(date.withPresentation(std::nullopt, 0), pattern, 0);
}

std::string DateTimeValueConverter::formatOnOwnClock(Date date, const std::string& pattern,
                                                     int fractionDigits) {
    if (std::string text; formatWorkingShape(date, pattern, fractionDigits, text)) return text;
    icu::SimpleDateFormat* formatter = threadFormatting().formatter(pattern);
    if (!formatter) return {};
    // The formatter is set back to the process's zone at its next use.
    if (date.ownOffset()) {
        const auto offsetId = icu::UnicodeString::fromUTF8(
            "GMT" + (*date.ownOffset() == 0 ? std::string() : offsetText(*date.ownOffset())));
        formatter->adoptTimeZone(icu::TimeZone::createTimeZone(offsetId));
    }
    icu::UnicodeString output;
    formatter->format(date.udate(), output);
    std::string text;
    output.toUTF8String(text);
    return text;
}

std::optional<Date> DateTimeValueConverter::typedValueFromStringValue(const OptionalString& value) const {
    if (!value) return std::nullopt;
    icu::UnicodeString text = icu::UnicodeString::fromUTF8(*value);
    text.findAndReplace(u":", u"");
    text.findAndReplace(u"_", u"");
    text = trimUnicodeWhiteSpace(text);
    if (text.isEmpty()) return std::nullopt;

    // The shapes ExifTool writes are read field by field, with their zone and fraction.
    std::string ascii;
    text.toUTF8String(ascii);
    Date date;
    switch (parseTextFields(ascii, date)) {
    case FastParse::date:
        return date;
    case FastParse::failed:
        return std::nullopt;
    case FastParse::unsupported:
        break;
    }

    // Anything else by its length, through the strict formatter.
    static const std::string working = "yyyyMMdd HHmmss";
    static const std::string workingWithZone = working + "Z";
    icu::UnicodeString rebuilt;
    const std::string* pattern = &working;
    switch (text.countChar32()) {
    case 2: // HH
        rebuilt = todayText() + u" " + text + u"0000";
        break;
    case 4: // yyyy
        rebuilt = text + u"0101 000000";
        break;
    case 6: // HHmmss
        rebuilt = todayText() + u" " + text;
        break;
    case 8: // yyyyMMdd
        rebuilt = text + u" 000000";
        break;
    case 11: // HHmmss and a zone
        rebuilt = todayText() + u" " + text;
        pattern = &workingWithZone;
        break;
    case 14: { // yyyyMMddHHmmss
        int32_t cut = text.moveIndex32(0, 8);
        rebuilt = icu::UnicodeString(text, 0, cut) + u" " + icu::UnicodeString(text, cut);
        break;
    }
    case 15: // yyyyMMdd HHmmss
        rebuilt = text;
        break;
    case 16: // the same and one more character: cut off
    case 22: // the same and seven more characters: cut off
        rebuilt = prefix(text, 15);
        break;
    case 20: // yyyyMMdd HHmmss and a zone
        rebuilt = text;
        pattern = &workingWithZone;
        break;
    default:
        return std::nullopt;
    }
    std::string utf8;
    rebuilt.toUTF8String(utf8);
    return parse(utf8, *pattern);
}

std::optional<Date> DateTimeValueConverter::typedValueFromNativeValue(const DynamicValue& value) const {
    if (value.isNothing()) return std::nullopt;
    if (auto d = value.dateValue()) return *d;
    if (auto s = value.stringValue()) return typedValueFromStringValue(*s);
    if (auto d = value.partialDateValue()) return d->date();
    if (auto t = value.partialTimeValue()) return t->date();
    return typedValueFromStringValue(value.description());
}

OptionalString DateTimeValueConverter::stringValueFromTypedValue(const std::optional<Date>& value) const {
    if (!value) return std::nullopt;
    switch (clock_) {
    case Clock::processZone:
        return format(*value, dateFormat_);
    case Clock::own:
        return formatOnOwnClock(*value, dateFormat_, 0);
    case Clock::ownWithZone:
        break;
    }
    // A year or a date alone stays so where the format has a date; a time without seconds gets them.
    const bool hasDate = dateFormat_.starts_with("yyyy:MM:dd");
    if (hasDate && value->fields() == Date::Fields::yearOnly) return formatOnOwnClock(*value, "yyyy", 0);
    if (hasDate && value->fields() == Date::Fields::dateOnly)
        return formatOnOwnClock(*value, "yyyy:MM:dd", 0);
    std::string text = formatOnOwnClock(*value, dateFormat_, value->fractionDigits());
    if (value->ownOffset() && dateFormat_.find('Z') == std::string::npos)
        text += offsetText(*value->ownOffset());
    return text;
}

std::optional<ObjectValue>
DateTimeValueConverter::objectValueFromStringValue(const OptionalString& value) const {
    auto text = stringValueFromTypedValue(typedValueFromStringValue(value));
    if (!text) return std::nullopt;
    return ObjectValue(std::move(*text));
}

OptionalString DateTimeValueConverter::formattedValueFromStringValue(const OptionalString& value) const {
    return stringValueFromTypedValue(typedValueFromNativeValue(DynamicValue(value)));
}

DynamicValue DateTimeValueConverter::exifToolValueFromStringValue(const OptionalString& value) const {
    return DynamicValue(value);
}

} // namespace corvane
