#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_storages/IPTCDigestUpdate.hpp"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Writes the edits of editors to their files and photo-library assets. ExifTool editors are written
/// together in one ExifTool run; image I/O editors file by file. Assets are copied out to their
/// temporary files first and replaced in the photo library after every file is written.
///
/// Each editor is flushed before the write: its written values become originals and the storage as
/// it stood, with its edits, is what gets written. A failed write leaves its error in `errors()` and
/// doesn't bring the edits back; a caller that needs the true state reloads the files. Each file's
/// outcome, from what the engine reported for it, is kept in `fileOutcomes()`.
class SaveTagEditorsTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        /// Settings for these editors; the others keep their defaults.
        explicit Settings(std::vector<std::shared_ptr<TagEditor>> editors) : editors(std::move(editors)) {}

        std::vector<std::shared_ptr<TagEditor>> editors; ///< the editors whose edits are written
        /// Let ExifTool fix maker-note offsets; absent counts as false.
        std::optional<bool> enableCorrection;
        /// Declare IPTC as UTF-8 when it is written; absent counts as true.
        std::optional<bool> forceIPTCUTF8;
        /// What to do with the Photoshop IPTC digest when IPTC is written.
        IPTCDigestUpdate forceIPTCDigest = IPTCDigestUpdate::ignore;
        /// Let ExifTool go on past minor errors; absent counts as true.
        std::optional<bool> ignoreMinorErrors;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { unauthorizedAccess, engineIsNotAvailable, editorIsNotSupported };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit SaveTagEditorsTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<SaveTagEditorsTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    /// What the save did to each file written through ExifTool: written, unchanged, failed (each
    /// failed file is also an error of `errors()`, "PATH: REASON") or unknown (the run was stopped).
    /// Complete once the task has ended; any thread.
    std::vector<ETTagStorageWriter::FileOutcome> fileOutcomes() const;

    Priority priority() const override { return Priority::writing; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

    /// Each subprocess writes one file through the image I/O engine.
    virtual void saveWithCoreImage(const std::vector<std::shared_ptr<TagEditor>>& editors);
    /// One ExifTool run for the whole group; its error covers the group.
    virtual void saveWithExifTool(const std::vector<std::shared_ptr<TagEditor>>& editors);

private:
    /// Asks for the photo library when an asset is among the editors; refusal (or no photo
    /// library at all) throws `unauthorizedAccess`.
    void askPhotosLibrary(const std::vector<std::shared_ptr<TagEditor>>& editors) const;
    /// Flushes the editors in one edition session and gives their storages as they stood.
    static std::vector<TagStorage> flushEditors(const std::vector<std::shared_ptr<TagEditor>>& editors);
    void writeStorages(std::vector<TagStorage> storages);
    void recordOutcomes(const std::vector<ETTagStorageWriter::FileOutcome>& outcomes);

    const Settings settings_;
    mutable std::mutex outcomesMutex_;
    std::vector<ETTagStorageWriter::FileOutcome> outcomes_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(SaveTagEditorsTask::ProcessError error);

} // namespace corvane
