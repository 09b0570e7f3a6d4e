#pragma once

#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace corvane {

/// The title of a group of rows in a tag set or a table ("Camera", "GPS And
/// Location"). Any text is a section; there is no closed list.
class TagSection {
public:
    TagSection() = default;
    /// A section of this title.
    ///@{
    explicit TagSection(std::string rawValue) : rawValue_(std::move(rawValue)) {}
    TagSection(const char* rawValue) : rawValue_(rawValue) {}
    ///@}

    /// The section's title as stored (the key of the "Sections" table).
    const std::string& rawValue() const { return rawValue_; }
    /// The title in the user's language, from the "Sections" string table.
    std::string localizedName() const;

    friend bool operator==(const TagSection&, const TagSection&) = default;
    /// Ordered by title.
    friend auto operator<=>(const TagSection& a, const TagSection& b) { return a.rawValue_ <=> b.rawValue_; }

private:
    std::string rawValue_;
};

/// A section stands in JSON as its text.
void to_json(nlohmann::json& j, const TagSection& section);
void from_json(const nlohmann::json& j, TagSection& section); ///< see `to_json`

} // namespace corvane

template <> struct std::hash<corvane::TagSection> {
    size_t operator()(const corvane::TagSection& s) const noexcept {
        return std::hash<std::string>()(s.rawValue());
    }
};
