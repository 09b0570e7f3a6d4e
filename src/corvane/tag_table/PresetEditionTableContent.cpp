#include "corvane/tag_table/PresetEditionTableContent.hpp"

#include "corvane/tag_table/GenericTableContent.hpp"
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

namespace {

IndexSet entryRows(const IndexSet& requested, const std::vector<PresetEditionEntry>& entries) {
    return selectableIndexes(requested, entries, [](const PresetEditionEntry& entry) {
        return std::holds_alternative<PresetEditionRow>(entry);
    });
}

} // namespace

PresetEditionTableContent::PresetEditionTableContent(const PresetEditionTableRequest& request)
    : request_(request) {
    if (request_.presetItem) {
        std::vector<TagSet::FlatEntry> names;
        for (const auto& entry : request_.presetItem->entries())
            names.emplace_back(entry.tagName());
        tagSet_ = TagSet(std::move(names));
    }
    reloadEntries();
    selection_ = entryRows(request_.selection, entries_);
}

PresetEditionTableContent
PresetEditionTableContent::reselected(const PresetEditionTableRequest& request) const {
    PresetEditionTableContent content = *this;
    content.request_ = request;
    content.selection_ = entryRows(request.selection, entries_);
    return content;
}

PresetEditionTableContent PresetEditionTableContent::with(const IndexSet& selection) const {
    PresetEditionTableRequest request = request_;
    request.selection = selection;
    return reselected(request);
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
