#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/preset_support/PresetContainer.hpp"
#include "corvane/preset_support/PresetItemEntry.hpp"

#include <nlohmann/json_fwd.hpp>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// A preset: a named recipe of tag editions, one entry per tag, applied in order. Equal only to
/// itself (see EquatableObject); lives in a std::shared_ptr made by `create`. Observers learn of
/// every change through the notifications below.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class PresetItem : public PresetContainer<PresetItem, PresetItemEntry> {
public:
    /// One entry: a tag and its edition.
    using Entry = PresetItemEntry;

    /// Entries inserted: `indexes` are their places in the new list.
    struct InsertEntries {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const InsertEntries&, const InsertEntries&) = default;
    };
    /// Rows removed: `indexes` were their places in the old list.
    struct RemoveEntries {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const RemoveEntries&, const RemoveEntries&) = default;
    };
    /// The whole list changed: reload every row.
    struct ReloadEntries {
        friend bool operator==(const ReloadEntries&, const ReloadEntries&) = default;
    };
    /// What a didChangeEntries notification says changed.
    using EntryEdition = std::variant<InsertEntries, RemoveEntries, ReloadEntries>;

    /// Posted on a new name or detail; on a change of the entries, with the edition under
    /// `entryEditionKey`.
    ///@{
    static constexpr std::string_view didChangeInfoNotification = "PresetItemDidChangeInfoNotification";
    static constexpr std::string_view didChangeEntriesNotification = "PresetItemDidChangeEntriesNotification";
    static constexpr std::string_view entryEditionKey = "EntryEdition";
    ///@}
    /// The edition carried by a didChangeEntries notification; nothing for any other one.
    static std::optional<EntryEdition> entryEdition(const Notification& note) { return listEdition(note); }

    /// A preset of these entries, in order.
    static std::shared_ptr<PresetItem> create(std::string name, std::string detail,
                                              std::vector<Entry> entries);
    /// An empty name and detail, no entries.
    static std::shared_ptr<PresetItem> create();
    /// Reads {"name", "detail", "entries"}; all three keys are required. Throws the JSON library's
    /// errors, std::invalid_argument or PresetEdition::CodingException.
    static std::shared_ptr<PresetItem> fromJSON(const nlohmann::ordered_json& j);
    /// The JSON form `fromJSON` reads.
    nlohmann::ordered_json toJSON() const;

    /// The entries in order; replacing them posts a `ReloadEntries` edition when they change.
    ///@{
    const std::vector<Entry>& entries() const { return elements(); }
    void setEntries(std::vector<Entry> entries) { setElements(std::move(entries)); }
    ///@}
    /// Changes the entries in place, then stores them as `setEntries` does.
    template <class F> void modifyEntries(F&& change) {
        auto entries = elements();
        change(entries);
        setEntries(std::move(entries));
    }
    /// Inserts before `index` (at most the count); posts an `InsertEntries` edition.
    void insertEntries(std::vector<Entry> entries, std::size_t index) {
        insertElements(std::move(entries), index);
    }
    /// Removes the entries at `indexes`; posts a `RemoveEntries` edition.
    void removeEntries(const IndexSet& indexes) { removeElements(indexes); }

private:
    friend class PresetContainer<PresetItem, PresetItemEntry>;
    using ListEdition = EntryEdition;
    using Insert = InsertEntries;
    using Remove = RemoveEntries;
    using Reload = ReloadEntries;
    static constexpr std::string_view didChangeListNotification = didChangeEntriesNotification;
    static constexpr std::string_view listEditionKey = entryEditionKey;

    PresetItem(std::string name, std::string detail, std::vector<Entry> entries)
        : PresetContainer(std::move(name), std::move(detail), std::move(entries)) {}

    void informsDidChangeEntries(EntryEdition edition) { informsDidChange(std::move(edition)); }
};

/// The shared handle every preset lives in.
using PresetItemRef = std::shared_ptr<PresetItem>;

} // namespace corvane
