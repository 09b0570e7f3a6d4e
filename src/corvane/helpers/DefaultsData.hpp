#pragma once

#include <optional>
#include <string>

namespace corvane {

// The user's libraries (keywords, locations) are too large for the defaults file itself: each is
// kept as a data file named after its key beside it (UserDefaults::preferenceFileURL), and only
// when that file can't be written is the text stored under the key in the defaults.

/// Data read for a key, with where it came from (the file's path, or the key) for error messages.
struct DefaultsData {
    std::string bytes;  ///< the data
    std::string source; ///< the file's path, or the key
};

/// Writes `bytes` atomically, owner-only, to the key's data file of `KitSettings::userDefaults()`,
/// or stores them as text under the key when the file can't be written.
void writeDefaultsData(const std::string& key, const std::string& bytes);

/// The key's data file when it is there (as a file), else the text (or JSON value, as its text) stored under
/// the key; nothing when neither is there. Throws FileError when the file exists but can't
/// be read.
std::optional<DefaultsData> readDefaultsData(const std::string& key);

} // namespace corvane
