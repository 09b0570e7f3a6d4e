#include "corvane/preset_support/PresetItemEntry.hpp"

#include "corvane/preset_support/PresetJSON.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

void to_json(nlohmann::ordered_json& j, const PresetItemEntry& entry) {
    j = nlohmann::ordered_json::object();
    j["tag_name"] = entry.tagName().rawValue();
    j["edition"] = entry.edition();
}

void from_json(const nlohmann::ordered_json& j, PresetItemEntry& entry) {
    TagName name = decodedTagName(j.at("tag_name"));
    entry = PresetItemEntry(std::move(name), j.at("edition").get<PresetEdition>());
}

} // namespace corvane
