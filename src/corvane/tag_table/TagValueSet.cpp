#include "corvane/tag_table/TagValueSet.hpp"

#include "corvane/tag_value/TagItem.hpp"

#include <algorithm>
#include <map>
#include <set>

namespace corvane {

namespace {

// The choices offered by every item: a choice is known by its value and title together; it keeps
// the position it had in the first item that offered it.
std::vector<TagValueSet::Choice> commonChoices(const std::vector<const TagItem*>& items) {
    struct Record {
        std::size_t position;
        std::size_t count;
        TagValueSet::Choice choice;
    };
    std::map<std::pair<std::string, std::string>, Record> records;
    for (const TagItem* item : items) {
        const auto& choices = item->choices();
        for (std::size_t i = 0; i < choices.size(); ++i) {
            auto key = std::make_pair(choices[i].value, choices[i].title);
            auto [it, isNew] = records.try_emplace(key, Record{i, 0, key});
            ++it->second.count;
        }
    }
    std::vector<Record> sorted;
    for (auto& [key, record] : records)
        if (record.count == items.size()) sorted.push_back(std::move(record));
    std::stable_sort(sorted.begin(), sorted.end(),
                     [](const Record& a, const Record& b) { return a.position < b.position; });
    std::vector<TagValueSet::Choice> choices;
    for (auto& record : sorted)
        choices.push_back(std::move(record.choice));
    return choices;
}

} // namespace

TagValueSet::TagValueSet(std::shared_ptr<const Editors> editors, std::vector<const TagItem*> tagItems)
    : tagItems_(std::move(tagItems)), editors_(std::move(editors)) {
    std::sort(tagItems_.begin(), tagItems_.end(), [](const TagItem* a, const TagItem* b) { return *a < *b; });
    filteredChoices_ = commonChoices(tagItems_);
    std::set<std::string> values;
    for (const TagItem* item : tagItems_) {
        const TagName& name = item->name();
        isSupported_ = isSupported_ && item->type().isSupported();
        for (const auto& editor : *editors_) {
            values.insert(editor->currentValue(name).value_or(std::string()));
            if (!isEdited_) isEdited_ = editor->isValueEdited(name);
            if (canBeEdited_) canBeEdited_ = editor->canEditValue(name);
        }
    }
    string_ = MultiValuedString(values);
}

bool operator==(const TagValueSet& a, const TagValueSet& b) {
    return a.tagItems_ == b.tagItems_ && *a.editors_ == *b.editors_ && a.string_ == b.string_ &&
           a.isEdited_ == b.isEdited_ && a.canBeEdited_ == b.canBeEdited_ &&
           a.isSupported_ == b.isSupported_ && a.filteredChoices_ == b.filteredChoices_;
}

} // namespace corvane
