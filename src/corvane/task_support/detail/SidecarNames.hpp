#pragma once

#include <filesystem>
#include <string>

namespace corvane::detail {

// The text with its ASCII letters lower-cased or upper-cased: format keys and file extensions.
std::string asciiLowercased(std::string text);
std::string asciiUppercased(std::string text);

// A fresh hidden name beside `destination`, with its extension (ExifTool picks the format to create
// by it): a file is written there, then renamed over the destination on the same file system once
// complete, so that a failed write leaves the destination as it was.
std::filesystem::path scratchURLBeside(const std::filesystem::path& destination);

} // namespace corvane::detail
