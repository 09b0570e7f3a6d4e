#include "corvane/preset_support/PresetItem.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

std::shared_ptr<PresetItem> PresetItem::create(std::string name, std::string detail,
                                               std::vector<Entry> entries) {
    return std::shared_ptr<PresetItem>(
        new PresetItem(std::move(name), std::move(detail), std::move(entries)));
}

std::shared_ptr<PresetItem> PresetItem::create() {
    return create({}, {}, {});
}

std::shared_ptr<PresetItem> PresetItem::fromJSON(const nlohmann::ordered_json& j) {
    auto name = j.at("name").get<std::string>();
    auto detail = j.at("detail").get<std::string>();
    auto entries = j.at("entries").get<std::vector<Entry>>();
    return create(std::move(name), std::move(detail), std::move(entries));
}

nlohmann::ordered_json PresetItem::toJSON() const {
    nlohmann::ordered_json j = nlohmann::ordered_json::object();
    j["name"] = name();
    j["detail"] = detail();
    j["entries"] = entries();
    return j;
}

} // namespace corvane
