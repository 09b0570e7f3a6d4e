#pragma once

#include "corvane/tag_edition/AbstractTask.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_value/MediaType.hpp"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Writes the current tags of editors (their edits included, saved or not) to sidecar files, one
/// per editor, beside each file or into one folder. JSON and CSV sidecars are written by this
/// library's own writers; the sidecar formats that ExifTool creates (XMP, EXV, MIE, EXIF, ICC, VRD)
/// by one ExifTool run for all editors, each into a fresh file that then replaces the sidecar as a
/// whole, so that an existing sidecar never keeps stale values and a failed write leaves it as it
/// was.
///
/// Sidecars take the lower-case extension of their format ("photo.xmp"), the spelling other photo
/// tools look for. Two editors that map to the same sidecar (same base name, one folder): the
/// later editor in the list is written, the earlier one passed over.
class ExportTagValuesTask : public AbstractTask {
public:
    /// The task's settings: what it works on and how. The task keeps its own copy.
    class Settings {
    public:
        Settings() = default;
        /// Settings with these fields; the others keep their defaults.
        Settings(std::vector<std::shared_ptr<TagEditor>> editors, std::optional<std::string> sidecarType)
            : editors(std::move(editors)), sidecarType(std::move(sidecarType)) {}

        /// What to export.
        std::vector<std::shared_ptr<TagEditor>> editors;
        /// A folder for all sidecars; none puts each beside its file.
        std::optional<std::filesystem::path> destinationURL;
        /// The sidecar's format key in any case: "csv", "json", "xmp"...
        std::optional<std::string> sidecarType;
    };

    /// The failures the task records in `errors()`, each as a `TaskError<ProcessError>` whose
    /// `what()` is `message(error)`.
    enum class ProcessError { engineIsNotAvailable, sidecarTypeIsMissing, sidecarTypeIsUnknown };

    /// A pending task. Applications use `create`: a task must live in a std::shared_ptr.
    explicit ExportTagValuesTask(Settings settings);
    /// A pending task, to hand to `TaskManager::shared().add()` or to run with `perform()`.
    static std::shared_ptr<ExportTagValuesTask> create(Settings settings);

    /// The settings the task was made with.
    const Settings& settings() const { return settings_; }
    std::string title() const override;
    bool isProgressIndeterminate() const override { return false; }

    /// CSV and JSON always; with ExifTool among `KitSettings`' engines, the formats of kind sidecar.
    static MediaType::Set supportedSidecarTypes();
    /// The URL's extension names a format of `supportedSidecarTypes()`.
    static bool canImportSidecar(const std::filesystem::path& url);

    /// Where the sidecar of `editor` goes: in `destinationURL` under the file's base name, or
    /// beside the file with its extension replaced; the extension is the format's, lower-cased.
    std::filesystem::path sidecarURL(const TagEditor& editor, const MediaType& type) const;
    /// The editors that are exported, in order: one per sidecar URL, the last that maps to it.
    std::vector<std::shared_ptr<TagEditor>> exportedEditors(const MediaType& type) const;

protected:
    void internProcess() override;

    /// Writes one sidecar with the library's own writer; all sidecars of a type in one ExifTool
    /// run.
    ///@{
    virtual void exportSidecarWithWriter(const MediaType& type, const std::shared_ptr<TagEditor>& editor);
    virtual void exportSidecarWithExifTool(const MediaType& type);
    ///@}
    /// An ICC file is the profile block of each file, as ExifTool gives it ("-ICC_Profile -b"):
    /// it can't be made from tags. A file without a profile is an error that names the sidecar.
    virtual void exportICCProfiles(const MediaType& type);

private:
    const Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ExportTagValuesTask::ProcessError error);

} // namespace corvane
