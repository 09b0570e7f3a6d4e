#pragma once

#include <optional>
#include <string>

namespace corvane {

/// The version of the exiv2 library behind the in-process image engine; nothing in a build
/// without that engine.
std::optional<std::string> imageEngineVersion();

} // namespace corvane
