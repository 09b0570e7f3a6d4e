#pragma once

#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/utilities/CaseException.hpp"
#include "corvane/value_models/Coordinate.hpp"

#include <optional>
#include <string_view>
#include <vector>

namespace corvane {

/// Reads the GPS position of many files in one ExifTool run, as signed decimal degrees, much faster
/// than reading every tag. Built, run once and discarded; `read()` blocks its caller.
struct ETCoordinateReader {
    /// Why a read failed; `message` gives the text.
    enum class ReadError { noFileProvided, invalidData, emptyOutput, notParsableOutput };
    /// Thrown by `read()`; `what()` is the message of the case.
    using ReadException = CaseException<ReadError>;

    /// Past minor errors, a file ExifTool can't read gets no position instead of failing the read.
    bool ignoreMinorErrors = true;
    std::vector<TagStorageSource> storageSources; ///< the files to read; none is `noFileProvided`

    /// One entry per source, in order: its position, or nothing for a file without one, or that
    /// ExifTool couldn't read (its error doesn't move the other files' positions). Throws
    /// ReadException, or ETOutputException when the run fails.
    std::vector<std::optional<Coordinate>> read() const;

    /// The position of one line of ExifTool's table output ("+48.858222\t+2.294500"): nothing
    /// unless it holds two signed decimal numbers within the ranges of latitude and longitude.
    static std::optional<Coordinate> coordinate(std::string_view line);
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ETCoordinateReader::ReadError error);

} // namespace corvane
