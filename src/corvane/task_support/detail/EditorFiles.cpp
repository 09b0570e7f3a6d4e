#include "corvane/task_support/detail/EditorFiles.hpp"

#include "corvane/tag_edition/EditionManager.hpp"
#include "corvane/tag_storages/ETTagStorageReader.hpp"

namespace corvane::detail {

std::filesystem::path targetURL(const TagEditor& editor) {
    return editor.isAsset() ? editor.temporaryURL() : editor.source().url();
}

TagStorageSource targetSource(const TagEditor& editor) {
    const auto source = editor.source();
    return editor.isAsset() ? source.withURL(editor.temporaryURL()) : source;
}

void reloadFileEditors(const EditorList& editors) {
    EditorList files;
    std::vector<TagStorageSource> sources;
    for (const auto& editor : editors) {
        if (editor->isFolder()) continue;
        files.push_back(editor);
        sources.push_back(targetSource(*editor));
    }
    if (files.empty()) return;
    // The same reading as the one that opened the editors, so that the values compare alike.
    ETTagStorageReader::Settings settings(sources);
    settings.setEnableRawValues(true);
    settings.setEnableShortTags(true);
    settings.setDisableComposite(true);
    settings.setIgnoreMinorErrors(true);
    settings.setupDefaultBannedValues();
    ETTagStorageReader reader(std::move(settings));
    auto storages = reader.readStorages();
    // One session: the views get one flush of the history for the whole group.
    EditionManager::Session session;
    for (std::size_t k = 0; k < files.size(); ++k) {
        const auto found = storages.find(sources[k].url());
        if (found == storages.end()) continue;
        // The storage read from an asset's copy stands for the asset.
        files[k]->reloadValues(found->second.movedTo(files[k]->source()));
    }
}

} // namespace corvane::detail
