#include "support/Unwritable.hpp"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace corvane::test {

namespace fs = std::filesystem;

namespace {

// Sets or clears the immutable flag; false when the volume or the user can't.
bool setImmutable(const fs::path& path, bool on) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return false;
    int flags = 0;
    bool done = ::ioctl(fd, FS_IOC_GETFLAGS, &flags) == 0;
    if (done) {
        flags = on ? (flags | FS_IMMUTABLE_FL) : (flags & ~FS_IMMUTABLE_FL);
        done = ::ioctl(fd, FS_IOC_SETFLAGS, &flags) == 0;
    }
    ::close(fd);
    return done;
}

constexpr auto readOnly = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;

} // namespace

Unwritable::Unwritable(fs::path path) : path_(std::move(path)) {
    if (::geteuid() == 0) {
        immutable_ = ok_ = setImmutable(path_, true);
        return;
    }
    std::error_code error;
    if (fs::is_directory(path_)) {
        fs::permissions(path_, readOnly | fs::perms::owner_exec, error);
    } else {
        fs::permissions(path_, readOnly, error);
        if (!error)
            fs::permissions(path_.parent_path(), fs::perms::owner_read | fs::perms::owner_exec, error);
    }
    ok_ = !error;
}

Unwritable::~Unwritable() {
    if (immutable_) {
        setImmutable(path_, false);
    } else if (::geteuid() != 0) {
        std::error_code error;
        if (fs::is_directory(path_)) {
            fs::permissions(path_, fs::perms::owner_all, error);
        } else {
            fs::permissions(path_.parent_path(), fs::perms::owner_all, error);
            fs::permissions(path_, fs::perms::owner_read | fs::perms::owner_write, error);
        }
    }
}

} // namespace corvane::test
