#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// Reads a CSV table of many files' tags (one row per file, one column per tag, as
/// `ExportCSVTableTask` writes it) and applies it to open editors, as edits: each editor takes the
/// row whose path cell names its file. A cell "-NoData-" leaves the tag alone, an empty cell
/// clears it, any other cell sets it. Nothing is saved.
///
/// The two file columns are the key of a row, never values to set. A row whose name cell isn't
/// the last component of its path cell is passed over with an error naming the row; a row that no
/// editor holds has no effect.
class ImportCSVTableTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        Settings() = default;
        /// Settings with these fields.
        Settings(std::vector<std::shared_ptr<TagEditor>> editors,
                 std::optional<std::filesystem::path> sourceURL)
            : editors(std::move(editors)), sourceURL(std::move(sourceURL)) {}

        /// The editors the values go to, matched to the rows by file.
        std::vector<std::shared_ptr<TagEditor>> editors;
        /// The CSV file to read; none is an error of the task.
        std::optional<std::filesystem::path> sourceURL;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError {
        engineIsNotAvailable,
        sourceIsMissing,
        tableTypeIsUnknown,
        inputStreamIsMissing,
        nameTagIsMissing,
        pathTagIsMissing,
    };

    /// The cell of a tag that a row doesn't touch.
    static constexpr std::string_view noDataCell = "-NoData-";

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit ImportCSVTableTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<ImportCSVTableTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    std::string title() const override;
    bool isProgressIndeterminate() const override { return false; }

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ImportCSVTableTask::ProcessError error);

} // namespace corvane
