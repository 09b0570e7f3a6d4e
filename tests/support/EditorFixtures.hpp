// Editors over storages built in memory, and catalogue tags to edit with them, for the editor and
// edition tests and the editing benchmarks. Nothing is read from or written to disk.

#pragma once

#include "corvane/tag_editor/ETTagEditor.hpp"
#include "corvane/tag_value/TagCatalogue.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace corvane::test {

// The first `count` writable catalogue tags: all editable in a folder.
inline std::vector<TagName> writableNames(std::size_t count) {
    std::vector<TagName> names;
    for (const TagItem* item : TagCatalogue::shared().items()) {
        if (names.size() == count) break;
        if (item->isWritable()) names.push_back(item->name());
    }
    return names;
}

// An editor of the folder at `path`, with no tag read.
inline std::shared_ptr<ETTagEditor> folderEditor(const std::string& path = "/photos/trip") {
    return ETTagEditor::create(TagStorage(TagStorageSource(path)));
}

// An editor of the file at `path` whose tags were read as `values`.
inline std::shared_ptr<TagEditor>
editorWith(const std::vector<std::pair<const TagItem*, std::string>>& values,
           const std::string& path = "/photos/shot.jpg") {
    TagStorage storage{TagStorageSource(path)};
    for (const auto& [item, value] : values)
        storage.setOriginalValue(value, item->name());
    return ETTagEditor::create(std::move(storage));
}

} // namespace corvane::test
