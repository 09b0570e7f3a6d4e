#include "corvane/converters/DateTimeValueConverter.hpp"

#include "corvane/helpers/WhiteSpace.hpp"

#include <unicode/calendar.h>
#include <unicode/locid.h>
#include <unicode/parsepos.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <cstdio>
#include <memory>
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

bool readDigits(const icu::UnicodeString& s, int32_t start, int32_t count, int32_t& out) {
    out = 0;
    for (int32_t i = start; i < start + count; ++i) {
        char16_t c = s.charAt(i);
        if (c < u'0' || c > u'9') return false;
        out = out * 10 + (c - u'0');
    }
    return true;
}

enum class FastParse { date, failed, unsupported };

// The two working shapes, "yyyyMMdd HHmmss" and the same followed by "+HHmm",
// in ASCII digits: read directly and validated by the strict calendar, as ICU's
// formatter would, without its per-field number parsing (over 100 us a date).
// Any other spelling is left to the formatter itself.
FastParse parseWorkingShape(const icu::UnicodeString& text, bool withZone, Date& result) {
    const int32_t length = text.length();
    if (length != (withZone ? 20 : 15) || text.charAt(8) != u' ') return FastParse::unsupported;
    int32_t year, month, day, hour, minute, second;
    if (!readDigits(text, 0, 4, year) || !readDigits(text, 4, 2, month) || !readDigits(text, 6, 2, day) ||
        !readDigits(text, 9, 2, hour) || !readDigits(text, 11, 2, minute) || !readDigits(text, 13, 2, second))
        return FastParse::unsupported;
    int32_t offsetMinutes = 0;
    if (withZone) {
        char16_t sign = text.charAt(15);
        int32_t offsetHours, offsetMins;
        if ((sign != u'+' && sign != u'-') || !readDigits(text, 16, 2, offsetHours) ||
            !readDigits(text, 18, 2, offsetMins) || offsetHours > 23 || offsetMins > 59)
            return FastParse::unsupported;
        offsetMinutes = (offsetHours * 60 + offsetMins) * (sign == u'-' ? -1 : 1);
    }
    icu::Calendar* calendar = threadFormatting().strictCalendar();
    if (!calendar) return FastParse::unsupported;
    calendar->clear();
    calendar->set(UCAL_YEAR, year);
    calendar->set(UCAL_MONTH, month - 1);
    calendar->set(UCAL_DATE, day);
    calendar->set(UCAL_HOUR_OF_DAY, hour);
    calendar->set(UCAL_MINUTE, minute);
    calendar->set(UCAL_SECOND, second);
    if (withZone) {
        // A written offset replaces the zone's own, as the formatter does.
        calendar->set(UCAL_ZONE_OFFSET, offsetMinutes * 60000);
        calendar->set(UCAL_DST_OFFSET, 0);
    }
    UErrorCode status = U_ZERO_ERROR;
    UDate udate = calendar->getTime(status);
    if (U_FAILURE(status)) return FastParse::failed;
    result = Date::fromUDate(udate);
    return FastParse::date;
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

std::optional<Date> DateTimeValueConverter::parse(const std::string& text, const std::string& pattern) {
    icu::SimpleDateFormat* formatter = threadFormatting().formatter(pattern);
    if (!formatter) return std::nullopt;
    icu::UnicodeString input = icu::UnicodeString::fromUTF8(text);
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
bool formatWorkingShape(Date date, const std::string& pattern, std::string& out) {
    icu::Calendar* calendar = threadFormatting().strictCalendar();
    if (!calendar) return false;
    UErrorCode status = U_ZERO_ERROR;
    calendar->setTime(date.udate(), status);
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
            const int32_t offset =
                calendar->get(UCAL_ZONE_OFFSET, status) + calendar->get(UCAL_DST_OFFSET, status);
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
        i += run;
    }
    return true;
}

} // namespace

std::string DateTimeValueConverter::format(Date date, const std::string& pattern) {
    if (std::string text; formatWorkingShape(date, pattern, text)) return text;
    icu::SimpleDateFormat* formatter = threadFormatting().formatter(pattern);
    if (!formatter) return {};
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

    static const std::string working = "yyyyMMdd HHmmss";
    static const std::string workingWithZone = working + "Z";

    // Only the shapes without a date need today's (a calendar pass per call).
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
    case 16: // the same and one more character, such as "Z": read as local time
    case 22: // the same, a zone and a fraction, or a six-digit fraction: cut off
        rebuilt = prefix(text, 15);
        break;
    case 20: // yyyyMMdd HHmmss and a zone
        rebuilt = text;
        pattern = &workingWithZone;
        break;
    default:
        return std::nullopt;
    }
    Date date;
    switch (parseWorkingShape(rebuilt, pattern == &workingWithZone, date)) {
    case FastParse::date:
        return date;
    case FastParse::failed:
        return std::nullopt;
    case FastParse::unsupported:
        break;
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
    return format(*value, dateFormat_);
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
