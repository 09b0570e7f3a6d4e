#pragma once

#include <functional>
#include <mutex>
#include <shared_mutex>
#include <string_view>
#include <type_traits>

namespace corvane {

/// Guard of the shared mutable state of one object (its `nonAtomic...` fields).
/// Reads are shared passes that may overlap; writes are exclusive passes that run
/// alone. Both are synchronous: the block runs on the calling thread and its
/// result is returned.
///
/// The guard is not re-entrant: a pass must never enter another pass of the same
/// owner (that would deadlock on a write). Builds without NDEBUG check this and
/// abort with a message; release builds rely on the rule being kept.
///
/// A block given to `mainAsync` runs only when the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class AtomicPropertyQueue {
public:
    /// The name of every guard, for diagnostics.
    static constexpr std::string_view label = "Corvane.AtomicPropertyQueue.syncQueue";

    AtomicPropertyQueue() = default;
    AtomicPropertyQueue(const AtomicPropertyQueue&) = delete;
    AtomicPropertyQueue& operator=(const AtomicPropertyQueue&) = delete;

    /// The name of the guard, `label`.
    std::string_view queueLabel() const { return label; }

    /// Shared pass: for reading the guarded state.
    template <class F> auto read(F&& fn) const -> std::invoke_result_t<F&> {
        PassMarker marker(this);
        std::shared_lock lock(mutex_);
        return fn();
    }

    /// Exclusive pass (the "barrier"): for changing the guarded state.
    template <class F> auto write(F&& fn) -> std::invoke_result_t<F&> {
        PassMarker marker(this);
        std::unique_lock lock(mutex_);
        return fn();
    }

    /// Schedules a block on the main queue, asynchronously, always, also when
    /// already on the main thread.
    static void mainAsync(std::function<void()> execute);

    /// True when the calling thread is inside a pass of this guard. Only tracked
    /// in builds without NDEBUG; always false otherwise.
    bool isInPassOnCurrentThread() const;

private:
    /// Records the passes open on this thread, to catch a pass that enters
    /// another pass of the same owner. Compiled to nothing with NDEBUG.
    class PassMarker {
    public:
#ifndef NDEBUG
        explicit PassMarker(const AtomicPropertyQueue* owner);
        ~PassMarker();
#else
        explicit PassMarker(const AtomicPropertyQueue*) {}
#endif
        PassMarker(const PassMarker&) = delete;
        PassMarker& operator=(const PassMarker&) = delete;

    private:
#ifndef NDEBUG
        const AtomicPropertyQueue* owner_;
#endif
    };

    mutable std::shared_mutex mutex_;
};

} // namespace corvane
