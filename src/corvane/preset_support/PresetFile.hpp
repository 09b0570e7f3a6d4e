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
    /// A file of these groups, with an optional description.
    PresetFile(std::optional<std::string> description, std::vector<PresetGroupRef> groups)
        : description_(std::move(description)), groups_(std::move(groups)) {}

    /// The user's description; the groups, in order.
    ///@{
    const std::optional<std::string>& description() const { return description_; }
    const std::vector<PresetGroupRef>& groups() const { return groups_; }
    ///@}

    /// Reads {"description", "groups"}, or, as libraries of earlier versions were written, a bare
    /// array of groups or of presets (put in one unnamed group). Throws the JSON library's errors.
    static PresetFile fromJSON(const nlohmann::ordered_json& j);
    /// The file form `fromJSON` reads.
    nlohmann::ordered_json toJSON() const;

    /// Parses `data` through the nesting check of outside input, then `fromJSON`; throws
    /// DecodingError, or JSONNestingError for input nested too deep.
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
