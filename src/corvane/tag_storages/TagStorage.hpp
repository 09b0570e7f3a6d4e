#pragma once

#include "corvane/converters/DynamicValue.hpp"
#include "corvane/exiftool_wrapper/ETPathFilter.hpp"
#include "corvane/tag_storages/FinderResources.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/tag_value/TagAccess.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <filesystem>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace corvane {

class TagItem;

/// Everything known about one file, folder or photo-library asset: the values read from the
/// source (originals) kept apart from the values written by the user and not yet saved.
///
/// - original value: the entry of `originalValues()`;
/// - written value: the entry of `writtenValues()`; an empty string means "clear the tag";
/// - current value: the written entry if any, else the original entry;
/// - a tag is edited if and only if `writtenValues()` holds it.
///
/// `setValue` and `setOriginalValue` keep these invariants: `writtenValues()` never holds a value
/// that counts as the tag's original, and `originalStreams()` holds the stream of every tag put in
/// with `setOriginalValue`. Optional string arguments carry the two markers: nothing means restore
/// (take the edit back), the empty string means clear.
///
/// A plain value: copying a storage snapshots it. It holds no lock; whoever shares one guards it.
class TagStorage {
public:
    /// Tag values by name, and the set of families found in a source.
    ///@{
    using Values = std::unordered_map<TagName, std::string>;
    using Streams = std::unordered_set<TagStream>;
    ///@}

    /// An empty storage of this source, with a fresh temporary URL of the source's extension.
    explicit TagStorage(TagStorageSource source);

    // --- Fields

    /// The file, folder or asset this storage describes.
    const TagStorageSource& source() const { return source_; }
    /// The same storage, every field kept, for a source that has moved (a renamed file).
    TagStorage movedTo(TagStorageSource source) const {
        TagStorage moved(*this);
        moved.source_ = std::move(source);
        moved.readSourceType();
        return moved;
    }
    /// Where a photo-library asset is copied for reading and writing; made fresh, of the source's
    /// extension, by the constructor.
    ///@{
    const std::filesystem::path& temporaryURL() const { return temporaryURL_; }
    void setTemporaryURL(std::filesystem::path url) { temporaryURL_ = std::move(url); }
    ///@}
    /// For a folder: whether writing descends into subfolders (absent counts as false).
    ///@{
    const std::optional<bool>& recurseSubfolders() const { return recurseSubfolders_; }
    void setRecurseSubfolders(std::optional<bool> value) { recurseSubfolders_ = value; }
    ///@}
    /// For a folder: the filter applied to the listed files.
    ///@{
    const std::optional<ETPathFilter>& filePathFilter() const { return filePathFilter_; }
    void setFilePathFilter(std::optional<ETPathFilter> filter) { filePathFilter_ = std::move(filter); }
    ///@}
    /// The families found in the source.
    const Streams& originalStreams() const { return originalStreams_; }
    ///@{
    /// Replace the families found, or add one.
    void setOriginalStreams(Streams streams) { originalStreams_ = std::move(streams); }
    void insertOriginalStream(const TagStream& stream) { originalStreams_.insert(stream); }
    ///@}
    /// The entries as read from the source, and the user's edits not yet saved (see the class
    /// comment).
    ///@{
    const Values& originalValues() const { return originalValues_; }
    const Values& writtenValues() const { return writtenValues_; }
    ///@}
    /// Whole-dictionary replacement for engines and copies; no invariant is checked.
    void setOriginalValues(Values values) { originalValues_ = std::move(values); }
    /// No invariant is checked either.
    void setWrittenValues(Values values) { writtenValues_ = std::move(values); }

    // --- Identity and descriptions

    /// Whether the source is a folder (by its empty path extension) or a photo-library asset.
    ///@{
    bool isFolder() const { return isFolder_; }
    bool isAsset() const { return source_.isAsset(); }
    ///@}
    /// The media type of the source's path extension; a folder gives the folder type.
    std::optional<MediaType> mediaType() const;
    /// The source's path with the home folder as "~", then the folder suffix.
    std::string pathDescription() const;
    /// The source's last path component, then the folder suffix.
    std::string nameDescription() const;
    /// "Name:value\n" for every current tag, sorted by name.
    std::string debugDescription() const;

    // --- Reading

