#pragma once

#include "corvane/exiftool_wrapper/ETEmbeddedImageReader.hpp"
#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Extracts one embedded image of each editor's file (the EXIF thumbnail, the JPEG of a raw file or
/// its preview) into a folder, up to eight files at a time. Each image is written as JPEG under the
/// file's base name and the image's short name: "IMG_0001_preview.jpg" (see `exportURL`), replacing
/// an earlier export of the same name but never the source file. A file without that image, or whose
/// image can't be decoded or written, is an error of its own, and the others go on.
class FileExportImagesTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    struct Settings {
        std::vector<std::shared_ptr<TagEditor>> editors; ///< the files whose images are written
        /// The embedded image to write.
        ETEmbeddedImageReader::ImageSource source = ETEmbeddedImageReader::ImageSource::previewImage;
        /// The folder to write into; absent writes each image beside its file.
        std::optional<std::filesystem::path> destinationURL;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError {
        engineIsNotAvailable,
        imageDataInvalid,
        folderEditorIsNotSupported,
        imageWritingFailed
    };

    /// A failure of one file: the error's text after the file's path, "PATH: Image writing failed".
    class FileException : public Error {
    public:
        /// A failure of `url`, for `reason`.
        FileException(std::filesystem::path url, const std::string& reason);
        /// The file whose image wasn't written.
        const std::filesystem::path& url() const { return url_; }

    private:
        std::filesystem::path url_;
    };

    /// Where the image of `source` extracted from `url` goes: "<folder>/<base name>_<short name>.jpg",
    /// the folder being `destination` or the file's own.
    static std::filesystem::path exportURL(const std::filesystem::path& url,
                                           ETEmbeddedImageReader::ImageSource source,
                                           const std::optional<std::filesystem::path>& destination);

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit FileExportImagesTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<FileExportImagesTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    /// The images written, in no particular order. Complete once the task has ended.
    std::vector<std::filesystem::path> exportedFiles() const;

    Priority priority() const override { return Priority::writing; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    void exportImage(const TagEditor& editor);

    const Settings settings_;
    std::vector<std::filesystem::path> nonAtomicExportedFiles_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(FileExportImagesTask::ProcessError error);

} // namespace corvane
