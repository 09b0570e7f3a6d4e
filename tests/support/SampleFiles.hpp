#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace corvane::test {

// Small, real media files made from scratch, so that tests need no fixtures and no tool but
// ExifTool. Each maker writes a complete file (replacing any file at the path) and returns the path.
// Every file reads cleanly with "exiftool -validate" and takes EXIF, XMP and IPTC writes (JPEG, TIFF,
// PNG) or QuickTime and XMP writes (MOV).

enum class SampleKind { jpeg, png, tiff, mov };

// The bytes of each kind: an 8x8 grey baseline JFIF JPEG; a 1x1 grey PNG; an 8x8 grey little-endian
// TIFF with one uncompressed strip; a QuickTime movie with one video track of one Photo-JPEG frame.
std::vector<std::uint8_t> jpegBytes();
std::vector<std::uint8_t> pngBytes();
std::vector<std::uint8_t> tiffBytes();
std::vector<std::uint8_t> movBytes();
std::vector<std::uint8_t> sampleBytes(SampleKind kind);

// The usual extension of a kind, without dot: "jpg", "png", "tif", "mov".
std::string sampleExtension(SampleKind kind);

std::filesystem::path writeBytes(const std::filesystem::path& path, const std::vector<std::uint8_t>& bytes);
std::filesystem::path makeJPEG(const std::filesystem::path& path);
std::filesystem::path makePNG(const std::filesystem::path& path);
std::filesystem::path makeTIFF(const std::filesystem::path& path);
std::filesystem::path makeMOV(const std::filesystem::path& path);
std::filesystem::path makeSample(SampleKind kind, const std::filesystem::path& path);

// A JPEG with EXIF (Artist "Minor") whose APP1 identifier reads "exif" instead of "Exif": ExifTool reads
// it, but refuses to write EXIF into it with a minor error unless told to ignore minor errors ("-m").
std::filesystem::path makeJPEGWithMinorExifDefect(const std::filesystem::path& path);

// The outcome of one ExifTool run made by the helpers below.
struct ExifToolRun {
    int exitCode = -1;
    std::string standardOutput;
    std::string standardError;
};

// Runs /usr/bin/exiftool (or $CORVANE_EXIFTOOL) with the arguments passed through an argument file,
// never through a shell; arguments with line breaks go as escaped argfile lines. Blocks until done.
ExifToolRun runExifTool(const std::vector<std::string>& arguments);

// Writes tags into a file in place: runExifTool({"-overwrite_original", args..., path}).
// Throws std::runtime_error with ExifTool's messages when ExifTool reports an error or nothing changed.
void tagWithExifTool(const std::filesystem::path& path, const std::vector<std::string>& arguments);

// The value of one tag as ExifTool prints it ("-s3"), e.g. exifToolValue(p, "EXIF:Artist");
// "-n" gives the raw value. Empty when absent.
std::string exifToolValue(const std::filesystem::path& path, const std::string& tag, bool raw = false);

} // namespace corvane::test
