#pragma once

#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <string_view>
#include <vector>

namespace corvane {

/// Removes all metadata from files in one ExifTool run ("-all="). Built, run once and discarded;
/// `clean()` blocks its caller.
struct ETMetadataCleaner {
    /// Why a clean failed before ExifTool ran; `message` gives the text.
    enum class ReadError { noFileProvided };
    /// Thrown by `clean()`; `what()` is the message of the case.
    using ReadException = CaseException<ReadError>;

    /// Let ExifTool fix maker-note offsets ("-F").
    bool enableCorrection = false;
    /// Minor errors become warnings ("-m").
    bool ignoreMinorErrors = true;
    /// Write each file in place, keeping its inode and extended attributes; else ExifTool keeps the
    /// file as it was beside it, as "NAME_original".
    bool overrideInPlace = true;
    std::vector<TagStorageSource> storageSources; ///< the files to clean; none is `noFileProvided`

    /// Throws ReadException without sources, ETOutputException when the run fails.
    void clean() const;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ETMetadataCleaner::ReadError error);

} // namespace corvane
