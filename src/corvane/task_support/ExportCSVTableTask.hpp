#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Writes one CSV table for many editors: a header of tag names, then one row per editor in
/// order. The first two columns, File:FileName and File:FilePath, name each row's file, so that
/// `ImportCSVTableTask` can apply the table back; then one column per tag item, each once.
///
/// Each cell is the editor's current value as its canonical string (dates included, so a table
/// read back sets exactly what was there); a tag the editor doesn't hold is "-NoData-", which the
/// import passes over, and an empty value stays an empty cell. The table is written to a fresh
/// file that replaces the destination once complete.
class ExportCSVTableTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        Settings() = default;
        /// Settings with these fields.
        Settings(std::vector<std::shared_ptr<TagEditor>> editors, std::vector<const TagItem*> tagItems,
                 std::optional<std::filesystem::path> destinationURL)
            : editors(std::move(editors)), tagItems(std::move(tagItems)),
              destinationURL(std::move(destinationURL)) {}

        std::vector<std::shared_ptr<TagEditor>> editors; ///< the files, one row each
        /// The columns after the two file columns.
        std::vector<const TagItem*> tagItems;
        /// The CSV file to write; none is an error of the task.
        std::optional<std::filesystem::path> destinationURL;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError {
        engineIsNotAvailable,
        destinationIsMissing,
        streamIsMissing,
        tableTypeIsUnknown
    };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit ExportCSVTableTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<ExportCSVTableTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    std::string title() const override;
    bool isProgressIndeterminate() const override { return false; }

    /// The table's columns: the two file columns, then the settings' items without repeats.
    std::vector<const TagItem*> columns() const;

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ExportCSVTableTask::ProcessError error);

} // namespace corvane
