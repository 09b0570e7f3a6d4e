#include "corvane/exiftool_wrapper/ETEmbeddedImageReader.hpp"

#include "corvane/exiftool_wrapper/ETProcess.hpp"

namespace corvane {

namespace {

// Printed after the image: its bytes don't end with a line break, and the markers that end each
// ExifTool command must begin a line of their own. The text is taken off again.
constexpr std::string_view imageEnd = "#corvane-image-end";

} // namespace

std::string_view message(ETEmbeddedImageReader::ReadError error) {
    using E = ETEmbeddedImageReader::ReadError;
    switch (error) {
    case E::noFileProvided:
        return "No file provided";
    case E::emptyOutput:
        return "Empty output";
    case E::invalidData:
        return "Invalid data";
    case E::unreadableImage:
        return "Unreadable image";
    }
    return {};
}

std::string ETEmbeddedImageReader::argument(ImageSource source) {
    switch (source) {
    case ImageSource::thumbnail:
        return "-ThumbnailImage";
    case ImageSource::jpegFromRaw:
        return "-JpgFromRaw";
    case ImageSource::previewImage:
        return "-PreviewImage";
    }
    return {};
}

std::string ETEmbeddedImageReader::name(ImageSource source) {
    switch (source) {
    case ImageSource::thumbnail:
        return "thumbnail";
    case ImageSource::jpegFromRaw:
        return "jpgfromraw";
    case ImageSource::previewImage:
        return "preview";
    }
    return {};
}

std::optional<ETEmbeddedImageReader::ImageSource>
ETEmbeddedImageReader::imageSourceNamed(std::string_view text) {
    for (auto source : {ImageSource::thumbnail, ImageSource::jpegFromRaw, ImageSource::previewImage})
        if (name(source) == text) return source;
    return std::nullopt;
}

Image ETEmbeddedImageReader::read() const {
    if (!storageSource) throw ReadException(ReadError::noFileProvided);
    ETInput input;
    input.addArguments(std::vector{*storageSource},
                       [this](const TagStorageSource& source, ETInput::ArgumentsMaker& maker) {
                           maker.ignoreMinorErrors = ignoreMinorErrors;
                           maker.arguments = {argument(imageSource), "-b", "-echo3", std::string(imageEnd)};
                           maker.password = source.password();
                           maker.url = source.url();
                           maker.soloRun = true;
                       });
    const auto output = ETProcess::runOnSharedPool(input);
    output.throwIfErrors();
    std::string data = output.data();
    const auto end = data.rfind(imageEnd);
    if (end == std::string::npos) throw ReadException(ReadError::invalidData);
    data.erase(end);
    if (data.empty()) throw ReadException(ReadError::emptyOutput);
    // Some files hold previews in other formats (TIFF strips, raw pixels): not an image to pass on.
    if (!Image::hasImageSignature(data)) throw ReadException(ReadError::invalidData);
    auto image = Image::fromData(std::move(data));
    if (!image) throw ReadException(ReadError::unreadableImage);
    return std::move(*image);
}

} // namespace corvane
