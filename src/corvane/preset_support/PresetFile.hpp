#pragma once

#include "corvane/preset_support/PresetGroup.hpp"
#include "corvane/utilities/Error.hpp"

#include <nlohmann/json_fwd.hpp>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// The file form of a preset library: an optional description and the groups.
///
/// Written as {"description": ..., "groups": [...]} in that order, an absent description as the
/// empty text. Reading also opens older files: a root that is an array of groups, or an array of
/// presets (which become one group with an empty name and detail). Only the error of that last
/// attempt reaches the caller: from `fromJSON`, the JSON library's errors, std::invalid_argument or
/// PresetEdition::CodingException; from the data and file readers, `DecodingError` for all of them
/// (and JSONNestingError for input nested beyond reason, FileError for a file that can't be read).
class PresetFile {
public:
    /// Data or a file that holds no preset library; from a file, the message starts with its path.
    class DecodingError : public Error {
    public:
        using Error::Error;
    };

    PresetFile() = default;
    PresetFile(std::optional<std::string> description, std::vector<PresetGroupRef> groups)
        : description_(std::move(description)), groups_(std::move(groups)) {}

    const std::optional<std::string>& description() const { return description_; }
    const std::vector<PresetGroupRef>& groups() const { return groups_; }

    static PresetFile fromJSON(const nlohmann::ordered_json& j);
    nlohmann::ordered_json toJSON() const;

    static PresetFile fromJSONData(std::string_view data);
    /// Pretty-printed, two blanks per level.
    std::string jsonData() const;
    /// Throws FileError when the file can't be read.
    static PresetFile fromJSONURL(const std::filesystem::path& url);
    /// Writes atomically, readable by its owner only. Throws FileError.
    void exportTo(const std::filesystem::path& url) const;

    /// Equal descriptions and the same group objects.
    friend bool operator==(const PresetFile&, const PresetFile&) = default;

private:
    std::optional<std::string> description_;
    std::vector<PresetGroupRef> groups_;
};

} // namespace corvane
