#pragma once

#include "corvane/tag_storages/AssetHandle.hpp"

#include <filesystem>
#include <optional>
#include <string>

namespace corvane {

/// Where a storage reads from: a file or folder, or a photo-library asset together with the
/// local file that stands for it, and the password an engine may need to open the file.
class TagStorageSource {
public:
    /// The file or folder at `url`; for a photo-library asset its handle (and `url` is its file);
    /// the password of a protected file (PDF).
    explicit TagStorageSource(std::filesystem::path url, std::optional<AssetHandle> asset = std::nullopt,
                              std::optional<std::string> password = std::nullopt);

    /// The URL; the asset's handle, if it is one; the password, if any.
    ///@{
    const std::filesystem::path& url() const { return url_; }
    const std::optional<AssetHandle>& asset() const { return asset_; }
    const std::optional<std::string>& password() const { return password_; }
    ///@}

    /// A folder is a URL without path extension; the file system isn't asked.
    bool isFolder() const;
    bool isAsset() const { return asset_.has_value(); } ///< the source is a photo-library asset

    /// A copy with this URL and no asset; the password is kept.
    TagStorageSource withURL(std::filesystem::path url) const;
    /// A copy with this password and no asset; the URL is kept.
    TagStorageSource withPassword(std::optional<std::string> password) const;

    friend bool operator==(const TagStorageSource&, const TagStorageSource&) = default;

private:
    std::filesystem::path url_;
    std::optional<AssetHandle> asset_;
    std::optional<std::string> password_;
};

} // namespace corvane
