// Checks of values given for tags: read through the tag's converter, then held against the tag's
// choices, count, byte limit and kind of date.
#include "corvane/tag_value/TagValueChecker.hpp"

#include "corvane/tag_storages/detail/WritableValue.hpp"

#include "corvane/converters/ArrayValueConverter.hpp"
#include "corvane/converters/detail/ConverterText.hpp"
#include "corvane/helpers/WhiteSpace.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace corvane {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string trimmed(std::string_view text) {
    return std::string(trimAsciiBlanks(text));
}

std::vector<std::string> splitOn(std::string_view text, std::string_view separator) {
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (true) {
        const auto at = text.find(separator, start);
        pieces.push_back(trimmed(text.substr(start, at == std::string_view::npos ? at : at - start)));
        if (at == std::string_view::npos) break;
        start = at + separator.size();
    }
    return pieces;
}

// --- Dates

// What a date text holds, read in the shape ExifTool writes: "yyyy[:MM[:dd]]" and/or
// "HH:mm[:ss[.fff]]", then "Z" or "+HH:MM". Nothing if it isn't one.
struct DateShape {
    int dateFields = 0; // 0 none, 1 year, 2 year and month, 3 a whole date
    bool time = false;
    bool seconds = false;
    bool fraction = false;
    bool zone = false;
};

std::optional<DateShape> dateShape(std::string_view t) {
    DateShape shape;
    std::size_t i = 0;
    auto digits = [&](std::size_t n) {
        for (std::size_t k = 0; k < n; ++k)
            if (i + k >= t.size() || !isDigit(t[i + k])) return false;
        i += n;
        return true;
    };
    auto literal = [&](char c) {
        if (i < t.size() && t[i] == c) {
            ++i;
            return true;
        }
        return false;
    };
    const bool timeFirst = t.size() >= 3 && isDigit(t[0]) && isDigit(t[1]) && t[2] == ':';
    if (!timeFirst) {
        if (!digits(4)) return std::nullopt;
        shape.dateFields = 1;
        if (literal(':')) {
            if (!digits(2)) return std::nullopt;
            shape.dateFields = 2;
            if (literal(':')) {
                if (!digits(2)) return std::nullopt;
                shape.dateFields = 3;
            }
        }
        if (i == t.size()) return shape;
        if (!literal(' ')) return std::nullopt;
    }
    if (!digits(2) || !literal(':') || !digits(2)) return std::nullopt;
    shape.time = true;
    if (literal(':')) {
        if (!digits(2)) return std::nullopt;
        shape.seconds = true;
        if (literal('.')) {
            if (!digits(1)) return std::nullopt;
            while (i < t.size() && isDigit(t[i]))
                ++i;
            shape.fraction = true;
        }
    }
    if (literal('Z')) {
        shape.zone = true;
    } else if (i < t.size() && (t[i] == '+' || t[i] == '-')) {
        ++i;
        if (!digits(2) || !literal(':') || !digits(2)) return std::nullopt;
        shape.zone = true;
    }
    if (i != t.size()) return std::nullopt;
    return shape;
}

// Why a date text doesn't fit the tag's kind of date; empty when it does.
std::string dateShapeError(TagType type, const DateShape& s) {
    const bool wholeDate = s.dateFields == 3;
    switch (type.value()) {
    case TagType::dateTime: // EXIF: a date and time on the camera's clock, the zone in its own tag
        if (s.zone) return "the tag holds no time zone (write it to its OffsetTime tag)";
        if (s.fraction) return "the tag holds no fraction of a second (write it to its SubSecTime tag)";
        if (!wholeDate || !s.seconds) return "a date and time is needed: yyyy:MM:dd HH:mm:ss";
        return {};
    case TagType::localDateTime:
        if (!wholeDate || !s.seconds) return "a date and time is needed: yyyy:MM:dd HH:mm:ss[+HH:MM]";
        return {};
    case TagType::dateTimeZone: // XMP: a year, a month, a day, or a date and time
        if (s.dateFields == 0) return "a date is needed: yyyy[:MM[:dd]][ HH:mm[:ss][+HH:MM]]";
        if (s.time && !wholeDate) return "a time needs a whole date: yyyy:MM:dd HH:mm[:ss][+HH:MM]";
        return {};
    case TagType::date:
    case TagType::partialDate:
        if (!wholeDate || s.time) return "a date alone is needed: yyyy:MM:dd";
        return {};
    case TagType::time:
        if (s.dateFields || !s.seconds || s.fraction) return "a time alone is needed: HH:mm:ss[+HH:MM]";
        return {};
    case TagType::partialTime:
        if (s.dateFields || !s.seconds || s.zone) return "a UTC time alone is needed: HH:mm:ss";
        return {};
    default:
        return {};
    }
}

// --- Numbers

// "1/500" as a decimal number; the text unchanged when it isn't a fraction.
std::string decimalOfFraction(const std::string& piece) {
    const auto slash = piece.find('/');
    if (slash == std::string::npos) return piece;
    const std::string top = trimmed(std::string_view(piece).substr(0, slash));
    const std::string bottom = trimmed(std::string_view(piece).substr(slash + 1));
    auto number = [](const std::string& text) -> std::optional<double> {
        if (text.empty()) return std::nullopt;
        char* end = nullptr;
        const double value = std::strtod(text.c_str(), &end);
        if (end != text.c_str() + text.size() || !std::isfinite(value)) return std::nullopt;
        return value;
    };
    const auto a = number(top);
    const auto b = number(bottom);
    if (!a || !b || *b == 0) return piece;
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.15g", *a / *b);
    return buffer;
}

