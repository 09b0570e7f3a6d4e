#pragma once

#include "corvane/comparison/TagComparatorSearchValue.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// A search text prepared once for many texts: finds it ignoring case and diacritics (so "cafe"
/// finds "Café" and "CAFÉ", "strasse" finds "Straße"), with the case rules of the current locale.
/// Both texts are folded scalar by scalar (canonical decomposition, marks dropped, lower-cased, case
/// folded) and the folded search is looked for in the folded text. Immutable; safe to share.
class TagComparatorTextSearch {
public:
    /// A search for `search`, folded as the class comment says.
    explicit TagComparatorTextSearch(std::string_view search);

    /// The text as given; whether it folds to nothing (then nothing matches).
    ///@{
    const std::string& search() const { return search_; }
    bool isEmpty() const { return folded_.empty(); }
    ///@}

    /// The byte range of the first hit in `text`, marks that follow the hit included; nothing when
    /// absent or when the search folds to nothing.
    std::optional<TagComparatorSearchValue::Range> rangeIn(std::string_view text) const;
    bool matches(std::string_view text) const { return rangeIn(text).has_value(); } ///< `rangeIn` finds a hit

private:
    std::string search_;
    std::u32string folded_;
};

} // namespace corvane
