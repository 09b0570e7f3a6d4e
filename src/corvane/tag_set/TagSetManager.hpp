#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/tag_set/TagSet.hpp"

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

/// The process-wide keeper of the tag sets that the tables show: per domain (the application, the
/// photo-library extension) one user set, which the user arranges, and one default set, which the
/// application registers and `restore` goes back to.
///
/// At launch the application calls `registerDefault` for each domain (usually with
/// `TagSet::forImages()` or `TagSet::forVideos()`), then `reload`. Every change goes through `edit`,
/// which posts `willEditSetsNotification` before and `didEditSetsNotification` after, on the main
/// queue's thread (waiting for it when called from another thread, so the host must be draining
/// `MainQueue::shared()` then), and a table observing them reacts before the call returns. Changes last only
/// after `save`, which stores the user set in the user defaults (`KitSettings::userDefaults()`) under the
/// domain's key.
///
/// The maps are guarded by `atomic()`; the block of an edit runs in its exclusive pass and must not
/// call back into the manager. Edits are meant to come from the main thread: two edits of one
/// domain racing from two threads may lose one of them.
class TagSetManager {
public:
    /// Who owns a tag set: the application's own views, or the photo-library extension.
    enum class Domain { application, photosExtension };
    /// Both domains.
    static constexpr std::array<Domain, 2> allDomains{Domain::application, Domain::photosExtension};
    /// "Application", "PhotosExtension".
    static std::string_view label(Domain domain);
    /// "QRVTagSetApplication", "QRVTagSetPhotosExtension".
    static std::string_view userDefaultsKey(Domain domain);
    /// The domain whose label is `label`, case ignored; nothing for another text.
    static std::optional<Domain> domain(std::string_view label);

    /// Posted before and after every edit of a domain's set, on the main queue's thread, with the
    /// domain under `domainKey`.
    ///@{
    static constexpr std::string_view willEditSetsNotification = "TagSetManagerWillEditSetsNotification";
    static constexpr std::string_view didEditSetsNotification = "TagSetManagerDidEditSetsNotification";
    ///@}
    /// User-info key of both notifications; the value is a `Domain`.
    static constexpr std::string_view domainKey = "DomainKey";
    /// The domain of one of the two notifications; nothing without user info, key or `Domain` value.
    static std::optional<Domain> domain(const Notification& note);

    /// The manager the tables observe; lives as long as the process.
    static TagSetManager& shared();

    TagSetManager() = default;
    virtual ~TagSetManager() = default;
    TagSetManager(const TagSetManager&) = delete;
    TagSetManager& operator=(const TagSetManager&) = delete;

    /// The guard of the sets.
    AtomicPropertyQueue& atomic() { return atomic_; }

    /// The registered default, or an empty set.
    virtual TagSet defaultTagSet(Domain domain) const;
    /// Stores the default; posts nothing.
    virtual void registerDefault(Domain domain, TagSet defaultTagSet);
    /// The user set, or an empty set before the first `reload` or edit.
    virtual TagSet tagSet(Domain domain) const;

    /// Takes the user set from the user defaults, or the default when nothing (or empty data) is
    /// stored. A stored set that can't be read throws `TagSet::DecodingError` and changes nothing.
    virtual void reload(Domain domain);
    /// Replaces the user set by the default (an empty set when none is registered), unsaved.
    virtual void restore(Domain domain);
    /// Stores the user set in the user defaults; nothing when the domain has no user set yet.
    virtual void save(Domain domain);

    /// The one gate of every change: posts the will-notification, gives the current user set to
    /// `block` and keeps what it returns, posts the did-notification. Both notifications are posted
    /// even when nothing changed.
    virtual void edit(Domain domain, const std::function<TagSet(TagSet)>& block);

    /// Inserts before `index` (at most the count; beyond it stops the process).
    virtual void insert(Domain domain, const std::vector<TagSet::FlatEntry>& entries, std::size_t index);
    /// After the last entry.
    virtual void append(Domain domain, const std::vector<TagSet::FlatEntry>& entries);
    virtual void remove(Domain domain, const IndexSet& indexes); ///< an empty set does nothing
    /// Replaces the entry at `index` (which must exist; beyond the end stops the process).
    virtual void replace(Domain domain, const TagSet::FlatEntry& entry, std::size_t index);
    /// Gives the section at `index` a new heading; a name entry or an index past the end is left
    /// alone, though the notifications are posted.
    virtual void rename(Domain domain, std::size_t sectionIndex, const std::string& text);
    /// Moves the entries so that they stand, in their order, before the entry that was at `toOffset`
    /// (see `moveElements`).
    virtual void move(Domain domain, const IndexSet& indexes, std::size_t toOffset);
    /// Swaps with the next entry, if any.
    virtual void moveDown(Domain domain, std::size_t index);
    /// Swaps with the previous entry, if any.
    virtual void moveUp(Domain domain, std::size_t index);

    /// Post the will- and did-edit notifications of `domain`; `edit` calls them on the main queue's
    /// thread.
    ///@{
    virtual void postsWillEditTagSets(Domain domain);
    virtual void postsDidEditTagSets(Domain domain);
    ///@}

private:
    void post(std::string_view name, Domain domain);

    AtomicPropertyQueue atomic_;
    std::unordered_map<Domain, TagSet> nonAtomicUserSets_;
    std::unordered_map<Domain, TagSet> nonAtomicDefaultSets_;
};

} // namespace corvane
