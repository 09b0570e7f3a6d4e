#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Removes the iTunes movie description atom ("iTunMOVI") from the editors' movies with AtomicParsley,
/// up to eight movies at a time, then reads the editors again. A movie without the atom is left
/// byte-identical; a movie AtomicParsley can't handle (a QuickTime "qt" movie, a file that isn't
/// MPEG-4) is an error of its own, naming the file, and the others go on. Folder editors are passed
/// over. An asset's temporary copy is changed, and then replaces the asset in the photo library.
class DeleteItunMoviTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    struct Settings {
        std::vector<std::shared_ptr<TagEditor>> editors; ///< the files to clean
        /// Kept for the hosts that set it: AtomicParsley has no minor errors to pass over.
        std::optional<bool> ignoreMinorErrors;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { unauthorizedAccess, noFileEditor };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit DeleteItunMoviTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<DeleteItunMoviTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    /// The files the atom was removed from, in no particular order. Complete once the task has ended.
    std::vector<std::filesystem::path> changedFiles() const;

    Priority priority() const override { return Priority::writing; }
    bool isProgressIndeterminate() const override { return false; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const Settings settings_;
    std::vector<std::filesystem::path> nonAtomicChangedFiles_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(DeleteItunMoviTask::ProcessError error);

} // namespace corvane
