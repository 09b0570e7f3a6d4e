#include "corvane/sidecar_support/SidecarWriter.hpp"

#include "corvane/sidecar_support/CSVSidecarWriter.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/sidecar_support/SidecarFormat.hpp"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace corvane {

namespace {

[[noreturn]] void throwSystemError(const char* what, const std::filesystem::path& url, int err) {
    throw std::filesystem::filesystem_error(what, url, std::error_code(err, std::generic_category()));
}

} // namespace

void SidecarWriter::write(const TagStorage& storage, const std::filesystem::path& url) const {
    auto folder = url.parent_path();
    if (!folder.empty()) std::filesystem::create_directories(folder); // throws the file system's error
    auto bytes = data(storage);
    writeFileAtomically(url, bytes);
}

void SidecarWriter::writeFileAtomically(const std::filesystem::path& url, std::string_view bytes) {
    std::string pattern = url.string() + ".XXXXXX";
    int fd = ::mkstemp(pattern.data());
    if (fd < 0) throwSystemError("Cannot create the sidecar file", url, errno);
    std::filesystem::path temporary(pattern);
    auto fail = [&](int err) {
        ::close(fd);
        ::unlink(temporary.c_str());
        throwSystemError("Cannot write the sidecar file", url, err);
    };
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        ssize_t n = ::write(fd, p, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(errno);
        }
        p += n;
        left -= static_cast<std::size_t>(n);
    }
    // mkstemp makes the file private; give it the usual rights of a document (umask isn't read:
    // changing it to read it would race with other threads).
    ::fchmod(fd, 0644);
    if (::fsync(fd) != 0) fail(errno);
    if (::close(fd) != 0) {
        int err = errno;
        ::unlink(temporary.c_str());
        throwSystemError("Cannot write the sidecar file", url, err);
    }
    if (::rename(temporary.c_str(), url.c_str()) != 0) {
        int err = errno;
        ::unlink(temporary.c_str());
        throwSystemError("Cannot write the sidecar file", url, err);
    }
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
