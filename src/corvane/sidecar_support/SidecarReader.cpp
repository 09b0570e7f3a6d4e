#include "corvane/sidecar_support/SidecarReader.hpp"

#include "corvane/sidecar_support/CSVSidecarReader.hpp"
#include "corvane/sidecar_support/JSONSidecarReader.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"

#include <cerrno>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace corvane {

SidecarReader::Values SidecarReader::readContentsOf(const std::filesystem::path& url) const {
    return readData(readFileBytes(url));
}

std::string SidecarReader::readFileBytes(const std::filesystem::path& url) {
    auto fail = [&url](int err) {
        throw std::filesystem::filesystem_error("Cannot read the sidecar file", url,
                                                std::error_code(err, std::generic_category()));
    };
    const int fd = ::open(url.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) fail(errno);
    std::string bytes;
    struct stat info {};
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode))
        bytes.reserve(static_cast<std::size_t>(info.st_size));
    // Read to the end rather than trusting a size: a folder opens but fails here with the system's
    // reason, and pipes have no size.
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0) break;
        if (n < 0) {
            if (errno == EINTR) continue;
            const int err = errno;
            ::close(fd);
            fail(err);
        }
        bytes.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
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
