#include "corvane/photos_library/PhotoLibrary.hpp"

#include "corvane/tag_editor/EXIFAccessor.hpp"
#include "corvane/tag_editor/QuickTimeAccessor.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"
#include "corvane/tag_value/TagItem.hpp"
#include "corvane/utilities/FileError.hpp"
#include "corvane/value_models/GPSLocation.hpp"

#include <mutex>
#include <system_error>
#include <utility>

namespace corvane {

namespace fs = std::filesystem;

namespace {

std::mutex& sharedMutex() {
    static std::mutex mutex;
    return mutex;
}

std::shared_ptr<PhotoLibrary>& sharedLibrary() {
    static std::shared_ptr<PhotoLibrary> library;
    return library;
}

} // namespace

std::shared_ptr<PhotoLibrary> PhotoLibrary::shared() {
    std::lock_guard lock(sharedMutex());
    return sharedLibrary();
}

void PhotoLibrary::setShared(std::shared_ptr<PhotoLibrary> library) {
    std::lock_guard lock(sharedMutex());
    sharedLibrary() = std::move(library);
}

void PhotoLibrary::prepareAssetsForUpdate(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    for (const auto& editor : assetEditors(editors)) {
        const fs::path source = editor->source().url();
        const fs::path target = editor->temporaryURL();
        std::error_code error;
        if (target.has_parent_path()) fs::create_directories(target.parent_path(), error);
        if (!error) fs::copy_file(source, target, fs::copy_options::overwrite_existing, error);
        if (error) throw FileError(source, "Cannot copy the asset to " + target.string(), error);
    }
}

void PhotoLibrary::updateAndReplaceAssets(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    const auto assets = assetEditors(editors);
    if (assets.empty()) return;

    // What each new asset is made of, read before any change.
    std::vector<AssetCreation> creations;
    std::vector<AssetHandle> oldAssets;
    for (const auto& editor : assets) {
        creations.push_back({editor->temporaryURL(), editor->source().url().filename().string(),
                             creationDate(*editor), location(*editor)});
        oldAssets.push_back(*editor->source().asset());
    }
    // The temporary copies go, whatever happens: a new asset holds its own copy of the content.
    struct TemporaryFiles {
        const std::vector<AssetCreation>& creations;
        ~TemporaryFiles() {
            std::error_code ignored;
            for (const auto& creation : creations)
                fs::remove(creation.file, ignored);
        }
    } temporaryFiles{creations};

    // First every new asset; only when all of them exist are the old ones removed.
    std::vector<std::string> newIdentifiers;
    performChangesAndWait([&](ChangeRequest& request) {
        newIdentifiers.clear();
        for (const auto& creation : creations)
            newIdentifiers.push_back(request.createAsset(creation));
    });
    performChangesAndWait([&](ChangeRequest& request) { request.deleteAssets(oldAssets); });

    // Each editor follows its new asset, keeping the password of its old source.
    const auto newAssets = fetchAssets(newIdentifiers);
    const auto newURLs = urls(newAssets);
    for (size_t i = 0; i < assets.size(); ++i) {
        const auto url = newURLs.find(newIdentifiers[i]);
        if (url == newURLs.end()) continue;
        const auto& old = assets[i]->source();
        assets[i]->updateSource(
            TagStorageSource(url->second, AssetHandle(newIdentifiers[i]), old.password()));
    }
}

std::vector<std::shared_ptr<TagEditor>>
PhotoLibrary::assetEditors(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    std::vector<std::shared_ptr<TagEditor>> result;
    for (const auto& editor : editors)
        if (editor && editor->isAsset()) result.push_back(editor);
    return result;
}

std::optional<Date> PhotoLibrary::creationDate(TagEditor& editor) {
    EXIFAccessor exif(editor);
    if (auto date = exif.exifDateTimeOriginal()) return date;
    if (auto date = exif.exifCreateDate()) return date;
    const auto fileDate = exif.currentNativeValue(TagItem::itemFileFileCreateDate());
    if (const auto* date = std::get_if<Date>(&fileDate.storage)) return *date;
    return std::nullopt;
}

std::optional<PlatformLocation> PhotoLibrary::location(TagEditor& editor) const {
    EXIFAccessor exif(editor);
    std::optional<Coordinate> coordinate;
    const auto latitude = exif.exifGPSLatitude();
    const auto longitude = exif.exifGPSLongitude();
    if (latitude && longitude)
        coordinate = Coordinate(*latitude, *longitude);
    else
        coordinate = QuickTimeAccessor(editor).quicktimeGPSCoordinate();
    if (!coordinate) return std::nullopt;
    const auto stamp = exif.exifGPSStamp();
    auto result = GPSLocation(*coordinate, exif.exifGPSAltitude(), exif.exifGPSImgDirection(), stamp)
                      .platformLocation();
    if (!stamp) result.timestamp = now();
    return result;
}

void PhotoLibrary::setClock(std::function<Date()> clock) {
    clock_ = std::move(clock);
}

Date PhotoLibrary::now() const {
    return clock_ ? clock_() : Date::now();
}

} // namespace corvane
