#include "corvane/comparison/TagStorageValueProvider.hpp"

#include "corvane/tag_value/TagItem.hpp"

#include <algorithm>

namespace corvane {

TagStorageValueProvider::TagStorageValueProvider(std::string filename, const TagStorage& storage)
    : filename_(std::move(filename)) {
    const auto& originals = storage.originalValues();
    const auto& written = storage.writtenValues();

    auto add = [&](const TagName& name) {
        const TagStream& stream = name.stream();
        auto [keysIt, isNewStream] = tagKeys_.try_emplace(stream);
        if (isNewStream) tagStreams_.push_back(stream);
        keysIt->second.push_back(name.key());

        auto writtenIt = written.find(name);
        if (writtenIt != written.end()) {
            tagEditions_.emplace(name, true);
            // A written clear marker: the tag stays listed, without value.
            if (!writtenIt->second.empty()) tagValues_[stream].emplace(name.key(), writtenIt->second);
        } else if (auto originalIt = originals.find(name); originalIt != originals.end()) {
            tagValues_[stream].emplace(name.key(), originalIt->second);
        }
    };
    // Tags the catalogue doesn't know, and tags this source can't read, are not shown.
    auto isShown = [&](const TagName& name) { return TagItem::find(name) && storage.canReadValue(name); };

    for (const auto& [name, value] : originals)
        if (isShown(name)) add(name);
    for (const auto& [name, value] : written)
        if (!originals.contains(name) && isShown(name)) add(name);

    std::sort(tagStreams_.begin(), tagStreams_.end());
    for (auto& [stream, keys] : tagKeys_)
        std::sort(keys.begin(), keys.end());
}

std::size_t TagStorageValueProvider::valuesCount(const TagStream& stream) const {
    auto it = tagKeys_.find(stream);
    return it == tagKeys_.end() ? 0 : it->second.size();
}

std::optional<TagKey> TagStorageValueProvider::key(std::size_t index, const TagStream& stream) const {
    auto it = tagKeys_.find(stream);
    if (it == tagKeys_.end() || index >= it->second.size()) return std::nullopt;
    return it->second[index];
}

TagComparatorValue TagStorageValueProvider::value(const TagName& name) const {
    TagComparatorValue result;
    if (auto it = tagEditions_.find(name); it != tagEditions_.end()) result.isEdited = it->second;
    if (auto streamIt = tagValues_.find(name.stream()); streamIt != tagValues_.end())
        if (auto keyIt = streamIt->second.find(name.key()); keyIt != streamIt->second.end())
            result.string = keyIt->second;
    return result;
}

bool TagStorageValueProvider::contains(const TagStream& stream) const {
    auto it = tagKeys_.find(stream);
    return it != tagKeys_.end() && !it->second.empty();
}

std::vector<TagKey> TagStorageValueProvider::keys(const TagStream& stream) const {
    auto it = tagKeys_.find(stream);
    return it == tagKeys_.end() ? std::vector<TagKey>() : it->second;
}

} // namespace corvane
