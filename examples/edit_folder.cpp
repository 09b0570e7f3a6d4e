// Opens a folder, sets the artist of every file in it and saves the files: the whole life of a host
// in one function.
//
//   edit_folder FOLDER "Ana Ruiz"
//
// Tasks run on the library's own queues and report their progress, status and end on the main
// queue. The library never drains that queue itself: the host does, on its main thread, from its
// event loop or, as here, until the task it waits for has ended.

#include "corvane/helpers/MainQueue.hpp"
#include "corvane/tag_edition/TaskManager.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/SaveTagEditorsTask.hpp"

#include <chrono>
#include <exception>
#include <iostream>

using namespace corvane;

// Hands the task to the task manager and drains the main queue until the task has ended.
static void runToEnd(const std::shared_ptr<AbstractTask>& task) {
    TaskManager::shared().add(task);
    MainQueue::shared().runUntil(
        [&] {
            const auto status = task->status();
            return status == AbstractTask::Status::completed || status == AbstractTask::Status::cancelled;
        },
        std::chrono::minutes(10));
    MainQueue::shared().drain(); // the task's last notifications
}

// Prints the task's errors; true when there were none.
static bool reportErrors(const AbstractTask& task) {
    for (const auto& error : task.errors()) {
        try {
            std::rethrow_exception(error);
        } catch (const std::exception& e) {
            std::cerr << "edit_folder: " << e.what() << '\n';
        }
    }
    return task.errors().empty();
}

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: edit_folder FOLDER ARTIST\n";
        return 2;
    }
    MainQueue::shared().registerCurrentThreadAsMain();

    ImportTagEditorsTask::Settings reading({TagStorageSource(argv[1])});
    reading.unfoldFolders = true;
    auto import = ImportTagEditorsTask::create(reading);
    runToEnd(import);
    if (!reportErrors(*import)) return 1;

    const auto editors = import->importedEditors();
    const TagName artist = TagItem::itemEXIFArtist().name();
    for (const auto& editor : editors)
        editor->setValue(std::string(argv[2]), artist); // a file whose format can't hold it is left alone

    auto save = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(editors));
    runToEnd(save);
    if (!reportErrors(*save)) return 1;
    std::cout << "saved " << editors.size() << " files\n";
    return 0;
}
