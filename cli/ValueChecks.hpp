#pragma once

#include "corvane/value_models/Coordinate.hpp"

#include <string>
#include <variant>

namespace corvane::cli {

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
