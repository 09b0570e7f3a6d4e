#pragma once

#include <string_view>

namespace corvane::detail {

// The ExifTool print-format files of the geotag export, linked into the library from data/gpx.fmt
// and data/kml.fmt: the text of the one named "gpx" or "kml", or an empty view for another name.
std::string_view geotagFormatFile(std::string_view name);

} // namespace corvane::detail
