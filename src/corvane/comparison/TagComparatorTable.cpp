#include "corvane/comparison/TagComparatorTable.hpp"

#include "corvane/comparison/TagStorageValueProvider.hpp"
#include "corvane/tag_storages/TagStorage.hpp"

#include <unordered_set>

namespace corvane {

TagComparatorTable::TagComparatorTable(const std::vector<ProviderRef>& providers, bool hidesStream) {
    titles_.reserve(providers.size());
    for (const auto& provider : providers)
        titles_.push_back(provider->title());

    std::unordered_set<TagStream> seenStreams;
    for (const auto& provider : providers) {
        for (const TagStream& stream : provider->streams()) {
            if (!seenStreams.insert(stream).second) continue;

            std::unordered_set<TagKey> seenKeys;
            std::vector<TagComparatorGroupEntry> entries;
            for (const auto& keyProvider : providers) {
                for (TagKey& key : keyProvider->keys(stream)) {
                    if (!seenKeys.insert(key).second) continue;
                    TagName name(stream, std::move(key));
                    std::vector<TagComparatorValue> values;
                    values.reserve(providers.size());
                    for (const auto& valueProvider : providers)
                        values.push_back(valueProvider->value(name));
                    entries.emplace_back(TagComparatorGroupKey(std::move(name), hidesStream),
                                         std::move(values));
                }
            }
            if (!entries.empty()) groups_.emplace_back(TagComparatorGroupName{stream}, std::move(entries));
        }
    }
    index();
}

TagComparatorTable::TagComparatorTable(std::vector<std::string> titles,
                                       std::vector<TagComparatorGroup> groups)
    : titles_(std::move(titles)), groups_(std::move(groups)) {
    index();
}

void TagComparatorTable::index() {
    orderedNames_.clear();
    indexedGroups_.clear();
    orderedNames_.reserve(groups_.size());
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        orderedNames_.push_back(groups_[i].name());
        indexedGroups_.try_emplace(groups_[i].name(), i);
    }
    multiValuesCount_ = static_cast<std::ptrdiff_t>(titles_.size());
}

TagComparatorTable TagComparatorTable::fromStorages(const std::vector<TagStorage>& storages, bool hidesStream,
                                                    const std::vector<std::string>& titles) {
    std::vector<ProviderRef> providers;
    providers.reserve(storages.size());
    for (std::size_t i = 0; i < storages.size(); ++i) {
        std::string title = i < titles.size() ? titles[i] : storages[i].nameDescription();
        providers.push_back(std::make_shared<const TagStorageValueProvider>(std::move(title), storages[i]));
    }
    return TagComparatorTable(providers, hidesStream);
}

const TagComparatorGroup* TagComparatorTable::group(const TagComparatorGroupName& name) const {
    auto it = indexedGroups_.find(name);
    return it == indexedGroups_.end() ? nullptr : &groups_[it->second];
}

TagComparatorTable TagComparatorTable::filter(const TagComparatorPredicate& predicate) const {
    std::vector<TagComparatorGroup> kept;
    for (const auto& group : groups_) {
        auto filtered = group.filter(predicate);
        if (!filtered.isEmpty()) kept.push_back(std::move(filtered));
    }
    return TagComparatorTable(titles_, std::move(kept));
}

TagComparatorTable TagComparatorTable::keepingOnlySharedEntries() const {
    std::vector<TagComparatorGroup> kept;
    for (const auto& group : groups_) {
        auto narrowed = group.keepingOnlySharedEntries();
        if (!narrowed.isEmpty()) kept.push_back(std::move(narrowed));
    }
    return TagComparatorTable(titles_, std::move(kept));
}

} // namespace corvane
