#pragma once

#include "corvane/tag_storages/AssetHandle.hpp"
#include "corvane/utilities/Date.hpp"
#include "corvane/value_models/PlatformLocation.hpp"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

class TagEditor;

/// A photo library, as the tasks that read, write and add assets need it.
///
/// An asset's metadata can't be written in place: its content is copied to the editor's temporary
/// file, the writers work on that file, and the library then imports the result as a new asset and
/// removes the old one, in that order, so that nothing is lost when the second step fails.
///
/// A backend supplies the primitive operations (the pure virtual members): fetching assets,
/// locating their files, one block of changes that creates and deletes assets, and access. The
/// steps built on them (`prepareAssetsForUpdate`, `updateAndReplaceAssets`) are written once here.
/// The library ships two backends: `FolderPhotoLibrary` (a folder tree of pictures, for real use)
/// and `MemoryPhotoLibrary` (for tests).
///
/// A host installs its library with `setShared` at launch; without one the process has no photo
/// library, and every request for it is refused. Every call blocks its caller and is made from
/// tasks, off the main thread; backends are safe to call from any thread.
class PhotoLibrary {
public:
    /// What one asset is created with.
    struct AssetCreation {
        std::filesystem::path file; ///< the file the asset is made from
        /// The name the asset's file goes by (the edited asset's own name when `file` is a
        /// temporary copy); empty: the name of `file`.
        std::string filename;
        /// The date the asset is filed under; none leaves it to the backend.
        std::optional<Date> creationDate;
        std::optional<PlatformLocation> location; ///< the position the asset is filed with
    };

    /// The changes of one `performChangesAndWait` block. Requests are applied together when the
    /// block returns; nothing is applied when the block or the backend fails.
    class ChangeRequest {
    public:
        virtual ~ChangeRequest() = default;
        /// Adds an asset from a local file; returns the local identifier the new asset will have.
        virtual std::string createAsset(const AssetCreation& creation) = 0;
        /// Removes these assets from the library.
        virtual void deleteAssets(const std::vector<AssetHandle>& assets) = 0;
    };

    virtual ~PhotoLibrary() = default;

    /// The library in use, or nullptr when the process has no photo library (the default).
    static std::shared_ptr<PhotoLibrary> shared();
    /// Installs (or, with nullptr, removes) the process-wide library.
    static void setShared(std::shared_ptr<PhotoLibrary> library);

    // --- Primitive operations, supplied by a backend.

    /// Whether the process may read and change the library.
    virtual bool requestAuthorization() = 0;
    /// The assets of those identifiers that exist, in the library's order.
    virtual std::vector<AssetHandle> fetchAssets(const std::vector<std::string>& localIdentifiers) = 0;
    /// The file of each asset's content, by local identifier; an asset without one is left out.
    virtual std::unordered_map<std::string, std::filesystem::path>
    urls(const std::vector<AssetHandle>& assets) = 0;
    /// Runs `changes` as one block and waits for it to be applied. Throws `corvane::Error` with the
    /// backend's reason when the block or its application fails; then nothing of it is applied.
    virtual void performChangesAndWait(const std::function<void(ChangeRequest&)>& changes) = 0;

    // --- Steps built on them.

    /// Copies the content of each asset editor's source to the editor's temporary URL, so that the
    /// writers can work on a file. Editors of plain files are passed over. Throws FileError, naming the
    /// asset, when a copy fails.
    virtual void prepareAssetsForUpdate(const std::vector<std::shared_ptr<TagEditor>>& editors);

    /// Imports the written temporary file of each asset editor as a new asset (all of them in one
    /// block), then deletes the old assets (in a second block), then points each editor at its new
    /// asset and file. Does nothing without asset editors. A failure of the first block leaves the
    /// old assets as they were; either failure is thrown to the caller. The temporary files are
    /// removed once the new assets hold their content.
    virtual void updateAndReplaceAssets(const std::vector<std::shared_ptr<TagEditor>>& editors);

    /// The asset editors among `editors`, in order.
    static std::vector<std::shared_ptr<TagEditor>>
    assetEditors(const std::vector<std::shared_ptr<TagEditor>>& editors);

    /// The creation date a new asset takes from an editor's tags: the first present of
    /// EXIF:DateTimeOriginal, EXIF:CreateDate and File:FileCreateDate.
    static std::optional<Date> creationDate(TagEditor& editor);
    /// The position a new asset takes from an editor's tags: EXIF's latitude and longitude, else
    /// the QuickTime coordinate; with a coordinate, EXIF's altitude and GPS time stamp (the clock's
    /// present moment without one).
    std::optional<PlatformLocation> location(TagEditor& editor) const;

    /// The clock that dates what has no date of its own; the system clock by default.
    void setClock(std::function<Date()> clock);
    /// The present moment, from the clock.
    Date now() const;

private:
    std::function<Date()> clock_;
};

} // namespace corvane
