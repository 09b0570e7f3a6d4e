#include "corvane/sidecar_support/SidecarReader.hpp"

#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"

#include <cerrno>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace corvane {

SidecarReader::Values SidecarReader::readContentsOf(const std::filesystem::path& url) const {
    return readData(readFileBytes(url));
}

std::string SidecarReader::readFileBytes(const std::filesystem::path& url) {
    std::ifstream in(url, std::ios::binary);
    if (!in) {
        int err = errno != 0 ? errno : ENOENT;
        throw std::filesystem::filesystem_error("Cannot read the sidecar file", url,
                                                std::error_code(err, std::generic_category()));
    }
    std::string bytes;
    in.seekg(0, std::ios::end);
    auto size = in.tellg();
    if (size > 0) {
        bytes.resize(static_cast<std::size_t>(size));
        in.seekg(0, std::ios::beg);
        in.read(bytes.data(), size);
    }
    if (in.bad() || (size > 0 && in.gcount() != size)) {
        // A folder opens but can't be read: report it as the system does.
        throw std::filesystem::filesystem_error("Cannot read the sidecar file", url,
                                                std::make_error_code(std::errc::io_error));
    }
    return bytes;
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
