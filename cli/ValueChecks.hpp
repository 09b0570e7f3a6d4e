#pragma once

#include "corvane/tag_value/TagItem.hpp"
#include "corvane/value_models/Coordinate.hpp"

#include <string>
#include <variant>

namespace corvane::cli {

// A value checked for a tag: the canonical text to write, or why it can't be written.
struct CheckedValue {
    std::string text;  // the value in the tag's canonical form
    std::string error; // empty when the value is good
    bool ok() const { return error.empty(); }
};

// Reads what a person typed for `item` through the tag's converter and checks it against what the
// tag can hold: a value the converter can't read, a choice outside the tag's closed list, text
// longer than the format allows, a date with more or less than the tag's shape holds (a zone in a
// zone-less EXIF date, a date without its time), a GPS latitude over 90 or longitude over 180.
// A fraction ("1/500") is read for a real number. The error names the tag and the value.
CheckedValue checkedTagValue(const TagItem& item, const std::string& typed);

// A position typed on the command line, read whole: the parser's notations (ISO 6709, signed
// decimal degrees, degrees and minutes, degrees, minutes and seconds, with or without hemisphere
// letters), with the prime and double-prime signs for minutes and seconds and lone digits taken
// as numbers ("51.48, 0"). Refused, with a notation that works in the message: text the parser
// reads only in part, a sign on degrees followed by minutes (the parser doesn't carry it to the
// minutes), and latitudes over 90 or longitudes over 180.
std::variant<Coordinate, std::string> checkedPosition(const std::string& typed);

// The position as it is written and shown: "40.44611111, -79.98222222".
std::string positionText(const Coordinate& coordinate);

} // namespace corvane::cli
