#include "corvane/task_support/ExportTagValuesTask.hpp"

#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/sidecar_support/CSVSidecarWriter.hpp"
#include "corvane/sidecar_support/JSONSidecarWriter.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/tag_value/MediaKind.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/task_support/detail/SidecarNames.hpp"
#include "corvane/utilities/KitSettings.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <algorithm>
#include <unordered_map>

namespace corvane {

namespace fs = std::filesystem;

using detail::asciiLowercased;
using detail::asciiUppercased;
using detail::scratchURLBeside;

std::string_view message(ExportTagValuesTask::ProcessError error) {
    switch (error) {
    case ExportTagValuesTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    case ExportTagValuesTask::ProcessError::sidecarTypeIsMissing:
        return "Sidecar type is missing";
    case ExportTagValuesTask::ProcessError::sidecarTypeIsUnknown:
        return "Sidecar type is unknown";
    }
    return {};
}

ExportTagValuesTask::ExportTagValuesTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<ExportTagValuesTask> ExportTagValuesTask::create(Settings settings) {
    return std::make_shared<ExportTagValuesTask>(std::move(settings));
}

std::string ExportTagValuesTask::title() const {
    return TL("ExportTagValuesTaskTitle");
}

MediaType::Set ExportTagValuesTask::supportedSidecarTypes() {
    MediaType::Set types{MediaType::typeCSV(), MediaType::typeJSON()};
    if (KitSettings::shared().engineOption().contains(EngineOption::exifTool()))
        types.merge(MediaType::types({MediaKind::sidecar}));
    return types;
}

bool ExportTagValuesTask::canImportSidecar(const fs::path& url) {
    auto type = MediaType::type(upperPathExtension(url));
    return type && supportedSidecarTypes().contains(*type);
}

fs::path ExportTagValuesTask::sidecarURL(const TagEditor& editor, const MediaType& type) const {
    const fs::path url = editor.source().url();
    const std::string extension = asciiLowercased(type.format());
    if (settings_.destinationURL) return *settings_.destinationURL / (url.stem().string() + "." + extension);
    return fs::path(url).replace_extension(extension);
}

std::vector<std::shared_ptr<TagEditor>> ExportTagValuesTask::exportedEditors(const MediaType& type) const {
    std::unordered_map<fs::path, std::size_t> last;
    for (std::size_t i = 0; i < settings_.editors.size(); ++i)
        last[sidecarURL(*settings_.editors[i], type)] = i;
    std::vector<std::shared_ptr<TagEditor>> result;
    for (std::size_t i = 0; i < settings_.editors.size(); ++i)
        if (last[sidecarURL(*settings_.editors[i], type)] == i) result.push_back(settings_.editors[i]);
    return result;
}

void ExportTagValuesTask::internProcess() {
    if (!settings_.sidecarType) throw TaskError<ProcessError>(ProcessError::sidecarTypeIsMissing);
    auto type = MediaType::type(asciiUppercased(*settings_.sidecarType));
    if (!type || !supportedSidecarTypes().contains(*type))
        throw TaskError<ProcessError>(ProcessError::sidecarTypeIsUnknown);
    if (type->is(MediaType::typeCSV()) || type->is(MediaType::typeJSON())) {
        const auto editors = exportedEditors(*type);
        const double step = editors.empty() ? 1.0 : 1.0 / static_cast<double>(editors.size());
        const MediaType sidecarType = *type;
        mapSubprocess(editors, [this, sidecarType, step](const std::shared_ptr<TagEditor>& editor) {
            // Progress counts each editor, written or failed.
            struct Step {
                ExportTagValuesTask* task;
                double step;
                ~Step() { task->incrementProgress(step); }
            } counted{this, step};
            exportSidecarWithWriter(sidecarType, editor);
        });
    } else if (type->is(MediaType::typeICC())) {
        exportICCProfiles(*type);
    } else {
        exportSidecarWithExifTool(*type);
    }
}

void ExportTagValuesTask::exportSidecarWithWriter(const MediaType& type,
                                                  const std::shared_ptr<TagEditor>& editor) {
    // A folder has no values of its own to export.
    if (editor->isFolder()) return;
    const TagStorage storage = editor->storage();
    if (type.is(MediaType::typeCSV()))
        CSVSidecarWriter().write(storage, sidecarURL(*editor, type));
    else
        JSONSidecarWriter().write(storage, sidecarURL(*editor, type));
}

void ExportTagValuesTask::exportSidecarWithExifTool(const MediaType& type) {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    std::vector<TagStorage> storages;
    std::vector<fs::path> sidecars;
    for (const auto& editor : exportedEditors(type)) {
        if (editor->isFolder()) continue;
        const fs::path sidecar = sidecarURL(*editor, type);
        std::error_code error;
        fs::create_directories(sidecar.parent_path(), error);
        TagStorage storage{TagStorageSource(scratchURLBeside(sidecar))};
        storage.setTemporaryURL(temporaryURL(pathExtension(sidecar)));
        // The editor's current values become the written values of the new file; what ExifTool
        // can't put into this format it passes over.
        const TagStorage current = editor->storage();
        for (const TagName& name : current.currentTagNames()) {
            const TagItem* item = TagItem::find(name);
            if (!item || !item->isWritable() || name.stream() == TagStream::streamFile) continue;
            if (auto value = current.currentValue(name); value && !value->empty())
                storage.unsafeSetValue(value, name);
        }
        storages.push_back(std::move(storage));
        sidecars.push_back(sidecar);
    }
    if (storages.empty()) {
        setProgress(1);
        return;
    }

    ETTagStorageWriter::Settings writerSettings(storages);
    writerSettings.setIgnoreMinorErrors(true);
    std::weak_ptr<AbstractTask> weakTask = weak_from_this();
    writerSettings.setOnProgressHandler([weakTask, this](ETTagStorageWriter& writer) {
        if (auto task = weakTask.lock()) setProgress(writer.progress());
    });
    ETTagStorageWriter writer(std::move(writerSettings));
    std::exception_ptr runError;
    try {
        writer.writeStorages(writer.settings().storages());
    } catch (const std::exception&) {
        runError = std::current_exception();
    }

    // Each finished file replaces its sidecar; a file ExifTool couldn't make is an error that
    // names the sidecar, not the scratch file.
    using Status = ETTagStorageWriter::FileOutcome::Status;
    const auto& outcomes = writer.outcomes();
    bool named = false;
    for (std::size_t i = 0; i < storages.size(); ++i) {
        const fs::path scratch = storages[i].source().url();
        const bool failed = i < outcomes.size() && outcomes[i].status == Status::failed;
        std::error_code error;
        if (!failed && fs::exists(scratch)) {
            fs::rename(scratch, sidecars[i], error);
            if (!error) continue;
        }
        fs::remove(scratch, error);
        std::string reason = "Nothing to write";
        if (error)
            reason = error.message();
        else if (i < outcomes.size() && !outcomes[i].reason.empty())
            reason = outcomes[i].reason;
        failable([&] { throw ETTagStorageWriter::FileWriteException(sidecars[i], reason); });
        named = true;
    }
    if (runError && !named) failable([&] { std::rethrow_exception(runError); });
    setProgress(1);
}

void ExportTagValuesTask::exportICCProfiles(const MediaType& type) {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    // Binary output may end without a line break: a mark of our own tells where the profile ends.
    static constexpr std::string_view profileEnd = "#corvane-profile-end";
    const auto editors = exportedEditors(type);
    const double step = editors.empty() ? 1.0 : 1.0 / static_cast<double>(editors.size());
    for (const auto& editor : editors) {
        if (!editor->isFolder()) {
            failable([&] {
                const fs::path sidecar = sidecarURL(*editor, type);
                ETInput input;
                input.addArguments(std::vector{editor->source()}, [](const TagStorageSource& source,
                                                                     ETInput::ArgumentsMaker& maker) {
                    maker.ignoreMinorErrors = true;
                    maker.arguments = {"-ICC_Profile", "-b", "-echo3", std::string(profileEnd)};
                    maker.password = source.password();
                    maker.url = source.url();
                    maker.soloRun = true;
                });
                const ETOutput output = ETProcess::runOnSharedPool(input);
                output.throwIfErrors();
                std::string data = output.data();
                if (const auto end = data.rfind(profileEnd); end != std::string::npos) data.erase(end);
                if (data.empty())
                    throw ETTagStorageWriter::FileWriteException(sidecar, "The file holds no ICC profile");
                std::error_code error;
                fs::create_directories(sidecar.parent_path(), error);
                writeFileAtomically(sidecar, data);
            });
        }
        incrementProgress(step);
    }
    setProgress(1);
}

} // namespace corvane
