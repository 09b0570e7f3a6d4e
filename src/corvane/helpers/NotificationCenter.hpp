#pragma once

#include "corvane/helpers/NoteSubscriber.hpp"
#include "corvane/helpers/Notification.hpp"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace corvane {

/// Dispatches notifications to observers, synchronously, on the posting thread.
/// Observers are called in the order they were added; one added during a post
/// is not called for that post, one removed during a post is not called after
/// its removal. Thread-safe: any thread may add, remove and post at any time.
///
/// The library's own notices for views (tasks, the edition manager, tables) are posted from the
/// main queue's thread, so they arrive only when the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class NotificationCenter {
public:
    /// An observer's handler; called on the posting thread.
    using Handler = std::function<void(const Notification&)>;

    NotificationCenter();
    ~NotificationCenter();
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// The centre the library posts to; lives as long as the process.
    static NotificationCenter& defaultCenter();

    /// Observes notifications named `name` (every name when empty) whose sender
    /// is `sender` (any sender when null). The observation lasts as long as the
    /// returned subscriber.
    [[nodiscard]] NoteSubscriber subscribe(std::string name, const void* sender, Handler handler);
    [[nodiscard]] NoteSubscriber subscribe(std::string name, Handler handler) { ///< every sender
        return subscribe(std::move(name), nullptr, std::move(handler));
    }

    /// Calls every matching observer, in the order they were added, before returning.
    ///@{
    void post(const Notification& note);
    void post(std::string name, const void* sender = nullptr, Notification::UserInfo userInfo = {}) {
        post(Notification(std::move(name), sender, std::move(userInfo)));
    }
    ///@}

    /// The number of observations alive.
    std::size_t observerCount() const;

    struct State;

private:
    friend class NoteSubscriber;
    static void detach(NoteSubscriber::Link& link);
    static bool isAttached(const NoteSubscriber::Link& link);

    std::shared_ptr<State> state_;
};

} // namespace corvane
