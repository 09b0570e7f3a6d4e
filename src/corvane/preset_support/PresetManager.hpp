#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/preset_support/EquatableObject.hpp"
#include "corvane/preset_support/PresetGroup.hpp"
#include "corvane/preset_support/PresetItem.hpp"

#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// The user's preset library: the groups of presets and the current selection, kept in the user
/// defaults (KitSettings::userDefaults()) under "QRVPresets".
///
/// Every change that changes something posts didChangeGroupsNotification on the default
/// notification centre, with the manager as sender and the edition under "GroupEdition". Not
/// locked: the library belongs to the main thread, and notifications are posted on the caller's
/// thread.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class PresetManager : public std::enable_shared_from_this<PresetManager> {
public:
    /// Rows inserted: `indexes` are their places in the new list.
    struct InsertGroups {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const InsertGroups&, const InsertGroups&) = default;
    };
    /// Rows removed: `indexes` were their places in the old list.
    struct RemoveGroups {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const RemoveGroups&, const RemoveGroups&) = default;
    };
    /// The whole list changed: reload every row.
    struct ReloadGroups {
        friend bool operator==(const ReloadGroups&, const ReloadGroups&) = default;
    };
    /// The selection changed, the rows didn't.
    struct ReloadSelection {
        friend bool operator==(const ReloadSelection&, const ReloadSelection&) = default;
    };
    /// What a didChangeGroups notification says changed.
    using GroupEdition = std::variant<InsertGroups, RemoveGroups, ReloadGroups, ReloadSelection>;

    /// Posted on every change of the groups or the selection, with the edition under
    /// `groupEditionKey`.
    ///@{
    static constexpr std::string_view didChangeGroupsNotification =
        "PresetManagerDidChangeGroupsNotification";
    static constexpr std::string_view groupEditionKey = "GroupEdition";
    ///@}
    /// The key of the user defaults the library is stored under.
    static constexpr std::string_view presetsUserDefaultsKey = "QRVPresets";
    /// The edition carried by a didChangeGroups notification; nothing for any other one.
    static std::optional<GroupEdition> groupEdition(const Notification& note);

    /// The application's library.
    static const std::shared_ptr<PresetManager>& shared();
    /// An empty library of its own (for tools and tests); `shared()` is the one the application uses.
    static std::shared_ptr<PresetManager> create();

    /// The groups, in order.
    const std::vector<PresetGroupRef>& groups() const { return groups_; }
    /// A change counts when the array holds other objects, whatever their contents.
    void setGroups(std::vector<PresetGroupRef> groups);
    /// Applies `change` to a copy of the groups and sets the result.
    template <class F> void modifyGroups(F&& change) {
        auto groups = groups_;
        change(groups);
        setGroups(std::move(groups));
    }
    /// The selected groups or presets.
    ///@{
    const std::vector<EquatableObjectRef>& selectedItems() const { return selectedItems_; }
    void setSelectedItems(std::vector<EquatableObjectRef> items);
    ///@}
    /// Applies `change` to a copy of the selection and sets the result.
    template <class F> void modifySelectedItems(F&& change) {
        auto items = selectedItems_;
        change(items);
        setSelectedItems(std::move(items));
    }

    /// Inserts before `index` (at most the count of groups).
    void insertGroups(std::vector<PresetGroupRef> groups, std::size_t index);
    void removeGroups(const IndexSet& indexes); ///< an empty set does nothing; posts a `RemoveGroups` edition
    /// Adds the preset at the end of the last group, or in a new unnamed group when there is none.
    void appendPresetItem(PresetItemRef item);
    /// Selects just this group or preset; anything else (or nothing) empties the selection.
    void selectItem(const EquatableObjectRef& item);

    /// Replaces the groups by those stored in the user defaults, if any. A stored library that
    /// can't be read throws (as PresetFile::fromJSON does) and leaves the groups as they are.
    void loadFromDefaults();
    /// Stores the groups in the user defaults.
    void saveToDefaults() const;

private:
    PresetManager() = default;

    void informsDidChangeGroups(GroupEdition edition);

    std::vector<PresetGroupRef> groups_;
    std::vector<EquatableObjectRef> selectedItems_;
};

/// The shared handle the library lives in.
using PresetManagerRef = std::shared_ptr<PresetManager>;

} // namespace corvane
