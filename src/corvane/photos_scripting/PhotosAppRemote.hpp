#pragma once

#include "corvane/photos_scripting/PhotosRemoteProfile.hpp"
#include "corvane/photos_scripting/PhotosScript.hpp"

#include <optional>
#include <string>

namespace corvane {

/// Sets the values of a profile on every image selected in the Photos application, through a
/// script the shared PhotosScriptRunner runs. Apostrophes and double quotes are dropped from the
/// texts sent, and a backslash is doubled, so that a text never ends its quotes early. Run with
/// `perform` or `performInBackground` (see PhotosScript).
///
/// An immutable value: any thread may use it. The profile is read when the script is generated.
class PhotosAppRemote : public PhotosScript<PhotosAppRemote> {
public:
    /// The error that arrives when nothing is selected in the application.
    static constexpr std::string_view noSelectionMessage = "Please select an image in Photos.app";

    /// Applies `profile` to the selected images, after `delay` seconds.
    PhotosAppRemote(int delay, PhotosRemoteProfileRef profile)
        : delay_(delay), profile_(std::move(profile)) {}

    /// Seconds the script waits before it acts (so the user can bring the application forward).
    int delay() const { return delay_; }
    /// The values applied.
    const PhotosRemoteProfileRef& profile() const { return profile_; }

    /// The script's text: the delay, then a loop over the selection that sets each value of the
    /// profile that isn't `None`.
    std::string generateScript() const;

private:
    int delay_;
    PhotosRemoteProfileRef profile_;
};

} // namespace corvane
