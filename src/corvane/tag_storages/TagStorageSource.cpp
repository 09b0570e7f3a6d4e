#include "corvane/tag_storages/TagStorageSource.hpp"

#include "corvane/helpers/FileSystemHelpers.hpp"

#include <utility>

namespace corvane {

TagStorageSource::TagStorageSource(std::filesystem::path url, std::optional<AssetHandle> asset,
                                   std::optional<std::string> password)
    : url_(std::move(url)), asset_(std::move(asset)), password_(std::move(password)) {}

bool TagStorageSource::isFolder() const {
    return pathExtension(url_).empty();
}

TagStorageSource TagStorageSource::withURL(std::filesystem::path url) const {
    return TagStorageSource(std::move(url), std::nullopt, password_);
}

TagStorageSource TagStorageSource::withPassword(std::optional<std::string> password) const {
    return TagStorageSource(url_, std::nullopt, std::move(password));
}

} // namespace corvane
