#include "corvane/preset_support/CopyTagValueSettings.hpp"

#include "corvane/preset_support/PresetJSON.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

namespace {

constexpr PresetEnumTable<CopyTagValueSettings::Formatter, 2> formatterTexts{{
    {CopyTagValueSettings::Formatter::raw, "raw"},
    {CopyTagValueSettings::Formatter::pretty, "pretty"},
}};

constexpr PresetEnumTable<CopyTagValueSettings::Insertion, 3> insertionTexts{{
    {CopyTagValueSettings::Insertion::replace, "replace"},
    {CopyTagValueSettings::Insertion::prepend, "prepend"},
    {CopyTagValueSettings::Insertion::append, "append"},
}};

} // namespace

std::string_view CopyTagValueSettings::text(Formatter formatter) {
    return presetEnumText(formatterTexts, formatter);
}

std::string_view CopyTagValueSettings::text(Insertion insertion) {
    return presetEnumText(insertionTexts, insertion);
}

void to_json(nlohmann::ordered_json& j, const CopyTagValueSettings& settings) {
    j = nlohmann::ordered_json::object();
    j["tag_name"] = settings.tagName.rawValue();
    j["formatter"] = CopyTagValueSettings::text(settings.formatter);
    j["insertion"] = CopyTagValueSettings::text(settings.insertion);
}

void from_json(const nlohmann::ordered_json& j, CopyTagValueSettings& settings) {
    CopyTagValueSettings read;
    read.tagName = decodedTagName(j.at("tag_name"));
    read.formatter = presetEnumFromText(formatterTexts, j.at("formatter").get<std::string>(), "formatter");
    read.insertion = presetEnumFromText(insertionTexts, j.at("insertion").get<std::string>(), "insertion");
    settings = std::move(read);
}

} // namespace corvane
