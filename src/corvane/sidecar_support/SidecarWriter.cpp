#include "corvane/sidecar_support/SidecarWriter.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/sidecar_support/CSVSidecarWriter.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"
#include "corvane/utilities/FileError.hpp"

#include <system_error>

namespace corvane {

void SidecarWriter::write(const TagStorage& storage, const std::filesystem::path& url) const {
    auto folder = url.parent_path();
    std::error_code error;
    if (!folder.empty()) std::filesystem::create_directories(folder, error);
    if (error) throw FileError(folder, "Cannot create the folder", error);
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
    if (!writer) throw NotASidecarError(url);
    writer->write(storage, url);
}

} // namespace corvane
