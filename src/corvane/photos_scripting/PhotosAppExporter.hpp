#pragma once

#include "corvane/photos_scripting/PhotosScript.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Imports files into the Photos application through a script the shared PhotosScriptRunner runs:
/// the application is brought forward, and after the delay given the files are imported. Run with
/// `perform` or `performInBackground` (see PhotosScript).
///
/// An immutable value: any thread may use it.
class PhotosAppExporter : public PhotosScript<PhotosAppExporter> {
public:
    /// Adds `urls` to the photo library, after `delay` seconds.
    PhotosAppExporter(int delay, std::vector<std::filesystem::path> urls)
        : delay_(delay), urls_(std::move(urls)) {}

    /// Seconds the script waits before it acts; the files to add.
    ///@{
    int delay() const { return delay_; }
    const std::vector<std::filesystem::path>& urls() const { return urls_; }
    ///@}

    /// The script's text: each path as a quoted file name, with a backslash before any double
    /// quote or backslash in it, so that no file name can end the text early.
    std::string generateScript() const;

private:
    int delay_;
    std::vector<std::filesystem::path> urls_;
};

} // namespace corvane
