#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/OperationQueue.hpp"
#include "corvane/helpers/SingleOperationQueue.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <future>
#include <mutex>
#include <numeric>
#include <set>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace corvane;
using namespace std::chrono_literals;

namespace {

// A gate the test opens; operations wait on it.
class Gate {
public:
    void wait() { opened_.wait(); }
    void open() { promise_.set_value(); }

private:
    std::promise<void> promise_;
    std::shared_future<void> opened_ = promise_.get_future().share();
};

TEST(OperationQueueTest, NeverRunsMoreThanItsWidthNorMakesMoreThreads) {
    OperationQueue queue("width", 2);
    std::mutex mutex; // guards the four below
    int running = 0, maxRunning = 0, done = 0;
    std::set<std::thread::id> threadIds;
    for (int i = 0; i < 8; ++i)
        queue.addOperation([&] {
            {
                std::lock_guard lock(mutex);
                maxRunning = std::max(maxRunning, ++running);
                threadIds.insert(std::this_thread::get_id());
            }
            std::this_thread::sleep_for(5ms);
            std::lock_guard lock(mutex);
            --running;
            ++done;
        });
    queue.waitUntilAllOperationsAreFinished();
    std::lock_guard lock(mutex);
    EXPECT_EQ(done, 8);
    EXPECT_EQ(maxRunning, 2);
    EXPECT_LE(threadIds.size(), 2u);
    EXPECT_EQ(queue.operationCount(), 0u);
}

TEST(OperationQueueTest, CancelAllOperationsDropsOnlyWhatHasNotBegun) {
    OperationQueue queue("cancel", 1);
    Gate gate, started;
    std::atomic<int> ran{0}, completions{0};
    auto first = queue.addOperation([&] {
        started.open();
        gate.wait();
        ++ran;
    });
    first->setCompletionBlock([&] { ++completions; });
    std::vector<OperationRef> later;
    for (int i = 0; i < 3; ++i) {
        auto op = std::make_shared<Operation>([&] { ++ran; });
        op->setCompletionBlock([&] { ++completions; });
        queue.addOperation(op);
        later.push_back(op);
    }
    started.wait();
    EXPECT_TRUE(first->isExecuting());
    queue.cancelAllOperations();
    // Not-begun operations are finished at once, without running.
    for (const auto& op : later) {
        EXPECT_TRUE(op->isCancelled());
        EXPECT_TRUE(op->isFinished());
    }
    // The running one only learns it was cancelled.
    EXPECT_TRUE(first->isCancelled());
    EXPECT_FALSE(first->isFinished());
    // One added afterwards and cancelled on its own, while it waits, never runs either.
    auto alone = queue.addOperation([&] { ++ran; });
    alone->cancel();
    gate.open();
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(ran.load(), 1);
    EXPECT_TRUE(first->isFinished() && alone->isFinished());
    EXPECT_EQ(completions.load(), 4);
}

TEST(OperationQueueTest, RejectsMisuse) {
    OperationQueue queue("misuse", 2);
    auto op = queue.addOperation([] {});
    EXPECT_THROW(queue.addOperation(op), std::invalid_argument);
    std::atomic<bool> ran{false};
    queue.addOperation([&] {
        EXPECT_THROW(queue.waitUntilAllOperationsAreFinished(), std::logic_error);
        ran = true;
    });
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_TRUE(ran.load());
}

TEST(OperationQueueTest, SuspendedQueueStartsNothingAndDestructionWaitsForQueuedWork) {
    OperationQueue queue("suspend", 2);
    queue.setSuspended(true);
    std::atomic<int> ran{0};
    for (int i = 0; i < 3; ++i)
        queue.addOperation([&] { ++ran; });
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(ran.load(), 0);
    EXPECT_EQ(queue.operationCount(), 3u);
    queue.setSuspended(false);
    queue.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(ran.load(), 3);
    std::atomic<int> finished{0};
    {
        OperationQueue queue("destroy", 3);
        for (int i = 0; i < 10; ++i)
            queue.addOperation([&] {
                std::this_thread::sleep_for(1ms);
                ++finished;
            });
    }
    EXPECT_EQ(finished.load(), 10);
}

TEST(OperationQueueTest, DestructionFromItsOwnOperationLetsTheRestFinish) {
    std::atomic<int> ran{0};
    std::promise<void> added, lastRan;
    auto queue = std::make_unique<OperationQueue>("self-destroy", 1);
    queue->addOperation([&, whenAdded = added.get_future().share()] {
        whenAdded.wait();
        queue.reset();
    });
    for (int i = 0; i < 5; ++i)
        queue->addOperation([&] {
            if (++ran == 5) lastRan.set_value();
        });
    added.set_value();
    ASSERT_EQ(lastRan.get_future().wait_for(10s), std::future_status::ready);
    EXPECT_EQ(queue, nullptr);
    // The threads end by themselves just after; give them the time to, so that a fault in their
    // ending shows in this test.
    std::this_thread::sleep_for(50ms);
}

// A thread that had no work for a while ends on its own (detached, so that an idle program keeps
// no finished thread unjoined); the next work gets a new thread, and the queue still goes cleanly.
TEST(OperationQueueTest, AThreadIdleTooLongEndsAndLaterWorkGetsANewOne) {
    std::vector<int> runsOnTheirThread; // thread ids can be reused: a thread-local count can't
    {
        OperationQueue queue("idle", 1);
        auto record = [&] {
            thread_local int runs = 0;
            runsOnTheirThread.push_back(++runs);
        };
        queue.addOperation(record);
        queue.waitUntilAllOperationsAreFinished();
        std::this_thread::sleep_for(2500ms); // longer than a thread stays idle
        queue.addOperation(record);
        queue.waitUntilAllOperationsAreFinished();
    }
    EXPECT_THAT(runsOnTheirThread, testing::ElementsAre(1, 1));
}

TEST(SingleOperationQueueTest, RunsOneAtATimeInOrder) {
    SingleOperationQueue single;
    std::vector<int> order; // only touched by the queue's operations, one at a time
    std::atomic<int> running{0};
    std::atomic<bool> overlapped{false};
    for (int i = 0; i < 20; ++i)
        single.addOperation([&, i] {
            if (++running > 1) overlapped = true;
            order.push_back(i);
            --running;
        });
    single.waitUntilAllOperationsAreFinished();
    EXPECT_FALSE(overlapped.load());
    std::vector<int> expected(20);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(order, expected);
}

TEST(SingleOperationQueueTest, ReplacementCancelsPendingButNotRunningWork) {
    SingleOperationQueue single;
    Gate gate, started;
    std::vector<int> ran; // only touched by the queue's operations
    single.addOperation([&] {
        started.open();
        gate.wait();
        ran.push_back(0);
    });
    started.wait();
    auto pending1 = single.addOperation([&] { ran.push_back(1); });
    auto pending2 = single.addOperation([&] { ran.push_back(2); });
    auto newest = single.replacePendingOperations([&] { ran.push_back(3); });
    EXPECT_TRUE(pending1->isCancelled());
    EXPECT_TRUE(pending2->isCancelled());
    EXPECT_FALSE(newest->isCancelled());
    gate.open();
    single.waitUntilAllOperationsAreFinished();
    EXPECT_EQ(ran, (std::vector<int>{0, 3}));
}

TEST(ConcurrentPerformTest, RunsEveryIterationOnceRethrowsAndMapsInInputOrder) {
    constexpr std::size_t n = 1000;
    std::vector<std::atomic<int>> hits(n);
    concurrentPerform(n, [&](std::size_t i) { ++hits[i]; });
    for (auto& h : hits)
        EXPECT_EQ(h.load(), 1);
    concurrentPerform(0, [](std::size_t) { FAIL(); });

    std::atomic<int> ran{0};
    EXPECT_THROW(concurrentPerform(50,
                                   [&](std::size_t i) {
                                       ++ran;
                                       if (i == 7) throw std::runtime_error("seven");
                                   }),
                 std::runtime_error);
    EXPECT_EQ(ran.load(), 50); // the other iterations still ran
    std::vector<int> input(500);
    std::iota(input.begin(), input.end(), 0);
    EXPECT_EQ(parallelMap(input, [](int x) { return x; }), input) << "in input order";
    auto evens =
        parallelCompactMap(input, [](int x) { return x % 2 ? std::nullopt : std::optional<int>(x); });
    EXPECT_EQ(evens.size(), 250u);
    EXPECT_EQ(evens[1], 2);
    auto mods = parallelMapToSet(input, [](int x) { return x % 3; });
    EXPECT_EQ(mods, (std::set<int>{0, 1, 2}));
}

// Loops share the kept worker threads: loops started from several threads at once, each running
// loops of its own, all end with every iteration run once; and a loop's iterations do run side by
// side (each of two waits, with a deadline, for the other to start).
TEST(ConcurrentPerformTest, NestedLoopsFromSeveralThreadsEndAndRunSideBySide) {
    std::atomic<int> total{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([&] {
            for (int round = 0; round < 50; ++round)
                concurrentPerform(4,
                                  [&](std::size_t) { concurrentPerform(3, [&](std::size_t) { ++total; }); });
        });
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(total.load(), 8 * 50 * 4 * 3);

    if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "one core: nothing runs side by side";
    std::mutex mutex;
    std::condition_variable started;
    int running = 0;
    bool together = true;
    concurrentPerform(2, [&](std::size_t) {
        std::unique_lock lock(mutex);
        ++running;
        started.notify_all();
        together &= started.wait_for(lock, std::chrono::seconds(10), [&] { return running == 2; });
    });
    EXPECT_TRUE(together);
}

TEST(AtomicPropertyQueueTest, ReadsOverlapWritesStandAloneAndOwnersNest) {
    AtomicPropertyQueue atomic;
    // Two readers inside at once: each waits (bounded) for the other.
    std::atomic<int> inside{0};
    std::atomic<bool> overlapped{false};
    auto reader = [&] {
        atomic.read([&] {
            ++inside;
            const auto until = std::chrono::steady_clock::now() + 2s;
            while (inside.load() < 2 && std::chrono::steady_clock::now() < until)
                std::this_thread::yield();
            if (inside.load() == 2) overlapped = true;
        });
    };
    std::thread a(reader), b(reader);
    a.join();
    b.join();
    EXPECT_TRUE(overlapped.load());

    // Unsynchronised counter, only touched in passes: exact under contention.
    long counter = 0;
    long observedMax = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                atomic.write([&] { ++counter; });
                const long seen = atomic.read([&] { return counter; });
                atomic.write([&] { observedMax = std::max(observedMax, seen); });
            }
        });
    for (auto& t : threads)
        t.join();
    EXPECT_EQ(counter, 8000);
    EXPECT_EQ(observedMax, 8000);
    AtomicPropertyQueue outer, inner;
    const int value = outer.write([&] { return inner.read([] { return 7; }); });
    EXPECT_EQ(value, 7);
}

