#pragma once

#include "corvane/utilities/Error.hpp"

#include <chrono>
#include <filesystem>
#include <string>

namespace corvane {

/// The AtomicParsley program, for the one job ExifTool doesn't do on MPEG-4 files: removing the
/// iTunes movie description (the reverse-DNS atom "iTunMOVI" under moov.udta.meta.ilst) that some
/// tools leave behind. It runs without a shell and within a time limit.
///
/// AtomicParsley writes its result to a new file; that file's content then replaces the movie in one
/// rename, keeping the movie's permission bits, owner and extended attributes. A movie without the
/// atom is not written at all, so it stays byte-identical. AtomicParsley reads MPEG-4 files only
/// (mp4, m4v, m4a, 3gp...); a QuickTime movie ("qt" brand) is refused with its reason.
///
/// The static settings are process-wide; set them before the first run. Runs may be made from any
/// thread, several at a time on different files.
class AtomicParsley {
public:
    /// A run of AtomicParsley that failed: `what()` is "PATH: REASON", the reason being the
    /// program's own message when it gave one.
    class RunException : public Error {
    public:
        /// A failure of the program on `url`, for `reason`.
        RunException(std::filesystem::path url, const std::string& reason);
        /// The movie the program failed on.
        const std::filesystem::path& url() const { return url_; }

    private:
        std::filesystem::path url_;
    };

    /// Whether the movie holds the atom. Throws RunException.
    static bool hasiTunMOVI(const std::filesystem::path& url);
    /// Removes the atom from the movie in place; gives false, and leaves the file alone, when it has
    /// none. Throws RunException, or std::filesystem::filesystem_error when the result can't replace
    /// the file; the movie is then as it was.
    static bool deleteiTunMOVI(const std::filesystem::path& url);

    /// The program: "AtomicParsley" looked up in PATH unless set.
    ///@{
    static std::filesystem::path executableURL();
    static void setExecutableURL(const std::filesystem::path& url);
    ///@}
    /// Limit of one run: 2 minutes unless set (the program rewrites the whole movie).
    ///@{
    static std::chrono::milliseconds timeLimit();
    static void setTimeLimit(std::chrono::milliseconds limit);
    ///@}
};

} // namespace corvane
