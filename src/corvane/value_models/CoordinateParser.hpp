#pragma once

#include "corvane/value_models/Coordinate.hpp"
#include "corvane/value_models/Latitude.hpp"
#include "corvane/value_models/Longitude.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads geographic positions from the text people and tools write: ISO 6709,
/// signed decimal degrees, degrees and minutes, degrees minutes and seconds,
/// with or without hemisphere letters, units and decimal commas. Nothing is
/// range-checked and nothing throws: unreadable text gives nothing, and so do
/// numbers too large for a double (a run of 310 digits).
///
/// The patterns backtrack heavily on runs of blanks and digits, and the text
/// comes from files and from users: a text longer than `maxTextLength` gives
/// nothing, and a pattern whose match runs past a bound of time or memory
/// counts as not matching, so that no text keeps a caller more than some tens
/// of milliseconds.
///
/// Patterns are ICU regular expressions, matched case-insensitively; they are
/// compiled once per process and matched through per-thread matchers, so every
/// entry is safe to call from any thread.
class CoordinateParser {
public:
    /// The longest text read; a position written out in words with every unit
    /// spelled takes under a hundred characters.
    static constexpr std::size_t maxTextLength = 256;

    /// Pieces the patterns are built of.
    ///@{
    static constexpr std::string_view separatorPattern = R"([,;\s\.]*)";
    static constexpr std::string_view signPattern = R"([+-])";
    static constexpr std::string_view spacePattern = R"(\s*)";
    static constexpr std::string_view digit2Pattern = R"(\d{1,2})";
    static constexpr std::string_view digit3Pattern = R"(\d{1,3})";
    /// A float piece needs at least two digits: "5" doesn't match, "05" and "5.0" do.
    static constexpr std::string_view float2Pattern = R"(\d{1,2}(?:[\.,]?\d+))";
    static constexpr std::string_view float3Pattern = R"(\d{1,3}(?:[\.,]?\d+))";
    static constexpr std::string_view latUnitPattern = R"([ns])";
    static constexpr std::string_view lonUnitPattern = R"([ew])";
    static constexpr std::string_view degPattern = R"((?:(?:deg)|\°|\s))";
    static constexpr std::string_view minPattern = R"((?:(?:min)|\'|\s))";
    static constexpr std::string_view secPattern = R"((?:(?:sec)|\"|\s))";
    ///@}

    /// One pattern per axis and notation (decimal degrees, degrees and decimal minutes, degrees
    /// minutes and seconds), unanchored; groups: unit, number(s), unit.
    ///@{
    static const std::string& latitudeDDdddddPattern();
    static const std::string& longitudeDDdddddPattern();
    static const std::string& latitudeDDMMmmmPattern();
    static const std::string& longitudeDDMMmmmPattern();
    static const std::string& latitudeDDMMSSsPattern();
    static const std::string& longitudeDDMMSSsPattern();
    ///@}
    /// ISO 6709, anchored: a latitude alone (sign, digits) and a pair with an
    /// optional altitude, reference system and closing "/" that are ignored.
    ///@{
    static const std::string& latitudeISO6709Pattern();
    static const std::string& coordinateISO6709Pattern();
    ///@}

    /// "^", spacePattern, the parts joined by separatorPattern, spacePattern, "$".
    static std::string makeCoordinatePattern(const std::vector<std::string>& parts);

    /// General entries: every notation in turn, the first that reads wins.
    ///@{
    static std::optional<Latitude> latitude(std::string_view text);
    static std::optional<Longitude> longitude(std::string_view text);
    static std::optional<Coordinate> coordinate(std::string_view text);
    ///@}

    /// Each notation on its own: the whole text must be that notation.
    ///@{
    static std::optional<double> latitudeFromISO6709String(std::string_view text);
    /// Matches the longitude DDddddd pattern, whose three groups the ISO reading
    /// refuses: it reads nothing, as the general entry has always relied on.
    static std::optional<double> longitudeFromISO6709String(std::string_view text);
    static std::optional<Coordinate> coordinateFromISO6709String(std::string_view text);

    static std::optional<double> latitudeFromDDdddddString(std::string_view text);
    static std::optional<double> longitudeFromDDdddddString(std::string_view text);
    static std::optional<Coordinate> coordinateFromDDdddddString(std::string_view text);
    ///@}
    /// Decimal degrees followed by any other text, which is ignored.
    static std::optional<Coordinate> coordinateFromFreeDDdddddString(std::string_view text);

    /// A single axis in degrees and minutes goes through the decimal-degree
    /// reading, which refuses four groups: both read nothing, while a pair is read.
    ///@{
    static std::optional<double> latitudeFromDDMMmmmString(std::string_view text);
    static std::optional<double> longitudeFromDDMMmmmString(std::string_view text);
    static std::optional<Coordinate> coordinateFromDDMMmmmString(std::string_view text);
    ///@}

    /// Degrees, minutes and seconds with hemisphere letters or signs.
    ///@{
    static std::optional<double> latitudeFromDDMMSSsString(std::string_view text);
    static std::optional<double> longitudeFromDDMMSSsString(std::string_view text);
    static std::optional<Coordinate> coordinateFromDDMMSSsString(std::string_view text);
    ///@}

    /// Readings of the capture groups of one axis; negRef is the lower-case
    /// letter of the negative hemisphere, "s" or "w".
    using Groups = std::vector<std::string>;
    /// The signed degrees of one axis from the groups of its notation's pattern; nothing when they
    /// don't read.
    ///@{
    static std::optional<double> parseLatitudeISO6709(const Groups& groups);
    static std::optional<double> parseLongitudeISO6709(const Groups& groups);
    static std::optional<double> parseDDddddd(const Groups& groups, std::string_view negRef);
    static std::optional<double> parseDDMMmmm(const Groups& groups, std::string_view negRef);
    static std::optional<double> parseDDMMSSs(const Groups& groups, std::string_view negRef);
    ///@}
};

} // namespace corvane
