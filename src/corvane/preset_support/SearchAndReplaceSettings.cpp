#include "corvane/preset_support/SearchAndReplaceSettings.hpp"

#include <nlohmann/json.hpp>

namespace corvane {

void to_json(nlohmann::ordered_json& j, const SearchAndReplaceSettings& settings) {
    j = nlohmann::ordered_json::object();
    j["search"] = settings.search;
    j["value"] = settings.value;
    j["ignore_case"] = settings.ignoreCase;
    j["ignore_diacritic"] = settings.ignoreDiacritic;
    j["ignore_width"] = settings.ignoreWidth;
    j["use_regex"] = settings.useRegex;
}

void from_json(const nlohmann::ordered_json& j, SearchAndReplaceSettings& settings) {
    SearchAndReplaceSettings read(j.at("search").get<std::string>(), j.at("value").get<std::string>());
    read.ignoreCase = j.at("ignore_case").get<bool>();
    read.ignoreDiacritic = j.at("ignore_diacritic").get<bool>();
    read.ignoreWidth = j.at("ignore_width").get<bool>();
    read.useRegex = j.at("use_regex").get<bool>();
    settings = std::move(read);
}

} // namespace corvane
