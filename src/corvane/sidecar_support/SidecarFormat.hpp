#pragma once

#include "corvane/utilities/Error.hpp"

#include <filesystem>
#include <optional>
#include <string_view>

namespace corvane {

/// The sidecar file formats, each with its reader and writer.
enum class SidecarFormat { json, csv };

/// The format a path extension names, "json" or "csv" in any case, with or
/// without its leading dot; nothing for any other extension.
std::optional<SidecarFormat> sidecarFormat(std::string_view pathExtension);

/// A sidecar path whose extension names no sidecar format: "/photos/a.txt: Not a sidecar file".
class NotASidecarError : public Error {
public:
    /// The error for `url`.
    explicit NotASidecarError(const std::filesystem::path& url)
        : Error(url.string() + ": Not a sidecar file"), url_(url) {}
    /// The path that was given.
    const std::filesystem::path& url() const { return url_; }

private:
    std::filesystem::path url_;
};

} // namespace corvane
