#pragma once

#include "corvane/helpers/IndexSet.hpp"
#include "corvane/helpers/Notification.hpp"
#include "corvane/location_support/LocationItem.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

/// The user's saved places, a flat list the user orders, and the selected one.
///
/// Kept like the keyword library: `saveToDefaults` writes "QRVLocations.data" beside the user
/// defaults file (`KitSettings::userDefaults()`), atomically and readable by its owner only, and
/// only when that file can't be written stores the text under `locationsUserDefaultsKey` itself.
///
/// Every change that changes something posts `didChangeItemsNotification` on the default
/// notification centre, on the calling thread, with the manager as sender and the `ItemEdition`
/// under `itemEditionKey`. Items compare by value: a list or selection of equal places is no
/// change. Not locked: the library belongs to the main thread.
class LocationManager : public std::enable_shared_from_this<LocationManager> {
public:
    struct InsertItems {
        IndexSet indexes;
        friend bool operator==(const InsertItems&, const InsertItems&) = default;
    };
    struct RemoveItems {
        IndexSet indexes;
        friend bool operator==(const RemoveItems&, const RemoveItems&) = default;
    };
    /// The items that were at `indexes` now stand before the item that was at `toOffset`.
    struct MoveItems {
        IndexSet indexes;
        std::size_t toOffset = 0;
        friend bool operator==(const MoveItems&, const MoveItems&) = default;
    };
    struct ReloadItems {
        friend bool operator==(const ReloadItems&, const ReloadItems&) = default;
    };
    struct ReloadSelection {
        friend bool operator==(const ReloadSelection&, const ReloadSelection&) = default;
    };
    using ItemEdition = std::variant<InsertItems, RemoveItems, MoveItems, ReloadItems, ReloadSelection>;

    static constexpr std::string_view didChangeItemsNotification =
        "LocationManagerDidChangeItemsNotification";
    static constexpr std::string_view itemEditionKey = "ItemEdition";
    static constexpr std::string_view locationsUserDefaultsKey = "QRVLocations";
    /// The edition carried by a didChangeItems notification; nothing for any other one.
    static std::optional<ItemEdition> itemEdition(const Notification& note);

    /// The application's library.
    static const std::shared_ptr<LocationManager>& shared();
    /// An empty library of its own (for tools and tests).
    static std::shared_ptr<LocationManager> create();

    virtual ~LocationManager() = default;
    LocationManager(const LocationManager&) = delete;
    LocationManager& operator=(const LocationManager&) = delete;

    const std::vector<LocationItemRef>& items() const { return items_; }
    /// Informs with reloadItems unless the list holds equal items in the same order.
    virtual void setItems(std::vector<LocationItemRef> items);
    template <class F> void modifyItems(F&& change) {
        auto items = items_;
        change(items);
        setItems(std::move(items));
    }
    const LocationItemRef& selectedItem() const { return selectedItem_; }
    /// Informs with reloadSelection unless both are none or both are equal items.
    virtual void setSelectedItem(LocationItemRef item);
    template <class F> void modifySelectedItem(F&& change) {
        auto item = selectedItem_;
        change(item);
        setSelectedItem(std::move(item));
    }

    /// Inserts before `index` (at most the count: past the end is a programming error).
    virtual void insertItems(std::vector<LocationItemRef> items, std::size_t index);
    /// An empty set does nothing.
    virtual void removeItems(const IndexSet& indexes);
    /// Moves the items at `indexes` before the item at `toOffset` (see `moveElements`); an empty
    /// set does nothing.
    virtual void moveItems(const IndexSet& indexes, std::size_t toOffset);
    virtual void informsDidChangeItems(ItemEdition edition);

    /// Replaces the items by the stored library unless it holds equal items. Nothing stored leaves
    /// them as they are; a stored library that can't be read throws LocationFile::DecodingError (or
    /// JSONNestingError, or FileError for an unreadable file) and changes nothing.
    virtual void loadFromDefaults();
    /// Stores the items. Throws FileError only when neither the file nor the defaults can
    /// take them.
    virtual void saveToDefaults() const;

protected:
    LocationManager() = default;

private:
    std::vector<LocationItemRef> items_;
    LocationItemRef selectedItem_;
};

using LocationManagerRef = std::shared_ptr<LocationManager>;

} // namespace corvane
