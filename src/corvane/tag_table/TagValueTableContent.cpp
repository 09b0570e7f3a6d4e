#include "corvane/tag_table/TagValueTableContent.hpp"

#include "corvane/helpers/ConcurrentPerform.hpp"
#include "corvane/tag_value/TagItem.hpp"

#include <algorithm>
#include <optional>
#include <unordered_map>

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

namespace {

using EditorPositions = std::unordered_map<TagName, std::vector<std::size_t>>;

// Per tag name the history lists, the positions in `editors` of the editors it lists it for,
// ascending. An editor listed twice has both positions; an editor the history doesn't list adds
// nothing.
EditorPositions editedPositions(const HistoryEdition& history, const TagValueTableRequest::Editors& editors) {
    EditorPositions positions;
    const auto add = [&](std::size_t position, const HistoryEdition::TagNames& names) {
        for (const TagName& name : names)
            positions[name].push_back(position);
    };
    const auto& edited = history.values();
    // An edit touches few editors of thousands: a pass over the list per edited editor (pointer
    // comparisons) costs less than a hash look-up per listed editor, up to a few edited ones.
    if (edited.size() <= 16) {
        for (const auto& [editor, names] : edited)
            for (std::size_t i = 0; i < editors.size(); ++i)
                if (editors[i] == editor) add(i, names);
        for (auto& [name, list] : positions)
            std::sort(list.begin(), list.end());
    } else {
        for (std::size_t i = 0; i < editors.size(); ++i)
            if (const auto* names = history.tagNamesOf(editors[i])) add(i, *names);
    }
    return positions;
}

} // namespace

IndexSet TagValueTableContent::reloadValues(const HistoryEdition& history) {
    const EditorPositions positions = editedPositions(history, request_.editors());
    IndexSet changed;
    if (positions.empty()) return changed;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        auto* row = std::get_if<TagValueRow>(&entries_[i]);
        if (!row) continue;
        const auto found = positions.find(row->tagItem().name());
        if (found == positions.end()) continue;
        changed.insert(i);
        row->reread(found->second); // only the edited editors are read again
        convert(*row);
    }
    return changed;
}

} // namespace corvane
