#include "corvane/preset_support/PresetEdition.hpp"

#include "corvane/preset_support/PresetJSON.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

std::string_view PresetEdition::message(CodingError error) {
    switch (error) {
    case CodingError::unknownDecodingType:
        return "Unknown decoding type";
    case CodingError::unknownEncodingType:
        return "Unknown encoding type";
    }
    return {};
}

namespace {

using Action = UseCustomActionSettings::Action;
using CustomInsertion = UseCustomValueSettings::Insertion;
using Formatter = CopyTagValueSettings::Formatter;
using CopyInsertion = CopyTagValueSettings::Insertion;

template <class Settings>
void putSettings(nlohmann::ordered_json& j, std::string_view type, const Settings& s) {
    j["type"] = type;
    j["settings"] = s;
}

} // namespace

void to_json(nlohmann::ordered_json& j, const PresetEdition& edition) {
    j = nlohmann::ordered_json::object();
    std::visit(
        [&](const auto& settings) {
            using T = std::decay_t<decltype(settings)>;
            if constexpr (std::is_same_v<T, PresetEdition::KeepCurrentValue>)
                j["type"] = "keep_current_value";
            else if constexpr (std::is_same_v<T, UseCustomValueSettings>)
                putSettings(j, "use_custom_value", settings);
            else if constexpr (std::is_same_v<T, CopyTagValueSettings>)
                putSettings(j, "copy_tag_value", settings);
            else if constexpr (std::is_same_v<T, UseCustomActionSettings>)
                putSettings(j, "use_custom_action", settings);
            else
                putSettings(j, "search_and_replace", settings);
        },
        edition.value());
}

void from_json(const nlohmann::ordered_json& j, PresetEdition& edition) {
    const auto type = j.at("type").get<std::string>();
    const auto customValue = [&](CustomInsertion insertion) {
        return PresetEdition::useCustomValue(j.at("value").get<std::string>(), insertion);
    };
    const auto copy = [&](Formatter formatter) {
        return PresetEdition::copyTagValue(
            {decodedTagName(j.at("value")), formatter, CopyInsertion::replace});
    };
    // The older forms first, as libraries written before the settings objects hold them.
    if (type == "none")
        edition = PresetEdition::keepCurrentValue();
    else if (type == "remove")
        edition = PresetEdition::useCustomAction(Action::removeCurrentValue);
    else if (type == "restore")
        edition = PresetEdition::useCustomAction(Action::restoreOriginalValue);
    else if (type == "value")
        edition = customValue(CustomInsertion::replace);
    else if (type == "merge" || type == "append")
        edition = customValue(CustomInsertion::append);
    else if (type == "prepend")
        edition = customValue(CustomInsertion::prepend);
    else if (type == "copy")
        edition = copy(Formatter::raw);
    else if (type == "clone")
        edition = copy(Formatter::pretty);
    else if (type == "keep_current_value")
        edition = PresetEdition::keepCurrentValue();
    else if (type == "copy_tag_value")
        edition = j.at("settings").get<CopyTagValueSettings>();
    else if (type == "use_custom_value")
        edition = j.at("settings").get<UseCustomValueSettings>();
    else if (type == "use_custom_action")
        edition = j.at("settings").get<UseCustomActionSettings>();
    else if (type == "search_and_replace")
        edition = j.at("settings").get<SearchAndReplaceSettings>();
    else
        throw PresetEdition::CodingException(PresetEdition::CodingError::unknownDecodingType);
}

} // namespace corvane
