#pragma once

#include "corvane/photos_library/PhotoLibrary.hpp"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A photo library kept in memory, for tests of code that writes assets. Each asset is a record
/// (identifier, creation date, location) over a file of its own in `storageFolder`. Every primitive
/// operation can be made to fail, to test that callers lose nothing whatever step fails.
///
/// Thread-safe: every member locks the library.
class MemoryPhotoLibrary : public PhotoLibrary {
public:
    /// One asset of the library: its identifier, the file that holds its original, its creation
    /// date and its position as the library keeps them.
    struct Asset {
        std::string localIdentifier;              ///< unique in the library
        std::filesystem::path file;               ///< the original, read and replaced in place
        std::optional<Date> creationDate;         ///< as the library records it
        std::optional<PlatformLocation> location; ///< as the library records it
    };

    /// The operations that `failAt` can make fail.
    enum class Step { authorization, fetch, urls, createAssets, deleteAssets };

    /// Assets' files are copied into `storageFolder`, which must exist.
    explicit MemoryPhotoLibrary(std::filesystem::path storageFolder);

    /// Adds an asset outside any change block (a library's content before a test); its file is a
    /// copy of `file`. Returns the new identifier.
    std::string addAsset(const std::filesystem::path& file, std::optional<Date> creationDate = std::nullopt);
    /// The assets, in the order they were created.
    std::vector<Asset> assets() const;
    /// The changes applied, in order: "create ID" and "delete ID".
    std::vector<std::string> journal() const;

    /// Makes every later call of `step` fail (nothing for none).
    void failAt(std::optional<Step> step);
    /// Whether `requestAuthorization` grants access from now on.
    void setAuthorized(bool authorized);

    bool requestAuthorization() override;
    std::vector<AssetHandle> fetchAssets(const std::vector<std::string>& localIdentifiers) override;
    std::unordered_map<std::string, std::filesystem::path>
    urls(const std::vector<AssetHandle>& assets) override;
    void performChangesAndWait(const std::function<void(ChangeRequest&)>& changes) override;

private:
    void throwIfFailing(Step step) const;
    std::string copyIn(const std::filesystem::path& file);

    mutable std::mutex mutex_;
    std::filesystem::path storageFolder_;
    std::vector<Asset> assets_;
    std::vector<std::string> journal_;
    std::optional<Step> failingStep_;
    bool authorized_ = true;
    int nextNumber_ = 1;
};

} // namespace corvane
