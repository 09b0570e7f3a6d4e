#pragma once

#include "corvane/exiftool_wrapper/ETInput.hpp"
#include "corvane/helpers/Image.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane {

/// Replaces or removes the EXIF thumbnail of files in one ExifTool run. With an image, the image is
/// written as a JPEG small enough for the EXIF segment (a JPEG thumbnail given that small goes
/// unchanged; anything else is re-encoded, smaller if need be) to a private temporary file, which
/// ExifTool copies in and which is removed after the run; without one, the thumbnail is removed and no
/// temporary file is made. Built, run once and discarded; `write()` blocks its caller.
struct ETEmbeddedImageWriter {
    /// The embedded images this writer can replace.
    enum class ImageSource { thumbnail };
    /// Why a write failed; `message` gives the text.
    enum class WriteError { noFileProvided, imageDataInvalid, copyOnDiskFailed };
    /// Thrown by `write()`; `what()` is the message of the case.
    using WriteException = CaseException<WriteError>;

    /// The largest thumbnail written: an EXIF segment holds 64 KB with all of its other tags, so the
    /// thumbnail keeps well under.
    static constexpr std::size_t maxThumbnailBytes = 60000;

    std::optional<Image> image;    ///< the new image; none removes the thumbnail
    bool ignoreMinorErrors = true; ///< let ExifTool go on past minor errors ("-m")
    /// Write each file in place, keeping its inode and extended attributes; else ExifTool keeps the
    /// file as it was beside it, as "NAME_original".
    bool overwriteInPlace = true;
    ImageSource imageSource = ImageSource::thumbnail; ///< the image to replace
    std::vector<TagStorageSource> storageSources;     ///< the files to write
    /// Called as the run goes on, on the thread that runs it.
    ETInput::Handler onProgressHandler;

    /// The ExifTool argument: "-ThumbnailImage<=PATH" for a thumbnail file, "-ThumbnailImage=" for
    /// none. The path is not quoted: the argument reaches ExifTool as it stands, never a shell.
    static std::string imageSourceArgument(const std::optional<std::filesystem::path>& url);

    /// Throws WriteException, or ETOutputException when the run fails.
    void write() const;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ETEmbeddedImageWriter::WriteError error);

} // namespace corvane
