#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Sets the GPS tags of the files of a folder from a track log, with ExifTool's geotagging: each
/// file's position is interpolated in the track at its DateTimeOriginal, read in the process's time
/// zone (the TZ environment variable) and shifted by `geoSyncString` ("+0:01:00" when the camera's
/// clock was a minute behind). Files are changed directly, in place, keeping their modification
/// dates; the editor's values are not. Files outside the track's time span are left alone.
class FolderImportGeotagTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    struct Settings {
        /// An editor of a folder; it recurses into subfolders as it is set to.
        std::shared_ptr<ETTagEditor> editor;
        /// The track log: one of `supportedTypes`, the extension in any case.
        std::optional<std::filesystem::path> geotagFileURL;
        /// The time shift as ExifTool reads it ("-geosync"); absent is none.
        std::optional<std::string> geoSyncString;
        /// Let ExifTool go on past minor errors; absent counts as true.
        std::optional<bool> ignoreMinorErrors;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError {
        editorIsNotAFolder,
        engineIsNotAvailable,
        geotagFileIsMissing,
        geotagFileIsNotSupported
    };

    /// The track-log extensions ExifTool reads, lower-case.
    static const std::vector<std::string>& supportedTypes();

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit FolderImportGeotagTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<FolderImportGeotagTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }

    Priority priority() const override { return Priority::writing; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(FolderImportGeotagTask::ProcessError error);

} // namespace corvane
