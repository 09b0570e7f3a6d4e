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
    enum class Format { gpx, kml };

    struct Settings {
        /// An editor of a folder; it recurses into subfolders as it is set to.
        std::shared_ptr<ETTagEditor> editor;
        /// The file to write.
        std::optional<std::filesystem::path> outputURL;
        Format format = Format::gpx;
        /// Let ExifTool go on past minor errors; absent counts as true.
        std::optional<bool> ignoreMinorErrors;
    };

    enum class ProcessError {
        editorIsNotAFolder,
        engineIsNotAvailable,
        formatFileIsMissing,
        outputURLIsMissing
    };

    /// "GPX", "KML".
    static std::string rawValue(Format format);
    static std::optional<Format> format(std::string_view rawValue);
    /// The print-format file of a format, as ExifTool reads it ("-p"): the library's resource named
    /// "gpx" or "kml". Throws formatFileIsMissing when the library has none.
    static std::string formatFile(Format format);
    /// The document for a folder without any file: the format's head and tail lines.
    static std::string emptyDocument(Format format);

    explicit FolderExportGeotagTask(Settings settings);
    static std::shared_ptr<FolderExportGeotagTask> create(Settings settings);

    const Settings& settings() const { return settings_; }

    Priority priority() const override { return Priority::reading; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

std::string_view message(FolderExportGeotagTask::ProcessError error);

} // namespace corvane
