#pragma once

#include "corvane/helpers/Image.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/utilities/CaseException.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// Fetches one embedded image out of a file with ExifTool ("-b"): the EXIF thumbnail, the JPEG of a
/// raw file, or the largest preview. The image's bytes are passed on untouched. Built, run once and
/// discarded; `read()` blocks its caller.
struct ETEmbeddedImageReader {
    /// The embedded images ExifTool can extract.
    enum class ImageSource { thumbnail, jpegFromRaw, previewImage };
    /// Why a read failed; `message` gives the text.
    enum class ReadError { noFileProvided, emptyOutput, invalidData, unreadableImage };
    /// Thrown by `read()`; `what()` is the message of the case.
    using ReadException = CaseException<ReadError>;

    /// ExifTool's tag of each source: "-ThumbnailImage", "-JpgFromRaw", "-PreviewImage".
    static std::string argument(ImageSource source);
    /// "thumbnail", "jpgfromraw", "preview": the source's short name, for file names and commands.
    static std::string name(ImageSource source);
    /// The source of a short name; nothing for another text.
    static std::optional<ImageSource> imageSourceNamed(std::string_view name);

    bool ignoreMinorErrors = true;                       ///< let ExifTool go on past minor errors ("-m")
    ImageSource imageSource = ImageSource::previewImage; ///< the image to extract
    std::optional<TagStorageSource> storageSource;       ///< the file to read; none is `noFileProvided`

    /// Throws ReadException (`emptyOutput` when the file has no such image, `invalidData` when
    /// it is neither JPEG nor PNG, `unreadableImage` when its bytes don't decode), ETOutputException when the
    /// run fails.
    Image read() const;
};

/// The text of a case: the `what()` of the exception thrown for it.
std::string_view message(ETEmbeddedImageReader::ReadError error);

} // namespace corvane
