#pragma once

#include "corvane/utilities/Error.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Why a run failed as a whole, or that ExifTool reported errors for files.
enum class ETOutputError {
    executableNotFound,
    launchFailed,
    argumentFileCreationFailed,
    timedOut,
    cancelled,
    abnormalTermination,
    exifToolErrors,
    exifToolFailed,
};

/// The English text of an error, also the `what()` of its exception.
std::string_view message(ETOutputError error);

/// One "Error:" or "Warning:" report of ExifTool. `path` is the file it names, as ExifTool printed it,
/// when the report names one.
struct ETFileMessage {
    /// An error or a warning.
    enum class Kind { error, warning };
    Kind kind = Kind::error; ///< error or warning
    /// ExifTool marked it "[minor]": with "-m" such errors are only warnings.
    bool minor = false;
    std::string text; ///< the report's text, without the "Error:" or "Warning:" prefix
    std::optional<std::filesystem::path> path; ///< the file it names, if any

    /// "Error: text - path" as ExifTool prints it.
    std::string description() const;
    friend bool operator==(const ETFileMessage&, const ETFileMessage&) = default;
};

/// Thrown when an ExifTool run fails or reports errors for files; `what()` is `message(error())`,
/// `details()` adds the per-file reports.
class ETOutputException : public Error {
public:
    /// The failure, and the per-file reports behind `exifToolErrors` (empty for the others).
    ETOutputException(ETOutputError error, std::vector<ETFileMessage> errors);
    /// Why the run failed.
    ETOutputError error() const { return error_; }
    /// The reports behind `exifToolErrors`, each with its file.
    const std::vector<ETFileMessage>& fileErrors() const { return fileErrors_; }
    /// what() followed by the reports, one a line.
    std::string details() const;

private:
    ETOutputError error_;
    std::vector<ETFileMessage> fileErrors_;
};

/// The outcome of a run, or the state of a run under way.
class ETOutput {
public:
    /// Share of the run's files done, 0...1.
    double progress() const { return progress_; }
    /// What ExifTool wrote to standard output, without its progress lines. When every command of the
    /// run printed one JSON array ("-j"), the arrays are joined into one, in the order of the groups.
    const std::string& data() const { return data_; }
    /// The files that ExifTool reported starting on, in order, from its "-progress" lines on standard
    /// output (commands that print JSON report on standard error instead, and aren't listed). After
    /// a stopped run, each file listed was done unless it is among `unfinishedFiles()`.
    const std::vector<std::filesystem::path>& startedFiles() const { return startedFiles_; }
    /// After a stopped run, the started files that were under way when it stopped: the last one
    /// started by each process of the run.
    const std::vector<std::filesystem::path>& unfinishedFiles() const { return unfinishedFiles_; }
    /// The run's standard error as printed (without the run's own markers).
    const std::string& errorText() const { return errorText_; }
    /// Every error and warning that ExifTool reported, in order.
    const std::vector<ETFileMessage>& messages() const { return messages_; }
    /// The reports that are errors; those that are warnings.
    ///@{
    std::vector<ETFileMessage> errors() const;
    std::vector<ETFileMessage> warnings() const;
    ///@}
    /// Errors reported for files of groups that ignore minor errors, where ExifTool went on: read
    /// failures that left a file out of the output. They don't fail the run.
    const std::vector<ETFileMessage>& excusedErrors() const { return excusedErrors_; }
    /// The failure of the run itself (not started, killed...), if any.
    const std::optional<ETOutputError>& processError() const { return processError_; }
    /// Exit status of ExifTool, when it exited by itself.
    const std::optional<int>& exitStatus() const { return exitStatus_; }
    /// The arguments of the run, as ExifTool read them; passwords are masked.
    const std::vector<std::string>& arguments() const { return arguments_; }
    bool isFinished() const { return finished_; } ///< the run has ended, well or not

    /// Throws ETOutputException if the run failed, or if ExifTool reported errors that the groups'
    /// settings don't excuse. Warnings never throw.
    void throwIfErrors() const;
    /// Standard-error lines that are neither reports, progress nor summaries, one a line, with the
    /// failure of the run in front; none when there are none.
    std::optional<std::string> joinUnknownErrors() const;

private:
    friend class ETProcess;
    double progress_ = 0;
    std::string data_;
    std::string errorText_;
    std::vector<ETFileMessage> messages_;
    std::vector<ETFileMessage> excusedErrors_;
    std::vector<std::string> unknownLines_;
    std::optional<ETOutputError> processError_;
    std::optional<int> exitStatus_;
    std::vector<std::string> arguments_;
    std::vector<std::filesystem::path> startedFiles_;
    std::vector<std::filesystem::path> unfinishedFiles_;
    bool finished_ = false;
};

} // namespace corvane
