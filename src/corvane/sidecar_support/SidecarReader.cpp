#include "corvane/sidecar_support/SidecarReader.hpp"

#include "corvane/helpers/JSONInput.hpp"

#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"

#include <stdexcept>

namespace corvane {

SidecarReader::Values SidecarReader::readContentsOf(const std::filesystem::path& url) const {
    try {
        return readData(readFileBytes(url));
    } catch (const JSONNestingError&) {
        throw JSONNestingError(url.string());
    }
}

std::unique_ptr<SidecarReader> SidecarReader::forPathExtension(std::string_view pathExtension) {
    const std::optional<SidecarFormat> format = sidecarFormat(pathExtension);
    if (format == SidecarFormat::json) return std::make_unique<JSONSidecarReader>();
    if (format == SidecarFormat::csv) return std::make_unique<CSVSidecarReader>();
    return nullptr;
}

SidecarReader::Values SidecarReader::readSidecar(const std::filesystem::path& url) {
    auto reader = forPathExtension(url.extension().string());
    if (!reader) throw std::invalid_argument("Not a sidecar file: " + url.string());
    return reader->readContentsOf(url);
}

} // namespace corvane
