// Checks of a position typed on the command line, before anything is written. Tag values are
// checked by the library's TagValueChecker.
#include "ValueChecks.hpp"

#include "corvane/value_models/CoordinateParser.hpp"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane::cli {

namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

} // namespace

std::string positionText(const Coordinate& coordinate) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, "%.8f, %.8f", coordinate.latitude().value(),
                  coordinate.longitude().value());
    return buffer;
}

std::variant<Coordinate, std::string> checkedPosition(const std::string& typed) {
    static const std::string example = " (write it like \"40.446111, -79.982222\", \"40 26 46 N, 79 58 56 "
                                       "W\" or \"40 26.767 N 79 58.933 W\")";
    // The prime and double prime of minutes and seconds as the parser knows them.
    std::string text;
    for (std::size_t i = 0; i < typed.size(); ++i) {
        const std::string_view rest = std::string_view(typed).substr(i);
        if (rest.starts_with("\u2032")) {
            text += '\'';
            i += 2;
        } else if (rest.starts_with("\u2033")) {
            text += '"';
            i += 2;
        } else {
            text += typed[i];
        }
    }
    // A lone digit is a number too ("51.48, 0"): the parser's numbers take two digits.
    std::string padded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool lone =
            isDigit(text[i]) &&
            (i == 0 || (!isDigit(text[i - 1]) && text[i - 1] != '.' && text[i - 1] != ',')) &&
            (i + 1 == text.size() || (!isDigit(text[i + 1]) && text[i + 1] != '.' && text[i + 1] != ','));
        if (lone) padded += '0';
        padded += text[i];
    }

    std::optional<Coordinate> read = CoordinateParser::coordinateFromISO6709String(padded);
    if (!read) read = CoordinateParser::coordinateFromDDdddddString(padded);
    if (!read) {
        read = CoordinateParser::coordinateFromDDMMmmmString(padded);
        if (!read) read = CoordinateParser::coordinateFromDDMMSSsString(padded);
        // With minutes, a sign on the degrees would not reach the minutes: "-79 58 56" reads -78.02.
        if (read && padded.find('-') != std::string::npos)
            return quoted(typed) + " has a sign before degrees with minutes; use a hemisphere letter" +
                   example;
    }
    if (!read) {
        if (CoordinateParser::coordinateFromFreeDDdddddString(padded))
            return quoted(typed) + " is not a position as a whole" + example;
        return quoted(typed) + " is not a position" + example;
    }
    const double latitude = read->latitude().value();
    const double longitude = read->longitude().value();
    if (!(std::fabs(latitude) <= 90) || !(std::fabs(longitude) <= 180))
        return quoted(typed) + " is out of range: latitudes go from -90 to 90, longitudes from -180 to 180";
    return *read;
}

} // namespace corvane::cli
