#include "corvane/preset_support/PresetGroup.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

std::shared_ptr<PresetGroup> PresetGroup::create(std::string name, std::string detail,
                                                 std::vector<PresetItemRef> presets) {
    return std::shared_ptr<PresetGroup>(
        new PresetGroup(std::move(name), std::move(detail), std::move(presets)));
}

std::shared_ptr<PresetGroup> PresetGroup::create() {
    return create({}, {}, {});
}

std::shared_ptr<PresetGroup> PresetGroup::fromJSON(const nlohmann::ordered_json& j) {
    auto name = j.at("name").get<std::string>();
    auto detail = j.at("detail").get<std::string>();
    const auto& list = j.at("presets");
    if (!list.is_array())
        throw nlohmann::ordered_json::type_error::create(302, "\"presets\" is not an array", &list);
    std::vector<PresetItemRef> presets;
    presets.reserve(list.size());
    for (const auto& preset : list)
        presets.push_back(PresetItem::fromJSON(preset));
    return create(std::move(name), std::move(detail), std::move(presets));
}

nlohmann::ordered_json PresetGroup::toJSON() const {
    nlohmann::ordered_json j = nlohmann::ordered_json::object();
    j["name"] = name();
    j["detail"] = detail();
    auto& list = j["presets"] = nlohmann::ordered_json::array();
    for (const auto& preset : presets())
        list.push_back(preset->toJSON());
    return j;
}

} // namespace corvane
