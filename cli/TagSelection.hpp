// Tag names as a person types them on the command line: "EXIF:Artist", "exif:artist", "Artist",
// "EXIF:*", "*:Artist" or "*", resolved case-insensitively through the catalogue.
#pragma once

#include "corvane/tag_value/TagItem.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <optional>
#include <string>
#include <vector>

namespace corvane::cli {

// One resolved name. A bare name ("Artist") resolves to its catalogue entries in order of
// preference: EXIF, IPTC, XMP, QuickTime, then the one other family that has it. A name is ambiguous
// when no preferred family has it and more than one other does; resolving it then fails with a
// message that lists the candidates.
class TagSelector {
public:
    // Nothing, with the reason in `error`, for an unknown or ambiguous name. `writableOnly` (for
    // `set`) keeps the writable entries of a bare name, and refuses a full name the catalogue lacks.
    static std::optional<TagSelector> resolve(const std::string& text, bool writableOnly, std::string& error);

    const std::string& text() const { return text_; }
    // The catalogue entries a bare or full name stands for, best first; empty for a pattern.
    const std::vector<const TagItem*>& candidates() const { return candidates_; }
    // Whether `name` is selected: by a pattern, by the candidates, or (for a full name the
    // catalogue doesn't have) by the name as written, case-insensitively.
    bool matches(const TagName& name) const;
    // For a bare name: the first candidate among `present` (the file's tags), so that one value
    // shows per name. Patterns and full names select every match.
    bool isBare() const { return bare_; }

private:
    std::string text_;
    std::string family_; // lower case; empty: any family
    std::string key_;    // lower case; empty: any key
    bool bare_ = false;
    std::vector<const TagItem*> candidates_;
};

// The names of `present` that the selectors pick, in the order of the selectors, each once; a bare
// name picks its first candidate that `present` holds. With no selectors, `present` as it is.
std::vector<TagName> selectedNames(const std::vector<TagSelector>& selectors,
                                   const std::vector<TagName>& present);

} // namespace corvane::cli
