#include "corvane/value_models/DateValues.hpp"

#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/value_models/GregorianCalendar.hpp"

#include <charconv>
#include <string_view>

namespace corvane {

namespace {

struct Key {
    std::string_view name;
    std::optional<int64_t> DateValues::*field;
};

// Text keys in the order they are written.
constexpr Key kKeys[] = {
    {"YY", &DateValues::year}, {"MM", &DateValues::month},  {"DD", &DateValues::day},
    {"hh", &DateValues::hour}, {"mm", &DateValues::minute}, {"ss", &DateValues::second},
};

// A base-10 integer with an optional sign and nothing else.
std::optional<int64_t> parseInteger(std::string_view s) {
    bool negative = false;
    if (!s.empty() && (s.front() == '+' || s.front() == '-')) {
        negative = s.front() == '-';
        s.remove_prefix(1);
    }
    if (s.empty() || s.front() < '0' || s.front() > '9') return std::nullopt;
    // Parse with the sign attached so that the most negative value fits.
    std::string text = negative ? "-" : "";
    text.append(s);
    int64_t value = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (ec != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return value;
}

} // namespace

DateValues::DateValues(const std::optional<Date>& date) {
    if (!date) return;
    const DateComponents c = GregorianCalendar::components(*date);
    day = c.day;
    month = c.month;
    year = c.year;
    hour = c.hour;
    minute = c.minute;
    second = c.second;
}

DateValues DateValues::fromDescription(const std::optional<std::string>& description) {
    DateValues values;
    if (!description) return values;
    std::string_view rest = *description;
    while (true) {
        const size_t cut = rest.find(", ");
        const std::string_view piece = rest.substr(0, cut);
        const size_t colon = piece.find(':');
        if (colon != std::string_view::npos) {
            const std::string_view key = trimAsciiBlanks(piece.substr(0, colon));
            for (const Key& k : kKeys)
                if (key == k.name) values.*k.field = parseInteger(trimAsciiBlanks(piece.substr(colon + 1)));
        }
        if (cut == std::string_view::npos) break;
        rest.remove_prefix(cut + 2);
    }
    return values;
}

std::string DateValues::description() const {
    std::string out;
    for (const Key& k : kKeys) {
        const auto& v = this->*k.field;
        if (!v) continue;
        if (!out.empty()) out += ", ";
        out.append(k.name);
        out += ": ";
        out += std::to_string(*v);
    }
    return out;
}

bool DateValues::isEmpty() const {
    return !day && !month && !year && !hour && !minute && !second;
}

DateComponents DateValues::dateComponents() const {
    return DateComponents::fromFields(year, month, day, hour, minute, second);
}

std::optional<Date> DateValues::date() const {
    return GregorianCalendar::date(dateComponents());
}

std::optional<Date> DateValues::updateDate(const std::optional<Date>& date) const {
    if (!date) return std::nullopt;
    const DateComponents old = GregorianCalendar::components(*date);
    DateComponents updated = DateComponents::fromFields(
        year ? year : old.year, month ? month : old.month, day ? day : old.day, hour ? hour : old.hour,
        minute ? minute : old.minute, second ? second : old.second);
    // A date with its own offset is updated on its own wall clock and keeps the offset.
    if (date->ownOffset())
        updated.timeZoneIdentifier = GregorianCalendar::offsetZoneIdentifier(*date->ownOffset());
    const auto result = GregorianCalendar::date(updated);
    if (!result) return std::nullopt;
    return result->withPresentation(date->ownOffset(), 0);
}

std::optional<Date> DateValues::shiftDate(const std::optional<Date>& date) const {
    if (!date) return std::nullopt;
    return GregorianCalendar::adding(dateComponents(), *date);
}

} // namespace corvane