#ifndef NDEBUG
TEST(AtomicPropertyQueueDeathTest, ReentrantPassStopsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    AtomicPropertyQueue atomic;
    EXPECT_TRUE(atomic.read([&] { return atomic.isInPassOnCurrentThread(); }));
    EXPECT_DEATH(atomic.read([&] { atomic.read([] {}); }), "re-entrant pass");
}
#endif

class MainQueueTest : public ::testing::Test {
protected:
    void SetUp() override {
        MainQueue::shared().registerCurrentThreadAsMain();
        MainQueue::shared().drain();
    }
};

TEST_F(MainQueueTest, KeepsEachThreadsOrderNeverRunsInlineAndRunsJobsPostedByJobs) {
    constexpr int perThread = 200;
    std::vector<std::pair<int, int>> seen; // touched on the main thread only
    std::vector<std::thread> posters;
    for (int t = 0; t < 3; ++t)
        posters.emplace_back([&seen, t] {
            for (int i = 0; i < perThread; ++i)
                mainAsync([&seen, t, i] { seen.emplace_back(t, i); });
        });
    for (auto& p : posters)
        p.join();
    // Posting from the main thread itself is still asynchronous, through either entry.
    mainAsync([&seen] { seen.emplace_back(3, 0); });
    AtomicPropertyQueue::mainAsync([&seen] { seen.emplace_back(3, 1); });
    EXPECT_TRUE(seen.empty());
    bool nestedRan = false;
    mainAsync([&] { mainAsync([&] { nestedRan = true; }); });
    EXPECT_EQ(MainQueue::shared().drain(), 3u * perThread + 4);
    ASSERT_EQ(seen.size(), 3u * perThread + 2);
    int next[4] = {0, 0, 0, 0};
    for (auto [t, i] : seen)
        EXPECT_EQ(i, next[t]++);
    EXPECT_TRUE(nestedRan);
}

