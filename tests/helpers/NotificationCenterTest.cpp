#include "corvane/helpers/NotificationCenter.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <optional>
#include <thread>
#include <vector>

using namespace corvane;
using namespace std::chrono_literals;

namespace {

TEST(NotificationCenterTest, DeliversByNameAndSenderInOrderWithObjectAndUserInfo) {
    NotificationCenter center;
    int senderA = 0, senderB = 0;
    std::vector<std::string> calls;
    auto any = center.subscribe("", [&](const Notification& n) { calls.push_back("any:" + n.name()); });
    auto named = center.subscribe("Ping", [&](const Notification&) { calls.push_back("named"); });
    auto fromA = center.subscribe("Ping", &senderA, [&](const Notification&) { calls.push_back("fromA"); });
    center.post("Ping", &senderA);
    center.post("Ping", &senderB);
    center.post("Other");
    EXPECT_EQ(calls,
              (std::vector<std::string>{"any:Ping", "named", "fromA", "any:Ping", "named", "any:Other"}));
    EXPECT_EQ(center.observerCount(), 3u);
    // A shared object is the sender, and comes back only as its own type.
    auto object = std::make_shared<std::string>("task");
    const Notification info("Info", object, {{"Count", 3}});
    EXPECT_EQ(info.sender(), object.get());
    EXPECT_EQ(info.object<std::string>(), object);
    EXPECT_EQ(info.object<int>(), nullptr);
    EXPECT_NE(info.object<const std::string>(), nullptr);
    EXPECT_THAT(info.userInfoValue<int>("Count"), testing::Pointee(3));
    EXPECT_EQ(info.userInfoValue<std::string>("Count"), nullptr);
    EXPECT_FALSE(info.hasUserInfo("Missing"));
}

TEST(NotificationCenterTest, SubscriptionEndsWithItsSubscriberOrDuringAPost) {
    NotificationCenter center;
    int count = 0;
    {
        auto subscriber = center.subscribe("Tick", [&](const Notification&) { ++count; });
        EXPECT_TRUE(subscriber.isActive());
        center.post("Tick");
        NoteSubscriber moved = std::move(subscriber);
        center.post("Tick");
        EXPECT_FALSE(subscriber.isActive());
    }
    center.post("Tick");
    EXPECT_EQ(count, 2);
    EXPECT_EQ(center.observerCount(), 0u);

    // A subscriber that outlives its centre is harmless.
    std::optional<NoteSubscriber> survivor;
    {
        NotificationCenter shortLived;
        survivor = shortLived.subscribe("X", [](const Notification&) {});
    }
    EXPECT_FALSE(survivor->isActive());
    survivor.reset();
    std::vector<std::string> calls;
    NoteSubscriber first, second, third;
    first = center.subscribe("Go", [&](const Notification&) {
        calls.push_back("first");
        first.cancel(); // itself
        third.cancel(); // a later one: not called in this post
    });
    second = center.subscribe("Go", [&](const Notification&) {
        calls.push_back("second");
        // Added during the post: not called for it.
        static NoteSubscriber added;
        added = center.subscribe("Go", [&](const Notification&) { calls.push_back("added"); });
    });
    third = center.subscribe("Go", [&](const Notification&) { calls.push_back("third"); });
    center.post("Go");
    EXPECT_EQ(calls, (std::vector<std::string>{"first", "second"}));
    calls.clear();
    second.cancel();
    center.post("Go");
    EXPECT_EQ(calls, (std::vector<std::string>{"added"}));
}

TEST(NotificationCenterTest, CancelWaitsForAHandlerRunningOnAnotherThread) {
    NotificationCenter center;
    std::promise<void> entered, release;
    auto releaseFuture = release.get_future().share();
    std::atomic<bool> handlerDone{false};
    auto sub = center.subscribe("Slow", [&](const Notification&) {
        entered.set_value();
        releaseFuture.wait();
        handlerDone = true;
    });
    std::thread poster([&] { center.post("Slow"); });
    entered.get_future().wait();
    std::thread releaser([&] {
        std::this_thread::sleep_for(20ms);
        release.set_value();
    });
    sub.cancel();
    EXPECT_TRUE(handlerDone.load());
    poster.join();
    releaser.join();
}

TEST(NotificationCenterTest, ConcurrentPostsAndSubscriptionsAreSafe) {
    NotificationCenter center;
    std::atomic<int> delivered{0};
    auto steady = center.subscribe("Load", [&](const Notification&) { ++delivered; });
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t)
        threads.emplace_back([&] {
            for (int i = 0; i < 500; ++i)
                center.post("Load");
        });
    threads.emplace_back([&] {
        while (!stop) {
            auto transient = center.subscribe("Load", [&](const Notification&) {});
            std::this_thread::yield();
        }
    });
    threads[0].join();
    threads[1].join();
    stop = true;
    threads[2].join();
    EXPECT_EQ(delivered.load(), 1000);
    EXPECT_EQ(center.observerCount(), 1u);
}

} // namespace
