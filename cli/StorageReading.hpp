#pragma once

#include "corvane/tag_storages/TagStorage.hpp"

#include <string>
#include <vector>

namespace corvane::cli {

// Reads the files through ExifTool in one run and gives their storages in the order of `paths`.
// Missing files and files ExifTool could not read are reported on standard error, set
// `exitCode` to 1, and are left out.
std::vector<TagStorage> readStorages(const std::vector<std::string>& paths, int& exitCode);

} // namespace corvane::cli
