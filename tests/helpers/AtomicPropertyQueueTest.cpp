#include "corvane/helpers/AtomicPropertyQueue.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

using namespace corvane;
using namespace std::chrono_literals;

namespace {

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

} // namespace
