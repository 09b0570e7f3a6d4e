// What the program tells a person besides its results: errors, ExifTool's warnings, notes,
// progress, and the exit code they add up to. Every command reports through a Reporter so that
// messages look alike: "corvane: <file>: <reason>" on standard error, one a line.
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace corvane::cli {

// The program's exit codes.
enum ExitCode : int {
    exitSuccess = 0,
    exitFileFailed = 1,   // some file (or library entry) failed; the others were done
    exitUsage = 2,        // the command line can't be run as given; nothing was done
    exitInterrupted = 130 // SIGINT or SIGTERM
};

// `-q`: ExifTool's warnings and the notes about files passed over are not shown. Errors always are.
void setQuiet(bool quiet);
bool isQuiet();

// Thrown from a command's callback for a usage error found after parsing (a bad tag name, options
// that don't go together): main prints "corvane: <what>" and exits with `exitUsage`.
class UsageError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Errors are counted, and printed on standard error one a line, with the file they concern.
class Reporter {
public:
    using Clock = std::chrono::steady_clock;

    Reporter();

    // An error that concerns no one file (a run that failed as a whole).
    void error(const std::string& text);
    // "corvane: FILE: TEXT".
    void fileError(const std::filesystem::path& path, const std::string& text);
    // "corvane: FILE:LINE: TEXT", for text inputs (CSV tables, sidecars, libraries).
    void fileError(const std::filesystem::path& path, std::size_t line, const std::string& text);
    // A usage error: counted apart, so that `exitCode()` gives `exitUsage`.
    void usageError(const std::string& text);
    // "corvane: FILE: warning: TEXT", unless quiet. Not counted.
    void warning(const std::filesystem::path& path, const std::string& text);
    // A file passed over for a reason that is no error (a folder's file of a format not read);
    // hidden when quiet.
    void fileNote(const std::filesystem::path& path, const std::string& text);

    std::size_t errorCount() const { return errorCount_ + usageErrorCount_; }
    std::size_t usageErrorCount() const { return usageErrorCount_; }
    // `exitUsage` after a usage error, `exitFileFailed` after another error, else `exitSuccess`.
    int exitCode() const;

    // A progress line on a terminal (standard error only), shown once a batch has run for a
    // moment: "LABEL N/M files" when the batch's file count is known, else "LABEL P%".
    void progress(const std::string& label, double fraction, Clock::time_point start,
                  std::size_t fileCount = 0);
    void clearProgress();

private:
    bool isTerminal_;
    bool shown_ = false;
    std::size_t errorCount_ = 0;
    std::size_t usageErrorCount_ = 0;
};

// The text of an exception for a person: the library's own messages as they are, without the
// JSON parser's internal names of its faults ("[json.exception.type_error.302] ").
std::string readableReason(const std::exception& error);

// Why the text input `file` (a CSV table or sidecar, a JSON sidecar or library) couldn't be read,
// as "FILE:LINE: reason" when the line is known (JSON syntax, CSV quoting), else "FILE: reason";
// with `expected` ("a preset library"), the reason begins "not EXPECTED: ".
std::string inputFailure(const std::filesystem::path& file, const std::exception& error,
                         const std::string& expected = {});

} // namespace corvane::cli
