#pragma once

#include "corvane/tag_value/TagKey.hpp"
#include "corvane/tag_value/TagName.hpp"
#include "corvane/tag_value/TagStream.hpp"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// One cell of a comparison: the value of a tag in one file, and whether it is an unsaved edit.
struct TagComparatorValue {
    bool isEdited = false;             ///< an unsaved edit
    std::optional<std::string> string; ///< the text; absent when the file has no such tag

    friend bool operator==(const TagComparatorValue&, const TagComparatorValue&) = default;
};

/// The heading of one column of a comparison.
struct TagComparatorTitle {
    std::string string; ///< the title text

    friend bool operator==(const TagComparatorTitle&, const TagComparatorTitle&) = default;
};

/// What one column of a comparison delivers: its heading, its families in order, and the keys and
/// values of each family. Implementations must be safe to read from any thread once made.
class TagComparatorProvider {
public:
    virtual ~TagComparatorProvider() = default;

    /// The column's title; its families, in display order; the number of tags of a family; the key
    /// at `index` in a family; the cell of a tag; whether the column has a family; a family's keys,
    /// in order.
    ///@{
    virtual std::string title() const = 0;
    virtual const std::vector<TagStream>& streams() const = 0;
    virtual std::size_t valuesCount(const TagStream& stream) const = 0;
    virtual std::optional<TagKey> key(std::size_t index, const TagStream& stream) const = 0;
    virtual TagComparatorValue value(const TagName& name) const = 0;
    virtual bool contains(const TagStream& stream) const = 0;
    virtual std::vector<TagKey> keys(const TagStream& stream) const = 0;
    ///@}
};

} // namespace corvane
