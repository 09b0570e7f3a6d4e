#pragma once

#include "corvane/comparison/TagComparatorGroupKey.hpp"
#include "corvane/comparison/TagComparatorProvider.hpp"
#include "corvane/comparison/TagComparatorSearchValue.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// One row of a comparison: a tag and its value in each file, in column order.
class TagComparatorGroupEntry {
public:
    /// `isShared` is computed: true as soon as one value's text differs from the first one's (two
    /// absent texts count as equal); false for one value or none.
    TagComparatorGroupEntry(TagComparatorGroupKey key, std::vector<TagComparatorValue> values);

    /// The row's heading; the cells, one per column.
    ///@{
    const TagComparatorGroupKey& key() const { return key_; }
    const std::vector<TagComparatorValue>& values() const { return values_; }
    ///@}
    /// True when the values differ between the files.
    bool isShared() const { return isShared_; }

    /// The value texts, an absent one as the empty text.
    std::vector<std::string> strings() const;

    /// The cell at `column`: 0 is the tag's name (its `localizedText()` when `showName`, else its
    /// display name alone), `n` the value of the n-th file. Nothing past the last column.
    std::optional<TagComparatorSearchValue> search(std::size_t column, bool showName,
                                                   std::optional<std::string> search = std::nullopt) const;

    friend bool operator==(const TagComparatorGroupEntry&, const TagComparatorGroupEntry&) = default;

private:
    TagComparatorGroupKey key_;
    std::vector<TagComparatorValue> values_;
    bool isShared_ = false;
};

} // namespace corvane
