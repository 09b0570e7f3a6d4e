#pragma once

#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Runs the scripts that drive the Photos application (PhotosAppRemote, PhotosAppExporter) through
/// the platform's script host program: the program is started without a shell, gets the script on
/// its standard input, and what it writes to standard error when the script fails becomes the
/// error information.
///
/// The process-wide runner (`shared`) is the script host at `defaultExecutable` when that program
/// is installed, and none elsewhere (on a system without it nothing can be run, and PhotosAppRemote
/// and PhotosAppExporter report neither result nor error). An application or a test may set
/// another program. Thread-safe.
class PhotosScriptRunner {
public:
    /// What went wrong, under the keys below; the message is always there.
    using ErrorInfo = std::map<std::string, std::string>;

    /// The script's own error text ("Please select an image in Photos.app"), or what kept the
    /// script from running.
    static constexpr std::string_view errorMessageKey = "NSAppleScriptErrorMessage";
    /// The short form of `errorMessageKey`.
    static constexpr std::string_view errorBriefMessageKey = "NSAppleScriptErrorBriefMessage";
    /// The script host's error number, in decimal, when it gave one.
    static constexpr std::string_view errorNumberKey = "NSAppleScriptErrorNumber";
    /// Where in the script the error arose, "start:end" in characters, when the host told.
    static constexpr std::string_view errorRangeKey = "NSAppleScriptErrorRange";

    /// The script host looked for by default.
    static constexpr std::string_view defaultExecutable = "/usr/bin/osascript";
    /// Time a script gets to run, beyond its own delay.
    static constexpr std::chrono::seconds defaultTimeLimit{120};

    /// A runner of scripts through `executable`, each for at most `timeLimit` plus its own delay.
    explicit PhotosScriptRunner(std::filesystem::path executable,
                                std::chrono::milliseconds timeLimit = defaultTimeLimit)
        : executable_(std::move(executable)), timeLimit_(timeLimit) {}

    /// The script host; the time limit of a run.
    ///@{
    const std::filesystem::path& executable() const { return executable_; }
    std::chrono::milliseconds timeLimit() const { return timeLimit_; }
    ///@}

    /// The runner scripts go through; none when no script host is installed and none was set.
    ///@{
    static std::optional<PhotosScriptRunner> shared();
    static void setShared(std::optional<PhotosScriptRunner> runner);
    ///@}

    /// Runs the script and waits for it, for at most the time limit plus `extraTime` (the
    /// script's own delay); a script still running then is stopped. Nothing when the program ran
    /// the script through (exit status 0); otherwise the error information: the script's error as
    /// the host reported it, or why the program couldn't start, ended abnormally or was stopped.
    std::optional<ErrorInfo> run(std::string_view script,
                                 std::chrono::milliseconds extraTime = std::chrono::milliseconds(0)) const;

private:
    std::filesystem::path executable_;
    std::chrono::milliseconds timeLimit_;
};

} // namespace corvane