TEST_F(MainQueueTest, SafeSyncInMainRunsInlineOnTheMainThreadAndElsewhereWaitsForItAndRethrows) {
    std::atomic<bool> returned{false};
    std::thread::id ranOn;
    int result = 0;
    std::thread worker([&] {
        result = safeSyncInMain([&] {
            ranOn = std::this_thread::get_id();
            return 42;
        });
        EXPECT_THAT([] { safeSyncInMain([]() -> int { throw std::runtime_error("boom"); }); },
                    testing::ThrowsMessage<std::runtime_error>(testing::StrEq("boom")));
        returned = true;
    });
    // Nothing runs until the main thread drains.
    std::this_thread::sleep_for(20ms);
    EXPECT_FALSE(returned.load());
    EXPECT_TRUE(MainQueue::shared().runUntil([&] { return returned.load(); }, 5s));
    worker.join();
    EXPECT_EQ(result, 42);
    EXPECT_EQ(ranOn, std::this_thread::get_id());
    // On the main thread itself it runs at once.
    int value = 0;
    EXPECT_EQ(safeSyncInMain([&] { return ++value; }), 1);
    EXPECT_EQ(MainQueue::shared().pendingCount(), 0u);
}

TEST_F(MainQueueTest, OnlyTheMainThreadDrainsWakesOnEveryPostAndWaitsForLateJobs) {
    EXPECT_TRUE(isMainThread());
    std::thread([&] {
        EXPECT_FALSE(isMainThread());
        EXPECT_THROW(MainQueue::shared().drain(), std::logic_error);
    }).join();
    std::atomic<int> wakes{0};
    MainQueue::shared().setWakeHook([&] { ++wakes; });
    std::thread([] { mainAsync([] {}); }).join();
    mainAsync([] {});
    MainQueue::shared().setWakeHook(nullptr);
    EXPECT_EQ(wakes.load(), 2);
    MainQueue::shared().drain();
    bool ran = false;
    std::thread poster([&] {
        std::this_thread::sleep_for(10ms);
        mainAsync([&] { ran = true; });
    });
    MainQueue::shared().drainFor(300ms);
    poster.join();
    EXPECT_TRUE(ran);
}

} // namespace
