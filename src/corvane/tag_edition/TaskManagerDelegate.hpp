#pragma once

#include <memory>

namespace corvane {

class AbstractTask;

/// Observer of the task manager, called on the main queue, asynchronously, when a task is added
/// and when it has left the manager.
///
/// The host drains the main queue (`MainQueue::shared().drain()` in a tool, the event loop woken by
/// `MainQueue::setWakeHook` in an application); no call arrives before it does.
class TaskManagerDelegate {
public:
    virtual ~TaskManagerDelegate() = default;

    /// A task was registered; it has left the manager (run, or cancelled), respectively.
    ///@{
    virtual void taskManagerDidAdd(const std::shared_ptr<AbstractTask>& task) = 0;
    virtual void taskManagerDidRemove(const std::shared_ptr<AbstractTask>& task) = 0;
    ///@}
};

} // namespace corvane
