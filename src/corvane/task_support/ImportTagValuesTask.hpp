#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

/// Loads the tags of one source into open editors, as edits: a JSON or CSV sidecar through this
/// library's own readers, any other media file or sidecar (XMP, EXV, MIE...) through ExifTool.
/// Nothing is saved: the editors hold the values until the application saves them.
///
/// Only what would change an editor is set: file-system facts (the File family) are never taken,
/// values an editor already holds (in any spelling its converter reads alike) are left alone, and
/// tags an editor can't edit are passed over.
class ImportTagValuesTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        Settings() = default;
        /// Settings with these fields; the others keep their defaults.
        Settings(std::vector<std::shared_ptr<TagEditor>> editors, std::optional<TagStorageSource> source)
            : editors(std::move(editors)), source(std::move(source)) {}

        /// Receivers of the values.
        std::vector<std::shared_ptr<TagEditor>> editors;
        /// The file to read.
        std::optional<TagStorageSource> source;
        /// Never imported.
        std::unordered_set<TagName> excludedTagNames;
        /// Never imported, whatever the tag.
        std::unordered_set<TagStream> excludedTagStreams;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { engineIsNotAvailable, sourceURLIsMissing, sourceTypeIsUnknown };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit ImportTagValuesTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<ImportTagValuesTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    std::string title() const override;
    bool isProgressIndeterminate() const override { return false; }

    /// CSV and JSON always; with ExifTool among `KitSettings`' engines, every format of the five
    /// media kinds as well.
    static MediaType::Set supportedSourceTypes();
    /// The URL's extension names a format of `supportedSourceTypes()`.
    static bool canImportSource(const std::filesystem::path& url);

    /// What describes a file's own image rather than its content, to exclude when the values of
    /// one file go into another: the camera's make and model (they decide how the maker notes are
    /// read), the image's structure (sizes, bits, compression, strips and tiles, resolution,
    /// colour space, orientation) and its embedded previews, in EXIF, XMP and QuickTime.
    static const std::unordered_set<TagName>& imageDescriptionTagNames();
    /// The families that describe a file's own image: the maker notes of every make, the ICC
    /// profile and the file-system facts.
    static const std::unordered_set<TagStream>& imageDescriptionTagStreams();

protected:
    void internProcess() override;

    /// Reads the values through ExifTool; through the library's own reader for a format it knows.
    ///@{
    virtual void importTagValuesWithExifTool(const TagStorageSource& source);
    virtual void importTagValuesWithReader(const TagStorageSource& source, const MediaType& type);
    ///@}

private:
    using Values = std::unordered_map<TagName, std::string>;
    /// Leaves out the excluded names and streams.
    Values filtered(Values values) const;
    /// Sets on each editor the values that change it.
    void applyValues(const Values& values);

    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ImportTagValuesTask::ProcessError error);

} // namespace corvane
