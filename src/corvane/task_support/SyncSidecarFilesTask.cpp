#include "corvane/task_support/SyncSidecarFilesTask.hpp"

#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_value/MediaKind.hpp"
#include "corvane/task_support/ImportTagEditorsTask.hpp"
#include "corvane/task_support/detail/SidecarNames.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <algorithm>

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(SyncSidecarFilesTask::ProcessError error) {
    using E = SyncSidecarFilesTask::ProcessError;
    switch (error) {
    case E::engineIsNotAvailable:
        return "Engine is not available";
    case E::processActionIsUnknown:
        return "Process action is unknwon";
    case E::editorIsNotSupported:
        return "Editor is not supported";
    case E::sidecarTypeIsMissing:
        return "Sidecar type is missing";
    case E::sidecarTypeIsUnknown:
        return "Sidecar type is unknown";
    case E::sourceTypeIsUnknown:
        return "Source type is uknown";
    }
    return {};
}

SyncSidecarFilesTask::MissingSidecarError::MissingSidecarError(fs::path url, fs::path sidecar)
    : Error(url.string() + ": No sidecar " + sidecar.string()), url_(std::move(url)),
      sidecar_(std::move(sidecar)) {}

SyncSidecarFilesTask::SyncSidecarFilesTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<SyncSidecarFilesTask> SyncSidecarFilesTask::create(Settings settings) {
    return std::make_shared<SyncSidecarFilesTask>(std::move(settings));
}

std::string SyncSidecarFilesTask::title() const {
    return TL("SyncSidecarFilesTaskTitle");
}

MediaType::Set SyncSidecarFilesTask::supportedTypes() {
    if (!KitSettings::shared().engineOption().contains(EngineOption::exifTool())) return {};
    return MediaType::types({MediaKind::sidecar});
}

bool SyncSidecarFilesTask::canImportSidecar(const fs::path& url) {
    auto type = MediaType::type(upperPathExtension(url));
    return type && supportedTypes().contains(*type);
}

std::string SyncSidecarFilesTask::parseSidecarFormat() const {
    if (!settings_.sidecarType) return "%f.%e";
    auto type = MediaType::type(detail::asciiUppercased(*settings_.sidecarType));
    if (!type) throw TaskError<ProcessError>(ProcessError::sidecarTypeIsMissing);
    if (!supportedTypes().contains(*type)) throw TaskError<ProcessError>(ProcessError::sidecarTypeIsUnknown);
    // Lower case: on a case-sensitive file system "photo.XMP" would be a file other photo tools
    // don't look for.
    return "%f." + detail::asciiLowercased(type->format());
}

std::string SyncSidecarFilesTask::parseSidecarPath() const {
    const std::string format = parseSidecarFormat();
    if (settings_.sidecarFolderURL) return (*settings_.sidecarFolderURL / format).string();
    return "%d" + format;
}

fs::path SyncSidecarFilesTask::sidecarURL(const fs::path& file) const {
    std::string name = parseSidecarFormat();
    const std::string extension = pathExtension(file);
    auto replace = [&](std::string_view code, const std::string& text) {
        if (auto at = name.find(code); at != std::string::npos) name.replace(at, code.size(), text);
    };
    replace("%f", file.stem().string());
    replace("%e", extension);
    const fs::path folder = settings_.sidecarFolderURL ? *settings_.sidecarFolderURL : file.parent_path();
    return folder / name;
}

void SyncSidecarFilesTask::internProcess() {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    std::vector<TagStorage> storages;
    for (const auto& editor : settings_.editors)
        storages.push_back(editor->storage());
    if (storages.empty()) return;
    const std::string pattern = parseSidecarPath();
    if (settings_.action != Action::importSidecar && settings_.action != Action::exportSidecar)
        throw TaskError<ProcessError>(ProcessError::processActionIsUnknown);
    // A photo-library asset has no file of its own beside which a sidecar could lie.
    if (std::any_of(storages.begin(), storages.end(), [](const TagStorage& s) { return s.isAsset(); }))
        throw TaskError<ProcessError>(ProcessError::editorIsNotSupported);
    const bool importing = settings_.action == Action::importSidecar;

    // On import, each file takes the sidecar that is there, in either case of its extension; a
    // file without one is reported (ExifTool would only warn) and left out of the run.
    std::vector<std::pair<TagStorage, std::string>> jobs;
    for (const TagStorage& storage : storages) {
        if (!importing || storage.isFolder()) {
            jobs.emplace_back(storage, pattern);
            continue;
        }
        const fs::path lower = sidecarURL(storage.source().url());
        fs::path upper = lower;
        upper.replace_extension(detail::asciiUppercased(lower.extension().string()));
        if (fs::exists(lower)) {
            jobs.emplace_back(storage, lower.string());
        } else if (fs::exists(upper)) {
            jobs.emplace_back(storage, upper.string());
        } else {
            failable([&] { throw MissingSidecarError(storage.source().url(), lower); });
        }
    }

    if (!jobs.empty()) {
        ETInput input;
        const bool correction = settings_.enableCorrection.value_or(false);
        const bool ignoreMinorErrors = settings_.ignoreMinorErrors.value_or(true);
        input.addArguments(jobs, [&](const auto& job, ETInput::ArgumentsMaker& maker) {
            const TagStorage& storage = job.first;
            maker.correction = correction;
            maker.ignoreMinorErrors = ignoreMinorErrors;
            maker.recurseSubfolders = storage.recurseSubfolders().value_or(false);
            maker.filePathFilter = storage.filePathFilter();
            maker.password = storage.source().password();
            maker.url = storage.source().url();
            maker.soloRun = true;
            if (importing) {
                // In place: the files keep their inode, extended attributes, owner and mode.
                maker.overwriteInPlace = true;
                maker.arguments = {"-tagsfromfile", job.second};
            } else {
                maker.arguments = {"-o", job.second};
            }
        });
        std::weak_ptr<AbstractTask> weakTask = weak_from_this();
        input.onProgressHandler = [weakTask, this](ETProcess& process) {
            if (auto task = weakTask.lock()) setProgress(process.progress());
        };
        input.onEndHandler = [](ETProcess& process) { process.debugProcessOutputIfEnabled(); };
        failable([&] { ETProcess::runOnSharedPool(input).throwIfErrors(); });
    }
    // Some files may have changed even when the run failed.
    reloadFileEditors(settings_.editors);
    setProgress(1);
}

void SyncSidecarFilesTask::reloadFileEditors(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    std::vector<TagStorageSource> sources;
    std::vector<std::shared_ptr<TagEditor>> files;
    for (const auto& editor : editors) {
        if (editor->isFolder()) continue;
        sources.push_back(editor->source());
        files.push_back(editor);
    }
    if (files.empty()) return;
    ImportTagEditorsTask::Settings settings(std::move(sources));
    settings.sourceEditors = std::move(files);
    settings.ignoreMinorErrors = true;
    auto task = ImportTagEditorsTask::create(std::move(settings));
    task->perform();
    for (const auto& error : task->errors())
        failable([&] { std::rethrow_exception(error); });
}

} // namespace corvane
