#include "corvane/location_support/LocationFile.hpp"

#include "corvane/helpers/JSONInput.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

using json = nlohmann::ordered_json;

LocationFile LocationFile::fromJSON(const json& j) {
    try {
        std::optional<std::string> description;
        const json* items = &j;
        if (!j.is_array()) {
            auto it = j.find("description");
            if (it != j.end() && it->is_string()) description = it->get<std::string>();
            items = &j.at("items");
        }
        if (!items->is_array()) throw json::type_error::create(302, "the items are not an array", items);
        std::vector<LocationItemRef> roots;
        roots.reserve(items->size());
        for (const auto& item : *items)
            roots.push_back(LocationItem::fromJSON(item));
        return LocationFile(std::move(description), std::move(roots));
    } catch (const nlohmann::json::exception& e) {
        throw DecodingError(std::string("not a location library: ") + e.what());
    }
}

json LocationFile::toJSON() const {
    json j = json::object();
    if (description_) j["description"] = *description_;
    auto& list = j["items"] = json::array();
    for (const auto& item : items_)
        list.push_back(item->toJSON());
    return j;
}

LocationFile LocationFile::fromJSONData(std::string_view data, const std::string& source) {
    try {
        return fromJSON(parseOrderedJSONInput(data, source));
    } catch (const DecodingError& e) {
        throw DecodingError(source + ": " + e.what());
    } catch (const nlohmann::json::exception& e) {
        throw DecodingError(source + ": not JSON: " + e.what());
    }
}

LocationFile LocationFile::fromJSONURL(const std::filesystem::path& url) {
    return fromJSONData(readFileBytes(url), url.string());
}

} // namespace corvane
