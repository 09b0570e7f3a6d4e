#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/tag_value/MediaType.hpp"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Turns files, folders and assets into editors: it keeps the sources whose format may be opened,
/// unfolds folders when asked, reads them all with one engine and makes one editor per storage.
/// With `sourceEditors` it also refreshes editors that exist from what it has read.
///
/// The results come in no particular order: callers sort. It keeps the default priority, writing,
/// so that an import never reads a file that a save is writing.
class ImportTagEditorsTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        /// Settings for these sources; the others keep their defaults.
        explicit Settings(std::vector<TagStorageSource> sources) : sources(std::move(sources)) {}

        /// What to open.
        std::vector<TagStorageSource> sources;
        /// Let ExifTool go on past minor errors; absent counts as false.
        std::optional<bool> ignoreMinorErrors;
        /// Carried for the caller, who places the new editors in its list; the task doesn't read it.
        std::optional<int> insertionIndex;
        /// Editors to reload from the storages read for their URL.
        std::vector<std::shared_ptr<TagEditor>> sourceEditors;
        /// Replace a folder by its files.
        std::optional<bool> unfoldFolders;
        /// Go into subfolders when unfolding.
        std::optional<bool> unfoldRecursively;
        /// A further limit on the formats kept.
        std::optional<MediaType::Set> allowedTypes;
        /// Also read the files among `sources` (not those found in folders) whose extension is no
        /// format of the media table: ExifTool reads more formats than the table lists (track logs,
        /// icons, XMP saved as .xml). Absent counts as false. Such a storage has no media type,
        /// so the access rule of an unknown type applies to it; the in-process engine refuses it
        /// with `fileIsNotSupported`.
        std::optional<bool> readUnlistedFormats;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { engineIsNotAvailable, fileIsNotSupported };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit ImportTagEditorsTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<ImportTagEditorsTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    /// The editors made so far; all of them once the task has ended.
    std::vector<std::shared_ptr<TagEditor>> importedEditors() const;
    /// What ExifTool warned about the files it read, per file URL ("JPEG format error"): those
    /// files were read and have their editors all the same. Empty for the in-process engine.
    std::map<std::filesystem::path, std::vector<std::string>> readWarnings() const;

    std::string title() const override;
    bool isProgressIndeterminate() const override { return false; }

    /// The URL's extension names a format of the media table that the library supports.
    static bool canImportEditor(const std::filesystem::path& url);
    /// `canImportEditor`, or the URL has an extension that names no format of the media table: a
    /// file that an import with `readUnlistedFormats` hands to ExifTool.
    static bool canReadFile(const std::filesystem::path& url);
    /// Every format of the five media kinds that `KitSettings` supports.
    static MediaType::Set supportedTypes();

    /// The formats this task keeps: the supported ones, limited by `allowedTypes`.
    MediaType::Set types() const;
    /// The sources to read, in the order of `sources`: files of a kept format, folders as they
    /// stand (or their files of a kept format when unfolding), the rest left out in silence.
    std::vector<TagStorageSource> sourcesToImport(const MediaType::Set& types) const;

protected:
    void internProcess() override;

    /// One ExifTool run over all sources; a failure of the run leaves no editor.
    virtual void importWithExiftool();
    /// Through the image I/O engine, file by file on `subprocessQueue()`: a file that can't be read
    /// (or isn't of a kept format, or is a folder) adds its error, and the others are imported.
    virtual void importWithCoreImage();

private:
    /// Reads the sources in one ExifTool run and appends an editor per storage.
    void readWithExifTool(std::vector<TagStorageSource> sources, bool ignoreMinorErrors);
    void appendEditors(std::vector<std::shared_ptr<TagEditor>> editors);
    void reloadSourceEditors();

    const Settings settings_;
    std::vector<std::shared_ptr<TagEditor>> nonAtomicImportedEditors_;
    std::map<std::filesystem::path, std::vector<std::string>> nonAtomicReadWarnings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ImportTagEditorsTask::ProcessError error);

} // namespace corvane
