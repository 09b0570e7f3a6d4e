#pragma once

#include <memory>

namespace corvane {

class AbstractTask;

/// Observer of the task manager, called on the main queue, asynchronously, when a task is added
/// and when it has left the manager.
class TaskManagerDelegate {
public:
    virtual ~TaskManagerDelegate() = default;

    virtual void taskManagerDidAdd(const std::shared_ptr<AbstractTask>& task) = 0;
    virtual void taskManagerDidRemove(const std::shared_ptr<AbstractTask>& task) = 0;
};

} // namespace corvane
