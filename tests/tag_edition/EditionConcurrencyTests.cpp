// One editor edited from many threads inside nested sessions while others read it and the main
// queue delivers the manager's notifications. Meant to run under ThreadSanitizer too.

#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"
#include "tag_edition/EditionRecorder.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <latch>
#include <thread>

namespace corvane {
namespace {

using test::EditionEvent;
using test::EditionRecorder;
using test::writableNames;
using namespace std::chrono_literals;

// Checks that the events form runs of "begin, one or more flushes, end".
::testing::AssertionResult wellFormed(const std::vector<EditionEvent>& events) {
    enum { out, opened, flushed } state = out;
    for (std::size_t i = 0; i < events.size(); ++i) {
        const auto kind = events[i].kind;
        if (state == out && kind == EditionEvent::begin)
            state = opened;
        else if (state != out && kind == EditionEvent::flush)
            state = flushed;
        else if (state == flushed && kind == EditionEvent::end)
            state = out;
        else
            return ::testing::AssertionFailure() << "unexpected event " << kind << " at " << i;
    }
    if (state != out) return ::testing::AssertionFailure() << "the last session didn't end";
    return ::testing::AssertionSuccess();
}

TEST(EditionConcurrency, OneEditorEditedFromEightThreadsInNestedSessions) {
    constexpr int writers = 8;
    constexpr int readers = 3;
    constexpr int rounds = 8;
    constexpr int tagsPerWriter = 16;

    EditionRecorder recorder;
    EditionManager& manager = EditionManager::shared();
    auto editor = test::folderEditor();
    const auto names = writableNames(writers * tagsPerWriter + 1);
    ASSERT_EQ(names.size(), std::size_t(writers * tagsPerWriter + 1));
    const TagName& shared = names.back();

    std::latch start(writers + readers);
    std::atomic<int> writersLeft{writers};
    std::vector<std::thread> threads;
    for (int t = 0; t < writers; ++t) {
        threads.emplace_back([&, t] {
            start.arrive_and_wait();
            for (int round = 0; round < rounds; ++round) {
                EditionManager::Session outer;
                for (int i = 0; i < tagsPerWriter; ++i) {
                    EditionManager::Session inner;
                    const std::string value = std::to_string(t) + "-" + std::to_string(round);
                    editor->setValue(value, names[t * tagsPerWriter + i]);
                    editor->setValue(value, shared);
                }
                if (round % 4 == 3) editor->forceValue(names[t * tagsPerWriter]);
            }
            writersLeft.fetch_sub(1);
        });
    }
    for (int r = 0; r < readers; ++r) {
        threads.emplace_back([&, r] {
            start.arrive_and_wait();
            while (writersLeft.load() > 0) {
                if (r == 0) {
                    const TagStorage snapshot = editor->storage(); // a copy taken while others write
                    (void)snapshot.isEdited();
                } else {
                    for (const TagName& name : editor->writtenTagNames())
                        EXPECT_TRUE(editor->currentValue(name).has_value());
                    editor->isEdited();
                    editor->pathDescription();
                }
                std::this_thread::yield();
            }
        });
    }

    // The main thread delivers notifications while the others work.
    MainQueue::shared().runUntil([&] { return writersLeft.load() == 0; }, 120s);
    for (auto& thread : threads)
        thread.join();
    const auto events = recorder.drain();

    EXPECT_FALSE(manager.isInSession());
    EXPECT_TRUE(wellFormed(events));
    HistoryEdition::TagNames flushed;
    std::size_t flushes = 0;
    for (const auto& event : events) {
        if (event.kind != EditionEvent::flush) continue;
        ++flushes;
        if (const auto* tagNames = event.history.tagNamesOf(editor))
            flushed.insert(tagNames->begin(), tagNames->end());
    }
    EXPECT_GE(flushes, std::size_t(writers * rounds * tagsPerWriter / 101))
        << "long batches flush in mid-session";
    EXPECT_EQ(flushed, HistoryEdition::TagNames(names.begin(), names.end()));

    const std::string last = std::to_string(rounds - 1);
    for (int t = 0; t < writers; ++t)
        for (int i = 0; i < tagsPerWriter; ++i)
            EXPECT_EQ(editor->currentValue(names[t * tagsPerWriter + i]), std::to_string(t) + "-" + last);
    const auto sharedValue = editor->currentValue(shared);
    ASSERT_TRUE(sharedValue.has_value());
    EXPECT_TRUE(sharedValue->ends_with("-" + last)) << "the last writer wins: " << *sharedValue;
    EXPECT_EQ(editor->writtenTagNames().size(), names.size());
}

TEST(EditionConcurrency, SessionsOpenedAndClosedOnManyThreadsEndWithOneFlushEach) {
    EditionRecorder recorder;
    EditionManager& manager = EditionManager::shared();
    constexpr int threads = 6;
    constexpr int sessions = 200;
    std::latch start(threads);
    std::vector<std::thread> workers;
    for (int t = 0; t < threads; ++t)
        workers.emplace_back([&] {
            start.arrive_and_wait();
            for (int i = 0; i < sessions; ++i) {
                EditionManager::Session session;
                manager.isInSession();
            }
        });
    for (auto& worker : workers)
        worker.join();
    auto events = recorder.drain();
    EXPECT_TRUE(wellFormed(events)) << "every session begun is ended";
    std::size_t flushes = 0, ends = 0;
    for (const auto& event : events) {
        flushes += event.kind == EditionEvent::flush;
        ends += event.kind == EditionEvent::end;
        EXPECT_FALSE(event.history.hasEditions());
    }
    EXPECT_GE(ends, 1u);
    EXPECT_EQ(flushes, ends) << "no registration: exactly one flush per outermost session";
}

} // namespace
} // namespace corvane
