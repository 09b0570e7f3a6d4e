#pragma once

#include <nlohmann/json_fwd.hpp>

#include <array>
#include <string_view>

namespace corvane {

/// A fixed action that a preset runs on a tag.
struct UseCustomActionSettings {
    /// The actions; the comments say what each does to the tag.
    enum class Action {
        removeCurrentValue,   ///< clear the tag
        restoreOriginalValue, ///< take back all edits of the tag
        lowercaseText,
        uppercaseText,
        capitalizeText,
        trimWhitespacesText,
        sortInAscendingOrder,
        sortInDescendingOrder,
    };
    /// Every action, in order.
    static constexpr std::array<Action, 8> allActions{
        Action::removeCurrentValue,   Action::restoreOriginalValue, Action::lowercaseText,
        Action::uppercaseText,        Action::capitalizeText,       Action::trimWhitespacesText,
        Action::sortInAscendingOrder, Action::sortInDescendingOrder};
    /// The JSON text: "remove_current_value", "restore_original_value", ...
    static std::string_view text(Action action);

    Action action = Action::removeCurrentValue; ///< the action to run

    friend bool operator==(const UseCustomActionSettings&, const UseCustomActionSettings&) = default;
};

/// {"action": "lowercase_text"}; the key is required, and an unknown action is an error
/// (std::invalid_argument).
void to_json(nlohmann::ordered_json& j, const UseCustomActionSettings& settings);
void from_json(const nlohmann::ordered_json& j, UseCustomActionSettings& settings); ///< see `to_json`

} // namespace corvane
