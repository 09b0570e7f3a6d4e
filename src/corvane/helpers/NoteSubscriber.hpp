#pragma once

#include <memory>

namespace corvane {

class NotificationCenter;

/// Owned handle of one observation: the observer is removed when the subscriber
/// is destroyed, reset or cancelled. Move-only.
///
/// After cancel() returns, the handler is not called again, and no call of it is
/// running on another thread (cancel waits for those). A handler may cancel its
/// own subscriber, or another one, while it runs. Because cancel waits, do not
/// cancel while holding a lock that the handler itself takes.
///
/// Handlers of the library's main-thread notices run only when the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class NoteSubscriber {
public:
    NoteSubscriber() = default;
    /// Moving hands the observation over; assigning ends the observation held before.
    ///@{
    NoteSubscriber(NoteSubscriber&& other) noexcept = default;
    NoteSubscriber& operator=(NoteSubscriber&& other) noexcept;
    ///@}
    NoteSubscriber(const NoteSubscriber&) = delete;
    NoteSubscriber& operator=(const NoteSubscriber&) = delete;
    ~NoteSubscriber();

    /// Ends the observation; idempotent.
    void cancel();
    bool isActive() const; ///< the observation is still on

private:
    friend class NotificationCenter;
    struct Link;
    explicit NoteSubscriber(std::shared_ptr<Link> link) : link_(std::move(link)) {}

    std::shared_ptr<Link> link_;
};

} // namespace corvane
