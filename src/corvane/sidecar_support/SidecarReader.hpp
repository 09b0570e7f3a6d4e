#pragma once

#include "corvane/sidecar_support/SidecarFormat.hpp"
#include "corvane/tag_value/TagName.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace corvane {

class TagStorage;

/// Reads the tags of a sidecar file: tag names and their canonical string values, nothing about the
/// media file the sidecar belongs to. Every operation may throw: the reader's own typed errors,
/// parse errors of the format, and file-system errors.
class SidecarReader {
public:
    /// Canonical string values by tag name.
    using Values = std::unordered_map<TagName, std::string>;

    SidecarReader() = default;
    virtual ~SidecarReader() = default;

    /// The bytes of a sidecar file.
    virtual Values readData(std::string_view data) const = 0;
    /// A sidecar already held as text (UTF-8).
    virtual Values readString(std::string_view string) const = 0;
    /// Reads the whole file into memory (FileError when that fails), then
    /// `readData`.
    virtual Values readContentsOf(const std::filesystem::path& url) const;

    /// The reader of a sidecar format by its path extension, "json" or "csv" in any case; nullptr
    /// for any other.
    static std::unique_ptr<SidecarReader> forPathExtension(std::string_view pathExtension);
    /// Reads a sidecar with the reader its extension names; NotASidecarError for an extension
    /// that names no sidecar format.
    static Values readSidecar(const std::filesystem::path& url);

    /// The values of a sidecar that would change `storage`, as edits to make. Left out: file-system
    /// facts (they belong to the file the sidecar came from), values the storage already holds in
    /// the sidecar's spelling ("1.80000000" and 1.8, "1 0 0" and [1, 0, 0], a value the sidecar
    /// can't hold and its empty text) - such a value may stand for several places of the file (each
    /// track's matrix of a movie), and writing it back would change them - and tags the storage
    /// can't edit, which go to `refused` when given. A sidecar exported from a file and imported
    /// into it changes nothing.
    static Values changesTo(const TagStorage& storage, const Values& values,
                            std::vector<TagName>* refused = nullptr);
};

} // namespace corvane
