#pragma once

#include "corvane/helpers/DefaultsData.hpp"
#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/helpers/NotificationCenter.hpp"

#include <cassert>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvane {

/// The editions a list library posts: rows inserted, removed or moved, the list or the selection
/// to reload. Each library's `ItemEdition` is a variant of those it posts.
struct ItemListEditions {
    /// Rows inserted: `indexes` are their places in the new list.
    struct InsertItems {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const InsertItems&, const InsertItems&) = default;
    };
    /// Rows removed: `indexes` were their places in the old list.
    struct RemoveItems {
        IndexSet indexes; ///< rows, in ascending order
        friend bool operator==(const RemoveItems&, const RemoveItems&) = default;
    };
    /// The items that were at `indexes` now stand before the item that was at `toOffset`.
    struct MoveItems {
        IndexSet indexes;         ///< rows, in ascending order
        std::size_t toOffset = 0; ///< the place before which they now stand
        friend bool operator==(const MoveItems&, const MoveItems&) = default;
    };
    /// The whole list changed: reload every row.
    struct ReloadItems {
        friend bool operator==(const ReloadItems&, const ReloadItems&) = default;
    };
    /// The selection changed, the rows didn't.
    struct ReloadSelection {
        friend bool operator==(const ReloadSelection&, const ReloadSelection&) = default;
    };
};

/// The shape the user's list libraries share (keywords, saved places): a list of items and the
/// selected one, edited by index sets, kept with the user defaults, every real change posted.
///
/// `saveToDefaults` writes the library as a JSON file named after the library's key beside the
/// defaults file (`KitSettings::userDefaults()`), atomically and readable by its owner only, and
/// only when that file can't be written stores the same text under the key itself;
/// `loadFromDefaults` reads from wherever it finds it.
///
/// Every change that changes something posts `Derived::didChangeItemsNotification` on the default
/// notification centre, on the calling thread, with the manager as sender and the edition under
/// `Derived::itemEditionKey`. Not locked: the library belongs to the main thread.
///
/// `Derived` gives those two constants and `userDefaultsKey`, and (to this class) what differs:
/// `sameItems(a, b)` and `sameSelection(a, b)`, whether a new list or selection is no change;
/// `decodeItems(bytes, source)` and `encodeItems(items)`, its file form.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
template <class Derived, class Item, class Edition>
class ItemListManager : public ItemListEditions, public std::enable_shared_from_this<Derived> {
public:
    /// The shared handle of an item; the edition type the library posts.
    ///@{
    using ItemRef = std::shared_ptr<Item>;
    using ItemEdition = Edition;
    ///@}

    /// The edition carried by a didChangeItems notification; nothing for any other one.
    static std::optional<ItemEdition> itemEdition(const Notification& note) {
        if (note.name() != Derived::didChangeItemsNotification) return std::nullopt;
        if (auto edition = note.userInfoValue<ItemEdition>(std::string(Derived::itemEditionKey)))
            return *edition;
        return std::nullopt;
    }

    virtual ~ItemListManager() = default;
    ItemListManager(const ItemListManager&) = delete;
    ItemListManager& operator=(const ItemListManager&) = delete;

    /// The items, in order.
    const std::vector<ItemRef>& items() const { return items_; }
    /// Informs with reloadItems unless the library counts the list as the same (see the library).
    virtual void setItems(std::vector<ItemRef> items) {
        if (Derived::sameItems(items, items_)) return;
        items_ = std::move(items);
        informsDidChangeItems(ReloadItems{});
    }
    /// Applies `change` to a copy of the items and sets the result.
    template <class F> void modifyItems(F&& change) {
        auto items = items_;
        change(items);
        setItems(std::move(items));
    }
    /// The selected item; null for none.
    const ItemRef& selectedItem() const { return selectedItem_; }
    /// Informs with reloadSelection unless the library counts the selection as the same.
    virtual void setSelectedItem(ItemRef item) {
        if (Derived::sameSelection(item, selectedItem_)) return;
        selectedItem_ = std::move(item);
        informsDidChangeItems(ReloadSelection{});
    }
    /// Applies `change` to a copy and sets the result.
    template <class F> void modifySelectedItem(F&& change) {
        auto item = selectedItem_;
        change(item);
        setSelectedItem(std::move(item));
    }

    /// Inserts before `index` (at most the count: past the end is a programming error).
    virtual void insertItems(std::vector<ItemRef> items, std::size_t index) {
        assert(index <= items_.size());
        const std::size_t count = items.size();
        items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index),
                      std::make_move_iterator(items.begin()), std::make_move_iterator(items.end()));
        informsDidChangeItems(InsertItems{IndexSet::range(index, index + count)});
    }
    /// An empty set does nothing.
    virtual void removeItems(const IndexSet& indexes) {
        if (indexes.isEmpty()) return;
        indexes.removeFrom(items_);
        informsDidChangeItems(RemoveItems{indexes});
    }
    /// Posts `Derived::didChangeItemsNotification` with `edition`.
    virtual void informsDidChangeItems(ItemEdition edition) {
        NotificationCenter::defaultCenter().post(
            Notification(std::string(Derived::didChangeItemsNotification), this->shared_from_this(),
                         {{std::string(Derived::itemEditionKey), std::move(edition)}}));
    }

    /// Replaces the items by the stored library unless it counts as the same list. Nothing stored
    /// leaves them as they are; a stored library that can't be read throws the file form's
    /// DecodingError (or JSONNestingError, or FileError for an unreadable file) and
    /// changes nothing.
    virtual void loadFromDefaults() {
        const auto stored = readDefaultsData(std::string(Derived::userDefaultsKey));
        if (!stored) return;
        setItems(Derived::decodeItems(stored->bytes, stored->source));
    }
    /// Stores the items. Throws FileError only when neither the file nor the defaults can
    /// take them, and what the file form refuses to write.
    virtual void saveToDefaults() const {
        writeDefaultsData(std::string(Derived::userDefaultsKey), Derived::encodeItems(items_));
    }

protected:
    ItemListManager() = default;

    /// The list and the selection behind the accessors above.
    ///@{
    std::vector<ItemRef> items_;
    ItemRef selectedItem_;
    ///@}
};

} // namespace corvane
