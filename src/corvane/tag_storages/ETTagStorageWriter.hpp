#pragma once

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/tag_storages/IPTCDigestUpdate.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_storages/TagStorageWriter.hpp"
#include "corvane/tag_storages/TagStorageWriterSettings.hpp"
#include "corvane/utilities/CaseException.hpp"
#include "corvane/utilities/Error.hpp"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

class TagItem;

/// Writes the edited values of storages with ExifTool, in place. The values of all files of a write go
/// into one temporary JSON import file read with "-json=", one group per file, all in one ExifTool run;
/// a folder storage gets a file and a group of its own that applies to every file of the folder. A
/// tag to remove travels as a deletion marker of the writer. Finder resources (dates, Finder tags) are
/// written afterwards without ExifTool. ExifTool writes each file to a temporary copy first and puts the
/// result back into the same file (same inode, extended attributes, owner and mode) only once it is complete,
/// so a file it can't write stays as it was.
///
/// Construct, call `write()` once, discard. `write()` blocks; progress callbacks come from the thread
/// that runs ExifTool.
class ETTagStorageWriter : public TagStorageWriter {
public:
    /// The engine's settings: what it works on, how, and the callbacks it reports through.
    class Settings : public TagStorageWriterSettings<ETTagStorageWriter> {
    public:
        Settings() = default;
        /// Settings that write these storages.
        explicit Settings(std::vector<TagStorage> storages);

        /// What to write.
        ///@{
        const std::vector<TagStorage>& storages() const { return storages_; }
        void setStorages(std::vector<TagStorage> storages) { storages_ = std::move(storages); }
        ///@}
        /// Where the result of a source goes. Carried for engines that write copies; this engine
        /// always writes in place and doesn't read it.
        ///@{
        const std::unordered_map<std::filesystem::path, std::filesystem::path>& destinations() const {
            return destinations_;
        }
        void setDestinations(std::unordered_map<std::filesystem::path, std::filesystem::path> destinations) {
            destinations_ = std::move(destinations);
        }
        ///@}
        /// Let ExifTool fix maker-note offsets while writing ("-F").
        ///@{
        bool enableCorrection() const { return enableCorrection_; }
        void setEnableCorrection(bool value) { enableCorrection_ = value; }
        ///@}
        /// Declare IPTC as UTF-8 in files that declare no character set, when IPTC is written.
        ///@{
        bool forceIPTCUTF8() const { return forceIPTCUTF8_; }
        void setForceIPTCUTF8(bool value) { forceIPTCUTF8_ = value; }
        ///@}
        /// What to do with the Photoshop IPTC digest.
        ///@{
        IPTCDigestUpdate forceIPTCDigest() const { return forceIPTCDigest_; }
        void setForceIPTCDigest(IPTCDigestUpdate value) { forceIPTCDigest_ = value; }
        ///@}
        /// Let ExifTool go on past minor errors ("-m").
        ///@{
        bool ignoreMinorErrors() const { return ignoreMinorErrors_; }
        void setIgnoreMinorErrors(bool value) { ignoreMinorErrors_ = value; }
        ///@}

    private:
        std::vector<TagStorage> storages_;
        std::unordered_map<std::filesystem::path, std::filesystem::path> destinations_;
        bool enableCorrection_ = false;
        bool forceIPTCUTF8_ = true;
        IPTCDigestUpdate forceIPTCDigest_ = IPTCDigestUpdate::ignore;
        bool ignoreMinorErrors_ = false;
    };
    /// The settings type, by the name the engines share.
    using ProcessSettings = Settings;

    /// Why a write failed before ExifTool ran, or why its output couldn't be read; `message` gives
    /// the text.
    enum class WriteError {
        copySourceImageFailed,
        jsonEncodingFailed,
        jsonFileCreationFailed,
        sourceFileIsMissing,
        outputIsMissing,
    };

    /// Thrown by the writer; `what()` is the message of the case.
    using WriteException = CaseException<WriteError>;

    /// What a write did to one storage's file (or folder), from what ExifTool reported for it.
    struct FileOutcome {
        /// What happened to the file.
        enum class Status {
            written,   ///< changed
            unchanged, ///< nothing to write, or ExifTool found nothing to change
            failed,    ///< ExifTool reported an error for it, or a stopped run never reached it; the
                       ///< file is as it was
            unknown,   ///< the run was stopped (time limit, cancel, crash) while on this file
        };
        std::filesystem::path url;         ///< the file or folder
        Status status = Status::unchanged; ///< what the write did to it
        /// ExifTool's reason for `failed`, or the run's failure when it was stopped.
        std::string reason;
        /// ExifTool's warnings about the file (minor errors it passed over among them).
        std::vector<std::string> warnings;
    };

