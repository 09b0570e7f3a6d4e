#include "corvane/task_support/FileExportImagesTask.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <algorithm>

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(FileExportImagesTask::ProcessError error) {
    using E = FileExportImagesTask::ProcessError;
    switch (error) {
    case E::engineIsNotAvailable:
        return "Engine is not available";
    case E::imageDataInvalid:
        return "Image data invalid";
    case E::folderEditorIsNotSupported:
        return "Folder editor is not supported";
    case E::imageWritingFailed:
        return "Image writing failed";
    }
    return {};
}

FileExportImagesTask::FileException::FileException(fs::path url, const std::string& reason)
    : Error(url.string() + ": " + reason), url_(std::move(url)) {}

fs::path FileExportImagesTask::exportURL(const fs::path& url, ETEmbeddedImageReader::ImageSource source,
                                         const std::optional<fs::path>& destination) {
    const fs::path folder = destination ? *destination : deletingLastPathComponent(url);
    return folder / (url.stem().string() + "_" + ETEmbeddedImageReader::name(source) + ".jpg");
}

FileExportImagesTask::FileExportImagesTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<FileExportImagesTask> FileExportImagesTask::create(Settings settings) {
    return std::make_shared<FileExportImagesTask>(std::move(settings));
}

std::string FileExportImagesTask::title() const {
    return TL("FileExportImagesTaskTitle");
}

std::vector<fs::path> FileExportImagesTask::exportedFiles() const {
    return atomic().read([this] { return nonAtomicExportedFiles_; });
}

void FileExportImagesTask::internProcess() {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    const auto& editors = settings_.editors;
    if (std::any_of(editors.begin(), editors.end(), [](const auto& editor) { return editor->isFolder(); }))
        throw TaskError<ProcessError>(ProcessError::folderEditorIsNotSupported);
    if (editors.empty()) return;
    const double step = 1.0 / static_cast<double>(editors.size());
    mapSubprocess(editors, [this, step](const std::shared_ptr<TagEditor>& editor) {
        struct Count {
            FileExportImagesTask& task;
            double step;
            ~Count() { task.incrementProgress(step); }
        } count{*this, step};
        exportImage(*editor);
    });
}

void FileExportImagesTask::exportImage(const TagEditor& editor) {
    const auto source = editor.source();
    ETEmbeddedImageReader reader;
    reader.imageSource = settings_.source;
    reader.storageSource = source;
    Image image = [&] {
        try {
            return reader.read();
        } catch (const std::exception& e) {
            throw FileException(source.url(), e.what());
        }
    }();
    const auto data = image.jpegData();
    if (!data) throw FileException(source.url(), std::string(message(ProcessError::imageDataInvalid)));
    const auto url = exportURL(source.url(), settings_.source, settings_.destinationURL);
    std::error_code error;
    // The name's suffix keeps it from the source's, but a link or an odd name could still meet it.
    if (fs::equivalent(url, source.url(), error))
        throw FileException(source.url(), std::string(message(ProcessError::imageWritingFailed)));
    try {
        writeFileAtomically(url, *data);
    } catch (const fs::filesystem_error&) {
        throw FileException(url, std::string(message(ProcessError::imageWritingFailed)));
    }
    atomic().write([&] { nonAtomicExportedFiles_.push_back(url); });
}

} // namespace corvane
