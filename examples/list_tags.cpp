// Lists the tags of many files, one block per file, with the catalogue's display names:
//
//   list_tags PATH... [-f FAMILY]
//
// Folders are read with their files. The files are read in one batch by one task, on the library's
// queues; the main queue, which carries the task's notifications, is drained here on the main thread.

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/TaskManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"

#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <string_view>

using namespace corvane;

int main(int argc, char** argv) {
    std::vector<TagStorageSource> sources;
    std::string family; // all families when empty
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "-f" && i + 1 < argc)
            family = argv[++i];
        else
            sources.emplace_back(argv[i]);
    }
    if (sources.empty()) {
        std::cerr << "usage: list_tags PATH... [-f FAMILY]\n";
        return 2;
    }
    MainQueue::shared().registerCurrentThreadAsMain();

    ImportTagEditorsTask::Settings settings(sources);
    settings.unfoldFolders = true;
    auto task = ImportTagEditorsTask::create(settings);
    TaskManager::shared().add(task);
    MainQueue::shared().runUntil([&] { return task->status() == AbstractTask::Status::completed; },
                                 std::chrono::minutes(10));
    MainQueue::shared().drain();
    for (const auto& error : task->errors()) {
        try {
            std::rethrow_exception(error);
        } catch (const std::exception& e) {
            std::cerr << "list_tags: " << e.what() << '\n';
        }
    }

    auto editors = task->importedEditors();
    std::sort(editors.begin(), editors.end(),
              [](const auto& a, const auto& b) { return a->source().url() < b->source().url(); });
    for (const auto& editor : editors) {
        std::cout << editor->source().url().string() << '\n';
        for (const TagName& name : editor->currentTagNames()) {
            if (!family.empty() && name.stream().rawValue() != family) continue;
            const TagItem* item = TagItem::find(name);
            const std::string label = item ? item->displayName() : name.key().rawValue();
            std::cout << "  " << name.rawValue() << " (" << label
                      << "): " << editor->currentValue(name).value_or("") << '\n';
        }
    }
    return task->errors().empty() ? 0 : 1;
}
