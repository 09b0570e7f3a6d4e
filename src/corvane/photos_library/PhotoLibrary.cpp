#include "corvane/photos_library/PhotoLibrary.hpp"

#include "corvane/tag_editor/TagEditor.hpp"
#include "corvane/utilities/FileError.hpp"

#include <filesystem>
#include <mutex>

namespace corvane {

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
    namespace fs = std::filesystem;
    for (const auto& editor : assetEditors(editors)) {
        const fs::path source = editor->source().url();
        const fs::path target = editor->temporaryURL();
        std::error_code error;
        if (target.has_parent_path()) fs::create_directories(target.parent_path(), error);
        if (!error) fs::copy_file(source, target, fs::copy_options::overwrite_existing, error);
        if (error) throw FileError(source, "Cannot copy the asset to " + target.string(), error);
    }
}

std::vector<std::shared_ptr<TagEditor>>
PhotoLibrary::assetEditors(const std::vector<std::shared_ptr<TagEditor>>& editors) {
    std::vector<std::shared_ptr<TagEditor>> result;
    for (const auto& editor : editors)
        if (editor && editor->isAsset()) result.push_back(editor);
    return result;
}

} // namespace corvane
