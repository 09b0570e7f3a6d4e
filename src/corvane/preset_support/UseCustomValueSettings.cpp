#include "corvane/preset_support/UseCustomValueSettings.hpp"

#include "corvane/preset_support/PresetJSON.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

namespace {

constexpr PresetEnumTable<UseCustomValueSettings::Insertion, 3> insertionTexts{{
    {UseCustomValueSettings::Insertion::replace, "replace"},
    {UseCustomValueSettings::Insertion::prepend, "prepend"},
    {UseCustomValueSettings::Insertion::append, "append"},
}};

} // namespace

std::string_view UseCustomValueSettings::text(Insertion insertion) {
    return presetEnumText(insertionTexts, insertion);
}

void to_json(nlohmann::ordered_json& j, const UseCustomValueSettings& settings) {
    j = nlohmann::ordered_json::object();
    j["value"] = settings.value;
    j["insertion"] = UseCustomValueSettings::text(settings.insertion);
}

void from_json(const nlohmann::ordered_json& j, UseCustomValueSettings& settings) {
    UseCustomValueSettings read;
    read.value = j.at("value").get<std::string>();
    read.insertion = presetEnumFromText(insertionTexts, j.at("insertion").get<std::string>(), "insertion");
    settings = std::move(read);
}

} // namespace corvane
