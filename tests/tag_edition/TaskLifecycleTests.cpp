#include "TaskTestsSupport.hpp"

#include "corvane/utilities/KitSettings.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <numeric>
#include <set>
#include <thread>

using namespace corvane;
using namespace corvane::testing;
using namespace std::chrono_literals;

namespace {

using Status = AbstractTask::Status;
using ::testing::DoubleNear;
using ::testing::ElementsAre;

const std::vector<std::string_view> taskNotes = {AbstractTask::didUpdateStatusNotification,
                                                 AbstractTask::didUpdateErrorNotification,
                                                 AbstractTask::didProgressNotification};
constexpr const char* statusNote = "AbstractTaskDidUpdateStatusNotification";
constexpr const char* errorNote = "AbstractTaskDidUpdateErrorNotification";
constexpr const char* progressNote = "AbstractTaskDidProgressNotification";

const void* senderOf(const std::shared_ptr<BlockTask>& task) {
    return static_cast<const AbstractTask*>(task.get());
}

// Logs the delegate calls, with the status and progress the task has when each call is made.
class RecordingDelegate : public AbstractTaskDelegate {
public:
    void taskDidUpdateStatus(const std::shared_ptr<AbstractTask>& task) override { log("status", task); }
    void taskDidUpdateError(const std::shared_ptr<AbstractTask>& task) override { log("error", task); }
    void taskDidProgress(const std::shared_ptr<AbstractTask>& task) override { log("progress", task); }

    std::vector<std::string> calls;
    std::set<const AbstractTask*> tasks;
    int offMain = 0;

private:
    void log(const char* what, const std::shared_ptr<AbstractTask>& task) {
        if (!MainQueue::shared().isMainThread()) ++offMain;
        calls.push_back(what);
        tasks.insert(task.get());
    }
};

class TaskLifecycleTest : public ::testing::Test {
protected:
    void SetUp() override { drainMainQueue(); }
    void TearDown() override { drainMainQueue(); }
};

} // namespace

TEST_F(TaskLifecycleTest, PerformPostsEveryNoticeOnTheMainQueueInTheOrderOfTheChanges) {
    auto task = BlockTask::make([](BlockTask& t) {
        t.setProgress(0.5);
        t.failable([] { throw TaskError(TestTaskError::workFailed); });
    });
    auto delegate = std::make_shared<RecordingDelegate>();
    task->setDelegate(delegate);
    NoteRecorder recorder(taskNotes, senderOf(task));
    task->perform();

    // Nothing is delivered on the calling thread: every notice waits for the main queue.
    EXPECT_TRUE(recorder.notes.empty());
    EXPECT_TRUE(delegate->calls.empty());
    drainMainQueue();

    const std::vector<std::string> expected = {statusNote, progressNote, progressNote,
                                               errorNote,  statusNote,   progressNote};
    EXPECT_EQ(recorder.names(), expected);
    EXPECT_EQ(delegate->calls,
              (std::vector<std::string>{"status", "progress", "progress", "error", "status", "progress"}));
    EXPECT_EQ(recorder.offMain, 0);
    EXPECT_EQ(delegate->offMain, 0);
    EXPECT_EQ(delegate->tasks, std::set<const AbstractTask*>{task.get()});
    for (const auto& note : recorder.notes)
        EXPECT_EQ(note.object<AbstractTask>().get(), task.get());
    EXPECT_EQ(task->errorsDescription(), "1 error");
}

// Pending notices keep the task alive until delivered; the delegate is held weakly.
TEST_F(TaskLifecycleTest, NoticesHoldTheTaskAndNothingHoldsTheDelegate) {
    std::weak_ptr<BlockTask> weak;
    {
        auto task = BlockTask::make([](BlockTask&) {});
        auto delegate = std::make_shared<RecordingDelegate>();
        task->setDelegate(delegate);
        delegate.reset();
        EXPECT_EQ(task->delegate(), nullptr);
        weak = task;
        task->perform();
    }
    EXPECT_FALSE(weak.expired());
    drainMainQueue();
    EXPECT_TRUE(weak.expired());
}

