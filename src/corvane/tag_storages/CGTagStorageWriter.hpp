#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_storages/TagStorageWriter.hpp"
#include "corvane/tag_storages/TagStorageWriterSettings.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <filesystem>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// Writes the edited values of storages in process, through the image I/O engine (exiv2), file by
/// file. Only tags with an image I/O name are written (see `TagNameMapping`); an edited tag
/// without one is left out, and that is the only trace of it. A cleared tag is removed from the
/// file.
///
/// What a write does to a file: its metadata blocks are rewritten with the edits merged in, and
/// everything else (the image data above all, which is never decoded or re-encoded; every tag the
/// write doesn't name) stays as it was. The new file replaces the old one atomically and keeps its
/// permissions and extended attributes; a file that can't be written stays byte-identical.
///
/// Construct, call `write()` once, discard. Files are written one after the other on the calling
/// thread; `progress()` may be read from any thread.
class CGTagStorageWriter : public TagStorageWriter {
public:
    /// Where the result of each source goes, by source.
    using Destinations = std::unordered_map<std::filesystem::path, std::filesystem::path>;

    /// The engine's settings: what it works on, how, and the callbacks it reports through.
    class Settings : public TagStorageWriterSettings<CGTagStorageWriter> {
    public:
        Settings() = default;
        /// Settings that write these storages.
        explicit Settings(std::vector<TagStorage> storages) : storages_(std::move(storages)) {}

        /// What to write, in order.
        ///@{
        const std::vector<TagStorage>& storages() const { return storages_; }
        void setStorages(std::vector<TagStorage> storages) { storages_ = std::move(storages); }
        ///@}
        /// Where to put the result for a file, instead of over the file itself; the file is then
        /// left as it is, and the target's folder is created when missing.
        ///@{
        const Destinations& destinations() const { return destinations_; }
        void setDestinations(Destinations destinations) { destinations_ = std::move(destinations); }
        ///@}

    private:
        std::vector<TagStorage> storages_;
        Destinations destinations_;
    };
    /// The settings type, by the name the engines share.
    using ProcessSettings = Settings;

    /// Why a write failed; `message` gives the text.
    enum class WriteError {
        emptyResult,
        sourceIsInvalid,
        typeIsUnknown,
        destinationIsInvalid,
        metadataAreEmpty,
        finalizeFailed,
        dataAreEmpty
    };

    /// Thrown by the writer: `what()` is the case's message, `url()` the file it concerns.
    class WriteException : public CaseException<WriteError> {
    public:
        /// The failure, and the file it concerns.
        WriteException(WriteError error, std::filesystem::path url)
            : CaseException<WriteError>(error), url_(std::move(url)) {}
        /// The file the failure concerns.
        const std::filesystem::path& url() const { return url_; }

    private:
        std::filesystem::path url_;
    };

    /// An engine for one run with these settings.
    explicit CGTagStorageWriter(Settings settings);
    CGTagStorageWriter(const CGTagStorageWriter&) = delete;
    CGTagStorageWriter& operator=(const CGTagStorageWriter&) = delete;

    /// The settings the engine was made with.
    const Settings& settings() const { return settings_; }
    /// The share of storages done, 0...1.
    double progress() const override;

    /// Writes every storage in order. The first failure ends the write: files written before it
    /// stay written. Throws `WriteException`: `sourceIsInvalid` when the file can't be opened,
    /// `typeIsUnknown` when its format can't be told, `destinationIsInvalid` when the engine doesn't
    /// write that format (it writes JPEG, PNG, TIFF, WebP and JPEG 2000; not HEIC, GIF, nor camera
    /// raw files, whose maker notes exiv2 can damage), `finalizeFailed` when the metadata can't be
    /// written into it, `dataAreEmpty` when nothing came out; `UnwritableValueError` when an
    /// edited value can't be written as it stands (the file is left alone); and
    /// FileError when the result can't be stored.
    void write() override;

    /// Writes one storage: the file itself, or each file of a folder.
    virtual void write(const TagStorage& storage);

private:
    void writeFile(const TagStorage& storage, const std::filesystem::path& url);

    AtomicPropertyQueue atomic_;
    double nonAtomicProgress_ = 0;
    Settings settings_;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(CGTagStorageWriter::WriteError error);

} // namespace corvane
