#pragma once

#include "StorageReading.hpp"

namespace corvane::cli {

// Saves the edited editors of `editors` in one save task and prints "N files updated, M unchanged"
// (with the failed and not-known counts when there are any); each failed file is reported.
// Editors without edits count as unchanged. Returns the number of files that failed.
std::size_t saveEditedEditors(const EditorList& editors, Reporter& reporter);

} // namespace corvane::cli
