#include "corvane/location_support/LocationFile.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/ItemListJSON.hpp"

namespace corvane {

LocationFile LocationFile::fromJSON(const nlohmann::ordered_json& j) {
    auto [description, items] = readItemList<DecodingError>(j, "location library", LocationItem::fromJSON);
    return LocationFile(std::move(description), std::move(items));
}

nlohmann::ordered_json LocationFile::toJSON() const {
    return writeItemList(description_, items_);
}

LocationFile LocationFile::fromJSONData(std::string_view data, const std::string& source) {
    return readJSONInput<DecodingError>(data, source, LocationFile::fromJSON);
}

LocationFile LocationFile::fromJSONURL(const std::filesystem::path& url) {
    return fromJSONData(readFileBytes(url), url.string());
}

} // namespace corvane
