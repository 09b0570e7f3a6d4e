#pragma once

#include "corvane/converters/DynamicValue.hpp"

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace Exiv2 {
class Image;
}

namespace corvane::detail {

// The properties of an image as the image I/O engines see them: dictionary name ("{Exif}") to
// property key ("ExposureTime") to value. Values come in the shapes the engines expect: text,
// numbers, arrays of numbers or of text; GPS latitudes and longitudes as unsigned decimal degrees
// beside their reference; dates as "yyyy:MM:dd HH:mm:ss". In a dictionary handed to a write, a
// value that is nothing is the null marker: the property is removed.
using PropertyDictionary = std::map<std::string, std::map<std::string, DynamicValue>>;

// The format of a file: exiv2's number for it, and whether this engine writes into it.
//
// exiv2 writes metadata into more formats than the engine does. To change a camera's raw file
// (CR2, NEF, DNG, ARW, ...) exiv2 rewrites its whole structure and loses the maker-note directories
// it doesn't know (a scanner's NEF loses its NikonScan directory), so raw files, like the formats
// exiv2 only reads, are refused; ExifTool writes them.
struct ImageType {
    int format = 0;
    bool isWritable = false;
};

// An image file opened for its metadata only: exiv2 reads the metadata blocks and never decodes
// the pixels. One source belongs to one thread at a time; distinct sources may be used at once.
class ImageSource {
public:
    // Opens the file and reads its metadata. Nothing when the file can't be opened, isn't in a
    // format exiv2 knows, or its metadata can't be parsed.
    static std::optional<ImageSource> createWithURL(const std::filesystem::path& url);

    const std::filesystem::path& url() const { return url_; }
    // The file's format; nothing when exiv2 can't tell it.
    std::optional<ImageType> type() const;
    // Every property of the table that the file holds. An image without metadata gives empty
    // dictionaries; nothing comes back only when the metadata can't be decoded.
    std::optional<PropertyDictionary> copyProperties() const;

private:
    ImageSource(std::filesystem::path url, std::shared_ptr<Exiv2::Image> image);

    std::filesystem::path url_;
    std::shared_ptr<Exiv2::Image> image_;
};

} // namespace corvane::detail
