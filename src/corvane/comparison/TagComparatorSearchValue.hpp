#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {

/// What one cell of a comparison shows, and the search it is shown under (for highlighting).
struct TagComparatorSearchValue {
    /// A byte range [first, second) of UTF-8 text.
    using Range = std::pair<std::size_t, std::size_t>;

    bool isTag = false;                 ///< a tag-name cell, not a value cell
    std::optional<std::string> rawText; ///< the cell's text; absent for a tag without value
    std::optional<std::string> search;  ///< the search text to highlight
    bool isMultiValued = false;         ///< the cell stands for two or more values
    bool isShared = false;              ///< the row's values differ
    bool isEdited = false;              ///< the value is an unsaved edit

    /// The cell's text.
    const std::optional<std::string>& text() const { return rawText; }

    /// The first place of `search` in `text`, ignoring case and diacritics under the current
    /// locale; nothing when absent or when `search` is empty.
    static std::optional<Range> rangeOf(std::string_view search, std::string_view text);
    /// The hit of this cell's search in its text, for highlighting.
    std::optional<Range> highlightedRange() const;

    friend bool operator==(const TagComparatorSearchValue&, const TagComparatorSearchValue&) = default;
};

} // namespace corvane
