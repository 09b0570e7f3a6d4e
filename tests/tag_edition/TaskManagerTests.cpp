#include "TaskTestsSupport.hpp"

#include "corvane/tag_edition/TaskManager.hpp"

#include <gtest/gtest.h>

#include <atomic>

using namespace corvane;
using namespace corvane::testing;
using namespace std::chrono_literals;

namespace {

using Priority = AbstractTask::Priority;
using Status = AbstractTask::Status;

const std::vector<std::string_view> managerNotes = {TaskManager::didAddTaskNotification,
                                                    TaskManager::didRemoveTaskNotification};

class RecordingManagerDelegate : public TaskManagerDelegate {
public:
    void taskManagerDidAdd(const std::shared_ptr<AbstractTask>& task) override { log("add", task); }
    void taskManagerDidRemove(const std::shared_ptr<AbstractTask>& task) override { log("remove", task); }

    std::vector<std::pair<std::string, AbstractTask*>> calls;
    int offMain = 0;

private:
    void log(const char* what, const std::shared_ptr<AbstractTask>& task) {
        if (!MainQueue::shared().isMainThread()) ++offMain;
        calls.emplace_back(what, task.get());
    }
};

std::vector<AbstractTask*> identities(const std::vector<std::shared_ptr<AbstractTask>>& tasks) {
    std::vector<AbstractTask*> result;
    for (const auto& task : tasks)
        result.push_back(task.get());
    return result;
}

class TaskManagerTest : public ::testing::Test {
protected:
    void SetUp() override {
        manager.waitAllTasks();
        drainMainQueue();
    }
    void TearDown() override {
        manager.setDelegate({});
        manager.waitAllTasks();
        drainMainQueue();
    }

    TaskManager& manager = TaskManager::shared();
};

} // namespace

// Each priority runs on its own serial queue: a task waits for its queue while the other queues go
// on. waitAllTasks returns at once when nothing is queued and otherwise only when every queue is
// done. A task added twice is listed twice, runs once and leaves twice.
TEST_F(TaskManagerTest, TaskWaitsForItsQueueWhileOtherQueuesGoOn) {
    const auto start = std::chrono::steady_clock::now();
    manager.waitAllTasks();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);

    std::atomic<int> onOwnQueue{0};
    const auto onQueue = [&](Priority priority) {
        if (manager.queue(priority).isCurrentQueue()) ++onOwnQueue;
    };
    Gate started, release;
    auto blocking = BlockTask::make(
        [&](BlockTask&) {
            onQueue(Priority::reading);
            started.open();
            release.wait();
        },
        Priority::reading);
    std::atomic<int> waitingRuns{0};
    auto waiting = BlockTask::make([&](BlockTask&) { ++waitingRuns; }, Priority::reading);
    auto edition = BlockTask::make([&](BlockTask&) { onQueue(Priority::edition); }, Priority::edition);
    auto writing = BlockTask::make([&](BlockTask&) { onQueue(Priority::writing); }, Priority::writing);

    manager.add(blocking);
    ASSERT_TRUE(started.wait());
    manager.add(waiting);
    manager.add(waiting);
    manager.add(edition);
    manager.add(writing);

    // The edition and the write finish while the read still holds its queue.
    EXPECT_TRUE(MainQueue::shared().runUntil(
        [&] { return !manager.hasEditingTasks() && !manager.hasWritingTasks(); }, 10s));
    EXPECT_EQ(edition->status(), Status::completed);
    EXPECT_EQ(writing->status(), Status::completed);
    EXPECT_EQ(waiting->status(), Status::pending);
    EXPECT_EQ(waitingRuns.load(), 0);
    EXPECT_TRUE(manager.hasReadingTasks());
    EXPECT_TRUE(manager.isRunning());
    EXPECT_EQ(identities(manager.tasks()),
              (std::vector<AbstractTask*>{blocking.get(), waiting.get(), waiting.get()}));

    release.open();
    manager.waitAllTasks();
    EXPECT_EQ(waitingRuns.load(), 1);
    EXPECT_EQ(waiting->status(), Status::completed);
    EXPECT_EQ(onOwnQueue.load(), 3);
    EXPECT_TRUE(manager.tasks().empty());
    EXPECT_FALSE(manager.hasReadingTasks());
    EXPECT_FALSE(manager.isRunning());
}

TEST_F(TaskManagerTest, AddAndRemoveAreAnnouncedOnTheMainQueue) {
    auto delegate = std::make_shared<RecordingManagerDelegate>();
    manager.setDelegate(delegate);
    NoteRecorder recorder(managerNotes, &manager);

    // The first task waits until both are added, so that the order of the notices is known.
    Gate bothAdded;
    auto ok = BlockTask::make([&](BlockTask&) { bothAdded.wait(); });
    // A task that fails in all its work leaves like any other.
    auto failing = BlockTask::make([](BlockTask&) { throw TaskError(TestTaskError::workFailed); });
    manager.add(ok);
    manager.add(failing);
    bothAdded.open();
    manager.waitAllTasks();
    EXPECT_TRUE(recorder.notes.empty());
    drainMainQueue();

    EXPECT_EQ(recorder.offMain, 0);
    EXPECT_EQ(delegate->offMain, 0);
    // The delegate hears what the notifications say, in the same order.
    std::vector<std::pair<std::string, AbstractTask*>> announced;
    for (const auto& note : recorder.notes)
        announced.emplace_back(note.name() == TaskManager::didAddTaskNotification ? "add" : "remove",
                               TaskManager::task(note).get());
    const decltype(announced) expected{
        {"add", ok.get()}, {"add", failing.get()}, {"remove", ok.get()}, {"remove", failing.get()}};
    EXPECT_EQ(announced, expected);
    EXPECT_EQ(delegate->calls, expected);
    EXPECT_EQ(TaskManager::task(Notification("Other", &manager)), nullptr);
    EXPECT_EQ(TaskManager::task(Notification("Other", &manager, {{"Task", std::string("not a task")}})),
              nullptr);
}

// What a cancel does to the steps of a running task is the task's own test.
TEST_F(TaskManagerTest, CancelAllTasksEndsOnlyTasksNotBegun) {
    Gate started, release;
    auto running = BlockTask::make(
        [&](BlockTask&) {
            started.open();
            release.wait();
        },
        Priority::reading);
    std::atomic<bool> queuedRan{false};
    auto queued = BlockTask::make([&](BlockTask&) { queuedRan = true; }, Priority::reading);
    NoteRecorder recorder(managerNotes, &manager);

    manager.add(running);
    ASSERT_TRUE(started.wait());
    manager.add(queued);
    manager.cancelAllTasks();
    EXPECT_EQ(running->status(), Status::processing);
    EXPECT_EQ(queued->status(), Status::cancelled);

    release.open();
    manager.waitAllTasks();
    drainMainQueue();
    EXPECT_FALSE(queuedRan.load());
    EXPECT_EQ(running->status(), Status::completed);
    EXPECT_EQ(queued->status(), Status::cancelled);
    // The cancelled task still passes through its queue and is announced removed.
    EXPECT_TRUE(manager.tasks().empty());
    EXPECT_EQ(recorder.names(), (std::vector<std::string>{"TasksManagerDidAddTaskNotification",
                                                          "TasksManagerDidAddTaskNotification",
                                                          "TasksManagerDidRemoveTaskNotification",
                                                          "TasksManagerDidRemoveTaskNotification"}));
}
