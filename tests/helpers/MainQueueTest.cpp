#include "corvane/helpers/MainQueue.hpp"
#include "corvane/helpers/AtomicPropertyQueue.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace corvane;
using namespace std::chrono_literals;

namespace {

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
