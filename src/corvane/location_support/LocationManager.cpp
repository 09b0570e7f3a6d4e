#include "corvane/location_support/LocationManager.hpp"

#include "corvane/helpers/ArrayMoves.hpp"
#include "corvane/helpers/DefaultsData.hpp"
#include "corvane/helpers/NotificationCenter.hpp"
#include "corvane/location_support/LocationFile.hpp"

#include <cassert>

namespace corvane {

std::optional<LocationManager::ItemEdition> LocationManager::itemEdition(const Notification& note) {
    if (note.name() != didChangeItemsNotification) return std::nullopt;
    if (auto edition = note.userInfoValue<ItemEdition>(std::string(itemEditionKey))) return *edition;
    return std::nullopt;
}

const std::shared_ptr<LocationManager>& LocationManager::shared() {
    static const std::shared_ptr<LocationManager> instance = create();
    return instance;
}

std::shared_ptr<LocationManager> LocationManager::create() {
    return std::shared_ptr<LocationManager>(new LocationManager());
}

void LocationManager::setItems(std::vector<LocationItemRef> items) {
    if (equalItems(items, items_)) return;
    items_ = std::move(items);
    informsDidChangeItems(ReloadItems{});
}

void LocationManager::setSelectedItem(LocationItemRef item) {
    if (item == selectedItem_ || (item && selectedItem_ && *item == *selectedItem_)) return;
    selectedItem_ = std::move(item);
    informsDidChangeItems(ReloadSelection{});
}

void LocationManager::insertItems(std::vector<LocationItemRef> items, std::size_t index) {
    assert(index <= items_.size());
    const std::size_t count = items.size();
    items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(index), std::make_move_iterator(items.begin()),
                  std::make_move_iterator(items.end()));
    informsDidChangeItems(InsertItems{IndexSet::range(index, index + count)});
}

void LocationManager::removeItems(const IndexSet& indexes) {
    if (indexes.isEmpty()) return;
    indexes.removeFrom(items_);
    informsDidChangeItems(RemoveItems{indexes});
}

void LocationManager::moveItems(const IndexSet& indexes, std::size_t toOffset) {
    if (indexes.isEmpty()) return;
    moveElements(items_, indexes, toOffset);
    informsDidChangeItems(MoveItems{indexes, toOffset});
}

void LocationManager::informsDidChangeItems(ItemEdition edition) {
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeItemsNotification), shared_from_this(),
                     {{std::string(itemEditionKey), std::move(edition)}}));
}

void LocationManager::loadFromDefaults() {
    const auto stored = readDefaultsData(std::string(locationsUserDefaultsKey));
    if (!stored) return;
    setItems(LocationFile::fromJSONData(stored->bytes, stored->source).items());
}

void LocationManager::saveToDefaults() const {
    writeDefaultsData(std::string(locationsUserDefaultsKey), LocationFile(std::nullopt, items_).jsonData());
}

} // namespace corvane
