#include "corvane/preset_support/PresetFile.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"
#include "corvane/helpers/JSONInput.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

namespace {

using json = nlohmann::ordered_json;

std::vector<PresetGroupRef> groupsFromArray(const json& array) {
    if (!array.is_array()) throw json::type_error::create(302, "the groups are not an array", &array);
    std::vector<PresetGroupRef> groups;
    groups.reserve(array.size());
    for (const auto& group : array)
        groups.push_back(PresetGroup::fromJSON(group));
    return groups;
}

} // namespace

PresetFile PresetFile::fromJSON(const json& j) {
    std::optional<std::string> description;
    if (j.is_object()) {
        auto it = j.find("description");
        if (it != j.end() && it->is_string()) description = it->get<std::string>();
    }
    // The current form, then a bare array of groups, then a bare array of presets: libraries
    // written by earlier versions held those.
    try {
        return PresetFile(description, groupsFromArray(j.at("groups")));
    } catch (const std::exception&) {
    }
    try {
        return PresetFile(description, groupsFromArray(j));
    } catch (const std::exception&) {
    }
    if (!j.is_array()) throw json::type_error::create(302, "not a preset library", &j);
    std::vector<PresetItemRef> presets;
    presets.reserve(j.size());
    for (const auto& preset : j)
        presets.push_back(PresetItem::fromJSON(preset));
    return PresetFile(description, {PresetGroup::create({}, {}, std::move(presets))});
}

json PresetFile::toJSON() const {
    json j = json::object();
    j["description"] = description_.value_or(std::string());
    auto& list = j["groups"] = json::array();
    for (const auto& group : groups_)
        list.push_back(group->toJSON());
    return j;
}

namespace {

// The file form's readers throw the JSON library's errors, std::invalid_argument (an unknown name)
// and PresetEdition::CodingException; a caller gets them as the one error of a preset library,
// named after `source`. The nesting check's error names the source already.
PresetFile decode(std::string_view data, const std::string& source) {
    try {
        return PresetFile::fromJSON(parseOrderedJSONInput(data, source));
    } catch (const JSONNestingError&) {
        throw;
    } catch (const std::exception& e) {
        throw PresetFile::DecodingError(source + ": not a preset library: " + e.what());
    }
}

} // namespace

PresetFile PresetFile::fromJSONData(std::string_view data) {
    return decode(data, "preset library");
}

std::string PresetFile::jsonData() const {
    return toJSON().dump(2);
}

PresetFile PresetFile::fromJSONURL(const std::filesystem::path& url) {
    return decode(readFileBytes(url), url.string());
}

void PresetFile::exportTo(const std::filesystem::path& url) const {
    writeFileAtomically(url, jsonData(), 0600);
}

} // namespace corvane
