#pragma once

#include "corvane/tag_value/TagItem.hpp"

#include <optional>
#include <string>

namespace corvane::detail {

// The display form of a tag's canonical value, as a person reads it: the catalogue's title of a
// choice (element by element for a list or a fixed count, joined by ", "), an exposure time as a
// fraction of a second below a quarter ("1/160"), real numbers without trailing zeros ("2.8", not
// "2.80000000"); other values in their converter's formatted form. Nothing for no value.
std::optional<std::string> prettyText(const TagItem& item, const std::optional<std::string>& value);

} // namespace corvane::detail
