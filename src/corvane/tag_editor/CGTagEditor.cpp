#include "corvane/tag_editor/CGTagEditor.hpp"

namespace corvane {

CGTagEditor::CGTagEditor(TagStorage storage) : TagEditor(std::move(storage)) {}

std::shared_ptr<CGTagEditor> CGTagEditor::create(TagStorage storage) {
    return makeShared<CGTagEditor>(std::move(storage));
}

TagAccess CGTagEditor::access(const TagName& tagName) const {
    if (!tagName.cgName()) return TagAccess::n;
    return TagEditor::access(tagName);
}

} // namespace corvane
