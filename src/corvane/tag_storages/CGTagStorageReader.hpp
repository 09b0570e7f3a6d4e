#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_storages/TagStorageReader.hpp"
#include "corvane/tag_storages/TagStorageReaderSettings.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <cstddef>
#include <filesystem>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads storages in process, through the image I/O engine (exiv2), with no external program: the
/// fast reader for browsing folders of photos. It reads only the tags that have an image I/O name
/// (see `TagNameMapping`) and only files whose format the engine opens, and fills the same
/// `TagStorage` values under the same tag names as the ExifTool reader, so that nothing above the
/// engine sees which one read a file.
///
/// Construct, call `readStorages()` once, discard. Files are read one after the other on the
/// calling thread; `progress()` may be read from any thread.
class CGTagStorageReader : public TagStorageReader {
public:
    /// The engine's settings: what it works on, how, and the callbacks it reports through.
    class Settings : public TagStorageReaderSettings<CGTagStorageReader> {
    public:
        Settings() = default;
        /// Settings that read these sources.
        explicit Settings(std::vector<TagStorageSource> sources) : sources_(std::move(sources)) {}

        /// What to read, in order.
        ///@{
        const std::vector<TagStorageSource>& sources() const { return sources_; }
        void setSources(std::vector<TagStorageSource> sources) { sources_ = std::move(sources); }
        ///@}

    private:
        std::vector<TagStorageSource> sources_;
    };
    /// The settings type, by the name the engines share.
    using ProcessSettings = Settings;

    /// Why a read failed; `message` gives the text.
    enum class ReadError { emptyResult, sourceIsInvalid, metadataAreEmpty };

    /// Thrown by the reader: `what()` is the case's message, `url()` the file it concerns.
    class ReadException : public CaseException<ReadError> {
    public:
        /// The failure, and the file it concerns.
        ReadException(ReadError error, std::filesystem::path url)
            : CaseException<ReadError>(error), url_(std::move(url)) {}
        /// The file the failure concerns.
        const std::filesystem::path& url() const { return url_; }

    private:
        std::filesystem::path url_;
    };

    /// An engine for one run with these settings.
    explicit CGTagStorageReader(Settings settings);
    CGTagStorageReader(const CGTagStorageReader&) = delete;
    CGTagStorageReader& operator=(const CGTagStorageReader&) = delete;

    /// The settings the engine was made with.
    const Settings& settings() const { return settings_; }
    /// The share of sources done, 0...1.
    double progress() const override;

    /// Reads one file into a storage: the values of every property that has a tag name, the
    /// families they belong to, and the file system's values. Throws `ReadException` with
    /// `sourceIsInvalid` when the file can't be opened (missing, damaged, a format the engine
    /// doesn't read) and `metadataAreEmpty` when its metadata can't be decoded.
    virtual TagStorage read(const TagStorageSource& source) const;

    /// One storage per source, under its URL (a repeated URL keeps its last reading); a folder
    /// source gets an empty storage. The first file that can't be read ends the read with its
    /// `ReadException`; no storage is delivered then and `onEndHandler` isn't called.
    TagStorageMap readStorages() override;

protected:
    /// Sets the progress to `unit` sources done out of all, then calls `onProgressHandler`.
    virtual void incrementProgress(std::size_t unit);
    /// Read the folder sources (each gets an empty storage); read the files, one by one, through
    /// the image engine.
    ///@{
    virtual void readFolderStorages(TagStorageMap& storages);
    virtual void readFileStorages(TagStorageMap& storages);
    ///@}

private:
    AtomicPropertyQueue atomic_;
    double nonAtomicProgress_ = 0;
    Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(CGTagStorageReader::ReadError error);

} // namespace corvane
