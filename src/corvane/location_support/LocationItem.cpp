#include "corvane/location_support/LocationItem.hpp"

#include "corvane/helpers/NotificationCenter.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace corvane {

using json = nlohmann::ordered_json;

LocationItemRef LocationItem::create(std::string name, Location location) {
    return LocationItemRef(new LocationItem(std::move(name), std::move(location)));
}

LocationItemRef LocationItem::fromJSON(const json& j) {
    const auto& location = j.at("location");
    if (!location.is_object())
        throw json::type_error::create(302, "the location is not an object", &location);
    return create(j.at("name").get<std::string>(), Location::fromJson(nlohmann::json(location)));
}

json LocationItem::toJSON() const {
    json j = json::object();
    j["name"] = name_;
    j["location"] = json(location_.toJson());
    return j;
}

void LocationItem::setName(std::string name) {
    if (name == name_) return;
    name_ = std::move(name);
    informsDidChangeInfo();
}

void LocationItem::setLocation(Location location) {
    if (location == location_) return;
    location_ = std::move(location);
    informsDidChangeInfo();
}

std::size_t LocationItem::hashValue() const {
    // + 0.0 makes -0.0 and 0.0, which compare equal, hash alike.
    std::size_t hash = std::hash<std::string>()(name_);
    hash ^=
        std::hash<double>()(location_.latitude() + 0.0) + 0x9e3779b97f4a7c15ULL + (hash << 6) + (hash >> 2);
    hash ^=
        std::hash<double>()(location_.longitude() + 0.0) + 0x9e3779b97f4a7c15ULL + (hash << 6) + (hash >> 2);
    return hash;
}

bool equalItems(const std::vector<LocationItemRef>& a, const std::vector<LocationItemRef>& b) {
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(),
        [](const LocationItemRef& x, const LocationItemRef& y) { return x == y || (x && y && *x == *y); });
}

void LocationItem::informsDidChangeInfo() {
    NotificationCenter::defaultCenter().post(
        Notification(std::string(didChangeInfoNotification), shared_from_this()));
}

} // namespace corvane
