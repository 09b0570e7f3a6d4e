#include "corvane/task_support/DeleteItunMoviTask.hpp"

#include "corvane/exiftool_wrapper/AtomicParsley.hpp"
#include "corvane/task_support/detail/EditorFiles.hpp"
#include "corvane/utilities/KitToolbox.hpp"

namespace corvane {

std::string_view message(DeleteItunMoviTask::ProcessError error) {
    switch (error) {
    case DeleteItunMoviTask::ProcessError::unauthorizedAccess:
        return "Unauthorized access";
    case DeleteItunMoviTask::ProcessError::noFileEditor:
        return "No file editor";
    }
    return {};
}

DeleteItunMoviTask::DeleteItunMoviTask(Settings settings) : settings_(std::move(settings)) {}

std::shared_ptr<DeleteItunMoviTask> DeleteItunMoviTask::create(Settings settings) {
    return std::make_shared<DeleteItunMoviTask>(std::move(settings));
}

std::string DeleteItunMoviTask::title() const {
    return TL("DeleteItunMoviTaskTitle");
}

std::vector<std::filesystem::path> DeleteItunMoviTask::changedFiles() const {
    return atomic().read([this] { return nonAtomicChangedFiles_; });
}

void DeleteItunMoviTask::internProcess() {
    detail::EditorList files;
    for (const auto& editor : settings_.editors)
        if (!editor->isFolder()) files.push_back(editor);
    if (files.empty()) throw TaskError<ProcessError>(ProcessError::noFileEditor);
    auto library = detail::prepareAssets(files, TaskError<ProcessError>(ProcessError::unauthorizedAccess));

    // Each movie is a subprocess: its failure is its own error, and the others go on.
    const double step = 1.0 / static_cast<double>(files.size());
    mapSubprocess(files, [this, step](const std::shared_ptr<TagEditor>& editor) {
        struct Count {
            DeleteItunMoviTask& task;
            double step;
            ~Count() { task.incrementProgress(step); }
        } count{*this, step};
        const auto url = detail::targetURL(*editor);
        if (AtomicParsley::deleteiTunMOVI(url))
            atomic().write([&] { nonAtomicChangedFiles_.push_back(url); });
    });
    subprocessQueue().waitUntilAllOperationsAreFinished();

    failable([&] { detail::reloadFileEditors(files); });
    if (library) library->updateAndReplaceAssets(files);
}

} // namespace corvane
