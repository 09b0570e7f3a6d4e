#include "corvane/tag_table/TagValueTableContent.hpp"

#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <optional>

namespace corvane {

TagValueTableContent::TagValueTableContent(const TagValueTableRequest& request)
    : BasicTableContent(request, TagSetManager::shared().tagSet(request.domain())) {
    reloadEntries();
    reloadSelection();
}

void TagValueTableContent::convert(TagValueRow& row) const {
    if (request_.convert) row.setObjectValue(request_.convert->value()(row));
}

void TagValueTableContent::reloadEntries() {
    entries_.clear();
    const auto& tagEntries = tagSet_->entries();
    auto rows = parallelMap(tagEntries, [&](const TagSet::FlatEntry& entry) -> std::optional<TagValueRow> {
        const TagItem* item = entry.tagItem();
        if (!item) return std::nullopt;
        TagValueRow row(request_.sharedEditors(), *item);
        if (!request_.filter.filter(row)) return std::nullopt;
        convert(row);
        return row;
    });
    // A heading shows only before its first surviving row; a later heading replaces a pending one.
    const TagSection* pendingSection = nullptr;
    for (std::size_t i = 0; i < tagEntries.size(); ++i) {
        if (const TagSection* section = tagEntries[i].section()) {
            pendingSection = section;
            continue;
        }
        if (!rows[i]) continue;
        if (pendingSection && request_.showSections) entries_.emplace_back(*pendingSection);
        pendingSection = nullptr;
        entries_.emplace_back(std::move(*rows[i]));
    }
}

TagValueSet TagValueTableContent::values(const IndexSet& indexes) const {
    std::vector<const TagItem*> items;
    for (std::size_t index : indexes)
        if (index < entries_.size())
            if (const auto* row = std::get_if<TagValueRow>(&entries_[index]))
                items.push_back(&row->tagItem());
    return TagValueSet(request_.sharedEditors(), std::move(items));
}

IndexSet TagValueTableContent::indexes(const TagSection& section) const {
    IndexSet result;
    bool inside = false;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const auto* heading = std::get_if<TagSection>(&entries_[i]);
        if (inside && heading) break;
        if (inside) result.insert(i);
        if (heading && *heading == section) inside = true;
    }
    return result;
}

std::vector<TagName> TagValueTableContent::names(const IndexSet& indexes) const {
    std::vector<TagName> result;
    for (std::size_t index : indexes)
        if (index < entries_.size())
            if (const auto* row = std::get_if<TagValueRow>(&entries_[index]))
                result.push_back(row->tagItem().name());
    return result;
}

IndexSet TagValueTableContent::reloadValues(const HistoryEdition& history) {
    const HistoryEdition::TagNames touched = history.tagNames(request_.editors());
    IndexSet changed;
    for (std::size_t i = 0; i < entries_.size(); ++i)
        if (const auto* row = std::get_if<TagValueRow>(&entries_[i]);
            row && touched.contains(row->tagItem().name()))
            changed.insert(i);
    // An edit touches few rows: each is rebuilt with its editors split across the cores.
    for (std::size_t i : changed) {
        TagValueRow rebuilt(request_.sharedEditors(), std::get<TagValueRow>(entries_[i]).tagItem(), true);
        convert(rebuilt);
        entries_[i] = std::move(rebuilt);
    }
    return changed;
}

} // namespace corvane
