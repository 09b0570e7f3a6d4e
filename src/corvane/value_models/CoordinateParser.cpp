#include "corvane/value_models/CoordinateParser.hpp"

#include "corvane/helpers/detail/IcuRegex.hpp"

#include <unicode/unistr.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <locale.h>

namespace corvane {
using detail::IcuRegex;

namespace {

using Groups = CoordinateParser::Groups;

std::string str(std::string_view s) {
    return std::string(s);
}

// Parts joined by spacePattern, with one in front and one behind.
std::string compose(std::initializer_list<std::string> parts) {
    std::string out = str(CoordinateParser::spacePattern);
    bool first = true;
    for (const auto& part : parts) {
        if (!first) out += CoordinateParser::spacePattern;
        out += part;
        first = false;
    }
    return out + str(CoordinateParser::spacePattern);
}

// Appended rather than "(" + ..., which GCC 12 flags with a false overlap warning in release builds.
std::string optionalGroup(std::string_view piece) {
    return std::string("(").append(piece).append("?)");
}
std::string signedGroup(std::string_view number) {
    return std::string("(")
        .append(CoordinateParser::signPattern)
        .append("?")
        .append(CoordinateParser::spacePattern)
        .append(number)
        .append(")");
}
std::string optional(std::string_view piece) {
    return str(piece) + "?";
}
std::string anchored(const std::string& pattern) {
    return "^" + pattern + "$";
}

// Bounds on one match of one pattern: 20 steps are 200,000 operations of the
// match engine, a few milliseconds, after which a runaway match gives up. A
// text of maxTextLength characters that does match needs a small part of that.
constexpr IcuRegex::MatchLimits limits{/*timeSteps=*/20, /*stackBytes=*/1024 * 1024};
constexpr auto ci = IcuRegex::caseInsensitive;

// Every pattern, compiled once for the whole process.
struct Patterns {
    IcuRegex latitudeISO{CoordinateParser::latitudeISO6709Pattern(), ci, limits};
    IcuRegex coordinateISO{CoordinateParser::coordinateISO6709Pattern(), ci, limits};
    IcuRegex latitudeDD{anchored(CoordinateParser::latitudeDDdddddPattern()), ci, limits};
    IcuRegex longitudeDD{anchored(CoordinateParser::longitudeDDdddddPattern()), ci, limits};
    IcuRegex latitudeDM{anchored(CoordinateParser::latitudeDDMMmmmPattern()), ci, limits};
    IcuRegex longitudeDM{anchored(CoordinateParser::longitudeDDMMmmmPattern()), ci, limits};
    IcuRegex latitudeDMS{anchored(CoordinateParser::latitudeDDMMSSsPattern()), ci, limits};
    IcuRegex longitudeDMS{anchored(CoordinateParser::longitudeDDMMSSsPattern()), ci, limits};
    IcuRegex coordinateDD{
        CoordinateParser::makeCoordinatePattern(
            {CoordinateParser::latitudeDDdddddPattern(), CoordinateParser::longitudeDDdddddPattern()}),
        ci, limits};
    IcuRegex coordinateDM{
        CoordinateParser::makeCoordinatePattern(
            {CoordinateParser::latitudeDDMMmmmPattern(), CoordinateParser::longitudeDDMMmmmPattern()}),
        ci, limits};
    IcuRegex coordinateDMS{
        CoordinateParser::makeCoordinatePattern(
            {CoordinateParser::latitudeDDMMSSsPattern(), CoordinateParser::longitudeDDMMSSsPattern()}),
        ci, limits};
    IcuRegex coordinateFreeDD{
        CoordinateParser::makeCoordinatePattern({CoordinateParser::latitudeDDdddddPattern(),
                                                 CoordinateParser::longitudeDDdddddPattern(), R"(\D*.*)"}),
        ci, limits};
};

const Patterns& patterns() {
    static const Patterns p;
    return p;
}

// Which notations a text may be written in, from its ASCII characters alone.
// The patterns backtrack heavily before they fail, so a text holding a
// character that none of a pattern's pieces can take skips that pattern: the
// result is the same, only sooner. Characters beyond ASCII (the degree sign,
// other spaces and digits, case variants) never rule a pattern out.
struct Candidates {
    bool iso = false;    // a sign first, after white space
    bool decimal = true; // degrees, "deg", hemisphere letters, separators
    bool minutes = true; // the same with "min" and "'"
    bool seconds = true; // the same with "sec" and the double quotation mark
    bool free = true;    // any text behind two numbers
};

// The input of every entry, decimal commas made full stops, with the
// notations it may be in.
struct Input {
    icu::UnicodeString text;
    Candidates candidates;
};

Input prepared(std::string_view text) {
    // Too long a text is no candidate for any notation.
    if (text.size() > CoordinateParser::maxTextLength)
        return {{}, Candidates{false, false, false, false, false}};
    std::string s(text);
    Candidates c;
    bool leading = true;
    for (char& ch : s) {
        if (ch == ',') ch = '.';
        const auto u = static_cast<unsigned char>(ch);
        // A byte beyond ASCII may belong to a space the patterns' \s takes
        // (no-break space, em space), so it doesn't end the leading blanks.
        if (leading && u < 0x80 && !std::isspace(u)) {
            c.iso = ch == '+' || ch == '-';
            leading = false;
        }
        if (u >= 0x80 || std::isspace(u) || std::isdigit(u)) continue;
        switch (std::tolower(u)) {
        case '+':
        case '-':
        case '.':
        case ';':
        case 'd':
        case 'e':
        case 'g':
        case 'n':
        case 's':
        case 'w':
            break;
        case 'm':
        case 'i':
        case '\'':
            c.decimal = false;
            break;
        case 'c':
        case '"':
            c.decimal = false;
            c.minutes = false;
            break;
        default:
            c.decimal = c.minutes = c.seconds = false;
        }
    }
    return {icu::UnicodeString::fromUTF8(icu::StringPiece(s.data(), static_cast<int32_t>(s.size()))), c};
}

// A whole string read as a double in the C locale, strtod's syntax, no leading
// white space and nothing left over.
std::optional<double> parseDouble(const std::string& s) {
    static const locale_t cLocale = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(0));
    if (s.empty() || std::isspace(static_cast<unsigned char>(s.front()))) return std::nullopt;
    char* end = nullptr;
    const double v = strtod_l(s.c_str(), &end, cLocale);
    if (end != s.c_str() + s.size()) return std::nullopt;
    // The patterns take digits only, so an infinity is an overflow: no position.
    if (!std::isfinite(v)) return std::nullopt;
    return v;
}

std::optional<double> parseNumberGroup(const std::string& group) {
    std::string s;
    s.reserve(group.size());
    for (char c : group)
        if (!std::isspace(static_cast<unsigned char>(c))) s += c;
    return parseDouble(s);
}

std::string lowerCased(const std::string& s) {
    std::string out = s;
    for (char& c : out)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

// The hemisphere sign of two unit groups, or nothing when they are refused:
// with a letter, every number must be positive and exactly one letter written.
std::optional<double> unitFactor(const std::string& unit1, const std::string& unit2,
                                 std::initializer_list<double> numbers, std::string_view negRef) {
    const std::string u1 = lowerCased(unit1);
    const std::string u2 = lowerCased(unit2);
    if (!u1.empty() || !u2.empty()) {
        for (double n : numbers)
            if (!(n > 0)) return std::nullopt;
        if (!u1.empty() && !u2.empty()) return std::nullopt;
    }
    return (u1 == negRef ? -1.0 : 1.0) * (u2 == negRef ? -1.0 : 1.0);
}

std::optional<double> parseISO6709(const Groups& groups, size_t degreeDigits) {
    if (groups.size() != 2) return std::nullopt;
    const std::string& digits = groups[1];
    const size_t d = degreeDigits;
    const size_t n = digits.size();
    std::string degrees, minutes, seconds;
    if (n < d + 1 || digits[d] == '.') {
        degrees = digits;
    } else if (n >= d + 3 && digits[d + 2] == '.') {
        degrees = digits.substr(0, d);
        minutes = digits.substr(d);
    } else if (n >= d + 5 && digits[d + 4] == '.') {
        degrees = digits.substr(0, d);
        minutes = digits.substr(d, 2);
        seconds = digits.substr(d + 2);
    } else {
        return std::nullopt;
    }
    double value = 0;
    for (auto [text, divisor] : {std::pair{&degrees, 1.0}, {&minutes, 60.0}, {&seconds, 3600.0}}) {
        if (text->empty() && divisor != 1.0) continue;
        const auto v = parseDouble(*text);
        if (!v) return std::nullopt;
        value += *v / divisor;
    }
    return value * (groups[0] == "-" ? -1.0 : 1.0);
}

// Splits the groups of a pair pattern into the groups of each axis.
std::pair<Groups, Groups> split(const Groups& groups) {
    const auto half = groups.begin() + static_cast<std::ptrdiff_t>(groups.size() / 2);
    return {Groups(groups.begin(), half), Groups(half, groups.end())};
}

using AxisReader = std::optional<double> (*)(const Groups&, std::string_view);

std::optional<Coordinate> readPair(const IcuRegex& regex, bool candidate, const Input& input,
                                   AxisReader reader) {
    if (!candidate) return std::nullopt;
    const auto groups = regex.firstMatchGroups(input.text);
    if (!groups) return std::nullopt;
    const auto [lat, lon] = split(*groups);
    const auto latitude = reader(lat, "s");
    if (!latitude) return std::nullopt;
    const auto longitude = reader(lon, "w");
    if (!longitude) return std::nullopt;
    return Coordinate(*latitude, *longitude);
}

std::optional<double> readAxis(const IcuRegex& regex, bool candidate, const Input& input, AxisReader reader,
                               std::string_view negRef) {
    if (!candidate) return std::nullopt;
    const auto groups = regex.firstMatchGroups(input.text);
    if (!groups) return std::nullopt;
    return reader(*groups, negRef);
}

std::optional<double> latitudeISO(const Input& input) {
    if (!input.candidates.iso) return std::nullopt;
    const auto groups = patterns().latitudeISO.firstMatchGroups(input.text);
    if (!groups) return std::nullopt;
    return CoordinateParser::parseLatitudeISO6709(*groups);
}

std::optional<double> longitudeISO(const Input& input) {
    if (!input.candidates.decimal) return std::nullopt;
    const auto groups = patterns().longitudeDD.firstMatchGroups(input.text);
    if (!groups) return std::nullopt;
    return CoordinateParser::parseLongitudeISO6709(*groups);
}

std::optional<Coordinate> coordinateISO(const Input& input) {
    if (!input.candidates.iso) return std::nullopt;
    const auto groups = patterns().coordinateISO.firstMatchGroups(input.text);
    if (!groups) return std::nullopt;
    const auto [lat, lon] = split(*groups);
    const auto latitude = CoordinateParser::parseLatitudeISO6709(lat);
    if (!latitude) return std::nullopt;
    const auto longitude = CoordinateParser::parseLongitudeISO6709(lon);
    if (!longitude) return std::nullopt;
    return Coordinate(*latitude, *longitude);
}

std::optional<double> latitudeAny(const Input& in) {
    const Patterns& p = patterns();
    const Candidates& c = in.candidates;
    if (auto v = latitudeISO(in)) return v;
    if (auto v = readAxis(p.latitudeDD, c.decimal, in, CoordinateParser::parseDDddddd, "s")) return v;
    if (auto v = readAxis(p.latitudeDM, c.minutes, in, CoordinateParser::parseDDddddd, "s")) return v;
    return readAxis(p.latitudeDMS, c.seconds, in, CoordinateParser::parseDDMMSSs, "s");
}

std::optional<double> longitudeAny(const Input& in) {
    const Patterns& p = patterns();
    const Candidates& c = in.candidates;
    if (auto v = longitudeISO(in)) return v;
    if (auto v = readAxis(p.longitudeDD, c.decimal, in, CoordinateParser::parseDDddddd, "w")) return v;
    if (auto v = readAxis(p.longitudeDM, c.minutes, in, CoordinateParser::parseDDddddd, "w")) return v;
    return readAxis(p.longitudeDMS, c.seconds, in, CoordinateParser::parseDDMMSSs, "w");
}

} // namespace

// MARK: - Patterns

const std::string& CoordinateParser::latitudeDDdddddPattern() {
    static const std::string p = compose({optionalGroup(latUnitPattern), signedGroup(float2Pattern),
                                          optional(degPattern), optionalGroup(latUnitPattern)});
    return p;
}

const std::string& CoordinateParser::longitudeDDdddddPattern() {
    static const std::string p = compose({optionalGroup(lonUnitPattern), signedGroup(float3Pattern),
                                          optional(degPattern), optionalGroup(lonUnitPattern)});
    return p;
}

const std::string& CoordinateParser::latitudeDDMMmmmPattern() {
    static const std::string p =
        compose({optionalGroup(latUnitPattern), signedGroup(digit2Pattern), optional(degPattern),
                 signedGroup(float2Pattern), optional(minPattern), optionalGroup(latUnitPattern)});
    return p;
}

const std::string& CoordinateParser::longitudeDDMMmmmPattern() {
    static const std::string p =
        compose({optionalGroup(lonUnitPattern), signedGroup(digit3Pattern), optional(degPattern),
                 signedGroup(float2Pattern), optional(minPattern), optionalGroup(lonUnitPattern)});
    return p;
}

const std::string& CoordinateParser::latitudeDDMMSSsPattern() {
    static const std::string p =
        compose({optionalGroup(latUnitPattern), signedGroup(digit2Pattern), optional(degPattern),
                 signedGroup(digit2Pattern), optional(minPattern), signedGroup(float2Pattern),
                 optional(secPattern), optionalGroup(latUnitPattern)});
    return p;
}

// Minutes take up to three digits and seconds are a three-digit float here,
// unlike the latitude pattern; strings written that way are read as they are.
const std::string& CoordinateParser::longitudeDDMMSSsPattern() {
    static const std::string p =
        compose({optionalGroup(lonUnitPattern), signedGroup(digit3Pattern), optional(degPattern),
                 signedGroup(digit3Pattern), optional(minPattern), signedGroup(float3Pattern),
                 optional(secPattern), optionalGroup(lonUnitPattern)});
    return p;
}

const std::string& CoordinateParser::latitudeISO6709Pattern() {
    static const std::string p =
        R"(^([+-])((?:(?:\d{2}(?:\.\d+)?)|(?:\d{4}(?:\.\d+)?)|(?:\d{6}(?:\.\d+)?)))$)";
    return p;
}

const std::string& CoordinateParser::coordinateISO6709Pattern() {
    static const std::string p =
        R"(^\s*([+-])((?:(?:\d{2}(?:\.\d+)?)|(?:\d{4}(?:\.\d+)?)|(?:\d{6}(?:\.\d+)?)))([+-])((?:(?:\d{3}(?:\.\d+)?)|(?:\d{5}(?:\.\d+)?)|(?:\d{7}(?:\.\d+)?)))(?:[+\-\D]+\w*)?\/?\s*$)";
    return p;
}

std::string CoordinateParser::makeCoordinatePattern(const std::vector<std::string>& parts) {
    std::string out = std::string("^").append(spacePattern);
    for (size_t i = 0; i < parts.size(); ++i) {
        if (i > 0) out += separatorPattern;
        out += parts[i];
    }
    return out + str(spacePattern) + "$";
}

// MARK: - Group readings

std::optional<double> CoordinateParser::parseLatitudeISO6709(const Groups& groups) {
    return parseISO6709(groups, 2);
}

std::optional<double> CoordinateParser::parseLongitudeISO6709(const Groups& groups) {
    return parseISO6709(groups, 3);
}

std::optional<double> CoordinateParser::parseDDddddd(const Groups& groups, std::string_view negRef) {
    if (groups.size() != 3) return std::nullopt;
    const auto number = parseNumberGroup(groups[1]);
    if (!number) return std::nullopt;
    const auto factor = unitFactor(groups[0], groups[2], {*number}, negRef);
    if (!factor) return std::nullopt;
    return *number * *factor;
}

// The sign of the degrees doesn't spread to the minutes: "-10 30.0" is -9.5.
std::optional<double> CoordinateParser::parseDDMMmmm(const Groups& groups, std::string_view negRef) {
    if (groups.size() != 4) return std::nullopt;
    const auto degrees = parseNumberGroup(groups[1]);
    const auto minutes = parseNumberGroup(groups[2]);
    if (!degrees || !minutes) return std::nullopt;
    const auto factor = unitFactor(groups[0], groups[3], {*degrees, *minutes}, negRef);
    if (!factor) return std::nullopt;
    return (*degrees + *minutes * 60.0 / 3600.0) * *factor;
}

std::optional<double> CoordinateParser::parseDDMMSSs(const Groups& groups, std::string_view negRef) {
    if (groups.size() != 5) return std::nullopt;
    const auto degrees = parseNumberGroup(groups[1]);
    const auto minutes = parseNumberGroup(groups[2]);
    const auto seconds = parseNumberGroup(groups[3]);
    if (!degrees || !minutes || !seconds) return std::nullopt;
    const auto factor = unitFactor(groups[0], groups[4], {*degrees, *minutes, *seconds}, negRef);
    if (!factor) return std::nullopt;
    return (*degrees + (*minutes + *seconds / 60.0) * 60.0 / 3600.0) * *factor;
}

// MARK: - Entries

std::optional<Latitude> CoordinateParser::latitude(std::string_view text) {
    if (auto v = latitudeAny(prepared(text))) return Latitude(*v);
    return std::nullopt;
}

std::optional<Longitude> CoordinateParser::longitude(std::string_view text) {
    if (auto v = longitudeAny(prepared(text))) return Longitude(*v);
    return std::nullopt;
}

std::optional<Coordinate> CoordinateParser::coordinate(std::string_view text) {
    const Input in = prepared(text);
    const Patterns& p = patterns();
    if (auto c = coordinateISO(in)) return c;
    if (auto c = readPair(p.coordinateDD, in.candidates.decimal, in, parseDDddddd)) return c;
    if (auto c = readPair(p.coordinateDM, in.candidates.minutes, in, parseDDMMmmm)) return c;
    if (auto c = readPair(p.coordinateDMS, in.candidates.seconds, in, parseDDMMSSs)) return c;
    return readPair(p.coordinateFreeDD, in.candidates.free, in, parseDDddddd);
}

std::optional<double> CoordinateParser::latitudeFromISO6709String(std::string_view text) {
    return latitudeISO(prepared(text));
}

std::optional<double> CoordinateParser::longitudeFromISO6709String(std::string_view text) {
    return longitudeISO(prepared(text));
}

std::optional<Coordinate> CoordinateParser::coordinateFromISO6709String(std::string_view text) {
    return coordinateISO(prepared(text));
}

std::optional<double> CoordinateParser::latitudeFromDDdddddString(std::string_view text) {
    const Input in = prepared(text);
    return readAxis(patterns().latitudeDD, in.candidates.decimal, in, parseDDddddd, "s");
}

std::optional<double> CoordinateParser::longitudeFromDDdddddString(std::string_view text) {
    const Input in = prepared(text);
    return readAxis(patterns().longitudeDD, in.candidates.decimal, in, parseDDddddd, "w");
}

std::optional<Coordinate> CoordinateParser::coordinateFromDDdddddString(std::string_view text) {
    const Input in = prepared(text);
    return readPair(patterns().coordinateDD, in.candidates.decimal, in, parseDDddddd);
}

std::optional<Coordinate> CoordinateParser::coordinateFromFreeDDdddddString(std::string_view text) {
    const Input in = prepared(text);
    return readPair(patterns().coordinateFreeDD, in.candidates.free, in, parseDDddddd);
}

std::optional<double> CoordinateParser::latitudeFromDDMMmmmString(std::string_view text) {
    const Input in = prepared(text);
    return readAxis(patterns().latitudeDM, in.candidates.minutes, in, parseDDddddd, "s");
}

std::optional<double> CoordinateParser::longitudeFromDDMMmmmString(std::string_view text) {
    const Input in = prepared(text);
    return readAxis(patterns().longitudeDM, in.candidates.minutes, in, parseDDddddd, "w");
}

std::optional<Coordinate> CoordinateParser::coordinateFromDDMMmmmString(std::string_view text) {
    const Input in = prepared(text);
    return readPair(patterns().coordinateDM, in.candidates.minutes, in, parseDDMMmmm);
}

std::optional<double> CoordinateParser::latitudeFromDDMMSSsString(std::string_view text) {
    const Input in = prepared(text);
    return readAxis(patterns().latitudeDMS, in.candidates.seconds, in, parseDDMMSSs, "s");
}

std::optional<double> CoordinateParser::longitudeFromDDMMSSsString(std::string_view text) {
    const Input in = prepared(text);
    return readAxis(patterns().longitudeDMS, in.candidates.seconds, in, parseDDMMSSs, "w");
}

std::optional<Coordinate> CoordinateParser::coordinateFromDDMMSSsString(std::string_view text) {
    const Input in = prepared(text);
    return readPair(patterns().coordinateDMS, in.candidates.seconds, in, parseDDMMSSs);
}

} // namespace corvane
