// Cost of a preset on 1,000 in-memory editors against the same edits made by hand through the
// editors' setters, one session each way; the last line prints the ratio. The preset reads every
// current value, joins, converts and searches as its editions say, so the ratio is the price of
// that work over bare setValue calls.

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/preset_support/TagEditorPresets.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/TagEditorArrayEditions.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>

using namespace corvane;

namespace {

constexpr int editorCount = 1000;

std::vector<TagEditorRef> makeEditors() {
    std::vector<TagEditorRef> editors;
    for (int i = 0; i < editorCount; ++i)
        editors.push_back(test::editorWith({{&TagItem::itemEXIFArtist(), "jane doe"},
                                            {&TagItem::itemIPTCKeywords(), "sun,sea,sand"},
                                            {&TagItem::itemEXIFDateTimeOriginal(), "2024:03:31 22:30:00"}},
                                           "/photos/p" + std::to_string(i) + ".jpg"));
    return editors;
}

const std::vector<PresetItemEntry>& preset() {
    static const std::vector<PresetItemEntry> entries = [] {
        SearchAndReplaceSettings search("doe", "Doe");
        search.ignoreCase = true;
        return std::vector<PresetItemEntry>{
            {TagItem::itemEXIFArtist().name(), PresetEdition::searchAndReplace(search)},
            {TagItem::itemIPTCKeywords().name(),
             PresetEdition::useCustomValue("beach", UseCustomValueSettings::Insertion::append)},
            {TagItem::itemIPTCKeywords().name(),
             PresetEdition::useCustomAction(UseCustomActionSettings::Action::sortInAscendingOrder)},
            {TagItem::itemEXIFDateTimeOriginal().name(), PresetEdition::useCustomValue("SHIFT(hh: 2)")},
            {TagItem::itemEXIFCopyright().name(),
             PresetEdition::copyTagValue({TagItem::itemEXIFArtist().name(),
                                          CopyTagValueSettings::Formatter::raw,
                                          CopyTagValueSettings::Insertion::replace})},
        };
    }();
    return entries;
}

// The values the preset gives, set directly.
void byHand(const std::vector<TagEditorRef>& editors) {
    EditionManager::Session session;
    for (const auto& editor : editors) {
        editor->setValue("jane Doe", TagItem::itemEXIFArtist().name());
        editor->setValue("sun,sea,sand, beach", TagItem::itemIPTCKeywords().name());
        editor->setValue("beach,sand,sea,sun", TagItem::itemIPTCKeywords().name());
        editor->setValue("2024:04:01 00:30:00", TagItem::itemEXIFDateTimeOriginal().name());
        editor->setValue("jane Doe", TagItem::itemEXIFCopyright().name());
    }
}

void byPreset(const std::vector<TagEditorRef>& editors) {
    EditionManager::Session session;
    for (const auto& editor : editors)
        TagEditorPresets(*editor).apply(preset());
}

double seconds(void (*run)(const std::vector<TagEditorRef>&)) {
    double best = 1e9;
    for (int round = 0; round < 5; ++round) {
        auto editors = makeEditors();
        const auto start = std::chrono::steady_clock::now();
        run(editors);
        best =
            std::min(best, std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        MainQueue::shared().drain();
    }
    return best;
}

void PresetOnThousandEditors(benchmark::State& state) {
    MainQueue::shared().registerCurrentThreadAsMain();
    for (auto _ : state) {
        state.PauseTiming();
        auto editors = makeEditors();
        state.ResumeTiming();
        byPreset(editors);
        state.PauseTiming();
        MainQueue::shared().drain();
        state.ResumeTiming();
    }
}
BENCHMARK(PresetOnThousandEditors)->Unit(benchmark::kMillisecond);

void PresetOnThousandEditorsConcurrently(benchmark::State& state) {
    MainQueue::shared().registerCurrentThreadAsMain();
    for (auto _ : state) {
        state.PauseTiming();
        auto editors = makeEditors();
        state.ResumeTiming();
        TagEditorArrayEditions(editors).applyPresetEntries(preset());
        state.PauseTiming();
        MainQueue::shared().drain();
        state.ResumeTiming();
    }
}
BENCHMARK(PresetOnThousandEditorsConcurrently)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    MainQueue::shared().registerCurrentThreadAsMain();
    const double hand = seconds(byHand);
    const double presets = seconds(byPreset);
    std::printf("\n1,000 editors, best of 5: preset %.2f ms, the same values by hand %.2f ms, ratio %.2f\n",
                presets * 1e3, hand * 1e3, presets / hand);
    benchmark::Shutdown();
}
