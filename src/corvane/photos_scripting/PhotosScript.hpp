#pragma once

#include "corvane/photos_scripting/PhotosScriptRunner.hpp"
#include "corvane/photos_scripting/detail/ScriptPerforming.hpp"

#include <functional>
#include <optional>

namespace corvane {

/// What the scripts for the Photos application share: `Derived` gives `generateScript()` and
/// `delay()`, and this runs the script through the shared PhotosScriptRunner.
///
/// A completion given to `performInBackground` runs only when the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
template <class Derived> class PhotosScript {
public:
    /// Runs the script and waits for it. Nothing when it ran through, and also when no runner is
    /// there (nothing is run then); otherwise the error information of the run.
    std::optional<PhotosScriptRunner::ErrorInfo> perform() const {
        const auto& self = static_cast<const Derived&>(*this);
        return detail::performScript(self.generateScript(), self.delay());
    }
    /// `perform` on a background thread, then `completion` with its result on the main queue.
    void
    performInBackground(std::function<void(std::optional<PhotosScriptRunner::ErrorInfo>)> completion) const {
        detail::performInBackground([self = static_cast<const Derived&>(*this)] { return self.perform(); },
                                    std::move(completion));
    }
};

} // namespace corvane
