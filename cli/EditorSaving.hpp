#pragma once

#include "StorageReading.hpp"

#include <cstddef>
#include <string>

namespace corvane::cli {

// How a save reports beyond its summary line.
struct SaveOptions {
    // Put back each file's modification date after the write (`set -P`).
    bool preserveModificationDates = false;
    // Print "FILE: nothing to change" for each edited file that ExifTool found nothing to change in.
    bool namesUnchangedFiles = false;
    // A line printed before the summary when some file was written ("position 48.85, 2.29").
    std::string lineWhenWritten;
};

// What became of the files of a save, as ExifTool reported each one.
struct SaveCounts {
    std::size_t updated = 0;
    std::size_t unchanged = 0; // not edited, or nothing to change
    std::size_t failed = 0;
    std::size_t unknown = 0; // the run was stopped while on them
};

// Saves the edited editors of `editors` in one save task, showing "Writing N/M files" on a terminal,
// and prints "N files updated, M unchanged" (with the failed and not-known counts when there are
// any). Each failed or not-known file is reported as an error, and ExifTool's warnings about each
// file as warnings. Editors without edits count as unchanged.
SaveCounts saveEditedEditors(const EditorList& editors, Reporter& reporter, const SaveOptions& options = {});

} // namespace corvane::cli
