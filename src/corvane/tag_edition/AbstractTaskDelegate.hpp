#pragma once

#include <memory>

namespace corvane {

class AbstractTask;

/// Observer of one task. Every call is made on the main queue, asynchronously, after the change
/// it reports: by then the task may have moved on, so an observer reads the task's current state.
///
/// The host drains the main queue (`MainQueue::shared().drain()` in a tool, the event loop woken by
/// `MainQueue::setWakeHook` in an application); no call arrives before it does.
class AbstractTaskDelegate {
public:
    virtual ~AbstractTaskDelegate() = default;

    /// The task's status, error list or progress changed, respectively.
    ///@{
    virtual void taskDidUpdateStatus(const std::shared_ptr<AbstractTask>& task) = 0;
    virtual void taskDidUpdateError(const std::shared_ptr<AbstractTask>& task) = 0;
    virtual void taskDidProgress(const std::shared_ptr<AbstractTask>& task) = 0;
    ///@}
};

} // namespace corvane
