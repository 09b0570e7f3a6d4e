#pragma once

#include "corvane/photos_library/PhotoLibrary.hpp"

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A photo library kept as a folder tree of pictures, the way photo managers on Linux index one.
///
/// Its root is the user's pictures folder (the XDG `PICTURES` user directory) unless another is
/// given. An asset is an image or movie file under the root, and its identifier is its path
/// relative to the root, with "/" between folders. A created asset is copied in under
/// `YYYY/MM/` of its creation date (the file's modification date when it has none), with the
/// file's own name, or the name followed by " (2)", " (3)"... when that one is taken: nothing is
/// ever overwritten. A deleted asset is moved to the freedesktop Trash, never unlinked. The
/// location of a created asset is carried by the file's own tags; the folder keeps nothing else.
///
/// Access is granted when the root is a folder the process can write into. Thread-safe: change
/// blocks are applied one at a time.
class FolderPhotoLibrary : public PhotoLibrary {
public:
    /// A library over `root`, or over the user's pictures folder.
    explicit FolderPhotoLibrary(std::optional<std::filesystem::path> root = std::nullopt);

    /// The user's pictures folder: the XDG `PICTURES` user directory, else ~/Pictures.
    static std::filesystem::path picturesFolder();

    /// The folder the library lists.
    const std::filesystem::path& root() const { return root_; }
    /// Every asset of the library (its image and movie files), in identifier order.
    std::vector<AssetHandle> allAssets() const;
    /// The asset identifier of a file under the root; nothing for a file outside it.
    std::optional<std::string> identifier(const std::filesystem::path& file) const;

    bool requestAuthorization() override;
    std::vector<AssetHandle> fetchAssets(const std::vector<std::string>& localIdentifiers) override;
    std::unordered_map<std::string, std::filesystem::path>
    urls(const std::vector<AssetHandle>& assets) override;
    /// A creation reserves its file (a free name) when it is requested; when the block returns,
    /// the contents are copied, then deleted assets are moved to the Trash. A failure before the
    /// moves removes the files this block made and throws; a file that can't be moved throws too
    /// (the files already moved stay in the Trash, from where they can be restored).
    void performChangesAndWait(const std::function<void(ChangeRequest&)>& changes) override;

private:
    /// The file of an identifier, when it names a file under the root.
    std::optional<std::filesystem::path> fileOf(const std::string& identifier) const;
    /// Makes the empty file a creation will fill, under the folder of its date, with a free name.
    std::filesystem::path reserveFile(const AssetCreation& creation) const;

    std::filesystem::path root_;
    std::mutex changesMutex_;
};

} // namespace corvane
