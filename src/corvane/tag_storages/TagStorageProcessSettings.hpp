#pragma once

#include <functional>

namespace corvane {

/// The settings record of a storage engine: the three callbacks through which the engine reports
/// its start, its progress and its successful end. `ParentProcess` is the engine that takes the
/// record; each callback receives that engine, so that it can read its `progress()`.
template <class ParentProcess> class TagStorageProcessSettings {
public:
    /// A callback, given the engine that runs.
    using Handler = std::function<void(ParentProcess&)>;

    virtual ~TagStorageProcessSettings() = default;

    /// Called once, before anything is done.
    const Handler& onStartHandler() const { return onStartHandler_; }
    /// Replaces the start callback.
    void setOnStartHandler(Handler handler) { onStartHandler_ = std::move(handler); }
    /// Called around each step and whenever the engine's progress moves, maybe on another thread.
    const Handler& onProgressHandler() const { return onProgressHandler_; }
    /// Replaces the progress callback.
    void setOnProgressHandler(Handler handler) { onProgressHandler_ = std::move(handler); }
    /// Called once, after a successful run only.
    const Handler& onEndHandler() const { return onEndHandler_; }
    /// Replaces the end callback.
    void setOnEndHandler(Handler handler) { onEndHandler_ = std::move(handler); }

protected:
    TagStorageProcessSettings() = default;
    /// Copies share the callbacks.
    TagStorageProcessSettings(const TagStorageProcessSettings&) = default;
    /// Copies the callbacks.
    TagStorageProcessSettings& operator=(const TagStorageProcessSettings&) = default;

private:
    Handler onStartHandler_;
    Handler onProgressHandler_;
    Handler onEndHandler_;
};

} // namespace corvane
