#pragma once

#include <functional>
#include <string>

namespace corvane {

/// An opaque handle on one photo-library asset: its local identifier, which the photo-library
/// bridge resolves when it reads or writes the asset. A storage only carries it around.
class AssetHandle {
public:
    /// The handle of the asset with this identifier.
    explicit AssetHandle(std::string localIdentifier);

    /// The photo library's identifier of the asset.
    const std::string& localIdentifier() const { return localIdentifier_; }

    friend bool operator==(const AssetHandle&, const AssetHandle&) = default;

private:
    std::string localIdentifier_;
};

} // namespace corvane

template <> struct std::hash<corvane::AssetHandle> {
    size_t operator()(const corvane::AssetHandle& a) const noexcept {
        return std::hash<std::string>()(a.localIdentifier());
    }
};
