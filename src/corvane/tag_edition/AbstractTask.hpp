#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/OperationQueue.hpp"
#include "corvane/tag_edition/AbstractTaskDelegate.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/utilities/Date.hpp"
#include "corvane/utilities/EngineOption.hpp"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace corvane {

/// Base of every long operation: opening, saving, importing, exporting, syncing. It fixes the life
/// cycle, the error list, progress, the notifications and the texts that describe a task. A
/// subclass supplies `title()` and the work in `internProcess()`.
///
/// Life cycle: pending -> processing -> completed, or pending -> cancelled. `perform()` runs the
/// task at most once, on the calling thread; `cancel()` only ends a task that hasn't begun (a
/// running task finishes what it has begun, with its not-yet-started subprocesses dropped).
/// Failures never change the status: they are collected in `errors()`, which is never cleared, and
/// a task with errors still ends `completed`.
///
/// Tasks have identity and must live in a std::shared_ptr: notices carry the task and keep it
/// alive until they are delivered. Delegate calls and notifications are made on the main queue,
/// asynchronously, never under the task's guard, in the order of the changes they report.
///
/// The host drains the main queue: a GUI application from its event loop, woken by
/// `MainQueue::setWakeHook`; a tool with `MainQueue::shared().drain()` or `runUntil(...)`. Until it
/// does, no delegate call or notification of a task is delivered.
class AbstractTask : public std::enable_shared_from_this<AbstractTask> {
public:
    ///@{
    /// Posted on the default centre with the task (std::shared_ptr<AbstractTask>) as object and no
    /// user info.
    static constexpr std::string_view didUpdateStatusNotification = "AbstractTaskDidUpdateStatusNotification";
    /// The three notifications, one per kind of change: status, error list, progress.
    static constexpr std::string_view didUpdateErrorNotification = "AbstractTaskDidUpdateErrorNotification";
    static constexpr std::string_view didProgressNotification = "AbstractTaskDidProgressNotification";
    ///@}

    /// Width of `subprocessQueue()`.
    static constexpr int maxConcurrentSubprocesses = 8;

    /// Chooses the task manager's queue.
    enum class Priority { edition, reading, writing };
    /// Where a task stands in its life cycle; see the class comment.
    enum class Status { pending, processing, completed, cancelled };

    /// "Pending", "Processing"...: the localised text of a status.
    static std::string localizedDescription(Status status);

    /// The localised description of an error of the list: the `what()` of a std::exception.
    static std::string errorDescription(const std::exception_ptr& error);
    /// The `ProcessError` case carried by an error of the list, if it is a `TaskError<E>`.
    template <class E> static std::optional<E> processError(const std::exception_ptr& error) {
        try {
            if (error) std::rethrow_exception(error);
        } catch (const TaskError<E>& e) {
            return e.error();
        } catch (...) {
        }
        return std::nullopt;
    }

    virtual ~AbstractTask();
    AbstractTask(const AbstractTask&) = delete;
    AbstractTask& operator=(const AbstractTask&) = delete;

    /// Identity.
    friend bool operator==(const AbstractTask& a, const AbstractTask& b) { return &a == &b; }

    // --- Properties of the kind of task

    /// The queue of the task manager that runs the task; writing unless a subclass says otherwise.
    virtual Priority priority() const { return Priority::writing; }
    /// True when the task can't measure its progress (a view shows a spinner); a subclass that
    /// calls `setProgress`/`incrementProgress` returns false.
    virtual bool isProgressIndeterminate() const { return true; }
    /// The task's name for the user; each subclass gives its own.
    virtual std::string title() const;

    // --- Guarded state (reads are shared passes)

    /// The observer of this task, held weakly: the caller keeps it alive. Set it before adding the
    /// task to the manager to miss no call.
    ///@{
    std::shared_ptr<AbstractTaskDelegate> delegate() const;
    void setDelegate(std::weak_ptr<AbstractTaskDelegate> delegate);
    ///@}
    /// In order of arrival.
    std::vector<std::exception_ptr> errors() const;
    /// The current status; a subclass moves it with the transitions below.
    Status status() const;
    /// From 0 to 1.
    double progress() const;

