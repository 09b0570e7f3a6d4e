#pragma once

#include "corvane/sidecar_support/SidecarFormat.hpp"
#include "corvane/tag_storages/TagStorage.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace corvane {

/// Writes the current tags of a storage (its written values, else its originals) as a sidecar.
/// Every operation may throw: the writer's own typed errors and file-system errors.
class SidecarWriter {
public:
    SidecarWriter() = default;
    virtual ~SidecarWriter() = default;

    /// The sidecar's bytes.
    virtual std::string data(const TagStorage& storage) const = 0;
    /// Creates the destination's folders, then writes `data(storage)` to it (replacing the file as
    /// a whole, so that a failed write leaves no half file). Throws FileError, naming the folder or
    /// the file, when either fails.
    virtual void write(const TagStorage& storage, const std::filesystem::path& url) const;

    /// The writer of a sidecar format by its path extension, "json" or "csv" in any case; nullptr
    /// for any other.
    static std::unique_ptr<SidecarWriter> forPathExtension(std::string_view pathExtension);
    /// Writes the sidecar of `storage` in the format named by the extension of `url`;
    /// NotASidecarError for an extension that names no sidecar format.
    static void writeSidecar(const TagStorage& storage, const std::filesystem::path& url);
};

} // namespace corvane
