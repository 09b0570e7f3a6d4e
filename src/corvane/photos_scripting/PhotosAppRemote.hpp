#pragma once

#include "corvane/photos_scripting/PhotosRemoteProfile.hpp"
#include "corvane/photos_scripting/PhotosScriptRunner.hpp"

#include <functional>
#include <optional>
#include <string>

namespace corvane {

/// Sets the values of a profile on every image selected in the Photos application, through a
/// script the shared PhotosScriptRunner runs. Apostrophes and double quotes are dropped from the
/// texts sent, and a backslash is doubled, so that a text never ends its quotes early.
///
/// An immutable value: any thread may use it. The profile is read when the script is generated.
class PhotosAppRemote {
public:
    /// The error that arrives when nothing is selected in the application.
    static constexpr std::string_view noSelectionMessage = "Please select an image in Photos.app";

    PhotosAppRemote(int delay, PhotosRemoteProfileRef profile)
        : delay_(delay), profile_(std::move(profile)) {}

    /// Seconds the script waits before it acts (so the user can bring the application forward).
    int delay() const { return delay_; }
    const PhotosRemoteProfileRef& profile() const { return profile_; }

    /// The script's text: the delay, then a loop over the selection that sets each value of the
    /// profile that isn't `None`.
    std::string generateScript() const;

    /// Runs the script and waits for it. Nothing when it ran through, and also when no runner is
    /// there (nothing is run then); otherwise the error information of the run.
    std::optional<PhotosScriptRunner::ErrorInfo> perform() const;
    /// `perform` on a background thread, then `completion` with its result on the main queue.
    void
    performInBackground(std::function<void(std::optional<PhotosScriptRunner::ErrorInfo>)> completion) const;

private:
    int delay_;
    PhotosRemoteProfileRef profile_;
};

} // namespace corvane
