#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/tag_storages/TagStorage.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/tag_value/MediaType.hpp"
#include "corvane/tag_value/TagAccess.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace corvane {

class EditionManager;

/// The shared, thread-safe handle on one file, folder or asset. It owns the one live `TagStorage`
/// of its source, guards it with its own `AtomicPropertyQueue`, and reports every changed tag to
/// `EditionManager::shared()`, which batches the changes for the views.
///
/// Editors live in a std::shared_ptr (made by `create`) and compare by identity. Their hash is the
/// hash of the source URL they were made with, so that editors of the same file fall in the same
/// bucket of a container keyed by editor (see `TagEditorHash`, `TagEditorEqual`) while staying
/// different keys. The hash doesn't follow `updateSource`, so an editor keeps finding itself in
/// containers after its file moved.
///
/// Reads are one shared pass on the guard; changes are one exclusive pass. A change never holds
/// the editor's guard and the manager's guard together, and nothing here blocks on the main thread.
/// The notifications of this class are posted synchronously on the calling thread, after the pass.
///
/// Observers of `didChangeSourceNotification` run on the thread that called `updateSource`. The
/// views' batched notices come through `EditionManager` on the main queue, which the host drains
/// (`MainQueue::shared().drain()` in a tool, the event loop woken by `MainQueue::setWakeHook` in an
/// application).
class TagEditor : public std::enable_shared_from_this<TagEditor> {
public:
    /// Posted by `updateSource`, with the editor (as std::shared_ptr<TagEditor>) as object.
    static constexpr std::string_view didChangeSourceNotification = "TagEditorDidChangeSourceNotification";

    /// A new editor holding a copy of `storage`.
    static std::shared_ptr<TagEditor> create(TagStorage storage);

    virtual ~TagEditor() = default;
    TagEditor(const TagEditor&) = delete;
    TagEditor& operator=(const TagEditor&) = delete;

    /// Identity.
    friend bool operator==(const TagEditor& a, const TagEditor& b) { return &a == &b; }
    /// Hash of the source URL the editor was made with.
    std::size_t hashValue() const { return hashValue_; }

    // --- Reading (each one shared pass)

    /// The edition manager this editor reports its changes to (`EditionManager::shared()`).
    virtual EditionManager& manager() const;
    /// A snapshot copy of the storage.
    virtual TagStorage storage() const;
    /// The file, folder or asset the editor stands for.
    virtual TagStorageSource source() const;
    /// Where a photo-library asset is copied for reading and writing.
    virtual std::filesystem::path temporaryURL() const;
    /// The source's path with the home folder as "~", then the folder suffix: for messages.
    virtual std::string pathDescription() const;
    /// The storage's name description: last path component, with the folder suffix.
    virtual std::string filename() const;
    /// The media type of the source's path extension; a folder gives the folder type.
    virtual std::optional<MediaType> mediaType() const;
    /// Whether the source is a folder (by its empty path extension), a photo-library asset.
    ///@{
    virtual bool isFolder() const;
    virtual bool isAsset() const;
    ///@}
    /// True when an edit is pending, not yet saved.
    virtual bool isEdited() const;
    /// The families found in the source.
    virtual TagStorage::Streams originalStreams() const;
    /// Sorted by TagName order.
    virtual std::vector<TagName> originalTagNames() const;
    /// Names of the tags with a pending edit, and of all tags with an original or a pending value.
    ///@{
    virtual std::vector<TagName> writtenTagNames() const;
    virtual std::vector<TagName> currentTagNames() const;
    ///@}

    /// Whether the tag can be read, changed or created in this source; a subclass may narrow it.
    virtual TagAccess access(const TagName& tagName) const;
    /// Whether the tag can be read, can be changed, has a pending edit.
    /// These ask the storage, never the overridable `access`.
    ///@{
    virtual bool canReadValue(const TagName& tagName) const;
    virtual bool canEditValue(const TagName& tagName) const;
    virtual bool isValueEdited(const TagName& tagName) const;
    ///@}

    /// The value read from the source, the pending edit, and the edit else the original. The empty
    /// string stands for a tag to clear.
    ///@{
    virtual std::optional<std::string> originalValue(const TagName& tagName) const;
    virtual std::optional<std::string> writtenValue(const TagName& tagName) const;
    virtual std::optional<std::string> currentValue(const TagName& tagName) const;
    ///@}

