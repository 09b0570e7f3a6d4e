// Positions as people and files write them: every entry of the parser, and what it reads written
// back in every notation (the writer stops the process on a value it can't print).

#include "FuzzInput.hpp"

#include "corvane/value_models/CoordinateParser.hpp"
#include "corvane/value_models/CoordinateWriter.hpp"

#include <cmath>

using namespace corvane;

namespace {

void writeBack(const Coordinate& c) {
    if (!(std::fabs(c.latitude().value()) <= 90 && std::fabs(c.longitude().value()) <= 180)) return;
    const CoordinateWriter writer;
    (void)CoordinateParser::coordinate(writer.iso6709(c));
    (void)writer.DDddddd(c);
    (void)writer.preDDMMmmm(c);
    (void)writer.postDDMMSSs(c);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = fuzz::text(data, size);
    if (auto c = CoordinateParser::coordinate(text)) writeBack(*c);
    (void)CoordinateParser::latitude(text);
    (void)CoordinateParser::longitude(text);
    (void)CoordinateParser::coordinateFromISO6709String(text);
    (void)CoordinateParser::coordinateFromDDMMSSsString(text);
    (void)CoordinateParser::latitudeFromDDMMSSsString(text);
    (void)CoordinateParser::longitudeFromDDMMmmmString(text);
    return 0;
}
