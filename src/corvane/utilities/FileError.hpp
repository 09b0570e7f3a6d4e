#pragma once

#include "corvane/utilities/Error.hpp"

#include <filesystem>
#include <string>
#include <system_error>

namespace corvane {

/// A file or folder the library could not read, write, create or move. `what()` names the file,
/// then what was attempted and the system's reason: "/photos/a.csv: Cannot read the file: No such
/// file or directory". The library throws it where the standard library would have thrown
/// `std::filesystem::filesystem_error`, so that a host catches every failure as an `Error`.
class FileError : public Error {
public:
    /// `action` says what failed ("Cannot read the file"); `code` is the system's reason.
    FileError(std::filesystem::path path, std::string action, std::error_code code);
    /// The same failure, from the standard library's error (its first path, its code).
    explicit FileError(const std::filesystem::filesystem_error& error);

    /// The file or folder concerned.
    const std::filesystem::path& path() const { return path_; }
    /// What was attempted, without the path or the reason.
    const std::string& action() const { return action_; }
    /// The system's reason (an errno value in the generic category, usually).
    std::error_code code() const { return code_; }

private:
    std::filesystem::path path_;
    std::string action_;
    std::error_code code_;
};

} // namespace corvane