    // --- Changing (each in its own session of the edition manager)

    /// The user-level setter: nothing (restore), the empty string (clear) or a value. A tag that
    /// can't be edited is silently left alone.
    virtual void setValue(const std::optional<std::string>& value, const TagName& tagName);
    /// For engines and copies: sets the value as read from the source. A pending edit equal to it
    /// is dropped.
    virtual void setOriginalValue(const std::optional<std::string>& value, const TagName& tagName);
    /// Writes the written entry directly; always registers the tag.
    virtual void unsafeSetValue(const std::optional<std::string>& value, const TagName& tagName);
    /// Makes an editable tag count as edited with its current value (the empty string when it has
    /// none), so that the next save writes it again, even when that equals the original.
    virtual void forceValue(const TagName& tagName);

    /// Replaces the storage's source, then posts `didChangeSourceNotification`. No session, no
    /// registration: the caller decides when a moved file's editor follows it.
    virtual void updateSource(const TagStorageSource& source);

    /// After a save: written values become originals. Gives the storage as it stood before, and
    /// registers every tag that was written.
    virtual TagStorage flushChanges();
    /// After a re-read: takes the originals of `storage`, keeps the edits; registers the old and
    /// the new original names.
    virtual void reloadValues(const TagStorage& storage);
    /// Removes every tag of these families and registers them.
    virtual void cleanStorage(const std::vector<TagStream>& streams);

    /// "Name:value" lines for every current tag, sorted by name.
    virtual std::string debugDescription() const;
    /// Prints `debugDescription()` to standard output.
    virtual void debugPrint() const;

protected:
    /// A new editor holding `storage`; applications call `create`.
    explicit TagEditor(TagStorage storage);

    /// Makes a `T` (a subclass with a protected constructor) in a std::shared_ptr.
    template <class T, class... Args> static std::shared_ptr<T> makeShared(Args&&... args) {
        struct Enabler : T {
            explicit Enabler(Args&&... a) : T(std::forward<Args>(a)...) {}
        };
        return std::make_shared<Enabler>(std::forward<Args>(args)...);
    }

    /// The guard of the storage: one shared pass per read, one exclusive pass per change.
    AtomicPropertyQueue& atomic() const { return atomic_; }
    /// Unguarded: only inside a pass of `atomic()`.
    ///@{
    TagStorage& nonAtomicStorage() { return nonAtomicStorage_; }
    const TagStorage& nonAtomicStorage() const { return nonAtomicStorage_; }
    ///@}

    /// A shared pass over the storage.
    template <class F> auto readStorage(F&& fn) const {
        return atomic_.read([&] { return fn(std::as_const(nonAtomicStorage_)); });
    }

    /// The frame of every single-tag change: a session is opened, `change` runs on the storage in
    /// one exclusive pass, the tag is registered if `change` reports a change, the session ends.
    void performEdit(const TagName& tagName, const std::function<bool(TagStorage&)>& change);
    /// The same frame for a change that gives the list of tags it touched, registered in order.
    void performListEdit(const std::function<std::vector<TagName>(TagStorage&)>& change);

private:
    mutable AtomicPropertyQueue atomic_;
    TagStorage nonAtomicStorage_;
    const std::size_t hashValue_;
};

/// The shared handle every editor lives in.
using TagEditorRef = std::shared_ptr<TagEditor>;

/// Hash of an editor held by std::shared_ptr: the hash of its source URL, so editors of one file
/// share a bucket. Use with `TagEditorEqual`.
struct TagEditorHash {
    /// The hash of the editor's source URL; 0 for null.
    std::size_t operator()(const std::shared_ptr<TagEditor>& editor) const noexcept {
        return editor ? editor->hashValue() : 0;
    }
};

/// Identity of editors held by std::shared_ptr: only the same object is equal.
struct TagEditorEqual {
    /// The same object.
    bool operator()(const std::shared_ptr<TagEditor>& a, const std::shared_ptr<TagEditor>& b) const noexcept {
        return a.get() == b.get();
    }
};

} // namespace corvane
