#include "corvane/task_support/FileExportToPhotosTask.hpp"

#include "corvane/photos_library/PhotoLibrary.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/utilities/Error.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <system_error>

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(FileExportToPhotosTask::ProcessError error) {
    switch (error) {
    case FileExportToPhotosTask::ProcessError::unauthorizedAccess:
        return "Unauthorized access";
    }
    return {};
}

FileExportToPhotosTask::FileExportToPhotosTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<FileExportToPhotosTask> FileExportToPhotosTask::create(Settings settings) {
    return std::make_shared<FileExportToPhotosTask>(std::move(settings));
}

std::vector<std::string> FileExportToPhotosTask::createdAssets() const {
    return atomic().read([&] { return nonAtomicCreatedAssets_; });
}

std::string FileExportToPhotosTask::title() const {
    return TL("FileExportToPhotosTaskTitle");
}

void FileExportToPhotosTask::internProcess() {
    const auto library = PhotoLibrary::shared();
    if (!library || !library->requestAuthorization())
        throw TaskError<ProcessError>(ProcessError::unauthorizedAccess);

    // What a photo library holds: images and movies. The rest is reported file by file.
    std::vector<fs::path> files;
    for (const auto& url : settings_.urls) {
        failable([&] {
            std::error_code error;
            if (!fs::is_regular_file(url, error)) throw Error(url.string() + ": no such file");
            const auto type = MediaType::type(url);
            if (!type || (type->kind() != MediaKind::image && type->kind() != MediaKind::movie))
                throw Error(url.string() + ": not an image or a movie");
            files.push_back(url);
        });
    }
    if (files.empty()) return;

    std::vector<std::string> created;
    library->performChangesAndWait([&](PhotoLibrary::ChangeRequest& request) {
        created.clear();
        for (const auto& file : files)
            created.push_back(request.createAsset({file, {}, std::nullopt, std::nullopt}));
    });
    atomic().write([&] { nonAtomicCreatedAssets_ = std::move(created); });
}

} // namespace corvane
