#pragma once

// The converters read "inf", "nan" and "1e999" as numbers, and the integer converter reads
// "1e999" as 0: such text in an edited value would reach a file as "inf" or as a number the user
// never typed. The writers ask here first and refuse the file's write, naming the tag.

#include <optional>
#include <string>

namespace corvane {
class TagItem;
class TagStorage;
} // namespace corvane

namespace corvane::detail {

/// Why `value` can't be written to `item`, as "EXIF:GPSLatitude: \"inf\" is not a finite number";
/// nothing when it can. Looked at: every number of a numeric tag (each element of a list or of a
/// blank-separated count) must be finite and, for an integer tag, read as the integer it says; a
/// GPS latitude must lie within 90 degrees and a longitude within 180, in numbers and in a
/// position text. Text the converter doesn't read as a number is left to the converter.
std::optional<std::string> unwritableValueReason(const TagItem& item, const std::string& value);

/// The reason of the first edited value of `storage` that can't be written; nothing when all can.
std::optional<std::string> unwritableStorageReason(const TagStorage& storage);

} // namespace corvane::detail
