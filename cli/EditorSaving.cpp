#include "EditorSaving.hpp"

#include "corvane/task_support/SaveTagEditorsTask.hpp"

#include <iostream>
#include <map>

namespace corvane::cli {

namespace fs = std::filesystem;

std::size_t saveEditedEditors(const EditorList& editors, Reporter& reporter) {
    EditorList edited;
    for (const auto& editor : editors)
        if (editor->isEdited()) edited.push_back(editor);
    std::size_t updated = 0, unchanged = editors.size() - edited.size(), failedCount = 0, unknown = 0;
    if (!edited.empty()) {
        auto task = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(edited));
        runTask(task, "Writing", reporter);
        const std::set<std::string> failed = reportTaskErrors(*task, reporter);
        std::map<std::string, ETTagStorageWriter::FileOutcome> outcomes;
        for (auto& outcome : task->fileOutcomes())
            outcomes.emplace(pathKey(outcome.url), std::move(outcome));
        using Status = ETTagStorageWriter::FileOutcome::Status;
        for (const auto& editor : edited) {
            const fs::path path = editor->source().url();
            const auto it = outcomes.find(pathKey(path));
            const Status status = failed.contains(pathKey(path)) ? Status::failed
                                  : it != outcomes.end()         ? it->second.status
                                                                 : Status::unknown;
            switch (status) {
            case Status::written:
                ++updated;
                break;
            case Status::unchanged:
                ++unchanged;
                break;
            case Status::failed:
                ++failedCount;
                break;
            case Status::unknown:
                ++unknown;
                reporter.fileError(path, "not known whether written (" +
                                             (it != outcomes.end() ? it->second.reason : "the save failed") +
                                             ")");
                break;
            }
        }
    }
    std::cout << updated << (updated == 1 ? " file" : " files") << " updated, " << unchanged << " unchanged";
    if (failedCount) std::cout << ", " << failedCount << " failed";
    if (unknown) std::cout << ", " << unknown << " not known";
    std::cout << '\n';
    return failedCount + unknown;
}

} // namespace corvane::cli
