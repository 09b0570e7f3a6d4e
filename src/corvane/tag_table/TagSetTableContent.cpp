#include "corvane/tag_table/TagSetTableContent.hpp"

#include "corvane/tag_table/GenericTableContent.hpp"

namespace corvane {

std::set<TagSetTableRequest::Field> TagSetTableRequest::diff(const TagSetTableRequest& other) const {
    std::set<Field> fields;
    if (domain_ != other.domain_) fields.insert(Field::domain);
    if (filter != other.filter) fields.insert(Field::filter);
    if (selection != other.selection) fields.insert(Field::selection);
    if (showSections != other.showSections) fields.insert(Field::showSections);
    return fields;
}

namespace {

IndexSet tagRows(const IndexSet& requested, const std::vector<TagSetTableEntry>& entries) {
    return selectableIndexes(requested, entries, [](const TagSetTableEntry& entry) {
        return std::holds_alternative<const TagItem*>(entry);
    });
}

} // namespace

TagSetTableContent::TagSetTableContent(const TagSetTableRequest& request)
    : request_(request), tagSet_(TagSetManager::shared().tagSet(request.domain())) {
    reloadEntries();
    selection_ = tagRows(request_.selection, entries_);
}

TagSetTableContent TagSetTableContent::reselected(const TagSetTableRequest& request) const {
    TagSetTableContent content = *this;
    content.request_ = request;
    content.selection_ = tagRows(request.selection, entries_);
    return content;
}

TagSetTableContent TagSetTableContent::with(const IndexSet& selection) const {
    TagSetTableRequest request = request_;
    request.selection = selection;
    return reselected(request);
}

void TagSetTableContent::reloadEntries() {
    entries_.clear();
    const TagSection* pendingSection = nullptr;
    for (const auto& entry : tagSet_.entries()) {
        if (const TagSection* section = entry.section()) {
            pendingSection = section;
            continue;
        }
        const TagItem* item = entry.tagItem();
        if (!item || (request_.filter && !request_.filter->value()(*item))) continue;
        if (pendingSection && request_.showSections) entries_.emplace_back(*pendingSection);
        pendingSection = nullptr;
        entries_.emplace_back(item);
    }
}

} // namespace corvane
