#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/helpers/OperationQueue.hpp"
#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_edition/TaskManagerDelegate.hpp"

#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace corvane {

/// The process-wide registry of running tasks. It owns three serial queues, one per task priority,
/// so that at most one task of a kind runs at a time while an edition, a read and a write run side
/// by side. Each queue is made on first use.
///
/// Delegate calls and notifications are made on the main queue, asynchronously, with the manager
/// as object and the task in the user info under `taskKey`.
///
/// The host drains the main queue (`MainQueue::shared().drain()` in a tool, the event loop woken by
/// `MainQueue::setWakeHook` in an application); until it does, nothing of the manager is delivered.
class TaskManager {
public:
    /// The key of the task in the user info, and the two notifications: a task was added, a task
    /// has left the manager after running or being cancelled.
    ///@{
    static constexpr std::string_view taskKey = "Task";
    static constexpr std::string_view didAddTaskNotification = "TasksManagerDidAddTaskNotification";
    static constexpr std::string_view didRemoveTaskNotification = "TasksManagerDidRemoveTaskNotification";
    ///@}

    /// Lives as long as the process.
    static TaskManager& shared();

    TaskManager(const TaskManager&) = delete;
    TaskManager& operator=(const TaskManager&) = delete;

    /// The observer of the manager, held weakly: the caller keeps it alive.
    ///@{
    std::shared_ptr<TaskManagerDelegate> delegate() const;
    void setDelegate(std::weak_ptr<TaskManagerDelegate> delegate);
    ///@}

    /// Tasks added and not finished, in order of adding; a task waiting for its turn counts.
    std::vector<std::shared_ptr<AbstractTask>> tasks() const;

    /// Serial queues for the tasks of priority edition, reading and writing.
    ///@{
    OperationQueue& editionTasksQueue();
    OperationQueue& readingTasksQueue();
    OperationQueue& writingTasksQueue();
    ///@}
    /// The serial queue of the given priority (the same objects as the three above).
    OperationQueue& queue(AbstractTask::Priority priority);

    /// True while any task is registered.
    bool isRunning() const;
    /// True while a task of priority edition, reading or writing respectively is registered.
    ///@{
    bool hasEditingTasks() const;
    bool hasReadingTasks() const;
    bool hasWritingTasks() const;
    ///@}

    /// Registers the task and queues its `perform()` on the queue of its priority; when it has run,
    /// the task leaves `tasks()`.
    void add(const std::shared_ptr<AbstractTask>& task);
    /// Cancels every registered task that hasn't begun, and drops the subprocesses not yet begun
    /// of the others. Queued operations stay: a cancelled task passes through its queue at once.
    void cancelAllTasks();
    /// Blocks until the edition queue, then the reading queue, then the writing queue have run all
    /// their operations. Not to be called from an operation of these queues.
    void waitAllTasks();

    /// The task carried by a notification of the manager; nullptr without one.
    static std::shared_ptr<AbstractTask> task(const Notification& note);

private:
    TaskManager() = default;

    bool hasTasks(AbstractTask::Priority priority) const;

    /// Run on the main queue: call the delegate, then post the notification.
    void informsDidAdd(const std::shared_ptr<AbstractTask>& task);
    void informsDidRemove(const std::shared_ptr<AbstractTask>& task);

    AtomicPropertyQueue atomic_;
    std::weak_ptr<TaskManagerDelegate> nonAtomicDelegate_;
    std::vector<std::shared_ptr<AbstractTask>> nonAtomicTasks_;

    std::once_flag editionOnce_, readingOnce_, writingOnce_;
    std::unique_ptr<OperationQueue> editionTasksQueue_, readingTasksQueue_, writingTasksQueue_;
};

} // namespace corvane
