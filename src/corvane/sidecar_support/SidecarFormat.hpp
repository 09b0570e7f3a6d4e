#pragma once

#include <optional>
#include <string_view>

namespace corvane {

// The sidecar file formats, each with its reader and writer.
enum class SidecarFormat { json, csv };

// The format a path extension names, "json" or "csv" in any case, with or
// without its leading dot; nothing for any other extension.
std::optional<SidecarFormat> sidecarFormat(std::string_view pathExtension);

} // namespace corvane
