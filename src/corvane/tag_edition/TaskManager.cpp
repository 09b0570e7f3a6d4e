#include "corvane/tag_edition/TaskManager.hpp"

#include "corvane/helpers/NotificationCenter.hpp"

#include <algorithm>
#include <any>
#include <string>

namespace corvane {

namespace {

std::unique_ptr<OperationQueue> makeSerialQueue(const char* name) {
    return std::make_unique<OperationQueue>(name, 1);
}

} // namespace

TaskManager& TaskManager::shared() {
    // Never destroyed: tasks may still be queued when the process ends.
    static TaskManager* const instance = new TaskManager();
    return *instance;
}

std::shared_ptr<TaskManagerDelegate> TaskManager::delegate() const {
    return atomic_.read([&] { return nonAtomicDelegate_.lock(); });
}

void TaskManager::setDelegate(std::weak_ptr<TaskManagerDelegate> delegate) {
    atomic_.write([&] { nonAtomicDelegate_ = std::move(delegate); });
}

std::vector<std::shared_ptr<AbstractTask>> TaskManager::tasks() const {
    return atomic_.read([&] { return nonAtomicTasks_; });
}

OperationQueue& TaskManager::editionTasksQueue() {
    std::call_once(editionOnce_,
                   [this] { editionTasksQueue_ = makeSerialQueue("Corvane.TaskManager.editionTasksQueue"); });
    return *editionTasksQueue_;
}

OperationQueue& TaskManager::readingTasksQueue() {
    std::call_once(readingOnce_,
                   [this] { readingTasksQueue_ = makeSerialQueue("Corvane.TaskManager.readingTasksQueue"); });
    return *readingTasksQueue_;
}

OperationQueue& TaskManager::writingTasksQueue() {
    std::call_once(writingOnce_,
                   [this] { writingTasksQueue_ = makeSerialQueue("Corvane.TaskManager.writingTasksQueue"); });
    return *writingTasksQueue_;
}

OperationQueue& TaskManager::queue(AbstractTask::Priority priority) {
    switch (priority) {
    case AbstractTask::Priority::edition:
        return editionTasksQueue();
    case AbstractTask::Priority::reading:
        return readingTasksQueue();
    case AbstractTask::Priority::writing:
        break;
    }
    return writingTasksQueue();
}

bool TaskManager::isRunning() const {
    return atomic_.read([&] { return !nonAtomicTasks_.empty(); });
}

bool TaskManager::hasTasks(AbstractTask::Priority priority) const {
    // Priorities are asked outside the pass: they are the tasks' own code.
    const auto list = tasks();
    return std::any_of(list.begin(), list.end(),
                       [&](const auto& task) { return task->priority() == priority; });
}

bool TaskManager::hasEditingTasks() const {
    return hasTasks(AbstractTask::Priority::edition);
}

bool TaskManager::hasReadingTasks() const {
    return hasTasks(AbstractTask::Priority::reading);
}

bool TaskManager::hasWritingTasks() const {
    return hasTasks(AbstractTask::Priority::writing);
}

void TaskManager::add(const std::shared_ptr<AbstractTask>& task) {
    if (!task) return;
    OperationQueue& target = queue(task->priority());
    // The operation is queued inside the pass, so that the order of `tasks()` is the order in
    // which the queues take the tasks.
    atomic_.write([&] {
        nonAtomicTasks_.push_back(task);
        AtomicPropertyQueue::mainAsync([this, task] { informsDidAdd(task); });
        target.addOperation([this, task] {
            task->perform();
            atomic_.write([&] {
                auto it = std::find(nonAtomicTasks_.begin(), nonAtomicTasks_.end(), task);
                if (it != nonAtomicTasks_.end()) nonAtomicTasks_.erase(it);
            });
            AtomicPropertyQueue::mainAsync([this, task] { informsDidRemove(task); });
        });
    });
}

void TaskManager::cancelAllTasks() {
    // The task's own cancel: it ends only a task that hasn't begun.
    for (const auto& task : tasks())
        task->cancel();
}

void TaskManager::waitAllTasks() {
    editionTasksQueue().waitUntilAllOperationsAreFinished();
    readingTasksQueue().waitUntilAllOperationsAreFinished();
    writingTasksQueue().waitUntilAllOperationsAreFinished();
}

std::shared_ptr<AbstractTask> TaskManager::task(const Notification& note) {
    if (auto task = note.userInfoValue<std::shared_ptr<AbstractTask>>(std::string(taskKey))) return *task;
    return nullptr;
}

void TaskManager::informsDidAdd(const std::shared_ptr<AbstractTask>& task) {
    if (auto observer = delegate()) observer->taskManagerDidAdd(task);
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didAddTaskNotification), this, {{std::string(taskKey), std::any(task)}}));
}

void TaskManager::informsDidRemove(const std::shared_ptr<AbstractTask>& task) {
    if (auto observer = delegate()) observer->taskManagerDidRemove(task);
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didRemoveTaskNotification), this, {{std::string(taskKey), std::any(task)}}));
}

} // namespace corvane
