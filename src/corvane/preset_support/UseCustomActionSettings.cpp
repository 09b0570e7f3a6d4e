#include "corvane/preset_support/UseCustomActionSettings.hpp"

#include "corvane/preset_support/PresetJSON.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

namespace {

using Action = UseCustomActionSettings::Action;

constexpr PresetEnumTable<Action, 8> actionTexts{{
    {Action::removeCurrentValue, "remove_current_value"},
    {Action::restoreOriginalValue, "restore_original_value"},
    {Action::lowercaseText, "lowercase_text"},
    {Action::uppercaseText, "uppercase_text"},
    {Action::capitalizeText, "capitalize_text"},
    {Action::trimWhitespacesText, "trim_whitespaces_text"},
    {Action::sortInAscendingOrder, "sort_in_ascending_order"},
    {Action::sortInDescendingOrder, "sort_in_descending_order"},
}};

} // namespace

std::string_view UseCustomActionSettings::text(Action action) {
    return presetEnumText(actionTexts, action);
}

void to_json(nlohmann::ordered_json& j, const UseCustomActionSettings& settings) {
    j = nlohmann::ordered_json::object();
    j["action"] = UseCustomActionSettings::text(settings.action);
}

void from_json(const nlohmann::ordered_json& j, UseCustomActionSettings& settings) {
    settings.action = presetEnumFromText(actionTexts, j.at("action").get<std::string>(), "action");
}

} // namespace corvane
