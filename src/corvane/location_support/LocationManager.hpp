#pragma once

#include "corvane/helpers/ItemListManager.hpp"
#include "corvane/location_support/LocationItem.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace corvane {

class LocationManager;
/// The list machinery the location library is made of.
using LocationManagerBase = ItemListManager<
    LocationManager, LocationItem,
    std::variant<ItemListEditions::InsertItems, ItemListEditions::RemoveItems, ItemListEditions::MoveItems,
                 ItemListEditions::ReloadItems, ItemListEditions::ReloadSelection>>;

/// The user's saved places, a flat list the user orders, and the selected one.
///
/// Kept with the user defaults as "QRVLocations.data" beside the defaults file (see
/// ItemListManager), with its notifications posted as described there. Items compare by value: a
/// list or selection of equal places is no change. Not locked: the library belongs to the main
/// thread.
///
/// Observers run on the posting thread, for this library the host's main thread. Work the library
/// schedules for that thread waits until the host drains the main queue:
/// `MainQueue::shared().drain()` (or `runUntil`) in a tool, its event loop woken by
/// `MainQueue::setWakeHook` in an application.
class LocationManager : public LocationManagerBase {
public:
    /// Posted on every change of the list or the selection, with the edition under
    /// `itemEditionKey`.
    ///@{
    static constexpr std::string_view didChangeItemsNotification =
        "LocationManagerDidChangeItemsNotification";
    static constexpr std::string_view itemEditionKey = "ItemEdition";
    ///@}
    /// The key of the user defaults the library is stored under (also as `userDefaultsKey`, the
    /// name the list machinery reads).
    ///@{
    static constexpr std::string_view locationsUserDefaultsKey = "QRVLocations";
    static constexpr std::string_view userDefaultsKey = locationsUserDefaultsKey;
    ///@}

    /// The application's library.
    static const std::shared_ptr<LocationManager>& shared();
    /// An empty library of its own (for tools and tests).
    static std::shared_ptr<LocationManager> create();

    /// Moves the items at `indexes` before the item at `toOffset` (see `moveElements`); an empty
    /// set does nothing.
    virtual void moveItems(const IndexSet& indexes, std::size_t toOffset);

protected:
    LocationManager() = default;

private:
    friend LocationManagerBase;
    static bool sameItems(const std::vector<LocationItemRef>& a, const std::vector<LocationItemRef>& b) {
        return equalItems(a, b);
    }
    /// Both none, or items with the same name and an equal place.
    static bool sameSelection(const LocationItemRef& a, const LocationItemRef& b) {
        return a == b || (a && b && *a == *b);
    }
    /// Throws LocationFile::DecodingError or JSONNestingError.
    static std::vector<LocationItemRef> decodeItems(const std::string& bytes, const std::string& source);
    static std::string encodeItems(const std::vector<LocationItemRef>& items);
};

/// The shared handle the library lives in.
using LocationManagerRef = std::shared_ptr<LocationManager>;

} // namespace corvane
