#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Writes where the files of a folder were taken as a GPX 1.1 track or a KML 2.2 document, with
/// ExifTool's print formats: one point per file with a GPS position, named after the file, with its
/// GPS time and altitude when it has them, in time order. Files without a position are left out. The
/// output file is written whole or not at all; when ExifTool fails, no file is written. A file that
/// ExifTool can't read is left out, its error in `errors()`, unless minor errors stop the export.
class FolderExportGeotagTask : public AbstractTask {
public:
    /// The track file formats ExifTool can print.
    enum class Format { gpx, kml };

    /// The task's settings: what it works on and how. The task keeps its own copy.
    struct Settings {
        /// An editor of a folder; it recurses into subfolders as it is set to.
        std::shared_ptr<ETTagEditor> editor;
        /// The file to write.
        std::optional<std::filesystem::path> outputURL;
        Format format = Format::gpx; ///< the track file's format
        /// Let ExifTool go on past minor errors; absent counts as true.
        std::optional<bool> ignoreMinorErrors;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError {
        editorIsNotAFolder,
        engineIsNotAvailable,
        formatFileIsMissing,
        outputURLIsMissing
    };

    /// "GPX", "KML".
    static std::string rawValue(Format format);
    /// The format of "GPX" or "KML" in any case; nothing for another text.
    static std::optional<Format> format(std::string_view rawValue);
    /// The print-format file of a format, as ExifTool reads it ("-p"): the library's resource named
    /// "gpx" or "kml". Throws formatFileIsMissing when the library has none.
    static std::string formatFile(Format format);
    /// The document for a folder without any file: the format's head and tail lines.
    static std::string emptyDocument(Format format);

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit FolderExportGeotagTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<FolderExportGeotagTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }

    Priority priority() const override { return Priority::reading; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(FolderExportGeotagTask::ProcessError error);

} // namespace corvane
