#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/TagSyncPair.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Copies tag values from one tag to another (a capture date from EXIF to XMP) across editors.
/// File editors are changed in memory, through each tag's converter so that the value fits the
/// target's type, in one edition session, and stay unsaved. Folder editors are changed on disk at
/// once, by one ExifTool copy ("-TO<FROM") over every file of the folder.
class SyncTagValuesTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        Settings() = default;
        /// Settings with these fields; the others keep their defaults.
        Settings(std::vector<std::shared_ptr<TagEditor>> editors, std::vector<TagSyncPair> tagCopies)
            : editors(std::move(editors)), tagCopies(std::move(tagCopies)) {}

        std::vector<std::shared_ptr<TagEditor>> editors; ///< the editors whose files get the copies
        /// Let ExifTool go on past minor errors; absent counts as true.
        std::optional<bool> ignoreMinorErrors;
        /// What to copy, in order.
        std::vector<TagSyncPair> tagCopies;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { engineIsNotAvailable };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit SyncTagValuesTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<SyncTagValuesTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    std::string title() const override;

    /// The ExifTool copy arguments, one per pair: "-TO<FROM".
    std::vector<std::string> copyArguments() const;

protected:
    void internProcess() override;

    /// The copies for the editors of files, in one ExifTool run; for the editors of folders, one
    /// run each.
    ///@{
    virtual void processFileEditors(const std::vector<std::shared_ptr<TagEditor>>& editors);
    virtual void processFolderEditors(const std::vector<std::shared_ptr<TagEditor>>& editors);
    ///@}

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(SyncTagValuesTask::ProcessError error);

} // namespace corvane
