#pragma once

#include "corvane/helpers/AtomicPropertyQueue.hpp"
#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/photos_scripting/PhotosRemoteProfile.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// The user's Photos profiles, in the order the user gives them, and the selected ones.
///
/// Kept like the keyword library: `saveToDefaults` writes "QRVPhotosAppRemoteProfiles.data" beside
/// the user defaults file (`KitSettings::userDefaults()`), atomically and readable by its owner
/// only, and only when that file can't be written stores the text under
/// `profilesUserDefaultsKey` itself.
///
/// Every change that changes something posts `didChangeProfilesNotification` on the default
/// notification centre, on the calling thread, with the manager as sender and the
/// `ProfileEdition` under `profileEditionKey`. Lists compare by identity: a list of other objects
/// is a change, whatever they hold. The two lists are guarded by `atomic`, so any thread may read
/// or change them; changes of the profiles themselves belong to the main thread.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class PhotosRemoteManager : public std::enable_shared_from_this<PhotosRemoteManager> {
public:
    /// Rows inserted: `indexes` are their places in the new list.
    struct InsertProfiles {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const InsertProfiles&, const InsertProfiles&) = default;
    };
    /// Rows removed: `indexes` were their places in the old list.
    struct RemoveProfiles {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const RemoveProfiles&, const RemoveProfiles&) = default;
    };
    /// The profiles that were at `indexes` now stand, in their order, before the profile that was
    /// at `toOffset` (or at the end).
    struct MoveProfiles {
        IndexSet indexes;         ///< rows, in ascending order
        std::size_t toOffset = 0; ///< the place before which they now stand
        friend bool operator==(const MoveProfiles&, const MoveProfiles&) = default;
    };
    /// The whole list changed: reload every row.
    struct ReloadProfiles {
        friend bool operator==(const ReloadProfiles&, const ReloadProfiles&) = default;
    };
    /// The selection changed, the rows didn't.
    struct ReloadSelection {
        friend bool operator==(const ReloadSelection&, const ReloadSelection&) = default;
    };
    /// What a didChangeProfiles notification says changed.
    using ProfileEdition =
        std::variant<InsertProfiles, RemoveProfiles, MoveProfiles, ReloadProfiles, ReloadSelection>;

    /// Posted on every change of the profiles or the selection, with the edition under
    /// `profileEditionKey`.
    ///@{
    static constexpr std::string_view didChangeProfilesNotification =
        "PhotoAppRemoteManagerDidChangeProfilesNotification";
    static constexpr std::string_view profileEditionKey = "ProfileEdition";
    ///@}
    /// The key of the user defaults the profiles are stored under.
    static constexpr std::string_view profilesUserDefaultsKey = "QRVPhotosAppRemoteProfiles";
    /// The edition carried by a didChangeProfiles notification; nothing for any other one.
    static std::optional<ProfileEdition> profileEdition(const Notification& note);

    /// The application's library.
    static const std::shared_ptr<PhotosRemoteManager>& shared();
    /// An empty library of its own (for tools and tests).
    static std::shared_ptr<PhotosRemoteManager> create();

    virtual ~PhotosRemoteManager() = default;
    PhotosRemoteManager(const PhotosRemoteManager&) = delete;
    PhotosRemoteManager& operator=(const PhotosRemoteManager&) = delete;

    /// A copy: the list may change on another thread meanwhile.
    std::vector<PhotosRemoteProfileRef> profiles() const;
    /// Informs with reloadProfiles when the list holds other objects.
    virtual void setProfiles(std::vector<PhotosRemoteProfileRef> profiles);
    /// Changes a copy and stores it as setProfiles does. Two threads modifying at once may each
    /// miss the other's change: a library edited from several threads uses the index operations.
    template <class F> void modifyProfiles(F&& change) {
        auto profiles = this->profiles();
        change(profiles);
        setProfiles(std::move(profiles));
    }
    /// The selected profiles, in list order.
    std::vector<PhotosRemoteProfileRef> selectedProfiles() const;
    /// Informs with reloadSelection when the list holds other objects.
    virtual void setSelectedProfiles(std::vector<PhotosRemoteProfileRef> profiles);
    /// Applies `change` to a copy of the selection and sets the result.
    template <class F> void modifySelectedProfiles(F&& change) {
        auto profiles = selectedProfiles();
        change(profiles);
        setSelectedProfiles(std::move(profiles));
    }

    /// Inserts before `index`; an index past the end inserts at the end. No profiles: nothing.
    virtual void insertProfiles(std::vector<PhotosRemoteProfileRef> profiles, std::size_t index);
    /// Indexes past the end are ignored; nothing to remove does nothing.
    virtual void removeProfiles(const IndexSet& indexes);
    /// Moves the profiles at `indexes` before the one at `toOffset` (see `moveElements`); an empty
    /// set does nothing.
    virtual void moveProfiles(const IndexSet& indexes, std::size_t toOffset);
    /// Selects just this profile (or nothing).
    virtual void selectProfile(const PhotosRemoteProfileRef& profile);
    /// Posts `didChangeProfilesNotification` with `edition`.
    virtual void informsDidChangeProfiles(ProfileEdition edition);

    /// Replaces the profiles by the stored library when it holds other objects (which it always
    /// does once read). Nothing stored leaves them as they are; a stored library that can't be
    /// read throws PhotosRemoteProfileFile::DecodingError (or JSONNestingError, or
    /// FileError for an unreadable file) and changes nothing.
    virtual void loadFromDefaults();
    /// Stores the profiles. Throws FileError only when neither the file nor the defaults
    /// can take them.
    virtual void saveToDefaults() const;

protected:
    PhotosRemoteManager() = default;

private:
    /// Stores `profiles` in `list` (one of the two below) when they are other objects.
    bool replaceList(std::vector<PhotosRemoteProfileRef>& list, std::vector<PhotosRemoteProfileRef> profiles);

    AtomicPropertyQueue atomic;
    std::vector<PhotosRemoteProfileRef> nonAtomicProfiles;
    std::vector<PhotosRemoteProfileRef> nonAtomicSelectedProfiles;
};

/// The shared handle the manager lives in.
using PhotosRemoteManagerRef = std::shared_ptr<PhotosRemoteManager>;

} // namespace corvane
