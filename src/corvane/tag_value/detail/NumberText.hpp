#pragma once

#include "corvane/tag_value/TagItem.hpp"

#include <optional>
#include <string_view>

namespace corvane::detail {

// Whether `text` is several blank-separated numbers given to a tag of a single number. A file may
// hold more numbers than the tag's table says (an IFD entry's count is the file's, "100 0"), and
// ExifTool prints them all.
bool holdsSeveralNumbers(const TagItem& item, std::string_view text);

// Whether the tag's converter reads the numbers of `text` without losing any: not so for several
// numbers given to a single-number tag (its parser would run "100 0" together into 1000), nor for a
// list whose converted elements are fewer than the text's (a negative number in an unsigned list, a
// real in an integer one, "undef"). Texts of other types always are.
bool convertsWholly(const TagItem& item, std::string_view text);

// The tag's converter's JSON form of `text` (read as the tag's native value), when the converter
// reads it wholly as above; nullopt when it doesn't. A list of numbers is read once for both.
std::optional<DynamicValue> wholeJSONValue(const TagItem& item, std::string_view text);

} // namespace corvane::detail
