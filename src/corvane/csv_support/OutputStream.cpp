#include "corvane/csv_support/OutputStream.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace corvane {

namespace {
constexpr std::size_t fileBufferSize = 1 << 16;
}

OutputStream::OutputStream(Kind kind, std::size_t capacity, std::filesystem::path path, bool append)
    : kind_(kind), capacity_(capacity), path_(std::move(path)), append_(append) {}

std::shared_ptr<OutputStream> OutputStream::toMemory() {
    return std::shared_ptr<OutputStream>(new OutputStream(Kind::memory, 0, {}, false));
}

std::shared_ptr<OutputStream> OutputStream::toBuffer(std::size_t capacity) {
    return std::shared_ptr<OutputStream>(new OutputStream(Kind::buffer, capacity, {}, false));
}

std::shared_ptr<OutputStream> OutputStream::toFile(std::filesystem::path path, bool append) {
    return std::shared_ptr<OutputStream>(new OutputStream(Kind::file, 0, std::move(path), append));
}

OutputStream::~OutputStream() {
    close();
}

void OutputStream::fail(int err) {
    status_ = Status::error;
    error_ = std::error_code(err, std::generic_category());
}

void OutputStream::open() {
    if (status_ != Status::notOpen) return;
    if (kind_ == Kind::file) {
        const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (append_ ? O_APPEND : O_TRUNC);
        fd_ = ::open(path_.c_str(), flags, 0666);
        if (fd_ < 0) {
            fail(errno);
            return;
        }
        bytes_.reserve(fileBufferSize);
    }
    status_ = (kind_ == Kind::buffer && capacity_ == 0) ? Status::atEnd : Status::open;
}

bool OutputStream::flush() {
    std::size_t done = 0;
    while (done < bytes_.size()) {
        const ssize_t n = ::write(fd_, bytes_.data() + done, bytes_.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            fail(errno);
            bytes_.clear();
            return false;
        }
        done += static_cast<std::size_t>(n);
    }
    bytes_.clear();
    return true;
}

void OutputStream::close() {
    if (status_ == Status::notOpen || status_ == Status::closed) return;
    if (kind_ == Kind::file && fd_ >= 0) {
        const bool wasOK = status_ != Status::error;
        if (wasOK) flush();
        if (::close(fd_) != 0 && status_ != Status::error) fail(errno);
        fd_ = -1;
    }
    if (status_ == Status::error) return; // keep the failure visible, also on a second close
    status_ = Status::closed;
}

std::ptrdiff_t OutputStream::write(const void* bytes, std::size_t length) {
    if (status_ == Status::atEnd) return 0;
    if (status_ != Status::open) return -1;
    const char* p = static_cast<const char*>(bytes);
    switch (kind_) {
    case Kind::memory:
        bytes_.append(p, length);
        return static_cast<std::ptrdiff_t>(length);
    case Kind::buffer: {
        const std::size_t taken = std::min(length, capacity_ - bytes_.size());
        bytes_.append(p, taken);
        if (bytes_.size() == capacity_) status_ = Status::atEnd;
        return static_cast<std::ptrdiff_t>(taken);
    }
    case Kind::file:
        if (bytes_.size() + length > fileBufferSize) {
            if (!flush()) return -1;
            if (length >= fileBufferSize) {
                // Large blocks skip the buffer.
                bytes_.assign(p, length);
                if (!flush()) return -1;
                return static_cast<std::ptrdiff_t>(length);
            }
        }
        bytes_.append(p, length);
        return static_cast<std::ptrdiff_t>(length);
    }
    return -1;
}

bool OutputStream::hasSpaceAvailable() const {
    return status_ == Status::open;
}

std::string_view OutputStream::data() const {
    if (kind_ == Kind::file) return {};
    return bytes_;
}

} // namespace corvane