    /// Keys sorted by TagName order.
    std::vector<TagName> originalTagNames() const;
    std::vector<TagName> writtenTagNames() const; ///< keys sorted by TagName order
    /// Union of both, sorted.
    std::vector<TagName> currentTagNames() const;

    /// The original entry, or nothing when the tag can't be read in this source.
    std::optional<std::string> originalValue(const TagName& tagName) const;
    /// The written entry, without any access test.
    std::optional<std::string> writtenValue(const TagName& tagName) const;
    /// The written entry, else the original one, without any access test.
    std::optional<std::string> currentValue(const TagName& tagName) const;
    /// The current value through the item's converter; a tag without value goes in as nothing.
    DynamicValue currentNativeValue(const TagItem& tagItem) const;

    /// A non-empty value of the stream among the written values, or else among the originals.
    bool hasValues(const TagStream& stream) const;
    /// True when the user has an unsaved edit in the storage; the third for one tag.
    ///@{
    bool hasWrittenValues() const { return !writtenValues_.empty(); }
    bool isEdited() const { return !writtenValues_.empty(); }
    bool isValueEdited(const TagName& tagName) const { return writtenValues_.contains(tagName); }
    ///@}

    // --- Access

    /// Never `n`: a family without declared access is `rw` for tags the source holds, else `r`.
    TagAccess access(const TagName& tagName) const;
    /// Any access but `n`.
    bool canReadValue(const TagName& tagName) const { return access(tagName).canBeRead(); }
    /// A writable catalogue tag whose access allows creating, or changing a tag already held.
    bool canEditValue(const TagName& tagName) const;

    // --- Changing

    /// The user-level setter: refused (false) when the tag can't be edited; true if the storage changed.
    bool setValue(const std::optional<std::string>& value, const TagName& tagName);
    /// For engines that learn a value, and for copies; true if the original changed. A written
    /// entry equal to the new original is dropped: the edit has become the original.
    bool setOriginalValue(const std::optional<std::string>& value, const TagName& tagName);
    /// Writes the written entry directly (nothing removes it); no access test, no comparison.
    bool unsafeSetValue(const std::optional<std::string>& value, const TagName& tagName);
    /// Takes over every current value of `storage` as a written value (or drops the written entry
    /// where it has none). Written entries that `storage` doesn't name stay.
    void unsafeSetValues(const TagStorage& storage);
    /// A typed value through the item's converter into the originals (nothing gives the empty
    /// string); `originalStreams` is left alone.
    void store(const DynamicValue& nativeValue, const TagItem& tagItem);

    /// After a successful save: written values become originals (a blank one removes the tag), and
    /// the written values are emptied. Gives every tag that was written, in name order.
    std::vector<TagName> flushChanges();
    /// After a re-read: originals and streams are taken from `storage`; pending edits stay. Gives the
    /// previous original names followed by the new ones (each in name order, repeats kept).
    std::vector<TagName> reloadValues(const TagStorage& storage);
    /// Removes the originals and edits of every tag of these streams; gives the removed names.
    std::vector<TagName> cleanStorage(const std::vector<TagStream>& streams);

    // --- Engines' support

    /// File name, path, extension and directory of `url`, as originals.
    void completeFileResources(const std::filesystem::path& url);
    /// The file-system attributes as originals of the File family, with the source's name and place.
    void storeFinderResourcesValues(const FinderResources& resources);
    /// The attributes to write back: all absent unless one of the three attribute tags has a written
    /// value that converts; then all three are taken from the current values.
    FinderResources prepareFinderResourcesValues() const;
    /// The files a writer must touch: the file itself (its temporary copy for an asset), or the
    /// supported files of a folder (files without extension left out), through the path filter
    /// if one is set and not empty.
    std::vector<std::filesystem::path> listWriterFileURLs() const;

    /// Every field equal, the temporary URL included.
    friend bool operator==(const TagStorage&, const TagStorage&) = default;

private:
    bool isOriginalValue(const std::optional<std::string>& value, const TagName& tagName) const;
    std::string folderSuffix() const;
    /// Sets the two facts of the source's path below, which every access check asks for.
    void readSourceType();

    TagStorageSource source_;
    bool isFolder_ = false;
    std::optional<MediaType> mediaType_;
    std::filesystem::path temporaryURL_;
    std::optional<bool> recurseSubfolders_;
    std::optional<ETPathFilter> filePathFilter_;
    Streams originalStreams_;
    Values originalValues_;
    Values writtenValues_;
};

} // namespace corvane
