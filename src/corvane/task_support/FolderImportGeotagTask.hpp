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

    enum class ProcessError {
        editorIsNotAFolder,
        engineIsNotAvailable,
        geotagFileIsMissing,
        geotagFileIsNotSupported
    };

    /// The track-log extensions ExifTool reads, lower-case.
    static const std::vector<std::string>& supportedTypes();

    explicit FolderImportGeotagTask(Settings settings);
    static std::shared_ptr<FolderImportGeotagTask> create(Settings settings);

    const Settings& settings() const { return settings_; }

    Priority priority() const override { return Priority::writing; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

std::string_view message(FolderImportGeotagTask::ProcessError error);

} // namespace corvane
