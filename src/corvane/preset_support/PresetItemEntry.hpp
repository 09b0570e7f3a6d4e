#pragma once

#include "corvane/preset_support/PresetEdition.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <nlohmann/json_fwd.hpp>

namespace corvane {

/// One line of a preset: the tag it edits and what it does to it. Immutable; equal by contents.
class PresetItemEntry {
public:
    PresetItemEntry() = default;
    /// The entry that applies `edition` to `tagName`.
    PresetItemEntry(TagName tagName, PresetEdition edition)
        : tagName_(std::move(tagName)), edition_(std::move(edition)) {}

    /// The tag; what is done to it.
    ///@{
    const TagName& tagName() const { return tagName_; }
    const PresetEdition& edition() const { return edition_; }
    ///@}

    friend bool operator==(const PresetItemEntry&, const PresetItemEntry&) = default;

private:
    TagName tagName_;
    PresetEdition edition_;
};

/// {"tag_name": "EXIF:Artist", "edition": {...}}; both keys are required on reading.
void to_json(nlohmann::ordered_json& j, const PresetItemEntry& entry);
void from_json(const nlohmann::ordered_json& j, PresetItemEntry& entry); ///< see `to_json`

} // namespace corvane
