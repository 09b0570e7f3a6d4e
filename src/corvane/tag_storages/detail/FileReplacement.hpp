#pragma once

#include <filesystem>
#include <string_view>

namespace corvane::detail {

// Puts `bytes` at `target` as a new version of the file at `original` (the same file, or the one
// it is a copy of): readers see either the old file or the whole new one, and the new one keeps
// what the file system knows of the original besides its content.
//
// The bytes go to a temporary file beside `target`, which takes the original's permission bits,
// owner (where allowed) and extended attributes (tags, the written creation date, anything another
// program keeps there), is flushed to disk and renamed over `target`. The target's folder is
// created with its parents when missing. Throws FileError; on failure
// `target` is as it was and no temporary file is left.
//
// An attribute of the "user." namespace that can't be copied fails the write; others (ACLs,
// security labels) are copied where the process may, since only a privileged process can set them.
void replaceFileKeepingAttributes(const std::filesystem::path& original, const std::filesystem::path& target,
                                  std::string_view bytes);

} // namespace corvane::detail
