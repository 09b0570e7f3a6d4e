#include "corvane/tag_storages/detail/FileReplacement.hpp"

#include "corvane/utilities/FileError.hpp"

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace corvane::detail {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void fail(const fs::path& path, int error, const char* what) {
    throw FileError(path, what, std::error_code(error, std::generic_category()));
}

// The names of the original's extended attributes; empty when the file system keeps none.
std::vector<std::string> attributeNames(const fs::path& original) {
    for (;;) {
        const ssize_t size = ::listxattr(original.c_str(), nullptr, 0);
        if (size < 0) {
            if (errno == ENOTSUP) return {};
            fail(original, errno, "cannot list the extended attributes");
        }
        std::string list(static_cast<std::size_t>(size), '\0');
        const ssize_t read = ::listxattr(original.c_str(), list.data(), list.size());
        if (read < 0) {
            if (errno == ERANGE) continue; // grew in between
            fail(original, errno, "cannot list the extended attributes");
        }
        std::vector<std::string> names;
        for (std::size_t start = 0; start < static_cast<std::size_t>(read);) {
            const std::size_t end = list.find('\0', start);
            names.push_back(list.substr(start, end - start));
            start = end + 1;
        }
        return names;
    }
}

std::string attributeValue(const fs::path& original, const std::string& name) {
    for (;;) {
        const ssize_t size = ::getxattr(original.c_str(), name.c_str(), nullptr, 0);
        if (size < 0) fail(original, errno, "cannot read an extended attribute");
        std::string value(static_cast<std::size_t>(size), '\0');
        const ssize_t read = ::getxattr(original.c_str(), name.c_str(), value.data(), value.size());
        if (read >= 0) {
            value.resize(static_cast<std::size_t>(read));
            return value;
        }
        if (errno != ERANGE) fail(original, errno, "cannot read an extended attribute");
    }
}

void copyAttributes(const fs::path& original, int fd, const fs::path& target) {
    for (const auto& name : attributeNames(original)) {
        const std::string value = attributeValue(original, name);
        if (::fsetxattr(fd, name.c_str(), value.data(), value.size(), 0) == 0) continue;
        if (name.starts_with("user.")) fail(target, errno, "cannot keep an extended attribute");
    }
}

void writeAll(int fd, std::string_view bytes, const fs::path& target) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(target, errno, "cannot write the file");
        }
        done += static_cast<std::size_t>(n);
    }
}

void keepOwnerAndMode(const fs::path& original, int fd, const fs::path& target) {
    struct stat status {};
    if (::stat(original.c_str(), &status) != 0) fail(original, errno, "cannot examine the file");
    // Only a privileged process may give the file away; others keep their own ownership.
    if (::fchown(fd, status.st_uid, status.st_gid) != 0 && errno != EPERM)
        fail(target, errno, "cannot set the owner");
    if (::fchmod(fd, status.st_mode & 07777) != 0) fail(target, errno, "cannot set the permissions");
}

} // namespace

void replaceFileKeepingAttributes(const fs::path& original, const fs::path& target, std::string_view bytes) {
    const fs::path folder = target.parent_path().empty() ? fs::path(".") : target.parent_path();
    std::error_code error;
    fs::create_directories(folder, error);
    if (error) throw FileError(folder, "cannot create the folder", error);

    // Built by appending: GCC 12 warns, wrongly (-Wrestrict), on a literal put before a string.
    std::string name = ".";
    name += target.filename().string();
    name += ".XXXXXX";
    std::string temporary = (folder / name).string();
    const int fd = ::mkstemp(temporary.data());
    if (fd < 0) fail(target, errno, "cannot create a temporary file");
    try {
        writeAll(fd, bytes, target);
        keepOwnerAndMode(original, fd, target);
        copyAttributes(original, fd, target);
        if (::fsync(fd) != 0) fail(target, errno, "cannot flush the file");
    } catch (...) {
        ::close(fd);
        ::unlink(temporary.c_str());
        throw;
    }
    if (::close(fd) != 0) {
        const int closeError = errno;
        ::unlink(temporary.c_str());
        fail(target, closeError, "cannot close the file");
    }
    if (::rename(temporary.c_str(), target.c_str()) != 0) {
        const int renameError = errno;
        ::unlink(temporary.c_str());
        fail(target, renameError, "cannot replace the file");
    }
}

} // namespace corvane::detail