    /// A file that ExifTool could not write. `what()` is "PATH: REASON", as in
    /// "/photos/a.jpg: Corrupted JPEG image".
    class FileWriteException : public Error {
    public:
        /// The file and ExifTool's reason.
        FileWriteException(std::filesystem::path url, std::string reason);
        /// The file that was not written; ExifTool's reason.
        ///@{
        const std::filesystem::path& url() const { return url_; }
        const std::string& reason() const { return reason_; }
        ///@}

    private:
        std::filesystem::path url_;
        std::string reason_;
    };

    /// An engine for one run with these settings.
    explicit ETTagStorageWriter(Settings settings);
    ETTagStorageWriter(const ETTagStorageWriter&) = delete;
    ETTagStorageWriter& operator=(const ETTagStorageWriter&) = delete;

    /// The settings the engine was made with.
    const Settings& settings() const { return settings_; }
    /// The progress of the ExifTool run under way (or ended).
    double progress() const override;
    /// The ExifTool process of the run.
    const ETProcess& process() const { return process_; }

    /// Writes `settings().storages()` between the start and end callbacks. Throws WriteException when
    /// the import file can't be made (no file has changed then), or ETOutputException when ExifTool
    /// reports errors that the settings don't excuse (files of the run before the failing one may have
    /// changed). `onEndHandler` is only called on success.
    void write() override;
    /// The same work on another list of storages, without the start and end callbacks.
    void writeStorages(const std::vector<TagStorage>& storages);
    /// One outcome per storage of the last write, in the storages' order; also after a failure.
    /// A storage with an edited value that can't be written as it stands (see
    /// `UnwritableValueError`) isn't sent to ExifTool: its outcome is `failed`, the reason naming
    /// the tag.
    const std::vector<FileOutcome>& outcomes() const { return outcomes_; }

    /// The import record of one storage: "SourceFile" (the file, or "*" for every file of a folder),
    /// then the values to write under their "Stream:Key" names, the IPTC character set and digest
    /// entries the settings ask for, and XMP:XMPToolkit (`KitSettings::xmpToolkit()`) when XMP is
    /// written. Nothing when the storage has nothing for ExifTool to write.
    std::optional<nlohmann::ordered_json> importRecord(const TagStorage& storage) const;

    /// The imported value that deletes a tag: a random token of this writer, which no value to write
    /// can be, so that "-" and every other text are written as typed.
    const std::string& deletionMarker() const { return deletionMarker_; }

    /// The file ExifTool acts on: the temporary copy of a photo-library asset, else the source's file
    /// or folder.
    static std::filesystem::path targetURL(const TagStorage& storage);
    /// Batch 0 holds every file storage, in order; each folder storage follows in a batch of its own.
    static std::vector<std::vector<const TagStorage*>> splitStorages(const std::vector<TagStorage>& storages);

private:
    /// The import form of one value: the deletion marker for a blank text, an array for a list.
    nlohmann::ordered_json importEntry(const TagItem& item, const std::string& string) const;
    void fillTagValues(const TagStorage& storage, nlohmann::ordered_json& values) const;
    void updateIPTCCharSet(const TagStorage& storage, nlohmann::ordered_json& values) const;
    void updateIPTCDigest(const TagStorage& storage, nlohmann::ordered_json& values) const;
    void updateXMPToolkit(nlohmann::ordered_json& values) const;
    static std::filesystem::path createJSONFile(const nlohmann::ordered_json& records);
    struct ReportFiles;
    void addArgs(ETInput& input, const std::filesystem::path& jsonURL, const ReportFiles& reports,
                 const std::vector<const TagStorage*>& storages) const;
    void collectOutcomes(const std::vector<TagStorage>& storages, const std::vector<bool>& sentToExifTool,
                         const ReportFiles& reports);

    ETProcess process_;
    Settings settings_;
    std::string deletionMarker_;
    std::vector<FileOutcome> outcomes_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ETTagStorageWriter::WriteError error);

} // namespace corvane
