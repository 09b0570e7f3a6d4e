#include "corvane/sidecar_support/SidecarWriter.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/sidecar_support/CSVSidecarWriter.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"

#include <stdexcept>

namespace corvane {

void SidecarWriter::write(const TagStorage& storage, const std::filesystem::path& url) const {
    auto folder = url.parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder); // throws the file system's error
    auto bytes = data(storage);
    writeFileAtomically(url, bytes);
}

std::unique_ptr<SidecarWriter> SidecarWriter::forPathExtension(std::string_view pathExtension) {
    const std::optional<SidecarFormat> format = sidecarFormat(pathExtension);
    if (format == SidecarFormat::json) return std::make_unique<JSONSidecarWriter>();
    if (format == SidecarFormat::csv) return std::make_unique<CSVSidecarWriter>();
    return nullptr;
}

void SidecarWriter::writeSidecar(const TagStorage& storage, const std::filesystem::path& url) {
    auto writer = forPathExtension(url.extension().string());
    if (!writer) throw std::invalid_argument("Not a sidecar file: " + url.string());
    writer->write(storage, url);
}

} // namespace corvane
