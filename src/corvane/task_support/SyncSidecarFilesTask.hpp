#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/MediaType.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Exchanges whole metadata sets between media files and their sidecars with ExifTool's own copy:
/// `exportSidecar` makes a new sidecar from each file ("-o"), `importSidecar` copies each sidecar's
/// tags into its file ("-tagsfromfile"). Folder editors act on every file of the folder. The file
/// editors are then read again, so that they show what is now on disk (their unsaved edits kept).
///
/// Sidecars lie beside their files unless `sidecarFolderURL` is given, and take the lower-case
/// extension of their format ("photo.xmp"). On import, a sidecar is found under either case of
/// its extension ("photo.xmp", else "photo.XMP"); a file without a sidecar is an error of its own
/// and the others are imported. On export, an existing sidecar is never replaced: ExifTool's
/// refusal is an error of that file.
class SyncSidecarFilesTask : public AbstractTask {
public:
    /// Whether the sidecars are read into the editors or written from them.
    enum class Action { importSidecar, exportSidecar };

    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        Settings() = default;
        /// Settings with these fields; the others keep their defaults.
        Settings(std::vector<std::shared_ptr<TagEditor>> editors, Action action)
            : editors(std::move(editors)), action(action) {}

        std::vector<std::shared_ptr<TagEditor>> editors; ///< the editors whose files the sidecars go with
        Action action = Action::exportSidecar;           ///< the direction
        /// The sidecar's format key in any case ("xmp"); none means the file's own extension,
        /// which only makes sense with a `sidecarFolderURL`.
        std::optional<std::string> sidecarType;
        /// Where the sidecars lie; none means beside their files.
        std::optional<std::filesystem::path> sidecarFolderURL;
        /// Let ExifTool fix maker-note offsets; absent counts as false.
        std::optional<bool> enableCorrection;
        /// Let ExifTool go on past minor errors; absent counts as true.
        std::optional<bool> ignoreMinorErrors;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError {
        engineIsNotAvailable,
        processActionIsUnknown,
        editorIsNotSupported,
        sidecarTypeIsMissing,
        sidecarTypeIsUnknown,
        sourceTypeIsUnknown,
    };

    /// A file whose sidecar isn't there to import. `what()` is "PATH: No sidecar SIDECAR".
    class MissingSidecarError : public Error {
    public:
        /// The file, and the sidecar that was looked for.
        MissingSidecarError(std::filesystem::path url, std::filesystem::path sidecar);
        /// The file without a sidecar; the sidecar looked for.
        ///@{
        const std::filesystem::path& url() const { return url_; }
        const std::filesystem::path& sidecar() const { return sidecar_; }
        ///@}

    private:
        std::filesystem::path url_;
        std::filesystem::path sidecar_;
    };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit SyncSidecarFilesTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<SyncSidecarFilesTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    std::string title() const override;
    bool isProgressIndeterminate() const override { return false; }

    /// The formats a sidecar may have: those of kind sidecar, with ExifTool among `KitSettings`'
    /// engines; none without it.
    static MediaType::Set supportedTypes();
    /// The URL's extension names a format of `supportedTypes()`.
    static bool canImportSidecar(const std::filesystem::path& url);

    /// ExifTool's file name pattern of the sidecar: "%f.%e" without a type, else "%f." and the
    /// format's extension in lower case. Throws `sidecarTypeIsMissing` for a type the table
    /// doesn't know, `sidecarTypeIsUnknown` for a type that isn't a sidecar's.
    std::string parseSidecarFormat() const;
    /// The pattern with its folder: `sidecarFolderURL`, or "%d" (each file's own folder; a
    /// pattern without one would be taken in the current directory).
    std::string parseSidecarPath() const;
    /// The sidecar of one file, as the pattern names it.
    std::filesystem::path sidecarURL(const std::filesystem::path& file) const;

protected:
    void internProcess() override;
    /// After an import through ExifTool: the editors re-read from their files.
    virtual void reloadFileEditors(const std::vector<std::shared_ptr<TagEditor>>& editors);

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(SyncSidecarFilesTask::ProcessError error);

} // namespace corvane
