#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace corvane {

/// A search and replace inside a tag's current value, with the comparison options of the search.
struct SearchAndReplaceSettings {
    SearchAndReplaceSettings() = default;
    /// All four options off.
    SearchAndReplaceSettings(std::string search, std::string value)
        : search(std::move(search)), value(std::move(value)) {}

    std::string search; ///< the text or pattern looked for
    std::string value;  ///< a replacement template when `useRegex` is on
    /// How the search compares text: case, diacritics and width ignored when asked; `useRegex`
    /// makes `search` an ICU regular expression.
    ///@{
    bool ignoreCase = false;
    bool ignoreDiacritic = false;
    bool ignoreWidth = false;
    bool useRegex = false;
    ///@}

    friend bool operator==(const SearchAndReplaceSettings&, const SearchAndReplaceSettings&) = default;
};

/// {"search", "value", "ignore_case", "ignore_diacritic", "ignore_width", "use_regex"}: all six
/// keys are required on reading.
void to_json(nlohmann::ordered_json& j, const SearchAndReplaceSettings& settings);
void from_json(const nlohmann::ordered_json& j, SearchAndReplaceSettings& settings); ///< see `to_json`

} // namespace corvane
