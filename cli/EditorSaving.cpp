#include "EditorSaving.hpp"

#include "corvane/task_support/SaveTagEditorsTask.hpp"

#include <filesystem>
#include <iostream>
#include <map>
#include <utility>
#include <vector>

namespace corvane::cli {

namespace fs = std::filesystem;

SaveCounts saveEditedEditors(const EditorList& editors, Reporter& reporter, const SaveOptions& options) {
    EditorList edited;
    for (const auto& editor : editors)
        if (editor->isEdited()) edited.push_back(editor);
    // Each file counts as ExifTool reported it: written, left unchanged, failed, or not known when
    // the run was stopped. A failed file is never counted as unchanged.
    SaveCounts counts;
    counts.unchanged = editors.size() - edited.size();
    if (!edited.empty()) {
        std::vector<std::pair<fs::path, fs::file_time_type>> modificationDates;
        if (options.preserveModificationDates)
            for (const auto& editor : edited) {
                std::error_code ec;
                const auto date = fs::last_write_time(editor->source().url(), ec);
                if (!ec) modificationDates.emplace_back(editor->source().url(), date);
            }
        auto task = SaveTagEditorsTask::create(SaveTagEditorsTask::Settings(edited));
        runTask(task, "Writing", reporter, edited.size());
        // Put back the modification dates of the files, written or not (a failed write leaves the
        // file as it was, and setting the date it had changes nothing).
        for (const auto& [path, date] : modificationDates) {
            std::error_code ec;
            fs::last_write_time(path, date, ec);
            if (ec) reporter.fileError(path, "modification date not kept: " + ec.message());
        }
        const std::set<std::string> failed = reportTaskErrors(*task, reporter);
        std::map<std::string, ETTagStorageWriter::FileOutcome> outcomes;
        for (auto& outcome : task->fileOutcomes())
            outcomes.emplace(pathKey(outcome.url), std::move(outcome));
        using Status = ETTagStorageWriter::FileOutcome::Status;
        for (const auto& editor : edited) {
            const fs::path path = editor->source().url();
            const auto it = outcomes.find(pathKey(path));
            if (it != outcomes.end())
                for (const std::string& warning : it->second.warnings)
                    reporter.warning(path, warning);
            const Status status = failed.contains(pathKey(path)) ? Status::failed
                                  : it != outcomes.end()         ? it->second.status
                                                                 : Status::unknown;
            switch (status) {
            case Status::written:
                ++counts.updated;
                break;
            case Status::unchanged:
                ++counts.unchanged;
                if (options.namesUnchangedFiles) std::cout << path.string() << ": nothing to change\n";
                break;
            case Status::failed:
                ++counts.failed;
                break;
            case Status::unknown:
                ++counts.unknown;
                reporter.fileError(path, "not known whether written (" +
                                             (it != outcomes.end() ? it->second.reason : "the save failed") +
                                             ")");
                break;
            }
        }
    }
    if (counts.updated && !options.lineWhenWritten.empty()) std::cout << options.lineWhenWritten << '\n';
    std::cout << counts.updated << (counts.updated == 1 ? " file" : " files") << " updated, "
              << counts.unchanged << " unchanged";
    if (counts.failed) std::cout << ", " << counts.failed << " failed";
    if (counts.unknown) std::cout << ", " << counts.unknown << " not known";
    std::cout << '\n';
    return counts;
}

} // namespace corvane::cli
