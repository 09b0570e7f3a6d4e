#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Removes whole metadata families from the editors' files in one ExifTool run, and then from the
/// editors, so that they match the files. Every family at once is ExifTool's "-All=", which leaves
/// only what a file can't be without; otherwise each family goes on its own ("-XMP:ALL="). A folder
/// editor cleans the files of its folder (and of its subfolders when it recurses).
///
/// Files are written in place (they keep their inode and extended attributes); an asset's temporary
/// copy is cleaned, and then replaces the asset in the photo library. When ExifTool fails, its error
/// joins `errors()` and the editors are read again from their files, whatever state they are in.
class CleanTagValuesTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    struct Settings {
        std::vector<std::shared_ptr<TagEditor>> editors; ///< the files to clean
        /// The families to remove.
        std::vector<TagStream> streams;
        /// Let ExifTool fix maker-note offsets; absent counts as true.
        std::optional<bool> enableCorrection;
        /// Let ExifTool go on past minor errors; absent counts as true.
        std::optional<bool> ignoreMinorErrors;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { unauthorizedAccess, engineIsNotAvailable, editorIsNotSupported };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit CleanTagValuesTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<CleanTagValuesTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }

    /// ExifTool's arguments for the families: "-All=" when they are every family there is, else
    /// "-FAMILY:ALL=" for each.
    static std::vector<std::string> cleanArguments(const std::vector<TagStream>& streams);

    Priority priority() const override { return Priority::writing; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(CleanTagValuesTask::ProcessError error);

} // namespace corvane
