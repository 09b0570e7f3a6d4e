#include "corvane/exiftool_wrapper/ETEmbeddedImageWriter.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"
#include "corvane/helpers/FileSystemHelpers.hpp"

namespace corvane {

namespace fs = std::filesystem;

std::string_view message(ETEmbeddedImageWriter::WriteError error) {
    using E = ETEmbeddedImageWriter::WriteError;
    switch (error) {
    case E::noFileProvided:
        return "No file provided";
    case E::imageDataInvalid:
        return "Image data invalid";
    case E::copyOnDiskFailed:
        return "Copy on disk failed";
    }
    return {};
}

std::string ETEmbeddedImageWriter::imageSourceArgument(const std::optional<fs::path>& url) {
    return url ? "-ThumbnailImage<=" + url->string() : "-ThumbnailImage=";
}

namespace {

// The thumbnail's temporary file, removed when the write ends, however it ends.
struct TemporaryImage {
    std::optional<fs::path> url;
    ~TemporaryImage() {
        std::error_code error;
        if (url) fs::remove(*url, error);
    }
};

} // namespace

void ETEmbeddedImageWriter::write() const {
    if (storageSources.empty()) throw WriteException(WriteError::noFileProvided);
    TemporaryImage temporary;
    if (image) {
        const auto data = image->jpegData(maxThumbnailBytes);
        if (!data) throw WriteException(WriteError::imageDataInvalid);
        temporary.url = temporaryURL("jpg");
        try {
            // Readable by the owner only, like every file the library leaves in the temporary folder.
            writeFileAtomically(*temporary.url, *data, 0600);
        } catch (const fs::filesystem_error&) {
            temporary.url.reset();
            throw WriteException(WriteError::copyOnDiskFailed);
        }
    }
    const auto argument = imageSourceArgument(temporary.url);
    ETInput input;
    input.addArguments(storageSources, [&](const TagStorageSource& source, ETInput::ArgumentsMaker& maker) {
        maker.ignoreMinorErrors = ignoreMinorErrors;
        maker.overwriteInPlace = overwriteInPlace;
        maker.arguments.push_back(argument);
        maker.password = source.password();
        maker.url = source.url();
        maker.soloRun = true;
    });
    input.onProgressHandler = onProgressHandler;
    ETProcess::runOnSharedPool(input).throwIfErrors();
}

} // namespace corvane
