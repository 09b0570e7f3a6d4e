#include "corvane/location_support/LocationManager.hpp"

#include "corvane/helpers/ArrayMoves.hpp"
#include "corvane/location_support/LocationFile.hpp"

namespace corvane {

const std::shared_ptr<LocationManager>& LocationManager::shared() {
    static const std::shared_ptr<LocationManager> instance = create();
    return instance;
}

std::shared_ptr<LocationManager> LocationManager::create() {
    return std::shared_ptr<LocationManager>(new LocationManager());
}

void LocationManager::moveItems(const IndexSet& indexes, std::size_t toOffset) {
    if (indexes.isEmpty()) return;
    moveElements(items_, indexes, toOffset);
    informsDidChangeItems(MoveItems{indexes, toOffset});
}

std::vector<LocationItemRef> LocationManager::decodeItems(const std::string& bytes,
                                                          const std::string& source) {
    return LocationFile::fromJSONData(bytes, source).items();
}

std::string LocationManager::encodeItems(const std::vector<LocationItemRef>& items) {
    return LocationFile(std::nullopt, items).jsonData();
}

} // namespace corvane
