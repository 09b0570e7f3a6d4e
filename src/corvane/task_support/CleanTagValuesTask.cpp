#include "corvane/task_support/CleanTagValuesTask.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_editor/CGTagEditor.hpp"
#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/task_support/detail/EditorFiles.hpp"
#include "corvane/utilities/KitToolbox.hpp"

#include <algorithm>
#include <iterator>
#include <set>

namespace corvane {

std::string_view message(CleanTagValuesTask::ProcessError error) {
    switch (error) {
    case CleanTagValuesTask::ProcessError::unauthorizedAccess:
        return "Unauthorized access";
    case CleanTagValuesTask::ProcessError::engineIsNotAvailable:
        return "Engine is not available";
    case CleanTagValuesTask::ProcessError::editorIsNotSupported:
        return "Editor is not supported";
    }
    return {};
}

CleanTagValuesTask::CleanTagValuesTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<CleanTagValuesTask> CleanTagValuesTask::create(Settings settings) {
    return std::make_shared<CleanTagValuesTask>(std::move(settings));
}

std::string CleanTagValuesTask::title() const {
    return TL("CleanTagValuesTaskTitle");
}

std::vector<std::string> CleanTagValuesTask::cleanArguments(const std::vector<TagStream>& streams) {
    const std::set<TagStream> chosen(streams.begin(), streams.end());
    const auto& all = TagStream::allCases();
    if (std::all_of(all.begin(), all.end(), [&](const TagStream& s) { return chosen.contains(s); }))
        return {"-All="};
    std::vector<std::string> arguments;
    for (const auto& stream : streams)
        arguments.push_back("-" + stream.rawValue() + ":ALL=");
    return arguments;
}

void CleanTagValuesTask::internProcess() {
    if (!engineOption().contains(EngineOption::exifTool()))
        throw TaskError<ProcessError>(ProcessError::engineIsNotAvailable);
    const auto& editors = settings_.editors;
    // Every editor of a file, folder or asset can be cleaned by ExifTool; one without an engine can't.
    for (const auto& editor : editors)
        if (!std::dynamic_pointer_cast<ETTagEditor>(editor) &&
            !std::dynamic_pointer_cast<CGTagEditor>(editor))
            throw TaskError<ProcessError>(ProcessError::editorIsNotSupported);
    if (editors.empty() || settings_.streams.empty()) return;
    auto library = detail::prepareAssets(editors, TaskError<ProcessError>(ProcessError::unauthorizedAccess));

    const auto arguments = cleanArguments(settings_.streams);
    ETInput input;
    input.addArguments(editors,
                       [&](const std::shared_ptr<TagEditor>& editor, ETInput::ArgumentsMaker& maker) {
                           const auto storage = editor->storage();
                           maker.correction = settings_.enableCorrection.value_or(true);
                           maker.ignoreMinorErrors = settings_.ignoreMinorErrors.value_or(true);
                           // In place: each file keeps its inode, extended attributes, owner and mode.
                           maker.overwriteInPlace = true;
                           maker.recurseSubfolders = storage.recurseSubfolders().value_or(false);
                           maker.filePathFilter = storage.filePathFilter();
                           maker.password = storage.source().password();
                           maker.arguments = arguments;
                           maker.url = detail::targetURL(*editor);
                           maker.soloRun = true;
                       });
    std::weak_ptr<AbstractTask> weakTask = weak_from_this();
    input.onProgressHandler = [weakTask, this](ETProcess& process) {
        if (auto task = weakTask.lock()) setProgress(process.progress());
    };

    bool cleaned = false;
    failable([&] {
        ETProcess::runOnSharedPool(input).throwIfErrors();
        cleaned = true;
    });
    if (cleaned) {
        // The file system's attributes (name, size, dates) stay whatever ExifTool was asked.
        std::vector<TagStream> streams;
        std::copy_if(settings_.streams.begin(), settings_.streams.end(), std::back_inserter(streams),
                     [](const TagStream& stream) { return stream.rawValue() != "File"; });
        // One session: the views get one flush of the history for the whole group.
        EditionManager::Session session;
        for (const auto& editor : editors)
            editor->cleanStorage(streams);
    } else {
        // Some files may have been cleaned and others not: the files say which.
        failable([&] { detail::reloadFileEditors(editors); });
    }
    if (library) library->updateAndReplaceAssets(editors);
}

} // namespace corvane
