#pragma once

#include "corvane/photos_scripting/PhotosScriptRunner.hpp"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Imports files into the Photos application through a script the shared PhotosScriptRunner runs:
/// the application is brought forward, and after the delay given the files are imported.
///
/// An immutable value: any thread may use it.
class PhotosAppExporter {
public:
    PhotosAppExporter(int delay, std::vector<std::filesystem::path> urls)
        : delay_(delay), urls_(std::move(urls)) {}

    int delay() const { return delay_; }
    const std::vector<std::filesystem::path>& urls() const { return urls_; }

    /// The script's text: each path as a quoted file name, with a backslash before any double
    /// quote or backslash in it, so that no file name can end the text early.
    std::string generateScript() const;

    /// Runs the script and waits for it. Nothing when it ran through, and also when no runner is
    /// there (nothing is run then); otherwise the error information of the run.
    std::optional<PhotosScriptRunner::ErrorInfo> perform() const;
    /// `perform` on a background thread, then `completion` with its result on the main queue.
    void
    performInBackground(std::function<void(std::optional<PhotosScriptRunner::ErrorInfo>)> completion) const;

private:
    int delay_;
    std::vector<std::filesystem::path> urls_;
};

} // namespace corvane
