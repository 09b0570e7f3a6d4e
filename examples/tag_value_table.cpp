// Prints the tag value table of many files: one row per tag of a tag set, each merging the values
// of every file, as the main tag list of an editor shows them.
//
//   tag_value_table PATH... [--set TAGSET.json]
//
// Folders are read with their files. Without --set the table shows the library's set for images.
// The files are read by one task on the library's queues; the main queue, which carries the task's
// and the table's notifications, is drained here on the main thread.

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/TaskManager.hpp"
#include "corvane/tag_set/TagSetFile.hpp"
#include "corvane/tag_set/TagSetManager.hpp"
#include "corvane/tag_table/TagValueTable.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/utilities/Error.hpp"

#include <chrono>
#include <exception>
#include <iostream>
#include <string_view>
#include <utility>
#include <variant>

using namespace corvane;

// One row's cell: the value all files share, the number of different values, or nothing.
static std::string cell(const MultiValuedString& values) {
    if (const std::string* single = values.singleValue()) return *single;
    if (const auto* several = values.multipleValues())
        return "<" + std::to_string(several->size()) + " different values>";
    return "";
}

int main(int argc, char** argv) {
    std::vector<TagStorageSource> sources;
    std::string setFile;
    for (int i = 1; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--set" && i + 1 < argc)
            setFile = argv[++i];
        else
            sources.emplace_back(argv[i]);
    }
    if (sources.empty()) {
        std::cerr << "usage: tag_value_table PATH... [--set TAGSET.json]\n";
        return 2;
    }
    MainQueue::shared().registerCurrentThreadAsMain();

    // The set the table shows. An edit of the manager lasts until the process ends: nothing here
    // saves it into the user's defaults.
    const auto domain = TagSetManager::Domain::application;
    try {
        TagSet set = setFile.empty() ? TagSet::forImages() : TagSetFile::fromJSONURL(setFile).tagSet();
        TagSetManager::shared().edit(domain, [&](TagSet) { return set; });
    } catch (const Error& e) {
        std::cerr << "tag_value_table: " << e.what() << '\n';
        return 2;
    }

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
            std::cerr << "tag_value_table: " << e.what() << '\n';
        }
    }

    // The table computes its first content on this thread; later reloads (after edits, or a new
    // request) would post their notifications on the main queue.
    TagValueTable::Request request(domain, task->importedEditors());
    request.showSections = true;
    auto table = TagValueTable::create(request);
    std::cout << task->importedEditors().size() << " files\n";
    const TagSection* heading = nullptr; // printed before its first row that has a value
    for (const TagValueTable::Entry& entry : table->content()->entries()) {
        if (const auto* section = std::get_if<TagSection>(&entry)) {
            heading = section;
            continue;
        }
        const TagValueRow& row = std::get<TagValueRow>(entry);
        if (row.string().isNone()) continue; // no file has the tag
        if (heading) std::cout << '\n' << std::exchange(heading, nullptr)->rawValue() << '\n';
        std::cout << "  " << row.tagItem().displayName() << " (" << row.tagItem().name().rawValue()
                  << "): " << cell(row.string()) << '\n';
    }
    return task->errors().empty() ? 0 : 1;
}
