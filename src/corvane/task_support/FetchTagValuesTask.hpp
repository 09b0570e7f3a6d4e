#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads one tag of many files in one ExifTool run, much faster than opening editors, and hands the
/// values to a callback: each as ExifTool prints it (numbers as their text, a list joined with
/// ", "), under the file's URL as the caller gave it. A file without the tag, or that ExifTool
/// couldn't read, has no entry. The callback is called exactly once, on the thread that runs the
/// task, also when the result is empty or the run failed; the failure is then in `errors()`.
class FetchTagValuesTask : public AbstractTask {
public:
    /// The values by file, as the caller named the file.
    using Values = std::map<std::filesystem::path, std::string>;
    /// Receives the values once, on the thread that runs the task.
    using Completion = std::function<void(const Values&)>;

    /// The task's settings: what it works on and how. The task keeps its own copy.
    struct Settings {
        std::vector<TagStorageSource> sources; ///< the files to read
        TagName tagName;                       ///< the tag to read
        Completion completion;                 ///< called once with the values
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { sourcesAreMissing, completionIsMissing, outputIsInvalid };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit FetchTagValuesTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<FetchTagValuesTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }

    /// The values of ExifTool's JSON output ("-j") for `sources`: each object's one value other
    /// than "SourceFile", under the source it names. Throws outputIsInvalid when the text isn't an
    /// array of objects.
    static Values parseOutput(std::string_view data, const std::vector<TagStorageSource>& sources);

    Priority priority() const override { return Priority::reading; }
    std::string title() const override;

protected:
    void internProcess() override;

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(FetchTagValuesTask::ProcessError error);

} // namespace corvane
