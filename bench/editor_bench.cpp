// Cost of editing through a TagEditor: one setValue with its own session (begin, flush and end
// scheduled on the main queue), one setValue inside an open session, and a batch of 10,000
// registrations in one session.

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"

#include <benchmark/benchmark.h>

using namespace corvane;
using test::folderEditor;
using test::writableNames;

namespace {

// Runs the notifications gathered on the main queue, outside the timed part.
void drainMainQueue(benchmark::State& state) {
    state.PauseTiming();
    MainQueue::shared().drain();
    state.ResumeTiming();
}

const std::string values[2] = {"Ann Example", "Bob Example"};

void SetValueOutsideSession(benchmark::State& state) {
    MainQueue::shared().registerCurrentThreadAsMain();
    auto editor = folderEditor();
    const TagName artist = TagItem::itemEXIFArtist().name();
    std::size_t i = 0;
    for (auto _ : state) {
        editor->setValue(values[i & 1], artist);
        if ((++i & 1023) == 0) drainMainQueue(state);
    }
    MainQueue::shared().drain();
}
BENCHMARK(SetValueOutsideSession);

void SetValueInsideOpenSession(benchmark::State& state) {
    MainQueue::shared().registerCurrentThreadAsMain();
    auto editor = folderEditor();
    const TagName artist = TagItem::itemEXIFArtist().name();
    EditionManager::shared().beginSession();
    std::size_t i = 0;
    for (auto _ : state)
        editor->setValue(values[i++ & 1], artist);
    EditionManager::shared().endSession();
    MainQueue::shared().drain();
}
BENCHMARK(SetValueInsideOpenSession);

// 10,000 changing setValue calls over 100 tags of one editor in one session, and the same number
// of bare registrations: the flush at every 101st registration is part of the cost.
void TenThousandSetValuesInOneSession(benchmark::State& state) {
    MainQueue::shared().registerCurrentThreadAsMain();
    auto editor = folderEditor();
    const auto names = writableNames(100);
    std::vector<std::string> texts;
    for (int i = 0; i < 200; ++i)
        texts.push_back(values[i / 100] + " " + std::to_string(i % 100));
    std::size_t round = 0;
    for (auto _ : state) {
        {
            EditionManager::Session session;
            const std::size_t offset = (round++ & 1) * 100;
            for (int i = 0; i < 10'000; ++i)
                editor->setValue(texts[offset + i / 100], names[i % 100]);
        }
        drainMainQueue(state);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 10'000);
}
BENCHMARK(TenThousandSetValuesInOneSession)->Unit(benchmark::kMillisecond);

void TenThousandRegistrationsInOneSession(benchmark::State& state) {
    MainQueue::shared().registerCurrentThreadAsMain();
    std::vector<std::shared_ptr<TagEditor>> editors;
    for (int i = 0; i < 10; ++i)
        editors.push_back(folderEditor());
    const auto names = writableNames(100);
    EditionManager& manager = EditionManager::shared();
    for (auto _ : state) {
        {
            EditionManager::Session session;
            for (int i = 0; i < 10'000; ++i)
                manager.registerTag(editors[i % 10], names[(i / 10) % 100]);
        }
        drainMainQueue(state);
    }
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * 10'000);
}
BENCHMARK(TenThousandRegistrationsInOneSession)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
