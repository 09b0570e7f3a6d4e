#include "corvane/task_support/SaveTagEditorsTask.hpp"

#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/photos_library/PhotoLibrary.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_editor/CGTagEditor.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_storages/CGTagStorageWriter.hpp"
#include "corvane/tag_storages/ETTagStorageWriter.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <algorithm>

namespace corvane {

std::string_view message(SaveTagEditorsTask::ProcessError error) {
    switch (error) {
    case SaveTagEditorsTask::ProcessError::unauthorizedAccess:
        return "Unauthorized access";
    case SaveTagEditorsTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    case SaveTagEditorsTask::ProcessError::editorIsNotSupported:
        return "Editor is not supported";
    }
    return {};
}

SaveTagEditorsTask::SaveTagEditorsTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<SaveTagEditorsTask> SaveTagEditorsTask::create(Settings settings) {
    return std::make_shared<SaveTagEditorsTask>(std::move(settings));
}

std::string SaveTagEditorsTask::title() const {
    return TL("SaveTagEditorsTaskTitle");
}

void SaveTagEditorsTask::internProcess() {
    const auto& editors = settings_.editors;
    std::vector<std::shared_ptr<TagEditor>> cgEditors, etEditors;
    for (const auto& editor : editors) {
        if (std::dynamic_pointer_cast<CGTagEditor>(editor))
            cgEditors.push_back(editor);
        else if (std::dynamic_pointer_cast<ETTagEditor>(editor))
            etEditors.push_back(editor);
    }
    // A plain editor has no engine: nothing is written, no editor is flushed.
    if (cgEditors.size() + etEditors.size() != editors.size())
        throw TaskError<ProcessError>(ProcessError::editorIsNotSupported);

    askPhotosLibrary(editors);
    // Past `askPhotosLibrary`, a library is present whenever an asset is among the editors.
    auto library = PhotoLibrary::shared();
    if (library) library->prepareAssetsForUpdate(editors);

    // Errors of one group don't stop the other, and assets are replaced in any case.
    failable([&] { saveWithExifTool(etEditors); });
    failable([&] { saveWithCoreImage(cgEditors); });
    subprocessQueue().waitUntilAllOperationsAreFinished();

    if (library) library->updateAndReplaceAssets(editors);
}

void SaveTagEditorsTask::askPhotosLibrary(const std::vector<std::shared_ptr<TagEditor>>& editors) const {
    const bool hasAsset =
        std::any_of(editors.begin(), editors.end(), [](const auto& editor) { return editor->isAsset(); });
    if (!hasAsset) return;
    auto library = PhotoLibrary::shared();
    if (!library || !library->requestAuthorization())
        throw TaskError<ProcessError>(ProcessError::unauthorizedAccess);
}

std::vector<TagStorage>
SaveTagEditorsTask::flushEditors(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    // One session: the views get one flush of the history for the whole group.
    EditionManager::Session session;
    return parallelMap(editors,
                       [](const std::shared_ptr<TagEditor>& editor) { return editor->flushChanges(); });
}

void SaveTagEditorsTask::writeStorages(std::vector<TagStorage> storages) {
    ETTagStorageWriter::Settings writerSettings(std::move(storages));
    writerSettings.setEnableCorrection(settings_.enableCorrection.value_or(false));
    writerSettings.setForceIPTCUTF8(settings_.forceIPTCUTF8.value_or(true));
    writerSettings.setForceIPTCDigest(settings_.forceIPTCDigest);
    writerSettings.setIgnoreMinorErrors(settings_.ignoreMinorErrors.value_or(true));
    // Progress comes from the thread that runs ExifTool; the task is held weakly.
    std::weak_ptr<AbstractTask> weakTask = weak_from_this();
    writerSettings.setOnProgressHandler([weakTask, this](ETTagStorageWriter& writer) {
        if (auto task = weakTask.lock()) setProgress(writer.progress());
    });
    ETTagStorageWriter writer(std::move(writerSettings));
    try {
        writer.writeStorages(writer.settings().storages());
    } catch (const ETOutputException& e) {
        recordOutcomes(writer.outcomes());
        // Each file that ExifTool failed to write (or a stopped run didn't reach) is an error of
        // its own, naming the file and the reason; the failure of the run itself, and one that
        // names no file, stays an error too.
        bool named = false;
        for (const auto& outcome : writer.outcomes()) {
            if (outcome.status != ETTagStorageWriter::FileOutcome::Status::failed) continue;
            failable([&] { throw ETTagStorageWriter::FileWriteException(outcome.url, outcome.reason); });
            named = true;
        }
        const bool stopped =
            e.error() != ETOutputError::exifToolErrors && e.error() != ETOutputError::exifToolFailed;
        if (!named || stopped) throw;
        return;
    }
    recordOutcomes(writer.outcomes());
}

void SaveTagEditorsTask::recordOutcomes(const std::vector<ETTagStorageWriter::FileOutcome>& outcomes) {
    std::lock_guard lock(outcomesMutex_);
    outcomes_.insert(outcomes_.end(), outcomes.begin(), outcomes.end());
}

std::vector<ETTagStorageWriter::FileOutcome> SaveTagEditorsTask::fileOutcomes() const {
    std::lock_guard lock(outcomesMutex_);
    return outcomes_;
}

void SaveTagEditorsTask::saveWithExifTool(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    if (editors.empty()) return;
    auto storages = flushEditors(editors);
    failable([&] { writeStorages(std::move(storages)); });
}

void SaveTagEditorsTask::saveWithCoreImage(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    if (editors.empty()) return;
#ifdef CORVANE_HAVE_EXIV2
    const auto storages = flushEditors(editors);
    // One subprocess per file, up to eight at a time; each failure is that file's own error.
    const double step = 1.0 / static_cast<double>(storages.size());
    // Each file's outcome is recorded as the ExifTool writer's are, so that callers count both alike.
    mapSubprocess(storages, [this, step](const TagStorage& storage) {
        using Outcome = ETTagStorageWriter::FileOutcome;
        Outcome outcome{storage.source().url(), Outcome::Status::written, {}, {}};
        try {
            CGTagStorageWriter writer(CGTagStorageWriter::Settings({storage}));
            writer.write();
            if (storage.writtenValues().empty()) outcome.status = Outcome::Status::unchanged;
        } catch (const std::exception& e) {
            outcome.status = Outcome::Status::failed;
            outcome.reason = e.what();
            recordOutcomes({outcome});
            incrementProgress(step);
            throw;
        }
        recordOutcomes({outcome});
        incrementProgress(step);
    });
#else
    // This build has no image I/O engine; the editors are left as they are, unflushed.
    throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
#endif
}

} // namespace corvane
