#include "corvane/task_support/SyncTagValuesTask.hpp"

#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/exiftool_wrapper/ETOutput.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_edition/TaskError.hpp"
#include "corvane/tag_editor/TagEditorArrayEditions.hpp"
#include "corvane/tag_editor/TagEditorEditions.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {

std::string_view message(SyncTagValuesTask::ProcessError error) {
    switch (error) {
    case SyncTagValuesTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    }
    return {};
}

SyncTagValuesTask::SyncTagValuesTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<SyncTagValuesTask> SyncTagValuesTask::create(Settings settings) {
    return std::make_shared<SyncTagValuesTask>(std::move(settings));
}

std::string SyncTagValuesTask::title() const {
    return TL("SyncTagValuesTaskTitle");
}

std::vector<std::string> SyncTagValuesTask::copyArguments() const {
    std::vector<std::string> arguments;
    for (const TagSyncPair& pair : settings_.tagCopies) {
        // Appended to: GCC 12 warns, wrongly (-Wrestrict), on "-" + text.
        std::string argument = "-";
        argument += pair.to().rawValue();
        argument += '<';
        argument += pair.from().rawValue();
        arguments.push_back(std::move(argument));
    }
    return arguments;
}

void SyncTagValuesTask::internProcess() {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    if (settings_.tagCopies.empty()) return;
    std::vector<std::shared_ptr<TagEditor>> files, folders;
    for (const auto& editor : settings_.editors)
        (editor->isFolder() ? folders : files).push_back(editor);
    if (!files.empty()) processFileEditors(files);
    if (!folders.empty()) processFolderEditors(folders);
}

void SyncTagValuesTask::processFileEditors(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    // One session: the whole copy is one change event for the views.
    EditionManager::Session session;
    std::vector<std::pair<const TagItem*, const TagItem*>> pairs;
    for (const TagSyncPair& pair : settings_.tagCopies) {
        const TagItem* from = TagItem::find(pair.from());
        const TagItem* to = TagItem::find(pair.to());
        if (from && to) pairs.emplace_back(from, to);
    }
    TagEditorArrayEditions(editors).editConcurrently([&](TagEditor& editor) {
        TagEditorEditions editions(editor);
        for (const auto& [from, to] : pairs)
            editions.copyValue(*from, *to);
    });
}

void SyncTagValuesTask::processFolderEditors(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    const std::vector<std::string> arguments = copyArguments();
    const bool ignoreMinorErrors = settings_.ignoreMinorErrors.value_or(true);
    ETInput input;
    std::vector<TagStorage> storages;
    for (const auto& editor : editors)
        storages.push_back(editor->storage());
    input.addArguments(storages, [&](const TagStorage& storage, ETInput::ArgumentsMaker& maker) {
        maker.ignoreMinorErrors = ignoreMinorErrors;
        // In place: the files keep their inode, extended attributes, owner and mode.
        maker.overwriteInPlace = true;
        maker.arguments = arguments;
        maker.recurseSubfolders = storage.recurseSubfolders().value_or(false);
        maker.filePathFilter = storage.filePathFilter();
        maker.password = storage.source().password();
        maker.url = storage.source().url();
        maker.soloRun = true;
    });
    std::weak_ptr<AbstractTask> weakTask = weak_from_this();
    input.onProgressHandler = [weakTask, this](ETProcess& process) {
        if (auto task = weakTask.lock()) setProgress(process.progress());
    };
    failable([&] { ETProcess::runOnSharedPool(input).throwIfErrors(); });
}

} // namespace corvane