TEST_F(TaskLifecycleTest, CancelledPendingTaskNeverRuns) {
    std::atomic<int> runs{0};
    auto task = BlockTask::make([&](BlockTask&) { ++runs; });
    NoteRecorder recorder(taskNotes, senderOf(task));

    task->cancel();
    EXPECT_EQ(task->status(), Status::cancelled);
    task->perform();
    task->cancel();
    drainMainQueue();

    EXPECT_EQ(runs.load(), 0);
    EXPECT_EQ(task->taskDescription(), "Test Task (Cancelled)");
    EXPECT_EQ(task->progress(), 0.0);
    EXPECT_TRUE(task->errors().empty());
    // One status notice: the later calls change nothing.
    EXPECT_EQ(recorder.names(), std::vector<std::string>{statusNote});
}

TEST_F(TaskLifecycleTest, CancelOfRunningTaskDropsOnlyStepsNotBegun) {
    Gate stepsMayEnd, allAdded, cancelled;
    std::atomic<int> begun{0}, lateSteps{0};
    auto task = BlockTask::make([&](BlockTask& t) {
        // Eight steps fill the queue and hold it; those behind them can't begin before the cancel.
        for (int i = 0; i < AbstractTask::maxConcurrentSubprocesses; ++i)
            t.addSubprocess([&] {
                ++begun;
                stepsMayEnd.wait();
            });
        for (int i = 0; i < 10; ++i)
            t.addSubprocess([&] { ++lateSteps; });
        allAdded.open();
        cancelled.wait();
    });

    std::thread runner([&] { task->perform(); });
    // The cancel must come after every step is queued: a step added later is queued anew.
    EXPECT_TRUE(allAdded.wait());
    while (begun.load() < AbstractTask::maxConcurrentSubprocesses)
        std::this_thread::sleep_for(1ms);
    task->cancel();
    EXPECT_EQ(task->status(), Status::processing);
    cancelled.open();
    stepsMayEnd.open();
    runner.join();

    EXPECT_EQ(lateSteps.load(), 0);
    EXPECT_EQ(task->status(), Status::completed);
    EXPECT_EQ(task->progress(), 1.0);
    EXPECT_TRUE(task->errors().empty());
}

TEST_F(TaskLifecycleTest, SecondPerformReturnsAtOnceDuringAndAfterTheFirst) {
    Gate started, release;
    std::atomic<int> runs{0};
    auto task = BlockTask::make([&](BlockTask&) {
        ++runs;
        started.open();
        release.wait();
    });
    NoteRecorder recorder(taskNotes, senderOf(task));

    std::thread first([&] { task->perform(); });
    ASSERT_TRUE(started.wait());
    task->perform(); // would block on the gate if it ran the work again
    EXPECT_EQ(task->taskDescription(), "Test Task (Processing)");
    release.open();
    first.join();
    task->perform();
    drainMainQueue();

    EXPECT_EQ(runs.load(), 1);
    EXPECT_EQ(task->status(), Status::completed);
    EXPECT_EQ(recorder.names(),
              (std::vector<std::string>{statusNote, progressNote, statusNote, progressNote}));
}

// Errors of every kind are kept in order of arrival; a block that succeeds adds none; a second
// perform and a late cancel leave the completed task as it is. Progress starts at 0 when the work
// starts and stays between 0 and 1.
TEST_F(TaskLifecycleTest, FailedWorkEndsCompletedWithItsErrorsInOrder) {
    std::vector<double> seenInWork;
    auto task = BlockTask::make([&](BlockTask& t) {
        seenInWork.push_back(t.progress());
        for (int i = 0; i < 3; ++i)
            t.incrementProgress(1.0 / 3);
        seenInWork.push_back(t.progress());
        t.incrementProgress(0.5);
        seenInWork.push_back(t.progress());
        t.setProgress(-2);
        seenInWork.push_back(t.progress());
        t.failable([] { throw TaskError(TestTaskError::stepFailed); });
        t.failable([] {});
        t.failable([] { throw std::runtime_error("Disk is full"); });
        throw 42; // not a std::exception
    });
    task->setProgress(0.7);
    EXPECT_TRUE(task->isProgressIndeterminate());
    EXPECT_EQ(task->longDescription(), "Test Task (Pending)\nNo errors");
    EXPECT_EQ(task->errorListDescription(), "- No errors");
    task->perform();
    task->perform();
    task->cancel();

    EXPECT_EQ(task->status(), Status::completed);
    EXPECT_THAT(seenInWork, ElementsAre(0.0, DoubleNear(1.0, 1e-12), 1.0, 0.0));
    EXPECT_EQ(task->progress(), 1.0);
    const auto errors = task->errors();
    ASSERT_EQ(errors.size(), 3u);
    EXPECT_EQ(AbstractTask::processError<TestTaskError>(errors[0]), TestTaskError::stepFailed);
    EXPECT_EQ(AbstractTask::processError<Status>(errors[0]), std::nullopt);
    EXPECT_EQ(task->errorsDescription(), "3 errors");
    EXPECT_EQ(task->errorListDescription(), "- Step failed\n- Disk is full\n- Unknown error");
    EXPECT_EQ(task->longDescription(), "Test Task (Completed)\n3 errors");
}