    /// When the task object was made.
    Date creationDate() const { return creationDate_; }
    /// The engines this task may use, as `KitSettings` had them when it was made.
    EngineOption engineOption() const { return engineOption_; }
    /// The task's own steps, at most `maxConcurrentSubprocesses` at a time.
    OperationQueue& subprocessQueue() { return subprocessQueue_; }

    // --- Running

    /// Runs the task on the calling thread if it is pending: `internProcess()`, then waits for all
    /// subprocesses, then ends `completed`. Returns at once for a task that has run, is running or
    /// was cancelled.
    virtual void perform();
    /// Drops the subprocesses not yet begun, and cancels the task if it hasn't begun.
    virtual void cancel();

    // --- Descriptions

    /// "Title (Status)".
    std::string taskDescription() const;
    /// "No errors", or the count of errors.
    std::string errorsDescription() const;
    /// One line "- description" per error; one line "- No errors" without any.
    std::string errorListDescription() const;
    /// `taskDescription()`, a line feed, `errorsDescription()`.
    std::string longDescription() const;

protected:
    AbstractTask();

    /// The work. Runs on the thread that called `perform()`; an exception it throws lands in
    /// `errors()`.
    virtual void internProcess();

    /// Each setter changes its field in one exclusive pass and schedules the matching notice.
    void setErrors(std::vector<std::exception_ptr> errors);
    /// The same for the status and the progress (0 to 1).
    ///@{
    void setStatus(Status status);
    void setProgress(double progress);
    ///@}
    /// Adds to `progress()` in one exclusive pass (capped at 1).
    void incrementProgress(double delta);

    /// Runs `block`; if it throws, the exception is appended to `errors()` (in one exclusive pass,
    /// so no error is lost to a simultaneous one) and goes no further. The status doesn't change.
    void failable(const std::function<void()>& block);

    /// Adds an operation to `subprocessQueue()` that runs `process` inside `failable`. The task
    /// must stay alive until its subprocesses have run, which `perform()` guarantees by waiting.
    void addSubprocess(std::function<void()> process);
    /// One subprocess per element, in order, each with its own copy of the element; returns at
    /// once.
    template <class T, class F> void mapSubprocess(const std::vector<T>& elements, F&& process) {
        auto shared = std::make_shared<std::decay_t<F>>(std::forward<F>(process));
        for (const auto& element : elements)
            addSubprocess([shared, element] { (*shared)(element); });
    }

    /// The guard of the fields below; a subclass may guard its own `nonAtomic...` results with it.
    AtomicPropertyQueue& atomic() const { return atomic_; }

    /// Transitions; each runs inside an exclusive pass and returns the status after it.
    Status startProcessing();
    /// The end of a task that was cancelled before it began; of a task that has run.
    ///@{
    Status endWithCancelledStatus();
    Status endWithCompletedStatus();
    ///@}

private:
    /// The task as a shared pointer, for the notices; stops the process if it isn't owned by one.
    std::shared_ptr<AbstractTask> sharedSelf();

    /// Inside an exclusive pass: change the field and schedule the notice.
    void nonAtomicSetStatus(Status status);
    void nonAtomicSetProgress(double progress);

    /// Run on the main queue: call the delegate, then post the notification.
    void informsDidUpdateStatus();
    void informsDidUpdateError();
    void informsDidProgress();

    mutable AtomicPropertyQueue atomic_;
    std::weak_ptr<AbstractTaskDelegate> nonAtomicDelegate_;
    std::vector<std::exception_ptr> nonAtomicErrors_;
    Status nonAtomicStatus_ = Status::pending;
    double nonAtomicProgress_ = 0;
    const Date creationDate_;
    const EngineOption engineOption_;
    /// Last, so that it is destroyed first and waits for its operations while the fields above
    /// are still alive.
    OperationQueue subprocessQueue_;
};

} // namespace corvane
