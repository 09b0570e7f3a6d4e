#pragma once

#include "corvane/tag_value/TagName.hpp"

#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

class TagItem;

/// Checks a value a person gave for a tag against what the tag can hold, before anything is
/// written: the command line's `set`, presets and sidecars go through it, so that a value is
/// accepted or refused the same way wherever it comes from.
///
/// The value is read through the tag's converter. Refused, with an error that names the tag and
/// the value: text the converter can't read (or an element of a list it can't), a fixed count of
/// numbers given with another count, a choice outside the tag's closed list, text longer than the
/// format allows (IPTC counts bytes, EXIF and the maker notes also a closing zero byte), a date
/// with more or less than the tag's kind of date holds (a zone or a fraction in a zone-less EXIF
/// date, a date without its time, a day that doesn't exist), and GPS degrees over 90 or 180.
/// A fraction ("1/500") is read as a real number.
///
/// Stateless and thread-safe: it reads only the catalogue.
class TagValueChecker {
public:
    /// What became of one value.
    struct Result {
        /// The text to write: numbers in their canonical form ("1/500" gives "0.002"), dates
        /// trimmed, other text as given. Empty when the value was refused.
        std::string text;
        /// Why the value can't be written; empty when it can.
        std::string error;
        bool isValid() const { return error.empty(); } ///< the value can be written
    };

    /// Checks `typed` for `item`. The empty text clears a tag and is always valid.
    static Result check(const TagItem& item, const std::string& typed);

    /// The errors of the values that their tags can't hold, in the order of the tags' names. Names
    /// the catalogue doesn't know are left to the caller (they are not values of a known kind).
    static std::vector<std::string> errors(const std::unordered_map<TagName, std::string>& values);
};

} // namespace corvane