TEST_F(TaskLifecycleTest, SubprocessesRunAtMostEightAtATime) {
    std::atomic<int> running{0}, widest{0};
    std::vector<int> elements(3 * AbstractTask::maxConcurrentSubprocesses);
    std::iota(elements.begin(), elements.end(), 0);
    std::mutex seenMutex;
    std::multiset<int> seen;

    auto task = BlockTask::make([&](BlockTask& t) {
        t.mapSubprocess(elements, [&](int element) {
            const int now = ++running;
            int before = widest.load();
            while (now > before && !widest.compare_exchange_weak(before, now)) {
            }
            // Stay until the queue is full (or a while has passed), so that the width is reached.
            const auto deadline = std::chrono::steady_clock::now() + 5s;
            while (widest.load() < AbstractTask::maxConcurrentSubprocesses &&
                   std::chrono::steady_clock::now() < deadline)
                std::this_thread::sleep_for(1ms);
            {
                std::lock_guard lock(seenMutex);
                seen.insert(element);
            }
            --running;
        });
    });
    task->perform();

    EXPECT_EQ(widest.load(), AbstractTask::maxConcurrentSubprocesses);
    EXPECT_EQ(seen, std::multiset<int>(elements.begin(), elements.end()));
}

TEST_F(TaskLifecycleTest, FailuresOfStepsAreCollectedBeforeTheEndAndNoneIsLost) {
    constexpr int steps = 64;
    std::vector<int> elements(steps);
    std::iota(elements.begin(), elements.end(), 0);
    Gate workReturned;
    auto task = BlockTask::make([&](BlockTask& t) {
        // Every step fails, many of them at the same moment, and only once the work has returned.
        t.mapSubprocess(elements, [&](int) {
            workReturned.wait();
            throw TaskError(TestTaskError::stepFailed);
        });
        t.mapSubprocess(std::vector<int>{}, [](int) { throw TaskError(TestTaskError::stepFailed); });
    });
    std::thread opener([&] {
        while (task->subprocessQueue().operationCount() < static_cast<std::size_t>(steps))
            std::this_thread::sleep_for(1ms);
        workReturned.open();
    });
    task->perform();
    opener.join();

    EXPECT_EQ(task->errors().size(), static_cast<std::size_t>(steps));
    EXPECT_EQ(task->status(), Status::completed);
}

TEST_F(TaskLifecycleTest, EngineOptionIsTakenAtConstructionAndKept) {
    auto& settings = KitSettings::shared();
    const auto saved = settings.engineOption();
    settings.setEngineOption(EngineOption::coreImage());
    auto task = BlockTask::make([](BlockTask&) {});
    settings.setEngineOption(EngineOption::all());
    EXPECT_EQ(task->engineOption(), EngineOption::coreImage());
    settings.setEngineOption(saved);
}

namespace {

class TaskWithoutWork : public AbstractTask {
public:
    std::string title() const override { return "Without Work"; }
};

class TaskWithoutTitle : public AbstractTask {
protected:
    void internProcess() override {}
};

} // namespace

TEST_F(TaskLifecycleTest, MissingOverridesStopTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(std::make_shared<TaskWithoutWork>()->perform(),
                 "SHOULD BE IMPLEMENTED BY SUBCLASS internProcess\\(\\)");
    EXPECT_DEATH(std::make_shared<TaskWithoutTitle>()->taskDescription(),
                 "SHOULD BE IMPLEMENTED BY SUBCLASS title");
}
