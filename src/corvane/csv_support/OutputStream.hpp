#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>

namespace corvane {

/// A byte sink with an explicit life cycle: created not open, opened, written,
/// closed. It writes to a file, to growing memory, or to memory of a fixed
/// capacity. File output is buffered; the buffer is flushed when full and on close.
class OutputStream {
public:
    /// Where the stream stands: not opened yet, open, full (a memory stream at its capacity),
    /// closed, failed.
    enum class Status { notOpen, open, atEnd, closed, error };

    /// Memory without a limit.
    static std::shared_ptr<OutputStream> toMemory();
    /// Memory that takes at most `capacity` bytes; the stream is at its end then.
    static std::shared_ptr<OutputStream> toBuffer(std::size_t capacity);
    /// The file is created or truncated (or appended to) when the stream opens.
    static std::shared_ptr<OutputStream> toFile(std::filesystem::path path, bool append = false);

    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;
    ~OutputStream();

    /// Where the stream stands.
    Status status() const { return status_; }
    /// The failure that put the stream in the error status.
    std::error_code streamError() const { return error_; }

    /// Opens the stream (a file is created, and truncated unless the stream appends); closes it,
    /// flushing the buffer. Failures move it to the error status.
    ///@{
    void open();
    void close();
    ///@}

    /// Writes up to `length` bytes and returns how many were taken: 0 when the
    /// stream is at its end, -1 when it is not open or has failed.
    std::ptrdiff_t write(const void* bytes, std::size_t length);
    /// The same for a text.
    std::ptrdiff_t write(std::string_view bytes) { return write(bytes.data(), bytes.size()); }
    bool hasSpaceAvailable() const; ///< the stream is open and can take bytes

    /// What a memory stream has taken so far (also after close); empty for a file.
    std::string_view data() const;

private:
    enum class Kind { memory, buffer, file };
    OutputStream(Kind kind, std::size_t capacity, std::filesystem::path path, bool append);

    bool flush();
    void fail(int err);

    Kind kind_;
    Status status_ = Status::notOpen;
    std::error_code error_;
    std::string bytes_; ///< memory contents, or the file's pending buffer
    std::size_t capacity_ = 0;
    std::filesystem::path path_;
    bool append_ = false;
    int fd_ = -1;
};

} // namespace corvane
