#pragma once

#include "corvane/comparison/TagComparatorProvider.hpp"
#include "corvane/tag_storages/TagStorage.hpp"

#include <string>
#include <unordered_map>
#include <vector>

namespace corvane {

/// A comparison column over a snapshot of one storage: every catalogue tag the storage can read,
/// with its current value (the edit before the original; a tag cleared by an edit is listed without
/// value). Families and keys are sorted ascending. Immutable once made.
class TagStorageValueProvider : public TagComparatorProvider {
public:
    /// A column titled `filename` over a snapshot of `storage`, taken now.
    TagStorageValueProvider(std::string filename, const TagStorage& storage);

    /// The column's title; the families, sorted; each family's keys, sorted; each tag's current
    /// text; whether each tag is edited.
    ///@{
    const std::string& filename() const { return filename_; }
    const std::vector<TagStream>& tagStreams() const { return tagStreams_; }
    const std::unordered_map<TagStream, std::vector<TagKey>>& tagKeys() const { return tagKeys_; }
    const std::unordered_map<TagStream, std::unordered_map<TagKey, std::string>>& tagValues() const {
        return tagValues_;
    }
    const std::unordered_map<TagName, bool>& tagEditions() const { return tagEditions_; }
    ///@}

    /// The `TagComparatorProvider` answers over the snapshot.
    ///@{
    std::string title() const override { return filename_; }
    const std::vector<TagStream>& streams() const override { return tagStreams_; }
    std::size_t valuesCount(const TagStream& stream) const override;
    std::optional<TagKey> key(std::size_t index, const TagStream& stream) const override;
    TagComparatorValue value(const TagName& name) const override;
    bool contains(const TagStream& stream) const override;
    std::vector<TagKey> keys(const TagStream& stream) const override;
    ///@}

private:
    std::string filename_;
    std::vector<TagStream> tagStreams_;
    std::unordered_map<TagStream, std::vector<TagKey>> tagKeys_;
    std::unordered_map<TagStream, std::unordered_map<TagKey, std::string>> tagValues_;
    std::unordered_map<TagName, bool> tagEditions_;
};

} // namespace corvane