// Each blank-separated number of a real-number tag with its fractions read.
std::string withFractionsRead(const std::string& text) {
    std::string out;
    for (const std::string& piece : splitOn(text, " ")) {
        if (piece.empty()) continue;
        if (!out.empty()) out += ' ';
        out += decimalOfFraction(piece);
    }
    return out;
}

// The bounds of the GPS position tags that hold degrees without a sign.
std::optional<double> degreeBound(const TagItem& item) {
    const std::string name = item.name().rawValue();
    if (name == "EXIF:GPSLatitude" || name == "EXIF:GPSDestLatitude") return 90.0;
    if (name == "EXIF:GPSLongitude" || name == "EXIF:GPSDestLongitude") return 180.0;
    return std::nullopt;
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

} // namespace

TagValueChecker::Result TagValueChecker::check(const TagItem& item, const std::string& typed) {
    if (typed.empty()) return {};
    const std::string name = item.name().rawValue();
    auto refuse = [&](const std::string& why) {
        return Result{{},
                      quoted(typed) + " is not a valid value for " + name + (why.empty() ? "" : ": " + why)};
    };
    const TagType type = item.type();

    if (type.isDateTimeOrPartial()) {
        const auto shape = dateShape(trimmed(typed));
        if (!shape) return refuse("not a date in the form yyyy:MM:dd HH:mm:ss");
        if (auto why = dateShapeError(type, *shape); !why.empty()) return refuse(why);
        if (!item.nativeValueFromStringValue(typed).dateValue()) return refuse("no such date or time");
        // Dates go as typed: the tag's own notation, checked above.
        return {trimmed(typed), {}};
    }

    std::string text = typed;
    if (type.isFloat()) text = withFractionsRead(text);
    // "inf", "nan", "1e999": the converters read them, the writers refuse them; say so now.
    if (auto why = detail::unwritableValueReason(item, text)) return Result{{}, *why};
    const auto converter = item.converter();
    const auto canonical = converter->stringValueFromStringValue(text);
    if (!canonical) return refuse({});

    if (const auto* array = dynamic_cast<const ArrayValueConverter*>(converter.get())) {
        // Each element must read: the array converter would drop an unreadable one silently.
        std::size_t typedElements = 0;
        bool emptyElement = false;
        for (const std::string& piece : detail::converter_text::splitListElements(text, array->separator())) {
            if (trimmed(piece).empty())
                emptyElement = true;
            else
                ++typedElements;
        }
        const DynamicValue native = converter->nativeValueFromStringValue(text);
        const std::size_t read = native.arrayValue() ? native.arrayValue()->size() : 0;
        // A list of texts keeps an empty element ("a,,b"), which the writer would write as one.
        if (read != typedElements)
            return refuse(emptyElement ? "an element is empty"
                                       : "an element isn't a valid " + std::string(type.rawValue()));
        // A fixed count is written whole; a GPS position may also be one number of degrees.
        const bool degrees = degreeBound(item).has_value() && read == 1;
        if (item.arrangement() == TagItem::Arrangement::staticSequence && item.count() &&
            static_cast<int>(read) != *item.count() && !degrees)
            return refuse(std::to_string(*item.count()) + " values are needed");
    }

    if (!item.choices().empty() && !item.hasOpenChoices()) {
        bool known = false;
        for (const auto& choice : item.choices())
            if (converter->stringValueFromStringValue(choice.value) == canonical) known = true;
        if (!known) {
            std::string values;
            for (std::size_t i = 0; i < item.choices().size() && i < 12; ++i)
                values += (i ? ", " : "") + item.choices()[i].value;
            if (item.choices().size() > 12) values += ", ...";
            return refuse("one of " + values + " is needed (see `corvane tags`)");
        }
    }

    if (const auto bound = degreeBound(item)) {
        const DynamicValue native = converter->nativeValueFromStringValue(text);
        std::vector<double> numbers;
        if (const auto* elements = native.arrayValue())
            for (const auto& element : *elements)
                if (const double* d = element.doubleValue()) numbers.push_back(*d);
        const bool inRange = !numbers.empty() && numbers[0] <= *bound &&
                             (numbers.size() < 2 || numbers[1] < 60) &&
                             (numbers.size() < 3 || numbers[2] < 60);
        if (!inRange)
            return refuse("degrees from 0 to " + std::to_string(static_cast<int>(*bound)) +
                          " are needed (the hemisphere goes in the Ref tag)");
    }

    if (type.rawValue() == "string" && !item.isList() && item.count() && *item.count() > 1) {
        // IPTC counts the bytes of the text; EXIF and the maker notes also a closing zero byte.
        const int limit = item.stream() == TagStream::streamIPTC ? *item.count() : *item.count() - 1;
        if (static_cast<int>(typed.size()) > limit)
            return refuse("longer than the " + std::to_string(limit) + " bytes the tag holds");
    }

    // Text goes as typed; numbers in their canonical form (so "1/500" is written as a number).
    if (type.isNumber()) return {*canonical, {}};
    return {typed, {}};
}

std::vector<std::string> TagValueChecker::errors(const std::unordered_map<TagName, std::string>& values) {
    std::vector<std::pair<TagName, const std::string*>> sorted;
    for (const auto& [name, value] : values)
        sorted.emplace_back(name, &value);
    std::sort(sorted.begin(), sorted.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::string> found;
    for (const auto& [name, value] : sorted)
        if (const TagItem* item = name.item())
            if (Result result = check(*item, *value); !result.isValid())
                found.push_back(std::move(result.error));
    return found;
}

} // namespace corvane
