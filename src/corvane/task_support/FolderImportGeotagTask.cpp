#include "corvane/task_support/FolderImportGeotagTask.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <algorithm>

namespace corvane {

std::string_view message(FolderImportGeotagTask::ProcessError error) {
    using E = FolderImportGeotagTask::ProcessError;
    switch (error) {
    case E::editorIsNotAFolder:
        return "Editor is not a folder";
    case E::engineIsNotAvailable:
        return "Engine is not available";
    case E::geotagFileIsMissing:
        return "Geotag file is missing";
    case E::geotagFileIsNotSupported:
        return "Geotag file is not supported";
    }
    return {};
}

const std::vector<std::string>& FolderImportGeotagTask::supportedTypes() {
    static const std::vector<std::string> types = {"gpx",     "nmea",    "rmc", "gga", "gll",
                                                   "gsa",     "kml",     "igc", "xml", "tcx",
                                                   "pmgntrk", "ptnthpr", "geo", "log", "txt"};
    return types;
}

FolderImportGeotagTask::FolderImportGeotagTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<FolderImportGeotagTask> FolderImportGeotagTask::create(Settings settings) {
    return std::make_shared<FolderImportGeotagTask>(std::move(settings));
}

std::string FolderImportGeotagTask::title() const {
    return TL("FolderImportGeotagTaskTitle");
}

void FolderImportGeotagTask::internProcess() {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    if (!settings_.editor || !settings_.editor->isFolder())
        throw TaskError<ProcessError>(ProcessError::editorIsNotAFolder);
    if (!settings_.geotagFileURL) throw TaskError<ProcessError>(ProcessError::geotagFileIsMissing);
    std::string extension = pathExtension(*settings_.geotagFileURL);
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    const auto& types = supportedTypes();
    if (std::find(types.begin(), types.end(), extension) == types.end())
        throw TaskError<ProcessError>(ProcessError::geotagFileIsNotSupported);

    const auto storage = settings_.editor->storage();
    ETInput input;
    input.addArguments(std::vector{storage}, [&](const TagStorage& folder, ETInput::ArgumentsMaker& maker) {
        maker.ignoreMinorErrors = settings_.ignoreMinorErrors.value_or(true);
        // In place: each file keeps its inode, extended attributes, owner and mode.
        maker.overwriteInPlace = true;
        // "-P" keeps the files' modification dates.
        maker.arguments = {"-geotag", settings_.geotagFileURL->string(),
                           "-geosync=" + settings_.geoSyncString.value_or(""), "-geotime<DateTimeOriginal",
                           "-P"};
        maker.recurseSubfolders = folder.recurseSubfolders().value_or(false);
        maker.filePathFilter = folder.filePathFilter();
        maker.password = folder.source().password();
        maker.url = folder.source().url();
        maker.soloRun = true;
    });
    std::weak_ptr<AbstractTask> weakTask = weak_from_this();
    input.onProgressHandler = [weakTask, this](ETProcess& process) {
        if (auto task = weakTask.lock()) setProgress(process.progress());
    };
    failable([&] { ETProcess::runOnSharedPool(input).throwIfErrors(); });
}

} // namespace corvane
