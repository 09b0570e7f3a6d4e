#include "corvane/photos_library/MemoryPhotoLibrary.hpp"

#include "corvane/utilities/Error.hpp"

#include <algorithm>
#include <system_error>
#include <utility>

namespace corvane {

namespace fs = std::filesystem;

namespace {

// The changes of one block, applied only when the block has returned.
class PendingChanges : public PhotoLibrary::ChangeRequest {
public:
    explicit PendingChanges(int firstNumber) : nextNumber(firstNumber) {}

    std::string createAsset(const PhotoLibrary::AssetCreation& creation) override {
        creations.emplace_back("MEM-" + std::to_string(nextNumber++), creation);
        return creations.back().first;
    }
    void deleteAssets(const std::vector<AssetHandle>& assets) override {
        deletions.insert(deletions.end(), assets.begin(), assets.end());
    }

    int nextNumber;
    std::vector<std::pair<std::string, PhotoLibrary::AssetCreation>> creations;
    std::vector<AssetHandle> deletions;
};

} // namespace

MemoryPhotoLibrary::MemoryPhotoLibrary(fs::path storageFolder) : storageFolder_(std::move(storageFolder)) {}

std::string MemoryPhotoLibrary::copyIn(const fs::path& file) {
    const std::string identifier = "MEM-" + std::to_string(nextNumber_++);
    const fs::path target = storageFolder_ / (identifier + file.extension().string());
    std::error_code error;
    fs::copy_file(file, target, fs::copy_options::overwrite_existing, error);
    if (error) throw Error(file.string() + ": can't be added to the library: " + error.message());
    assets_.push_back({identifier, target, std::nullopt, std::nullopt});
    return identifier;
}

std::string MemoryPhotoLibrary::addAsset(const fs::path& file, std::optional<Date> creationDate) {
    std::lock_guard lock(mutex_);
    const auto identifier = copyIn(file);
    assets_.back().creationDate = creationDate;
    return identifier;
}

std::vector<MemoryPhotoLibrary::Asset> MemoryPhotoLibrary::assets() const {
    std::lock_guard lock(mutex_);
    return assets_;
}

std::vector<std::string> MemoryPhotoLibrary::journal() const {
    std::lock_guard lock(mutex_);
    return journal_;
}

void MemoryPhotoLibrary::failAt(std::optional<Step> step) {
    std::lock_guard lock(mutex_);
    failingStep_ = step;
}

void MemoryPhotoLibrary::setAuthorized(bool authorized) {
    std::lock_guard lock(mutex_);
    authorized_ = authorized;
}

void MemoryPhotoLibrary::throwIfFailing(Step step) const {
    if (failingStep_ == step) throw Error("The photo library failed (injected failure)");
}

bool MemoryPhotoLibrary::requestAuthorization() {
    std::lock_guard lock(mutex_);
    throwIfFailing(Step::authorization);
    return authorized_;
}

std::vector<AssetHandle> MemoryPhotoLibrary::fetchAssets(const std::vector<std::string>& localIdentifiers) {
    std::lock_guard lock(mutex_);
    throwIfFailing(Step::fetch);
    std::vector<AssetHandle> result;
    for (const auto& asset : assets_)
        if (std::find(localIdentifiers.begin(), localIdentifiers.end(), asset.localIdentifier) !=
            localIdentifiers.end())
            result.emplace_back(asset.localIdentifier);
    return result;
}

std::unordered_map<std::string, fs::path> MemoryPhotoLibrary::urls(const std::vector<AssetHandle>& assets) {
    std::lock_guard lock(mutex_);
    throwIfFailing(Step::urls);
    std::unordered_map<std::string, fs::path> result;
    for (const auto& handle : assets)
        for (const auto& asset : assets_)
            if (asset.localIdentifier == handle.localIdentifier())
                result.emplace(asset.localIdentifier, asset.file);
    return result;
}

void MemoryPhotoLibrary::performChangesAndWait(const std::function<void(ChangeRequest&)>& changes) {
    std::unique_lock lock(mutex_);
    PendingChanges pending(nextNumber_);
    // The block runs unlocked: it may read the library.
    lock.unlock();
    changes(pending);
    lock.lock();
    if (!pending.creations.empty()) throwIfFailing(Step::createAssets);
    if (!pending.deletions.empty()) throwIfFailing(Step::deleteAssets);
    for (const auto& handle : pending.deletions)
        if (std::none_of(assets_.begin(), assets_.end(), [&](const Asset& asset) {
                return asset.localIdentifier == handle.localIdentifier();
            }))
            throw Error("No asset " + handle.localIdentifier() + " in the library");

    // All checked: apply. Identifiers are those the block was given.
    nextNumber_ = std::max(nextNumber_, pending.nextNumber);
    for (const auto& [identifier, creation] : pending.creations) {
        const fs::path target = storageFolder_ / (identifier + creation.file.extension().string());
        std::error_code error;
        fs::copy_file(creation.file, target, fs::copy_options::overwrite_existing, error);
        if (error) {
            const std::string reason = error.message();
            // Take back what this block added, so that a failed block changes nothing.
            for (const auto& [added, unused] : pending.creations) {
                if (added == identifier) break;
                const auto it =
                    std::find_if(assets_.begin(), assets_.end(), [&added = added](const Asset& asset) {
                        return asset.localIdentifier == added;
                    });
                fs::remove(it->file, error);
                assets_.erase(it);
                journal_.pop_back();
            }
            throw Error(creation.file.string() + ": can't be added to the library: " + reason);
        }
        assets_.push_back({identifier, target, creation.creationDate, creation.location});
        journal_.push_back("create " + identifier);
    }
    for (const auto& handle : pending.deletions) {
        const auto it = std::find_if(assets_.begin(), assets_.end(), [&](const Asset& asset) {
            return asset.localIdentifier == handle.localIdentifier();
        });
        std::error_code ignored;
        fs::remove(it->file, ignored);
        assets_.erase(it);
        journal_.push_back("delete " + handle.localIdentifier());
    }
}

} // namespace corvane
