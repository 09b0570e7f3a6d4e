// Cost of a tag value table over 10,000 in-memory editors with 60 tags each, shown through the
// built-in images set: the first content (computed on the caller's thread), a full reload, and the
// partial reload that follows one edit of one editor (from the edit's flush to the did-reload
// notification). The last lines print the medians and the ratio of the partial reload to the full
// one, which is what the partial reload is for. Processor time (of all threads) is printed beside
// the wall-clock times, since on a busy machine the wall clock says more about the machine.

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_table/TagValueTable.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "support/EditorFixtures.hpp"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <string>
#include <vector>

using namespace corvane;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int editorCount = 10000;
constexpr std::size_t tagsPerEditor = 60;
constexpr int rounds = 5;

// Most tags hold values shared by many files (a camera, an artist), some a value per file (dates,
// file names), as a real selection does.
std::vector<TagEditorRef> makeEditors() {
    std::vector<const TagItem*> items;
    const TagSet images = TagSet::forImages();
    for (const auto& entry : images.entries())
        if (const TagItem* item = entry.tagItem(); item && items.size() < tagsPerEditor)
            items.push_back(item);
    std::vector<TagEditorRef> editors;
    editors.reserve(editorCount);
    for (int i = 0; i < editorCount; ++i) {
        std::vector<std::pair<const TagItem*, std::string>> values;
        for (std::size_t j = 0; j < items.size(); ++j) {
            std::string value = j % 10 == 0  ? "file " + std::to_string(i)
                                : j % 3 == 0 ? "value " + std::to_string(i % 20)
                                             : "shared value " + std::to_string(j);
            values.emplace_back(items[j], std::move(value));
        }
        editors.push_back(test::editorWith(values, "/photos/p" + std::to_string(i) + ".jpg"));
    }
    return editors;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

} // namespace

int main() {
    MainQueue& main = MainQueue::shared();
    main.registerCurrentThreadAsMain();
    TagSetManager::shared().edit(TagSetManager::Domain::application,
                                 [](TagSet) { return TagSet::forImages(); });
    const auto editors = makeEditors();
    TagValueTable::Request request(TagSetManager::Domain::application, editors);

    std::vector<double> first, full, fullCPU, partial, partialCPU;
    for (int round = 0; round < rounds; ++round) {
        auto start = Clock::now();
        auto table = TagValueTable::create(request);
        first.push_back(since(start));

        Clock::time_point didReload;
        int didReloads = 0;
        auto subscriber = NotificationCenter::defaultCenter().subscribe(
            std::string(TagValueTable::didReloadNotification), table.get(), [&](const Notification&) {
                didReload = Clock::now();
                ++didReloads;
            });

        auto toggled = request;
        toggled.showSections = true; // the table was made without headings: every row is rebuilt
        start = Clock::now();
        const std::clock_t cpuStart = std::clock();
        table->reload(toggled);
        main.runUntil([&] { return didReloads == 1; }, std::chrono::minutes(1));
        full.push_back(std::chrono::duration<double>(didReload - start).count());
        fullCPU.push_back(static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC);

        // One edit: its session ends in setValue, which flushes the history onto the main queue.
        editors[static_cast<std::size_t>(round)]->setValue("edited " + std::to_string(round),
                                                           TagItem::itemEXIFArtist().name());
        start = Clock::now();
        const std::clock_t partialCPUStart = std::clock();
        main.runUntil([&] { return didReloads == 2; }, std::chrono::minutes(1));
        partial.push_back(std::chrono::duration<double>(didReload - start).count());
        partialCPU.push_back(static_cast<double>(std::clock() - partialCPUStart) / CLOCKS_PER_SEC);
        table->drainUntilIdle(std::chrono::minutes(1));
    }

    const double f = median(first), r = median(full), p = median(partial);
    std::printf("10,000 editors x 60 tags, images tag set, median of %d rounds:\n", rounds);
    std::printf("  first content  %8.1f ms\n", f * 1e3);
    std::printf("  full reload    %8.1f ms   (target <= 500 ms; %.1f ms of processor time, all threads)\n",
                r * 1e3, median(fullCPU) * 1e3);
    std::printf("  partial reload %8.2f ms   (target <= 10 ms; %.2f ms of processor time, all threads)\n",
                p * 1e3, median(partialCPU) * 1e3);
    std::printf("  partial / full %8.4f     (target <= 0.02)\n", p / r);
}
