#include "corvane/comparison/TagComparatorGroup.hpp"

namespace corvane {

TagComparatorGroup::TagComparatorGroup(TagComparatorGroupName name,
                                       std::vector<TagComparatorGroupEntry> entries)
    : name_(std::move(name)), entries_(std::move(entries)) {
    orderedKeys_.reserve(entries_.size());
    indexByKey_.reserve(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        orderedKeys_.push_back(entries_[i].key());
        indexByKey_.try_emplace(entries_[i].key(), i);
    }
    multiValuesCount_ = entries_.empty() ? 0 : static_cast<std::ptrdiff_t>(entries_.front().values().size());
}

const TagComparatorGroupEntry* TagComparatorGroup::entry(const TagComparatorGroupKey& key) const {
    auto it = indexByKey_.find(key);
    return it == indexByKey_.end() ? nullptr : &entries_[it->second];
}

bool TagComparatorGroup::isShared(const TagComparatorGroupKey& key) const {
    const auto* found = entry(key);
    return found && found->isShared();
}

TagComparatorGroup TagComparatorGroup::keepingOnlySharedEntries() const {
    std::vector<TagComparatorGroupEntry> kept;
    for (const auto& entry : entries_)
        if (entry.isShared()) kept.push_back(entry);
    return TagComparatorGroup(name_, std::move(kept));
}

TagComparatorGroup TagComparatorGroup::filter(const TagComparatorPredicate& predicate) const {
    std::vector<TagComparatorGroupEntry> kept;
    for (const auto& entry : entries_) {
        bool keep = predicate(entry.key().localizedNameText());
        for (auto it = entry.values().begin(); !keep && it != entry.values().end(); ++it)
            keep = it->string && predicate(*it->string);
        if (keep) kept.push_back(entry);
    }
    return TagComparatorGroup(name_, std::move(kept));
}

} // namespace corvane
