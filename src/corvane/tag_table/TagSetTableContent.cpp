#include "corvane/tag_table/TagSetTableContent.hpp"

namespace corvane {

std::set<TagSetTableRequest::Field> TagSetTableRequest::diff(const TagSetTableRequest& other) const {
    std::set<Field> fields;
    if (domain_ != other.domain_) fields.insert(Field::domain);
    if (filter != other.filter) fields.insert(Field::filter);
    if (selection != other.selection) fields.insert(Field::selection);
    if (showSections != other.showSections) fields.insert(Field::showSections);
    return fields;
}

TagSetTableContent::TagSetTableContent(const TagSetTableRequest& request)
    : BasicTableContent(request, TagSetManager::shared().tagSet(request.domain())) {
    reloadEntries();
    reloadSelection();
}

void TagSetTableContent::reloadEntries() {
    entries_.clear();
    const TagSection* pendingSection = nullptr;
    for (const auto& entry : tagSet_->entries()) {
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
