#pragma once

// What the tasks that change files directly (cleaning, atom removal, thumbnails) share: the file an
// editor's change goes to, the photo-library round trip of asset editors, and re-reading the editors
// once their files have changed.

#include "corvane/photos_library/PhotoLibrary.hpp"
#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/tag_storages/TagStorageSource.hpp"

#include <filesystem>
#include <memory>
#include <vector>

namespace corvane::detail {

using EditorList = std::vector<std::shared_ptr<TagEditor>>;

// The file that a change of the editor goes to: an asset's temporary copy, a file's own URL.
std::filesystem::path targetURL(const TagEditor& editor);
// The editor's source with `targetURL` as its URL, as the ExifTool runs take it.
TagStorageSource targetSource(const TagEditor& editor);

// With asset editors among `editors`: the photo library once it has granted access, after their
// content has been copied to their temporary files. Nothing when there is no asset editor. Throws
// `refused` when the process has no library or access is refused.
template <class Refusal>
std::shared_ptr<PhotoLibrary> prepareAssets(const EditorList& editors, const Refusal& refused) {
    if (PhotoLibrary::assetEditors(editors).empty()) return nullptr;
    auto library = PhotoLibrary::shared();
    if (!library || !library->requestAuthorization()) throw refused;
    library->prepareAssetsForUpdate(editors);
    return library;
}

// Reads the editors' files again through ExifTool (an asset from its temporary copy) and gives each
// editor its new originals, keeping its edits. Folder editors are passed over. Throws as the ExifTool
// reader does.
void reloadFileEditors(const EditorList& editors);

} // namespace corvane::detail
