#include "corvane/tag_table/TagValueRow.hpp"

#include "corvane/tag_value/TagItem.hpp"

#include <set>

namespace corvane {

TagValueRow::TagValueRow(std::shared_ptr<const Editors> editors, const TagItem& tagItem)
    : tagItem_(&tagItem), editors_(std::move(editors)), isSupported_(tagItem.type().isSupported()) {
    const TagName& name = tagItem.name();
    std::set<std::string> values;
    for (const auto& editor : *editors_) {
        values.insert(editor->currentValue(name).value_or(std::string()));
        if (!isEdited_) isEdited_ = editor->isValueEdited(name);
        if (canBeEdited_) canBeEdited_ = editor->canEditValue(name);
    }
    string_ = MultiValuedString(values);
}

} // namespace corvane
