#include "corvane/tag_storages/AssetHandle.hpp"

#include <utility>

namespace corvane {

AssetHandle::AssetHandle(std::string localIdentifier) : localIdentifier_(std::move(localIdentifier)) {}

} // namespace corvane
