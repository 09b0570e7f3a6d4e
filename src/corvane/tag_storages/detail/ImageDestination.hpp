#pragma once

#include "corvane/tag_storages/detail/ImageSource.hpp"

#include <optional>
#include <string>

namespace corvane::detail {

// A copy of one image, in memory, with merged metadata. The image data is copied as it stands:
// exiv2 rewrites the metadata blocks around it and never decodes or re-encodes the pixels.
//
// Use: `createWithData(type)`, `addImageFromSource(source, properties)`, `finalize()`, then
// `data()`. The properties are merged: a property they name is replaced, a null marker removes it,
// and every other property of the file stays as it was.
class ImageDestination {
public:
    // Nothing when the engine doesn't write the metadata of this format (HEIC, GIF and camera raw
    // files among others, see ImageType).
    static std::optional<ImageDestination> createWithData(ImageType type);

    void addImageFromSource(const ImageSource& source, const PropertyDictionary& properties);
    // Writes the merged metadata into the copy; false when the file or a value can't be written.
    bool finalize();
    // The bytes of the whole file after `finalize()`.
    const std::string& data() const { return data_; }

private:
    explicit ImageDestination(ImageType type) : type_(type) {}

    ImageType type_;
    std::optional<std::filesystem::path> sourceURL_;
    PropertyDictionary properties_;
    std::string data_;
};

} // namespace corvane::detail
