#pragma once

#include "corvane/exiftool_wrapper/ETLanguage.hpp"
#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_storages/TagStorageReader.hpp"
#include "corvane/tag_storages/TagStorageReaderSettings.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

class TagItem;

/// Reads storages through ExifTool: all files of the read go to one ExifTool run ("-g0:1 -j"), whose
/// one JSON array is decoded into one storage per file. Values are kept under the catalogue's tag
/// names; tags the catalogue doesn't know are dropped. Folders (sources without path extension) are
/// not read: each gets an empty storage.
///
/// Construct, call `readStorages()` once, discard. `readStorages()` blocks; progress callbacks come
/// from the thread that runs ExifTool.
class ETTagStorageReader : public TagStorageReader {
public:
    /// The engine's settings: what it works on, how, and the callbacks it reports through.
    class Settings : public TagStorageReaderSettings<ETTagStorageReader> {
    public:
        Settings() = default;
        /// Settings that read these sources.
        explicit Settings(std::vector<TagStorageSource> sources);

        /// What to read, in order.
        ///@{
        const std::vector<TagStorageSource>& sources() const { return sources_; }
        void setSources(std::vector<TagStorageSource> sources) { sources_ = std::move(sources); }
        ///@}
        /// Language of ExifTool's output; none keeps ExifTool's default.
        ///@{
        const std::optional<ETLanguage>& language() const { return language_; }
        void setLanguage(std::optional<ETLanguage> language) { language_ = language; }
        ///@}
        /// Unconverted values ("-n").
        ///@{
        bool enableRawValues() const { return enableRawValues_; }
        void setEnableRawValues(bool value) { enableRawValues_ = value; }
        ///@}
        /// Short tag names ("-s").
        ///@{
        bool enableShortTags() const { return enableShortTags_; }
        void setEnableShortTags(bool value) { enableShortTags_ = value; }
        ///@}
        /// No composite tags ("-e").
        ///@{
        bool disableComposite() const { return disableComposite_; }
        void setDisableComposite(bool value) { disableComposite_ = value; }
        ///@}
        /// GPS coordinates as signed decimal degrees.
        ///@{
        bool forceRawLocation() const { return forceRawLocation_; }
        void setForceRawLocation(bool value) { forceRawLocation_ = value; }
        ///@}
        /// Let ExifTool go on past minor errors; a file it can't read then comes back without error,
        /// holding only what the file system tells (its File family values).
        ///@{
        bool ignoreMinorErrors() const { return ignoreMinorErrors_; }
        void setIgnoreMinorErrors(bool value) { ignoreMinorErrors_ = value; }
        ///@}
        /// A tag whose value contains one of these texts is dropped.
        ///@{
        const std::vector<std::string>& bannedValues() const { return bannedValues_; }
        void setBannedValues(std::vector<std::string> values) { bannedValues_ = std::move(values); }
        ///@}
        /// A group whose family 0 or family 1 name contains one of these texts is dropped whole.
        ///@{
        const std::vector<std::string>& bannedStreams() const { return bannedStreams_; }
        void setBannedStreams(std::vector<std::string> streams) { bannedStreams_ = std::move(streams); }
        ///@}

        /// Only these tags, as ExifTool names them ("EXIF:Artist", "IPTC:all"); none (the default)
        /// reads every tag. A file's storage then holds only those of its values: enough for a
        /// caller that looks at or changes these tags alone, and cheaper for ExifTool to produce.
        ///@{
        const std::vector<std::string>& requestedTags() const { return requestedTags_; }
        void setRequestedTags(std::vector<std::string> tags) { requestedTags_ = std::move(tags); }
        ///@}

        /// Replaces both ban lists with the usual ones: binary placeholders, ExifTool's own group,
        /// composite tags and the per-track groups Track0 to Track10.
        void setupDefaultBannedValues();

    private:
        std::vector<TagStorageSource> sources_;
        std::optional<ETLanguage> language_;
        bool enableRawValues_ = false;
        bool enableShortTags_ = false;
        bool disableComposite_ = false;
        bool forceRawLocation_ = false;
        bool ignoreMinorErrors_ = false;
        std::vector<std::string> bannedValues_;
        std::vector<std::string> bannedStreams_;
        std::vector<std::string> requestedTags_;
    };
    /// The settings type, by the name the engines share.
    using ProcessSettings = Settings;

    /// Why a read failed; `message` gives the text.
    enum class ReadError { readerOutputIsEmpty, dataDecodingFailed };

    /// Thrown by the reader; `what()` is the message of the case.
    using ReadException = CaseException<ReadError>;

    /// ExifTool's warnings per file, under the source's URL, in the order it gave them.
    using FileWarnings = std::map<std::filesystem::path, std::vector<std::string>>;

    /// An engine for one run with these settings.
    explicit ETTagStorageReader(Settings settings);
    ETTagStorageReader(const ETTagStorageReader&) = delete;
    ETTagStorageReader& operator=(const ETTagStorageReader&) = delete;

    /// The settings the engine was made with.
    const Settings& settings() const { return settings_; }
    /// The progress of the ExifTool run under way (or ended).
    double progress() const override;
    /// The ExifTool process of the run.
    const ETProcess& process() const { return process_; }
    /// What ExifTool warned about the files of the last `readStorages()` ("JPEG format error",
    /// "[minor] ..." for a minor error passed over): the values were read all the same. Files
    /// without a warning are absent.
    const FileWarnings& warnings() const { return warnings_; }

    /// One storage per folder source and per file that ExifTool reported, under the source's URL.
    /// Throws ETOutputException when ExifTool fails or reports errors that the settings don't excuse,
    /// nlohmann::json::parse_error when its output isn't JSON, and ReadException(dataDecodingFailed)
    /// when the JSON has another shape. `onEndHandler` is only called on success.
    TagStorageMap readStorages() override;

    /// Decodes the JSON array that "exiftool -g0:1 -j" prints into storages of `sources`, in the
    /// array's order. Records that name no source are dropped. Throws as `readStorages()` does for
    /// output that isn't JSON or is JSON of another shape.
    std::vector<TagStorage> parseExifToolOutput(std::string_view data,
                                                const std::vector<TagStorageSource>& sources) const;

    /// The catalogue entry of a tag that ExifTool printed under the group "g0:g1" as `rawKey`, or
    /// nullptr. Maker-note tags are searched under the maker's name (g1); the QuickTime "Keys" group
    /// also matches after dropping a leading "Camera" and then a trailing "Equivalent".
    static const TagItem* findTagItem(std::string_view g0, std::string_view g1, std::string_view rawKey);

private:
    std::vector<TagStorage> readFolderStorages() const;
    std::vector<TagStorage> readFileStorages();
    std::vector<TagStorage> decodeOutput(std::string_view data, const std::vector<TagStorageSource>& sources,
                                         FileWarnings& warnings) const;

    ETProcess process_;
    Settings settings_;
    FileWarnings warnings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ETTagStorageReader::ReadError error);

} // namespace corvane
