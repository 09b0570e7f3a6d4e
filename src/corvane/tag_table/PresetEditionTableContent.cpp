#include "corvane/tag_table/PresetEditionTableContent.hpp"

#include "corvane/tag_value/TagItem.hpp"

namespace corvane {

std::optional<PresetEditionRow> PresetEditionRow::make(const PresetItem::Entry& entry) {
    const TagItem* item = entry.tagName().item();
    if (!item) return std::nullopt;
    return PresetEditionRow(*item, entry);
}

bool PresetEditionRow::isWritable() const {
    return tagItem_->isWritable();
}

std::set<PresetEditionTableRequest::Field>
PresetEditionTableRequest::diff(const PresetEditionTableRequest& other) const {
    std::set<Field> fields;
    if (presetItem != other.presetItem) fields.insert(Field::presetItem);
    if (convert != other.convert) fields.insert(Field::convert);
    if (filter != other.filter) fields.insert(Field::filter);
    if (selection != other.selection) fields.insert(Field::selection);
    return fields;
}

TagSet PresetEditionTableContent::presetTagSet(const PresetItemRef& preset) {
    std::vector<TagSet::FlatEntry> names;
    if (preset)
        for (const auto& entry : preset->entries())
            names.emplace_back(entry.tagName());
    return TagSet(std::move(names));
}

PresetEditionTableContent::PresetEditionTableContent(const PresetEditionTableRequest& request)
    : BasicTableContent(request, presetTagSet(request.presetItem)) {
    reloadEntries();
    reloadSelection();
}

void PresetEditionTableContent::reloadEntries() {
    entries_.clear();
    if (!request_.presetItem) return;
    for (const auto& entry : request_.presetItem->entries()) {
        auto row = PresetEditionRow::make(entry);
        if (!row || (request_.filter && !request_.filter->value()(*row))) continue;
        if (request_.convert) row->setObjectValue(request_.convert->value()(*row));
        entries_.emplace_back(std::move(*row));
    }
}

} // namespace corvane
