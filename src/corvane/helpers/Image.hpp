#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// An encoded still image, JPEG or PNG, as the embedded-image readers give it and the thumbnail
/// writer takes it: its bytes, kept exactly as they came, and the size and format found when they
/// were checked to decode completely. Other formats aren't images for this type.
///
/// A value; any thread.
class Image {
public:
    /// The encodings an image is read from.
    enum class Format { jpeg, png };

    /// The image these bytes encode, or nothing when they aren't a JPEG or PNG image that decodes
    /// without error.
    static std::optional<Image> fromData(std::string data);
    /// Whether the bytes begin as a JPEG or PNG file does (nothing else is looked at).
    static bool hasImageSignature(std::string_view data);
    /// The image of a file; nothing when it can't be read or isn't an image.
    static std::optional<Image> fromFile(const std::filesystem::path& url);

    /// The bytes as given.
    const std::string& data() const { return data_; }
    /// The encoding of `data()`; the size in pixels.
    ///@{
    Format format() const { return format_; }
    int width() const { return width_; }
    int height() const { return height_; }
    ///@}

    /// The image as JPEG: the bytes as given when they are a JPEG already, else the pixels encoded
    /// at `quality` (1...100). Nothing when the encoding fails.
    std::optional<std::string> jpegData(int quality = 90) const;
    /// The image as a JPEG of at most `maxBytes`: the bytes as given when they are a JPEG that small,
    /// else encodings of falling quality and then of halved sizes, until one fits. Nothing when even
    /// an 8-pixel image doesn't.
    std::optional<std::string> jpegData(std::size_t maxBytes) const;

private:
    Image(std::string data, Format format, int width, int height);
    /// The pixels scaled by 1/`reduction` (1, 2, 4 or 8) and encoded as JPEG.
    std::optional<std::string> encodeJPEG(int quality, int reduction) const;

    std::string data_;
    Format format_;
    int width_;
    int height_;
};

} // namespace corvane
