#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Adds files to the shared photo library (`PhotoLibrary::shared()`) as new assets, in one block
/// of changes, in the order given. Images and movies (by the format registry's kind) are added;
/// any other file, or a file that isn't there, is an error of its own ("PATH: REASON") and the
/// others are still added. A library that refuses access, or no library, ends the task with
/// `unauthorizedAccess` before anything is added; a failed block adds nothing and is the task's
/// error.
class FileExportToPhotosTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        /// Settings for these files.
        explicit Settings(std::vector<std::filesystem::path> urls) : urls(std::move(urls)) {}
        std::vector<std::filesystem::path> urls; ///< the files to add to the photo library
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { unauthorizedAccess };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit FileExportToPhotosTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<FileExportToPhotosTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    /// The local identifiers of the assets made, in the order of the files added; complete once
    /// the task has ended. Any thread.
    std::vector<std::string> createdAssets() const;

    std::string title() const override;
    bool isProgressIndeterminate() const override { return true; }

protected:
    void internProcess() override;

private:
    const Settings settings_;
    std::vector<std::string> nonAtomicCreatedAssets_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(FileExportToPhotosTask::ProcessError error);

} // namespace corvane
